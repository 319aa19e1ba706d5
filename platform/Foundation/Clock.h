#pragma once

#include <Foundation/CFDate.h>

/// The source of time of the whole platform layer, `Clock::current()`, which tests can replace. Safe on any
/// thread.
class Clock {
public:
    /// The current time; it jumps when the user sets the clock.
    virtual CFAbsoluteTime now() const = 0;
    /// Seconds from an unspecified start, unaffected by setting the clock.
    virtual CFTimeInterval uptime() const = 0;
    /// Called by a run loop that has nothing to do before `date`. True when the clock has jumped there, so
    /// that no waiting is needed.
    virtual bool jumpTo(CFAbsoluteTime date) = 0;

    /// The clock in use.
    static Clock& current();
    /// Replaces the clock; null means the system's.
    static void setCurrent(Clock* clock);
    /// How often the clock was replaced: dates of the previous one are meaningless to the next.
    static unsigned generation();

protected:
    ~Clock() = default;
};
