// Text: a string whose parts have looks of their own; a paragraph that a button aligns; lines that are too
// wide, in each line-break mode; and the measurements of a line.

#include "Page.h"
#include "Text.h"

#include <AppKit/NSButton.h>
#include <AppKit/NSFont.h>
#include <AppKit/NSParagraphStyle.h>
#include <AppKit/NSStringDrawing.h>
#include <Foundation/NSNumber.h>
#include <KorvidAppKit/ZRGraphics.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

namespace {

constexpr CGFloat kTextInset = 12;
constexpr CGFloat kParagraphSize = 12;

/// The part of a card above its caption, within a margin.
NSRect textRoom(NSRect card)
{
    NSRect room = NSInsetRect(aboveCaption(card), kTextInset, 0);
    room.size.height = std::max(0.0, room.size.height - kTextInset);
    return room;
}

RetainPtr<NSMutableDictionary> makeAttributes(const RetainPtr<NSFont>& font, const char* color)
{
    auto attributes = make<NSMutableDictionary>();
    attributes->setObject(font, NSFontAttributeName);
    attributes->setObject(galleryColor(color), NSForegroundColorAttributeName);
    return attributes;
}

/// A card with a caption.
class TextCard : public NSView {
public:
    explicit TextCard(NSString caption)
        : _caption(std::move(caption))
    {
    }

    void drawRect(NSRect) override
    {
        fillGalleryCard(ZRGraphics::sharedContext(), bounds());
        drawCaption(ZRGraphics::sharedContext(), bounds(), _caption);
    }

protected:
    ~TextCard() override = default;

private:
    const NSString _caption;
};

/// One string with several fonts, colours and spacings.
class AttributesCard : public TextCard {
public:
    AttributesCard()
        : TextCard("One string, many looks")
    {
    }

    void drawRect(NSRect dirtyRect) override
    {
        TextCard::drawRect(dirtyRect);
        const auto string = make<NSMutableAttributedString>();
        const auto append = [&](const NSString& text, CGFloat size, bool isBold, const char* color,
                                double kern = 0) {
            const auto font = isBold ? NSFont::boldSystemFontOfSize(size) : NSFont::systemFontOfSize(size);
            const auto attributes = makeAttributes(font, color);
            if (kern != 0)
                attributes->setObject(NSNumber::numberWithDouble(kern), NSKernAttributeName);
            const auto part = make<NSAttributedString>(text, attributes);
            string->appendAttributedString(part);
        };
        append("Words may be ", 14, false, "zel-white-evenstronger");
        append("bold", 14, true, "zel-menu-fg-lit");
        append(", ", 14, false, "zel-white-evenstronger");
        append("blue", 14, false, "zel-blue-highlight");
        append(" or ", 14, false, "zel-white-evenstronger");
        append("large", 26, true, "zel-orange-highlight");
        append(", with letters ", 14, false, "zel-white-evenstronger");
        append("apart", 14, false, "zel-green-highlight", 3);
        append(", in all scripts: Größe, Ελληνικά, עברית.", 14, false, "zel-white-evenstronger");
        NSExtendedStringDrawing::drawWithRect(
            string, textRoom(bounds()), NSStringDrawingUsesLineFragmentOrigin);
    }

protected:
    ~AttributesCard() override = default;
};

/// A paragraph, and a button that aligns it.
class ParagraphCard : public TextCard {
public:
    ParagraphCard()
        : TextCard("A paragraph")
        , _button(NSButton::buttonWithTitle(kAlignments[0].title, this, selector<&ParagraphCard::next>))
    {
        _button->setToolTip("Shows the next alignment");
        addSubview(_button);
    }

    void next()
    {
        _number = (_number + 1) % kAlignments.size();
        _button->setTitle(kAlignments[_number].title);
        setNeedsDisplay(true);
    }

    void resizeSubviewsWithOldSize(NSSize) override
    {
        constexpr NSSize kSize{88, 24};
        _button->setFrame(NSMakeRect(bounds().size.width - kSize.width - 8, 6, kSize.width, kSize.height));
    }

    void drawRect(NSRect dirtyRect) override
    {
        TextCard::drawRect(dirtyRect);
        const auto style = make<NSMutableParagraphStyle>();
        style->setAlignment(kAlignments[_number].alignment);
        style->setLineHeightMultiple(1.2);
        const auto attributes =
            makeAttributes(NSFont::systemFontOfSize(kParagraphSize), "zel-white-evenstronger");
        attributes->setObject(style, NSParagraphStyleAttributeName);
        NSExtendedStringDrawing::drawWithRect("The lines of a paragraph start at the left, end at the right, "
                                              "are centred, or reach from edge to "
                                              "edge. The button shows one after the other.",
            textRoom(bounds()), NSStringDrawingUsesLineFragmentOrigin, attributes);
    }

protected:
    ~ParagraphCard() override = default;

private:
    struct Alignment {
        const char* title;
        NSTextAlignment alignment;
    };
    static constexpr std::array<Alignment, 4> kAlignments{{{"Justified", NSTextAlignmentJustified},
        {"Left", NSTextAlignmentLeft}, {"Centre", NSTextAlignmentCenter}, {"Right", NSTextAlignmentRight}}};

    const RetainPtr<NSButton> _button;
    std::size_t _number = 0;
};

/// One text, too wide for its rows, in the modes that keep it on one line.
class LineBreaksCard : public TextCard {
public:
    LineBreaksCard()
        : TextCard("Clipped, and shortened")
    {
    }

    void drawRect(NSRect dirtyRect) override
    {
        TextCard::drawRect(dirtyRect);
        CGContextRef context = ZRGraphics::sharedContext();
        const NSRect room = textRoom(bounds());
        const auto attributes =
            makeAttributes(NSFont::systemFontOfSize(kParagraphSize + 1), "zel-white-evenstronger");
        constexpr NSLineBreakMode kModes[]{NSLineBreakByClipping, NSLineBreakByTruncatingHead,
            NSLineBreakByTruncatingMiddle, NSLineBreakByTruncatingTail};
        const CGFloat step = std::floor(room.size.height / CGFloat(std::size(kModes)));
        NSRect row = NSMakeRect(room.origin.x, NSMaxY(room) - step, room.size.width, step);
        for (const NSLineBreakMode mode : kModes) {
            const auto style = make<NSMutableParagraphStyle>();
            style->setLineBreakMode(mode);
            attributes->setObject(style, NSParagraphStyleAttributeName);
            NSExtendedStringDrawing::drawWithRect(
                "A line of text that is wider than all cards of this page, and "
                "ends here, far away",
                NSInsetRect(row, 0, std::floor((step - 16) / 2)), NSStringDrawingUsesLineFragmentOrigin,
                attributes);
            CGContextSetFillColorWithColor(context, galleryCGColor("zel-hairline-solid"));
            CGContextFillRect(context, NSMakeRect(row.origin.x, row.origin.y, row.size.width, 1));
            row.origin.y -= step;
        }
    }

protected:
    ~LineBreaksCard() override = default;
};

/// A line with its baseline, its ascent and descent, and the box around its ink.
class MetricsCard : public TextCard {
public:
    MetricsCard()
        : TextCard("A line, measured")
    {
    }

    void drawRect(NSRect dirtyRect) override
    {
        TextCard::drawRect(dirtyRect);
        CGContextRef context = ZRGraphics::sharedContext();
        const NSRect room = textRoom(bounds());
        const CGFloat size = std::round(std::min(room.size.height * 0.62, room.size.width * 0.3));
        const TextStyle style{size, true, "zel-menu-fg-lit", "zel-button-bg"};
        const auto line = makeTextLine("Ángel", style);
        CGFloat ascent = 0, descent = 0;
        const CGFloat width = CTLineGetTypographicBounds(line, &ascent, &descent, nullptr);
        const NSPoint start = {
            std::round(NSMidX(room) - width / 2), std::round(NSMidY(room) - (ascent - descent) / 2)};
        const CGRect ink = CTLineGetBoundsWithOptions(line, kCTLineBoundsUseGlyphPathBounds);
        const CGRect box = CGRectIntegral(CGRectInset(CGRectOffset(ink, start.x, start.y), -1, -1));
        CGContextSetFillColorWithColor(context, galleryCGColor("zel-switch-bg-gray"));
        CGContextFillRect(context, box);
        const auto drawGuide = [&](CGFloat y, const char* color) {
            CGContextSetFillColorWithColor(context, galleryCGColor(color));
            CGContextFillRect(context, NSMakeRect(NSMinX(room), std::round(start.y + y), room.size.width, 1));
        };
        drawGuide(ascent, "zel-blue-highlight");
        drawGuide(-descent, "zel-blue-highlight");
        drawGuide(-1, "zel-orange-highlight");
        CGContextSetTextPosition(context, start.x, start.y);
        CTLineDraw(line, context);
    }

protected:
    ~MetricsCard() override = default;
};

RetainPtr<NSView> makeTextPage(const GalleryOptions&)
{
    std::vector<RetainPtr<NSView>> cards{
        make<AttributesCard>(), make<ParagraphCard>(), make<LineBreaksCard>(), make<MetricsCard>()};
    return makeGalleryPage(std::move(cards), galleryGrid(2, 4));
}

const GalleryPage textPage{"text", 84, "Text",
    "Strings whose parts have fonts, colours and spacings of their own; paragraphs; lines that are too wide; "
    "and the "
    "measurements of a line. The button aligns the paragraph.",
    makeTextPage};

} // namespace
