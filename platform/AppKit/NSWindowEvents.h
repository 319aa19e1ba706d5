#pragma once

#include "Host.h"
#include "ViewLayer.h"

#include <AppKit/NSWindow.h>

#include <algorithm>
#include <array>

/// Turns the window system's notifications into events and drawing.
class NSWindow::Events final : public HostWindowEvents {
public:
    explicit Events(NSWindow& window)
        : _window(window)
    {
    }

    void contentRectDidChange(NSRect content) override;
    void draw(CGContextRef context, CGAffineTransform baseFromWindow, const CGRect* baseRects,
        std::size_t count) override;
    void mouseEvent(const HostMouseEvent& event) override;
    void mouseLeft(NSPoint location, NSEventModifierFlags modifierFlags) override;
    bool scrollEvent(const HostScrollEvent& event) override;
    bool keyEvent(const HostKeyEvent& event) override;
    void keyStatusDidChange(bool isKey) override;
    void closeRequested() override;
    void inputWasBlocked() override { _window.leaveScreen(); }
    HostToolTip toolTipAt(NSPoint location) override;
    bool hasKeyView(bool next) override;
    bool selectKeyView(bool first) override;
    void willAppear() override;
    void activeStatusDidChange() override;
    void appearanceDidChange() override;
    NSView* contentView() override { return _window.contentView(); }

    /// To be called when an event has passed all responders.
    void wasNotHandled(const NSEvent* event) { _unhandled = event; }

    /// The index of a mouse button: left, right, or any other.
    static std::size_t slot(NSInteger button)
    {
        return static_cast<std::size_t>(std::clamp<NSInteger>(button, 0, 2));
    }

private:
    bool handle(NSEvent::Fields fields);
    void drawViews(
        CGContextRef context, CGAffineTransform baseFromWindow, const CGRect* baseRects, std::size_t count);

    /// What a press, its drags and its release have in common.
    struct Click {
        NSInteger number = 0;
        NSInteger count = 0;
    };

    Click clickForPress(NSInteger button, NSPoint location, NSTimeInterval timestamp);

    NSWindow& _window;
    std::array<Click, 3> _clicks; ///< of the buttons that are down: left, right, any other
    Click _lastClick;
    NSInteger _lastButton = -1;
    NSPoint _lastLocation{0, 0};
    NSTimeInterval _lastTimestamp = 0;
    const NSEvent* _unhandled = nullptr; ///< the last event that has passed all responders
    SavedPixels::Memory _layerMemory;    ///< reused from one drawing to the next
};
