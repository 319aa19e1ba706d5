#include "CoreGraphics/CGAffineTransformInternal.h"

#include <algorithm>

std::optional<CGAffineTransform> inverse(const CGAffineTransform& transform)
{
    const auto& [a, b, c, d, tx, ty] = transform;
    const CGFloat determinant = a * d - b * c;
    const CGAffineTransform inverse{d / determinant, -b / determinant, -c / determinant, a / determinant,
        (c * ty - d * tx) / determinant, (b * tx - a * ty) / determinant};
    const CGFloat sum = inverse.a + inverse.b + inverse.c + inverse.d + inverse.tx + inverse.ty;
    // A determinant of 0, or too close to it, makes the quotients infinite or NaN.
    return std::isfinite(sum) ? std::optional(inverse) : std::nullopt;
}

CGAffineTransform CGAffineTransformInvert(CGAffineTransform transform)
{
    return inverse(transform).value_or(transform);
}

CGRect CGRectApplyAffineTransform(CGRect rect, CGAffineTransform transform)
{
    if (CGRectIsNull(rect) || CGRectIsInfinite(rect))
        return rect;

    const CGPoint origin = CGPointApplyAffineTransform(rect.origin, transform);
    // A rectangle that stays axis-aligned gets its sides without rounding errors: no corners are added and
    // subtracted again.
    if ((transform.b == 0 && transform.c == 0) || (transform.a == 0 && transform.d == 0))
        return CGRectStandardize({origin, CGSizeApplyAffineTransform(rect.size, transform)});

    const CGSize alongX = CGSizeApplyAffineTransform({rect.size.width, 0}, transform);
    const CGSize alongY = CGSizeApplyAffineTransform({0, rect.size.height}, transform);
    return {{origin.x + std::min(alongX.width, 0.0) + std::min(alongY.width, 0.0),
                origin.y + std::min(alongX.height, 0.0) + std::min(alongY.height, 0.0)},
        {std::abs(alongX.width) + std::abs(alongY.width), std::abs(alongX.height) + std::abs(alongY.height)}};
}
