// The curves of a Stroker.

#include "CoreGraphics/raster/CurveLength.h"
#include "CoreGraphics/raster/Stroker.h"
#include "CoreGraphics/raster/Vectors.h"

#include <array>

namespace {

/// A part of a curve is halved at most this often where it turns sharply.
constexpr int kMaxDepth = 13;
/// Curves that need more parts than this are halved first, at most so often, so that the halves that are out
/// of sight can be left out.
constexpr double kPartsAtOnce = 64;
constexpr int kMaxHalvings = 8;

CGPoint startOf(const CGCubicCurve& curve)
{
    return {curve.x.start, curve.y.start};
}
CGPoint control1Of(const CGCubicCurve& curve)
{
    return {curve.x.control1, curve.y.control1};
}
CGPoint control2Of(const CGCubicCurve& curve)
{
    return {curve.x.control2, curve.y.control2};
}
CGPoint endOf(const CGCubicCurve& curve)
{
    return {curve.x.end, curve.y.end};
}

} // namespace

void Stroker::addCurve(const CGCubicCurve& curve)
{
    _hasElements = true;
    _convexity.add(control1Of(curve) - startOf(curve));
    _convexity.add(control2Of(curve) - control1Of(curve));
    _convexity.add(endOf(curve) - control2Of(curve));
    const Sample start = sampleAt(curve, 0);
    if (CGPointEqualToPoint(start.direction, CGPointZero))
        return;
    // As long as this, a curve is straight enough for the inner side of a join.
    const double length = lengthOf(control1Of(curve) - startOf(curve)) / kPartsAtOnce;
    continueIn(start.direction, length);
    const Sample end = sampleAt(curve, 1);
    addSamples(curve, start, end, kMaxHalvings);
    _current = end.point;
    _direction = end.direction;
    _length = lengthOf(endOf(curve) - control2Of(curve)) / kPartsAtOnce;
}

Stroker::Sample Stroker::sampleAt(const CGCubicCurve& curve, double t)
{
    const auto slope = [t](const CGCubic& c) {
        const double u = 1 - t;
        return u * u * (c.control1 - c.start) + 2 * u * t * (c.control2 - c.control1)
            + t * t * (c.end - c.control2);
    };
    const CGPoint start = startOf(curve);
    const CGPoint control1 = control1Of(curve);
    const CGPoint control2 = control2Of(curve);
    const CGPoint end = endOf(curve);
    const CGPoint slopes[]{{slope(curve.x), slope(curve.y)}, t < 0.5 ? control2 - start : end - control1,
        end - start, control1 - start};
    for (const CGPoint vector : slopes) {
        if (const auto direction = unit(vector))
            return {t, {curve.x.at(t), curve.y.at(t)}, *direction};
    }
    return {t, end, CGPointZero};
}

double Stroker::bendOf(const CGCubicCurve& curve) const
{
    const auto bend = [this](CGPoint a, CGPoint b, CGPoint c) {
        const CGPoint vector = mapped(a - b * 2 + c, _pen.resultFromPen);
        return dot(vector, vector);
    };
    const CGPoint control1 = control1Of(curve);
    const CGPoint control2 = control2Of(curve);
    return 6
        * std::sqrt(
            std::max(bend(startOf(curve), control1, control2), bend(control1, control2, endOf(curve))));
}

void Stroker::addSamples(const CGCubicCurve& curve, const Sample& from, const Sample& to, int depth)
{
    if (!_pen.visible.isNear(curve, _pen.radius)) {
        _overlaps = true; // unknown for the line instead
        return addOffsets(to.point, to.direction);
    }
    // Between points that are h apart, a curve is at most |B''| h^2 / 8 away from its chord. Points that are
    // half as far outside the curve divide the error between both sides, except at the ends, where points are
    // on the curve: there the parts are shorter by kEndPart, so that the error is the same.
    constexpr double kEndPart = 0.1835;
    const double bend = bendOf(curve);
    double count = 1;
    double h = 1;
    if (bend > 8 * _curveTolerance) {
        count = std::ceil(std::sqrt(bend / (16 * _curveTolerance)) + 2 * kEndPart);
        if (!(count <= kPartsAtOnce)) {
            if (depth > 0) {
                const Sample middle = sampleAt(curve, 0.5);
                addSamples({part(curve.x, 0, 0.5), part(curve.y, 0, 0.5)}, from, middle, depth - 1);
                return addSamples({part(curve.x, 0.5, 1), part(curve.y, 0.5, 1)}, middle, to, depth - 1);
            }
            count = kPartsAtOnce;
        }
        h = 1 / (count - 2 * kEndPart);
    }
    // The curve as a polynomial of t, and the one of the points outside of it.
    const CGPoint c1 = (control1Of(curve) - startOf(curve)) * 3;
    const CGPoint c2 = (startOf(curve) - control1Of(curve) * 2 + control2Of(curve)) * 3;
    const CGPoint c3 = endOf(curve) - startOf(curve) + (control1Of(curve) - control2Of(curve)) * 3;
    const double outward = h * h / 8;
    const CGPoint p0 = startOf(curve) - c2 * outward;
    const CGPoint p1 = c1 - c3 * (3 * outward);
    Sample last{0, from.point, from.direction};
    // Sides that are plain lines are collected: there are at most `kPartsAtOnce` of them.
    std::array<CGPoint, std::size_t(kPartsAtOnce)> right;
    std::array<CGPoint, std::size_t(kPartsAtOnce)> left;
    std::size_t collected = 0;
    const auto flush = [&] {
        _outline->points.insert(_outline->points.end(), right.begin(), right.begin() + collected);
        _left.insert(_left.end(), left.begin(), left.begin() + collected);
        collected = 0;
    };
    const double radius = _pen.radius;
    const double cosArcStep = _cosArcStep;
    CGPoint before = leftOf(last.direction) * radius;
    for (int i = 1; i < int(count); ++i) {
        const double t = h * (i - kEndPart);
        Sample next{t, p0 + (p1 + (c2 + c3 * t) * t) * t, {}};
        if (const auto direction = unit(c1 + (c2 * 2 + c3 * (3 * t)) * t))
            next.direction = *direction;
        else
            next = sampleAt(curve, t);
        const CGPoint after = leftOf(next.direction) * radius;
        const CGPoint line = next.point - last.point;
        if (dot(last.direction, next.direction) >= cosArcStep
            && std::abs(dot(after - before, line)) < dot(line, line)) {
            right[collected] = next.point - after;
            left[collected++] = next.point + after;
        } else {
            flush();
            addPart(curve, last, next, kMaxDepth);
        }
        last = next;
        before = after;
    }
    flush();
    addPart(curve, last, {1, to.point, to.direction}, kMaxDepth);
}

void Stroker::addPart(const CGCubicCurve& curve, const Sample& from, const Sample& to, int depth)
{
    const bool turns = dot(from.direction, to.direction) < _cosArcStep;
    if (turns && depth == kMaxDepth) // its halves are too short for points that are not on the curve
        return addPart(curve, sampleAt(curve, from.t), sampleAt(curve, to.t), depth - 1);
    if (turns && depth > 0) {
        const Sample middle = sampleAt(curve, (from.t + to.t) / 2);
        addPart(curve, from, middle, depth - 1);
        return addPart(curve, middle, to, depth - 1);
    }
    const CGPoint line = to.point - from.point;
    const double squared = dot(line, line);
    if (turns || !(squared > 0)) { // at a cusp
        _current = from.point;
        _direction = from.direction;
        _length = 0;
        if (const auto chord = unit(line)) {
            join(*chord, 0, kCGLineJoinRound);
            addOffsets(to.point, *chord);
        }
        _current = to.point;
        join(to.direction, 0, kCGLineJoinRound);
        return;
    }
    const CGPoint before = leftOf(from.direction) * _pen.radius;
    const CGPoint after = leftOf(to.direction) * _pen.radius;
    const double gain = dot(after - before, line);
    // Where the curve's radius is less than that of the pen, the inner side runs backward.
    if (gain > squared)
        turnOver(_outline->points, from.point, to.point, before * -1, after * -1);
    else if (gain < -squared)
        turnOver(_left, from.point, to.point, before, after);
    addOffsets(to.point, to.direction);
}

void Stroker::turnOver(std::vector<CGPoint>& side, CGPoint from, CGPoint to, CGPoint before, CGPoint after)
{
    _overlaps = true;
    const double sine = cross(before, after);
    if (sine == 0)
        return;
    const CGPoint crossing = from + before * std::clamp(cross(to - from, after) / sine, 0.0, 1.0);
    side.insert(side.end(), {crossing, to + after, from + before, crossing});
}
