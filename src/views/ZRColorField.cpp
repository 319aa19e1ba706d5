#include "views/ZRColorField.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>
#include <vector>

namespace {

using Channels = std::array<double, 3>; ///< red, green, blue

constexpr std::size_t kBytesPerPixel = 4;

unsigned char byteOf(double component)
{
    return static_cast<unsigned char>(component * 255);
}

/// The component of one of `count` columns or rows.
double componentAt(std::size_t index, std::size_t count)
{
    return count > 1 ? static_cast<double>(index) / static_cast<double>(count - 1) : 0;
}

/// How much of the brightness full saturation takes from each channel of a hue. In the hexcone model
/// (A. R. Smith, "Color Gamut Transform Pairs", 1978) a channel is brightness * (1 - saturation * this).
Channels takenBySaturation(double hue)
{
    const double sixths = hue * 6;
    const int sector = static_cast<int>(sixths);
    const double falling = sixths - sector;
    const double rising = 1 - falling;
    switch (sector) {
    case 1:
        return {falling, 0, 1};
    case 2:
        return {1, 0, rising};
    case 3:
        return {1, falling, 0};
    case 4:
        return {rising, 1, 0};
    case 5:
        return {0, 1, falling};
    default: // 0, and 6 for a hue of 1
        return {0, rising, 1};
    }
}

/// One row of a field by hue, saturation and brightness. The fourth lane is alpha, of which nothing is taken.
void fillHSBRow(unsigned char* row, std::span<const double> takenByLane, double saturation, double brightness)
{
    // Blocks of several pixels, computed apart from where they are stored, compile to vector instructions.
    constexpr std::size_t kBlock = 4 * kBytesPerPixel;
    const auto fill = [&](std::size_t start, std::size_t count) {
        unsigned char block[kBlock];
        for (std::size_t i = 0; i < count; ++i) {
            const double brightnessOfLane = i % kBytesPerPixel == 3 ? 1 : brightness;
            block[i] = static_cast<unsigned char>(
                static_cast<int>(brightnessOfLane * (1 - saturation * takenByLane[start + i]) * 255));
        }
        std::copy_n(block, count, row + start);
    };
    std::size_t start = 0;
    for (; start + kBlock <= takenByLane.size(); start += kBlock)
        fill(start, kBlock);
    fill(start, takenByLane.size() - start);
}

void fillHSBField(
    unsigned char* pixels, std::size_t width, std::size_t height, ZR2DColorPickerAxes axes, double third)
{
    const bool isHueFixed = axes == kZR2DColorPickerAxesSaturationBrightness;
    std::vector<double> takenByColumn(kBytesPerPixel * width, 0);
    for (std::size_t x = 0; x < width; ++x) {
        const double along = componentAt(x, width);
        const Channels taken = takenBySaturation(isHueFixed ? third : along);
        // A saturation that differs from column to column is part of what it takes.
        const double saturation = isHueFixed ? along : 1;
        for (std::size_t channel = 0; channel < taken.size(); ++channel)
            takenByColumn[kBytesPerPixel * x + channel] = saturation * taken[channel];
    }
    for (std::size_t r = 0; r < height; ++r) {
        const double up = componentAt(height - 1 - r, height);
        unsigned char* const row = pixels + kBytesPerPixel * width * r;
        if (axes == kZR2DColorPickerAxesHueSaturation)
            fillHSBRow(row, takenByColumn, up, third);
        else
            fillHSBRow(row, takenByColumn, isHueFixed ? 1 : third, up);
    }
}

void fillRGBField(
    unsigned char* pixels, std::size_t width, std::size_t height, ZR2DColorPickerAxes axes, double third)
{
    const std::size_t channelAlongX = axes == kZR2DColorPickerAxesGreenBlue ? 1 : 0;
    const std::size_t channelAlongY = axes == kZR2DColorPickerAxesRedGreen ? 1 : 2;
    const std::size_t rowLength = kBytesPerPixel * width;
    std::vector<unsigned char> pattern(rowLength, byteOf(third));
    for (std::size_t x = 0; x < width; ++x) {
        pattern[kBytesPerPixel * x + channelAlongX] = byteOf(componentAt(x, width));
        pattern[kBytesPerPixel * x + 3] = 255;
    }
    for (std::size_t r = 0; r < height; ++r) {
        unsigned char* const row = pixels + rowLength * r;
        const unsigned char byte = byteOf(componentAt(height - 1 - r, height));
        std::copy(pattern.begin(), pattern.end(), row);
        for (std::size_t i = channelAlongY; i < rowLength; i += kBytesPerPixel)
            row[i] = byte;
    }
}

void fillPlain(unsigned char* pixels, std::size_t count, unsigned char level)
{
    const std::array<unsigned char, kBytesPerPixel> pixel{level, level, level, 255};
    for (; count > 0; --count)
        pixels = std::copy(pixel.begin(), pixel.end(), pixels);
}

} // namespace

void ZRFillColorField(unsigned char* pixels, std::size_t width, std::size_t height, ZR2DColorPickerAxes axes,
    double thirdComponent)
{
    const double third = ZRClampedToUnit(thirdComponent);
    switch (axes) {
    case kZR2DColorPickerAxesHueSaturation:
    case kZR2DColorPickerAxesHueBrightness:
    case kZR2DColorPickerAxesSaturationBrightness:
        return fillHSBField(pixels, width, height, axes, third);
    case kZR2DColorPickerAxesRedGreen:
    case kZR2DColorPickerAxesRedBlue:
    case kZR2DColorPickerAxesGreenBlue:
        return fillRGBField(pixels, width, height, axes, third);
    default:
        return fillPlain(pixels, width * height, (axes & 0x30) != 0 ? 0 : 255);
    }
}
