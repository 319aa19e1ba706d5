#include "CoreGraphics/raster/Coverage.h"

#include "CoreGraphics/cairo/CairoShape.h"
#include "CoreGraphics/raster/CenterRaster.h"
#include "CoreGraphics/raster/SolidRows.h"

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

CairoPtr<cairo_surface_t> makeSurface(const CoverageView& coverage)
{
    // cairo only reads them.
    return CairoPtr<cairo_surface_t>(
        cairo_image_surface_create_for_data(const_cast<unsigned char*>(coverage.data), CAIRO_FORMAT_A8,
            coverage.area.width(), coverage.area.height(), coverage.bytesPerRow));
}

Coverage::Coverage(Scratch& memory, const PixelRect& area)
    : _area(area)
    , _pixels(memory.make(CAIRO_FORMAT_A8, area))
{
    std::memset(_pixels.data, 0, std::size_t(_pixels.bytesPerRow) * std::size_t(area.height()));
}

void Coverage::draw(const Shape& shape, int height)
{
    if (shape.fillsCenters())
        return fillCenters(*shape.path, shape.isEvenOdd, height, *this);
    const Paint opaque({0, 0, 0, 1}, 1);
    if (shape.rectangles.empty())
        return draw(shape, opaque, height);
    // As if painted onto pixels that have only alpha.
    SolidRows rows({_pixels.data, std::size_t(_pixels.bytesPerRow), true}, _area, opaque.bytes(), 255);
    RectangleRaster().run(shape.rectangles, _area, rows);
}

void Coverage::draw(const Shape& shape, const Paint& paint, int height)
{
    const auto cairo = makeBaseSpaceCairo(_pixels.surface.get(), _area, height);
    paint.setSource(cairo.get());
    if (shape.fillsCenters()) {
        Scratch memory;
        Coverage centers(memory, _area);
        centers.draw(shape, height);
        const auto surface = makeSurface(centers.view());
        const auto mask = makePixelPattern(surface.get(), _area, height);
        cairo_mask(cairo.get(), mask.get());
    } else {
        drawShape(cairo.get(), shape, height);
    }
    cairo_surface_flush(_pixels.surface.get());
}

void Coverage::copy(const CoverageView& other)
{
    const PixelRect common = _area.intersection(other.area);
    for (int y = common.top; y < common.bottom && !common.isEmpty(); ++y)
        std::memcpy(pixel(common.left, y), other.pixel(common.left, y), std::size_t(common.width()));
}

void Coverage::multiply(const CoverageView& other)
{
    for (int y = _area.top; y < _area.bottom; ++y)
        multiplyRow(pixel(_area.left, y), other.pixel(_area.left, y), _area.width());
}

CoverageProduct::CoverageProduct(const PixelRect& area, const AreaRect& rect, const CoverageView& first,
    const CoverageView* second, std::vector<unsigned char>& memory)
    : _area(area)
    , _rect(rect)
    , _first(first)
    , _second(second)
    , _left(rect.coveredWidth(area.left))
    , _right(area.width() > 1 ? rect.coveredWidth(area.right - 1) : 1)
    , _row(memory)
{
}

const unsigned char* CoverageProduct::row(int y)
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

CoverageView CoverageProduct::all(Scratch& memory)
{
    if (!_second && _rect.contains(_area))
        return _first;
    Coverage product(memory, _area);
    for (int y = _area.top; y < _area.bottom; ++y)
        std::memcpy(product.pixel(_area.left, y), row(y), std::size_t(_area.width()));
    return product.view();
}
