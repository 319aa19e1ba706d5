#include "PageNamed.h"
#include "support/Rendering.h"

#include <AppKit/NSButton.h>
#include <AppKit/NSClipView.h>
#include <AppKit/NSEvent.h>
#include <AppKit/NSWindow.h>

#include <gtest/gtest.h>

namespace {

/// The page of scrolling in a window.
class ScrollingPage : public testing::Test {
protected:
    ScrollingPage() { window->contentView()->addSubview(page); }

    NSView* card() const { return page->subviews().front(); }
    NSClipView* clip() const { return dynamic_cast<NSClipView*>(card()->subviews().front().get()); }
    NSButton* button(std::size_t i) const { return dynamic_cast<NSButton*>(card()->subviews()[1 + i].get()); }
    CGFloat scrolled() const { return clip()->bounds().origin.y; }
    /// How far the list can be scrolled.
    CGFloat farthest() const
    {
        return clip()->documentView()->frame().size.height - clip()->bounds().size.height;
    }

    void turnWheel(CGFloat lines) const
    {
        const auto event = NSEvent::scrollWheelEventWithLocation(
            clip()->convertPointToView({10, 10}, nullptr), 0, 0, window->windowNumber(), 0, lines, false);
        window->sendEvent(event);
    }

    RetainPtr<NSView> page = makePageNamed("scrolling");
    RetainPtr<NSWindow> window =
        make<NSWindow>(page->frame(), NSWindowStyleMaskBorderless, NSBackingStoreBuffered, false);
};

} // namespace

TEST_F(ScrollingPage, StartsAtTheTopOfAListThatIsLongerThanItsView)
{
    EXPECT_EQ(scrolled(), 0);
    EXPECT_EQ(clip()->documentView()->frame().size.height, 40 * 32);
    EXPECT_GT(farthest(), 500);
    EXPECT_EQ(NSMaxY(clip()->documentVisibleRect()), 40 * 32) << "y points upward in the list";
}

TEST_F(ScrollingPage, TheWheelScrollsTheListAndRedrawsTheMap)
{
    takeDisplayMark(card());
    turnWheel(-2);
    EXPECT_EQ(scrolled(), 32);
    EXPECT_TRUE(takeDisplayMark(card()));
}

TEST_F(ScrollingPage, TheButtonsScrollToTheStartARowAndTheEnd)
{
    button(2)->performClick(nullptr);
    EXPECT_EQ(scrolled(), farthest());
    takeDisplayMark(card());
    button(1)->performClick(nullptr);
    EXPECT_EQ(scrolled(), 19 * 32) << "upward, to the top of row 20";
    EXPECT_TRUE(takeDisplayMark(card()));
    button(0)->performClick(nullptr);
    EXPECT_EQ(scrolled(), 0);
    EXPECT_TRUE(takeDisplayMark(card()));
}

TEST_F(ScrollingPage, ADragInTheMapScrolls)
{
    // The map is below the buttons, down to the caption.
    const NSRect last = button(2)->frame();
    const NSRect map = NSMakeRect(
        NSMinX(last), NSMinY(clip()->frame()), last.size.width, NSMinY(last) - 12 - NSMinY(clip()->frame()));
    const auto send = [&](NSEventType type, NSPoint point) {
        const auto event = NSEvent::mouseEventWithType(
            type, card()->convertPointToView(point, nullptr), 0, 0, window->windowNumber(), nullptr, 0, 1, 1);
        window->sendEvent(event);
    };
    send(NSEventTypeLeftMouseDown, {NSMidX(map), NSMidY(map)});
    EXPECT_EQ(scrolled(), farthest() / 2) << "the middle is in the middle";
    send(NSEventTypeLeftMouseDragged, {NSMidX(map), NSMinY(map) - 40});
    EXPECT_EQ(scrolled(), farthest());
    send(NSEventTypeLeftMouseUp, {NSMidX(map), NSMinY(map) - 40});
    send(NSEventTypeLeftMouseDown, {NSMinX(map) - 1, NSMaxY(map) - 1});
    send(NSEventTypeLeftMouseDragged, {NSMidX(map), NSMaxY(map) - 1});
    EXPECT_EQ(scrolled(), farthest()) << "pressed beside it";
}
