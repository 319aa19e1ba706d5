#include "AlertTestSupport.h"
#include "XServer.h"

#include <KorvidAppKit/ZRAlert.h>
#include <KorvidAppKit/ZRAppKitAdditions.h>
#include <KorvidAppKit/ZRSwitchControl.h>

#include <AppKit/NSApplication.h>
#include <Foundation/NSTimer.h>

// Alerts on a real X server, with a mouse and keys that are pressed from outside. Each test runs in a process
// of its own, since Qt connects to one window system only.

namespace {

/// Moves the pointer to the middle of a widget and clicks.
void clickOn(const QWidget& widget)
{
    const QPoint middle = widget.mapToGlobal(widget.rect().center());
    xdotool({"mousemove", std::to_string(middle.x()), std::to_string(middle.y()), "click", "1"});
}

/// Shows an alert with these buttons, lets `user` operate it once it is exposed, and returns the callback's
/// number.
NSInteger answerOf(
    const std::vector<NSString>& titles, const std::function<void()>& user, NSView* accessory = nullptr)
{
    NSInteger answer = -1;
    const QObject context;
    NSApplication::sharedApplication();
    QTimer::singleShot(0, &context, [&] {
        EXPECT_TRUE(QTest::qWaitForWindowExposed(shownAlert()));
        EXPECT_TRUE(QTest::qWaitForWindowActive(shownAlert()));
        user();
    });
    QTimer::singleShot(30000, &context, [] {
        ADD_FAILURE() << "nothing answers the alert";
        NSApp->abortModal();
    });
    const auto configuration = make<NSMutableDictionary>();
    if (accessory)
        configuration->setObject(accessory, kZRAlertAccessoryViewKey);
    ZRAlertBlockWithConf(
        "Title", "Message", titles, [&](NSInteger index) { answer = index; }, configuration);
    return answer;
}

void pressButtons()
{
    const XServer server;
    // With and without a window that the alert belongs to.
    RetainPtr<NSWindow> window;
    for (int round = 0; round < 2; ++round) {
        for (int button = 0; button < 3; ++button)
            EXPECT_EQ(answerOf({"One", "Two", "Three"}, [&] { clickOn(*alertButton(button)); }), button);
        window = shownWindow(NSMakeRect(100, 100, 300, 200), make<NSView>().get());
    }
}

TEST(RealAlertDeathTest, ClicksPressTheButtonsByTheirPlace)
{
    EXPECT_EXIT((pressButtons(), finish()), testing::ExitedWithCode(0), "");
}

void pressKeys()
{
    const XServer server;
    const auto type = [](const std::vector<std::string>& keys) {
        std::vector<std::string> words{"key"};
        words.insert(words.end(), keys.begin(), keys.end());
        return [words] { xdotool(words); };
    };
    EXPECT_EQ(answerOf({"One", "Cancel", "Three"}, type({"Return"})), 0);
    EXPECT_EQ(answerOf({"One", "Cancel", "Three"}, type({"Escape"})), 1);
    EXPECT_EQ(answerOf({"One", "Two", "Three"}, type({"Tab", "Tab", "space"})), 2);
    EXPECT_EQ(answerOf({"One", "Two", "Three"}, type({"Tab", "Return"})), 0);
    // Escape does nothing without a button that cancels.
    EXPECT_EQ(answerOf({"One", "Two"}, type({"Escape", "Tab", "space"})), 1);
    EXPECT_EQ(answerOf({}, type({"Escape"})), 0);
}

TEST(RealAlertDeathTest, KeysPressTheButtons)
{
    EXPECT_EXIT((pressKeys(), finish()), testing::ExitedWithCode(0), "");
}

class Opener : public NSObject {
public:
    std::function<void()> action;
    void toggled() { action(); }

protected:
    ~Opener() override = default;
};

void operateAccessory()
{
    const XServer server;
    const auto control = make<ZRSwitchControl>(NSMakeRect(0, 0, 100, 40));
    const auto opener = make<Opener>();
    control->setTarget(opener);
    control->setAction(selector<&Opener::toggled>);
    NSInteger inner = -1;
    opener->action = [&] { inner = answerOf({"A", "B"}, [] { clickOn(*alertButton(1)); }); };
    const NSInteger outer = answerOf(
        {"One", "Two"},
        [&] {
            const QWidget* const alert = shownAlert();
            const NSRect place = control->window()->convertRectToScreen(control->bounds());
            const int height = alert->screen()->geometry().height();
            xdotool({"mousemove", std::to_string(int(NSMidX(place))),
                std::to_string(height - int(NSMidY(place))), "click", "1"});
            EXPECT_TRUE(serveUntil([&] { return inner >= 0 && control->switchPosition() == 1; }));
            EXPECT_EQ(shownAlert(), alert);
            EXPECT_TRUE(control->isOn());
            EXPECT_EQ(control->switchPosition(), 1);
            clickOn(*alertButton(1));
        },
        control);
    EXPECT_EQ(inner, 1);
    EXPECT_EQ(outer, 1);
}

TEST(RealAlertDeathTest, ASwitchInAnAlertOpensAnotherAlert)
{
    EXPECT_EXIT((operateAccessory(), finish()), testing::ExitedWithCode(0), "");
}

void animateBehindAlert()
{
    const XServer server;
    const auto control = make<ZRSwitchControl>(NSMakeRect(0, 0, 100, 40));
    const auto window = shownWindow(NSMakeRect(50, 50, 300, 200), control);
    const CGFloat top = NSMaxY(window->frame());
    std::vector<CGFloat> heights;
    const auto timer = NSTimer::scheduledTimerWithTimeInterval(
        0.01, true, [&](NSTimer*) { heights.push_back(window->frame().size.height); });
    ZRAppKitAdditions::setSize(window, NSMakeSize(300, 500), true, true);
    control->setOn(true);
    answerOf({"One"}, [&] {
        EXPECT_TRUE(
            serveUntil([&] { return window->frame().size.height == 500 && control->switchPosition() == 1; }));
        EXPECT_EQ(NSMaxY(window->frame()), top);
        // The window system's own window follows.
        EXPECT_TRUE(serveUntil([&] { return widgetOf(*window)->height() == 500; }));
        clickOn(*alertButton(0));
    });
    timer->invalidate();
    // It grew while the alert was shown.
    EXPECT_GT(std::count_if(heights.begin(), heights.end(), [](CGFloat h) { return h > 200 && h < 500; }), 3);
}

TEST(RealAlertDeathTest, WindowsAndSwitchesKeepAnimatingBehindAnAlert)
{
    EXPECT_EXIT((animateBehindAlert(), finish()), testing::ExitedWithCode(0), "");
}

} // namespace
