#include <AppKit/NSResponder.h>

NSResponder::~NSResponder() = default;

namespace {

/// Calls the next responder's handler, if there is a next responder.
void passOn(const NSResponder* responder, void (NSResponder::*handler)(NSEvent*), NSEvent* event)
{
    if (NSResponder* next = responder->nextResponder())
        (next->*handler)(event);
}

} // namespace

void NSResponder::mouseDown(NSEvent* event)
{
    passOn(this, &NSResponder::mouseDown, event);
}

void NSResponder::mouseDragged(NSEvent* event)
{
    passOn(this, &NSResponder::mouseDragged, event);
}

void NSResponder::mouseUp(NSEvent* event)
{
    passOn(this, &NSResponder::mouseUp, event);
}

void NSResponder::rightMouseDown(NSEvent* event)
{
    passOn(this, &NSResponder::rightMouseDown, event);
}

void NSResponder::rightMouseDragged(NSEvent* event)
{
    passOn(this, &NSResponder::rightMouseDragged, event);
}

void NSResponder::rightMouseUp(NSEvent* event)
{
    passOn(this, &NSResponder::rightMouseUp, event);
}

void NSResponder::otherMouseDown(NSEvent* event)
{
    passOn(this, &NSResponder::otherMouseDown, event);
}

void NSResponder::otherMouseDragged(NSEvent* event)
{
    passOn(this, &NSResponder::otherMouseDragged, event);
}

void NSResponder::otherMouseUp(NSEvent* event)
{
    passOn(this, &NSResponder::otherMouseUp, event);
}

void NSResponder::mouseMoved(NSEvent* event)
{
    passOn(this, &NSResponder::mouseMoved, event);
}

void NSResponder::mouseEntered(NSEvent* event)
{
    passOn(this, &NSResponder::mouseEntered, event);
}

void NSResponder::mouseExited(NSEvent* event)
{
    passOn(this, &NSResponder::mouseExited, event);
}

void NSResponder::cursorUpdate(NSEvent* event)
{
    passOn(this, &NSResponder::cursorUpdate, event);
}

void NSResponder::scrollWheel(NSEvent* event)
{
    passOn(this, &NSResponder::scrollWheel, event);
}

void NSResponder::keyDown(NSEvent* event)
{
    passOn(this, &NSResponder::keyDown, event);
}

void NSResponder::keyUp(NSEvent* event)
{
    passOn(this, &NSResponder::keyUp, event);
}

bool NSResponder::tryToPerform(SEL action, NSObject* sender)
{
    if (!action)
        return false;
    if (action(this, sender))
        return true;
    NSResponder* const next = nextResponder();
    return next && next->tryToPerform(action, sender);
}
