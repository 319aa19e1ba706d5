#pragma once

#include <string_view>

// Names of glyphs, as fonts and encodings of PDF files use them, and the characters that they stand for.

/// The character of a glyph's name, 0 when it is unknown: "eacute", "uni00E9", "u00E9" and "eacute.sc" are é.
/// Knows the names of the Latin, Greek and Cyrillic letters, and of the symbols, that common fonts have.
char32_t characterOfGlyphName(std::string_view name);
/// The same for a font of dingbats, which names its glyphs "a1" to "a206".
char32_t characterOfDingbatName(std::string_view name);

/// The usual name of a character's glyph, or of one that looks the same; empty when there is none.
std::string_view glyphNameOfCharacter(char32_t character);

/// A character that looks the same, under which fonts may have the glyph; 0 when there is none.
char32_t lookalike(char32_t character);
