#include "QtTestSupport.h"
#include "XServer.h"
#include "support/TemporaryFolder.h"

#include <KorvidAppKit/ZR2DColorPicker.h>
#include <KorvidAppKit/ZRSwitchControl.h>

#include <AppKit/NSEvent.h>

#include <string>

// Controls as a screen reader meets them: over the accessibility bus of a desktop of their own, from another
// process. The test runs in a process of its own, since Qt connects to one window system only.

namespace {

/// A session bus for this process alone, which starts the accessibility bus when that is needed.
class Desktop {
public:
    Desktop()
    {
        setenv("XDG_RUNTIME_DIR", _folder.path().c_str(), 1);
        setenv("HOME", _folder.path().c_str(), 1);
        setenv("GSETTINGS_BACKEND", "memory", 1);
        setenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1", 1);
        unsetenv("AT_SPI_BUS_ADDRESS");
        _bus.emplace(std::vector<std::string>{"dbus-daemon", "--session", "--nofork", "--print-address"});
        const std::string address = _bus->readLine(30);
        if (address.empty()) {
            std::fputs("dbus-daemon does not start: install the package dbus-daemon\n", stderr);
            std::_Exit(91);
        }
        setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);
    }

private:
    TemporaryFolder _folder;
    XServer _server;
    std::optional<BackgroundProcess> _bus;
};

class Recorder : public NSObject {
public:
    void toggled(ZRSwitchControl* sender) { log += sender->isOn() ? "on " : "off "; }
    std::string log;

protected:
    ~Recorder() override = default;
};

/// Serves the window's events until the reader prints a line; returns that.
std::string nextLine(BackgroundProcess& reader)
{
    std::string line;
    serveUntil([&] {
        line = reader.readLine(0.005);
        return !line.empty() || reader.waitForExit(0).has_value();
    });
    return line;
}

void readControls()
{
    const Desktop desktop;
    const auto controller = make<Recorder>();
    const auto toggle = make<ZRSwitchControl>(NSMakeRect(10, 10, 60, 24));
    toggle->setAccessibilityLabel("Night mode");
    toggle->setTarget(controller);
    toggle->setAction(selector<&Recorder::toggled>);
    const auto picker = make<ZR2DColorPicker>(NSMakeRect(10, 50, 112, 62));
    const auto root = make<NSView>();
    root->addSubview(toggle);
    root->addSubview(picker);
    const auto window = shownWindow(NSMakeRect(0, 0, 200, 150), root);
    EXPECT_TRUE(serveUntil([&] { return window->isKeyWindow(); }));

    // What the AT-SPI library never frees is no leak of ours.
    BackgroundProcess reader(
        {KORVID_SCREEN_READER, window->title().UTF8String()}, {{"ASAN_OPTIONS", "detect_leaks=0"}});
    EXPECT_EQ(nextLine(reader), "check box 'Night mode' focusable enabled");
    EXPECT_EQ(nextLine(reader), "color chooser 'Color' focusable enabled 'hue 50 %, saturation 50 %'");

    EXPECT_EQ(nextLine(reader), "Toggle");
    EXPECT_EQ(nextLine(reader), "object:state-changed:checked 1 'Night mode'");
    EXPECT_EQ(nextLine(reader), "check box 'Night mode' checked focusable enabled");
    EXPECT_TRUE(toggle->isOn());
    EXPECT_EQ(controller->log, "on ");

    EXPECT_EQ(nextLine(reader), "object:state-changed:focused 1 'Color'");
    EXPECT_EQ(nextLine(reader), "focused");
    EXPECT_EQ(window->firstResponder(), picker.get());
    xdotool({"key", "Right"});
    EXPECT_EQ(nextLine(reader), "object:property-change:accessible-description 0 'Color'");
    EXPECT_EQ(
        nextLine(reader), "color chooser 'Color' focusable focused enabled 'hue 51 %, saturation 50 %'");
    EXPECT_EQ(nextLine(reader), "end");
    EXPECT_EQ(reader.waitForExit(10), 0);
}

TEST(AccessibilityBusDeathTest, AScreenReaderReadsAndOperatesTheControls)
{
    EXPECT_EXIT((readControls(), finish()), testing::ExitedWithCode(0), "");
}

} // namespace
