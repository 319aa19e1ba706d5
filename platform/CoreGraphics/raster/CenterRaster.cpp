#include "CoreGraphics/raster/CenterRaster.h"

#include "CoreGraphics/CGCubic.h"
#include "CoreGraphics/raster/StrokeOutline.h"

#include <cstring>

namespace {

/// Greatest distance between a curve and its chords, in pixels.
constexpr double kTolerance = 1.0 / 4096;
/// Most chords per curve. A curve that would need more has control points millions of pixels away.
constexpr double kMostLines = 65'536;

/// A line in pixel space, rows counted downward, that crosses at least one row of pixel centres.
struct Edge {
    double x; ///< at the upper end
    double y;
    double slope; ///< change of x per row
    int firstRow; ///< the first row whose centres it crosses
    int endRow;
    int winding; ///< 1 downward, -1 upward

    /// The first column whose centre lies to the right of the edge, or on it.
    double columnAt(int row) const { return std::ceil(x + (row + 0.5 - y) * slope - 0.5); }
};

/// Flattens a path into edges.
class EdgeList {
public:
    EdgeList(const PixelRect& limits, const PixelSpace& space, std::vector<Edge>& edges)
        : _limits(limits)
        , _space(space)
        , _edges(edges)
    {
    }

    void add(const CGPath& path)
    {
        const CGPoint* next = path.points().data();
        CGPoint start{};
        CGPoint current{};
        for (const CGPathOp op : path.ops()) {
            const std::size_t count = kCGPathPointsPerOp[op];
            CGPoint points[3];
            for (std::size_t i = 0; i < count; ++i)
                points[i] = _space.flipped(next[i]);
            next += count;
            switch (op) {
            case kCGPathElementAddLineToPoint:
                addLine(current, points[0]);
                break;
            case kCGPathElementAddQuadCurveToPoint:
                addCurve({current, points[0], points[1]});
                break;
            case kCGPathElementAddCurveToPoint:
                addCurve({current, points[0], points[1], points[2]});
                break;
            default: // a move or a close: fills close each subpath
                addLine(current, start);
                break;
            }
            if (op == kCGPathElementMoveToPoint)
                start = points[0];
            current = count > 0 ? points[count - 1] : start;
        }
        addLine(current, start);
    }

private:
    /// The first row whose centres lie at or below y, within the limits.
    int rowAt(double y) const
    {
        return int(std::ceil(std::clamp<double>(y - 0.5, _limits.top, _limits.bottom)));
    }

    void addLine(CGPoint from, CGPoint to)
    {
        const bool isDownward = from.y < to.y;
        const CGPoint& upper = isDownward ? from : to;
        const CGPoint& lower = isDownward ? to : from;
        const int firstRow = rowAt(upper.y);
        const int endRow = rowAt(lower.y);
        if (firstRow < endRow)
            _edges.push_back({upper.x, upper.y, (lower.x - upper.x) / (lower.y - upper.y), firstRow, endRow,
                isDownward ? 1 : -1});
    }

    /// Flattens with equal steps of t; the distance of a chord from its curve is at most 1/8 of the second
    /// derivative times the square of the step.
    void addCurve(const CGCubicCurve& curve)
    {
        const auto bend = [](const CGCubic& c) {
            return std::max(std::abs(c.start - 2 * c.control1 + c.control2),
                std::abs(c.control1 - 2 * c.control2 + c.end));
        };
        const double lines =
            std::clamp(std::ceil(std::sqrt(0.75 * std::hypot(bend(curve.x), bend(curve.y)) / kTolerance)),
                1.0, kMostLines);
        CGPoint from{curve.x.at(0), curve.y.at(0)};
        const int count = lines >= 1 ? int(lines) : 0; // NaN gives none
        for (int line = 1; line <= count; ++line) {
            const CGPoint to{curve.x.at(line / lines), curve.y.at(line / lines)};
            addLine(from, to);
            from = to;
        }
    }

    PixelRect _limits;
    PixelSpace _space;
    std::vector<Edge>& _edges;
};

/// Where an edge crosses a row of pixel centres.
struct Crossing {
    int column;
    int winding;
};

} // namespace

void fillCenters(const Shape& shape, const MutableMaskView& mask)
{
    thread_local std::vector<Edge> edges;
    thread_local std::vector<Crossing> crossings;
    const PixelRect& limits = mask.area;
    edges.clear();
    const auto stroke = shape.pen ? strokePath(shape, limits) : nullptr;
    EdgeList(limits, shape.space, edges).add(stroke ? *stroke : *shape.path);
    std::ranges::sort(edges, {}, &Edge::firstRow);

    // The active edges, which cross the row, precede those that begin below it.
    std::size_t begin = 0;
    std::size_t end = 0;
    for (int y = limits.top; y < limits.bottom; ++y) {
        while (end < edges.size() && edges[end].firstRow == y)
            ++end;
        crossings.clear();
        for (std::size_t i = begin; i < end; ++i) {
            const Edge& edge = edges[i];
            if (edge.endRow <= y) {
                edges[i] = edges[begin++];
                continue;
            }
            crossings.push_back(
                {int(std::clamp<double>(edge.columnAt(y), limits.left, limits.right)), edge.winding});
        }
        std::ranges::sort(crossings, {}, &Crossing::column);
        int winding = 0;
        int left = limits.left;
        for (const Crossing& crossing : crossings) {
            if (shape.isEvenOdd ? winding % 2 != 0 : winding != 0)
                std::memset(mask.pixel(left, y), 255, std::size_t(crossing.column - left));
            winding += crossing.winding;
            left = crossing.column;
        }
    }
}
