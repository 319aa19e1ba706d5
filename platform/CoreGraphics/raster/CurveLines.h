#pragma once

#include <CoreGraphics/CGGeometry.h>

#include <algorithm>
#include <cmath>
#include <concepts>

// Lines in place of cubic curves, for filling.

/// The most that lines are away from their curve, in pixels: less than the coverage of an edge of one pixel
/// changes by in 8 bits, times five.
inline constexpr double kFlatness = 0.02;

/// The number of lines for a curve.
inline int curveLineCount(CGPoint from, CGPoint control1, CGPoint control2, CGPoint to)
{
    // Curves farther away than this are drawn with as many lines as those that are as large.
    constexpr double kMostLines = 1024;
    // The square of twice the distance of a point from the middle of its neighbours: a 36th of the square of
    // the second derivative.
    const auto squaredBend = [](CGPoint a, CGPoint b, CGPoint c) {
        const double x = a.x - 2 * b.x + c.x;
        const double y = a.y - 2 * b.y + c.y;
        return x * x + y * y;
    };
    const double squaredCurvature =
        36 * std::max(squaredBend(from, control1, control2), squaredBend(control1, control2, to));
    // Between points that are h of a curve apart, it is at most the second derivative times h^2 / 8 away from
    // its chord; see forEachCurveLine for the third of this that the choice of points saves.
    const double count = std::sqrt(std::sqrt(squaredCurvature) / (12 * kFlatness));
    return 1 + int(std::min(count, kMostLines));
}

/// Calls `add(end)` for each of the lines, the first of which begins at `from`.
template <std::invocable<CGPoint> Add>
void forEachCurveLine(CGPoint from, CGPoint control1, CGPoint control2, CGPoint to, Add add)
{
    const int count = curveLineCount(from, control1, control2, to);
    const double step = 1.0 / count;
    // The curve as a polynomial of t.
    const CGPoint c1{3 * (control1.x - from.x), 3 * (control1.y - from.y)};
    const CGPoint c2{3 * (from.x - 2 * control1.x + control2.x), 3 * (from.y - 2 * control1.y + control2.y)};
    const CGPoint c3{
        to.x - from.x + 3 * (control1.x - control2.x), to.y - from.y + 3 * (control1.y - control2.y)};
    // Lines between points of the curve would all be on its inner side. With points that are off the curve by
    // step^2 / 12 of its second derivative, 2 c2 + 6 t c3, they cut off as much area as they add.
    const double off = step * step / 6;
    const CGPoint d0{from.x - off * c2.x, from.y - off * c2.y};
    const CGPoint d1{c1.x - 3 * off * c3.x, c1.y - 3 * off * c3.y};
    for (int i = 1; i < count; ++i) {
        const double t = i * step;
        add(CGPoint{d0.x + t * (d1.x + t * (c2.x + t * c3.x)), d0.y + t * (d1.y + t * (c2.y + t * c3.y))});
    }
    add(to);
}
