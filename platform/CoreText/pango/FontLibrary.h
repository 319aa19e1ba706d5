#pragma once

#include "CoreText/FaceName.h"
#include "CoreText/FontSystem.h"
#include "CoreText/pango/PangoPtr.h"

#include <string>
#include <unordered_map>

/// All text is laid out at this size and scaled later: as it is unhinted, it is alike at each size. Glyphs'
/// places then come in steps of a millionth em.
inline constexpr int kLayoutSize = 1024;
inline constexpr double kPangoUnitsPerEm = double(kLayoutSize) * PANGO_SCALE;

/// A typeface as Pango asks for it.
struct PangoTypeface final : Typeface {
    PangoPtr<PangoFontDescription> description;
};

/// The installed fonts, through fontconfig and Pango. One thread at a time.
class FontLibrary {
public:
    /// `folder` holds all the fonts there are; null: those installed.
    explicit FontLibrary(const NSString& folder);

    /// False when there is no font to draw with. Then nothing else may be asked for.
    bool hasFonts() const { return _hasFonts; }
    PangoContext* context() const { return _context.get(); }
    /// How often fontconfig was asked for a font by name.
    std::uint64_t queries() const { return _queries; }

    /// The typeface of the font that has exactly that name; null when there is none.
    std::shared_ptr<PangoTypeface> find(const NSString& name);
    /// The typeface that is nearest to a name's meaning; without a face only when there are no fonts.
    std::shared_ptr<PangoTypeface> findNearest(const FaceName& name);

    /// Tries until it gets something, as long as each failure leaves a damaged file out.
    template <class Attempt> auto retrying(Attempt attempt) -> decltype(attempt())
    {
        for (;;) {
            const std::size_t rejected = _rejected.size();
            auto result = hasFonts() ? attempt() : nullptr;
            if (result || rejected == _rejected.size())
                return result;
        }
    }
    /// The face of a font that Pango chose. Null for one whose file is missing or damaged: from then on it
    /// is left out, and what was laid out with it has to be laid out again.
    std::shared_ptr<const FontFace> face(PangoFont* font);

private:
    /// Makes map and context anew without the rejected files.
    void load();
    PangoPtr<FcFontSet> list(const char* property, const std::string& name);
    /// The typeface of the face nearest to `style` among those with that name; null when there is none.
    std::shared_ptr<PangoTypeface> find(const char* property, const std::string& name, const FaceName& style);
    /// The typeface that Pango loads for a description; null when its face is another one than `wanted` (null
    /// for any).
    std::shared_ptr<PangoTypeface> makeTypeface(
        PangoPtr<PangoFontDescription> description, const FcPattern* wanted = nullptr);

    std::string _folder;                ///< empty: all
    std::vector<std::string> _rejected; ///< files
    PangoPtr<FcConfig> _config;
    PangoPtr<PangoFontMap> _map;
    PangoPtr<PangoContext> _context;
    bool _hasFonts = false;
    std::uint64_t _queries = 0;

    struct FaceOfFont {
        PangoPtr<PangoFont> font; ///< kept, so that no other gets its address
        std::shared_ptr<const FontFace> face;
    };
    std::unordered_map<PangoFont*, FaceOfFont> _faces;
};
