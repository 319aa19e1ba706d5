#pragma once

#include "support/Process.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// Pixels of a screen, 0x00RRGGBB each, top row first.
struct ScreenPixels {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> values;
};

/// An X server that draws in memory, at 96 dots per inch, with access to what a user would see and do. The
/// destructor ends it.
class VirtualDisplay {
public:
    /// A screen of that size in pixels. Throws if the server cannot be started.
    explicit VirtualDisplay(int width = 4096, int height = 4096);
    ~VirtualDisplay();

    /// The value of DISPLAY for its clients.
    const std::string& name() const { return _name; }
    /// The environment of a program that opens its windows here, with `scale` pixels per point.
    EnvironmentChanges environment(int scale = 1) const;

    /// Waits up to 20 seconds for a visible window of that title. Nothing if none appears.
    std::optional<unsigned long> waitForWindow(const std::string& title);
    /// The visible pixels in the window's area, whichever window drew them.
    ScreenPixels pixelsOf(unsigned long window);
    /// Waits up to 20 seconds until the window shows exactly these pixels; returns what it shows in the end.
    ScreenPixels waitForPixels(unsigned long window, const ScreenPixels& expected);
    /// Sends the message that a window manager sends for a click on the close button.
    void requestClose(unsigned long window);

private:
    struct Connection;

    std::unique_ptr<BackgroundProcess> _server;
    std::string _name;
    std::unique_ptr<Connection> _connection;
};
