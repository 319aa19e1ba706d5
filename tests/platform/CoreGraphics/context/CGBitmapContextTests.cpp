#include "ColorSpaces.h"
#include "support/Canvas.h"

#include "Foundation/testing/NSLogCapture.h"

#include <CoreGraphics/CoreGraphics.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

namespace {

RetainPtr<CGContext> contextIn(void* data, std::size_t width, std::size_t height, std::size_t bytesPerRow,
    CGBitmapInfo info = kCGImageAlphaPremultipliedLast)
{
    return adopt(CGBitmapContextCreate(
        data, width, height, 8, bytesPerRow, info == kCGImageAlphaOnly ? nullptr : deviceRGB().get(), info));
}

void fill(CGContextRef context, CGRect rect, double red, double green, double blue, double alpha)
{
    CGContextSetRGBFillColor(context, red, green, blue, alpha);
    CGContextFillRect(context, rect);
}

} // namespace

TEST(CGBitmapContext, ReportsItsParameters)
{
    const auto context = contextIn(nullptr, 5, 3, 0);
    EXPECT_EQ(CGBitmapContextGetWidth(context), 5U);
    EXPECT_EQ(CGBitmapContextGetHeight(context), 3U);
    EXPECT_EQ(CGBitmapContextGetBytesPerRow(context), 20U);
    EXPECT_EQ(CGBitmapContextGetBitsPerComponent(context), 8U);
    EXPECT_EQ(CGBitmapContextGetBitsPerPixel(context), 32U);
    EXPECT_EQ(CGBitmapContextGetAlphaInfo(context), kCGImageAlphaPremultipliedLast);
    EXPECT_EQ(CGBitmapContextGetBitmapInfo(context), kCGImageAlphaPremultipliedLast);
    EXPECT_NE(CGBitmapContextGetColorSpace(context), nullptr);

    const auto mask = contextIn(nullptr, 5, 3, 0, kCGImageAlphaOnly);
    EXPECT_EQ(CGBitmapContextGetBytesPerRow(mask), 5U);
    EXPECT_EQ(CGBitmapContextGetBitsPerPixel(mask), 8U);
    EXPECT_EQ(CGBitmapContextGetColorSpace(mask), nullptr);
    EXPECT_EQ(CGBitmapContextGetAlphaInfo(mask), kCGImageAlphaOnly);

    const CGBitmapInfo ordered = kCGBitmapByteOrder32Big | kCGImageAlphaNoneSkipLast;
    const auto opaque = contextIn(nullptr, 5, 3, 0, ordered);
    EXPECT_EQ(CGBitmapContextGetBitmapInfo(opaque), ordered);
    EXPECT_EQ(CGBitmapContextGetAlphaInfo(opaque), kCGImageAlphaNoneSkipLast);
}

TEST(CGBitmapContext, RejectsUnsupportedLayouts)
{
    const NSLogCapture log;
    const auto space = deviceRGB();
    const auto refuses = [&](std::size_t width, std::size_t height, std::size_t bits, std::size_t bytesPerRow,
                             CGColorSpaceRef given, CGBitmapInfo info) {
        return !adopt(CGBitmapContextCreate(nullptr, width, height, bits, bytesPerRow, given, info));
    };
    EXPECT_TRUE(refuses(0, 3, 8, 0, space, kCGImageAlphaPremultipliedLast));
    EXPECT_TRUE(refuses(3, 0, 8, 0, space, kCGImageAlphaPremultipliedLast));
    EXPECT_TRUE(refuses(3, 3, 16, 0, space, kCGImageAlphaPremultipliedLast));
    EXPECT_TRUE(refuses(3, 3, 8, 11, space, kCGImageAlphaPremultipliedLast));
    EXPECT_TRUE(refuses(3, 3, 8, 0, nullptr, kCGImageAlphaPremultipliedLast));
    EXPECT_TRUE(refuses(3, 3, 8, 0, space, kCGImageAlphaLast)); // straight alpha
    EXPECT_TRUE(refuses(3, 3, 8, 0, space, 31));
    EXPECT_TRUE(refuses(SIZE_MAX / 2, SIZE_MAX / 2, 8, 0, space, kCGImageAlphaPremultipliedLast));
    EXPECT_EQ(log.messages().size(), 8U);
}

TEST(CGBitmapContext, RowZeroOfTheMemoryIsTheTopRow)
{
    std::vector<unsigned char> memory(2 * 3 * 4);
    const auto context = contextIn(memory.data(), 2, 3, 8);
    fill(context, CGRectMake(1, 2, 1, 1), 1, 0.2, 0, 1);
    EXPECT_EQ(memory[4], 255);
    EXPECT_EQ(memory[5], 51);
    EXPECT_EQ(memory[6], 0);
    EXPECT_EQ(memory[7], 255);
    EXPECT_EQ(std::count(memory.begin(), memory.end(), 0), 24 - 3);
}

TEST(CGBitmapContext, ReleasesTheCallersMemoryOnce)
{
    struct Release {
        int count = 0;
        void* data = nullptr;
    } release;
    const auto callback = [](void* info, void* data) {
        auto* seen = static_cast<Release*>(info);
        ++seen->count;
        seen->data = data;
    };
    std::vector<unsigned char> memory(16);
    const auto space = deviceRGB();
    auto context = adopt(CGBitmapContextCreateWithData(
        memory.data(), 2, 2, 8, 8, space, kCGImageAlphaPremultipliedLast, callback, &release));
    auto second = context;
    context = nullptr;
    EXPECT_EQ(release.count, 0);
    second = nullptr;
    EXPECT_EQ(release.count, 1);
    EXPECT_EQ(release.data, memory.data());

    const NSLogCapture log;
    EXPECT_FALSE(adopt(CGBitmapContextCreateWithData(
        memory.data(), 0, 2, 8, 8, space, kCGImageAlphaPremultipliedLast, callback, &release)));
    EXPECT_EQ(release.count, 1);
}

// The library below caches that a surface is empty after a clear. Pixels that the caller writes afterwards
// must be visible as the backdrop, to a second clear and in an image.
TEST(CGBitmapContext, SeesWhatTheCallerWritesAfterAClear)
{
    std::vector<unsigned char> memory(4 * 4 * 4);
    const auto context = contextIn(memory.data(), 4, 4, 16);
    const auto writeGreen = [&memory] {
        for (std::size_t i = 0; i < memory.size(); i += 4)
            std::memcpy(&memory[i], "\x00\xFF\x00\xFF", 4);
    };
    const CGRect all = CGRectMake(0, 0, 4, 4);
    CGContextClearRect(context, all);
    writeGreen();
    fill(context, all, 1, 0, 0, 0.2);
    EXPECT_EQ(memory[0], 51);
    EXPECT_EQ(memory[1], 204);

    CGContextClearRect(context, all);
    writeGreen();
    CGContextClearRect(context, all);
    EXPECT_EQ(memory[1], 0);
    EXPECT_EQ(memory[3], 0);

    writeGreen();
    const auto image = adopt(CGBitmapContextCreateImage(context));
    Canvas canvas(4, 4);
    CGContextDrawImage(canvas.context(), all, image);
    EXPECT_EQ(canvas.pixel(2, 2), rgba(0, 255, 0, 255));

    CGContextSetBlendMode(context, kCGBlendModeSourceAtop);
    writeGreen();
    CGContextAddEllipseInRect(context, CGRectMake(-4, -4, 12, 12));
    CGContextSetRGBFillColor(context, 1, 0, 0, 1);
    CGContextFillPath(context);
    EXPECT_EQ(memory[0], 255);
}

TEST(CGBitmapContext, DrawsTheSamePixelsAtEveryAddressAndRowLength)
{
    constexpr std::size_t kWidth = 11;
    constexpr std::size_t kHeight = 40;
    const auto draw = [](CGContextRef context) {
        fill(context, CGRectMake(0, 0, kWidth, kHeight), 0.9, 0.8, 0.7, 0.6);
        fill(context, CGRectMake(0, 2, kWidth, 30), 0.2, 0.1, 0.7, 1);
        fill(context, CGRectMake(1, 3, 9, 2), 0.7, 0.3, 0.1, 1);
        fill(context, CGRectMake(0.5, 0.5, 9, 4), 0.3, 0.6, 0.9, 1);
        CGContextSetRGBFillColor(context, 1, 0.5, 0.1, 0.7);
        CGContextFillEllipseInRect(context, CGRectMake(2, 1, 7, 6));
        CGContextSetRGBStrokeColor(context, 0, 0, 0, 1);
        CGContextStrokeEllipseInRect(context, CGRectMake(2, 1, 7, 6));
        CGContextSetBlendMode(context, kCGBlendModeSourceOut);
        CGContextFillEllipseInRect(context, CGRectMake(0, 0, 5, 5));
    };
    for (const bool alphaOnly : {false, true}) {
        const CGBitmapInfo info = alphaOnly ? kCGImageAlphaOnly : kCGImageAlphaPremultipliedLast;
        const std::size_t row = kWidth * (alphaOnly ? 1 : 4);
        Canvas expected(kWidth, kHeight, alphaOnly ? Canvas::Format::AlphaOnly : Canvas::Format::RGBA);
        draw(expected.context());
        for (std::size_t offset = 0; offset < 4; ++offset) {
            for (const std::size_t padding : {0, 1, 5}) {
                std::vector<unsigned char> memory((row + padding) * kHeight + 8, 0);
                draw(contextIn(memory.data() + offset, kWidth, kHeight, row + padding, info).get());
                for (std::size_t y = 0; y < kHeight; ++y) {
                    const auto* expectedRow =
                        static_cast<unsigned char*>(CGBitmapContextGetData(expected.context()))
                        + y * CGBitmapContextGetBytesPerRow(expected.context());
                    EXPECT_EQ(std::memcmp(&memory[offset + y * (row + padding)], expectedRow, row), 0)
                        << "row " << y << ", offset " << offset << ", padding " << padding;
                    for (std::size_t i = 0; i < padding; ++i)
                        EXPECT_EQ(memory[offset + y * (row + padding) + row + i], 0) << "padding was written";
                }
            }
        }
    }
}

TEST(CGBitmapContext, RoundsEveryPremultipliedColourToTheNearestByte)
{
    for (int alpha = 0; alpha < 256; ++alpha) {
        Canvas canvas(256, 1);
        for (int value = 0; value < 256; ++value)
            fill(canvas.context(), CGRectMake(value, 0, 1, 1), value / 255.0, 1 - value / 255.0, 1,
                alpha / 255.0);
        for (int value = 0; value < 256; ++value) {
            const auto rounded = [alpha](int component) {
                return static_cast<int>(std::lround(component * alpha / 255.0));
            };
            ASSERT_EQ(canvas.pixel(value, 0), rgba(rounded(value), rounded(255 - value), alpha, alpha));
        }
    }
}

TEST(CGBitmapContext, ColoursOutOfRangeAreClampedWhenDrawn)
{
    Canvas canvas(2, 1);
    fill(canvas.context(), CGRectMake(0, 0, 1, 1), 2, -1, std::nan(""), 3);
    EXPECT_EQ(canvas.pixel(0, 0), rgba(255, 0, 0, 255));
    CGContextSetGrayFillColor(canvas.context(), -1.0 / 255, 1);
    CGContextFillRect(canvas.context(), CGRectMake(1, 0, 1, 1));
    EXPECT_EQ(canvas.pixel(1, 0), rgba(0, 0, 0, 255));
}

TEST(CGBitmapContext, OpaquePixelsStayOpaqueWithoutAlpha)
{
    std::vector<unsigned char> memory(4, 0);
    const auto context = contextIn(memory.data(), 1, 1, 4, kCGImageAlphaNoneSkipLast);
    fill(context, CGRectMake(0, 0, 1, 1), 1, 1, 1, 0.4);
    EXPECT_EQ(memory[0], 102); // over black, although the fourth byte was 0
    const auto image = adopt(CGBitmapContextCreateImage(context));
    Canvas canvas(1, 1);
    CGContextDrawImage(canvas.context(), CGRectMake(0, 0, 1, 1), image);
    EXPECT_EQ(canvas.pixel(0, 0), rgba(102, 102, 102, 255));
}

TEST(CGBitmapContext, ImagesAreSnapshots)
{
    Canvas canvas(2, 2);
    fill(canvas.context(), CGRectMake(0, 0, 2, 2), 1, 0, 0, 1);
    const auto image = adopt(CGBitmapContextCreateImage(canvas.context()));
    fill(canvas.context(), CGRectMake(0, 0, 2, 2), 0, 1, 0, 1);
    EXPECT_EQ(CGImageGetWidth(image), 2U);
    EXPECT_FALSE(CGImageIsMask(image));
    Canvas copy(2, 2);
    CGContextDrawImage(copy.context(), CGRectMake(0, 0, 2, 2), image);
    EXPECT_EQ(copy.pixel(1, 1), rgba(255, 0, 0, 255));
}

TEST(CGBitmapContext, NullContextsReturnNeutralResults)
{
    EXPECT_EQ(CGBitmapContextGetData(nullptr), nullptr);
    EXPECT_EQ(CGBitmapContextGetWidth(nullptr), 0U);
    EXPECT_EQ(CGBitmapContextGetHeight(nullptr), 0U);
    EXPECT_EQ(CGBitmapContextGetBytesPerRow(nullptr), 0U);
    EXPECT_EQ(CGBitmapContextGetBitsPerPixel(nullptr), 0U);
    EXPECT_EQ(CGBitmapContextGetBitsPerComponent(nullptr), 0U);
    EXPECT_EQ(CGBitmapContextGetColorSpace(nullptr), nullptr);
    EXPECT_EQ(CGBitmapContextGetAlphaInfo(nullptr), kCGImageAlphaNone);
    EXPECT_EQ(CGBitmapContextGetBitmapInfo(nullptr), 0U);
    EXPECT_EQ(CGBitmapContextCreateImage(nullptr), nullptr);
}
