#include "Foundation/testing/ManualClock.h"
#include "support/Describe.h"

#include <AppKit/NSScreen.h>
#include <AppKit/NSWindow.h>
#include <gtest/gtest.h>

namespace {

/// A borderless window of 200 x 100 at (100, 300), on screen.
RetainPtr<NSWindow> shownWindow()
{
    auto window = make<NSWindow>(
        NSMakeRect(100, 300, 200, 100), NSWindowStyleMaskBorderless, NSBackingStoreBuffered, false);
    window->makeKeyAndOrderFront();
    return window;
}

/// The window's frame after each of `count` frames of 1/60 second.
std::vector<std::string> framesOf(const NSWindow& window, ManualClock& clock, int count)
{
    std::vector<std::string> frames;
    for (int i = 0; i < count; ++i) {
        clock.advance(1 / 60.0);
        frames.push_back(describe(window.frame()));
    }
    return frames;
}

TEST(NSWindowAnimation, TheFrameMovesSlowlyAtFirstAndAtTheEnd)
{
    ManualClock clock;
    const auto window = shownWindow();
    // 150 points in 0.2 seconds, which are 12 frames.
    window->setFrame(NSMakeRect(100, 300, 350, 100), true, true);
    EXPECT_EQ(describe(window->frame()), "100 300 200 100");
    const auto frames = framesOf(*window, clock, 12);
    // 150 * (3 t^2 - 2 t^3) for t in twelfths.
    const std::vector<std::string> expected{"100 300 203 100", "100 300 211 100", "100 300 223 100",
        "100 300 239 100", "100 300 256 100", "100 300 275 100", "100 300 294 100", "100 300 311 100",
        "100 300 327 100", "100 300 339 100", "100 300 347 100", "100 300 350 100"};
    EXPECT_EQ(frames, expected);
    EXPECT_EQ(framesOf(*window, clock, 2), (std::vector<std::string>(2, "100 300 350 100")));
}

TEST(NSWindowAnimation, TheEdgeThatMovesFarthestSetsTheTime)
{
    const auto window = shownWindow();
    EXPECT_DOUBLE_EQ(window->animationResizeTime(NSMakeRect(100, 300, 200, 100)), 0);
    EXPECT_DOUBLE_EQ(window->animationResizeTime(NSMakeRect(100, 300, 275, 100)), 0.1);
    EXPECT_DOUBLE_EQ(window->animationResizeTime(NSMakeRect(400, 300, 200, 100)), 0.4);
    EXPECT_DOUBLE_EQ(window->animationResizeTime(NSMakeRect(100, 150, 200, 100)), 0.2);
    EXPECT_DOUBLE_EQ(window->animationResizeTime(NSMakeRect(100, 300, 200, 175)), 0.1);
}

TEST(NSWindowAnimation, WithoutItTheFrameIsSetAtOnce)
{
    ManualClock clock;
    const auto window = shownWindow();
    window->setFrame(NSMakeRect(100, 300, 350, 100), true, false);
    EXPECT_EQ(describe(window->frame()), "100 300 350 100");
    // And in a window that is not on screen.
    window->orderOut();
    window->setFrame(NSMakeRect(100, 300, 500, 100), true, true);
    EXPECT_EQ(describe(window->frame()), "100 300 500 100");
}

TEST(NSWindowAnimation, AnotherFrameEndsIt)
{
    ManualClock clock;
    const auto window = shownWindow();
    window->setFrame(NSMakeRect(100, 300, 350, 100), false, true);
    clock.advance(0.101);
    EXPECT_EQ(describe(window->frame()), "100 300 275 100");
    window->setFrame(NSMakeRect(100, 300, 50, 50), false);
    clock.advance(1);
    EXPECT_EQ(describe(window->frame()), "100 300 50 50");
    // Also an animated one, which begins where the window is.
    window->setFrame(NSMakeRect(100, 300, 200, 50), false, true);
    clock.advance(0.101);
    window->setFrame(NSMakeRect(100, 300, 125, 200), false, true);
    EXPECT_EQ(describe(window->frame()), "100 300 125 50");
    clock.advance(0.21);
    EXPECT_EQ(describe(window->frame()), "100 300 125 200");
}

TEST(NSWindowAnimation, AWindowThatLeavesTheScreenHasItsNewFrame)
{
    ManualClock clock;
    const auto window = shownWindow();
    window->setFrame(NSMakeRect(100, 300, 350, 100), false, true);
    window->orderOut();
    clock.advance(1 / 60.0);
    EXPECT_EQ(describe(window->frame()), "100 300 350 100");
}

TEST(NSWindowAnimation, ADestroyedWindowHasNone)
{
    ManualClock clock;
    auto window = shownWindow();
    window->setFrame(NSMakeRect(100, 300, 350, 100), false, true);
    window = nullptr;
    clock.advance(1);
}

TEST(NSWindowAnimation, TheTimeMayBeOverridden)
{
    class Slow : public NSWindow {
    public:
        using NSWindow::NSWindow;
        NSTimeInterval animationResizeTime(NSRect) const override { return 1; }

    protected:
        ~Slow() override = default;
    };
    ManualClock clock;
    const auto window = make<Slow>(
        NSMakeRect(100, 300, 200, 100), NSWindowStyleMaskBorderless, NSBackingStoreBuffered, false);
    window->makeKeyAndOrderFront();
    window->setFrame(NSMakeRect(100, 300, 210, 100), false, true);
    clock.advance(0.501);
    EXPECT_EQ(describe(window->frame()), "100 300 205 100");
}

TEST(NSWindowBacking, ConversionsScale)
{
    const auto window = shownWindow();
    const CGFloat scale = window->backingScaleFactor();
    EXPECT_EQ(describe(window->convertRectToBacking(NSMakeRect(1, 2, 3, 4))),
        describe(NSMakeRect(scale, 2 * scale, 3 * scale, 4 * scale)));
    EXPECT_EQ(describe(window->convertRectFromBacking(NSMakeRect(scale, 0, scale, scale))), "1 0 1 1");
}

TEST(NSScreen, OneIsThereAndContainsItsVisibleFrame)
{
    const auto screens = NSScreen::screens();
    ASSERT_FALSE(screens.empty());
    const auto main = NSScreen::mainScreen();
    EXPECT_TRUE(main->isEqual(screens.front().get()));
    EXPECT_EQ(describe(main->frame().origin), "0 0");
    EXPECT_FALSE(NSIsEmptyRect(main->visibleFrame()));
    EXPECT_TRUE(NSContainsRect(main->frame(), main->visibleFrame()));
    EXPECT_EQ(describe(main->convertRectFromBacking(main->convertRectToBacking(NSMakeRect(1, 2, 3, 4)))),
        "1 2 3 4");
    EXPECT_FALSE(main->isEqual(nullptr));
}

TEST(NSScreen, AWindowIsOnTheScreenThatShowsIt)
{
    const auto window = shownWindow();
    EXPECT_TRUE(window->screen()->isEqual(NSScreen::mainScreen().get()));
    window->setFrameOrigin(NSMakePoint(-5000, -5000));
    EXPECT_FALSE(window->screen());
}

} // namespace
