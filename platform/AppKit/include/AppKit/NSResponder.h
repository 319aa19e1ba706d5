#pragma once

#include <Foundation/NSObject.h>
#include <Foundation/Selector.h>

class NSEvent;

/// An object that handles events: a view, a window, the application.
///
/// An event that a responder does not handle is passed to the next responder: from a view to its superview,
/// from the content view to its window, where it is dropped. Override a method to handle its event; call the
/// base method to pass it on. Main thread only.
class KORVID_EXPORT NSResponder : public NSObject {
public:
    /// The responder that gets the events that this one does not handle. Borrowed; null at the end.
    virtual NSResponder* nextResponder() const { return nullptr; }

    // The mouse. The view that gets a press also gets the drags and the release of that button, wherever the
    // pointer is.

    /// The left button was pressed.
    virtual void mouseDown(NSEvent* event);
    /// The pointer moved with the left button held.
    virtual void mouseDragged(NSEvent* event);
    /// The left button was released.
    virtual void mouseUp(NSEvent* event);
    /// The right button was pressed.
    virtual void rightMouseDown(NSEvent* event);
    /// The pointer moved with the right button held.
    virtual void rightMouseDragged(NSEvent* event);
    /// The right button was released.
    virtual void rightMouseUp(NSEvent* event);
    /// Any button beyond the right one; see `NSEvent::buttonNumber()`.
    virtual void otherMouseDown(NSEvent* event);
    /// The pointer moved with such a button held.
    virtual void otherMouseDragged(NSEvent* event);
    /// Such a button was released.
    virtual void otherMouseUp(NSEvent* event);

    /// The pointer moved without a button held, inside a tracking area; see NSTrackingArea.
    virtual void mouseMoved(NSEvent* event);
    /// The pointer entered or left a tracking area.
    virtual void mouseEntered(NSEvent* event);
    /// The pointer left a tracking area.
    virtual void mouseExited(NSEvent* event);
    /// The pointer needs another cursor: it entered a tracking area that sets one.
    virtual void cursorUpdate(NSEvent* event);
    /// The wheel was turned, or two fingers moved on a touch pad, over a view; see
    /// `NSEvent::scrollingDeltaY()`.
    virtual void scrollWheel(NSEvent* event);

    // The keyboard. The key window's first responder gets its events.

    /// A key was pressed, or repeats.
    virtual void keyDown(NSEvent* event);
    /// A key was released.
    virtual void keyUp(NSEvent* event);

    /// Whether this may become a window's first responder. Default false.
    virtual bool acceptsFirstResponder() const { return false; }
    /// Called before this becomes first responder; return false to refuse. Default true.
    virtual bool becomeFirstResponder() { return true; }
    /// Called before this stops being first responder; return false to refuse. Default true.
    virtual bool resignFirstResponder() { return true; }

    /// Performs the action with `sender` as its argument, here if this has the method, else in the next
    /// responder that has it; a window also tries its delegate. Returns false when none has it, and for a
    /// null action.
    virtual bool tryToPerform(SEL action, NSObject* sender);

protected:
    ~NSResponder() override;
};
