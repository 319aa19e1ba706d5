#include "CoreGraphics/pdf/StandInFace.h"

#include "CoreGraphics/pdf/PDFFontKinds.h"

#include <algorithm>
#include <string_view>

namespace {

bool containsAny(std::string_view name, std::initializer_list<std::string_view> parts)
{
    return std::any_of(parts.begin(), parts.end(),
        [name](std::string_view part) { return name.find(part) != std::string_view::npos; });
}

InstalledFace::Family familyOf(std::string_view name, unsigned flags)
{
    using Family = InstalledFace::Family;
    if (name == "Symbol" || name.starts_with("Symbol,") || name.starts_with("SymbolMT"))
        return Family::Symbol;
    if (containsAny(name, {"Dingbats"}))
        return Family::Dingbats;
    if (containsAny(name, {"Courier", "Mono", "Consolas", "Typewriter"}))
        return Family::Monospaced;
    if (containsAny(name, {"Helvetica", "Arial", "Sans", "Verdana", "Calibri"}))
        return Family::Sans;
    if (containsAny(
            name, {"Times", "Serif", "Roman", "Georgia", "Garamond", "Palatino", "Bookman", "Century"}))
        return Family::Serif;
    if (flags & kFontIsFixedPitch)
        return Family::Monospaced;
    return flags & kFontIsSerif ? Family::Serif : Family::Sans;
}

} // namespace

InstalledFace::Wanted wantedStandIn(const PDFObject& font, const PDFObject& descriptor, unsigned flags)
{
    const std::string name = readableFontName(font);
    return {font["BaseFont"].isName() ? name : "", familyOf(name, flags),
        containsAny(name, {"Bold", "Black", "Heavy", "Demi"}) || (flags & kFontIsForcedBold)
            || descriptor["FontWeight"].number() >= 600,
        containsAny(name, {"Italic", "Oblique"}) || (flags & kFontIsItalic)
            || descriptor["ItalicAngle"].number() != 0};
}

BaseEncoding standInEncoding(const PDFObject& font)
{
    switch (familyOf(readableFontName(font), 0)) {
    case InstalledFace::Family::Symbol:
        return BaseEncoding::Symbol;
    case InstalledFace::Family::Dingbats:
        return BaseEncoding::ZapfDingbats;
    default:
        return font["Subtype"].isName("TrueType") ? BaseEncoding::WinAnsi : BaseEncoding::Standard;
    }
}
