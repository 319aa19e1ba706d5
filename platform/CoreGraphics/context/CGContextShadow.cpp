#include "CoreGraphics/context/CGContextInternal.h"

void CGContextSetShadowWithColor(CGContextRef context, CGSize offset, CGFloat blur, CGColorRef color)
{
    if (!context)
        return;
    std::optional<Shadow>& shadow = context->state().shadow;
    shadow.reset();
    if (color && color->rgba().clamped().alpha > 0)
        shadow.emplace(offset, blur, color->rgba());
}

void CGContextSetShadow(CGContextRef context, CGSize offset, CGFloat blur)
{
    if (!context)
        return;
    std::optional<Shadow>& shadow = context->state().shadow;
    shadow.emplace(offset, blur, CGColorRGBA{0, 0, 0, 1.0 / 3});
    // As callers mean it: otherwise the edges of all they paint from then on would be a little darker.
    if (offset.width == 0 && offset.height == 0 && shadow->blur == 0)
        shadow.reset();
}

PixelRect CGContext::paintedPixels() const
{
    const PixelRect& bounds = state().clip.bounds();
    if (!state().shadow || bounds.isEmpty())
        return bounds;
    return bounds.united(state().shadow->casting(bounds));
}

void CGContext::paint(const Shape& shape, const Paint& paint)
{
    if (!admits(paint))
        return;
    const GraphicsState& state = this->state();
    if (state.shadow && !paint.isTransparent()) {
        const LentCoverage cast =
            shadowCaster.cast(*state.shadow, shape, paint, state.clip.bounds(), height());
        compositor.paint(cast.view, state.clip, state.shadow->paint(paint), state.blendMode);
    }
    compositor.paint(shape, state.clip, paint, state.blendMode);
}

void CGContext::paint(const CoverageView& coverage, const Paint& paint)
{
    if (!admits(paint))
        return;
    const GraphicsState& state = this->state();
    if (state.shadow && !paint.isTransparent()) {
        const CoverageView cast = shadowCaster.cast(*state.shadow, coverage, state.clip.bounds());
        compositor.paint(cast, state.clip, state.shadow->paint(paint), state.blendMode);
    }
    compositor.paint(coverage, state.clip, paint, state.blendMode);
}
