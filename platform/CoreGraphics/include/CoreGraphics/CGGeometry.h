#pragma once

#include <CoreGraphics/CGBase.h>

#ifdef __cplusplus
#include <cmath>
#else
#include <math.h>
#endif
#include <float.h>

/// @file
/// Points, sizes and rectangles: plain values in points, y upward unless a view says otherwise.
///
/// A rectangle may have a negative width or height; every function here treats it as the standardized
/// rectangle of the same four edges. NaN coordinates are safe: every query about them returns false, and
/// results computed from them are NaN or the null rectangle. Every function is safe on any thread.

/// A position, or a displacement, in the plane.
typedef struct CGPoint {
    CGFloat x; ///< grows to the right
    CGFloat y; ///< grows upward, unless the space is flipped
} CGPoint;

/// A width and a height; either may be negative.
typedef struct CGSize {
    CGFloat width;  ///< along x
    CGFloat height; ///< along y
} CGSize;

/// A rectangle with sides parallel to the axes.
typedef struct CGRect {
    CGPoint origin; ///< the corner of least x and y, if no side is negative
    CGSize size;    ///< from the origin to the opposite corner
} CGRect;

/// A side of a rectangle.
typedef enum KORVID_ENUM(CGRectEdge, uint32_t) {
    CGRectMinXEdge = 0, ///< the side at the least x
    CGRectMinYEdge = 1, ///< the side at the least y
    CGRectMaxXEdge = 2, ///< the side at the greatest x
    CGRectMaxYEdge = 3, ///< the side at the greatest y
} CGRectEdge;

/// The origin.
KORVID_CONSTANT CGPoint CGPointZero = {0, 0};
/// Width and height 0.
KORVID_CONSTANT CGSize CGSizeZero = {0, 0};
/// All four numbers 0. It is empty, but not null.
KORVID_CONSTANT CGRect CGRectZero = {{0, 0}, {0, 0}};
/// The null rectangle: the intersection of two separate rectangles, the bounds of nothing. Unlike CGRectZero
/// it has no position. Every rectangle with an origin at plus infinity counts as null.
KORVID_CONSTANT CGRect CGRectNull = {{HUGE_VAL, HUGE_VAL}, {0, 0}};
/// The infinite rectangle. Its numbers are finite: the largest that can be added without overflow.
KORVID_CONSTANT CGRect CGRectInfinite = {{-DBL_MAX / 2, -DBL_MAX / 2}, {DBL_MAX, DBL_MAX}};

KORVID_EXTERN_C_BEGIN

/// A point from its coordinates.
KORVID_CONSTEXPR CGPoint CGPointMake(CGFloat x, CGFloat y) KORVID_NOEXCEPT
{
    const CGPoint point = {x, y};
    return point;
}
/// A size from its width and height, which may be negative.
KORVID_CONSTEXPR CGSize CGSizeMake(CGFloat width, CGFloat height) KORVID_NOEXCEPT
{
    const CGSize size = {width, height};
    return size;
}
/// A rectangle from its origin and size, without standardizing negative sizes.
KORVID_CONSTEXPR CGRect CGRectMake(CGFloat x, CGFloat y, CGFloat width, CGFloat height) KORVID_NOEXCEPT
{
    const CGRect rect = {{x, y}, {width, height}};
    return rect;
}

/// True when both coordinates are equal.
KORVID_CONSTEXPR bool CGPointEqualToPoint(CGPoint a, CGPoint b) KORVID_NOEXCEPT
{
    return a.x == b.x && a.y == b.y;
}
/// True when width and height are equal.
KORVID_CONSTEXPR bool CGSizeEqualToSize(CGSize a, CGSize b) KORVID_NOEXCEPT
{
    return a.width == b.width && a.height == b.height;
}

/// The least x; infinite for the null rectangle.
KORVID_CONSTEXPR CGFloat CGRectGetMinX(CGRect rect) KORVID_NOEXCEPT
{
    return rect.size.width < 0 ? rect.origin.x + rect.size.width : rect.origin.x;
}
/// The x of the centre.
KORVID_CONSTEXPR CGFloat CGRectGetMidX(CGRect rect) KORVID_NOEXCEPT
{
    return rect.origin.x + rect.size.width / 2;
}
/// The greatest x.
KORVID_CONSTEXPR CGFloat CGRectGetMaxX(CGRect rect) KORVID_NOEXCEPT
{
    return rect.size.width < 0 ? rect.origin.x : rect.origin.x + rect.size.width;
}
/// The least y; infinite for the null rectangle.
KORVID_CONSTEXPR CGFloat CGRectGetMinY(CGRect rect) KORVID_NOEXCEPT
{
    return rect.size.height < 0 ? rect.origin.y + rect.size.height : rect.origin.y;
}
/// The y of the centre.
KORVID_CONSTEXPR CGFloat CGRectGetMidY(CGRect rect) KORVID_NOEXCEPT
{
    return rect.origin.y + rect.size.height / 2;
}
/// The greatest y.
KORVID_CONSTEXPR CGFloat CGRectGetMaxY(CGRect rect) KORVID_NOEXCEPT
{
    return rect.size.height < 0 ? rect.origin.y : rect.origin.y + rect.size.height;
}
/// The width of the standardized rectangle, never negative.
KORVID_CONSTEXPR CGFloat CGRectGetWidth(CGRect rect) KORVID_NOEXCEPT
{
    return rect.size.width < 0 ? -rect.size.width : rect.size.width;
}
/// The height of the standardized rectangle, never negative.
KORVID_CONSTEXPR CGFloat CGRectGetHeight(CGRect rect) KORVID_NOEXCEPT
{
    return rect.size.height < 0 ? -rect.size.height : rect.size.height;
}

/// True for CGRectNull and for every rectangle with a coordinate of its origin at plus infinity, whatever its
/// size.
KORVID_CONSTEXPR bool CGRectIsNull(CGRect rect) KORVID_NOEXCEPT
{
    return rect.origin.x == CGRectNull.origin.x || rect.origin.y == CGRectNull.origin.y;
}
/// True when the rectangle is null or one of its sides is 0. A negative side is not empty.
KORVID_CONSTEXPR bool CGRectIsEmpty(CGRect rect) KORVID_NOEXCEPT
{
    return rect.size.width == 0 || rect.size.height == 0 || CGRectIsNull(rect);
}
/// True for exactly the numbers of CGRectInfinite.
KORVID_CONSTEXPR bool CGRectIsInfinite(CGRect rect) KORVID_NOEXCEPT
{
    return CGPointEqualToPoint(rect.origin, CGRectInfinite.origin)
        && CGSizeEqualToSize(rect.size, CGRectInfinite.size);
}

/// The rectangle of the same edges whose width and height are not negative. A null rectangle becomes
/// CGRectNull.
KORVID_CONSTEXPR CGRect CGRectStandardize(CGRect rect) KORVID_NOEXCEPT
{
    if (CGRectIsNull(rect))
        return CGRectNull;
    return CGRectMake(CGRectGetMinX(rect), CGRectGetMinY(rect), CGRectGetWidth(rect), CGRectGetHeight(rect));
}

/// True when all edges are equal: a rectangle with negative sizes equals its standardized form. All null
/// rectangles are equal.
KORVID_CONSTEXPR bool CGRectEqualToRect(CGRect a, CGRect b) KORVID_NOEXCEPT
{
    a = CGRectStandardize(a);
    b = CGRectStandardize(b);
    return CGPointEqualToPoint(a.origin, b.origin) && CGSizeEqualToSize(a.size, b.size);
}

/// Standardizes, then moves each vertical edge inward by `dx` and each horizontal one by `dy`; negative
/// amounts move outward. The result is the null rectangle if a side would become negative; a side of exactly
/// 0 is allowed. A null rectangle is returned unchanged.
KORVID_CONSTEXPR CGRect CGRectInset(CGRect rect, CGFloat dx, CGFloat dy) KORVID_NOEXCEPT
{
    if (CGRectIsNull(rect))
        return rect;
    rect = CGRectStandardize(rect);
    const CGRect inset = CGRectMake(
        rect.origin.x + dx, rect.origin.y + dy, rect.size.width - 2 * dx, rect.size.height - 2 * dy);
    return inset.size.width < 0 || inset.size.height < 0 ? CGRectNull : inset;
}

/// Standardizes, then moves the origin. A null rectangle is returned unchanged.
KORVID_CONSTEXPR CGRect CGRectOffset(CGRect rect, CGFloat dx, CGFloat dy) KORVID_NOEXCEPT
{
    if (CGRectIsNull(rect))
        return rect;
    rect = CGRectStandardize(rect);
    return CGRectMake(rect.origin.x + dx, rect.origin.y + dy, rect.size.width, rect.size.height);
}

/// The smallest rectangle with whole-number edges that contains `rect`. A null rectangle is returned
/// unchanged.
KORVID_INLINE CGRect CGRectIntegral(CGRect rect) KORVID_NOEXCEPT
{
    if (CGRectIsNull(rect))
        return rect;
    const CGFloat minX = floor(CGRectGetMinX(rect));
    const CGFloat minY = floor(CGRectGetMinY(rect));
    return CGRectMake(minX, minY, ceil(CGRectGetMaxX(rect)) - minX, ceil(CGRectGetMaxY(rect)) - minY);
}

/// The smallest rectangle that contains both. If one is null, the result is the other one, standardized. An
/// empty rectangle contributes its position.
KORVID_EXPORT CGRect CGRectUnion(CGRect a, CGRect b);

/// The intersection of both. Rectangles that only touch give a rectangle with a side of 0; separate
/// rectangles, or a null one, give the null rectangle.
KORVID_EXPORT CGRect CGRectIntersection(CGRect a, CGRect b);

/// Standardizes `rect` and divides it by a line parallel to `edge` at a distance of `amount` from it: `slice`
/// receives the part at that edge, `remainder` the rest. A negative or NaN amount counts as 0, an amount
/// beyond the opposite edge as the distance to that edge; the empty part then has a side of 0 and lies at the
/// dividing line. A null rectangle gives two null rectangles. `slice` and `remainder` may be null; an invalid
/// `edge` counts as CGRectMinXEdge.
KORVID_EXPORT void CGRectDivide(
    CGRect rect, CGRect* slice, CGRect* remainder, CGFloat amount, CGRectEdge edge);

/// True exactly when CGRectIntersection is not null, which is Apple's definition: rectangles that touch at an
/// edge or a corner intersect, and so do empty ones. NSIntersectsRect requires a shared area instead.
KORVID_CONSTEXPR bool CGRectIntersectsRect(CGRect a, CGRect b) KORVID_NOEXCEPT
{
    return !CGRectIsNull(a) && !CGRectIsNull(b) && CGRectGetMinX(a) <= CGRectGetMaxX(b)
        && CGRectGetMinX(b) <= CGRectGetMaxX(a) && CGRectGetMinY(a) <= CGRectGetMaxY(b)
        && CGRectGetMinY(b) <= CGRectGetMaxY(a);
}

/// Half open: points on the two minimum edges are inside, points on the two maximum edges outside. Null and
/// empty rectangles contain no point.
KORVID_CONSTEXPR bool CGRectContainsPoint(CGRect rect, CGPoint point) KORVID_NOEXCEPT
{
    return !CGRectIsNull(rect) && point.x >= CGRectGetMinX(rect) && point.x < CGRectGetMaxX(rect)
        && point.y >= CGRectGetMinY(rect) && point.y < CGRectGetMaxY(rect);
}

/// True when the union of both is `outer`: edges may coincide, and every rectangle contains the null one.
KORVID_CONSTEXPR bool CGRectContainsRect(CGRect outer, CGRect inner) KORVID_NOEXCEPT
{
    if (CGRectIsNull(inner))
        return true;
    return !CGRectIsNull(outer) && CGRectGetMinX(outer) <= CGRectGetMinX(inner)
        && CGRectGetMaxX(inner) <= CGRectGetMaxX(outer) && CGRectGetMinY(outer) <= CGRectGetMinY(inner)
        && CGRectGetMaxY(inner) <= CGRectGetMaxY(outer);
}

KORVID_EXTERN_C_END
