#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>

// A plain reference implementation of angle images: benchmarks and tests compare the library with it.

/// The value of the pixel `dx` columns and `dy` rows from the centre.
inline std::uint8_t plainAngle(double dx, double dy, bool isIncreasing)
{
    double a = std::atan2(dy, dx);
    if (a < 0)
        a += std::numbers::pi * 2;
    double f = a / (std::numbers::pi * 2);
    if (f < 0)
        f = 0;
    if (f > 1)
        f = 1;
    const double v = isIncreasing ? f : 1 - f;
    return static_cast<std::uint8_t>(v * 255);
}

/// The values of all pixels, row by row from the top.
inline void plainAngles(std::uint8_t* pixels, std::size_t width, std::size_t height, bool isIncreasing)
{
    const std::size_t centreColumn = width / 2, centreRow = height / 2;
    for (std::size_t i = 0; i < height; ++i) {
        for (std::size_t j = 0; j < width; ++j) {
            const double dx = static_cast<double>(j) - static_cast<double>(centreColumn);
            const double dy = static_cast<double>(i) - static_cast<double>(centreRow);
            *pixels++ = plainAngle(dx, dy, isIncreasing);
        }
    }
}
