#include "support/Describe.h"
#include "support/Numbers.h"

#include <KorvidAppKit/ZRShapes.h>

#include <gtest/gtest.h>
#include <limits>

namespace {

/// The path of a rectangle with corners at (10, 20) and (50, 50).
RetainPtr<const CGPath> rounded(std::uint32_t cornerMask, CGFloat radius)
{
    return adopt(ZRCreateRoundedRectPath(cornerMask, CGRectMake(10, 20, 40, 30), radius));
}

RetainPtr<const CGPath> rounded(std::uint32_t cornerMask, CGRect rect, CGFloat radius)
{
    return adopt(ZRCreateRoundedRectPath(cornerMask, rect, radius));
}

constexpr char kPlain[] = "M 10 20 L 10 50 L 50 50 L 50 20 Z";

} // namespace

// The control points of a quarter circle of radius 6 are 6 x 0.552285 = 3.313708 from its ends.
TEST(RoundedRectPath, BitOneRoundsTheCornerOfLeastXAndGreatestY)
{
    EXPECT_EQ(describe(rounded(1, 6)),
        "M 10 20 L 10 44 L 10 44 C 10 47.313708 12.686292 50 16 50 L 50 50 L 50 20 Z");
}

TEST(RoundedRectPath, BitTwoRoundsTheCornerOfGreatestXAndY)
{
    EXPECT_EQ(describe(rounded(2, 6)),
        "M 10 20 L 10 50 L 44 50 L 44 50 C 47.313708 50 50 47.313708 50 44 L 50 20 Z");
}

TEST(RoundedRectPath, BitFourRoundsTheCornerOfGreatestXAndLeastY)
{
    EXPECT_EQ(describe(rounded(4, 6)),
        "M 10 20 L 10 50 L 50 50 L 50 26 L 50 26 C 50 22.686292 47.313708 20 44 20 Z");
}

TEST(RoundedRectPath, BitEightRoundsTheCornerOfLeastXAndYWhereThePathStarts)
{
    EXPECT_EQ(describe(rounded(8, 6)),
        "M 16 20 L 16 20 C 12.686292 20 10 22.686292 10 26 L 10 50 L 50 50 L 50 20 Z");
}

TEST(RoundedRectPath, FifteenRoundsAllFour)
{
    EXPECT_EQ(describe(rounded(kZRCornerAll, 6)),
        "M 16 20 L 16 20 C 12.686292 20 10 22.686292 10 26"
        " L 10 44 L 10 44 C 10 47.313708 12.686292 50 16 50"
        " L 44 50 L 44 50 C 47.313708 50 50 47.313708 50 44"
        " L 50 26 L 50 26 C 50 22.686292 47.313708 20 44 20 Z");
}

TEST(RoundedRectPath, CornersHaveNamesForTheirBits)
{
    EXPECT_EQ(describe(rounded(kZRCornerMinXMaxY | kZRCornerMaxXMinY, 6)), describe(rounded(1 | 4, 6)));
    EXPECT_EQ(describe(rounded(kZRCornerMaxXMaxY | kZRCornerMinXMinY, 6)), describe(rounded(2 | 8, 6)));
}

TEST(RoundedRectPath, OtherBitsAreIgnored)
{
    EXPECT_EQ(describe(rounded(0xfffffff0, 6)), kPlain);
    EXPECT_EQ(describe(rounded(0xfffffff2, 6)), describe(rounded(2, 6)));
}

TEST(RoundedRectPath, WithoutCornersOrRadiusIsFourLinesFromTheCornerOfLeastXAndY)
{
    EXPECT_EQ(describe(rounded(0, 6)), kPlain);
    for (const CGFloat radius : {0.0, -0.0, -6.0, kNaN, -kInfinity})
        EXPECT_EQ(describe(rounded(15, radius)), kPlain);
}

// Half the longer side is 20 and half the height 5. The arcs have a radius of 20, and the sides of least and
// greatest x run from the end of one arc back to the start of the next.
TEST(RoundedRectPath, ARadiusIsClampedToHalfTheLongerSide)
{
    constexpr char kExpected[] = "M 20 0 L 20 0 C 8.954305 0 0 8.954305 0 20"
                                 " L 0 -10 L 0 -10 C 0 1.045695 8.954305 10 20 10"
                                 " L 20 10 L 20 10 C 31.045695 10 40 1.045695 40 -10"
                                 " L 40 20 L 40 20 C 40 8.954305 31.045695 0 20 0 Z";
    const CGRect lying = CGRectMake(0, 0, 40, 10);
    for (const CGFloat radius : {20.0, 20.5, 100.0, kInfinity})
        EXPECT_EQ(describe(rounded(15, lying, radius)), kExpected) << radius;
    EXPECT_NE(describe(rounded(15, lying, 19.5)), kExpected);

    const CGRect upright = CGRectMake(0, 0, 10, 40);
    EXPECT_EQ(describe(rounded(15, upright, 100)), describe(rounded(15, upright, 20)));
    EXPECT_NE(describe(rounded(15, upright, 20)), describe(rounded(15, upright, 5)));
}

TEST(RoundedRectPath, ASquareRoundedByHalfItsSideIsACircle)
{
    EXPECT_EQ(describe(rounded(15, CGRectMake(0, 0, 20, 20), 10)),
        "M 10 0 L 10 0 C 4.477153 0 0 4.477153 0 10 L 0 10 L 0 10 C 0 15.522847 4.477153 20 10 20"
        " L 10 20 L 10 20 C 15.522847 20 20 15.522847 20 10 L 20 10 L 20 10 C 20 4.477153 15.522847 0 10 0 "
        "Z");
}

TEST(RoundedRectPath, OfAnEmptyRectangleHasAllElements)
{
    EXPECT_EQ(describe(rounded(15, CGRectMake(3, 4, 0, 0), 6)), "M 3 4 L 3 4 L 3 4 L 3 4 Z");
    EXPECT_EQ(describe(rounded(0, CGRectMake(3, 4, 0, 5), 6)), "M 3 4 L 3 9 L 3 9 L 3 4 Z");
}

TEST(RoundedRectPath, DoesNotStandardizeNegativeSizes)
{
    EXPECT_EQ(describe(rounded(15, CGRectMake(50, 50, -40, -30), 6)), "M 50 50 L 50 20 L 10 20 L 10 50 Z");
    // The height limits the radius, which still points towards greater x.
    EXPECT_EQ(describe(rounded(1, CGRectMake(50, 0, -40, 8), 6)),
        "M 50 0 L 50 4 L 50 4 C 50 6.209139 51.790861 8 54 8 L 10 8 L 10 0 Z");
}

TEST(RoundedRectPath, IsEmptyWhenACornerIsNotFinite)
{
    constexpr CGFloat kLargest = std::numeric_limits<CGFloat>::max();
    const CGRect rects[]{CGRectNull, CGRectMake(kNaN, 0, 4, 4), CGRectMake(0, kNaN, 4, 4),
        CGRectMake(0, 0, kNaN, 4), CGRectMake(0, 0, 4, kInfinity), CGRectMake(kLargest, 0, kLargest, 4)};
    for (const CGRect& rect : rects)
        EXPECT_EQ(describe(rounded(15, rect, 6)), "") << describe(rect);
}

TEST(RoundedRectPath, IsImmutable)
{
    const auto path = rounded(15, 6);
    EXPECT_EQ(adopt(CGPathCreateCopy(path)).get(), path) << "only a mutable path is copied";
}
