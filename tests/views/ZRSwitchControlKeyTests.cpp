#include "Foundation/testing/ManualClock.h"
#include "Foundation/testing/NSLogCapture.h"
#include "KeyWindow.h"
#include "SwitchProbe.h"
#include "support/Rendering.h"

#include <Foundation/NSNumber.h>
#include <Foundation/WeakPtr.h>

#include <functional>
#include <string>

namespace {

/// Counts the keys that nothing inside has handled.
class SwitchOuterView : public NSView {
public:
    using NSView::NSView;
    void keyDown(NSEvent*) override { ++keys; }
    int keys = 0;

protected:
    ~SwitchOuterView() override = default;
};

/// A switch of 100 x 40 points that has the keyboard focus.
struct SwitchKeyStage {
    RetainPtr<SwitchOuterView> outer = make<SwitchOuterView>(NSMakeRect(0, 0, 100, 40));
    RetainPtr<SwitchProbe> control = makeSwitch();
    RetainPtr<SwitchController> controller = make<SwitchController>();
    KeyWindow keys{outer};

    SwitchKeyStage()
    {
        outer->addSubview(control);
        keys.window->makeFirstResponder(control);
        control->setTarget(controller);
        control->setAction(selector<&SwitchController::toggled>);
    }
};

/// Whether a switch draws the ring: a white line at the edge of the bounds, and a black one inside of it.
bool hasRing(ZRSwitchControl* control)
{
    Rendering rendering(100, 40);
    rendering.draw(control);
    const bool isWhite = rendering.at(50, 39.5) == kWhite;
    EXPECT_EQ(rendering.at(50, 38.5) == kBlack, isWhite);
    EXPECT_EQ(rendering.at(50, 0.5) == kWhite, isWhite);
    EXPECT_EQ(rendering.at(1, 39), kGreen); // outside of the round corner
    return isWhite;
}

} // namespace

TEST(SwitchKeys, SpaceTogglesAnimatedAndSendsTheActionOnce)
{
    ManualClock clock;
    const SwitchKeyStage stage;
    stage.keys.type(u' ');
    EXPECT_TRUE(stage.control->isOn());
    EXPECT_TRUE(stage.control->isAnimating());
    EXPECT_EQ(stage.control->switchPosition(), 0);
    EXPECT_EQ(stage.controller->log, "on ");
    stage.keys.type(u' ');
    EXPECT_FALSE(stage.control->isOn());
    EXPECT_EQ(stage.controller->log, "on off ");
    clock.advance(1);
    EXPECT_FALSE(stage.control->isAnimating());
}

TEST(SwitchKeys, ASpaceBarThatIsHeldTogglesOnce)
{
    ManualClock clock;
    const SwitchKeyStage stage;
    stage.keys.type(u' ');
    const auto repeat = NSEvent::keyEventWithType(
        NSEventTypeKeyDown, NSZeroPoint, 0, 0, stage.keys.window->windowNumber(), nullptr, " ", " ", true);
    stage.keys.window->sendEvent(repeat);
    EXPECT_TRUE(stage.control->isOn());
    EXPECT_EQ(stage.controller->log, "on ");
    EXPECT_EQ(stage.outer->keys, 0);
    clock.advance(1);
}

TEST(SwitchKeys, OtherKeysGoToTheNextResponder)
{
    const SwitchKeyStage stage;
    stage.keys.type(u'a');
    stage.keys.type(u"\r");
    stage.keys.type(u"  ");
    stage.keys.type(u' ', NSEventModifierFlagControl);
    stage.keys.type(u' ', NSEventModifierFlagOption);
    stage.keys.type(u' ', NSEventModifierFlagCommand);
    EXPECT_EQ(stage.outer->keys, 6);
    EXPECT_FALSE(stage.control->isOn());
    EXPECT_EQ(stage.controller->log, "");
}

TEST(SwitchKeys, ADisabledSwitchTakesNeitherFocusNorKeys)
{
    const SwitchKeyStage stage;
    stage.control->setEnabled(false);
    stage.keys.type(u' '); // still first responder
    EXPECT_EQ(stage.outer->keys, 1);
    stage.control->performClick();
    EXPECT_FALSE(stage.control->isOn());
    EXPECT_EQ(stage.controller->log, "");
    stage.keys.window->makeFirstResponder(nullptr);
    EXPECT_FALSE(stage.keys.window->makeFirstResponder(stage.control));
}

TEST(SwitchKeys, AClickByTheProgramIsOneOfTheMouse)
{
    ManualClock clock;
    const SwitchKeyStage stage;
    stage.control->performClick();
    EXPECT_TRUE(stage.control->isOn());
    EXPECT_TRUE(stage.control->isAnimating());
    EXPECT_EQ(stage.controller->log, "on ");
    clock.advance(1);

    const NSLogCapture log;
    stage.control->setTarget(make<NSObject>().get()); // gone at once
    stage.control->performClick();
    EXPECT_TRUE(log.messages().empty());
    const auto other = make<NSObject>();
    stage.control->setTarget(other);
    stage.control->performClick();
    EXPECT_EQ(log.messages(), std::vector<std::string>{"Unable to send action"});
    clock.advance(1);
}

TEST(SwitchKeys, TheActionMayRemoveAndReleaseTheSwitch)
{
    ManualClock clock;
    const auto controller = make<SwitchController>();
    WeakPtr<SwitchProbe> control;
    {
        SwitchKeyStage stage;
        control = stage.control;
        stage.control->setTarget(controller);
        controller->onToggle = [&stage] {
            stage.control->removeFromSuperview();
            stage.control = nullptr;
        };
        stage.keys.type(u' ');
    }
    EXPECT_EQ(controller->log, "on ");
    clock.advance(1); // ends the animation, which retains it
    EXPECT_FALSE(control.lock());
}

TEST(SwitchKeys, AFocusRingShowsThatKeysArrive)
{
    const SwitchKeyStage stage;
    EXPECT_TRUE(hasRing(stage.control));
    stage.control->setNeedsDisplay(false);
    stage.keys.window->makeFirstResponder(nullptr);
    EXPECT_TRUE(takeDisplayMark(stage.control));
    EXPECT_FALSE(hasRing(stage.control));
}

TEST(SwitchKeys, APressTakesTheFocusWithoutARing)
{
    ManualClock clock;
    const SwitchKeyStage stage;
    stage.keys.window->makeFirstResponder(nullptr);
    for (const NSEventType type : {NSEventTypeLeftMouseDown, NSEventTypeLeftMouseUp}) {
        const auto event = NSEvent::mouseEventWithType(
            type, NSMakePoint(50, 20), 0, 0, stage.keys.window->windowNumber(), nullptr, 0, 1, 1);
        stage.keys.window->sendEvent(event);
    }
    EXPECT_EQ(stage.keys.window->firstResponder(), stage.control.get());
    EXPECT_TRUE(stage.control->isOn());
    EXPECT_FALSE(hasRing(stage.control));
    stage.keys.type(u' ');
    EXPECT_TRUE(hasRing(stage.control));
    clock.advance(1);
}

TEST(SwitchAccessibility, IsACheckBoxThatIsCheckedWhileOn)
{
    const auto control = makeSwitch();
    const auto isChecked = [&] {
        const auto value = control->accessibilityValue();
        const auto* const number = dynamic_cast<const NSNumber*>(value.get());
        return number && number->boolValue();
    };
    EXPECT_TRUE(control->isAccessibilityElement());
    EXPECT_EQ(control->accessibilityRole(), NSAccessibilityCheckBoxRole);
    EXPECT_NE(control->accessibilityValue(), nullptr);
    EXPECT_FALSE(isChecked());
    control->setOn(true, false);
    EXPECT_TRUE(isChecked());
    control->setSwitchPosition(0); // where the knob is does not count
    EXPECT_TRUE(isChecked());
    control->setOn(false, false);
    EXPECT_FALSE(isChecked());
}

TEST(SwitchAccessibility, APressIsAClick)
{
    ManualClock clock;
    const SwitchKeyStage stage;
    EXPECT_TRUE(stage.control->accessibilityPerformPress());
    EXPECT_TRUE(stage.control->isOn());
    EXPECT_EQ(stage.controller->log, "on ");
    stage.control->setEnabled(false);
    EXPECT_FALSE(stage.control->accessibilityPerformPress());
    EXPECT_TRUE(stage.control->isOn());
    EXPECT_EQ(stage.controller->log, "on ");
    clock.advance(1);
}
