#include "CoreGraphics/raster/PathEdges.h"

#include "CoreGraphics/CGPathWalk.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

/// Curves farther away than this are drawn with as many lines as those that are as large.
constexpr double kMostLines = 1024;

/// In pixels. Points farther away are moved there, so that no sum and no product of coordinates overflows.
constexpr double kFarthestCorner = 1e100;

/// A coordinate within these limits, also for one that is no number.
double withinReach(double coordinate)
{
    if (!(coordinate > -kFarthestCorner))
        return -kFarthestCorner;
    return coordinate < kFarthestCorner ? coordinate : kFarthestCorner;
}

CGPoint withinReach(CGPoint point)
{
    return {withinReach(point.x), withinReach(point.y)};
}

/// The square of twice the distance of a point from the middle of its neighbours.
double squaredBend(CGPoint a, CGPoint b, CGPoint c)
{
    const double x = a.x - 2 * b.x + c.x;
    const double y = a.y - 2 * b.y + c.y;
    return x * x + y * y;
}

/// The number of lines for a curve, from the square of the most that its second derivative reaches. Between
/// points that are h of a curve apart, it is at most that times h^2 / 8 away from its chord; see addCubic for
/// the third of this that the choice of points saves.
int lineCount(double squaredCurvature)
{
    const double count = std::sqrt(std::sqrt(squaredCurvature) / (12 * PathEdges::kFlatness));
    return 1 + static_cast<int>(std::min(count, kMostLines));
}

} // namespace

/// Passes a path on to its edges, in pixels and with each subpath closed.
class PathEdges::Visitor {
public:
    Visitor(PathEdges& edges, const PixelSpace& space, const PixelRect& limits)
        : _edges(edges)
        , _space(space)
        , _corner{double(limits.left), double(limits.top)}
    {
    }

    void beginSubpath(CGPoint point, bool /*isClosed*/)
    {
        closeSubpath();
        _start = _current = inPixels(point);
    }
    void addLine(CGPoint end)
    {
        const CGPoint from = std::exchange(_current, inPixels(end));
        _edges.addLine(from, _current);
    }
    void addCurve(const CGCubicCurve& curve)
    {
        const CGPoint from = std::exchange(_current, inPixels({curve.x.end, curve.y.end}));
        _edges.addCubic(from, inPixels({curve.x.control1, curve.y.control1}),
            inPixels({curve.x.control2, curve.y.control2}), _current);
    }
    void closeSubpath()
    {
        _edges.addLine(_current, _start);
        _current = _start;
    }

private:
    CGPoint inPixels(CGPoint point) const
    {
        return withinReach({point.x - _corner.x, _space.flipped(point.y) - _corner.y});
    }

    PathEdges& _edges;
    const PixelSpace& _space;
    CGPoint _corner; ///< of the limits, in pixel space
    CGPoint _start{};
    CGPoint _current{};
};

void PathEdges::build(const CGPath& path, const PixelSpace& space, const PixelRect& limits)
{
    begin(limits);
    Visitor visitor(*this, space, limits);
    walk(path, visitor);
    visitor.closeSubpath();
    finish();
}

void PathEdges::build(const Polygons& polygons, const PixelRect& limits)
{
    begin(limits);
    polygons.forEach([this](std::span<const CGPoint> corners) {
        CGPoint from = withinReach(corners.back());
        for (const CGPoint corner : corners) {
            const CGPoint to = withinReach(corner);
            addLine(std::exchange(from, to), to);
        }
    });
    finish();
}

void PathEdges::begin(const PixelRect& limits)
{
    _edges.clear();
    _chains.clear();
    _winding = 0;
    _width = limits.width();
    _height = limits.height();
}

void PathEdges::finish()
{
    endChain();
    std::ranges::sort(_chains, {}, &PathChain::top);
}

inline void PathEdges::addEdge(CGPoint from, CGPoint to)
{
    if (from.y == to.y)
        return;
    const int winding = from.y < to.y ? 1 : -1;
    if (winding != _winding || !CGPointEqualToPoint(from, _end)) {
        endChain();
        _chains.push_back({_edges.size(), 0, 0, 0, winding});
        _winding = winding;
    }
    _end.x = to.x;
    _end.y = to.y;
    const double slope = (to.x - from.x) / (to.y - from.y);
    if (winding > 0)
        _edges.push_back({from.y, to.y, from.x, to.x, slope});
    else
        _edges.push_back({to.y, from.y, to.x, from.x, slope});
}

void PathEdges::addCubic(CGPoint from, CGPoint control1, CGPoint control2, CGPoint to)
{
    const auto [lowest, highest] = std::minmax({from.y, control1.y, control2.y, to.y});
    if (highest + kFlatness <= 0 || lowest - kFlatness >= _height)
        return;
    const auto [left, right] = std::minmax({from.x, control1.x, control2.x, to.x});
    const bool isWithinLimits = left >= kFlatness && right <= _width - kFlatness && lowest >= kFlatness
        && highest <= _height - kFlatness;
    const int count =
        lineCount(36 * std::max(squaredBend(from, control1, control2), squaredBend(control1, control2, to)));
    const double step = 1.0 / count;
    // The curve as a polynomial of t.
    const CGPoint c1{3 * (control1.x - from.x), 3 * (control1.y - from.y)};
    const CGPoint c2{3 * (from.x - 2 * control1.x + control2.x), 3 * (from.y - 2 * control1.y + control2.y)};
    const CGPoint c3{
        to.x - from.x + 3 * (control1.x - control2.x), to.y - from.y + 3 * (control1.y - control2.y)};
    // Lines between points of the curve would all be on its inner side. With points that are off the curve by
    // step^2 / 12 of its second derivative, 2 c2 + 6 t c3, they cut off as much area as they add.
    const double off = step * step / 6;
    const CGPoint d0{from.x - off * c2.x, from.y - off * c2.y};
    const CGPoint d1{c1.x - 3 * off * c3.x, c1.y - 3 * off * c3.y};
    CGPoint current = from;
    for (int i = 1; i <= count; ++i) {
        const double t = i * step;
        const CGPoint point = i == count
            ? to
            : CGPoint{d0.x + t * (d1.x + t * (c2.x + t * c3.x)), d0.y + t * (d1.y + t * (c2.y + t * c3.y))};
        if (isWithinLimits)
            addEdge(current, point);
        else
            addLine(current, point);
        current = point;
    }
}

void PathEdges::addLine(CGPoint from, CGPoint to)
{
    if (from.y == to.y || std::max(from.y, to.y) <= 0 || std::min(from.y, to.y) >= _height)
        return;
    const CGPoint side{to.x - from.x, to.y - from.y};
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
