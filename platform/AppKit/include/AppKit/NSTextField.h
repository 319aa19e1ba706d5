#pragma once

#include <AppKit/NSControl.h>
#include <AppKit/NSTextFieldCell.h>

/// A label: text that the user reads and does not change.
///
///     auto name = NSTextField::labelWithString("Name");
///     name->setAlignment(NSTextAlignmentRight);
///     name->sizeToFit();
///
/// The text is the control's value: `setStringValue` takes the font, colour, alignment and line-break mode of
/// the field's cell, `setAttributedStringValue` has its own. Assistive technology reads it as static text.
/// The view is flipped. Main thread only.
///
/// Differs: a field does not take input, has no border or background, and has no margin beside its text.
class KORVID_EXPORT NSTextField : public NSControl {
public:
    /// A field with an empty frame.
    NSTextField();
    /// A field at `frame`, in the coordinates of its future superview.
    explicit NSTextField(NSRect frame);
    /// The field that `encodeWithCoder` wrote.
    explicit NSTextField(NSCoder* coder);
    /// Writes what the control writes, alignment and line-break mode. Of an attributed string only the string
    /// is written.
    void encodeWithCoder(NSCoder* coder) const override;
    /// A field with that text, of its intrinsic size at (0, 0).
    static RetainPtr<NSTextField> labelWithString(const NSString& text);

    bool isFlipped() const override { return true; }

    /// Whether the user can change the text. False: fields here show text.
    bool isEditable() const { return false; }
    /// Whether the user can select the text. False: fields here show text.
    bool isSelectable() const { return false; }

    // Properties of the cell. If it is no NSTextFieldCell they have their default values, which the setters
    // do not change.

    /// Borrowed, never null. Default `NSColor::labelColor()`.
    NSColor* textColor() const;
    /// Retains the colour; null means the default. Redraws, unless it is the same.
    void setTextColor(RetainPtr<NSColor> color);
    /// Default NSLineBreakByWordWrapping.
    NSLineBreakMode lineBreakMode() const;
    /// A value that is none of the six counts as NSLineBreakByWordWrapping. Redraws, unless it is the
    /// same.
    void setLineBreakMode(NSLineBreakMode mode);

    /// The width at which lines are broken for the intrinsic content size. Default 0: lines of any width.
    CGFloat preferredMaxLayoutWidth() const { return _preferredMaxLayoutWidth; }
    /// Negative and infinite widths and NaN count as 0. Invalidates the intrinsic content size, unless the
    /// width is the same.
    void setPreferredMaxLayoutWidth(CGFloat width);
    /// The size of the text in lines of `preferredMaxLayoutWidth()`, rounded up to whole points.
    NSSize intrinsicContentSize() const override;

    NSAccessibilityRole accessibilityRole() const override { return NSAccessibilityStaticTextRole; }
    /// The text.
    RetainPtr<NSObject> accessibilityValue() const override;

protected:
    ~NSTextField() override;

private:
    NSTextFieldCell* textCell() const;

    CGFloat _preferredMaxLayoutWidth = 0;
};
