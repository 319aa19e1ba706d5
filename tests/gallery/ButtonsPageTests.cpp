#include "Page.h"
#include "PageNamed.h"
#include "support/Describe.h"

#include <AppKit/NSBitmapImageRep.h>
#include <AppKit/NSButton.h>
#include <AppKit/NSEvent.h>
#include <AppKit/NSWindow.h>

#include <gtest/gtest.h>

namespace {

std::vector<NSButton*> buttonsOf(const NSView& page)
{
    std::vector<NSButton*> buttons;
    for (const auto& card : page.subviews()) {
        for (const auto& view : card->subviews()) {
            if (auto* const button = dynamic_cast<NSButton*>(view.get()))
                buttons.push_back(button);
        }
    }
    return buttons;
}

NSButton* buttonWithTitle(const NSView& page, const NSString& title)
{
    for (NSButton* button : buttonsOf(page)) {
        if (button->title() == title)
            return button;
    }
    return nullptr;
}

/// The pixels of a view.
std::vector<unsigned char> pixelsOf(NSView* view)
{
    const auto bitmap = view->bitmapImageRepForCachingDisplayInRect(view->bounds());
    view->cacheDisplayInRect(view->bounds(), bitmap);
    const unsigned char* const bytes = bitmap->bitmapData();
    return {bytes, bytes + bitmap->bytesPerRow() * bitmap->pixelsHigh()};
}

} // namespace

TEST(ButtonsPage, HasButtonsOfAllKindsOnWholePointsWithoutOverlaps)
{
    const auto page = makePageNamed("buttons");
    for (const NSSize size : {page->frame().size, NSMakeSize(900, 700), NSMakeSize(1400, 500)}) {
        SCOPED_TRACE(describe(size));
        page->setFrameSize(size);
        int on = 0, disabled = 0, forReturn = 0;
        for (const NSButton* button : buttonsOf(*page)) {
            on += button->state() == NSControlStateValueOn;
            disabled += !button->isEnabled();
            forReturn += button->keyEquivalent() == "\r";
            EXPECT_TRUE(NSContainsRect(button->superview()->bounds(), button->frame()));
            EXPECT_EQ(describe(NSIntegralRect(button->frame())), describe(button->frame()));
            for (const auto& other : button->superview()->subviews())
                EXPECT_TRUE(other == button || !NSIntersectsRect(other->frame(), button->frame()));
        }
        EXPECT_EQ(on, 3);
        EXPECT_EQ(disabled, 2);
        EXPECT_EQ(forReturn, 1);
    }
}

TEST(ButtonsPage, AClickOfEachEnabledButtonChangesItsCard)
{
    const auto page = makePageNamed("buttons");
    const auto window =
        make<NSWindow>(page->frame(), NSWindowStyleMaskBorderless, NSBackingStoreBuffered, false);
    window->contentView()->addSubview(page);
    for (NSButton* button : buttonsOf(*page)) {
        SCOPED_TRACE(button->title().UTF8String());
        const auto before = pixelsOf(button->superview());
        const NSPoint middle = button->convertPointToView({10, 10}, nullptr);
        for (const NSEventType type : {NSEventTypeLeftMouseDown, NSEventTypeLeftMouseUp}) {
            const auto event =
                NSEvent::mouseEventWithType(type, middle, 0, 0, window->windowNumber(), nullptr, 0, 1, 1);
            window->sendEvent(event);
        }
        EXPECT_EQ(pixelsOf(button->superview()) != before, button->isEnabled());
    }
}

TEST(ButtonsPage, TurningTheDialRedrawsNoneOfTheOtherCards)
{
    const auto page = makePageNamed("buttons");
    NSButton* const turn = buttonWithTitle(*page, "Turn");
    ASSERT_TRUE(turn);
    for (const auto& card : page->subviews())
        card->setNeedsDisplay(false);
    turn->performClick();
    for (const auto& card : page->subviews())
        EXPECT_FALSE(card->needsDisplay()); // the dial is a view of its own
    int marked = 0;
    for (const auto& view : turn->superview()->subviews())
        marked += view->needsDisplay() && !dynamic_cast<NSButton*>(view.get());
    EXPECT_EQ(marked, 1);
}
