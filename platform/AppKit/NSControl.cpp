#include <AppKit/NSControl.h>

#include "Host.h"

#include <AppKit/NSApplication.h>
#include <AppKit/NSWindow.h>
#include <Foundation/NSBoxedString.h>
#include <Foundation/NSNumber.h>

#include <algorithm>
#include <limits>

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
    coder->encodeBool(!_isEnabled, kDisabledKey);
    coder->encodeInteger(_tag, kTagKey);
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
    if (!_isEnabled)
        return;
    const RetainPtr<NSObject> target = this->target();
    sendAction(_action, target);
}

void NSControl::setEnabled(bool enabled)
{
    if (enabled == _isEnabled)
        return;
    _isEnabled = enabled;
    setNeedsDisplay(true);
    if (window())
        window()->accessibilityDidChange(*this, HostAccessibilityChange::Enabled);
}

// The value.

void NSControl::setObjectValue(RetainPtr<NSObject> value)
{
    if (value == _value || (value && value->isEqual(objectValue())))
        return;
    _value = std::move(value);
    setNeedsDisplay(true);
}

NSInteger NSControl::integerValue() const
{
    if (const auto* number = dynamic_cast<const NSNumber*>(objectValue()))
        return number->integerValue();
    return stringValue().integerValue();
}

int NSControl::intValue() const
{
    using Limits = std::numeric_limits<int>;
    return int(std::clamp<NSInteger>(integerValue(), Limits::min(), Limits::max()));
}

double NSControl::doubleValue() const
{
    if (const auto* number = dynamic_cast<const NSNumber*>(objectValue()))
        return number->doubleValue();
    return stringValue().doubleValue();
}

NSString NSControl::stringValue() const
{
    return _value ? _value->description() : NSString("");
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
