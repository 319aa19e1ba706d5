#include "GalleryPictures.h"

#include <gtest/gtest.h>
#include <numbers>

// In pictures the marks have completed 0.62 of their round.

namespace {

constexpr double kRounds = 0.62;
/// The lying capsule, 304 x 100 at (36, 232) of the card: of its outline, the straight side of least y and
/// one end are behind the mark, the rest is how far it has come on the side of greatest y.
constexpr double kLying = 2 * 204 + 100 * std::numbers::pi;
constexpr double kMarkX = 36 + 50 + kRounds * kLying - 204 - 50 * std::numbers::pi;
constexpr double kLyingY = 232 + 100;

constexpr Components kPageGround{0x10, 0x12, 0x2a, 255};

} // namespace

TEST(OutlinePage, MarksFollowTheProgressOfTheRound)
{
    for (const int scale : {1, 2}) {
        const CardPicture card("outline", scale);
        EXPECT_EQ(card.at(kMarkX, kLyingY), (Components{0x01, 0xda, 0xfd, 255}));
        EXPECT_EQ(card.at(kMarkX + 6, kLyingY), (Components{0x01, 0xda, 0xfd, 255}));
        EXPECT_EQ(card.at(kMarkX + 9, kLyingY + 3), kPageGround);
        // Upright, 80 x 160 at (36, 36): likewise down the side of greatest x.
        const double upright = 2 * 80 + 80 * std::numbers::pi;
        const double down = kRounds * upright - 80 - 40 * std::numbers::pi;
        EXPECT_EQ(card.at(36 + 80, 36 + 120 - down), (Components{0xfb, 0x7f, 0x15, 255}));
        EXPECT_EQ(card.at(36 + 80 + 3, 36 + 120 - down - 9), kPageGround);
    }
}

TEST(OutlinePage, TailsFadeSmoothlyAndNarrowTowardsTheirEnds)
{
    const CardPicture card("outline", 2);
    // From the mark back along the straight side, which ends at 86.
    int lastGreen = card.at(kMarkX, kLyingY)[1];
    CGFloat lastHeight = 2 * 7;
    for (CGFloat x = kMarkX - 8; x > 88; x -= 0.5) {
        SCOPED_TRACE(x);
        const int green = card.at(x, kLyingY)[1];
        EXPECT_LE(green, lastGreen);
        EXPECT_LE(lastGreen - green, 8) << "no steps";
        lastGreen = green;
        CGFloat height = 0;
        for (CGFloat y = kLyingY - 8; y < kLyingY + 8; y += 0.5)
            height += card.at(x, y) == kPageGround ? 0 : 0.5;
        EXPECT_LE(height, lastHeight) << "no beads";
        EXPECT_LE(lastHeight - height, 1);
        lastHeight = height;
    }
    EXPECT_LT(lastGreen, 0xb8);
    EXPECT_LE(lastHeight, 10);
    EXPECT_GE(lastHeight, 3);
}
