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
    // That is what callers mean by it. It would darken the edges of everything they paint from then on.
    if (offset.width == 0 && offset.height == 0 && shadow->blur == 0)
        shadow.reset();
}
