#include "TextLayout.h"

#include "CoreText/CTLineInternal.h"
#include "CoreText/LineBreaker.h"
#include "TruncatedLine.h"

#include <AppKit/NSFont.h>
#include <AppKit/NSParagraphStyle.h>
#include <Foundation/NSNumber.h>

#include <algorithm>
#include <cmath>

namespace {

const NSParagraphStyle& paragraphStyleOf(const NSDictionary& attributes)
{
    const auto* style =
        dynamic_cast<const NSParagraphStyle*>(attributes.objectForKey(NSParagraphStyleAttributeName));
    return style ? *style : *NSParagraphStyle::defaultParagraphStyle();
}

/// The heights of a line's fonts.
struct FontHeights {
    double ascent = 0;
    double descent = 0;
    double leading = 0;
};

FontHeights heightsOfFont(const NSDictionary& attributes)
{
    RetainPtr<const CTFont> font = dynamic_cast<CTFontRef>(attributes.objectForKey(NSFontAttributeName));
    if (!font)
        font = adopt(CTFontCreateWithName("Helvetica", 12));
    return {CTFontGetAscent(font), CTFontGetDescent(font), CTFontGetLeading(font)};
}

/// The units of the first paragraph that begins at `start`, without what ends it.
NSRange paragraphAt(std::u16string_view units, NSUInteger start)
{
    const auto end = std::find_if(units.begin() + std::ptrdiff_t(start), units.end(), endsParagraph);
    return NSMakeRange(start, NSUInteger(end - units.begin()) - start);
}

/// The index behind the separator at an index.
NSUInteger behindSeparator(std::u16string_view units, NSUInteger index)
{
    return index + (units.substr(index, 2) == u"\r\n" ? 2 : 1);
}

/// The part of a string as a line that is `width` wide, by wider blanks; null when it has none.
RetainPtr<const CTLine> justifiedLine(const NSAttributedString& string, NSRange range, double extraWidth)
{
    const auto part = string.attributedSubstringFromRange(range)->mutableCopy();
    const std::u16string_view units = part->string().view();
    const auto blanks = std::count_if(units.begin(), units.end(), isBlank);
    if (blanks == 0)
        return nullptr;
    for (NSUInteger i = 0; i < part->length(); ++i) {
        if (!isBlank(part->string().view()[i]))
            continue;
        const auto* kern = dynamic_cast<const NSNumber*>(part->attributeAtIndex(NSKernAttributeName, i));
        const double points = (kern ? kern->doubleValue() : 0) + extraWidth / double(blanks);
        part->addAttribute(NSKernAttributeName, NSNumber::numberWithDouble(points), NSMakeRange(i, 1));
    }
    return adopt(CTLineCreateWithAttributedString(part));
}

} // namespace

/// Makes the lines of a layout from its string.
class TextLayout::Builder {
public:
    Builder(TextLayout& layout, const NSAttributedString& string, NSStringDrawingOptions options)
        : _layout(layout)
        , _string(string)
        , _isBlock(options & NSStringDrawingUsesLineFragmentOrigin)
        , _usesLeading(options & NSStringDrawingUsesFontLeading)
    {
    }

    void addParagraphs()
    {
        const std::u16string_view units = _string.string().view();
        for (NSUInteger start = 0;;) {
            const NSRange paragraph = paragraphAt(units, start);
            addParagraph(paragraph);
            const NSUInteger end = NSMaxRange(paragraph);
            if (end == units.size() || !_isBlock)
                return;
            start = behindSeparator(units, end);
        }
    }

private:
    void addParagraph(NSRange paragraph)
    {
        const NSUInteger last = _string.length() - 1;
        _attributes = _string.attributesAtIndex(std::min(paragraph.location, last));
        _style = &paragraphStyleOf(*_attributes);
        _isRightToLeft =
            beginsRightToLeft(_string.string().view().substr(paragraph.location, paragraph.length));
        const auto line = makeLine(_string, paragraph);
        const bool isTooWide = _layout._width > 0 && widthOf(line) > _layout._width;
        const NSLineBreakMode mode = _style->lineBreakMode();
        if (!isTooWide)
            addLine(line);
        else if (mode >= NSLineBreakByTruncatingHead)
            addLine(truncatedLine(_string, paragraph, _layout._width, mode));
        else if (mode == NSLineBreakByClipping || !_isBlock)
            addLine(line, mode == NSLineBreakByClipping);
        else
            addWrapped(paragraph, mode == NSLineBreakByCharWrapping ? TextBreak::Cluster : TextBreak::Line);
    }

    void addWrapped(NSRange paragraph, TextBreak kind)
    {
        const LineBreaker breaker(_string, paragraph);
        for (NSUInteger start = paragraph.location; start < NSMaxRange(paragraph);) {
            const NSUInteger end = breaker.lineEnd(start, _layout._width, kind);
            const NSRange range = breaker.withoutBlanks(start, end);
            auto line = makeLine(_string, range);
            const double missing = _layout._width - widthOf(line);
            if (_style->alignment() == NSTextAlignmentJustified && end < NSMaxRange(paragraph) && missing > 0)
                if (auto justified = justifiedLine(_string, range, missing))
                    line = std::move(justified);
            addLine(line);
            start = end;
        }
    }

    void addLine(const RetainPtr<const CTLine>& line, bool isClipped = false)
    {
        FontHeights fonts;
        const double width = CTLineGetTypographicBounds(line, &fonts.ascent, &fonts.descent, &fonts.leading);
        if (fonts.ascent + fonts.descent == 0) // without glyphs
            fonts = heightsOfFont(*_attributes);
        if (!_usesLeading)
            fonts.leading = 0;
        if (!_layout._lines.empty())
            _layout._size.height += _lineSpacing;
        _lineSpacing = _style->lineSpacing();
        const double height = lineHeight(fonts.ascent + fonts.descent + fonts.leading);
        _layout._size.height += height;
        _layout._size.width = std::max(_layout._size.width, width);
        const double baseline = _layout._size.height - fonts.descent - fonts.leading;
        _layout._lines.push_back({line, width, baseline, alignment(), isClipped});
    }

    /// The natural height within the limits of the paragraph style.
    double lineHeight(double natural) const
    {
        const double multiple = _style->lineHeightMultiple();
        double height = multiple > 0 ? natural * multiple : natural;
        if (_style->maximumLineHeight() > 0)
            height = std::min(height, _style->maximumLineHeight());
        return std::max(height, _style->minimumLineHeight());
    }

    double alignment() const
    {
        switch (_style->alignment()) {
        case NSTextAlignmentLeft:
            return 0;
        case NSTextAlignmentCenter:
            return 0.5;
        case NSTextAlignmentRight:
            return 1;
        default:
            return _isRightToLeft ? 1 : 0;
        }
    }

    static double widthOf(const CTLine* line)
    {
        return CTLineGetTypographicBounds(line, nullptr, nullptr, nullptr);
    }

    TextLayout& _layout;
    const NSAttributedString& _string;
    const bool _isBlock;
    const bool _usesLeading;

    // Of the current paragraph.
    const NSDictionary* _attributes = nullptr; ///< of its first character, or of what separates it
    const NSParagraphStyle* _style = nullptr;
    bool _isRightToLeft = false;
    double _lineSpacing = 0; ///< below the last line
};

TextLayout::TextLayout(const NSAttributedString& string, double width, NSStringDrawingOptions options)
    : _width(width > 0 ? width : 0)
{
    if (string.length() > 0)
        Builder(*this, string, options).addParagraphs();
}

void TextLayout::draw(CGContextRef context, double left, double top, bool isFlipped) const
{
    const CGAffineTransform textMatrix = CGContextGetTextMatrix(context);
    const double down = isFlipped ? 1 : -1;
    const double width = _width > 0 && std::isfinite(_width) ? _width : _size.width;
    for (const Line& line : _lines) {
        const double x = left + std::max((width - line.width) * line.alignment, 0.0);
        CGContextSetTextMatrix(context, {1, 0, 0, -down, x, top + down * line.baseline});
        if (line.isClipped) {
            const double height = _size.height;
            CGContextSaveGState(context);
            CGContextClipToRect(context, CGRectMake(left, isFlipped ? top : top - height, width, height));
        }
        CTLineDraw(line.line, context);
        if (line.isClipped)
            CGContextRestoreGState(context);
    }
    CGContextSetTextMatrix(context, textMatrix);
}
