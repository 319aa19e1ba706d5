#include <Foundation/NSTimer.h>

#include "Foundation/Clock.h"
#include "Foundation/RunLoop.h"

#include <Foundation/NSDate.h>

#include <cmath>

namespace {

constexpr CFTimeInterval kShortestInterval = 0.0001;

} // namespace

NSTimer::NSTimer(CFTimeInterval interval, bool repeats, Block block)
    : _block(std::move(block))
    , _interval(interval >= kShortestInterval ? interval : kShortestInterval) // NaN too
    , _repeats(repeats)
    , _start(Clock::current().now())
    , _fireDate(_start + _interval)
{
}

NSTimer::~NSTimer() = default;

RetainPtr<NSTimer> NSTimer::timerWithTimeInterval(CFTimeInterval interval, bool repeats, Block block)
{
    return adopt(new NSTimer(interval, repeats, std::move(block)));
}

RetainPtr<NSTimer> NSTimer::scheduledTimerWithTimeInterval(CFTimeInterval interval, bool repeats, Block block)
{
    auto timer = timerWithTimeInterval(interval, repeats, std::move(block));
    RunLoopCore::current().add(timer, NSDefaultRunLoopMode);
    return timer;
}

RetainPtr<NSTimer> NSTimer::timerWithTimeInterval(CFTimeInterval interval, RetainPtr<NSObject> target,
    SEL selector, RetainPtr<NSObject> userInfo, bool repeats)
{
    Block block;
    if (target && selector)
        block = [target = std::move(target), selector](NSTimer* timer) { selector(target, timer); };
    auto timer = timerWithTimeInterval(interval, repeats, std::move(block));
    timer->_userInfo = std::move(userInfo);
    return timer;
}

RetainPtr<NSTimer> NSTimer::scheduledTimerWithTimeInterval(CFTimeInterval interval,
    RetainPtr<NSObject> target, SEL selector, RetainPtr<NSObject> userInfo, bool repeats)
{
    auto timer = timerWithTimeInterval(interval, std::move(target), selector, std::move(userInfo), repeats);
    RunLoopCore::current().add(timer, NSDefaultRunLoopMode);
    return timer;
}

void NSTimer::callBlock()
{
    if (_isFiring)
        return;
    // The block may invalidate the timer, which releases the block; it has to live until it returns. An
    // exception propagates and leaves the timer as it was.
    struct Call {
        NSTimer& timer;
        Block block;
        explicit Call(NSTimer& called)
            : timer(called)
            , block(std::move(called._block))
        {
            timer._isFiring = true;
        }
        Call(const Call&) = delete;
        Call& operator=(const Call&) = delete;
        ~Call()
        {
            timer._isFiring = false;
            if (timer._isValid)
                timer._block = std::move(block);
        }
    } const call(*this);
    if (call.block)
        call.block(this);
}

void NSTimer::fire()
{
    if (!_isValid || _isFiring)
        return;
    const RetainPtr<NSTimer> keptDuringTheCall(this);
    callBlock();
    if (!_repeats)
        invalidate();
    else if (_runLoop)
        _runLoop->arm(); // the date may have passed during the call
}

void NSTimer::invalidate()
{
    if (!_isValid)
        return;
    const RetainPtr<NSTimer> keptWithoutTheRunLoop(this);
    _isValid = false;
    if (RunLoopCore* runLoop = std::exchange(_runLoop, nullptr))
        runLoop->remove(this);
    const Block released = std::exchange(_block, nullptr);
}

RetainPtr<NSDate> NSTimer::fireDate() const
{
    return NSDate::dateWithTimeIntervalSinceReferenceDate(_fireDate);
}

void NSTimer::advanceBeyond(CFAbsoluteTime now)
{
    // Every date is computed from the start: adding up intervals would add up their rounding errors, and end
    // with one call too many.
    double count = std::floor((now - _start) / _interval);
    while (_start + count * _interval <= now)
        ++count;
    _fireDate = _start + count * _interval;
}
