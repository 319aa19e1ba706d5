#include "RecordingView.h"

#include <AppKit/NSWindow.h>
#include <gtest/gtest.h>

namespace {

class NSWindowEvents : public testing::Test {
protected:
    Log log; // outlives the views, which log that they leave the window
    RetainPtr<NSWindow> window = make<NSWindow>(
        NSMakeRect(0, 0, 100, 100), NSWindowStyleMaskBorderless, NSBackingStoreBuffered, false);

    RetainPtr<RecordingView> addView(const char* name, NSRect frame)
    {
        auto view = make<RecordingView>(frame, name, log);
        window->contentView()->addSubview(view);
        log.clear();
        return view;
    }
    void send(NSEventType type, CGFloat x, CGFloat y) const
    {
        window->sendEvent(NSEvent::mouseEventWithType(
            type, NSMakePoint(x, y), 0, 0, window->windowNumber(), nullptr, 0, 1, 1)
                              .get());
    }
    void scroll(CGFloat x, CGFloat y, CGFloat dx, CGFloat dy, bool isPrecise) const
    {
        window->sendEvent(NSEvent::scrollWheelEventWithLocation(
            NSMakePoint(x, y), 0, 0, window->windowNumber(), dx, dy, isPrecise)
                              .get());
    }
    void type(const char* characters) const
    {
        window->sendEvent(NSEvent::keyEventWithType(NSEventTypeKeyDown, NSZeroPoint, 0, 0,
            window->windowNumber(), nullptr, characters, characters, false)
                              .get());
    }
};

TEST_F(NSWindowEvents, APressGoesToTheTopmostViewUnderThePointer)
{
    addView("low", NSMakeRect(0, 0, 50, 50));
    addView("high", NSMakeRect(20, 20, 50, 50));
    send(NSEventTypeLeftMouseDown, 10, 10);
    send(NSEventTypeLeftMouseDown, 30, 30);
    EXPECT_EQ(log, (Log{"low down 10 10 x1", "high down 10 10 x1"}));
}

TEST_F(NSWindowEvents, DragsAndTheReleaseGoToThePressedView)
{
    addView("low", NSMakeRect(0, 0, 50, 50));
    addView("high", NSMakeRect(20, 20, 50, 50));
    send(NSEventTypeLeftMouseDown, 10, 10);
    send(NSEventTypeLeftMouseDragged, 30, 30);
    send(NSEventTypeLeftMouseDragged, -500, 999);
    send(NSEventTypeLeftMouseUp, 30, 30);
    send(NSEventTypeLeftMouseDragged, 30, 30);
    send(NSEventTypeLeftMouseUp, 30, 30);
    EXPECT_EQ(log,
        (Log{"low down 10 10 x1", "low dragged 30 30 x1", "low dragged -500 999 x1", "low up 30 30 x1"}));
}

TEST_F(NSWindowEvents, EachButtonIsTrackedSeparately)
{
    addView("left", NSMakeRect(0, 0, 50, 50));
    addView("right", NSMakeRect(50, 0, 50, 50));
    send(NSEventTypeLeftMouseDown, 10, 10);
    send(NSEventTypeRightMouseDown, 60, 10);
    send(NSEventTypeOtherMouseDown, 60, 10);
    send(NSEventTypeLeftMouseDragged, 60, 10);
    send(NSEventTypeRightMouseDragged, 10, 10);
    send(NSEventTypeOtherMouseDragged, 10, 10);
    send(NSEventTypeRightMouseUp, 10, 10);
    send(NSEventTypeOtherMouseUp, 10, 10);
    send(NSEventTypeLeftMouseUp, 60, 10);
    EXPECT_EQ(log,
        (Log{"left down 10 10 x1", "right right down 10 10 x1", "right other down 10 10 x1",
            "left dragged 60 10 x1", "right right dragged -40 10 x1", "right other dragged -40 10 x1",
            "right right up -40 10 x1", "right other up -40 10 x1", "left up 60 10 x1"}));
}

TEST_F(NSWindowEvents, UnhandledEventsPassToTheNextResponder)
{
    const auto parent = addView("parent", NSMakeRect(10, 10, 50, 50));
    parent->addSubview(make<NSView>(NSMakeRect(0, 0, 50, 50)));
    for (const NSEventType type :
        {NSEventTypeLeftMouseDown, NSEventTypeLeftMouseDragged, NSEventTypeLeftMouseUp,
            NSEventTypeRightMouseDown, NSEventTypeRightMouseDragged, NSEventTypeRightMouseUp,
            NSEventTypeOtherMouseDown, NSEventTypeOtherMouseDragged, NSEventTypeOtherMouseUp})
        send(type, 20, 20);
    EXPECT_EQ(log,
        (Log{"parent down 10 10 x1", "parent dragged 10 10 x1", "parent up 10 10 x1",
            "parent right down 10 10 x1", "parent right dragged 10 10 x1", "parent right up 10 10 x1",
            "parent other down 10 10 x1", "parent other dragged 10 10 x1", "parent other up 10 10 x1"}));
}

TEST_F(NSWindowEvents, TheWheelGoesToTheViewUnderThePointerAndUpTheResponderChain)
{
    const auto low = addView("low", NSMakeRect(0, 0, 50, 50));
    addView("high", NSMakeRect(20, 20, 50, 50));
    low->addSubview(make<NSView>(NSMakeRect(0, 0, 15, 15)));
    send(NSEventTypeLeftMouseDown, 30, 30);
    log.clear();
    scroll(10, 5, 0, -1.5, false);
    scroll(30, 30, 2, 3, true);
    scroll(90, 90, 2, 3, true);
    EXPECT_EQ(log, (Log{"low scrolls 0 -1.5 lines 10 5", "high scrolls 2 3 points 10 10"}));
}

TEST_F(NSWindowEvents, EventsWithoutAHandlerAreDropped)
{
    scroll(20, 20, 0, 1, false);
    send(NSEventTypeLeftMouseDown, 20, 20);
    send(NSEventTypeLeftMouseUp, 20, 20);
    send(NSEventTypeLeftMouseDown, 2000, 20);
    type("a");
    window->sendEvent(nullptr);
    window->setContentView(nullptr);
    send(NSEventTypeLeftMouseDown, 20, 20);
}

TEST_F(NSWindowEvents, AViewThatLeavesTheWindowIsNoLongerTracked)
{
    const auto view = addView("view", NSMakeRect(0, 0, 50, 50));
    send(NSEventTypeLeftMouseDown, 10, 10);
    view->removeFromSuperview();
    window->contentView()->addSubview(view);
    send(NSEventTypeLeftMouseUp, 10, 10);
    EXPECT_EQ(log, (Log{"view down 10 10 x1", "view leaves", "view enters"}));
}

TEST_F(NSWindowEvents, AViewMayDestroyItselfAndItsWindowWhileHandlingAnEvent)
{
    auto view = addView("view", NSMakeRect(0, 0, 50, 50));
    const WeakPtr<NSWindow> gone = window;
    RecordingView* const doomed = view.get();
    view = nullptr;
    doomed->onMouseDown = [&](NSEvent*) {
        doomed->removeFromSuperview();
        window = nullptr;
    };
    window->sendEvent(NSEvent::mouseEventWithType(
        NSEventTypeLeftMouseDown, NSMakePoint(10, 10), 0, 0, window->windowNumber(), nullptr, 0, 1, 1)
                          .get());
    EXPECT_FALSE(gone.lock());
}

// First responder.

TEST_F(NSWindowEvents, APressMakesAViewFirstResponderIfItAccepts)
{
    const auto deaf = addView("deaf", NSMakeRect(0, 0, 50, 50));
    const auto keen = addView("keen", NSMakeRect(50, 0, 50, 50));
    keen->acceptsKeys = true;
    send(NSEventTypeLeftMouseDown, 10, 10);
    EXPECT_EQ(window->firstResponder(), window);
    send(NSEventTypeRightMouseDown, 60, 10);
    EXPECT_EQ(window->firstResponder(), window);
    send(NSEventTypeLeftMouseDown, 60, 10);
    EXPECT_EQ(window->firstResponder(), keen);
    send(NSEventTypeLeftMouseDown, 60, 10);
    EXPECT_EQ(log,
        (Log{"deaf down 10 10 x1", "keen right down 10 10 x1", "keen becomes", "keen down 10 10 x1",
            "keen down 10 10 x1"}));
}

TEST_F(NSWindowEvents, KeysGoToTheFirstResponderAndUpTheResponderChain)
{
    const auto parent = addView("parent", NSMakeRect(0, 0, 50, 50));
    class Keen : public NSView {
        bool acceptsFirstResponder() const override { return true; }
    };
    const auto child = make<Keen>();
    parent->addSubview(child);
    EXPECT_TRUE(window->makeFirstResponder(child));
    type("a");
    window->sendEvent(NSEvent::keyEventWithType(
        NSEventTypeKeyUp, NSZeroPoint, 0, 0, window->windowNumber(), nullptr, "a", "a", false)
                          .get());
    EXPECT_EQ(log, (Log{"parent key a", "parent key up a"}));
}

TEST_F(NSWindowEvents, FirstRespondersMayRefuse)
{
    const auto a = addView("a", NSMakeRect(0, 0, 50, 50));
    const auto b = addView("b", NSMakeRect(50, 0, 50, 50));
    EXPECT_FALSE(window->makeFirstResponder(a));
    a->acceptsKeys = true;
    b->acceptsKeys = true;
    EXPECT_TRUE(window->makeFirstResponder(a));
    EXPECT_TRUE(window->makeFirstResponder(a));
    a->resigns = false;
    EXPECT_FALSE(window->makeFirstResponder(b));
    EXPECT_FALSE(window->makeFirstResponder(nullptr));
    EXPECT_EQ(window->firstResponder(), a);
    a->resigns = true;
    b->becomes = false;
    EXPECT_FALSE(window->makeFirstResponder(b));
    EXPECT_EQ(window->firstResponder(), window);
    EXPECT_TRUE(window->makeFirstResponder(nullptr));
    EXPECT_TRUE(window->makeFirstResponder(window));
    EXPECT_EQ(log, (Log{"a becomes", "a resigns", "a resigns", "a resigns", "b becomes"}));
}

TEST_F(NSWindowEvents, NullMakesTheWindowFirstResponder)
{
    const auto view = addView("view", NSMakeRect(0, 0, 50, 50));
    view->acceptsKeys = true;
    window->makeFirstResponder(view);
    log.clear();
    EXPECT_TRUE(window->makeFirstResponder(nullptr));
    EXPECT_EQ(window->firstResponder(), window);
    window->makeFirstResponder(view);
    EXPECT_TRUE(window->makeFirstResponder(window));
    EXPECT_EQ(window->firstResponder(), window);
    EXPECT_EQ(log, (Log{"view resigns", "view becomes", "view resigns"}));
}

TEST_F(NSWindowEvents, AViewOutsideTheWindowCannotBecomeFirstResponder)
{
    const auto unrelated = make<RecordingView>(NSZeroRect, "unrelated", log);
    unrelated->acceptsKeys = true;
    EXPECT_FALSE(window->makeFirstResponder(unrelated));
}

TEST_F(NSWindowEvents, TheWindowReplacesAFirstResponderThatLeaves)
{
    auto view = addView("view", NSMakeRect(0, 0, 50, 50));
    view->acceptsKeys = true;
    window->makeFirstResponder(view);
    view->removeFromSuperview();
    EXPECT_EQ(window->firstResponder(), window);
    window->contentView()->addSubview(view);
    EXPECT_EQ(window->firstResponder(), window);
}

} // namespace
