#pragma once

#include <Foundation/CFDate.h>

/// Where the platform layer gets its time from. All of it asks `Clock::current()`, so tests can put a clock
/// of their own there. Safe on any thread.
class Clock {
public:
    /// The present time, by hands that a person may set.
    virtual CFAbsoluteTime now() const = 0;
    /// Seconds that have passed, whatever was done to the hands. Where they start is unspecified.
    virtual CFTimeInterval uptime() const = 0;
    /// Told by a run loop that has nothing to do before `date`. True when it is that late now and no waiting
    /// is needed.
    virtual bool jumpTo(CFAbsoluteTime date) = 0;

    /// The clock that counts.
    static Clock& current();
    /// Puts another clock there; null means the machine's.
    static void setCurrent(Clock* clock);
    /// How often another clock was put there: dates from before mean nothing to the one after.
    static unsigned generation();

protected:
    ~Clock() = default;
};
