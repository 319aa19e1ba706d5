#include "CoreGraphics/cairo/CairoShape.h"

namespace {

/// cairo keeps coordinates in 24 bits and a sign before the point; beyond them they would wrap around.
constexpr double kFarthest = 4e6;

double reachable(double coordinate)
{
    return std::clamp(coordinate, -kFarthest, kFarthest);
}

void addPath(cairo_t* cairo, const CGPath& path)
{
    const CGPoint* next = path.points().data();
    CGPoint current{}; // cairo has no quadratic curves: their cubic form needs to know where they start
    CGPoint start{};
    const auto take = [&next] {
        const CGPoint point{reachable(next->x), reachable(next->y)};
        ++next;
        return point;
    };
    for (const CGPathOp op : path.ops()) {
        switch (op) {
        case kCGPathElementMoveToPoint:
            start = current = take();
            cairo_move_to(cairo, current.x, current.y);
            break;
        case kCGPathElementAddLineToPoint:
            current = take();
            cairo_line_to(cairo, current.x, current.y);
            break;
        case kCGPathElementAddQuadCurveToPoint: {
            const CGPoint control = take();
            const CGPoint end = take();
            const auto towards = [](double from, double to) { return from + (to - from) * 2 / 3; };
            cairo_curve_to(cairo, towards(current.x, control.x), towards(current.y, control.y),
                towards(end.x, control.x), towards(end.y, control.y), end.x, end.y);
            current = end;
            break;
        }
        case kCGPathElementAddCurveToPoint: {
            const CGPoint control1 = take();
            const CGPoint control2 = take();
            current = take();
            cairo_curve_to(cairo, control1.x, control1.y, control2.x, control2.y, current.x, current.y);
            break;
        }
        default:
            cairo_close_path(cairo);
            current = start;
            break;
        }
    }
}

void addRectangles(cairo_t* cairo, std::span<const AreaRect> rectangles, int height)
{
    for (const AreaRect& rect : rectangles) {
        const double left = reachable(rect.left);
        const double top = reachable(rect.top);
        cairo_rectangle(cairo, left, height - reachable(rect.bottom), reachable(rect.right) - left,
            reachable(rect.bottom) - top);
    }
}

/// Strokes the current path.
void strokePath(cairo_t* cairo, const Pen& pen)
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
    if (style.dashes)
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

void drawShape(cairo_t* cairo, const Shape& shape, int height)
{
    cairo_set_antialias(cairo, shape.isAntialiased ? CAIRO_ANTIALIAS_DEFAULT : CAIRO_ANTIALIAS_NONE);
    cairo_new_path(cairo);
    if (!shape.rectangles.empty())
        addRectangles(cairo, shape.rectangles, height);
    else if (shape.path)
        addPath(cairo, *shape.path);

    if (shape.pen && shape.rectangles.empty())
        return strokePath(cairo, *shape.pen);
    cairo_set_fill_rule(cairo, shape.isEvenOdd ? CAIRO_FILL_RULE_EVEN_ODD : CAIRO_FILL_RULE_WINDING);
    cairo_fill(cairo);
}

bool isInvertible(const CGAffineTransform& transform)
{
    const double determinant = transform.a * transform.d - transform.b * transform.c;
    return std::isfinite(determinant) && determinant != 0;
}
