#include "AppKit/PixelLayout.h"

#include <gtest/gtest.h>

TEST(PixelLayout, PremultipliesToTheNearestByte)
{
    for (int alpha = 0; alpha <= 255; ++alpha)
        for (int value = 0; value <= 255; ++value)
            ASSERT_EQ(premultiplied(value, alpha), (2 * value * alpha + 255) / 510);
}

TEST(PixelLayout, UnpremultipliesToTheNearestByte)
{
    for (int alpha = 1; alpha <= 255; ++alpha)
        for (int value = 0; value <= alpha; ++value)
            ASSERT_EQ(unpremultiplied(value, alpha), (2 * value * 255 + alpha) / (2 * alpha));
    EXPECT_EQ(unpremultiplied(200, 0), 0);
    EXPECT_EQ(unpremultiplied(200, 100), 255) << "more colour than alpha";
}

TEST(PixelLayout, PremultipliedValuesRoundTripExactly)
{
    for (int alpha = 0; alpha <= 255; ++alpha)
        for (int value = 0; value <= alpha; ++value)
            ASSERT_EQ(premultiplied(unpremultiplied(value, alpha), alpha), value) << alpha;
}

TEST(PixelLayout, LocatesComponentsInEveryFormat)
{
    const std::uint8_t pixel[] = {10, 20, 30, 40};
    const auto read = [&](CGPixelFormat format) {
        const PixelLayout layout = PixelLayout::of(format);
        return std::array<int, 4>{layout.colorOf(pixel, 0), layout.colorOf(pixel, 1),
            layout.colorOf(pixel, 2), layout.alphaOf(pixel)};
    };
    using Pixel = std::array<int, 4>;
    EXPECT_EQ(read(CGPixelFormat::RGBAPremultiplied), (Pixel{10, 20, 30, 40}));
    EXPECT_EQ(read(CGPixelFormat::RGBAStraight), (Pixel{10, 20, 30, 40}));
    EXPECT_EQ(read(CGPixelFormat::ARGBPremultiplied), (Pixel{20, 30, 40, 10}));
    EXPECT_EQ(read(CGPixelFormat::ARGBStraight), (Pixel{20, 30, 40, 10}));
    EXPECT_EQ(read(CGPixelFormat::RGBX), (Pixel{10, 20, 30, 255}));
    EXPECT_EQ(read(CGPixelFormat::XRGB), (Pixel{20, 30, 40, 255}));
    EXPECT_EQ(read(CGPixelFormat::RGB), (Pixel{10, 20, 30, 255}));
    EXPECT_EQ(read(CGPixelFormat::Gray), (Pixel{10, 10, 10, 255}));
    EXPECT_EQ(read(CGPixelFormat::Alpha), (Pixel{0, 0, 0, 10}));
    EXPECT_EQ(read(CGPixelFormat::Mask), (Pixel{0, 0, 0, 245}));
}
