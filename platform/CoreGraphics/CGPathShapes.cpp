#include "CoreGraphics/CGPathInternal.h"

#include <vector>

namespace {

/// Distance of the control points from the ends of a cubic curve that approximates a quarter of the unit
/// circle.
constexpr CGFloat kQuarterControl = 0.5522847498307936;

constexpr CGPathOp kMove = kCGPathElementMoveToPoint;
constexpr CGPathOp kLine = kCGPathElementAddLineToPoint;
constexpr CGPathOp kCurve = kCGPathElementAddCurveToPoint;
constexpr CGPathOp kClose = kCGPathElementCloseSubpath;

/// An immutable path of the elements that `addShape` appends.
template <class AddShape> CGPathRef createImmutable(AddShape addShape)
{
    auto path = adopt(new CGPath(CGPath::Mutability::Immutable));
    addShape(path.get());
    return path.leak();
}

} // namespace

void CGPathAddRect(CGMutablePathRef path, const CGAffineTransform* transform, CGRect rect)
{
    if (path && !CGRectIsNull(rect))
        path->appendRect(rect, transform, __func__);
}

void CGPathAddRects(
    CGMutablePathRef path, const CGAffineTransform* transform, const CGRect* rects, std::size_t count)
{
    if (!path || !rects)
        return;
    path->reserveMore(5 * count, 4 * count);
    for (const CGRect& rect : std::span(rects, count)) {
        if (!CGRectIsNull(rect))
            path->appendRect(rect, transform, __func__);
    }
}

void CGPathAddLines(
    CGMutablePathRef path, const CGAffineTransform* transform, const CGPoint* points, std::size_t count)
{
    if (!path || !points || count == 0)
        return;
    std::vector<CGPathOp> ops(count, kLine);
    ops.front() = kMove;
    std::vector<CGPoint> copies(points, points + count);
    path->append(ops, copies, transform, __func__);
}

void CGPathAddEllipseInRect(CGMutablePathRef path, const CGAffineTransform* transform, CGRect rect)
{
    if (!path || CGRectIsNull(rect))
        return;

    static constexpr CGPathOp kOps[] = {kMove, kCurve, kCurve, kCurve, kCurve, kClose};
    const CGFloat minX = CGRectGetMinX(rect);
    const CGFloat midX = CGRectGetMidX(rect);
    const CGFloat maxX = CGRectGetMaxX(rect);
    const CGFloat minY = CGRectGetMinY(rect);
    const CGFloat midY = CGRectGetMidY(rect);
    const CGFloat maxY = CGRectGetMaxY(rect);
    const CGFloat dx = CGRectGetWidth(rect) / 2 * kQuarterControl;
    const CGFloat dy = CGRectGetHeight(rect) / 2 * kQuarterControl;
    CGPoint points[] = {{maxX, midY},                       //
        {maxX, midY + dy}, {midX + dx, maxY}, {midX, maxY}, //
        {midX - dx, maxY}, {minX, midY + dy}, {minX, midY}, //
        {minX, midY - dy}, {midX - dx, minY}, {midX, minY}, //
        {midX + dx, minY}, {maxX, midY - dy}, {maxX, midY}};
    path->append(kOps, points, transform, __func__);
}

void CGPathAddRoundedRect(CGMutablePathRef path, const CGAffineTransform* transform, CGRect rect,
    CGFloat cornerWidth, CGFloat cornerHeight)
{
    if (!path || CGRectIsNull(rect))
        return;
    if (!(cornerWidth > 0 && cornerHeight > 0)) // NaN too
        return path->appendRect(rect, transform, __func__);

    static constexpr CGPathOp kOps[] = {
        kMove, kLine, kCurve, kLine, kCurve, kLine, kCurve, kLine, kCurve, kClose};
    const CGFloat minX = CGRectGetMinX(rect);
    const CGFloat maxX = CGRectGetMaxX(rect);
    const CGFloat minY = CGRectGetMinY(rect);
    const CGFloat midY = CGRectGetMidY(rect);
    const CGFloat maxY = CGRectGetMaxY(rect);
    const CGFloat width = std::min(cornerWidth, CGRectGetWidth(rect) / 2);
    const CGFloat height = std::min(cornerHeight, CGRectGetHeight(rect) / 2);
    // From the sides to the control points.
    const CGFloat dx = width - width * kQuarterControl;
    const CGFloat dy = height - height * kQuarterControl;
    CGPoint points[] = {{maxX, midY},                                                      //
        {maxX, maxY - height}, {maxX, maxY - dy}, {maxX - dx, maxY}, {maxX - width, maxY}, //
        {minX + width, maxY}, {minX + dx, maxY}, {minX, maxY - dy}, {minX, maxY - height}, //
        {minX, minY + height}, {minX, minY + dy}, {minX + dx, minY}, {minX + width, minY}, //
        {maxX - width, minY}, {maxX - dx, minY}, {maxX, minY + dy}, {maxX, minY + height}};
    path->append(kOps, points, transform, __func__);
}

CGPathRef CGPathCreateWithRect(CGRect rect, const CGAffineTransform* transform)
{
    return createImmutable([&](CGMutablePathRef path) { CGPathAddRect(path, transform, rect); });
}

CGPathRef CGPathCreateWithRoundedRect(
    CGRect rect, CGFloat cornerWidth, CGFloat cornerHeight, const CGAffineTransform* transform)
{
    return createImmutable([&](CGMutablePathRef path) {
        CGPathAddRoundedRect(path, transform, rect, cornerWidth, cornerHeight);
    });
}

CGPathRef CGPathCreateWithEllipseInRect(CGRect rect, const CGAffineTransform* transform)
{
    return createImmutable([&](CGMutablePathRef path) { CGPathAddEllipseInRect(path, transform, rect); });
}
