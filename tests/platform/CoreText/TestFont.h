#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// The place of a face in its family.
struct TestFontStyle {
    std::string name = "Regular";
    unsigned weight = 400; ///< as in style sheets: 700 is bold
    bool isItalic = false;
    unsigned widthClass = 5; ///< 3 is condensed
};
inline const TestFontStyle kBold{"Bold", 700};

/// The bytes of a TrueType font whose glyphs are rectangles, so that the pixels of text can be computed
/// by eye. An em is 1000 units; lines have an ascent of 800, a descent of 200 and a leading of 100.
class TestFont {
public:
    struct Rectangle {
        std::int16_t left;
        std::int16_t bottom;
        std::int16_t right;
        std::int16_t top;
    };

    /// With one glyph: the sign for a missing character, an upright bar from 0 to 250, as wide.
    explicit TestFont(std::string family, TestFontStyle style = {});

    /// A glyph for a character.
    void add(char16_t character, std::uint16_t advance, std::vector<Rectangle> rectangles);

    /// A glyph that is composed of those of other characters, over each other.
    void addComposed(char16_t character, std::uint16_t advance, std::vector<char16_t> parts);

    /// A rectangle in a colour of its own, or in that of the text.
    struct Layer {
        Rectangle rectangle;
        std::optional<std::uint32_t> rgb;
    };
    /// A glyph of rectangles over each other, which are glyphs of characters for private use.
    void addColored(char16_t character, std::uint16_t advance, const std::vector<Layer>& layers);

    /// Which character map the font has.
    struct CharacterMap {
        unsigned platform = 3;
        unsigned encoding = 1;
        unsigned firstCode = 0; ///< added to each character
    };
    /// Instead of the one for Unicode.
    void setCharacterMap(CharacterMap map) { _map = map; }
    /// Names the glyphs in order, from that of the missing character. Without names, they have none.
    void setGlyphNames(std::vector<std::string> names) { _glyphNames = std::move(names); }

    /// The file. The PostScript name is the family and, unless it is "Regular", the style ("Squares-Bold"),
    /// both without blanks.
    std::string bytes() const;

private:
    struct ColoredLayer {
        char16_t character; ///< whose glyph it is
        std::optional<std::uint32_t> rgb;
    };
    struct Glyph {
        char16_t character;
        std::uint16_t advance;
        std::vector<Rectangle> rectangles;
        std::vector<ColoredLayer> layers = {};
        std::vector<char16_t> parts = {}; ///< instead of rectangles
    };

    std::size_t indexOf(char16_t character) const;
    std::string glyphData(const Glyph& glyph) const;
    std::string makeCmap() const;
    std::string makePost() const;
    /// The tables COLR and CPAL.
    std::string makeLayers() const;
    std::string makePalette() const;
    /// The family, followed by the separator and the style unless that is "Regular".
    std::string nameWithStyle(char separator) const;
    std::string makeName() const;
    std::string makeHead() const;
    std::string makeOS2() const;

    std::string _family;
    TestFontStyle _style;
    CharacterMap _map;
    std::vector<std::string> _glyphNames;
    std::vector<Glyph> _glyphs; ///< by character
};
