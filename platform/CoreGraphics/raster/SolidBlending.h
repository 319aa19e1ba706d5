#pragma once

#include "CoreGraphics/raster/CoverageRows.h"
#include "CoreGraphics/raster/Pixels.h"

/// Blends pixels with a colour, each through a byte of coverage: D = coverage x colour + (1 - coverage x
/// hidden) x D, in 16 bits and rounded once. `bytes`, four for each pixel, or one if there is only alpha, may
/// have any address. Pixels that are not covered do not change. Null coverage means full coverage.
void blendSolid(unsigned char* bytes, const unsigned char* coverage, std::size_t count, PixelBytes color,
    std::uint8_t hidden, bool isAlphaOnly);

/// Rows of pixels in memory: four bytes each, or one if there is only alpha.
struct PixelRows {
    unsigned char* bytes; ///< of the first row
    std::size_t bytesPerRow;
    int count;
    bool isAlphaOnly;

    unsigned char* row(int index) const { return bytes + std::size_t(index) * bytesPerRow; }
    PixelRows from(std::size_t pixel) const
    {
        return {bytes + pixel * (isAlphaOnly ? 1 : 4), bytesPerRow, count, isAlphaOnly};
    }
};

/// The same in the spans of several rows with the same coverage, except for full spans of a colour that hides
/// all below it. x counts from the first pixel of the rows.
void blendSolid(const PixelRows& rows, std::span<const CoverageSpan> spans, const unsigned char* coverage,
    PixelBytes color, std::uint8_t hidden);
