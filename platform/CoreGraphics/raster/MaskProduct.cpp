#include "CoreGraphics/raster/MaskProduct.h"

#include "CoreGraphics/raster/ByteProduct.h"

#include <cmath>
#include <cstring>

MaskProduct::MaskProduct(const PixelRect& area, const AreaRect& rect, const MaskView& first,
    const MaskView* second, std::vector<unsigned char>& memory)
    : _area(area)
    , _rect(rect)
    , _first(first)
    , _second(second)
    , _left(rect.coveredWidth(area.left))
    , _right(area.width() > 1 ? rect.coveredWidth(area.right - 1) : 1)
    , _row(memory)
{
}

const unsigned char* MaskProduct::row(int y)
{
    const int width = _area.width();
    const double height = _rect.coveredHeight(y);
    const unsigned char* first = _first.pixel(_area.left, y);
    if (!_second && height == 1 && _left == 1 && _right == 1)
        return first;
    _row.resize(std::size_t(width));
    unsigned char* row = _row.data();
    std::memcpy(row, first, std::size_t(width));
    if (_second)
        multiplyRow(row, _second->pixel(_area.left, y), width);

    int begin = 0;
    int end = width;
    if (_left < 1) {
        row[0] = std::uint8_t(std::lround(row[0] * _left * height));
        ++begin;
    }
    if (_right < 1) {
        --end;
        row[end] = std::uint8_t(std::lround(row[end] * _right * height));
    }
    if (height < 1)
        multiplyRow(row + begin, std::uint8_t(std::lround(255 * height)), end - begin);
    return row;
}

MaskView MaskProduct::all(Scratch& memory)
{
    if (!_second && _rect.contains(_area))
        return _first;
    const Scratch::Rows rows = memory.make(_area, 1);
    for (int y = _area.top; y < _area.bottom; ++y)
        std::memcpy(rows.row(y - _area.top), row(y), std::size_t(_area.width()));
    return {_area, rows.data, rows.bytesPerRow};
}
