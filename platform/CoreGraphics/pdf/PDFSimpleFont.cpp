#include "CoreGraphics/pdf/FontEncoding.h"
#include "CoreGraphics/pdf/FontFile.h"
#include "CoreGraphics/pdf/FontWidths.h"
#include "CoreGraphics/pdf/GlyphNames.h"
#include "CoreGraphics/pdf/PDFFontKinds.h"
#include "CoreGraphics/pdf/PDFRecording.h"
#include "CoreGraphics/pdf/StandInFace.h"

#include <algorithm>
#include <optional>

namespace {

using CharacterMap = FontFile::CharacterMap;

/// The glyphs of codes, as far as they were looked for.
using GlyphNumbers = std::array<std::optional<std::uint32_t>, 256>;

unsigned flagsOf(const PDFObject& descriptor)
{
    return unsigned(descriptor["Flags"].integer());
}

/// Whether codes of the font mean what the font says, rather than letters of an encoding.
bool isSymbolic(const PDFObject& descriptor)
{
    return (flagsOf(descriptor) & (kFontIsSymbolic | kFontIsNonsymbolic)) == kFontIsSymbolic;
}

/// The glyph of a character, or of one that looks the same; `find` returns 0 where there is none.
template <class Find> std::uint32_t glyphForCharacter(char32_t character, Find find)
{
    if (character == 0)
        return 0;
    if (const std::uint32_t glyph = find(character))
        return glyph;
    const char32_t other = lookalike(character);
    return other != 0 ? find(other) : 0;
}

/// A font whose program the file contains.
class EmbeddedFont : public PDFFont {
public:
    EmbeddedFont(std::shared_ptr<FontFile> file, const PDFObject& dictionary, const PDFObject& descriptor,
        std::optional<BaseEncoding> implicitEncoding)
        : _file(std::move(file))
        , _encoding(dictionary["Encoding"], implicitEncoding)
        , _widths(dictionary, descriptor)
    {
    }

    double advance(std::uint32_t code, PDFRecording& recording) const override
    {
        return _widths.areStated() ? _widths[std::uint8_t(code)] : glyph(code, recording).advance;
    }
    Shape shape(std::uint32_t code, PDFRecording& recording) const override
    {
        const FontFile::Glyph& found = glyph(code, recording);
        return {found.outline.get()};
    }

protected:
    /// The number of a code's glyph; 0 when the font has none for it.
    virtual std::uint32_t findGlyph(std::uint8_t code, PDFBudget& budget) const = 0;

    FontFile& file() const { return *_file; }
    const FontEncoding& encoding() const { return _encoding; }

    std::uint32_t glyphForUnicode(char32_t character) const
    {
        return glyphForCharacter(character,
            [this](char32_t wanted) { return _file->glyphForCode(CharacterMap::Unicode, wanted); });
    }

private:
    const FontFile::Glyph& glyph(std::uint32_t code, PDFRecording& recording) const
    {
        static const FontFile::Glyph missing;
        auto& number = _numbers[std::uint8_t(code)];
        if (!number)
            number = findGlyph(std::uint8_t(code), recording.budget());
        // The sign for a missing character is not drawn: text often has control characters and the like.
        return *number != 0 ? _file->glyph(*number, recording.budget()) : missing;
    }

    std::shared_ptr<FontFile> _file;
    FontEncoding _encoding;
    SimpleWidths _widths;
    mutable GlyphNumbers _numbers;
};

/// Type 1 and CFF: glyphs have names.
class EmbeddedType1Font final : public EmbeddedFont {
public:
    using EmbeddedFont::EmbeddedFont;

private:
    std::uint32_t findGlyph(std::uint8_t code, PDFBudget& budget) const override
    {
        const std::string_view name = encoding().glyphName(code);
        if (!name.empty()) {
            if (const std::uint32_t glyph = file().glyphNamed(name, budget))
                return glyph;
            return glyphForUnicode(encoding().character(code));
        }
        if (encoding().base())
            return 0;
        if (file().hasCharacterMap(CharacterMap::BuiltIn))
            return file().glyphForCode(CharacterMap::BuiltIn, code);
        return glyphForUnicode(characterInEncoding(BaseEncoding::Standard, code));
    }
};

/// TrueType: glyphs are found through the font's character maps.
class EmbeddedTrueTypeFont final : public EmbeddedFont {
public:
    EmbeddedTrueTypeFont(
        std::shared_ptr<FontFile> file, const PDFObject& dictionary, const PDFObject& descriptor)
        : EmbeddedFont(std::move(file), dictionary, descriptor, BaseEncoding::Standard)
        , _hasLetters(!isSymbolic(descriptor)
              && (encoding().isNamed() || dictionary["Encoding"].isDictionary()
                  || (flagsOf(descriptor) & kFontIsNonsymbolic)))
    {
    }

private:
    std::uint32_t findGlyph(std::uint8_t code, PDFBudget& budget) const override
    {
        std::uint32_t glyph = _hasLetters ? glyphByName(code, budget) : glyphByCode(code);
        if (glyph == 0)
            glyph = _hasLetters ? glyphByCode(code) : glyphByName(code, budget);
        return glyph;
    }

    std::uint32_t glyphByName(std::uint8_t code, PDFBudget& budget) const
    {
        const char32_t character = encoding().character(code);
        if (const std::uint32_t glyph = glyphForUnicode(character))
            return glyph;
        const std::uint32_t glyph = glyphForCharacter(character, [this](char32_t wanted) {
            const auto macCode = codeInEncoding(BaseEncoding::MacRoman, wanted);
            return macCode ? file().glyphForCode(CharacterMap::MacRoman, *macCode) : 0;
        });
        const std::string_view name = encoding().glyphName(code);
        return glyph != 0 || name.empty() ? glyph : file().glyphNamed(name, budget);
    }

    /// The glyph that the font itself has for a code. Maps of symbols have the code in the low byte.
    std::uint32_t glyphByCode(std::uint8_t code) const
    {
        for (const std::uint32_t high : {0xF000, 0xF100, 0xF200, 0})
            if (const std::uint32_t glyph = file().glyphForCode(CharacterMap::Symbol, high + code))
                return glyph;
        if (const std::uint32_t glyph = file().glyphForCode(CharacterMap::MacRoman, code))
            return glyph;
        const bool hasMap = file().hasCharacterMap(CharacterMap::Symbol)
            || file().hasCharacterMap(CharacterMap::MacRoman)
            || file().hasCharacterMap(CharacterMap::Unicode);
        return hasMap ? 0 : code;
    }

    bool _hasLetters; ///< rather than symbols, which only the font knows
};

/// A font that the file does not contain, drawn with an installed one.
class InstalledFont final : public PDFFont {
public:
    InstalledFont(
        std::shared_ptr<const InstalledFace> face, const PDFObject& dictionary, const PDFObject& descriptor)
        : _face(std::move(face))
        , _name(readableFontName(dictionary))
        , _ownEncoding(standInEncoding(dictionary))
        , _encoding(dictionary["Encoding"], _ownEncoding)
        , _widths(dictionary, descriptor)
    {
    }

    double advance(std::uint32_t code, PDFRecording&) const override
    {
        return _widths.areStated() ? _widths[std::uint8_t(code)] : ownAdvance(findGlyph(std::uint8_t(code)));
    }

    Shape shape(std::uint32_t code, PDFRecording& recording) const override
    {
        const std::uint32_t glyph = findGlyph(std::uint8_t(code));
        if (glyph == 0) {
            if (!_hasReported && isVisible(std::uint8_t(code))) {
                recording.notDrawn("a character of " + _name + " is not drawn (no installed font has it)");
                _hasReported = true;
            }
            return {};
        }
        // Wider glyphs than the file expects would overlap; narrower ones may stand apart.
        const double own = ownAdvance(glyph);
        const double stated = _widths.areStated() ? _widths[std::uint8_t(code)] : 0;
        return {_face->outline(glyph), stated > 0 && own > stated ? stated / own : 1};
    }

private:
    std::uint32_t findGlyph(std::uint8_t code) const
    {
        auto& number = _numbers[code];
        if (!number)
            number = _face ? glyphInFace(_encoding.character(code)) : 0;
        return *number;
    }
    std::uint32_t glyphInFace(char32_t character) const
    {
        if (!_face->hasSymbolCodes())
            return glyphForCharacter(character, [this](char32_t wanted) { return _face->glyph(wanted); });
        const auto code = codeInEncoding(_ownEncoding, character);
        return code ? _face->glyph(*code) : 0;
    }
    /// Whether the file wants something to be seen for a code.
    bool isVisible(std::uint8_t code) const
    {
        const char32_t character = _encoding.character(code);
        const std::string_view name = _encoding.glyphName(code);
        return character > ' ' || (character == 0 && !name.empty() && name != ".notdef");
    }
    double ownAdvance(std::uint32_t glyph) const { return _face && glyph != 0 ? _face->advance(glyph) : 0; }

    std::shared_ptr<const InstalledFace> _face; ///< null when no font is installed
    std::string _name;
    BaseEncoding _ownEncoding;
    FontEncoding _encoding;
    SimpleWidths _widths;
    mutable GlyphNumbers _numbers;
    mutable bool _hasReported = false; ///< that a character is missing
};

} // namespace

std::shared_ptr<const PDFFont> makeSimpleFont(const PDFObject& dictionary, PDFRecording& recording)
{
    const PDFObject descriptor = dictionary["FontDescriptor"];
    if (const PDFObject program = fontProgram(descriptor); !program.isNull()) {
        const auto file = recording.fontFiles().open(program, recording);
        if (file && file->isTrueType())
            return std::make_shared<EmbeddedTrueTypeFont>(file, dictionary, descriptor);
        if (file)
            return std::make_shared<EmbeddedType1Font>(file, dictionary, descriptor, std::nullopt);
        recording.notDrawn("the font " + readableFontName(dictionary)
            + " in the file is not drawn (damaged); an installed one takes its place");
    }
    auto face =
        recording.fontFiles().findInstalled(wantedStandIn(dictionary, descriptor, flagsOf(descriptor)));
    return std::make_shared<InstalledFont>(std::move(face), dictionary, descriptor);
}
