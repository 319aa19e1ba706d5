#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

/// What may end before a code unit of a text. Each kind includes those above it.
enum class TextBreak : std::uint8_t {
    None,    ///< nothing: the unit belongs to the same character as the one before
    Cluster, ///< a character with its marks
    Line,    ///< a line, after a word for example
};

/// The break before each code unit of a paragraph, and at its end, by Unicode's rules for lines (UAX 14) and
/// characters (UAX 29). Any thread.
std::vector<TextBreak> findTextBreaks(std::u16string_view paragraph);

/// Whether the first letter of a text that has a direction runs from right to left. Any thread.
bool beginsRightToLeft(std::u16string_view text);

/// Whether a code unit ends a paragraph. A carriage return and a line feed behind it end it together.
constexpr bool endsParagraph(char16_t unit)
{
    return (unit >= u'\n' && unit <= u'\r') || unit == 0x85 || unit == 0x2028 || unit == 0x2029;
}

/// Whether a code unit is white space that may hang over the end of a wrapped line.
constexpr bool isBlank(char16_t unit)
{
    return unit == u' ' || unit == u'\t' || unit == 0x1680
        || (unit >= 0x2000 && unit <= 0x200B && unit != 0x2007) || unit == 0x205F || unit == 0x3000;
}
