#include "support/Describe.h"
#include "support/Numbers.h"

#include <KorvidAppKit/ZRGraphics.h>

#include <cmath>
#include <gtest/gtest.h>

namespace {

/// Upright and lying capsules with half circles of radius 10, straight sides of 80 and an outline of kLength.
constexpr CGRect kUpright{{0, 0}, {20, 100}};
constexpr CGRect kLying{{0, 0}, {100, 20}};
constexpr double kLength = 160 + 20 * kPi;

CGPoint along(CGRect bounds, double t)
{
    return ZRGraphics::sharedGraphics()->pointAlongCapsuleWithBounds(bounds, t);
}

/// The point at a distance along the outline.
std::string at(CGRect bounds, double distance)
{
    return describe(along(bounds, distance / kLength));
}

} // namespace

TEST(PointAlongCapsule, OfUprightBoundsStartsAtTheBottomOfTheSideOfLeastX)
{
    EXPECT_EQ(describe(along(kUpright, 0)), "0 10");
    // A quarter of the outline is still on the first side.
    const CGPoint quarter = along(kUpright, 0.25);
    EXPECT_EQ(describe(quarter), describe(CGPointMake(0, 10 + kLength / 4)));
    EXPECT_EQ(describe(quarter), "0 65.707963");
}

TEST(PointAlongCapsule, OfUprightBoundsRunsUpAroundDownAndAround)
{
    EXPECT_EQ(at(kUpright, 40), "0 50");
    EXPECT_EQ(at(kUpright, 80 + 2.5 * kPi), "2.928932 97.071068"); // an eighth of a turn: 10 - 5√2, 90 + 5√2
    EXPECT_EQ(at(kUpright, 80 + 5 * kPi), "10 100");
    EXPECT_EQ(at(kUpright, 80 + 10 * kPi), "20 90");
    EXPECT_EQ(at(kUpright, 120 + 10 * kPi), "20 50");
    EXPECT_EQ(at(kUpright, 160 + 12.5 * kPi), "17.071068 2.928932");
    EXPECT_EQ(at(kUpright, 160 + 15 * kPi), "10 0");
    EXPECT_EQ(describe(along(kUpright, 1)), "0 10");
}

TEST(PointAlongCapsule, OfLyingBoundsRunsAlongTheLeastYAroundTheLeastXBackAndAround)
{
    EXPECT_EQ(at(kLying, 0), "90 0");
    EXPECT_EQ(at(kLying, 40), "50 0");
    EXPECT_EQ(at(kLying, 80 + 2.5 * kPi), "2.928932 2.928932");
    EXPECT_EQ(at(kLying, 80 + 5 * kPi), "0 10");
    EXPECT_EQ(at(kLying, 80 + 10 * kPi), "10 20");
    EXPECT_EQ(at(kLying, 120 + 10 * kPi), "50 20");
    EXPECT_EQ(at(kLying, 160 + 12.5 * kPi), "97.071068 17.071068");
    EXPECT_EQ(at(kLying, 160 + 15 * kPi), "100 10");
    EXPECT_EQ(describe(along(kLying, 1)), "90 0");
}

TEST(PointAlongCapsule, MovesAtConstantSpeed)
{
    constexpr int kSteps = 1000;
    // The chord of an arc of angle a is about 1 - a²/24 times as long, here at least 1 - 1/45000; less only
    // in a step from a straight side to an arc.
    constexpr double kShortest = 1 - 1e-3;
    for (const CGRect& bounds : {kUpright, kLying, CGRectMake(0, 0, 50, 50)}) {
        const double radius = std::min(bounds.size.width, bounds.size.height) / 2;
        const double length =
            2 * (std::max(bounds.size.width, bounds.size.height) - 2 * radius) + 2 * kPi * radius;
        CGPoint last = along(bounds, 0);
        for (int step = 1; step <= kSteps; ++step) {
            const CGPoint next = along(bounds, double(step) / kSteps);
            const double chord = std::hypot(next.x - last.x, next.y - last.y) / (length / kSteps);
            EXPECT_LE(chord, 1 + 1e-9) << describe(bounds) << " " << step;
            EXPECT_GE(chord, kShortest) << describe(bounds) << " " << step;
            last = next;
        }
    }
}

TEST(PointAlongCapsule, OfUprightBoundsMovesWithTheirOrigin)
{
    EXPECT_EQ(at(CGRectMake(7, -3, 20, 100), 40), "7 47");
    EXPECT_EQ(at(CGRectMake(7, -3, 20, 100), 120 + 10 * kPi), "27 47");
}

// The quarter turn of lying bounds adds x - y of their origin to both coordinates.
TEST(PointAlongCapsule, OfLyingBoundsIsMovedByTheDifferenceOfTheirOriginsCoordinates)
{
    EXPECT_EQ(at(CGRectMake(7, 7, 100, 20), 40), "57 7");
    EXPECT_EQ(at(CGRectMake(7, -3, 100, 20), 40), "67 7");           // (57, -3) moved by 10
    EXPECT_EQ(at(CGRectMake(0, 5, 100, 20), 80 + 5 * kPi), "-5 10"); // (0, 15) moved by -5
}

TEST(PointAlongCapsule, OfASquareIsThatOfALyingCapsule)
{
    const CGRect square = CGRectMake(0, 0, 20, 20);
    EXPECT_EQ(describe(along(square, 0)), "10 0");
    EXPECT_EQ(describe(along(square, 0.25)), "0 10");
    EXPECT_EQ(describe(along(square, 0.5)), "10 20");
    EXPECT_EQ(describe(along(square, 0.75)), "20 10");
    EXPECT_EQ(describe(along(square, 1)), "10 0");
    EXPECT_EQ(describe(along(square, -0.25)), "10 0") << "there is no straight side to continue";
}

TEST(PointAlongCapsule, ContinuesTheFirstSideBelowZeroAndTheLastHalfCircleAboveOne)
{
    EXPECT_EQ(at(kUpright, -15), "0 -5");
    EXPECT_EQ(at(kLying, -15), "105 0");
    EXPECT_EQ(at(kUpright, kLength + 5 * kPi), "10 20");
    EXPECT_EQ(at(kUpright, kLength + 10 * kPi), "20 10");
}

TEST(PointAlongCapsule, OfEmptyBoundsIsTheirOrigin)
{
    for (const double t : {-1.0, 0.0, 0.25, 0.6, 1.0, 2.0, kNaN}) {
        EXPECT_EQ(describe(along(CGRectMake(3, 4, 0, 0), t)), "3 4") << t;
        EXPECT_EQ(describe(along(CGRectMake(3, 4, 0, 10), t)), "3 4") << t;
        EXPECT_EQ(describe(along(CGRectMake(3, 4, 10, 0), t)), "3 4") << t;
        EXPECT_EQ(describe(along(CGRectMake(3, 4, -5, 10), t)), "3 4") << t;
    }
}

TEST(PointAlongCapsule, IsTheStartForATimeThatIsNotFinite)
{
    for (const double t : {kNaN, kInfinity, -kInfinity})
        EXPECT_EQ(describe(along(kUpright, t)), "0 10");
}

TEST(PointAlongCapsule, OfBoundsThatAreNotFiniteIsZero)
{
    const CGRect rects[]{CGRectNull, CGRectMake(kNaN, 0, 4, 4), CGRectMake(0, kNaN, 4, 4),
        CGRectMake(0, 0, kNaN, 4), CGRectMake(0, 0, 4, kNaN), CGRectMake(0, 0, 4, kInfinity)};
    for (const CGRect& rect : rects)
        EXPECT_EQ(describe(along(rect, 0.6)), "0 0") << describe(rect);
}
