#include "CoreGraphics/raster/Stroker.h"

#include "CoreGraphics/CGAffineTransformInternal.h"
#include "CoreGraphics/CGPathWalk.h"

#include <array>
#include <numbers>

// A stroke is the union of a strip along each line, of a wedge at each join and of the caps. The outline runs
// along the right side of all of them and back along their left side. At the inner side of a join it touches
// the corner itself, so that it is the sum of the boundaries of all these parts: each has the same
// orientation, so none of them takes anything away from another one under the winding rule, however they
// overlap.

namespace {

/// The greatest angle between two lines that need no joint.
constexpr double kSmooth = 1e-7;
/// A full turn is drawn with at most this many lines.
constexpr double kMaxArcSteps = 1024;
/// A curve is halved at most this often where it turns sharply.
constexpr int kMaxDepth = 12;
/// No curve is split into more parts of equal t.
constexpr double kMaxParts = 16384;

CGPoint operator+(CGPoint a, CGPoint b)
{
    return {a.x + b.x, a.y + b.y};
}
CGPoint operator-(CGPoint a, CGPoint b)
{
    return {a.x - b.x, a.y - b.y};
}
CGPoint operator*(CGPoint a, double factor)
{
    return {a.x * factor, a.y * factor};
}
double dot(CGPoint a, CGPoint b)
{
    return a.x * b.x + a.y * b.y;
}
double cross(CGPoint a, CGPoint b)
{
    return a.x * b.y - a.y * b.x;
}
CGPoint leftOf(CGPoint direction)
{
    return {-direction.y, direction.x};
}
/// The angle from one direction to the other, -pi to pi.
double turn(CGPoint from, CGPoint to)
{
    return std::atan2(cross(from, to), dot(from, to));
}
/// nullopt for a vector of length 0.
std::optional<CGPoint> unit(CGPoint vector)
{
    const double length = std::hypot(vector.x, vector.y);
    if (!(length > 0))
        return std::nullopt;
    return vector * (1 / length);
}
CGPoint mapped(CGPoint vector, const CGAffineTransform& t)
{
    return {t.a * vector.x + t.c * vector.y, t.b * vector.x + t.d * vector.y};
}

class Stroker {
public:
    Stroker(const LineStyle& style, const CGAffineTransform& resultFromUser, double tolerance)
        : _style(style)
        , _resultFromUser(resultFromUser)
        , _half(style.width / 2)
        , _outline(adopt(new CGPath(CGPath::Mutability::Immutable)))
    {
        // One half of the error comes from the curves, one from the arcs around their points.
        const CGAffineTransform& t = resultFromUser;
        _scale = std::max(std::hypot(t.a, t.b), std::hypot(t.c, t.d));
        _tolerance = tolerance / 2;
        const double radius = std::max(_half * _scale, _tolerance);
        _arcStep = std::max(
            2 * std::acos(1 - std::min(_tolerance / radius, 0.5)), 2 * std::numbers::pi / kMaxArcSteps);
    }

    RetainPtr<CGPath> outline(const CGPath& path)
    {
        walk(path, *this);
        finish();
        return _outline;
    }

    void beginSubpath(CGPoint start, bool)
    {
        finish();
        _start = _current = start;
        _hasElements = false;
        _firstDirection.reset();
        _right.clear();
        _left.clear();
    }

    void addLine(CGPoint end)
    {
        _hasElements = true;
        const auto direction = unit(end - _current);
        if (!direction)
            return;
        continueIn(*direction);
        addOffsets(end, *direction);
        _current = end;
        _direction = *direction;
    }

    void addCurve(const CGCubicCurve& curve)
    {
        _hasElements = true;
        const Sample end = sampleAt(curve, 1);
        Sample last = sampleAt(curve, 0);
        if (CGPointEqualToPoint(last.direction, CGPointZero))
            return;
        continueIn(last.direction);
        const int parts = partsOf(curve);
        for (int i = 1; i <= parts; ++i) {
            const Sample next = i == parts ? end : sampleAt(curve, double(i) / parts);
            addPart(curve, last, next, kMaxDepth);
            last = next;
        }
        _current = end.point;
        _direction = end.direction;
    }

    void closeSubpath()
    {
        addLine(_start);
        if (_firstDirection) {
            join(*_firstDirection, _style.join);
            addContour(_right);
            std::ranges::reverse(_left);
            addContour(_left);
        } else {
            addDot();
        }
        _hasElements = false;
        _firstDirection.reset();
    }

private:
    /// A point of a curve and the direction in which the curve passes through it.
    struct Sample {
        double t;
        CGPoint point;
        CGPoint direction;
    };

    void finish()
    {
        if (_firstDirection) {
            addCap(_right, _current, _direction);
            _right.insert(_right.end(), _left.rbegin(), _left.rend());
            addCap(_right, _start, *_firstDirection * -1);
            addContour(_right);
        } else if (_hasElements) {
            addDot();
        }
    }

    /// Makes the joint between what was added last and what goes on in a direction.
    void continueIn(CGPoint direction)
    {
        if (_firstDirection)
            return join(direction, _style.join);
        _firstDirection = direction;
        addOffsets(_current, direction);
    }

    void addOffsets(CGPoint point, CGPoint direction)
    {
        const CGPoint offset = leftOf(direction) * _half;
        _right.push_back(point - offset);
        _left.push_back(point + offset);
    }

    /// Adds the joint at the current point.
    void join(CGPoint direction, CGLineJoin style)
    {
        const double angle = turn(_direction, direction);
        if (std::abs(angle) < kSmooth)
            return;
        const bool turnsLeft = angle > 0;
        std::vector<CGPoint>& outer = turnsLeft ? _right : _left;
        std::vector<CGPoint>& inner = turnsLeft ? _left : _right;
        inner.push_back(_current);
        if (style == kCGLineJoinRound)
            addArc(outer, _current, outer.back() - _current, angle);
        else if (style == kCGLineJoinMiter && isWithinMiterLimit(direction))
            outer.push_back(outer.back() + _direction * (_half * std::tan(std::abs(angle) / 2)));
        addOffsets(_current, direction);
        _direction = direction;
    }

    /// Measured in the space of the result. The ratio of a miter's length to the line width is 1 / sin of
    /// half the angle between the lines.
    bool isWithinMiterLimit(CGPoint direction) const
    {
        const auto in = unit(mapped(_direction, _resultFromUser));
        const auto out = unit(mapped(direction, _resultFromUser));
        return in && out && 2 <= _style.miterLimit * _style.miterLimit * (1 + dot(*in, *out));
    }

    /// Adds the points between the ends of an arc, which starts at an offset from its centre.
    void addArc(std::vector<CGPoint>& side, CGPoint center, CGPoint from, double angle) const
    {
        const int steps = int(std::ceil(std::abs(angle) / _arcStep));
        for (int i = 1; i < steps; ++i) {
            const double part = angle * i / steps;
            side.push_back(center + from * std::cos(part) + leftOf(from) * std::sin(part));
        }
    }

    /// Adds the cap at the end of a side, in the direction in which the line ends. The other side goes on at
    /// the opposite corner.
    void addCap(std::vector<CGPoint>& side, CGPoint end, CGPoint direction) const
    {
        const CGPoint offset = leftOf(direction) * _half;
        if (_style.cap == kCGLineCapRound) {
            addArc(side, end, offset * -1, std::numbers::pi);
        } else if (_style.cap == kCGLineCapSquare) {
            side.push_back(end - offset + direction * _half);
            side.push_back(end + offset + direction * _half);
        }
    }

    /// A subpath without length is a dot if the caps are round, otherwise nothing.
    void addDot()
    {
        if (_style.cap != kCGLineCapRound)
            return;
        std::vector<CGPoint> circle{_current + CGPoint{_half, 0}};
        addArc(circle, _current, {_half, 0}, 2 * std::numbers::pi);
        addContour(circle);
    }

    /// Adds a closed contour. Maps the points in place.
    void addContour(std::vector<CGPoint>& points)
    {
        _ops.assign(points.size() + 1, kCGPathElementAddLineToPoint);
        _ops.front() = kCGPathElementMoveToPoint;
        _ops.back() = kCGPathElementCloseSubpath;
        _outline->append(_ops, points, &_resultFromUser, "stroke outline");
    }

    Sample sampleAt(const CGCubicCurve& curve, double t) const
    {
        const auto slope = [t](const CGCubic& c) {
            const double u = 1 - t;
            return u * u * (c.control1 - c.start) + 2 * u * t * (c.control2 - c.control1)
                + t * t * (c.end - c.control2);
        };
        const CGPoint start{curve.x.start, curve.y.start};
        const CGPoint control1{curve.x.control1, curve.y.control1};
        const CGPoint control2{curve.x.control2, curve.y.control2};
        const CGPoint end{curve.x.end, curve.y.end};
        const CGPoint slopes[]{{slope(curve.x), slope(curve.y)}, t < 0.5 ? control2 - start : end - control1,
            end - start, control1 - start};
        for (const CGPoint vector : slopes) {
            if (const auto direction = unit(vector))
                return {t, {curve.x.at(t), curve.y.at(t)}, *direction};
        }
        return {t, end, CGPointZero};
    }

    /// The number of parts of equal t of which each is at most `_tolerance` from a line: Wang's formula.
    int partsOf(const CGCubicCurve& curve) const
    {
        const auto bend = [&](double a, double b, double c, double d, double e, double f) {
            const CGPoint vector = mapped({a - 2 * b + c, d - 2 * e + f}, _resultFromUser);
            return std::hypot(vector.x, vector.y);
        };
        const CGCubic& x = curve.x;
        const CGCubic& y = curve.y;
        const double most = std::max(bend(x.start, x.control1, x.control2, y.start, y.control1, y.control2),
            bend(x.control1, x.control2, x.end, y.control1, y.control2, y.end));
        const double parts = std::ceil(std::sqrt(0.75 * most / _tolerance));
        return parts >= 1 ? int(std::min(parts, kMaxParts)) : 1; // NaN too
    }

    /// Adds a part of a curve, in halves while it turns by more than an arc may.
    void addPart(const CGCubicCurve& curve, const Sample& from, const Sample& to, int depth)
    {
        const bool turns = std::abs(turn(from.direction, to.direction)) > _arcStep;
        if (turns && depth > 0) {
            const Sample middle = sampleAt(curve, (from.t + to.t) / 2);
            addPart(curve, from, middle, depth - 1);
            return addPart(curve, middle, to, depth - 1);
        }
        _current = from.point;
        _direction = from.direction;
        const auto chord = unit(to.point - from.point);
        if (turns || !chord) { // at a cusp
            if (chord) {
                join(*chord, kCGLineJoinRound);
                addOffsets(to.point, *chord);
            }
            _current = to.point;
            return join(to.direction, kCGLineJoinRound);
        }
        const CGPoint before = leftOf(from.direction) * _half;
        const CGPoint after = leftOf(to.direction) * _half;
        addSide(_right, from.point, to.point, before * -1, after * -1, *chord);
        addSide(_left, from.point, to.point, before, after, *chord);
    }

    /// Goes on to the end of a part of a curve. Where the curve's radius is less than half the line width,
    /// the inner side would run backward: there it is the side of the chord, by way of the curve itself.
    void addSide(
        std::vector<CGPoint>& side, CGPoint from, CGPoint to, CGPoint before, CGPoint after, CGPoint chord)
    {
        if (dot(to + after - from - before, chord) < 0) {
            const CGPoint offset = leftOf(chord) * (dot(leftOf(chord), before) < 0 ? -_half : _half);
            side.insert(side.end(), {from, from + offset, to + offset, to});
        }
        side.push_back(to + after);
    }

    const LineStyle& _style;
    CGAffineTransform _resultFromUser;
    double _half;
    double _scale = 1;
    double _tolerance = 0;
    double _arcStep = 0;
    RetainPtr<CGPath> _outline;

    CGPoint _start{};
    CGPoint _current{};
    CGPoint _direction{}; ///< in which the current point was reached; only with a first direction
    bool _hasElements = false;
    std::optional<CGPoint> _firstDirection;
    std::vector<CGPoint> _right;
    std::vector<CGPoint> _left;
    std::vector<CGPathOp> _ops;
};

} // namespace

RetainPtr<CGPath> strokeOutline(
    const CGPath& path, const LineStyle& style, const CGAffineTransform& resultFromUser, double tolerance)
{
    return Stroker(style, resultFromUser, tolerance).outline(path);
}
