#include "CoreGraphics/context/CGContextInternal.h"

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
        const MaskRef cast = shadowCaster.cast(*state.shadow, shape, paint, state.clip.bounds());
        compositor.paint(cast.view, state.clip, state.shadow->paint(paint), state.blendMode);
    }
    compositor.paint(shape, state.clip, paint, state.blendMode);
}

void CGContext::paint(const MaskView& mask, const Paint& paint)
{
    if (!admits(paint))
        return;
    const GraphicsState& state = this->state();
    if (state.shadow && !paint.isTransparent()) {
        const MaskView cast = shadowCaster.cast(*state.shadow, mask, state.clip.bounds());
        compositor.paint(cast, state.clip, state.shadow->paint(paint), state.blendMode);
    }
    compositor.paint(mask, state.clip, paint, state.blendMode);
}

void CGContext::paint(const Shape& shape, const StateColor& color)
{
    if (!color.paintsNothing)
        paint(shape, Paint(color.color, state().alpha));
}
