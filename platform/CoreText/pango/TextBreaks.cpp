#include "CoreText/TextBreaks.h"

#include "CoreText/pango/PangoPtr.h"

#include <Foundation/NSString.h>

#include <algorithm>
#include <hb.h>
#include <string>

namespace {

/// UTF-8 for Pango, which takes a NUL character for the end.
std::string pangoBytes(std::u16string_view text)
{
    std::string bytes = NSString(text).UTF8String();
    std::replace(bytes.begin(), bytes.end(), '\0', ' ');
    return bytes;
}

} // namespace

std::vector<TextBreak> findTextBreaks(std::u16string_view paragraph)
{
    std::vector<TextBreak> breaks(paragraph.size() + 1, TextBreak::None);
    const std::string bytes = pangoBytes(paragraph);
    const int characterCount = int(g_utf8_strlen(bytes.data(), gssize(bytes.size())));
    std::vector<PangoLogAttr> attributes(std::size_t(characterCount) + 1);
    pango_get_log_attrs(bytes.data(), int(bytes.size()), -1, pango_language_get_default(), attributes.data(),
        int(attributes.size()));

    std::size_t unit = 0;
    const char* character = bytes.data();
    for (int i = 0; i < characterCount; ++i, character = g_utf8_next_char(character)) {
        const PangoLogAttr& attribute = attributes[std::size_t(i)];
        breaks[unit] = attribute.is_line_break ? TextBreak::Line
            : attribute.is_cursor_position     ? TextBreak::Cluster
                                               : TextBreak::None;
        unit += g_utf8_get_char(character) > 0xFFFF ? 2 : 1;
    }
    breaks.front() = breaks.back() = TextBreak::Line;
    return breaks;
}

bool beginsRightToLeft(std::u16string_view text)
{
    constexpr char16_t kFirstRightToLeft = 0x590; // Hebrew
    if (std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit < kFirstRightToLeft; }))
        return false;
    const std::string bytes = pangoBytes(text);
    for (const char* character = bytes.data(); *character; character = g_utf8_next_char(character)) {
        const hb_script_t script =
            hb_unicode_script(hb_unicode_funcs_get_default(), g_utf8_get_char(character));
        if (script != HB_SCRIPT_COMMON && script != HB_SCRIPT_INHERITED && script != HB_SCRIPT_UNKNOWN)
            return hb_script_get_horizontal_direction(script) == HB_DIRECTION_RTL;
    }
    return false;
}
