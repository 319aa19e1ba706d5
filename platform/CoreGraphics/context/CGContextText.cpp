#include "CoreGraphics/context/CGContextText.h"

#include "CoreGraphics/context/CGContextGlyphs.h"
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
bool isLabel(CGRect bounds, const CGAffineTransform& baseFromText)
{
    const CGRect pixels = CGRectApplyAffineTransform(bounds, baseFromText);
    const CGSize size = pixels.size;
    return !CGRectIsNull(pixels) // as are infinitely large ones
        && std::max(size.width, size.height) <= kMaxLabelSide && size.width * size.height <= kMaxLabelPixels
        && std::max(std::abs(baseFromText.tx), std::abs(baseFromText.ty)) < kFarthestPixel;
}

/// The mask of a label, either cached or drawn into this context's memory.
MaskRef labelMask(
    CGContextRef context, const GlyphSource& glyphs, const CGAffineTransform& baseFromText, bool usesMasks)
{
    thread_local MaskKey key;
    thread_local std::vector<double> description;
    const double left = std::floor(baseFromText.tx);
    const double bottom = std::floor(baseFromText.ty);
    description.assign({baseFromText.a, baseFromText.b, baseFromText.c, baseFromText.d,
        baseFromText.tx - left, baseFromText.ty - bottom});
    glyphs.describe(description);
    key.begin(MaskKind::Text);
    key.add(context->state().isAntialiased);
    key.add(usesMasks);
    key.add(std::span<const double>(description));
    const PixelPoint origin{int(left), int(context->space().flipped(bottom))};
    // Draws the whole label, because a later draw may show more of it.
    return MaskCache::shared().mask(key.bytes(), origin, [&] {
        if (usesMasks)
            return drawGlyphMasks(context, glyphs, baseFromText, CGRectInfinite);
        context->textPath->clear();
        addGlyphOutlines(context->textPath.get(), glyphs, baseFromText, CGRectInfinite);
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

void CGContextFillGlyphs(CGContextRef context, const GlyphSource& glyphs, const CGColorRGBA& color)
{
    const GraphicsState& state = context->state();
    const CGAffineTransform transform = baseFromText(context);
    const Paint paint(color, state.alpha);
    const bool usesMasks = usesGlyphMasks(state, glyphs, transform);
    if (isLabel(glyphs.approximateBounds(), transform))
        return context->paint(labelMask(context, glyphs, transform, usesMasks).view, paint);
    // One more pixel on each side, because edges may round to the neighbouring pixel.
    const CGRect visible = context->space().baseRect(context->paintedPixels().grown(1));
    if (usesMasks)
        return context->paint(drawGlyphMasks(context, glyphs, transform, visible), paint);
    context->textPath->clear();
    addGlyphOutlines(context->textPath.get(), glyphs, transform, visible);
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
