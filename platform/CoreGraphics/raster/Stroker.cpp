#include "CoreGraphics/raster/Stroker.h"

#include "CoreGraphics/CGPathWalk.h"
#include "CoreGraphics/raster/Vectors.h"

#include <numbers>

// A stroke is the union of a strip along each line, of a wedge at each join and of the caps. The outline runs
// along the right side of all of them and back along their left side. At the inner side of a join it touches
// the corner itself, so that it is the sum of the boundaries of all these parts: each has the same
// orientation, so none of them takes anything away from another one under the winding rule, however they
// overlap.
//
// Where both lines are long enough, the inner side turns at the intersection of their inner sides instead.
// That takes away a quadrilateral that both strips cover. As it takes up no more than half the length of
// each, no two of them overlap within a strip, so everything covered stays covered.

namespace {

/// The sine of the greatest angle between two lines that need no joint.
constexpr double kSmooth = 1e-7;
/// Lines that turn back more sharply than this always join by way of the corner.
constexpr double kSharpCosine = -0.99;
/// A full turn is drawn with at most this many lines.
constexpr double kMaxArcSteps = 1024;
/// The part of the tolerance that thin lines need for their arcs, in radii.
constexpr double kArcTolerance = 1.0 / 64;

} // namespace

void Stroker::begin(const RoundPen& pen, Polygons& outline)
{
    _pen = pen;
    _outline = &outline;
    outline.clear();
    const CGAffineTransform& t = pen.resultFromPen;
    const double scale = std::max(std::hypot(t.a, t.b), std::hypot(t.c, t.d));
    const double radius = pen.radius * scale;
    const double arcTolerance = std::min(pen.tolerance / 2, radius * kArcTolerance);
    _curveTolerance = pen.tolerance - arcTolerance;
    // Of a tiny pen, nothing may be left.
    const double cosHalfStep = radius > 0 ? 1 - std::min(arcTolerance / radius, 0.5) : 0.5;
    _arcStep = std::max(2 * std::acos(cosHalfStep), 2 * std::numbers::pi / kMaxArcSteps);
    _cosArcStep = std::cos(_arcStep);
    _hasElements = false;
    _overlaps = false;
    _firstDirection.reset();
}

void Stroker::finish()
{
    endSubpath();
    _outline->areSimple = !_overlaps && _outline->ends.size() == 2 && _convexity.isConvex();
    if (!CGAffineTransformIsIdentity(_pen.resultFromPen)) {
        for (CGPoint& point : _outline->points)
            point = CGPointApplyAffineTransform(point, _pen.resultFromPen);
    }
}

void Stroker::beginSubpath(CGPoint start, bool /*isClosed*/)
{
    endSubpath();
    _start = _current = start;
    _convexity.begin();
}

void Stroker::addLine(CGPoint end)
{
    _hasElements = true;
    const CGPoint line = end - _current;
    _convexity.add(line);
    const double length = lengthOf(line);
    if (!(length > 0))
        return;
    const CGPoint direction = line * (1 / length);
    continueIn(direction, length);
    addOffsets(end, direction);
    _current = end;
    _direction = direction;
    _length = length;
}

void Stroker::closeSubpath()
{
    addLine(_start);
    _convexity.close();
    if (_firstDirection) {
        const std::vector<CGPoint>* inner = join(*_firstDirection, _firstLength, _pen.join);
        if (inner == &_left)
            _left.front() = _left.back();
        else if (inner)
            _outline->points[_first] = _outline->points.back();
        _outline->close();
        _outline->points.insert(_outline->points.end(), _left.rbegin(), _left.rend());
        _outline->close();
    } else {
        addDot();
    }
    _hasElements = false;
    _firstDirection.reset();
}

void Stroker::endSubpath()
{
    if (_firstDirection) {
        std::vector<CGPoint>& points = _outline->points;
        addCap(points, _current, _direction);
        points.insert(points.end(), _left.rbegin(), _left.rend());
        addCap(points, _start, *_firstDirection * -1);
        _outline->close();
        _overlaps = true;
    } else if (_hasElements) {
        addDot();
    }
    _hasElements = false;
    _firstDirection.reset();
}

void Stroker::continueIn(CGPoint direction, double length)
{
    if (_firstDirection) {
        join(direction, length, _pen.join);
        return;
    }
    _firstDirection = direction;
    _firstLength = length;
    _first = _outline->points.size();
    _left.clear();
    addOffsets(_current, direction);
}

void Stroker::addOffsets(CGPoint point, CGPoint direction)
{
    const CGPoint offset = leftOf(direction) * _pen.radius;
    _outline->points.push_back(point - offset);
    _left.push_back(point + offset);
}

const std::vector<CGPoint>* Stroker::join(CGPoint direction, double length, CGLineJoin style)
{
    const double sine = cross(_direction, direction);
    const double cosine = dot(_direction, direction);
    if (std::abs(sine) < kSmooth && cosine > 0)
        return nullptr;
    const bool turnsLeft = sine >= 0;
    std::vector<CGPoint>& outer = turnsLeft ? _outline->points : _left;
    std::vector<CGPoint>& inner = turnsLeft ? _left : _outline->points;
    const CGPoint offset = leftOf(direction) * (turnsLeft ? _pen.radius : -_pen.radius); // to the inner side
    // From a corner of a strip to where the two strips' sides meet: the radius times the tangent of half the
    // angle.
    const double toIntersection = _pen.radius * std::abs(sine) / (1 + cosine);

    if (style == kCGLineJoinRound) {
        if (cosine < _cosArcStep) {
            const double angle = std::atan2(std::abs(sine), cosine);
            addArc(outer, _current, outer.back() - _current, turnsLeft ? angle : -angle);
        }
    } else if (style == kCGLineJoinMiter && isWithinMiterLimit(direction)) {
        outer.push_back(outer.back() + _direction * toIntersection);
    }
    outer.push_back(_current - offset);

    const bool meets = cosine > kSharpCosine && toIntersection <= std::min(_length, length) / 2;
    if (meets) {
        inner.back() = inner.back() - _direction * toIntersection;
    } else {
        inner.push_back(_current);
        inner.push_back(_current + offset);
        _overlaps = true;
    }
    _direction = direction;
    return meets ? &inner : nullptr;
}

bool Stroker::isWithinMiterLimit(CGPoint direction) const
{
    // The ratio of a miter's length to the line width is 1 / sin of half the angle between the lines.
    const auto in = unit(mapped(_direction, _pen.resultFromPen));
    const auto out = unit(mapped(direction, _pen.resultFromPen));
    return in && out && 2 <= _pen.miterLimit * _pen.miterLimit * (1 + dot(*in, *out));
}

void Stroker::addArc(std::vector<CGPoint>& side, CGPoint center, CGPoint from, double angle) const
{
    const int steps = int(std::ceil(std::abs(angle) / _arcStep));
    if (steps < 2)
        return;
    // Each point is the last one, turned. The rounding of 1024 turns is less than 1e-12 of the radius.
    const double cosine = std::cos(angle / steps);
    const double sine = std::sin(angle / steps);
    CGPoint offset = from;
    for (int i = 1; i < steps; ++i) {
        offset = offset * cosine + leftOf(offset) * sine;
        side.push_back(center + offset);
    }
}

void Stroker::addCap(std::vector<CGPoint>& side, CGPoint end, CGPoint direction) const
{
    const CGPoint offset = leftOf(direction) * _pen.radius;
    if (_pen.cap == kCGLineCapRound) {
        addArc(side, end, offset * -1, std::numbers::pi);
    } else if (_pen.cap == kCGLineCapSquare) {
        side.push_back(end - offset + direction * _pen.radius);
        side.push_back(end + offset + direction * _pen.radius);
    }
}

void Stroker::addDot()
{
    if (_pen.cap != kCGLineCapRound)
        return;
    const CGPoint offset{_pen.radius, 0};
    _outline->points.push_back(_current + offset);
    addArc(_outline->points, _current, offset, 2 * std::numbers::pi);
    _outline->close();
    _overlaps = true;
}

RetainPtr<CGPath> strokeOutline(
    const CGPath& path, const LineStyle& style, const CGAffineTransform& resultFromUser, double tolerance)
{
    Polygons outline;
    Stroker stroker;
    stroker.begin({.radius = style.width / 2,
                      .cap = style.cap,
                      .join = style.join,
                      .miterLimit = style.miterLimit,
                      .resultFromPen = resultFromUser,
                      .tolerance = tolerance},
        outline);
    walk(path, stroker);
    stroker.finish();
    return pathOf(outline, CGAffineTransformIdentity);
}

RetainPtr<CGPath> pathOf(Polygons& polygons, const CGAffineTransform& transform)
{
    auto path = adopt(new CGPath(CGPath::Mutability::Immutable));
    std::vector<CGPathOp> ops;
    std::size_t begin = 0;
    for (const std::size_t end : polygons.ends) {
        ops.assign(end - begin + 1, kCGPathElementAddLineToPoint);
        ops.front() = kCGPathElementMoveToPoint;
        ops.back() = kCGPathElementCloseSubpath;
        path->append(
            ops, std::span(polygons.points).subspan(begin, end - begin), &transform, "stroke outline");
        begin = end;
    }
    return path;
}
