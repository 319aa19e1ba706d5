#include "PropertyListFuzz.h"

#include "Foundation/PropertyList.h"
#include "Require.h"

#include <Foundation/NSArray.h>
#include <Foundation/NSDictionary.h>

#include <algorithm>

namespace {

/// The number of levels of an object; one for a value.
int depthOf(const NSObject& object)
{
    int deepest = 0;
    if (const auto* array = dynamic_cast<const NSArray*>(&object)) {
        for (const auto& element : *array)
            deepest = std::max(deepest, depthOf(*element));
    } else if (const auto* dictionary = dynamic_cast<const NSDictionary*>(&object)) {
        for (const auto& [key, value] : *dictionary)
            deepest = std::max(deepest, depthOf(*value));
    }
    return 1 + deepest;
}

} // namespace

void fuzzPropertyList(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto object = readPropertyList(bytes);
    if (!object) {
        require(!readPropertyList(bytes));
        return;
    }
    require(depthOf(*object) <= kDeepestPropertyList);
    const auto xml = writePropertyList(*object);
    require(xml.has_value());
    const auto again = readPropertyList(*xml);
    require(again && again->isEqual(object) && again->hash() == object->hash());
    require(writePropertyList(*again) == xml);
    require(writePropertyList(*readPropertyList(bytes)) == xml);
    const auto copy = copyPropertyList(*object);
    require(copy && copy->isEqual(object));
}

std::vector<std::string> propertyListSeeds()
{
    const auto list = [](const std::string& content) {
        return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" + content + "</plist>";
    };
    std::string nested;
    for (int i = 0; i < 40; ++i)
        nested = "<array>" + nested + "</array>";
    return {list("<dict><key>a</key><string>x &amp; y</string><key>b</key><true/></dict>"),
        list("<array><integer>-7</integer><real>1e300</real><real>nan</real><false/>"
             "<integer>18446744073709551615</integer></array>"),
        list("<array><date>2001-01-01T00:00:00Z</date><date seconds=\"0.25\">2001-01-01T00:00:00Z</date>"
             "<data>AAEC /w==</data></array>"),
        list("<string encoding=\"utf16-base64\">AAAA2AA=</string>"), list(nested),
        "<!DOCTYPE plist [<!ENTITY a \"aaaa\"><!ENTITY b "
        "\"&a;&a;&a;\">]><plist><string>&b;&b;</string></plist>",
        list("<!-- comment --><dict><key>k</key><![CDATA[x]]><string><![CDATA[<>]]></string></dict>")};
}
