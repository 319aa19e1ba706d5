#pragma once

#include <CoreGraphics/CGGeometry.h>

#include <cmath>
#include <cstddef>

/// A line through two points, to measure distances from: the rule of perpendicular_distance, its constant
/// parts computed once. Each operation is the rule's own, in its order, so that results agree to the last
/// bit.
struct ChordLine {
    ChordLine(CGPoint a, CGPoint b)
        : dx(b.x - a.x)
        , dy(b.y - a.y)
        , aybx(a.y * b.x)
        , axby(a.x * b.y)
        , length(std::sqrt(dy * dy + dx * dx))
    {
    }

    /// The rule's numerator; divided by `length` it is the distance.
    double numerator(double x, double y) const { return std::abs(x * dy - dx * y + aybx - axby); }
    /// The greater of a point's numerator and `greatest`; the latter where the former is NaN.
    double greater(double greatest, double x, double y) const
    {
        const double own = numerator(x, y);
        return own > greatest ? own : greatest;
    }

    double dx, dy, aybx, axby;
    double length; ///< from one point to the other
};

/// Index of the first point at the greatest distance from a line, among the points `first` to `last - 1`;
/// `last` when no distance is above `epsilon`. A distance that is NaN is passed over. For any number of
/// points.
std::size_t findFarthestPoint(
    const CGPoint* points, std::size_t first, std::size_t last, const ChordLine& line, double epsilon);
/// The same, many points at a time, for coordinates that are kept apart.
std::size_t findFarthestPoint(const double* x, const double* y, std::size_t first, std::size_t last,
    const ChordLine& line, double epsilon);
