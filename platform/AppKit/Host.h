#pragma once

#include <AppKit/NSEvent.h>
#include <AppKit/NSWindow.h>
#include <CoreGraphics/CGAffineTransform.h>
#include <CoreGraphics/CGContext.h>

#include <cstddef>
#include <functional>
#include <memory>

// All that AppKit knows of the window system. Another one would be one more implementation of these classes.
// Main thread only. Places on the screen are in points, y upward from the bottom left of the primary screen;
// places in a window are in points, y upward from the bottom left of its content.

/// What a mouse button or a key did.
enum class HostAction { Down, Dragged, Up };

struct HostMouseEvent {
    HostAction action;
    NSInteger button; ///< 0 left, 1 right, 2 middle, 3 and more for others
    NSPoint location;
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
    NSRect area;   ///< as long as the pointer is in there, it is the same tip
};

/// What the window system tells a window. Each call may end in the destruction of its HostWindow.
class HostWindowEvents {
public:
    /// The place of the content on the screen has changed.
    virtual void contentRectDidChange(NSRect content) = 0;
    /// Draw what is in `rects`, each with its edges on whole pixels; outside of them nothing may change.
    virtual void draw(CGContextRef context, CGAffineTransform deviceFromWindow, const CGRect* deviceRects,
        std::size_t count) = 0;
    virtual void mouseEvent(const HostMouseEvent& event) = 0;
    virtual void keyEvent(const HostKeyEvent& event) = 0;
    /// The user wants to close the window; it stays until it is told to close.
    virtual void closeRequested() = 0;
    virtual HostToolTip toolTipAt(NSPoint location) = 0;

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
    /// The frame around a content at `content`, as far as the window system has told.
    virtual NSRect frameForContentRect(NSRect content) const = 0;
    virtual CGFloat backingScaleFactor() const = 0;

    /// Shows the window in front, and asks for the keyboard when `makeKey`.
    virtual void show(bool makeKey) = 0;
    virtual void hide() = 0;
    /// Like `hide`; the window system may count it as the end of the last window.
    virtual void close() = 0;
    virtual bool isVisible() const = 0;
    virtual bool isKey() const = 0;

    /// Has the rectangle drawn later, once.
    virtual void setNeedsDisplayInRect(NSRect rect) = 0;
    /// Has everything drawn now that is to be drawn later.
    virtual void displayIfNeeded() = 0;
};

/// The connection to the window system.
class Host {
public:
    virtual ~Host() = default;

    /// The one there is, made at the first call.
    static Host& shared();

    /// `events` has to outlive the window.
    virtual std::unique_ptr<HostWindow> makeWindow(
        HostWindowEvents& events, NSWindowStyleMask style, NSRect content) = 0;

    /// Whether anybody can see the windows.
    virtual bool hasDisplay() const = 0;

    /// Serves events until `stop`. May be nested.
    virtual void run() = 0;
    /// Ends the innermost `run`, or all of them and the application's own loops too.
    virtual void stop() = 0;
    virtual void stopAll() = 0;

    /// Whether the desktop is dark. `setAppearanceObserver` has a function called when that may have changed.
    virtual bool isDark() const = 0;
    virtual void setAppearanceObserver(std::function<void()> observer) = 0;

    /// The part of the primary screen that windows may take.
    virtual NSRect visibleScreenFrame() const = 0;
    /// Pixels for each point on the primary screen.
    virtual CGFloat backingScaleFactor() const = 0;
    /// In seconds.
    virtual double doubleClickInterval() const = 0;
};
