#pragma once

#include <AppKit/NSTextFieldCell.h>
#include <CoreGraphics/CGContext.h>

class NSTextField;

/// What a text field that shows a ZRTextFieldCell adds to it: a class derived from NSTextField adopts this as
/// a second base.
///
///     class Title : public NSTextField, public ZRTextFieldCellControlView {
///     public:
///         Title() { setCell(make<ZRTextFieldCell>()); }
///         NSInteger verticalAlignment() const override { return _verticalAlignment; }
///         void setVerticalAlignment(NSInteger alignment) override
///         {
///             _verticalAlignment = alignment;
///             setNeedsDisplay(true);
///         }
///         …
///     };
///
/// The cell reads the values whenever it draws. Main thread only.
class KORVID_EXPORT ZRTextFieldCellControlView {
public:
    /// An NSTextAlignment: NSTextAlignmentCenter centres the lines vertically; with every other value they
    /// start at the top.
    virtual NSInteger verticalAlignment() const = 0;
    /// Stores the alignment; an implementation also redraws the field.
    virtual void setVerticalAlignment(NSInteger alignment) = 0;
    /// The distance between baselines as a multiple of the first line's height, which is from the descent to
    /// the ascent of its fonts. An infinite one and NaN count as 0.
    virtual double lineHeightMultiplier() const = 0;
    /// Stores the multiple; an implementation also redraws the field.
    virtual void setLineHeightMultiplier(double multiplier) = 0;
    /// The space after each character as a multiple of the font's size. An infinite one and NaN count as 0.
    virtual double kernMultiplier() const = 0;
    /// Stores the multiple; an implementation also redraws the field.
    virtual void setKernMultiplier(double multiplier) = 0;

protected:
    virtual ~ZRTextFieldCellControlView();
};

/// A text field's cell that draws lines with a spacing of its own and shortens a line in its middle.
///
/// Set it before the text, which belongs to the cell:
///
///     auto path = make<NSTextField>(NSMakeRect(0, 0, 180, 20));
///     path->setCell(make<ZRTextFieldCell>());
///     path->setLineBreakMode(NSLineBreakByTruncatingMiddle);
///     path->setStringValue("/usr/share/doc/korvidappkit/README.md"); // "/usr/share/d…/README.md"
///
/// It draws text only: no border, background or focus ring. All of the text has the font and colour of its
/// first character (without a colour `NSColor::labelColor()`), and the horizontal alignment of its paragraph
/// style; without one, and when it is justified or natural, lines start at the left edge.
///
/// A line ends at each "\n" and nowhere else. Lines that are wider than the frame start at its left edge and
/// are not cut. Their distance and the space between characters come from the field, if it adopts
/// ZRTextFieldCellControlView. Any other field has neither: all of its lines are drawn on one baseline, over
/// each other.
///
/// When the field's `lineBreakMode` is NSLineBreakByTruncatingMiddle, the first line alone is drawn. If it is
/// wider than the frame, "…" takes the place of its two middle code units, then also of one more at a time,
/// by turns before and behind it, until the line fits or is one unit and "…"; the field's tool tip becomes
/// its whole text. A line that fits removes the tool tip. In other modes the tool tip is left alone. Where
/// half of a surrogate pair is left, it is drawn as U+FFFD, the replacement character. The shortened line of
/// a text is found by layouts of a few candidates, so that long texts may be drawn 60 times a second.
///
/// A text without characters has no attributes: nothing is drawn, and in that mode the tool tip is removed.
class KORVID_EXPORT ZRTextFieldCell : public NSTextFieldCell {
public:
    using NSTextFieldCell::NSTextFieldCell;

    /// Draws the text of the control view from the top of `frame`, of which only the size counts, at the
    /// origin of the context's coordinates, y downward, as in a text field, which is flipped. The second
    /// argument is ignored.
    ///
    /// The first baseline lies below the top by the height of the first line's ink, rounded up to a point;
    /// the distance of baselines is rounded up, too, and the start of a line is rounded to the nearest point.
    ///
    /// Raises ZRErrorDomain when the control view is no NSTextField; the context's graphics state then stays
    /// saved once. A first character without a font is logged, and the 10-point system font is used. Several
    /// lines where one is shortened are logged, too.
    void drawWithFrame(NSRect frame, NSView* view) override;

protected:
    ~ZRTextFieldCell() override;

private:
    void drawText(CGContextRef context, NSSize size, NSTextField& field);
};
