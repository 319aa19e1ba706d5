#include "Foundation/RunLoop.h"

#include "Foundation/Clock.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

/// The longest single wait, after which all dates are checked again. Durations stay within every timer's
/// range.
constexpr CFTimeInterval kLongestWait = 3600;

/// The smallest change of the system's clock that timers follow: larger than the error of reading two clocks
/// one after the other, and too small to notice.
constexpr CFTimeInterval kClockStep = 0.1;

/// Numbers of the modes that every run loop has, in the order of `RunLoopCore::_modeNames`.
enum : unsigned { kDefaultMode, kTrackingMode, kModalMode, kCommonModes };

bool isCommon(unsigned mode)
{
    return mode < kCommonModes;
}

} // namespace

bool isMainThread()
{
    static thread_local const bool isMain = syscall(SYS_gettid) == getpid();
    return isMain;
}

/// Takes a timer out of the list while it is called; puts it back, also on an exception.
class RunLoopCore::Firing {
public:
    Firing(RunLoopCore& core, RetainPtr<NSTimer> timer)
        : _core(core)
        , _timer(std::move(timer))
    {
    }
    Firing(const Firing&) = delete;
    Firing& operator=(const Firing&) = delete;
    ~Firing()
    {
        if (!_timer->_isValid)
            return;
        if (_timer->_repeats) {
            _timer->advanceBeyond(Clock::current().now());
            _core.insert(std::move(_timer));
        } else {
            _timer->invalidate();
        }
    }

private:
    RunLoopCore& _core;
    RetainPtr<NSTimer> _timer;
};

RunLoopCore::RunLoopCore(bool isMain)
    : _isMain(isMain)
    , _modeNames{
          NSDefaultRunLoopMode, NSEventTrackingRunLoopMode, NSModalPanelRunLoopMode, NSRunLoopCommonModes}
{
    followClock();
}

RunLoopCore::~RunLoopCore()
{
    for (const auto& timer : std::exchange(_timers, {})) {
        timer->_runLoop = nullptr;
        timer->invalidate();
    }
}

unsigned RunLoopCore::numberOf(const NSString& mode)
{
    const auto known = std::find(_modeNames.begin(), _modeNames.end(), mode);
    const auto number = static_cast<unsigned>(known - _modeNames.begin());
    if (known == _modeNames.end())
        _modeNames.push_back(mode);
    return number;
}

unsigned RunLoopCore::mode() const
{
    return _loops.empty() ? kDefaultMode : _loops.back().mode;
}

NSString RunLoopCore::currentMode() const
{
    return _loops.empty() ? NSString() : _modeNames[mode()];
}

bool RunLoopCore::takesBlocks() const
{
    return _isMain && isCommon(mode());
}

bool RunLoopCore::mayFire(const NSTimer& timer) const
{
    if (timer._isFiring)
        return false;
    const unsigned current = mode();
    return std::any_of(timer._modes.begin(), timer._modes.end(),
        [current](unsigned mode) { return mode == current || (mode == kCommonModes && isCommon(current)); });
}

void RunLoopCore::add(NSTimer* timer, const NSString& mode)
{
    if (!timer || !timer->_isValid || mode.isNull() || (timer->_runLoop && timer->_runLoop != this))
        return;
    const unsigned number = numberOf(mode);
    auto& modes = timer->_modes;
    if (std::find(modes.begin(), modes.end(), number) == modes.end())
        modes.push_back(number);
    if (!timer->_runLoop) {
        timer->_runLoop = this;
        timer->_sequence = _nextSequence++;
        insert(timer);
    }
    if (!_host && !_isMain)
        attachHost(); // the start of another thread's event loop is not reported
    arm();
}

void RunLoopCore::remove(NSTimer* timer)
{
    const auto at = std::find(_timers.begin(), _timers.end(), timer);
    if (at == _timers.end())
        return; // being called: it is not put back
    const RetainPtr<NSTimer> keptUntilTheListIsWhole = std::move(*at);
    _timers.erase(at);
}

void RunLoopCore::insert(RetainPtr<NSTimer> timer)
{
    const auto isEarlier = [](const RetainPtr<NSTimer>& a, const RetainPtr<NSTimer>& b) {
        return a->_fireDate < b->_fireDate || (a->_fireDate == b->_fireDate && a->_sequence < b->_sequence);
    };
    const auto at = std::upper_bound(_timers.begin(), _timers.end(), timer, isEarlier);
    _timers.insert(at, std::move(timer));
}

std::optional<CFAbsoluteTime> RunLoopCore::nextFireDate() const
{
    for (const auto& timer : _timers) {
        if (mayFire(*timer))
            return timer->_fireDate;
    }
    return std::nullopt;
}

RetainPtr<NSTimer> RunLoopCore::takeDue(CFAbsoluteTime now, NSUInteger sequenceEnd)
{
    for (auto at = _timers.begin(); at != _timers.end() && (*at)->_fireDate <= now; ++at) {
        if ((*at)->_sequence < sequenceEnd && mayFire(**at)) {
            RetainPtr<NSTimer> timer = std::move(*at);
            _timers.erase(at);
            return timer;
        }
    }
    return nullptr;
}

void RunLoopCore::turn()
{
    followClock();
    runPosted();
    // Timers that are added while others fire, or are due again by then, wait for the next turn: otherwise a
    // timer that adds another one each time would block everything else.
    const CFAbsoluteTime now = Clock::current().now();
    const NSUInteger sequenceEnd = _nextSequence;
    while (RetainPtr<NSTimer> timer = takeDue(now, sequenceEnd)) {
        arm(); // its block may run a nested loop
        const Firing firing(*this, timer);
        timer->callBlock();
    }
    arm();
}

void RunLoopCore::post(std::function<void()> block)
{
    const std::lock_guard lock(_mutex);
    _posted.push_back(std::move(block));
    if (_host)
        _host->wakeSoon();
    _wake.notify_one();
}

bool RunLoopCore::hasBlocks()
{
    const std::lock_guard lock(_mutex);
    return takesBlocks() && !_posted.empty();
}

void RunLoopCore::runPosted()
{
    if (!takesBlocks())
        return;
    std::vector<std::function<void()>> blocks;
    {
        const std::lock_guard lock(_mutex);
        blocks.swap(_posted);
    }
    for (const auto& block : blocks) {
        block();
        ++_blocksRun;
    }
}

void RunLoopCore::push(const NSString& mode, CFAbsoluteTime limit)
{
    _loops.push_back({numberOf(mode), limit});
    arm();
}

void RunLoopCore::pop()
{
    _loops.pop_back();
    arm();
    // Blocks that had to wait for the mode to end are not announced again.
    const std::lock_guard lock(_mutex);
    if (_host && !_posted.empty())
        _host->wakeSoon();
}

bool RunLoopCore::run(const NSString& mode, CFAbsoluteTime limit, Until until)
{
    const RunLoopModeScope scope(mode, limit);
    const std::size_t depth = _loops.size();
    const NSUInteger blocksBefore = _blocksRun;
    bool hadWork = false;
    for (;;) {
        const auto next = nextFireDate();
        if (!next && !takesBlocks())
            return hadWork;
        hadWork = true;
        turn();
        const CFAbsoluteTime end = _loops[depth - 1].limit; // moves when the clock is set
        if (Clock::current().now() >= end || (until == Until::BlocksHaveRun && _blocksRun != blocksBefore))
            return true;
        waitUntil(std::min(end, nextFireDate().value_or(end)));
    }
}

void RunLoopCore::waitUntil(CFAbsoluteTime date)
{
    if (hasBlocks() || (!nextFireDate() && !takesBlocks()))
        return;
    Clock& clock = Clock::current();
    if (clock.jumpTo(date))
        return;
    if (_host) {
        arm(date);
        _host->serveEvents();
        return;
    }
    const CFTimeInterval seconds = std::clamp(date - clock.now(), 0.0, kLongestWait);
    std::unique_lock lock(_mutex);
    _wake.wait_for(
        lock, std::chrono::duration<double>(seconds), [&] { return takesBlocks() && !_posted.empty(); });
}

void RunLoopCore::arm(CFAbsoluteTime date)
{
    followClock();
    if (!_host)
        return;
    date = std::min(date, nextFireDate().value_or(date));
    if (std::isinf(date) || (_armedFor && *_armedFor <= date))
        return; // nothing to wake for, or it wakes early enough and checks again
    _armedFor = date;
    _host->wakeIn(std::clamp(date - Clock::current().now(), 0.0, kLongestWait));
}

void RunLoopCore::hostWoke()
{
    _armedFor.reset();
    turn();
}

/// Moves all dates along when the system's clock has been set.
void RunLoopCore::followClock()
{
    const Clock& clock = Clock::current();
    const CFTimeInterval offset = clock.now() - clock.uptime();
    const CFTimeInterval step = offset - std::exchange(_clockOffset, offset);
    if (_clockGeneration != Clock::generation()) {
        _clockGeneration = Clock::generation();
        _armedFor.reset();
        return;
    }
    if (std::abs(step) < kClockStep)
        return;
    for (const auto& timer : _timers) {
        timer->_start += step;
        timer->_fireDate += step;
    }
    for (Loop& loop : _loops)
        loop.limit += step;
    if (_armedFor)
        *_armedFor += step;
}

void RunLoopCore::attachHost()
{
    auto host = RunLoopHost::make(*this);
    {
        const std::lock_guard lock(_mutex);
        _host = std::move(host);
        if (_host && !_posted.empty())
            _host->wakeSoon();
    }
    _armedFor.reset();
    arm();
}

void RunLoopCore::detachHost()
{
    std::unique_ptr<RunLoopHost> host;
    const std::lock_guard lock(_mutex);
    host.swap(_host);
    _armedFor.reset();
}
