#include <AppKit/NSTrackingArea.h>

#include "Foundation/testing/ManualClock.h"
#include "RecordingView.h"

#include <AppKit/NSWindow.h>
#include <gtest/gtest.h>

namespace {

constexpr NSTrackingAreaOptions kEnterAndExit = NSTrackingMouseEnteredAndExited | NSTrackingActiveAlways;

class NSTrackingAreas : public testing::Test {
protected:
    Log log; // outlives the views, which log that they leave the window
    RetainPtr<NSWindow> window = make<NSWindow>(
        NSMakeRect(0, 0, 100, 100), NSWindowStyleMaskBorderless, NSBackingStoreBuffered, false);

    RetainPtr<RecordingView> addView(const char* name, NSRect frame, NSView* superview = nullptr)
    {
        auto view = make<RecordingView>(frame, name, log);
        (superview ? superview : window->contentView())->addSubview(view);
        log.clear();
        return view;
    }
    RetainPtr<NSTrackingArea> track(
        NSView* view, NSRect rect, NSTrackingAreaOptions options = kEnterAndExit) const
    {
        auto area = make<NSTrackingArea>(rect, options, view);
        view->addTrackingArea(area);
        return area;
    }
    void send(NSEventType type, CGFloat x, CGFloat y) const
    {
        const auto event = NSEvent::mouseEventWithType(type, NSMakePoint(x, y), NSEventModifierFlagShift,
            12.5, window->windowNumber(), nullptr, 0, type == NSEventTypeMouseMoved ? 0 : 1, 1);
        window->sendEvent(event);
    }
    void moveTo(CGFloat x, CGFloat y) const { send(NSEventTypeMouseMoved, x, y); }
    void leave() const
    {
        const auto event = NSEvent::enterExitEventWithType(
            NSEventTypeMouseExited, NSMakePoint(-5, 50), 0, 0, window->windowNumber(), nullptr);
        window->sendEvent(event);
    }
};

TEST(NSTrackingArea, ReportsItsParametersAndHoldsItsOwnerWeakly)
{
    auto owner = make<NSView>();
    const auto info = make<NSView>();
    const auto area = make<NSTrackingArea>(NSMakeRect(10, 20, -5, -6), kEnterAndExit, owner, info);
    EXPECT_EQ(describe(area->rect()), "5 14 5 6");
    EXPECT_EQ(area->options(), 0x81U);
    EXPECT_EQ(area->owner(), owner);
    EXPECT_EQ(area->userInfo(), info);
    owner = nullptr;
    EXPECT_EQ(area->owner(), nullptr);
}

TEST(NSTrackingArea, ViewsListTheirAreas)
{
    const auto view = make<NSView>();
    EXPECT_TRUE(view->trackingAreas().empty());
    const auto first = make<NSTrackingArea>(NSZeroRect, kEnterAndExit, view);
    const auto second = make<NSTrackingArea>(NSZeroRect, kEnterAndExit, view);
    view->removeTrackingArea(first);
    view->addTrackingArea(first);
    view->addTrackingArea(second);
    view->addTrackingArea(nullptr);
    EXPECT_EQ(view->trackingAreas(), (std::vector<RetainPtr<NSTrackingArea>>{first, second}));
    view->removeTrackingArea(first);
    view->removeTrackingArea(nullptr);
    EXPECT_EQ(view->trackingAreas(), std::vector<RetainPtr<NSTrackingArea>>{second});
}

TEST_F(NSTrackingAreas, ReportThePointersEntryAndExitOnce)
{
    const auto view = addView("view", NSMakeRect(10, 10, 60, 60));
    track(view, NSMakeRect(0, 0, 30, 30));
    moveTo(50, 20);
    moveTo(39, 20);
    moveTo(20, 30);
    moveTo(41, 20);
    moveTo(60, 60);
    EXPECT_EQ(log, (Log{"view entered 29 10 x0", "view exited 31 10 x0"}));
}

TEST_F(NSTrackingAreas, EventsNameTheAreaAndWhatTheMoveSaid)
{
    class Owner : public NSResponder {
    public:
        RetainPtr<NSEvent> entered;
        void mouseEntered(NSEvent* event) override { entered = event; }
    };
    const auto view = addView("view", NSMakeRect(10, 10, 60, 60));
    const auto owner = make<Owner>();
    const auto area = make<NSTrackingArea>(NSMakeRect(0, 0, 60, 60), kEnterAndExit, owner);
    view->addTrackingArea(area);
    moveTo(30, 40);
    ASSERT_TRUE(owner->entered);
    EXPECT_EQ(owner->entered->trackingArea(), area);
    EXPECT_EQ(owner->entered->type(), NSEventTypeMouseEntered);
    EXPECT_EQ(owner->entered->window(), window);
    EXPECT_EQ(describe(owner->entered->locationInWindow()), "30 40");
    EXPECT_EQ(owner->entered->modifierFlags(), NSEventModifierFlagShift);
    EXPECT_EQ(owner->entered->timestamp(), 12.5);
    EXPECT_EQ(log, Log{});
}

TEST_F(NSTrackingAreas, AreInTheCoordinatesOfFlippedAndScrolledViews)
{
    const auto outer = addView("outer", NSMakeRect(10, 10, 80, 80));
    outer->setBoundsOrigin(NSMakePoint(0, 100));
    const auto flipped = make<RecordingView>(NSMakeRect(10, 110, 40, 40), "flipped", log);
    flipped->flipped = true;
    outer->addSubview(flipped);
    log.clear();
    track(flipped, NSMakeRect(0, 0, 40, 10)); // the top: 50 to 60 in the window
    moveTo(30, 49);
    moveTo(30, 51);
    moveTo(30, 61);
    EXPECT_EQ(log, (Log{"flipped entered 10 9 x0", "flipped exited 10 -1 x0"}));
}

TEST_F(NSTrackingAreas, AreClippedBySuperviewsButNotByViewsAbove)
{
    const auto outer = addView("outer", NSMakeRect(0, 0, 50, 50));
    const auto inner = addView("inner", NSMakeRect(20, 20, 60, 60), outer);
    track(inner, NSMakeRect(0, 0, 60, 60));
    addView("cover", NSMakeRect(0, 0, 40, 100));
    moveTo(60, 30);
    EXPECT_EQ(log, Log{});
    moveTo(30, 30);
    EXPECT_EQ(log, Log{"inner entered 10 10 x0"});
    outer->setHidden(true);
    moveTo(31, 30);
    EXPECT_EQ(log.back(), "inner exited 11 10 x0");
}

TEST_F(NSTrackingAreas, InTheVisibleRectFollowTheView)
{
    const auto view = addView("view", NSMakeRect(0, 0, 20, 20));
    track(view, NSZeroRect, kEnterAndExit | NSTrackingInVisibleRect);
    view->setFrame(NSMakeRect(0, 0, 50, 50));
    moveTo(49, 49);
    moveTo(51, 49);
    EXPECT_EQ(log, (Log{"view entered 49 49 x0", "view exited 51 49 x0"}));
}

TEST_F(NSTrackingAreas, AreEnteredSuperviewsFirstAndLeftSubviewsFirst)
{
    const auto outer = addView("outer", NSMakeRect(0, 0, 50, 50));
    const auto inner = addView("inner", NSMakeRect(0, 0, 50, 50), outer);
    track(inner, NSMakeRect(0, 0, 50, 50));
    track(outer, NSMakeRect(0, 0, 50, 50));
    moveTo(5, 5);
    leave();
    leave();
    EXPECT_EQ(log,
        (Log{"outer entered 5 5 x0", "inner entered 5 5 x0", "inner exited -5 50 x0",
            "outer exited -5 50 x0"}));
}

TEST_F(NSTrackingAreas, MovesAreReportedToAreasThatAskForThem)
{
    const auto view = addView("view", NSMakeRect(0, 0, 50, 50));
    track(view, NSMakeRect(0, 0, 20, 20), NSTrackingMouseMoved | NSTrackingActiveAlways);
    track(view, NSMakeRect(0, 0, 40, 40));
    moveTo(5, 5);
    moveTo(6, 5);
    moveTo(30, 5);
    EXPECT_EQ(log, (Log{"view entered 5 5 x0", "view moved 5 5 x0", "view moved 6 5 x0"}));
}

TEST_F(NSTrackingAreas, ReportNothingDuringADragUnlessEnabledForIt)
{
    const auto pressed = addView("pressed", NSMakeRect(0, 0, 20, 20));
    const auto plain = addView("plain", NSMakeRect(40, 0, 20, 20));
    const auto dropping = addView("dropping", NSMakeRect(60, 0, 20, 20));
    track(pressed, NSMakeRect(0, 0, 20, 20));
    track(plain, NSMakeRect(0, 0, 20, 20));
    track(dropping, NSMakeRect(0, 0, 20, 20), kEnterAndExit | NSTrackingEnabledDuringMouseDrag);
    send(NSEventTypeLeftMouseDown, 5, 5);
    send(NSEventTypeLeftMouseDragged, 45, 5);
    send(NSEventTypeLeftMouseDragged, 65, 5);
    send(NSEventTypeLeftMouseDragged, 45, 5);
    send(NSEventTypeLeftMouseUp, 45, 5);
    EXPECT_EQ(log,
        (Log{"pressed entered 5 5 x0", "pressed down 5 5 x1", "pressed dragged 45 5 x1",
            "dropping entered 5 5 x0", "pressed dragged 65 5 x1", "dropping exited -15 5 x0",
            "pressed dragged 45 5 x1", "pressed up 45 5 x1", "pressed exited 45 5 x0",
            "plain entered 5 5 x0"}));
}

TEST_F(NSTrackingAreas, AreUpdatedWhenTheViewsPlaceChanges)
{
    class Button : public RecordingView {
    public:
        using RecordingView::RecordingView;
        int updates = 0;
        void updateTrackingAreas() override
        {
            ++updates;
            if (_area)
                removeTrackingArea(_area);
            _area = make<NSTrackingArea>(bounds(), kEnterAndExit, this);
            addTrackingArea(_area);
        }

    private:
        RetainPtr<NSTrackingArea> _area;
    };
    const auto button = make<Button>(NSMakeRect(0, 0, 20, 20), "button", log);
    window->contentView()->addSubview(button);
    log.clear();
    EXPECT_EQ(button->updates, 0);
    moveTo(10, 10);
    moveTo(11, 10);
    EXPECT_EQ(button->updates, 1);
    button->setFrameSize(NSMakeSize(40, 40));
    moveTo(30, 30);
    button->setFrameOrigin(NSMakePoint(5, 5));
    button->setBoundsOrigin(NSMakePoint(1, 1));
    moveTo(31, 30);
    button->setBoundsSize(NSMakeSize(80, 80));
    moveTo(32, 30);
    EXPECT_EQ(button->updates, 4);
    // A new area of the same place is another one.
    EXPECT_EQ(log.front(), "button entered 10 10 x0");
}

TEST_F(NSTrackingAreas, OfViewsThatLeaveTheWindowOrAreRemovedJustEnd)
{
    const auto view = addView("view", NSMakeRect(0, 0, 20, 20));
    const auto area = track(view, NSMakeRect(0, 0, 20, 20));
    moveTo(5, 5);
    view->removeFromSuperview();
    log.clear();
    moveTo(50, 50);
    EXPECT_EQ(log, Log{});

    window->contentView()->addSubview(view);
    moveTo(5, 5);
    EXPECT_EQ(log.back(), "view entered 5 5 x0");
    view->removeTrackingArea(area);
    log.clear();
    moveTo(50, 50);
    EXPECT_EQ(log, Log{});
}

TEST_F(NSTrackingAreas, WhileFirstResponderFollowTheFirstResponder)
{
    const auto view = addView("view", NSMakeRect(0, 0, 20, 20));
    view->acceptsKeys = true;
    track(
        view, NSMakeRect(0, 0, 20, 20), NSTrackingMouseEnteredAndExited | NSTrackingActiveWhenFirstResponder);
    moveTo(5, 5);
    EXPECT_EQ(log, Log{});
    window->makeFirstResponder(view);
    log.clear();
    moveTo(6, 5);
    EXPECT_EQ(log, Log{"view entered 6 5 x0"});
}

TEST_F(NSTrackingAreas, WithoutAnActiveFlagOrAnOwnerReportNothing)
{
    const auto view = addView("view", NSMakeRect(0, 0, 20, 20));
    track(view, NSMakeRect(0, 0, 20, 20), NSTrackingMouseEnteredAndExited);
    track(view, NSMakeRect(0, 0, 20, 20), NSTrackingActiveAlways);
    view->addTrackingArea(make<NSTrackingArea>(NSMakeRect(0, 0, 20, 20), kEnterAndExit, nullptr));
    moveTo(5, 5);
    leave();
    EXPECT_EQ(log, Log{});
}

TEST_F(NSTrackingAreas, AfterTheWheelTheViewsThatScrolledUnderThePointerAreEntered)
{
    class Scroller : public NSView {
    public:
        using NSView::NSView;
        void scrollWheel(NSEvent* event) override
        {
            setBoundsOrigin(NSMakePoint(0, bounds().origin.y - event->scrollingDeltaY()));
        }
    };
    const auto scroller = make<Scroller>(NSMakeRect(0, 0, 100, 100));
    window->setContentView(scroller);
    const auto view = addView("view", NSMakeRect(0, 100, 20, 20));
    track(view, NSMakeRect(0, 0, 20, 20));
    const auto event =
        NSEvent::scrollWheelEventWithLocation(NSMakePoint(5, 50), 0, 0, window->windowNumber(), 0, -60, true);
    window->sendEvent(event);
    EXPECT_EQ(log, Log{"view entered 5 10 x0"});
}

TEST_F(NSTrackingAreas, ViewsThatMoveUnderAPointerAtRestAreEnteredAndLeft)
{
    ManualClock clock;
    const auto view = addView("view", NSMakeRect(0, 0, 20, 20));
    const auto root = RetainPtr<NSView>(window->contentView());
    track(view, NSMakeRect(0, 0, 20, 20));
    moveTo(50, 50);
    const auto afterATurn = [&](const char* change) {
        SCOPED_TRACE(change);
        EXPECT_EQ(log, Log{}); // not during the change, which may be one of several
        clock.advance(0);
        return std::exchange(log, {});
    };
    view->setFrameOrigin(NSMakePoint(45, 45));
    EXPECT_EQ(afterATurn("moved"), Log{"view entered 5 5 x0"});
    view->setHidden(true);
    EXPECT_EQ(afterATurn("hidden"), Log{"view exited 5 5 x0"});
    view->setHidden(false);
    EXPECT_EQ(afterATurn("shown"), Log{"view entered 5 5 x0"});
    root->setBoundsOrigin(NSMakePoint(100, 0));
    EXPECT_EQ(afterATurn("scrolled"), Log{"view exited 105 5 x0"});
    root->setBoundsOrigin(NSMakePoint(0, 0));
    clock.advance(0);
    log.clear();
    root->setBoundsSize(NSMakeSize(200, 200));
    EXPECT_EQ(afterATurn("scaled"), Log{"view exited 55 55 x0"});
    root->setBoundsSize(NSMakeSize(100, 100));
    clock.advance(0);
    log.clear();

    leave();
    log.clear();
    view->setFrameOrigin(NSMakePoint(44, 44));
    EXPECT_EQ(afterATurn("without the pointer"), Log{});
}

TEST_F(NSTrackingAreas, ViewsThatComeAndGoUnderAPointerAtRestAreNoticed)
{
    ManualClock clock;
    const auto below = addView("below", NSMakeRect(0, 0, 50, 50));
    track(below, NSMakeRect(0, 0, 50, 50));
    moveTo(5, 5);
    const auto above = make<RecordingView>(NSMakeRect(0, 0, 50, 50), "above", log);
    track(above, NSMakeRect(0, 0, 50, 50));
    window->contentView()->addSubview(above);
    log.clear();
    clock.advance(0);
    EXPECT_EQ(log, Log{"above entered 5 5 x0"});
    above->removeFromSuperview();
    above->addSubview(below); // and so out of the window
    log.clear();
    window->contentView()->addSubview(above);
    log.clear();
    clock.advance(0);
    EXPECT_EQ(log, (Log{"above entered 5 5 x0", "below entered 5 5 x0"}));
}

TEST_F(NSTrackingAreas, ManyChangesAreLookedAtOnce)
{
    class Counter : public NSView {
    public:
        int hitTests = 0;
        NSView* hitTest(NSPoint point) override
        {
            ++hitTests;
            return NSView::hitTest(point);
        }
    };
    ManualClock clock;
    const auto counter = make<Counter>();
    window->setContentView(counter);
    moveTo(50, 50);
    counter->hitTests = 0;
    for (int i = 1; i < 10; ++i)
        counter->setBoundsOrigin(NSMakePoint(i, 0));
    clock.advance(0);
    EXPECT_EQ(counter->hitTests, 1); // for the cursor
    counter->setBoundsOrigin(NSZeroPoint);
    clock.advance(0);
    EXPECT_EQ(counter->hitTests, 2);
}

TEST_F(NSTrackingAreas, ADestroyedWindowIsNotLookedAtAgain)
{
    ManualClock clock;
    const auto view = addView("view", NSMakeRect(0, 0, 20, 20));
    track(view, NSMakeRect(0, 0, 20, 20));
    moveTo(50, 50);
    view->setFrameOrigin(NSMakePoint(45, 45));
    window = nullptr;
    log.clear();
    clock.advance(0);
    EXPECT_EQ(log, Log{});
}

TEST_F(NSTrackingAreas, AHandlerMayRemoveViewsAndTheWindow)
{
    class Doomed : public RecordingView {
    public:
        using RecordingView::RecordingView;
        std::function<void()> onEntered;
        void mouseEntered(NSEvent*) override { onEntered(); }
    };
    const auto outer = make<Doomed>(NSMakeRect(0, 0, 50, 50), "outer", log);
    window->contentView()->addSubview(outer);
    const auto inner = addView("inner", NSMakeRect(0, 0, 50, 50), outer);
    track(outer, NSMakeRect(0, 0, 50, 50));
    track(inner, NSMakeRect(0, 0, 50, 50));
    outer->onEntered = [&] {
        inner->removeFromSuperview();
        log.clear();
    };
    moveTo(5, 5);
    EXPECT_EQ(log, Log{});

    leave();
    const WeakPtr<NSWindow> gone = window;
    outer->onEntered = [&] { window = nullptr; };
    NSWindow* const sender = window;
    const auto move = NSEvent::mouseEventWithType(
        NSEventTypeMouseMoved, NSMakePoint(5, 5), 0, 0, window->windowNumber(), nullptr, 0, 0, 0);
    sender->sendEvent(move);
    EXPECT_FALSE(gone.lock());
}

TEST_F(NSTrackingAreas, AnEventWithAnAreaGoesToItsOwner)
{
    const auto view = addView("view", NSMakeRect(0, 0, 20, 20));
    const auto area = track(view, NSZeroRect);
    for (const NSEventType type : {NSEventTypeMouseEntered, NSEventTypeMouseExited}) {
        const auto event =
            NSEvent::enterExitEventWithType(type, NSMakePoint(70, 80), 0, 0, window->windowNumber(), area);
        window->sendEvent(event);
    }
    EXPECT_EQ(log, (Log{"view entered 70 80 x0", "view exited 70 80 x0"}));
    EXPECT_FALSE(NSEvent::enterExitEventWithType(
        NSEventTypeLeftMouseDown, NSZeroPoint, 0, 0, window->windowNumber(), area));
}

} // namespace
