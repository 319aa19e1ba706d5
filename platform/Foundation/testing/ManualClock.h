#pragma once

#include <Foundation/CFDate.h>

#include <memory>

/// A clock that tests control. While it exists, `CFAbsoluteTimeGetCurrent`, timers and run loops
/// go by it, and no time passes but by `advance` and by run loops that wait: these do not wait, they jump.
///
/// One at a time, and on one thread: that of the run loop whose timers it fires. Timers that were made by the
/// machine's clock do not fire meanwhile.
class KORVID_EXPORT ManualClock {
public:
    /// Starts at `start`.
    explicit ManualClock(CFAbsoluteTime start = 0);
    ManualClock(const ManualClock&) = delete;
    ManualClock& operator=(const ManualClock&) = delete;
    /// The machine's clock counts again.
    ~ManualClock();

    CFAbsoluteTime now() const;

    /// Lets `seconds` pass: jumps to each fire date in turn and fires what is due there, in the current mode
    /// of the calling thread's run loop; runs waiting blocks of the main queue too, on the main thread. No Qt
    /// event is served. Whole nanoseconds are counted, so many small steps add up to the exact sum; negative
    /// lengths and NaN count as 0.
    void advance(CFTimeInterval seconds);

    /// Lets `seconds` pass while the run loop stands still, as a slow call does: nothing fires until the next
    /// `advance`, which may be by 0. Negative lengths and NaN count as 0.
    void stall(CFTimeInterval seconds);

    /// Sets the clock ahead by `seconds`, as a user sets the system's clock: no time passes.
    void setBy(CFTimeInterval seconds);

private:
    struct Hands;

    std::unique_ptr<Hands> _hands;
};
