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
    // Callers use zeros to turn the shadow off; drawn, it would darken the antialiased edges of every paint.
    if (offset.width == 0 && offset.height == 0 && shadow->blur == 0)
        shadow.reset();
}
