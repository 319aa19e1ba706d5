#include <AppKit/NSButton.h>

#include "DrawnPixels.h"
#include "support/Describe.h"

#include <AppKit/NSEvent.h>
#include <AppKit/NSWindow.h>
#include <Foundation/NSNumber.h>
#include <gtest/gtest.h>

#include <functional>

namespace {

class ButtonController : public NSObject {
public:
    /// What the button was when it sent its action.
    std::vector<std::string> clicks;
    std::function<void()> onClick;

    void clicked(NSButton* button)
    {
        clicks.push_back(
            std::string(button->state() ? "on" : "off") + (button->isHighlighted() ? ", highlighted" : ""));
        if (onClick)
            onClick();
    }
};

using Clicks = std::vector<std::string>;

/// A button of 60 x 20 points at (20, 10) in a window of 100 x 50, for which the hand in the tests sends
/// events.
class NSButtonOperated : public testing::Test {
protected:
    RetainPtr<NSWindow> window =
        make<NSWindow>(NSMakeRect(0, 0, 100, 50), NSWindowStyleMaskBorderless, NSBackingStoreBuffered, false);
    RetainPtr<NSButton> button = make<NSButton>(NSMakeRect(20, 10, 60, 20));
    RetainPtr<ButtonController> controller = make<ButtonController>();

    NSButtonOperated()
    {
        button->setTarget(controller);
        button->setAction(selector<&ButtonController::clicked>);
        window->contentView()->addSubview(button);
    }
    void mouse(NSEventType type, NSPoint place) const
    {
        const RetainPtr<NSWindow> sender = window;
        const auto event =
            NSEvent::mouseEventWithType(type, place, 0, 0, window->windowNumber(), nullptr, 0, 1, 1);
        sender->sendEvent(event);
    }
    void press(NSPoint place) const { mouse(NSEventTypeLeftMouseDown, place); }
    void drag(NSPoint place) const { mouse(NSEventTypeLeftMouseDragged, place); }
    void release(NSPoint place) const { mouse(NSEventTypeLeftMouseUp, place); }
    void click() const
    {
        press(kInside);
        release(kInside);
    }
    void key(const char* characters, NSEventModifierFlags flags = 0, bool isARepeat = false) const
    {
        const auto event = NSEvent::keyEventWithType(NSEventTypeKeyDown, NSZeroPoint, flags, 0,
            window->windowNumber(), nullptr, characters, characters, isARepeat);
        const RetainPtr<NSWindow> sender = window;
        sender->sendEvent(event);
    }

    static constexpr NSPoint kInside{30, 20};
    static constexpr NSPoint kOutside{10, 20};
};

} // namespace

TEST(NSButton, IsAMomentaryButtonWithoutATitleAtFirst)
{
    const auto button = make<NSButton>(NSMakeRect(1, 2, 30, 40));
    EXPECT_EQ(describe(button->frame()), "1 2 30 40");
    EXPECT_EQ(button->title(), "");
    EXPECT_EQ(button->keyEquivalent(), "");
    EXPECT_EQ(button->state(), NSControlStateValueOff);
    EXPECT_TRUE(button->isEnabled());
    EXPECT_TRUE(button->isBordered());
    EXPECT_TRUE(button->isFlipped());
    const auto* const cell = dynamic_cast<NSButtonCell*>(button->cell());
    ASSERT_TRUE(cell);
    EXPECT_EQ(cell->buttonType(), NSButtonTypeMomentaryPushIn);
    EXPECT_EQ(cell->controlView(), button);
    EXPECT_EQ(describe(make<NSButton>()->frame()), "0 0 0 0");
}

TEST(NSButton, IsMadeInItsNaturalSize)
{
    const auto controller = make<ButtonController>();
    const auto button =
        NSButton::buttonWithTitle("Apply", controller.get(), selector<&ButtonController::clicked>);
    EXPECT_EQ(button->title(), "Apply");
    EXPECT_EQ(button->target(), controller);
    EXPECT_EQ(button->action(), selector<&ButtonController::clicked>);
    EXPECT_EQ(describe(button->frame().size), describe(button->cell()->cellSize()));
    button->performClick();
    EXPECT_EQ(controller->clicks, Clicks{"off"});
}

TEST(NSButton, PropertiesAreThoseOfItsCell)
{
    const auto button = make<NSButton>();
    button->setTitle("a");
    button->setAlternateTitle("b");
    button->setKeyEquivalent("c");
    button->setBordered(false);
    button->setButtonType(NSButtonTypeToggle);
    button->setState(7);
    const auto& cell = dynamic_cast<NSButtonCell&>(*button->cell());
    EXPECT_EQ(cell.title(), "a");
    EXPECT_EQ(cell.alternateTitle(), "b");
    EXPECT_EQ(cell.keyEquivalent(), "c");
    EXPECT_FALSE(cell.isBordered());
    EXPECT_EQ(cell.buttonType(), NSButtonTypeToggle);
    EXPECT_EQ(cell.state(), NSControlStateValueOn);
    EXPECT_EQ(button->title(), "a");
    EXPECT_EQ(button->alternateTitle(), "b");
    EXPECT_EQ(button->keyEquivalent(), "c");
    EXPECT_FALSE(button->isBordered());
    EXPECT_EQ(button->state(), NSControlStateValueOn);
    EXPECT_EQ(button->integerValue(), 1);
}

TEST(NSButton, WorksWithACellOfAnotherClassAndWithout)
{
    const auto button = make<NSButton>();
    for (const RetainPtr<NSCell>& cell : {RetainPtr<NSCell>(make<NSActionCell>()), RetainPtr<NSCell>()}) {
        SCOPED_TRACE(cell ? "other cell" : "no cell");
        button->setCell(cell);
        button->setTitle("a");
        button->setAlternateTitle("b");
        button->setKeyEquivalent("c");
        button->setBordered(true);
        button->setButtonType(NSButtonTypeToggle);
        EXPECT_EQ(button->title(), "");
        EXPECT_EQ(button->alternateTitle(), "");
        EXPECT_EQ(button->keyEquivalent(), "");
        EXPECT_FALSE(button->isBordered());
        EXPECT_EQ(button->accessibilityRole(), NSAccessibilityButtonRole);
        button->setState(1);
        EXPECT_EQ(button->state(), cell ? 1 : 0);
    }
}

// The mouse.

TEST_F(NSButtonOperated, IsHighlightedWhilePressedAndSendsItsActionOnRelease)
{
    press(kInside);
    EXPECT_TRUE(button->isHighlighted());
    EXPECT_EQ(controller->clicks, Clicks{});
    release(kInside);
    EXPECT_FALSE(button->isHighlighted());
    EXPECT_EQ(controller->clicks, Clicks{"off"}); // no longer highlighted
    release(kInside);
    EXPECT_EQ(controller->clicks.size(), 1);
}

TEST_F(NSButtonOperated, TheHighlightFollowsThePointerOutAndBackIn)
{
    press(kInside);
    drag(kOutside);
    EXPECT_FALSE(button->isHighlighted());
    drag(NSMakePoint(79, 29));
    EXPECT_TRUE(button->isHighlighted());
    drag(NSMakePoint(30, 400));
    EXPECT_FALSE(button->isHighlighted());
    drag(kInside);
    release(kInside);
    EXPECT_EQ(controller->clicks.size(), 1);
}

TEST_F(NSButtonOperated, AReleaseOutsideDoesNothing)
{
    button->setButtonType(NSButtonTypePushOnPushOff);
    press(kInside);
    drag(kOutside);
    release(kOutside);
    EXPECT_EQ(controller->clicks, Clicks{});
    EXPECT_EQ(button->state(), NSControlStateValueOff);
    // Also without a drag in between.
    press(kInside);
    release(kOutside);
    EXPECT_EQ(controller->clicks, Clicks{});
    EXPECT_FALSE(button->isHighlighted());
}

TEST_F(NSButtonOperated, APressOutsideDoesNothing)
{
    press(kOutside);
    drag(kInside);
    EXPECT_FALSE(button->isHighlighted());
    release(kInside);
    EXPECT_EQ(controller->clicks, Clicks{});
}

TEST_F(NSButtonOperated, APartThatIsClippedAwayIsOutside)
{
    button->setFrame(NSMakeRect(20, 10, 200, 20));
    press(kInside);
    drag(NSMakePoint(150, 20)); // within the button, and outside of the window
    EXPECT_FALSE(button->isHighlighted());
    release(NSMakePoint(150, 20));
    EXPECT_EQ(controller->clicks, Clicks{});
}

TEST_F(NSButtonOperated, HidingItEndsThePress)
{
    press(kInside);
    button->setHidden(true);
    release(kInside);
    EXPECT_EQ(controller->clicks, Clicks{});
    EXPECT_FALSE(button->isHighlighted());
}

TEST_F(NSButtonOperated, ADisabledButtonDoesNothing)
{
    button->setEnabled(false);
    press(kInside);
    EXPECT_FALSE(button->isHighlighted());
    drag(kInside);
    EXPECT_FALSE(button->isHighlighted());
    button->setEnabled(true); // the press has begun without it
    release(kInside);
    EXPECT_EQ(controller->clicks, Clicks{});
    click();
    EXPECT_EQ(controller->clicks.size(), 1);
}

TEST_F(NSButtonOperated, DisablingItDuringAPressEndsThat)
{
    press(kInside);
    button->setEnabled(false);
    drag(kInside);
    EXPECT_FALSE(button->isHighlighted());
    release(kInside);
    EXPECT_EQ(controller->clicks, Clicks{});
}

TEST_F(NSButtonOperated, AMomentaryButtonKeepsItsState)
{
    click();
    EXPECT_EQ(button->state(), NSControlStateValueOff);
    button->setState(NSControlStateValueOn);
    click();
    EXPECT_EQ(button->state(), NSControlStateValueOn);
    EXPECT_EQ(controller->clicks, (Clicks{"off", "on"}));
}

TEST_F(NSButtonOperated, TheOthersToggleBeforeTheirAction)
{
    for (const NSButtonType type : {NSButtonTypePushOnPushOff, NSButtonTypeToggle}) {
        SCOPED_TRACE(type);
        controller->clicks.clear();
        button->setButtonType(type);
        click();
        click();
        click();
        EXPECT_EQ(controller->clicks, (Clicks{"on", "off", "on"}));
        button->setState(NSControlStateValueOff);
    }
    EXPECT_EQ(controller->clicks.size(), 3); // not by setState
}

TEST_F(NSButtonOperated, TheActionMayRemoveTheButton)
{
    const WeakPtr<NSButton> weak = button;
    controller->onClick = [&] {
        button->removeFromSuperview();
        button = nullptr;
        EXPECT_TRUE(weak.lock());
    };
    click();
    EXPECT_EQ(controller->clicks.size(), 1);
    EXPECT_FALSE(weak.lock());
}

TEST_F(NSButtonOperated, TheActionMayReplaceTheCellAndReleaseTheWindow)
{
    button->setButtonType(NSButtonTypePushOnPushOff);
    controller->onClick = [&] {
        button->setCell(make<NSButtonCell>());
        window = nullptr;
    };
    click();
    EXPECT_EQ(controller->clicks, Clicks{"on"});
    EXPECT_EQ(button->window(), nullptr);
}

TEST_F(NSButtonOperated, RemovingItEndsThePress)
{
    press(kInside);
    button->removeFromSuperview();
    EXPECT_FALSE(button->isHighlighted());
    window->contentView()->addSubview(button);
    drag(kInside);
    release(kInside);
    EXPECT_FALSE(button->isHighlighted());
    EXPECT_EQ(controller->clicks, Clicks{});
}

TEST_F(NSButtonOperated, ClosingItsWindowEndsThePress)
{
    window->orderFront();
    press(kInside);
    EXPECT_TRUE(button->isHighlighted());
    window->orderOut();
    EXPECT_FALSE(button->isHighlighted());
}

TEST_F(NSButtonOperated, OtherButtonsAreNotItsOwn)
{
    mouse(NSEventTypeRightMouseDown, kInside);
    EXPECT_FALSE(button->isHighlighted());
    mouse(NSEventTypeRightMouseUp, kInside);
    EXPECT_EQ(controller->clicks, Clicks{});
}

// Keys.

TEST_F(NSButtonOperated, SpaceClicksTheFocusedButtonOnce)
{
    button->setButtonType(NSButtonTypePushOnPushOff);
    key(" ");
    EXPECT_EQ(controller->clicks, Clicks{});
    ASSERT_TRUE(window->makeFirstResponder(button));
    key(" ");
    EXPECT_EQ(controller->clicks, Clicks{"on"});
    key(" ", 0, true);
    key(" ", NSEventModifierFlagControl);
    key("x");
    EXPECT_EQ(controller->clicks.size(), 1);
    key(" ", NSEventModifierFlagShift);
    EXPECT_EQ(controller->clicks, (Clicks{"on", "off"}));
    button->setEnabled(false);
    key(" ");
    EXPECT_EQ(controller->clicks.size(), 2);
}

TEST_F(NSButtonOperated, TakesTheFocusWhileEnabled)
{
    click();
    EXPECT_EQ(window->firstResponder(), button);
    window->makeFirstResponder(nullptr);
    button->setEnabled(false);
    EXPECT_FALSE(button->canBecomeKeyView());
    EXPECT_FALSE(window->makeFirstResponder(button));
}

TEST_F(NSButtonOperated, ItsKeyEquivalentClicksItFromAnywhere)
{
    key("\r");
    EXPECT_EQ(controller->clicks, Clicks{});
    button->setKeyEquivalent("\r");
    key("\r");
    EXPECT_EQ(controller->clicks.size(), 1);
    key("\x03"); // Enter
    EXPECT_EQ(controller->clicks.size(), 2);
    key("\r", 0, true);
    for (const NSEventModifierFlags flag :
        {NSEventModifierFlagControl, NSEventModifierFlagOption, NSEventModifierFlagCommand})
        key("\r", flag);
    key("\x1b");
    EXPECT_EQ(controller->clicks.size(), 2);
    button->setKeyEquivalent("\x1b");
    key("\x1b");
    EXPECT_EQ(controller->clicks.size(), 3);
    key("\x03");
    EXPECT_EQ(controller->clicks.size(), 3);
    button->setEnabled(false);
    key("\x1b");
    EXPECT_EQ(controller->clicks.size(), 3);
}

TEST_F(NSButtonOperated, AHeldKeyEquivalentReachesNoOtherButton)
{
    const auto below = make<NSButton>();
    window->contentView()->addSubview(below, NSWindowBelow, nullptr);
    below->setTarget(controller);
    below->setAction(selector<&ButtonController::clicked>);
    below->setKeyEquivalent("\r");
    button->setKeyEquivalent("\r");
    key("\r", 0, true);
    EXPECT_EQ(controller->clicks, Clicks{});
    EXPECT_FALSE(button->performKeyEquivalent(nullptr));
}

// Assistive technology.

TEST(NSButtonAccessibility, AMomentaryButtonIsAButtonWithoutAValue)
{
    const auto button = make<NSButton>();
    EXPECT_TRUE(button->isAccessibilityElement());
    EXPECT_EQ(button->accessibilityRole(), NSAccessibilityButtonRole);
    EXPECT_EQ(button->accessibilityValue(), nullptr);
}

TEST(NSButtonAccessibility, TheOthersAreCheckBoxesWithTheirState)
{
    const auto button = make<NSButton>();
    for (const NSButtonType type : {NSButtonTypePushOnPushOff, NSButtonTypeToggle}) {
        SCOPED_TRACE(type);
        button->setButtonType(type);
        button->setState(NSControlStateValueOff);
        EXPECT_EQ(button->accessibilityRole(), NSAccessibilityCheckBoxRole);
        const auto value = [&] {
            const RetainPtr<NSObject> object = button->accessibilityValue();
            return dynamic_cast<NSNumber&>(*object).integerValue();
        };
        EXPECT_EQ(value(), 0);
        EXPECT_TRUE(button->accessibilityPerformPress());
        EXPECT_EQ(value(), 1);
        button->setEnabled(false);
        EXPECT_FALSE(button->accessibilityPerformPress());
        EXPECT_FALSE(button->isAccessibilityEnabled());
        EXPECT_EQ(value(), 1);
        button->setEnabled(true);
    }
}

TEST(NSButtonAccessibility, TheTitleIsTheNameUnlessALabelIsSet)
{
    const auto button = make<NSButton>();
    EXPECT_FALSE(button->accessibilityLabel());
    button->setTitle("Apply");
    EXPECT_EQ(button->accessibilityLabel(), "Apply");
    button->setAccessibilityLabel("Apply the colour");
    EXPECT_EQ(button->accessibilityLabel(), "Apply the colour");
}
