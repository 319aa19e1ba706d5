#pragma once

#include "CoreText/FaceName.h"
#include "CoreText/FontSystem.h"
#include "CoreText/pango/PangoPtr.h"

#include <compare>
#include <map>
#include <string>
#include <unordered_map>

/// The size of all layouts, which are scaled later: unhinted text has the same shape at each size. Positions
/// of glyphs are multiples of about a millionth em.
inline constexpr int kLayoutSize = 1024;
inline constexpr double kPangoUnitsPerEm = double(kLayoutSize) * PANGO_SCALE;

/// A typeface with its description for Pango.
struct PangoTypeface final : Typeface {
    PangoPtr<PangoFontDescription> description;
};

/// The installed fonts, through fontconfig and Pango. One thread at a time.
class FontLibrary {
public:
    /// Uses the fonts of `folder` alone; null: the installed fonts.
    explicit FontLibrary(const NSString& folder);

    /// False when no usable font exists. Then the functions below find nothing.
    bool hasFonts() const { return _hasFonts; }
    PangoContext* context() const { return _context.get(); }
    /// The number of fontconfig's searches for a font by name.
    std::uint64_t queries() const { return _queries; }

    /// The typeface of the font that has exactly that name; null when there is none.
    std::shared_ptr<PangoTypeface> find(const NSString& name);
    /// The typeface that is nearest to a name's meaning; without a face only when there are no fonts.
    std::shared_ptr<PangoTypeface> findNearest(const FaceName& name);

    /// Calls `attempt` until it returns a result, as long as each failed call rejects a damaged file.
    template <class Attempt> auto retrying(Attempt attempt) -> decltype(attempt())
    {
        for (;;) {
            const std::size_t rejected = _rejected.size();
            auto result = hasFonts() ? attempt() : nullptr;
            if (result || rejected == _rejected.size())
                return result;
        }
    }
    /// Which text of a typeface an item serves.
    struct PlainText {
        std::uint32_t typeface = 0; ///< serial
        bool hasLigatures = true;
        bool hasLetters = true;

        auto operator<=>(const PlainText&) const = default;
    };
    /// The item of such text, made by `make` on the first call. Borrowed until the next call of this
    /// function or `face`.
    template <class Make> const PangoItem* plainItem(const PlainText& text, Make make)
    {
        const auto found = _plainItems.find(text);
        if (found != _plainItems.end())
            return found->second.get();
        if (_plainItems.size() == kMaximumPlainItems)
            _plainItems.clear();
        return _plainItems.emplace(text, make()).first->second.get();
    }
    /// The face of a font that Pango chose; cached. Null when its file is missing or damaged: then the file
    /// is rejected, and layouts that use it must be repeated.
    std::shared_ptr<const FontFace> face(PangoFont* font);

private:
    /// Programs use few typefaces; one that generates their names must not fill the memory.
    static constexpr std::size_t kMaximumPlainItems = 256;

    /// Recreates map and context without the rejected files.
    void load();
    PangoPtr<FcFontSet> list(const char* property, const std::string& name);
    /// The typeface of the face nearest to `style` among those with that name; null when there is none.
    std::shared_ptr<PangoTypeface> find(const char* property, const std::string& name, const FaceName& style);
    /// The typeface that Pango loads for a description; null when its face is another one than `wanted` (null
    /// for any).
    std::shared_ptr<PangoTypeface> makeTypeface(
        PangoPtr<PangoFontDescription> description, const FcPattern* wanted = nullptr);

    std::string _folder;                ///< empty: the installed fonts
    std::vector<std::string> _rejected; ///< files
    PangoPtr<FcConfig> _config;
    PangoPtr<PangoFontMap> _map;
    PangoPtr<PangoContext> _context;
    bool _hasFonts = false;
    std::uint64_t _queries = 0;

    struct FaceOfFont {
        PangoPtr<PangoFont> font; ///< retained, so that its address stays unique
        std::shared_ptr<const FontFace> face;
    };
    std::unordered_map<PangoFont*, FaceOfFont> _faces;
    std::map<PlainText, PangoPtr<PangoItem>> _plainItems;
};
