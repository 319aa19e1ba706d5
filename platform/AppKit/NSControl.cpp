#include <AppKit/NSControl.h>

#include "ControlValue.h"
#include "Host.h"

#include <AppKit/NSApplication.h>
#include <AppKit/NSFont.h>
#include <AppKit/NSWindow.h>
#include <Foundation/NSBoxedString.h>
#include <Foundation/NSNumber.h>

namespace {

const NSCodingClass<NSControl> controlCoding("NSControl");

constexpr const char* kDisabledKey = "NSDisabled";
constexpr const char* kTagKey = "NSTag";
constexpr const char* kNumberKey = "NSNumberValue";
constexpr const char* kStringKey = "NSStringValue";

} // namespace

NSControl::NSControl() = default;

NSControl::NSControl(NSRect frame)
    : NSView(frame)
{
}

NSControl::NSControl(NSCoder* coder)
    : NSView(coder)
{
    if (!coder)
        return;
    _isEnabled = !coder->decodeBoolForKey(kDisabledKey);
    _tag = coder->decodeIntegerForKey(kTagKey);
    _value = coder->decodeObjectOfClass<NSNumber>(kNumberKey);
    if (!_value)
        _value = box(coder->decodeStringForKey(kStringKey));
}

NSControl::~NSControl() = default;

void NSControl::encodeWithCoder(NSCoder* coder) const
{
    NSView::encodeWithCoder(coder);
    coder->encodeBool(!isEnabled(), kDisabledKey);
    coder->encodeInteger(tag(), kTagKey);
    if (const auto* number = dynamic_cast<const NSNumber*>(objectValue()))
        coder->encodeObject(number, kNumberKey);
    else if (const auto* string = dynamic_cast<const NSBoxedString*>(objectValue()))
        coder->encodeString(string->string(), kStringKey);
}

bool NSControl::sendAction(SEL action, NSObject* target)
{
    if (NSApp)
        return NSApp->sendAction(action, target, this);
    // Without an application there is no responder chain.
    const RetainPtr<NSControl> keep = this;
    const RetainPtr<NSObject> keptTarget = target;
    return action && action(target, this);
}

void NSControl::performClick(NSObject*)
{
    if (!isEnabled())
        return;
    const RetainPtr<NSObject> target = this->target();
    sendAction(action(), target);
}

// The cell.

void NSControl::setCell(RetainPtr<NSCell> cell)
{
    if (cell == _cell)
        return;
    if (_cell && _cell->controlView() == this)
        _cell->setControlView(nullptr);
    _cell = std::move(cell);
    if (_cell)
        _cell->setControlView(this);
    setNeedsDisplay(true);
    invalidateIntrinsicContentSize();
}

void NSControl::drawRect(NSRect)
{
    // The cell may replace itself.
    if (const RetainPtr<NSCell> cell = _cell)
        cell->drawWithFrame(bounds(), this);
}

NSSize NSControl::intrinsicContentSize() const
{
    return _cell ? _cell->cellSize() : NSView::intrinsicContentSize();
}

void NSControl::sizeToFit()
{
    const NSSize natural = intrinsicContentSize();
    const NSSize size = frame().size;
    setFrameSize(NSMakeSize(
        natural.width < 0 ? size.width : natural.width, natural.height < 0 ? size.height : natural.height));
}

// What either the cell holds or the control.

void NSControl::setTarget(NSObject* target)
{
    if (_cell)
        _cell->setTarget(target);
    else
        _target = target;
}

void NSControl::setAction(SEL newAction)
{
    if (_cell)
        _cell->setAction(newAction);
    else
        _action = newAction;
}

void NSControl::setTag(NSInteger tag)
{
    if (_cell)
        _cell->setTag(tag);
    else
        _tag = tag;
}

void NSControl::setEnabled(bool enabled)
{
    if (_cell)
        return _cell->setEnabled(enabled);
    if (enabled == _isEnabled)
        return;
    _isEnabled = enabled;
    enabledDidChange();
}

void NSControl::enabledDidChange()
{
    setNeedsDisplay(true);
    if (window())
        window()->accessibilityDidChange(*this, HostAccessibilityChange::Enabled);
}

void NSControl::setHighlighted(bool highlighted)
{
    if (_cell)
        return _cell->setHighlighted(highlighted);
    if (highlighted == _isHighlighted)
        return;
    _isHighlighted = highlighted;
    setNeedsDisplay(true);
}

void NSControl::setFont(RetainPtr<NSFont> font)
{
    if (_cell)
        _cell->setFont(std::move(font));
}

void NSControl::setAlignment(NSTextAlignment alignment)
{
    if (_cell)
        _cell->setAlignment(alignment);
}

// The value.

void NSControl::setObjectValue(RetainPtr<NSObject> value)
{
    if (_cell)
        return _cell->setObjectValue(std::move(value));
    if (value == _value || (value && value->isEqual(_value)))
        return;
    _value = std::move(value);
    setNeedsDisplay(true);
}

NSInteger NSControl::integerValue() const
{
    return integerOfValue(objectValue());
}

int NSControl::intValue() const
{
    return intOfValue(objectValue());
}

double NSControl::doubleValue() const
{
    return doubleOfValue(objectValue());
}

NSString NSControl::stringValue() const
{
    return stringOfValue(objectValue());
}

RetainPtr<NSAttributedString> NSControl::attributedStringValue() const
{
    return _cell ? _cell->attributedStringValue() : attributedStringOfValue(_value, nullptr);
}

void NSControl::setIntValue(int value)
{
    setIntegerValue(value);
}

void NSControl::setIntegerValue(NSInteger value)
{
    setObjectValue(NSNumber::numberWithInteger(value));
}

void NSControl::setDoubleValue(double value)
{
    setObjectValue(NSNumber::numberWithDouble(value));
}

void NSControl::setStringValue(const NSString& value)
{
    setObjectValue(box(value));
}

void NSControl::setAttributedStringValue(RetainPtr<NSAttributedString> value)
{
    setObjectValue(value ? value->copy() : nullptr);
}
