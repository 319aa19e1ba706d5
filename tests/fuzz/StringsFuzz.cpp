#include "StringsFuzz.h"

#include "Foundation/StringsFile.h"
#include "Require.h"

#include <algorithm>
#include <cstdio>

namespace {

/// The text in double quotes; all but printable ASCII as \U and four digits, which can express every unit.
std::string quoted(const NSString& text)
{
    std::string result = "\"";
    for (const char16_t unit : text.view()) {
        if (unit >= ' ' && unit < 0x7F && unit != u'"' && unit != u'\\') {
            result += static_cast<char>(unit);
        } else {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\U%04x", static_cast<unsigned>(unit));
            result += escape;
        }
    }
    return result + '"';
}

std::string written(const StringsTable& table)
{
    std::string file;
    for (const auto& [key, text] : table)
        file += "/* entry */ " + quoted(key) + " = " + quoted(text) + "; // next\n";
    return file;
}

/// ASCII as UTF-16 with a byte order mark.
std::string inUTF16(const std::string& ascii, bool isBigEndian)
{
    std::string bytes = isBigEndian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char c : ascii) {
        bytes += isBigEndian ? '\0' : c;
        bytes += isBigEndian ? c : '\0';
    }
    return bytes;
}

} // namespace

void fuzzStrings(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes(data, data + size);
    int line = -1;
    const auto table = parseStringsFile(bytes, &line);
    require(parseStringsFile(bytes) == table);
    if (!table) {
        require(line >= 1 && line <= 1 + std::count(bytes.begin(), bytes.end(), '\n'));
        return;
    }
    require(line == -1);
    const std::string file = written(*table);
    require(parseStringsFile(file) == table);
    require(parseStringsFile(inUTF16(file, false)) == table);
    require(parseStringsFile(inUTF16(file, true)) == table);
}

std::vector<std::string> stringsSeeds()
{
    const std::string plain = "/* Title */\n\"Hello\" = \"Hallo \\\"Welt\\\"\\n\";\n";
    return {plain, "// words\nkey = value;\nalone;\n'single' = 'quo\"ted';\n",
        "\"\\U00e4\\u2028\" = \"\\101\\7\\0 \\q \\\\\";\n\"%1$@ of %2$d\" = \"%2$d / %1$@\";",
        "\xEF\xBB\xBF\"\xC3\xA4\" = \"\xF0\x9F\x98\x80\";", inUTF16(plain, false), inUTF16(plain, true),
        "\"same\" = \"1\"; \"same\" = \"2\";"};
}
