#include "Host.h"

#include <AppKit/NSApplication.h>
#include <AppKit/NSEvent.h>
#include <AppKit/NSTrackingArea.h>
#include <AppKit/NSWindow.h>
#include <Foundation/NSFormat.h>

NSEvent::NSEvent(Fields fields, NSWindow* window, RetainPtr<NSTrackingArea> area)
    : _fields(std::move(fields))
    , _trackingArea(std::move(area))
    , _window(window)
    , _windowNumber(window ? window->windowNumber() : 0)
{
}

NSEvent::~NSEvent() = default;

namespace {

NSWindow* windowNumbered(NSInteger windowNumber)
{
    return NSApp ? NSApp->windowWithWindowNumber(windowNumber) : nullptr;
}

} // namespace

RetainPtr<NSEvent> NSEvent::mouseEventWithType(NSEventType type, NSPoint location, NSEventModifierFlags flags,
    NSTimeInterval timestamp, NSInteger windowNumber, NSGraphicsContext*, NSInteger eventNumber,
    NSInteger clickCount, float pressure)
{
    NSInteger button = 0;
    switch (type) {
    case NSEventTypeLeftMouseDown:
    case NSEventTypeLeftMouseUp:
    case NSEventTypeLeftMouseDragged:
    case NSEventTypeMouseMoved:
        break;
    case NSEventTypeRightMouseDown:
    case NSEventTypeRightMouseUp:
    case NSEventTypeRightMouseDragged:
        button = 1;
        break;
    case NSEventTypeOtherMouseDown:
    case NSEventTypeOtherMouseUp:
    case NSEventTypeOtherMouseDragged:
        button = 2;
        break;
    default:
        return nullptr;
    }
    Fields fields{type, location, flags, timestamp};
    fields.buttonNumber = button;
    fields.eventNumber = eventNumber;
    fields.clickCount = clickCount;
    fields.pressure = pressure;
    return adopt(new NSEvent(std::move(fields), windowNumbered(windowNumber)));
}

RetainPtr<NSEvent> NSEvent::keyEventWithType(NSEventType type, NSPoint location, NSEventModifierFlags flags,
    NSTimeInterval timestamp, NSInteger windowNumber, NSGraphicsContext*, NSString characters,
    NSString charactersIgnoringModifiers, bool isARepeat)
{
    if (type != NSEventTypeKeyDown && type != NSEventTypeKeyUp)
        return nullptr;
    Fields fields{type, location, flags, timestamp};
    fields.characters = std::move(characters);
    fields.charactersIgnoringModifiers = std::move(charactersIgnoringModifiers);
    fields.isARepeat = isARepeat;
    return adopt(new NSEvent(std::move(fields), windowNumbered(windowNumber)));
}

RetainPtr<NSEvent> NSEvent::enterExitEventWithType(NSEventType type, NSPoint location,
    NSEventModifierFlags flags, NSTimeInterval timestamp, NSInteger windowNumber,
    RetainPtr<NSTrackingArea> area)
{
    if (type != NSEventTypeMouseEntered && type != NSEventTypeMouseExited && type != NSEventTypeCursorUpdate)
        return nullptr;
    return adopt(
        new NSEvent({type, location, flags, timestamp}, windowNumbered(windowNumber), std::move(area)));
}

RetainPtr<NSEvent> NSEvent::scrollWheelEventWithLocation(NSPoint location, NSEventModifierFlags flags,
    NSTimeInterval timestamp, NSInteger windowNumber, CGFloat deltaX, CGFloat deltaY, bool hasPreciseDeltas)
{
    Fields fields{NSEventTypeScrollWheel, location, flags, timestamp};
    fields.scrollingDelta = {deltaX, deltaY};
    fields.hasPreciseScrollingDeltas = hasPreciseDeltas;
    return adopt(new NSEvent(std::move(fields), windowNumbered(windowNumber)));
}

RetainPtr<NSWindow> NSEvent::window() const
{
    return _window.lock();
}

NSTimeInterval NSEvent::doubleClickInterval()
{
    return Host::shared().doubleClickInterval();
}

NSString NSEvent::description() const
{
    return NSString::stringWithFormat(
        "NSEvent: type=%lu loc=(%g,%g) time=%.3f flags=0x%lx win=%ld clickCount=%ld button=%ld chars=\"%@\"",
        _fields.type, _fields.location.x, _fields.location.y, _fields.timestamp, _fields.modifierFlags,
        _windowNumber, _fields.clickCount, _fields.buttonNumber, _fields.characters);
}
