#include "Foundation/testing/ManualClock.h"
#include "RoundsView.h"
#include "support/Rendering.h"

#include <AppKit/NSWindow.h>

namespace {

/// One round takes 4 seconds.
class Rounds : public RoundsView {
public:
    explicit Rounds(bool isStill)
        : RoundsView(NSMakeRect(0, 0, 20, 20), {.secondsPerRound = 4, .stillProgress = 0.62}, isStill)
    {
    }
    using RoundsView::progress;
};

RetainPtr<NSWindow> windowWith(NSView* view)
{
    auto window =
        make<NSWindow>(NSMakeRect(0, 0, 20, 20), NSWindowStyleMaskTitled, NSBackingStoreBuffered, true);
    window->setContentView(view);
    return window;
}

} // namespace

TEST(RoundsView, AnimatesFromWhenItEntersAWindow)
{
    ManualClock clock;
    const auto rounds = make<Rounds>(false);
    EXPECT_EQ(rounds->progress(), 0.62);
    clock.advance(1);
    EXPECT_EQ(rounds->progress(), 0.62) << "in no window";

    const auto window = windowWith(rounds);
    takeDisplayMark(rounds);
    clock.advance(1);
    // As of the last sixtieth of a second.
    EXPECT_NEAR(rounds->progress(), 0.25, 1 / 60.0 / 4);
    EXPECT_TRUE(takeDisplayMark(rounds));
    clock.advance(4);
    EXPECT_NEAR(rounds->progress(), 0.25, 1 / 60.0 / 4) << "the next round";
}

TEST(RoundsView, StopsWhenItLeavesItsWindow)
{
    ManualClock clock;
    const auto rounds = make<Rounds>(false);
    const auto window = windowWith(rounds);
    clock.advance(1);
    window->setContentView(make<NSView>());
    const double progress = rounds->progress();
    takeDisplayMark(rounds);
    clock.advance(1);
    EXPECT_EQ(rounds->progress(), progress);
    EXPECT_FALSE(takeDisplayMark(rounds));
}

TEST(RoundsView, WithoutAnimationShowsAFixedProgress)
{
    ManualClock clock;
    const auto rounds = make<Rounds>(true);
    const auto window = windowWith(rounds);
    takeDisplayMark(rounds);
    clock.advance(1);
    EXPECT_EQ(rounds->progress(), 0.62);
    EXPECT_FALSE(takeDisplayMark(rounds));
}
