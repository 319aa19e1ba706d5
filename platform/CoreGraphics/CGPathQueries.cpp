#include "CoreGraphics/CGCubic.h"
#include "CoreGraphics/CGPathInternal.h"

namespace {

/// The range of one coordinate over all values included so far.
struct Range {
    CGFloat least = std::numeric_limits<CGFloat>::infinity();
    CGFloat greatest = -std::numeric_limits<CGFloat>::infinity();

    void include(CGFloat value)
    {
        least = std::min(least, value);
        greatest = std::max(greatest, value);
    }
    bool holds(CGFloat value) const { return least <= value && value <= greatest; }

    void include(const CGCubic& cubic)
    {
        include(cubic.end);
        // The curve lies between its points: it exceeds the range only if a control point does.
        if (holds(cubic.control1) && holds(cubic.control2))
            return;
        CGFloat turns[2];
        const int count = cubic.turns(turns);
        for (int turn = 0; turn < count; ++turn)
            include(cubic.at(turns[turn]));
    }
};

bool sameCorners(const CGPoint* points, bool startsAlongX)
{
    const CGPoint* p = points;
    if (startsAlongX)
        return p[0].y == p[1].y && p[1].x == p[2].x && p[2].y == p[3].y && p[3].x == p[0].x;
    return p[0].x == p[1].x && p[1].y == p[2].y && p[2].x == p[3].x && p[3].y == p[0].y;
}

/// Whether the elements are a move and the lines of a closed quadrilateral, and nothing more.
bool isClosedQuadrilateral(const CGPath& path)
{
    auto ops = path.ops();
    const bool closes = !ops.empty() && ops.back() == kCGPathElementCloseSubpath;
    if (closes)
        ops = ops.first(ops.size() - 1);
    if (ops.size() != 4 && ops.size() != 5)
        return false;
    for (const CGPathOp op : ops.subspan(1)) {
        if (op != kCGPathElementAddLineToPoint)
            return false;
    }
    const auto points = path.points();
    return ops.size() == 4 ? closes : CGPointEqualToPoint(points[4], points[0]);
}

} // namespace

void CGPathApply(CGPathRef path, void* info, CGPathApplierFunction function)
{
    if (!path || !function)
        return;
    const CGPoint* points = path->points().data();
    for (const CGPathOp op : path->ops()) {
        const CGPathElement element{static_cast<CGPathElementType>(op), points};
        function(info, &element);
        points += kCGPathPointsPerOp[op];
    }
}

bool CGPathIsEmpty(CGPathRef path)
{
    return !path || path->isEmpty();
}

bool CGPathIsRect(CGPathRef path, CGRect* rect)
{
    if (!path || !isClosedQuadrilateral(*path))
        return false;
    const CGPoint* points = path->points().data();
    if (!sameCorners(points, true) && !sameCorners(points, false))
        return false;
    if (rect)
        *rect = path->boundingBox();
    return true;
}

CGPoint CGPathGetCurrentPoint(CGPathRef path)
{
    return path ? path->currentPoint() : CGPointZero;
}

CGRect CGPathGetBoundingBox(CGPathRef path)
{
    return path ? path->boundingBox() : CGRectNull;
}

CGRect CGPathGetPathBoundingBox(CGPathRef path)
{
    if (CGPathIsEmpty(path))
        return CGRectNull;

    Range rangeX;
    Range rangeY;
    const auto includeCurve = [&](const CGCubicCurve& curve) {
        rangeX.include(curve.x);
        rangeY.include(curve.y);
    };
    CGPoint current{};
    CGPoint subpathStart{};
    const CGPoint* points = path->points().data();
    for (const CGPathOp op : path->ops()) {
        const std::size_t count = kCGPathPointsPerOp[op];
        switch (op) {
        case kCGPathElementMoveToPoint:
            subpathStart = points[0];
            [[fallthrough]];
        case kCGPathElementAddLineToPoint:
            rangeX.include(points[0].x);
            rangeY.include(points[0].y);
            break;
        case kCGPathElementAddQuadCurveToPoint:
            includeCurve({current, points[0], points[1]});
            break;
        case kCGPathElementAddCurveToPoint:
            includeCurve({current, points[0], points[1], points[2]});
            break;
        default:
            break;
        }
        current = count > 0 ? points[count - 1] : subpathStart;
        points += count;
    }
    return {{rangeX.least, rangeY.least}, {rangeX.greatest - rangeX.least, rangeY.greatest - rangeY.least}};
}

bool CGPathEqualToPath(CGPathRef a, CGPathRef b)
{
    if (a == b)
        return true;
    return a && b && std::ranges::equal(a->ops(), b->ops())
        && std::ranges::equal(a->points(), b->points(), CGPointEqualToPoint);
}
