// The gallery in a real window of a real X server.

#include "GalleryPictures.h"
#include "support/VirtualDisplay.h"

#include <AppKit/NSBitmapImageRep.h>
#include <Foundation/NSData.h>
#include <gtest/gtest.h>

namespace {

/// A PNG file of opaque pixels, as a screen would show it.
ScreenPixels pixelsOfPicture(const std::string& path)
{
    const auto picture = NSBitmapImageRep::initWithData(NSData::dataWithContentsOfFile(NSString(path)).get());
    if (!picture)
        return {};
    ScreenPixels pixels{static_cast<int>(picture->pixelsWide()), static_cast<int>(picture->pixelsHigh()), {}};
    for (int row = 0; row < pixels.height; ++row) {
        const unsigned char* at = picture->bitmapData() + row * picture->bytesPerRow();
        for (int column = 0; column < pixels.width; ++column, at += 4)
            pixels.values.push_back(static_cast<std::uint32_t>(at[0] << 16 | at[1] << 8 | at[2]));
    }
    return pixels;
}

int countDifferences(const ScreenPixels& a, const ScreenPixels& b)
{
    int count = 0;
    for (std::size_t i = 0; i < a.values.size(); ++i)
        count += a.values[i] != b.values[i];
    return count;
}

class GalleryWindowAtScale : public testing::TestWithParam<int> { };

} // namespace

TEST_P(GalleryWindowAtScale, ShowsThePicturesPixelsAndExitsWhenItIsClosed)
{
    const int scale = GetParam();
    const auto expected =
        pixelsOfPicture(GalleryPictures::shared().file(scale == 1 ? "gallery.png" : "gallery@2x.png"));
    ASSERT_GT(expected.width, 0);

    VirtualDisplay display;
    BackgroundProcess gallery(
        {KORVID_GALLERY, "--still", "--appearance", "dark"}, display.environment(scale));
    const auto window = display.waitForWindow("KorvidAppKit Gallery");
    ASSERT_TRUE(window.has_value());
    const auto seen = display.waitForPixels(*window, expected);
    ASSERT_EQ(seen.width, expected.width);
    ASSERT_EQ(seen.height, expected.height);
    EXPECT_EQ(countDifferences(seen, expected), 0);

    EXPECT_FALSE(gallery.waitForExit(0).has_value());
    display.requestClose(*window);
    EXPECT_EQ(gallery.waitForExit(20), 0);
}

TEST(GalleryWindow, ShowsOnlyTheNamedPage)
{
    const auto expected = pixelsOfPicture(GalleryPictures::shared().file("paths.png"));
    VirtualDisplay display;
    const BackgroundProcess gallery(
        {KORVID_GALLERY, "--still", "--page", "paths", "--appearance", "dark"}, display.environment(1));
    const auto window = display.waitForWindow("KorvidAppKit Gallery");
    ASSERT_TRUE(window.has_value());
    const auto seen = display.waitForPixels(*window, expected);
    ASSERT_EQ(seen.width, expected.width);
    ASSERT_EQ(seen.height, expected.height);
    EXPECT_EQ(countDifferences(seen, expected), 0);
}

INSTANTIATE_TEST_SUITE_P(All, GalleryWindowAtScale, testing::Values(1, 2));
