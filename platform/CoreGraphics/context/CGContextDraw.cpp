#include "CoreGraphics/context/CGContextInternal.h"

void CGContext::paint(const Shape& shape, const StateColor& color)
{
    if (!color.paintsNothing)
        paint(shape, Paint(color.color, state().alpha));
}

Shape CGContext::pathShape(bool isEvenOdd)
{
    Shape shape{.path = path.get(), .isEvenOdd = isEvenOdd, .isAntialiased = state().isAntialiased};
    if (takeScanOrderedRectangles(*path, height(), shape.isAntialiased, rectangles)) {
        shape.path = nullptr;
        shape.rectangles = rectangles;
    }
    return shape;
}

Shape CGContext::rectShape(CGRect rect)
{
    Shape shape{.isAntialiased = state().isAntialiased};
    if (CGRectIsNull(rect))
        return shape;
    const CGAffineTransform& baseFromUser = state().baseFromUser;
    if (!CGAffineTransformKeepsRectangles(baseFromUser)) {
        rectPath->clear();
        CGPathAddRect(rectPath.get(), &baseFromUser, rect);
        shape.path = rectPath.get();
        return shape;
    }
    AreaRect area = areaRect(rect, baseFromUser, height());
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

void CGContext::strokePath(const LineStyle& style)
{
    const Pen pen{.style = &style, .baseFromUser = state().baseFromUser};
    Shape shape{.path = path.get(), .pen = &pen, .isAntialiased = state().isAntialiased};
    if (takeStrokedRectangle(*path, pen, height(), shape.isAntialiased, rectangles))
        shape.rectangles = rectangles;
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
    context->path->clear();
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
    context->path->clear();
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
    context->path->clear();
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
