#include "Foundation/Clock.h"

#include <atomic>
#include <ctime>

namespace {

CFTimeInterval secondsOf(clockid_t id)
{
    timespec time{};
    clock_gettime(id, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

class MachineClock final : public Clock {
public:
    CFAbsoluteTime now() const override
    {
        timespec time{};
        clock_gettime(CLOCK_REALTIME, &time);
        // Whole seconds first: the sum then has a more precise fraction.
        return static_cast<double>(time.tv_sec) - kCFAbsoluteTimeIntervalSince1970
            + static_cast<double>(time.tv_nsec) * 1e-9;
    }
    CFTimeInterval uptime() const override { return secondsOf(CLOCK_MONOTONIC); }
    bool jumpTo(CFAbsoluteTime) override { return false; }
};

MachineClock gMachineClock;
std::atomic<Clock*> gClock{&gMachineClock};
std::atomic<unsigned> gGeneration{0};

} // namespace

Clock& Clock::current()
{
    return *gClock.load(std::memory_order_acquire);
}

void Clock::setCurrent(Clock* clock)
{
    gClock.store(clock ? clock : &gMachineClock, std::memory_order_release);
    gGeneration.fetch_add(1, std::memory_order_acq_rel);
}

unsigned Clock::generation()
{
    return gGeneration.load(std::memory_order_acquire);
}

CFAbsoluteTime CFAbsoluteTimeGetCurrent()
{
    return Clock::current().now();
}
