#include "CoreGraphics/cairo/CairoShape.h"

#include "CoreGraphics/raster/Dashing.h"

#include <array>
#include <cairo.h>

namespace {

/// cairo stores coordinates as fixed-point numbers with 24 integer bits and a sign; larger ones would
/// overflow.
constexpr double kFarthest = 4e6;

/// cairo omits slanted edges that are longer than about this; no bitmap is a third as large. Strokes need a
/// larger limit, because lines far outside the bitmap may be wide.
constexpr double kFarthestFilled = 1e5;

double reachable(double coordinate)
{
    return std::clamp(coordinate, -kFarthest, kFarthest);
}

CGPoint reachable(CGPoint point)
{
    return {reachable(point.x), reachable(point.y)};
}

/// Adds a path to a cairo context, with its coordinates clamped to a limit. Lines that cross the limit get a
/// corner there, so that inside the limit lines keep their course and pixels their winding numbers.
class PathAdder {
public:
    PathAdder(cairo_t* cairo, double limit)
        : _cairo(cairo)
        , _limit(limit)
    {
    }

    void add(const CGPath& path)
    {
        const CGPoint* next = path.points().data();
        for (const CGPathOp op : path.ops()) {
            switch (op) {
            case kCGPathElementMoveToPoint:
                _start = _current = *next++;
                cairo_move_to(_cairo, limited(_start).x, limited(_start).y);
                break;
            case kCGPathElementAddLineToPoint:
                addLine(*next++);
                break;
            case kCGPathElementAddQuadCurveToPoint: { // cairo has only cubic curves
                const CGPoint from = reachable(_current);
                const CGPoint control = reachable(next[0]);
                const CGPoint end = reachable(next[1]);
                const auto towards = [](double from, double to) { return from + (to - from) * 2 / 3; };
                addCurve({towards(from.x, control.x), towards(from.y, control.y)},
                    {towards(end.x, control.x), towards(end.y, control.y)}, next[1]);
                next += 2;
                break;
            }
            case kCGPathElementAddCurveToPoint:
                addCurve(reachable(next[0]), reachable(next[1]), next[2]);
                next += 3;
                break;
            default:
                if (!isWithin(_current) || !isWithin(_start))
                    addLine(_start);
                cairo_close_path(_cairo);
                _current = _start;
                break;
            }
        }
    }

private:
    bool isWithin(CGPoint point) const { return std::abs(point.x) <= _limit && std::abs(point.y) <= _limit; }
    CGPoint limited(CGPoint point) const
    {
        return {std::clamp(point.x, -_limit, _limit), std::clamp(point.y, -_limit, _limit)};
    }

    void addLine(CGPoint end)
    {
        if (!isWithin(_current) || !isWithin(end))
            addCrossings(end);
        cairo_line_to(_cairo, limited(end).x, limited(end).y);
        _current = end;
    }

    void addCrossings(CGPoint end)
    {
        std::array<double, 4> crossings{
            2, 2, 2, 2}; // as parts of the line; those that there are come before 2
        std::size_t count = 0;
        for (CGFloat CGPoint::*const axis : {&CGPoint::x, &CGPoint::y}) {
            for (const double limit : {-_limit, _limit}) {
                if ((_current.*axis < limit) != (end.*axis < limit))
                    crossings[count++] = (limit - _current.*axis) / (end.*axis - _current.*axis);
            }
        }
        std::ranges::sort(crossings);
        for (const double t : std::span(crossings).first(count)) {
            const CGPoint point =
                limited({_current.x + t * (end.x - _current.x), _current.y + t * (end.y - _current.y)});
            cairo_line_to(_cairo, point.x, point.y);
        }
    }

    void addCurve(CGPoint control1, CGPoint control2, CGPoint end)
    {
        const CGPoint start = reachable(_current);
        if (!isWithin(_current))
            cairo_line_to(_cairo, start.x, start.y);
        _current = end;
        end = reachable(end);
        cairo_curve_to(_cairo, control1.x, control1.y, control2.x, control2.y, end.x, end.y);
    }

    cairo_t* _cairo;
    double _limit;
    CGPoint _start{};
    CGPoint _current{};
};

void addRectangles(cairo_t* cairo, std::span<const AreaRect> rectangles, const PixelSpace& space)
{
    for (const AreaRect& rect : rectangles) {
        const double left = reachable(rect.left);
        const double top = reachable(rect.top);
        cairo_rectangle(cairo, left, space.flipped(reachable(rect.bottom)), reachable(rect.right) - left,
            reachable(rect.bottom) - top);
    }
}

/// Strokes the current path of a cairo context, which was made from `path`.
void strokePath(cairo_t* cairo, const CGPath& path, const Pen& pen)
{
    const LineStyle& style = *pen.style;
    if (style.width == 0 || !isInvertible(pen.baseFromUser)) {
        cairo_new_path(cairo);
        return;
    }
    static constexpr cairo_line_cap_t kCaps[] = {
        CAIRO_LINE_CAP_BUTT, CAIRO_LINE_CAP_ROUND, CAIRO_LINE_CAP_SQUARE};
    static constexpr cairo_line_join_t kJoins[] = {
        CAIRO_LINE_JOIN_MITER, CAIRO_LINE_JOIN_ROUND, CAIRO_LINE_JOIN_BEVEL};
    const CGAffineTransform& t = pen.baseFromUser;
    const double scale = std::max(std::hypot(t.a, t.b), std::hypot(t.c, t.d));
    cairo_set_line_width(cairo, std::min(style.width, kFarthest / (scale * style.reach())));
    cairo_set_line_cap(cairo, kCaps[style.cap]);
    cairo_set_line_join(cairo, kJoins[style.join]);
    cairo_set_miter_limit(cairo, style.miterLimit);
    if (style.dashes && !hasTooManyDashes(path, pen))
        cairo_set_dash(cairo, style.dashes->data(), int(style.dashes->size()), style.dashPhase);
    else
        cairo_set_dash(cairo, nullptr, 0, 0);

    cairo_matrix_t pixelsFromBase;
    cairo_get_matrix(cairo, &pixelsFromBase);
    const cairo_matrix_t baseFromUser{t.a, t.b, t.c, t.d, t.tx, t.ty};
    cairo_transform(cairo, &baseFromUser);
    cairo_stroke(cairo);
    cairo_set_matrix(cairo, &pixelsFromBase);
}

} // namespace

void drawShape(cairo_t* cairo, const Shape& shape)
{
    cairo_set_antialias(cairo, shape.isAntialiased ? CAIRO_ANTIALIAS_DEFAULT : CAIRO_ANTIALIAS_NONE);
    cairo_new_path(cairo);
    if (!shape.rectangles.empty())
        addRectangles(cairo, shape.rectangles, shape.space);
    else if (shape.path)
        PathAdder(cairo, shape.pen ? kFarthest : kFarthestFilled).add(*shape.path);

    if (shape.pen && shape.path && shape.rectangles.empty())
        return strokePath(cairo, *shape.path, *shape.pen);
    cairo_set_fill_rule(cairo, shape.isEvenOdd ? CAIRO_FILL_RULE_EVEN_ODD : CAIRO_FILL_RULE_WINDING);
    cairo_fill(cairo);
}

bool isInvertible(const CGAffineTransform& transform)
{
    const double determinant = transform.a * transform.d - transform.b * transform.c;
    return std::isfinite(determinant) && determinant != 0;
}
