#include "CoreGraphics/raster/PathEdges.h"

#include "CoreGraphics/CGPathWalk.h"
#include "CoreGraphics/raster/CurveLines.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

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
    forEachCurveLine(from, control1, control2, to, [&, current = from](CGPoint point) mutable {
        if (isWithinLimits)
            addEdge(current, point);
        else
            addLine(current, point);
        current = point;
    });
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
