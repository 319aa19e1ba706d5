#include "CoreGraphics/pdf/InstalledFace.h"

#include "CoreText/FontSystem.h"
#include "CoreText/Typeface.h"

#include <algorithm>
#include <span>

namespace {

// Families with the widths of the standard fonts, and others that have their characters.
constexpr const char* kSans[] = {"Liberation Sans", "Arimo", "Nimbus Sans"};
constexpr const char* kSerif[] = {"Liberation Serif", "Tinos", "Nimbus Roman", "DejaVu Serif"};
constexpr const char* kMonospaced[] = {"Liberation Mono", "Cousine", "Nimbus Mono PS", "DejaVu Sans Mono"};
constexpr const char* kSymbol[] = {"Symbol", "Standard Symbols PS", "DejaVu Sans"};
constexpr const char* kDingbats[] = {"ZapfDingbats", "D050000L", "DejaVu Sans"};

/// A character that fonts of symbols have, and its code in their encodings.
struct Sample {
    std::string_view family;
    char32_t character;
    char32_t code;
};
constexpr Sample kSamples[] = {{"Symbol", U'β', 'b'}, {"Standard Symbols PS", U'β', 'b'},
    {"ZapfDingbats", U'✔', '4'}, {"D050000L", U'✔', '4'}};

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
    explicit TypefaceInPlace(const Typeface& typeface)
        : _face(typeface.face)
    {
        const std::string family = typeface.family.UTF8String();
        _hasSymbolCodes = std::any_of(std::begin(kSamples), std::end(kSamples), [&](const Sample& sample) {
            return sample.family == family && glyph(sample.character) == 0 && glyph(sample.code) != 0;
        });
    }

    bool hasSymbolCodes() const override { return _hasSymbolCodes; }

    std::uint32_t glyph(char32_t character) const override { return _face->glyph(character); }
    const CGPath* outline(std::uint32_t glyph) const override { return _face->outline(glyph); }
    double advance(std::uint32_t glyph) const override { return _face->advance(glyph); }

private:
    std::shared_ptr<const FontFace> _face;
    bool _hasSymbolCodes;
};

} // namespace

std::shared_ptr<const InstalledFace> InstalledFace::find(const Wanted& wanted)
{
    const auto typeface = findTypeface(wanted);
    return typeface->face ? std::make_shared<TypefaceInPlace>(*typeface) : nullptr;
}
