#include "CoreGraphics/cairo/Coverage.h"

#include "CoreGraphics/cairo/CairoShape.h"
#include "CoreGraphics/cairo/SolidRows.h"

#include <cmath>
#include <cstring>

namespace {

/// a x b / 255, rounded.
inline std::uint8_t product(std::uint8_t a, std::uint8_t b)
{
    const auto wide = std::uint16_t(a * b + 128);
    return std::uint8_t(std::uint16_t(wide + (wide >> 8)) >> 8);
}

void multiplyRow(unsigned char* __restrict row, const unsigned char* __restrict other, int count)
{
    for (int i = 0; i < count; ++i)
        row[i] = product(row[i], other[i]);
}

void multiplyRow(unsigned char* row, std::uint8_t factor, int count)
{
    for (int i = 0; i < count; ++i)
        row[i] = product(row[i], factor);
}

} // namespace

Coverage::Coverage(Scratch& memory, const PixelRect& area)
    : _area(area)
    , _pixels(memory.make(CAIRO_FORMAT_A8, area))
{
    std::memset(_pixels.data, 0, std::size_t(_pixels.bytesPerRow) * std::size_t(area.height()));
}

void Coverage::draw(const Shape& shape, int height)
{
    const Paint opaque({0, 0, 0, 1}, 1);
    if (shape.rectangles.empty())
        return draw(shape, opaque, height);
    // As if painted onto pixels that have only alpha.
    SolidRows rows({_pixels.data, std::size_t(_pixels.bytesPerRow), true}, _area, opaque.bytes(), 255);
    RectangleRaster().run(shape.rectangles, _area, rows);
}

void Coverage::draw(const Shape& shape, const Paint& paint, int height)
{
    const auto cairo = makeBaseSpaceCairo(surface(), _area, height);
    paint.setSource(cairo.get());
    drawShape(cairo.get(), shape, height);
    cairo_surface_flush(surface());
}

void Coverage::multiply(const Coverage& other)
{
    for (int y = _area.top; y < _area.bottom; ++y)
        multiplyRow(pixel(_area.left, y), other.pixel(_area.left, y), _area.width());
}

CoverageProduct::CoverageProduct(
    const PixelRect& area, const AreaRect& rect, Coverage* shape, const Coverage* mask)
    : _area(area)
    , _rect(rect)
    , _shape(shape)
    , _mask(mask)
    , _left(rect.coveredWidth(area.left))
    , _right(area.width() > 1 ? rect.coveredWidth(area.right - 1) : 1)
{
}

const unsigned char* CoverageProduct::row(int y)
{
    const int width = _area.width();
    const double height = _rect.coveredHeight(y);
    const unsigned char* mask = _mask ? _mask->pixel(_area.left, y) : nullptr;
    unsigned char* row = nullptr;
    if (_shape) {
        row = _shape->pixel(_area.left, y);
        if (mask)
            multiplyRow(row, mask, width);
    } else {
        if (height == 1 && _left == 1 && _right == 1)
            return mask;
        _row.assign(mask, mask + width);
        row = _row.data();
    }

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

const Coverage& CoverageProduct::all(Scratch& memory)
{
    const bool isPart = !_rect.contains(_area);
    if (!_shape && !isPart)
        return *_mask;
    if (!_shape) {
        _all.emplace(memory, _area);
        for (int y = _area.top; y < _area.bottom; ++y)
            std::memcpy(_all->pixel(_area.left, y), row(y), std::size_t(_area.width()));
        return *_all;
    }
    for (int y = _area.top; (isPart || _mask) && y < _area.bottom; ++y)
        row(y);
    return *_shape;
}
