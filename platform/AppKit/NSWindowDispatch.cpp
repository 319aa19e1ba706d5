#include "NSWindowEvents.h"
#include "PointerTracker.h"

#include <AppKit/NSApplication.h>
#include <AppKit/NSControl.h>

#include <algorithm>

// Events on their way from a window to its views.

namespace {

using Handler = void (NSResponder::*)(NSEvent*);

/// The method that handles a type of event.
Handler handlerOf(NSEventType type)
{
    switch (type) {
    case NSEventTypeLeftMouseDown:
        return &NSResponder::mouseDown;
    case NSEventTypeLeftMouseDragged:
        return &NSResponder::mouseDragged;
    case NSEventTypeLeftMouseUp:
        return &NSResponder::mouseUp;
    case NSEventTypeRightMouseDown:
        return &NSResponder::rightMouseDown;
    case NSEventTypeRightMouseDragged:
        return &NSResponder::rightMouseDragged;
    case NSEventTypeRightMouseUp:
        return &NSResponder::rightMouseUp;
    case NSEventTypeOtherMouseDown:
        return &NSResponder::otherMouseDown;
    case NSEventTypeOtherMouseDragged:
        return &NSResponder::otherMouseDragged;
    case NSEventTypeOtherMouseUp:
        return &NSResponder::otherMouseUp;
    case NSEventTypeMouseMoved:
        return &NSResponder::mouseMoved;
    case NSEventTypeMouseEntered:
        return &NSResponder::mouseEntered;
    case NSEventTypeMouseExited:
        return &NSResponder::mouseExited;
    case NSEventTypeCursorUpdate:
        return &NSResponder::cursorUpdate;
    case NSEventTypeScrollWheel:
        return &NSResponder::scrollWheel;
    case NSEventTypeKeyDown:
        return &NSResponder::keyDown;
    case NSEventTypeKeyUp:
        return &NSResponder::keyUp;
    }
    return nullptr;
}

void handle(NSEvent& event, NSResponder* responder)
{
    if (responder)
        (responder->*handlerOf(event.type()))(&event);
}

} // namespace

void NSWindow::sendEvent(NSEvent* event)
{
    if (!event)
        return;

    const RetainPtr<NSWindow> keepWindow = this;
    const RetainPtr<NSEvent> keepEvent = event;
    switch (event->type()) {
    case NSEventTypeLeftMouseDown:
    case NSEventTypeRightMouseDown:
    case NSEventTypeOtherMouseDown:
        return sendPress(*event);
    case NSEventTypeLeftMouseDragged:
    case NSEventTypeRightMouseDragged:
    case NSEventTypeOtherMouseDragged:
        return sendDrag(*event);
    case NSEventTypeLeftMouseUp:
    case NSEventTypeRightMouseUp:
    case NSEventTypeOtherMouseUp:
        return sendRelease(*event);
    case NSEventTypeMouseMoved:
        _pointer->moveTo(*event, isAnyButtonDown());
        return _pointer->reportMove(*event);
    case NSEventTypeMouseEntered:
    case NSEventTypeMouseExited:
    case NSEventTypeCursorUpdate:
        return sendEnterOrExit(*event);
    case NSEventTypeScrollWheel:
        return sendScroll(*event);
    case NSEventTypeKeyDown:
    case NSEventTypeKeyUp: {
        const RetainPtr<NSResponder> responder = firstResponder();
        return handle(*event, responder);
    }
    }
}

bool NSWindow::isAnyButtonDown() const
{
    return std::any_of(_presses.begin(), _presses.end(), [](const Press& press) { return press.isDown; });
}

RetainPtr<NSView> NSWindow::viewUnderPointer(const NSEvent& event) const
{
    return _contentView ? _contentView->hitTest(event.locationInWindow()) : nullptr;
}

void NSWindow::sendPress(NSEvent& event)
{
    _pointer->moveTo(event, isAnyButtonDown());
    // A handler may set a cursor for as long as the button is held.
    _pointer->forgetCursor();

    RetainPtr<NSView> view = viewUnderPointer(event);
    const bool isLeft = event.type() == NSEventTypeLeftMouseDown;
    if (isLeft && isVisible() && !isKeyWindow()) {
        // Within another program's window, a click on what takes no keys leaves the focus where it is.
        if (!_isEmbedded || (view && view->acceptsFirstResponder()))
            makeKeyWindow();
        if (!_isEmbedded && view && !view->acceptsFirstMouse(&event))
            view = nullptr;
    }
    _presses[Events::slot(event.buttonNumber())] = {view, true};
    if (isLeft && view && view->acceptsFirstResponder() && view != firstResponder())
        makeFirstResponder(view);
    handle(event, view);
}

void NSWindow::sendDrag(NSEvent& event)
{
    _pointer->moveTo(event, isAnyButtonDown());
    const RetainPtr<NSView> view = _presses[Events::slot(event.buttonNumber())].view;
    handle(event, view);
}

void NSWindow::sendRelease(NSEvent& event)
{
    _pointer->moveTo(event, isAnyButtonDown());
    const RetainPtr<NSView> view = std::move(_presses[Events::slot(event.buttonNumber())].view);
    forgetPress(event);
    handle(event, view);
    _pointer->refresh(isAnyButtonDown());
}

void NSWindow::sendScroll(NSEvent& event)
{
    _pointer->moveTo(event, isAnyButtonDown());
    const RetainPtr<NSView> view = viewUnderPointer(event);
    handle(event, view);
    _pointer->refresh(isAnyButtonDown()); // other views may be under the pointer now
}

void NSWindow::sendEnterOrExit(NSEvent& event)
{
    if (const NSTrackingArea* const area = event.trackingArea()) {
        const RetainPtr<NSResponder> owner = area->owner();
        handle(event, owner);
    } else if (event.type() == NSEventTypeMouseExited) {
        _pointer->leave(event);
    } else {
        _pointer->moveTo(event, isAnyButtonDown());
    }
}

void NSWindow::forgetPress(const NSEvent& event)
{
    _presses[Events::slot(event.buttonNumber())] = {};
}

/// Ends a press whose release the view will not get.
void NSWindow::cancelPress(Press& press)
{
    const RetainPtr<NSView> view = std::move(press.view);
    if (auto* const control = dynamic_cast<NSControl*>(view.get()))
        control->setHighlighted(false);
}

/// Drops what refers to a view that has left the window.
void NSWindow::viewDidLeave(NSView* view)
{
    for (Press& press : _presses) {
        if (press.view == view)
            cancelPress(press);
    }
    if (_firstResponder.lock() == view)
        _firstResponder = nullptr;
    _pointer->forget(view);
    accessibilityDidChange(*view, HostAccessibilityChange::Removed);
}

void NSWindow::cursorUpdate(NSEvent*)
{
    NSCursor::arrowCursor()->set();
}

// The keyboard focus.

void NSWindow::becomeKeyWindow()
{
    if (NSView* const view = keyView())
        view->setNeedsDisplay(true);
    _pointer->refresh(isAnyButtonDown());
}

void NSWindow::resignKeyWindow()
{
    if (NSView* const view = keyView())
        view->setNeedsDisplay(true);
    _pointer->refresh(isAnyButtonDown());
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
    if (auto* const view = dynamic_cast<NSView*>(responder))
        accessibilityDidChange(*view, HostAccessibilityChange::Focus);
    return true;
}

void NSWindow::keyDown(NSEvent* event)
{
    constexpr NSEventModifierFlags otherModifiers =
        NSEventModifierFlagControl | NSEventModifierFlagOption | NSEventModifierFlagCommand;
    const NSString& key = event->charactersIgnoringModifiers();
    const bool isBackTab = key == "\x19";
    if ((key != "\t" && !isBackTab) || (event->modifierFlags() & otherModifiers)) {
        const RetainPtr<NSView> view = _contentView;
        if (!view || view->isHidden() || !view->performKeyEquivalent(event))
            NSResponder::keyDown(event);
        return;
    }
    if (isBackTab || (event->modifierFlags() & NSEventModifierFlagShift))
        selectPreviousKeyView();
    else
        selectNextKeyView();
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
