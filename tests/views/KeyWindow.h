#pragma once

#include "QtTestSupport.h"

#include <AppKit/NSEvent.h>
#include <AppKit/NSWindow.h>

#include <string_view>

/// A window of 400 x 300 points that has the keyboard focus, and a view in it that is first responder.
class KeyWindow {
public:
    explicit KeyWindow(RetainPtr<NSView> view)
    {
        window->contentView()->addSubview(view);
        window->makeKeyAndOrderFront();
        EXPECT_TRUE(serveUntil([this] { return window->isKeyWindow(); }));
        window->makeFirstResponder(view);
    }
    ~KeyWindow() { window->close(); }

    /// Types a key: its characters and the modifiers that are held.
    void type(std::u16string_view characters, NSEventModifierFlags flags = 0) const
    {
        const NSString text(characters);
        const auto event = NSEvent::keyEventWithType(
            NSEventTypeKeyDown, NSZeroPoint, flags, 0, window->windowNumber(), nullptr, text, text, false);
        window->sendEvent(event);
    }
    void type(char16_t character, NSEventModifierFlags flags = 0) const
    {
        type(std::u16string_view(&character, 1), flags);
    }

    const RetainPtr<NSWindow> window = make<NSWindow>(
        NSMakeRect(0, 0, 400, 300), NSWindowStyleMaskBorderless, NSBackingStoreBuffered, false);
};
