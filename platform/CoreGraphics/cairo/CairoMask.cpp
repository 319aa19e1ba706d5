#include "CoreGraphics/cairo/CairoShape.h"
#include "CoreGraphics/cairo/CairoSurface.h"
#include "CoreGraphics/raster/PathRaster.h"

void rasterizePath(const Shape& shape, const MutableMaskView& mask)
{
    const auto surface = makeSurface(mask);
    const auto cairo = makeBaseSpaceCairo(surface.get(), mask.area, shape.space);
    cairo_set_source_rgba(cairo.get(), 0, 0, 0, 1);
    drawShape(cairo.get(), shape);
    cairo_surface_flush(surface.get());
}
