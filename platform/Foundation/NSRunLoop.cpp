#include <Foundation/NSRunLoop.h>

#include "Foundation/Clock.h"
#include "Foundation/RunLoop.h"

#include <Foundation/NSDate.h>

const NSString NSDefaultRunLoopMode("kCFRunLoopDefaultMode");
const NSString NSEventTrackingRunLoopMode("NSEventTrackingRunLoopMode");
const NSString NSModalPanelRunLoopMode("NSModalPanelRunLoopMode");
const NSString NSRunLoopCommonModes("kCFRunLoopCommonModes");

namespace {

/// The date in seconds; the distant past, which is never waited for, for null.
CFAbsoluteTime limitOf(const NSDate* date)
{
    return date ? date->timeIntervalSinceReferenceDate() : -std::numeric_limits<CFAbsoluteTime>::infinity();
}

} // namespace

NSRunLoop::NSRunLoop(bool isMain)
    : _core(std::make_unique<RunLoopCore>(isMain))
{
}

NSRunLoop::~NSRunLoop() = default;

NSRunLoop* NSRunLoop::mainRunLoop()
{
    static NSRunLoop* const runLoop = new NSRunLoop(true);
    return runLoop;
}

NSRunLoop* NSRunLoop::currentRunLoop()
{
    if (isMainThread())
        return mainRunLoop();
    static thread_local const RetainPtr<NSRunLoop> runLoop = adopt(new NSRunLoop(false));
    return runLoop.get();
}

RunLoopCore& RunLoopCore::current()
{
    return *NSRunLoop::currentRunLoop()->_core;
}

RunLoopCore& RunLoopCore::main()
{
    return *NSRunLoop::mainRunLoop()->_core;
}

NSString NSRunLoop::currentMode() const
{
    return _core->currentMode();
}

void NSRunLoop::addTimer(RetainPtr<NSTimer> timer, const NSRunLoopMode& mode)
{
    _core->add(timer, mode);
}

bool NSRunLoop::runMode(const NSRunLoopMode& mode, NSDate* limit)
{
    if (mode.isNull() || mode == NSRunLoopCommonModes)
        return false;
    return _core->run(mode, limitOf(limit), RunLoopCore::Until::BlocksHaveRun);
}

void NSRunLoop::runUntilDate(NSDate* limit)
{
    const CFAbsoluteTime end = limitOf(limit);
    if (Clock::current().now() < end)
        _core->run(NSDefaultRunLoopMode, end, RunLoopCore::Until::Limit);
}
