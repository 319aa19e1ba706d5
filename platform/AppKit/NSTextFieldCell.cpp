#include <AppKit/NSTextFieldCell.h>

#include "ControlValue.h"

#include <AppKit/NSColor.h>
#include <AppKit/NSFont.h>
#include <AppKit/NSStringDrawing.h>
#include <AppKit/NSView.h>

#include <cmath>

namespace {

constexpr NSStringDrawingOptions kDrawingOptions =
    NSStringDrawingUsesLineFragmentOrigin | NSStringDrawingUsesFontLeading;

} // namespace

NSTextFieldCell::NSTextFieldCell()
    : _textColor(NSColor::labelColor())
{
    setFont(NSFont::systemFontOfSize(13));
}

NSTextFieldCell::NSTextFieldCell(const NSString& text)
    : NSTextFieldCell()
{
    setStringValue(text);
}

NSTextFieldCell::~NSTextFieldCell() = default;

void NSTextFieldCell::setTextColor(RetainPtr<NSColor> color)
{
    if (!color)
        color = NSColor::labelColor();
    if (color == _textColor || color->isEqual(_textColor))
        return;
    _textColor = std::move(color);
    contentsDidChange();
}

void NSTextFieldCell::setLineBreakMode(NSLineBreakMode mode)
{
    mode = mode <= NSLineBreakByTruncatingMiddle ? mode : NSLineBreakByWordWrapping;
    if (mode == _lineBreakMode)
        return;
    _lineBreakMode = mode;
    contentsDidChange();
}

void NSTextFieldCell::setObjectValue(RetainPtr<NSObject> value)
{
    const NSString oldText = stringValue();
    NSActionCell::setObjectValue(std::move(value));
    if (NSView* const view = controlView(); view && stringValue() != oldText) {
        NSAccessibilityPostNotification(view, NSAccessibilityValueChangedNotification);
        // The text is also the name of a field without a label.
        NSAccessibilityPostNotification(view, NSAccessibilityTitleChangedNotification);
    }
}

RetainPtr<NSAttributedString> NSTextFieldCell::attributedStringValue() const
{
    const auto style = make<NSMutableParagraphStyle>();
    style->setAlignment(alignment());
    style->setLineBreakMode(_lineBreakMode);
    NSDictionary::Map attributes{
        {NSForegroundColorAttributeName, _textColor}, {NSParagraphStyleAttributeName, style->copy()}};
    if (font())
        attributes[NSFontAttributeName] = font();
    return attributedStringOfValue(objectValue(), make<NSDictionary>(std::move(attributes)));
}

void NSTextFieldCell::drawInteriorWithFrame(NSRect frame, NSView*)
{
    NSExtendedStringDrawing::drawWithRect(attributedStringValue().get(), frame, kDrawingOptions);
}

NSSize NSTextFieldCell::cellSize() const
{
    return cellSizeForBounds(NSZeroRect);
}

NSSize NSTextFieldCell::cellSizeForBounds(NSRect bounds) const
{
    const auto text = attributedStringValue();
    NSSize size = NSExtendedStringDrawing::boundingRectWithSize(text, bounds.size, kDrawingOptions).size;
    if (text->length() == 0 && font())
        size.height = font()->ascender() - font()->descender() + font()->leading();
    return NSMakeSize(std::ceil(size.width), std::ceil(size.height));
}
