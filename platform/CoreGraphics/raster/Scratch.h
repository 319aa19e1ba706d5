#pragma once

#include "CoreGraphics/raster/Pixels.h"

#include <memory>

/// Scratch memory for the pixels of one operation, reused by the next.
class Scratch {
public:
    struct Rows {
        unsigned char* data;
        int bytesPerRow; ///< a multiple of 4

        unsigned char* row(int index) const { return data + std::ptrdiff_t(index) * bytesPerRow; }
    };

    /// Rows for the pixels of an area, uninitialized. The next call reuses the memory.
    Rows make(const PixelRect& area, int bytesPerPixel);

private:
    std::unique_ptr<unsigned char[]> _memory;
    std::size_t _size = 0;
};
