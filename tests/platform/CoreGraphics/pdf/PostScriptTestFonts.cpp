#include "PostScriptTestFonts.h"

#include <utility>

namespace {

std::string byteString(std::initializer_list<unsigned> values)
{
    std::string result;
    for (const unsigned value : values)
        result += char(value);
    return result;
}

/// Numbers in charstrings, in both formats.
std::string shortNumber(int value)
{
    return byteString({28, unsigned(value) >> 8 & 255, unsigned(value) & 255});
}
std::string longNumber(int value)
{
    const auto number = std::uint32_t(value);
    return byteString({255, number >> 24, number >> 16 & 255, number >> 8 & 255, number & 255});
}

/// The cipher of Type 1 fonts, with four bytes in front that are skipped.
std::string encrypted(const std::string& plain, std::uint16_t key)
{
    std::string result;
    for (const char c : std::string(4, '\0') + plain) {
        const auto cipher = std::uint8_t(std::uint8_t(c) ^ (key >> 8));
        key = std::uint16_t((cipher + key) * 52845 + 22719);
        result += char(cipher);
    }
    return result;
}

std::string type1Charstring(const RectangleGlyph& glyph)
{
    // hsbw, rmoveto, three lines, closepath, endchar
    std::string result = longNumber(0) + longNumber(glyph.advance) + byteString({13});
    if (glyph.right != glyph.left) {
        const int width = glyph.right - glyph.left;
        const int height = glyph.top - glyph.bottom;
        result += longNumber(glyph.left) + longNumber(glyph.bottom) + byteString({21});
        result += longNumber(width) + byteString({6}) + longNumber(height) + byteString({7});
        result += longNumber(-width) + byteString({6, 9});
    }
    return result + byteString({14});
}

std::string cffCharstring(const RectangleGlyph& glyph)
{
    // The width, less a nominal one of 0, comes before the first operator's numbers.
    std::string result = shortNumber(glyph.advance);
    if (glyph.right != glyph.left) {
        const int width = glyph.right - glyph.left;
        const int height = glyph.top - glyph.bottom;
        result += shortNumber(glyph.left) + shortNumber(glyph.bottom) + byteString({21});
        result += shortNumber(width) + shortNumber(height) + shortNumber(-width) + byteString({6});
    }
    return result + byteString({14});
}

std::string u16(std::size_t value)
{
    return byteString({unsigned(value >> 8 & 255), unsigned(value & 255)});
}

std::string cffIndex(const std::vector<std::string>& items)
{
    if (items.empty())
        return u16(0);
    std::string offsets = u16(1);
    std::string data;
    for (const std::string& item : items) {
        data += item;
        offsets += u16(1 + data.size());
    }
    return u16(items.size()) + byteString({2}) + offsets + data;
}

/// A number of a DICT, always of five bytes, so that offsets do not change sizes.
std::string dictNumber(std::size_t value)
{
    return byteString({29, unsigned(value >> 24), unsigned(value >> 16 & 255), unsigned(value >> 8 & 255),
        unsigned(value & 255)});
}
std::string dictEntry(std::size_t value, std::initializer_list<unsigned> key)
{
    return dictNumber(value) + byteString(key);
}

constexpr unsigned kStandardStrings = 391; ///< the font's own strings are numbered from here

/// A bare CFF font with these names, codes and charstrings, without those of the missing character.
std::string namedCFF(const std::vector<RectangleGlyph>& glyphs, std::vector<std::string> charstrings,
    const std::vector<std::string>& subroutines)
{
    const std::string start = byteString({1, 0, 4, 2}) + cffIndex({"Squares"});
    std::vector<std::string> names;
    std::string charset = byteString({0});
    std::string codes = byteString({0, unsigned(glyphs.size())});
    for (const RectangleGlyph& glyph : glyphs) {
        charset += u16(kStandardStrings + names.size());
        names.push_back(glyph.name);
        codes += byteString({glyph.code});
    }
    charstrings.insert(charstrings.begin(), cffCharstring({".notdef", 250, 0, 0, 250, 1000}));
    const std::string rest = cffIndex(names) + cffIndex(subroutines);
    const std::string privateDict = dictEntry(0, {20}) + dictEntry(0, {21});
    const std::string glyphIndex = cffIndex(charstrings);
    const std::size_t topSize = 5 * 5 + 4;
    const std::size_t first = start.size() + cffIndex({std::string(topSize, ' ')}).size() + rest.size();
    const std::size_t encodingAt = first + charset.size();
    const std::size_t glyphsAt = encodingAt + codes.size();
    const std::size_t privateAt = glyphsAt + glyphIndex.size();
    const std::string top = dictEntry(first, {15}) + dictEntry(encodingAt, {16}) + dictEntry(glyphsAt, {17})
        + dictNumber(privateDict.size()) + dictEntry(privateAt, {18});
    return start + cffIndex({top}) + rest + charset + codes + glyphIndex + privateDict;
}

} // namespace

std::string type1FontBytes(const std::vector<RectangleGlyph>& glyphs)
{
    std::string clear =
        "%!PS-AdobeFont-1.0: Squares\n11 dict begin\n/FontName /Squares def\n/FontType 1 def\n"
        "/PaintType 0 def\n/FontMatrix [0.001 0 0 0.001 0 0] readonly def\n"
        "/FontBBox {-1000 -1000 2000 2000} readonly def\n/Encoding 256 array\n"
        "0 1 255 {1 index exch /.notdef put} for\n";
    for (const RectangleGlyph& glyph : glyphs)
        if (glyph.code != 0)
            clear += "dup " + std::to_string(glyph.code) + " /" + glyph.name + " put\n";
    clear += "readonly def\ncurrentdict end\ncurrentfile eexec\n";

    std::vector<RectangleGlyph> all = glyphs;
    all.insert(all.begin(), {".notdef", 250, 0, 0, 250, 1000});
    std::string secret =
        "dup /Private 8 dict dup begin\n/RD {string currentfile exch readstring pop} def\n"
        "/ND {def} def\n/NP {put} def\n/BlueValues [] def\n/lenIV 4 def\n2 index /CharStrings "
        + std::to_string(all.size()) + " dict dup begin\n";
    for (const RectangleGlyph& glyph : all) {
        const std::string code = encrypted(type1Charstring(glyph), 4330);
        secret += "/" + glyph.name + " " + std::to_string(code.size()) + " RD " + code + " ND\n";
    }
    secret +=
        "end\nend\nreadonly put\nput\ndup /FontName get exch definefont pop\nmark currentfile closefile\n";
    std::string zeros;
    for (int line = 0; line < 8; ++line)
        zeros += std::string(64, '0') + "\n";
    return clear + encrypted(secret, 55665) + zeros + "cleartomark\n";
}

std::string cffFontBytes(const std::vector<RectangleGlyph>& glyphs)
{
    std::vector<std::string> charstrings;
    for (const RectangleGlyph& glyph : glyphs)
        charstrings.push_back(cffCharstring(glyph));
    return namedCFF(glyphs, charstrings, {});
}

std::string slowFontBytes(const std::vector<RectangleGlyph>& glyphs, int calls)
{
    constexpr int kSubroutines = 9;
    constexpr int kBias = 107; // less than the numbers of subroutines
    std::vector<std::string> subroutines(kSubroutines, byteString({11}));
    for (int index = 0; index + 1 < kSubroutines; ++index)
        for (int call = 0; call < calls; ++call)
            subroutines[std::size_t(index)].insert(0, shortNumber(index + 1 - kBias) + byteString({29}));
    return namedCFF(glyphs,
        std::vector<std::string>(glyphs.size(), shortNumber(-kBias) + byteString({29, 14})), subroutines);
}

std::string cidFontBytes(const std::vector<RectangleGlyph>& glyphs, const std::vector<std::uint16_t>& cids)
{
    const std::string start = byteString({1, 0, 4, 2}) + cffIndex({"Squares"});
    std::string charset = byteString({0});
    std::string select = byteString({0, 0}); // the missing character's, then one of each glyph
    std::vector<std::string> charstrings{cffCharstring({".notdef", 250, 0, 0, 250, 1000})};
    for (std::size_t i = 0; i < glyphs.size(); ++i) {
        charset += u16(cids[i]);
        select += byteString({0});
        charstrings.push_back(cffCharstring(glyphs[i]));
    }
    const std::string rest = cffIndex({"Adobe", "Identity"}) + cffIndex({});
    const std::string privateDict = dictEntry(0, {20}) + dictEntry(0, {21});
    const std::string glyphIndex = cffIndex(charstrings);
    const std::size_t topSize = 3 * 5 + 2 + 4 * 5 + 6;
    const std::size_t first = start.size() + cffIndex({std::string(topSize, ' ')}).size() + rest.size();
    const std::size_t selectAt = first + charset.size();
    const std::size_t glyphsAt = selectAt + select.size();
    const std::size_t privateAt = glyphsAt + glyphIndex.size();
    const std::size_t fontsAt = privateAt + privateDict.size();
    const std::string ros =
        dictNumber(kStandardStrings) + dictNumber(kStandardStrings + 1) + dictEntry(0, {12, 30});
    const std::string top = ros + dictEntry(first, {15}) + dictEntry(selectAt, {12, 37})
        + dictEntry(glyphsAt, {17}) + dictEntry(fontsAt, {12, 36});
    const std::string fonts = cffIndex({dictNumber(privateDict.size()) + dictEntry(privateAt, {18})});
    return start + cffIndex({top}) + rest + charset + select + glyphIndex + privateDict + fonts;
}
