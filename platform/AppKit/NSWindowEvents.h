#pragma once

#include "Host.h"
#include "ViewLayer.h"

#include <AppKit/NSWindow.h>

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
    void scrollEvent(const HostScrollEvent& event) override;
    void keyEvent(const HostKeyEvent& event) override;
    void closeRequested() override;
    HostToolTip toolTipAt(NSPoint location) override;

private:
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
    SavedPixels::Memory _layerMemory; ///< reused from one drawing to the next
};
