#include "CoreText/pango/FontLibrary.h"

#include "CoreText/pango/FaceReader.h"

#include <pango/pangofc-fontmap.h>

#include <algorithm>
#include <cmath>

namespace {

/// Where a family is not installed: faces as wide as Helvetica's, then whatever has letters.
constexpr char kNearestFamilies[] = "Liberation Sans,Arimo,Nimbus Sans,sans-serif";

const char* textOf(const FcPattern* pattern, const char* property)
{
    FcChar8* text = nullptr;
    if (FcPatternGetString(pattern, property, 0, &text) != FcResultMatch)
        return "";
    return reinterpret_cast<const char*>(text);
}

/// A number of a face; of a face that varies from one number to another, the regular one.
double numberOf(const FcPattern* pattern, const char* property, double regular)
{
    double number = regular;
    return FcPatternGetDouble(pattern, property, 0, &number) == FcResultMatch ? number : regular;
}

/// Whether its glyphs can be read: outlines or images in the tables that all current fonts have.
bool isReadable(const FcPattern* pattern)
{
    const std::string_view format = textOf(pattern, FC_FONTFORMAT);
    return format == "TrueType" || format == "CFF";
}

/// How far a face is from the regular one of its family.
double distanceFromRegular(const FcPattern* pattern)
{
    return std::abs(numberOf(pattern, FC_WEIGHT, FC_WEIGHT_REGULAR) - FC_WEIGHT_REGULAR)
        + 2 * numberOf(pattern, FC_SLANT, FC_SLANT_ROMAN)
        + 4 * std::abs(numberOf(pattern, FC_WIDTH, FC_WIDTH_NORMAL) - FC_WIDTH_NORMAL);
}

/// The readable face nearest to the regular one; null when there is none. The order of the files settles
/// ties.
const FcPattern* mostRegular(const FcFontSet* set)
{
    const FcPattern* best = nullptr;
    for (int i = 0; set && i < set->nfont; ++i) {
        const FcPattern* pattern = set->fonts[i];
        if (!isReadable(pattern))
            continue;
        const auto rank = [](const FcPattern* face) {
            return std::pair(distanceFromRegular(face), std::string_view(textOf(face, FC_FILE)));
        };
        if (!best || rank(pattern) < rank(best))
            best = pattern;
    }
    return best;
}

/// Text for fontconfig's XML, where a pattern of file names means just one: what could be a wildcard, or
/// mean something in XML, is any one character.
std::string globFor(const std::string& file)
{
    std::string glob = file;
    for (char& c : glob)
        if (std::string_view("*?[]\\<>&").find(c) != std::string_view::npos)
            c = '?';
    return glob;
}

void setLayoutSize(PangoFontDescription* description)
{
    pango_font_description_set_absolute_size(description, kPangoUnitsPerEm);
}

/// Outlines as they are designed, at the places where they are designed to be.
void turnHintingOff(PangoContext* context)
{
    const PangoPtr<cairo_font_options_t> options(cairo_font_options_create());
    cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
    cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
    pango_cairo_context_set_font_options(context, options.get());
    pango_context_set_round_glyph_positions(context, FALSE);
}

FcPattern* patternOf(PangoFont* font)
{
    return pango_fc_font_get_pattern(PANGO_FC_FONT(font));
}

bool hasReadableFont(FcConfig* config)
{
    const FcFontSet* fonts = FcConfigGetFonts(config, FcSetSystem);
    return fonts && std::any_of(fonts->fonts, fonts->fonts + fonts->nfont, [](const FcPattern* font) {
        return isReadable(font);
    });
}

} // namespace

FontLibrary::FontLibrary(const NSString& folder)
    : _folder(folder.UTF8String())
{
    load();
}

void FontLibrary::load()
{
    _faces.clear();
    _context = nullptr;
    _map = nullptr;
    if (_folder.empty() && _rejected.empty()) {
        _config.reset(FcConfigReference(nullptr)); // the one that others in the process share
    } else {
        _config.reset(FcConfigCreate());
        if (_folder.empty())
            FcConfigParseAndLoad(_config.get(), nullptr, FcFalse);
        std::string rules = "<fontconfig>";
        if (!_folder.empty())
            rules += "<dir>" + _folder + "</dir><cachedir>" + _folder + "/.cache</cachedir>";
        for (const std::string& file : _rejected)
            rules += "<selectfont><rejectfont><glob>" + globFor(file) + "</glob></rejectfont></selectfont>";
        rules += "</fontconfig>";
        FcConfigParseAndLoadFromMemory(
            _config.get(), reinterpret_cast<const FcChar8*>(rules.c_str()), FcFalse);
        FcConfigBuildFonts(_config.get());
    }
    _hasFonts = hasReadableFont(_config.get());
    _map.reset(pango_cairo_font_map_new_for_font_type(CAIRO_FONT_TYPE_FT));
    pango_fc_font_map_set_config(PANGO_FC_FONT_MAP(_map.get()), _config.get());
    _context.reset(pango_font_map_create_context(_map.get()));
    turnHintingOff(_context.get());
}

PangoPtr<FcFontSet> FontLibrary::list(const char* property, const std::string& name)
{
    ++_queries;
    const PangoPtr<FcPattern> pattern(FcPatternCreate());
    FcPatternAddString(pattern.get(), property, reinterpret_cast<const FcChar8*>(name.c_str()));
    const PangoPtr<FcObjectSet> properties(FcObjectSetBuild(FC_FILE, FC_FAMILY, FC_STYLE, FC_WEIGHT, FC_SLANT,
        FC_WIDTH, FC_FONTFORMAT, FC_POSTSCRIPT_NAME, nullptr));
    return PangoPtr<FcFontSet>(FcFontList(_config.get(), pattern.get(), properties.get()));
}

std::shared_ptr<PangoTypeface> FontLibrary::find(const NSString& name)
{
    const std::string wanted = name.UTF8String();
    for (const char* property : {FC_POSTSCRIPT_NAME, FC_FULLNAME, FC_FAMILY}) {
        auto typeface = retrying([&]() -> std::shared_ptr<PangoTypeface> {
            const auto found = list(property, wanted);
            const FcPattern* pattern = mostRegular(found.get());
            if (!pattern)
                return nullptr;
            PangoPtr<PangoFontDescription> description(
                pango_fc_font_description_from_pattern(const_cast<FcPattern*>(pattern), FALSE));
            auto typeface = makeTypeface(std::move(description));
            // Pango looks for itself: what it finds may be another font of the same family.
            return typeface && typeface->name == textOf(pattern, FC_POSTSCRIPT_NAME) ? typeface : nullptr;
        });
        if (typeface)
            return typeface;
    }
    return nullptr;
}

std::shared_ptr<PangoTypeface> FontLibrary::findNearest(const FaceName& name)
{
    const std::string families =
        name.family.empty() ? kNearestFamilies : name.family + ',' + kNearestFamilies;
    auto typeface = retrying([&] {
        ++_queries;
        PangoPtr<PangoFontDescription> description(pango_font_description_new());
        pango_font_description_set_family(description.get(), families.c_str());
        pango_font_description_set_weight(description.get(), PangoWeight(name.weight));
        if (name.isItalic)
            pango_font_description_set_style(description.get(), PANGO_STYLE_ITALIC);
        if (name.isCondensed)
            pango_font_description_set_stretch(description.get(), PANGO_STRETCH_CONDENSED);
        return makeTypeface(std::move(description));
    });
    return typeface ? typeface : std::make_shared<PangoTypeface>();
}

std::shared_ptr<PangoTypeface> FontLibrary::makeTypeface(PangoPtr<PangoFontDescription> description)
{
    setLayoutSize(description.get());
    const PangoPtr<PangoFont> font(pango_font_map_load_font(_map.get(), _context.get(), description.get()));
    if (!font)
        return nullptr;
    auto face = this->face(font.get());
    if (!face)
        return nullptr;
    const FcPattern* pattern = patternOf(font.get());
    auto typeface = std::make_shared<PangoTypeface>();
    typeface->name = textOf(pattern, FC_POSTSCRIPT_NAME);
    typeface->family = textOf(pattern, FC_FAMILY);
    typeface->isBold = numberOf(pattern, FC_WEIGHT, FC_WEIGHT_REGULAR) >= FC_WEIGHT_DEMIBOLD;
    typeface->isItalic = numberOf(pattern, FC_SLANT, FC_SLANT_ROMAN) > FC_SLANT_ROMAN;
    typeface->face = std::move(face);
    typeface->description = std::move(description);
    return typeface;
}

std::shared_ptr<const FontFace> FontLibrary::face(PangoFont* font)
{
    const auto found = _faces.find(font);
    if (found != _faces.end())
        return found->second.face;

    hb_font_t* harfBuzzFont = pango_font_get_hb_font(font);
    if (!FontFace::Reader::canRead(harfBuzzFont)) {
        const std::string file = textOf(patternOf(font), FC_FILE);
        if (std::find(_rejected.begin(), _rejected.end(), file) == _rejected.end()) {
            _rejected.push_back(file);
            load();
        }
        return nullptr;
    }
    auto face = std::make_shared<FontFace>(std::make_unique<FontFace::Reader>(harfBuzzFont));
    g_object_ref(font);
    return _faces.emplace(font, FaceOfFont{PangoPtr<PangoFont>(font), std::move(face)}).first->second.face;
}
