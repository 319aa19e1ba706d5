#pragma once

#include <AppKit/NSEvent.h>
#include <AppKit/NSWindow.h>

/// A window that is not on screen, with views at their own frames, and a mouse.
class MouseWindow {
public:
    explicit MouseWindow(RetainPtr<NSView> view) { window->contentView()->addSubview(std::move(view)); }

    // At a point of the window's content.

    void press(CGFloat x, CGFloat y) const { send(NSEventTypeLeftMouseDown, x, y); }
    void drag(CGFloat x, CGFloat y) const { send(NSEventTypeLeftMouseDragged, x, y); }
    void release(CGFloat x, CGFloat y) const { send(NSEventTypeLeftMouseUp, x, y); }
    void click(CGFloat x, CGFloat y) const
    {
        press(x, y);
        release(x, y);
    }

    const RetainPtr<NSWindow> window = make<NSWindow>(
        NSMakeRect(0, 0, 400, 300), NSWindowStyleMaskBorderless, NSBackingStoreBuffered, false);

private:
    void send(NSEventType type, CGFloat x, CGFloat y) const
    {
        const auto event = NSEvent::mouseEventWithType(
            type, NSMakePoint(x, y), 0, 0, window->windowNumber(), nullptr, 0, 1, 1);
        window->sendEvent(event);
    }
};
