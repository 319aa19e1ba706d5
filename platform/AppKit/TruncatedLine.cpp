#include "TruncatedLine.h"

#include "CoreText/TextBreaks.h"

#include <algorithm>

namespace {

/// The part of a text that an ellipsis replaces.
class Truncation {
public:
    Truncation(const NSAttributedString& string, NSRange range, NSLineBreakMode mode)
        : _part(string.attributedSubstringFromRange(range))
        , _mode(mode)
    {
        const std::vector<TextBreak> breaks = findTextBreaks(_part->string().view());
        for (NSUInteger i = 0; i < breaks.size(); ++i)
            if (breaks[i] != TextBreak::None)
                _ends.push_back(i);
    }

    NSUInteger characterCount() const { return _ends.size() - 1; }

    /// The line that is left with that many characters.
    RetainPtr<const CTLine> line(NSUInteger kept) const
    {
        const NSUInteger head = _mode == NSLineBreakByTruncatingHead ? 0
            : _mode == NSLineBreakByTruncatingTail                   ? kept
                                                                     : (kept + 1) / 2;
        const NSUInteger begin = _ends[head];
        const NSUInteger end = _ends[characterCount() - (kept - head)];
        const auto text = _part->mutableCopy();
        // Replaced first, so that the ellipsis takes the attributes of a neighbour that is left.
        const NSUInteger neighbour = begin > 0 ? begin - 1 : std::min(end, _part->length() - 1);
        const auto ellipsis = make<NSAttributedString>("…", _part->attributesAtIndex(neighbour));
        text->replaceCharactersInRange(NSMakeRange(begin, end - begin), ellipsis);
        return adopt(CTLineCreateWithAttributedString(text));
    }

private:
    RetainPtr<NSAttributedString> _part;
    NSLineBreakMode _mode;
    std::vector<NSUInteger> _ends; ///< of characters with their marks, from 0 to the text's length
};

} // namespace

RetainPtr<const CTLine> truncatedLine(
    const NSAttributedString& string, NSRange range, double width, NSLineBreakMode mode)
{
    const Truncation truncation(string, range, mode);
    NSUInteger fitting = 0;
    NSUInteger tooMany = truncation.characterCount();
    while (tooMany - fitting > 1) {
        const NSUInteger middle = fitting + (tooMany - fitting) / 2;
        const bool fits =
            CTLineGetTypographicBounds(truncation.line(middle).get(), nullptr, nullptr, nullptr) <= width;
        (fits ? fitting : tooMany) = middle;
    }
    return truncation.line(fitting);
}
