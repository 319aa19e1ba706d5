#include <Foundation/Foundation.h>

#include "Foundation/testing/ManualClock.h"
#include "Probe.h"

#include <gtest/gtest.h>
#include <vector>

// Timers that call a method of a target.

namespace {

class Target : public Probe {
public:
    using Probe::Probe;

    std::vector<NSTimer*> calls;
    RetainPtr<NSTimer> timer; ///< released by `finish`

    void tick(NSTimer* fired) { calls.push_back(fired); }
    void finish(NSTimer* fired)
    {
        tick(fired);
        fired->invalidate();
        timer = nullptr;
        // Still alive, although nothing but the call refers to it.
        calls.push_back(nullptr);
    }
};

} // namespace

TEST(NSTimer, TellsItsTargetWithItselfAsTheArgument)
{
    ManualClock clock;
    int destroyed = 0;
    const auto target = make<Target>(destroyed);
    const auto info = NSNumber::numberWithInteger(7);
    const auto timer =
        NSTimer::scheduledTimerWithTimeInterval(0.5, target, selector<&Target::tick>, info, true);
    EXPECT_EQ(timer->userInfo(), info);
    EXPECT_EQ(timer->timeInterval(), 0.5);
    clock.advance(1.4);
    EXPECT_EQ(target->calls, (std::vector<NSTimer*>{timer, timer}));
    timer->invalidate();
    EXPECT_EQ(timer->userInfo(), info);
}

TEST(NSTimer, WithATargetIsNotScheduledUnlessAddedToARunLoop)
{
    ManualClock clock;
    int destroyed = 0;
    const auto target = make<Target>(destroyed);
    const auto timer = NSTimer::timerWithTimeInterval(1, target, selector<&Target::tick>, nullptr, false);
    EXPECT_EQ(timer->timeInterval(), 0);
    EXPECT_EQ(timer->userInfo(), nullptr);
    clock.advance(2);
    EXPECT_TRUE(target->calls.empty());
    NSRunLoop::currentRunLoop()->addTimer(timer, NSDefaultRunLoopMode);
    clock.advance(1);
    EXPECT_EQ(target->calls.size(), 1u);
    EXPECT_FALSE(timer->isValid());
}

TEST(NSTimer, RetainsItsTargetUntilItIsInvalid)
{
    const ManualClock clock;
    int destroyed = 0;
    const auto timer = NSTimer::scheduledTimerWithTimeInterval(
        1, make<Target>(destroyed), selector<&Target::tick>, nullptr, true);
    EXPECT_EQ(destroyed, 0);
    timer->invalidate();
    EXPECT_EQ(destroyed, 1);
}

TEST(NSTimer, TargetLivesUntilACallThatReleasesItReturns)
{
    ManualClock clock;
    int destroyed = 0;
    auto target = make<Target>(destroyed);
    target->timer =
        NSTimer::scheduledTimerWithTimeInterval(1, target, selector<&Target::finish>, nullptr, true);
    target = nullptr;
    clock.advance(0.9);
    EXPECT_EQ(destroyed, 0);
    clock.advance(5);
    EXPECT_EQ(destroyed, 1);
}

TEST(NSTimer, ATargetWithoutTheMethodIsNotCalled)
{
    ManualClock clock;
    int destroyed = 0;
    const auto probe = make<Probe>(destroyed);
    NSTimer::scheduledTimerWithTimeInterval(1, probe, selector<&Target::tick>, nullptr, false);
    NSTimer::scheduledTimerWithTimeInterval(1, nullptr, selector<&Target::tick>, nullptr, false);
    NSTimer::scheduledTimerWithTimeInterval(1, probe, nullptr, nullptr, false);
    clock.advance(2);
    EXPECT_EQ(destroyed, 0);
}

TEST(NSTimer, FiresOnceAfterAStallAndThenOnItsGrid)
{
    ManualClock clock;
    std::vector<CFAbsoluteTime> times;
    const auto timer = NSTimer::scheduledTimerWithTimeInterval(
        0.25, true, [&](NSTimer*) { times.push_back(CFAbsoluteTimeGetCurrent()); });
    clock.advance(0.25);
    clock.stall(2.125);
    EXPECT_EQ(times, (std::vector<CFAbsoluteTime>{0.25}));
    clock.advance(0);
    EXPECT_EQ(times, (std::vector<CFAbsoluteTime>{0.25, 2.375}));
    clock.advance(0.375);
    timer->invalidate();
    EXPECT_EQ(times, (std::vector<CFAbsoluteTime>{0.25, 2.375, 2.5, 2.75}));
}
