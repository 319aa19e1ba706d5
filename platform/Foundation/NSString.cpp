#include <Foundation/NSData.h>
#include <Foundation/NSException.h>
#include <Foundation/NSString.h>

#include "Foundation/CLocale.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

constexpr char32_t kReplacement = 0xFFFD;

/// Decodes one scalar value at `at` and advances `at` past it; a malformed sequence gives U+FFFD and advances
/// past its longest well-formed beginning, as the Unicode Standard recommends.
char32_t nextScalar(const unsigned char*& at, const unsigned char* end)
{
    const unsigned char lead = *at++;
    if (lead < 0x80)
        return lead;
    if (lead < 0xC2 || lead > 0xF4)
        return kReplacement;
    const int extra = lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
    char32_t scalar = lead & (0x3F >> extra);
    // The first continuation byte is narrower where overlong forms, surrogates or values past U+10FFFF begin.
    unsigned char low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    unsigned char high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    for (int i = 0; i < extra; ++i) {
        if (at == end || *at < low || *at > high)
            return kReplacement;
        scalar = scalar << 6 | (*at++ & 0x3F);
        low = 0x80;
        high = 0xBF;
    }
    return scalar;
}

bool isHighSurrogate(char16_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool isLowSurrogate(char16_t unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

/// Digits of pi, as arbitrary bits.
constexpr std::uint64_t kSeeds[]{
    0x243F6A8885A308D3, 0x13198A2E03707344, 0xA4093822299F31D0, 0x082EFA98EC4E6C89};

/// Combines the two halves of the product, so that every bit of both words affects every bit of the result.
std::uint64_t mixed(std::uint64_t a, std::uint64_t b)
{
    __extension__ using Wide = unsigned __int128;
    const Wide product = static_cast<Wide>(a) * b;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

/// The result of `parse` for the string's ASCII beginning. Unlike strtod it accepts neither the words for
/// infinity and not-a-number nor hexadecimal digits.
template <class Parse> auto leadingNumber(const NSString& string, Parse parse)
{
    std::string digits;
    for (const char16_t unit : string.view()) {
        if (unit >= 0x80 || !std::strchr("+-.0123456789eE \t\n\v\f\r", static_cast<char>(unit)) || unit == 0)
            break;
        digits += static_cast<char>(unit);
    }
    return parse(digits.c_str());
}

} // namespace

char16_t* NSString::allocate(std::size_t length)
{
    if (length <= kInlineCapacity) {
        _units[kInlineCapacity] = static_cast<char16_t>(length);
        return _units.data();
    }
    auto* storage = new (::operator new(sizeof(Storage) + length * sizeof(char16_t))) Storage(length);
    std::memcpy(&_units, &storage, sizeof(void*));
    _units[kInlineCapacity] = kShared;
    return storage->units();
}

void NSString::assignTerminatedUTF8(const char* utf8)
{
    if (utf8)
        assignUTF8(utf8);
}

void NSString::assignUTF8(std::string_view utf8)
{
    const auto* begin = reinterpret_cast<const unsigned char*>(utf8.data());
    const auto* end = begin + utf8.size();
    if (std::all_of(begin, end, [](unsigned char byte) { return byte < 0x80; })) {
        std::copy(begin, end, allocate(utf8.size()));
        return;
    }
    std::size_t length = 0;
    for (const auto* at = begin; at != end;)
        length += nextScalar(at, end) > 0xFFFF ? 2 : 1;
    char16_t* out = allocate(length);
    for (const auto* at = begin; at != end;) {
        const char32_t scalar = nextScalar(at, end);
        if (scalar > 0xFFFF) {
            *out++ = static_cast<char16_t>(0xD7C0 + (scalar >> 10));
            *out++ = static_cast<char16_t>(0xDC00 | (scalar & 0x3FF));
        } else {
            *out++ = static_cast<char16_t>(scalar);
        }
    }
}

NSString::NSString(std::u16string_view units)
{
    std::copy(units.begin(), units.end(), allocate(units.size()));
}

void NSString::releaseStorage() noexcept
{
    Storage* shared = storage();
    if (shared->retainCount.fetch_sub(1, std::memory_order_acq_rel) != 1)
        return;
    shared->~Storage();
    ::operator delete(shared);
}

std::string NSString::UTF8String() const
{
    std::string result;
    const auto units = view();
    result.reserve(units.size());
    for (std::size_t i = 0; i < units.size(); ++i) {
        char32_t scalar = units[i];
        if (isHighSurrogate(units[i]) && i + 1 < units.size() && isLowSurrogate(units[i + 1]))
            scalar = 0x10000 + ((scalar - 0xD800) << 10) + (units[++i] - 0xDC00);
        else if (isHighSurrogate(units[i]) || isLowSurrogate(units[i]))
            scalar = kReplacement;

        if (scalar < 0x80) {
            result += static_cast<char>(scalar);
            continue;
        }
        if (scalar < 0x800) {
            result += static_cast<char>(0xC0 | (scalar >> 6));
        } else {
            if (scalar < 0x10000) {
                result += static_cast<char>(0xE0 | (scalar >> 12));
            } else {
                result += static_cast<char>(0xF0 | (scalar >> 18));
                result += static_cast<char>(0x80 | ((scalar >> 12) & 0x3F));
            }
            result += static_cast<char>(0x80 | ((scalar >> 6) & 0x3F));
        }
        result += static_cast<char>(0x80 | (scalar & 0x3F));
    }
    return result;
}

std::strong_ordering NSString::operator<=>(const NSString& other) const noexcept
{
    if (isNull() || other.isNull())
        return !isNull() <=> !other.isNull();
    return view() <=> other.view();
}

NSUInteger NSString::hash() const noexcept
{
    if (tag() != kShared) {
        std::uint64_t words[4];
        static_assert(sizeof words == sizeof _units);
        std::memcpy(words, &_units, sizeof words);
        return mixed(words[0] ^ kSeeds[0], words[1] ^ kSeeds[1])
            ^ mixed(words[2] ^ kSeeds[2], words[3] ^ kSeeds[3]);
    }
    const auto* bytes = reinterpret_cast<const char*>(storage()->units());
    std::size_t left = storage()->length * sizeof(char16_t);
    NSUInteger hash = left;
    while (left > 0) {
        std::uint64_t words[2]{};
        const std::size_t step = std::min(left, sizeof words);
        std::memcpy(words, bytes, step);
        hash = mixed(hash ^ words[0] ^ kSeeds[0], words[1] ^ kSeeds[1]);
        bytes += step;
        left -= step;
    }
    return hash;
}

char16_t NSString::characterAtIndex(NSUInteger index) const
{
    if (index >= length())
        NSException::raise(NSRangeException, "The string has no character at that index.");
    return view()[index];
}

std::optional<std::string> NSString::cStringUsingEncoding(NSStringEncoding encoding) const
{
    if (isNull())
        return std::nullopt;
    const auto units = view();
    if (encoding == NSUTF8StringEncoding) {
        for (std::size_t i = 0; i < units.size(); ++i) {
            if (isHighSurrogate(units[i]) && i + 1 < units.size() && isLowSurrogate(units[i + 1]))
                ++i;
            else if (isHighSurrogate(units[i]) || isLowSurrogate(units[i]))
                return std::nullopt;
        }
        return UTF8String();
    }
    if (encoding != NSASCIIStringEncoding
        || std::any_of(units.begin(), units.end(), [](char16_t unit) { return unit >= 0x80; }))
        return std::nullopt;
    return std::string(units.begin(), units.end());
}

RetainPtr<NSData> NSString::dataUsingEncoding(NSStringEncoding encoding) const
{
    const auto bytes = cStringUsingEncoding(encoding);
    return bytes ? NSData::dataWithBytes(bytes->data(), bytes->size()) : nullptr;
}

bool NSString::hasPrefix(const NSString& prefix) const noexcept
{
    return prefix.length() > 0 && view().starts_with(prefix.view());
}

bool NSString::hasSuffix(const NSString& suffix) const noexcept
{
    return suffix.length() > 0 && view().ends_with(suffix.view());
}

bool NSString::containsString(const NSString& part) const noexcept
{
    return part.length() > 0 && view().find(part.view()) != std::u16string_view::npos;
}

NSString NSString::substringWithRange(NSRange range) const
{
    if (range.location > length() || range.length > length() - range.location)
        NSException::raise(NSRangeException, "The range reaches beyond the end of the string.");
    return isNull() ? NSString() : NSString(view().substr(range.location, range.length));
}

std::vector<NSString> NSString::componentsSeparatedByString(const NSString& separator) const
{
    std::vector<NSString> components;
    if (isNull())
        return components;
    const std::u16string_view all = view();
    std::size_t begin = 0;
    if (separator.length() > 0)
        for (std::size_t end = all.find(separator.view()); end != std::u16string_view::npos;
             end = all.find(separator.view(), begin)) {
            components.emplace_back(all.substr(begin, end - begin));
            begin = end + separator.length();
        }
    components.emplace_back(all.substr(begin));
    return components;
}

NSString NSString::stringByAppendingString(const NSString& other) const
{
    if (isNull() || other.length() == 0)
        return *this;
    NSString result;
    char16_t* out = result.allocate(length() + other.length());
    out = std::copy(view().begin(), view().end(), out);
    std::copy(other.view().begin(), other.view().end(), out);
    return result;
}

double NSString::doubleValue() const
{
    return leadingNumber(*this, [](const char* text) { return strtod_l(text, nullptr, cLocale()); });
}

NSInteger NSString::integerValue() const
{
    return leadingNumber(*this, [](const char* text) { return NSInteger{std::strtoll(text, nullptr, 10)}; });
}
