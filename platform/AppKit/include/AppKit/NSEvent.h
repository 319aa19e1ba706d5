#pragma once

#include <AppKit/NSGeometry.h>
#include <Foundation/NSDate.h>
#include <Foundation/WeakPtr.h>

class NSGraphicsContext;
class NSTrackingArea;
class NSWindow;

/// What happened.
enum NSEventType : NSUInteger {
    NSEventTypeLeftMouseDown = 1,
    NSEventTypeLeftMouseUp = 2,
    NSEventTypeRightMouseDown = 3,
    NSEventTypeRightMouseUp = 4,
    NSEventTypeMouseMoved = 5,
    NSEventTypeLeftMouseDragged = 6,
    NSEventTypeRightMouseDragged = 7,
    NSEventTypeMouseEntered = 8,
    NSEventTypeMouseExited = 9,
    NSEventTypeKeyDown = 10,
    NSEventTypeKeyUp = 11,
    NSEventTypeCursorUpdate = 17,
    NSEventTypeScrollWheel = 22,
    NSEventTypeOtherMouseDown = 25,
    NSEventTypeOtherMouseUp = 26,
    NSEventTypeOtherMouseDragged = 27,
};

/// A set of types: the bit `1 << type` for each, combined with `|`.
using NSEventMask = NSUInteger;

inline constexpr NSEventMask NSEventMaskLeftMouseDown = 1ULL
    << NSEventTypeLeftMouseDown; ///< presses of the left button
inline constexpr NSEventMask NSEventMaskLeftMouseUp = 1ULL
    << NSEventTypeLeftMouseUp; ///< releases of the left button
inline constexpr NSEventMask NSEventMaskRightMouseDown = 1ULL
    << NSEventTypeRightMouseDown; ///< presses of the right button
inline constexpr NSEventMask NSEventMaskRightMouseUp = 1ULL
    << NSEventTypeRightMouseUp; ///< releases of the right button
inline constexpr NSEventMask NSEventMaskMouseMoved = 1ULL
    << NSEventTypeMouseMoved; ///< moves without a button
inline constexpr NSEventMask NSEventMaskLeftMouseDragged = 1ULL
    << NSEventTypeLeftMouseDragged; ///< moves with the left button
inline constexpr NSEventMask NSEventMaskRightMouseDragged = 1ULL
    << NSEventTypeRightMouseDragged; ///< moves with the right button
inline constexpr NSEventMask NSEventMaskMouseEntered = 1ULL
    << NSEventTypeMouseEntered; ///< the pointer enters a tracking area
inline constexpr NSEventMask NSEventMaskMouseExited = 1ULL
    << NSEventTypeMouseExited; ///< the pointer leaves a tracking area
inline constexpr NSEventMask NSEventMaskKeyDown = 1ULL << NSEventTypeKeyDown; ///< presses of keys
inline constexpr NSEventMask NSEventMaskKeyUp = 1ULL << NSEventTypeKeyUp;     ///< releases of keys
inline constexpr NSEventMask NSEventMaskCursorUpdate = 1ULL
    << NSEventTypeCursorUpdate; ///< the pointer needs another cursor
inline constexpr NSEventMask NSEventMaskScrollWheel = 1ULL
    << NSEventTypeScrollWheel; ///< the wheel, or two fingers
inline constexpr NSEventMask NSEventMaskOtherMouseDown = 1ULL
    << NSEventTypeOtherMouseDown; ///< presses of other buttons
inline constexpr NSEventMask NSEventMaskOtherMouseUp = 1ULL
    << NSEventTypeOtherMouseUp; ///< releases of other buttons
inline constexpr NSEventMask NSEventMaskOtherMouseDragged = 1ULL
    << NSEventTypeOtherMouseDragged;                 ///< moves with other buttons
inline constexpr NSEventMask NSEventMaskAny = ~0ULL; ///< all types

/// The keys that were held: a set of the flags below.
using NSEventModifierFlags = NSUInteger;

inline constexpr NSEventModifierFlags NSEventModifierFlagShift = 1ULL << 17;   ///< the key Shift
inline constexpr NSEventModifierFlags NSEventModifierFlagControl = 1ULL << 18; ///< the key Control
inline constexpr NSEventModifierFlags NSEventModifierFlagOption = 1ULL << 19;  ///< the key Alt
inline constexpr NSEventModifierFlags NSEventModifierFlagCommand = 1ULL << 20; ///< the key Super (Windows)
inline constexpr NSEventModifierFlags NSEventModifierFlagNumericPad = 1ULL
    << 21; ///< the key is on the numeric pad

/// Characters in `NSEvent::characters()` for keys without a character of their own. Return
/// is U+000D, Enter of the numeric pad U+0003, Tab U+0009, Tab with Shift U+0019, Escape U+001B and
/// Backspace U+007F.
inline constexpr char16_t NSUpArrowFunctionKey = 0xF700;
inline constexpr char16_t NSDownArrowFunctionKey = 0xF701;  ///< arrow down
inline constexpr char16_t NSLeftArrowFunctionKey = 0xF702;  ///< arrow to the left
inline constexpr char16_t NSRightArrowFunctionKey = 0xF703; ///< arrow to the right
inline constexpr char16_t NSF1FunctionKey = 0xF704;         ///< F2 to F35 follow
inline constexpr char16_t NSInsertFunctionKey = 0xF727;     ///< Insert
inline constexpr char16_t NSDeleteFunctionKey = 0xF728;     ///< deletes forward
inline constexpr char16_t NSHomeFunctionKey = 0xF729;       ///< Home
inline constexpr char16_t NSEndFunctionKey = 0xF72B;        ///< End
inline constexpr char16_t NSPageUpFunctionKey = 0xF72C;     ///< Page Up
inline constexpr char16_t NSPageDownFunctionKey = 0xF72D;   ///< Page Down

/// Something that the user did with the mouse or the keyboard. Immutable; main thread.
///
/// Properties that events of its type do not have read as 0, false or null.
class KORVID_EXPORT NSEvent final : public NSObject {
public:
    /// A mouse event, as the window system would make it.
    ///
    /// `location` is in the window's coordinates. `windowNumber` is that of `NSWindow`; with any other the
    /// event has no window. `context` is not used: pass null. The button follows from the type: 0 left, 1
    /// right, 2 other. Null for a type that is none of the mouse's.
    static RetainPtr<NSEvent> mouseEventWithType(NSEventType type, NSPoint location,
        NSEventModifierFlags flags, NSTimeInterval timestamp, NSInteger windowNumber,
        NSGraphicsContext* context, NSInteger eventNumber, NSInteger clickCount, float pressure);

    /// The pointer enters or leaves: an event of the type mouse entered, mouse exited or cursor update, for
    /// an area of a view in the window. Without an area: for the window. Null for another type.
    ///
    /// Differs: Apple's takes a tracking number and user data; here both are the area's.
    static RetainPtr<NSEvent> enterExitEventWithType(NSEventType type, NSPoint location,
        NSEventModifierFlags flags, NSTimeInterval timestamp, NSInteger windowNumber,
        RetainPtr<NSTrackingArea> area);

    /// A keyboard event. Null for a type that is none of the keyboard's.
    ///
    /// Differs: Apple's takes a key code too. Codes of keys are not offered here.
    static RetainPtr<NSEvent> keyEventWithType(NSEventType type, NSPoint location, NSEventModifierFlags flags,
        NSTimeInterval timestamp, NSInteger windowNumber, NSGraphicsContext* context, NSString characters,
        NSString charactersIgnoringModifiers, bool isARepeat);

    /// A turn of the wheel, or a move on a touch pad, by the deltas described below.
    ///
    /// Differs: Apple's makes it from a CGEvent.
    static RetainPtr<NSEvent> scrollWheelEventWithLocation(NSPoint location, NSEventModifierFlags flags,
        NSTimeInterval timestamp, NSInteger windowNumber, CGFloat deltaX, CGFloat deltaY,
        bool hasPreciseDeltas);

    /// What happened.
    NSEventType type() const { return _fields.type; }
    /// The keys held when it happened.
    NSEventModifierFlags modifierFlags() const { return _fields.modifierFlags; }
    /// When it happened, as `CFAbsoluteTimeGetCurrent` counts.
    ///
    /// Differs: Apple's counts from the start of the machine.
    NSTimeInterval timestamp() const { return _fields.timestamp; }
    /// The window it is for; null when it has none or the window is gone.
    RetainPtr<NSWindow> window() const;
    /// The number of that window, also when it is gone; 0 for none.
    NSInteger windowNumber() const { return _windowNumber; }

    /// Where the pointer was: in the window's coordinates, y upward from the bottom left of its content, or,
    /// without a window, in those of the screen.
    NSPoint locationInWindow() const { return _fields.location; }
    /// 0 left, 1 right, 2 middle, 3 and more for others.
    NSInteger buttonNumber() const { return _fields.buttonNumber; }
    /// 1 for a single click, 2 for the second press of a double click, and so on; its drags and its release
    /// have the same number.
    NSInteger clickCount() const { return _fields.clickCount; }
    /// Distinguishes presses: a press, its drags and its release share a number.
    NSInteger eventNumber() const { return _fields.eventNumber; }
    /// 1 while a button is held, 0 for a release.
    float pressure() const { return _fields.pressure; }

    /// The area that the pointer entered or left. Borrowed; null for other events.
    NSTrackingArea* trackingArea() const { return _trackingArea.get(); }

    /// How far to scroll: to the right if positive, so that what lies further left appears. In points if
    /// `hasPreciseScrollingDeltas()`, else in lines, to be multiplied by the height of a line; a wheel with
    /// fine steps reports parts of a line.
    CGFloat scrollingDeltaX() const { return _fields.scrollingDelta.width; }
    /// The same downward: positive when the wheel is turned away from the user, so that what lies further up
    /// appears.
    CGFloat scrollingDeltaY() const { return _fields.scrollingDelta.height; }
    /// True for a touch pad, which scrolls point by point.
    bool hasPreciseScrollingDeltas() const { return _fields.hasPreciseScrollingDeltas; }

    /// The string that the key produces with the modifiers that were held; may be empty.
    const NSString& characters() const { return _fields.characters; }
    /// The same with no modifier but Shift.
    const NSString& charactersIgnoringModifiers() const { return _fields.charactersIgnoringModifiers; }
    /// True when the key was held down and repeats.
    bool isARepeat() const { return _fields.isARepeat; }

    /// Seconds within which a press after a press counts as a double click, as the user has set it.
    static NSTimeInterval doubleClickInterval();

    NSString description() const override;

protected:
    ~NSEvent() override;

private:
    friend class NSWindow;

    /// Everything but the window.
    struct Fields {
        NSEventType type;
        NSPoint location;
        NSEventModifierFlags modifierFlags;
        NSTimeInterval timestamp;
        NSInteger buttonNumber = 0;
        NSInteger eventNumber = 0;
        NSInteger clickCount = 0;
        float pressure = 0;
        NSString characters = nullptr;
        NSString charactersIgnoringModifiers = nullptr;
        bool isARepeat = false;
        NSSize scrollingDelta{0, 0};
        bool hasPreciseScrollingDeltas = false;
    };

    NSEvent(Fields fields, NSWindow* window, RetainPtr<NSTrackingArea> area = nullptr);

    const Fields _fields;
    const RetainPtr<NSTrackingArea> _trackingArea;
    const WeakPtr<NSWindow> _window;
    const NSInteger _windowNumber;
};
