#pragma once

#include <AppKit/NSEvent.h>
#include <AppKit/NSResponder.h>
#include <Foundation/NSRunLoop.h>

#include <atomic>
#include <deque>
#include <vector>

class NSAppearance;
class NSWindow;
struct HostAlert;
enum class HostCursor : int;

/// The result of a modal dialog; an alert's own results are in NSAlert.h.
using NSModalResponse = NSInteger;

/// The program ended the dialog, not the user.
inline constexpr NSModalResponse NSModalResponseAbort = -1001;

/// The application: its connection to the window system, its event loop, its windows and its appearance.
///
/// There is one object, made by the first call of `sharedApplication()` and never destroyed. Inside a Qt
/// application it uses the existing QApplication; otherwise it makes one, and Qt's warnings go to `NSLog`
/// (unless the program has a message handler of its own for Qt). Where there is no display to open
/// (neither DISPLAY nor WAYLAND_DISPLAY leads to one, an X server has five seconds to reply, and
/// QT_QPA_PLATFORM does not choose), windows exist in memory only, and everything else works.
///
///     NSApplication* app = NSApplication::sharedApplication();
///     auto window = make<NSWindow>(NSMakeRect(0, 0, 400, 300), style, NSBackingStoreBuffered, false);
///     window->makeKeyAndOrderFront();
///     app->run();
///
/// Main thread only, but for `effectiveAppearance()`.
class KORVID_EXPORT NSApplication final : public NSResponder {
public:
    /// The application object, made at the first call.
    ///
    /// Throws NSException with the name NSInternalInconsistencyException when QT_QPA_PLATFORM chooses only
    /// platforms that Qt does not have or whose display cannot be opened. A process whose Qt application is
    /// only a QCoreApplication has no windows: it is stopped with a message.
    static NSApplication* sharedApplication();

    /// Whether windows appear on a display. False where they exist in memory only.
    ///
    /// Differs: Apple's has no such method, since there always is a display.
    bool hasDisplay() const;

    /// Dispatches events until `stop` or `terminate`. Loops may be nested. An application that runs its own
    /// QApplication::exec() need not call this.
    void run();
    /// Ends the innermost `run()` after the current event, and first the alerts that are shown within it;
    /// without one, does nothing.
    ///
    /// Differs: Apple's ends an alert only.
    void stop(NSObject* sender = nullptr);
    /// Ends the alert on top, whose `runModal` returns NSModalResponseAbort. Does nothing without one.
    void abortModal();
    /// Ends all alerts and `run()` loops; later ones return at once. Windows stay as they are.
    ///
    /// Differs: Apple's ends the process. Here `run()` returns, so that `main` can clean up and return.
    void terminate(NSObject* sender = nullptr);
    /// True within `run()`, until `stop` or `terminate`.
    bool isRunning() const { return _runDepth > 0 && !_isStopping && !_isTerminated; }

    // Events. Those of the window system go through `sendEvent` one by one, unless a caller is waiting in
    // `nextEventMatchingMask`.

    /// Returns the first queued event of the types in `mask`, and removes it from the queue if `dequeue`;
    /// waits for one until `expiration`, running the run loop in `mode`. Null when none arrived.
    ///
    /// This is how a view follows the mouse from within its `mouseDown`:
    ///
    ///     while (auto next = NSApp->nextEventMatchingMask(
    ///                NSEventMaskLeftMouseDragged | NSEventMaskLeftMouseUp, deadline,
    ///                NSEventTrackingRunLoopMode, true)) { … }
    ///
    /// A past or null date does not wait. Pass a date in the near future, and handle null: a window that
    /// closes or loses the pointer ends the wait with null, and the events of its press never arrive.
    RetainPtr<NSEvent> nextEventMatchingMask(
        NSEventMask mask, NSDate* expiration, const NSRunLoopMode& mode, bool dequeue);
    /// Adds an event to the end or the start of the queue. It is dispatched in a later turn of the event
    /// loop, unless `nextEventMatchingMask` has removed it before. Null does nothing.
    void postEvent(RetainPtr<NSEvent> event, bool atStart);
    /// Calls the `sendEvent` of the event's window. An event without a window is dropped; null does nothing.
    void sendEvent(NSEvent* event);
    /// Sends an action to `target`: calls that method with `sender` as its argument. Returns whether the
    /// target has such a method.
    ///
    /// Without a target, the first one that has the method performs it: the key window's first responder,
    /// then the responders after it up to the window, the window's delegate, and this application. A null
    /// action returns false. Target and sender live until the action returns.
    bool sendAction(SEL action, NSObject* target, NSObject* sender);
    /// The event that was dispatched, or returned by `nextEventMatchingMask`, last. Borrowed; null before the
    /// first.
    NSEvent* currentEvent() const { return _currentEvent.get(); }

    /// All windows, shown or not, in the order in which they were made.
    std::vector<RetainPtr<NSWindow>> windows() const;
    /// The window with that number; null when there is none. Borrowed.
    NSWindow* windowWithWindowNumber(NSInteger windowNumber) const;
    /// The window with the keyboard focus. Borrowed; null when no window of this application has it.
    NSWindow* keyWindow() const;

    /// The appearance that the application sets; null (the default) follows the desktop. Borrowed.
    NSAppearance* appearance() const { return _appearance.get(); }
    /// Retains the appearance. May change the effective one, which then notifies.
    void setAppearance(RetainPtr<NSAppearance> appearance);

    /// The appearance in effect: `appearance()`, else the desktop's current preference, light or dark.
    /// Borrowed, never null, never destroyed. Safe on any thread.
    ///
    /// The preference is read from the desktop's settings portal, whose reply arrives once the event loop
    /// runs. Until then, and without a portal or a preference, the palette of Qt decides: dark when its
    /// window colour is. Observable under "effectiveAppearance": observers are notified when it changes, and
    /// only then; all windows are redrawn.
    NSAppearance* effectiveAppearance() const { return _effectiveAppearance.load(std::memory_order_relaxed); }

    /// Knows "effectiveAppearance" and "appearance".
    RetainPtr<NSObject> valueForKey(const NSString& key) override;

protected:
    ~NSApplication() override;

private:
    friend class EffectiveAppearance;
    friend class NSAlert;
    friend class NSCursor;
    friend class NSWindow;

    NSApplication();

    NSModalResponse runModal(const HostAlert& alert);
    void showCursor(HostCursor cursor);
    void addWindow(NSWindow* window);
    void removeWindow(NSWindow* window);
    void handleEvent(NSEvent* event);
    void endWaiting();
    void sendQueuedEvents();
    void sendQueuedEventsLater();
    RetainPtr<NSEvent> firstEvent(NSEventMask mask, bool dequeue);
    void updateEffectiveAppearance();

    std::vector<NSWindow*> _windows;
    std::deque<RetainPtr<NSEvent>> _events;
    RetainPtr<NSEvent> _currentEvent;
    RetainPtr<NSAppearance> _appearance;
    RetainPtr<NSAppearance> _appearanceForTests;
    std::atomic<NSAppearance*> _effectiveAppearance{nullptr};
    NSInteger _lastWindowNumber = 0;
    int _runDepth = 0;
    int _alertDepth = 0; ///< alerts within the innermost run
    int _waiters = 0;    ///< nested calls that wait for an event
    bool _isStopping = false;
    bool _isTerminated = false;
    bool _waitingEnded = false;
    bool _suspendedWaitingEnded = false; ///< of callers further up, while an alert is shown
};

/// The application object; null until the first call of `NSApplication::sharedApplication()`.
extern KORVID_EXPORT NSApplication* NSApp;
