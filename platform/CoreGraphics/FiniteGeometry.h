#pragma once

#include <CoreGraphics/CGGeometry.h>

#include <cmath>

// What setters make of infinite numbers, NaN and negative lengths: each such number counts as 0.

inline CGFloat finiteOrZero(CGFloat number)
{
    return std::isfinite(number) ? number : 0;
}

inline CGPoint finiteOrZero(CGPoint point)
{
    return {finiteOrZero(point.x), finiteOrZero(point.y)};
}

/// A length.
inline CGFloat positiveOrZero(CGFloat number)
{
    return std::isfinite(number) && number > 0 ? number : 0;
}

inline CGSize positiveOrZero(CGSize size)
{
    return {positiveOrZero(size.width), positiveOrZero(size.height)};
}
