#include "CoreGraphics/cairo/CairoBlender.h"

#include "CoreGraphics/cairo/CairoShape.h"
#include "CoreGraphics/cairo/CairoSource.h"
#include "CoreGraphics/cairo/CairoSurface.h"

namespace {

cairo_format_t formatOf(PixelLayout layout)
{
    switch (layout) {
    case PixelLayout::Alpha:
        return CAIRO_FORMAT_A8;
    case PixelLayout::RGBX:
        return CAIRO_FORMAT_RGB24;
    default:
        return CAIRO_FORMAT_ARGB32;
    }
}

/// cairo blends a shape in these modes as a lerp by its coverage. In others it would erase pixels outside, or
/// be wrong at the edges.
cairo_operator_t operatorOf(CGBlendMode mode)
{
    switch (mode) {
    case kCGBlendModeClear:
        return CAIRO_OPERATOR_CLEAR;
    case kCGBlendModeCopy:
        return CAIRO_OPERATOR_SOURCE;
    case kCGBlendModeDestinationOut:
        return CAIRO_OPERATOR_DEST_OUT;
    default:
        return CAIRO_OPERATOR_OVER;
    }
}

/// Releases the source: a pattern must not outlive its pixels.
void dropSource(cairo_t* cairo)
{
    cairo_set_source_rgb(cairo, 0, 0, 0);
}

} // namespace

std::unique_ptr<PixelBlender> makePixelBlender(
    const PixelMemory& memory, const PixelRect& area, const PixelSpace& space)
{
    return std::make_unique<CairoBlender>(memory, area, space, formatOf(memory.layout));
}

void CairoBlender::blend(const Stencil& stencil, const PixelRect& area, const PixelRect& clip,
    const Paint& paint, CGBlendMode mode)
{
    const CairoTarget::Drawing drawing(_target, area, clip);
    cairo_set_operator(drawing.cairo(), operatorOf(mode));
    setSource(drawing.cairo(), paint);
    paintThrough(stencil, drawing.cairo());
    if (!paint.isSolid())
        dropSource(drawing.cairo());
}

PixelMemory CairoBlender::read(const Paint& paint, const PixelRect& area)
{
    const PixelLayout layout = _target.memory().isAlphaOnly() ? PixelLayout::Alpha : PixelLayout::RGBA;
    const Scratch::Rows rows = _readMemory.make(area, int(_target.memory().bytesPerPixel()));
    const auto surface = makeSurface(rows.data, rows.bytesPerRow, formatOf(layout), area);
    const auto cairo = makeBaseSpaceCairo(surface.get(), area, _target.space());
    setSource(cairo.get(), paint);
    cairo_set_operator(cairo.get(), CAIRO_OPERATOR_SOURCE);
    cairo_paint(cairo.get());
    cairo_surface_flush(surface.get());
    return {rows.data, std::size_t(rows.bytesPerRow), layout};
}

Paint CairoBlender::makePaint(const PixelMemory& pixels, const PixelRect& area) const
{
    const auto surface = makeSurface(pixels.data, int(pixels.bytesPerRow), formatOf(pixels.layout), area);
    return ::makePaint(makePixelPattern(surface.get(), area, _target.space()), {pixels, area});
}

void CairoBlender::paintThrough(const Stencil& stencil, cairo_t* cairo) const
{
    if (stencil.shape)
        return drawShape(cairo, *stencil.shape);
    const auto surface = makeSurface(*stencil.mask);
    const auto mask = makePixelPattern(surface.get(), stencil.mask->area, _target.space());
    cairo_mask(cairo, mask.get());
}
