#include "GalleryPictures.h"
#include "Page.h"

#include <gtest/gtest.h>
#include <numbers>

// In pictures the first mark has completed 0.62 of its round.

TEST(OutlinePage, FirstMarksFollowTheProgressOfTheRound)
{
    for (const int scale : {1, 2}) {
        const Picture picture = GalleryPictures::shared().page("outline", scale);
        const auto at = [&picture](CGFloat x, CGFloat y) {
            return picture.at(kGalleryMargin + x, kGalleryMargin + y);
        };
        // Lying, 304 x 80: of the outline, the straight side of least y and one end are behind, the rest is
        // how far it has come on the side of greatest y.
        const double lying = 2 * 224 + 80 * std::numbers::pi;
        const double right = 0.62 * lying - 224 - 40 * std::numbers::pi;
        EXPECT_EQ(at(36 + 40 + right, 254 + 80), (Components{0x01, 0xda, 0xfd, 255}));
        EXPECT_EQ(at(36 + 40 + right + 9, 254 + 80 + 3), (Components{0x10, 0x12, 0x2a, 255}));
        // Upright, 80 x 178: likewise down the side of greatest x.
        const double upright = 2 * 98 + 80 * std::numbers::pi;
        const double down = 0.62 * upright - 98 - 40 * std::numbers::pi;
        EXPECT_EQ(at(36 + 80, 36 + 138 - down), (Components{0xfb, 0x7f, 0x15, 255}));
        EXPECT_EQ(at(36 + 80 + 3, 36 + 138 - down - 9), (Components{0x10, 0x12, 0x2a, 255}));
    }
}

TEST(OutlinePage, MarksFadeTowardsTheLast)
{
    const Picture picture = GalleryPictures::shared().page("outline", 2);
    // Back from the first mark of the lying capsule, along its straight side.
    const double lying = 2 * 224 + 80 * std::numbers::pi;
    const double right = 0.62 * lying - 224 - 40 * std::numbers::pi;
    int last = 0x100;
    for (int mark = 0; mark < 9; mark += 2) {
        const CGFloat x = kGalleryMargin + 36 + 40 + right - mark * 0.012 * lying;
        const int green = picture.at(x, kGalleryMargin + 254 + 80)[1];
        EXPECT_LT(green, last) << mark;
        last = green;
    }
}
