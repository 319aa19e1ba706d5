#include "RecordingView.h"

#include <AppKit/NSApplication.h>
#include <AppKit/NSWindow.h>
#include <Foundation/WeakPtr.h>
#include <gtest/gtest.h>

#include <cmath>

namespace {

constexpr NSWindowStyleMask ordinary = NSWindowStyleMaskTitled | NSWindowStyleMaskClosable;

RetainPtr<NSWindow> makeWindow(
    NSRect content = NSMakeRect(100, 200, 300, 150), NSWindowStyleMask style = ordinary)
{
    return make<NSWindow>(content, style, NSBackingStoreBuffered, false);
}

std::string contentOnScreen(const NSWindow& window)
{
    return describe(window.contentRectForFrameRect(window.frame()));
}

/// Logs its calls; can prevent closing.
class Listener : public NSWindowDelegate {
public:
    bool allows = true;
    Log log;
    std::function<void(NSWindow*)> onClose;

    bool windowShouldClose(NSWindow*) override
    {
        log.push_back("should");
        return allows;
    }
    void windowWillClose(NSWindow* window) override
    {
        log.push_back(window->isVisible() ? "will, on screen" : "will, off screen");
        if (onClose)
            onClose(window);
    }
};

class CountedListener : public NSObject, public Listener {
protected:
    ~CountedListener() override = default;
};

TEST(NSWindow, ANewWindowIsOffScreenWithAPlainView)
{
    const auto window = makeWindow();
    EXPECT_FALSE(window->isVisible());
    EXPECT_FALSE(window->isKeyWindow());
    EXPECT_EQ(window->styleMask(), ordinary);
    EXPECT_EQ(window->title().length(), 0U);
    EXPECT_EQ(window->backgroundColor(), nullptr);
    EXPECT_EQ(window->delegate(), nullptr);
    EXPECT_EQ(window->nextResponder(), nullptr);
    EXPECT_EQ(window->firstResponder(), window);
    EXPECT_EQ(describe(window->frame()), "100 200 300 150");
    ASSERT_NE(window->contentView(), nullptr);
    EXPECT_EQ(describe(window->contentView()->frame()), "0 0 300 150");
    EXPECT_EQ(window->contentView()->window(), window);
    EXPECT_EQ(window->contentView()->nextResponder(), window);
    EXPECT_EQ(window->contentView()->superview(), nullptr);
    EXPECT_EQ(window->backingScaleFactor(), 1);
}

TEST(NSWindow, FramesAreRoundedToWholePointsAndClamped)
{
    EXPECT_EQ(contentOnScreen(*makeWindow(NSMakeRect(1.4, 1.6, 10.5, 10.4))), "1 2 11 10");
    EXPECT_EQ(contentOnScreen(*makeWindow(NSMakeRect(NAN, -1e9, 0, -5))), "0 -1000000 1 1");
    EXPECT_EQ(contentOnScreen(*makeWindow(NSMakeRect(0, 0, INFINITY, NAN))), "0 0 10000 1");
}

TEST(NSWindow, TheContentViewFillsTheWindow)
{
    const auto window = makeWindow();
    const auto view = make<NSView>(NSMakeRect(5, 5, 5, 5));
    const auto old = RetainPtr<NSView>(window->contentView());
    window->setContentView(view);
    EXPECT_EQ(old->window(), nullptr);
    EXPECT_EQ(describe(view->frame()), "0 0 300 150");
    window->setContentSize(NSMakeSize(310, 170));
    EXPECT_EQ(describe(view->frame()), "0 0 310 170");
    window->setContentView(nullptr);
    EXPECT_EQ(window->contentView(), nullptr);
    EXPECT_EQ(view->window(), nullptr);
    window->setContentSize(NSMakeSize(100, 100));
}

TEST(NSWindow, ContentIsNeverSmallerThanItsMinimumSize)
{
    const auto window = makeWindow(NSMakeRect(100, 200, 300, 150));
    EXPECT_EQ(describe(window->contentMinSize()), "1 1");
    // Grows, with the top left corner in place.
    window->setContentMinSize(NSMakeSize(200.4, 180));
    EXPECT_EQ(describe(window->contentMinSize()), "200 180");
    EXPECT_EQ(contentOnScreen(*window), "100 170 300 180");
    EXPECT_EQ(describe(window->contentView()->frame().size), "300 180");
    window->setContentSize(NSMakeSize(50, 400));
    EXPECT_EQ(contentOnScreen(*window), "100 -50 200 400");
    window->setFrame(window->frameRectForContentRect(NSMakeRect(10, 20, 30, 40)), false);
    EXPECT_EQ(contentOnScreen(*window), "10 20 200 180");
    window->setContentMinSize(NSMakeSize(-5, NAN));
    EXPECT_EQ(describe(window->contentMinSize()), "1 1");
    EXPECT_EQ(contentOnScreen(*window), "10 20 200 180");
}

TEST(NSWindow, TheContentViewMayComeFromAnotherSuperviewOrWindow)
{
    const auto first = makeWindow();
    const auto second = makeWindow();
    const auto view = make<NSView>(NSMakeRect(5, 5, 5, 5));
    first->contentView()->addSubview(view);
    first->setContentView(view);
    EXPECT_EQ(view->superview(), nullptr);
    EXPECT_EQ(view->window(), first);
    second->setContentView(view);
    EXPECT_EQ(first->contentView(), nullptr);
    EXPECT_EQ(view->window(), second);
    second->setContentView(view);
    EXPECT_EQ(second->contentView(), view);
    view->removeFromSuperview();
    EXPECT_EQ(second->contentView(), nullptr);
    EXPECT_EQ(view->window(), nullptr);
}

TEST(NSWindow, SettingTheContentSizeKeepsTheTopLeftCorner)
{
    const auto window = makeWindow();
    window->setContentSize(NSMakeSize(400, 250));
    EXPECT_EQ(contentOnScreen(*window), "100 100 400 250");
    window->makeKeyAndOrderFront();
    window->setContentSize(NSMakeSize(300, 150));
    EXPECT_EQ(contentOnScreen(*window), "100 200 300 150");
}

TEST(NSWindow, TheFrameMovesTheContentWithIt)
{
    const auto window = makeWindow();
    window->makeKeyAndOrderFront();
    NSRect frame = window->frame();
    EXPECT_EQ(
        describe(window->frameRectForContentRect(window->contentRectForFrameRect(frame))), describe(frame));
    frame.origin.x += 10;
    frame.size.height += 20;
    window->setFrame(frame, true);
    EXPECT_EQ(describe(window->frame()), describe(frame));
    EXPECT_EQ(contentOnScreen(*window), "110 200 300 170");
    EXPECT_EQ(describe(window->contentView()->frame()), "0 0 300 170");
    window->setFrameOrigin(NSMakePoint(frame.origin.x - 10, frame.origin.y));
    EXPECT_EQ(contentOnScreen(*window), "100 200 300 170");
}

TEST(NSWindow, WindowCoordinatesStartAtTheContentsCorner)
{
    const auto window = makeWindow();
    EXPECT_EQ(describe(window->convertPointToScreen(NSMakePoint(1, 2))), "101 202");
    EXPECT_EQ(describe(window->convertPointFromScreen(NSMakePoint(101, 202))), "1 2");
    EXPECT_EQ(describe(window->convertRectToScreen(NSMakeRect(1, 2, 3, 4))), "101 202 3 4");
    EXPECT_EQ(describe(window->convertRectFromScreen(NSMakeRect(101, 202, 3, 4))), "1 2 3 4");
}

TEST(NSWindow, CenterLeavesAThirdOfTheFreeHeightAbove)
{
    const auto window = makeWindow(NSMakeRect(0, 0, 200, 200), NSWindowStyleMaskBorderless);
    window->center();
    const NSRect frame = window->frame();
    // The screen of the memory-only window system has 800 x 800 points.
    EXPECT_EQ(describe(frame), "300 400 200 200");
}

TEST(NSWindow, CenterLeavesTheUpperLeftCornerOfALargerWindowOnTheScreen)
{
    const auto wide = makeWindow(NSMakeRect(0, 0, 1000, 200), NSWindowStyleMaskBorderless);
    wide->center();
    EXPECT_EQ(describe(wide->frame()), "0 400 1000 200");
    const auto high = makeWindow(NSMakeRect(0, 0, 200, 1000), NSWindowStyleMaskBorderless);
    high->center();
    EXPECT_EQ(describe(high->frame()), "300 -200 200 1000");
}

TEST(NSWindow, IsVisibleUntilItIsOrderedOut)
{
    const auto window = makeWindow();
    window->orderFront();
    EXPECT_TRUE(window->isVisible());
    window->orderOut();
    EXPECT_FALSE(window->isVisible());
    window->orderOut();
    window->makeKeyAndOrderFront();
    EXPECT_TRUE(window->isVisible());
}

TEST(NSWindow, ClosingNotifiesTheDelegateFirst)
{
    const auto window = makeWindow();
    Listener listener;
    window->setDelegate(&listener);
    window->close();
    EXPECT_EQ(listener.log, Log{});
    window->makeKeyAndOrderFront();
    window->close();
    EXPECT_EQ(listener.log, Log{"will, on screen"});
    EXPECT_FALSE(window->isVisible());
    // It can be shown again.
    window->makeKeyAndOrderFront();
    EXPECT_TRUE(window->isVisible());
}

TEST(NSWindow, ADelegateMayPreventTheUserFromClosing)
{
    const auto window = makeWindow();
    Listener listener;
    window->setDelegate(&listener);
    window->makeKeyAndOrderFront();
    listener.allows = false;
    window->performClose();
    EXPECT_TRUE(window->isVisible());
    listener.allows = true;
    window->performClose();
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(listener.log, (Log{"should", "should", "will, on screen"}));
    window->performClose();
    EXPECT_EQ(listener.log.size(), 3U);
}

TEST(NSWindow, TheUserCannotCloseAWindowWithoutACloseButton)
{
    const auto window = makeWindow(NSMakeRect(0, 0, 10, 10), NSWindowStyleMaskTitled);
    window->makeKeyAndOrderFront();
    window->performClose();
    EXPECT_TRUE(window->isVisible());
    window->close();
    EXPECT_FALSE(window->isVisible());
}

TEST(NSWindow, ADelegateMayCloseHideOrReleaseTheWindow)
{
    auto window = makeWindow();
    Listener listener;
    window->setDelegate(&listener);
    listener.onClose = [](NSWindow* closing) { closing->close(); };
    window->makeKeyAndOrderFront();
    window->close();
    EXPECT_EQ(listener.log.size(), 1U);
    EXPECT_FALSE(window->isVisible());

    listener.onClose = [](NSWindow* closing) { closing->orderOut(); };
    window->makeKeyAndOrderFront();
    window->close();
    EXPECT_FALSE(window->isVisible());

    const WeakPtr<NSWindow> gone = window;
    listener.onClose = [&](NSWindow*) { window = nullptr; };
    window->makeKeyAndOrderFront();
    window->performClose();
    EXPECT_FALSE(gone.lock());
}

TEST(NSWindow, ADelegateThatIsAnObjectIsWeaklyReferenced)
{
    const auto window = makeWindow();
    auto listener = make<CountedListener>();
    window->setDelegate(listener);
    EXPECT_EQ(window->delegate(), listener);
    listener = nullptr;
    EXPECT_EQ(window->delegate(), nullptr);
    window->makeKeyAndOrderFront();
    window->performClose();
    EXPECT_FALSE(window->isVisible());
}

TEST(NSWindow, TheApplicationListsItsWindows)
{
    const auto count = NSApplication::sharedApplication()->windows().size();
    const auto first = makeWindow();
    {
        const auto second = makeWindow();
        EXPECT_GT(first->windowNumber(), 0);
        EXPECT_GT(second->windowNumber(), first->windowNumber());
        EXPECT_EQ(NSApp->windowWithWindowNumber(second->windowNumber()), second);
        ASSERT_EQ(NSApp->windows().size(), count + 2);
        EXPECT_EQ(NSApp->windows()[count], first);
    }
    EXPECT_EQ(NSApp->windows().size(), count + 1);
    EXPECT_EQ(NSApp->windowWithWindowNumber(first->windowNumber() + 1), nullptr);
    EXPECT_EQ(NSApp->windowWithWindowNumber(0), nullptr);
}

} // namespace
