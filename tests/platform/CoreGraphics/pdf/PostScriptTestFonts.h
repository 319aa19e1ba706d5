#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// A glyph that is a rectangle, in thousandths of an em.
struct RectangleGlyph {
    std::string name;
    int advance = 0;
    int left = 0;
    int bottom = 0;
    int right = 0; ///< like `left` for a blank
    int top = 0;
    unsigned code = 0; ///< in the font's own encoding; 0 for none
};

/// The bytes of a Type 1 font. The missing character, ".notdef", is added.
std::string type1FontBytes(const std::vector<RectangleGlyph>& glyphs);

/// The bytes of a bare CFF font, as in FontFile3 of the subtype Type1C.
std::string cffFontBytes(const std::vector<RectangleGlyph>& glyphs);

/// A CFF font with these names and codes whose glyphs are blank, after nine levels of subroutines that call
/// the next one `calls` times each.
std::string slowFontBytes(const std::vector<RectangleGlyph>& glyphs, int calls);

/// A bare CFF font with numbers (CIDs), one for each glyph, instead of names and codes: CIDFontType0C.
std::string cidFontBytes(const std::vector<RectangleGlyph>& glyphs, const std::vector<std::uint16_t>& cids);
