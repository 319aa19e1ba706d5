#pragma once

#include <Foundation/CFDate.h>

#include <memory>

class RunLoopCore;

/// The event loop of a thread, seen from the run loop that lives in it: it wakes the run loop at a date or
/// on request. Without one, a run loop works only while its own run functions are called.
class RunLoopHost {
public:
    virtual ~RunLoopHost() = default;

    /// Wakes the run loop once, `seconds` from now (at once for 0 and less), instead of when it said before.
    virtual void wakeIn(CFTimeInterval seconds) = 0;
    /// Wakes the run loop soon. Safe on any thread.
    virtual void wakeSoon() = 0;
    /// Waits for events of the thread, waking the run loop among them, and serves them.
    virtual void serveEvents() = 0;

    /// The host of the calling thread for its run loop `core`; null when the thread has no event loop.
    static std::unique_ptr<RunLoopHost> make(RunLoopCore& core);
};
