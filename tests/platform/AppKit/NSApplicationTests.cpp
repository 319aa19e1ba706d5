#include "AppKit/testing/EffectiveAppearance.h"
#include "Foundation/testing/ManualClock.h"
#include "Foundation/testing/NSLogCapture.h"
#include "RecordingView.h"

#include <AppKit/NSAppearance.h>
#include <AppKit/NSApplication.h>
#include <AppKit/NSWindow.h>
#include <Foundation/NSDictionary.h>
#include <Foundation/NSException.h>
#include <Foundation/NSKeyValueObserving.h>
#include <Foundation/NSTimer.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <stdexcept>

namespace {

/// Runs `block` in the next turn of the event loop. Uses a timer, because the main queue runs no second block
/// within the first.
void later(const std::function<void()>& block)
{
    const auto timer = NSTimer::timerWithTimeInterval(0, false, [block](NSTimer*) { block(); });
    NSRunLoop::mainRunLoop()->addTimer(timer, NSRunLoopCommonModes);
}

TEST(NSApplicationDeathTest, IsCreatedOnFirstUse)
{
    EXPECT_EXIT(
        {
            if (NSApp)
                std::exit(1);
            NSApplication* application = NSApplication::sharedApplication();
            std::exit(application && application == NSApp && application == NSApplication::sharedApplication()
                    ? 0
                    : 2);
        },
        testing::ExitedWithCode(0), "");
}

TEST(NSApplicationDeathTest, AWindowCreatesTheApplication)
{
    EXPECT_EXIT(
        {
            const auto window =
                make<NSWindow>(NSZeroRect, NSWindowStyleMaskTitled, NSBackingStoreBuffered, false);
            std::exit(NSApp && NSApp->windows().size() == 1 ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST(NSApplicationDeathTest, ViewsAndAppearanceNeedNoApplication)
{
    EXPECT_EXIT(
        {
            const auto view = make<NSView>(NSMakeRect(0, 0, 10, 10));
            view->setNeedsDisplay(true);
            const bool isLight = view->effectiveAppearance()->name() == NSAppearanceNameAqua;
            const bool hasEvents =
                NSEvent::mouseEventWithType(NSEventTypeLeftMouseDown, NSZeroPoint, 0, 0, 5, nullptr, 0, 1, 1)
                != nullptr;
            std::exit(!NSApp && isLight && hasEvents ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST(NSApplicationDeathTest, TerminateEndsNestedAndLaterRuns)
{
    EXPECT_EXIT(
        {
            NSApplication* application = NSApplication::sharedApplication();
            const auto window = make<NSWindow>(
                NSMakeRect(0, 0, 10, 10), NSWindowStyleMaskTitled, NSBackingStoreBuffered, false);
            window->makeKeyAndOrderFront();
            later([&] {
                // Terminating in a nested loop ends all loops.
                later([&] { application->terminate(); });
                application->run();
                if (application->isRunning())
                    std::exit(1);
            });
            application->run();
            application->run();
            std::exit(window->isVisible() ? 0 : 2); // terminating does not close windows
        },
        testing::ExitedWithCode(0), "");
}

TEST(NSApplicationDeathTest, RunReturnsImmediatelyAfterTerminate)
{
    EXPECT_EXIT(
        {
            NSApplication::sharedApplication()->terminate();
            NSApp->run();
            std::exit(0);
        },
        testing::ExitedWithCode(0), "");
}

TEST(NSApplication, RunsUntilItIsStopped)
{
    NSApplication* application = NSApplication::sharedApplication();
    EXPECT_FALSE(application->isRunning());
    Log log;
    later([&] {
        log.emplace_back(application->isRunning() ? "running" : "not running");
        application->stop();
        log.emplace_back(application->isRunning() ? "running" : "not running");
    });
    application->run();
    EXPECT_EQ(log, (Log{"running", "not running"}));
    // It can run and be stopped again.
    later([&] { application->stop(); });
    application->run();
    application->stop();
    EXPECT_FALSE(application->isRunning());
}

TEST(NSApplication, StopEndsTheInnermostLoop)
{
    NSApplication* application = NSApplication::sharedApplication();
    Log log;
    later([&] {
        later([&] { application->stop(); });
        application->run();
        log.emplace_back(application->isRunning() ? "outer runs" : "outer stopped");
        application->stop();
    });
    application->run();
    EXPECT_EQ(log, Log{"outer runs"});
}

// Appearance.

/// Counts notifications about the effective appearance.
class AppearanceObserver : public NSObject {
public:
    Log log;

    void observeValueForKeyPath(NSString keyPath, NSObject* object, NSDictionary* change, void*) override
    {
        EXPECT_EQ(object, NSApp);
        const auto* now = dynamic_cast<NSAppearance*>(change->objectForKey(NSKeyValueChangeNewKey));
        log.push_back(keyPath.UTF8String() + " " + (now ? now->name().UTF8String() : "none"));
    }

protected:
    ~AppearanceObserver() override = default;
};

class NSApplicationAppearance : public testing::Test {
protected:
    NSApplicationAppearance()
    {
        application->setAppearance(nullptr);
        application->addObserver(observer, "effectiveAppearance", NSKeyValueObservingOptionNew);
    }
    ~NSApplicationAppearance() override
    {
        application->removeObserver(observer, "effectiveAppearance");
        application->setAppearance(nullptr);
    }

    static RetainPtr<NSAppearance> named(const char* name) { return NSAppearance::appearanceNamed(name); }

    NSApplication* application = NSApplication::sharedApplication();
    RetainPtr<AppearanceObserver> observer = make<AppearanceObserver>();
};

TEST_F(NSApplicationAppearance, ObserversAreNotifiedOfChangesOnly)
{
    ASSERT_EQ(application->effectiveAppearance()->name(), NSAppearanceNameAqua);
    application->setAppearance(named(NSAppearanceNameAqua));
    EXPECT_EQ(observer->log, Log{});
    application->setAppearance(named(NSAppearanceNameDarkAqua));
    application->setAppearance(named(NSAppearanceNameDarkAqua));
    EXPECT_EQ(application->appearance()->name(), NSAppearanceNameDarkAqua);
    EXPECT_EQ(application->effectiveAppearance(), application->appearance());
    application->setAppearance(nullptr);
    EXPECT_EQ(application->appearance(), nullptr);
    EXPECT_EQ(observer->log,
        (Log{"effectiveAppearance NSAppearanceNameDarkAqua", "effectiveAppearance NSAppearanceNameAqua"}));
}

TEST_F(NSApplicationAppearance, TheTestOverrideReplacesTheSetAppearance)
{
    {
        EffectiveAppearance seam(NSAppearanceNameVibrantDark);
        EXPECT_EQ(application->effectiveAppearance()->name(), NSAppearanceNameVibrantDark);
        application->setAppearance(named(NSAppearanceNameDarkAqua));
        EXPECT_EQ(application->effectiveAppearance()->name(), NSAppearanceNameVibrantDark);
        seam.set(NSAppearanceNameVibrantLight);
    }
    EXPECT_EQ(observer->log,
        (Log{"effectiveAppearance NSAppearanceNameVibrantDark",
            "effectiveAppearance NSAppearanceNameVibrantLight",
            "effectiveAppearance NSAppearanceNameDarkAqua"}));
}

TEST_F(NSApplicationAppearance, DrawingUsesIt)
{
    EXPECT_EQ(NSAppearance::currentDrawingAppearance()->name(), NSAppearanceNameAqua);
    const EffectiveAppearance seam(NSAppearanceNameDarkAqua);
    EXPECT_EQ(NSAppearance::currentDrawingAppearance()->name(), NSAppearanceNameDarkAqua);
}

TEST_F(NSApplicationAppearance, IsReadableByKey)
{
    EXPECT_EQ(application->valueForKey("effectiveAppearance"), application->effectiveAppearance());
    EXPECT_EQ(application->valueForKey("appearance"), nullptr);
    EXPECT_THROW(application->valueForKey("colour"), NSException);
}

// The event queue.

class NSApplicationEvents : public testing::Test {
protected:
    RetainPtr<NSEvent> mouse(NSEventType type, CGFloat x) const
    {
        return NSEvent::mouseEventWithType(
            type, NSMakePoint(x, 5), 0, 0, window->windowNumber(), nullptr, 0, 1, 1);
    }
    RetainPtr<NSEvent> next(NSEventMask mask, CFTimeInterval seconds, bool dequeue = true) const
    {
        return application->nextEventMatchingMask(mask,
            NSDate::dateWithTimeIntervalSinceReferenceDate(CFAbsoluteTimeGetCurrent() + seconds).get(),
            NSEventTrackingRunLoopMode, dequeue);
    }
    /// Runs the event loop until the pending events are dispatched.
    void turn() const
    {
        later([this] { application->stop(); });
        application->run();
    }

    Log log;
    NSApplication* application = NSApplication::sharedApplication();
    RetainPtr<NSWindow> window =
        make<NSWindow>(NSMakeRect(0, 0, 100, 100), NSWindowStyleMaskTitled, NSBackingStoreBuffered, false);
    RetainPtr<RecordingView> view = make<RecordingView>(NSMakeRect(0, 0, 100, 100), "view", log);

    NSApplicationEvents()
    {
        window->setContentView(view);
        log.clear();
    }
};

TEST_F(NSApplicationEvents, PostedEventsAreDispatchedInALaterTurn)
{
    application->postEvent(mouse(NSEventTypeLeftMouseDown, 1), false);
    application->postEvent(mouse(NSEventTypeLeftMouseUp, 2), false);
    application->postEvent(mouse(NSEventTypeRightMouseDown, 3), true);
    application->postEvent(nullptr, true);
    EXPECT_EQ(log, Log{});
    turn();
    EXPECT_EQ(log, (Log{"view right down 3 5 x1", "view down 1 5 x1", "view up 2 5 x1"}));
    EXPECT_EQ(application->currentEvent()->type(), NSEventTypeLeftMouseUp);
}

TEST_F(NSApplicationEvents, EventsOfADestroyedWindowAreDropped)
{
    application->postEvent(mouse(NSEventTypeLeftMouseDown, 1), false);
    window = nullptr;
    turn();
    application->sendEvent(nullptr);
    EXPECT_EQ(log, Log{"view leaves"});
}

TEST_F(NSApplicationEvents, AViewTracksTheMouseWithNextEventMatchingMask)
{
    view->onMouseDown = [&](NSEvent*) {
        while (const auto event = next(NSEventMaskLeftMouseDragged | NSEventMaskLeftMouseUp, 10)) {
            EXPECT_EQ(application->currentEvent(), event);
            log.push_back("tracks " + describe(event->locationInWindow()));
            if (event->type() == NSEventTypeLeftMouseUp)
                break;
        }
    };
    // Queued in advance, so that no event loop has to run.
    application->postEvent(mouse(NSEventTypeLeftMouseDragged, 2), false);
    application->postEvent(mouse(NSEventTypeLeftMouseUp, 3), false);
    application->sendEvent(mouse(NSEventTypeLeftMouseDown, 1).get());
    EXPECT_EQ(log, (Log{"view down 1 5 x1", "tracks 2 5", "tracks 3 5"}));
    // The window has seen the release and no longer tracks the view.
    application->sendEvent(mouse(NSEventTypeLeftMouseDragged, 4).get());
    turn();
    EXPECT_EQ(log.size(), 3U);
}

TEST_F(NSApplicationEvents, AnEventPostedDuringTheWaitEndsIt)
{
    const ManualClock clock(1000);
    later([&] { application->postEvent(mouse(NSEventTypeLeftMouseUp, 3), false); });
    const auto event = next(NSEventMaskLeftMouseUp, 10);
    ASSERT_TRUE(event);
    EXPECT_EQ(event->type(), NSEventTypeLeftMouseUp);
    EXPECT_LT(clock.now(), 1000.001);
}

TEST_F(NSApplicationEvents, TheWaitEndsAtTheDeadline)
{
    const ManualClock clock(1000);
    EXPECT_FALSE(next(NSEventMaskLeftMouseUp, 10));
    EXPECT_GE(clock.now(), 1010);
    EXPECT_LT(clock.now(), 1010.001);
}

TEST_F(NSApplicationEvents, TimersFireDuringTheWait)
{
    const ManualClock clock(1000);
    const auto timer = NSTimer::timerWithTimeInterval(
        4, false, [&](NSTimer*) { application->postEvent(mouse(NSEventTypeLeftMouseUp, 3), false); });
    NSRunLoop::mainRunLoop()->addTimer(timer, NSRunLoopCommonModes);
    EXPECT_TRUE(next(NSEventMaskLeftMouseUp, 10));
    EXPECT_EQ(clock.now(), 1004);
}

TEST_F(NSApplicationEvents, ANullOrPastDateReturnsImmediately)
{
    EXPECT_FALSE(
        application->nextEventMatchingMask(NSEventMaskAny, nullptr, NSEventTrackingRunLoopMode, true));
    EXPECT_FALSE(next(NSEventMaskAny, -1));
    application->postEvent(mouse(NSEventTypeLeftMouseUp, 3), false);
    EXPECT_TRUE(
        application->nextEventMatchingMask(NSEventMaskAny, nullptr, NSEventTrackingRunLoopMode, true));
}

TEST_F(NSApplicationEvents, AnEventIsLeftInTheQueueUnlessItIsDequeued)
{
    application->postEvent(mouse(NSEventTypeLeftMouseDown, 1), false);
    application->postEvent(mouse(NSEventTypeLeftMouseUp, 3), false);
    const auto seen = next(NSEventMaskLeftMouseUp, 0, false);
    EXPECT_EQ(next(NSEventMaskLeftMouseUp, 0, false), seen);
    EXPECT_EQ(next(NSEventMaskLeftMouseUp, 0), seen);
    EXPECT_FALSE(next(NSEventMaskLeftMouseUp, 0));
    EXPECT_EQ(log, Log{});
    turn();
    EXPECT_EQ(log, Log{"view down 1 5 x1"});
}

TEST_F(NSApplicationEvents, EventsOutsideTheMaskAreDispatchedAfterTheWait)
{
    {
        const ManualClock clock(1000);
        later([&] { application->postEvent(mouse(NSEventTypeRightMouseDown, 3), false); });
        EXPECT_FALSE(next(NSEventMaskLeftMouseUp, 1));
        EXPECT_EQ(log, Log{});
    }
    turn();
    EXPECT_EQ(log, Log{"view right down 3 5 x1"});
}

TEST_F(NSApplicationEvents, ClosingTheWindowEndsTheWait)
{
    const ManualClock clock(1000);
    window->makeKeyAndOrderFront();
    view->onMouseDown = [&](NSEvent*) {
        later([&] { window->close(); });
        log.emplace_back(next(NSEventMaskLeftMouseUp, 10) ? "released" : "nothing more");
    };
    application->sendEvent(mouse(NSEventTypeLeftMouseDown, 1).get());
    EXPECT_EQ(log.back(), "nothing more");
    EXPECT_LT(clock.now(), 1000.001);
}

TEST_F(NSApplicationEvents, AnExceptionFromAHandlerIsLoggedAndTheNextEventDispatched)
{
    view->onMouseDown = [](NSEvent*) { throw std::runtime_error("the handler's words"); };
    application->postEvent(mouse(NSEventTypeLeftMouseDown, 1), false);
    application->postEvent(mouse(NSEventTypeLeftMouseUp, 2), false);
    const NSLogCapture capture;
    turn();
    EXPECT_EQ(log.back(), "view up 2 5 x1");
    ASSERT_EQ(capture.messages().size(), 1U);
    EXPECT_EQ(capture.messages()[0], "An event could not be handled: the handler's words");
}

} // namespace
