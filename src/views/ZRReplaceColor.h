#pragma once

#include <AppKit/NSColor.h>

#include <utility>

/// Replaces the current colour, unless it is equal to the new one or both are null. Returns whether it did.
inline bool ZRReplaceColor(RetainPtr<NSColor>& current, RetainPtr<NSColor> color)
{
    if (color == current || (color && color->isEqual(current)))
        return false;
    current = std::move(color);
    return true;
}
