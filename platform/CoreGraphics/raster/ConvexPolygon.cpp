#include "CoreGraphics/raster/ConvexPolygon.h"

#include "CoreGraphics/CGPathWalk.h"
#include "CoreGraphics/raster/Convexity.h"
#include "CoreGraphics/raster/CurveLines.h"

namespace {

/// Whether a path has a single subpath, closed or not.
bool isSingle(std::span<const CGPathOp> ops)
{
    const auto end = std::ranges::find_if(ops.subspan(1),
        [](CGPathOp op) { return op == kCGPathElementMoveToPoint || op == kCGPathElementCloseSubpath; });
    return ops.end() - end <= 1 && ops.back() != kCGPathElementMoveToPoint;
}

/// Whether the lines between all points, control points included, are convex.
bool isConvex(std::span<const CGPoint> points)
{
    Convexity convexity;
    CGPoint last = points.front();
    for (const CGPoint point : points.subspan(1)) {
        convexity.add(point - last);
        if (!convexity.isPossible())
            return false;
        last = point;
    }
    convexity.add(points.front() - last);
    convexity.close();
    return convexity.isConvex();
}

/// Appends the lines of a path to a polygon.
class PolygonBuilder {
public:
    PolygonBuilder(std::vector<CGPoint>& points, const PixelSpace& space, const PixelRect& limits)
        : _points(points)
        , _space(space)
        , _left(limits.left)
        , _top(limits.top)
    {
    }

    void beginSubpath(CGPoint start, bool /*isClosed*/) { _points.push_back(inPixels(start)); }
    void addLine(CGPoint end) { _points.push_back(inPixels(end)); }
    void addCurve(const CGCubicCurve& curve)
    {
        forEachCurveLine(_points.back(), inPixels({curve.x.control1, curve.y.control1}),
            inPixels({curve.x.control2, curve.y.control2}), inPixels({curve.x.end, curve.y.end}),
            [this](CGPoint point) { _points.push_back(point); });
    }
    void closeSubpath() const { }

private:
    CGPoint inPixels(CGPoint point) const { return {point.x - _left, _space.flipped(point.y) - _top}; }

    std::vector<CGPoint>& _points;
    const PixelSpace& _space;
    double _left;
    double _top;
};

} // namespace

const Polygons* convexPolygon(const CGPath& path, const PixelSpace& space, const PixelRect& limits)
{
    if (!isSingle(path.ops()) || !isConvex(path.points()))
        return nullptr;
    thread_local Polygons polygon;
    polygon.clear();
    PolygonBuilder builder(polygon.points, space, limits);
    walk(path, builder);
    polygon.close();
    polygon.areSimple = true;
    return &polygon;
}
