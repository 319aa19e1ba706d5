#include "GalleryPictures.h"
#include "Page.h"

#include <gtest/gtest.h>

namespace {

/// A picture whose coordinates are those of the card.
class Card {
public:
    explicit Card(int scale)
        : _picture(GalleryPictures::shared().page("badges", scale))
    {
    }
    Components at(CGFloat x, CGFloat y) const { return _picture.at(kGalleryMargin + x, kGalleryMargin + y); }

private:
    Picture _picture;
};

constexpr Components kWhite{255, 255, 255, 255};

} // namespace

TEST(BadgePage, HasBadgesOfTheSameSizeInPointsAtBothScales)
{
    for (const int scale : {1, 2}) {
        const Card card(scale);
        // Four times the badge for one digit at 14 points: 24 x 4 high, with an outline of 2 x 4 along 48.
        for (const CGFloat inside : {45.0, 48.0, 50.0}) {
            EXPECT_EQ(card.at(282, 112 + inside), kWhite) << inside;
            EXPECT_EQ(card.at(282 + inside, 112), kWhite) << inside;
            EXPECT_EQ(card.at(282 - inside, 112), kWhite) << inside;
        }
        EXPECT_LT(card.at(282, 112 + 43)[0], 200);
        EXPECT_LT(card.at(282, 112 + 53)[0], 50);
        EXPECT_EQ(card.at(282 + 40, 112 - 3), (card.at(282 - 40, 112 - 3))) << "no text so far out";
        // Its shadow darkens the card below it, down to 48 + 5 x 4 + 4 x 4.
        EXPECT_LT(card.at(282, 112 - 60)[2], card.at(282, 112 + 60)[2]);
        EXPECT_EQ(card.at(282, 112 - 86), card.at(282, 112 + 60));
    }
}

TEST(BadgePage, WidensBadgesWithTheirCounts)
{
    const Card card(2);
    const auto whiteToTheRight = [&card](CGFloat x) {
        CGFloat width = 0;
        for (CGFloat right = 0; right < 30; right += 0.5) {
            if (card.at(x + right, 296 + 28) == kWhite)
                width = right;
        }
        return width;
    };
    EXPECT_NEAR(whiteToTheRight(72 + 28), 12.5, 1);
    EXPECT_GT(whiteToTheRight(188 + 28), whiteToTheRight(72 + 28));
    EXPECT_GT(whiteToTheRight(304 + 28), whiteToTheRight(188 + 28) + 5);
}
