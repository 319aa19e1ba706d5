#pragma once

#include <AppKit/NSCursor.h>
#include <AppKit/NSTrackingArea.h>
#include <AppKit/NSView.h>

/// Where a view tracks the pointer, and the cursors of its parts.
struct NSView::Tracking {
    struct CursorRect {
        NSRect rect;
        RetainPtr<NSCursor> cursor;
    };

    std::vector<RetainPtr<NSTrackingArea>> areas;
    std::vector<CursorRect> cursorRects;
};
