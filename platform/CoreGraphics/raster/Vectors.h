#pragma once

#include <CoreGraphics/CGAffineTransform.h>

#include <cmath>
#include <optional>

// Points as vectors.

inline CGPoint operator+(CGPoint a, CGPoint b)
{
    return {a.x + b.x, a.y + b.y};
}
inline CGPoint operator-(CGPoint a, CGPoint b)
{
    return {a.x - b.x, a.y - b.y};
}
inline CGPoint operator*(CGPoint a, double factor)
{
    return {a.x * factor, a.y * factor};
}
inline double dot(CGPoint a, CGPoint b)
{
    return a.x * b.x + a.y * b.y;
}
inline double cross(CGPoint a, CGPoint b)
{
    return a.x * b.y - a.y * b.x;
}
inline CGPoint leftOf(CGPoint direction)
{
    return {-direction.y, direction.x};
}
inline double lengthOf(CGPoint vector)
{
    // Without the checks of hypot as long as the squares neither overflow nor vanish.
    constexpr double kLeast = 1e-200;
    constexpr double kMost = 1e200;
    const double squared = dot(vector, vector);
    return squared > kLeast && squared < kMost ? std::sqrt(squared) : std::hypot(vector.x, vector.y);
}
/// nullopt for a vector of length 0.
inline std::optional<CGPoint> unit(CGPoint vector)
{
    const double length = lengthOf(vector);
    if (!(length > 0))
        return std::nullopt;
    return vector * (1 / length);
}
inline CGPoint mapped(CGPoint vector, const CGAffineTransform& t)
{
    return {t.a * vector.x + t.c * vector.y, t.b * vector.x + t.d * vector.y};
}
