#pragma once

#include <cstdint>
#include <optional>

/// The predefined encodings of one byte for each glyph.
enum class BaseEncoding : std::uint8_t { Standard, WinAnsi, MacRoman, Symbol, ZapfDingbats };

/// The character of a code; 0 where the encoding has none.
char32_t characterInEncoding(BaseEncoding encoding, std::uint8_t code);
/// The code of a character; nothing where the encoding does not have it.
std::optional<std::uint8_t> codeInEncoding(BaseEncoding encoding, char32_t character);
