#include "CoreGraphics/raster/MaskProduct.h"

#include "CoreGraphics/raster/ByteProduct.h"
#include "CoreGraphics/raster/CoverageRuns.h"

#include <cmath>
#include <cstring>

MaskProduct::MaskProduct(
    const PixelRect& area, const AreaRect& rect, const MaskView* mask, std::vector<unsigned char>& memory)
    : _area(area)
    , _rect(rect)
    , _mask(mask)
    , _isWhole(!mask && rect.contains(area))
    , _left(rect.coveredWidth(area.left))
    , _right(area.width() > 1 ? rect.coveredWidth(area.right - 1) : 1)
    , _row(memory)
{
    _row.resize(std::max(_row.size(), std::size_t(area.width())));
}

const unsigned char* MaskProduct::times(int x, int y, int count, const unsigned char* coverage)
{
    if (_isWhole)
        return coverage;
    const double height = _rect.coveredHeight(y);
    const double left = x == _area.left ? _left : 1;
    const double right = x + count == _area.right ? _right : 1;
    const unsigned char* masked = _mask ? _mask->pixel(x, y) : nullptr;
    if (!coverage)
        std::swap(coverage, masked);
    if (!masked && height == 1 && left == 1 && right == 1)
        return coverage;

    unsigned char* row = _row.data();
    if (coverage)
        std::memcpy(row, coverage, std::size_t(count));
    else
        std::memset(row, 255, std::size_t(count));
    if (masked)
        multiplyRow(row, masked, count);
    int begin = 0;
    int end = count;
    if (left < 1) {
        row[0] = std::uint8_t(std::lround(row[0] * left * height));
        ++begin;
    }
    if (right < 1) {
        --end;
        row[end] = std::uint8_t(std::lround(row[end] * right * height));
    }
    if (height < 1)
        multiplyRow(row + begin, std::uint8_t(std::lround(255 * height)), end - begin);
    return row;
}

void MaskProduct::paint(const MaskView& mask, RunPainter& painter)
{
    for (int y = _area.top; y < _area.bottom; ++y) {
        const unsigned char* row = times(_area.left, y, _area.width(), mask.pixel(_area.left, y));
        forEachRun(row, _area.width(), [&](int x, int count, const unsigned char* coverage) {
            painter.paintRun(_area.left + x, y, count, coverage);
        });
    }
}
