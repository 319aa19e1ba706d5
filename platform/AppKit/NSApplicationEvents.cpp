#include "Foundation/RunLoop.h"
#include "Host.h"

#include <AppKit/NSApplication.h>
#include <AppKit/NSWindow.h>
#include <Foundation/CFDate.h>
#include <Foundation/NSDate.h>
#include <Foundation/NSLog.h>

#include <algorithm>
#include <exception>

/// Queues an event of the window system while a caller waits in nextEventMatchingMask, else dispatches it.
void NSApplication::handleEvent(NSEvent* event)
{
    if (_waiters > 0 || !_events.empty()) {
        postEvent(event, false);
        return;
    }
    // An exception must not unwind the window system's event loop: it would not survive that.
    try {
        sendEvent(event);
    } catch (const std::exception& exception) {
        NSLog("An event could not be handled: %@", exception.what());
    }
}

void NSApplication::postEvent(RetainPtr<NSEvent> event, bool atStart)
{
    if (!event)
        return;
    if (atStart)
        _events.push_front(std::move(event));
    else
        _events.push_back(std::move(event));
    sendQueuedEventsLater();
}

void NSApplication::sendQueuedEventsLater()
{
    // Not on the main queue, which stands still while one of its blocks waits for an event.
    RunLoopCore::main().post([this] { sendQueuedEvents(); });
}

/// Dispatches queued events, unless a caller is waiting in nextEventMatchingMask: that call may want them.
void NSApplication::sendQueuedEvents()
{
    while (_waiters == 0) {
        const RetainPtr<NSEvent> event = firstEvent(NSEventMaskAny, true);
        if (!event)
            return;
        try {
            sendEvent(event);
        } catch (const std::exception& exception) {
            NSLog("An event could not be handled: %@", exception.what());
        }
    }
}

void NSApplication::sendEvent(NSEvent* event)
{
    if (!event)
        return;
    _currentEvent = event;
    if (const RetainPtr<NSWindow> window = event->window())
        window->sendEvent(event);
}

bool NSApplication::sendAction(SEL action, NSObject* target, NSObject* sender)
{
    if (!action)
        return false;
    const RetainPtr<NSObject> keptTarget = target;
    const RetainPtr<NSObject> keptSender = sender;
    if (target)
        return action(target, sender);
    const RetainPtr<NSWindow> window = keyWindow();
    const RetainPtr<NSResponder> first = window ? window->firstResponder() : nullptr;
    return (first && first->tryToPerform(action, sender)) || tryToPerform(action, sender);
}

RetainPtr<NSEvent> NSApplication::firstEvent(NSEventMask mask, bool dequeue)
{
    const auto position = std::find_if(_events.begin(), _events.end(),
        [&](const RetainPtr<NSEvent>& event) { return (mask & (1ULL << event->type())) != 0; });
    if (position == _events.end())
        return nullptr;
    RetainPtr<NSEvent> event = *position;
    if (dequeue)
        _events.erase(position);
    return event;
}

RetainPtr<NSEvent> NSApplication::nextEventMatchingMask(
    NSEventMask mask, NSDate* expiration, const NSRunLoopMode& mode, bool dequeue)
{
    constexpr NSEventMask releases =
        NSEventMaskLeftMouseUp | NSEventMaskRightMouseUp | NSEventMaskOtherMouseUp;

    RetainPtr<NSEvent> event = firstEvent(mask, dequeue);
    ++_waiters;
    _waitingEnded = false;
    while (!event && expiration && expiration->timeIntervalSinceReferenceDate() > CFAbsoluteTimeGetCurrent()
        && NSRunLoop::currentRunLoop()->runMode(mode, expiration) && !_waitingEnded)
        event = firstEvent(mask, dequeue);
    --_waiters;
    _waitingEnded = false;

    // Events that arrived meanwhile and did not match still have to reach their windows.
    if (_waiters == 0 && !_events.empty())
        sendQueuedEventsLater();
    if (!event)
        return nullptr;

    _currentEvent = event;
    // The window will not see this release: it must not think the button is still down.
    const RetainPtr<NSWindow> window = event->window();
    if (window && dequeue && (releases & (1ULL << event->type())))
        window->forgetPress(*event);
    return event;
}

void NSApplication::endWaiting()
{
    _suspendedWaitingEnded = _alertDepth > 0;
    if (_waiters == 0)
        return;
    _waitingEnded = true;
    RunLoopCore::main().post([] {}); // wakes the run loop of the waiting call
}
