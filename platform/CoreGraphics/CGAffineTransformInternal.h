#pragma once

#include <CoreGraphics/CGAffineTransform.h>

#include <cmath>
#include <optional>

/// The inverse transform; nullopt if there is none.
inline std::optional<CGAffineTransform> inverse(const CGAffineTransform& transform)
{
    const auto& [a, b, c, d, tx, ty] = transform;
    const CGFloat determinant = a * d - b * c;
    const CGAffineTransform inverse{d / determinant, -b / determinant, -c / determinant, a / determinant,
        (c * ty - d * tx) / determinant, (b * tx - a * ty) / determinant};
    const CGFloat sum = inverse.a + inverse.b + inverse.c + inverse.d + inverse.tx + inverse.ty;
    // A determinant of 0, or too close to it, makes the quotients infinite or NaN.
    return std::isfinite(sum) ? std::optional(inverse) : std::nullopt;
}
