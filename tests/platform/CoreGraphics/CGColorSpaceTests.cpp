#include <CoreGraphics/CGColorSpace.h>

#include "support/Threads.h"

#include <gtest/gtest.h>
#include <vector>

namespace {

RetainPtr<CGColorSpace> named(const NSString& name)
{
    return adopt(CGColorSpaceCreateWithName(name));
}

TEST(CGColorSpace, HasAModelAComponentCountAndAName)
{
    const auto deviceRGB = adopt(CGColorSpaceCreateDeviceRGB());
    EXPECT_EQ(CGColorSpaceGetModel(deviceRGB), kCGColorSpaceModelRGB);
    EXPECT_EQ(CGColorSpaceGetNumberOfComponents(deviceRGB), 3U);
    EXPECT_EQ(CGColorSpaceCopyName(deviceRGB), "kCGColorSpaceDeviceRGB");

    const auto deviceGray = adopt(CGColorSpaceCreateDeviceGray());
    EXPECT_EQ(CGColorSpaceGetModel(deviceGray), kCGColorSpaceModelMonochrome);
    EXPECT_EQ(CGColorSpaceGetNumberOfComponents(deviceGray), 1U);
    EXPECT_EQ(CGColorSpaceCopyName(deviceGray), "kCGColorSpaceDeviceGray");

    const auto sRGB = named(kCGColorSpaceSRGB);
    EXPECT_EQ(CGColorSpaceGetModel(sRGB), kCGColorSpaceModelRGB);
    EXPECT_EQ(CGColorSpaceGetNumberOfComponents(sRGB), 3U);
    EXPECT_EQ(CGColorSpaceCopyName(sRGB), kCGColorSpaceSRGB);

    const auto gray = named(kCGColorSpaceGenericGrayGamma2_2);
    EXPECT_EQ(CGColorSpaceGetModel(gray), kCGColorSpaceModelMonochrome);
    EXPECT_EQ(CGColorSpaceGetNumberOfComponents(gray), 1U);
    EXPECT_EQ(CGColorSpaceCopyName(gray), kCGColorSpaceGenericGrayGamma2_2);

    EXPECT_EQ(CGColorSpaceGetBaseColorSpace(sRGB), nullptr);
}

TEST(CGColorSpaceCreateWithName, ReturnsEveryNamedSpace)
{
    const auto deviceRGB = adopt(CGColorSpaceCreateDeviceRGB());
    EXPECT_EQ(named(CGColorSpaceCopyName(deviceRGB)).get(), deviceRGB);
    const auto deviceGray = adopt(CGColorSpaceCreateDeviceGray());
    EXPECT_EQ(named(CGColorSpaceCopyName(deviceGray)).get(), deviceGray);
    EXPECT_EQ(named("sRGB").get(), nullptr);
    EXPECT_EQ(named("").get(), nullptr);
    EXPECT_EQ(named(nullptr).get(), nullptr);
}

TEST(CGColorSpaceCreatePattern, RetainsItsBaseSpace)
{
    const auto sRGB = named(kCGColorSpaceSRGB);
    const auto pattern = adopt(CGColorSpaceCreatePattern(sRGB));
    EXPECT_EQ(CGColorSpaceGetModel(pattern), kCGColorSpaceModelPattern);
    EXPECT_EQ(CGColorSpaceGetBaseColorSpace(pattern), sRGB);
    EXPECT_EQ(CGColorSpaceGetNumberOfComponents(pattern), 3U);
    EXPECT_TRUE(CGColorSpaceCopyName(pattern).isNull());

    const auto coloured = adopt(CGColorSpaceCreatePattern(nullptr));
    EXPECT_EQ(CGColorSpaceGetModel(coloured), kCGColorSpaceModelPattern);
    EXPECT_EQ(CGColorSpaceGetBaseColorSpace(coloured), nullptr);
    EXPECT_EQ(CGColorSpaceGetNumberOfComponents(coloured), 0U);
    EXPECT_EQ(CGColorSpaceCreatePattern(pattern), nullptr) << "a pattern of patterns";
}

TEST(CGColorSpaceEqualToColorSpace, ComparesKindsAndBases)
{
    const auto sRGB = named(kCGColorSpaceSRGB);
    const auto deviceRGB = adopt(CGColorSpaceCreateDeviceRGB());
    EXPECT_TRUE(CGColorSpaceEqualToColorSpace(sRGB, named(kCGColorSpaceSRGB).get()));
    EXPECT_FALSE(CGColorSpaceEqualToColorSpace(sRGB, deviceRGB));
    const auto pattern = adopt(CGColorSpaceCreatePattern(sRGB));
    EXPECT_TRUE(CGColorSpaceEqualToColorSpace(pattern, adopt(CGColorSpaceCreatePattern(sRGB)).get()));
    EXPECT_FALSE(CGColorSpaceEqualToColorSpace(pattern, adopt(CGColorSpaceCreatePattern(nullptr)).get()));
    EXPECT_FALSE(CGColorSpaceEqualToColorSpace(pattern, sRGB));
    EXPECT_TRUE(CGColorSpaceEqualToColorSpace(nullptr, nullptr));
    EXPECT_FALSE(CGColorSpaceEqualToColorSpace(sRGB, nullptr));
    EXPECT_FALSE(CGColorSpaceEqualToColorSpace(nullptr, sRGB));
}

TEST(CGColorSpace, AcceptsNullEverywhere)
{
    EXPECT_EQ(CGColorSpaceGetModel(nullptr), kCGColorSpaceModelUnknown);
    EXPECT_EQ(CGColorSpaceGetNumberOfComponents(nullptr), 0U);
    EXPECT_EQ(CGColorSpaceGetBaseColorSpace(nullptr), nullptr);
    EXPECT_TRUE(CGColorSpaceCopyName(nullptr).isNull());
    EXPECT_EQ(CGColorSpaceRetain(nullptr), nullptr);
    CGColorSpaceRelease(nullptr);
}

TEST(CGColorSpace, IsReferenceCountedAcrossThreads)
{
    const auto sRGB = named(kCGColorSpaceSRGB);
    const auto pattern = adopt(CGColorSpaceCreatePattern(sRGB));
    onThreads(4, [&](int) {
        for (int turn = 0; turn < 5000; ++turn) {
            const RetainPtr<CGColorSpace> another(pattern);
            const auto again = adopt(CGColorSpaceCreateDeviceGray());
            EXPECT_EQ(CGColorSpaceGetBaseColorSpace(another), sRGB);
        }
    });
}

} // namespace
