#include "PageList.h"
#include "support/Describe.h"
#include "support/Rendering.h"

#include <AppKit/NSEvent.h>
#include <AppKit/NSWindow.h>
#include <gtest/gtest.h>

namespace {

/// A list of three rows in a window, and the rows that it reports.
class List : public testing::Test {
protected:
    List()
    {
        window->setContentView(list);
        window->makeFirstResponder(list);
        takeDisplayMark(list);
    }

    void sendMouse(NSEventType type, NSPoint point)
    {
        window->sendEvent(
            NSEvent::mouseEventWithType(type, point, 0, 0, window->windowNumber(), nullptr, 0, 1, 1).get());
    }
    void press(char16_t key)
    {
        const NSString characters(std::u16string(1, key));
        window->sendEvent(NSEvent::keyEventWithType(NSEventTypeKeyDown, NSZeroPoint, 0, 0,
            window->windowNumber(), nullptr, characters, characters, false)
                              .get());
    }
    NSPoint middleOf(std::size_t row) const
    {
        const NSRect rect = list->rectOfRow(row);
        return {NSMidX(rect), NSMidY(rect)};
    }
    Rendering drawn() const
    {
        Rendering rendering(200, 200);
        rendering.draw(list);
        return rendering;
    }

    std::vector<std::size_t> selections;
    RetainPtr<PageList> list = make<PageList>(
        std::vector<NSString>{"One", "Two", "Three"}, [this](std::size_t row) { selections.push_back(row); });
    RetainPtr<NSWindow> window =
        make<NSWindow>(NSMakeRect(0, 0, 200, 200), NSWindowStyleMaskTitled, NSBackingStoreBuffered, true);
};

using Rows = std::vector<std::size_t>;

} // namespace

TEST_F(List, HasItsRowsBelowEachOther)
{
    EXPECT_EQ(describe(list->rectOfRow(0)), "10 104 180 32");
    EXPECT_EQ(describe(list->rectOfRow(2)), "10 40 180 32");
    EXPECT_EQ(list->rowAt({20, 105}), 0u);
    EXPECT_EQ(list->rowAt({20, 103}), 1u);
    EXPECT_EQ(list->rowAt({5, 105}), std::nullopt);
    EXPECT_EQ(list->rowAt({20, 150}), std::nullopt);
    EXPECT_EQ(describe(list->sizeFor({10, 10})), "200 172");
}

TEST_F(List, SelectsTheRowThatIsClicked)
{
    EXPECT_EQ(list->selectedRow(), 0u);
    sendMouse(NSEventTypeLeftMouseDown, middleOf(2));
    EXPECT_EQ(list->selectedRow(), 2u);
    EXPECT_TRUE(takeDisplayMark(list));
    sendMouse(NSEventTypeLeftMouseDown, middleOf(2));
    sendMouse(NSEventTypeLeftMouseDown, {100, 180});
    EXPECT_EQ(selections, (Rows{2})) << "neither the same row nor a place without one";
    EXPECT_FALSE(takeDisplayMark(list));
}

TEST_F(List, FollowsKeysUpToItsEnds)
{
    press(NSUpArrowFunctionKey);
    EXPECT_EQ(selections, Rows{});
    press(NSDownArrowFunctionKey);
    press(NSDownArrowFunctionKey);
    press(NSDownArrowFunctionKey);
    EXPECT_EQ(selections, (Rows{1, 2}));
    press(NSUpArrowFunctionKey);
    press(NSHomeFunctionKey);
    press(NSEndFunctionKey);
    EXPECT_EQ(selections, (Rows{1, 2, 1, 0, 2}));
}

TEST_F(List, IsSelectedByTheProgramWithoutAReport)
{
    list->setSelectedRow(1);
    EXPECT_EQ(list->selectedRow(), 1u);
    list->setSelectedRow(3);
    EXPECT_EQ(list->selectedRow(), 1u);
    EXPECT_EQ(selections, Rows{});
}

TEST_F(List, MarksTheSelectedRowMoreStronglyWhileItIsFirstResponder)
{
    const NSRect row = list->rectOfRow(0);
    const auto groundOf = [&] { return drawn().at(NSMaxX(row) - 10, NSMidY(row)); };
    const auto focused = groundOf();
    window->makeFirstResponder(nullptr);
    EXPECT_TRUE(takeDisplayMark(list));
    const auto selected = groundOf();
    list->setSelectedRow(1);
    const auto plain = groundOf();
    EXPECT_NE(focused, selected);
    EXPECT_NE(selected, plain);
    EXPECT_NE(focused, plain);
}

TEST_F(List, HighlightsTheRowUnderThePointer)
{
    const NSRect row = list->rectOfRow(1);
    const auto groundOf = [&] { return drawn().at(NSMaxX(row) - 10, NSMidY(row)); };
    const auto plain = groundOf();
    sendMouse(NSEventTypeMouseMoved, middleOf(1));
    EXPECT_EQ(list->hoveredRow(), 1u);
    EXPECT_TRUE(takeDisplayMark(list));
    EXPECT_NE(groundOf(), plain);
    sendMouse(NSEventTypeMouseMoved, {20, NSMidY(row)});
    EXPECT_FALSE(takeDisplayMark(list)) << "still the same row";
    sendMouse(NSEventTypeMouseMoved, {100, 180});
    EXPECT_EQ(list->hoveredRow(), std::nullopt);
    EXPECT_EQ(groundOf(), plain);
}

TEST_F(List, SetsTitlesIndentedInTheirRows)
{
    const Rendering drawing = drawn();
    const auto hasInk = [&](CGFloat left, CGFloat right) {
        const NSRect row = list->rectOfRow(1);
        for (CGFloat x = left; x < right; ++x) {
            for (CGFloat y = NSMinY(row); y < NSMaxY(row); ++y) {
                if (drawing.at(x, y) != drawing.at(2, 2))
                    return true;
            }
        }
        return false;
    };
    EXPECT_FALSE(hasInk(0, 24));
    EXPECT_TRUE(hasInk(24, 26)) << "the T of Two";
    EXPECT_FALSE(hasInk(60, 198));
    EXPECT_TRUE(hasInk(199, 200)) << "the line beside the list";
}
