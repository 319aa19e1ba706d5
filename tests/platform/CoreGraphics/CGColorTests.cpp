#include <CoreGraphics/CGColor.h>

#include "CoreGraphics/CGColorInternal.h"
#include "support/Numbers.h"
#include "support/Threads.h"

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace {

/// Room for the rounding of a few pow calls.
constexpr CGFloat kRounding = 1e-14;

RetainPtr<CGColorSpace> space(const NSString& name)
{
    return adopt(CGColorSpaceCreateWithName(name));
}

RetainPtr<CGColor> deviceGray(CGFloat gray, CGFloat alpha = 1)
{
    const CGFloat components[] = {gray, alpha};
    return adopt(CGColorCreate(adopt(CGColorSpaceCreateDeviceGray()).get(), components));
}

RetainPtr<CGColor> sRGB(CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha = 1)
{
    return adopt(CGColorCreateSRGB(red, green, blue, alpha));
}

RetainPtr<CGColor> match(const RetainPtr<CGColor>& color, const RetainPtr<CGColorSpace>& space)
{
    return adopt(
        CGColorCreateCopyByMatchingToColorSpace(space.get(), kCGRenderingIntentDefault, color, nullptr));
}

std::vector<CGFloat> components(const RetainPtr<CGColor>& color)
{
    const CGFloat* first = CGColorGetComponents(color);
    return {first, first + CGColorGetNumberOfComponents(color)};
}

TEST(CGColor, StoresSpaceAndComponents)
{
    const auto gray = deviceGray(0.25, 0.5);
    EXPECT_EQ(CGColorGetColorSpace(gray), adopt(CGColorSpaceCreateDeviceGray()).get());
    EXPECT_EQ(components(gray), (std::vector<CGFloat>{0.25, 0.5}));
    EXPECT_EQ(CGColorGetAlpha(gray), 0.5);

    const auto color = sRGB(0.1, 0.2, 0.3, 0.4);
    EXPECT_EQ(CGColorGetColorSpace(color), space(kCGColorSpaceSRGB).get());
    EXPECT_EQ(components(color), (std::vector<CGFloat>{0.1, 0.2, 0.3, 0.4}));
    EXPECT_EQ(CGColorGetAlpha(color), 0.4);

    const auto calibrated = adopt(CGColorCreateGenericGrayGamma2_2(0.6, 0.7));
    EXPECT_EQ(CGColorGetColorSpace(calibrated), space(kCGColorSpaceGenericGrayGamma2_2).get());
    EXPECT_EQ(components(calibrated), (std::vector<CGFloat>{0.6, 0.7}));

    const CGFloat rgba[] = {1, 2, 3, 4, 5};
    const auto device = adopt(CGColorCreate(adopt(CGColorSpaceCreateDeviceRGB()).get(), rgba));
    EXPECT_EQ(components(device), (std::vector<CGFloat>{1, 2, 3, 4}));
}

TEST(CGColor, StoresComponentsOutOfRangeUnchanged)
{
    EXPECT_EQ(components(deviceGray(-1 / 255.0)).front(), -1 / 255.0);
    EXPECT_EQ(components(deviceGray(2)).front(), 2);
    EXPECT_EQ(components(sRGB(kInfinity, 0, -7, 1)), (std::vector<CGFloat>{kInfinity, 0, -7, 1}));
    EXPECT_TRUE(std::isnan(components(deviceGray(kNaN)).front()));
}

TEST(CGColorRGBA, ClampsComponentsForDrawing)
{
    const CGColorRGBA drawn = CGColorRGBA{-1, 2, kNaN, 0.5}.clamped();
    EXPECT_EQ(drawn.red, 0);
    EXPECT_EQ(drawn.green, 1);
    EXPECT_EQ(drawn.blue, 0);
    EXPECT_EQ(drawn.alpha, 0.5);
    const CGColorRGBA infinite = CGColorRGBA{kInfinity, -kInfinity, -0.0, 1}.clamped();
    EXPECT_EQ(infinite.red, 1);
    EXPECT_EQ(infinite.green, 0);
    EXPECT_FALSE(std::signbit(infinite.blue));
}

TEST(CGColorCreate, RejectsPatternsAndNull)
{
    const CGFloat numbers[] = {0, 0, 0, 1};
    const auto pattern = adopt(CGColorSpaceCreatePattern(space(kCGColorSpaceSRGB).get()));
    EXPECT_EQ(CGColorCreate(pattern, numbers), nullptr);
    EXPECT_EQ(CGColorCreate(nullptr, numbers), nullptr);
    EXPECT_EQ(CGColorCreate(space(kCGColorSpaceSRGB).get(), nullptr), nullptr);
}

TEST(CGColorCreateCopyWithAlpha, ChangesOnlyTheAlpha)
{
    const auto color = sRGB(0.1, 0.2, 0.3, 0.4);
    EXPECT_EQ(components(adopt(CGColorCreateCopyWithAlpha(color, 0.9))),
        (std::vector<CGFloat>{0.1, 0.2, 0.3, 0.9}));
    EXPECT_EQ(components(adopt(CGColorCreateCopyWithAlpha(deviceGray(2).get(), -1))),
        (std::vector<CGFloat>{2, -1}));
    EXPECT_EQ(CGColorGetAlpha(color), 0.4);
}

TEST(CGColorEqualToColor, ComparesSpaceAndComponents)
{
    EXPECT_TRUE(CGColorEqualToColor(sRGB(1, 0, 0).get(), sRGB(1, 0, 0).get()));
    EXPECT_FALSE(CGColorEqualToColor(sRGB(1, 0, 0).get(), sRGB(1, 0, 0.5).get()));
    EXPECT_FALSE(CGColorEqualToColor(sRGB(1, 0, 0).get(), sRGB(1, 0, 0, 0.5).get()));
    EXPECT_FALSE(
        CGColorEqualToColor(deviceGray(0).get(), adopt(CGColorCreateGenericGrayGamma2_2(0, 1)).get()));
    EXPECT_TRUE(CGColorEqualToColor(nullptr, nullptr));
    EXPECT_FALSE(CGColorEqualToColor(nullptr, deviceGray(0).get()));
    EXPECT_FALSE(CGColorEqualToColor(deviceGray(0).get(), nullptr));
}

TEST(CGColorMatching, DeviceColoursAreSRGB)
{
    const auto target = space(kCGColorSpaceSRGB);
    EXPECT_EQ(
        components(match(deviceGray(0.25, 0.5), target)), (std::vector<CGFloat>{0.25, 0.25, 0.25, 0.5}));
    const auto deviceRGB = adopt(CGColorSpaceCreateDeviceRGB());
    EXPECT_EQ(
        components(match(sRGB(0.1, 0.2, 0.3, 0.4), deviceRGB)), (std::vector<CGFloat>{0.1, 0.2, 0.3, 0.4}));
    EXPECT_EQ(components(match(deviceGray(2), target)), (std::vector<CGFloat>{2, 2, 2, 1})) << "not clamped";
    EXPECT_EQ(components(match(deviceGray(-0.5), target)), (std::vector<CGFloat>{-0.5, -0.5, -0.5, 1}));
}

TEST(CGColorMatching, ReturnsTheSameColourInItsOwnSpace)
{
    const auto color = sRGB(0.1, 0.2, 0.3);
    EXPECT_EQ(match(color, space(kCGColorSpaceSRGB)).get(), color);
}

TEST(CGColorMatching, GenericGrayHasAGammaOf2Point2)
{
    const auto target = space(kCGColorSpaceSRGB);
    const auto encoded = [&](CGFloat gray) {
        return components(match(adopt(CGColorCreateGenericGrayGamma2_2(gray, 1)), target)).front();
    };
    EXPECT_NEAR(encoded(0.1), 0.0728, 0.00005);
    EXPECT_NEAR(encoded(0.2), 0.1863, 0.00005);
    EXPECT_NEAR(encoded(0.5), 0.5039, 0.00005);
    EXPECT_NEAR(encoded(0.8), 0.8048, 0.00005);
    EXPECT_EQ(encoded(0), 0);
    EXPECT_EQ(encoded(1), 1) << "white stays white";
    EXPECT_NEAR(encoded(-0.5), -encoded(0.5), kRounding);

    int changed = 0;
    int greatest = 0;
    for (int value = 0; value < 256; ++value) {
        const int difference = static_cast<int>(std::lround(encoded(value / 255.0) * 255)) - value;
        changed += difference != 0;
        if (std::abs(difference) > std::abs(greatest))
            greatest = difference;
    }
    EXPECT_EQ(changed, 216);
    EXPECT_EQ(greatest, -9);
}

TEST(CGColorMatching, GenericGrayRoundTrips)
{
    const auto rgb = space(kCGColorSpaceSRGB);
    const auto gray = space(kCGColorSpaceGenericGrayGamma2_2);
    for (int step = -10; step <= 20; ++step) {
        const auto color = adopt(CGColorCreateGenericGrayGamma2_2(step / 10.0, 0.5));
        const auto back = components(match(match(color, rgb), gray));
        EXPECT_NEAR(back[0], step / 10.0, kRounding);
        EXPECT_EQ(back[1], 0.5);
    }
}

TEST(CGColorMatching, ColoursConvertToGrayByTheirLuminance)
{
    const auto gray = adopt(CGColorSpaceCreateDeviceGray());
    // 0.2126, 0.7152 and 0.0722 of the light, encoded: 1.055 x^(1/2.4) - 0.055
    EXPECT_NEAR(components(match(sRGB(1, 0, 0), gray)).front(), 0.498440, 0.000001);
    EXPECT_NEAR(components(match(sRGB(0, 1, 0), gray)).front(), 0.862481, 0.000001);
    EXPECT_NEAR(components(match(sRGB(0, 0, 1), gray)).front(), 0.297893, 0.000001);
    EXPECT_EQ(components(match(sRGB(0.3, 0.3, 0.3, 0.4), gray)), (std::vector<CGFloat>{0.3, 0.4}));
    EXPECT_EQ(components(match(deviceGray(2), adopt(CGColorSpaceCreateDeviceRGB()))).front(), 2);
}

TEST(CGColorMatching, RejectsPatternsAndNull)
{
    const auto pattern = adopt(CGColorSpaceCreatePattern(nullptr));
    EXPECT_EQ(match(deviceGray(0), pattern).get(), nullptr);
    EXPECT_EQ(match(deviceGray(0), nullptr).get(), nullptr);
    EXPECT_EQ(match(nullptr, space(kCGColorSpaceSRGB)).get(), nullptr);
}

TEST(CGColor, AcceptsNullEverywhere)
{
    EXPECT_EQ(CGColorCreateCopyWithAlpha(nullptr, 1), nullptr);
    EXPECT_EQ(CGColorGetComponents(nullptr), nullptr);
    EXPECT_EQ(CGColorGetNumberOfComponents(nullptr), 0U);
    EXPECT_EQ(CGColorGetAlpha(nullptr), 0);
    EXPECT_EQ(CGColorGetColorSpace(nullptr), nullptr);
    EXPECT_EQ(CGColorRetain(nullptr), nullptr);
    CGColorRelease(nullptr);
}

TEST(CGColor, RetainsItsSpace)
{
    RetainPtr<CGColor> color;
    {
        const CGFloat numbers[] = {1, 0, 0, 1};
        color = adopt(CGColorCreate(adopt(CGColorSpaceCreateDeviceRGB()).get(), numbers));
    }
    EXPECT_EQ(CGColorSpaceGetModel(CGColorGetColorSpace(color)), kCGColorSpaceModelRGB);
}

TEST(CGColor, IsReferenceCountedAcrossThreads)
{
    const auto color = sRGB(1, 0, 0);
    onThreads(4, [&color](int) {
        for (int turn = 0; turn < 5000; ++turn) {
            const RetainPtr<CGColor> another(color);
            const auto faded = adopt(CGColorCreateCopyWithAlpha(another, 0.5));
            EXPECT_EQ(CGColorGetAlpha(faded), 0.5);
        }
    });
}

} // namespace
