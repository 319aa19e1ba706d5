#pragma once

#include <AppKit/NSGeometry.h>
#include <Foundation/WeakPtr.h>

class NSResponder;

/// What a tracking area reports, and when: a set of the flags below.
using NSTrackingAreaOptions = NSUInteger;

/// Reports with `mouseEntered` and `mouseExited` that the pointer enters and leaves.
inline constexpr NSTrackingAreaOptions NSTrackingMouseEnteredAndExited = 0x01;
/// Reports with `mouseMoved` where the pointer is.
inline constexpr NSTrackingAreaOptions NSTrackingMouseMoved = 0x02;
/// Requests a cursor with `cursorUpdate` when the pointer enters.
inline constexpr NSTrackingAreaOptions NSTrackingCursorUpdate = 0x04;
/// Only while the view is first responder.
inline constexpr NSTrackingAreaOptions NSTrackingActiveWhenFirstResponder = 0x10;
/// Only while the window is the key window.
inline constexpr NSTrackingAreaOptions NSTrackingActiveInKeyWindow = 0x20;
/// Only while a window of this application is the key window.
inline constexpr NSTrackingAreaOptions NSTrackingActiveInActiveApp = 0x40;
/// Whichever window has the keyboard focus.
inline constexpr NSTrackingAreaOptions NSTrackingActiveAlways = 0x80;
/// The area is the visible part of the view, whatever it is at the time; its rectangle has no effect.
inline constexpr NSTrackingAreaOptions NSTrackingInVisibleRect = 0x200;
/// Reports entering and leaving also while a button is held.
inline constexpr NSTrackingAreaOptions NSTrackingEnabledDuringMouseDrag = 0x400;

/// A rectangle of a view in which the pointer is tracked. Immutable; main thread.
///
///     addTrackingArea(make<NSTrackingArea>(NSZeroRect,
///         NSTrackingMouseEnteredAndExited | NSTrackingActiveAlways | NSTrackingInVisibleRect, this));
///
/// Areas are independent of each other, also where they overlap: one below another view is tracked too, as
/// long as no superview clips it away. The owner is notified of leaving what it was notified of entering; but
/// an area that is removed, or whose view leaves the window, just ends.
class KORVID_EXPORT NSTrackingArea final : public NSObject {
public:
    /// `rect` is in the coordinates of the view that the area will be added to. `owner` is notified; it is
    /// held weakly, and null notifies nobody. Without one of the flags that start with NSTrackingActive the
    /// area is never tracked. `userInfo` is retained.
    NSTrackingArea(NSRect rect, NSTrackingAreaOptions options, NSResponder* owner,
        RetainPtr<NSObject> userInfo = nullptr);

    /// The rectangle, in the coordinates of the view.
    NSRect rect() const { return _rect; }
    /// The flags that the area was made with.
    NSTrackingAreaOptions options() const { return _options; }
    /// Null also once it is destroyed.
    RetainPtr<NSResponder> owner() const;
    /// Borrowed; null if there is none.
    NSObject* userInfo() const { return _userInfo.get(); }

protected:
    ~NSTrackingArea() override;

private:
    const NSRect _rect;
    const NSTrackingAreaOptions _options;
    const WeakPtr<NSResponder> _owner;
    const RetainPtr<NSObject> _userInfo;
};
