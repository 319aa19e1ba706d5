#include "Foundation/testing/ManualClock.h"

#include "Foundation/Clock.h"
#include "Foundation/RunLoop.h"

#include <algorithm>
#include <cmath>

struct ManualClock::Hands final : Clock {
    CFAbsoluteTime start;
    CFTimeInterval elapsed = 0;

    explicit Hands(CFAbsoluteTime at)
        : start(at)
    {
    }
    CFAbsoluteTime now() const override { return start + elapsed; }
    CFTimeInterval uptime() const override { return elapsed; }
    /// In whole nanoseconds. Negative lengths and NaN count as 0.
    CFTimeInterval elapsedAfter(CFTimeInterval seconds) const
    {
        constexpr double kNanoseconds = 1e9;
        return std::round((elapsed + (seconds > 0 ? seconds : 0)) * kNanoseconds) / kNanoseconds;
    }
    bool jumpTo(CFAbsoluteTime date) override
    {
        // Not by a difference alone, which could end a rounding error before the date.
        elapsed = std::max(elapsed, date - start);
        if (now() < date)
            elapsed = std::nextafter(elapsed, HUGE_VAL);
        return true;
    }
};

ManualClock::ManualClock(CFAbsoluteTime start)
    : _hands(std::make_unique<Hands>(start))
{
    Clock::setCurrent(_hands.get());
}

ManualClock::~ManualClock()
{
    Clock::setCurrent(nullptr);
}

CFAbsoluteTime ManualClock::now() const
{
    return _hands->now();
}

void ManualClock::advance(CFTimeInterval seconds)
{
    const CFTimeInterval end = _hands->elapsedAfter(seconds);
    RunLoopCore& runLoop = RunLoopCore::current();
    for (;;) {
        runLoop.turn();
        if (runLoop.hasBlocks())
            continue;
        const auto next = runLoop.nextFireDate();
        if (!next || *next > _hands->start + end)
            break;
        _hands->jumpTo(*next);
    }
    _hands->elapsed = std::max(_hands->elapsed, end);
}

void ManualClock::stall(CFTimeInterval seconds)
{
    _hands->elapsed = std::max(_hands->elapsed, _hands->elapsedAfter(seconds));
}

void ManualClock::setBy(CFTimeInterval seconds)
{
    _hands->start += seconds;
}
