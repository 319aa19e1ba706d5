#include <CoreGraphics/CGGeometry.h>

#include <algorithm>

namespace {

/// The extent of a rectangle along one axis. Stores the length in addition to both ends, so that an extent
/// that is copied unchanged has exactly the same length.
struct Side {
    CGFloat start;
    CGFloat end;
    CGFloat length;
};

Side sideInX(CGRect rect)
{
    return {CGRectGetMinX(rect), CGRectGetMaxX(rect), CGRectGetWidth(rect)};
}
Side sideInY(CGRect rect)
{
    return {CGRectGetMinY(rect), CGRectGetMaxY(rect), CGRectGetHeight(rect)};
}

Side side(CGFloat start, CGFloat end, const Side& a, const Side& b)
{
    for (const Side& whole : {a, b}) {
        if (whole.start == start && whole.end == end)
            return whole;
    }
    return {start, end, end - start};
}

Side unionOf(const Side& a, const Side& b)
{
    return side(std::min(a.start, b.start), std::max(a.end, b.end), a, b);
}

Side intersectionOf(const Side& a, const Side& b)
{
    return side(std::max(a.start, b.start), std::min(a.end, b.end), a, b);
}

} // namespace

CGRect CGRectUnion(CGRect a, CGRect b)
{
    if (CGRectIsNull(a))
        return CGRectStandardize(b);
    if (CGRectIsNull(b))
        return CGRectStandardize(a);
    const Side x = unionOf(sideInX(a), sideInX(b));
    const Side y = unionOf(sideInY(a), sideInY(b));
    return {{x.start, y.start}, {x.length, y.length}};
}

CGRect CGRectIntersection(CGRect a, CGRect b)
{
    if (!CGRectIntersectsRect(a, b))
        return CGRectNull;
    const Side x = intersectionOf(sideInX(a), sideInX(b));
    const Side y = intersectionOf(sideInY(a), sideInY(b));
    return {{x.start, y.start}, {x.length, y.length}};
}

void CGRectDivide(CGRect rect, CGRect* slice, CGRect* remainder, CGFloat amount, CGRectEdge edge)
{
    rect = CGRectStandardize(rect);
    CGRect near = rect; // the part at the edge
    CGRect far = rect;
    if (!CGRectIsNull(rect)) {
        const bool isHorizontal = edge == CGRectMinYEdge || edge == CGRectMaxYEdge;
        CGFloat CGSize::*const length = isHorizontal ? &CGSize::height : &CGSize::width;
        CGFloat CGPoint::*const start = isHorizontal ? &CGPoint::y : &CGPoint::x;
        amount = amount > 0 ? std::min(amount, rect.size.*length) : 0; // NaN too
        near.size.*length = amount;
        far.size.*length -= amount;
        if (edge == CGRectMaxXEdge || edge == CGRectMaxYEdge)
            near.origin.*start += far.size.*length;
        else
            far.origin.*start += amount;
    }
    if (slice)
        *slice = near;
    if (remainder)
        *remainder = far;
}
