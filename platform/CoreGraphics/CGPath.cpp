#include "CoreGraphics/CGPathInternal.h"

#include "CoreGraphics/CGAffineTransformInternal.h"
#include "CoreGraphics/CGLog.h"

#include <cmath>
#include <cstring>

namespace {

/// The coordinates of CGRectInfinite's corners: the bounding box of points within them has finite sides.
constexpr CGFloat kFarthest = DBL_MAX / 2;

/// False when a coordinate is NaN or infinite: only then does subtracting it from itself not give 0.
bool allFinite(std::span<const CGPoint> points)
{
    CGFloat sum = 0;
    for (const CGPoint& point : points)
        sum += (point.x - point.x) + (point.y - point.y);
    return sum == 0;
}

/// The mapped point with coordinates clamped to those of CGRectInfinite, even where the sum or its terms
/// overflow. NaN when an argument is not finite.
CGPoint mapWithinLimits(CGPoint point, const CGAffineTransform& transform)
{
    constexpr CGFloat scale = 0x1p-514; // its square prevents the largest products from overflowing
    const auto& [a, b, c, d, tx, ty] = transform;
    const CGPoint p{point.x * scale, point.y * scale};
    const auto coordinate = [&](CGFloat fromX, CGFloat fromY, CGFloat offset) {
        const CGFloat sum = fromX * scale * p.x + fromY * scale * p.y + offset * scale * scale;
        const CGFloat limit = kFarthest * scale * scale;
        return std::clamp(sum, -limit, limit) / scale / scale;
    };
    const bool isFinite = std::isfinite(a) && std::isfinite(b) && std::isfinite(c) && std::isfinite(d)
        && std::isfinite(tx) && std::isfinite(ty) && std::isfinite(point.x) && std::isfinite(point.y);
    constexpr CGFloat none = std::numeric_limits<CGFloat>::quiet_NaN();
    return isFinite ? CGPoint{coordinate(a, c, tx), coordinate(b, d, ty)} : CGPoint{none, none};
}

CGPoint mapped(CGPoint point, const CGAffineTransform& transform)
{
    const CGPoint result = CGPointApplyAffineTransform(point, transform);
    const bool isWithinLimits = std::abs(result.x) <= kFarthest && std::abs(result.y) <= kFarthest;
    return isWithinLimits ? result : mapWithinLimits(point, transform); // NaN too
}

void mapInPlace(std::span<CGPoint> points, const CGAffineTransform* transform)
{
    if (!transform)
        return;
    for (CGPoint& point : points)
        point = mapped(point, *transform);
}

bool hasCurrentPoint(CGPathRef path, const char* function)
{
    if (!path->isEmpty())
        return true;
    CGLogMisuse(function, "nothing added: the path has no current point");
    return false;
}

} // namespace

bool CGPath::staysWithinLimits(const CGAffineTransform& t) const noexcept
{
    const CGFloat reach = std::abs(_min.x) + std::abs(_min.y) + std::abs(_max.x) + std::abs(_max.y);
    const CGFloat factor = std::abs(t.a) + std::abs(t.b) + std::abs(t.c) + std::abs(t.d);
    return reach * factor + std::abs(t.tx) + std::abs(t.ty) <= kFarthest;
}

bool CGPath::append(std::span<const CGPathOp> ops, std::span<CGPoint> points,
    const CGAffineTransform* transform, const char* function)
{
    mapInPlace(points, transform);
    if (!allFinite(points)) {
        CGLogMisuse(function, "nothing added: a point is not finite");
        return false;
    }

    _bands.clear();
    std::memcpy(_ops.extend(ops.size()), ops.data(), ops.size_bytes());
    std::memcpy(_points.extend(points.size()), points.data(), points.size_bytes());
    for (const CGPoint& point : points)
        include(point);
    if (ops.front() == kCGPathElementMoveToPoint)
        _subpathStart = points.front();
    _hasOnlyRectangles = false;
    return true;
}

void CGPath::appendRect(CGRect rect, const CGAffineTransform* transform, const char* function)
{
    static constexpr CGPathOp kOps[] = {kCGPathElementMoveToPoint, kCGPathElementAddLineToPoint,
        kCGPathElementAddLineToPoint, kCGPathElementAddLineToPoint, kCGPathElementCloseSubpath};
    const CGFloat minX = CGRectGetMinX(rect);
    const CGFloat minY = CGRectGetMinY(rect);
    const CGFloat maxX = CGRectGetMaxX(rect);
    const CGFloat maxY = CGRectGetMaxY(rect);
    CGPoint corners[] = {{minX, minY}, {maxX, minY}, {maxX, maxY}, {minX, maxY}};
    // A transform with an inverse maps the plane onto itself; one that flips it reverses the corners.
    if (transform && CGRectIsInfinite(rect) && inverse(*transform)) {
        if (transform->a * transform->d < transform->b * transform->c)
            std::swap(corners[1], corners[3]);
        transform = nullptr;
    }

    const bool hadOnlyRectangles = _hasOnlyRectangles;
    if (append(kOps, corners, transform, function))
        _hasOnlyRectangles = hadOnlyRectangles && (!transform || keepsRectangles(*transform));
}

void CGPath::appendPath(const CGPath& other, const CGAffineTransform* transform, const char* function)
{
    if (other.isEmpty())
        return;

    // Reserve first: `other` may be this path, and growing the arrays would invalidate its spans.
    const std::size_t opCount = other._ops.size();
    const std::size_t pointCount = other._points.size();
    const CGPoint corners[] = {other._min, other._max};
    const bool otherHasOnlyRectangles = other._hasOnlyRectangles;
    const bool isWithinLimits = transform && other.staysWithinLimits(*transform);
    _bands.clear();
    reserveMore(opCount, pointCount);
    const std::span added(_points.extend(pointCount), pointCount);
    std::memcpy(added.data(), other.points().data(), added.size_bytes());
    if (isWithinLimits) {
        for (CGPoint& point : added)
            point = CGPointApplyAffineTransform(point, *transform);
    } else if (transform) {
        mapInPlace(added, transform);
        if (!allFinite(added)) {
            _points.shorten(pointCount);
            return CGLogMisuse(function, "nothing added: a point is not finite");
        }
    }

    std::memcpy(_ops.extend(opCount), other.ops().data(), opCount);
    const auto map = [transform](CGPoint point) { return transform ? mapped(point, *transform) : point; };
    const bool keepsAxes = !transform || keepsRectangles(*transform); // and so the bounds' corners
    if (keepsAxes) {
        for (const CGPoint corner : corners)
            include(map(corner));
    } else {
        for (const CGPoint point : added)
            include(point);
    }
    _subpathStart = map(other._subpathStart);
    _hasOnlyRectangles &= otherHasOnlyRectangles && keepsAxes;
}

void CGPath::close()
{
    if (_ops.back() == kCGPathElementCloseSubpath)
        return;
    _bands.clear();
    *_ops.extend(1) = kCGPathElementCloseSubpath;
    _hasOnlyRectangles = false;
}

void CGPath::clear() noexcept
{
    _bands.clear();
    _ops.shorten(_ops.size());
    _points.shorten(_points.size());
    _min = {kInfinity, kInfinity};
    _max = {-kInfinity, -kInfinity};
    _hasOnlyRectangles = true;
}

CGMutablePathRef CGPathCreateMutable()
{
    return new CGPath(CGPath::Mutability::Mutable);
}

CGPathRef CGPathCreateCopy(CGPathRef path)
{
    if (path && path->isMutable())
        return new CGPath(*path, CGPath::Mutability::Immutable);
    return CGPathRetain(path);
}

CGMutablePathRef CGPathCreateMutableCopy(CGPathRef path)
{
    return path ? new CGPath(*path, CGPath::Mutability::Mutable) : nullptr;
}

CGPathRef CGPathRetain(CGPathRef path)
{
    return CGRetainRecord(path);
}

void CGPathRelease(CGPathRef path)
{
    CGReleaseRecord(path);
}

void CGPathMoveToPoint(CGMutablePathRef path, const CGAffineTransform* transform, CGFloat x, CGFloat y)
{
    static constexpr CGPathOp kOps[] = {kCGPathElementMoveToPoint};
    CGPoint points[] = {{x, y}};
    if (path)
        path->append(kOps, points, transform, __func__);
}

void CGPathAddLineToPoint(CGMutablePathRef path, const CGAffineTransform* transform, CGFloat x, CGFloat y)
{
    static constexpr CGPathOp kOps[] = {kCGPathElementAddLineToPoint};
    CGPoint points[] = {{x, y}};
    if (path && hasCurrentPoint(path, __func__))
        path->append(kOps, points, transform, __func__);
}

void CGPathAddQuadCurveToPoint(
    CGMutablePathRef path, const CGAffineTransform* transform, CGFloat cpx, CGFloat cpy, CGFloat x, CGFloat y)
{
    static constexpr CGPathOp kOps[] = {kCGPathElementAddQuadCurveToPoint};
    CGPoint points[] = {{cpx, cpy}, {x, y}};
    if (path && hasCurrentPoint(path, __func__))
        path->append(kOps, points, transform, __func__);
}

void CGPathAddCurveToPoint(CGMutablePathRef path, const CGAffineTransform* transform, CGFloat cp1x,
    CGFloat cp1y, CGFloat cp2x, CGFloat cp2y, CGFloat x, CGFloat y)
{
    static constexpr CGPathOp kOps[] = {kCGPathElementAddCurveToPoint};
    CGPoint points[] = {{cp1x, cp1y}, {cp2x, cp2y}, {x, y}};
    if (path && hasCurrentPoint(path, __func__))
        path->append(kOps, points, transform, __func__);
}

void CGPathCloseSubpath(CGMutablePathRef path)
{
    if (path && hasCurrentPoint(path, __func__))
        path->close();
}

void CGPathAddPath(CGMutablePathRef path, const CGAffineTransform* transform, CGPathRef other)
{
    if (path && other)
        path->appendPath(*other, transform, __func__);
}
