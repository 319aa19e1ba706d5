#include "ScrollArea.h"
#include "support/Describe.h"
#include "support/Rendering.h"

#include <AppKit/NSEvent.h>
#include <AppKit/NSWindow.h>
#include <gtest/gtest.h>

namespace {

/// A content that is at least 100 points high, and 50 wide.
class Content : public ScrolledView {
public:
    NSSize sizeFor(NSSize visible) const override { return {50, std::max(100.0, visible.height)}; }

protected:
    ~Content() override = default;
};

/// An area of 60 x 40 points in a window.
class Scrolling : public testing::Test {
protected:
    Scrolling()
    {
        window->setContentView(area);
        area->setContent(content);
    }

    // The bars are above the content.
    ScrollBar* horizontal() const { return dynamic_cast<ScrollBar*>(area->subviews().end()[-2].get()); }
    ScrollBar* vertical() const { return dynamic_cast<ScrollBar*>(area->subviews().back().get()); }

    void sendMouse(NSEventType type, NSPoint point)
    {
        window->sendEvent(
            NSEvent::mouseEventWithType(type, point, 0, 0, window->windowNumber(), nullptr, 0, 1, 1).get());
    }
    void turnWheel(CGFloat x, CGFloat y, bool precise, NSEventModifierFlags flags = 0)
    {
        window->sendEvent(
            NSEvent::scrollWheelEventWithLocation({10, 10}, flags, 0, window->windowNumber(), x, y, precise)
                .get());
    }

    RetainPtr<NSWindow> window =
        make<NSWindow>(NSMakeRect(0, 0, 60, 40), NSWindowStyleMaskTitled, NSBackingStoreBuffered, true);
    RetainPtr<ScrollArea> area = make<ScrollArea>();
    RetainPtr<Content> content = make<Content>();
};

} // namespace

TEST(ScrollRange, LimitsOffsetsToTheContent)
{
    const ScrollRange range{0, 40, 100};
    EXPECT_EQ(range.maximum(), 60);
    EXPECT_EQ(range.clamped(-1), 0);
    EXPECT_EQ(range.clamped(30.4), 30);
    EXPECT_EQ(range.clamped(61), 60);
    EXPECT_EQ(range.clamped(NAN), 0);
    EXPECT_EQ((ScrollRange{0, 40, 30}).maximum(), 0);
}

TEST_F(Scrolling, ShowsTheTopOfAContentThatIsHigher)
{
    EXPECT_EQ(describe(content->frame()), "0 -60 60 100");
    EXPECT_EQ(describe(area->offset()), "0 0");
    EXPECT_TRUE(horizontal()->isHidden());
    EXPECT_FALSE(vertical()->isHidden());
}

TEST_F(Scrolling, StopsAtTheEndsOfTheContent)
{
    area->scrollTo({5, 25});
    EXPECT_EQ(describe(area->offset()), "0 25");
    EXPECT_EQ(describe(content->frame()), "0 -35 60 100");
    area->scrollTo({0, 1000});
    EXPECT_EQ(describe(content->frame()), "0 0 60 100");
    area->scrollTo({0, -3});
    EXPECT_EQ(describe(content->frame()), "0 -60 60 100");
}

TEST_F(Scrolling, LaysTheContentOutAgainWhenItIsResized)
{
    area->scrollTo({0, 60});
    window->setContentSize({30, 70});
    EXPECT_EQ(describe(content->frame()), "0 0 50 100");
    EXPECT_EQ(describe(area->offset()), "0 30") << "the end of the content stays visible";
    EXPECT_FALSE(horizontal()->isHidden());
    window->setContentSize({200, 300});
    EXPECT_EQ(describe(content->frame()), "0 0 200 300");
    EXPECT_TRUE(horizontal()->isHidden() && vertical()->isHidden());
}

TEST_F(Scrolling, ReplacesTheContentAndStartsAtItsTop)
{
    area->scrollTo({0, 60});
    const auto other = make<Content>();
    area->setContent(other);
    EXPECT_EQ(content->superview(), nullptr);
    EXPECT_EQ(describe(other->frame()), "0 -60 60 100");
    area->setContent(nullptr);
    EXPECT_EQ(area->content(), nullptr);
    EXPECT_TRUE(vertical()->isHidden());
}

TEST_F(Scrolling, MakesAPartOfTheContentVisible)
{
    area->scrollToVisible(NSMakeRect(0, 20, 10, 10)); // 70 to 80 from the top
    EXPECT_EQ(describe(area->offset()), "0 40");
    area->scrollToVisible(NSMakeRect(0, 30, 10, 10)); // is visible already
    EXPECT_EQ(describe(area->offset()), "0 40");
    area->scrollToVisible(NSMakeRect(0, 80, 10, 10));
    EXPECT_EQ(describe(area->offset()), "0 10");
}

TEST_F(Scrolling, FollowsKeys)
{
    EXPECT_TRUE(area->scrollByKey(NSDownArrowFunctionKey));
    EXPECT_EQ(area->offset().y, 40);
    area->scrollByKey(NSUpArrowFunctionKey);
    EXPECT_EQ(area->offset().y, 0);
    area->scrollByKey(NSEndFunctionKey);
    EXPECT_EQ(area->offset().y, 60);
    area->scrollByKey(NSPageUpFunctionKey);
    EXPECT_EQ(area->offset().y, 20);
    area->scrollByKey(NSPageDownFunctionKey);
    EXPECT_EQ(area->offset().y, 60);
    area->scrollByKey(NSHomeFunctionKey);
    EXPECT_EQ(area->offset().y, 0);
    EXPECT_FALSE(area->scrollByKey(u'x'));
}

TEST_F(Scrolling, PageKeysLeaveAStepOfTheLastPageVisible)
{
    class Tall : public ScrolledView {
    public:
        NSSize sizeFor(NSSize) const override { return {50, 1000}; }

    protected:
        ~Tall() override = default;
    };
    area->setContent(make<Tall>());
    window->setContentSize({60, 140});
    area->scrollByKey(NSPageDownFunctionKey);
    EXPECT_EQ(area->offset().y, 100);
}

TEST_F(Scrolling, FollowsTheWheelByLinesAndATouchPadByPoints)
{
    turnWheel(0, -1, false);
    EXPECT_EQ(area->offset().y, 40);
    turnWheel(0, 15, true);
    EXPECT_EQ(area->offset().y, 25);
    window->setContentSize({30, 40});
    turnWheel(-5, 0, true);
    EXPECT_EQ(describe(area->offset()), "5 25");
    EXPECT_EQ(horizontal()->range(), (ScrollRange{5, 30, 50}));
    EXPECT_EQ(vertical()->range(), (ScrollRange{25, 40, 100}));
    turnWheel(0, -1, false, NSEventModifierFlagShift);
    EXPECT_EQ(describe(area->offset()), "20 25") << "sideways with Shift, to the end";
}

TEST_F(Scrolling, BarShowsTheVisiblePartAndIsDragged)
{
    // The bar is 12 wide, its knob 6 wide and 3 from the ends: 24 of 34 points, its least length.
    EXPECT_EQ(describe(vertical()->frame()), "48 0 12 40");
    EXPECT_EQ(describe(vertical()->knob()), "3 13 6 24");
    sendMouse(NSEventTypeLeftMouseDown, {54, 30});
    sendMouse(NSEventTypeLeftMouseDragged, {54, 25}); // half of the 10 points that it moves in
    EXPECT_EQ(area->offset().y, 30);
    EXPECT_EQ(describe(vertical()->knob()), "3 8 6 24");
    sendMouse(NSEventTypeLeftMouseDragged, {54, -50});
    EXPECT_EQ(area->offset().y, 60);
    sendMouse(NSEventTypeLeftMouseUp, {54, -50});
    // Above the knob, a press scrolls back by what is visible.
    sendMouse(NSEventTypeLeftMouseDown, {54, 38});
    EXPECT_EQ(area->offset().y, 20);
    sendMouse(NSEventTypeLeftMouseDragged, {54, 10});
    EXPECT_EQ(area->offset().y, 20) << "the knob was not grabbed";
}

TEST_F(Scrolling, BarRedrawsOnlyWhenItsRangeChanges)
{
    takeDisplayMark(vertical());
    area->scrollTo({0, 0});
    EXPECT_FALSE(takeDisplayMark(vertical()));
    area->scrollTo({0, 1});
    EXPECT_TRUE(takeDisplayMark(vertical()));
}
