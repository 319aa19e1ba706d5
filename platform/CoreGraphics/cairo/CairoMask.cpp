#include "CoreGraphics/cairo/CairoShape.h"
#include "CoreGraphics/cairo/CairoSource.h"
#include "CoreGraphics/cairo/CairoSurface.h"
#include "CoreGraphics/raster/PathRaster.h"

#include <concepts>

namespace {

/// Draws a shape in base space onto a mask, with the source that `setSource` sets.
template <std::invocable<cairo_t*> SetSource>
void drawOnMask(const Shape& shape, const MutableMaskView& mask, SetSource setSource)
{
    const auto surface = makeSurface(mask);
    const auto cairo = makeBaseSpaceCairo(surface.get(), mask.area, shape.space);
    setSource(cairo.get());
    drawShape(cairo.get(), shape);
    cairo_surface_flush(surface.get());
}

} // namespace

void rasterizePath(const Shape& shape, const MutableMaskView& mask)
{
    drawOnMask(shape, mask, [](cairo_t* cairo) { cairo_set_source_rgba(cairo, 0, 0, 0, 1); });
}

void rasterizePixels(const Shape& shape, const PixelSource& source, const MutableMaskView& mask)
{
    drawOnMask(shape, mask, [&](cairo_t* cairo) { cairo_set_source(cairo, source.pattern.get()); });
}
