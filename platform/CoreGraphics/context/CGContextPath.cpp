#include "CoreGraphics/context/CGContextInternal.h"

// The current path is in base space: each point is transformed when it is added.

namespace {

const CGAffineTransform* baseFromUser(CGContextRef context)
{
    return &context->state().baseFromUser;
}

} // namespace

void CGContextBeginPath(CGContextRef context)
{
    if (context)
        context->path.clear();
}

void CGContextMoveToPoint(CGContextRef context, CGFloat x, CGFloat y)
{
    if (context)
        CGPathMoveToPoint(context->path.edit(), baseFromUser(context), x, y);
}

void CGContextAddLineToPoint(CGContextRef context, CGFloat x, CGFloat y)
{
    if (context)
        CGPathAddLineToPoint(context->path.edit(), baseFromUser(context), x, y);
}

void CGContextAddCurveToPoint(
    CGContextRef context, CGFloat cp1x, CGFloat cp1y, CGFloat cp2x, CGFloat cp2y, CGFloat x, CGFloat y)
{
    if (context)
        CGPathAddCurveToPoint(context->path.edit(), baseFromUser(context), cp1x, cp1y, cp2x, cp2y, x, y);
}

void CGContextAddQuadCurveToPoint(CGContextRef context, CGFloat cpx, CGFloat cpy, CGFloat x, CGFloat y)
{
    if (context)
        CGPathAddQuadCurveToPoint(context->path.edit(), baseFromUser(context), cpx, cpy, x, y);
}

void CGContextClosePath(CGContextRef context)
{
    if (context)
        CGPathCloseSubpath(context->path.edit());
}

void CGContextAddRect(CGContextRef context, CGRect rect)
{
    if (context)
        CGPathAddRect(context->path.edit(), baseFromUser(context), rect);
}

void CGContextAddRects(CGContextRef context, const CGRect* rects, std::size_t count)
{
    if (context)
        CGPathAddRects(context->path.edit(), baseFromUser(context), rects, count);
}

void CGContextAddLines(CGContextRef context, const CGPoint* points, std::size_t count)
{
    if (context)
        CGPathAddLines(context->path.edit(), baseFromUser(context), points, count);
}

void CGContextAddEllipseInRect(CGContextRef context, CGRect rect)
{
    if (context)
        CGPathAddEllipseInRect(context->path.edit(), baseFromUser(context), rect);
}

void CGContextAddArc(CGContextRef context, CGFloat x, CGFloat y, CGFloat radius, CGFloat startAngle,
    CGFloat endAngle, int clockwise)
{
    if (context)
        CGPathAddArc(
            context->path.edit(), baseFromUser(context), x, y, radius, startAngle, endAngle, clockwise != 0);
}

void CGContextAddArcToPoint(
    CGContextRef context, CGFloat x1, CGFloat y1, CGFloat x2, CGFloat y2, CGFloat radius)
{
    if (context)
        CGPathAddArcToPoint(context->path.edit(), baseFromUser(context), x1, y1, x2, y2, radius);
}

void CGContextAddPath(CGContextRef context, CGPathRef path)
{
    if (context && path)
        context->path.add(*path, *baseFromUser(context));
}

CGPathRef CGContextCopyPath(CGContextRef context)
{
    if (CGContextIsPathEmpty(context))
        return nullptr;
    const CGAffineTransform userFromBase = context->state().userFromBase();
    auto copy = adopt(new CGPath(CGPath::Mutability::Immutable));
    CGPathAddPath(copy.get(), &userFromBase, &context->path.elements());
    return copy.leak();
}

CGRect CGContextGetPathBoundingBox(CGContextRef context)
{
    const auto path = adopt(CGContextCopyPath(context));
    return CGPathGetBoundingBox(path.get());
}

CGPoint CGContextGetPathCurrentPoint(CGContextRef context)
{
    if (CGContextIsPathEmpty(context))
        return CGPointZero;
    return CGPointApplyAffineTransform(
        context->path.elements().currentPoint(), context->state().userFromBase());
}

bool CGContextIsPathEmpty(CGContextRef context)
{
    return !context || context->path.isEmpty();
}
