#include "CoreGraphics/raster/GradientGeometry.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

/// A gradient so short that this many of its lengths fit into a pixel counts as one of length 0.
constexpr double kSteepest = 1e9;

/// Circles that are this close to touching internally need double precision.
constexpr double kNestedMargin = 0.01;

/// Circles within this distance count as touching, so that rounding does not decide it: touching circles fill
/// half a plane, nested ones the whole plane.
constexpr double kTouching = 1e-9;

/// The distance of pixel centres from `origin` along a unit vector.
PixelRamp distances(CGPoint origin, CGPoint direction, const CGAffineTransform& t)
{
    return {t.a * direction.x + t.b * direction.y, t.c * direction.x + t.d * direction.y,
        (t.tx - origin.x) * direction.x + (t.ty - origin.y) * direction.y};
}

bool isFinite(CGPoint point)
{
    return std::isfinite(point.x) && std::isfinite(point.y);
}

} // namespace

bool PixelRamp::isFinite() const
{
    return std::isfinite(perColumn) && std::isfinite(perRow) && std::isfinite(origin);
}

std::optional<GradientGeometry> GradientGeometry::linear(
    CGPoint start, CGPoint end, CGGradientDrawingOptions options, const CGAffineTransform& userFromPixel)
{
    if (!::isFinite(start) || !::isFinite(end))
        return std::nullopt;
    GradientGeometry geometry(Kind::Linear, options);
    const double dx = end.x - start.x;
    const double dy = end.y - start.y;
    const double length = std::hypot(dx, dy);
    geometry._ramp = distances(start, {dx / length, dy / length}, userFromPixel).times(1 / length);
    const double steepness = std::hypot(geometry._ramp.perColumn, geometry._ramp.perRow);
    if (geometry._ramp.isFinite() && steepness <= kSteepest)
        return geometry;
    if (!geometry.drawsBefore() && !geometry.drawsAfter())
        return std::nullopt;
    // The end has priority: where both sides are drawn, the side after the end is on top.
    geometry._ramp = {0, 0, geometry.drawsAfter() ? 2.0 : -1.0};
    return geometry;
}

// Circle s has its centre at s distance along the line of centres and the radius startRadius + s growth.
// With the pixel at (x, y) in units of distances, it is on circle s when
//     a s² - 2 b s + c = 0,   b = x distance + startRadius growth,   c = x² + y² - startRadius².
// The discriminant b² - a c looks like a difference of large numbers, but is
//     (x growth + startRadius distance)² - a y².
std::optional<GradientGeometry> GradientGeometry::radial(CGPoint startCenter, double startRadius,
    CGPoint endCenter, double endRadius, CGGradientDrawingOptions options,
    const CGAffineTransform& userFromPixel)
{
    const double dx = endCenter.x - startCenter.x;
    const double dy = endCenter.y - startCenter.y;
    const double length = std::hypot(dx, dy);
    const double unit = std::max(length, std::abs(endRadius - startRadius));
    const bool isRadius = startRadius >= 0 && endRadius >= 0;
    if (!isRadius || !(unit > 0) || !std::isfinite(unit) || !::isFinite(startCenter))
        return std::nullopt;

    const CGPoint direction = length > 0 ? CGPoint{dx / length, dy / length} : CGPoint{1, 0};
    ConeOfCircles cone;
    cone.along = distances(startCenter, direction, userFromPixel).times(1 / unit);
    cone.across = distances(startCenter, {-direction.y, direction.x}, userFromPixel).times(1 / unit);
    cone.distance = length / unit;
    cone.startRadius = startRadius / unit;
    cone.growth = (endRadius - startRadius) / unit;
    cone.a = (cone.distance - cone.growth) * (cone.distance + cone.growth);
    if (std::abs(cone.a) < kTouching)
        cone.a = 0;
    if (!cone.along.isFinite() || !cone.across.isFinite() || !std::isfinite(cone.startRadius))
        return std::nullopt;

    GradientGeometry geometry(cone.a < -kNestedMargin ? Kind::Nested : Kind::Cone, options);
    geometry._cone = cone;
    if (geometry._kind == Kind::Nested) {
        const double size = -cone.a;
        geometry._nested.mean =
            cone.along.times(cone.distance).plus(cone.startRadius * cone.growth).times(-1 / size);
        geometry._nested.u =
            cone.along.times(cone.growth).plus(cone.startRadius * cone.distance).times(1 / size);
        geometry._nested.v = cone.across.times(std::sqrt(size) / size);
        // The other of the two circles has a negative radius.
        geometry._nested.sign = cone.growth > 0 ? 1 : -1;
    }
    return geometry;
}

double GradientGeometry::locationAt(int column, int row) const
{
    switch (_kind) {
    case Kind::Linear:
        return _ramp.at(column, row);
    case Kind::Nested:
        return _nested.mean.at(column, row)
            + _nested.sign * std::hypot(_nested.u.at(column, row), _nested.v.at(column, row));
    default:
        return coneLocationAt(column, row);
    }
}

double GradientGeometry::coneLocationAt(int column, int row) const
{
    const double x = _cone.along.at(column, row);
    const double y = _cone.across.at(column, row);
    const double b = x * _cone.distance + _cone.startRadius * _cone.growth;
    const double c = x * x + y * y - _cone.startRadius * _cone.startRadius;
    const double u = x * _cone.growth + _cone.startRadius * _cone.distance;
    const double discriminant = u * u - _cone.a * y * y;
    constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
    if (!(discriminant >= 0))
        return kNone;
    // The sum and the difference of b and the root. The one that would cancel is computed from the product of
    // the solutions.
    const double q = b + std::copysign(std::sqrt(discriminant), b);
    const double first = _cone.a == 0 ? kNone : q / _cone.a;
    const double second = c / q;
    const auto isDrawn = [&](double s) {
        return _cone.startRadius + s * _cone.growth >= 0 && (drawsBefore() || s >= 0)
            && (drawsAfter() || s < 1);
    };
    // Later circles lie on top.
    const double upper = first < second ? second : first;
    const double lower = first < second ? first : second;
    return isDrawn(upper) ? upper : isDrawn(lower) ? lower : kNone;
}
