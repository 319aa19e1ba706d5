#include "NSWindowEvents.h"

#include "ViewPainter.h"

#include <AppKit/NSAppearance.h>
#include <AppKit/NSApplication.h>
#include <AppKit/NSColor.h>
#include <Foundation/CFDate.h>
#include <Foundation/NSLog.h>

#include <algorithm>
#include <cmath>
#include <exception>

namespace {

/// The index of a mouse button: left, right, or any other.
std::size_t slot(NSInteger button)
{
    return static_cast<std::size_t>(std::clamp<NSInteger>(button, 0, 2));
}

/// The background gray of a window without a background colour.
CGFloat defaultBackground(const NSAppearance& appearance)
{
    const bool isDark =
        appearance.bestMatchFromAppearancesWithNames({NSAppearanceNameAqua, NSAppearanceNameDarkAqua})
        == NSAppearanceNameDarkAqua;
    return isDark ? 30 / 255.0 : 236 / 255.0;
}

/// Fills a rectangle with the window's background, whatever was there.
void fillBackground(const NSWindow& window, CGContextRef context, CGRect rect)
{
    CGContextSaveGState(context);
    CGContextSetBlendMode(context, kCGBlendModeCopy);
    if (const NSColor* color = window.backgroundColor()) {
        CGContextSetFillColorWithColor(context, color->CGColor());
    } else {
        const CGFloat shade = defaultBackground(*NSApp->effectiveAppearance());
        CGContextSetRGBFillColor(context, shade, shade, shade, 1);
    }
    CGContextFillRect(context, rect);
    CGContextRestoreGState(context);
}

} // namespace

// Drawing.

void NSWindow::Events::draw(
    CGContextRef context, CGAffineTransform baseFromWindow, const CGRect* baseRects, std::size_t count)
{
    const RetainPtr<NSWindow> window = &_window;
    ViewPainter painter(context, _layerMemory);
    for (std::size_t i = 0; i < count; ++i) {
        fillBackground(*window, context, baseRects[i]);
        const RetainPtr<NSView> view = window->_contentView;
        if (!view || view->_isHidden)
            continue;
        // An exception must neither leave other windows undrawn nor unwind the window system's event loop.
        try {
            painter.draw(*view, CGAffineTransformConcat(view->superviewFromView(), baseFromWindow),
                baseRects[i], [&] { fillBackground(*window, context, baseRects[i]); });
        } catch (const std::exception& exception) {
            NSLog("A view failed to draw: %@", exception.what());
        }
    }
}

void NSWindow::Events::contentRectDidChange(NSRect content)
{
    const RetainPtr<NSWindow> window = &_window;
    window->contentRectDidChange(content);
}

// Events from the window system.

NSWindow::Events::Click NSWindow::Events::clickForPress(
    NSInteger button, NSPoint location, NSTimeInterval timestamp)
{
    // A hand may move the pointer a little between two clicks.
    constexpr CGFloat kSlip = 4; // points
    const NSTimeInterval pause = timestamp - _lastTimestamp;
    const bool continues = button == _lastButton && pause >= 0 && pause <= NSEvent::doubleClickInterval()
        && std::fabs(location.x - _lastLocation.x) <= kSlip
        && std::fabs(location.y - _lastLocation.y) <= kSlip;
    _lastClick = {_lastClick.number + 1, continues ? _lastClick.count + 1 : 1};
    _lastButton = button;
    _lastLocation = location;
    _lastTimestamp = timestamp;
    return _lastClick;
}

void NSWindow::Events::mouseEvent(const HostMouseEvent& event)
{
    constexpr NSEventType types[3][3] = {
        {NSEventTypeLeftMouseDown, NSEventTypeLeftMouseDragged, NSEventTypeLeftMouseUp},
        {NSEventTypeRightMouseDown, NSEventTypeRightMouseDragged, NSEventTypeRightMouseUp},
        {NSEventTypeOtherMouseDown, NSEventTypeOtherMouseDragged, NSEventTypeOtherMouseUp},
    };
    const RetainPtr<NSWindow> window = &_window;
    const NSTimeInterval timestamp = CFAbsoluteTimeGetCurrent();
    Click& click = _clicks[slot(event.button)];
    if (event.action == HostAction::Down)
        click = clickForPress(event.button, event.location, timestamp);

    NSEvent::Fields fields{types[slot(event.button)][static_cast<int>(event.action)], event.location,
        event.modifierFlags, timestamp};
    fields.buttonNumber = event.button;
    fields.eventNumber = click.number;
    fields.clickCount = click.count;
    fields.pressure = event.action == HostAction::Up ? 0 : 1;
    NSApp->handleEvent(adopt(new NSEvent(std::move(fields), window)).get());
}

void NSWindow::Events::scrollEvent(const HostScrollEvent& event)
{
    const RetainPtr<NSWindow> window = &_window;
    NSEvent::Fields fields{
        NSEventTypeScrollWheel, event.location, event.modifierFlags, CFAbsoluteTimeGetCurrent()};
    fields.scrollingDelta = event.delta;
    fields.hasPreciseScrollingDeltas = event.isPrecise;
    NSApp->handleEvent(adopt(new NSEvent(std::move(fields), window)).get());
}

void NSWindow::Events::keyEvent(const HostKeyEvent& event)
{
    const RetainPtr<NSWindow> window = &_window;
    NSEvent::Fields fields{event.action == HostAction::Down ? NSEventTypeKeyDown : NSEventTypeKeyUp,
        event.location, event.modifierFlags, CFAbsoluteTimeGetCurrent()};
    fields.characters = event.characters;
    fields.charactersIgnoringModifiers = event.charactersIgnoringModifiers;
    fields.isARepeat = event.isARepeat;
    NSApp->handleEvent(adopt(new NSEvent(std::move(fields), window)).get());
}

void NSWindow::Events::closeRequested()
{
    _window.performClose();
}

HostToolTip NSWindow::Events::toolTipAt(NSPoint location)
{
    NSView* content = _window.contentView();
    for (NSView* view = content ? content->hitTest(location) : nullptr; view; view = view->superview()) {
        if (view->toolTip())
            return {view->toolTip(), view->convertRectToView(view->visibleRect(), nullptr)};
    }
    return {};
}

// Events to views.

void NSWindow::sendEvent(NSEvent* event)
{
    if (!event)
        return;

    using Handler = void (NSResponder::*)(NSEvent*);
    const RetainPtr<NSWindow> keepWindow = this;
    const RetainPtr<NSEvent> keepEvent = event;
    const auto press = [&](Handler handler) {
        Press& pressed = _presses[slot(event->buttonNumber())];
        const RetainPtr<NSView> view =
            _contentView ? _contentView->hitTest(event->locationInWindow()) : nullptr;
        pressed = {view, true};
        if (!view)
            return;
        if (event->type() == NSEventTypeLeftMouseDown && view->acceptsFirstResponder()
            && view.get() != firstResponder())
            makeFirstResponder(view);
        (view.get()->*handler)(event);
    };
    const auto follow = [&](Handler handler) {
        if (const RetainPtr<NSView> view = _presses[slot(event->buttonNumber())].view)
            (view.get()->*handler)(event);
    };
    const auto release = [&](Handler handler) {
        const RetainPtr<NSView> view = std::move(_presses[slot(event->buttonNumber())].view);
        forgetPress(*event);
        if (view)
            (view.get()->*handler)(event);
    };
    const auto type = [&](Handler handler) {
        const RetainPtr<NSResponder> responder = firstResponder();
        (responder.get()->*handler)(event);
    };

    const auto scroll = [&] {
        const RetainPtr<NSView> view =
            _contentView ? _contentView->hitTest(event->locationInWindow()) : nullptr;
        if (view)
            view->scrollWheel(event);
    };

    switch (event->type()) {
    case NSEventTypeLeftMouseDown:
        return press(&NSResponder::mouseDown);
    case NSEventTypeLeftMouseDragged:
        return follow(&NSResponder::mouseDragged);
    case NSEventTypeLeftMouseUp:
        return release(&NSResponder::mouseUp);
    case NSEventTypeRightMouseDown:
        return press(&NSResponder::rightMouseDown);
    case NSEventTypeRightMouseDragged:
        return follow(&NSResponder::rightMouseDragged);
    case NSEventTypeRightMouseUp:
        return release(&NSResponder::rightMouseUp);
    case NSEventTypeOtherMouseDown:
        return press(&NSResponder::otherMouseDown);
    case NSEventTypeOtherMouseDragged:
        return follow(&NSResponder::otherMouseDragged);
    case NSEventTypeOtherMouseUp:
        return release(&NSResponder::otherMouseUp);
    case NSEventTypeKeyDown:
        return type(&NSResponder::keyDown);
    case NSEventTypeKeyUp:
        return type(&NSResponder::keyUp);
    case NSEventTypeScrollWheel:
        return scroll();
    case NSEventTypeMouseMoved:
    case NSEventTypeMouseEntered:
    case NSEventTypeMouseExited:
    case NSEventTypeCursorUpdate:
        return;
    }
}

void NSWindow::forgetPress(const NSEvent& event)
{
    _presses[slot(event.buttonNumber())] = {};
}

/// Drops what refers to a view that has left the window.
void NSWindow::viewDidLeave(NSView* view)
{
    for (Press& press : _presses) {
        if (press.view == view)
            press.view = nullptr;
    }
    if (_firstResponder.lock() == view)
        _firstResponder = nullptr;
}

NSResponder* NSWindow::firstResponder() const
{
    const RetainPtr<NSResponder> responder = _firstResponder.lock();
    return responder ? responder.get() : const_cast<NSWindow*>(this);
}

bool NSWindow::makeFirstResponder(NSResponder* responder)
{
    const RetainPtr<NSResponder> keepNew = responder;
    const RetainPtr<NSResponder> old = firstResponder();
    if (responder == old || (!responder && old == this))
        return true;
    if (responder && responder != this) {
        const auto* view = dynamic_cast<NSView*>(responder);
        if (!responder->acceptsFirstResponder() || (view && view->window() != this))
            return false;
    }
    if (old != this && !old->resignFirstResponder())
        return false;
    _firstResponder = nullptr;
    if (!responder || responder == this)
        return true;
    if (!responder->becomeFirstResponder())
        return false;
    _firstResponder = responder;
    return true;
}

bool NSWindow::tryToPerform(SEL action, NSObject* sender)
{
    if (NSResponder::tryToPerform(action, sender))
        return true;
    if (!action || !_delegateIsObject)
        return false;
    const RetainPtr<NSObject> delegate = _delegateObject.lock();
    return action(delegate, sender);
}
