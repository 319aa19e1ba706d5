#pragma once

#include "CoreGraphics/raster/Pixels.h"

#include <cstddef>

/// A non-owning view of an 8-bit coverage mask: 0 outside the shape, 255 fully inside.
struct MaskView {
    PixelRect area;
    const unsigned char* data = nullptr; ///< of the first pixel of the top row
    int bytesPerRow = 0;                 ///< a multiple of 4

    const unsigned char* pixel(int x, int y) const
    {
        return data + std::ptrdiff_t(y - area.top) * bytesPerRow + (x - area.left);
    }
    /// The same mask, moved to the right and down.
    MaskView moved(int byX, int byY) const { return {area.moved(byX, byY), data, bytesPerRow}; }
};

/// A writable, non-owning view of a coverage mask.
struct MutableMaskView {
    PixelRect area;
    unsigned char* data = nullptr;
    int bytesPerRow = 0;

    unsigned char* pixel(int x, int y) const
    {
        return data + std::ptrdiff_t(y - area.top) * bytesPerRow + (x - area.left);
    }
    operator MaskView() const { return {area, data, bytesPerRow}; }
};

/// The smallest area that contains all covered pixels; empty if there are none.
PixelRect coveredArea(const MaskView& mask);
