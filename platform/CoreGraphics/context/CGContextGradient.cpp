#include "CoreGraphics/context/CGContextInternal.h"

#include "CoreGraphics/CGAffineTransformInternal.h"

namespace {

/// Maps pixel indices to user space: (0, 0) is the centre of the pixel in column 0 of row 0.
CGAffineTransform userFromPixel(const CGContext& context)
{
    const CGAffineTransform pixelFromIndex{1, 0, 0, 1, 0.5, 0.5};
    return CGAffineTransformConcat(
        CGAffineTransformConcat(pixelFromIndex, context.space().flip()), context.state().userFromBase());
}

bool canDraw(CGContextRef context, CGGradientRef gradient)
{
    return context && gradient && inverse(context->state().baseFromUser);
}

void draw(CGContextRef context, CGGradientRef gradient, const std::optional<GradientGeometry>& geometry)
{
    const GraphicsState& state = context->state();
    if (!geometry || !context->admits(state.blendMode))
        return;
    context->compositor.paint(GradientRows(*gradient, *geometry), state.clip, state.alpha, state.blendMode);
}

} // namespace

void CGContextDrawLinearGradient(CGContextRef context, CGGradientRef gradient, CGPoint startPoint,
    CGPoint endPoint, CGGradientDrawingOptions options)
{
    if (canDraw(context, gradient))
        draw(context, gradient,
            GradientGeometry::linear(startPoint, endPoint, options, userFromPixel(*context)));
}

void CGContextDrawRadialGradient(CGContextRef context, CGGradientRef gradient, CGPoint startCenter,
    CGFloat startRadius, CGPoint endCenter, CGFloat endRadius, CGGradientDrawingOptions options)
{
    if (canDraw(context, gradient))
        draw(context, gradient,
            GradientGeometry::radial(
                startCenter, startRadius, endCenter, endRadius, options, userFromPixel(*context)));
}
