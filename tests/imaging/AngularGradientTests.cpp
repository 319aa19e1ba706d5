#include "AnglePixels.h"
#include "support/AllocationCounter.h"
#include "support/Canvas.h"
#include "support/EachVectorUnit.h"
#include "support/Numbers.h"
#include "support/Threads.h"

#include <KorvidAppKit/ZRGraphics.h>

#include <atomic>

TEST(AngularGradient, SizesAreRoundedDown)
{
    // Three eighths, a quarter, and a half of a turn above and left of the centre, which is the last pixel.
    const AnglePixels expected{2, 2, {159, 191, 127, 0}};
    EXPECT_TRUE(areSame(angles(true, 2.9, 2.9), expected));
    EXPECT_TRUE(areSame(angles(true, 2, 2), expected));
    EXPECT_TRUE(areSame(angles(false, 2.9, 2.9), {2, 2, {95, 63, 127, 255}}));
}

TEST(AngularGradient, CentreOfAnOddSizeIsTheMiddlePixel)
{
    EXPECT_TRUE(areSame(angles(true, 3, 3),
        {3, 3,
            {
                159, 191, 223, //
                127, 0, 0,     //
                95, 63, 31,    //
            }}));
    EXPECT_TRUE(areSame(angles(false, 3, 3),
        {3, 3,
            {
                95, 63, 31,    //
                127, 255, 255, //
                159, 191, 223, //
            }}));
}

TEST(AngularGradient, RightOfTheCentreIsZeroOr255)
{
    for (const std::size_t size : {3U, 4U, 31U, 64U, 200U}) {
        const std::size_t centre = size / 2;
        EXPECT_EQ(angles(true, size, size).at(centre + 1, centre), 0) << size;
        EXPECT_EQ(angles(false, size, size).at(centre + 1, centre), 255) << size;
    }
}

TEST(AngularGradient, BelowTheCentreIsAQuarterOfATurn)
{
    for (const std::size_t size : {3U, 4U, 31U, 64U, 200U}) {
        const std::size_t centre = size / 2;
        EXPECT_EQ(angles(true, size, size).at(centre, centre + 1), 63) << size;   // 63.75
        EXPECT_EQ(angles(false, size, size).at(centre, centre + 1), 191) << size; // 191.25
    }
}

TEST(AngularGradient, JustShortOfAFullTurnIsBelow255)
{
    // One row above the row of zeros, seen from far away: 255 x (1 - 0.0000097...) = 254.997...
    EXPECT_EQ(angles(true, 32767, 3).at(32766, 0), 254);
    EXPECT_EQ(angles(false, 32767, 3).at(32766, 2), 254);
}

TEST(AngularGradient, EveryPixelOfSmallImagesMatchesTheReference)
{
    for (std::size_t width = 1; width <= 40; ++width) {
        for (std::size_t height = 1; height <= 40; ++height) {
            ASSERT_TRUE(areSame(angles(true, width, height), plain(true, width, height)));
            ASSERT_TRUE(areSame(angles(false, width, height), plain(false, width, height)));
        }
    }
}

TEST(AngularGradient, EveryPixelOfImagesOfManyShapesMatchesTheReference)
{
    constexpr std::pair<std::size_t, std::size_t> kSizes[] = {{1, 1000}, {1000, 1}, {2, 997}, {997, 2},
        {1, 32767}, {32767, 1}, {32766, 2}, {255, 256}, {256, 255}, {509, 521}, {512, 512}, {1021, 64},
        {63, 1031}, {65, 4099}, {8191, 33}, {1451, 1447}};
    for (const auto& [width, height] : kSizes) {
        EXPECT_TRUE(areSame(angles(true, width, height), plain(true, width, height)));
        EXPECT_TRUE(areSame(angles(false, width, height), plain(false, width, height)));
    }
}

TEST(AngularGradient, EveryPixelOfLargeImagesMatchesTheReference)
{
    EXPECT_TRUE(areSame(angles(true, 4096, 4096), plain(true, 4096, 4096)));
    EXPECT_TRUE(areSame(angles(false, 4093, 3001), plain(false, 4093, 3001)));
    EXPECT_TRUE(areSame(angles(true, 32767, 101), plain(true, 32767, 101)));
}

TEST(AngularGradient, EveryVectorUnitGivesTheSameBytes)
{
    const AnglePixels increasing = plain(true, 1021, 509), decreasing = plain(false, 1021, 509);
    onEachVectorUnit([&] {
        EXPECT_TRUE(areSame(angles(true, 1021, 509), increasing));
        EXPECT_TRUE(areSame(angles(false, 1021, 509), decreasing));
        for (std::size_t width = 1; width <= 40; ++width)
            ASSERT_TRUE(areSame(angles(false, width, 7), plain(false, width, 7)));
    });
}

TEST(AngularGradient, EmptySizesReturnNull)
{
    for (const double none : {0.0, -0.0, 0.999, -1.0, -1e300, -kInfinity, kNaN}) {
        for (const double ringWidth : {0.0, 1.0, kNaN}) {
            EXPECT_EQ(ZRCreateAngularGradientImage(true, none, 8, ringWidth), nullptr) << none;
            EXPECT_EQ(ZRCreateAngularGradientImage(true, 8, none, ringWidth), nullptr) << none;
            EXPECT_EQ(ZRCreateAngularGradientImage(true, none, none, ringWidth), nullptr) << none;
        }
    }
}

TEST(AngularGradient, SidesBeyondTheLimitReturnNull)
{
    const AllocationCounter counter;
    for (const double huge : {32768.0, 65536.0, 4294967296.0, 1e10, 1e300, kInfinity}) {
        for (const double ringWidth : {0.0, 1.0}) {
            EXPECT_EQ(ZRCreateAngularGradientImage(true, huge, 8, ringWidth), nullptr) << huge;
            EXPECT_EQ(ZRCreateAngularGradientImage(true, 8, huge, ringWidth), nullptr) << huge;
            EXPECT_EQ(ZRCreateAngularGradientImage(true, huge, huge, ringWidth), nullptr) << huge;
        }
    }
    EXPECT_EQ(counter.count(), 0U);
    EXPECT_EQ(angles(true, 32767.9, 1).width, 32767U);
    EXPECT_EQ(angles(true, 1, 32767.9).height, 32767U);
}

TEST(AngularGradient, BufferIsFourBytesPerPixel)
{
    const AllocationCounter counter;
    const auto image = adopt(ZRCreateAngularGradientImage(true, 101, 73, 0));
    EXPECT_EQ(counter.largest(), 4U * 101 * 73);
}

TEST(AngularGradient, ImageIsAlphaOnly)
{
    const auto image = adopt(ZRCreateAngularGradientImage(true, 8, 8, 0));
    EXPECT_EQ(CGImageGetAlphaInfo(image), kCGImageAlphaOnly);
    EXPECT_EQ(CGImageGetBitsPerComponent(image), 8U);
    EXPECT_EQ(CGImageGetBitsPerPixel(image), 8U);
    EXPECT_EQ(CGImageGetColorSpace(image), nullptr);
}

TEST(AngularGradient, AsAMaskItMultipliesPaintByTheAngle)
{
    const auto sweep = adopt(ZRCreateAngularGradientImage(true, 3, 3, 0));
    Canvas canvas(3, 3);
    CGContextClipToMask(canvas.context(), CGRectMake(0, 0, 3, 3), sweep);
    CGContextFillRect(canvas.context(), CGRectMake(0, 0, 3, 3));
    const AnglePixels expected = plain(true, 3, 3);
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column)
            EXPECT_EQ(canvas.alpha(column, row), expected.at(std::size_t(column), std::size_t(row)));
    }
}

TEST(AngularGradient, IsThreadSafe)
{
    const AnglePixels expected = plain(true, 1024, 1024); // large enough to be split over threads
    std::atomic<int> wrong = 0;
    onThreads(4, [&](int) { wrong += angles(true, 1024, 1024) != expected; });
    EXPECT_EQ(wrong, 0);
}

TEST(AngularGradient, CanBeCreatedOnTheRenderQueue)
{
    const AnglePixels expected = plain(true, 1024, 1024);
    std::atomic<int> wrong = 0;
    dispatch_apply(4, ZRGraphics::sharedRenderQueue(),
        [&](std::size_t) { wrong += angles(true, 1024, 1024) != expected; });
    EXPECT_EQ(wrong, 0);
}
