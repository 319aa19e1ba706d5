#include "views/ZRMiddleTruncation.h"

#include <CoreText/CTLine.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <vector>

// The candidates of the rule differ in length alone: each pass removes one unit, and the one of n units has
// the text's first (n + 1) / 2 and last n / 2 - 1 units around the ellipsis. The result is the longest
// candidate that fits. Widths are not monotonic: kerning, ligatures, joined letters and halves of surrogate
// pairs at the cut may make a shorter candidate wider. But such effects are limited, so that a candidate that
// is too wide by far rules out longer ones and the next shorter ones without a look at them.

namespace {

/// In ems: more than the width by which a cut changes the look of its neighbours.
constexpr double kEffectOfCut = 16;
/// In ems: more than a code unit is wide, on the average of those that are cut.
constexpr double kUnitWidth = 2;
/// In ems: a letter spacing that makes no character wider when it is removed.
constexpr double kNarrowestCharacter = -0.1;
/// White space takes its font from the characters beside it. In a run of that many blanks this matters.
constexpr NSUInteger kLongBlanks = 8;
/// In code units: more than there are in a character beside the blanks, such as a family of joined emoji.
constexpr NSUInteger kLongestCharacter = 16;

double widthOf(CTLineRef line)
{
    return CTLineGetBoundsWithOptions(line, kCTLineBoundsUseOpticalBounds).size.width;
}

bool isBlank(char16_t unit)
{
    return unit == u' ' || unit == u'\t' || unit == 0xA0 || (unit >= 0x2000 && unit <= 0x200B)
        || unit == 0x3000;
}

/// Of more flags in a row, a cut may change the look of more than the search allows for.
constexpr NSUInteger kMaximumFlagUnits = 128;
/// In ems, for each code unit of flags: pairs that form no flag are two letters, twice as wide.
constexpr double kEffectOnFlags = 0.5;

/// The number of units in the longest run of flags' letters, pairs of which form flags: a cut forms new
/// pairs.
NSUInteger flagUnits(std::u16string_view units)
{
    NSUInteger longest = 0;
    NSUInteger run = 0;
    for (std::size_t i = 0; i + 1 < units.size();) {
        const bool isFlagLetter = units[i] == 0xD83C && units[i + 1] >= 0xDDE6 && units[i + 1] <= 0xDDFF;
        run = isFlagLetter ? run + 2 : 0;
        longest = std::max(longest, run);
        i += isFlagLetter ? 2 : 1;
    }
    return std::min(longest, kMaximumFlagUnits);
}

/// The search for the longest candidate that fits.
class Truncation {
public:
    Truncation(const NSString& text, double width, const RetainPtr<NSDictionary>& attributes,
        const ZRNarrowing& narrowing)
        : _units(text.view())
        , _width(width)
        , _attributes(attributes)
        , _effect((kEffectOfCut + kEffectOnFlags * double(flagUnits(_units))) * narrowing.em)
        , _unitWidth(kUnitWidth * narrowing.em + std::max(narrowing.kern, 0.0))
        , _shorterIsNarrower(narrowing.kern >= kNarrowestCharacter * narrowing.em)
    {
    }

    NSString result()
    {
        NSUInteger longest = _units.size() - 1;
        for (const NSUInteger first : lengthsAtLongBlanks()) {
            if (const NSUInteger length = longestFitting(first + 1, longest))
                return candidate(length);
            longest = first;
        }
        return candidate(std::max(longestFitting(kShortest, longest), kShortest));
    }

private:
    static constexpr NSUInteger kShortest = 2;

    NSString candidate(NSUInteger length) const
    {
        const NSUInteger before = (length + 1) / 2;
        const NSUInteger behind = length - 1 - before;
        thread_local std::u16string units; // reused
        units.assign(_units.substr(0, before));
        units += u'…';
        units += _units.substr(_units.size() - behind);
        return NSString(std::u16string_view(units));
    }

    /// By how much the candidate of that length is too wide.
    double excess(NSUInteger length) const { return ZRLineWidth(candidate(length), _attributes) - _width; }

    /// The lengths, longest first, at which a cut may give a long run of blanks another font: it gets to the
    /// run or shortens a character beside it.
    std::vector<NSUInteger> lengthsAtLongBlanks() const
    {
        const NSUInteger size = _units.size();
        const auto isPartOfCharacter = [&](NSUInteger index) { return _units[index] >= 0x80; };
        std::vector<NSUInteger> lengths;
        for (NSUInteger begin = 0; begin < size;) {
            NSUInteger end = begin;
            while (end < size && isBlank(_units[end]))
                ++end;
            if (end - begin >= kLongBlanks) {
                // The last units begin with the run, or with a part of the character before it.
                for (NSUInteger first = begin;; --first) {
                    lengths.push_back(2 * (size - first + 1) + 1);
                    if (first == 0 || begin - first == kLongestCharacter || !isPartOfCharacter(first - 1))
                        break;
                }
                // The first units end with the run, or with a part of the character behind it.
                for (NSUInteger last = end;; ++last) {
                    lengths.push_back(2 * last);
                    if (last == size || last - end == kLongestCharacter || !isPartOfCharacter(last))
                        break;
                }
            }
            begin = end + 1;
        }
        std::erase_if(lengths, [&](NSUInteger length) { return length < kShortest || length + 1 >= size; });
        std::sort(lengths.begin(), lengths.end(), std::greater());
        lengths.erase(std::unique(lengths.begin(), lengths.end()), lengths.end());
        return lengths;
    }

    /// The longest fitting candidate between two lengths; 0 if none fits.
    NSUInteger longestFitting(NSUInteger shortest, NSUInteger longest) const
    {
        NSUInteger length = _shorterIsNarrower ? lengthTooWideByFar(shortest, longest) : longest;
        NSUInteger tooWide = length + 1; // it, or what rules it out
        for (;;) {
            const double excess = this->excess(length);
            if (excess <= 0)
                return longestFittingOneByOne(length, tooWide - 1);
            // So many shorter ones are too wide as well.
            const double skipped = std::max((excess - _effect) / _unitWidth, 0.0);
            if (skipped >= double(length - shortest))
                return 0;
            tooWide = length;
            length -= 1 + NSUInteger(skipped);
        }
    }

    /// The same where `shortest` fits. Looks at those that were skipped before a candidate that fits: they
    /// may fit where units are wider than is assumed.
    NSUInteger longestFittingOneByOne(NSUInteger shortest, NSUInteger longest) const
    {
        NSUInteger length = longest;
        while (length > shortest && excess(length) > 0)
            --length;
        return length;
    }

    /// A length whose candidate is so wide that no longer one fits; the longest one if there is none.
    NSUInteger lengthTooWideByFar(NSUInteger shortest, NSUInteger longest) const
    {
        constexpr NSUInteger kFirstLength = 16;
        NSUInteger length = std::max(shortest, kFirstLength);
        while (length < longest && excess(length) <= _effect)
            length *= 2;
        return std::min(length, longest);
    }

    const std::u16string_view _units;
    const double _width;
    const RetainPtr<NSDictionary>& _attributes;
    const double _effect;    ///< of a cut on the width, at most
    const double _unitWidth; ///< by which the width shrinks with each unit, at most
    const bool _shorterIsNarrower;
};

} // namespace

double ZRLineWidth(const NSString& text, RetainPtr<NSDictionary> attributes)
{
    const auto attributed = make<NSAttributedString>(text, std::move(attributes));
    const auto line = adopt(CTLineCreateWithAttributedString(attributed));
    return widthOf(line);
}

NSString ZRTruncatedInMiddle(const NSString& text, double width, const RetainPtr<NSDictionary>& attributes,
    const ZRNarrowing& narrowing)
{
    if (text.length() <= 2)
        return text;
    // Nothing is at most NaN wide.
    const double limit = std::isnan(width) ? -std::numeric_limits<double>::infinity() : width;
    return Truncation(text, limit, attributes, narrowing).result();
}
