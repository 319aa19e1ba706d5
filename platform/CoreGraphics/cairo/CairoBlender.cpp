#include "CoreGraphics/cairo/CairoBlender.h"

#include "CoreGraphics/cairo/CairoShape.h"
#include "CoreGraphics/cairo/CairoSource.h"
#include "CoreGraphics/cairo/CairoSurface.h"

#include <cstring>
#include <optional>

namespace {

cairo_format_t cairoFormat(CGImageAlphaInfo alphaInfo)
{
    switch (alphaInfo) {
    case kCGImageAlphaOnly:
        return CAIRO_FORMAT_A8;
    case kCGImageAlphaNoneSkipLast:
        return CAIRO_FORMAT_RGB24;
    default:
        return CAIRO_FORMAT_ARGB32;
    }
}

/// How cairo blends in a mode.
struct Effect {
    cairo_operator_t blend;
    /// Whether cairo blends a shape directly, as a lerp by its coverage. False where it would erase pixels
    /// outside or be wrong at the edges, and for sourceAtop, where it would be three times slower.
    bool isLerp;
};

std::optional<Effect> effectOf(CGBlendMode mode)
{
    switch (mode) {
    case kCGBlendModeNormal:
        return Effect{CAIRO_OPERATOR_OVER, true};
    case kCGBlendModeMultiply:
        return Effect{CAIRO_OPERATOR_MULTIPLY, true};
    case kCGBlendModeScreen:
        return Effect{CAIRO_OPERATOR_SCREEN, true};
    case kCGBlendModeClear:
        return Effect{CAIRO_OPERATOR_CLEAR, true};
    case kCGBlendModeCopy:
        return Effect{CAIRO_OPERATOR_SOURCE, true};
    case kCGBlendModeSourceIn:
        return Effect{CAIRO_OPERATOR_IN, false};
    case kCGBlendModeSourceOut:
        return Effect{CAIRO_OPERATOR_OUT, false};
    case kCGBlendModeSourceAtop:
        return Effect{CAIRO_OPERATOR_ATOP, false};
    case kCGBlendModeDestinationOver:
        return Effect{CAIRO_OPERATOR_DEST_OVER, true};
    case kCGBlendModeDestinationOut:
        return Effect{CAIRO_OPERATOR_DEST_OUT, true};
    case kCGBlendModeXOR:
        return Effect{CAIRO_OPERATOR_XOR, true};
    case kCGBlendModeOverlay:
        return Effect{CAIRO_OPERATOR_OVERLAY, false};
    case kCGBlendModeDarken:
        return Effect{CAIRO_OPERATOR_DARKEN, false};
    case kCGBlendModeLighten:
        return Effect{CAIRO_OPERATOR_LIGHTEN, false};
    case kCGBlendModeColorDodge:
        return Effect{CAIRO_OPERATOR_COLOR_DODGE, false};
    case kCGBlendModeColorBurn:
        return Effect{CAIRO_OPERATOR_COLOR_BURN, false};
    case kCGBlendModeSoftLight:
        return Effect{CAIRO_OPERATOR_SOFT_LIGHT, false};
    case kCGBlendModeHardLight:
        return Effect{CAIRO_OPERATOR_HARD_LIGHT, false};
    case kCGBlendModeDifference:
        return Effect{CAIRO_OPERATOR_DIFFERENCE, false};
    case kCGBlendModeExclusion:
        return Effect{CAIRO_OPERATOR_EXCLUSION, false};
    case kCGBlendModeHue:
        return Effect{CAIRO_OPERATOR_HSL_HUE, false};
    case kCGBlendModeSaturation:
        return Effect{CAIRO_OPERATOR_HSL_SATURATION, false};
    case kCGBlendModeColor:
        return Effect{CAIRO_OPERATOR_HSL_COLOR, false};
    case kCGBlendModeLuminosity:
        return Effect{CAIRO_OPERATOR_HSL_LUMINOSITY, false};
    case kCGBlendModePlusLighter:
        return Effect{CAIRO_OPERATOR_ADD, false};
    }
    return std::nullopt;
}

/// Releases the source: a pattern must not outlive its pixels.
void dropSource(cairo_t* cairo)
{
    cairo_set_source_rgb(cairo, 0, 0, 0);
}

} // namespace

std::unique_ptr<PixelBlender> makePixelBlender(
    const PixelMemory& memory, const PixelRect& area, const PixelSpace& space, CGImageAlphaInfo alphaInfo)
{
    return std::make_unique<CairoBlender>(memory, area, space, cairoFormat(alphaInfo));
}

bool isOffered(CGBlendMode mode)
{
    return effectOf(mode).has_value();
}

void CairoBlender::blend(const Stencil& stencil, const PixelRect& area, const PixelRect& clip,
    const Paint& paint, CGBlendMode mode)
{
    const Effect effect = *effectOf(mode); // the graphics state holds only supported modes
    if (effect.isLerp) {
        const CairoTarget::Drawing drawing(_target, area, clip);
        cairo_set_operator(drawing.cairo(), effect.blend);
        setSource(drawing.cairo(), paint);
        paintThrough(stencil, drawing.cairo());
        if (!paint.isSolid())
            dropSource(drawing.cairo());
        return;
    }
    // Apply the mode to a whole copy of the pixels, then replace the covered pixels by the copy.
    const auto painted = makePainted(area, paint, effect.blend);
    const auto source = makePixelPattern(painted.get(), area, _target.space());
    const CairoTarget::Drawing drawing(_target, area, area);
    cairo_set_operator(drawing.cairo(), CAIRO_OPERATOR_SOURCE);
    cairo_set_source(drawing.cairo(), source.get());
    paintThrough(stencil, drawing.cairo());
    dropSource(drawing.cairo());
}

Paint CairoBlender::makePaint(const PixelMemory& pixels, const PixelRect& area) const
{
    const cairo_format_t format = pixels.isAlphaOnly ? CAIRO_FORMAT_A8 : CAIRO_FORMAT_ARGB32;
    const auto surface = makeSurface(pixels.data, int(pixels.bytesPerRow), format, area);
    return ::makePaint(makePixelPattern(surface.get(), area, _target.space()));
}

void CairoBlender::paintThrough(const Stencil& stencil, cairo_t* cairo) const
{
    if (stencil.shape)
        return drawShape(cairo, *stencil.shape);
    const auto surface = makeSurface(*stencil.mask);
    const auto mask = makePixelPattern(surface.get(), stencil.mask->area, _target.space());
    cairo_mask(cairo, mask.get());
}

CairoPtr<cairo_surface_t> CairoBlender::makePainted(
    const PixelRect& area, const Paint& paint, cairo_operator_t effect)
{
    const PixelMemory& memory = _target.memory();
    const Scratch::Rows copy = _paintedMemory.make(area, int(memory.bytesPerPixel()));
    const std::size_t rowSize = std::size_t(area.width()) * memory.bytesPerPixel();
    for (int y = area.top; y < area.bottom; ++y)
        std::memcpy(copy.row(y - area.top), _target.pixel(area.left, y), rowSize);

    auto surface = makeSurface(copy.data, copy.bytesPerRow, _target.format(), area);
    const auto cairo = makeBaseSpaceCairo(surface.get(), area, _target.space());
    cairo_set_operator(cairo.get(), effect);
    setSource(cairo.get(), paint);
    cairo_paint(cairo.get());
    cairo_surface_flush(surface.get());
    return surface;
}
