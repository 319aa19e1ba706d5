#include "CoreGraphics/CGCubic.h"
#include "CoreGraphics/CGPathInternal.h"

namespace {

/// Computes the winding number of a path about a point: counts the edges that a ray from the point towards
/// greater x crosses, +1 for those that go up and -1 for those that go down.
///
/// An edge includes its lower end and excludes its upper one, so a corner on the ray counts once; an edge
/// through the point itself does not count.
class WindingCounter {
public:
    explicit WindingCounter(CGPoint point)
        : _point(point)
    {
    }

    int winding() const { return _winding; }

    void addLine(CGPoint from, CGPoint to)
    {
        if (!crossesHeight(from.y, to.y) || _point.x >= std::max(from.x, to.x))
            return;
        if (_point.x >= std::min(from.x, to.x)) {
            // Always from the lower end, so that an edge shared by two shapes gives the same result for both.
            const CGPoint& low = from.y < to.y ? from : to;
            const CGPoint& high = from.y < to.y ? to : from;
            if (!((high.x - low.x) * (_point.y - low.y) > (_point.x - low.x) * (high.y - low.y)))
                return;
        }
        _winding += from.y < to.y ? 1 : -1;
    }

    void addCurve(const CGCubicCurve& curve)
    {
        const auto [lowest, highest] =
            std::minmax({curve.y.start, curve.y.control1, curve.y.control2, curve.y.end});
        const auto [leftmost, rightmost] =
            std::minmax({curve.x.start, curve.x.control1, curve.x.control2, curve.x.end});
        if (!(lowest <= _point.y && _point.y <= highest) || _point.x >= rightmost)
            return;
        if (_point.x < leftmost) {
            // The whole curve lies on the ray's side: parts that go up and down over the same y cancel out.
            if (crossesHeight(curve.y.start, curve.y.end))
                _winding += curve.y.start < curve.y.end ? 1 : -1;
            return;
        }

        CGFloat turns[2];
        const int count = curve.y.turns(turns);
        CGFloat from = 0;
        for (int turn = 0; turn < count; ++turn) {
            addMonotonePiece(curve, from, turns[turn]);
            from = turns[turn];
        }
        addMonotonePiece(curve, from, 1);
    }

private:
    bool crossesHeight(CGFloat y1, CGFloat y2) const
    {
        return y1 < y2 ? y1 <= _point.y && _point.y < y2 : y2 <= _point.y && _point.y < y1;
    }

    /// Counts the part of a curve from t1 to t2, where y is monotonic.
    void addMonotonePiece(const CGCubicCurve& curve, CGFloat t1, CGFloat t2)
    {
        const CGFloat y1 = curve.y.at(t1);
        const CGFloat y2 = curve.y.at(t2);
        if (!crossesHeight(y1, y2))
            return;
        const bool rises = y1 < y2;
        // Bisects until the interval is as short as double precision allows.
        for (;;) {
            const CGFloat middle = t1 + (t2 - t1) / 2;
            if (!(t1 < middle && middle < t2))
                break;
            const bool isBelow = curve.y.at(middle) <= _point.y;
            (isBelow == rises ? t1 : t2) = middle;
        }
        if (curve.x.at(rises ? t1 : t2) > _point.x)
            _winding += rises ? 1 : -1;
    }

    CGPoint _point;
    int _winding = 0;
};

/// Adds the edges of all subpaths, each of them closed, to the counter.
void addEdges(const CGPath& path, WindingCounter& counter)
{
    CGPoint current{};
    CGPoint subpathStart{};
    const CGPoint* points = path.points().data();
    for (const CGPathOp op : path.ops()) {
        const std::size_t count = kCGPathPointsPerOp[op];
        switch (op) {
        case kCGPathElementAddLineToPoint:
            counter.addLine(current, points[0]);
            break;
        case kCGPathElementAddQuadCurveToPoint:
            counter.addCurve({current, points[0], points[1]});
            break;
        case kCGPathElementAddCurveToPoint:
            counter.addCurve({current, points[0], points[1], points[2]});
            break;
        default: // a move or a close: filling closes each subpath
            counter.addLine(current, subpathStart);
            break;
        }
        if (op == kCGPathElementMoveToPoint)
            subpathStart = points[0];
        current = count > 0 ? points[count - 1] : subpathStart;
        points += count;
    }
    counter.addLine(current, subpathStart);
}

} // namespace

bool CGPathContainsPoint(CGPathRef path, const CGAffineTransform* transform, CGPoint point, bool evenOdd)
{
    if (!path)
        return false;
    if (transform)
        point = CGPointApplyAffineTransform(point, *transform);
    WindingCounter counter(point);
    addEdges(*path, counter);
    return evenOdd ? counter.winding() % 2 != 0 : counter.winding() != 0;
}
