#include "GalleryError.h"

#include <Foundation/NSString.h>

#include <cstdio>

namespace {

/// Whether a terminal may interpret the character, or end the line at it.
bool isControl(char16_t unit)
{
    return unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit == u'\u2028' || unit == u'\u2029';
}

std::u16string escaped(char16_t unit)
{
    switch (unit) {
    case u'\n':
        return u"\\n";
    case u'\r':
        return u"\\r";
    case u'\t':
        return u"\\t";
    default:
        char digits[8];
        const int length = std::snprintf(digits, sizeof digits, "\\u%04x", static_cast<unsigned>(unit));
        return {digits, digits + length};
    }
}

} // namespace

std::string quoted(const std::string& words)
{
    const NSString text(words);
    std::u16string shown = u"'";
    for (const char16_t unit : text.view())
        isControl(unit) ? shown += escaped(unit) : shown += unit;
    return NSString(shown + u"'").UTF8String();
}
