#pragma once

#include "CoreGraphics/pdf/BaseEncoding.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

class PDFObject;

/// What the Encoding entry of a font says about its codes: a predefined encoding, or none, with exceptions.
class FontEncoding {
public:
    /// Reads a name or a dictionary. Anything else, and unknown names, leave `implicit`. Where that is
    /// ZapfDingbats, glyphs have the names of dingbats.
    FontEncoding(const PDFObject& encoding, std::optional<BaseEncoding> implicit);

    /// The predefined encoding; none where the font's own encoding counts.
    std::optional<BaseEncoding> base() const { return _base; }
    /// True when the file names a predefined encoding.
    bool isNamed() const { return _isNamed; }

    /// The name of a code's glyph; empty where only the font knows.
    std::string_view glyphName(std::uint8_t code) const;
    /// The character of a code; 0 when it is unknown.
    char32_t character(std::uint8_t code) const;

private:
    std::optional<BaseEncoding> _base;
    bool _isNamed = false;
    bool _isOfDingbats;
    std::array<std::string, 256> _differences;
};
