#include "QtTestSupport.h"
#include "SwitchProbe.h"
#include "XServer.h"

#include <KorvidAppKit/ZR2DColorPicker.h>

#include <AppKit/NSApplication.h>
#include <QScreen>

#include <string>

// Controls in windows of a real X server, with a mouse that is moved from outside. Each test runs in a
// process of its own, since Qt connects to one window system only.

namespace {

constexpr int kWidth = 240;
constexpr int kHeight = 120;

/// A window at the top left of the screen with one view, so that a pixel's place on the screen is its place
/// from the top left of the content.
struct Stage {
    RetainPtr<NSWindow> window;

    explicit Stage(const RetainPtr<NSView>& view)
    {
        const auto root = make<NSView>();
        root->addSubview(view);
        window = shownWindow(NSMakeRect(0, 0, kWidth, kHeight), root.get());
        const CGFloat screenHeight =
            window->frame().origin.y + widgetOf(*window)->screen()->geometry().height();
        window->setFrameOrigin(NSMakePoint(0, screenHeight - kHeight));
        EXPECT_TRUE(serveUntil([&] { return widgetOf(*window)->geometry().topLeft() == QPoint(0, 0); }));
    }
};

/// Moves the pointer to a point of the window, y upward.
void movePointer(int x, int y)
{
    xdotool({"mousemove", std::to_string(x), std::to_string(kHeight - y)});
}

class Controller : public NSObject {
public:
    void toggled(ZRSwitchControl* sender) { log += sender->isOn() ? "on " : "off "; }
    std::string log;

protected:
    ~Controller() override = default;
};

void operateSwitch()
{
    const XServer server;
    const auto control = make<SwitchProbe>(NSMakeRect(20, 20, 100, 40));
    const auto controller = make<Controller>();
    control->setTarget(controller);
    control->setAction(selector<&Controller::toggled>);
    const Stage stage(control);
    const auto waitForRest = [&](const std::string& log) {
        EXPECT_TRUE(serveUntil([&] { return controller->log == log && !control->isAnimating(); }))
            << controller->log << " instead of " << log;
    };

    movePointer(70, 40);
    xdotool({"click", "1"});
    waitForRest("on ");
    EXPECT_TRUE(control->isOn());
    EXPECT_EQ(control->switchPosition(), 1);

    // To the left by 30 of the knob's 40 points, and a release outside the window.
    movePointer(90, 40);
    xdotool({"mousedown", "1"});
    movePointer(84, 40);
    movePointer(60, 40);
    EXPECT_TRUE(serveUntil([&] { return control->switchPosition() == 0.25; })) << control->switchPosition();
    movePointer(60, -100);
    xdotool({"mouseup", "1"});
    waitForRest("on off ");
    EXPECT_FALSE(control->isOn());
    EXPECT_EQ(control->switchPosition(), 0);

    // Back to where it was: an action, though no other state.
    movePointer(40, 40);
    xdotool({"mousedown", "1"});
    movePointer(60, 40);
    EXPECT_TRUE(serveUntil([&] { return control->switchPosition() == 0.5; })) << control->switchPosition();
    movePointer(41, 40);
    EXPECT_TRUE(serveUntil([&] { return control->switchPosition() == 0.025; })) << control->switchPosition();
    xdotool({"mouseup", "1"});
    waitForRest("on off off ");
    EXPECT_FALSE(control->isOn());
}

TEST(RealControlDeathTest, ClicksAndDragsOperateASwitchWithOneActionEach)
{
    EXPECT_EXIT((operateSwitch(), finish()), testing::ExitedWithCode(0), "");
}

void operatePicker()
{
    const XServer server;
    // Its field goes from (26, 16) to (126, 66).
    const auto picker = make<ZR2DColorPicker>(NSMakeRect(20, 10, 112, 62));
    std::vector<ZR2Components> calls;
    picker->setComponentsChangedCB([&](ZR2Components comps) { calls.push_back(comps); });
    const Stage stage(picker);

    movePointer(51, 56);
    xdotool({"click", "1"});
    EXPECT_TRUE(serveUntil([&] { return !calls.empty(); }));
    EXPECT_EQ(picker->comps(), (ZR2Components{0.25, 0.8}));
    EXPECT_EQ(calls.size(), 1U);

    movePointer(76, 41);
    xdotool({"mousedown", "1"});
    EXPECT_TRUE(serveUntil([&] { return picker->comps() == ZR2Components{0.5, 0.5}; }));
    movePointer(500, 26);
    EXPECT_TRUE(serveUntil([&] { return picker->comps() == ZR2Components{1, 0.2}; }));
    const std::size_t dragged = calls.size();
    xdotool({"mouseup", "1"});
    movePointer(51, 56);
    QTest::qWait(50); // for events that must not change anything
    EXPECT_EQ(calls.size(), dragged);
    EXPECT_EQ(picker->comps(), (ZR2Components{1, 0.2}));
}

TEST(RealControlDeathTest, ClicksAndDragsMoveAPickersKnob)
{
    EXPECT_EXIT((operatePicker(), finish()), testing::ExitedWithCode(0), "");
}

} // namespace
