#include "CoreGraphics/CGAffineTransformInternal.h"

#include <algorithm>

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
