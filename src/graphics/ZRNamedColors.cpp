#include <KorvidAppKit/ZRGraphics.h>

#include <AppKit/NSColor.h>
#include <Foundation/NSBoxedString.h>
#include <Foundation/NSBundle.h>
#include <Foundation/NSData.h>
#include <Foundation/NSDictionary.h>
#include <Foundation/NSJSONSerialization.h>
#include <Foundation/NSURL.h>

namespace {

/// The palette. The green of "zel-blue-bg" is 02, not 03 as in the other rows that end in "1D".
constexpr ZRNamedColor kBuiltInColors[] = {
    {"clear", "00000000"},
    {"white", "ffffff"},
    {"black", "000000"},
    {"red", "ff0000"},
    {"green", "00ff00"},
    {"blue", "0000ff"},
    {"cyan", "00ffff"},
    {"magenta", "ff00ff"},
    {"yellow", "ffff00"},
    {"zel-blue-bg", "02021D"},
    {"zel-blue-bg-semitrans", "02031D88"},
    {"zel-globe-bg-lighter", "08022B"},
    {"zel-blue-highlight", "01DAFD"},
    {"zel-orange-highlight", "FB7F15"},
    {"zel-warning", "FBAC2B"},
    {"zel-switch-bg-gray", "27283e"},
    {"zel-switch-knob-gray", "595969"},
    {"zel-white-faded", "ffffff45"},
    {"zel-white-stronger", "ffffff99"},
    {"zel-white-evenstronger", "ffffffcc"},
    {"zel-cool-gray-mid", "64656a"},
    {"zel-green-highlight", "a9e901"},
    {"zel-hairline", "ffffff20"},
    {"zel-hairline-solid", "37384c"},
    {"zel-button-bg", "10122a"},
    {"zel-button-lit-bg", "181b36"},
    {"zel-mid-gray", "4a4a4a"},
    {"zel-menu-bg-lit", "1F2037"},
    {"zel-menu-fg-lit", "ffffffff"},
    {"zel-menu-bg-line", "34354A"},
    {"zel-menu-bg", "02031D"},
    {"zel-menu-fg", "a1a1a1ff"},
    {"zel-menu-fg-dim", "666666ff"},
    {"zel-status-gray", "ffffff55"},
    {"zel-status-red", "f30d0d"},
    {"zel-status-yellow", "aaaa00"},
    {"zel-status-green", "01e970"},
};

} // namespace

std::span<const ZRNamedColor> ZRGraphics::builtInColors()
{
    return kBuiltInColors;
}

RetainPtr<NSDictionary> ZRGraphics::makeBuiltInTable()
{
    NSDictionary::Map table;
    for (const ZRNamedColor& color : kBuiltInColors)
        table.emplace(color.name, box(color.hex));
    return make<NSDictionary>(std::move(table));
}

RetainPtr<NSObject> ZRGraphics::readApplicationTable()
{
    const auto url = NSBundle::mainBundle()->URLForResource("colors", "json");
    const auto data = NSData::dataWithContentsOfURL(url);
    return data ? NSJSONSerialization::JSONObjectWithData(data, 0) : nullptr;
}

NSString ZRGraphics::hexForBuiltInColorNamed(const NSString& name) const
{
    return _colorNamesToHexLEGACY->stringForKey(name);
}

NSString ZRGraphics::hexForApplicationColorNamed(const NSString& name) const
{
    const auto* table = dynamic_cast<const NSDictionary*>(_colorNamesToHex.get());
    return table ? table->stringForKey(name) : nullptr;
}

RetainPtr<NSColor> ZRGraphics::platformColorNamed(const NSString& name)
{
    return NSColor::colorNamed(name);
}

CGColorRef ZRGraphics::CGColorNamed(const NSString& name)
{
    auto color = platformColorNamed(name);
    if (!color)
        return nullptr;
    // The platform colour owns its CG colour, so it is retained here.
    return (_namedColors[name] = std::move(color))->CGColor();
}
