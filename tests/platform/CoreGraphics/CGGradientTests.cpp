#include "Gradients.h"
#include "support/Canvas.h"
#include "support/Numbers.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

RetainPtr<CGColorSpace> gradientSpace()
{
    return adopt(CGColorSpaceCreateDeviceRGB());
}

} // namespace

TEST(CGGradient, SpreadsColoursEvenlyWithoutLocations)
{
    const Canvas canvas = drawnAlong(gradientOf({{1, 0, 0, 1}, {0, 1, 0, 1}, {0, 0, 1, 1}}).get());
    EXPECT_TRUE(isAbout(canvas.pixel(0, 0), rgba(252, 3, 0, 255)));    // at 0.005: 0.99 x 255, 0.01 x 255
    EXPECT_TRUE(isAbout(canvas.pixel(24, 0), rgba(130, 125, 0, 255))); // at 0.245: 0.51 x 255, 0.49 x 255
    EXPECT_TRUE(isAbout(canvas.pixel(75, 0), rgba(0, 125, 130, 255))); // at 0.755
    EXPECT_TRUE(isAbout(canvas.pixel(99, 0), rgba(0, 3, 252, 255)));
}

TEST(CGGradient, ExtendsTheOuterColoursBeyondTheOutermostLocations)
{
    const Canvas canvas = drawnAlong(gradientOf({kRedColor, kBlueColor}, {0.2, 0.8}).get());
    EXPECT_EQ(canvas.pixel(0, 0), kRed);
    EXPECT_EQ(canvas.pixel(19, 0), kRed);
    EXPECT_EQ(canvas.pixel(80, 0), kBlue);
    EXPECT_EQ(canvas.pixel(99, 0), kBlue);
}

TEST(CGGradient, SortsLocations)
{
    const Canvas sorted = drawnAlong(gradientOf({kRedColor, {0, 1, 0, 1}, kBlueColor}, {0, 0.3, 1}).get());
    const Canvas given = drawnAlong(gradientOf({kBlueColor, kRedColor, {0, 1, 0, 1}}, {1, 0, 0.3}).get());
    for (int x = 0; x < 100; ++x)
        EXPECT_EQ(given.pixel(x, 0), sorted.pixel(x, 0));
    EXPECT_TRUE(isAbout(given.pixel(29, 0), rgba(4, 251, 0, 255))); // at 0.295: 0.005 / 0.3 x 255 is 4.25
}

TEST(CGGradient, ClampsLocations)
{
    const Canvas canvas = drawnAlong(gradientOf({kRedColor, kBlueColor}, {-kInfinity, 7}).get());
    const Canvas plain = drawnAlong(gradientOf({kRedColor, kBlueColor}, {0, 1}).get());
    for (int x = 0; x < 100; ++x)
        EXPECT_EQ(canvas.pixel(x, 0), plain.pixel(x, 0));
}

TEST(CGGradient, IgnoresColoursWhoseLocationIsNaN)
{
    const Canvas canvas = drawnAlong(gradientOf({kRedColor, {0, 1, 0, 1}, kBlueColor}, {0, kNaN, 1}).get());
    EXPECT_TRUE(isAbout(canvas.pixel(49, 0), rgba(129, 0, 126, 255))); // at 0.495: 128.775, 126.225
    EXPECT_EQ(gradientOf({kRedColor}, {kNaN}), nullptr);
}

TEST(CGGradient, JumpsFromTheFirstToTheLastColourOfALocation)
{
    const Canvas canvas = drawnAlong(
        gradientOf({kRedColor, kRedColor, {0, 1, 0, 1}, kBlueColor, kBlueColor}, {0, 0.37, 0.37, 0.37, 1})
            .get());
    EXPECT_EQ(canvas.pixel(36, 0), kRed);
    EXPECT_EQ(canvas.pixel(37, 0), kBlue);
}

// However steep: pixels between two close locations have the colour of their own centre.
TEST(CGGradient, IsExactOnSteepSlopes)
{
    const Canvas canvas = drawnAlong(gradientOf({kRedColor, kBlueColor}, {0.50, 0.51}).get());
    EXPECT_EQ(canvas.pixel(49, 0), kRed);
    EXPECT_TRUE(isAbout(canvas.pixel(50, 0), rgba(128, 0, 128, 255)));
    EXPECT_EQ(canvas.pixel(51, 0), kBlue);
}

TEST(CGGradient, IsUniformWithASingleColour)
{
    for (const std::vector<CGFloat>& locations : {std::vector<CGFloat>{}, std::vector<CGFloat>{0.7}}) {
        const Canvas canvas = drawnAlong(gradientOf({{0.2, 0.4, 0.6, 1}}, locations).get());
        EXPECT_EQ(canvas.pixel(0, 0), rgba(51, 102, 153, 255));
        EXPECT_EQ(canvas.pixel(99, 0), rgba(51, 102, 153, 255));
    }
}

TEST(CGGradient, InterpolatesStraightComponents)
{
    const Canvas canvas = drawnAlong(gradientOf({{1, 0, 0, 0}, kBlueColor}).get());
    // In the middle (0.5, 0, 0.5) with alpha 0.5. Premultiplied colours would have no red.
    EXPECT_TRUE(isAbout(canvas.pixel(50, 0), rgba(64, 0, 65, 129))); // at 0.505
}

TEST(CGGradient, ClampsComponentsBeforeInterpolating)
{
    const Canvas canvas = drawnAlong(gradientOf({{3, kNaN, -1, 1}, {0, 0, 1, kInfinity}}).get());
    EXPECT_TRUE(isAbout(canvas.pixel(50, 0), rgba(126, 0, 129, 255))); // at 0.505
}

TEST(CGGradient, InterpolatesInItsOwnSpace)
{
    const CGFloat grays[] = {0, 1, 1, 1};
    const auto deviceGray = adopt(CGColorSpaceCreateDeviceGray());
    const Canvas device =
        drawnAlong(adopt(CGGradientCreateWithColorComponents(deviceGray, grays, nullptr, 2)).get());
    EXPECT_TRUE(isAbout(device.pixel(50, 0), rgba(129, 129, 129, 255))); // at 0.505

    const auto genericGray = adopt(CGColorSpaceCreateWithName(kCGColorSpaceGenericGrayGamma2_2));
    const Canvas generic =
        drawnAlong(adopt(CGGradientCreateWithColorComponents(genericGray, grays, nullptr, 2)).get());
    // 0.195 ^ 2.2 is a light of 0.02743, 0.18098 as sRGB.
    EXPECT_TRUE(isAbout(generic.pixel(19, 0), rgba(46, 46, 46, 255)));
}

TEST(CGGradient, ConvertsColoursToItsSpace)
{
    const auto red = adopt(CGColorCreateSRGB(1, 0, 0, 1));
    const auto white = adopt(CGColorCreateSRGB(1, 1, 1, 1));
    const CGColorRef colors[] = {red.get(), nullptr, white.get()};
    const CGFloat locations[] = {0, 0.5, 1};

    const auto space = gradientSpace();
    const Canvas inRGB = drawnAlong(adopt(CGGradientCreateWithColors(space, colors, 3, locations)).get());
    EXPECT_TRUE(isAbout(inRGB.pixel(50, 0), rgba(255, 129, 129, 255))); // the null colour is ignored
    const Canvas inNone = drawnAlong(adopt(CGGradientCreateWithColors(nullptr, colors, 3, locations)).get());
    EXPECT_TRUE(isAbout(inNone.pixel(50, 0), rgba(255, 129, 129, 255)));

    const auto gray = adopt(CGColorSpaceCreateDeviceGray());
    const Canvas inGray = drawnAlong(adopt(CGGradientCreateWithColors(gray, colors, 3, locations)).get());
    EXPECT_TRUE(isAbout(inGray.pixel(0, 0), rgba(128, 128, 128, 255))); // red's luminance is 0.498 as sRGB
}

TEST(CGGradient, IsNullWithoutColoursOrASpaceForThem)
{
    const CGFloat components[] = {1, 0, 0, 1};
    const auto space = gradientSpace();
    const auto pattern = adopt(CGColorSpaceCreatePattern(space));
    EXPECT_EQ(CGGradientCreateWithColorComponents(space, components, nullptr, 0), nullptr);
    EXPECT_EQ(CGGradientCreateWithColorComponents(space, nullptr, nullptr, 1), nullptr);
    EXPECT_EQ(CGGradientCreateWithColorComponents(nullptr, components, nullptr, 1), nullptr);
    EXPECT_EQ(CGGradientCreateWithColorComponents(pattern, components, nullptr, 1), nullptr);
    const CGColorRef none[] = {nullptr};
    EXPECT_EQ(CGGradientCreateWithColors(space, none, 1, nullptr), nullptr);
    EXPECT_EQ(CGGradientCreateWithColors(space, none, 0, nullptr), nullptr);
    EXPECT_EQ(CGGradientCreateWithColors(space, nullptr, 1, nullptr), nullptr);
    const auto red = adopt(CGColorCreateSRGB(1, 0, 0, 1));
    const CGColorRef one[] = {red.get()};
    EXPECT_EQ(CGGradientCreateWithColors(pattern, one, 1, nullptr), nullptr);
}

TEST(CGGradient, IsReferenceCounted)
{
    EXPECT_EQ(CGGradientRetain(nullptr), nullptr);
    CGGradientRelease(nullptr);
    const auto gradient = gradientOf({kRedColor, kBlueColor});
    EXPECT_EQ(CGGradientRetain(gradient), gradient);
    CGGradientRelease(gradient);
    EXPECT_EQ(drawnAlong(gradient).pixel(0, 0), rgba(254, 0, 1, 255));
}
