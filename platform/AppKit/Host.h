#pragma once

#include <AppKit/NSEvent.h>
#include <AppKit/NSWindow.h>
#include <CoreGraphics/CGAffineTransform.h>
#include <CoreGraphics/CGContext.h>
#include <CoreGraphics/CGImage.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

// The interface between AppKit and the window system; another one needs an implementation of these classes
// only. Main thread only. Places on the screen are in points, y upward from the bottom left of the primary
// screen; places in a window are in points, y upward from the bottom left of its content.

/// What a mouse button or a key did. Moved is the pointer without a button.
enum class HostAction { Down, Dragged, Up, Moved };

/// The shapes of the pointer that NSCursor offers.
enum class HostCursor : int {
    Arrow,
    IBeam,
    Crosshair,
    ClosedHand,
    OpenHand,
    PointingHand,
    ResizeLeftRight,
    ResizeUpDown,
    OperationNotAllowed,
};

struct HostMouseEvent {
    HostAction action;
    NSInteger button; ///< 0 left, 1 right, 2 middle, 3 and more for others; 0 for a move
    NSPoint location;
    NSEventModifierFlags modifierFlags;
};

struct HostScrollEvent {
    NSPoint location;
    NSSize delta;   ///< positive to the right and down, as NSEvent's
    bool isPrecise; ///< in points; else in lines
    NSEventModifierFlags modifierFlags;
};

struct HostKeyEvent {
    HostAction action; ///< Down or Up
    NSEventModifierFlags modifierFlags;
    NSString characters;
    NSString charactersIgnoringModifiers;
    bool isARepeat;
    NSPoint location; ///< of the pointer
};

struct HostToolTip {
    NSString text; ///< null for none
    NSRect area;   ///< the tip stays as long as the pointer is in here
};

/// What has changed of a view that assistive technology sees.
enum class HostAccessibilityChange : int {
    Label,
    Value,
    Enabled,
    Focus,   ///< it has become first responder
    Shown,   ///< it has come into the window, or is no longer hidden
    Hidden,  ///< it has been hidden
    Removed, ///< it is leaving the window: the last mention of it
};

/// The window system's notifications to a window. Each call may destroy its HostWindow.
class HostWindowEvents {
public:
    /// The place of the content on the screen has changed.
    virtual void contentRectDidChange(NSRect content) = 0;
    /// Draws what is in `baseRects`, pixels of the context's base space with whole edges; nothing outside of
    /// them may change.
    virtual void draw(CGContextRef context, CGAffineTransform baseFromWindow, const CGRect* baseRects,
        std::size_t count) = 0;
    virtual void mouseEvent(const HostMouseEvent& event) = 0;
    /// The pointer has left the window, and no button is held.
    virtual void mouseLeft(NSPoint location, NSEventModifierFlags modifierFlags) = 0;
    // The next two return false if the event is left to what is around an embedded window.

    virtual bool scrollEvent(const HostScrollEvent& event) = 0;
    virtual bool keyEvent(const HostKeyEvent& event) = 0;
    /// The window has got or lost the keyboard focus.
    virtual void keyStatusDidChange(bool isKey) = 0;
    /// The user wants to close the window. It stays open until `HostWindow::close`.
    virtual void closeRequested() = 0;
    /// A modal dialog has blocked the window: the release of a pressed button will not arrive.
    virtual void inputWasBlocked() = 0;
    virtual HostToolTip toolTipAt(NSPoint location) = 0;
    // For a window within a dialog or another program's window, among whose controls Tab moves the keyboard
    // focus.

    /// Whether one more view after the first responder, or before it, can become first responder.
    virtual bool hasKeyView(bool next) = 0;
    /// The focus has come to the window: its first view, or its last one, becomes first responder. Returns
    /// false if no view can.
    virtual bool selectKeyView(bool first) = 0;

    // For an embedded window.

    /// The window is about to be shown.
    virtual void willAppear() = 0;
    /// `HostWindow::isActive()` has changed.
    virtual void activeStatusDidChange() = 0;
    /// `HostWindow::isDark()` may have changed.
    virtual void appearanceDidChange() = 0;

    /// The root of the view tree, for assistive technology. Borrowed; null without one.
    virtual NSView* contentView() = 0;

protected:
    ~HostWindowEvents() = default;
};

/// A window of the window system, not shown at first.
class HostWindow {
public:
    virtual ~HostWindow() = default;

    virtual void setTitle(const NSString& title) = 0;
    /// Whole points only.
    virtual void setContentRect(NSRect content) = 0;
    /// The least size that the user can give to the content, in whole points.
    virtual void setMinimumContentSize(NSSize size) = 0;
    /// The frame around a content rectangle; equal to it until the window system has reported its borders.
    virtual NSRect frameForContentRect(NSRect content) const = 0;
    virtual CGFloat backingScaleFactor() const = 0;

    /// Shows the window in front; with `makeKey`, requests the keyboard focus.
    virtual void show(bool makeKey) = 0;
    virtual void hide() = 0;
    /// Like `hide`; the window system may count it as the end of the last window.
    virtual void close() = 0;
    virtual bool isVisible() const = 0;
    virtual bool isKey() const = 0;
    /// Whether keys go to the window, or to another part of the window that it is embedded in.
    virtual bool isActive() const = 0;
    /// Whether what is around an embedded window is dark; nothing for other windows.
    virtual std::optional<bool> isDark() const = 0;
    /// Requests the keyboard focus.
    virtual void makeKey() = 0;
    /// Shows a cursor while the pointer is over the window.
    virtual void setCursor(HostCursor cursor) = 0;

    /// Schedules a repaint of the rectangle.
    virtual void setNeedsDisplayInRect(NSRect rect) = 0;
    /// Performs scheduled repaints at once.
    virtual void displayIfNeeded() = 0;

    /// Notifies assistive technology, if there is any.
    virtual void accessibilityDidChange(NSView& view, HostAccessibilityChange change) = 0;
};

/// A modal dialog with a message and buttons.
struct HostAlert {
    NSString message;
    NSString informativeText;                ///< null or empty for none
    std::vector<NSString> buttons;           ///< at least one; the first is the default one
    std::optional<std::size_t> cancelButton; ///< that Escape and the window system's close button press
    HostWindow* accessory = nullptr; ///< shown between text and buttons, in its size; null for none. Borrowed
    bool isDark = false;
};

struct HostScreen {
    NSString name;
    NSRect frame;
    NSRect visibleFrame; ///< without panels and docks
    CGFloat backingScaleFactor;
};

/// The window system's notifications to a status item. Each call may destroy its HostStatusItem.
class HostStatusItemEvents {
public:
    /// The tray has appeared, gone or moved the item.
    virtual void statusItemFrameDidChange() = 0;
    /// A click, or a keyboard's equivalent.
    virtual void statusItemWasPressed() = 0;

protected:
    ~HostStatusItemEvents() = default;
};

/// An item in the desktop's tray.
class HostStatusItem {
public:
    virtual ~HostStatusItem() = default;

    /// A square image. Retained.
    virtual void setImage(CGImageRef image) = 0;
    virtual void setToolTip(const NSString& text) = 0;
    virtual void setVisible(bool visible) = 0;
    /// Its place on the screen; null without a tray. Where the tray does not report it, the top right corner
    /// of the primary screen.
    virtual std::optional<NSRect> frame() const = 0;
};

/// The connection to the window system.
class Host {
public:
    virtual ~Host() = default;

    /// The only host, made at the first call.
    static Host& shared();

    /// `events` is borrowed and must outlive the window.
    virtual std::unique_ptr<HostWindow> makeWindow(
        HostWindowEvents& events, NSWindowStyleMask style, NSRect content) = 0;

    /// A window that fills `parent`, a container of the window system that the program has made: for Qt a
    /// QWidget. Its place, title and visibility are the container's: setters have no effect. It is
    /// transparent where nothing is drawn. `events` and `parent` are borrowed and must outlive the window.
    virtual std::unique_ptr<HostWindow> makeEmbeddedWindow(HostWindowEvents& events, void* parent) = 0;

    /// `events` is borrowed and must outlive the item, which is not shown at first.
    virtual std::unique_ptr<HostStatusItem> makeStatusItem(HostStatusItemEvents& events) = 0;

    /// Shows an alert and dispatches events until the user has answered it. Returns the number of the pressed
    /// button; nothing when `stop` or `stopAll` ended it.
    virtual std::optional<std::size_t> runAlert(const HostAlert& alert) = 0;

    /// Whether keys go to this process.
    virtual bool isActive() const = 0;

    /// Whether windows appear on a display, not only in memory.
    virtual bool hasDisplay() const = 0;

    /// Dispatches events until `stop`. May be nested.
    virtual void run() = 0;
    /// Ends the innermost `count` calls of `run` and `runAlert`, or all and the application's own loops too.
    virtual void stop(std::size_t count) = 0;
    virtual void stopAll() = 0;

    /// Whether the desktop prefers dark windows.
    virtual bool isDark() const = 0;
    /// `observer` is called when `isDark()` may have changed.
    virtual void setAppearanceObserver(std::function<void()> observer) = 0;

    /// The primary screen first. Empty when all are disconnected.
    virtual std::vector<HostScreen> screens() const = 0;
    /// The primary screen without panels and docks.
    virtual NSRect visibleScreenFrame() const = 0;
    /// Pixels for each point on the primary screen.
    virtual CGFloat backingScaleFactor() const = 0;
    /// In seconds.
    virtual double doubleClickInterval() const = 0;

    /// The text on the clipboard; null when there is none.
    virtual NSString clipboardText() const = 0;
    /// Replaces the contents of the clipboard; null removes them.
    virtual void setClipboardText(const NSString& text) = 0;
    /// The number of changes of the clipboard, by any program, since the host was made.
    virtual NSInteger clipboardChangeCount() const = 0;
};
