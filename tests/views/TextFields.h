#pragma once

#include "../platform/CoreText/DotFont.h"
#include "support/Canvas.h"

#include <AppKit/NSColor.h>
#include <AppKit/NSGraphicsContext.h>
#include <AppKit/NSParagraphStyle.h>
#include <AppKit/NSTextField.h>
#include <KorvidAppKit/ZRTextFieldCell.h>

/// A text field with a ZRTextFieldCell that decides on nothing.
class PlainField : public NSTextField {
public:
    explicit PlainField(NSRect frame)
        : NSTextField(frame)
    {
        setCell(make<ZRTextFieldCell>());
    }
};

/// One that decides on the look of its lines.
class StyledField : public PlainField, public ZRTextFieldCellControlView {
public:
    using PlainField::PlainField;

    NSInteger verticalAlignment() const override { return _verticalAlignment; }
    void setVerticalAlignment(NSInteger alignment) override { _verticalAlignment = alignment; }
    double lineHeightMultiplier() const override { return _lineHeightMultiplier; }
    void setLineHeightMultiplier(double multiplier) override { _lineHeightMultiplier = multiplier; }
    double kernMultiplier() const override { return _kernMultiplier; }
    void setKernMultiplier(double multiplier) override { _kernMultiplier = multiplier; }

private:
    NSInteger _verticalAlignment = NSTextAlignmentNatural;
    double _lineHeightMultiplier = 0;
    double _kernMultiplier = 0;
};

/// Tests with fields whose text is in the font of dots at 5 points, in black: an "a" is 2 wide, a blank 1,
/// the height of ink is 1 and that of a line 5.
class TextFieldTest : public DotFontTest {
protected:
    template <class Field> static RetainPtr<Field> field(const NSString& text, double width, double height)
    {
        auto field = make<Field>(NSMakeRect(0, 0, width, height));
        field->setFont(NSFont::fontWithName("Dots", 5));
        field->setTextColor(NSColor::blackColor());
        field->setStringValue(text);
        return field;
    }

    /// The field as large as its frame.
    static Canvas drawn(NSTextField* field)
    {
        const NSRect bounds = field->bounds();
        Canvas canvas(int(bounds.size.width), int(bounds.size.height));
        const auto context = NSGraphicsContext::graphicsContextWithCGContext(canvas.context(), false);
        field->displayRectIgnoringOpacity(bounds, context);
        return canvas;
    }

    /// The rows of the field in which there is a dot, such as "0 5".
    static std::string dotRows(NSTextField* field)
    {
        const Canvas canvas = drawn(field);
        std::string rows;
        for (int row = 0; row < canvas.height(); ++row)
            for (int column = 0; column < canvas.width(); ++column)
                if (canvas.alpha(column, row) == 255) {
                    rows += (rows.empty() ? "" : " ") + std::to_string(row);
                    break;
                }
        return rows;
    }
    /// The same for columns.
    static std::string dotColumns(NSTextField* field)
    {
        const Canvas canvas = drawn(field);
        std::string columns;
        for (int column = 0; column < canvas.width(); ++column)
            for (int row = 0; row < canvas.height(); ++row)
                if (canvas.alpha(column, row) == 255) {
                    columns += (columns.empty() ? "" : " ") + std::to_string(column);
                    break;
                }
        return columns;
    }
};
