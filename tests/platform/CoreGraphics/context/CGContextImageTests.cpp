#include "support/Canvas.h"

#include <CoreGraphics/CoreGraphics.h>
#include <Foundation/NSData.h>

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <random>
#include <vector>

namespace {

/// An image of opaque pixels 0xRRGGBB, rows from the top.
RetainPtr<CGImage> image(int width, int height, const std::vector<int>& colors)
{
    Canvas canvas(width, height);
    for (int i = 0; i < width * height; ++i) {
        const int color = colors[static_cast<std::size_t>(i)];
        canvas.setPixel(i % width, i / width, rgba(color >> 16, color >> 8 & 255, color & 255, 255));
    }
    return adopt(CGBitmapContextCreateImage(canvas.context()));
}

/// A premultiplied pixel: transparent, opaque or anything in between.
CanvasPixel randomPixel(std::mt19937& random)
{
    const unsigned kind = random() % 3;
    const int alpha = kind == 0 ? 0 : kind == 1 ? 255 : int(random() % 256);
    const auto byte = [&] { return int(random() % unsigned(alpha + 1)); };
    const int red = byte();
    const int green = byte();
    return rgba(red, green, byte(), alpha);
}

CanvasPixel paintedOver(const CanvasPixel& source, const CanvasPixel& below)
{
    CanvasPixel result;
    for (std::size_t i = 0; i < 4; ++i)
        result.bytes[i] =
            source.bytes[i] + int(std::lround(below.bytes[i] * (255 - source.bytes[3]) / 255.0));
    return result;
}

/// Red and green on top, blue and white below.
RetainPtr<CGImage> fourColors()
{
    return image(2, 2, {0xFF0000, 0x00FF00, 0x0000FF, 0xFFFFFF});
}

} // namespace

TEST(CGContextDrawImage, FirstRowIsAtTheTopOfTheRectangle)
{
    Canvas canvas(4, 4);
    CGContextDrawImage(canvas.context(), CGRectMake(1, 1, 2, 2), fourColors().get());
    EXPECT_COVERAGE(canvas,
        "...."
        ".##."
        ".##."
        "....");
    EXPECT_EQ(canvas.pixel(1, 1), kRed);
    EXPECT_EQ(canvas.pixel(2, 1), kGreen);
    EXPECT_EQ(canvas.pixel(1, 2), kBlue);
    EXPECT_EQ(canvas.pixel(2, 2), kWhite);
}

// All lengths of rows, because many pixels are painted at once.
TEST(CGContextDrawImage, OfItsOwnSizeIsPaintedOverEachPixelOfItsRectangle)
{
    constexpr int kHeight = 3;
    std::mt19937 random(3);
    for (int width = 1; width <= 70; ++width) {
        SCOPED_TRACE(width);
        Canvas source(width, kHeight);
        Canvas canvas(width + 2, kHeight + 2);
        Canvas before(width + 2, kHeight + 2);
        for (int i = 0; i < width * kHeight; ++i)
            source.setPixel(i % width, i / width, randomPixel(random));
        for (int i = 0; i < canvas.width() * canvas.height(); ++i) {
            const CanvasPixel pixel = randomPixel(random);
            canvas.setPixel(i % canvas.width(), i / canvas.width(), pixel);
            before.setPixel(i % canvas.width(), i / canvas.width(), pixel);
        }
        const auto image = adopt(CGBitmapContextCreateImage(source.context()));
        CGContextDrawImage(canvas.context(), CGRectMake(1, 1, width, kHeight), image);
        for (int y = 0; y < canvas.height(); ++y) {
            for (int x = 0; x < canvas.width(); ++x) {
                const bool isInside = x >= 1 && x <= width && y >= 1 && y <= kHeight;
                const CanvasPixel drawn = isInside ? source.pixel(x - 1, y - 1) : kTransparent;
                ASSERT_EQ(canvas.pixel(x, y), paintedOver(drawn, before.pixel(x, y))) << x << ", " << y;
            }
        }
    }
}

TEST(CGContextDrawImage, FollowsFlipsAndNegativeSizes)
{
    Canvas flipped(2, 2);
    CGContextTranslateCTM(flipped.context(), 0, 2);
    CGContextScaleCTM(flipped.context(), 1, -1);
    CGContextDrawImage(flipped.context(), CGRectMake(0, 0, 2, 2), fourColors().get());
    EXPECT_EQ(flipped.pixel(0, 0), kBlue);
    EXPECT_EQ(flipped.pixel(1, 1), kGreen);

    Canvas negative(2, 2);
    CGContextDrawImage(negative.context(), CGRectMake(2, 2, -2, -2), fourColors().get());
    EXPECT_EQ(negative.pixel(0, 0), kRed);
}

TEST(CGContextDrawImage, EnlargedWithoutInterpolationHasHardEdges)
{
    Canvas canvas(6, 6);
    CGContextSetInterpolationQuality(canvas.context(), kCGInterpolationNone);
    CGContextDrawImage(canvas.context(), CGRectMake(0, 0, 6, 6), fourColors().get());
    EXPECT_EQ(canvas.pixel(2, 2), kRed);
    EXPECT_EQ(canvas.pixel(3, 2), kGreen);
    EXPECT_EQ(canvas.pixel(2, 3), kBlue);
    EXPECT_EQ(canvas.pixel(3, 3), kWhite);
}

// Interpolation with transparent pixels outside the image would make its borders translucent.
TEST(CGContextDrawImage, BordersStayOpaqueWhenItIsEnlarged)
{
    for (const CGInterpolationQuality quality :
        {kCGInterpolationDefault, kCGInterpolationLow, kCGInterpolationHigh}) {
        Canvas canvas(8, 8);
        CGContextSetInterpolationQuality(canvas.context(), quality);
        CGContextDrawImage(canvas.context(), CGRectMake(0, 0, 8, 8), fourColors().get());
        EXPECT_COVERAGE(canvas,
            "########"
            "########"
            "########"
            "########"
            "########"
            "########"
            "########"
            "########");
        EXPECT_EQ(canvas.pixel(0, 0), kRed);
    }
}

TEST(CGContextDrawImage, BetweenPixelsNeighboursMixAndTheEdgesAreBlended)
{
    Canvas canvas(4, 1);
    CGContextDrawImage(canvas.context(), CGRectMake(0.25, 0, 2, 1), image(2, 1, {0x000000, 0xFFFFFF}).get());
    EXPECT_EQ(canvas.pixel(0, 0), rgba(0, 0, 0, 191)); // three quarters of the pixel
    EXPECT_EQ(canvas.pixel(1, 0), rgba(191, 191, 191, 255));
    EXPECT_EQ(canvas.pixel(2, 0), rgba(64, 64, 64, 64)); // white on a quarter of it
    EXPECT_EQ(canvas.pixel(3, 0), rgba(0, 0, 0, 0));
}

TEST(CGContextDrawImage, OfHalfTheSizeIsTheMeanOfFourPixels)
{
    const auto blues = image(4, 2, {0, 10, 20, 31, 40, 50, 61, 70});
    for (const CGInterpolationQuality quality : {kCGInterpolationDefault, kCGInterpolationLow}) {
        Canvas canvas(2, 1);
        CGContextSetInterpolationQuality(canvas.context(), quality);
        CGContextDrawImage(canvas.context(), CGRectMake(0, 0, 2, 1), blues);
        EXPECT_EQ(canvas.pixel(0, 0), rgba(0, 0, 25, 255));
        EXPECT_EQ(canvas.pixel(1, 0), rgba(0, 0, 46, 255)); // 45.5
    }
}

TEST(CGContextDrawImage, ShrunkCountsAPixelByThePartThatIsCovered)
{
    Canvas canvas(2, 1);
    CGContextDrawImage(canvas.context(), CGRectMake(0, 0, 2, 1), image(5, 1, {0, 50, 100, 150, 200}).get());
    EXPECT_EQ(canvas.pixel(0, 0), rgba(0, 0, 40, 255)); // (0 + 50 + 100 / 2) / 2.5
    EXPECT_EQ(canvas.pixel(1, 0), rgba(0, 0, 160, 255));
}

TEST(CGContextDrawImage, TurnedByARightAngleKeepsItsPixels)
{
    Canvas canvas(2, 2);
    CGContextTranslateCTM(canvas.context(), 2, 0);
    CGContextRotateCTM(canvas.context(), std::numbers::pi / 2);
    CGContextDrawImage(canvas.context(), CGRectMake(0, 0, 2, 2), fourColors().get());
    EXPECT_EQ(canvas.pixel(0, 0), kGreen);
    EXPECT_EQ(canvas.pixel(1, 0), kWhite);
    EXPECT_EQ(canvas.pixel(0, 1), kRed);
    EXPECT_EQ(canvas.pixel(1, 1), kBlue);
}

TEST(CGContextDrawImage, IsBlendedOverABitmapWithoutAlpha)
{
    std::array<unsigned char, 4> bytes{255, 255, 255, 7};
    const auto space = adopt(CGColorSpaceCreateDeviceRGB());
    const auto context =
        adopt(CGBitmapContextCreate(bytes.data(), 1, 1, 8, 4, space, kCGImageAlphaNoneSkipLast));
    CGContextSetAlpha(context, 0.4);
    CGContextDrawImage(context, CGRectMake(0, 0, 1, 1), image(1, 1, {0xFF0000}).get());
    EXPECT_EQ(int(bytes[0]), 255);
    EXPECT_EQ(int(bytes[1]), 153);
    EXPECT_EQ(int(bytes[2]), 153);
}

TEST(CGContextDrawImage, LeavesItsAlphaInAnAlphaOnlyContext)
{
    Canvas source(2, 1);
    source.setPixel(0, 0, rgba(51, 0, 20, 51));
    source.setPixel(1, 0, rgba(0, 9, 0, 204));
    const auto picture = adopt(CGBitmapContextCreateImage(source.context()));
    Canvas canvas(2, 1, Canvas::Format::AlphaOnly);
    CGContextDrawImage(canvas.context(), CGRectMake(0, 0, 2, 1), picture);
    EXPECT_EQ(canvas.alpha(0, 0), 51);
    EXPECT_EQ(canvas.alpha(1, 0), 204);
}

TEST(CGContextDrawImage, ShrunkAveragesTheCoveredPixels)
{
    std::vector<int> checkers;
    for (int i = 0; i < 64 * 64; ++i)
        checkers.push_back((i / 64 + i) % 2 ? 0xFFFFFF : 0);
    Canvas canvas(8, 8);
    CGContextDrawImage(canvas.context(), CGRectMake(0, 0, 8, 8), image(64, 64, checkers).get());
    // Half of the covered pixels are white.
    EXPECT_NEAR(canvas.pixel(3, 3).bytes[0], 127.5, 2);
    EXPECT_NEAR(canvas.pixel(4, 3).bytes[0], 127.5, 2);
}

TEST(CGContextDrawImage, IsMultipliedByTheAlphaOfTheState)
{
    Canvas canvas(2, 2);
    CGContextSetAlpha(canvas.context(), 0.4);
    CGContextDrawImage(canvas.context(), CGRectMake(0, 0, 2, 2), fourColors().get());
    EXPECT_EQ(canvas.pixel(0, 0), rgba(102, 0, 0, 102));
}

TEST(CGContextDrawImage, WithAlphaReplacesThePreviousImageInCopyMode)
{
    Canvas canvas(2, 2);
    CGContextSetAlpha(canvas.context(), 0.4);
    CGContextSetBlendMode(canvas.context(), kCGBlendModeCopy);
    CGContextDrawImage(canvas.context(), CGRectMake(0, 0, 2, 2), image(1, 1, {0x00FFFF}).get());
    CGContextDrawImage(canvas.context(), CGRectMake(0, 0, 2, 2), image(1, 1, {0xFF0000}).get());
    EXPECT_EQ(canvas.pixel(0, 0), rgba(102, 0, 0, 102));
}

TEST(CGContextDrawImage, AcceptsStraightAlphaAndOtherComponentOrders)
{
    const auto drawn = [](const std::vector<unsigned char>& bytes, CGImageAlphaInfo info) {
        const auto provider =
            adopt(CGDataProviderCreateWithCFData(NSData::dataWithBytes(bytes.data(), bytes.size()).get()));
        const auto space = adopt(CGColorSpaceCreateDeviceRGB());
        const auto source = adopt(
            CGImageCreate(1, 1, 8, 32, 4, space, info, provider, nullptr, false, kCGRenderingIntentDefault));
        Canvas canvas(1, 1);
        CGContextDrawImage(canvas.context(), CGRectMake(0, 0, 1, 1), source);
        return canvas.pixel(0, 0);
    };
    EXPECT_EQ(drawn({255, 0, 100, 51}, kCGImageAlphaLast), rgba(51, 0, 20, 51));
    EXPECT_EQ(drawn({51, 255, 0, 100}, kCGImageAlphaFirst), rgba(51, 0, 20, 51));
    EXPECT_EQ(drawn({51, 0, 20, 51}, kCGImageAlphaPremultipliedLast), rgba(51, 0, 20, 51));
    EXPECT_EQ(drawn({10, 20, 30, 0}, kCGImageAlphaNoneSkipLast), rgba(10, 20, 30, 255));
}

TEST(CGContextDrawImage, AMaskIsPaintedInTheFillColour)
{
    Canvas shape(2, 1, Canvas::Format::AlphaOnly);
    CGContextFillRect(shape.context(), CGRectMake(0, 0, 1, 1));
    const auto mask = adopt(CGBitmapContextCreateImage(shape.context()));
    Canvas canvas(2, 1);
    CGContextSetRGBFillColor(canvas.context(), 0, 0, 1, 1);
    CGContextDrawImage(canvas.context(), CGRectMake(0, 0, 2, 1), mask);
    EXPECT_EQ(canvas.pixel(0, 0), kBlue);
    EXPECT_EQ(canvas.pixel(1, 0), rgba(0, 0, 0, 0));
}

// In a colour context an alpha-only image is a stencil for the fill colour; in an alpha-only context it is an
// image like any other.
TEST(CGContextDrawImage, AnAlphaOnlyImageInAnAlphaOnlyContextCoversItsWholeRectangle)
{
    Canvas shape(2, 1, Canvas::Format::AlphaOnly);
    shape.setPixel(0, 0, rgba(0, 0, 0, 255));
    const auto mask = adopt(CGBitmapContextCreateImage(shape.context()));
    const auto drawn = [&](CGBlendMode mode) {
        Canvas canvas(3, 1, Canvas::Format::AlphaOnly);
        for (int column = 0; column < 3; ++column)
            canvas.setPixel(column, 0, rgba(0, 0, 0, 55));
        CGContextSetBlendMode(canvas.context(), mode);
        CGContextDrawImage(canvas.context(), CGRectMake(0, 0, 2, 1), mask);
        return std::array{canvas.alpha(0, 0), canvas.alpha(1, 0), canvas.alpha(2, 0)};
    };
    EXPECT_EQ(drawn(kCGBlendModeSourceOut), (std::array{200, 0, 55}));
    EXPECT_EQ(drawn(kCGBlendModeSourceIn), (std::array{55, 0, 55}));
    EXPECT_EQ(drawn(kCGBlendModeCopy), (std::array{255, 0, 55}));
    EXPECT_EQ(drawn(kCGBlendModeNormal), (std::array{255, 55, 55}));
}

TEST(CGContextDrawImage, AlphaOfTheFillColourAndOfTheStateMultiplyAnAlphaOnlyImage)
{
    Canvas shape(1, 1, Canvas::Format::AlphaOnly);
    shape.setPixel(0, 0, rgba(0, 0, 0, 255));
    const auto mask = adopt(CGBitmapContextCreateImage(shape.context()));
    for (const auto format : {Canvas::Format::AlphaOnly, Canvas::Format::RGBA}) {
        Canvas canvas(1, 1, format);
        CGContextSetGrayFillColor(canvas.context(), 0, 0.8);
        CGContextSetAlpha(canvas.context(), 0.5);
        CGContextDrawImage(canvas.context(), CGRectMake(0, 0, 1, 1), mask);
        EXPECT_EQ(canvas.alpha(0, 0), 102); // 0.4 x 255
    }
}

// A context keeps nothing of an image that it has drawn.
TEST(CGContextDrawImage, AnImageThatIsDrawnIsReleasedWithItsLastReference)
{
    struct Pixel {
        std::array<std::uint8_t, 4> bytes;
        bool isReleased = false;
    };
    Canvas canvas(1, 1);
    const auto draw = [&](Pixel& pixel) {
        const auto provider = adopt(CGDataProviderCreateWithData(&pixel, pixel.bytes.data(), 4,
            [](void* info, const void*, std::size_t) { static_cast<Pixel*>(info)->isReleased = true; }));
        const auto space = adopt(CGColorSpaceCreateDeviceRGB());
        const auto image = adopt(CGImageCreate(1, 1, 8, 32, 4, space, kCGImageAlphaPremultipliedLast,
            provider.get(), nullptr, false, kCGRenderingIntentDefault));
        CGContextDrawImage(canvas.context(), CGRectMake(0, 0, 1, 1), image);
        CGContextDrawImage(canvas.context(), CGRectMake(0, 0, 1, 1), image);
    };
    Pixel red{{255, 0, 0, 255}};
    draw(red);
    EXPECT_TRUE(red.isReleased);
    EXPECT_EQ(canvas.pixel(0, 0), kRed);

    // The next image may well lie at the same address.
    Pixel green{{0, 255, 0, 255}};
    draw(green);
    EXPECT_TRUE(green.isReleased);
    EXPECT_EQ(canvas.pixel(0, 0), kGreen);
}

TEST(CGContextDrawImage, DrawsNothingForNullAndEmptyRectangles)
{
    Canvas canvas(1, 1);
    CGContextDrawImage(canvas.context(), CGRectMake(0, 0, 1, 1), nullptr);
    CGContextDrawImage(canvas.context(), CGRectMake(0, 0, 0, 1), fourColors().get());
    CGContextDrawImage(canvas.context(), CGRectNull, fourColors().get());
    EXPECT_COVERAGE(canvas, ".");
}
