#pragma once

#include <AppKit/NSView.h>

#include <algorithm>
#include <cmath>

// Which subviews a search for those at a place cannot leave out.

/// The rectangle with room for the rounding errors of conversions from one view to another.
inline NSRect grownByRounding(NSRect rect)
{
    const CGFloat greatest = std::max({std::fabs(NSMinX(rect)), std::fabs(NSMaxX(rect)),
        std::fabs(NSMinY(rect)), std::fabs(NSMaxY(rect)), CGFloat(1)});
    const CGFloat rounding = greatest * 1e-9;
    return NSInsetRect(rect, -rounding, -rounding);
}

/// True also for those that only have an edge or a corner in common, and for empty rectangles.
inline bool touch(NSRect a, NSRect b)
{
    return NSMinX(a) <= NSMaxX(b) && NSMinX(b) <= NSMaxX(a) && NSMinY(a) <= NSMaxY(b)
        && NSMinY(b) <= NSMaxY(a);
}

/// Whether the view's class overrides `hitTest`; true where the compiler cannot tell.
inline bool overridesHitTest([[maybe_unused]] NSView& view)
{
#if defined(__GNUC__) && !defined(__clang__)
    // GCC's extension for the function that a call would reach.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpedantic"
#pragma GCC diagnostic ignored "-Wpmf-conversions"
    using HitTest = NSView* (*)(NSView*, NSPoint);
    const auto own = reinterpret_cast<HitTest>(view.*(&NSView::hitTest));
    const auto inherited = reinterpret_cast<HitTest>(&NSView::hitTest);
#pragma GCC diagnostic pop
    return own != inherited;
#else
    return true;
#endif
}
