#include "BoxBlurPixels.h"

#include <Foundation/dispatch.h>
#include <KorvidAppKit/ZRGraphics.h>

#include <limits>
#include <thread>

// The common behaviour of both blur functions for images.

namespace {

using BlurImage = CGImageRef (*)(CGImageRef, int);

CGImageRef copyBoxBlurred(CGImageRef image, int boxDim)
{
    return ZRGraphics::sharedGraphics()->copyBoxBlurredImageFromImage(image, boxDim);
}

class BoxBlurredImage : public testing::TestWithParam<BlurImage> {
protected:
    static RetainPtr<CGImage> blurred(CGImageRef image, int boxDim)
    {
        return adopt(GetParam()(image, boxDim));
    }
    static BoxBlurPixels blurredPixels(const RetainPtr<CGImage>& image, int boxDim)
    {
        return blurPixelsOf(blurred(image, boxDim).get());
    }
};

RetainPtr<CGDataProvider> providerOf(const std::vector<std::uint8_t>& bytes)
{
    return adopt(CGDataProviderCreateWithCFData(NSData::dataWithBytes(bytes.data(), bytes.size()).get()));
}

RetainPtr<CGImage> opaqueMask(std::size_t width, std::size_t height)
{
    return adopt(CGImageMaskCreate(width, height, 8, 8, width,
        providerOf(std::vector<std::uint8_t>(width * height)).get(), nullptr, false));
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Both, BoxBlurredImage, testing::Values(copyBoxBlurred, ZRCreateBoxBlurredImage),
    [](const auto& info) { return info.index == 0 ? "Directly" : "ByRunningSums"; });

TEST_P(BoxBlurredImage, IsPremultipliedSRGBWithoutRowPadding)
{
    const auto image = blurred(makeBlurImage(makeBlurPixels(5, 3, 0x80402010)).get(), 3);
    EXPECT_EQ(CGImageGetWidth(image), 5U);
    EXPECT_EQ(CGImageGetHeight(image), 3U);
    EXPECT_EQ(CGImageGetBitsPerPixel(image), 32U);
    EXPECT_EQ(CGImageGetBytesPerRow(image), 20U);
    EXPECT_EQ(CGImageGetAlphaInfo(image), kCGImageAlphaPremultipliedLast);
    const auto sRGB = adopt(CGColorSpaceCreateWithName(kCGColorSpaceSRGB));
    EXPECT_TRUE(CGColorSpaceEqualToColorSpace(CGImageGetColorSpace(image), sRGB));
    EXPECT_EQ(blurPixelsOf(image), makeBlurPixels(5, 3, 0x80402010));
}

TEST_P(BoxBlurredImage, IsOwnedByTheCaller)
{
    auto image = makeBlurImage(makeBlurPixels(2, 2, 0xFF112233));
    const auto copy = blurred(image, 1);
    EXPECT_NE(copy, image);
    image = nullptr;
    EXPECT_EQ(blurPixelsOf(copy), makeBlurPixels(2, 2, 0xFF112233));
}

TEST_P(BoxBlurredImage, OfOnePixelIsACopyOfThePremultipliedSource)
{
    // Straight 200 with alpha 51 is 40.
    const auto straight = makeBlurImage(makeBlurPixels(4, 4, 0x33C8C8C8), kCGImageAlphaLast);
    EXPECT_EQ(blurredPixels(straight, 1), makeBlurPixels(4, 4, 0x33282828));
    const auto opaque = makeBlurImage(makeBlurPixels(4, 4, 0x00C80001), kCGImageAlphaNoneSkipLast);
    EXPECT_EQ(blurredPixels(opaque, 1), makeBlurPixels(4, 4, 0xFFC80001));
    const auto alphaFirst = makeBlurImage(makeBlurPixels(4, 4, 0x302010FF), kCGImageAlphaPremultipliedFirst);
    EXPECT_EQ(blurredPixels(alphaFirst, 1), makeBlurPixels(4, 4, 0xFF302010));
}

TEST_P(BoxBlurredImage, PreservesTheOrderOfRows)
{
    auto pixels = makeBlurPixels(2, 4);
    pixels.values = {0xFF000000, 0xFF000009, 0xFF000090, 0xFF000900, 0xFF009000, 0xFF090000, 0xFF900000, 0};
    EXPECT_EQ(firstBlurDifference(blurredPixels(makeBlurImage(pixels), 1), pixels), "");
    // An even box extends further up: the top row is unchanged.
    const auto twice = blurredPixels(makeBlurImage(pixels), 2);
    EXPECT_EQ(twice.values[0], 0xFF000000);
    EXPECT_EQ(twice.values[2], 0xFF000048);
}

TEST_P(BoxBlurredImage, AcceptsGrayImages)
{
    const auto gray = adopt(CGColorSpaceCreateWithName(kCGColorSpaceGenericGrayGamma2_2));
    const auto image = adopt(CGImageCreate(2, 1, 8, 8, 2, gray, kCGImageAlphaNone, providerOf({0, 255}).get(),
        nullptr, true, kCGRenderingIntentDefault));
    EXPECT_EQ(blurredPixels(image, 2), (BoxBlurPixels{2, 1, {0xFF000000, 0xFF7F7F7F}}));
}

TEST_P(BoxBlurredImage, DrawsMasksInBlack)
{
    // A sample of 0 lets all paint through.
    const auto mask = adopt(CGImageMaskCreate(2, 1, 8, 8, 2, providerOf({0, 255}).get(), nullptr, false));
    EXPECT_EQ(blurredPixels(mask, 1), (BoxBlurPixels{2, 1, {0xFF000000, 0}}));
    EXPECT_EQ(blurredPixels(mask, 2), (BoxBlurPixels{2, 1, {0xFF000000, 0x7F000000}}));
}

TEST_P(BoxBlurredImage, OfASizeBelowOneIsTransparent)
{
    const auto image = makeBlurImage(makeBlurPixels(5, 3, 0xFF112233));
    for (const int n : {0, -1, -7, -65536, std::numeric_limits<int>::min()})
        EXPECT_EQ(blurredPixels(image, n), makeBlurPixels(5, 3)) << n;
}

TEST_P(BoxBlurredImage, IsTransparentWhereTheAreaIsZero)
{
    const auto image = makeBlurImage(makeBlurPixels(5, 3, 0xFF112233));
    EXPECT_EQ(blurredPixels(image, 65536), makeBlurPixels(5, 3));
}

TEST_P(BoxBlurredImage, OfNullIsNull)
{
    for (const int n : {-1, 0, 1, 3})
        EXPECT_EQ(blurred(nullptr, n), nullptr) << n;
}

TEST_P(BoxBlurredImage, IsNullWhereASideIsTooLongToDraw)
{
    EXPECT_EQ(blurred(opaqueMask(32767, 1).get(), 1), nullptr);
    EXPECT_EQ(blurred(opaqueMask(1, 32767).get(), 1), nullptr);
    EXPECT_EQ(blurredPixels(opaqueMask(32766, 1), 1), makeBlurPixels(32766, 1, 0xFF000000));
    EXPECT_EQ(blurredPixels(opaqueMask(1, 32766), 1), makeBlurPixels(1, 32766, 0xFF000000));
}

TEST_P(BoxBlurredImage, IsThreadSafe)
{
    std::mt19937 random(1);
    const auto image = makeBlurImage(randomBlurPixels(600, 500, random), kCGImageAlphaNoneSkipLast);
    const auto expected = blurredPixels(image, 3);
    std::vector<BoxBlurPixels> results(3);
    std::vector<std::thread> threads;
    threads.reserve(results.size());
    for (auto& result : results)
        threads.emplace_back([&] { result = blurredPixels(image, 3); });
    for (auto& thread : threads)
        thread.join();
    for (const auto& result : results)
        EXPECT_EQ(firstBlurDifference(result, expected), "");
}

TEST_P(BoxBlurredImage, CanBeCreatedOnTheRenderQueue)
{
    std::mt19937 random(2);
    const auto image = makeBlurImage(randomBlurPixels(600, 500, random), kCGImageAlphaNoneSkipLast);
    const auto expected = blurredPixels(image, 4);
    BoxBlurPixels result;
    dispatch_sync(ZRGraphics::sharedRenderQueue(), [&] { result = blurredPixels(image, 4); });
    EXPECT_EQ(firstBlurDifference(result, expected), "");
}
