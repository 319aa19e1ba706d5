#pragma once

#include <CoreGraphics/CGGeometry.h>

/// One coordinate of a cubic Bézier curve as a function of t from 0 to 1.
struct CGCubic {
    CGFloat start;
    CGFloat control1;
    CGFloat control2;
    CGFloat end;

    /// The value at t: between the least and the greatest of the four numbers; exactly `start` at 0 and `end`
    /// at 1.
    CGFloat at(CGFloat t) const noexcept;
    /// Writes the values of t, 0 and 1 excluded, where the curve has a local extremum, in ascending order,
    /// and returns their number.
    int turns(CGFloat (&t)[2]) const noexcept;
};

/// A cubic Bézier curve in the plane.
struct CGCubicCurve {
    CGCubic x;
    CGCubic y;

    CGCubicCurve(const CGCubic& x, const CGCubic& y) noexcept
        : x(x)
        , y(y)
    {
    }
    CGCubicCurve(CGPoint start, CGPoint control1, CGPoint control2, CGPoint end) noexcept
        : x{start.x, control1.x, control2.x, end.x}
        , y{start.y, control1.y, control2.y, end.y}
    {
    }
    /// The cubic form of the quadratic curve with one control point.
    CGCubicCurve(CGPoint start, CGPoint control, CGPoint end) noexcept
        : CGCubicCurve(start,
            {start.x + (control.x - start.x) * 2 / 3, start.y + (control.y - start.y) * 2 / 3},
            {end.x + (control.x - end.x) * 2 / 3, end.y + (control.y - end.y) * 2 / 3}, end)
    {
    }
};
