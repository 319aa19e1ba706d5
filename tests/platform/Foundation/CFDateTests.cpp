#include <Foundation/Foundation.h>

#include "Foundation/testing/ManualClock.h"

#include <ctime>
#include <gtest/gtest.h>
#include <vector>

namespace {

/// The system's clock, as finely as it goes: time() may lag behind it by a tick.
CFAbsoluteTime systemTime()
{
    timespec time = {};
    clock_gettime(CLOCK_REALTIME, &time);
    return static_cast<double>(time.tv_sec - 978307200) + 1e-9 * static_cast<double>(time.tv_nsec);
}

} // namespace

TEST(CFAbsoluteTimeGetCurrent, CountsSecondsSinceTheBeginningOf2001)
{
    constexpr double kRounding = 1e-6; // nanoseconds do not fit into a double
    const CFAbsoluteTime before = systemTime();
    const CFAbsoluteTime now = CFAbsoluteTimeGetCurrent();
    EXPECT_GE(now, before - kRounding);
    EXPECT_LE(now, systemTime() + kRounding);
}

TEST(ManualClock, StandsStillUntilItIsAdvanced)
{
    ManualClock clock(1000);
    EXPECT_EQ(CFAbsoluteTimeGetCurrent(), 1000);
    EXPECT_EQ(CFAbsoluteTimeGetCurrent(), 1000);
    clock.advance(0.5);
    EXPECT_EQ(CFAbsoluteTimeGetCurrent(), 1000.5);
    EXPECT_EQ(clock.now(), 1000.5);
}

TEST(ManualClock, RestoresTheSystemsClock)
{
    {
        const ManualClock clock(-5);
        EXPECT_EQ(CFAbsoluteTimeGetCurrent(), -5);
    }
    EXPECT_GT(CFAbsoluteTimeGetCurrent(), 700'000'000); // 2023
}

TEST(ManualClock, SmallStepsAddUpToTheExactSum)
{
    ManualClock clock;
    for (int i = 0; i < 1000; ++i)
        clock.advance(0.1);
    EXPECT_EQ(clock.now(), 100);
}

TEST(ManualClock, NegativeAndMeaninglessLengthsCountAsNothing)
{
    ManualClock clock(3);
    clock.advance(-1);
    clock.advance(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(clock.now(), 3);
}

TEST(ManualClock, JumpsToEachFireDateInTurn)
{
    ManualClock clock(100);
    std::vector<CFAbsoluteTime> seen;
    const auto note = [&](NSTimer*) { seen.push_back(CFAbsoluteTimeGetCurrent()); };
    auto early = NSTimer::scheduledTimerWithTimeInterval(0.25, false, note);
    auto often = NSTimer::scheduledTimerWithTimeInterval(0.5, true, note);
    clock.advance(1.75);
    often->invalidate();
    EXPECT_EQ(seen, (std::vector<CFAbsoluteTime>{100.25, 100.5, 101, 101.5}));
    EXPECT_EQ(clock.now(), 101.75);
}
