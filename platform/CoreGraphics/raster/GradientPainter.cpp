#include "CoreGraphics/raster/GradientPainter.h"

#include "CoreGraphics/raster/PixelBlending.h"
#include "CoreGraphics/raster/PixelFill.h"

#include <algorithm>
#include <bit>
#include <cstring>

GradientPainter::GradientPainter(const GradientRows& gradient, std::uint8_t alpha, const PixelMemory& memory,
    const PixelRect& area, std::vector<CGGradientPixel>& row)
    : _gradient(gradient)
    , _alpha(alpha)
    , _memory(memory)
    , _area(area)
    , _row(row)
    , _replaces(alpha == 255 && gradient.isOpaque())
    , _isSameInRows(gradient.isSameInRows(area.height()))
    , _isSameInColumns(gradient.isSameInColumns(area.width()))
    , _isAligned(reinterpret_cast<std::uintptr_t>(memory.data) % alignof(CGGradientPixel) == 0
          && memory.bytesPerRow % sizeof(CGGradientPixel) == 0)
{
    const auto width = std::size_t(area.width());
    _row.resize(std::max(_row.size(), width));
    if (_isSameInRows)
        gradient.fill(area.left, area.top, {_row.data(), width});
}

void GradientPainter::fill()
{
    for (int y = _area.top; y < _area.bottom; ++y)
        paintRun(_area.left, y, _area.width(), nullptr);
}

void GradientPainter::paintRun(int x, int y, int count, const unsigned char* coverage)
{
    unsigned char* bytes = _memory.pixel(x - _area.left, y - _area.top);
    const bool replaces = _replaces && !coverage;
    if (_isSameInColumns && replaces)
        fillPixels(bytes, std::size_t(count), std::bit_cast<PixelBytes>(_gradient.pixel(x, y)));
    else if (_isSameInColumns)
        blendPixel(bytes, _gradient.pixel(x, y), std::size_t(count), coverage, _alpha);
    else if (replaces)
        replace(x, y, bytes, std::size_t(count));
    else
        blendPixels(bytes, pixels(x, y, std::size_t(count)), coverage, _alpha);
}

void GradientPainter::replace(int x, int y, unsigned char* bytes, std::size_t count)
{
    if (_isAligned && !_isSameInRows)
        return _gradient.fill(x, y, {reinterpret_cast<CGGradientPixel*>(bytes), count});
    const auto source = pixels(x, y, count);
    std::memcpy(bytes, source.data(), source.size_bytes());
}

std::span<const CGGradientPixel> GradientPainter::pixels(int x, int y, std::size_t count)
{
    if (_isSameInRows)
        return {_row.data() + (x - _area.left), count};
    _gradient.fill(x, y, {_row.data(), count});
    return {_row.data(), count};
}
