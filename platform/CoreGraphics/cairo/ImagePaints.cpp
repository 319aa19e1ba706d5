#include "CoreGraphics/cairo/ImagePaints.h"

#include "CoreGraphics/CGAffineTransformInternal.h"
#include "CoreGraphics/cairo/CairoShape.h"
#include "CoreGraphics/cairo/CairoSource.h"
#include "CoreGraphics/cairo/CairoSurface.h"

#include <algorithm>
#include <cmath>

namespace {

/// In pixels. With a larger image or destination cairo fails to draw an image or misplaces it.
constexpr std::size_t kMaxSide = 16384;
constexpr double kMaxOffset = 16384;
/// Pixels of the image per drawn pixel along an axis. cairo does not average more of them.
constexpr double kMaxShrinking = 16;
/// The accepted error of cairo's sample position in pixels of the image: two steps of 255 between black and
/// white.
constexpr double kTolerance = 1.0 / 128;

cairo_filter_t cairoFilter(ImageFilter filter)
{
    static constexpr cairo_filter_t kFilters[] = {
        CAIRO_FILTER_NEAREST, CAIRO_FILTER_BILINEAR, CAIRO_FILTER_GOOD};
    return kFilters[std::size_t(filter)];
}

/// True when cairo places the image accurately everywhere in `area`: it rounds the transform to 16 fractional
/// bits, so that errors grow with the distance from the origin.
bool isExactInCairo(const CGImage& drawable, const CGAffineTransform& imageFromPixel, const PixelRect& area)
{
    const CGAffineTransform& t = imageFromPixel;
    const auto error = [](double factor) { return std::abs(factor - std::round(factor * 65536) / 65536); };
    const double x = std::max(std::abs(area.left), std::abs(area.right));
    const double y = std::max(std::abs(area.top), std::abs(area.bottom));
    return std::max(drawable.width, drawable.height) <= kMaxSide
        && std::max(std::hypot(t.a, t.c), std::hypot(t.b, t.d)) <= kMaxShrinking
        && std::max(std::abs(t.tx), std::abs(t.ty)) <= kMaxOffset
        && std::max(error(t.a) * x + error(t.c) * y, error(t.b) * x + error(t.d) * y) <= kTolerance;
}

cairo_format_t formatOf(const CGImage& drawable)
{
    switch (drawable.format) {
    case CGPixelFormat::Alpha:
        return CAIRO_FORMAT_A8;
    case CGPixelFormat::RGBX:
        return CAIRO_FORMAT_RGB24;
    default:
        return CAIRO_FORMAT_ARGB32;
    }
}

} // namespace

std::optional<Paint> ImagePaints::makePaint(const CGImage& drawable, const CGAffineTransform& baseFromImage,
    ImageFilter filter, const PixelRect& area, const PixelSpace& space)
{
    const auto imageFromBase = inverse(baseFromImage);
    if (!imageFromBase || !isInvertible(baseFromImage) || !isInvertible(*imageFromBase))
        return std::nullopt;
    const CGAffineTransform imageFromPixel = CGAffineTransformConcat(space.flip(), *imageFromBase);
    if (isExactInCairo(drawable, imageFromPixel, area))
        return makeScaled(drawable, *imageFromBase, filter);
    return makeSampled(drawable, ImageSampler(drawable, imageFromPixel, filter), area, space);
}

cairo_surface_t* ImagePaints::surfaceOf(const CGImage& drawable)
{
    if (_lastSerial != drawable.serial()) {
        _lastSurface = makeSurface(drawable.bytes(), int(drawable.bytesPerRow), formatOf(drawable),
            {0, 0, int(drawable.width), int(drawable.height)});
        _lastSerial = drawable.serial();
    }
    return _lastSurface.get();
}

Paint ImagePaints::makeScaled(
    const CGImage& drawable, const CGAffineTransform& imageFromBase, ImageFilter filter)
{
    CairoPtr<cairo_pattern_t> pattern(cairo_pattern_create_for_surface(surfaceOf(drawable)));
    const CGAffineTransform& t = imageFromBase;
    const cairo_matrix_t matrix{t.a, t.b, t.c, t.d, t.tx, t.ty};
    cairo_pattern_set_matrix(pattern.get(), &matrix);
    cairo_pattern_set_extend(pattern.get(), CAIRO_EXTEND_PAD);
    cairo_pattern_set_filter(pattern.get(), cairoFilter(filter));
    return ::makePaint(std::move(pattern));
}

Paint ImagePaints::makeSampled(
    const CGImage& drawable, ImageSampler sampler, const PixelRect& area, const PixelSpace& space)
{
    const cairo_format_t format = formatOf(drawable);
    const Scratch::Rows rows = _sampledMemory.make(area, format == CAIRO_FORMAT_A8 ? 1 : 4);
    for (int y = area.top; y < area.bottom; ++y)
        sampler.fill(area.left, y, area.width(), rows.row(y - area.top));
    const auto surface = makeSurface(rows.data, rows.bytesPerRow, format, area);
    return ::makePaint(makePixelPattern(surface.get(), area, space));
}

Paint ImagePaints::makeFaded(
    const Paint& paint, CGFloat alpha, const PixelRect& area, const PixelSpace& space)
{
    const Scratch::Rows faded = _fadedMemory.make(area, 4);
    const auto surface = makeSurface(faded.data, faded.bytesPerRow, CAIRO_FORMAT_ARGB32, area);
    const auto cairo = makeBaseSpaceCairo(surface.get(), area, space);
    setSource(cairo.get(), paint);
    cairo_set_operator(cairo.get(), CAIRO_OPERATOR_SOURCE);
    cairo_paint(cairo.get());
    // In two steps: with an alpha, SOURCE would blend with the previous content of the memory.
    cairo_set_source_rgba(cairo.get(), 0, 0, 0, alpha);
    cairo_set_operator(cairo.get(), CAIRO_OPERATOR_DEST_IN);
    cairo_paint(cairo.get());
    cairo_surface_flush(surface.get());
    return ::makePaint(makePixelPattern(surface.get(), area, space));
}
