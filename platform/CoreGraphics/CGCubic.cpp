#include "CoreGraphics/CGCubic.h"

#include <algorithm>
#include <utility>

CGFloat CGCubic::at(CGFloat t) const noexcept
{
    if (t <= 0)
        return start;
    if (t >= 1)
        return end;
    const CGFloat s = 1 - t;
    const CGFloat value = s * s * s * start + 3 * s * t * (s * control1 + t * control2) + t * t * t * end;
    const auto [least, greatest] = std::minmax({start, control1, control2, end});
    return std::clamp(value, least, greatest);
}

int CGCubic::turns(CGFloat (&t)[2]) const noexcept
{
    // A third of the derivative is a t² + 2 b t + c.
    const CGFloat a = 3 * (control1 - control2) + end - start;
    const CGFloat b = start - 2 * control1 + control2;
    const CGFloat c = control1 - start;
    const CGFloat discriminant = b * b - a * c;
    if (!(discriminant > 0))
        return 0;
    // Avoids cancellation: the sum never has terms of opposite sign. A quadratic curve (a = 0) has the second
    // root only.
    const CGFloat q = -(b + std::copysign(std::sqrt(discriminant), b));
    CGFloat roots[2] = {q / a, c / q};
    if (roots[0] > roots[1])
        std::swap(roots[0], roots[1]);
    int count = 0;
    for (const CGFloat root : roots) {
        if (root > 0 && root < 1)
            t[count++] = root;
    }
    return count;
}
