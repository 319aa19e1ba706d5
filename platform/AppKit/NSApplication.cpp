#include "ApplicationAppearance.h"
#include "Foundation/RunLoop.h"
#include "Host.h"

#include <AppKit/NSAlert.h>
#include <AppKit/NSAppearance.h>
#include <AppKit/NSApplication.h>
#include <AppKit/NSWindow.h>
#include <Foundation/NSException.h>

#include <algorithm>
#include <utility>

NSApplication* NSApp = nullptr;

NSApplication::NSApplication()
{
    updateEffectiveAppearance();
    Host::shared().setAppearanceObserver([this] { updateEffectiveAppearance(); });
}

NSApplication::~NSApplication() = default;

NSApplication* NSApplication::sharedApplication()
{
    if (!NSApp)
        NSApp = new NSApplication;
    return NSApp;
}

bool NSApplication::hasDisplay() const
{
    return Host::shared().hasDisplay();
}

void NSApplication::run()
{
    if (_isTerminated)
        return;
    const int alerts = std::exchange(_alertDepth, 0);
    ++_runDepth;
    Host::shared().run();
    --_runDepth;
    _alertDepth = alerts;
    _isStopping = false;
}

NSModalResponse NSApplication::runModal(const HostAlert& alert)
{
    if (_isTerminated)
        return NSModalResponseAbort;
    // A caller further up that waits for an event does not get those of the alert.
    const int waiters = std::exchange(_waiters, 0);
    const bool suspendedWaitingEnded = std::exchange(_suspendedWaitingEnded, false);
    ++_alertDepth;
    const auto button = [&] {
        const RunLoopModeScope mode(NSDefaultRunLoopMode);
        return Host::shared().runAlert(alert);
    }();
    --_alertDepth;
    _waiters = waiters;
    if (std::exchange(_suspendedWaitingEnded, suspendedWaitingEnded))
        endWaiting();
    return button ? NSAlertFirstButtonReturn + NSModalResponse(*button) : NSModalResponseAbort;
}

void NSApplication::abortModal()
{
    if (_alertDepth > 0)
        Host::shared().stop(1);
}

void NSApplication::stop(NSObject*)
{
    if (!isRunning())
        return;
    _isStopping = true;
    Host::shared().stop(std::size_t(_alertDepth) + 1);
}

void NSApplication::terminate(NSObject*)
{
    _isTerminated = true;
    endWaiting();
    Host::shared().stopAll();
}

// Windows.

void NSApplication::addWindow(NSWindow* window)
{
    _windows.push_back(window);
}

void NSApplication::removeWindow(NSWindow* window)
{
    std::erase(_windows, window);
}

std::vector<RetainPtr<NSWindow>> NSApplication::windows() const
{
    return {_windows.begin(), _windows.end()};
}

NSWindow* NSApplication::windowWithWindowNumber(NSInteger windowNumber) const
{
    const auto window = std::find_if(_windows.begin(), _windows.end(),
        [&](const NSWindow* candidate) { return candidate->windowNumber() == windowNumber; });
    return window == _windows.end() ? nullptr : *window;
}

NSWindow* NSApplication::keyWindow() const
{
    const auto window = std::find_if(
        _windows.begin(), _windows.end(), [](const NSWindow* candidate) { return candidate->isKeyWindow(); });
    return window == _windows.end() ? nullptr : *window;
}

/// Shows the cursor over all windows.
void NSApplication::showCursor(HostCursor cursor)
{
    for (NSWindow* const window : _windows) {
        if (window->_host)
            window->_host->setCursor(cursor);
    }
}

// Appearance.

void NSApplication::setAppearance(RetainPtr<NSAppearance> appearance)
{
    if (appearance == _appearance)
        return;
    willChangeValueForKey("appearance");
    _appearance = std::move(appearance);
    didChangeValueForKey("appearance");
    updateEffectiveAppearance();
    // These follow what is around them instead of the desktop.
    for (const auto& window : windows()) {
        if (window->_isEmbedded)
            window->setNeedsDisplayInRect({NSZeroPoint, window->_contentRect.size});
    }
}

void NSApplication::updateEffectiveAppearance()
{
    RetainPtr<NSAppearance> effective = _appearanceForTests ? _appearanceForTests : _appearance;
    if (!effective) {
        effective = NSAppearance::appearanceNamed(
            Host::shared().isDark() ? NSAppearanceNameDarkAqua : NSAppearanceNameAqua);
    }
    if (effective == this->effectiveAppearance())
        return;

    // An appearance that was made once lives as long as the process.
    willChangeValueForKey("effectiveAppearance");
    _effectiveAppearance.store(effective, std::memory_order_relaxed);
    setApplicationAppearance(effective);
    didChangeValueForKey("effectiveAppearance");
    for (const auto& window : windows())
        window->setNeedsDisplayInRect({NSZeroPoint, window->_contentRect.size});
}

RetainPtr<NSObject> NSApplication::valueForKey(const NSString& key)
{
    if (key == "effectiveAppearance")
        return RetainPtr<NSObject>(effectiveAppearance());
    if (key == "appearance")
        return RetainPtr<NSObject>(appearance());
    return NSObject::valueForKey(key);
}
