#pragma once

#include <AppKit/NSGeometry.h>
#include <AppKit/NSResponder.h>
#include <AppKit/NSView.h>
#include <Foundation/NSDate.h>
#include <Foundation/WeakPtr.h>

#include <array>
#include <memory>

class HostWindow;
class NSColor;

/// A window's frame and buttons: a set of the flags below.
using NSWindowStyleMask = NSUInteger;

inline constexpr NSWindowStyleMask NSWindowStyleMaskBorderless = 0;
inline constexpr NSWindowStyleMask NSWindowStyleMaskTitled = 1;
inline constexpr NSWindowStyleMask NSWindowStyleMaskClosable = 2;
inline constexpr NSWindowStyleMask NSWindowStyleMaskMiniaturizable = 4;
inline constexpr NSWindowStyleMask NSWindowStyleMaskResizable = 8; ///< by the user

/// How a window keeps its pixels.
enum NSBackingStoreType : NSUInteger {
    NSBackingStoreBuffered = 2, ///< the only way there is
};

/// Who is asked and told about a window's closing. Override what matters.
class KORVID_EXPORT NSWindowDelegate {
public:
    /// The user wants to close the window. False leaves it open. Default true.
    virtual bool windowShouldClose(NSWindow* sender);
    /// The window is about to close, whoever closes it. Does nothing here.
    virtual void windowWillClose(NSWindow* sender);

protected:
    ~NSWindowDelegate() = default;
};

/// A window on the screen, with a tree of views as its content.
///
/// It is on screen from `makeKeyAndOrderFront` to `orderOut` or `close`, and can come back after either.
/// Whoever makes a window keeps it: one that nobody retains any more leaves the screen and is destroyed.
/// Differs: nothing is released by closing, so there is no releasedWhenClosed.
///
/// Screen coordinates run upward from the bottom left of the primary screen, window coordinates upward from
/// the bottom left of the content; both are in points. The window system may move and resize windows, or not
/// do so when asked; `frame()` tells what it did. Places and sizes are whole points, sizes from 1 to 10,000.
///
///     auto window = make<NSWindow>(NSMakeRect(0, 0, 400, 300),
///         NSWindowStyleMaskTitled | NSWindowStyleMaskClosable, NSBackingStoreBuffered, false);
///     window->setTitle("Colours");
///     window->contentView()->addSubview(view);
///     window->center();
///     window->makeKeyAndOrderFront();
///
/// Main thread only. Making one makes the application object too.
class KORVID_EXPORT NSWindow : public NSResponder {
public:
    /// A window that is not on screen yet. `contentRect` is the place of its content on the screen.
    /// `backing` and `defer` are there for the name's sake: pixels and the window system's part are made when
    /// they are needed.
    NSWindow(NSRect contentRect, NSWindowStyleMask styleMask, NSBackingStoreType backing, bool defer);

    // Content.

    /// The root of the views. At first a plain one. Borrowed.
    NSView* contentView() const { return _contentView.get(); }
    /// Takes the place of the present view, with the content's size; redraws. A view that is elsewhere is
    /// taken out of there first. Null leaves only the background.
    void setContentView(RetainPtr<NSView> view);

    /// In the title bar. Default empty.
    NSString title() const { return _title; }
    void setTitle(NSString title);
    NSWindowStyleMask styleMask() const { return _styleMask; }

    /// What is below all views. Null (the default) means light or dark gray, as the application's appearance
    /// is. Windows are opaque: what shines through is black.
    NSColor* backgroundColor() const { return _backgroundColor.get(); }
    /// Retains the colour. Redraws.
    void setBackgroundColor(RetainPtr<NSColor> color);

    /// Held weakly if it is an NSObject too; any other has to be taken back, by null, before it goes.
    void setDelegate(NSWindowDelegate* delegate);
    NSWindowDelegate* delegate() const;

    // Place.

    /// The window on the screen with its title bar and borders, as far as the window system has told their
    /// sizes: it does so once the window is on screen.
    NSRect frame() const;
    /// Moves and resizes; with `display`, redraws at once.
    void setFrame(NSRect frame, bool display);
    void setFrameOrigin(NSPoint origin);
    /// Resizes the content and keeps the top left corner of the window.
    void setContentSize(NSSize size);
    /// Moves to the middle of the screen, a little above.
    void center();

    /// Between a window's frame and the place of its content.
    NSRect contentRectForFrameRect(NSRect frame) const;
    NSRect frameRectForContentRect(NSRect content) const;

    NSPoint convertPointToScreen(NSPoint point) const;
    NSPoint convertPointFromScreen(NSPoint point) const;
    NSRect convertRectToScreen(NSRect rect) const;
    NSRect convertRectFromScreen(NSRect rect) const;

    /// Pixels for each point. May change while the window is on screen; everything is redrawn then.
    CGFloat backingScaleFactor() const;

    // On and off the screen.

    /// Shows the window in front and asks for the keyboard.
    void makeKeyAndOrderFront(NSObject* sender = nullptr);
    /// Shows the window in front.
    void orderFront(NSObject* sender = nullptr);
    /// Takes it off the screen.
    void orderOut(NSObject* sender = nullptr);
    /// Closes the window: tells the delegate and takes it off the screen. Does nothing while it is not on
    /// screen.
    void close();
    /// What a click on the close button does: asks the delegate, then closes. Without a closable style it
    /// does nothing.
    void performClose(NSObject* sender = nullptr);
    bool isVisible() const;
    /// Whether the window has the keyboard.
    bool isKeyWindow() const;
    /// Stands for the window in events. Above 0, never used twice.
    NSInteger windowNumber() const { return _windowNumber; }

    /// Draws at once what is to be redrawn, if the window is on screen.
    void displayIfNeeded();

    // Events.

    /// Who gets the keyboard's events when the window does: at first the window itself. Borrowed.
    NSResponder* firstResponder() const;
    /// Asks the present one to resign and the new one, or for null the window itself, to take over. False,
    /// and no change, when the present one refuses, or the new one does not accept or is a view elsewhere.
    /// False, with the window itself as first responder, when the new one refuses to become it. Held weakly.
    bool makeFirstResponder(NSResponder* responder);

    /// Hands an event to the view it is for.
    ///
    /// A press goes to the topmost view under the pointer, which first becomes first responder if it accepts;
    /// all until the release of that button goes there as well, unless the view leaves the window. Keyboard
    /// events go to the first responder. Null does nothing.
    virtual void sendEvent(NSEvent* event);

protected:
    ~NSWindow() override;

private:
    friend class NSApplication;
    friend class NSView;
    class Events;

    HostWindow& host() const;
    void setContentRect(NSRect content);
    void contentRectDidChange(NSRect content);
    void leaveScreen();
    void setNeedsDisplayInRect(NSRect rect);
    void viewDidLeave(NSView* view);
    void forgetPress(const NSEvent& event);

    /// A mouse button that is down, and who follows it.
    struct Press {
        RetainPtr<NSView> view;
        bool isDown = false;
    };

    const NSInteger _windowNumber;
    const NSWindowStyleMask _styleMask;
    NSRect _contentRect;
    RetainPtr<NSView> _contentView;
    RetainPtr<NSColor> _backgroundColor;
    NSString _title;
    WeakPtr<NSObject> _delegateObject;
    NSWindowDelegate* _delegate = nullptr;
    bool _delegateIsObject = false;
    bool _isClosing = false;
    WeakPtr<NSResponder> _firstResponder;      ///< null for the window itself
    std::array<Press, 3> _presses;             ///< left, right, any other
    std::unique_ptr<Events> _events;           ///< what the window system tells
    mutable std::unique_ptr<HostWindow> _host; ///< made when first needed
};
