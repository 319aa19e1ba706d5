#include "CoreGraphics/pdf/InstalledFace.h"

#include "CoreText/FontSystem.h"
#include "CoreText/Typeface.h"

#include <span>

namespace {

// Families with the widths of the standard fonts, and others that have their characters.
constexpr const char* kSans[] = {"Liberation Sans", "Arimo", "Nimbus Sans"};
constexpr const char* kSerif[] = {"Liberation Serif", "Tinos", "Nimbus Roman", "DejaVu Serif"};
constexpr const char* kMonospaced[] = {"Liberation Mono", "Cousine", "Nimbus Mono PS", "DejaVu Sans Mono"};
constexpr const char* kSymbol[] = {"Symbol", "Standard Symbols PS", "DejaVu Sans"};
constexpr const char* kDingbats[] = {"ZapfDingbats", "D050000L", "DejaVu Sans"};

std::span<const char* const> familiesOf(InstalledFace::Family family)
{
    switch (family) {
    case InstalledFace::Family::Sans:
        return kSans;
    case InstalledFace::Family::Serif:
        return kSerif;
    case InstalledFace::Family::Monospaced:
        return kMonospaced;
    case InstalledFace::Family::Symbol:
        return kSymbol;
    case InstalledFace::Family::Dingbats:
        return kDingbats;
    }
    return {};
}

std::shared_ptr<const Typeface> findTypeface(const InstalledFace::Wanted& wanted)
{
    FontSystem& fonts = FontSystem::shared();
    if (!wanted.name.empty())
        if (auto typeface = fonts.typefaceNamed(NSString(wanted.name)))
            return typeface;
    const std::string style = std::string(wanted.isBold ? " Bold" : "") + (wanted.isItalic ? " Italic" : "");
    for (const char* family : familiesOf(wanted.family)) {
        auto typeface = fonts.nearestTypeface(NSString(family + style));
        if (typeface->family == NSString(family))
            return typeface;
    }
    return fonts.nearestTypeface(NSString(wanted.name + style));
}

class TypefaceInPlace final : public InstalledFace {
public:
    explicit TypefaceInPlace(std::shared_ptr<const FontFace> face)
        : _face(std::move(face))
    {
    }

    std::uint32_t glyph(char32_t character) const override { return _face->glyph(character); }
    const CGPath* outline(std::uint32_t glyph) const override { return _face->outline(glyph); }
    double advance(std::uint32_t glyph) const override { return _face->advance(glyph); }

private:
    std::shared_ptr<const FontFace> _face;
};

} // namespace

std::shared_ptr<const InstalledFace> InstalledFace::find(const Wanted& wanted)
{
    const auto typeface = findTypeface(wanted);
    return typeface->face ? std::make_shared<TypefaceInPlace>(typeface->face) : nullptr;
}
