#include "support/Describe.h"

#include <AppKit/NSEvent.h>
#include <AppKit/NSWindow.h>
#include <gtest/gtest.h>

namespace {

RetainPtr<NSEvent> mouse(NSEventType type, NSInteger windowNumber = 0)
{
    return NSEvent::mouseEventWithType(
        type, NSMakePoint(3, 4), NSEventModifierFlagShift, 12.5, windowNumber, nullptr, 7, 2, 0.5F);
}

TEST(NSEvent, AMouseEventReportsItsParameters)
{
    const auto event = mouse(NSEventTypeLeftMouseDown);
    EXPECT_EQ(event->type(), NSEventTypeLeftMouseDown);
    EXPECT_EQ(describe(event->locationInWindow()), "3 4");
    EXPECT_EQ(event->modifierFlags(), NSEventModifierFlagShift);
    EXPECT_EQ(event->timestamp(), 12.5);
    EXPECT_EQ(event->eventNumber(), 7);
    EXPECT_EQ(event->clickCount(), 2);
    EXPECT_EQ(event->pressure(), 0.5F);
    EXPECT_EQ(event->buttonNumber(), 0);
    EXPECT_EQ(event->window(), nullptr);
    EXPECT_EQ(event->windowNumber(), 0);
    EXPECT_TRUE(event->characters().isNull());
    EXPECT_FALSE(event->isARepeat());
}

TEST(NSEvent, TheTypeDeterminesTheButton)
{
    EXPECT_EQ(mouse(NSEventTypeRightMouseDragged)->buttonNumber(), 1);
    EXPECT_EQ(mouse(NSEventTypeOtherMouseUp)->buttonNumber(), 2);
}

TEST(NSEvent, FactoriesReturnNullForTypesOfAnotherKind)
{
    EXPECT_FALSE(mouse(NSEventTypeKeyDown));
    EXPECT_FALSE(mouse(static_cast<NSEventType>(99)));
    EXPECT_FALSE(
        NSEvent::keyEventWithType(NSEventTypeLeftMouseDown, NSZeroPoint, 0, 0, 0, nullptr, "a", "a", false));
}

TEST(NSEvent, AKeyEventReportsItsCharacters)
{
    const auto event = NSEvent::keyEventWithType(
        NSEventTypeKeyDown, NSZeroPoint, NSEventModifierFlagControl, 1, 0, nullptr, "\x01", "a", true);
    EXPECT_EQ(event->characters(), "\x01");
    EXPECT_EQ(event->charactersIgnoringModifiers(), "a");
    EXPECT_TRUE(event->isARepeat());
    EXPECT_EQ(event->clickCount(), 0);
}

TEST(NSEvent, AScrollWheelEventReportsItsDeltas)
{
    const auto event = NSEvent::scrollWheelEventWithLocation(
        NSMakePoint(3, 4), NSEventModifierFlagShift, 12.5, 0, 1.5, -2, true);
    EXPECT_EQ(event->type(), NSEventTypeScrollWheel);
    EXPECT_EQ(describe(event->locationInWindow()), "3 4");
    EXPECT_EQ(event->modifierFlags(), NSEventModifierFlagShift);
    EXPECT_EQ(event->timestamp(), 12.5);
    EXPECT_EQ(event->scrollingDeltaX(), 1.5);
    EXPECT_EQ(event->scrollingDeltaY(), -2);
    EXPECT_TRUE(event->hasPreciseScrollingDeltas());
    EXPECT_EQ(mouse(NSEventTypeLeftMouseDown)->scrollingDeltaY(), 0);
    EXPECT_FALSE(mouse(NSEventTypeLeftMouseDown)->hasPreciseScrollingDeltas());
}

TEST(NSEvent, TheWindowIsLookedUpByNumberAndNotRetained)
{
    auto window =
        make<NSWindow>(NSMakeRect(0, 0, 10, 10), NSWindowStyleMaskBorderless, NSBackingStoreBuffered, false);
    const NSInteger number = window->windowNumber();
    const auto event = mouse(NSEventTypeLeftMouseDown, number);
    EXPECT_EQ(event->window(), window);
    EXPECT_EQ(event->windowNumber(), number);
    EXPECT_EQ(mouse(NSEventTypeLeftMouseDown, number + 1000)->window(), nullptr);
    window = nullptr;
    EXPECT_EQ(event->window(), nullptr);
    EXPECT_EQ(event->windowNumber(), number);
}

TEST(NSEvent, DescriptionListsTheProperties)
{
    EXPECT_EQ(mouse(NSEventTypeLeftMouseDown)->description(),
        "NSEvent: type=1 loc=(3,4) time=12.500 flags=0x20000 win=0 clickCount=2 button=0 chars=\"(null)\"");
}

TEST(NSEvent, MasksAreOneBitForEachType)
{
    EXPECT_EQ(NSEventMaskLeftMouseDown, 2U);
    EXPECT_EQ(NSEventMaskOtherMouseDragged, 1U << 27);
}

} // namespace
