#pragma once

#include "ViewTracking.h"

#include <AppKit/NSEvent.h>
#include <AppKit/NSWindow.h>

#include <optional>

/// Follows the pointer through a window's tracking areas and cursor rectangles. Each call may run code of the
/// application, which may change the view tree; the caller retains the window.
class PointerTracker {
public:
    explicit PointerTracker(NSWindow& window)
        : _window(window)
    {
    }

    /// The pointer is where the event happened: reports areas that it has left and entered, and sets the
    /// cursor. While a button is held, only areas that are enabled then are entered and left, and the cursor
    /// stays.
    void moveTo(const NSEvent& event, bool isButtonHeld);
    /// Reports a move without a button to the areas that the pointer is in.
    void reportMove(NSEvent& event);
    /// The pointer has left the window.
    void leave(const NSEvent& event);
    /// Does what `moveTo` does at the last position, since what is there may have changed: which window is
    /// the key window, or a button that was released.
    void refresh(bool isButtonHeld);

    /// The next move sets a cursor even if it is the one of the last move, since a view may have set another.
    void forgetCursor() { _cursorIsKnown = false; }
    /// Schedules a `refresh` in the next turn of the run loop: views have moved, come or gone under the
    /// pointer.
    void viewsDidChange();
    /// Ends the areas of a view that leaves the window, without a report.
    void forget(const NSView* view);

private:
    /// A tracking area of a view in the window.
    struct TrackedArea {
        RetainPtr<NSTrackingArea> area;
        RetainPtr<NSView> view;

        bool operator==(const TrackedArea&) const = default;
    };
    /// What decides on the cursor: an NSCursor, an NSTrackingArea, or null for the window.
    using CursorSource = RetainPtr<NSObject>;
    /// The last event, for `refresh`.
    struct Position {
        NSPoint location;
        NSEventModifierFlags modifierFlags;
        NSTimeInterval timestamp;
    };

    std::vector<TrackedArea> areasAt(NSPoint location);
    void collectAreas(NSView& view, NSPoint pointInSuperview, std::vector<TrackedArea>& areas) const;
    bool isActive(const TrackedArea& tracked) const;
    bool isTracked(const TrackedArea& tracked) const;
    void enterAndExit(std::vector<TrackedArea> now, const Position& position, bool isButtonHeld);
    CursorSource cursorSourceAt(NSPoint location) const;
    void updateCursor(const Position& position);
    void notify(const TrackedArea& tracked, NSEventType type, const Position& position) const;

    NSWindow& _window;
    std::vector<TrackedArea> _entered; ///< that the pointer is in, superviews first
    CursorSource _cursorSource;
    bool _cursorIsKnown = false;
    std::optional<Position> _position; ///< of the pointer; nothing while it is outside
    bool _isButtonHeld = false;
    bool _refreshIsScheduled = false;
};
