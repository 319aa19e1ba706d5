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
    return {.path = context->textPath.get(), .isAntialiased = context->state().isAntialiased};
}

/// Pixels. A title of a window takes some tenth of this; longer lines are drawn where they can be seen only.
constexpr double kMostPixels = 1 << 18;
constexpr double kLongestSide = 4096;

/// Whether all of a text that lies in such a rectangle of text space is worth drawing.
bool isLabel(CGRect reach, const CGAffineTransform& baseFromText)
{
    const CGSize size = CGRectApplyAffineTransform(reach, baseFromText).size;
    return std::max(size.width, size.height) <= kLongestSide && size.width * size.height <= kMostPixels
        && std::max(std::abs(baseFromText.tx), std::abs(baseFromText.ty)) < kFarthestPixel;
}

/// Where pixels lie in base space, and one more on each side: edges may be moved to the next.
CGRect baseRect(const PixelRect& pixels, int height)
{
    const PixelRect grown = pixels.grown(1);
    return CGRectMake(grown.left, height - grown.bottom, grown.width(), grown.height());
}

/// The coverage of a label, on this context's memory or kept.
LentCoverage coverageOf(
    CGContextRef context, const OutlineSource& outlines, const CGAffineTransform& baseFromText)
{
    thread_local CoverageKey key;
    thread_local std::vector<double> description;
    const double left = std::floor(baseFromText.tx);
    const double bottom = std::floor(baseFromText.ty);
    description.assign({baseFromText.a, baseFromText.b, baseFromText.c, baseFromText.d,
        baseFromText.tx - left, baseFromText.ty - bottom});
    outlines.describe(description);
    key.begin(CoverageKind::Text);
    key.add(context->state().isAntialiased);
    key.add(std::span<const double>(description));
    const PixelPoint origin{int(left), context->height() - int(bottom)};
    return CoverageCache::shared().coverage(key.bytes(), origin, [&] {
        context->textPath->clear();
        // All of it, as it may be drawn again where more of it is in sight.
        outlines.addOutlines(context->textPath.get(), baseFromText, CGRectInfinite);
        const Shape shape = textShape(context);
        const PixelRect area = shape.pixels(kAllPixels, context->height());
        if (area.isEmpty()) // blanks alone
            return CoverageView{};
        Coverage coverage(context->imageMemory, area);
        coverage.draw(shape, context->height());
        return coverage.view();
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
        return context->paint(coverageOf(context, outlines, transform).view, paint);
    context->textPath->clear();
    outlines.addOutlines(
        context->textPath.get(), transform, baseRect(context->paintedPixels(), context->height()));
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
