#include "CoreGraphics/raster/CurveLength.h"

#include "CoreGraphics/raster/Vectors.h"

#include <algorithm>
#include <cmath>

namespace {

double slopeAt(const CGCubic& c, double t)
{
    const double u = 1 - t;
    return 3
        * (u * u * (c.control1 - c.start) + 2 * u * t * (c.control2 - c.control1)
            + t * t * (c.end - c.control2));
}

/// The polar form of a curve: its value at t when all three arguments are t, its control points when they are
/// ends of an interval.
double polar(const CGCubic& c, double t1, double t2, double t3)
{
    const auto between = [](double from, double to, double t) { return from + (to - from) * t; };
    const double a = between(c.start, c.control1, t1);
    const double b = between(c.control1, c.control2, t1);
    const double d = between(c.control2, c.end, t1);
    return between(between(a, b, t2), between(b, d, t2), t3);
}

} // namespace

CurveLength::CurveLength(const CGCubicCurve& curve)
    : _curve(curve)
{
    for (std::size_t i = 0; i < kParts; ++i)
        _lengths[i + 1] = _lengths[i] + between(double(i) / kParts, double(i + 1) / kParts);
}

double CurveLength::speedAt(double t) const
{
    return lengthOf({slopeAt(_curve.x, t), slopeAt(_curve.y, t)});
}

/// Gauss-Legendre quadrature with three points.
double CurveLength::between(double t0, double t1) const
{
    const double middle = (t0 + t1) / 2;
    const double half = (t1 - t0) / 2;
    const double offset = half * std::sqrt(0.6);
    return half * (5 * speedAt(middle - offset) + 8 * speedAt(middle) + 5 * speedAt(middle + offset)) / 9;
}

double CurveLength::parameterAt(double length) const
{
    if (length >= total())
        return 1;
    const auto next = std::ranges::upper_bound(_lengths, length);
    const auto index = std::size_t(std::max<std::ptrdiff_t>(next - _lengths.begin() - 1, 0));
    const double first = double(index) / kParts;
    const double last = double(index + 1) / kParts;
    const double wanted = length - _lengths[index];
    // Newton's method, from the linear estimate. It doubles the number of exact digits each time.
    constexpr double kExact = 1e-6;
    double t = first + (last - first) * wanted / (_lengths[index + 1] - _lengths[index]);
    for (int i = 0; i < 3; ++i) {
        const double speed = speedAt(t);
        if (!(speed > 0))
            break;
        const double step = (between(first, t) - wanted) / speed;
        t = std::clamp(t - step, first, last);
        if (std::abs(step) * kParts < kExact)
            break;
    }
    return t;
}

CGCubic part(const CGCubic& curve, double t0, double t1)
{
    return {polar(curve, t0, t0, t0), polar(curve, t0, t0, t1), polar(curve, t0, t1, t1),
        polar(curve, t1, t1, t1)};
}
