#include <AppKit/NSTextField.h>

#include "CoreGraphics/FiniteGeometry.h"

#include <AppKit/NSColor.h>
#include <Foundation/NSBoxedString.h>

#include <cmath>

namespace {

const NSCodingClass<NSTextField> textFieldCoding("NSTextField");

constexpr const char* kAlignmentKey = "NSAlignment";
constexpr const char* kLineBreakModeKey = "NSLineBreakMode";
constexpr const char* kAttributedTextKey = "NSContents";

} // namespace

NSTextField::NSTextField()
    : NSTextField(NSZeroRect)
{
}

NSTextField::NSTextField(NSRect frame)
    : NSControl(frame)
{
    setCell(make<NSTextFieldCell>());
}

NSTextField::NSTextField(NSCoder* coder)
    : NSControl(coder)
{
    // What the control has read goes into the cell.
    const auto cell = make<NSTextFieldCell>();
    cell->setObjectValue(objectValue());
    cell->setTag(tag());
    cell->setEnabled(isEnabled());
    setCell(cell);
    if (!coder)
        return;
    if (coder->containsValueForKey(kAlignmentKey))
        setAlignment(NSTextAlignment(coder->decodeIntegerForKey(kAlignmentKey)));
    setLineBreakMode(NSLineBreakMode(coder->decodeIntegerForKey(kLineBreakModeKey)));
    if (const NSString text = coder->decodeStringForKey(kAttributedTextKey))
        setStringValue(text);
}

NSTextField::~NSTextField() = default;

void NSTextField::encodeWithCoder(NSCoder* coder) const
{
    NSControl::encodeWithCoder(coder);
    coder->encodeInteger(alignment(), kAlignmentKey);
    coder->encodeInteger(NSInteger(lineBreakMode()), kLineBreakModeKey);
    if (dynamic_cast<const NSAttributedString*>(objectValue()))
        coder->encodeString(stringValue(), kAttributedTextKey);
}

RetainPtr<NSTextField> NSTextField::labelWithString(const NSString& text)
{
    auto label = make<NSTextField>();
    label->setStringValue(text);
    label->sizeToFit();
    return label;
}

NSTextFieldCell* NSTextField::textCell() const
{
    return dynamic_cast<NSTextFieldCell*>(cell());
}

NSColor* NSTextField::textColor() const
{
    const NSTextFieldCell* const cell = textCell();
    return cell ? cell->textColor() : NSColor::labelColor();
}

void NSTextField::setTextColor(RetainPtr<NSColor> color)
{
    if (NSTextFieldCell* const cell = textCell())
        cell->setTextColor(std::move(color));
}

NSLineBreakMode NSTextField::lineBreakMode() const
{
    const NSTextFieldCell* const cell = textCell();
    return cell ? cell->lineBreakMode() : NSLineBreakByWordWrapping;
}

void NSTextField::setLineBreakMode(NSLineBreakMode mode)
{
    if (NSTextFieldCell* const cell = textCell())
        cell->setLineBreakMode(mode);
}

void NSTextField::setPreferredMaxLayoutWidth(CGFloat width)
{
    width = positiveOrZero(width);
    if (width == _preferredMaxLayoutWidth)
        return;
    _preferredMaxLayoutWidth = width;
    invalidateIntrinsicContentSize();
}

NSSize NSTextField::intrinsicContentSize() const
{
    const NSTextFieldCell* const cell = textCell();
    return cell ? cell->cellSizeForBounds(NSMakeRect(0, 0, _preferredMaxLayoutWidth, 0))
                : NSControl::intrinsicContentSize();
}

RetainPtr<NSObject> NSTextField::accessibilityValue() const
{
    return box(stringValue());
}
