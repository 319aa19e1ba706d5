#include <CoreGraphics/CGColorSpace.h>

#include "support/Threads.h"

#include <gtest/gtest.h>
#include <vector>

namespace {

RetainPtr<CGColorSpace> named(const NSString& name)
{
    return adopt(CGColorSpaceCreateWithName(name));
}

TEST(CGColorSpace, KnowsItsModelComponentsAndName)
{
    const auto deviceRGB = adopt(CGColorSpaceCreateDeviceRGB());
    EXPECT_EQ(CGColorSpaceGetModel(deviceRGB.get()), kCGColorSpaceModelRGB);
    EXPECT_EQ(CGColorSpaceGetNumberOfComponents(deviceRGB.get()), 3U);
    EXPECT_EQ(CGColorSpaceCopyName(deviceRGB.get()), "kCGColorSpaceDeviceRGB");

    const auto deviceGray = adopt(CGColorSpaceCreateDeviceGray());
    EXPECT_EQ(CGColorSpaceGetModel(deviceGray.get()), kCGColorSpaceModelMonochrome);
    EXPECT_EQ(CGColorSpaceGetNumberOfComponents(deviceGray.get()), 1U);
    EXPECT_EQ(CGColorSpaceCopyName(deviceGray.get()), "kCGColorSpaceDeviceGray");

    const auto sRGB = named(kCGColorSpaceSRGB);
    EXPECT_EQ(CGColorSpaceGetModel(sRGB.get()), kCGColorSpaceModelRGB);
    EXPECT_EQ(CGColorSpaceGetNumberOfComponents(sRGB.get()), 3U);
    EXPECT_EQ(CGColorSpaceCopyName(sRGB.get()), kCGColorSpaceSRGB);

    const auto gray = named(kCGColorSpaceGenericGrayGamma2_2);
    EXPECT_EQ(CGColorSpaceGetModel(gray.get()), kCGColorSpaceModelMonochrome);
    EXPECT_EQ(CGColorSpaceGetNumberOfComponents(gray.get()), 1U);
    EXPECT_EQ(CGColorSpaceCopyName(gray.get()), kCGColorSpaceGenericGrayGamma2_2);

    EXPECT_EQ(CGColorSpaceGetBaseColorSpace(sRGB.get()), nullptr);
}

TEST(CGColorSpaceCreateWithName, FindsEverySpaceThatHasAName)
{
    const auto deviceRGB = adopt(CGColorSpaceCreateDeviceRGB());
    EXPECT_EQ(named(CGColorSpaceCopyName(deviceRGB.get())).get(), deviceRGB.get());
    const auto deviceGray = adopt(CGColorSpaceCreateDeviceGray());
    EXPECT_EQ(named(CGColorSpaceCopyName(deviceGray.get())).get(), deviceGray.get());
    EXPECT_EQ(named("sRGB").get(), nullptr);
    EXPECT_EQ(named("").get(), nullptr);
    EXPECT_EQ(named(nullptr).get(), nullptr);
}

TEST(CGColorSpaceCreatePattern, KeepsItsBase)
{
    const auto sRGB = named(kCGColorSpaceSRGB);
    const auto pattern = adopt(CGColorSpaceCreatePattern(sRGB.get()));
    EXPECT_EQ(CGColorSpaceGetModel(pattern.get()), kCGColorSpaceModelPattern);
    EXPECT_EQ(CGColorSpaceGetBaseColorSpace(pattern.get()), sRGB.get());
    EXPECT_EQ(CGColorSpaceGetNumberOfComponents(pattern.get()), 3U);
    EXPECT_TRUE(CGColorSpaceCopyName(pattern.get()).isNull());

    const auto coloured = adopt(CGColorSpaceCreatePattern(nullptr));
    EXPECT_EQ(CGColorSpaceGetModel(coloured.get()), kCGColorSpaceModelPattern);
    EXPECT_EQ(CGColorSpaceGetBaseColorSpace(coloured.get()), nullptr);
    EXPECT_EQ(CGColorSpaceGetNumberOfComponents(coloured.get()), 0U);
    EXPECT_EQ(CGColorSpaceCreatePattern(pattern.get()), nullptr) << "a pattern of patterns";
}

TEST(CGColorSpaceEqualToColorSpace, ComparesKindsAndBases)
{
    const auto sRGB = named(kCGColorSpaceSRGB);
    const auto deviceRGB = adopt(CGColorSpaceCreateDeviceRGB());
    EXPECT_TRUE(CGColorSpaceEqualToColorSpace(sRGB.get(), named(kCGColorSpaceSRGB).get()));
    EXPECT_FALSE(CGColorSpaceEqualToColorSpace(sRGB.get(), deviceRGB.get()));
    const auto pattern = adopt(CGColorSpaceCreatePattern(sRGB.get()));
    EXPECT_TRUE(
        CGColorSpaceEqualToColorSpace(pattern.get(), adopt(CGColorSpaceCreatePattern(sRGB.get())).get()));
    EXPECT_FALSE(
        CGColorSpaceEqualToColorSpace(pattern.get(), adopt(CGColorSpaceCreatePattern(nullptr)).get()));
    EXPECT_FALSE(CGColorSpaceEqualToColorSpace(pattern.get(), sRGB.get()));
    EXPECT_TRUE(CGColorSpaceEqualToColorSpace(nullptr, nullptr));
    EXPECT_FALSE(CGColorSpaceEqualToColorSpace(sRGB.get(), nullptr));
    EXPECT_FALSE(CGColorSpaceEqualToColorSpace(nullptr, sRGB.get()));
}

TEST(CGColorSpace, TakesNullEverywhere)
{
    EXPECT_EQ(CGColorSpaceGetModel(nullptr), kCGColorSpaceModelUnknown);
    EXPECT_EQ(CGColorSpaceGetNumberOfComponents(nullptr), 0U);
    EXPECT_EQ(CGColorSpaceGetBaseColorSpace(nullptr), nullptr);
    EXPECT_TRUE(CGColorSpaceCopyName(nullptr).isNull());
    EXPECT_EQ(CGColorSpaceRetain(nullptr), nullptr);
    CGColorSpaceRelease(nullptr);
}

TEST(CGColorSpace, IsCountedOnAllThreads)
{
    const auto sRGB = named(kCGColorSpaceSRGB);
    const auto pattern = adopt(CGColorSpaceCreatePattern(sRGB.get()));
    onThreads(4, [&](int) {
        for (int turn = 0; turn < 5000; ++turn) {
            const RetainPtr<CGColorSpace> another(pattern.get());
            const auto again = adopt(CGColorSpaceCreateDeviceGray());
            EXPECT_EQ(CGColorSpaceGetBaseColorSpace(another.get()), sRGB.get());
        }
    });
}

} // namespace
