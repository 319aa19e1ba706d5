#include "TestFont.h"

#include <algorithm>
#include <map>

namespace {

/// Numbers as fonts have them: the high byte first.
class TableBytes {
public:
    TableBytes& u8(unsigned value)
    {
        _bytes += char(value);
        return *this;
    }
    TableBytes& u16(unsigned value) { return u8(value >> 8 & 255).u8(value & 255); }
    TableBytes& u32(std::uint32_t value) { return u16(value >> 16).u16(value & 0xFFFF); }
    TableBytes& zeros(std::size_t count)
    {
        _bytes.append(count, '\0');
        return *this;
    }
    TableBytes& text(const std::string& text)
    {
        _bytes += text;
        return *this;
    }
    std::size_t size() const { return _bytes.size(); }
    operator std::string() const { return _bytes; }

private:
    std::string _bytes;
};

std::uint32_t checksum(const std::string& table)
{
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < table.size(); ++i)
        sum += std::uint32_t(static_cast<unsigned char>(table[i])) << (24 - 8 * (i % 4));
    return sum;
}

/// Padded to whole words, as all tables and glyphs are.
std::string padded(std::string table)
{
    table.resize((table.size() + 3) / 4 * 4);
    return table;
}

std::string assemble(const std::map<std::string, std::string>& tables)
{
    TableBytes directory;
    directory.u32(0x00010000).u16(unsigned(tables.size())).u16(0).u16(0).u16(0);
    TableBytes content;
    const std::size_t start = directory.size() + 16 * tables.size();
    for (const auto& [tag, table] : tables) {
        directory.text(tag).u32(checksum(table));
        directory.u32(std::uint32_t(start + content.size())).u32(std::uint32_t(table.size()));
        content.text(padded(table));
    }
    return std::string(directory) + std::string(content);
}

} // namespace

TestFont::TestFont(std::string family, TestFontStyle style)
    : _family(std::move(family))
    , _style(std::move(style))
    , _glyphs{{0, 250, {{0, 0, 250, 1000}}}}
{
}

void TestFont::add(char16_t character, std::uint16_t advance, std::vector<Rectangle> rectangles)
{
    const auto place = std::lower_bound(_glyphs.begin(), _glyphs.end(), character,
        [](const Glyph& glyph, char16_t other) { return glyph.character < other; });
    _glyphs.insert(place, {character, advance, std::move(rectangles)});
}

void TestFont::addComposed(char16_t character, std::uint16_t advance, std::vector<char16_t> parts)
{
    add(character, advance, {});
    _glyphs[indexOf(character)].parts = std::move(parts);
}

void TestFont::addColored(char16_t character, std::uint16_t advance, const std::vector<Layer>& layers)
{
    add(character, advance, {layers.front().rectangle});
    char16_t next = 0xE000;
    for (const Layer& layer : layers) {
        while (indexOf(next) < _glyphs.size())
            ++next;
        add(next, advance, {layer.rectangle});
        _glyphs[indexOf(character)].layers.push_back({next, layer.rgb});
    }
}

/// The number of glyphs when there is none of that character.
std::size_t TestFont::indexOf(char16_t character) const
{
    const auto found = std::find_if(_glyphs.begin(), _glyphs.end(),
        [character](const Glyph& glyph) { return glyph.character == character; });
    return std::size_t(found - _glyphs.begin());
}

std::string TestFont::glyphData(const Glyph& glyph) const
{
    if (!glyph.parts.empty()) {
        TableBytes data;
        data.u16(0xFFFF).u16(0).u16(0).u16(1000).u16(1000);
        for (std::size_t i = 0; i < glyph.parts.size(); ++i) {
            const unsigned isLast = i + 1 == glyph.parts.size();
            data.u16(isLast ? 0x03 : 0x23).u16(unsigned(indexOf(glyph.parts[i]))).u16(0).u16(0);
        }
        return padded(data);
    }
    if (glyph.rectangles.empty())
        return "";
    Rectangle box = glyph.rectangles.front();
    for (const Rectangle& rect : glyph.rectangles)
        box = {std::min(box.left, rect.left), std::min(box.bottom, rect.bottom),
            std::max(box.right, rect.right), std::max(box.top, rect.top)};
    const std::size_t count = glyph.rectangles.size();
    TableBytes data;
    data.u16(unsigned(count)).u16(box.left).u16(box.bottom).u16(box.right).u16(box.top);
    for (std::size_t i = 0; i < count; ++i)
        data.u16(unsigned(4 * i + 3));
    data.u16(0); // no instructions
    for (std::size_t i = 0; i < 4 * count; ++i)
        data.u8(1); // on the curve; both coordinates as differences of two bytes
    TableBytes ys;
    int x = 0;
    int y = 0;
    for (const Rectangle& rect : glyph.rectangles) { // clockwise, as filled outlines are
        const int corners[4][2] = {{rect.left, rect.bottom}, {rect.left, rect.top}, {rect.right, rect.top},
            {rect.right, rect.bottom}};
        for (const auto& corner : corners) {
            data.u16(unsigned(corner[0] - x));
            ys.u16(unsigned(corner[1] - y));
            x = corner[0];
            y = corner[1];
        }
    }
    return padded(data.text(ys));
}

std::string TestFont::makeCmap() const
{
    // Format 4: one segment per character, and the one that ends the table.
    const auto segments = unsigned(_glyphs.size());
    TableBytes ends;
    TableBytes starts;
    TableBytes deltas;
    for (std::size_t i = 1; i < _glyphs.size(); ++i) {
        const unsigned code = _map.firstCode + _glyphs[i].character;
        ends.u16(code);
        starts.u16(code);
        deltas.u16(unsigned(i) - code);
    }
    ends.u16(0xFFFF);
    starts.u16(0xFFFF);
    deltas.u16(1);
    TableBytes table;
    table.u16(0).u16(1).u16(_map.platform).u16(_map.encoding).u32(12);
    table.u16(4).u16(16 + 8 * segments).u16(0).u16(2 * segments).u16(0).u16(0).u16(0);
    return table.text(ends).u16(0).text(starts).text(deltas).zeros(2 * segments);
}

std::string TestFont::makePost() const
{
    if (_glyphNames.empty())
        return TableBytes().u32(0x00030000).zeros(28);
    constexpr unsigned kNamesOfTheFormat = 258; // which come before the font's own
    TableBytes indexes;
    TableBytes names;
    for (unsigned i = 0; i < _glyphNames.size(); ++i) {
        indexes.u16(kNamesOfTheFormat + i);
        names.u8(unsigned(_glyphNames[i].size())).text(_glyphNames[i]);
    }
    return TableBytes().u32(0x00020000).zeros(28).u16(unsigned(_glyphNames.size())).text(indexes).text(names);
}

std::string TestFont::makeLayers() const
{
    TableBytes bases;
    TableBytes layers;
    unsigned baseCount = 0;
    unsigned layerCount = 0;
    unsigned colorCount = 0;
    for (std::size_t i = 0; i < _glyphs.size(); ++i) {
        if (_glyphs[i].layers.empty())
            continue;
        ++baseCount;
        bases.u16(unsigned(i)).u16(layerCount).u16(unsigned(_glyphs[i].layers.size()));
        for (const ColoredLayer& layer : _glyphs[i].layers) {
            ++layerCount;
            layers.u16(unsigned(indexOf(layer.character))).u16(layer.rgb ? colorCount++ : 0xFFFF);
        }
    }
    TableBytes table;
    table.u16(0).u16(baseCount).u32(14).u32(14 + 6 * baseCount).u16(layerCount);
    return table.text(bases).text(layers);
}

std::string TestFont::makePalette() const
{
    TableBytes colors;
    for (const Glyph& glyph : _glyphs) {
        for (const ColoredLayer& layer : glyph.layers) {
            if (layer.rgb)
                colors.u8(*layer.rgb & 255).u8(*layer.rgb >> 8 & 255).u8(*layer.rgb >> 16 & 255).u8(255);
        }
    }
    const auto count = unsigned(colors.size() / 4);
    return TableBytes().u16(0).u16(count).u16(1).u16(count).u32(14).u16(0).text(colors);
}

std::string TestFont::nameWithStyle(char separator) const
{
    return _style.name == "Regular" ? _family : _family + separator + _style.name;
}

std::string TestFont::makeName() const
{
    std::string postScriptName = nameWithStyle('-');
    std::erase(postScriptName, ' ');
    const std::string texts[][2] = {
        {"1", _family}, {"2", _style.name}, {"4", nameWithStyle(' ')}, {"6", postScriptName}};
    TableBytes records;
    TableBytes strings;
    for (const auto& [id, text] : texts) {
        records.u16(3).u16(1).u16(0x409).u16(unsigned(std::stoi(id)));
        records.u16(unsigned(2 * text.size())).u16(unsigned(strings.size()));
        for (const char c : text)
            strings.u16(static_cast<unsigned char>(c));
    }
    return TableBytes().u16(0).u16(4).u16(6 + 4 * 12).text(records).text(strings);
}

std::string TestFont::makeHead() const
{
    TableBytes head;
    head.u32(0x00010000).u32(0x00010000).u32(0).u32(0x5F0F3CF5).u16(3).u16(1000).zeros(16);
    head.u16(0)
        .u16(unsigned(-1000))
        .u16(2000)
        .u16(2000)
        .u16((_style.weight >= 700 ? 1 : 0) + (_style.isItalic ? 2 : 0))
        .u16(6)
        .u16(2);
    return head.u16(1).u16(0); // long offsets of glyphs
}

std::string TestFont::makeOS2() const
{
    TableBytes table;
    table.u16(4).u16(500).u16(_style.weight).u16(_style.widthClass).u16(0);
    table.zeros(20).u16(0).zeros(10).zeros(16);
    const unsigned selection = (_style.weight >= 700 ? 0x20 : 0) + (_style.isItalic ? 1 : 0);
    table.text("TEST").u16(selection ? selection : 0x40).u16(0x20).u16(0xFFFF);
    table.u16(800).u16(unsigned(-200)).u16(100).u16(800).u16(200).zeros(8);
    return table.u16(500).u16(700).u16(0).u16(32).u16(1);
}

std::string TestFont::bytes() const
{
    const auto count = unsigned(_glyphs.size());
    TableBytes glyf;
    TableBytes loca;
    TableBytes hmtx;
    for (const Glyph& glyph : _glyphs) {
        const int left = glyph.rectangles.empty() ? 0 : glyph.rectangles.front().left;
        loca.u32(std::uint32_t(glyf.size()));
        hmtx.u16(glyph.advance).u16(unsigned(left));
        glyf.text(glyphData(glyph));
    }
    loca.u32(std::uint32_t(glyf.size()));

    TableBytes hhea;
    hhea.u32(0x00010000).u16(800).u16(unsigned(-200)).u16(100).u16(2000).u16(0).u16(0).u16(2000);
    hhea.u16(1).zeros(14).u16(count);
    TableBytes maxp;
    maxp.u32(0x00010000).u16(count).u16(64).u16(16).zeros(4).u16(2).zeros(16);
    std::map<std::string, std::string> tables{{"OS/2", makeOS2()}, {"cmap", makeCmap()}, {"glyf", glyf},
        {"head", makeHead()}, {"hhea", hhea}, {"hmtx", hmtx}, {"loca", loca}, {"maxp", maxp},
        {"name", makeName()}, {"post", makePost()}};
    const bool hasLayers =
        std::any_of(_glyphs.begin(), _glyphs.end(), [](const Glyph& glyph) { return !glyph.layers.empty(); });
    if (hasLayers) {
        tables.emplace("COLR", makeLayers());
        tables.emplace("CPAL", makePalette());
    }
    return assemble(tables);
}
