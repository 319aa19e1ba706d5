#include <AppKit/NSColorSpace.h>

#include <gtest/gtest.h>

TEST(NSColorSpace, ReturnsTheSameObjectForEachSpace)
{
    EXPECT_EQ(NSColorSpace::sRGBColorSpace(), NSColorSpace::sRGBColorSpace());
    EXPECT_EQ(NSColorSpace::genericGrayColorSpace(), NSColorSpace::genericGamma22GrayColorSpace());
    EXPECT_TRUE(NSColorSpace::sRGBColorSpace()->isEqual(NSColorSpace::sRGBColorSpace()));
    EXPECT_FALSE(NSColorSpace::sRGBColorSpace()->isEqual(nullptr));
}

TEST(NSColorSpace, DistinguishesSpacesThatAreDrawnAlike)
{
    EXPECT_FALSE(NSColorSpace::sRGBColorSpace()->isEqual(NSColorSpace::deviceRGBColorSpace()));
    EXPECT_FALSE(NSColorSpace::sRGBColorSpace()->isEqual(NSColorSpace::genericRGBColorSpace()));
    EXPECT_FALSE(NSColorSpace::deviceGrayColorSpace()->isEqual(NSColorSpace::genericGrayColorSpace()));
}

TEST(NSColorSpace, HasAModelAndANumberOfComponents)
{
    for (const NSColorSpace* space : {NSColorSpace::sRGBColorSpace(), NSColorSpace::deviceRGBColorSpace(),
             NSColorSpace::genericRGBColorSpace()}) {
        EXPECT_EQ(space->colorSpaceModel(), NSColorSpaceModelRGB);
        EXPECT_EQ(space->numberOfColorComponents(), 3);
    }
    for (const NSColorSpace* space :
        {NSColorSpace::deviceGrayColorSpace(), NSColorSpace::genericGrayColorSpace()}) {
        EXPECT_EQ(space->colorSpaceModel(), NSColorSpaceModelGray);
        EXPECT_EQ(space->numberOfColorComponents(), 1);
    }
}

TEST(NSColorSpace, ReturnsItsCoreGraphicsSpace)
{
    const auto name = [](const NSColorSpace* space) { return CGColorSpaceCopyName(space->CGColorSpace()); };
    EXPECT_EQ(name(NSColorSpace::sRGBColorSpace()), kCGColorSpaceSRGB);
    EXPECT_EQ(name(NSColorSpace::genericRGBColorSpace()), kCGColorSpaceSRGB);
    EXPECT_EQ(name(NSColorSpace::genericGrayColorSpace()), kCGColorSpaceGenericGrayGamma2_2);

    const auto deviceRGB = adopt(CGColorSpaceCreateDeviceRGB());
    const auto deviceGray = adopt(CGColorSpaceCreateDeviceGray());
    EXPECT_EQ(NSColorSpace::deviceRGBColorSpace()->CGColorSpace(), deviceRGB);
    EXPECT_EQ(NSColorSpace::deviceGrayColorSpace()->CGColorSpace(), deviceGray);
}

TEST(NSColorSpace, RoundTripsThroughItsCoreGraphicsSpace)
{
    for (NSColorSpace* space : {NSColorSpace::sRGBColorSpace(), NSColorSpace::deviceRGBColorSpace(),
             NSColorSpace::deviceGrayColorSpace(), NSColorSpace::genericGamma22GrayColorSpace()})
        EXPECT_EQ(NSColorSpace::initWithCGColorSpace(space->CGColorSpace()), space);
    EXPECT_EQ(NSColorSpace::initWithCGColorSpace(NSColorSpace::genericRGBColorSpace()->CGColorSpace()),
        NSColorSpace::sRGBColorSpace());
}

TEST(NSColorSpace, IsNullForPatternsAndNull)
{
    const auto pattern = adopt(CGColorSpaceCreatePattern(NSColorSpace::sRGBColorSpace()->CGColorSpace()));
    EXPECT_EQ(NSColorSpace::initWithCGColorSpace(pattern), nullptr);
    EXPECT_EQ(NSColorSpace::initWithCGColorSpace(nullptr), nullptr);
}

TEST(NSColorSpace, DescriptionNamesTheSpace)
{
    EXPECT_EQ(NSColorSpace::sRGBColorSpace()->description(), "sRGB colorspace");
}
