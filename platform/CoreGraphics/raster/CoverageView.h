#pragma once

#include "CoreGraphics/raster/PixelRect.h"

#include <cstddef>

/// How far each pixel of an area is covered, 0 to 255. The bytes lie somewhere else.
struct CoverageView {
    PixelRect area;
    const unsigned char* data = nullptr; ///< of the first pixel of the row on top
    int bytesPerRow = 0;                 ///< a multiple of 4

    const unsigned char* pixel(int x, int y) const
    {
        return data + std::ptrdiff_t(y - area.top) * bytesPerRow + (x - area.left);
    }
    /// The same coverages so many pixels further right and down.
    CoverageView moved(int byX, int byY) const { return {area.moved(byX, byY), data, bytesPerRow}; }
};
