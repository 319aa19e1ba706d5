#include "CoreGraphics/context/CGContextText.h"

#include "CoreGraphics/context/CGContextInternal.h"
#include "CoreGraphics/raster/SmallShape.h"

#include <algorithm>
#include <cmath>

namespace {

CGAffineTransform baseFromText(CGContextRef context)
{
    return CGAffineTransformConcat(context->textMatrix, context->state().baseFromUser);
}

Shape textShape(CGContextRef context)
{
    return {.space = context->space(),
        .path = context->textPath.get(),
        .isAntialiased = context->state().isAntialiased};
}

/// In pixels. The title of a window takes about a tenth of this; of longer lines only the visible part is
/// drawn.
constexpr double kMaxLabelPixels = 1 << 18;
constexpr double kMaxLabelSide = 4096;

/// True when text with these bounds in text space is small enough for its whole mask to be drawn.
bool isLabel(CGRect reach, const CGAffineTransform& baseFromText)
{
    const CGSize size = CGRectApplyAffineTransform(reach, baseFromText).size;
    return std::max(size.width, size.height) <= kMaxLabelSide && size.width * size.height <= kMaxLabelPixels
        && std::max(std::abs(baseFromText.tx), std::abs(baseFromText.ty)) < kFarthestPixel;
}

/// The mask of a label, either cached or drawn into this context's memory.
MaskRef maskOf(CGContextRef context, const OutlineSource& outlines, const CGAffineTransform& baseFromText)
{
    thread_local MaskKey key;
    thread_local std::vector<double> description;
    const double left = std::floor(baseFromText.tx);
    const double bottom = std::floor(baseFromText.ty);
    description.assign({baseFromText.a, baseFromText.b, baseFromText.c, baseFromText.d,
        baseFromText.tx - left, baseFromText.ty - bottom});
    outlines.describe(description);
    key.begin(MaskKind::Text);
    key.add(context->state().isAntialiased);
    key.add(std::span<const double>(description));
    const PixelPoint origin{int(left), int(context->space().flipped(bottom))};
    return MaskCache::shared().mask(key.bytes(), origin, [&] {
        context->textPath->clear();
        // Draws the whole label, because a later draw may show more of it.
        outlines.addOutlines(context->textPath.get(), baseFromText, CGRectInfinite);
        const Shape shape = textShape(context);
        const PixelRect area = shape.pixels(kAllPixels);
        if (area.isEmpty()) // only white space
            return MaskView{};
        MaskBuffer mask(context->maskMemory, area);
        mask.draw(shape);
        return mask.view();
    });
}

} // namespace

void CGContextSetTextMatrix(CGContextRef context, CGAffineTransform matrix)
{
    if (context)
        context->textMatrix = matrix;
}

CGAffineTransform CGContextGetTextMatrix(CGContextRef context)
{
    return context ? context->textMatrix : CGAffineTransformIdentity;
}

void CGContextSetTextPosition(CGContextRef context, CGFloat x, CGFloat y)
{
    if (!context)
        return;
    context->textMatrix.tx = x;
    context->textMatrix.ty = y;
}

CGPoint CGContextGetTextPosition(CGContextRef context)
{
    const CGAffineTransform matrix = CGContextGetTextMatrix(context);
    return {matrix.tx, matrix.ty};
}

void CGContextFillOutlines(CGContextRef context, const OutlineSource& outlines, const CGColorRGBA& color)
{
    const GraphicsState& state = context->state();
    const CGAffineTransform transform = baseFromText(context);
    const Paint paint(color, state.alpha);
    if (isLabel(outlines.reach(), transform))
        return context->paint(maskOf(context, outlines, transform).view, paint);
    context->textPath->clear();
    // One more pixel on each side, because edges may round to the neighbouring pixel.
    const CGRect visible = context->space().baseRect(context->paintedPixels().grown(1));
    outlines.addOutlines(context->textPath.get(), transform, visible);
    context->paint(textShape(context), paint);
}

void CGContextFillOutline(CGContextRef context, CGPathRef outline, const CGAffineTransform& textFromOutline,
    const CGColorRGBA& color)
{
    const GraphicsState& state = context->state();
    const CGAffineTransform baseFromOutline = CGAffineTransformConcat(textFromOutline, baseFromText(context));
    context->textPath->clear();
    CGPathAddPath(context->textPath.get(), &baseFromOutline, outline);
    context->paint(textShape(context), Paint(color, state.alpha));
}

void CGContextDrawGlyphImage(CGContextRef context, CGRect rect, CGImageRef image)
{
    CGContextSaveGState(context);
    CGContextConcatCTM(context, context->textMatrix);
    CGContextDrawImage(context, rect, image);
    CGContextRestoreGState(context);
}
