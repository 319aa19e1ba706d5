#include "JSONFuzz.h"

#include "AppKit/NSColorInternal.h"
#include "Foundation/testing/MainBundleFolder.h"
#include "Require.h"
#include "support/TemporaryFolder.h"

#include <AppKit/NSAppearance.h>
#include <Foundation/NSData.h>
#include <Foundation/NSDictionary.h>
#include <Foundation/NSError.h>
#include <Foundation/NSJSONSerialization.h>
#include <KorvidAppKit/ZRGraphics.h>

#include <cmath>

namespace {

/// The object of JSON text; the second reading must give the same result.
RetainPtr<NSObject> readJSON(const NSData& data)
{
    RetainPtr<NSError> error;
    auto object = NSJSONSerialization::JSONObjectWithData(&data, NSJSONReadingFragmentsAllowed, &error);
    require(!object == (error != nullptr));
    const auto again = NSJSONSerialization::JSONObjectWithData(&data, NSJSONReadingFragmentsAllowed);
    require(object ? object->isEqual(again) && object->hash() == again->hash() : !again);
    return object;
}

void checkWriting(const NSObject& object)
{
    const auto written = [](const NSObject& source, NSUInteger options) {
        auto text = NSJSONSerialization::dataWithJSONObject(&source, options | NSJSONWritingFragmentsAllowed);
        require(text != nullptr);
        return text;
    };
    const auto compact = written(object, 0);
    for (const auto& text : {compact, written(object, NSJSONWritingPrettyPrinted)}) {
        const auto again = readJSON(*text);
        require(again && again->isEqual(&object));
        require(written(*again, 0)->isEqual(compact));
    }
}

void checkComponents(CGColorRef color)
{
    require(color != nullptr);
    const std::size_t count = CGColorGetNumberOfComponents(color);
    require(count == 2 || count == 4);
    const double* const components = CGColorGetComponents(color);
    for (std::size_t i = 0; i < count; ++i)
        require(std::isfinite(components[i]));
    require(components[count - 1] >= 0 && components[count - 1] <= 1);
}

void checkAsset(const NSData& data)
{
    const auto color = makeColorOfAsset(data, "name");
    require(!color == !makeColorOfAsset(data, "name"));
    if (!color)
        return;
    for (const char* appearance : {NSAppearanceNameAqua, NSAppearanceNameDarkAqua})
        NSAppearance::appearanceNamed(appearance)->performAsCurrentDrawingAppearance([&] {
            checkComponents(color->CGColor());
        });
}

/// Reads the JSON as the resource "colors.json".
void checkTable(const NSDictionary& table, const NSData& data)
{
    static const TemporaryFolder folder;
    static const MainBundleFolder bundle{NSString(folder.path().string())};
    require(data.writeToFile(NSString(folder.file("colors.json")), false));
    const auto graphics = make<ZRGraphics>();
    for (const auto& [name, value] : table) {
        const NSString hex = graphics->hexForApplicationColorNamed(name);
        require(hex == table.stringForKey(name));
        if (hex)
            require(graphics->CGColorFromHex(hex) != nullptr);
    }
}

} // namespace

void fuzzJSON(const std::uint8_t* data, std::size_t size)
{
    const auto bytes = NSData::dataWithBytes(data, size);
    const auto object = readJSON(*bytes);
    checkAsset(*bytes);
    if (!object)
        return;
    checkWriting(*object);
    if (const auto* table = dynamic_cast<const NSDictionary*>(object.get()))
        checkTable(*table, *bytes);
}

std::vector<std::string> jsonSeeds()
{
    const std::string light = R"({"idiom": "universal", "color": {"color-space": "srgb", "components":
        {"red": "0x1F", "green": "255", "blue": "0.500", "alpha": "1.000"}}})";
    const std::string dark =
        R"({"idiom": "mac", "appearances": [{"appearance": "luminosity", "value": "dark"}],
        "display-gamut": "sRGB", "color": {"color-space": "extended-gray", "components": {"white": 1.5}}})";
    return {R"({"colors": [)" + light + ", " + dark + R"(], "info": {"author": "x", "version": 1}})",
        R"({"accent": "ff8800", "faded": "ffffff45", "gray": "aa", "other": 7})",
        R"([1, -0.0, 1e300, 9007199254740993, -9223372036854775808, true, null, "\u00e4\ud83d\ude00\n"])",
        R"("\ud800")", "\xEF\xBB\xBF{}", std::string("[\0001\000]\000", 6), "[[[[[[[[[[]]]]]]]]]]"};
}
