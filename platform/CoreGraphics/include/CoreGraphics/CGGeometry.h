#pragma once

#include <CoreGraphics/CGBase.h>

#include <cfloat>
#include <cmath>
#include <limits>

// Points, sizes and rectangles: plain values in points, y upward unless a view says otherwise.
//
// A rectangle may be given with a negative width or height; every function here reads it as the standardized
// rectangle of the same four edges. Coordinates that are NaN never crash: a question about them is answered
// with no, and what is computed from them is NaN or the null rectangle. Every function is safe on any thread.

/// A place, or a displacement, in the plane.
struct CGPoint {
    CGFloat x;
    CGFloat y;
};

/// A width and a height; either may be negative.
struct CGSize {
    CGFloat width;
    CGFloat height;
};

/// A rectangle with sides parallel to the axes.
struct CGRect {
    CGPoint origin;
    CGSize size;
};

inline constexpr CGPoint CGPointZero{0, 0};
inline constexpr CGSize CGSizeZero{0, 0};
/// All four numbers 0. It is empty, but not null.
inline constexpr CGRect CGRectZero{{0, 0}, {0, 0}};
/// No rectangle at all: what two rectangles apart have in common, what encloses nothing. Not to be confused
/// with CGRectZero, which has a place.
inline constexpr CGRect CGRectNull{
    {std::numeric_limits<CGFloat>::infinity(), std::numeric_limits<CGFloat>::infinity()}, {0, 0}};
/// A rectangle without bounds; its numbers are finite, the largest that can be added up.
inline constexpr CGRect CGRectInfinite{{-DBL_MAX / 2, -DBL_MAX / 2}, {DBL_MAX, DBL_MAX}};

extern "C" {

constexpr CGPoint CGPointMake(CGFloat x, CGFloat y) noexcept
{
    return {x, y};
}
constexpr CGSize CGSizeMake(CGFloat width, CGFloat height) noexcept
{
    return {width, height};
}
/// The numbers are kept as given, negative sizes too.
constexpr CGRect CGRectMake(CGFloat x, CGFloat y, CGFloat width, CGFloat height) noexcept
{
    return {{x, y}, {width, height}};
}

/// Same coordinates.
constexpr bool CGPointEqualToPoint(CGPoint a, CGPoint b) noexcept
{
    return a.x == b.x && a.y == b.y;
}
/// Same numbers.
constexpr bool CGSizeEqualToSize(CGSize a, CGSize b) noexcept
{
    return a.width == b.width && a.height == b.height;
}

/// The least x; infinite for the null rectangle.
constexpr CGFloat CGRectGetMinX(CGRect rect) noexcept
{
    return rect.size.width < 0 ? rect.origin.x + rect.size.width : rect.origin.x;
}
constexpr CGFloat CGRectGetMidX(CGRect rect) noexcept
{
    return rect.origin.x + rect.size.width / 2;
}
constexpr CGFloat CGRectGetMaxX(CGRect rect) noexcept
{
    return rect.size.width < 0 ? rect.origin.x : rect.origin.x + rect.size.width;
}
/// The least y; infinite for the null rectangle.
constexpr CGFloat CGRectGetMinY(CGRect rect) noexcept
{
    return rect.size.height < 0 ? rect.origin.y + rect.size.height : rect.origin.y;
}
constexpr CGFloat CGRectGetMidY(CGRect rect) noexcept
{
    return rect.origin.y + rect.size.height / 2;
}
constexpr CGFloat CGRectGetMaxY(CGRect rect) noexcept
{
    return rect.size.height < 0 ? rect.origin.y : rect.origin.y + rect.size.height;
}
/// Never negative.
constexpr CGFloat CGRectGetWidth(CGRect rect) noexcept
{
    return rect.size.width < 0 ? -rect.size.width : rect.size.width;
}
/// Never negative.
constexpr CGFloat CGRectGetHeight(CGRect rect) noexcept
{
    return rect.size.height < 0 ? -rect.size.height : rect.size.height;
}

/// True for CGRectNull and for every rectangle that starts at plus infinity.
constexpr bool CGRectIsNull(CGRect rect) noexcept
{
    return rect.origin.x == CGRectNull.origin.x || rect.origin.y == CGRectNull.origin.y;
}
/// True when the rectangle is null or one of its sides is 0. A negative side is not empty.
constexpr bool CGRectIsEmpty(CGRect rect) noexcept
{
    return rect.size.width == 0 || rect.size.height == 0 || CGRectIsNull(rect);
}
/// True for the very numbers of CGRectInfinite.
constexpr bool CGRectIsInfinite(CGRect rect) noexcept
{
    return CGPointEqualToPoint(rect.origin, CGRectInfinite.origin)
        && CGSizeEqualToSize(rect.size, CGRectInfinite.size);
}

/// The same edges with a width and a height that are not negative.
constexpr CGRect CGRectStandardize(CGRect rect) noexcept
{
    return {{CGRectGetMinX(rect), CGRectGetMinY(rect)}, {CGRectGetWidth(rect), CGRectGetHeight(rect)}};
}

/// Same edges: a rectangle given backwards equals its standardized form. Null equals null.
constexpr bool CGRectEqualToRect(CGRect a, CGRect b) noexcept
{
    a = CGRectStandardize(a);
    b = CGRectStandardize(b);
    return CGPointEqualToPoint(a.origin, b.origin) && CGSizeEqualToSize(a.size, b.size);
}

/// Standardizes, then moves each vertical edge inward by `dx` and each horizontal one by `dy`; negative
/// amounts move outward. A side that would become negative gives the null rectangle; exactly 0 stays. Null
/// stays null.
constexpr CGRect CGRectInset(CGRect rect, CGFloat dx, CGFloat dy) noexcept
{
    if (CGRectIsNull(rect))
        return rect;
    rect = CGRectStandardize(rect);
    const CGRect inset{
        {rect.origin.x + dx, rect.origin.y + dy}, {rect.size.width - 2 * dx, rect.size.height - 2 * dy}};
    return inset.size.width < 0 || inset.size.height < 0 ? CGRectNull : inset;
}

/// The same size, moved. Null stays null.
constexpr CGRect CGRectOffset(CGRect rect, CGFloat dx, CGFloat dy) noexcept
{
    if (CGRectIsNull(rect))
        return rect;
    return {{rect.origin.x + dx, rect.origin.y + dy}, rect.size};
}

/// The smallest rectangle with whole-number edges that holds `rect`. Null stays null.
inline CGRect CGRectIntegral(CGRect rect) noexcept
{
    if (CGRectIsNull(rect))
        return rect;
    const CGFloat minX = std::floor(CGRectGetMinX(rect));
    const CGFloat minY = std::floor(CGRectGetMinY(rect));
    return {{minX, minY}, {std::ceil(CGRectGetMaxX(rect)) - minX, std::ceil(CGRectGetMaxY(rect)) - minY}};
}

/// The smallest rectangle that holds both. A null rectangle adds nothing: the other one comes back,
/// standardized. An empty rectangle counts with its place.
KORVID_EXPORT CGRect CGRectUnion(CGRect a, CGRect b);

/// What the two have in common. Rectangles that only touch give a rectangle with a side of 0; rectangles
/// apart, and any null one, give the null rectangle.
KORVID_EXPORT CGRect CGRectIntersection(CGRect a, CGRect b);

/// True when the two share an area. Touching is not enough, and an empty rectangle shares none.
constexpr bool CGRectIntersectsRect(CGRect a, CGRect b) noexcept
{
    return !CGRectIsEmpty(a) && !CGRectIsEmpty(b) && CGRectGetMinX(a) < CGRectGetMaxX(b)
        && CGRectGetMinX(b) < CGRectGetMaxX(a) && CGRectGetMinY(a) < CGRectGetMaxY(b)
        && CGRectGetMinY(b) < CGRectGetMaxY(a);
}

/// Half open: points on the two minimum edges are inside, points on the two maximum edges outside. Null and
/// empty rectangles contain no point.
constexpr bool CGRectContainsPoint(CGRect rect, CGPoint point) noexcept
{
    return !CGRectIsNull(rect) && point.x >= CGRectGetMinX(rect) && point.x < CGRectGetMaxX(rect)
        && point.y >= CGRectGetMinY(rect) && point.y < CGRectGetMaxY(rect);
}

/// True when the union of both is `outer`: edges may coincide, and every rectangle contains the null one.
constexpr bool CGRectContainsRect(CGRect outer, CGRect inner) noexcept
{
    if (CGRectIsNull(inner))
        return true;
    return !CGRectIsNull(outer) && CGRectGetMinX(outer) <= CGRectGetMinX(inner)
        && CGRectGetMaxX(inner) <= CGRectGetMaxX(outer) && CGRectGetMinY(outer) <= CGRectGetMinY(inner)
        && CGRectGetMaxY(inner) <= CGRectGetMaxY(outer);
}

} // extern "C"
