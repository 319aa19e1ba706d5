#include <Foundation/Foundation.h>

#include "Foundation/testing/ManualClock.h"

#include <Foundation/NSDate.h>

#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

namespace {

CFAbsoluteTime fireTime(const RetainPtr<NSTimer>& timer)
{
    return timer->fireDate()->timeIntervalSinceReferenceDate();
}

/// A repeating timer that appends `letter` to `log`.
RetainPtr<NSTimer> logging(std::string& log, char letter, double interval, bool repeats = true)
{
    return NSTimer::scheduledTimerWithTimeInterval(
        interval, repeats, [&log, letter](NSTimer*) { log += letter; });
}

} // namespace

TEST(NSTimer, FiresOnceWithoutRepeatsAndIsThenInvalid)
{
    ManualClock clock(50);
    int calls = 0;
    bool wasValidDuringTheCall = false;
    const auto timer = NSTimer::scheduledTimerWithTimeInterval(2, false, [&](NSTimer* self) {
        ++calls;
        wasValidDuringTheCall = self->isValid();
    });
    EXPECT_EQ(fireTime(timer), 52);
    EXPECT_EQ(timer->timeInterval(), 0);
    clock.advance(1.999);
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(timer->isValid());
    clock.advance(0.001);
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(wasValidDuringTheCall);
    EXPECT_FALSE(timer->isValid());
    clock.advance(100);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(fireTime(timer), 52);
}

TEST(NSTimer, RepeatsAtItsIntervalUntilItIsInvalidated)
{
    ManualClock clock;
    int calls = 0;
    const auto timer = NSTimer::scheduledTimerWithTimeInterval(0.5, true, [&](NSTimer*) { ++calls; });
    EXPECT_EQ(timer->timeInterval(), 0.5);
    clock.advance(2);
    EXPECT_EQ(calls, 4);
    EXPECT_EQ(fireTime(timer), 2.5);
    timer->invalidate();
    timer->invalidate();
    EXPECT_FALSE(timer->isValid());
    clock.advance(2);
    EXPECT_EQ(calls, 4);
}

TEST(NSTimer, FiresFifteenTimesInAQuarterSecondAtSixtyPerSecond)
{
    for (const CFAbsoluteTime start : {0.0, 1.0, 699'999'999.25, 812'345'678.0}) {
        ManualClock clock(start);
        int frames = 0;
        const auto timer =
            NSTimer::scheduledTimerWithTimeInterval(1.0 / 60, true, [&](NSTimer*) { ++frames; });
        clock.advance(0.25);
        EXPECT_EQ(frames, 15) << start;
        timer->invalidate();
    }
}

TEST(NSTimer, FiresThirtySixThousandTimesInTenMinutesAtSixtyPerSecond)
{
    ManualClock clock;
    int frames = 0;
    const auto timer = NSTimer::scheduledTimerWithTimeInterval(1.0 / 60, true, [&](NSTimer*) { ++frames; });
    clock.advance(600);
    EXPECT_EQ(frames, 36000);
    timer->invalidate();
}

TEST(NSTimer, SkipsDatesThatPassedDuringACallAndStaysOnItsGrid)
{
    ManualClock clock;
    std::vector<CFAbsoluteTime> seen;
    const auto timer = NSTimer::scheduledTimerWithTimeInterval(1, true, [&](NSTimer*) {
        seen.push_back(clock.now());
        if (seen.size() == 2)
            clock.advance(2.5); // a slow call: from 2 to 4.5
    });
    clock.advance(6);
    timer->invalidate();
    EXPECT_EQ(seen, (std::vector<CFAbsoluteTime>{1, 2, 5, 6}));
}

TEST(NSTimer, CallThatEndsExactlyOnTheGridLeavesOutThatDate)
{
    ManualClock clock;
    std::vector<CFAbsoluteTime> seen;
    const auto timer = NSTimer::scheduledTimerWithTimeInterval(1, true, [&](NSTimer*) {
        seen.push_back(clock.now());
        if (seen.size() == 1)
            clock.advance(2); // ends at 3: the next date later than that is 4
    });
    clock.advance(4);
    timer->invalidate();
    EXPECT_EQ(seen, (std::vector<CFAbsoluteTime>{1, 4}));
}

TEST(NSTimer, IntervalsThatAreTooShortCountAsATenThousandthOfASecond)
{
    const ManualClock clock;
    for (const double interval : {0.0, -1.0, 1e-300, std::numeric_limits<double>::quiet_NaN()}) {
        const auto timer = NSTimer::timerWithTimeInterval(interval, true, [](NSTimer*) {});
        EXPECT_EQ(timer->timeInterval(), 0.0001) << interval;
        EXPECT_EQ(fireTime(timer), 0.0001) << interval;
    }
}

TEST(NSTimer, InfiniteIntervalNeverFires)
{
    ManualClock clock;
    int calls = 0;
    const auto timer = NSTimer::scheduledTimerWithTimeInterval(
        std::numeric_limits<double>::infinity(), true, [&](NSTimer*) { ++calls; });
    clock.advance(1e6);
    EXPECT_EQ(calls, 0);
    timer->invalidate();
}

TEST(NSTimer, TimersOfTheSameDateFireInTheOrderInWhichTheyWereAdded)
{
    ManualClock clock;
    std::string log;
    const auto slow = logging(log, 's', 2);
    const auto first = logging(log, 'a', 1);
    const auto second = logging(log, 'b', 1);
    clock.advance(2);
    EXPECT_EQ(log, "absab");
    for (const auto& timer : {slow, first, second})
        timer->invalidate();
}

TEST(NSTimer, MayInvalidateItselfWhileFiring)
{
    ManualClock clock;
    int calls = 0;
    const auto timer = NSTimer::scheduledTimerWithTimeInterval(1, true, [&](NSTimer* self) {
        if (++calls == 3)
            self->invalidate();
    });
    clock.advance(10);
    EXPECT_EQ(calls, 3);
    EXPECT_FALSE(timer->isValid());
}

TEST(NSTimer, MayInvalidateOthersThatAreDueAtTheSameTime)
{
    ManualClock clock;
    std::string log;
    RetainPtr<NSTimer> victim;
    const auto killer = NSTimer::scheduledTimerWithTimeInterval(1, false, [&](NSTimer*) {
        log += 'k';
        victim->invalidate();
    });
    victim = logging(log, 'v', 1);
    const auto last = logging(log, 'l', 1, false);
    clock.advance(3);
    EXPECT_EQ(log, "kl");
}

TEST(NSTimer, MayLetGoOfItselfWhileFiring)
{
    ManualClock clock;
    auto token = std::make_shared<int>(7);
    const std::weak_ptr<int> watch = token;
    int seen = 0;
    RetainPtr<NSTimer> timer;
    timer = NSTimer::scheduledTimerWithTimeInterval(1, true, [&timer, &seen, token](NSTimer* self) {
        timer = nullptr;
        self->invalidate();
        seen = *token; // what the block holds is still there
    });
    token = nullptr;
    clock.advance(1);
    EXPECT_EQ(seen, 7);
    EXPECT_TRUE(watch.expired());
}

TEST(NSTimer, AddedWhileFiringFiresInItsTurn)
{
    ManualClock clock;
    std::vector<CFAbsoluteTime> seen;
    NSTimer::scheduledTimerWithTimeInterval(1, false, [&](NSTimer*) {
        NSTimer::scheduledTimerWithTimeInterval(0.5, false, [&](NSTimer*) { seen.push_back(clock.now()); });
        NSTimer::scheduledTimerWithTimeInterval(0, false, [&](NSTimer*) { seen.push_back(clock.now()); });
    });
    clock.advance(2);
    EXPECT_EQ(seen, (std::vector<CFAbsoluteTime>{1.0001, 1.5}));
}

TEST(NSTimer, OneThatIsNotAddedToARunLoopFiresOnlyByFire)
{
    ManualClock clock;
    int calls = 0;
    const auto timer = NSTimer::timerWithTimeInterval(1, true, [&](NSTimer*) { ++calls; });
    clock.advance(5);
    EXPECT_EQ(calls, 0);
    timer->fire();
    timer->fire();
    EXPECT_EQ(calls, 2);
    EXPECT_TRUE(timer->isValid());
    timer->invalidate();
    timer->fire();
    EXPECT_EQ(calls, 2);
}

TEST(NSTimer, FireLeavesTheDatesUnchanged)
{
    ManualClock clock;
    std::vector<CFAbsoluteTime> seen;
    const auto timer =
        NSTimer::scheduledTimerWithTimeInterval(1, true, [&](NSTimer*) { seen.push_back(clock.now()); });
    clock.advance(0.5);
    timer->fire();
    clock.advance(1.5);
    timer->invalidate();
    EXPECT_EQ(seen, (std::vector<CFAbsoluteTime>{0.5, 1, 2}));
}

TEST(NSTimer, FireInvalidatesATimerThatDoesNotRepeat)
{
    ManualClock clock;
    int calls = 0;
    const auto timer = NSTimer::scheduledTimerWithTimeInterval(1, false, [&](NSTimer*) { ++calls; });
    timer->fire();
    EXPECT_FALSE(timer->isValid());
    clock.advance(2);
    EXPECT_EQ(calls, 1);
}

TEST(NSTimer, IsNotCalledAgainDuringItsCall)
{
    ManualClock clock;
    int depth = 0;
    int deepest = 0;
    const auto timer = NSTimer::scheduledTimerWithTimeInterval(1, true, [&](NSTimer* self) {
        deepest = std::max(deepest, ++depth);
        self->fire();
        clock.advance(3);
        --depth;
    });
    clock.advance(2);
    timer->invalidate();
    EXPECT_EQ(deepest, 1);
}

TEST(NSTimer, ExceptionPassesThroughAndTheTimerGoesOn)
{
    ManualClock clock;
    int calls = 0;
    const auto timer = NSTimer::scheduledTimerWithTimeInterval(1, true, [&](NSTimer*) {
        if (++calls == 1)
            throw std::runtime_error("once");
    });
    EXPECT_THROW(clock.advance(1), std::runtime_error);
    clock.advance(2);
    EXPECT_EQ(calls, 3);
    timer->invalidate();
}

TEST(NSTimer, EmptyBlockDoesNothing)
{
    ManualClock clock;
    const auto timer = NSTimer::scheduledTimerWithTimeInterval(1, false, nullptr);
    clock.advance(1);
    EXPECT_FALSE(timer->isValid());
}

TEST(NSTimer, RunLoopRetainsItUntilItIsInvalid)
{
    ManualClock clock;
    auto token = std::make_shared<int>(0);
    const std::weak_ptr<int> watch = token;
    NSTimer::scheduledTimerWithTimeInterval(1, false, [token = std::move(token)](NSTimer*) {});
    EXPECT_FALSE(watch.expired());
    clock.advance(1);
    EXPECT_TRUE(watch.expired());
}

TEST(NSTimer, DatesMoveAlongWhenTheClockIsSet)
{
    for (const double step : {3600.0, -3600.0}) {
        ManualClock clock(10'000);
        int calls = 0;
        const auto timer = NSTimer::scheduledTimerWithTimeInterval(2, true, [&](NSTimer*) { ++calls; });
        clock.advance(1);
        clock.setBy(step);
        clock.advance(0.5);
        EXPECT_EQ(calls, 0) << step;
        EXPECT_EQ(fireTime(timer), 10'002 + step);
        clock.advance(0.5);
        EXPECT_EQ(calls, 1) << step;
        clock.advance(4);
        EXPECT_EQ(calls, 3) << step;
        timer->invalidate();
    }
}
