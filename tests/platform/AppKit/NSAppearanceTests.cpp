#include <AppKit/NSAppearance.h>

#include "AppKit/ApplicationAppearance.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

namespace {

NSString bestOf(const char* name, std::initializer_list<NSAppearanceName> names)
{
    return NSAppearance::appearanceNamed(name)->bestMatchFromAppearancesWithNames(names);
}

/// Sets the application's appearance for its lifetime.
class ApplicationAppearanceScope {
public:
    explicit ApplicationAppearanceScope(const NSString& name)
    {
        setApplicationAppearance(NSAppearance::appearanceNamed(name).get());
    }
    ApplicationAppearanceScope(const ApplicationAppearanceScope&) = delete;
    ApplicationAppearanceScope& operator=(const ApplicationAppearanceScope&) = delete;
    ~ApplicationAppearanceScope() { setApplicationAppearance(nullptr); }
};

} // namespace

TEST(NSAppearance, ReturnsTheSameObjectForEachName)
{
    const auto dark = NSAppearance::appearanceNamed(NSAppearanceNameDarkAqua);
    EXPECT_EQ(dark->name(), "NSAppearanceNameDarkAqua");
    EXPECT_EQ(dark->description(), "NSAppearanceNameDarkAqua");
    EXPECT_EQ(NSAppearance::appearanceNamed("NSAppearanceNameDarkAqua"), dark);
    EXPECT_FALSE(dark->isEqual(NSAppearance::appearanceNamed(NSAppearanceNameAqua).get()));
}

TEST(NSAppearance, AcceptsAnyNonEmptyName)
{
    EXPECT_EQ(NSAppearance::appearanceNamed("Midnight")->name(), "Midnight");
    EXPECT_EQ(NSAppearance::appearanceNamed(""), nullptr);
    EXPECT_EQ(NSAppearance::appearanceNamed(nullptr), nullptr);
}

TEST(NSAppearance, PrefersItsOwnName)
{
    EXPECT_EQ(bestOf(NSAppearanceNameVibrantDark, {NSAppearanceNameDarkAqua, NSAppearanceNameVibrantDark}),
        NSAppearanceNameVibrantDark);
    EXPECT_EQ(bestOf("Midnight", {"Noon", "Midnight"}), "Midnight");
}

TEST(NSAppearance, ThenPrefersTheSameAppearanceWithoutHighContrast)
{
    EXPECT_EQ(bestOf(NSAppearanceNameAccessibilityHighContrastVibrantDark,
                  {NSAppearanceNameDarkAqua, NSAppearanceNameVibrantDark}),
        NSAppearanceNameVibrantDark);
    EXPECT_EQ(bestOf(NSAppearanceNameAccessibilityHighContrastVibrantLight,
                  {NSAppearanceNameAqua, NSAppearanceNameVibrantLight}),
        NSAppearanceNameVibrantLight);
}

TEST(NSAppearance, ThenPrefersThePlainLightOrDarkAppearance)
{
    const std::initializer_list<NSAppearanceName> plain = {NSAppearanceNameAqua, NSAppearanceNameDarkAqua};
    for (const char* name : {NSAppearanceNameDarkAqua, NSAppearanceNameVibrantDark,
             NSAppearanceNameAccessibilityHighContrastDarkAqua,
             NSAppearanceNameAccessibilityHighContrastVibrantDark, "sLIGHTcontentX", "myDARKlook"})
        EXPECT_EQ(bestOf(name, plain), NSAppearanceNameDarkAqua) << name;
    for (const char* name :
        {NSAppearanceNameAqua, NSAppearanceNameVibrantLight, NSAppearanceNameAccessibilityHighContrastAqua,
            NSAppearanceNameAccessibilityHighContrastVibrantLight, "Noon", "light content"})
        EXPECT_EQ(bestOf(name, plain), NSAppearanceNameAqua) << name;
}

TEST(NSAppearance, ThenMatchesAnyNameOfTheSameKind)
{
    EXPECT_EQ(bestOf(NSAppearanceNameDarkAqua, {nullptr, "Noon", "Dark 1", "Dark 2"}), "Dark 1");
    EXPECT_TRUE(bestOf(NSAppearanceNameDarkAqua, {NSAppearanceNameAqua}).isNull());
    EXPECT_TRUE(bestOf(NSAppearanceNameAqua, {NSAppearanceNameDarkAqua}).isNull());
    EXPECT_TRUE(bestOf(NSAppearanceNameAqua, {}).isNull());
}

TEST(NSAppearance, IsLightOutsideOfDrawingWithoutAnApplication)
{
    EXPECT_EQ(NSAppearance::currentDrawingAppearance()->name(), NSAppearanceNameAqua);
}

TEST(NSAppearance, IsTheApplicationsOutsideOfDrawing)
{
    const ApplicationAppearanceScope application(NSAppearanceNameDarkAqua);
    EXPECT_EQ(NSAppearance::currentDrawingAppearance()->name(), NSAppearanceNameDarkAqua);
    std::thread([] {
        EXPECT_EQ(NSAppearance::currentDrawingAppearance()->name(), NSAppearanceNameDarkAqua);
    }).join();
}

TEST(NSAppearance, IsCurrentWhileABlockRuns)
{
    const ApplicationAppearanceScope application("Midnight");
    const auto light = NSAppearance::appearanceNamed(NSAppearanceNameAqua);
    const auto dark = NSAppearance::appearanceNamed(NSAppearanceNameDarkAqua);
    int blocks = 0;
    dark->performAsCurrentDrawingAppearance([&] {
        EXPECT_EQ(NSAppearance::currentDrawingAppearance(), dark);
        light->performAsCurrentDrawingAppearance([&] {
            EXPECT_EQ(NSAppearance::currentDrawingAppearance(), light);
            ++blocks;
        });
        EXPECT_EQ(NSAppearance::currentDrawingAppearance(), dark);
        ++blocks;
    });
    EXPECT_EQ(blocks, 2);
    EXPECT_EQ(NSAppearance::currentDrawingAppearance()->name(), "Midnight");
}

TEST(NSAppearance, IsCurrentOnOneThreadOnly)
{
    NSAppearance::appearanceNamed(NSAppearanceNameDarkAqua)->performAsCurrentDrawingAppearance([] {
        std::thread([] {
            EXPECT_EQ(NSAppearance::currentDrawingAppearance()->name(), NSAppearanceNameAqua);
        }).join();
    });
}

TEST(NSAppearance, IsRestoredWhenABlockThrows)
{
    const auto dark = NSAppearance::appearanceNamed(NSAppearanceNameDarkAqua);
    EXPECT_THROW(dark->performAsCurrentDrawingAppearance([] { throw std::runtime_error("stop"); }),
        std::runtime_error);
    EXPECT_EQ(NSAppearance::currentDrawingAppearance()->name(), NSAppearanceNameAqua);
}

TEST(NSAppearance, IgnoresAnEmptyBlock)
{
    EXPECT_NO_THROW(
        NSAppearance::appearanceNamed(NSAppearanceNameAqua)->performAsCurrentDrawingAppearance(nullptr));
}
