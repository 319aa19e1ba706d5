#include "AppKit/HSB.h"

#include <algorithm>

HSBComponents hsbFromRGB(RGBComponents rgb)
{
    const double red = unitClamped(rgb.red);
    const double green = unitClamped(rgb.green);
    const double blue = unitClamped(rgb.blue);
    const double most = std::max({red, green, blue});
    const double range = most - std::min({red, green, blue});
    if (range == 0)
        return {0, 0, most};

    double sixths = 0;
    if (most == red)
        sixths = (green - blue) / range;
    else if (most == green)
        sixths = 2 + (blue - red) / range;
    else
        sixths = 4 + (red - green) / range;

    double hue = sixths / 6;
    if (hue < 0)
        hue += 1;
    if (hue >= 1) // so little below 0 that the sum is rounded to 1
        hue = 0;
    return {hue, range / most, most};
}

RGBComponents rgbFromHSB(HSBComponents hsb)
{
    const double saturation = unitClamped(hsb.saturation);
    const double brightness = unitClamped(hsb.brightness);
    const double sixths = unitClamped(hsb.hue) * 6;
    const int sector = static_cast<int>(sixths);
    const double fraction = sixths - sector;

    const double least = brightness * (1 - saturation);
    const double falling = brightness * (1 - saturation * fraction);
    const double rising = brightness * (1 - saturation * (1 - fraction));
    switch (sector) {
    case 1:
        return {falling, brightness, least};
    case 2:
        return {least, brightness, rising};
    case 3:
        return {least, falling, brightness};
    case 4:
        return {rising, least, brightness};
    case 5:
        return {brightness, least, falling};
    default: // 0, and 6 for a hue of 1
        return {brightness, rising, least};
    }
}
