#pragma once

#include <CoreGraphics/CGGeometry.h>
#include <Foundation/NSObjCRuntime.h>

/// @file
/// AppKit's names for Core Graphics' records, and its own rules for rectangles. Unlike the CGRect functions,
/// those here do not standardize: a rectangle with a side of 0 or less is empty, and an empty result is
/// NSZeroRect. Every function is safe on any thread. NaN gives NaN or false.

/// A position in points.
using NSPoint = CGPoint;
/// A width and a height in points.
using NSSize = CGSize;
/// An origin and a size in points.
using NSRect = CGRect;

inline constexpr NSPoint NSZeroPoint{0, 0};         ///< (0, 0)
inline constexpr NSSize NSZeroSize{0, 0};           ///< 0 by 0
inline constexpr NSRect NSZeroRect{{0, 0}, {0, 0}}; ///< (0, 0), 0 by 0

/// The point (x, y).
constexpr NSPoint NSMakePoint(CGFloat x, CGFloat y) noexcept
{
    return {x, y};
}
/// The numbers are stored as given, negative ones too.
constexpr NSSize NSMakeSize(CGFloat width, CGFloat height) noexcept
{
    return {width, height};
}
/// The numbers are stored as given, negative sizes too.
constexpr NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat width, CGFloat height) noexcept
{
    return {{x, y}, {width, height}};
}

/// The x coordinate of the origin: the least one, unless the width is negative.
constexpr CGFloat NSMinX(NSRect rect) noexcept
{
    return rect.origin.x;
}
/// The x coordinate of the middle.
constexpr CGFloat NSMidX(NSRect rect) noexcept
{
    return rect.origin.x + rect.size.width / 2;
}
/// The x coordinate of the edge opposite the origin.
constexpr CGFloat NSMaxX(NSRect rect) noexcept
{
    return rect.origin.x + rect.size.width;
}
/// The y coordinate of the origin: the least one, unless the height is negative.
constexpr CGFloat NSMinY(NSRect rect) noexcept
{
    return rect.origin.y;
}
/// The y coordinate of the middle.
constexpr CGFloat NSMidY(NSRect rect) noexcept
{
    return rect.origin.y + rect.size.height / 2;
}
/// The y coordinate of the edge opposite the origin.
constexpr CGFloat NSMaxY(NSRect rect) noexcept
{
    return rect.origin.y + rect.size.height;
}
/// The width as stored, which may be negative.
constexpr CGFloat NSWidth(NSRect rect) noexcept
{
    return rect.size.width;
}
/// The height as stored, which may be negative.
constexpr CGFloat NSHeight(NSRect rect) noexcept
{
    return rect.size.height;
}

/// Same coordinates.
constexpr bool NSEqualPoints(NSPoint a, NSPoint b) noexcept
{
    return a.x == b.x && a.y == b.y;
}
/// Same numbers.
constexpr bool NSEqualSizes(NSSize a, NSSize b) noexcept
{
    return a.width == b.width && a.height == b.height;
}
/// Same four numbers.
constexpr bool NSEqualRects(NSRect a, NSRect b) noexcept
{
    return NSEqualPoints(a.origin, b.origin) && NSEqualSizes(a.size, b.size);
}

/// True when the width or the height is 0, negative or NaN.
constexpr bool NSIsEmptyRect(NSRect rect) noexcept
{
    return !(rect.size.width > 0 && rect.size.height > 0);
}

/// The smallest rectangle with whole-number edges that holds `rect`; NSZeroRect for an empty one.
inline NSRect NSIntegralRect(NSRect rect) noexcept
{
    return NSIsEmptyRect(rect) ? NSZeroRect : CGRectIntegral(rect);
}

/// Moves each vertical edge inward by `dX` and each horizontal one by `dY`; the size may become negative.
constexpr NSRect NSInsetRect(NSRect rect, CGFloat dX, CGFloat dY) noexcept
{
    return {{rect.origin.x + dX, rect.origin.y + dY}, {rect.size.width - 2 * dX, rect.size.height - 2 * dY}};
}

/// The same size, moved.
constexpr NSRect NSOffsetRect(NSRect rect, CGFloat dX, CGFloat dY) noexcept
{
    return {{rect.origin.x + dX, rect.origin.y + dY}, rect.size};
}

/// The smallest rectangle that holds both. An empty one adds nothing; NSZeroRect when both are.
inline NSRect NSUnionRect(NSRect a, NSRect b) noexcept
{
    if (NSIsEmptyRect(a))
        return NSIsEmptyRect(b) ? NSZeroRect : b;
    return NSIsEmptyRect(b) ? a : CGRectUnion(a, b);
}

/// The area that both share; NSZeroRect when they share none.
inline NSRect NSIntersectionRect(NSRect a, NSRect b) noexcept
{
    if (NSIsEmptyRect(a) || NSIsEmptyRect(b))
        return NSZeroRect;
    const NSRect shared = CGRectIntersection(a, b);
    return NSIsEmptyRect(shared) ? NSZeroRect : shared;
}

/// True when the two share an area: touching is not enough, other than for CGRectIntersectsRect.
constexpr bool NSIntersectsRect(NSRect a, NSRect b) noexcept
{
    return !NSIsEmptyRect(a) && !NSIsEmptyRect(b) && NSMinX(a) < NSMaxX(b) && NSMinX(b) < NSMaxX(a)
        && NSMinY(a) < NSMaxY(b) && NSMinY(b) < NSMaxY(a);
}

/// True when `inner` lies within `outer`; edges may coincide. An empty `inner` lies in nothing.
constexpr bool NSContainsRect(NSRect outer, NSRect inner) noexcept
{
    return !NSIsEmptyRect(inner) && !NSIsEmptyRect(outer) && CGRectContainsRect(outer, inner);
}

/// True when the pixel under the pointer at `point` lies in `rect`. The left and the top edge belong to the
/// rectangle, the right and the bottom edge do not; with `flipped` y runs downward, so that the top is the
/// least y.
constexpr bool NSMouseInRect(NSPoint point, NSRect rect, bool flipped) noexcept
{
    return point.x >= NSMinX(rect) && point.x < NSMaxX(rect)
        && (flipped ? point.y >= NSMinY(rect) && point.y < NSMaxY(rect)
                    : point.y > NSMinY(rect) && point.y <= NSMaxY(rect));
}

/// True when the point is inside: points on the two minimum edges are, points on the two maximum edges are
/// not.
constexpr bool NSPointInRect(NSPoint point, NSRect rect) noexcept
{
    return NSMouseInRect(point, rect, true);
}
