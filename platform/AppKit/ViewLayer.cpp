#include "ViewLayer.h"

#include "CoreGraphics/raster/PixelBlending.h"

#include <CoreGraphics/CGBitmapContext.h>

#include <cstring>

SavedPixels::SavedPixels(CGContextRef context, CGRect area, Memory& memory)
    : _memory(memory)
{
    const auto height = static_cast<CGFloat>(CGBitmapContextGetHeight(context));
    const CGRect bitmap = CGRectMake(0, 0, static_cast<CGFloat>(CGBitmapContextGetWidth(context)), height);
    area = CGRectIntersection(area, bitmap);
    if (CGRectIsEmpty(area))
        return;
    _bytesPerRow = CGBitmapContextGetBytesPerRow(context);
    _width = static_cast<std::size_t>(area.size.width);
    _height = static_cast<std::size_t>(area.size.height);
    // The first row is the top one.
    _bytes = static_cast<unsigned char*>(CGBitmapContextGetData(context))
        + static_cast<std::size_t>(height - CGRectGetMaxY(area)) * _bytesPerRow
        + static_cast<std::size_t>(area.origin.x) * sizeof(Memory::value_type);
    if (_memory.size() < _width * (_height + 1))
        _memory.resize(_width * (_height + 1));
    for (std::size_t y = 0; y < _height; ++y)
        std::memcpy(savedRow(y), row(y), _width * sizeof(Memory::value_type));
}

void SavedPixels::clear() const
{
    for (std::size_t y = 0; y < _height; ++y)
        std::memset(row(y), 0, _width * sizeof(Memory::value_type));
}

void SavedPixels::restore() const
{
    for (std::size_t y = 0; y < _height; ++y)
        std::memcpy(row(y), savedRow(y), _width * sizeof(Memory::value_type));
}

void SavedPixels::putBelow() const
{
    std::uint32_t* const above = savedRow(_height);
    for (std::size_t y = 0; y < _height; ++y) {
        std::memcpy(above, row(y), _width * sizeof(Memory::value_type));
        std::memcpy(row(y), savedRow(y), _width * sizeof(Memory::value_type));
        blendPixels(row(y), {above, _width}, nullptr, 255);
    }
}
