#include "CoreGraphics/pdf/FontEncoding.h"

#include "CoreGraphics/pdf/GlyphNames.h"
#include "CoreGraphics/pdf/PDFObject.h"

namespace {

std::optional<BaseEncoding> encodingNamed(const PDFObject& name)
{
    if (name.isName("StandardEncoding"))
        return BaseEncoding::Standard;
    if (name.isName("WinAnsiEncoding"))
        return BaseEncoding::WinAnsi;
    if (name.isName("MacRomanEncoding"))
        return BaseEncoding::MacRoman;
    return std::nullopt;
}

} // namespace

FontEncoding::FontEncoding(const PDFObject& encoding, std::optional<BaseEncoding> implicit)
    : _isOfDingbats(implicit == BaseEncoding::ZapfDingbats)
{
    const auto named = encodingNamed(encoding.isName() ? encoding : encoding["BaseEncoding"]);
    _isNamed = named.has_value();
    _base = named ? named : implicit;
    const PDFObject differences = encoding["Differences"];
    int code = 0;
    for (std::size_t index = 0; index < differences.size(); ++index) {
        const PDFObject item = differences.at(index);
        if (item.isNumber())
            code = item.integer();
        if (!item.isName())
            continue;
        if (code >= 0 && code < 256)
            _differences[std::size_t(code)] = item.name();
        ++code;
    }
}

std::string_view FontEncoding::glyphName(std::uint8_t code) const
{
    if (!_differences[code].empty())
        return _differences[code];
    return _base ? glyphNameOfCharacter(characterInEncoding(*_base, code)) : std::string_view();
}

char32_t FontEncoding::character(std::uint8_t code) const
{
    const std::string& name = _differences[code];
    if (!name.empty())
        return _isOfDingbats ? characterOfDingbatName(name) : characterOfGlyphName(name);
    return _base ? characterInEncoding(*_base, code) : 0;
}
