#pragma once

#include <Foundation/NSObjCRuntime.h>
#include <Foundation/NSRange.h>
#include <Foundation/RetainPtr.h>

#include <array>
#include <atomic>
#include <compare>
#include <cstddef>
#include <cstring>
#include <functional>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

class NSData;

/// Encodings of strings as bytes. The values are Apple's.
enum NSStringEncoding : NSUInteger {
    NSASCIIStringEncoding = 1, ///< 7 bits
    NSUTF8StringEncoding = 4,
};

/// An immutable text of UTF-16 code units, held by value.
///
/// Null stands for nil and differs from the empty string. Up to 15 units are stored inside the object, so
/// making and copying a short string allocates nothing, and a short literal costs a few stores; longer
/// strings are shared by an atomic reference count. Safe to read and copy on any thread.
class KORVID_EXPORT NSString {
public:
    /// Null.
    NSString() noexcept = default;
    /// Null.
    NSString(std::nullptr_t) noexcept { }
    /// From NUL-terminated UTF-8; a null pointer gives null. Each malformed sequence becomes U+FFFD.
    [[gnu::always_inline]] NSString(const char* utf8)
    {
        if (!assignShortLiteral(utf8))
            assignTerminatedUTF8(utf8);
    }
    /// From UTF-8 of known length, NUL characters included. Each malformed sequence becomes U+FFFD.
    explicit NSString(std::string_view utf8) { assignUTF8(utf8); }
    /// From UTF-8, NUL characters included. Each malformed sequence becomes U+FFFD.
    explicit NSString(const std::string& utf8) { assignUTF8(utf8); }
    /// From UTF-16 code units, taken as they are.
    explicit NSString(std::u16string_view units);
    /// The same string; copies no characters.
    NSString(const NSString& other) noexcept
        : _units(other._units)
    {
        if (tag() == kShared)
            storage()->retainCount.fetch_add(1, std::memory_order_relaxed);
    }
    /// Leaves `other` null.
    NSString(NSString&& other) noexcept
        : _units(std::exchange(other._units, kNullUnits))
    {
    }
    /// The same string; copies no characters.
    NSString& operator=(const NSString& other) noexcept
    {
        if (this != &other)
            *this = NSString(other);
        return *this;
    }
    /// Leaves `other` null.
    NSString& operator=(NSString&& other) noexcept
    {
        if (this != &other) {
            this->~NSString();
            new (this) NSString(std::move(other));
        }
        return *this;
    }
    ~NSString()
    {
        if (tag() == kShared)
            releaseStorage();
    }

    /// True for nil. An empty string is not null.
    bool isNull() const noexcept { return tag() == kNull; }
    /// True when the string is not null.
    explicit operator bool() const noexcept { return !isNull(); }
    /// Number of UTF-16 code units; 0 for null.
    NSUInteger length() const noexcept { return view().size(); }
    /// The code units, valid as long as this string. Empty for null.
    std::u16string_view view() const noexcept
    {
        if (tag() <= kInlineCapacity)
            return {_units.data(), tag()};
        if (tag() == kShared)
            return {storage()->units(), storage()->length};
        return {};
    }

    /// The string as UTF-8; empty for null. An unpaired surrogate becomes U+FFFD.
    std::string UTF8String() const;

    /// The code unit at an index. Raises NSRangeException when there is no such index.
    char16_t characterAtIndex(NSUInteger index) const;

    /// The string in an encoding; nothing when it has characters that the encoding lacks. Null gives nothing.
    std::optional<std::string> cStringUsingEncoding(NSStringEncoding encoding) const;
    /// The same bytes as data, without a NUL at the end; null where `cStringUsingEncoding` gives nothing.
    RetainPtr<NSData> dataUsingEncoding(NSStringEncoding encoding) const;

    /// All letters in lower case, by Unicode's rules for no particular language. Null gives null.
    ///
    /// Differs: a sigma at the end of a word becomes "σ" as anywhere else, not "ς".
    NSString lowercaseString() const;
    /// All letters in upper case, by Unicode's rules for no particular language; "ß" becomes "SS".
    NSString uppercaseString() const;

    /// Whether the string begins with, ends with, or contains the units of another one. False where either is
    /// null, and for an empty argument.
    ///
    /// Differs: a letter with a combining accent does not match the precomposed character.
    bool hasPrefix(const NSString& prefix) const noexcept;
    /// Whether the string ends with the units of another one, likewise.
    bool hasSuffix(const NSString& suffix) const noexcept;
    /// Whether the string contains the units of another one, likewise.
    bool containsString(const NSString& part) const noexcept;
    /// The same, ignoring case.
    bool localizedCaseInsensitiveContainsString(const NSString& part) const;

    /// The units of a range. Raises NSRangeException when the range reaches beyond the end; a null string has
    /// the empty range at 0 only, which gives null.
    NSString substringWithRange(NSRange range) const;
    /// This string followed by `other`, where null counts as empty. A null string stays null.
    NSString stringByAppendingString(const NSString& other) const;
    /// The parts before, between and after all occurrences of a separator, from the beginning; empty ones
    /// too. The string alone when it does not contain the separator, and for an empty or null one. Nothing
    /// for a null string.
    std::vector<NSString> componentsSeparatedByString(const NSString& separator) const;

    /// The number at the beginning, after whitespace; 0 where there is none. Too large: an infinity.
    double doubleValue() const;
    /// The integer at the beginning, after whitespace; 0 where there is none. One that is too large gives
    /// the nearest end of the range.
    NSInteger integerValue() const;

    // Paths. Components are separated by "/", of which several count as one. Null gives null.

    /// "c.png" of "/a/b/c.png", "b" of "/a/b/", "/" of "/".
    NSString lastPathComponent() const;
    /// "png" of "/a/c.png"; empty for "/a/c", "c." and ".c".
    NSString pathExtension() const;
    /// "/a/b" from "/a" or "/a/" and "b".
    NSString stringByAppendingPathComponent(const NSString& component) const;
    /// "/a/c.png" from "/a/c" or "/a/c/" and "png".
    NSString stringByAppendingPathExtension(const NSString& extension) const;
    /// "/a" of "/a/b" and "/a/b/"; "/" of "/a"; empty for "a".
    NSString stringByDeletingLastPathComponent() const;
    /// "/a/c" of "/a/c.png"; a name without an extension stays.
    NSString stringByDeletingPathExtension() const;

    /// Builds a string like `printf`, with "%@" for objects and strings. Include <Foundation/NSFormat.h>,
    /// which describes the format.
    template <class... Args> static NSString stringWithFormat(const NSString& format, const Args&... args);

    /// Same code units. Null equals only null.
    bool operator==(const NSString& other) const noexcept
    {
        if (tag() != other.tag())
            return false;
        return tag() == kShared ? view() == other.view()
                                : std::memcmp(&_units, &other._units, sizeof _units) == 0;
    }
    /// `operator==`.
    bool isEqualToString(const NSString& other) const noexcept { return *this == other; }
    /// Orders by code unit; null comes first.
    std::strong_ordering operator<=>(const NSString& other) const noexcept;
    /// Equal strings have equal hashes.
    NSUInteger hash() const noexcept;

private:
    /// A longer string: this record, directly followed by its code units.
    struct Storage {
        std::atomic<std::size_t> retainCount{1};
        std::size_t length;

        explicit Storage(std::size_t unitCount)
            : length(unitCount)
        {
        }
        char16_t* units() noexcept { return reinterpret_cast<char16_t*>(this + 1); }
    };
    static constexpr std::size_t kInlineCapacity = 15;
    static constexpr char16_t kShared = 0xFFFE; ///< the string lives in its storage
    static constexpr char16_t kNull = 0xFFFF;
    using Units = std::array<char16_t, kInlineCapacity + 1>;
    static constexpr Units kNullUnits{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, kNull};

    /// Stores a short ASCII literal, which the compiler evaluates: that costs no more than the stores.
    /// Otherwise, and without optimisation, does nothing and returns false.
    [[gnu::always_inline]] bool assignShortLiteral(const char* utf8) noexcept
    {
        if (!__builtin_constant_p(utf8 && std::strlen(utf8) <= kInlineCapacity))
            return false;
        return utf8 && std::strlen(utf8) <= kInlineCapacity
            && assignShortASCII(utf8, std::strlen(utf8), std::make_index_sequence<kInlineCapacity>());
    }
    template <std::size_t... index>
    [[gnu::always_inline]] bool assignShortASCII(
        const char* ascii, std::size_t length, std::index_sequence<index...>) noexcept
    {
        if (((index < length && static_cast<unsigned char>(ascii[index]) >= 0x80) || ...))
            return false;
        const char16_t units[]{
            static_cast<char16_t>(index < length ? ascii[index] : 0)..., static_cast<char16_t>(length)};
        std::memcpy(&_units, units, sizeof _units);
        return true;
    }
    void assignTerminatedUTF8(const char* utf8);
    void assignUTF8(std::string_view utf8);
    char16_t* allocate(std::size_t length);
    /// The string with the letters from `first` on in the other case; null when it is not all ASCII.
    template <char16_t first> NSString togglingASCIICase() const;
    void releaseStorage() noexcept;

    char16_t tag() const noexcept { return _units[kInlineCapacity]; }
    Storage* storage() const noexcept
    {
        Storage* storage = nullptr;
        std::memcpy(&storage, &_units, sizeof(void*));
        return storage;
    }

    // The units of a short string, or the address of the longer one's storage; the last element is the length
    // of the string stored inside, or kShared or kNull. What is not used is 0, and all is in a null string,
    // so that such strings are compared and hashed as whole words.
    alignas(Storage*) Units _units = kNullUnits;
};

/// For `std::unordered_map` and `std::unordered_set`.
template <> struct std::hash<NSString> {
    /// `NSString::hash`.
    std::size_t operator()(const NSString& string) const noexcept { return string.hash(); }
};
