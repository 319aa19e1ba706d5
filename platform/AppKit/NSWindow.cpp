#include "NSWindowEvents.h"
#include "PointerTracker.h"

#include <AppKit/NSAppearance.h>
#include <AppKit/NSApplication.h>
#include <AppKit/NSColor.h>
#include <AppKit/NSWindow.h>
#include <Foundation/NSTimer.h>

#include <algorithm>
#include <cmath>

bool NSWindowDelegate::windowShouldClose(NSWindow*)
{
    return true;
}

void NSWindowDelegate::windowWillClose(NSWindow*) { }

namespace {

/// `number` clamped and rounded to a whole number; NaN counts as 0.
CGFloat wholeNumber(CGFloat number, CGFloat least, CGFloat greatest)
{
    return std::round(std::clamp(std::isnan(number) ? 0 : number, least, greatest));
}

/// A place on the screen in whole points, the unit of window systems.
NSRect wholePoints(NSRect rect)
{
    constexpr CGFloat farthest = 1e6;
    constexpr CGFloat longest = 10000;
    return NSMakeRect(wholeNumber(rect.origin.x, -farthest, farthest),
        wholeNumber(rect.origin.y, -farthest, farthest), wholeNumber(rect.size.width, 1, longest),
        wholeNumber(rect.size.height, 1, longest));
}

NSSize atLeast(NSSize size, NSSize minimum)
{
    return {std::max(size.width, minimum.width), std::max(size.height, minimum.height)};
}

} // namespace

NSWindow::NSWindow(NSRect contentRect, NSWindowStyleMask styleMask, NSBackingStoreType, bool)
    : _windowNumber(++NSApplication::sharedApplication()->_lastWindowNumber)
    , _styleMask(styleMask)
    , _contentRect(wholePoints(contentRect))
    , _pointer(std::make_unique<PointerTracker>(*this))
    , _events(std::make_unique<Events>(*this))
{
    NSApp->addWindow(this);
    setContentView(make<NSView>());
}

NSWindow::~NSWindow()
{
    NSApp->removeWindow(this);
    endAnimation();
    _host.reset();
    if (const auto view = std::move(_contentView))
        view->setWindow(nullptr);
}

HostWindow& NSWindow::host() const
{
    if (!_host) {
        _host = Host::shared().makeWindow(*_events, _styleMask, _contentRect);
        _host->setTitle(_title);
        _host->setMinimumContentSize(_contentMinSize);
    }
    return *_host;
}

// Content.

void NSWindow::setContentView(RetainPtr<NSView> view)
{
    if (view == _contentView)
        return;
    if (const RetainPtr<NSView> old = _contentView)
        old->removeFromSuperview();
    setNeedsDisplayInRect({NSZeroPoint, _contentRect.size});
    if (!view)
        return;
    view->detach();
    _contentView = view;
    view->setWindow(this);
    view->setFrame({NSZeroPoint, _contentRect.size});
    accessibilityDidChange(*view, HostAccessibilityChange::Shown);
}

void NSWindow::setTitle(NSString title)
{
    _title = std::move(title);
    if (_host)
        _host->setTitle(_title);
}

void NSWindow::setBackgroundColor(RetainPtr<NSColor> color)
{
    _backgroundColor = std::move(color);
    setNeedsDisplayInRect({NSZeroPoint, _contentRect.size});
}

void NSWindow::setDelegate(NSWindowDelegate* delegate)
{
    auto* object = dynamic_cast<NSObject*>(delegate);
    _delegate = delegate;
    _delegateObject = object;
    _delegateIsObject = object != nullptr;
}

NSWindowDelegate* NSWindow::delegate() const
{
    if (_delegateIsObject && !_delegateObject.lock())
        return nullptr;
    return _delegate;
}

void NSWindow::setNeedsDisplayInRect(NSRect rect)
{
    // A window that comes on screen for the first time is drawn as a whole anyway.
    if (_host)
        _host->setNeedsDisplayInRect(rect);
}

void NSWindow::displayIfNeeded()
{
    if (_layoutIsScheduled && _contentView)
        _contentView->layoutSubtreeIfNeeded();
    if (_host)
        _host->displayIfNeeded();
}

// Place.

NSRect NSWindow::contentRectForFrameRect(NSRect frame) const
{
    const NSRect outer = frameRectForContentRect(_contentRect);
    return NSMakeRect(frame.origin.x + NSMinX(_contentRect) - NSMinX(outer),
        frame.origin.y + NSMinY(_contentRect) - NSMinY(outer),
        frame.size.width - outer.size.width + _contentRect.size.width,
        frame.size.height - outer.size.height + _contentRect.size.height);
}

NSRect NSWindow::frameRectForContentRect(NSRect content) const
{
    return _host ? _host->frameForContentRect(content) : content;
}

NSRect NSWindow::frame() const
{
    return frameRectForContentRect(_contentRect);
}

void NSWindow::setFrameOrigin(NSPoint origin)
{
    setFrame({origin, frame().size}, false);
}

void NSWindow::setContentSize(NSSize size)
{
    NSRect content = wholePoints({_contentRect.origin, size});
    content.size = atLeast(content.size, _contentMinSize);
    content.origin.y = NSMaxY(_contentRect) - content.size.height;
    setContentRect(content);
}

void NSWindow::setContentMinSize(NSSize size)
{
    _contentMinSize = wholePoints({NSZeroPoint, size}).size;
    if (_host)
        _host->setMinimumContentSize(_contentMinSize);
    setContentSize(_contentRect.size);
}

void NSWindow::center()
{
    const NSRect screen = Host::shared().visibleScreenFrame();
    const NSRect outer = frame();
    const CGFloat freeWidth = std::max(screen.size.width - outer.size.width, 0.0);
    const CGFloat freeHeight = std::max(screen.size.height - outer.size.height, 0.0);
    // The optical centre is above the geometric one: a third of the free space lies above the window.
    setFrameOrigin({NSMinX(screen) + freeWidth / 2, NSMaxY(screen) - freeHeight / 3 - outer.size.height});
}

void NSWindow::setContentRect(NSRect content)
{
    if (_isEmbedded)
        return;
    content = wholePoints(content);
    content.size = atLeast(content.size, _contentMinSize);
    if (NSEqualRects(content, _contentRect))
        return;
    if (_host)
        _host->setContentRect(content);
    contentRectDidChange(content);
}

void NSWindow::contentRectDidChange(NSRect content)
{
    _contentRect = content;
    if (_contentView)
        _contentView->setFrame({NSZeroPoint, content.size});
}

NSPoint NSWindow::convertPointToScreen(NSPoint point) const
{
    return {point.x + _contentRect.origin.x, point.y + _contentRect.origin.y};
}

NSPoint NSWindow::convertPointFromScreen(NSPoint point) const
{
    return {point.x - _contentRect.origin.x, point.y - _contentRect.origin.y};
}

NSRect NSWindow::convertRectToScreen(NSRect rect) const
{
    return {convertPointToScreen(rect.origin), rect.size};
}

NSRect NSWindow::convertRectFromScreen(NSRect rect) const
{
    return {convertPointFromScreen(rect.origin), rect.size};
}

CGFloat NSWindow::backingScaleFactor() const
{
    return _host ? _host->backingScaleFactor() : Host::shared().backingScaleFactor();
}

// On and off the screen.

void NSWindow::makeKeyAndOrderFront(NSObject*)
{
    if (_isEmbedded)
        return makeKeyWindow();
    const RetainPtr<NSWindow> keep = this; // drawing starts at once and may release the window
    willShow();
    host().show(true);
}

void NSWindow::orderFront(NSObject*)
{
    if (_isEmbedded)
        return;
    const RetainPtr<NSWindow> keep = this;
    willShow();
    host().show(false);
}

/// Lays the views out. Makes the initial first responder first responder, before the window is first shown.
void NSWindow::willShow()
{
    if (_contentView)
        _contentView->layoutSubtreeIfNeeded();
    if (std::exchange(_wasShown, true) || firstResponder() != this)
        return;
    if (const RetainPtr<NSView> view = _initialFirstResponder.lock())
        makeFirstResponder(view);
}

void NSWindow::orderOut(NSObject*)
{
    if (!isVisible() || _isEmbedded)
        return;
    _host->hide();
    leaveScreen();
}

void NSWindow::close()
{
    if (!isVisible() || _isClosing || _isEmbedded)
        return;
    const RetainPtr<NSWindow> keep = this;
    _isClosing = true;
    if (NSWindowDelegate* delegate = this->delegate())
        delegate->windowWillClose(this);
    _isClosing = false;
    if (!isVisible())
        return;
    _host->close();
    leaveScreen();
}

void NSWindow::performClose(NSObject*)
{
    if (!isVisible() || !(_styleMask & NSWindowStyleMaskClosable))
        return;
    const RetainPtr<NSWindow> keep = this;
    NSWindowDelegate* delegate = this->delegate();
    if (!delegate || delegate->windowShouldClose(this))
        close();
}

/// The events of pressed buttons no longer arrive: forgets the presses, and ends a call of
/// nextEventMatchingMask that follows the mouse in this window.
void NSWindow::leaveScreen()
{
    const bool isPressed = isAnyButtonDown();
    for (Press& press : _presses)
        cancelPress(press);
    _presses = {};
    if (isPressed)
        NSApp->endWaiting();
}

bool NSWindow::isVisible() const
{
    return _host && _host->isVisible();
}

bool NSWindow::isKeyWindow() const
{
    return _host && _host->isKey();
}

/// Whether keys go to the window, or to another part of the one that it is embedded in.
bool NSWindow::isActive() const
{
    return _host && _host->isActive();
}

void NSWindow::makeKeyWindow()
{
    if (isVisible())
        _host->makeKey();
}

// Appearance.

NSAppearance* NSWindow::effectiveAppearance() const
{
    const bool isChosen = NSApp->_appearance || NSApp->_appearanceForTests;
    const auto isDark = _host && !isChosen ? _host->isDark() : std::nullopt;
    if (!isDark)
        return NSApp->effectiveAppearance();
    // Appearances are never destroyed.
    return NSAppearance::appearanceNamed(*isDark ? NSAppearanceNameDarkAqua : NSAppearanceNameAqua).get();
}
