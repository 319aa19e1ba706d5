#pragma once

#include "CoreGraphics/raster/CoverageRows.h"
#include "CoreGraphics/raster/Pixels.h"

/// Rows of pixels in memory: four bytes each, or one if there is only alpha. They may have any address.
struct PixelRows {
    unsigned char* bytes; ///< of the first row
    std::size_t bytesPerRow;
    int count;
    bool isAlphaOnly;

    PixelRows row(int index) const
    {
        return {bytes + std::size_t(index) * bytesPerRow, bytesPerRow, 1, isAlphaOnly};
    }
};

/// Paints spans of rows with the same coverage in a colour: D = coverage x colour + (1 - coverage x hidden) x
/// D, in 16 bits and rounded once. x counts from the first pixel of the rows. Pixels that are not covered do
/// not change.
void paintSolid(const PixelRows& rows, std::span<const CoverageSpan> spans, const unsigned char* coverage,
    PixelBytes color, std::uint8_t hidden);

/// The same for the first `width` pixels of rows, each through its own byte of a mask.
void paintSolid(const PixelRows& rows, std::size_t width, const unsigned char* mask,
    std::size_t maskBytesPerRow, PixelBytes color, std::uint8_t hidden);
