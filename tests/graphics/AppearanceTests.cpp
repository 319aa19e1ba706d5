// The appearance is cached once per process, so each test of the initial state runs in a process of its own.

#include <KorvidAppKit/ZRAppKitAdditions.h>
#include <KorvidAppKit/ZRGraphics.h>

#include <AppKit/NSAppearance.h>
#include <AppKit/NSApplication.h>

#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <utility>

using ZRAppKitAdditions::effectiveAppearanceCompat;
using ZRAppKitAdditions::updateCachedEffectiveAppearance;

namespace {

constexpr int kLight = 1;
constexpr int kDark = 2;

void setAppearance(const char* name)
{
    NSApplication::sharedApplication()->setAppearance(NSAppearance::appearanceNamed(name));
}

/// Exits with code 1 and a message unless the cached appearance is the expected one.
void require(int expected, const char* moment)
{
    const int appearance = effectiveAppearanceCompat(NSApplication::sharedApplication());
    if (appearance == expected)
        return;
    std::fprintf(stderr, "%s: %d instead of %d\n", moment, appearance, expected);
    std::exit(1);
}

} // namespace

TEST(AppearanceDeathTest, IsZeroBeforeTheSharedObjectExistsAndLightOrDarkAfterwards)
{
    EXPECT_EXIT(
        {
            setAppearance("NSAppearanceNameDarkAqua");
            require(0, "before");
            ZRGraphics::sharedGraphics();
            require(kDark, "after");
            std::exit(0);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST(AppearanceDeathTest, FollowsTheApplicationOnceTheSharedObjectExists)
{
    EXPECT_EXIT(
        {
            setAppearance("NSAppearanceNameAqua");
            ZRGraphics::sharedGraphics();
            require(kLight, "at first");
            setAppearance("NSAppearanceNameDarkAqua");
            require(kDark, "changed to dark");
            setAppearance("NSAppearanceNameAqua");
            require(kLight, "changed to light");
            std::exit(0);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST(AppearanceDeathTest, StaysZeroWhenTheSharedObjectIsCreatedBeforeTheApplication)
{
    EXPECT_EXIT(
        {
            ZRGraphics::sharedGraphics();
            if (NSApp)
                std::exit(2); // sharedGraphics() created an application
            require(0, "before");
            setAppearance("NSAppearanceNameDarkAqua");
            require(0, "not observed");
            updateCachedEffectiveAppearance(NSApp);
            require(kDark, "updated");
            setAppearance("NSAppearanceNameAqua");
            require(kDark, "still not observed");
            std::exit(0);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST(AppearanceDeathTest, FollowsTheApplicationThroughAnyGraphicsObject)
{
    EXPECT_EXIT(
        {
            setAppearance("NSAppearanceNameAqua");
            const auto own = make<ZRGraphics>();
            require(kLight, "at first");
            setAppearance("NSAppearanceNameDarkAqua");
            require(kDark, "changed to dark");
            std::exit(0);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST(AppearanceDeathTest, IsTheApplicationsWhateverObjectTheObserverIsCalledWith)
{
    EXPECT_EXIT(
        {
            const auto own = make<ZRGraphics>(); // created before the application: it observes nothing
            for (const auto& [name, expected] :
                {std::pair{"NSAppearanceNameDarkAqua", kDark}, {"NSAppearanceNameAqua", kLight}}) {
                const int before = effectiveAppearanceCompat(NSApplication::sharedApplication());
                setAppearance(name);
                require(before, "nobody observes");
                own->observeValueForKeyPath("effectiveAppearance", nullptr, nullptr, nullptr);
                require(expected, name);
            }
            std::exit(0);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST(Appearance, IsDarkByNameInAnyMixOfCase)
{
    for (const char* name : {"NSAppearanceNameDarkAqua", "NSAppearanceNameVibrantDark", "dark", "DARK",
             "adArKb", "NSAppearanceNameLightContent", "lightcontent", "xLIGHTcontentx"}) {
        setAppearance(name);
        updateCachedEffectiveAppearance(NSApp);
        EXPECT_EQ(effectiveAppearanceCompat(NSApp), kDark) << name;
    }
    for (const char* name :
        {"NSAppearanceNameAqua", "NSAppearanceNameVibrantLight", "light", "light content", "dar k", "dusk"}) {
        setAppearance(name);
        updateCachedEffectiveAppearance(NSApp);
        EXPECT_EQ(effectiveAppearanceCompat(NSApp), kLight) << name;
    }
    NSApp->setAppearance(nullptr);
}

TEST(Appearance, IsCachedUntilTheNextUpdateAndZeroForNull)
{
    ZRGraphics::sharedGraphics();
    setAppearance("NSAppearanceNameDarkAqua");
    updateCachedEffectiveAppearance(NSApp);
    updateCachedEffectiveAppearance(nullptr);
    EXPECT_EQ(effectiveAppearanceCompat(NSApp), kDark);
    EXPECT_EQ(effectiveAppearanceCompat(nullptr), 0);
    NSApp->setAppearance(nullptr);
}
