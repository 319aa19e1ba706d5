#pragma once

#include <algorithm>
#include <array>
#include <cmath>

/// Red, green and blue from 0 to 1.
using RGBColor = std::array<double, 3>;

/// The relative luminance that WCAG 2 defines for a colour in sRGB.
inline double relativeLuminance(const RGBColor& color)
{
    constexpr double kWeights[] = {0.2126, 0.7152, 0.0722};
    double sum = 0;
    for (std::size_t i = 0; i < color.size(); ++i)
        sum += kWeights[i]
            * (color[i] <= 0.04045 ? color[i] / 12.92 : std::pow((color[i] + 0.055) / 1.055, 2.4));
    return sum;
}

/// The contrast ratio that WCAG 2 defines, from 1 to 21; it asks for 4.5 between text and its ground.
inline double contrastRatio(const RGBColor& a, const RGBColor& b)
{
    const double first = relativeLuminance(a), second = relativeLuminance(b);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

inline constexpr double kReadableContrast = 4.5;
