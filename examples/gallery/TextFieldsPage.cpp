// Text fields: one that is shortened in its middle at three widths, which a drag changes; fields with their
// lines and letters apart; fields aligned within their frames; and strings at the top, middle and bottom of a
// rectangle.

#include "Page.h"
#include "Text.h"

#include <AppKit/NSEvent.h>
#include <AppKit/NSFont.h>
#include <AppKit/NSTextField.h>
#include <KorvidAppKit/ZRAppKitAdditions.h>
#include <KorvidAppKit/ZRGraphics.h>
#include <KorvidAppKit/ZRTextFieldCell.h>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace {

constexpr CGFloat kFieldGap = 12;
constexpr CGFloat kFieldFontSize = 14;
constexpr CGFloat kColumnFontSize = 12;
constexpr const char* kTextColor = "zel-white-evenstronger";

/// A field whose cell spaces lines and letters as it says.
class SpacedField : public NSTextField, public ZRTextFieldCellControlView {
public:
    explicit SpacedField(const NSString& text, NSTextAlignment alignment = NSTextAlignmentLeft)
    {
        setCell(make<ZRTextFieldCell>());
        setFont(NSFont::systemFontOfSize(kFieldFontSize));
        setTextColor(galleryColor(kTextColor));
        setAlignment(alignment);
        setStringValue(text);
    }

    NSInteger verticalAlignment() const override { return _verticalAlignment; }
    void setVerticalAlignment(NSInteger alignment) override { change(_verticalAlignment, alignment); }
    double lineHeightMultiplier() const override { return _lineHeightMultiplier; }
    void setLineHeightMultiplier(double multiplier) override { change(_lineHeightMultiplier, multiplier); }
    double kernMultiplier() const override { return _kernMultiplier; }
    void setKernMultiplier(double multiplier) override { change(_kernMultiplier, multiplier); }

protected:
    ~SpacedField() override = default;

private:
    template <class T> void change(T& property, T value)
    {
        property = value;
        setNeedsDisplay(true);
    }

    NSInteger _verticalAlignment = NSTextAlignmentCenter;
    double _lineHeightMultiplier = 1;
    double _kernMultiplier = 0;
};

/// A card with fields in equal rows, each in an outline, and a caption.
class FieldsCard : public NSView {
public:
    FieldsCard(NSString caption, const std::vector<RetainPtr<SpacedField>>& fields)
        : _caption(std::move(caption))
    {
        for (const auto& field : fields)
            addSubview(field);
    }

    void resizeSubviewsWithOldSize(NSSize) override
    {
        const NSRect room = this->room();
        const auto rowCount = CGFloat(subviews().size());
        const CGFloat height = std::floor((room.size.height - (rowCount - 1) * kFieldGap) / rowCount);
        CGFloat top = NSMaxY(room);
        for (std::size_t i = 0; i < subviews().size(); ++i) {
            subviews()[i]->setFrame(
                NSMakeRect(room.origin.x, top - height, widthOfRow(i, room.size.width), height));
            top -= height + kFieldGap;
        }
    }

    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        fillGalleryCard(context, bounds());
        drawCaption(context, bounds(), _caption);
        CGContextSetStrokeColorWithColor(context, galleryCGColor("zel-hairline-solid"));
        CGContextSetLineWidth(context, 1);
        for (const auto& field : subviews())
            CGContextStrokeRect(context, NSInsetRect(field->frame(), -2.5, -2.5));
    }

protected:
    ~FieldsCard() override = default;

    /// Where the fields are.
    NSRect room() const
    {
        return NSIntegralRect(NSInsetRect(aboveCaption(bounds()), kFieldGap + 3, kFieldGap));
    }
    virtual CGFloat widthOfRow(std::size_t /*row*/, CGFloat roomWidth) const { return roomWidth; }

private:
    const NSString _caption;
};

/// A card with one text at several widths. A press or a drag sets the widest.
class ShorteningCard : public FieldsCard {
public:
    explicit ShorteningCard(const NSString& text)
        : FieldsCard("Shortened: drag", {makeField(text), makeField(text), makeField(text)})
    {
    }

    void mouseDown(NSEvent* event) override
    {
        const CGFloat x = convertPointFromView(event->locationInWindow(), nullptr).x;
        _share = std::clamp((x - room().origin.x) / room().size.width, 0.05, 1.0);
        resizeSubviewsWithOldSize(bounds().size);
        setNeedsDisplay(true);
    }
    void mouseDragged(NSEvent* event) override { mouseDown(event); }

protected:
    ~ShorteningCard() override = default;

    CGFloat widthOfRow(std::size_t row, CGFloat roomWidth) const override
    {
        constexpr CGFloat kShares[] = {1, 0.7, 0.45};
        return std::round(roomWidth * kShares[row] * _share);
    }

private:
    static RetainPtr<SpacedField> makeField(const NSString& text)
    {
        auto field = make<SpacedField>(text);
        field->setLineBreakMode(NSLineBreakByTruncatingMiddle);
        return field;
    }

    CGFloat _share = 1;
};

RetainPtr<NSView> makeSpacingCard()
{
    const auto apart = make<SpacedField>("letters");
    apart->setKernMultiplier(0.25);
    const auto lines = make<SpacedField>("lines of\n1.3 heights");
    lines->setLineHeightMultiplier(1.3);
    return make<FieldsCard>("Apart", std::vector{apart, lines});
}

RetainPtr<NSView> makeAlignmentsCard()
{
    const auto top = make<SpacedField>("right, at the top", NSTextAlignmentRight);
    top->setVerticalAlignment(NSTextAlignmentNatural);
    return make<FieldsCard>("Aligned",
        std::vector{
            make<SpacedField>("left"), make<SpacedField>("in the middle", NSTextAlignmentCenter), top});
}

/// A card with a string in each of three columns.
class StringsCard : public NSView {
public:
    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        fillGalleryCard(context, bounds());
        drawCaption(context, bounds(), "Strings in rectangles");
        const NSRect room = NSIntegralRect(NSInsetRect(aboveCaption(bounds()), kFieldGap, kFieldGap));
        const CGFloat width = std::floor((room.size.width - 2 * kFieldGap) / 3);
        NSRect column = NSMakeRect(room.origin.x, room.origin.y, width, room.size.height);
        drawColumn(context, column, "at the\ntop", ZRVerticalAlignTop);
        column.origin.x += width + kFieldGap;
        drawColumn(context, column, "in the\nmiddle", ZRVerticalAlignCenter);
        column.origin.x += width + kFieldGap;
        drawColumn(context, column, "at the\nbottom", ZRVerticalAlignBottom);
    }

protected:
    ~StringsCard() override = default;

private:
    static void drawColumn(CGContextRef context, NSRect column, const NSString& text, NSInteger verticalAlign)
    {
        CGContextSetStrokeColorWithColor(context, galleryCGColor("zel-hairline-solid"));
        CGContextSetLineWidth(context, 1);
        CGContextStrokeRect(context, NSInsetRect(column, 0.5, 0.5));

        const auto style = make<NSMutableParagraphStyle>();
        style->setAlignment(NSTextAlignmentCenter);
        const auto attributes = make<NSMutableDictionary>();
        attributes->setObject(NSFont::systemFontOfSize(kColumnFontSize), NSFontAttributeName);
        attributes->setObject(galleryColor(kTextColor), NSForegroundColorAttributeName);
        attributes->setObject(style, NSParagraphStyleAttributeName);
        ZRAppKitAdditions::drawWithRect(text, NSInsetRect(column, 1, 4), attributes,
            NSStringDrawingUsesLineFragmentOrigin | NSStringDrawingUsesFontLeading, verticalAlign);
    }
};

RetainPtr<NSView> makeTextFieldsPage(const GalleryOptions& options)
{
    const NSString path = options.text ? options.text : NSString("/usr/share/doc/korvidappkit/README.md");
    std::vector<RetainPtr<NSView>> cards{
        make<ShorteningCard>(path), makeSpacingCard(), makeAlignmentsCard(), make<StringsCard>()};
    return makeGalleryPage(std::move(cards), galleryGrid(2, 4));
}

const GalleryPage textFieldsPage{"fields", 87, "Text fields",
    "Lines shortened in their middle, spaced and aligned. Drag in the first card to change its widths; rest "
    "the "
    "pointer on a shortened line to read all of it. Show your own text with --text TEXT.",
    makeTextFieldsPage};

} // namespace
