#include "CoreGraphics/cairo/Coverage.h"

#include "CoreGraphics/cairo/CairoShape.h"
#include "CoreGraphics/cairo/SolidRows.h"

#include <cstring>

namespace {

void multiplyRow(unsigned char* __restrict row, const unsigned char* __restrict other, int count)
{
    for (int i = 0; i < count; ++i) {
        const auto product = std::uint16_t(row[i] * other[i] + 128);
        row[i] = std::uint8_t(std::uint16_t(product + (product >> 8)) >> 8);
    }
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
