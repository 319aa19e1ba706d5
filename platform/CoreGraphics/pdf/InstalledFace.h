#pragma once

#include <CoreGraphics/CGPath.h>

#include <compare>
#include <cstdint>
#include <memory>
#include <string>

/// A face of an installed font, which stands in for a font that a PDF file names but does not contain. Any
/// thread.
///
/// Core Text implements it, with the fonts that its own functions find.
class InstalledFace {
public:
    enum class Family : std::uint8_t { Sans, Serif, Monospaced, Symbol, Dingbats };
    struct Wanted {
        std::string name; ///< such as "Helvetica-Bold"; empty for any of the family
        Family family = Family::Sans;
        bool isBold = false;
        bool isItalic = false;

        auto operator<=>(const Wanted&) const = default;
    };

    /// The face of that name, or the nearest of the family; null when no font is installed at all. Exported
    /// for the module that reads PDF files.
    KORVID_EXPORT static std::shared_ptr<const InstalledFace> find(const Wanted& wanted);

    virtual ~InstalledFace() = default;
    /// True for a font of symbols whose characters are the codes of the Symbol or ZapfDingbats encoding.
    virtual bool hasSymbolCodes() const = 0;
    /// The glyph of a character; 0 when the face does not have it.
    virtual std::uint32_t glyph(char32_t character) const = 0;
    /// In ems. Borrowed from the face; null for a blank.
    virtual const CGPath* outline(std::uint32_t glyph) const = 0;
    /// In ems.
    virtual double advance(std::uint32_t glyph) const = 0;
};
