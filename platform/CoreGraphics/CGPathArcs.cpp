#include "CoreGraphics/CGLog.h"
#include "CoreGraphics/CGPathInternal.h"

#include <numbers>

namespace {

constexpr CGFloat kTurn = 2 * std::numbers::pi;
constexpr CGFloat kQuarter = std::numbers::pi / 2;

struct Circle {
    CGPoint center;
    CGFloat radius;

    CGPoint at(CGPoint direction) const
    {
        return {center.x + radius * direction.x, center.y + radius * direction.y};
    }
};

/// The unit vector at `angle`, exact for whole quarters of a turn.
CGPoint directionAt(CGFloat angle)
{
    static constexpr CGPoint kAxes[] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}};
    const CGFloat quarters = angle / kQuarter;
    const CGFloat index = quarters - 4 * std::floor(quarters / 4);
    for (int axis = 0; axis < 4; ++axis) {
        if (index == axis)
            return kAxes[axis];
    }
    return {std::cos(angle), std::sin(angle)};
}

/// Elements and points of one arc: at most a move or line to its start, four quarters and a remainder.
class Arc {
public:
    explicit Arc(CGPathOp firstOp, CGPoint firstPoint) { add(firstOp, {firstPoint}); }

    void addCurves(const Circle& circle, CGFloat startAngle, CGFloat delta)
    {
        const CGFloat sign = delta < 0 ? -1 : 1;
        const CGFloat quarters = std::floor(std::abs(delta) / kQuarter);
        const CGFloat rest = std::abs(delta) - quarters * kQuarter;
        CGPoint direction = directionAt(startAngle);
        for (int quarter = 0; quarter < quarters; ++quarter) {
            const CGPoint next{-sign * direction.y, sign * direction.x};
            addCurve(circle, direction, next, kQuarter, sign);
            direction = next;
        }
        // A remainder that is only a rounding error gets no curve.
        if (quarters > 0 ? rest > 1e-12 : rest > 0)
            addCurve(circle, direction, directionAt(startAngle + delta), rest, sign);
    }

    void appendTo(CGMutablePathRef path, const CGAffineTransform* transform, const char* function)
    {
        path->append({_ops, _opCount}, {_points, _pointCount}, transform, function);
    }

private:
    void add(CGPathOp op, std::initializer_list<CGPoint> points)
    {
        _ops[_opCount++] = op;
        for (const CGPoint& point : points)
            _points[_pointCount++] = point;
    }

    void addCurve(const Circle& circle, CGPoint from, CGPoint to, CGFloat angle, CGFloat sign)
    {
        const CGFloat control = sign * 4 / 3 * std::tan(angle / 4);
        const CGPoint control1{from.x - control * from.y, from.y + control * from.x};
        const CGPoint control2{to.x + control * to.y, to.y - control * to.x};
        add(kCGPathElementAddCurveToPoint, {circle.at(control1), circle.at(control2), circle.at(to)});
    }

    CGPathOp _ops[6];
    CGPoint _points[16];
    std::size_t _opCount = 0;
    std::size_t _pointCount = 0;
};

/// Appends an arc that sweeps `delta` radians, at most a full turn in either direction.
void addArc(CGMutablePathRef path, const CGAffineTransform* transform, const Circle& circle,
    CGFloat startAngle, CGFloat delta, const char* function)
{
    const CGPathOp firstOp = path->isEmpty() ? kCGPathElementMoveToPoint : kCGPathElementAddLineToPoint;
    Arc arc(firstOp, circle.at(directionAt(startAngle)));
    arc.addCurves(circle, startAngle, delta);
    arc.appendTo(path, transform, function);
}

bool areFinite(CGFloat angle1, CGFloat angle2, const char* function)
{
    if (std::isfinite(angle1) && std::isfinite(angle2))
        return true;
    CGLogMisuse(function, "nothing added: an angle is not finite");
    return false;
}

/// The radius, or 0 if it is negative; NaN is returned unchanged.
CGFloat positive(CGFloat radius)
{
    return radius < 0 ? 0 : radius;
}

} // namespace

void CGPathAddArc(CGMutablePathRef path, const CGAffineTransform* transform, CGFloat x, CGFloat y,
    CGFloat radius, CGFloat startAngle, CGFloat endAngle, bool clockwise)
{
    if (!path || !areFinite(startAngle, endAngle, __func__))
        return;
    // By how much the angle increases, or decreases if clockwise, to the direction of the end.
    CGFloat amount = clockwise ? startAngle - endAngle : endAngle - startAngle;
    if (amount > kTurn)
        amount = kTurn;
    else if (amount < 0)
        amount = std::fmod(amount, kTurn) < 0 ? kTurn + std::fmod(amount, kTurn) : 0;
    addArc(path, transform, {{x, y}, positive(radius)}, startAngle, clockwise ? -amount : amount, __func__);
}

void CGPathAddRelativeArc(CGMutablePathRef path, const CGAffineTransform* transform, CGFloat x, CGFloat y,
    CGFloat radius, CGFloat startAngle, CGFloat delta)
{
    if (path && areFinite(startAngle, delta, __func__))
        addArc(path, transform, {{x, y}, positive(radius)}, startAngle, std::clamp(delta, -kTurn, kTurn),
            __func__);
}

void CGPathAddArcToPoint(CGMutablePathRef path, const CGAffineTransform* transform, CGFloat x1, CGFloat y1,
    CGFloat x2, CGFloat y2, CGFloat radius)
{
    if (!path)
        return;
    if (path->isEmpty())
        return CGLogMisuse(__func__, "nothing added: the path has no current point");

    // The tangent points are computed in the caller's space, so the current point is mapped back to it.
    const CGPoint start = transform
        ? CGPointApplyAffineTransform(path->currentPoint(), CGAffineTransformInvert(*transform))
        : path->currentPoint();
    const CGPoint corner{x1, y1};
    const CGFloat length1 = std::hypot(start.x - x1, start.y - y1);
    const CGFloat length2 = std::hypot(x2 - x1, y2 - y1);
    // Unit vectors from the corner along the legs.
    const CGPoint leg1{(start.x - x1) / length1, (start.y - y1) / length1};
    const CGPoint leg2{(x2 - x1) / length2, (y2 - y1) / length2};
    const CGFloat sine = leg1.x * leg2.y - leg1.y * leg2.x;
    const CGFloat cosine = leg1.x * leg2.x + leg1.y * leg2.y;
    // A sine within the rounding error means collinear legs; NaN comes from a leg of length 0.
    if (!(radius > 0) || !(std::abs(sine) > 1e-12)) {
        CGPathAddLineToPoint(path, transform, x1, y1);
        return;
    }

    // tan(half the angle between the legs) = |sin| / (1 + cos)
    const CGFloat tangentLength = radius * (1 + cosine) / std::abs(sine);
    const CGPoint touch{corner.x + tangentLength * leg1.x, corner.y + tangentLength * leg1.y};
    // From the circle's centre to the tangent point: leg1 rotated by a quarter turn, away from leg2.
    const CGFloat side = sine < 0 ? -1 : 1;
    const CGPoint outward{side * leg1.y, -side * leg1.x};
    const Circle circle{{touch.x - radius * outward.x, touch.y - radius * outward.y}, radius};
    // The arc sweeps half a turn less the angle between the legs.
    const CGFloat delta = -side * std::atan2(std::abs(sine), -cosine);

    Arc arc(kCGPathElementAddLineToPoint, touch);
    arc.addCurves(circle, std::atan2(outward.y, outward.x), delta);
    arc.appendTo(path, transform, __func__);
}
