#include "Contrast.h"
#include "GalleryPictures.h"

#include <gtest/gtest.h>

namespace {

constexpr Components kWhite{255, 255, 255, 255};

} // namespace

TEST(BadgePage, HasBadgesOfTheSameSizeInPointsAtBothScales)
{
    for (const int scale : {1, 2}) {
        const CardPicture card("badges", scale);
        // Four times the badge for one digit at 14 points: 24 x 4 high, with an outline of 2 x 4 along 48.
        constexpr CGFloat kX = 297, kY = 113;
        for (const CGFloat inside : {45.0, 48.0, 50.0}) {
            EXPECT_EQ(card.at(kX, kY + inside), kWhite) << inside;
            EXPECT_EQ(card.at(kX + inside, kY), kWhite) << inside;
            EXPECT_EQ(card.at(kX - inside, kY), kWhite) << inside;
        }
        EXPECT_LT(card.at(kX, kY + 43)[0], 200);
        EXPECT_LT(card.at(kX, kY + 53)[0], 50);
        EXPECT_EQ(card.at(kX + 40, kY - 3), (card.at(kX - 40, kY - 3))) << "no text so far out";
        // Its shadow darkens the card below it, down to 48 + 5 x 4 + 4 x 4.
        EXPECT_LT(card.at(kX, kY - 60)[2], card.at(kX, kY + 60)[2]);
        EXPECT_EQ(card.at(kX + 30, kY - 86), card.at(kX, kY + 60));
    }
}

TEST(BadgePage, WidensBadgesWithTheirCounts)
{
    const CardPicture card("badges", 2);
    // The badges' centres, four points inside of the icons' corners.
    constexpr CGFloat kY = 274 + 38 - 4;
    const auto whiteToTheRight = [&card](CGFloat iconCentre) {
        const CGFloat x = iconCentre + 38 - 4;
        CGFloat width = 0;
        for (CGFloat right = 0; right < 30; right += 0.5) {
            if (card.at(x + right, kY) == kWhite)
                width = right;
        }
        return width;
    };
    EXPECT_NEAR(whiteToTheRight(71), 12.5, 1);
    EXPECT_GT(whiteToTheRight(184), whiteToTheRight(71));
    EXPECT_GT(whiteToTheRight(297), whiteToTheRight(184) + 5);
}

TEST(BadgePage, TextsAreReadableOnTheBadges)
{
    const CardPicture card("badges", 2);
    const auto contrast = [&](CGFloat x, CGFloat y) {
        const Components pixel = card.at(x, y);
        return contrastRatio({1, 1, 1}, {pixel[0] / 255.0, pixel[1] / 255.0, pixel[2] / 255.0});
    };
    // The ground beside the digit of the largest badge, whose ink is 10 x 4 high; the sheen brightens towards
    // the top.
    for (CGFloat y = 113 - 20; y <= 113 + 20; ++y)
        EXPECT_GE(contrast(297 - 20, y), kReadableContrast) << y;
    // On the first icon, beside "1".
    for (CGFloat y = 308 - 5; y <= 308 + 5; ++y)
        EXPECT_GE(contrast(105 - 6, y), kReadableContrast) << y;
}
