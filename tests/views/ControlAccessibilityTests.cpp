#include "AppKit/testing/AccessibilityListener.h"
#include "Foundation/testing/ManualClock.h"
#include "QtTestSupport.h"
#include "SwitchProbe.h"

#include <KorvidAppKit/ZR2DColorPicker.h>

#include <QAccessible>

#include <optional>
#include <string>
#include <vector>

// A switch and a colour picker as Qt's bridges to assistive technology see them.

namespace {

std::vector<std::string>* changes = nullptr;

/// Writes down the changes of elements: what they read as after each.
void recordChange(QAccessibleEvent* event)
{
    const QAccessibleInterface* const element = event->accessibleInterface();
    if (!changes || !element || element->object())
        return;
    if (event->type() == QAccessible::StateChanged)
        changes->push_back(element->state().checked ? "checked" : "unchecked");
    else if (event->type() == QAccessible::DescriptionChanged)
        changes->push_back(element->text(QAccessible::Description).toStdString());
}

/// A window with a switch and a picker.
class ControlAccessibility : public testing::Test {
protected:
    ControlAccessibility()
    {
        toggle->setAccessibilityLabel("Night mode");
        root->addSubview(toggle);
        root->addSubview(picker);
        window = shownWindow(NSMakeRect(0, 0, 200, 150), root);
        changes = &recorded;
        listener.emplace(recordChange);
    }
    ~ControlAccessibility() override
    {
        changes = nullptr;
        clock.advance(1); // lets animations end
    }

    QAccessibleInterface* element(int index) const
    {
        return QAccessible::queryAccessibleInterface(widgetOf(*window))->child(index);
    }

    ManualClock clock;
    RetainPtr<NSView> root = make<NSView>();
    RetainPtr<SwitchProbe> toggle = make<SwitchProbe>(NSMakeRect(10, 10, 60, 24));
    RetainPtr<ZR2DColorPicker> picker = make<ZR2DColorPicker>(NSMakeRect(10, 50, 112, 62));
    RetainPtr<NSWindow> window;
    std::vector<std::string> recorded;
    std::optional<AccessibilityListener> listener;
    using Changes = std::vector<std::string>;
};

TEST_F(ControlAccessibility, ASwitchReadsAsItIs)
{
    ASSERT_NE(element(0), nullptr);
    EXPECT_EQ(element(0)->role(), QAccessible::CheckBox);
    EXPECT_EQ(element(0)->text(QAccessible::Name), "Night mode");
    EXPECT_TRUE(element(0)->state().checkable);
    EXPECT_TRUE(element(0)->state().focusable);
    EXPECT_FALSE(element(0)->state().checked);
    toggle->setOn(true);
    EXPECT_TRUE(element(0)->state().checked);
    toggle->setOn(false, false);
    EXPECT_FALSE(element(0)->state().checked);
    EXPECT_EQ(recorded, (Changes{"checked", "unchecked"}));
}

TEST_F(ControlAccessibility, TheSameStateAgainIsNoChange)
{
    toggle->setOn(false);
    toggle->setSwitchPosition(0.5);
    EXPECT_EQ(recorded, Changes{});
}

TEST_F(ControlAccessibility, TheSwitchsActionTogglesIt)
{
    QAccessibleActionInterface* const actions = element(0)->actionInterface();
    ASSERT_NE(actions, nullptr);
    actions->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_TRUE(toggle->isOn());
    EXPECT_TRUE(toggle->isAnimating());
    EXPECT_EQ(recorded, Changes{"checked"});
}

TEST_F(ControlAccessibility, APickerReadsAsItsComponents)
{
    ASSERT_NE(element(1), nullptr);
    EXPECT_EQ(element(1)->role(), QAccessible::ColorChooser);
    EXPECT_EQ(element(1)->text(QAccessible::Name), "Color");
    EXPECT_EQ(element(1)->text(QAccessible::Value), "hue 50 %, saturation 50 %");
    EXPECT_TRUE(element(1)->state().focusable);
    EXPECT_FALSE(element(1)->state().checkable);
    picker->setComps({0.25, 1});
    picker->setComps({0.25, 1});
    EXPECT_EQ(recorded, Changes{"hue 25 %, saturation 100 %"});
}

TEST_F(ControlAccessibility, OtherAxesAreAnotherValue)
{
    picker->setAxes(kZR2DColorPickerAxesRedGreen);
    picker->setAxes(kZR2DColorPickerAxesRedGreen);
    EXPECT_EQ(recorded, Changes{"red 50 %, green 50 %"});
}

} // namespace
