#pragma once

#include "support/Process.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// Pixels of a screen, 0x00RRGGBB each, rows from the top.
struct ScreenPixels {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> values;
};

/// An X server without a screen, with 4096 x 4096 pixels at 96 dots per inch, and what a user could see and
/// do there. It ends when this goes.
class VirtualDisplay {
public:
    /// Throws when the server cannot be started.
    VirtualDisplay();
    ~VirtualDisplay();

    /// For the variable DISPLAY.
    const std::string& name() const { return _name; }
    /// What a program needs to open its windows here, `scale` pixels to a point.
    EnvironmentChanges environment(int scale = 1) const;

    /// A visible window of that title; waits for it up to 20 seconds. Nothing when none appeared.
    std::optional<unsigned long> waitForWindow(const std::string& title);
    /// What is on the screen where the window is.
    ScreenPixels pixelsOf(unsigned long window);
    /// Waits up to 20 seconds until the window shows just these pixels; answers what it shows at last.
    ScreenPixels waitForPixels(unsigned long window, const ScreenPixels& expected);
    /// What a window manager does for its close button.
    void requestClose(unsigned long window);

private:
    struct Connection;

    std::unique_ptr<BackgroundProcess> _server;
    std::string _name;
    std::unique_ptr<Connection> _connection;
};
