#include "Foundation/testing/ManualClock.h"

#include <AppKit/NSControl.h>
#include <AppKit/NSEvent.h>
#include <AppKit/NSWindow.h>
#include <Foundation/NSTimer.h>
#include <gtest/gtest.h>

#include <functional>

// A control that is destroyed by what it does itself.

namespace {

/// A button that flashes: a press starts a timer, and a release sends the action.
class FlashingButton : public NSControl {
public:
    FlashingButton(NSRect frame, int& flashes, bool& isDestroyed)
        : NSControl(frame)
        , _flashes(flashes)
        , _isDestroyed(isDestroyed)
    {
    }

    void mouseDown(NSEvent*) override
    {
        _timer = NSTimer::scheduledTimerWithTimeInterval(
            0.25, this, selector<&FlashingButton::flash>, nullptr, true);
    }
    void mouseUp(NSEvent*) override
    {
        const RetainPtr<NSObject> target = this->target();
        _actionWasSent = sendAction(action(), target);
        setNeedsDisplay(true); // a control without a window, but still an object
    }

protected:
    ~FlashingButton() override { _isDestroyed = true; }

private:
    void flash(NSTimer* timer)
    {
        if (++_flashes < 3)
            return;
        timer->invalidate();
        _timer = nullptr;
        setNeedsDisplay(_actionWasSent);
    }

    int& _flashes;
    bool& _isDestroyed;
    RetainPtr<NSTimer> _timer;
    bool _actionWasSent = false;
};

class EventController : public NSObject {
public:
    std::function<void()> onPress;
    void pressed() { onPress(); }
};

class ControlEvents : public testing::Test {
protected:
    ManualClock clock;
    int flashes = 0;
    bool isDestroyed = false;
    RetainPtr<NSWindow> window = make<NSWindow>(
        NSMakeRect(0, 0, 100, 100), NSWindowStyleMaskBorderless, NSBackingStoreBuffered, false);
    RetainPtr<EventController> controller = make<EventController>();

    ControlEvents()
    {
        const auto button = make<FlashingButton>(NSMakeRect(0, 0, 50, 50), flashes, isDestroyed);
        button->setTarget(controller);
        button->setAction(selector<&EventController::pressed>);
        window->contentView()->addSubview(button);
    }
    void send(NSEventType type) const
    {
        const RetainPtr<NSWindow> sender = window;
        const auto event = NSEvent::mouseEventWithType(
            type, NSMakePoint(5, 5), 0, 0, window->windowNumber(), nullptr, 0, 1, 1);
        sender->sendEvent(event);
    }
    void removeButton() const
    {
        RetainPtr<NSView>(window->contentView()->subviews()[0])->removeFromSuperview();
    }
};

TEST_F(ControlEvents, ItsActionMayRemoveItWhileItsTimerRuns)
{
    controller->onPress = [&] { removeButton(); };
    send(NSEventTypeLeftMouseDown);
    send(NSEventTypeLeftMouseUp);
    EXPECT_TRUE(window->contentView()->subviews().empty());
    EXPECT_FALSE(isDestroyed); // its timer retains it
    clock.advance(0.5);
    EXPECT_FALSE(isDestroyed);
    clock.advance(0.25);
    EXPECT_TRUE(isDestroyed);
    clock.advance(5);
    EXPECT_EQ(flashes, 3);
}

TEST_F(ControlEvents, ItsActionMayReleaseItForGood)
{
    controller->onPress = [&] {
        removeButton();
        EXPECT_FALSE(isDestroyed); // the event is not over
    };
    send(NSEventTypeLeftMouseUp); // none was pressed
    EXPECT_FALSE(isDestroyed);
    send(NSEventTypeLeftMouseDown);
    clock.advance(1); // the timer ends
    send(NSEventTypeLeftMouseUp);
    EXPECT_TRUE(isDestroyed);
}

TEST_F(ControlEvents, ItsActionMayReleaseTheWindowAndTheTarget)
{
    controller->onPress = [&] {
        window = nullptr;
        controller = nullptr;
    };
    send(NSEventTypeLeftMouseDown);
    clock.advance(1);
    send(NSEventTypeLeftMouseUp);
    EXPECT_TRUE(isDestroyed);
    EXPECT_FALSE(window);
}

TEST_F(ControlEvents, ItsTimerMayRemoveIt)
{
    send(NSEventTypeLeftMouseDown);
    const auto remover =
        NSTimer::scheduledTimerWithTimeInterval(0.3, false, [&](NSTimer*) { removeButton(); });
    clock.advance(0.3);
    send(NSEventTypeLeftMouseUp); // to nobody: the pressed view has left the window
    EXPECT_FALSE(isDestroyed);
    clock.advance(0.45);
    EXPECT_TRUE(isDestroyed);
}

} // namespace
