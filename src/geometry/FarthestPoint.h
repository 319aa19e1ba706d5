#pragma once

#include <CoreGraphics/CGGeometry.h>

#include <cmath>
#include <cstddef>

/// The line through two points in the formula of perpendicular_distance, with its constant terms precomputed.
/// Evaluates the same operations in the same order, so that results agree to the last bit.
struct ChordLine {
    ChordLine(CGPoint a, CGPoint b)
        : dx(b.x - a.x)
        , dy(b.y - a.y)
        , aybx(a.y * b.x)
        , axby(a.x * b.y)
        , length(std::sqrt(dy * dy + dx * dx))
    {
    }

    /// The formula's numerator: the distance times `length`.
    double numerator(double x, double y) const { return std::abs(x * dy - dx * y + aybx - axby); }
    /// The greater of a point's numerator and `greatest`, or `greatest` if the numerator is NaN.
    double greater(double greatest, double x, double y) const
    {
        const double own = numerator(x, y);
        return own > greatest ? own : greatest;
    }

    double dx, dy, aybx, axby;
    double length; ///< distance between the two points
};

/// Index of the point farthest from a line (the first of several), among the points `first` to `last - 1`;
/// `last` if no distance exceeds `epsilon`. Ignores distances that are NaN.
std::size_t findFarthestPoint(
    const CGPoint* points, std::size_t first, std::size_t last, const ChordLine& line, double epsilon);
/// The same for coordinates in separate arrays, with vector instructions.
std::size_t findFarthestPoint(const double* x, const double* y, std::size_t first, std::size_t last,
    const ChordLine& line, double epsilon);
