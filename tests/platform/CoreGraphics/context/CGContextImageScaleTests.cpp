#include "support/Canvas.h"

#include <CoreGraphics/CoreGraphics.h>

#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <numbers>
#include <random>

namespace {

/// Gray pixels, the same in every row, with a value for each column.
RetainPtr<CGImage> columnsImage(int width, int height, const std::function<int(int)>& valueOf)
{
    Canvas canvas(width, height);
    for (int row = 0; row < height; ++row) {
        for (int column = 0; column < width; ++column) {
            const int value = valueOf(column);
            canvas.setPixel(column, row, rgba(value, value, value, 255));
        }
    }
    return adopt(CGBitmapContextCreateImage(canvas.context()));
}

/// A mask through which the right half is painted.
RetainPtr<CGImage> halfMask(int width, int height)
{
    Canvas canvas(width, height, Canvas::Format::AlphaOnly);
    CGContextFillRect(canvas.context(), CGRectMake(width / 2.0, 0, width / 2.0, height));
    return adopt(CGBitmapContextCreateImage(canvas.context()));
}

int red(const Canvas& canvas, int column, int row)
{
    return canvas.pixel(column, row).bytes[0];
}

} // namespace

TEST(CGContextDrawImage, ShrinksToTheAverageAtEveryScale)
{
    Canvas one(1, 1);
    CGContextDrawImage(one.context(), CGRectMake(0, 0, 1, 1),
        columnsImage(21'839, 3, [](int x) { return x < 5'460 ? 0 : 255; }).get());
    EXPECT_NEAR(red(one, 0, 0), 191, 1); // three quarters

    Canvas five(5, 5);
    const auto half = columnsImage(30'000, 10, [](int x) { return x < 15'000 ? 0 : 255; });
    CGContextDrawImage(five.context(), CGRectMake(0, 0, 5, 5), half.get());
    for (int row = 0; row < 5; ++row) {
        EXPECT_EQ(red(five, 0, row), 0);
        EXPECT_EQ(red(five, 1, row), 0);
        EXPECT_NEAR(red(five, 2, row), 127.5, 1);
        EXPECT_EQ(red(five, 3, row), 255);
        EXPECT_EQ(red(five, 4, row), 255);
    }

    // One white pixel in sixty.
    Canvas sixteenth(16, 1);
    CGContextDrawImage(sixteenth.context(), CGRectMake(0, 0, 16, 1),
        columnsImage(960, 1, [](int x) { return x % 60 == 7 ? 255 : 0; }).get());
    for (int column = 0; column < 16; ++column)
        EXPECT_NEAR(red(sixteenth, column, 0), 255 / 60.0, 0.5) << column;
}

TEST(CGContextDrawImage, TheLongestImageIsDrawnPixelForPixel)
{
    constexpr int kLength = 32'767;
    const auto image = columnsImage(kLength, 1, [](int x) { return x * 7 % 256; });
    Canvas canvas(kLength, 1);
    CGContextDrawImage(canvas.context(), CGRectMake(0, 0, kLength, 1), image.get());
    for (int column = 0; column < kLength; ++column)
        ASSERT_EQ(red(canvas, column, 0), column * 7 % 256) << column;
}

TEST(CGContextDrawImage, ALongImageIsShrunkUnderARotation)
{
    Canvas canvas(5, 5);
    CGContextTranslateCTM(canvas.context(), 5, 0);
    CGContextRotateCTM(canvas.context(), std::numbers::pi / 2);
    const auto half = columnsImage(30'000, 10, [](int x) { return x < 15'000 ? 0 : 255; });
    CGContextDrawImage(canvas.context(), CGRectMake(0, 0, 5, 5), half.get());
    const int expected[]{255, 255, 128, 0, 0}; // the right end is at the top
    for (int row = 0; row < 5; ++row)
        EXPECT_NEAR(red(canvas, 2, row), expected[row], 1) << row;
}

TEST(CGContextDrawImage, WithoutInterpolationALongImageIsSampledAtPixelCentres)
{
    for (const auto quality : {kCGInterpolationNone, kCGInterpolationLow}) {
        SCOPED_TRACE(quality);
        // Pixels 3,000, 9,000, 15,000, 21,000 and 27,000 begin at the centres. Only every pixel before them
        // is black.
        const auto image = columnsImage(30'000, 1, [](int x) { return x % 6'000 == 2'999 ? 0 : 255; });
        Canvas canvas(5, 1);
        CGContextSetInterpolationQuality(canvas.context(), quality);
        CGContextDrawImage(canvas.context(), CGRectMake(0, 0, 5, 1), image.get());
        for (int column = 0; column < 5; ++column)
            EXPECT_NEAR(red(canvas, column, 0), quality == kCGInterpolationNone ? 255 : 127.5, 1);
    }
}

TEST(CGContextClipToMask, ClipsToTheLongestMaskPixelForPixel)
{
    constexpr int kLength = 32'767;
    Canvas canvas(kLength, 1);
    CGContextClipToMask(canvas.context(), CGRectMake(0, 0, kLength, 1), halfMask(kLength - 1, 1).get());
    CGContextFillRect(canvas.context(), CGRectMake(0, 0, kLength, 1));
    for (int column = 0; column < kLength; ++column) {
        if (std::abs(column - kLength / 2) > 1) {
            ASSERT_EQ(canvas.alpha(column, 0), column < kLength / 2 ? 0 : 255) << column;
        }
    }
}

TEST(CGContextClipToMask, ClipsToLongMasks)
{
    Canvas canvas(4, 2);
    CGContextClipToMask(canvas.context(), CGRectMake(0, 0, 4, 1), halfMask(30'000, 10).get());
    CGContextFillRect(canvas.context(), CGRectMake(0, 0, 4, 2));
    EXPECT_COVERAGE(canvas,
        "...."
        "..##");
}

TEST(CGContextDrawImage, ALongMaskIsPaintedInTheFillColour)
{
    Canvas canvas(4, 1);
    CGContextSetRGBFillColor(canvas.context(), 0, 1, 0, 1);
    CGContextDrawImage(canvas.context(), CGRectMake(0, 0, 4, 1), halfMask(32'766, 1).get());
    EXPECT_COVERAGE(canvas, "..##");
    EXPECT_EQ(canvas.pixel(3, 0), rgba(0, 255, 0, 255));
}

// Near the origin and far from it, the drawn pixels are those of an exact interpolation. Weights have 7 bits.
TEST(CGContextDrawImage, IsInterpolatedExactlyFarFromTheOrigin)
{
    constexpr int kCount = 64;
    constexpr int kSteps = 3;
    std::mt19937 random(3);
    std::vector<int> values(kCount);
    for (int& value : values)
        value = int(random() % 256);
    const auto image = columnsImage(kCount, 1, [&](int x) { return values[std::size_t(x)]; });
    // Indices beyond the ends select the border pixel.
    const auto valueAt = [&](double u) {
        const double left = std::floor(u - 0.5);
        const auto value = [&](double i) { return values[std::size_t(std::clamp(i, 0.0, kCount - 1.0))]; };
        const double part = u - 0.5 - left;
        return (1 - part) * value(left) + part * value(left + 1);
    };
    for (const bool isVertical : {false, true}) {
        for (const int offset : {3, 900, 4'000, 16'000, 32'600}) {
            for (const double length : {64.3, 100.7, 150.3}) {
                SCOPED_TRACE(testing::Message()
                    << (isVertical ? "vertical, " : "horizontal, ") << length << " pixels at " << offset);
                Canvas canvas(isVertical ? 1 : 32'767, isVertical ? 32'767 : 1);
                if (isVertical) { // along the rows, from the top
                    CGContextTranslateCTM(canvas.context(), 0, 32'767);
                    CGContextRotateCTM(canvas.context(), -std::numbers::pi / 2);
                }
                CGContextDrawImage(canvas.context(), CGRectMake(offset + 0.25, 0, length, 1), image.get());
                const int end = std::min(offset + int(length), 32'767);
                for (int i = offset + 1; i < end; ++i) {
                    const int drawn = isVertical ? red(canvas, 0, i) : red(canvas, i, 0);
                    ASSERT_NEAR(drawn, valueAt((i + 0.5 - offset - 0.25) * kCount / length), kSteps) << i;
                }
            }
        }
    }
}

TEST(CGContextDrawImage, SamplesTheNearestPixelFarFromTheOrigin)
{
    constexpr int kOffset = 16'000;
    constexpr double kScale = 5.03;
    const auto image = columnsImage(64, 1, [](int x) { return 4 * x; });
    Canvas canvas(32'767, 1);
    CGContextSetInterpolationQuality(canvas.context(), kCGInterpolationNone);
    CGContextDrawImage(canvas.context(), CGRectMake(kOffset, 0, 64 * kScale, 1), image.get());
    for (int i = 0; i < int(64 * kScale); ++i)
        ASSERT_EQ(red(canvas, kOffset + i, 0), 4 * int((i + 0.5) / kScale)) << i;
}
