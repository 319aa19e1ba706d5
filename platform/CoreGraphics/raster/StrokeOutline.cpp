#include "CoreGraphics/raster/StrokeOutline.h"

#include "CoreGraphics/CGAffineTransformInternal.h"
#include "CoreGraphics/CGPathWalk.h"
#include "CoreGraphics/raster/ConvexPolygon.h"
#include "CoreGraphics/raster/ConvexRows.h"
#include "CoreGraphics/raster/Dashing.h"
#include "CoreGraphics/raster/PathRows.h"
#include "CoreGraphics/raster/SimpleRows.h"
#include "CoreGraphics/raster/Stroker.h"

#include <array>

namespace {

/// The greatest distance of the outline from the exact one, in pixels. It is reached on either side in turn,
/// so that coverage differs by less than 5 of 255.
constexpr double kOutlineTolerance = 0.028;

/// In pixels. Wider convex shapes, of which each row has many full pixels, are faster row by row than in
/// bands.
constexpr int kMostSimpleWidth = 96;

/// Unevenness of a transform that has no visible effect on a pen.
constexpr double kRoundness = 1e-6;

/// Maps a path to the space of a pen, with its coordinates limited. Lines that cross the limit get a corner
/// there, so that inside the limit they keep their course.
class PathMapper {
public:
    PathMapper(const CGAffineTransform& penFromBase, PathVisitor& next)
        : _penFromBase(penFromBase)
        , _next(next)
    {
    }

    void beginSubpath(CGPoint start, bool isClosed)
    {
        _start = _current = start;
        _next.beginSubpath(mapped(start), isClosed);
    }
    void addLine(CGPoint end)
    {
        if (!isWithin(_current) || !isWithin(end))
            addCrossings(end);
        _next.addLine(mapped(end));
        _current = end;
    }
    void addCurve(const CGCubicCurve& curve)
    {
        _current = {curve.x.end, curve.y.end};
        _next.addCurve({mapped({curve.x.start, curve.y.start}), mapped({curve.x.control1, curve.y.control1}),
            mapped({curve.x.control2, curve.y.control2}), mapped(_current)});
    }
    void closeSubpath()
    {
        if (!isWithin(_current) || !isWithin(_start))
            addLine(_start);
        _current = _start;
        _next.closeSubpath();
    }

private:
    static bool isWithin(CGPoint point)
    {
        return std::abs(point.x) <= kFarthestStroke && std::abs(point.y) <= kFarthestStroke;
    }
    CGPoint mapped(CGPoint point) const
    {
        return CGPointApplyAffineTransform({std::clamp(point.x, -kFarthestStroke, kFarthestStroke),
                                               std::clamp(point.y, -kFarthestStroke, kFarthestStroke)},
            _penFromBase);
    }
    void addCrossings(CGPoint end)
    {
        std::array<double, 4> crossings{2, 2, 2, 2}; // as parts of the line, after those what lies beyond it
        std::size_t count = 0;
        for (CGFloat CGPoint::*const axis : {&CGPoint::x, &CGPoint::y}) {
            for (const double limit : {-kFarthestStroke, kFarthestStroke}) {
                if ((_current.*axis < limit) != (end.*axis < limit))
                    crossings[count++] = (limit - _current.*axis) / (end.*axis - _current.*axis);
            }
        }
        std::sort(crossings.begin(), crossings.end());
        for (const double t : std::span(crossings).first(count)) {
            _next.addLine(
                mapped({_current.x + t * (end.x - _current.x), _current.y + t * (end.y - _current.y)}));
        }
    }

    const CGAffineTransform& _penFromBase;
    PathVisitor& _next;
    CGPoint _start{};
    CGPoint _current{};
};

bool hasFiniteFactors(const CGAffineTransform& t)
{
    return std::isfinite(t.a + t.b + t.c + t.d + t.tx + t.ty);
}

/// A pen, the space in which it is round, and how that came about.
struct PenSpace {
    RoundPen pen;
    CGAffineTransform penFromBase;
    double penPerUser; ///< the scale of lengths
};

/// nullopt for a pen that draws nothing.
std::optional<PenSpace> penSpace(const Pen& pen, const PixelSpace& space, const PixelRect& limits)
{
    const LineStyle& style = *pen.style;
    const CGAffineTransform& t = pen.baseFromUser;
    const double scale = std::max(std::hypot(t.a, t.b), std::hypot(t.c, t.d));
    if (!(style.width > 0 && scale > 0 && std::isfinite(scale)))
        return std::nullopt;
    const CGAffineTransform pixelsFromBase{
        1, 0, 0, -1, -double(limits.left), space.flipped(double(limits.top))};
    PenSpace result{{.radius = std::min(style.width / 2 * scale, kFarthestStroke),
                        .cap = style.cap,
                        .join = style.join,
                        .miterLimit = style.miterLimit,
                        .tolerance = kOutlineTolerance},
        pixelsFromBase, scale};
    CGRect visible{{0, 0}, {double(limits.width()), double(limits.height())}};

    const CGAffineTransform even{t.a / scale, t.b / scale, t.c / scale, t.d / scale, 0, 0};
    const double difference = even.a * even.a + even.b * even.b - even.c * even.c - even.d * even.d;
    const double skew = even.a * even.c + even.b * even.d;
    if (std::abs(difference) > kRoundness || std::abs(skew) > kRoundness) {
        // The pen is round in user space. There, its greatest extent is the same as in pixels.
        const auto penFromBase = inverse(even);
        result.pen.resultFromPen = CGAffineTransformConcat(even, pixelsFromBase);
        const auto penFromPixels = inverse(result.pen.resultFromPen);
        if (!penFromBase || !penFromPixels || !hasFiniteFactors(*penFromBase)
            || !hasFiniteFactors(*penFromPixels))
            return std::nullopt;
        result.penFromBase = *penFromBase;
        visible = CGRectApplyAffineTransform(visible, *penFromPixels);
    }
    result.pen.visible = {
        {CGRectGetMinX(visible), CGRectGetMinY(visible)}, {CGRectGetMaxX(visible), CGRectGetMaxY(visible)}};
    return result;
}

} // namespace

Polygons& strokePolygons(const Shape& shape, const PixelRect& limits)
{
    thread_local Polygons outline;
    thread_local Stroker stroker;
    const LineStyle& style = *shape.pen->style;
    const auto space = penSpace(*shape.pen, shape.space, limits);
    if (!space) {
        outline.clear();
        return outline;
    }
    stroker.begin(space->pen, outline);
    if (style.dashes && !hasTooManyDashes(*shape.path, *shape.pen)) {
        const double reach = std::min(shape.pen->reach() * space->penPerUser, kFarthestStroke);
        Dasher dasher(*style.dashes, style.dashPhase, space->penPerUser, stroker);
        dasher.leaveOutBeyond(space->pen.visible, reach);
        PathMapper mapper(space->penFromBase, dasher);
        walk(*shape.path, mapper);
        dasher.finish();
    } else {
        PathMapper mapper(space->penFromBase, stroker);
        walk(*shape.path, mapper);
    }
    stroker.finish();
    return outline;
}

RetainPtr<CGPath> strokePath(const Shape& shape, const PixelRect& limits)
{
    return pathOf(strokePolygons(shape, limits),
        {1, 0, 0, -1, double(limits.left), shape.space.flipped(double(limits.top))});
}

void rasterizePath(const Shape& shape, const PixelRect& limits, CoverageRows& sink)
{
    if (shape.pen) {
        const Polygons& outline = strokePolygons(shape, limits);
        if (!SimpleRows::ofThread().run(outline, limits, sink))
            PathRows::ofThread().run(outline, limits, sink);
        return;
    }
    const Polygons* const convex = convexPolygon(*shape.path, shape.space, limits);
    const bool isWide = limits.width() > kMostSimpleWidth;
    if (!convex
        || !(isWide ? ConvexRows::ofThread().run(*convex, limits, sink)
                    : SimpleRows::ofThread().run(*convex, limits, sink)))
        PathRows::ofThread().run(*shape.path, shape.isEvenOdd, shape.space, limits, sink);
}
