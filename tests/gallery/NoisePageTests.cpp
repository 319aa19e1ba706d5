#include "GalleryPictures.h"

#include <AppKit/NSBitmapImageRep.h>
#include <Foundation/NSData.h>
#include <KorvidAppKit/ZRNoise.h>

#include <array>
#include <gtest/gtest.h>

namespace {

using RGB = std::array<int, 3>;

/// The background, "zel-button-bg", blended towards a colour: components are truncated, not rounded.
RGB tinted(float noise, const RGB& color)
{
    constexpr RGB ground{0x10, 0x12, 0x2a};
    RGB result{};
    for (std::size_t i = 0; i < result.size(); ++i)
        result[i] = static_cast<int>(ground[i] + static_cast<double>(noise) * (color[i] - ground[i]));
    return result;
}

} // namespace

TEST(NoisePage, ShowsTheNoiseOfEachSquareSampleForSample)
{
    const auto picture = NSBitmapImageRep::initWithData(
        NSData::dataWithContentsOfFile(NSString(GalleryPictures::shared().file("noise@2x.png"))).get());
    ASSERT_EQ(picture->pixelsWide(), 2 * (24 + 376 + 24));
    ASSERT_EQ(picture->pixelsHigh(), 2 * (24 + 376 + 24));

    const struct {
        NSInteger left, top; ///< in pixels
        float cells;
        std::int32_t octaves;
        RGB color;
    } squares[] = {
        {48, 48, 3, 1, {0x01, 0xda, 0xfd}},
        {440, 48, 8, 1, {0xa9, 0xe9, 0x01}},
        {48, 440, 3, 6, {0xfb, 0x7f, 0x15}},
        {440, 440, 8, 6, {0xff, 0xff, 0xff}},
    };
    for (const auto& square : squares) {
        // Outside the round corners, down to the caption.
        for (NSInteger row = 20; row < 360 - 64; row += 7) {
            for (NSInteger column = 20; column < 340; ++column) {
                const unsigned char* pixel = picture->bitmapData()
                    + (square.top + row) * picture->bytesPerRow() + 4 * (square.left + column);
                const float step = square.cells / 360;
                const float noise = perlin2d(
                    static_cast<float>(column) * step, static_cast<float>(row) * step, 1, square.octaves);
                ASSERT_EQ((RGB{pixel[0], pixel[1], pixel[2]}), tinted(noise, square.color))
                    << square.left << " " << square.top << ": " << column << " " << row;
            }
        }
    }
}
