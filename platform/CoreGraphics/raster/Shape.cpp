#include "CoreGraphics/raster/Shape.h"

#include <numbers>

namespace {

/// The rounding of coordinates in curves and slanted lines, in pixels.
constexpr double kCurveSlack = 1.0 / 128;

/// The ratio of the greatest to the least scale of the transform over all directions: 1 when circles stay
/// circles, infinite without an inverse.
double unevenness(const CGAffineTransform& t)
{
    // These are the sum of the squares and twice the product of the greatest and the least scale.
    const double squares = t.a * t.a + t.b * t.b + t.c * t.c + t.d * t.d;
    const double product = 2 * std::abs(t.a * t.d - t.b * t.c);
    return (squares + std::sqrt(std::max(squares * squares - product * product, 0.0))) / product;
}

} // namespace

double LineStyle::reach() const
{
    const double squareCap = std::numbers::sqrt2;
    return (join == kCGLineJoinMiter ? std::max(miterLimit, squareCap) : squareCap) / 2;
}

double Pen::reach() const
{
    const double reach = style->width * style->reach();
    // The miter limit applies to the angle in device space. In user space the angle may be sharper and the
    // miter longer by the same ratio.
    return style->join == kCGLineJoinMiter ? reach * unevenness(baseFromUser) : reach;
}

PixelRect Shape::pixels(const PixelRect& limits) const
{
    if (!rectangles.empty()) {
        AreaRect all = rectangles.front();
        all.bottom = rectangles.back().bottom;
        for (const AreaRect& rect : rectangles) {
            all.left = std::min(all.left, rect.left);
            all.right = std::max(all.right, rect.right);
        }
        return all.pixels(limits);
    }
    if (!path || path->isEmpty())
        return {};

    const CGRect box = path->boundingBox();
    double dx = kCurveSlack;
    double dy = kCurveSlack;
    if (pen) {
        const CGAffineTransform& t = pen->baseFromUser;
        const double side = pen->reach();
        dx += side * std::hypot(t.a, t.c);
        dy += side * std::hypot(t.b, t.d);
    }
    // Without antialiasing a pixel whose centre is near the edge may be painted: half a pixel more.
    if (!isAntialiased) {
        dx += 0.5;
        dy += 0.5;
    }
    return AreaRect{CGRectGetMinX(box) - dx, space.flipped(CGRectGetMaxY(box)) - dy, CGRectGetMaxX(box) + dx,
        space.flipped(CGRectGetMinY(box)) + dy}
        .pixels(limits);
}

AreaRect areaRect(CGRect rect, const CGAffineTransform& baseFromUser, const PixelSpace& space)
{
    const CGPoint low = {CGRectGetMinX(rect), CGRectGetMinY(rect)};
    const CGPoint high = {CGRectGetMaxX(rect), CGRectGetMaxY(rect)};
    return space.area(
        CGPointApplyAffineTransform(low, baseFromUser), CGPointApplyAffineTransform(high, baseFromUser));
}

AreaRect snapped(const AreaRect& rect)
{
    return {std::ceil(rect.left - 0.5), std::ceil(rect.top - 0.5), std::ceil(rect.right - 0.5),
        std::ceil(rect.bottom - 0.5)};
}

std::optional<std::span<const AreaRect>> rectanglesOfStroke(const CGPath& path, const Pen& pen,
    const PixelSpace& space, bool isAntialiased, std::vector<AreaRect>& memory)
{
    const LineStyle& style = *pen.style;
    if (!path.hasOnlyRectangles() || path.points().size() != 4 || style.dashes
        || style.join != kCGLineJoinMiter || style.miterLimit < std::numbers::sqrt2
        || !keepsRectangles(pen.baseFromUser))
        return std::nullopt;
    const AreaRect line = space.area(path.points()[0], path.points()[2]);
    const double dx = style.width / 2 * (std::abs(pen.baseFromUser.a) + std::abs(pen.baseFromUser.c));
    const double dy = style.width / 2 * (std::abs(pen.baseFromUser.b) + std::abs(pen.baseFromUser.d));
    if (line.isEmpty() || !(dx > 0 && dy > 0))
        return std::nullopt;

    AreaRect outer{line.left - dx, line.top - dy, line.right + dx, line.bottom + dy};
    AreaRect inner{line.left + dx, line.top + dy, line.right - dx, line.bottom - dy};
    if (!isAntialiased) {
        outer = snapped(outer);
        inner = snapped(inner);
    }
    memory.clear();
    if (inner.isEmpty()) {
        memory.push_back(outer);
        return memory;
    }
    for (const AreaRect& part : {AreaRect{outer.left, outer.top, outer.right, inner.top},
             AreaRect{outer.left, inner.top, inner.left, inner.bottom},
             AreaRect{inner.right, inner.top, outer.right, inner.bottom},
             AreaRect{outer.left, inner.bottom, outer.right, outer.bottom}}) {
        if (!part.isEmpty()) // a thin line may contain no pixel centres without antialiasing
            memory.push_back(part);
    }
    return memory;
}
