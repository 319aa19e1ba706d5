#include "Foundation/testing/ManualClock.h"
#include "Foundation/testing/NSLogCapture.h"
#include "MouseWindow.h"
#include "SwitchProbe.h"

#include <Foundation/WeakPtr.h>

#include <functional>
#include <optional>
#include <string>

namespace {

/// A controller as a view, to stand in a switch's responder chain.
class ControllingView : public NSView {
public:
    using NSView::NSView;
    void toggled(ZRSwitchControl*) { ++count; }
    int count = 0;

protected:
    ~ControllingView() override = default;
};

/// A switch of 100 x 40 points at (20, 10) of a window. Its knob moves by 40 points.
struct SwitchMouseStage {
    ManualClock clock;
    RetainPtr<SwitchProbe> control = make<SwitchProbe>(NSMakeRect(20, 10, 100, 40));
    RetainPtr<SwitchController> controller = make<SwitchController>();
    MouseWindow mouse{control};

    SwitchMouseStage()
    {
        control->setTarget(controller);
        control->setAction(selector<&SwitchController::toggled>);
    }
};

} // namespace

TEST(SwitchMouse, AClickTogglesAnimatedAndSendsTheActionOnce)
{
    SwitchMouseStage stage;
    stage.mouse.press(30, 20);
    EXPECT_FALSE(stage.control->isOn());
    EXPECT_EQ(stage.controller->log, "");
    stage.mouse.release(30, 20);
    EXPECT_TRUE(stage.control->isOn());
    EXPECT_EQ(stage.controller->log, "on ");
    EXPECT_EQ(stage.control->switchPosition(), 0);
    EXPECT_TRUE(stage.control->isAnimating());
    stage.clock.advance(1);
    EXPECT_EQ(stage.control->switchPosition(), 1);
    stage.mouse.click(110, 40);
    EXPECT_FALSE(stage.control->isOn());
    EXPECT_EQ(stage.controller->log, "on off ");
}

TEST(SwitchMouse, FourPointsStillCountAsAClickYetTheKnobFollows)
{
    for (const double distance : {4.0, -4.0}) {
        SwitchMouseStage stage;
        stage.control->setOn(distance < 0, false);
        stage.mouse.press(60, 20);
        stage.mouse.drag(60 + distance, 20);
        EXPECT_DOUBLE_EQ(stage.control->switchPosition(), distance > 0 ? 0.1 : 0.9);
        stage.mouse.release(60 + distance, 20);
        EXPECT_EQ(stage.controller->log, distance > 0 ? "on " : "off ");
    }
}

TEST(SwitchMouse, MoreThanFourPointsCountAsADragForTheRestOfThePress)
{
    SwitchMouseStage stage;
    stage.mouse.press(60, 20);
    stage.mouse.drag(64.5, 20);
    stage.mouse.drag(61, 20); // back again
    EXPECT_DOUBLE_EQ(stage.control->switchPosition(), 0.025);
    stage.mouse.release(61, 20);
    EXPECT_FALSE(stage.control->isOn());
    EXPECT_EQ(stage.controller->log, "off ") << "sent although the state is the same";
    EXPECT_TRUE(stage.control->isAnimating());
    stage.clock.advance(1);
    EXPECT_EQ(stage.control->switchPosition(), 0);

    // The next press is a click again.
    stage.mouse.click(60, 20);
    EXPECT_TRUE(stage.control->isOn());
}

TEST(SwitchMouse, ADragThatEndsInTheMiddleTurnsOn)
{
    SwitchMouseStage stage;
    stage.mouse.press(60, 20);
    stage.mouse.drag(80, 20);
    EXPECT_EQ(stage.control->switchPosition(), 0.5);
    stage.mouse.release(80, 20);
    EXPECT_TRUE(stage.control->isOn());
}

TEST(SwitchMouse, ADragThatEndsBeforeTheMiddleTurnsOff)
{
    SwitchMouseStage stage;
    stage.control->setOn(true, false);
    stage.mouse.press(60, 20);
    stage.mouse.drag(39.5, 20);
    stage.mouse.release(39.5, 20);
    EXPECT_FALSE(stage.control->isOn());
}

TEST(SwitchMouse, AReleasedKnobMovesOnFromWhereItIs)
{
    SwitchMouseStage stage;
    stage.mouse.press(60, 20);
    stage.mouse.drag(88, 20);
    EXPECT_DOUBLE_EQ(stage.control->switchPosition(), 0.7);
    stage.mouse.release(88, 20);
    // 0.7 is taken for the progress, which is eased: 0.7² (3 - 2 * 0.7), then 0.7 + 1/12 and so on.
    for (const double position : {0.784, 0.8795093, 0.9514074, 0.99275}) {
        stage.clock.advance(1.0 / 60 + 1e-9);
        EXPECT_NEAR(stage.control->switchPosition(), position, 1e-6);
    }
    stage.clock.advance(1.0 / 60 + 1e-9);
    EXPECT_EQ(stage.control->switchPosition(), 1);
    EXPECT_FALSE(stage.control->isAnimating());
}

TEST(SwitchMouse, TheKnobStaysWithinTheTrack)
{
    SwitchMouseStage stage;
    stage.mouse.press(60, 20);
    stage.mouse.drag(500, 20);
    EXPECT_EQ(stage.control->switchPosition(), 1);
    stage.mouse.drag(-500, 20);
    EXPECT_EQ(stage.control->switchPosition(), 0);
}

TEST(SwitchMouse, VerticalMotionIsIgnored)
{
    SwitchMouseStage stage;
    stage.mouse.press(60, 20);
    stage.mouse.drag(60, 290);
    EXPECT_EQ(stage.control->switchPosition(), 0);
    stage.mouse.release(60, 290);
    EXPECT_TRUE(stage.control->isOn()) << "a click";
}

TEST(SwitchMouse, APressDoesNotStopAnAnimation)
{
    SwitchMouseStage stage;
    stage.control->setOn(true);
    stage.clock.advance(0.1);
    stage.mouse.press(60, 20);
    EXPECT_TRUE(stage.control->isAnimating());
    const double pressed = stage.control->switchPosition();
    stage.clock.advance(0.04);
    EXPECT_GT(stage.control->switchPosition(), pressed);
    stage.mouse.drag(61, 20); // from where the knob was at the press
    EXPECT_DOUBLE_EQ(stage.control->switchPosition(), pressed + 1 / 40.0);
    stage.clock.advance(1);
    EXPECT_EQ(stage.control->switchPosition(), 1);
}

TEST(SwitchMouse, ADisabledSwitchWorksAllTheSame)
{
    SwitchMouseStage stage;
    stage.control->setEnabled(false);
    stage.mouse.click(60, 20);
    EXPECT_TRUE(stage.control->isOn());
    EXPECT_EQ(stage.controller->log, "on ");
}

TEST(SwitchMouse, WithoutATargetOrActionNothingIsSentOrLogged)
{
    const NSLogCapture log;
    const ManualClock clock;
    const auto superview = make<ControllingView>(NSMakeRect(0, 0, 200, 100));
    const auto control = make<SwitchProbe>(NSMakeRect(20, 10, 100, 40));
    superview->addSubview(control);
    const MouseWindow mouse(superview);
    control->setAction(selector<&ControllingView::toggled>);
    mouse.click(60, 20);
    EXPECT_TRUE(control->isOn());
    EXPECT_EQ(superview->count, 0) << "the responder chain is not searched";

    control->setAction(nullptr);
    control->setTarget(superview);
    mouse.click(60, 20);
    EXPECT_FALSE(control->isOn());
    EXPECT_EQ(log.messages(), std::vector<std::string>{});
}

TEST(SwitchMouse, LogsAnActionThatTheTargetCannotPerform)
{
    const NSLogCapture log;
    SwitchMouseStage stage;
    stage.control->setAction(selector<&ControllingView::toggled>);
    stage.mouse.click(60, 20);
    EXPECT_EQ(log.messages(), std::vector<std::string>{"Unable to send action"});
    EXPECT_TRUE(stage.control->isOn());
}

TEST(SwitchMouse, TheActionMayReleaseTheSwitch)
{
    SwitchMouseStage stage;
    const WeakPtr<SwitchProbe> weak(stage.control);
    stage.controller->onToggle = [&] {
        stage.control->removeFromSuperview();
        stage.control = nullptr;
    };
    stage.mouse.click(60, 20);
    EXPECT_EQ(stage.controller->log, "on ");
    EXPECT_TRUE(weak.lock()) << "the animation retains it";
    stage.clock.advance(1);
    EXPECT_FALSE(weak.lock());
}

TEST(SwitchMouse, TheActionMaySetTheStateBack)
{
    SwitchMouseStage stage;
    stage.controller->onToggle = [&] { stage.control->setOn(false, false); };
    stage.mouse.click(60, 20);
    EXPECT_FALSE(stage.control->isOn());
    EXPECT_EQ(stage.controller->log, "on ");
    stage.clock.advance(1);
    EXPECT_EQ(stage.control->switchPosition(), 0);
    EXPECT_FALSE(stage.control->isAnimating());
}

TEST(SwitchMouse, AWindowMayGoWhileItsSwitchMoves)
{
    ManualClock clock;
    std::optional<MouseWindow> mouse(std::in_place, make<SwitchProbe>(NSMakeRect(20, 10, 100, 40)));
    const WeakPtr<NSView> weak(mouse->window->contentView()->subviews().front());
    mouse->click(60, 20);
    clock.advance(0.05);
    mouse.reset();
    EXPECT_TRUE(weak.lock());
    clock.advance(1);
    EXPECT_FALSE(weak.lock());
}

TEST(SwitchMouse, WithoutAWidthThePositionIsAtAnEndOrUnknown)
{
    ManualClock clock;
    const auto control = make<SwitchProbe>(NSMakeRect(20, 10, 0, 40));
    const MouseWindow mouse(control);
    const auto event = [&](NSEventType type, double x) {
        return NSEvent::mouseEventWithType(
            type, NSMakePoint(x, 20), 0, 0, mouse.window->windowNumber(), nullptr, 0, 1, 1);
    };
    control->mouseDown(event(NSEventTypeLeftMouseDown, 20).get());
    control->mouseDragged(event(NSEventTypeLeftMouseDragged, 50).get());
    EXPECT_EQ(control->switchPosition(), 1);
    control->mouseDragged(event(NSEventTypeLeftMouseDragged, 10).get());
    EXPECT_EQ(control->switchPosition(), 0);
    control->mouseDragged(event(NSEventTypeLeftMouseDragged, 20).get());
    EXPECT_NE(control->switchPosition(), control->switchPosition()) << "0 / 0";
    control->mouseUp(event(NSEventTypeLeftMouseUp, 20).get());
    EXPECT_FALSE(control->isOn());
    clock.advance(1);
    EXPECT_EQ(control->switchPosition(), 0);
}
