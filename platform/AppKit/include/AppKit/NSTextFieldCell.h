#pragma once

#include <AppKit/NSCell.h>

class NSColor;

/// The text of an NSTextField, and how it is drawn.
///
/// Its value is a string, which has the cell's font, colour, alignment and line-break mode, or an attributed
/// string, which has its own attributes. A setter redraws the control view and lets it lay out again, unless
/// the value is the same. Lengths are in points. Main thread only.
///
/// Another look of text fields is a class derived from this one, which overrides `drawWithFrame` and is given
/// to the field with `setCell`.
class KORVID_EXPORT NSTextFieldCell : public NSActionCell {
public:
    /// A cell without text, with the 13-point system font.
    NSTextFieldCell();
    /// A cell with that text.
    explicit NSTextFieldCell(const NSString& text);

    /// The colour of a string. Borrowed, never null. Default `NSColor::labelColor()`.
    NSColor* textColor() const { return _textColor.get(); }
    /// Retains the colour; null means the default.
    void setTextColor(RetainPtr<NSColor> color);

    /// What happens to lines of a string that are wider than the cell. Default NSLineBreakByWordWrapping.
    NSLineBreakMode lineBreakMode() const { return _lineBreakMode; }
    /// A value that is none of the six counts as NSLineBreakByWordWrapping.
    void setLineBreakMode(NSLineBreakMode mode);

    /// Also notifies assistive technology.
    void setObjectValue(RetainPtr<NSObject> value) override;
    /// An attributed string as it is. Of another value the string, with the cell's font, colour, alignment
    /// and line-break mode.
    RetainPtr<NSAttributedString> attributedStringValue() const override;

    /// Draws the lines from the top of the frame downward, with their fonts' leading; see NSStringDrawing.h.
    /// There is no margin, border or background.
    void drawInteriorWithFrame(NSRect frame, NSView* view) override;
    /// The size of the text in lines of any width, rounded up to whole points. A text without characters has
    /// no width and the height of a line.
    NSSize cellSize() const override;
    /// The same in lines no wider than `bounds`, if its width is above 0. Its height is no limit.
    NSSize cellSizeForBounds(NSRect bounds) const;

protected:
    ~NSTextFieldCell() override;

private:
    RetainPtr<NSColor> _textColor;
    NSLineBreakMode _lineBreakMode = NSLineBreakByWordWrapping;
};
