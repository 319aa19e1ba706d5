#pragma once

#include <CoreGraphics/CGGeometry.h>

#include <cmath>
#include <cstddef>
#include <span>
#include <vector>

// Plain reference implementations of path geometry: benchmarks and tests compare the library with them.

/// The end points of the pieces of a cubic, halved until no control polygon is longer than `resolution`.
inline void plainFlatten(
    CGPoint p0, CGPoint p1, CGPoint p2, CGPoint p3, double resolution, std::vector<CGPoint>& points)
{
    const auto length = [](CGPoint a, CGPoint b) { return std::hypot(b.x - a.x, b.y - a.y); };
    if (!(length(p0, p1) + length(p1, p2) + length(p2, p3) > resolution))
        return points.push_back(p3);
    const auto middle = [](CGPoint a, CGPoint b) {
        return CGPointMake((b.x - a.x) * 0.5 + a.x, (b.y - a.y) * 0.5 + a.y);
    };
    const CGPoint a = middle(p0, p1), b = middle(p1, p2), c = middle(p2, p3);
    const CGPoint d = middle(a, b), e = middle(b, c), m = middle(d, e);
    plainFlatten(p0, a, d, m, resolution, points);
    plainFlatten(m, e, c, p3, resolution, points);
}

/// The length of a polyline up to each point.
inline std::vector<double> plainDistances(std::span<const CGPoint> points, double total = 0)
{
    std::vector<double> distances{total};
    for (std::size_t k = 1; k < points.size(); ++k) {
        total += std::hypot(points[k].x - points[k - 1].x, points[k].y - points[k - 1].y);
        distances.push_back(total);
    }
    return distances;
}

/// The smallest index, at least 1, whose distance is >= `distance`; `distances.size()` if there is none.
inline std::size_t plainSegmentEnd(std::span<const double> distances, double distance)
{
    std::size_t k = 1;
    while (k < distances.size() && !(distances[k] >= distance))
        ++k;
    return k;
}

/// The Ramer-Douglas-Peucker algorithm by plain recursion.
inline std::size_t plainDouglasPeucker(
    const CGPoint* pts, std::size_t n, CGPoint* out, std::size_t outCap, double epsilon)
{
    const CGPoint a = pts[0], b = pts[n - 1];
    double farthest = 0;
    std::size_t index = 0;
    for (std::size_t i = 1; i + 1 < n; ++i) {
        const CGPoint p = pts[i];
        const double distance = std::abs(p.x * (b.y - a.y) - (b.x - a.x) * p.y + a.y * b.x - a.x * b.y)
            / std::sqrt((b.y - a.y) * (b.y - a.y) + (b.x - a.x) * (b.x - a.x));
        if (distance > farthest) {
            farthest = distance;
            index = i;
        }
    }
    if (farthest > epsilon) {
        const std::size_t left = plainDouglasPeucker(pts, index + 1, out, outCap, epsilon);
        const bool isFull = outCap < left - 1;
        const std::size_t right = plainDouglasPeucker(pts + index, n - index, isFull ? out : out + (left - 1),
            isFull ? 0 : outCap - (left - 1), epsilon);
        return left + right - 1;
    }
    if (outCap >= 2) {
        out[0] = a;
        out[1] = b;
    }
    return 2;
}
