#include "support/Numbers.h"

#include <AppKit/NSColor.h>

#include <AppKit/NSAppearance.h>

#include <gtest/gtest.h>

#include <cmath>
#include <thread>
#include <vector>

namespace {

std::vector<double> components(const NSColor* color)
{
    std::vector<double> result(color->numberOfComponents());
    color->getComponents(result.data());
    return result;
}

std::vector<double> components(const RetainPtr<NSColor>& color)
{
    return components(color.get());
}

using Components = std::vector<double>;

/// A subclass without components.
class Stripes : public NSColor { };

} // namespace

TEST(NSColor, FactoriesCreateColorsInTheSpaceTheyName)
{
    struct Case {
        RetainPtr<NSColor> color;
        NSColorSpace* space;
        Components components;
    };
    const Case cases[] = {
        {NSColor::colorWithSRGBRed(0.1, 0.2, 0.3, 0.4), NSColorSpace::sRGBColorSpace(), {0.1, 0.2, 0.3, 0.4}},
        {NSColor::colorWithRed(0.1, 0.2, 0.3, 0.4), NSColorSpace::sRGBColorSpace(), {0.1, 0.2, 0.3, 0.4}},
        {NSColor::colorWithHue(0, 1, 0.5, 0.4), NSColorSpace::sRGBColorSpace(), {0.5, 0, 0, 0.4}},
        {NSColor::colorWithWhite(0.1, 0.4), NSColorSpace::genericGamma22GrayColorSpace(), {0.1, 0.4}},
        {NSColor::colorWithGenericGamma22White(0.1, 0.4), NSColorSpace::genericGamma22GrayColorSpace(),
            {0.1, 0.4}},
        {NSColor::colorWithDeviceRed(0.1, 0.2, 0.3, 0.4), NSColorSpace::deviceRGBColorSpace(),
            {0.1, 0.2, 0.3, 0.4}},
        {NSColor::colorWithDeviceHue(0, 1, 0.5, 0.4), NSColorSpace::deviceRGBColorSpace(), {0.5, 0, 0, 0.4}},
        {NSColor::colorWithDeviceWhite(0.1, 0.4), NSColorSpace::deviceGrayColorSpace(), {0.1, 0.4}},
        {NSColor::colorWithCalibratedRed(0.1, 0.2, 0.3, 0.4), NSColorSpace::genericRGBColorSpace(),
            {0.1, 0.2, 0.3, 0.4}},
        {NSColor::colorWithCalibratedHue(0, 1, 0.5, 0.4), NSColorSpace::genericRGBColorSpace(),
            {0.5, 0, 0, 0.4}},
        {NSColor::colorWithCalibratedWhite(0.1, 0.4), NSColorSpace::genericGrayColorSpace(), {0.1, 0.4}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(c.color->type(), NSColorTypeComponentBased);
        EXPECT_EQ(c.color->colorSpace(), c.space);
        EXPECT_EQ(components(c.color), c.components) << c.color->description().UTF8String();
        EXPECT_EQ(c.color->alphaComponent(), 0.4);
    }
}

TEST(NSColor, StoresComponentsOutsideOfTheRangeInExtendedSpaces)
{
    EXPECT_EQ(components(NSColor::colorWithSRGBRed(2, -3, 1e300, 7)), (Components{2, -3, 1e300, 7}));
    EXPECT_EQ(components(NSColor::colorWithWhite(-0.5, 2)), (Components{-0.5, 2}));
    EXPECT_TRUE(std::isnan(NSColor::colorWithWhite(kNaN, 1)->whiteComponent()));
    EXPECT_EQ(CGColorGetComponents(NSColor::colorWithWhite(-0.5, 1)->CGColor())[0], -0.5);
    const CGFloat values[] = {-1, 2};
    const auto gray = NSColor::colorWithColorSpace(NSColorSpace::deviceGrayColorSpace(), values, 2);
    EXPECT_EQ(components(gray), (Components{-1, 2}));
}

TEST(NSColor, ClampsTheComponentsOfDeviceAndCalibratedColors)
{
    EXPECT_EQ(components(NSColor::colorWithDeviceRed(-1, 2, kNaN, 0.25)), (Components{0, 1, 0, 0.25}));
    EXPECT_EQ(components(NSColor::colorWithDeviceRed(0.25, -1, 2, kNaN)), (Components{0.25, 0, 1, 0}));
    EXPECT_EQ(components(NSColor::colorWithCalibratedRed(-1, 2, kNaN, 7)), (Components{0, 1, 0, 1}));
    EXPECT_EQ(components(NSColor::colorWithDeviceHue(0, 7, 0.5, 7)), (Components{0.5, 0, 0, 1}));
    EXPECT_EQ(components(NSColor::colorWithCalibratedHue(0, 1, 7, -7)), (Components{1, 0, 0, 0}));
    EXPECT_EQ(components(NSColor::colorWithDeviceWhite(-1 / 255.0, 7)), (Components{0, 1}));
    EXPECT_EQ(components(NSColor::colorWithDeviceWhite(7, -1)), (Components{1, 0}));
    EXPECT_EQ(components(NSColor::colorWithCalibratedWhite(7, kNaN)), (Components{1, 0}));
    EXPECT_EQ(components(NSColor::colorWithCalibratedWhite(kNaN, 7)), (Components{0, 1}));
}

TEST(NSColor, IsCreatedFromASpaceAndItsComponents)
{
    const double values[] = {0.1, 0.2, 0.3, 0.4, 0.5};
    const auto rgb = NSColor::colorWithColorSpace(NSColorSpace::genericRGBColorSpace(), values, 4);
    EXPECT_EQ(rgb->colorSpace(), NSColorSpace::genericRGBColorSpace());
    EXPECT_EQ(components(rgb), (Components{0.1, 0.2, 0.3, 0.4}));
    const auto gray = NSColor::colorWithColorSpace(NSColorSpace::deviceGrayColorSpace(), values, 2);
    EXPECT_EQ(components(gray), (Components{0.1, 0.2}));

    for (const NSInteger count : {-1, 0, 2, 3, 5})
        EXPECT_EQ(NSColor::colorWithColorSpace(NSColorSpace::sRGBColorSpace(), values, count), nullptr);
    EXPECT_EQ(NSColor::colorWithColorSpace(NSColorSpace::deviceGrayColorSpace(), values, 4), nullptr);
    EXPECT_EQ(NSColor::colorWithColorSpace(nullptr, values, 4), nullptr);
    EXPECT_EQ(NSColor::colorWithColorSpace(NSColorSpace::sRGBColorSpace(), nullptr, 4), nullptr);
}

TEST(NSColor, WrapsACoreGraphicsColorAndReturnsIt)
{
    for (NSColorSpace* space : {NSColorSpace::sRGBColorSpace(), NSColorSpace::deviceRGBColorSpace(),
             NSColorSpace::deviceGrayColorSpace(), NSColorSpace::genericGamma22GrayColorSpace()}) {
        const double values[] = {0.25, 0.5, 0.75, 1};
        const auto cgColor = adopt(CGColorCreate(space->CGColorSpace(), values));
        const auto color = NSColor::colorWithCGColor(cgColor);
        EXPECT_EQ(color->CGColor(), cgColor);
        EXPECT_EQ(color->colorSpace(), space);
        EXPECT_TRUE(color->isEqual(
            NSColor::colorWithColorSpace(space, values, space->numberOfColorComponents() + 1).get()));
    }
    EXPECT_EQ(NSColor::colorWithCGColor(nullptr), nullptr);
}

TEST(NSColor, CachesItsCoreGraphicsColor)
{
    const auto color = NSColor::colorWithDeviceRed(0.1, 0.2, 0.3, 0.4);
    CGColorRef cgColor = color->CGColor();
    EXPECT_EQ(color->CGColor(), cgColor);
    EXPECT_EQ(CGColorGetColorSpace(cgColor), NSColorSpace::deviceRGBColorSpace()->CGColorSpace());
    EXPECT_EQ(CGColorGetNumberOfComponents(cgColor), 4U);
    EXPECT_EQ(CGColorGetComponents(cgColor)[2], 0.3);
    EXPECT_EQ(CGColorGetAlpha(cgColor), 0.4);
}

TEST(NSColor, CreatesItsCoreGraphicsColorOnceForAllThreads)
{
    for (int round = 0; round < 100; ++round) {
        const auto color = NSColor::colorWithDeviceWhite(0.5, 1);
        CGColorRef other = nullptr;
        std::thread thread([&] { other = color->CGColor(); });
        CGColorRef own = color->CGColor();
        thread.join();
        EXPECT_EQ(own, other);
    }
}

TEST(NSColor, HasTheNamedColors)
{
    struct Case {
        NSColor* (*color)();
        Components components;
    };
    const Case cases[] = {
        {NSColor::blackColor, {0, 1}},
        {NSColor::darkGrayColor, {1.0 / 3, 1}},
        {NSColor::grayColor, {0.5, 1}},
        {NSColor::lightGrayColor, {2.0 / 3, 1}},
        {NSColor::whiteColor, {1, 1}},
        {NSColor::clearColor, {0, 0}},
        {NSColor::redColor, {1, 0, 0, 1}},
        {NSColor::greenColor, {0, 1, 0, 1}},
        {NSColor::blueColor, {0, 0, 1, 1}},
        {NSColor::cyanColor, {0, 1, 1, 1}},
        {NSColor::magentaColor, {1, 0, 1, 1}},
        {NSColor::yellowColor, {1, 1, 0, 1}},
        {NSColor::orangeColor, {1, 0.5, 0, 1}},
        {NSColor::purpleColor, {0.5, 0, 0.5, 1}},
        {NSColor::brownColor, {0.6, 0.4, 0.2, 1}},
    };
    for (const Case& c : cases) {
        const NSColor* color = c.color();
        EXPECT_EQ(components(color), c.components);
        EXPECT_EQ(color->colorSpace(),
            c.components.size() == 2 ? NSColorSpace::genericGamma22GrayColorSpace()
                                     : NSColorSpace::sRGBColorSpace());
        EXPECT_EQ(c.color(), color) << "made once";
    }
}

TEST(NSColor, LabelsAreDarkOnLightAndLightOnDark)
{
    NSColor* const label = NSColor::labelColor();
    EXPECT_EQ(label, NSColor::labelColor());
    EXPECT_EQ(label->type(), NSColorTypeCatalog);
    const auto inForce = [&](const char* appearance) {
        RetainPtr<NSColor> color;
        NSAppearance::appearanceNamed(appearance)->performAsCurrentDrawingAppearance([&] {
            color = label->colorUsingColorSpace(NSColorSpace::genericGamma22GrayColorSpace());
        });
        return components(color);
    };
    EXPECT_EQ(inForce(NSAppearanceNameAqua), (Components{0, 216 / 255.0}));
    EXPECT_EQ(inForce(NSAppearanceNameDarkAqua), (Components{1, 216 / 255.0}));
    EXPECT_EQ(inForce(NSAppearanceNameVibrantDark), (Components{1, 216 / 255.0}));
}

TEST(NSColor, ResolvesVariantsEachTimeItIsUsed)
{
    const NSColor* const label = NSColor::labelColor();
    CGColorRef light = label->CGColor();
    CGColorRef dark = nullptr;
    NSAppearance::appearanceNamed(NSAppearanceNameDarkAqua)->performAsCurrentDrawingAppearance([&] {
        dark = label->CGColor();
    });
    EXPECT_EQ(CGColorGetComponents(light)[0], 0);
    EXPECT_EQ(CGColorGetComponents(dark)[0], 1);
    EXPECT_EQ(label->CGColor(), light) << "each is made once";
    EXPECT_EQ(label->alphaComponent(), 216 / 255.0);
}

TEST(NSColor, ReturnsItselfInItsOwnSpace)
{
    const auto color = NSColor::colorWithDeviceRed(0.1, 0.2, 0.3, 0.4);
    EXPECT_EQ(color->colorUsingColorSpace(NSColorSpace::deviceRGBColorSpace()), color);
}

TEST(NSColor, ConvertsBetweenRGBSpacesExactly)
{
    NSColorSpace* const spaces[] = {NSColorSpace::sRGBColorSpace(), NSColorSpace::deviceRGBColorSpace(),
        NSColorSpace::genericRGBColorSpace()};
    const double values[] = {0.1, -0.2, 1.3, 0.4};
    for (NSColorSpace* from : spaces)
        for (NSColorSpace* to : spaces) {
            const auto color = NSColor::colorWithColorSpace(from, values, 4)->colorUsingColorSpace(to);
            EXPECT_EQ(color->colorSpace(), to);
            EXPECT_EQ(components(color), Components(std::begin(values), std::end(values)));
        }
}

TEST(NSColor, ConvertsGrayToEqualComponents)
{
    NSColorSpace* const sRGB = NSColorSpace::sRGBColorSpace();
    EXPECT_EQ(components(NSColor::colorWithDeviceWhite(0.3, 0.4)->colorUsingColorSpace(sRGB)),
        (Components{0.3, 0.3, 0.3, 0.4}));
    EXPECT_EQ(components(NSColor::whiteColor()->colorUsingColorSpace(sRGB)), (Components{1, 1, 1, 1}));
    EXPECT_EQ(components(NSColor::blackColor()->colorUsingColorSpace(sRGB)), (Components{0, 0, 0, 1}));
    EXPECT_EQ(components(NSColor::clearColor()->colorUsingColorSpace(sRGB)), (Components{0, 0, 0, 0}));
}

TEST(NSColor, ConvertsCalibratedGrayByItsGamma)
{
    // The sRGB encoding of 0.1, 0.2, 0.5, 0.8 to the power of 2.2, to four places.
    const double expected[][2] = {{0.1, 0.0728}, {0.2, 0.1863}, {0.5, 0.5039}, {0.8, 0.8048}};
    for (const auto& [white, encoded] : expected) {
        const auto color = NSColor::colorWithCalibratedWhite(white, 1);
        const auto rgb = color->colorUsingColorSpace(NSColorSpace::sRGBColorSpace());
        EXPECT_NEAR(rgb->redComponent(), encoded, 0.00005);
        EXPECT_EQ(rgb->redComponent(), rgb->blueComponent());
        const auto back = rgb->colorUsingColorSpace(NSColorSpace::genericGrayColorSpace());
        EXPECT_NEAR(back->whiteComponent(), white, 1e-12); // two powers in each direction
    }
}

TEST(NSColor, ConvertsToGrayByLuminance)
{
    // Rec. 709: red's luminance is 0.2126, which sRGB encodes as 0.498.
    const auto gray = NSColor::redColor()->colorUsingColorSpace(NSColorSpace::deviceGrayColorSpace());
    EXPECT_NEAR(gray->whiteComponent(), 0.498, 0.0005);
    EXPECT_EQ(gray->alphaComponent(), 1);
}

TEST(NSColor, ReturnsNullForANullSpace)
{
    EXPECT_EQ(NSColor::redColor()->colorUsingColorSpace(nullptr), nullptr);
}

TEST(NSColor, ChangesOnlyItsAlpha)
{
    const auto color = NSColor::colorWithDeviceRed(0.1, 0.2, 0.3, 0.4)->colorWithAlphaComponent(0.9);
    EXPECT_EQ(color->colorSpace(), NSColorSpace::deviceRGBColorSpace());
    EXPECT_EQ(components(color), (Components{0.1, 0.2, 0.3, 0.9}));
    EXPECT_EQ(components(NSColor::grayColor()->colorWithAlphaComponent(0.25)), (Components{0.5, 0.25}));
}

TEST(NSColor, ClampsAChangedAlpha)
{
    EXPECT_EQ(NSColor::redColor()->colorWithAlphaComponent(7)->alphaComponent(), 1);
    EXPECT_EQ(NSColor::redColor()->colorWithAlphaComponent(-7)->alphaComponent(), 0);
    EXPECT_EQ(NSColor::redColor()->colorWithAlphaComponent(kNaN)->alphaComponent(), 0);
    EXPECT_EQ(NSColor::labelColor()->colorWithAlphaComponent(7)->alphaComponent(), 1);
    const auto bright = NSColor::colorWithSRGBRed(2, -3, 0, 1)->colorWithAlphaComponent(0.5);
    EXPECT_EQ(components(bright), (Components{2, -3, 0, 0.5}));
}

TEST(NSColor, ChangesTheAlphaOfBothVariants)
{
    const auto faded = NSColor::labelColor()->colorWithAlphaComponent(0.25);
    EXPECT_EQ(faded->type(), NSColorTypeCatalog);
    for (const char* name : {NSAppearanceNameAqua, NSAppearanceNameDarkAqua})
        NSAppearance::appearanceNamed(name)->performAsCurrentDrawingAppearance([&] {
            EXPECT_EQ(faded->alphaComponent(), 0.25);
            EXPECT_EQ(CGColorGetComponents(faded->CGColor())[0], name == NSAppearanceNameDarkAqua ? 1 : 0);
        });
}

TEST(NSColor, BlendsInSRGB)
{
    const auto from = NSColor::colorWithSRGBRed(0, 0.5, 1, 1);
    const auto to = NSColor::colorWithDeviceRed(1, 0.5, 0, 0);
    const auto blend = from->blendedColorWithFraction(0.25, to);
    EXPECT_EQ(blend->colorSpace(), NSColorSpace::sRGBColorSpace());
    EXPECT_EQ(components(blend), (Components{0.25, 0.5, 0.75, 0.75}));
    EXPECT_EQ(components(NSColor::whiteColor()->blendedColorWithFraction(0.5, from.get())),
        (Components{0.5, 0.75, 1, 1}));
}

TEST(NSColor, BlendingByZeroOrOneReturnsOneOfTheTwo)
{
    const auto from = NSColor::colorWithWhite(0.25, 1);
    const auto to = NSColor::colorWithDeviceRed(1, 0.5, 0, 0);
    for (const double nothing : {0.0, -0.0, -7.0, kNaN})
        EXPECT_EQ(from->blendedColorWithFraction(nothing, to.get()), from) << nothing;
    for (const double all : {1.0, 7.0})
        EXPECT_EQ(from->blendedColorWithFraction(all, to.get()), to) << all;
    NSColor* const label = NSColor::labelColor();
    EXPECT_EQ(label->blendedColorWithFraction(0, to.get()), label);
    EXPECT_EQ(from->blendedColorWithFraction(1, label), label);
}

TEST(NSColor, BlendingReturnsNullForColorsWithoutComponents)
{
    const auto stripes = make<Stripes>();
    EXPECT_EQ(NSColor::redColor()->blendedColorWithFraction(0, stripes.get()), nullptr);
    EXPECT_EQ(stripes->blendedColorWithFraction(0, NSColor::redColor()), nullptr);
    EXPECT_EQ(NSColor::redColor()->blendedColorWithFraction(0.5, nullptr), nullptr);
    EXPECT_EQ(NSColor::redColor()->blendedColorWithFraction(0.5, stripes), nullptr);
    EXPECT_EQ(stripes->blendedColorWithFraction(0.5, NSColor::redColor()), nullptr);
}

TEST(NSColor, WithoutComponentsHasNeutralResults)
{
    const auto stripes = make<Stripes>();
    EXPECT_EQ(stripes->type(), NSColorTypePattern);
    EXPECT_EQ(stripes->CGColor(), nullptr);
    EXPECT_EQ(stripes->colorUsingColorSpace(NSColorSpace::sRGBColorSpace()), nullptr);
    EXPECT_EQ(stripes->colorWithAlphaComponent(0.5), nullptr);
    EXPECT_EQ(stripes->alphaComponent(), 1);
    EXPECT_TRUE(stripes->isEqual(stripes));
    EXPECT_FALSE(stripes->isEqual(make<Stripes>().get()));
    EXPECT_EQ(stripes->hash(), stripes->hash());
}

TEST(NSColor, IsEqualInTheSameSpaceWithTheSameComponents)
{
    const auto color = NSColor::colorWithSRGBRed(0.1, 0.2, 0, 0.4);
    const auto same = NSColor::colorWithSRGBRed(0.1, 0.2, -0.0, 0.4);
    EXPECT_TRUE(color->isEqual(same));
    EXPECT_EQ(color->hash(), same->hash());

    EXPECT_FALSE(color->isEqual(NSColor::colorWithSRGBRed(0.1, 0.2, 0, 0.5).get()));
    EXPECT_FALSE(color->isEqual(NSColor::colorWithDeviceRed(0.1, 0.2, 0, 0.4).get()));
    EXPECT_FALSE(color->isEqual(NSColor::colorWithCalibratedRed(0.1, 0.2, 0, 0.4).get()));
    EXPECT_FALSE(NSColor::whiteColor()->isEqual(NSColor::colorWithDeviceWhite(1, 1).get()));
    EXPECT_FALSE(color->isEqual(NSColorSpace::sRGBColorSpace()));
    EXPECT_FALSE(color->isEqual(nullptr));
}

TEST(NSColor, IsEqualWithTheSameVariants)
{
    const NSColor* const label = NSColor::labelColor();
    const auto same = label->colorWithAlphaComponent(216 / 255.0);
    EXPECT_TRUE(label->isEqual(same));
    EXPECT_EQ(label->hash(), same->hash());
    EXPECT_FALSE(label->isEqual(label->colorWithAlphaComponent(0.5).get()));

    const auto inForce = label->colorUsingColorSpace(NSColorSpace::genericGamma22GrayColorSpace());
    EXPECT_FALSE(label->isEqual(inForce));
    EXPECT_FALSE(inForce->isEqual(label));
}

TEST(NSColor, DescriptionNamesSpaceAndComponents)
{
    EXPECT_EQ(NSColor::orangeColor()->description(), "sRGB colorspace 1 0.5 0 1");
    EXPECT_EQ(NSColor::colorWithDeviceWhite(0.1, 1)->description(), "deviceGray colorspace 0.1 1");
    EXPECT_EQ(NSColor::labelColor()->description(), "Catalog color: labelColor");
}
