#include "CoreGraphics/cairo/CairoSurface.h"

namespace {

/// Greatest distance of a flattened curve from the exact one, in pixels. With cairo's default of 0.1 circles
/// are visibly too small.
constexpr double kDeviceTolerance = 0.02;

cairo_matrix_t areaFromBase(const PixelRect& area, const PixelSpace& space)
{
    const CGAffineTransform flip = space.flip();
    return {flip.a, flip.b, flip.c, flip.d, flip.tx - area.left, flip.ty - area.top};
}

} // namespace

CairoPtr<cairo_surface_t> makeSurface(
    const unsigned char* data, int bytesPerRow, cairo_format_t format, const PixelRect& area)
{
    // Surfaces over read-only memory are used only as sources, so the const_cast is safe.
    return CairoPtr<cairo_surface_t>(cairo_image_surface_create_for_data(
        const_cast<unsigned char*>(data), format, area.width(), area.height(), bytesPerRow));
}

CairoPtr<cairo_surface_t> makeSurface(const MaskView& mask)
{
    return makeSurface(mask.data, mask.bytesPerRow, CAIRO_FORMAT_A8, mask.area);
}

CairoPtr<cairo_t> makeBaseSpaceCairo(cairo_surface_t* surface, const PixelRect& area, const PixelSpace& space)
{
    CairoPtr<cairo_t> cairo(cairo_create(surface));
    const cairo_matrix_t matrix = areaFromBase(area, space);
    cairo_set_matrix(cairo.get(), &matrix);
    cairo_set_tolerance(cairo.get(), kDeviceTolerance);
    return cairo;
}

CairoPtr<cairo_pattern_t> makePixelPattern(
    cairo_surface_t* surface, const PixelRect& area, const PixelSpace& space)
{
    CairoPtr<cairo_pattern_t> pattern(cairo_pattern_create_for_surface(surface));
    const cairo_matrix_t matrix = areaFromBase(area, space);
    cairo_pattern_set_matrix(pattern.get(), &matrix);
    cairo_pattern_set_filter(pattern.get(), CAIRO_FILTER_NEAREST);
    return pattern;
}
