#include <AppKit/NSControl.h>

#include "support/Describe.h"

#include <AppKit/NSApplication.h>
#include <Foundation/NSData.h>
#include <Foundation/NSError.h>
#include <Foundation/NSKeyedArchiver.h>
#include <Foundation/NSNull.h>
#include <Foundation/NSNumber.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>

namespace {

class Controller : public NSObject {
public:
    int toggles = 0;
    NSObject* sender = nullptr;
    std::function<void()> onToggle;

    void toggled(NSControl* control)
    {
        ++toggles;
        sender = control;
        if (onToggle)
            onToggle();
    }
};

class Unrelated : public NSObject { };

RetainPtr<NSControl> archivedAndBack(const NSControl* control)
{
    const auto data = NSKeyedArchiver::archivedDataWithRootObject(control, true);
    return data ? NSKeyedUnarchiver::unarchivedObjectOfClass<NSControl>(data) : nullptr;
}

/// Whether `set` schedules a repaint of the control.
bool redraws(NSControl* control, const std::function<void()>& set)
{
    control->setNeedsDisplay(false);
    set();
    return control->needsDisplay();
}

} // namespace

TEST(NSControl, IsEnabledAndHasNoTargetActionOrValueAtFirst)
{
    const auto control = make<NSControl>(NSMakeRect(1, 2, 30, 40));
    EXPECT_EQ(describe(control->frame()), "1 2 30 40");
    EXPECT_TRUE(control->isEnabled());
    EXPECT_FALSE(control->isHighlighted());
    EXPECT_EQ(control->cell(), nullptr);
    EXPECT_EQ(control->target(), nullptr);
    EXPECT_EQ(control->action(), nullptr);
    EXPECT_EQ(control->tag(), 0);
    EXPECT_EQ(control->objectValue(), nullptr);
    EXPECT_EQ(control->intValue(), 0);
    EXPECT_EQ(control->doubleValue(), 0);
    EXPECT_EQ(control->stringValue(), "");
    EXPECT_FALSE(control->acceptsFirstResponder());
    EXPECT_EQ(describe(make<NSControl>()->frame()), "0 0 0 0");
}

// Target and action.

TEST(NSControl, SendsTheActionToTheTargetWithItselfAsSender)
{
    const auto control = make<NSControl>();
    const auto controller = make<Controller>();
    EXPECT_TRUE(control->sendAction(selector<&Controller::toggled>, controller));
    EXPECT_EQ(controller->toggles, 1);
    EXPECT_EQ(controller->sender, control);
}

TEST(NSControl, SendActionReturnsFalseForATargetWithoutTheMethod)
{
    const auto control = make<NSControl>();
    EXPECT_FALSE(control->sendAction(selector<&Controller::toggled>, make<Unrelated>().get()));
    EXPECT_FALSE(control->sendAction(nullptr, make<Controller>().get()));
    EXPECT_FALSE(control->sendAction(selector<&Controller::toggled>, nullptr));
}

TEST(NSControlDeathTest, SendsActionsWithoutAnApplicationAndMakesNone)
{
    EXPECT_EXIT(
        {
            const auto control = make<NSControl>();
            const auto controller = make<Controller>();
            const bool sent = control->sendAction(selector<&Controller::toggled>, controller);
            const bool refused = !control->sendAction(selector<&Controller::toggled>, nullptr)
                && !control->sendAction(nullptr, controller);
            std::exit(sent && refused && controller->toggles == 1 && !NSApp ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST(NSControl, HoldsItsTargetWeakly)
{
    const auto control = make<NSControl>();
    auto controller = make<Controller>();
    control->setTarget(controller);
    EXPECT_EQ(control->target(), controller);
    controller = nullptr;
    EXPECT_EQ(control->target(), nullptr);
}

TEST(NSControl, PerformClickSendsTheActionUnlessDisabled)
{
    const auto control = make<NSControl>();
    const auto controller = make<Controller>();
    control->setTarget(controller);
    control->setAction(selector<&Controller::toggled>);
    EXPECT_EQ(control->action(), selector<&Controller::toggled>);
    control->performClick();
    EXPECT_EQ(controller->toggles, 1);
    control->setEnabled(false);
    control->performClick();
    EXPECT_EQ(controller->toggles, 1);
}

TEST(NSControl, ControlAndTargetMayBeDestroyedByTheAction)
{
    NSApplication::sharedApplication();
    auto control = make<NSControl>();
    auto controller = make<Controller>();
    const WeakPtr<NSControl> weakControl = control;
    const WeakPtr<Controller> weakController = controller;
    NSControl* const sender = control;
    controller->onToggle = [&] {
        control = nullptr;
        controller = nullptr;
        EXPECT_EQ(weakController.lock()->sender, weakControl.lock());
    };
    EXPECT_TRUE(sender->sendAction(selector<&Controller::toggled>, controller));
    EXPECT_FALSE(weakControl.lock());
    EXPECT_FALSE(weakController.lock());
}

// Properties.

TEST(NSControl, SetEnabledRedrawsWhenTheValueChanges)
{
    const auto control = make<NSControl>(NSMakeRect(0, 0, 10, 10));
    EXPECT_FALSE(redraws(control, [&] { control->setEnabled(true); }));
    EXPECT_TRUE(redraws(control, [&] { control->setEnabled(false); }));
    EXPECT_FALSE(control->isEnabled());
}

TEST(NSControl, SetHighlightedRedrawsWhenTheValueChanges)
{
    const auto control = make<NSControl>(NSMakeRect(0, 0, 10, 10));
    EXPECT_FALSE(redraws(control, [&] { control->setHighlighted(false); }));
    EXPECT_TRUE(redraws(control, [&] { control->setHighlighted(true); }));
    EXPECT_TRUE(control->isHighlighted());
}

TEST(NSControl, AnAttributedStringIsReadAsItsString)
{
    const auto control = make<NSControl>();
    EXPECT_EQ(control->attributedStringValue()->length(), 0);
    const auto string = make<NSAttributedString>("8 a");
    control->setAttributedStringValue(string);
    EXPECT_EQ(control->attributedStringValue(), string);
    EXPECT_EQ(control->stringValue(), "8 a");
    EXPECT_EQ(control->intValue(), 8);
    control->setIntValue(4);
    EXPECT_EQ(control->attributedStringValue()->string(), "4");
    control->setAttributedStringValue(nullptr);
    EXPECT_EQ(control->objectValue(), nullptr);
}

TEST(NSControl, TagsAreStored)
{
    const auto control = make<NSControl>(NSMakeRect(0, 0, 10, 10));
    EXPECT_FALSE(redraws(control, [&] { control->setTag(-7); }));
    EXPECT_EQ(control->tag(), -7);
}

TEST(NSControl, AValueIsReadAsAnyType)
{
    const auto control = make<NSControl>();
    control->setDoubleValue(-2.75);
    EXPECT_EQ(control->doubleValue(), -2.75);
    EXPECT_EQ(control->intValue(), -2);
    EXPECT_EQ(control->integerValue(), -2);
    EXPECT_EQ(control->stringValue(), "-2.75");

    control->setStringValue(" 12.5 points");
    EXPECT_EQ(control->doubleValue(), 12.5);
    EXPECT_EQ(control->intValue(), 12);
    EXPECT_EQ(control->stringValue(), " 12.5 points");

    control->setIntValue(3);
    EXPECT_EQ(control->doubleValue(), 3);
    EXPECT_EQ(control->stringValue(), "3");

    control->setObjectValue(NSNull::null());
    EXPECT_EQ(control->intValue(), 0);
    EXPECT_EQ(control->stringValue(), NSNull::null()->description());
    control->setStringValue(nullptr);
    EXPECT_EQ(control->objectValue(), nullptr);
}

TEST(NSControl, IntValueIsClamped)
{
    const auto control = make<NSControl>();
    control->setIntegerValue(3000000000);
    EXPECT_EQ(control->integerValue(), 3000000000);
    EXPECT_EQ(control->intValue(), 2147483647);
    control->setIntegerValue(-3000000000);
    EXPECT_EQ(control->intValue(), -2147483647 - 1);
}

TEST(NSControl, SettingAnotherValueRedraws)
{
    const auto control = make<NSControl>(NSMakeRect(0, 0, 10, 10));
    EXPECT_TRUE(redraws(control, [&] { control->setIntValue(3); }));
    EXPECT_FALSE(redraws(control, [&] { control->setIntValue(3); }));
    EXPECT_FALSE(redraws(control, [&] { control->setDoubleValue(3); }));
    EXPECT_TRUE(redraws(control, [&] { control->setStringValue("3"); }));
    EXPECT_FALSE(redraws(control, [&] { control->setStringValue("3"); }));
    EXPECT_TRUE(redraws(control, [&] { control->setObjectValue(nullptr); }));
    EXPECT_FALSE(redraws(control, [&] { control->setObjectValue(nullptr); }));
}

TEST(NSControl, RoundTripsThroughAnArchive)
{
    const auto control = make<NSControl>(NSMakeRect(1, 2, 30, 40));
    control->setTag(9);
    control->setEnabled(false);
    control->setDoubleValue(0.5);
    auto back = archivedAndBack(control);
    ASSERT_TRUE(back);
    EXPECT_EQ(describe(back->frame()), "1 2 30 40");
    EXPECT_EQ(back->tag(), 9);
    EXPECT_FALSE(back->isEnabled());
    EXPECT_EQ(back->doubleValue(), 0.5);

    control->setStringValue("text");
    control->setEnabled(true);
    back = archivedAndBack(control);
    ASSERT_TRUE(back);
    EXPECT_EQ(back->stringValue(), "text");
    EXPECT_TRUE(back->isEnabled());

    control->setObjectValue(NSNull::null());
    back = archivedAndBack(control);
    ASSERT_TRUE(back);
    EXPECT_EQ(back->objectValue(), nullptr);
    EXPECT_TRUE(make<NSControl>(static_cast<NSCoder*>(nullptr))->isEnabled());
}
