#include "CoreText/pango/FontLibrary.h"

#include "CoreText/pango/FaceReader.h"

#include <pango/pangofc-fontmap.h>

#include <algorithm>
#include <cmath>

namespace {

/// In place of a family that is not installed: these are as wide as Helvetica.
constexpr const char* kSubstitutes[] = {"Liberation Sans", "Arimo", "Nimbus Sans"};

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

/// The distance of a face's number from the wanted one; 0 within the range of a variable face.
double distance(const FcPattern* pattern, const char* property, double regular, double wanted)
{
    FcRange* range = nullptr;
    double low = 0;
    double high = 0;
    if (FcPatternGetRange(pattern, property, 0, &range) == FcResultMatch
        && FcRangeGetDouble(range, &low, &high))
        return std::abs(std::clamp(wanted, low, high) - wanted);
    return std::abs(numberOf(pattern, property, regular) - wanted);
}

/// How far a face is from the style of a name: a slant counts more than a weight, that more than a width.
double distanceFromStyle(const FcPattern* pattern, const FaceName& style)
{
    const double slant = style.isItalic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN;
    const double width = style.isCondensed ? FC_WIDTH_CONDENSED : FC_WIDTH_NORMAL;
    return distance(pattern, FC_WEIGHT, FC_WEIGHT_REGULAR, FcWeightFromOpenTypeDouble(style.weight))
        + 2 * distance(pattern, FC_SLANT, FC_SLANT_ROMAN, slant)
        + 4 * distance(pattern, FC_WIDTH, FC_WIDTH_NORMAL, width);
}

/// The readable face nearest to the style; null when there is none. The order of the files settles ties.
const FcPattern* nearestFace(const FcFontSet* set, const FaceName& style)
{
    const FcPattern* best = nullptr;
    for (int i = 0; set && i < set->nfont; ++i) {
        const FcPattern* pattern = set->fonts[i];
        if (!isReadable(pattern))
            continue;
        const auto rank = [&style](const FcPattern* face) {
            return std::pair(distanceFromStyle(face, style), std::string_view(textOf(face, FC_FILE)));
        };
        if (!best || rank(pattern) < rank(best))
            best = pattern;
    }
    return best;
}

/// Whether both are of one face in one file, be it at different variations.
bool isSameFace(const FcPattern* one, const FcPattern* other)
{
    const auto index = [](const FcPattern* pattern) {
        int number = 0;
        FcPatternGetInteger(pattern, FC_INDEX, 0, &number);
        return number & 0xFFFF; // above: a named variation
    };
    return std::string_view(textOf(one, FC_FILE)) == textOf(other, FC_FILE) && index(one) == index(other);
}

/// A pattern for fontconfig's XML that matches a file's path: characters that are special in patterns or in
/// XML are replaced by a wildcard for one character.
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

/// Unhinted outlines at unrounded positions.
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
    _plainItems.clear();
    _faces.clear();
    _context = nullptr;
    _map = nullptr;
    const bool isDefault = _folder.empty() && _rejected.empty();
    if (isDefault) {
        _config.reset(FcConfigReference(nullptr)); // the process's configuration, shared with Qt
    } else {
        _config.reset(FcConfigCreate());
        if (_folder.empty())
            FcConfigParseAndLoad(_config.get(), nullptr, FcFalse);
        std::string rules = "<fontconfig>";
        if (!_folder.empty())
            rules += "<dir>" + _folder + "</dir><cachedir>" + _folder
                + "/.cache</cachedir><include ignore_missing=\"yes\">" + _folder + "/fonts.conf</include>";
        for (const std::string& file : _rejected)
            rules += "<selectfont><rejectfont><glob>" + globFor(file) + "</glob></rejectfont></selectfont>";
        rules += "</fontconfig>";
        FcConfigParseAndLoadFromMemory(
            _config.get(), reinterpret_cast<const FcChar8*>(rules.c_str()), FcFalse);
        FcConfigBuildFonts(_config.get());
    }
    _hasFonts = hasReadableFont(_config.get());
    _map.reset(pango_cairo_font_map_new_for_font_type(CAIRO_FONT_TYPE_FT));
    if (!isDefault) // which the map uses without being told; told so, it lists all families
        pango_fc_font_map_set_config(PANGO_FC_FONT_MAP(_map.get()), _config.get());
    _context.reset(pango_font_map_create_context(_map.get()));
    // The one that text without a language is laid out in: a typeface is found and laid out with one query.
    pango_context_set_language(_context.get(), pango_language_get_default());
    turnHintingOff(_context.get());
}

PangoPtr<FcFontSet> FontLibrary::list(const char* property, const std::string& name)
{
    ++_queries;
    const PangoPtr<FcPattern> pattern(FcPatternCreate());
    FcPatternAddString(pattern.get(), property, reinterpret_cast<const FcChar8*>(name.c_str()));
    const PangoPtr<FcObjectSet> properties(FcObjectSetBuild(FC_FILE, FC_INDEX, FC_FAMILY, FC_STYLE, FC_WEIGHT,
        FC_SLANT, FC_WIDTH, FC_FONTFORMAT, FC_POSTSCRIPT_NAME, nullptr));
    return PangoPtr<FcFontSet>(FcFontList(_config.get(), pattern.get(), properties.get()));
}

std::shared_ptr<PangoTypeface> FontLibrary::find(
    const char* property, const std::string& name, const FaceName& style)
{
    return retrying([&]() -> std::shared_ptr<PangoTypeface> {
        const auto found = list(property, name);
        const FcPattern* pattern = nearestFace(found.get(), style);
        if (!pattern)
            return nullptr;
        PangoPtr<PangoFontDescription> description(
            pango_fc_font_description_from_pattern(const_cast<FcPattern*>(pattern), FALSE));
        return makeTypeface(std::move(description), pattern);
    });
}

std::shared_ptr<PangoTypeface> FontLibrary::find(const NSString& name)
{
    const std::string wanted = name.UTF8String();
    for (const char* property : {FC_POSTSCRIPT_NAME, FC_FULLNAME, FC_FAMILY})
        if (auto typeface = find(property, wanted, FaceName()))
            return typeface;
    return nullptr;
}

std::shared_ptr<PangoTypeface> FontLibrary::findNearest(const FaceName& name)
{
    if (!name.family.empty())
        if (auto typeface = find(FC_FAMILY, name.family, name))
            return typeface;
    for (const char* family : kSubstitutes)
        if (auto typeface = find(FC_FAMILY, family, name))
            return typeface;
    auto typeface = retrying([&] {
        ++_queries;
        PangoPtr<PangoFontDescription> description(pango_font_description_new());
        pango_font_description_set_family_static(description.get(), "sans-serif");
        pango_font_description_set_weight(description.get(), PangoWeight(name.weight));
        if (name.isItalic)
            pango_font_description_set_style(description.get(), PANGO_STYLE_ITALIC);
        if (name.isCondensed)
            pango_font_description_set_stretch(description.get(), PANGO_STRETCH_CONDENSED);
        return makeTypeface(std::move(description));
    });
    return typeface ? typeface : std::make_shared<PangoTypeface>();
}

std::shared_ptr<PangoTypeface> FontLibrary::makeTypeface(
    PangoPtr<PangoFontDescription> description, const FcPattern* wanted)
{
    setLayoutSize(description.get());
    const PangoPtr<PangoFont> font(pango_font_map_load_font(_map.get(), _context.get(), description.get()));
    if (!font)
        return nullptr;
    // Pango asks fontconfig once more, whose rules may replace one family by another.
    if (wanted && !isSameFace(patternOf(font.get()), wanted))
        return nullptr;
    auto face = this->face(font.get());
    if (!face)
        return nullptr;
    const FcPattern* pattern = wanted ? wanted : patternOf(font.get());
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
