#include "CoreGraphics/context/CGContextInternal.h"

#include "CoreGraphics/CGAffineTransformInternal.h"
#include "CoreGraphics/raster/Dashing.h"
#include "CoreGraphics/raster/Stroker.h"

// How a fill is drawn:
//
// 1. CGContextFillPath and the other functions of this file: the current path becomes a Shape
//    (raster/Shape.h), of rectangles where possible, the fill colour a Paint (raster/Paint.h).
// 2. CGContext::paint (CGContextPaint.cpp): paints the shadow first (raster/Shadow.h), then the shape.
// 3. Compositor::paint (raster/Compositor.cpp): resolves the clip (raster/Clip.h) and decides between
//    - rectangles and paths, strokes as their outlines (raster/StrokeOutline.h): RectangleRaster, PathRows,
//      ConvexRows or SimpleRows pass rows of coverage to SolidRows, which blends them into the memory;
//    - masks: those of small shapes come from the MaskCache, others are drawn by MaskBuffer;
//      MaskProduct multiplies them by the clip, and SolidRows blends the product;
//    - shapes of the first kind within clips that are not rectangles: ProductRows multiplies their rows
//      by the clip;
//    - images and layers, and modes that do more than scale the old pixel: ModeRows blends the rows of a
//      PixelSource or a colour, through the same rows of coverage and masks.

namespace {

/// The greatest distance of a stroke's outline from the exact one, in pixels.
constexpr double kAxisTolerance = 0.02;

} // namespace

Shape CGContext::pathShape(bool isEvenOdd)
{
    Shape shape{.space = space(), .isEvenOdd = isEvenOdd, .isAntialiased = state().isAntialiased};
    if (const auto ordered = path.rectanglesInScanOrder(space(), shape.isAntialiased, rectangles))
        shape.rectangles = *ordered;
    else
        shape.path = &path.elements();
    return shape;
}

Shape CGContext::rectShape(CGRect rect)
{
    Shape shape{.space = space(), .isAntialiased = state().isAntialiased};
    if (CGRectIsNull(rect))
        return shape;
    const CGAffineTransform& baseFromUser = state().baseFromUser;
    if (!keepsRectangles(baseFromUser)) {
        rectPath->clear();
        CGPathAddRect(rectPath.get(), &baseFromUser, rect);
        shape.path = rectPath.get();
        return shape;
    }
    AreaRect area = areaRect(rect, baseFromUser, space());
    if (!shape.isAntialiased)
        area = snapped(area);
    if (!area.isEmpty()) {
        rectangles.assign(1, area);
        shape.rectangles = rectangles;
    }
    return shape;
}

void CGContext::fillPath(bool isEvenOdd)
{
    paint(pathShape(isEvenOdd), state().fill);
}

void CGContext::replacePathByStroke()
{
    const LineStyle& style = state().line;
    const Pen pen{.style = &style, .baseFromUser = state().baseFromUser};
    const auto userFromBase = inverse(pen.baseFromUser);
    const bool isDashed = style.dashes && !hasTooManyDashes(path.elements(), pen);
    RetainPtr<CGPath> outline;
    if (style.width > 0 && userFromBase) {
        auto stroked = adopt(new CGPath(CGPath::Mutability::Immutable));
        CGPathAddPath(stroked, &*userFromBase, &path.elements());
        if (isDashed)
            stroked = dashedPath(*stroked, style);
        outline = strokeOutline(*stroked, style, pen.baseFromUser, kAxisTolerance);
    }
    path.clear();
    CGPathAddPath(path.edit(), nullptr, outline);
}

void CGContext::strokePath(const LineStyle& style)
{
    const Pen pen{.style = &style, .baseFromUser = state().baseFromUser};
    Shape shape{
        .space = space(), .path = &path.elements(), .pen = &pen, .isAntialiased = state().isAntialiased};
    if (const auto outline =
            rectanglesOfStroke(path.elements(), pen, space(), shape.isAntialiased, rectangles))
        shape.rectangles = *outline;
    paint(shape, state().stroke);
}

void CGContextDrawPath(CGContextRef context, CGPathDrawingMode mode)
{
    if (!context)
        return;
    if (mode == kCGPathFill || mode == kCGPathFillStroke)
        context->fillPath(false);
    if (mode == kCGPathEOFill || mode == kCGPathEOFillStroke)
        context->fillPath(true);
    if (mode == kCGPathStroke || mode == kCGPathFillStroke || mode == kCGPathEOFillStroke)
        context->strokePath(context->state().line);
    context->path.clear();
}

void CGContextReplacePathWithStrokedPath(CGContextRef context)
{
    if (context)
        context->replacePathByStroke();
}

void CGContextFillPath(CGContextRef context)
{
    CGContextDrawPath(context, kCGPathFill);
}

void CGContextEOFillPath(CGContextRef context)
{
    CGContextDrawPath(context, kCGPathEOFill);
}

void CGContextStrokePath(CGContextRef context)
{
    CGContextDrawPath(context, kCGPathStroke);
}

void CGContextFillRect(CGContextRef context, CGRect rect)
{
    if (!context)
        return;
    context->path.clear();
    context->paint(context->rectShape(rect), context->state().fill);
}

void CGContextFillRects(CGContextRef context, const CGRect* rects, std::size_t count)
{
    CGContextBeginPath(context);
    CGContextAddRects(context, rects, count);
    CGContextFillPath(context);
}

void CGContextStrokeRect(CGContextRef context, CGRect rect)
{
    CGContextBeginPath(context);
    CGContextAddRect(context, rect);
    CGContextStrokePath(context);
}

void CGContextStrokeRectWithWidth(CGContextRef context, CGRect rect, CGFloat width)
{
    if (!context)
        return;
    LineStyle style = context->state().line;
    style.setWidth(width);
    CGContextBeginPath(context);
    CGContextAddRect(context, rect);
    context->strokePath(style);
    context->path.clear();
}

void CGContextFillEllipseInRect(CGContextRef context, CGRect rect)
{
    CGContextBeginPath(context);
    CGContextAddEllipseInRect(context, rect);
    CGContextFillPath(context);
}

void CGContextStrokeEllipseInRect(CGContextRef context, CGRect rect)
{
    CGContextBeginPath(context);
    CGContextAddEllipseInRect(context, rect);
    CGContextStrokePath(context);
}

void CGContextClearRect(CGContextRef context, CGRect rect)
{
    if (!context || !context->admits(kCGBlendModeClear))
        return;
    const Paint nothing({0, 0, 0, 0}, 0);
    context->compositor.paint(context->rectShape(rect), context->state().clip, nothing, kCGBlendModeClear);
}
