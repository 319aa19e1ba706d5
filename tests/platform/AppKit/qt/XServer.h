#pragma once

#include "support/Process.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

/// An X server for this process, on the first free display. Nothing else connects to it before the process
/// does, and it resets whenever its last client disconnects.
class XServer {
public:
    /// `option` is one more option of Xvfb.
    explicit XServer(const char* option = "-reset")
        : _server({"Xvfb", "-displayfd", "1", "-screen", "0", "1000x700x24", "-nolisten", "tcp", option})
    {
        const std::string display = _server.readLine(30);
        if (display.empty()) {
            std::fputs("Xvfb does not start: install the package xvfb\n", stderr);
            std::_Exit(91);
        }
        setenv("DISPLAY", (":" + display).c_str(), 1);
        setenv("QT_QPA_PLATFORM", "xcb", 1);
    }

private:
    BackgroundProcess _server;
};

/// Moves the mouse and presses buttons and keys on the X server.
inline void xdotool(std::vector<std::string> words)
{
    words.insert(words.begin(), "xdotool");
    const ProcessResult result = runProcess(words);
    if (result.exitCode != 0) {
        std::fprintf(stderr, "xdotool fails: install the package xdotool (%s)\n", result.error.c_str());
        std::_Exit(92);
    }
}
