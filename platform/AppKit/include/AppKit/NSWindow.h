#pragma once

#include <AppKit/NSGeometry.h>
#include <AppKit/NSResponder.h>
#include <AppKit/NSView.h>
#include <Foundation/NSDate.h>
#include <Foundation/WeakPtr.h>

#include <array>
#include <memory>

class HostWindow;
class NSAppearance;
enum class HostAccessibilityChange : int;
class NSColor;
class NSScreen;
class NSTimer;
class PointerTracker;

/// A window's frame and buttons: a set of the flags below.
using NSWindowStyleMask = NSUInteger;

inline constexpr NSWindowStyleMask NSWindowStyleMaskBorderless = 0;     ///< neither title bar nor border
inline constexpr NSWindowStyleMask NSWindowStyleMaskTitled = 1;         ///< a title bar
inline constexpr NSWindowStyleMask NSWindowStyleMaskClosable = 2;       ///< a close button
inline constexpr NSWindowStyleMask NSWindowStyleMaskMiniaturizable = 4; ///< a minimize button
inline constexpr NSWindowStyleMask NSWindowStyleMaskResizable = 8;      ///< by the user

/// The storage of a window's pixels.
enum NSBackingStoreType : NSUInteger {
    NSBackingStoreBuffered = 2, ///< the only type
};

/// Can refuse the closing of a window, and is notified of it.
class KORVID_EXPORT NSWindowDelegate {
public:
    /// The user wants to close the window. Return false to leave it open. Default true.
    virtual bool windowShouldClose(NSWindow* sender);
    /// The user or the program is about to close the window. Does nothing here.
    virtual void windowWillClose(NSWindow* sender);

protected:
    ~NSWindowDelegate() = default;
};

/// A window on the screen, with a tree of views as its content.
///
/// It is on screen from `makeKeyAndOrderFront` to `orderOut` or `close`, and can be shown again after either.
/// The caller retains a window: without references it leaves the screen and is destroyed.
/// Differs: closing releases nothing, so there is no releasedWhenClosed.
///
/// Screen coordinates run upward from the bottom left of the primary screen, window coordinates upward from
/// the bottom left of the content; both are in points. The window system may move and resize windows, or
/// refuse to; `frame()` is their actual place. Origins and sizes are whole points, sizes from 1 to 10,000.
///
///     auto window = make<NSWindow>(NSMakeRect(0, 0, 400, 300),
///         NSWindowStyleMaskTitled | NSWindowStyleMaskClosable, NSBackingStoreBuffered, false);
///     window->setTitle("Colours");
///     window->contentView()->addSubview(view);
///     window->center();
///     window->makeKeyAndOrderFront();
///
/// Main thread only. The constructor makes the application object if there is none.
class KORVID_EXPORT NSWindow : public NSResponder {
public:
    /// A window that is not on screen yet. `contentRect` is the place of its content on the screen. `backing`
    /// and `defer` have no effect: pixels and the window system's window are always made when first needed.
    NSWindow(NSRect contentRect, NSWindowStyleMask styleMask, NSBackingStoreType backing, bool defer);

    // Content.

    /// The root of the view tree. Default a plain NSView. Borrowed.
    NSView* contentView() const { return _contentView.get(); }
    /// Replaces the content view, and resizes the new one to the content. Schedules a repaint. The view is
    /// removed from its old superview or window first. Null leaves only the background.
    void setContentView(RetainPtr<NSView> view);

    /// The text in the title bar. Default empty.
    NSString title() const { return _title; }
    /// The title bar shows it at once. Null is shown as the empty text.
    void setTitle(NSString title);
    /// The flags that the window was made with.
    NSWindowStyleMask styleMask() const { return _styleMask; }

    /// The colour below all views. Null (the default) means light or dark gray, by the application's
    /// effective appearance. Windows are opaque: a translucent colour is drawn over black.
    NSColor* backgroundColor() const { return _backgroundColor.get(); }
    /// Retains the colour. Schedules a repaint.
    void setBackgroundColor(RetainPtr<NSColor> color);

    /// Held weakly if it is an NSObject; otherwise borrowed: set null before it is destroyed.
    void setDelegate(NSWindowDelegate* delegate);
    /// Borrowed; null (the default) without one, and once it is destroyed if it is an NSObject.
    NSWindowDelegate* delegate() const;

    // The frame.

    /// The window on the screen with its title bar and borders, whose sizes count as 0 until the window
    /// system reports them, once the window is on screen.
    NSRect frame() const;
    /// Moves and resizes; with `display`, performs scheduled repaints at once. Ends an animation.
    void setFrame(NSRect frame, bool display);
    /// The same; with `animate`, a window on screen takes `animationResizeTime` for it, slowly at first and
    /// at the end. `frame()` is the actual place meanwhile.
    ///
    /// Differs: Apple's returns at the end of the animation, this one at its start.
    void setFrame(NSRect frame, bool display, bool animate);
    /// Seconds in which the window moves to `frame` in the animation: 0.2 for each 150 points that the edge
    /// moves that moves farthest. What is not above 0 sets the frame at once.
    virtual NSTimeInterval animationResizeTime(NSRect frame) const;
    /// Moves the lower left corner of the frame to `origin`. Ends an animation.
    void setFrameOrigin(NSPoint origin);
    /// Resizes the content; the top left corner of the window stays in place.
    void setContentSize(NSSize size);
    /// The least size of the content. Default 1 x 1.
    NSSize contentMinSize() const { return _contentMinSize; }
    /// Neither the user nor the setters above make the content smaller. A window that is smaller grows; its
    /// top left corner stays in place.
    ///
    /// Differs: Apple's `setFrame` may make the content smaller.
    void setContentMinSize(NSSize size);
    /// Moves to the middle of the primary screen, a little above the centre. A window that is wider or higher
    /// than the part between panels starts at its left or upper edge.
    void center();

    /// The place of the content in a window with that frame.
    NSRect contentRectForFrameRect(NSRect frame) const;
    /// The frame of a window with that place of its content.
    NSRect frameRectForContentRect(NSRect content) const;

    /// From the window's coordinates to the screen's.
    NSPoint convertPointToScreen(NSPoint point) const;
    /// From the screen's coordinates to the window's.
    NSPoint convertPointFromScreen(NSPoint point) const;
    /// From the window's coordinates to the screen's.
    NSRect convertRectToScreen(NSRect rect) const;
    /// From the screen's coordinates to the window's.
    NSRect convertRectFromScreen(NSRect rect) const;

    /// To pixels of the window's backing, from its bottom left corner, and back.
    NSRect convertRectToBacking(NSRect rect) const;
    /// The inverse of `convertRectToBacking`.
    NSRect convertRectFromBacking(NSRect rect) const;

    /// The screen that shows most of the window; null when none shows any of it. Also known while the window
    /// is not on screen.
    RetainPtr<NSScreen> screen() const;

    /// Pixels for each point. When it changes while the window is on screen, the whole window is redrawn.
    CGFloat backingScaleFactor() const;

    // Showing and closing.

    /// Shows the window in front and requests the keyboard focus.
    void makeKeyAndOrderFront(NSObject* sender = nullptr);
    /// Shows the window in front.
    void orderFront(NSObject* sender = nullptr);
    /// Removes the window from the screen.
    void orderOut(NSObject* sender = nullptr);
    /// Closes the window: notifies the delegate and removes the window from the screen. Does nothing while it
    /// is not on screen.
    void close();
    /// The action of the close button: closes if the delegate's `windowShouldClose` returns true. Does
    /// nothing without NSWindowStyleMaskClosable.
    void performClose(NSObject* sender = nullptr);
    /// Whether the window is on screen.
    bool isVisible() const;
    /// Whether the window has the keyboard focus.
    bool isKeyWindow() const;
    /// Requests the keyboard focus. Does nothing while the window is not on screen.
    void makeKeyWindow();
    /// Called when the window has got, or lost, the keyboard focus. Redraws a first responder that is a view,
    /// which may show the focus, and updates tracking areas. Call the base method from an override.
    virtual void becomeKeyWindow();
    /// Called when the window has lost the keyboard focus; does the same as `becomeKeyWindow`.
    virtual void resignKeyWindow();
    /// Identifies the window in events. Above 0, never used twice.
    NSInteger windowNumber() const { return _windowNumber; }

    /// What the window draws in: the application's effective appearance. A window within a Qt widget, see
    /// KorvidWidget, is dark or light as the widget's palette is, unless the application sets an appearance.
    /// Borrowed, never null.
    NSAppearance* effectiveAppearance() const;

    /// Performs scheduled repaints at once, if the window is on screen.
    void displayIfNeeded();

    // Events.

    /// The responder that gets the window's keyboard events. Default the window itself. Borrowed.
    NSResponder* firstResponder() const;
    /// Makes `responder`, or for null the window itself, first responder. Held weakly. Returns false and
    /// changes nothing when the current one refuses to resign, or the new one does not accept or is a view
    /// outside of this window. Returns false and makes the window itself first responder when the new one
    /// refuses in `becomeFirstResponder`.
    bool makeFirstResponder(NSResponder* responder);

    /// The view to begin with, when the window is first shown and when Tab is pressed while no view is first
    /// responder. Default null: the first one that can become key, on Tab only.
    RetainPtr<NSView> initialFirstResponder() const;
    /// Held weakly.
    void setInitialFirstResponder(NSView* view);
    /// Makes the next or previous view that can become key first responder; without one, does nothing. Tab
    /// and Shift-Tab do this when no view handles them.
    void selectNextKeyView(NSObject* sender = nullptr);
    /// The same for the previous view.
    void selectPreviousKeyView(NSObject* sender = nullptr);
    /// Gets the keys that no view has handled: other ones than Tab and Shift-Tab go to the content view's
    /// `performKeyEquivalent`.
    void keyDown(NSEvent* event) override;

    /// Calls the view's `resetCursorRects` when the pointer next moves, for cursors that change without the
    /// view's place. A view of another window is ignored.
    void invalidateCursorRectsForView(NSView* view);
    /// Sets the arrow, when the pointer enters a tracking area whose owner does not handle the event.
    void cursorUpdate(NSEvent* event) override;

    /// Dispatches an event to a view. Null does nothing.
    ///
    /// A press goes to the topmost view under the pointer, which first becomes first responder if it accepts.
    /// The drags and the release of that button go to the same view, unless it leaves the window. The wheel
    /// goes to the topmost view under the pointer, keyboard events to the first responder. Whatever receives
    /// an event lives until it returns, even if it removes itself or its window.
    ///
    /// Moves, presses, drags, releases and the wheel also take the pointer to their location, for tracking
    /// areas and cursors; an exit without an area takes it out of the window.
    virtual void sendEvent(NSEvent* event);
    /// Tries the window, then its delegate if that is an NSObject.
    bool tryToPerform(SEL action, NSObject* sender) override;

protected:
    ~NSWindow() override;

private:
    friend class EmbeddedWindow;
    friend class NSAlert;
    friend class NSApplication;
    friend class NSControl;
    friend class NSStatusItem;
    friend class NSView;
    friend class PointerTracker;
    friend void NSAccessibilityPostNotification(NSObject*, const NSAccessibilityNotificationName&);
    class Events;

    /// A mouse button that is down, and the view that gets its drags.
    struct Press {
        RetainPtr<NSView> view;
        bool isDown = false;
    };

    HostWindow& host() const;
    void moveToFrame(NSRect frame, bool display);
    void endAnimation();
    void scheduleLayout();
    void setContentRect(NSRect content);
    void contentRectDidChange(NSRect content);
    void leaveScreen();
    bool isActive() const;
    void setNeedsDisplayInRect(NSRect rect);
    void viewDidLeave(NSView* view);
    NSView* keyView() const;
    RetainPtr<NSView> viewUnderPointer(const NSEvent& event) const;
    bool isAnyButtonDown() const;
    void sendPress(NSEvent& event);
    void sendDrag(NSEvent& event);
    void sendRelease(NSEvent& event);
    void sendScroll(NSEvent& event);
    void sendEnterOrExit(NSEvent& event);
    void willShow();
    void accessibilityDidChange(NSView& view, HostAccessibilityChange change);
    void forgetPress(const NSEvent& event);
    static void cancelPress(Press& press);

    const NSInteger _windowNumber;
    const NSWindowStyleMask _styleMask;
    NSRect _contentRect;
    NSSize _contentMinSize{1, 1};
    RetainPtr<NSView> _contentView;
    RetainPtr<NSColor> _backgroundColor;
    NSString _title;
    WeakPtr<NSObject> _delegateObject;
    NSWindowDelegate* _delegate = nullptr;
    bool _delegateIsObject = false;
    bool _isClosing = false;
    WeakPtr<NSResponder> _firstResponder; ///< null for the window itself
    WeakPtr<NSView> _initialFirstResponder;
    bool _wasShown = false;
    bool _isEmbedded = false; ///< see EmbeddedWindow
    bool _layoutIsScheduled = false;
    RetainPtr<NSTimer> _animation; ///< while `setFrame` moves the window
    std::array<Press, 3> _presses; ///< left, right, any other
    std::unique_ptr<PointerTracker> _pointer;
    std::unique_ptr<Events> _events;           ///< receives the window system's notifications
    mutable std::unique_ptr<HostWindow> _host; ///< made when first needed
};
