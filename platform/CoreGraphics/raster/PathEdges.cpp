#include "CoreGraphics/raster/PathEdges.h"

#include <algorithm>
#include <cmath>

namespace {

/// Curves farther away than this are drawn with as many lines as those that are as large.
constexpr double mostLines = 1024;

CGPoint difference(CGPoint a, CGPoint b)
{
    return {a.x - b.x, a.y - b.y};
}

/// The square of twice the distance of a point from the middle of its neighbours.
double squaredBend(CGPoint a, CGPoint b, CGPoint c)
{
    const double x = a.x - 2 * b.x + c.x;
    const double y = a.y - 2 * b.y + c.y;
    return x * x + y * y;
}

/// The number of lines for a curve, from the square of the most that its second derivative reaches: between
/// points that are h apart, a curve is at most that times h^2 / 8 away from its chord.
int lineCount(double squaredCurvature)
{
    const double count = std::sqrt(std::sqrt(squaredCurvature) / (8 * PathEdges::flatness));
    return 1 + static_cast<int>(std::min(count, mostLines));
}

} // namespace

void PathEdges::build(const CGPath& path, const PixelSpace& space, const PixelRect& limits)
{
    _edges.clear();
    _chains.clear();
    _winding = 0;
    _width = limits.width();
    _height = limits.height();

    const auto inPixels = [&](CGPoint point) {
        return CGPoint{point.x - limits.left, space.flipped(point.y) - limits.top};
    };
    const CGPoint* next = path.points().data();
    CGPoint start{};
    CGPoint current{};
    for (const CGPathOp op : path.ops()) {
        switch (op) {
        case kCGPathElementMoveToPoint:
            addLine(current, start);
            start = current = inPixels(next[0]);
            break;
        case kCGPathElementAddLineToPoint: {
            const CGPoint end = inPixels(next[0]);
            addLine(current, end);
            current = end;
            break;
        }
        case kCGPathElementAddQuadCurveToPoint: {
            const CGPoint end = inPixels(next[1]);
            addQuadratic(current, inPixels(next[0]), end);
            current = end;
            break;
        }
        case kCGPathElementAddCurveToPoint: {
            const CGPoint end = inPixels(next[2]);
            addCubic(current, inPixels(next[0]), inPixels(next[1]), end);
            current = end;
            break;
        }
        default:
            addLine(current, start);
            current = start;
            break;
        }
        next += kCGPathPointsPerOp[op];
    }
    addLine(current, start);
    endChain();
    std::ranges::sort(_chains, {}, &PathChain::top);
}

void PathEdges::addCubic(CGPoint from, CGPoint control1, CGPoint control2, CGPoint to)
{
    const auto [lowest, highest] = std::minmax({from.y, control1.y, control2.y, to.y});
    if (highest <= 0 || lowest >= _height)
        return;
    const int count =
        lineCount(36 * std::max(squaredBend(from, control1, control2), squaredBend(control1, control2, to)));
    // The curve as a polynomial of t.
    const CGPoint c1{3 * (control1.x - from.x), 3 * (control1.y - from.y)};
    const CGPoint c2{3 * (from.x - 2 * control1.x + control2.x), 3 * (from.y - 2 * control1.y + control2.y)};
    const CGPoint c3{
        to.x - from.x + 3 * (control1.x - control2.x), to.y - from.y + 3 * (control1.y - control2.y)};
    CGPoint current = from;
    for (int i = 1; i < count; ++i) {
        const double t = double(i) / count;
        const CGPoint point{
            from.x + t * (c1.x + t * (c2.x + t * c3.x)), from.y + t * (c1.y + t * (c2.y + t * c3.y))};
        addLine(current, point);
        current = point;
    }
    addLine(current, to);
}

void PathEdges::addQuadratic(CGPoint from, CGPoint control, CGPoint to)
{
    const auto [lowest, highest] = std::minmax({from.y, control.y, to.y});
    if (highest <= 0 || lowest >= _height)
        return;
    const int count = lineCount(4 * squaredBend(from, control, to));
    const CGPoint c1{2 * (control.x - from.x), 2 * (control.y - from.y)};
    const CGPoint c2{from.x - 2 * control.x + to.x, from.y - 2 * control.y + to.y};
    CGPoint current = from;
    for (int i = 1; i < count; ++i) {
        const double t = double(i) / count;
        const CGPoint point{from.x + t * (c1.x + t * c2.x), from.y + t * (c1.y + t * c2.y)};
        addLine(current, point);
        current = point;
    }
    addLine(current, to);
}

void PathEdges::addLine(CGPoint from, CGPoint to)
{
    if (from.y == to.y || std::max(from.y, to.y) <= 0 || std::min(from.y, to.y) >= _height)
        return;
    const CGPoint side = difference(to, from);
    const auto cut = [&](CGPoint& end) {
        const double y = std::clamp(end.y, 0.0, _height);
        if (y != end.y)
            end = {from.x + side.x * ((y - from.y) / side.y), y};
    };
    CGPoint last = to;
    cut(last);
    CGPoint first = from;
    cut(first);
    addBetweenSides(first, last);
}

void PathEdges::addBetweenSides(CGPoint from, CGPoint to)
{
    const auto [left, right] = std::minmax(from.x, to.x);
    if (left >= 0 && right <= _width)
        return addEdge(from, to);
    if (left >= _width)
        return;
    if (right <= 0)
        return addEdge({0, from.y}, {0, to.y});
    // The points at which the line crosses the sides divide it.
    const auto at = [&](double x) {
        return CGPoint{x, from.y + (to.y - from.y) * ((x - from.x) / (to.x - from.x))};
    };
    const CGPoint first = from.x < 0 ? at(0) : from.x > _width ? at(_width) : from;
    const CGPoint last = to.x < 0 ? at(0) : to.x > _width ? at(_width) : to;
    if (from.x < 0)
        addEdge({0, from.y}, first);
    addEdge(first, last);
    if (to.x < 0)
        addEdge(last, {0, to.y});
}

void PathEdges::addEdge(CGPoint from, CGPoint to)
{
    if (from.y == to.y)
        return;
    const int winding = from.y < to.y ? 1 : -1;
    if (winding != _winding || !CGPointEqualToPoint(from, _end)) {
        endChain();
        _chains.push_back({_edges.size(), 0, 0, 0, winding});
        _winding = winding;
    }
    _end = to;
    const double slope = (to.x - from.x) / (to.y - from.y);
    if (winding > 0)
        _edges.push_back({from.y, to.y, from.x, to.x, slope});
    else
        _edges.push_back({to.y, from.y, to.x, from.x, slope});
}

void PathEdges::endChain()
{
    if (_winding == 0)
        return;
    PathChain& chain = _chains.back();
    chain.end = _edges.size();
    if (_winding < 0)
        std::reverse(_edges.begin() + std::ptrdiff_t(chain.first), _edges.end());
    chain.top = _edges[chain.first].top;
    chain.bottom = _edges.back().bottom;
    _winding = 0;
}
