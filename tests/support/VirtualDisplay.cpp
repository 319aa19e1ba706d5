#include "support/VirtualDisplay.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <chrono>
#include <stdexcept>
#include <thread>

struct VirtualDisplay::Connection {
    explicit Connection(const std::string& name)
        : display(XOpenDisplay(name.c_str()))
    {
        if (!display)
            throw std::runtime_error("the X server at " + name + " accepts no connection");
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection() { XCloseDisplay(display); }

    Display* display;
};

namespace {

/// Calls `done` until it returns true, for up to 20 seconds. Returns whether it did.
template <class Condition> bool waitUntil(Condition done)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!done()) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return true;
}

std::string titleOf(Display* display, Window window)
{
    const Atom property = XInternAtom(display, "_NET_WM_NAME", False);
    const Atom utf8 = XInternAtom(display, "UTF8_STRING", False);
    Atom type = 0;
    int format = 0;
    unsigned long count = 0;
    unsigned long left = 0;
    unsigned char* text = nullptr;
    std::string title;
    if (XGetWindowProperty(
            display, window, property, 0, 1024, False, utf8, &type, &format, &count, &left, &text)
            == Success
        && text) {
        title.assign(reinterpret_cast<char*>(text), count);
        XFree(text);
    }
    return title;
}

bool isVisible(Display* display, Window window)
{
    XWindowAttributes attributes;
    return XGetWindowAttributes(display, window, &attributes) && attributes.map_state == IsViewable;
}

/// A visible top-level window of that title. Without a window manager, these are children of the root window.
std::optional<Window> findWindow(Display* display, const std::string& title)
{
    Window root = 0;
    Window parent = 0;
    Window* children = nullptr;
    unsigned int count = 0;
    std::optional<Window> found;
    if (XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count) && children) {
        for (unsigned int i = 0; i < count && !found; ++i) {
            if (isVisible(display, children[i]) && titleOf(display, children[i]) == title)
                found = children[i];
        }
        XFree(children);
    }
    return found;
}

} // namespace

VirtualDisplay::VirtualDisplay(int width, int height)
    : _server(std::make_unique<BackgroundProcess>(
        std::vector<std::string>{"Xvfb", "-displayfd", "1", "-screen", "0",
            std::to_string(width) + "x" + std::to_string(height) + "x24", "-dpi", "96", "-nolisten", "tcp"}))
{
    const std::string number = _server->readLine(20);
    if (number.empty())
        throw std::runtime_error("Xvfb did not start: is the package xvfb installed?");
    _name = ":" + number;
    _connection = std::make_unique<Connection>(_name);
}

VirtualDisplay::~VirtualDisplay() = default;

EnvironmentChanges VirtualDisplay::environment(int scale) const
{
    return {{"DISPLAY", _name}, {"WAYLAND_DISPLAY", std::nullopt}, {"QT_QPA_PLATFORM", "xcb"},
        {"QT_SCALE_FACTOR", std::to_string(scale)}};
}

std::optional<unsigned long> VirtualDisplay::waitForWindow(const std::string& title)
{
    std::optional<unsigned long> window;
    waitUntil([&] { return (window = findWindow(_connection->display, title)).has_value(); });
    return window;
}

ScreenPixels VirtualDisplay::pixelsOf(unsigned long window)
{
    Display* display = _connection->display;
    const Window root = DefaultRootWindow(display);
    XWindowAttributes attributes;
    if (!XGetWindowAttributes(display, window, &attributes))
        throw std::runtime_error("the window is gone");
    int x = 0;
    int y = 0;
    Window child = 0;
    XTranslateCoordinates(display, window, root, 0, 0, &x, &y, &child);
    // Read from the root window, which has the visible pixels of all windows.
    XImage* image = XGetImage(display, root, x, y, static_cast<unsigned>(attributes.width),
        static_cast<unsigned>(attributes.height), AllPlanes, ZPixmap);
    if (!image)
        throw std::runtime_error("part of the window is outside the screen");
    ScreenPixels pixels{attributes.width, attributes.height, {}};
    pixels.values.reserve(static_cast<std::size_t>(pixels.width) * static_cast<std::size_t>(pixels.height));
    for (int row = 0; row < pixels.height; ++row) {
        for (int column = 0; column < pixels.width; ++column)
            pixels.values.push_back(static_cast<std::uint32_t>(XGetPixel(image, column, row) & 0xFFFFFF));
    }
    XDestroyImage(image);
    return pixels;
}

ScreenPixels VirtualDisplay::waitForPixels(unsigned long window, const ScreenPixels& expected)
{
    ScreenPixels seen;
    waitUntil([&] {
        seen = pixelsOf(window);
        return seen.values == expected.values;
    });
    return seen;
}

void VirtualDisplay::requestClose(unsigned long window)
{
    Display* display = _connection->display;
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = XInternAtom(display, "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(XInternAtom(display, "WM_DELETE_WINDOW", False));
    event.xclient.data.l[1] = CurrentTime;
    XSendEvent(display, window, False, NoEventMask, &event);
    XFlush(display);
}
