#include <Foundation/Foundation.h>

#include "Foundation/testing/ManualClock.h"

#include <Foundation/NSDate.h>

#include <gtest/gtest.h>
#include <string>
#include <thread>

namespace {

RetainPtr<NSDate> secondsFromNow(double seconds)
{
    return NSDate::dateWithTimeIntervalSinceReferenceDate(CFAbsoluteTimeGetCurrent() + seconds);
}

/// A repeating timer for `mode` that appends `letter` to `log`.
RetainPtr<NSTimer> logging(std::string& log, char letter, double interval, const NSString& mode)
{
    auto timer = NSTimer::timerWithTimeInterval(interval, true, [&log, letter](NSTimer*) { log += letter; });
    NSRunLoop::currentRunLoop()->addTimer(timer, mode);
    return timer;
}

} // namespace

TEST(NSRunLoop, MainThreadHasTheMainRunLoopAndOthersHaveTheirOwn)
{
    EXPECT_EQ(NSRunLoop::currentRunLoop(), NSRunLoop::mainRunLoop());
    NSRunLoop* first = nullptr;
    NSRunLoop* second = nullptr;
    NSRunLoop* main = nullptr;
    std::thread([&] {
        first = NSRunLoop::currentRunLoop();
        second = NSRunLoop::currentRunLoop();
        main = NSRunLoop::mainRunLoop();
    }).join();
    EXPECT_EQ(first, second);
    EXPECT_NE(first, main);
    EXPECT_EQ(main, NSRunLoop::mainRunLoop());
}

TEST(NSRunLoop, FiresTimersInRealTimeWithoutAQtApplication)
{
    int calls = 0;
    const CFAbsoluteTime start = CFAbsoluteTimeGetCurrent();
    CFAbsoluteTime third = 0;
    const auto timer = NSTimer::scheduledTimerWithTimeInterval(0.01, true, [&](NSTimer* self) {
        if (++calls == 3) {
            third = CFAbsoluteTimeGetCurrent();
            self->invalidate();
        }
    });
    while (timer->isValid())
        NSRunLoop::currentRunLoop()->runMode(NSDefaultRunLoopMode, secondsFromNow(0.01).get());
    EXPECT_EQ(calls, 3);
    EXPECT_GE(third - start, 0.03);
}

TEST(NSRunLoop, RunsUntilTheDateAndNoEarlier)
{
    const auto limit = secondsFromNow(0.02);
    NSRunLoop::mainRunLoop()->runUntilDate(limit);
    EXPECT_GE(CFAbsoluteTimeGetCurrent(), limit->timeIntervalSinceReferenceDate());
}

TEST(NSRunLoop, JumpsInsteadOfWaitingByAManualClock)
{
    ManualClock clock(5);
    std::string log;
    const auto timer = logging(log, 'a', 1, NSDefaultRunLoopMode);
    NSRunLoop::mainRunLoop()->runUntilDate(secondsFromNow(3.5).get());
    EXPECT_EQ(clock.now(), 8.5);
    EXPECT_EQ(log, "aaa");
    timer->invalidate();
}

TEST(NSRunLoop, ReturnsAtOnceForAPastOrNullDate)
{
    ManualClock clock(5);
    std::string log;
    const auto timer = logging(log, 'a', 1, NSDefaultRunLoopMode);
    NSRunLoop::mainRunLoop()->runUntilDate(nullptr);
    NSRunLoop::mainRunLoop()->runUntilDate(secondsFromNow(-1).get());
    EXPECT_EQ(clock.now(), 5);
    EXPECT_EQ(log, "");
    timer->invalidate();
}

TEST(NSRunLoop, PastDateMakesOneTurnInAMode)
{
    ManualClock clock;
    std::string log;
    const auto tracking = logging(log, 't', 1, NSEventTrackingRunLoopMode);
    clock.advance(1.5); // due, but not in this mode
    EXPECT_EQ(log, "");
    EXPECT_TRUE(NSRunLoop::mainRunLoop()->runMode(NSEventTrackingRunLoopMode, nullptr));
    EXPECT_EQ(log, "t");
    EXPECT_EQ(clock.now(), 1.5);
    tracking->invalidate();
}

TEST(NSRunLoop, FiresTheTimersOfTheCurrentModeOnly)
{
    const ManualClock clock;
    std::string log;
    const RetainPtr<NSTimer> timers[] = {
        logging(log, 'd', 1, NSDefaultRunLoopMode),
        logging(log, 't', 1, NSEventTrackingRunLoopMode),
        logging(log, 'm', 1, NSModalPanelRunLoopMode),
        logging(log, 'c', 1, NSRunLoopCommonModes),
        logging(log, 'x', 1, "my own mode"),
    };
    const auto ranIn = [&](const NSString& mode) {
        log.clear();
        EXPECT_TRUE(NSRunLoop::mainRunLoop()->runMode(mode, secondsFromNow(1).get()));
        return log;
    };
    // A timer that was left out before is overdue: it fires at once, and again at its next date.
    EXPECT_EQ(ranIn(NSDefaultRunLoopMode), "dc");
    EXPECT_EQ(ranIn(NSEventTrackingRunLoopMode), "ttc");
    EXPECT_EQ(ranIn(NSModalPanelRunLoopMode), "mmc");
    EXPECT_EQ(ranIn("my own mode"), "xx");
    for (const auto& timer : timers)
        timer->invalidate();
}

TEST(NSRunLoop, TimerInSeveralModesFiresInEach)
{
    const ManualClock clock;
    std::string log;
    const auto timer = logging(log, 'a', 1, NSDefaultRunLoopMode);
    NSRunLoop::mainRunLoop()->addTimer(timer, "mine");
    NSRunLoop::mainRunLoop()->addTimer(timer, "mine");
    NSRunLoop::mainRunLoop()->runMode("mine", secondsFromNow(1).get());
    NSRunLoop::mainRunLoop()->runMode(NSDefaultRunLoopMode, secondsFromNow(1).get());
    NSRunLoop::mainRunLoop()->runMode(NSModalPanelRunLoopMode, secondsFromNow(1).get());
    EXPECT_EQ(log, "aa");
    timer->invalidate();
}

TEST(NSRunLoop, ReturnsTheModeOfTheInnermostLoop)
{
    const ManualClock clock;
    NSRunLoop* loop = NSRunLoop::mainRunLoop();
    NSString outer;
    NSString inner;
    NSString after;
    NSTimer::scheduledTimerWithTimeInterval(1, false, [&](NSTimer*) {
        outer = loop->currentMode();
        auto nested =
            NSTimer::timerWithTimeInterval(1, false, [&](NSTimer*) { inner = loop->currentMode(); });
        loop->addTimer(nested, NSEventTrackingRunLoopMode);
        loop->runMode(NSEventTrackingRunLoopMode, secondsFromNow(2).get());
        after = loop->currentMode();
    });
    EXPECT_TRUE(loop->currentMode().isNull());
    loop->runUntilDate(secondsFromNow(5).get());
    EXPECT_EQ(outer, NSDefaultRunLoopMode);
    EXPECT_EQ(inner, NSEventTrackingRunLoopMode);
    EXPECT_EQ(after, NSDefaultRunLoopMode);
    EXPECT_TRUE(loop->currentMode().isNull());
}

TEST(NSRunLoop, NestedLoopFiresOtherTimersWhileOneIsBeingCalled)
{
    const ManualClock clock;
    std::string log;
    const auto other = logging(log, 'o', 1, NSDefaultRunLoopMode);
    const auto nesting = NSTimer::scheduledTimerWithTimeInterval(1.5, true, [&](NSTimer* self) {
        log += '(';
        NSRunLoop::mainRunLoop()->runUntilDate(secondsFromNow(3).get()); // to 4.5: 2, 3, 4
        log += ')';
        self->invalidate();
    });
    NSRunLoop::mainRunLoop()->runUntilDate(secondsFromNow(5).get());
    EXPECT_EQ(log, "o(ooo)o");
    other->invalidate();
}

TEST(NSRunLoop, ModeIsOverWhenAnExceptionLeavesTheLoop)
{
    const ManualClock clock;
    NSTimer::scheduledTimerWithTimeInterval(1, false, [](NSTimer*) { throw 1; });
    EXPECT_THROW(NSRunLoop::mainRunLoop()->runUntilDate(secondsFromNow(2).get()), int);
    EXPECT_TRUE(NSRunLoop::mainRunLoop()->currentMode().isNull());
}

TEST(NSRunLoop, RefusesModesThatCannotRun)
{
    const ManualClock clock;
    NSRunLoop* loop = NSRunLoop::mainRunLoop();
    std::string log;
    const auto common = logging(log, 'c', 1, NSRunLoopCommonModes);
    EXPECT_FALSE(loop->runMode(nullptr, secondsFromNow(2).get()));
    EXPECT_FALSE(loop->runMode(NSRunLoopCommonModes, secondsFromNow(2).get()));
    EXPECT_FALSE(loop->runMode("a mode without timers", secondsFromNow(2).get()));
    EXPECT_EQ(log, "");
    EXPECT_EQ(clock.now(), 0);
    common->invalidate();
}

TEST(NSRunLoop, IgnoresNullAndInvalidTimersAndNullModes)
{
    ManualClock clock;
    int calls = 0;
    const auto invalid = NSTimer::timerWithTimeInterval(1, true, [&](NSTimer*) { ++calls; });
    invalid->invalidate();
    const auto modeless = NSTimer::timerWithTimeInterval(1, true, [&](NSTimer*) { ++calls; });
    NSRunLoop::mainRunLoop()->addTimer(nullptr, NSDefaultRunLoopMode);
    NSRunLoop::mainRunLoop()->addTimer(invalid, NSDefaultRunLoopMode);
    NSRunLoop::mainRunLoop()->addTimer(modeless, nullptr);
    clock.advance(2);
    EXPECT_EQ(calls, 0);
}

TEST(NSRunLoop, OtherThreadsLoopEndsWhenNoTimerIsLeft)
{
    int calls = 0;
    bool canStillRun = true;
    std::thread([&] {
        NSTimer::scheduledTimerWithTimeInterval(0.001, true, [&](NSTimer* self) {
            if (++calls == 2)
                self->invalidate();
        });
        NSRunLoop::currentRunLoop()->runUntilDate(secondsFromNow(3600).get());
        canStillRun = NSRunLoop::currentRunLoop()->runMode(NSDefaultRunLoopMode, secondsFromNow(3600).get());
    }).join();
    EXPECT_EQ(calls, 2);
    EXPECT_FALSE(canStillRun);
}

TEST(NSRunLoop, ThreadThatEndsDropsItsTimers)
{
    RetainPtr<NSTimer> timer;
    auto token = std::make_shared<int>(0);
    const std::weak_ptr<int> watch = token;
    std::thread([&] {
        timer = NSTimer::scheduledTimerWithTimeInterval(1, true, [token = std::move(token)](NSTimer*) {});
    }).join();
    EXPECT_FALSE(timer->isValid());
    EXPECT_TRUE(watch.expired());
}

TEST(NSRunLoop, TimerStaysInTheRunLoopThatItWasAddedTo)
{
    int calls = 0;
    std::thread([&] {
        const auto timer = NSTimer::scheduledTimerWithTimeInterval(0.001, false, [&](NSTimer*) { ++calls; });
        NSRunLoop::mainRunLoop()->addTimer(timer, NSDefaultRunLoopMode);
        NSRunLoop::currentRunLoop()->runUntilDate(secondsFromNow(3600).get());
    }).join();
    EXPECT_EQ(calls, 1);
}

TEST(NSRunLoop, LimitMovesAlongWhenTheClockIsSet)
{
    ManualClock clock(1000);
    NSTimer::scheduledTimerWithTimeInterval(1, false, [&](NSTimer*) { clock.setBy(-500); });
    NSRunLoop::mainRunLoop()->runUntilDate(secondsFromNow(3).get());
    EXPECT_EQ(clock.now(), 503);
}
