#include <AppKit/NSCell.h>

#include "ControlValue.h"

#include <AppKit/NSControl.h>
#include <AppKit/NSFont.h>
#include <AppKit/NSStringAttributes.h>
#include <Foundation/NSBoxedString.h>
#include <Foundation/NSNumber.h>

NSCell::NSCell() = default;
NSCell::~NSCell() = default;
NSActionCell::~NSActionCell() = default;

NSView* NSCell::controlView() const
{
    return _controlView.lock().get();
}

void NSCell::setControlView(NSView* view)
{
    _controlView = view;
}

// Drawing.

void NSCell::drawWithFrame(NSRect frame, NSView* view)
{
    drawInteriorWithFrame(frame, view);
}

void NSCell::drawInteriorWithFrame(NSRect, NSView*) { }

NSSize NSCell::cellSize() const
{
    return NSMakeSize(NSViewNoIntrinsicMetric, NSViewNoIntrinsicMetric);
}

void NSCell::contentsDidChange()
{
    const RetainPtr<NSView> view = controlView();
    if (!view)
        return;
    view->setNeedsDisplay(true);
    view->invalidateIntrinsicContentSize();
}

// State.

void NSCell::setEnabled(bool enabled)
{
    if (enabled == _isEnabled)
        return;
    _isEnabled = enabled;
    if (auto* const control = dynamic_cast<NSControl*>(controlView()))
        control->enabledDidChange();
    else if (NSView* const view = controlView())
        view->setNeedsDisplay(true);
}

void NSCell::setHighlighted(bool highlighted)
{
    if (highlighted == _isHighlighted)
        return;
    _isHighlighted = highlighted;
    if (NSView* const view = controlView())
        view->setNeedsDisplay(true);
}

void NSCell::setState(NSControlStateValue state)
{
    state = state == NSControlStateValueOff ? NSControlStateValueOff : NSControlStateValueOn;
    if (state == _state)
        return;
    _state = state;
    if (NSView* const view = controlView()) {
        view->setNeedsDisplay(true);
        NSAccessibilityPostNotification(view, NSAccessibilityValueChangedNotification);
    }
}

NSControlStateValue NSCell::nextState() const
{
    return _state == NSControlStateValueOff ? NSControlStateValueOn : NSControlStateValueOff;
}

// The value.

void NSCell::setObjectValue(RetainPtr<NSObject> value)
{
    if (value == _value || (value && value->isEqual(_value)))
        return;
    _value = std::move(value);
    contentsDidChange();
}

int NSCell::intValue() const
{
    return intOfValue(objectValue());
}

NSInteger NSCell::integerValue() const
{
    return integerOfValue(objectValue());
}

double NSCell::doubleValue() const
{
    return doubleOfValue(objectValue());
}

NSString NSCell::stringValue() const
{
    return stringOfValue(objectValue());
}

RetainPtr<NSAttributedString> NSCell::attributedStringValue() const
{
    const auto style = make<NSMutableParagraphStyle>();
    style->setAlignment(_alignment);
    NSDictionary::Map attributes{{NSParagraphStyleAttributeName, style->copy()}};
    if (_font)
        attributes[NSFontAttributeName] = _font;
    return attributedStringOfValue(objectValue(), make<NSDictionary>(std::move(attributes)));
}

void NSCell::setIntValue(int value)
{
    setIntegerValue(value);
}

void NSCell::setIntegerValue(NSInteger value)
{
    setObjectValue(NSNumber::numberWithInteger(value));
}

void NSCell::setDoubleValue(double value)
{
    setObjectValue(NSNumber::numberWithDouble(value));
}

void NSCell::setStringValue(const NSString& value)
{
    setObjectValue(box(value));
}

void NSCell::setAttributedStringValue(RetainPtr<NSAttributedString> value)
{
    setObjectValue(value ? value->copy() : nullptr);
}

// Text.

void NSCell::setFont(RetainPtr<NSFont> font)
{
    if (font == _font || (font && font->isEqual(_font)))
        return;
    _font = std::move(font);
    contentsDidChange();
}

void NSCell::setAlignment(NSTextAlignment alignment)
{
    const bool isKnown = alignment >= NSTextAlignmentLeft && alignment <= NSTextAlignmentNatural;
    alignment = isKnown ? alignment : NSTextAlignmentNatural;
    if (alignment == _alignment)
        return;
    _alignment = alignment;
    contentsDidChange();
}
