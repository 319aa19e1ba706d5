#include <Foundation/NSString.h>

#include "Foundation/NSStringUnicode.h"

#include <algorithm>
#include <cstdint>

namespace {

/// A word with 1 in each of its four units.
constexpr std::uint64_t kUnits = 0x0001000100010001;

bool isASCII(std::uint64_t units)
{
    return (units & kUnits * 0xFF80) == 0;
}

/// Four ASCII units, with the letters of the case that begins at `first` converted to the other case.
template <char16_t first> std::uint64_t togglingCase(std::uint64_t units)
{
    // The units have seven bits: each sum leaves in the eighth bit whether its limit is reached.
    const std::uint64_t isAtLeastA = units + kUnits * (0x80 - first);
    const std::uint64_t isBeyondZ = units + kUnits * (0x80 - first - 26);
    const std::uint64_t isLetter = isAtLeastA & ~isBeyondZ & kUnits * 0x80;
    return units ^ isLetter >> 2; // the cases differ by 0x20
}

} // namespace

template <char16_t first> NSString NSString::togglingASCIICase() const
{
    NSString result;
    // A short string fills whole words with units, of which the last is its length and never a letter. The
    // mark of a long or null string is beyond ASCII.
    std::uint64_t words[sizeof _units / sizeof(std::uint64_t)];
    std::memcpy(words, &_units, sizeof words);
    if (isASCII(words[0] | words[1] | words[2] | words[3])) {
        for (std::uint64_t& word : words)
            word = togglingCase<first>(word);
        std::memcpy(&result._units, words, sizeof words);
        return result;
    }
    const auto units = view();
    if (tag() == kShared && std::all_of(units.begin(), units.end(), isASCII))
        std::transform(units.begin(), units.end(), result.allocate(units.size()),
            [](char16_t unit) { return static_cast<char16_t>(togglingCase<first>(unit)); });
    return result;
}

NSString NSString::lowercaseString() const
{
    NSString result = togglingASCIICase<u'A'>();
    if (result.isNull() && !isNull())
        result = lowercasedByUnicode(*this);
    return result;
}

NSString NSString::uppercaseString() const
{
    NSString result = togglingASCIICase<u'a'>();
    if (result.isNull() && !isNull())
        result = uppercasedByUnicode(*this);
    return result;
}
