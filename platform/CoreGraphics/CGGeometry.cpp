#include <CoreGraphics/CGGeometry.h>

#include <algorithm>

namespace {

/// One side of a rectangle. Start and length are kept beside the end, so that a side taken over whole comes
/// through with exactly the length it had.
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

/// True when the sides have a point in common; false with NaN.
bool meet(const Side& a, const Side& b)
{
    return a.start <= b.end && b.start <= a.end;
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
    if (CGRectIsNull(a) || CGRectIsNull(b) || !meet(sideInX(a), sideInX(b)) || !meet(sideInY(a), sideInY(b)))
        return CGRectNull;
    const Side x = intersectionOf(sideInX(a), sideInX(b));
    const Side y = intersectionOf(sideInY(a), sideInY(b));
    return {{x.start, y.start}, {x.length, y.length}};
}
