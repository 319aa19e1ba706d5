#include "CoreGraphics/CGContextText.h"

#include "CoreGraphics/cairo/CGContextInternal.h"

namespace {

CGAffineTransform baseFromText(const GraphicsState& state)
{
    return CGAffineTransformConcat(state.textMatrix, state.baseFromUser);
}

/// Fills the path of base space that `context` has for text.
void fillTextPath(CGContextRef context, const CGColorRGBA& color)
{
    const Shape shape{.path = context->textPath.get(), .isAntialiased = context->state().isAntialiased};
    context->paint(shape, Paint(color, context->state().alpha));
}

} // namespace

void CGContextSetTextMatrix(CGContextRef context, CGAffineTransform matrix)
{
    if (context)
        context->state().textMatrix = matrix;
}

CGAffineTransform CGContextGetTextMatrix(CGContextRef context)
{
    return context ? context->state().textMatrix : CGAffineTransformIdentity;
}

void CGContextSetTextPosition(CGContextRef context, CGFloat x, CGFloat y)
{
    if (!context)
        return;
    context->state().textMatrix.tx = x;
    context->state().textMatrix.ty = y;
}

CGPoint CGContextGetTextPosition(CGContextRef context)
{
    const CGAffineTransform matrix = CGContextGetTextMatrix(context);
    return {matrix.tx, matrix.ty};
}

void CGContextFillOutlines(CGContextRef context, const OutlineSource& outlines, const CGColorRGBA& color)
{
    context->textPath->clear();
    outlines.addOutlines(context->textPath.get(), baseFromText(context->state()));
    fillTextPath(context, color);
}

void CGContextFillOutline(CGContextRef context, CGPathRef outline, const CGAffineTransform& textFromOutline,
    const CGColorRGBA& color)
{
    const CGAffineTransform baseFromOutline =
        CGAffineTransformConcat(textFromOutline, baseFromText(context->state()));
    context->textPath->clear();
    CGPathAddPath(context->textPath.get(), &baseFromOutline, outline);
    fillTextPath(context, color);
}

void CGContextDrawGlyphImage(CGContextRef context, CGRect rect, CGImageRef image)
{
    CGContextSaveGState(context);
    CGContextConcatCTM(context, context->state().textMatrix);
    CGContextDrawImage(context, rect, image);
    CGContextRestoreGState(context);
}
