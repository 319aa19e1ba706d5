#include "CoreGraphics/cairo/CairoSurface.h"

namespace {

/// Greatest distance of a flattened curve from the exact one, in pixels. With cairo's default of 0.1 circles
/// are visibly too small.
constexpr double kDeviceTolerance = 0.02;

} // namespace

CairoPtr<cairo_surface_t> makeSurface(const MutableMaskView& mask)
{
    return CairoPtr<cairo_surface_t>(cairo_image_surface_create_for_data(
        mask.data, CAIRO_FORMAT_A8, mask.area.width(), mask.area.height(), mask.bytesPerRow));
}

CairoPtr<cairo_t> makeBaseSpaceCairo(cairo_surface_t* surface, const PixelRect& area, const PixelSpace& space)
{
    CairoPtr<cairo_t> cairo(cairo_create(surface));
    const CGAffineTransform flip = space.flip();
    const cairo_matrix_t areaFromBase{
        flip.a, flip.b, flip.c, flip.d, flip.tx - area.left, flip.ty - area.top};
    cairo_set_matrix(cairo.get(), &areaFromBase);
    cairo_set_tolerance(cairo.get(), kDeviceTolerance);
    return cairo;
}
