#include "Page.h"
#include "PageNamed.h"
#include "support/Describe.h"
#include "support/Rendering.h"

#include "Foundation/testing/ManualClock.h"

#include <AppKit/NSEvent.h>
#include <AppKit/NSWindow.h>
#include <KorvidAppKit/ZRSwitchControl.h>

#include <gtest/gtest.h>

namespace {

std::vector<ZRSwitchControl*> switchesOf(const NSView& page)
{
    std::vector<ZRSwitchControl*> switches;
    for (const auto& card : page.subviews()) {
        for (const auto& view : card->subviews())
            switches.push_back(dynamic_cast<ZRSwitchControl*>(view.get()));
    }
    return switches;
}

} // namespace

TEST(SwitchesPage, HasSwitchesOfAllKindsOnWholePointsWithoutOverlaps)
{
    const auto page = makePageNamed("switches");
    for (const NSSize size : {page->frame().size, NSMakeSize(900, 700), NSMakeSize(1400, 500)}) {
        page->setFrameSize(size);
        int on = 0, disabled = 0, proportional = 0;
        for (const ZRSwitchControl* control : switchesOf(*page)) {
            on += control->isOn();
            disabled += !control->isEnabled();
            proportional += control->viewHeightFontSizeCoefficient() > 0;
            EXPECT_TRUE(NSContainsRect(control->superview()->bounds(), control->frame()));
            EXPECT_EQ(describe(NSIntegralRect(control->frame())), describe(control->frame()));
            for (const auto& other : control->superview()->subviews())
                EXPECT_TRUE(other == control || !NSIntersectsRect(other->frame(), control->frame()));
        }
        EXPECT_EQ(on, 4);
        EXPECT_EQ(disabled, 2);
        EXPECT_EQ(proportional, 2);
    }
}

TEST(SwitchesPage, AClickOperatesEachSwitchAndRedrawsTheLamp)
{
    ManualClock clock;
    const auto page = makePageNamed("switches");
    const auto window =
        make<NSWindow>(page->frame(), NSWindowStyleMaskBorderless, NSBackingStoreBuffered, false);
    window->contentView()->addSubview(page);
    for (ZRSwitchControl* control : switchesOf(*page)) {
        const bool wasOn = control->isOn();
        const NSPoint middle = control->convertPointToView({10, 10}, nullptr);
        control->superview()->setNeedsDisplay(false);
        for (const NSEventType type : {NSEventTypeLeftMouseDown, NSEventTypeLeftMouseUp}) {
            const auto event =
                NSEvent::mouseEventWithType(type, middle, 0, 0, window->windowNumber(), nullptr, 0, 1, 1);
            window->sendEvent(event);
        }
        EXPECT_NE(control->isOn(), wasOn);
        EXPECT_EQ(takeDisplayMark(control->superview()), control->target() != nullptr);
    }
    clock.advance(1);
}
