#pragma once

/// Red, green and blue, each 0 to 1.
struct RGBComponents {
    double red;
    double green;
    double blue;
};

/// Hue, saturation and brightness, each 0 to 1.
struct HSBComponents {
    double hue; ///< 0 red, 1/3 green, 2/3 blue
    double saturation;
    double brightness;
};

/// `value` clamped to 0...1; 0 for NaN.
constexpr double unitClamped(double value)
{
    return value > 0 ? (value < 1 ? value : 1) : 0;
}

/// The hexcone model of A. R. Smith, "Color Gamut Transform Pairs", 1978. The hue is below 1, and 0 for
/// grays; the saturation of black is 0. Components are clamped to 0...1 first, in both directions.
HSBComponents hsbFromRGB(RGBComponents rgb);
/// The inverse. A hue of 1 is the same as 0.
RGBComponents rgbFromHSB(HSBComponents hsb);
