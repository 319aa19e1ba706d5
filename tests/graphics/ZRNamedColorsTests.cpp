#include "Foundation/testing/MainBundleFolder.h"
#include "support/TemporaryFolder.h"

#include <KorvidAppKit/ZRGraphics.h>

#include <AppKit/NSAppearance.h>
#include <AppKit/NSColor.h>

#include <gtest/gtest.h>
#include <sstream>

namespace {

constexpr char kPalette[] = R"(
clear 00000000
white ffffff
black 000000
red ff0000
green 00ff00
blue 0000ff
cyan 00ffff
magenta ff00ff
yellow ffff00
zel-blue-bg 02021D
zel-blue-bg-semitrans 02031D88
zel-globe-bg-lighter 08022B
zel-blue-highlight 01DAFD
zel-orange-highlight FB7F15
zel-warning FBAC2B
zel-switch-bg-gray 27283e
zel-switch-knob-gray 595969
zel-white-faded ffffff45
zel-white-stronger ffffff99
zel-white-evenstronger ffffffcc
zel-cool-gray-mid 64656a
zel-green-highlight a9e901
zel-hairline ffffff20
zel-hairline-solid 37384c
zel-button-bg 10122a
zel-button-lit-bg 181b36
zel-mid-gray 4a4a4a
zel-menu-bg-lit 1F2037
zel-menu-fg-lit ffffffff
zel-menu-bg-line 34354A
zel-menu-bg 02031D
zel-menu-fg a1a1a1ff
zel-menu-fg-dim 666666ff
zel-status-gray ffffff55
zel-status-red f30d0d
zel-status-yellow aaaa00
zel-status-green 01e970
)";

/// A graphics object that reads `json` as the application's table, or finds no table if it is null.
RetainPtr<ZRGraphics> graphicsWithTable(const char* json)
{
    const TemporaryFolder folder;
    if (json)
        folder.write("colors.json", json);
    const MainBundleFolder bundle(NSString(folder.path().string()));
    return make<ZRGraphics>();
}

constexpr char kAccentColor[] = R"({
  "colors" : [
    { "idiom" : "universal",
      "color" : { "color-space" : "srgb",
        "components" : { "red" : "0x10", "green" : "0x20", "blue" : "0x30", "alpha" : "1.000" } } },
    { "idiom" : "universal",
      "appearances" : [ { "appearance" : "luminosity", "value" : "dark" } ],
      "color" : { "color-space" : "srgb",
        "components" : { "red" : "0xA0", "green" : "0xB0", "blue" : "0xC0", "alpha" : "0.500" } } }
  ],
  "info" : { "author" : "xcode", "version" : 1 }
})";

/// Tests with a main bundle of one named colour, "accent", with a light and a dark variant.
class NamedColors : public ::testing::Test {
protected:
    NamedColors()
        : _bundle(NSString(folder.path().string()))
    {
        folder.write("Colors.xcassets/accent.colorset/Contents.json", kAccentColor);
    }

    static CGFloat redOf(CGColorRef color) { return CGColorGetComponents(color)[0]; }
    static void drawInAppearance(const char* name, const std::function<void()>& block)
    {
        NSAppearance::appearanceNamed(name)->performAsCurrentDrawingAppearance(block);
    }

    ZRGraphics* const graphics = ZRGraphics::sharedGraphics();
    const TemporaryFolder folder; ///< the main bundle's resources

private:
    MainBundleFolder _bundle;
};

} // namespace

TEST(BuiltInColors, AreThirtySevenInOrderAndInTheirCase)
{
    std::ostringstream palette;
    palette << '\n';
    for (const auto& [name, hex] : ZRGraphics::builtInColors())
        palette << name << ' ' << hex << '\n';
    EXPECT_EQ(palette.str(), kPalette);
    EXPECT_EQ(ZRGraphics::builtInColors().size(), 37u);
}

TEST(BuiltInColors, AreFoundByName)
{
    const auto* graphics = ZRGraphics::sharedGraphics();
    for (const auto& [name, hex] : ZRGraphics::builtInColors())
        EXPECT_EQ(graphics->hexForBuiltInColorNamed(name), NSString(hex)) << name;
    EXPECT_TRUE(graphics->hexForBuiltInColorNamed("zel-unknown").isNull());
    EXPECT_TRUE(graphics->hexForBuiltInColorNamed("Zel-Warning").isNull());
    EXPECT_TRUE(graphics->hexForBuiltInColorNamed("").isNull());
    EXPECT_TRUE(graphics->hexForBuiltInColorNamed(nullptr).isNull());
}

TEST(BuiltInColors, DifferInTheGreenOfTwoDarkBlues)
{
    auto* graphics = ZRGraphics::sharedGraphics();
    const auto blue = [&](const char* name) {
        return CGColorGetComponents(graphics->CGColorFromHex(graphics->hexForBuiltInColorNamed(name)));
    };
    EXPECT_EQ(blue("zel-blue-bg")[1], 2 / 255.0);
    EXPECT_EQ(blue("zel-blue-bg-semitrans")[1], 3 / 255.0);
    EXPECT_EQ(blue("zel-menu-bg")[1], 3 / 255.0);
}

TEST(ApplicationColors, ComeFromTheJSONResource)
{
    const auto graphics = graphicsWithTable(R"({"brand": "FB7F15", "white": "eeeeee", "odd": "no colour"})");
    EXPECT_EQ(graphics->hexForApplicationColorNamed("brand"), "FB7F15");
    EXPECT_EQ(graphics->hexForApplicationColorNamed("odd"), "no colour");
    EXPECT_TRUE(graphics->hexForApplicationColorNamed("Brand").isNull());
    EXPECT_TRUE(graphics->hexForApplicationColorNamed(nullptr).isNull());
}

TEST(ApplicationColors, AreIndependentOfTheBuiltInOnes)
{
    const auto graphics = graphicsWithTable(R"({"brand": "FB7F15", "white": "eeeeee"})");
    EXPECT_EQ(graphics->hexForApplicationColorNamed("white"), "eeeeee");
    EXPECT_EQ(graphics->hexForBuiltInColorNamed("white"), "ffffff");
    EXPECT_TRUE(graphics->hexForApplicationColorNamed("red").isNull());
    EXPECT_TRUE(graphics->hexForBuiltInColorNamed("brand").isNull());
}

TEST(ApplicationColors, AreMissingWithoutAResource)
{
    const auto graphics = graphicsWithTable(nullptr);
    EXPECT_TRUE(graphics->hexForApplicationColorNamed("white").isNull());
    EXPECT_EQ(graphics->hexForBuiltInColorNamed("white"), "ffffff");
}

TEST(ApplicationColors, AreMissingInAnInvalidResource)
{
    for (const char* json : {"", "{\"white\": ", "[\"white\", \"ffffff\"]", "\"white\"", "null"})
        EXPECT_TRUE(graphicsWithTable(json)->hexForApplicationColorNamed("white").isNull()) << json;
    const auto graphics = graphicsWithTable(R"({"a": 255, "b": null, "c": ["ffffff"], "d": "ffffff"})");
    for (const char* name : {"a", "b", "c"})
        EXPECT_TRUE(graphics->hexForApplicationColorNamed(name).isNull()) << name;
    EXPECT_EQ(graphics->hexForApplicationColorNamed("d"), "ffffff");
}

TEST_F(NamedColors, ComeFromTheApplicationsCatalogue)
{
    const auto color = graphics->platformColorNamed("accent");
    ASSERT_TRUE(color);
    drawInAppearance("NSAppearanceNameAqua", [&] {
        EXPECT_EQ(redOf(color->CGColor()), 16 / 255.0);
        EXPECT_EQ(redOf(graphics->CGColorNamed("accent")), 16 / 255.0);
    });
    drawInAppearance("NSAppearanceNameDarkAqua", [&] {
        EXPECT_EQ(redOf(color->CGColor()), 160 / 255.0);
        EXPECT_EQ(redOf(graphics->CGColorNamed("accent")), 160 / 255.0);
        EXPECT_EQ(CGColorGetAlpha(graphics->CGColorNamed("accent")), 0.5);
    });
}

TEST_F(NamedColors, StayValidUntilTheNextCallWithTheSameName)
{
    drawInAppearance("NSAppearanceNameAqua", [&] {
        const CGColorRef color = graphics->CGColorNamed("accent");
        EXPECT_EQ(graphics->CGColorNamed("unknown"), nullptr);
        for (int i = 0; i < 100; ++i)
            graphics->platformColorNamed("accent");
        EXPECT_EQ(CGColorGetNumberOfComponents(color), 4u);
        EXPECT_EQ(redOf(color), 16 / 255.0);
    });
}

TEST_F(NamedColors, AreNullForUnknownNamesEvenIfTheyAreBuiltIn)
{
    for (const char* name : {"zel-warning", "white", "unknown", ""}) {
        EXPECT_FALSE(graphics->platformColorNamed(name)) << name;
        EXPECT_EQ(graphics->CGColorNamed(name), nullptr) << name;
    }
    EXPECT_FALSE(graphics->platformColorNamed(nullptr));
    EXPECT_EQ(graphics->CGColorNamed(nullptr), nullptr);
}

TEST_F(NamedColors, DoNotComeFromTheApplicationsTable)
{
    folder.write("colors.json", R"({"brand": "FB7F15", "accent": "ff0000"})");
    const auto own = make<ZRGraphics>();
    ASSERT_EQ(own->hexForApplicationColorNamed("brand"), "FB7F15");
    EXPECT_FALSE(own->platformColorNamed("brand"));
    EXPECT_EQ(own->CGColorNamed("brand"), nullptr);
    drawInAppearance("NSAppearanceNameAqua", [&] {
        EXPECT_EQ(redOf(own->platformColorNamed("accent")->CGColor()), 16 / 255.0);
        EXPECT_EQ(redOf(own->CGColorNamed("accent")), 16 / 255.0);
    });
}

TEST_F(NamedColors, AreNotChangedByForceDark)
{
    drawInAppearance("NSAppearanceNameAqua", [&] {
        const CGColorRef fromHex = graphics->CGColorFromHex("27283e");
        graphics->setForceDark(true);
        EXPECT_TRUE(graphics->forceDark());
        EXPECT_EQ(graphics->CGColorFromHex("27283e"), fromHex);
        EXPECT_EQ(redOf(graphics->CGColorNamed("accent")), 16 / 255.0);
        EXPECT_EQ(redOf(graphics->platformColorNamed("accent")->CGColor()), 16 / 255.0);
        EXPECT_EQ(redOf(graphics->platformColorFromHex("27283e")->CGColor()), 39 / 255.0);
        graphics->setForceDark(false);
        EXPECT_FALSE(graphics->forceDark());
    });
}
