#pragma once

#include <Foundation/CFDate.h>
#include <Foundation/NSObject.h>
#include <Foundation/Selector.h>

#include <functional>
#include <vector>

class NSDate;
class RunLoopCore;

/// Calls a block or a target at a date, once or at regular intervals, while a run loop of its thread is
/// running.
///
/// The dates of a repeating timer lie on a grid: the time of its creation plus 1, 2, 3 … intervals. A late
/// call does not move later ones, and missed dates are skipped. A timer is never called during its own call,
/// also not by a run loop that its block runs.
///
/// The run loop retains the timer until it is invalidated, so a caller need not; a repeating timer fires
/// until then. Use a timer on the thread of its run loop only. When the system's clock is set, the dates move
/// along: a timer that was due in 2 seconds still is.
class KORVID_EXPORT NSTimer : public NSObject {
public:
    /// What a timer calls; the argument is the timer itself.
    using Block = std::function<void(NSTimer*)>;

    /// A timer that still has to be added to a run loop. `interval` is in seconds; less than 0.0001, and NaN,
    /// counts as 0.0001. Without `repeats` it fires once and is then invalid. The block is
    /// retained until the timer is invalid; an empty one is allowed and does nothing.
    static RetainPtr<NSTimer> timerWithTimeInterval(CFTimeInterval interval, bool repeats, Block block);
    /// The same, added to the calling thread's run loop in the default mode.
    static RetainPtr<NSTimer> scheduledTimerWithTimeInterval(
        CFTimeInterval interval, bool repeats, Block block);

    /// A timer that calls the method `selector` of `target` with the timer as its argument. The target is
    /// retained until the timer is invalid, so a view with a running timer stays alive; a target that cannot
    /// perform the selector is not called. `userInfo` is retained as long as the timer exists.
    static RetainPtr<NSTimer> timerWithTimeInterval(CFTimeInterval interval, RetainPtr<NSObject> target,
        SEL selector, RetainPtr<NSObject> userInfo, bool repeats);
    /// The same, added to the calling thread's run loop in the default mode.
    static RetainPtr<NSTimer> scheduledTimerWithTimeInterval(CFTimeInterval interval,
        RetainPtr<NSObject> target, SEL selector, RetainPtr<NSObject> userInfo, bool repeats);

    /// Calls the block now; the dates stay as they are. A timer that does not repeat is invalid
    /// afterwards. Does nothing once the timer is invalid, and during a call.
    void fire();
    /// Stops the timer for good and releases its block; safe to call from the block, and more than once.
    void invalidate();

    /// False once the timer was invalidated, or has fired and does not repeat.
    bool isValid() const { return _isValid; }
    /// The date of the next call; during one, the date that it was due; once invalid, the last one.
    RetainPtr<NSDate> fireDate() const;
    /// Seconds between two calls; 0 for a timer that does not repeat.
    CFTimeInterval timeInterval() const { return _repeats ? _interval : 0; }
    /// The object that the timer was made with. Borrowed; null for a timer with a block.
    NSObject* userInfo() const { return _userInfo.get(); }

protected:
    /// For the functions above.
    NSTimer(CFTimeInterval interval, bool repeats, Block block);
    ~NSTimer() override;

private:
    friend class RunLoopCore;

    /// Calls the block, unless a call is in progress.
    void callBlock();
    /// Makes the first date of the grid that is later than `now` the next fire date.
    void advanceBeyond(CFAbsoluteTime now);

    Block _block;
    RetainPtr<NSObject> _userInfo;
    const CFTimeInterval _interval;
    const bool _repeats;
    bool _isValid = true;
    bool _isFiring = false;
    CFAbsoluteTime _start; ///< origin of the grid
    CFAbsoluteTime _fireDate;
    NSUInteger _sequence = 0;     ///< place among timers with the same fire date
    std::vector<unsigned> _modes; ///< by the run loop's numbers
    RunLoopCore* _runLoop = nullptr;
};
