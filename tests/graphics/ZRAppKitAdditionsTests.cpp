#include "Foundation/testing/UserDefaultsFile.h"
#include "support/TemporaryFolder.h"

#include <KorvidAppKit/ZRAppKitAdditions.h>

#include <AppKit/NSColor.h>
#include <Foundation/NSBoxedString.h>
#include <Foundation/NSData.h>
#include <Foundation/NSKeyedArchiver.h>
#include <Foundation/NSUserDefaults.h>

#include <array>
#include <gtest/gtest.h>

using namespace ZRAppKitAdditions;

namespace {

using Components = std::array<double, 4>;

constexpr Components kUntouched{-7, -7, -7, -7};

/// A colour without components: it can neither be converted to sRGB nor archived.
class PatternColor : public NSColor {
public:
    PatternColor() = default;
};

Components rgba(const NSColor* color)
{
    Components result = kUntouched;
    EXPECT_TRUE(SRGBGetRed(color, &result[0], &result[1], &result[2], &result[3]));
    return result;
}

Components hsba(const NSColor* color)
{
    Components result = kUntouched;
    EXPECT_TRUE(SRGBGetHue(color, &result[0], &result[1], &result[2], &result[3]));
    return result;
}

/// Tests with the standard user defaults in a temporary file.
class ColorsInUserDefaults : public ::testing::Test {
protected:
    NSUserDefaults* const defaults = NSUserDefaults::standardUserDefaults();
    const RetainPtr<NSColor> color = NSColor::colorWithSRGBRed(0.1, 0.2, 0.3, 0.4);

private:
    TemporaryFolder _folder;
    UserDefaultsFile _file{NSString(_folder.file("defaults.plist"))};
};

} // namespace

TEST(SRGBGetRed, ReadsTheComponentsInSRGB)
{
    EXPECT_EQ(rgba(NSColor::colorWithSRGBRed(0.1, 0.2, 0.3, 0.4).get()), (Components{0.1, 0.2, 0.3, 0.4}));
    EXPECT_EQ(rgba(NSColor::colorWithDeviceWhite(0.25, 0.5).get()), (Components{0.25, 0.25, 0.25, 0.5}));
}

TEST(SRGBGetHue, ReadsHueSaturationAndBrightnessInSRGB)
{
    EXPECT_EQ(hsba(NSColor::colorWithSRGBRed(1, 0, 0, 0.5).get()), (Components{0, 1, 1, 0.5}));
    EXPECT_EQ(hsba(NSColor::colorWithSRGBRed(0, 0.5, 0.5, 1).get()), (Components{0.5, 1, 0.5, 1}));
    EXPECT_EQ(hsba(NSColor::colorWithDeviceWhite(0.25, 0.75).get()), (Components{0, 0, 0.25, 0.75}));
}

TEST(SRGBGet, EachPointerMayBeNull)
{
    const auto color = NSColor::colorWithSRGBRed(0, 0.5, 0.5, 0.25);
    EXPECT_TRUE(SRGBGetRed(color, nullptr, nullptr, nullptr, nullptr));
    EXPECT_TRUE(SRGBGetHue(color, nullptr, nullptr, nullptr, nullptr));
    for (int wanted = 0; wanted < 4; ++wanted) {
        Components red = kUntouched, hue = kUntouched;
        const auto pointer = [&](Components& to, int i) { return i == wanted ? &to[i] : nullptr; };
        EXPECT_TRUE(SRGBGetRed(color, pointer(red, 0), pointer(red, 1), pointer(red, 2), pointer(red, 3)));
        EXPECT_TRUE(SRGBGetHue(color, pointer(hue, 0), pointer(hue, 1), pointer(hue, 2), pointer(hue, 3)));
        EXPECT_EQ(red[wanted], (Components{0, 0.5, 0.5, 0.25})[wanted]);
        EXPECT_EQ(hue[wanted], (Components{0.5, 1, 0.5, 0.25})[wanted]);
    }
}

TEST(SRGBGet, AColourThatCannotBeConvertedWritesNothing)
{
    const auto pattern = make<PatternColor>();
    for (const NSColor* color :
        {static_cast<const NSColor*>(pattern), static_cast<const NSColor*>(nullptr)}) {
        Components result = kUntouched;
        EXPECT_FALSE(SRGBGetRed(color, &result[0], &result[1], &result[2], &result[3]));
        EXPECT_FALSE(SRGBGetHue(color, &result[0], &result[1], &result[2], &result[3]));
        EXPECT_EQ(result, kUntouched);
    }
}

TEST_F(ColorsInUserDefaults, AreReadAsTheyWereStored)
{
    setColor(defaults, color, "background");
    setColor(defaults, NSColor::colorWithDeviceWhite(0.3, 0.6), "foreground");
    EXPECT_TRUE(color->isEqual(colorForKey(defaults, "background").get()));
    EXPECT_TRUE(NSColor::colorWithDeviceWhite(0.3, 0.6)->isEqual(colorForKey(defaults, "foreground").get()));

    // The stored value is an archive of the colour.
    const auto data = defaults->dataForKey("background");
    ASSERT_TRUE(data);
    EXPECT_TRUE(color->isEqual(NSKeyedUnarchiver::unarchivedObjectOfClass<NSColor>(data).get()));
}

TEST_F(ColorsInUserDefaults, AreNullForAMissingKey)
{
    EXPECT_FALSE(colorForKey(defaults, "never set"));
    EXPECT_FALSE(colorForKey(defaults, nullptr));
}

TEST_F(ColorsInUserDefaults, AreNullForAValueThatIsNotAnArchivedColour)
{
    defaults->setObject(NSString("ffffff"), "text");
    EXPECT_FALSE(colorForKey(defaults, "text"));
    defaults->setDouble(1, "number");
    EXPECT_FALSE(colorForKey(defaults, "number"));
    defaults->setObject(NSData::dataWithBytes("damaged", 7), "damaged");
    EXPECT_FALSE(colorForKey(defaults, "damaged"));
    const auto archive = NSKeyedArchiver::archivedDataWithRootObject(box("a text").get(), true);
    defaults->setObject(archive, "other class");
    EXPECT_FALSE(colorForKey(defaults, "other class"));
}

TEST_F(ColorsInUserDefaults, AreRemovedByNullAndByAColourThatCannotBeArchived)
{
    setColor(defaults, color, "key");
    setColor(defaults, nullptr, "key");
    EXPECT_FALSE(defaults->objectForKey("key"));

    setColor(defaults, color, "key");
    setColor(defaults, make<PatternColor>(), "key");
    EXPECT_FALSE(defaults->objectForKey("key"));
}

TEST_F(ColorsInUserDefaults, ANullReceiverDoesNothing)
{
    setColor(defaults, color, "key");
    setColor(nullptr, nullptr, "key");
    EXPECT_TRUE(defaults->objectForKey("key"));
    EXPECT_FALSE(colorForKey(nullptr, "key"));
}
