#include "RecordingView.h"

#include <AppKit/NSWindow.h>
#include <gtest/gtest.h>

namespace {

class KeyLoop : public testing::Test {
protected:
    Log log; // outlives the views, which log that they leave the window
    RetainPtr<NSWindow> window = make<NSWindow>(
        NSMakeRect(0, 0, 100, 100), NSWindowStyleMaskBorderless, NSBackingStoreBuffered, false);
    RetainPtr<RecordingView> a = view("a");
    RetainPtr<RecordingView> group = view("group");
    RetainPtr<RecordingView> b = view("b");
    RetainPtr<RecordingView> c = view("c");
    RetainPtr<RecordingView> d = view("d");

    /// The tree is: a, group (b, c), d. All but the group accept the focus.
    KeyLoop()
    {
        window->contentView()->addSubview(a);
        window->contentView()->addSubview(group);
        group->acceptsKeys = false;
        group->addSubview(b);
        group->addSubview(c);
        window->contentView()->addSubview(d);
    }
    RetainPtr<RecordingView> view(const char* name)
    {
        auto made = make<RecordingView>(NSMakeRect(0, 0, 10, 10), name, log);
        made->acceptsKeys = true;
        return made;
    }
    void press(const char* key, NSEventModifierFlags flags = 0) const
    {
        const auto event = NSEvent::keyEventWithType(
            NSEventTypeKeyDown, NSZeroPoint, flags, 0, window->windowNumber(), nullptr, key, key, false);
        // A recording view would handle the key.
        window->keyDown(event);
    }
    std::string focused() const
    {
        const NSResponder* const responder = window->firstResponder();
        const std::pair<const NSResponder*, const char*> names[] = {
            {a, "a"}, {b, "b"}, {c, "c"}, {d, "d"}, {window, "window"}};
        for (const auto& [candidate, name] : names) {
            if (candidate == responder)
                return name;
        }
        return "another";
    }
};

} // namespace

TEST_F(KeyLoop, TabMovesTheFocusThroughTheTreeAndRoundAgain)
{
    std::string order;
    for (int i = 0; i < 6; ++i) {
        press("\t");
        order += focused();
    }
    EXPECT_EQ(order, "abcdab");
}

TEST_F(KeyLoop, ShiftTabMovesItBackwards)
{
    std::string order;
    for (int i = 0; i < 4; ++i) {
        press("\x19", NSEventModifierFlagShift);
        order += focused();
    }
    press("\t", NSEventModifierFlagShift);
    EXPECT_EQ(order + focused(), "dcbad");
}

TEST_F(KeyLoop, LeavesOutHiddenViewsAndThoseThatDoNotAccept)
{
    group->setHidden(true);
    press("\t");
    press("\t");
    EXPECT_EQ(focused(), "d");
    group->setHidden(false);
    b->acceptsKeys = false;
    EXPECT_EQ(a->nextValidKeyView(), c);
    EXPECT_EQ(c->previousValidKeyView(), a);
    EXPECT_TRUE(c->canBecomeKeyView());
    EXPECT_FALSE(b->canBecomeKeyView());
    EXPECT_FALSE(view("loose")->canBecomeKeyView());
}

TEST_F(KeyLoop, AViewMaySetTheNextOne)
{
    EXPECT_EQ(a->nextKeyView(), nullptr);
    a->setNextKeyView(d);
    d->setNextKeyView(b);
    EXPECT_EQ(a->nextKeyView(), d);
    EXPECT_EQ(d->previousKeyView(), a);
    EXPECT_EQ(a->nextValidKeyView(), d);
    EXPECT_EQ(d->nextValidKeyView(), b);
    EXPECT_EQ(b->nextValidKeyView(), c);
    EXPECT_EQ(d->previousValidKeyView(), a);
    EXPECT_EQ(b->previousValidKeyView(), d);

    a->setNextKeyView(c);
    EXPECT_EQ(d->previousKeyView(), nullptr);
    EXPECT_EQ(d->previousValidKeyView(), c);
    a->setNextKeyView(nullptr);
    EXPECT_EQ(a->nextValidKeyView(), b);
    EXPECT_EQ(c->previousKeyView(), nullptr);
}

TEST_F(KeyLoop, ANextViewThatIsGoneOrInNoWindowIsPassedOver)
{
    auto other = view("other");
    a->setNextKeyView(other);
    EXPECT_EQ(a->nextValidKeyView(), b);
    other = nullptr;
    EXPECT_EQ(a->nextKeyView(), nullptr);
    EXPECT_EQ(a->nextValidKeyView(), b);
}

TEST_F(KeyLoop, ACircleWithoutAnotherViewEnds)
{
    b->acceptsKeys = false;
    c->acceptsKeys = false;
    a->setNextKeyView(b);
    b->setNextKeyView(c);
    c->setNextKeyView(b);
    EXPECT_EQ(a->nextValidKeyView(), nullptr);
    EXPECT_EQ(view("alone")->nextValidKeyView(), nullptr);
    EXPECT_EQ(view("alone")->previousValidKeyView(), nullptr);
    window->makeFirstResponder(a);
    press("\t");
    EXPECT_EQ(focused(), "a");
}

TEST_F(KeyLoop, TabWithControlOptionOrCommandDoesNotMoveTheFocus)
{
    for (const NSEventModifierFlags flag :
        {NSEventModifierFlagControl, NSEventModifierFlagOption, NSEventModifierFlagCommand})
        press("\t", flag);
    press("x");
    EXPECT_EQ(focused(), "window");
}

TEST_F(KeyLoop, TabBeginsAtTheInitialFirstResponder)
{
    window->setInitialFirstResponder(c);
    EXPECT_EQ(window->initialFirstResponder(), c);
    EXPECT_EQ(focused(), "window");
    press("\t");
    EXPECT_EQ(focused(), "c");
}

TEST_F(KeyLoop, ShowingTheWindowFocusesTheInitialFirstResponderOnce)
{
    window->setInitialFirstResponder(c);
    window->orderFront();
    EXPECT_EQ(focused(), "c");
    window->makeFirstResponder(nullptr);
    window->orderOut();
    window->makeKeyAndOrderFront();
    EXPECT_EQ(focused(), "window");
}

TEST_F(KeyLoop, AFocusThatTheProgramSetBeforeShowingStays)
{
    window->setInitialFirstResponder(c);
    window->makeFirstResponder(b);
    window->makeKeyAndOrderFront();
    EXPECT_EQ(focused(), "b");
}

TEST_F(KeyLoop, AContentViewAloneIsFocusedFromBothSides)
{
    const auto root = view("a");
    window->setContentView(root);
    press("\t");
    EXPECT_EQ(window->firstResponder(), root);
    window->makeFirstResponder(nullptr);
    press("\x19");
    EXPECT_EQ(window->firstResponder(), root);
    window->makeFirstResponder(nullptr);
    window->setContentView(nullptr);
    press("\t");
    press("\x19");
    EXPECT_EQ(window->firstResponder(), window);
}
