#include <AppKit/NSColor.h>

#include <AppKit/NSAppearance.h>

#include "Foundation/testing/MainBundleFolder.h"

#include <support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Components = std::vector<double>;

/// A bundle whose resources contain one colour catalogue.
class NSColorCatalog : public testing::Test {
protected:
    /// Writes the file of one colour.
    void write(const std::string& name, const std::string& contents)
    {
        _folder.write("Colors.xcassets/" + name + ".colorset/Contents.json", contents);
    }

    /// The colour of a new file with these entries.
    RetainPtr<NSColor> colorOf(const std::string& entries)
    {
        const std::string name = "color" + std::to_string(++_count);
        write(name, R"({"info": {"version": 1, "author": "test"}, "colors": [)" + entries + "]}");
        return NSColor::colorNamed(NSString(name));
    }

    /// The components in the light appearance of a colour with one entry; empty if it is null.
    Components componentsOf(const std::string& space, const std::string& components)
    {
        return inForce(colorOf(entry(space, components)), NSAppearanceNameAqua);
    }

    static std::string entry(
        const std::string& space, const std::string& components, const std::string& more = "")
    {
        return R"({"idiom": "universal", )" + more + R"("color": {"color-space": ")" + space
            + R"(", "components": {)" + components + "}}}";
    }

    static std::string white(const std::string& value, const std::string& more = "")
    {
        return entry("gray-gamma-22", R"("white": ")" + value + "\"", more);
    }

    static std::string luminosity(const std::string& value)
    {
        return R"("appearances": [{"appearance": "luminosity", "value": ")" + value + R"("}], )";
    }

    static Components inForce(const RetainPtr<NSColor>& color, const char* appearance)
    {
        if (!color)
            return {};
        Components result;
        NSAppearance::appearanceNamed(appearance)->performAsCurrentDrawingAppearance([&] {
            CGColorRef cgColor = color->CGColor();
            const double* components = CGColorGetComponents(cgColor);
            result.assign(components, components + CGColorGetNumberOfComponents(cgColor));
        });
        return result;
    }

    const TemporaryFolder _folder;
    const MainBundleFolder _bundle{NSString(_folder.path().string())};
    int _count = 0;
};

} // namespace

TEST_F(NSColorCatalog, HasAVariantForEachAppearance)
{
    write("Accent",
        R"({"colors": [
            {"idiom": "universal",
             "color": {"color-space": "srgb", "components":
                {"red": "0xFF", "green": "128", "blue": "0.250", "alpha": "0.500"}}},
            {"idiom": "universal", "appearances": [{"appearance": "luminosity", "value": "dark"}],
             "color": {"color-space": "gray-gamma-22", "components": {"white": "0.750", "alpha": "1.000"}}}],
           "info": {"author": "xcode", "version": 1}})");
    const auto color = NSColor::colorNamed("Accent");
    ASSERT_NE(color, nullptr);
    EXPECT_EQ(color->type(), NSColorTypeCatalog);
    EXPECT_EQ(color->description(), "Catalog color: Accent");
    EXPECT_EQ(inForce(color, NSAppearanceNameAqua), (Components{1, 128 / 255.0, 0.25, 0.5}));
    EXPECT_EQ(inForce(color, NSAppearanceNameDarkAqua), (Components{0.75, 1}));
    EXPECT_EQ(inForce(color, NSAppearanceNameAccessibilityHighContrastDarkAqua), (Components{0.75, 1}));
    EXPECT_EQ(color->alphaComponent(), 0.5);
}

TEST_F(NSColorCatalog, CachesColors)
{
    write("Accent", R"({"colors": [)" + white("0.5") + "]}");
    const auto color = NSColor::colorNamed("Accent");
    EXPECT_EQ(NSColor::colorNamed("Accent"), color);
}

TEST_F(NSColorCatalog, ReturnsNullForOtherNames)
{
    write("Accent", R"({"colors": [)" + white("0.5") + "]}");
    for (const char* name : {"accent", "zel-warning", "", "Accent.colorset", "../Accent", "Acc\nent"})
        EXPECT_EQ(NSColor::colorNamed(name), nullptr) << name;
    EXPECT_EQ(NSColor::colorNamed(nullptr), nullptr);
    EXPECT_EQ(NSColor::colorNamed(NSString(std::string_view("Accent\0", 7))), nullptr);
}

TEST_F(NSColorCatalog, MayHaveFolders)
{
    write("Brand/Accent", R"({"colors": [)" + white("0.5") + "]}");
    EXPECT_NE(NSColor::colorNamed("Brand/Accent"), nullptr);
    EXPECT_EQ(NSColor::colorNamed("Accent"), nullptr);
}

TEST(NSColorCatalogOfNoBundle, IsEmpty)
{
    const MainBundleFolder bundle(nullptr);
    EXPECT_EQ(NSColor::colorNamed("Accent"), nullptr);
}

TEST_F(NSColorCatalog, ParsesEveryNotation)
{
    const auto white = [&](const char* value) {
        const Components gray = componentsOf("gray-gamma-22", std::string(R"("white": )") + value);
        return gray.empty() ? -1 : gray[0];
    };
    EXPECT_EQ(white(R"("0x33")"), 0.2);
    EXPECT_EQ(white(R"("0Xff")"), 1);
    EXPECT_EQ(white(R"("0x0")"), 0);
    EXPECT_EQ(white(R"("51")"), 0.2);
    EXPECT_EQ(white(R"("1")"), 1 / 255.0);
    EXPECT_EQ(white(R"("255")"), 1);
    EXPECT_EQ(white(R"("1.0")"), 1);
    EXPECT_EQ(white(R"(".125")"), 0.125);
    EXPECT_EQ(white("0.125"), 0.125);
    EXPECT_EQ(white("1"), 1);
}

TEST_F(NSColorCatalog, ParsesEveryNotationOfAlpha)
{
    const auto alpha = [&](const char* more) {
        const Components gray = componentsOf("gray-gamma-22", std::string(R"("white": "0")") + more);
        return gray.empty() ? -1 : gray[1];
    };
    EXPECT_EQ(alpha(""), 1);
    EXPECT_EQ(alpha(R"(, "alpha": "0.25")"), 0.25);
    EXPECT_EQ(alpha(R"(, "alpha": "1")"), 1);
    EXPECT_EQ(alpha(R"(, "alpha": "0")"), 0);
    EXPECT_EQ(alpha(R"(, "alpha": "0x33")"), 0.2);
    EXPECT_EQ(alpha(R"(, "alpha": 0.5)"), 0.5);
    EXPECT_EQ(alpha(R"(, "alpha": "51")"), -1);
    EXPECT_EQ(alpha(R"(, "alpha": null)"), -1);
}

TEST_F(NSColorCatalog, ReturnsNullForInvalidComponents)
{
    for (const char* value :
        {R"("")", R"("x")", R"("0x")", R"("0x100")", R"("0xG0")", R"("256")", R"("-1")", R"("1.5")",
            R"("-0.5")", R"(" 1.0")", R"("1.0 ")", R"("1,0")", R"("1.0e0")", R"("+1.0")", R"("nan.")",
            R"("1.0.0")", R"("99999999999999999999")", "2", "-1", "null", "true", "false", "[]", "{}"})
        EXPECT_EQ(componentsOf("gray-gamma-22", std::string(R"("white": )") + value), Components()) << value;
    EXPECT_EQ(componentsOf("gray-gamma-22", ""), Components());
    EXPECT_EQ(componentsOf("srgb", R"("red": "1.0", "green": "1.0")"), Components());
    EXPECT_EQ(componentsOf("srgb", R"("white": "1.0")"), Components());
}

TEST_F(NSColorCatalog, SupportsSRGBAndGray)
{
    const char* const rgb = R"("red": "1.0", "green": "0.5", "blue": "0.0")";
    EXPECT_EQ(componentsOf("srgb", rgb), (Components{1, 0.5, 0, 1}));
    EXPECT_EQ(componentsOf("extended-srgb", R"("red": "1.5", "green": "-0.5", "blue": "0.0")"),
        (Components{1.5, -0.5, 0, 1}));
    EXPECT_EQ(componentsOf("extended-gray", R"("white": "1.5")"), (Components{1.5, 1}));
    EXPECT_EQ(componentsOf("extended-gray", R"("white": "1.5", "alpha": "1.5")"), Components());
    EXPECT_EQ(componentsOf("display-p3", rgb), Components());
    EXPECT_EQ(componentsOf("", rgb), Components());

    const auto color = colorOf(entry("srgb", rgb));
    EXPECT_EQ(color->colorUsingColorSpace(NSColorSpace::sRGBColorSpace())->greenComponent(), 0.5);
}

TEST_F(NSColorCatalog, FallsBackToTheEntryForAnyAppearance)
{
    const auto values = [&](const RetainPtr<NSColor>& color) {
        const Components light = inForce(color, NSAppearanceNameAqua);
        const Components dark = inForce(color, NSAppearanceNameDarkAqua);
        return light.empty() ? Components() : Components{light[0], dark[0]};
    };
    const std::string any = white("0.5");
    const std::string light = white("1.0", luminosity("light"));
    const std::string dark = white("0.0", luminosity("dark"));
    EXPECT_EQ(values(colorOf(any)), (Components{0.5, 0.5}));
    EXPECT_EQ(values(colorOf(dark + "," + any)), (Components{0.5, 0}));
    EXPECT_EQ(values(colorOf(any + "," + light)), (Components{1, 0.5}));
    EXPECT_EQ(values(colorOf(any + "," + light + "," + dark)), (Components{1, 0}));
    EXPECT_EQ(values(colorOf(light + "," + dark)), (Components{1, 0}));
    EXPECT_EQ(values(colorOf(light)), Components());
    EXPECT_EQ(values(colorOf(dark)), Components());
    EXPECT_EQ(values(colorOf("")), Components());
}

TEST_F(NSColorCatalog, IgnoresEntriesForOtherDevicesAndAppearances)
{
    const std::string any = white("0.5");
    const auto value = [&](const std::string& entries) {
        const Components light = inForce(colorOf(entries), NSAppearanceNameAqua);
        return light.empty() ? -1 : light[0];
    };
    for (const char* other : {R"("idiom": "iphone", )", R"("display-gamut": "display-P3", )",
             R"("appearances": [{"appearance": "contrast", "value": "high"}], )",
             R"("appearances": [{"appearance": "luminosity", "value": "light"},
                                {"appearance": "contrast", "value": "high"}], )",
             R"("appearances": [{"appearance": "luminosity", "value": "tinted"}], )",
             R"("appearances": ["luminosity"], )"}) {
        std::string entry = std::string("{") + other
            + R"("color": {"color-space": "gray-gamma-22", "components": {"white": "1.0"}}})";
        EXPECT_EQ(value(entry), -1) << other;
        entry.append(",").append(any);
        EXPECT_EQ(value(entry), 0.5) << other;
    }
    EXPECT_EQ(value(R"({"idiom": "universal"},)" + any), 0.5) << "without a colour";
    EXPECT_EQ(value(white("1.0", R"("display-gamut": "sRGB", )")), 1);
}

TEST_F(NSColorCatalog, PrefersEntriesForTheDesktopThenTheFirst)
{
    const auto entry = [](const char* idiom, const char* white) {
        return std::string(idiom) + R"("color": {"color-space": "gray-gamma-22", "components": {"white": ")"
            + white + "\"}}}";
    };
    const std::string mac = entry(R"({"idiom": "mac", )", "0.25");
    const std::string otherMac = entry(R"({"idiom": "mac", )", "0.75");
    const std::string universal = entry(R"({"idiom": "universal", )", "0.5");
    const std::string none = entry("{", "0.125");
    const auto value = [&](const std::string& entries) {
        return inForce(colorOf(entries), NSAppearanceNameAqua)[0];
    };
    EXPECT_EQ(value(universal + "," + mac), 0.25);
    EXPECT_EQ(value(mac + "," + universal), 0.25);
    EXPECT_EQ(value(mac + "," + otherMac), 0.25);
    EXPECT_EQ(value(none + "," + universal), 0.125);
    EXPECT_EQ(value(universal + "," + none), 0.5);
}

TEST_F(NSColorCatalog, ReturnsNullForInvalidFiles)
{
    int count = 0;
    for (const char* contents : {"", "{", "[]", "{}", "null", R"({"colors": {}})", R"({"colors": [1]})",
             R"({"colors": []})", R"({"colors": [{"color": 1}]})", R"({"colors": [{"color": {}}]})",
             R"({"colors": [{"color": {"color-space": "srgb", "components": 1}}]})",
             R"({"colors": [{"color": {"platform": "osx", "reference": "labelColor"}}]})"}) {
        const std::string name = "damaged" + std::to_string(++count);
        write(name, contents);
        EXPECT_EQ(NSColor::colorNamed(NSString(name)), nullptr) << contents;
    }
    EXPECT_EQ(colorOf(white("0.5") + "," + white("nonsense", luminosity("dark"))), nullptr)
        << "a good entry beside a bad one";
}

TEST_F(NSColorCatalog, EqualsOnlyAColorOfTheSameNameAndVariants)
{
    const std::string contents = R"({"colors": [)" + white("0.5") + "]}";
    write("Accent", contents);
    write("Other", contents);
    const auto color = NSColor::colorNamed("Accent");
    EXPECT_FALSE(color->isEqual(NSColor::colorNamed("Other").get()));
    EXPECT_TRUE(color->isEqual(color->colorWithAlphaComponent(1).get()));
}
