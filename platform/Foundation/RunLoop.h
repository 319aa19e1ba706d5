#pragma once

#include "Foundation/RunLoopHost.h"

#include <Foundation/NSRunLoop.h>
#include <Foundation/NSTimer.h>

#include <condition_variable>
#include <limits>
#include <mutex>
#include <optional>

/// The state of an NSRunLoop: timers in the order in which they fire, a stack of running loops, and the
/// blocks posted by other threads.
///
/// Only `post` is safe on any thread; call everything else on the run loop's own.
class RunLoopCore {
public:
    explicit RunLoopCore(bool isMain);
    RunLoopCore(const RunLoopCore&) = delete;
    RunLoopCore& operator=(const RunLoopCore&) = delete;
    ~RunLoopCore();

    static RunLoopCore& current();
    static RunLoopCore& main();

    void add(NSTimer* timer, const NSString& mode);
    void remove(NSTimer* timer);

    /// A loop begins or ends on this thread: see RunLoopModeScope.
    void push(const NSString& mode, CFAbsoluteTime limit);
    void pop();
    /// Null when no announced loop is running.
    NSString currentMode() const;

    /// Runs posted blocks, then fires the timers that are due, once each.
    void turn();
    enum class Until { BlocksHaveRun, Limit };
    /// Makes turns in `mode` until `limit`, or until posted blocks have run if these are to end it. False,
    /// at once, when there is nothing to wait for.
    bool run(const NSString& mode, CFAbsoluteTime limit, Until until);
    /// Fire date of the first timer that may fire in the current mode.
    std::optional<CFAbsoluteTime> nextFireDate() const;
    /// True when posted blocks wait that may run in the current mode.
    bool hasBlocks();

    /// Schedules the host's next wake-up: for the first timer, or at `date` if that is earlier.
    void arm(CFAbsoluteTime date = std::numeric_limits<CFAbsoluteTime>::infinity());

    /// Schedules `block` to run in a turn on the run loop's thread.
    void post(std::function<void()> block);

    /// The thread's event loop has started, or is about to end.
    void attachHost();
    void detachHost();
    /// Called when the host has woken up: the next wake-up has to be scheduled.
    void hostWoke();

private:
    struct Loop {
        unsigned mode;
        CFAbsoluteTime limit;
    };
    class Firing;

    /// Modes are compared by number, which is fast: each turn compares those of the timers.
    unsigned numberOf(const NSString& mode);
    unsigned mode() const;
    bool takesBlocks() const;
    bool mayFire(const NSTimer& timer) const;
    RetainPtr<NSTimer> takeDue(CFAbsoluteTime now, NSUInteger sequenceEnd);
    void insert(RetainPtr<NSTimer> timer);
    void runPosted();
    void followClock();
    void waitUntil(CFAbsoluteTime date);

    const bool _isMain;
    std::vector<NSString> _modeNames;        ///< by number
    std::vector<RetainPtr<NSTimer>> _timers; ///< by fire date, then by sequence
    NSUInteger _nextSequence = 0;
    std::vector<Loop> _loops;
    NSUInteger _blocksRun = 0;
    CFTimeInterval _clockOffset = 0; ///< the clock's time less its uptime
    unsigned _clockGeneration = 0;
    std::optional<CFAbsoluteTime> _armedFor;

    std::mutex _mutex; ///< guards the two below against `post`
    std::vector<std::function<void()>> _posted;
    std::unique_ptr<RunLoopHost> _host;
    std::condition_variable _wake;
};

/// Announces a nested loop that runs on this thread, Qt's own or one of AppKit's, so that only the
/// timers of its mode fire.
class RunLoopModeScope {
public:
    explicit RunLoopModeScope(
        const NSString& mode, CFAbsoluteTime limit = std::numeric_limits<CFAbsoluteTime>::infinity())
    {
        _core.push(mode, limit);
    }
    RunLoopModeScope(const RunLoopModeScope&) = delete;
    RunLoopModeScope& operator=(const RunLoopModeScope&) = delete;
    ~RunLoopModeScope() { _core.pop(); }

private:
    RunLoopCore& _core = RunLoopCore::current();
};

/// True on the process's first thread.
bool isMainThread();
