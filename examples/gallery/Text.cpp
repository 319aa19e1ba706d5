#include "Text.h"

#include "Page.h"

#include <AppKit/NSFont.h>

#include <algorithm>
#include <cmath>

CGFloat lineHeight(const TextStyle& style)
{
    return std::round(style.size * 1.45);
}

RetainPtr<const CTLine> makeTextLine(const NSString& text, const TextStyle& style)
{
    const auto attributes = make<NSDictionary>(NSDictionary::Map{
        {kCTFontAttributeName,
            style.isBold ? NSFont::boldSystemFontOfSize(style.size) : NSFont::systemFontOfSize(style.size)},
        {kCTForegroundColorAttributeName, box(galleryCGColor(style.color))},
    });
    const auto string = make<NSAttributedString>(text, attributes);
    return adopt(CTLineCreateWithAttributedString(string));
}

CGFloat textWidth(const NSString& text, const TextStyle& style)
{
    return CTLineGetTypographicBounds(makeTextLine(text, style).get(), nullptr, nullptr, nullptr);
}

namespace {

NSString part(const NSString& text, NSUInteger begin, NSUInteger end)
{
    return text.substringWithRange({begin, end - begin});
}

/// The end of the character that begins at `index`, which may be a surrogate pair.
NSUInteger nextCharacter(const NSString& text, NSUInteger index)
{
    const char16_t unit = text.characterAtIndex(index);
    return std::min(index + (unit >= 0xD800 && unit < 0xDC00 ? 2 : 1), text.length());
}

bool isLetter(char16_t unit)
{
    return (unit | 0x20) >= u'a' && (unit | 0x20) <= u'z';
}

/// Whether a line may end before the character at `index`: a space, or what follows a hyphen within a word.
bool isBreak(const NSString& text, NSUInteger index)
{
    return text.characterAtIndex(index) == u' '
        || (index >= 2 && text.characterAtIndex(index - 1) == u'-'
            && isLetter(text.characterAtIndex(index - 2)));
}

/// The end of the longest start of `text` from `begin` on that is at most that wide, one character at least.
NSUInteger endOfFittingPart(const NSString& text, NSUInteger begin, const TextStyle& style, CGFloat width)
{
    NSUInteger end = nextCharacter(text, begin);
    while (end < text.length()) {
        const NSUInteger next = nextCharacter(text, end);
        if (textWidth(part(text, begin, next), style) > width)
            break;
        end = next;
    }
    return end;
}

} // namespace

std::vector<NSString> wrappedText(const NSString& text, const TextStyle& style, CGFloat width)
{
    std::vector<NSString> lines;
    NSUInteger begin = 0;
    while (begin < text.length()) {
        if (text.characterAtIndex(begin) == u' ') {
            ++begin; // the blank of the line break
            continue;
        }
        const NSUInteger fitting = endOfFittingPart(text, begin, style, width);
        NSUInteger end = fitting;
        if (fitting < text.length()) {
            while (end > begin && !isBreak(text, end))
                --end;
            if (end == begin)
                end = fitting;
        }
        while (text.characterAtIndex(end - 1) == u' ')
            --end;
        lines.push_back(part(text, begin, end));
        begin = end;
    }
    return lines;
}

NSString shortenedText(const NSString& text, const TextStyle& style, CGFloat width)
{
    if (text.length() == 0 || textWidth(text, style) <= width)
        return text;
    const CGFloat room = width - textWidth("…", style);
    return NSString(part(text, 0, endOfFittingPart(text, 0, style, room)).UTF8String() + "…");
}

void drawLabel(
    CGContextRef context, const NSString& text, CGPoint point, const TextStyle& style, LabelPlace place)
{
    const auto line = makeTextLine(text, style);
    if (place == LabelPlace::Around) {
        const CGRect ink = CTLineGetBoundsWithOptions(line, kCTLineBoundsUseGlyphPathBounds);
        point = {point.x - CGRectGetMidX(ink), point.y - CGRectGetMidY(ink)};
    } else if (place == LabelPlace::CentredOnPoint) {
        point.x = std::round(point.x - CTLineGetTypographicBounds(line, nullptr, nullptr, nullptr) / 2);
    }
    CGContextSetTextPosition(context, point.x, point.y);
    CTLineDraw(line, context);
}

void drawLabels(
    CGContextRef context, const std::vector<NSString>& lines, CGPoint point, const TextStyle& style)
{
    for (const NSString& line : lines) {
        drawLabel(context, line, point, style);
        point.y -= lineHeight(style);
    }
}
