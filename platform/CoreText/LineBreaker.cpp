#include "CoreText/LineBreaker.h"

#include "CoreText/CTLineInternal.h"

#include <algorithm>

LineBreaker::LineBreaker(const NSAttributedString& string, NSRange paragraph)
    : _string(string)
    , _paragraph(paragraph)
    , _breaks(findTextBreaks(string.string().view().substr(paragraph.location, paragraph.length)))
{
}

NSRange LineBreaker::withoutBlanks(NSUInteger start, NSUInteger end) const
{
    const std::u16string_view units = _string.string().view();
    while (end > start && isBlank(units[end - 1]))
        --end;
    return NSMakeRange(start, end - start);
}

double LineBreaker::width(NSUInteger start, NSUInteger end) const
{
    const auto line = makeLine(_string, withoutBlanks(start, end));
    return CTLineGetTypographicBounds(line, nullptr, nullptr, nullptr);
}

/// The first break of that kind behind an index, which is not the paragraph's end.
NSUInteger LineBreaker::nextBreak(NSUInteger index, TextBreak kind) const
{
    do
        ++index;
    while (breakBefore(index) < kind);
    return index;
}

/// The last break of that kind behind `start` at which the text fits; `start` when there is none.
///
/// Tries the break at which the text should end if all of it were as wide as the part that was measured last,
/// which takes three or four attempts for most lines.
NSUInteger LineBreaker::lastFitting(NSUInteger start, double width, TextBreak kind) const
{
    const NSUInteger end = NSMaxRange(_paragraph);
    constexpr int kMaximumGuesses = 8;
    NSUInteger fitting = start;
    NSUInteger tooLong = end + 1;
    NSUInteger guess = std::min(end, start + 32);
    for (int guesses = 1; fitting < end; ++guesses) {
        // The last break before the guess, or else the first one behind the fitting text.
        NSUInteger candidate = std::min(guess, tooLong - 1);
        while (candidate > fitting && breakBefore(candidate) < kind)
            --candidate;
        if (candidate == fitting)
            candidate = nextBreak(fitting, kind);
        if (candidate >= tooLong)
            break;
        const double measured = this->width(start, candidate);
        if (measured <= width)
            fitting = candidate;
        else
            tooLong = candidate;
        const double unitsPerPoint = double(candidate - start) / std::max(measured, 1e-6);
        guess = guesses < kMaximumGuesses
            ? start + NSUInteger(std::clamp(width * unitsPerPoint, 1.0, double(end - start)))
            : fitting + (tooLong - fitting) / 2;
    }
    return fitting;
}

NSUInteger LineBreaker::lineEnd(NSUInteger start, double width, TextBreak kind) const
{
    if (const NSUInteger end = lastFitting(start, width, kind); end > start)
        return end;
    const NSUInteger end = kind > TextBreak::Cluster ? lastFitting(start, width, TextBreak::Cluster) : start;
    return end > start ? end : nextBreak(start, TextBreak::Cluster);
}
