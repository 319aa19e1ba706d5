#include "CoreText/pango/Shaper.h"

#include "CoreText/pango/FaceReader.h"

#include <algorithm>

namespace {

/// Text for Pango: UTF-8, each span in normal form C, so that one font can supply a letter and its accent.
struct PangoText {
    std::string bytes;
    std::vector<int> spanEnds; ///< the index after each span's last byte
    bool isASCII = true;
};

/// Whether a code unit is a control character or a separator, which have no effect in a line.
bool isControl(char16_t unit)
{
    return unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit == 0x2028 || unit == 0x2029;
}

/// More than any script puts on a letter.
constexpr int kMaximumMarks = 64;

/// Removes all marks, joiners and other characters without width behind the first ones that follow a letter:
/// the time of a layout grows with the square of their number.
void limitMarks(std::string& text)
{
    char* out = text.data();
    int marks = 0;
    for (const char* in = text.data(); *in;) {
        const char* next = g_utf8_next_char(in);
        marks = g_unichar_iszerowidth(g_utf8_get_char(in)) ? marks + 1 : 0;
        if (marks <= kMaximumMarks)
            out = std::copy(in, next, out);
        in = next;
    }
    text.resize(std::size_t(out - text.data()));
}

/// UTF-8 in normal form C.
std::string composed(const std::u16string& units)
{
    std::string text = NSString(std::u16string_view(units)).UTF8String();
    limitMarks(text);
    const PangoPtr<char> normal(g_utf8_normalize(text.data(), gssize(text.size()), G_NORMALIZE_NFC));
    return normal ? normal.get() : text;
}

/// Whether a code unit is an ASCII character that takes part in a line as it is.
bool isPrintableASCII(char16_t unit)
{
    return unit >= 0x20 && unit < 0x7F;
}

/// Appends the part of the text in a span.
void appendSpan(PangoText& result, std::u16string_view part)
{
    if (std::all_of(part.begin(), part.end(), isPrintableASCII)) { // most are
        result.bytes.append(part.begin(), part.end());
        return;
    }
    thread_local std::u16string units;
    units.clear();
    bool isASCII = true;
    for (const char16_t unit : part) {
        isASCII = isASCII && unit < 0x80;
        if (unit == u'\t')
            units += u' ';
        else if (!isControl(unit))
            units += unit;
    }
    if (isASCII)
        result.bytes.append(units.begin(), units.end());
    else
        result.bytes += composed(units);
    result.isASCII = result.isASCII && isASCII;
}

PangoText makeText(const NSString& text, std::span<const TextSpan> spans)
{
    PangoText result;
    NSUInteger begin = 0;
    for (const TextSpan& span : spans) {
        appendSpan(result, text.view().substr(begin, span.end - begin));
        result.spanEnds.push_back(int(result.bytes.size()));
        begin = span.end;
    }
    return result;
}

/// Adds what Pango needs to know about a span.
void addAttributes(PangoAttrList* attributes, const TextSpan& span, unsigned int begin, unsigned int end)
{
    const auto add = [&](PangoAttribute* attribute) {
        attribute->start_index = begin;
        attribute->end_index = end;
        pango_attr_list_insert(attributes, attribute);
    };
    const auto& typeface = static_cast<const PangoTypeface&>(*span.typeface);
    if (typeface.description)
        add(pango_attr_font_desc_new(typeface.description.get()));
    if (!span.hasLigatures)
        add(pango_attr_font_features_new("liga=0, clig=0"));
}

PangoPtr<PangoAttrList> makeAttributes(const PangoText& text, std::span<const TextSpan> spans)
{
    PangoPtr<PangoAttrList> attributes(pango_attr_list_new());
    unsigned int begin = 0;
    for (std::size_t i = 0; i < spans.size(); ++i) {
        const auto end = unsigned(text.spanEnds[i]);
        addAttributes(attributes.get(), spans[i], begin, end);
        begin = end;
    }
    return attributes;
}

/// The items in visual order, each within one span.
std::vector<PangoPtr<PangoItem>> itemize(
    PangoContext* context, const PangoText& text, std::span<const TextSpan> spans)
{
    const int length = int(text.bytes.size());
    const auto attributes = makeAttributes(text, spans);
    // Weak: the first letter that has a direction decides.
    GList* items = pango_itemize_with_base_dir(
        context, PANGO_DIRECTION_WEAK_LTR, text.bytes.data(), 0, length, attributes.get(), nullptr);

    GList* node = items;
    for (const int end : text.spanEnds)
        for (; node; node = node->next) {
            auto* item = static_cast<PangoItem*>(node->data);
            if (item->offset >= end)
                break;
            const int excess = item->offset + item->length - end;
            if (excess <= 0)
                continue;
            const int kept = item->length - excess;
            PangoItem* front =
                pango_item_split(item, kept, int(g_utf8_strlen(text.bytes.data() + item->offset, kept)));
            items = g_list_insert_before(items, node, front);
            break;
        }

    GList* ordered = pango_reorder_items(items);
    g_list_free(items);
    std::vector<PangoPtr<PangoItem>> result;
    for (const GList* each = ordered; each; each = each->next)
        result.emplace_back(static_cast<PangoItem*>(each->data));
    g_list_free(ordered);
    return result;
}

/// Appends the glyphs of an item, in the face of `run`.
void appendGlyphs(const PangoGlyphString& glyphs, ShapedText& shaped, ShapedRun& run)
{
    run.firstGlyph = shaped.glyphs.size();
    run.glyphCount = std::size_t(glyphs.num_glyphs);
    if (shaped.glyphs.empty())
        shaped.glyphs.reserve(run.glyphCount); // most lines are one run
    for (int i = 0; i < glyphs.num_glyphs; ++i) {
        const PangoGlyphInfo& info = glyphs.glyphs[i];
        ShapedGlyph& glyph = shaped.glyphs.emplace_back();
        glyph.isInked = info.glyph != PANGO_GLYPH_EMPTY;
        // A character that no font has: glyph 0, the face's sign for a missing glyph.
        const bool isMissing = glyph.isInked && (info.glyph & PANGO_GLYPH_UNKNOWN_FLAG);
        glyph.id = isMissing ? 0 : info.glyph;
        glyph.advance = isMissing ? run.face->advance(0) : info.geometry.width / kPangoUnitsPerEm;
        glyph.x = info.geometry.x_offset / kPangoUnitsPerEm;
        glyph.y = -info.geometry.y_offset / kPangoUnitsPerEm;
        const bool isInvisible = !glyph.isInked && glyph.advance == 0;
        glyph.endsCluster = !isInvisible
            && (i + 1 == glyphs.num_glyphs || glyphs.log_clusters[i + 1] != glyphs.log_clusters[i]);
        run.clusterCount += glyph.endsCluster ? 1 : 0;
        run.advance += glyph.advance;
    }
}

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// All printable ASCII characters, or those that are no letters.
std::string printableASCII(bool hasLetters)
{
    std::string text;
    for (char c = ' '; c <= '~'; ++c)
        if (hasLetters || !isLetter(c))
            text += c;
    return text;
}

/// The item of any ASCII text in one span; null when Pango splits such text. Pango's choice of a font, script
/// and direction is the same for all such text with letters, and for all without: it is made once.
const PangoItem* plainItem(FontLibrary& fonts, const TextSpan& span, bool hasLetters)
{
    return fonts.plainItem({span.typeface->serial, span.hasLigatures, hasLetters}, [&] {
        const std::string sample = printableASCII(hasLetters);
        const PangoPtr<PangoAttrList> attributes(pango_attr_list_new());
        addAttributes(attributes.get(), span, 0, PANGO_ATTR_INDEX_TO_TEXT_END);
        GList* items = pango_itemize_with_base_dir(fonts.context(), PANGO_DIRECTION_WEAK_LTR, sample.data(),
            0, int(sample.size()), attributes.get(), nullptr);
        PangoPtr<PangoItem> only;
        if (items && !items->next)
            only.reset(pango_item_copy(static_cast<PangoItem*>(items->data)));
        g_list_free_full(items, [](gpointer item) { pango_item_free(static_cast<PangoItem*>(item)); });
        return only;
    });
}

/// Appends a part of the text. False when its face was rejected.
bool shapeItem(FontLibrary& fonts, const PangoText& text, int offset, int length,
    const PangoAnalysis& analysis, ShapedText& shaped)
{
    thread_local const PangoPtr<PangoGlyphString> glyphs(pango_glyph_string_new());
    auto face = fonts.face(analysis.font);
    if (!face)
        return false;
    pango_shape_full(text.bytes.data() + offset, length, text.bytes.data(), int(text.bytes.size()), &analysis,
        glyphs.get());
    ShapedRun& run = shaped.runs.emplace_back();
    run.face = std::move(face);
    run.span = std::size_t(
        std::upper_bound(text.spanEnds.begin(), text.spanEnds.end(), offset) - text.spanEnds.begin());
    appendGlyphs(*glyphs, shaped, run);
    return true;
}

/// Null when a face was rejected on the way.
std::shared_ptr<ShapedText> tryShape(
    FontLibrary& fonts, const PangoText& text, std::span<const TextSpan> spans)
{
    auto shaped = std::make_shared<ShapedText>();
    if (text.isASCII && spans.size() == 1) {
        const bool hasLetters = std::any_of(text.bytes.begin(), text.bytes.end(), isLetter);
        if (const PangoItem* item = plainItem(fonts, spans[0], hasLetters))
            return shapeItem(fonts, text, 0, int(text.bytes.size()), item->analysis, *shaped) ? shaped
                                                                                              : nullptr;
    }
    for (const auto& item : itemize(fonts.context(), text, spans))
        if (!shapeItem(fonts, text, item->offset, item->length, item->analysis, *shaped))
            return nullptr;
    return shaped;
}

} // namespace

std::shared_ptr<ShapedText> shapeWithPango(
    FontLibrary& fonts, const NSString& text, std::span<const TextSpan> spans)
{
    const PangoText pangoText = makeText(text, spans);
    std::shared_ptr<ShapedText> shaped;
    if (!pangoText.bytes.empty())
        shaped = fonts.retrying([&] { return tryShape(fonts, pangoText, spans); });
    return shaped ? shaped : std::make_shared<ShapedText>();
}
