#include "CoreGraphics/raster/Scratch.h"

namespace {

/// Pixels from the edge of a curve. cairo's own 0.1 makes circles visibly small.
constexpr double kTolerance = 0.02;

} // namespace

Scratch::Pixels Scratch::make(cairo_format_t format, const PixelRect& area)
{
    const int bytesPerRow = cairo_format_stride_for_width(format, area.width());
    const std::size_t size = std::size_t(bytesPerRow) * std::size_t(area.height());
    if (_size < size) {
        _memory = std::make_unique_for_overwrite<unsigned char[]>(size);
        _size = size;
    }
    return {CairoPtr<cairo_surface_t>(cairo_image_surface_create_for_data(
                _memory.get(), format, area.width(), area.height(), bytesPerRow)),
        _memory.get(), bytesPerRow};
}

CairoPtr<cairo_t> makeBaseSpaceCairo(cairo_surface_t* surface, const PixelRect& area, int height)
{
    CairoPtr<cairo_t> cairo(cairo_create(surface));
    const cairo_matrix_t pixelsFromBase{1, 0, 0, -1, double(-area.left), double(height - area.top)};
    cairo_set_matrix(cairo.get(), &pixelsFromBase);
    cairo_set_tolerance(cairo.get(), kTolerance);
    return cairo;
}

CairoPtr<cairo_pattern_t> makePixelPattern(cairo_surface_t* surface, const PixelRect& area, int height)
{
    CairoPtr<cairo_pattern_t> pattern(cairo_pattern_create_for_surface(surface));
    const cairo_matrix_t pixelsFromBase{1, 0, 0, -1, double(-area.left), double(height - area.top)};
    cairo_pattern_set_matrix(pattern.get(), &pixelsFromBase);
    cairo_pattern_set_filter(pattern.get(), CAIRO_FILTER_NEAREST);
    return pattern;
}
