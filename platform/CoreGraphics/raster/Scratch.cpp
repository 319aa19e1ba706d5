#include "CoreGraphics/raster/Scratch.h"

Scratch::Rows Scratch::make(const PixelRect& area, int bytesPerPixel)
{
    const int bytesPerRow = (area.width() * bytesPerPixel + 3) / 4 * 4;
    const std::size_t size = std::size_t(bytesPerRow) * std::size_t(area.height());
    if (_size < size) {
        _memory = std::make_unique_for_overwrite<unsigned char[]>(size);
        _size = size;
    }
    return {_memory.get(), bytesPerRow};
}
