#include <KorvidAppKit/ZRShapes.h>

#include <algorithm>
#include <cmath>

CGPathRef ZRCreateRoundedRectPath(std::uint32_t cornerMask, CGRect rect, CGFloat radius)
{
    const auto path = adopt(CGPathCreateMutable());
    const CGFloat minX = rect.origin.x;
    const CGFloat minY = rect.origin.y;
    const CGFloat maxX = minX + rect.size.width;
    const CGFloat maxY = minY + rect.size.height;
    if (!std::isfinite(minX) || !std::isfinite(minY) || !std::isfinite(maxX) || !std::isfinite(maxY))
        return CGPathCreateCopy(path);

    // Deliberately half the longer side: on the shorter sides, arcs may reach past each other.
    const CGFloat r = std::min(radius, std::max(rect.size.width / 2, rect.size.height / 2));
    if (!(r > 0)) // NaN too
        cornerMask = 0;

    if (cornerMask & kZRCornerMinXMinY) {
        CGPathMoveToPoint(path, nullptr, minX + r, minY);
        CGPathAddArcToPoint(path, nullptr, minX, minY, minX, minY + r, r);
    } else {
        CGPathMoveToPoint(path, nullptr, minX, minY);
    }
    if (cornerMask & kZRCornerMinXMaxY) {
        CGPathAddLineToPoint(path, nullptr, minX, maxY - r);
        CGPathAddArcToPoint(path, nullptr, minX, maxY, minX + r, maxY, r);
    } else {
        CGPathAddLineToPoint(path, nullptr, minX, maxY);
    }
    if (cornerMask & kZRCornerMaxXMaxY) {
        CGPathAddLineToPoint(path, nullptr, maxX - r, maxY);
        CGPathAddArcToPoint(path, nullptr, maxX, maxY, maxX, maxY - r, r);
    } else {
        CGPathAddLineToPoint(path, nullptr, maxX, maxY);
    }
    if (cornerMask & kZRCornerMaxXMinY) {
        CGPathAddLineToPoint(path, nullptr, maxX, minY + r);
        CGPathAddArcToPoint(path, nullptr, maxX, minY, maxX - r, minY, r);
    } else {
        CGPathAddLineToPoint(path, nullptr, maxX, minY);
    }
    CGPathCloseSubpath(path);
    return CGPathCreateCopy(path);
}
