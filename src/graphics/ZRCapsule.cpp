#include <KorvidAppKit/ZRGraphics.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <numbers>

CGPoint ZRGraphics::pointAlongCapsuleWithBounds(CGRect bounds, double t) const
{
    constexpr double pi = std::numbers::pi;
    const auto [x0, y0] = bounds.origin;
    const auto [width, height] = bounds.size;
    const double radius = std::min(width, height) / 2;
    const double length = std::max(width, height);
    const double straight = length - 2 * radius;
    const double cap = pi * radius;
    const double total = 2 * straight + 2 * cap;
    // A sum is finite only if all its terms are.
    if (!std::isfinite(x0 + y0 + width + height + total))
        return CGPointZero;
    if (radius <= 0)
        return bounds.origin;

    double distance = total * t;
    if (!std::isfinite(distance))
        distance = 0;
    const double lengths[]{straight, cap, straight, cap};
    const double starts[]{0, straight, straight + cap, 2 * straight + cap};
    int segment = 3;
    if (distance < starts[1])
        segment = 0;
    else if (distance < starts[2])
        segment = 1;
    else if (distance < starts[3])
        segment = 2;
    // A square has no straight sides: a distance before its first cap counts as 0.
    const double u = lengths[segment] > 0 ? (distance - starts[segment]) / lengths[segment] : 0;

    // The segment of the last point, for inspection in a debugger. Written only when it changes.
    static std::atomic<int> gCurSeg = 0;
    if (gCurSeg.load(std::memory_order_relaxed) != segment)
        gCurSeg.store(segment, std::memory_order_relaxed);

    // In an upright frame: the second coordinate runs along the capsule.
    const double angle = u * pi;
    double p = 0;
    double q = 0;
    switch (segment) {
    case 0:
        p = x0;
        q = y0 + radius + straight * u;
        break;
    case 1:
        p = x0 + 2 * radius * (1 - (std::cos(angle) + 1) / 2);
        q = y0 + (length - radius) + radius * std::sin(angle);
        break;
    case 2:
        p = x0 + 2 * radius;
        q = y0 + (length - radius) - straight * u;
        break;
    default:
        p = x0 + 2 * radius * (std::cos(angle) + 1) / 2;
        q = y0 + radius * (1 - std::sin(angle));
        break;
    }
    if (height > width)
        return {p, q};
    // A quarter turn that is exact for origins with x = y, such as that of a view's own bounds. Any other
    // origin moves the point by (x - y, x - y), as the header says.
    return {x0 + width - (q - x0), p};
}
