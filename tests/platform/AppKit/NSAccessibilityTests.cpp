#include <AppKit/NSControl.h>
#include <AppKit/NSWindow.h>
#include <gtest/gtest.h>

// What views and controls say of themselves.

namespace {

class Counter : public NSObject {
public:
    int actions = 0;
    void count(NSObject*) { ++actions; }
};

class FocusView : public NSView {
public:
    using NSView::NSView;
    bool acceptsFirstResponder() const override { return true; }
};

RetainPtr<NSWindow> windowWith(NSView* view)
{
    auto window =
        make<NSWindow>(NSMakeRect(0, 0, 100, 100), NSWindowStyleMaskTitled, NSBackingStoreBuffered, false);
    window->contentView()->addSubview(view);
    return window;
}

TEST(NSAccessibility, PlainViewsAreNoElements)
{
    const auto view = make<NSView>();
    EXPECT_FALSE(view->isAccessibilityElement());
    EXPECT_EQ(view->accessibilityRole(), NSAccessibilityGroupRole);
    EXPECT_TRUE(view->accessibilityLabel().isNull());
    EXPECT_EQ(view->accessibilityValue(), nullptr);
    EXPECT_TRUE(view->accessibilityValueDescription().isNull());
    EXPECT_TRUE(view->isAccessibilityEnabled());
    EXPECT_FALSE(view->accessibilityPerformPress());
}

TEST(NSAccessibility, TheLabelIsStored)
{
    const auto view = make<NSView>();
    view->setAccessibilityLabel("Night mode");
    EXPECT_EQ(view->accessibilityLabel(), "Night mode");
    view->setAccessibilityLabel(nullptr);
    EXPECT_TRUE(view->accessibilityLabel().isNull());
}

TEST(NSAccessibility, AControlIsAButtonThatAPressOperates)
{
    const auto target = make<Counter>();
    const auto control = make<NSControl>();
    control->setTarget(target);
    control->setAction(selector<&Counter::count>);
    EXPECT_TRUE(control->isAccessibilityElement());
    EXPECT_EQ(control->accessibilityRole(), NSAccessibilityButtonRole);
    EXPECT_TRUE(control->accessibilityPerformPress());
    EXPECT_EQ(target->actions, 1);
}

TEST(NSAccessibility, ADisabledControlCannotBePressed)
{
    const auto target = make<Counter>();
    const auto control = make<NSControl>();
    control->setTarget(target);
    control->setAction(selector<&Counter::count>);
    control->setEnabled(false);
    EXPECT_FALSE(control->isAccessibilityEnabled());
    EXPECT_FALSE(control->accessibilityPerformPress());
    EXPECT_EQ(target->actions, 0);
}

TEST(NSAccessibility, FocusIsThatOfTheWindowsFirstResponder)
{
    const auto view = make<FocusView>(NSMakeRect(0, 0, 10, 10));
    view->setAccessibilityFocused(true); // without a window: no effect
    EXPECT_FALSE(view->isAccessibilityFocused());

    const auto window = windowWith(view);
    EXPECT_FALSE(view->isAccessibilityFocused());
    view->setAccessibilityFocused(true);
    EXPECT_TRUE(view->isAccessibilityFocused());
    EXPECT_EQ(window->firstResponder(), view.get());
    view->setAccessibilityFocused(false);
    EXPECT_FALSE(view->isAccessibilityFocused());
    EXPECT_EQ(window->firstResponder(), window.get());
}

TEST(NSAccessibility, ViewsThatRefuseTheFocusDoNotGetIt)
{
    const auto view = make<NSView>(NSMakeRect(0, 0, 10, 10));
    const auto window = windowWith(view);
    view->setAccessibilityFocused(true);
    EXPECT_EQ(window->firstResponder(), window.get());
}

TEST(NSAccessibility, LosingAFocusThatItDoesNotHaveChangesNothing)
{
    const auto view = make<FocusView>(NSMakeRect(0, 0, 10, 10));
    const auto other = make<FocusView>(NSMakeRect(20, 0, 10, 10));
    const auto window = windowWith(view);
    window->contentView()->addSubview(other);
    other->setAccessibilityFocused(true);
    view->setAccessibilityFocused(false);
    EXPECT_EQ(window->firstResponder(), other.get());
}

TEST(NSAccessibility, NotificationsOfWhatIsInNoWindowAreIgnored)
{
    NSAccessibilityPostNotification(nullptr, NSAccessibilityValueChangedNotification);
    const auto object = make<NSObject>();
    NSAccessibilityPostNotification(object, NSAccessibilityValueChangedNotification);
    const auto view = make<NSView>();
    NSAccessibilityPostNotification(view, NSAccessibilityValueChangedNotification);
    const auto window = windowWith(view);
    NSAccessibilityPostNotification(view, "AXUnknown");
}

} // namespace
