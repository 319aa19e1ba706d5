#pragma once

#include <Foundation/NSObject.h>

#include <memory>

class NSDate;
class NSTimer;
class RunLoopCore;

/// What a run loop is doing, which decides the timers that it fires.
using NSRunLoopMode = NSString;

/// The ordinary mode; also the mode of Qt's event loop as long as nothing else was announced.
extern KORVID_EXPORT const NSString NSDefaultRunLoopMode;
/// While a control follows the mouse.
extern KORVID_EXPORT const NSString NSEventTrackingRunLoopMode;
/// For a program's own loop around a modal window. Alerts run in the default mode.
extern KORVID_EXPORT const NSString NSModalPanelRunLoopMode;
/// Not a mode of its own: a timer added for it fires in each of the three above.
extern KORVID_EXPORT const NSString NSRunLoopCommonModes;

/// Fires the timers of one thread and, on the main thread, runs the blocks of the main queue.
///
/// Each thread has its own, created on first use. Inside a Qt event loop, nested ones included, the timers of
/// the current mode fire by themselves, to the millisecond. Without a QCoreApplication they fire while one of
/// the run functions below is running. Timers that are due together fire in the order of their fire dates,
/// then in the order in which they were added.
///
/// Use a run loop on its own thread only. A thread that ends drops its timers without firing them. On a
/// thread other than the main one, the event loop of its QThread or QEventLoop is used if it exists when a
/// timer is added.
class KORVID_EXPORT NSRunLoop : public NSObject {
public:
    /// The run loop of the calling thread, which owns it.
    static NSRunLoop* currentRunLoop();
    /// The run loop of the process's first thread. Never destroyed.
    static NSRunLoop* mainRunLoop();

    /// The mode of the innermost running loop; null when there is none, and in a Qt event loop that was not
    /// announced.
    NSString currentMode() const;

    /// Fires `timer` in `mode` from now on and retains it until it is invalidated.
    ///
    /// A timer may be in several modes, of one run loop only: what would put it into a second run loop is
    /// ignored, and so are a null or invalid timer and a null mode.
    void addTimer(RetainPtr<NSTimer> timer, const NSRunLoopMode& mode);

    /// Runs in the default mode until `limit`, serving Qt's events too where there is a Qt event loop.
    ///
    /// Returns at once for a date that is past or null; apart from the main run loop, which may be sent
    /// blocks, also as soon as no timer is left that could fire.
    void runUntilDate(NSDate* limit);

    /// Runs in `mode` until it has run blocks of the main queue, or until `limit`, whichever comes first;
    /// firing a timer does not end it. A past or null date makes one turn without waiting.
    ///
    /// Returns false, at once, when there is nothing to wait for: no timer in the mode, and not the main
    /// run loop in one of the common modes; or when `mode` is null or NSRunLoopCommonModes.
    bool runMode(const NSRunLoopMode& mode, NSDate* limit);

protected:
    ~NSRunLoop() override;

private:
    friend class RunLoopCore;
    explicit NSRunLoop(bool isMain);

    std::unique_ptr<RunLoopCore> _core;
};
