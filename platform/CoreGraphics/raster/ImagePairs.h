#pragma once

#include "CoreGraphics/raster/ImageView.h"

#include <CoreGraphics/CGAffineTransform.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

// What the samplers of images share.

/// Enlarges an array to `count` elements and the padding that the loops over images need.
template <class T> void resizePadded(std::vector<T>& values, std::size_t count, std::size_t padding)
{
    if (values.size() < count + padding)
        values.resize(count + padding);
}

/// The distance in memory of what a drawn row needs and what a later one does, about.
inline std::ptrdiff_t bytesBetweenRows(
    const ImageView& image, const CGAffineTransform& imageFromPixel, double rowCount)
{
    constexpr double kFarthest = 1e6; // in pixels; the sums do not overflow
    const auto pixels = [=](double step) {
        return std::ptrdiff_t(std::clamp(rowCount * step, -kFarthest, kFarthest));
    };
    return pixels(imageFromPixel.d) * std::ptrdiff_t(image.bytesPerRow)
        + pixels(imageFromPixel.c) * std::ptrdiff_t(image.bytesPerPixel());
}

/// The part of a distance, from 0 to 1, between two pixels.
inline std::uint32_t partOf(double distance)
{
    return std::uint32_t(std::min(distance * 65536, 65535.0)) << 16;
}

/// The pixels at an address and beside it, as one number.
inline std::uint64_t pixelPair(const unsigned char* pixel, std::size_t step)
{
    std::uint32_t first = 0;
    std::uint32_t second = 0;
    std::memcpy(&first, pixel, sizeof first);
    std::memcpy(&second, pixel + step, sizeof second);
    return first | std::uint64_t(second) << 32;
}

/// A mix of two alphas, or of two such mixes, by the rule of ImageKernels.h; alphas are multiplied by 256.
inline unsigned mixedAlpha(unsigned first, unsigned second, std::uint32_t part)
{
    part >>= 16;
    return (first * (65535 - part) >> 16) + (second * part >> 16);
}
inline unsigned char alphaByte(unsigned mixed)
{
    return static_cast<unsigned char>((mixed + 128) >> 8);
}
