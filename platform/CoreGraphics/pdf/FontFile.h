#pragma once

#include "CoreGraphics/pdf/InstalledFace.h"
#include "CoreGraphics/pdf/PDFObject.h"

#include <CoreGraphics/CGPath.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>

class FreeTypeLibrary;
class PDFBudget;
class PDFRecording;

/// A font program that a PDF file contains, read by FreeType. Used under the document's mutex.
class FontFile {
public:
    /// The tables that map the codes of a TrueType font, by platform and encoding.
    enum class CharacterMap : std::uint8_t {
        Symbol,   ///< (3, 0)
        MacRoman, ///< (1, 0)
        Unicode,  ///< (3, 10), (3, 1) or (0, ...); other fonts have it by their glyphs' names
        BuiltIn,  ///< the encoding of a Type 1 or CFF font
    };

    /// Null unless the bytes are a TrueType, OpenType, Type 1 or CFF font.
    static std::shared_ptr<FontFile> open(std::string bytes, std::shared_ptr<FreeTypeLibrary> library);

    FontFile(const FontFile&) = delete;
    FontFile& operator=(const FontFile&) = delete;
    ~FontFile();

    /// True for glyphs in the tables of TrueType; false for Type 1 and CFF, in whatever file.
    bool isTrueType() const;
    bool hasCharacterMap(CharacterMap map) const;

    // Glyphs are numbered by the font, with 0 for the missing character, which is also the result where none
    // is found.

    std::uint32_t glyphForCode(CharacterMap map, std::uint32_t code) const;
    /// The first call reads all names, which the budget pays.
    std::uint32_t glyphNamed(std::string_view name, PDFBudget& budget);
    /// The glyph of a character collection's number. The first call may read all numbers, which the budget
    /// pays.
    std::uint32_t glyphForCID(std::uint32_t cid, PDFBudget& budget);

    /// Lengths in ems. Neither for a glyph that cannot be read.
    struct Glyph {
        RetainPtr<const CGPath> outline; ///< null for a blank
        double advance = 0;
    };
    /// Cached; borrowed from the file.
    const Glyph& glyph(std::uint32_t number, PDFBudget& budget);

private:
    class Face;

    explicit FontFile(std::string bytes);

    Glyph load(std::uint32_t number) const;
    /// How many glyphs FreeType reads for one that is composed of others, itself included. Far too many if it
    /// is part of itself.
    std::size_t partCount(std::uint32_t number, PDFBudget& budget, std::size_t depth = 0);

    std::string _bytes; ///< which the face reads
    std::unique_ptr<Face> _face;
    std::unordered_map<std::string, std::uint32_t> _glyphsByName;
    bool _hasReadNames = false;
    std::unordered_map<std::uint32_t, std::uint32_t> _glyphsByCID;
    bool _hasReadCIDs = false;
    std::unordered_map<std::uint32_t, Glyph> _glyphs;
    std::unordered_map<std::uint32_t, std::size_t> _partCounts;
};

/// The fonts that recording one page uses. Used under the document's mutex.
class FontFiles {
public:
    FontFiles();
    FontFiles(const FontFiles&) = delete;
    FontFiles& operator=(const FontFiles&) = delete;
    ~FontFiles();

    /// The font in a stream, cached; null when it cannot be read.
    std::shared_ptr<FontFile> open(const PDFObject& stream, PDFRecording& recording);
    /// An installed face, cached; null when there is none at all.
    std::shared_ptr<const InstalledFace> findInstalled(InstalledFace::Wanted wanted);

private:
    /// Looking for a name takes up to a millisecond; after so many, only families are looked for.
    static constexpr std::size_t kMostNames = 32;

    std::shared_ptr<FreeTypeLibrary> _library; ///< null until a stream is opened
    std::map<PDFObjectID, std::shared_ptr<FontFile>> _files;
    std::map<InstalledFace::Wanted, std::shared_ptr<const InstalledFace>> _installed;
};
