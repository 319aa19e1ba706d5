#include <CoreGraphics/CGGeometry.h>

#include "support/Describe.h"

#include <gtest/gtest.h>
#include <random>

namespace {

constexpr CGFloat kInfinity = std::numeric_limits<CGFloat>::infinity();
constexpr CGFloat kNaN = std::numeric_limits<CGFloat>::quiet_NaN();

/// (2, 3) to (12, 8).
constexpr CGRect kRect = CGRectMake(2, 3, 10, 5);
/// The same, given from its other corner.
constexpr CGRect kBackwards = CGRectMake(12, 8, -10, -5);

/// Rectangles with coordinates in tenths, so that sums are rounded, some given backwards.
CGRect randomRect(std::mt19937& random)
{
    std::uniform_int_distribution tenths(-100, 100);
    return CGRectMake(
        tenths(random) / 10.0, tenths(random) / 10.0, tenths(random) / 10.0, tenths(random) / 10.0);
}

TEST(CGGeometry, AnswersEdgesMiddlesAndSides)
{
    for (const CGRect& rect : {kRect, kBackwards}) {
        EXPECT_EQ(CGRectGetMinX(rect), 2);
        EXPECT_EQ(CGRectGetMidX(rect), 7);
        EXPECT_EQ(CGRectGetMaxX(rect), 12);
        EXPECT_EQ(CGRectGetMinY(rect), 3);
        EXPECT_EQ(CGRectGetMidY(rect), 5.5);
        EXPECT_EQ(CGRectGetMaxY(rect), 8);
        EXPECT_EQ(CGRectGetWidth(rect), 10);
        EXPECT_EQ(CGRectGetHeight(rect), 5);
    }
}

TEST(CGGeometry, MakesAndComparesPointsAndSizes)
{
    EXPECT_TRUE(CGPointEqualToPoint(CGPointMake(0, 0), CGPointZero));
    EXPECT_FALSE(CGPointEqualToPoint(CGPointMake(1, 2), CGPointMake(1, 3)));
    EXPECT_FALSE(CGPointEqualToPoint(CGPointMake(1, 2), CGPointMake(0, 2)));
    EXPECT_TRUE(CGSizeEqualToSize(CGSizeMake(0, 0), CGSizeZero));
    EXPECT_FALSE(CGSizeEqualToSize(CGSizeMake(1, 2), CGSizeMake(1, -2)));
    EXPECT_FALSE(CGSizeEqualToSize(CGSizeMake(1, 2), CGSizeMake(2, 2)));
    EXPECT_EQ(describe(CGRectMake(1, 2, -3, 4)), "1 2 -3 4");
}

TEST(CGRectStandardize, TurnsNegativeSidesRound)
{
    EXPECT_EQ(describe(CGRectStandardize(kBackwards)), "2 3 10 5");
    EXPECT_EQ(describe(CGRectStandardize(CGRectMake(0, 0, 4, -6))), "0 -6 4 6");
    EXPECT_EQ(describe(CGRectStandardize(CGRectNull)), "null");
    EXPECT_EQ(describe(CGRectStandardize(CGRectInfinite)), "infinite");
}

TEST(CGRectEqualToRect, ComparesEdges)
{
    EXPECT_TRUE(CGRectEqualToRect(kRect, kBackwards));
    EXPECT_FALSE(CGRectEqualToRect(kRect, CGRectMake(2, 3, 10, 6)));
    EXPECT_FALSE(CGRectEqualToRect(kRect, CGRectMake(2, 4, 10, 5)));
    EXPECT_TRUE(CGRectEqualToRect(CGRectNull, CGRectNull));
    EXPECT_FALSE(CGRectEqualToRect(CGRectNull, CGRectZero));
    EXPECT_FALSE(CGRectEqualToRect(CGRectMake(kNaN, 0, 1, 1), CGRectMake(kNaN, 0, 1, 1)));
}

TEST(CGRectIsEmpty, IsTrueForASideOfZeroAndForNull)
{
    EXPECT_TRUE(CGRectIsEmpty(CGRectZero));
    EXPECT_TRUE(CGRectIsEmpty(CGRectMake(1, 1, 0, 5)));
    EXPECT_TRUE(CGRectIsEmpty(CGRectMake(1, 1, 5, 0)));
    EXPECT_TRUE(CGRectIsEmpty(CGRectNull));
    EXPECT_FALSE(CGRectIsEmpty(kBackwards));
    EXPECT_FALSE(CGRectIsEmpty(CGRectInfinite));
}

TEST(CGRectIsNull, IsTrueForNullOnly)
{
    EXPECT_TRUE(CGRectIsNull(CGRectNull));
    EXPECT_FALSE(CGRectIsNull(CGRectZero));
    EXPECT_FALSE(CGRectIsNull(CGRectInfinite));
    EXPECT_FALSE(CGRectIsNull(CGRectMake(kNaN, kNaN, 0, 0)));
}

TEST(CGRectIsInfinite, IsTrueForInfiniteOnly)
{
    EXPECT_TRUE(CGRectIsInfinite(CGRectInfinite));
    EXPECT_FALSE(CGRectIsInfinite(CGRectNull));
    EXPECT_FALSE(CGRectIsInfinite(kRect));
}

TEST(CGRectInset, MovesEachEdgeInward)
{
    EXPECT_EQ(describe(CGRectInset(kRect, 1, 2)), "3 5 8 1");
    EXPECT_EQ(describe(CGRectInset(kRect, -1, -2)), "1 1 12 9");
    EXPECT_EQ(describe(CGRectInset(kBackwards, 1, 2)), "3 5 8 1");
}

TEST(CGRectInset, KeepsASideOfExactlyZeroAndGivesNullBelow)
{
    EXPECT_EQ(describe(CGRectInset(kRect, 5, 2.5)), "7 5.5 0 0");
    EXPECT_EQ(describe(CGRectInset(kRect, 5.5, 0)), "null");
    EXPECT_EQ(describe(CGRectInset(kRect, 0, 3)), "null");
    EXPECT_EQ(describe(CGRectInset(CGRectNull, -5, -5)), "null");
}

TEST(CGRectOffset, MovesTheOriginAndKeepsTheSize)
{
    EXPECT_EQ(describe(CGRectOffset(kRect, 1, -2)), "3 1 10 5");
    EXPECT_EQ(describe(CGRectOffset(kBackwards, 1, -2)), "13 6 -10 -5");
    EXPECT_EQ(describe(CGRectOffset(CGRectNull, 1, 1)), "null");
}

TEST(CGRectIntegral, GrowsToWholeNumbers)
{
    EXPECT_EQ(describe(CGRectIntegral(CGRectMake(0.5, 0.5, 1, 1))), "0 0 2 2");
    EXPECT_EQ(describe(CGRectIntegral(CGRectMake(-0.5, 1.25, 0.25, 0))), "-1 1 1 1");
    EXPECT_EQ(describe(CGRectIntegral(CGRectMake(2.5, 2.5, -1, -1))), "1 1 2 2");
    EXPECT_EQ(describe(CGRectIntegral(kRect)), "2 3 10 5");
    EXPECT_EQ(describe(CGRectIntegral(CGRectNull)), "null");
    EXPECT_EQ(describe(CGRectIntegral(CGRectInfinite)), "infinite");
}

TEST(CGRectUnion, EnclosesBoth)
{
    EXPECT_EQ(describe(CGRectUnion(kRect, CGRectMake(0, 4, 3, 10))), "0 3 12 11");
    EXPECT_EQ(describe(CGRectUnion(kBackwards, CGRectMake(20, 20, 1, 1))), "2 3 19 18");
    EXPECT_EQ(describe(CGRectUnion(kRect, CGRectZero)), "0 0 12 8") << "an empty rectangle has a place";
}

TEST(CGRectUnion, WithNullGivesTheOther)
{
    EXPECT_EQ(describe(CGRectUnion(kRect, CGRectNull)), "2 3 10 5");
    EXPECT_EQ(describe(CGRectUnion(CGRectNull, kBackwards)), "2 3 10 5");
    EXPECT_EQ(describe(CGRectUnion(CGRectNull, CGRectNull)), "null");
    EXPECT_EQ(describe(CGRectUnion(CGRectInfinite, kRect)), "infinite");
}

TEST(CGRectIntersection, IsWhatBothHave)
{
    EXPECT_EQ(describe(CGRectIntersection(kRect, CGRectMake(5, 0, 100, 5))), "5 3 7 2");
    EXPECT_EQ(describe(CGRectIntersection(kBackwards, CGRectMake(6, 6, -2, -2))), "4 4 2 2");
    EXPECT_EQ(describe(CGRectIntersection(CGRectInfinite, kRect)), "2 3 10 5");
}

TEST(CGRectIntersection, OfTouchingRectanglesHasASideOfZero)
{
    EXPECT_EQ(describe(CGRectIntersection(kRect, CGRectMake(12, 0, 5, 5))), "12 3 0 2");
    EXPECT_EQ(describe(CGRectIntersection(kRect, CGRectMake(12, 8, 5, 5))), "12 8 0 0");
    EXPECT_FALSE(CGRectIntersectsRect(kRect, CGRectMake(12, 0, 5, 5)));
}

TEST(CGRectIntersection, OfRectanglesApartAndOfNullIsNull)
{
    EXPECT_EQ(describe(CGRectIntersection(kRect, CGRectMake(13, 3, 5, 5))), "null");
    EXPECT_EQ(describe(CGRectIntersection(kRect, CGRectMake(2, -3, 5, 5))), "null");
    EXPECT_EQ(describe(CGRectIntersection(kRect, CGRectNull)), "null");
    EXPECT_EQ(describe(CGRectIntersection(CGRectNull, kRect)), "null");
    EXPECT_EQ(describe(CGRectIntersection(CGRectMake(0, 0, kNaN, 5), kRect)), "null");
}

TEST(CGRectIntersectsRect, NeedsASharedArea)
{
    EXPECT_TRUE(CGRectIntersectsRect(kRect, CGRectMake(11, 7, 5, 5)));
    EXPECT_TRUE(CGRectIntersectsRect(kBackwards, CGRectMake(3, 4, -2, -2)));
    EXPECT_FALSE(CGRectIntersectsRect(kRect, CGRectMake(5, 5, 0, 1))) << "an empty rectangle has no area";
    EXPECT_FALSE(CGRectIntersectsRect(kRect, CGRectMake(2, 8, 5, 5))) << "touching above";
    EXPECT_FALSE(CGRectIntersectsRect(kRect, CGRectMake(-3, 3, 5, 5))) << "touching on the left";
    EXPECT_FALSE(CGRectIntersectsRect(kRect, CGRectNull));
    EXPECT_FALSE(CGRectIntersectsRect(CGRectNull, CGRectNull));
    EXPECT_FALSE(CGRectIntersectsRect(kRect, CGRectMake(3, 4, kNaN, 2)));
}

TEST(CGRectContainsPoint, HoldsTheMinimumEdgesAndNotTheMaximumOnes)
{
    for (const CGRect& rect : {kRect, kBackwards}) {
        EXPECT_TRUE(CGRectContainsPoint(rect, CGPointMake(2, 3)));
        EXPECT_TRUE(CGRectContainsPoint(rect, CGPointMake(11.999, 7.999)));
        EXPECT_FALSE(CGRectContainsPoint(rect, CGPointMake(12, 5)));
        EXPECT_FALSE(CGRectContainsPoint(rect, CGPointMake(5, 8)));
        EXPECT_FALSE(CGRectContainsPoint(rect, CGPointMake(1.999, 5)));
        EXPECT_FALSE(CGRectContainsPoint(rect, CGPointMake(5, 2.999)));
    }
    EXPECT_FALSE(CGRectContainsPoint(CGRectZero, CGPointZero));
    EXPECT_FALSE(CGRectContainsPoint(CGRectNull, CGPointMake(kInfinity, kInfinity)));
    EXPECT_FALSE(CGRectContainsPoint(kRect, CGPointMake(kNaN, 5)));
    EXPECT_TRUE(CGRectContainsPoint(CGRectInfinite, CGPointMake(1e300, -1e300)));
}

TEST(CGRectContainsRect, LetsEdgesCoincide)
{
    EXPECT_TRUE(CGRectContainsRect(kRect, kBackwards));
    EXPECT_TRUE(CGRectContainsRect(kRect, CGRectMake(12, 8, 0, 0)));
    EXPECT_TRUE(CGRectContainsRect(CGRectInfinite, kRect));
    EXPECT_FALSE(CGRectContainsRect(kRect, CGRectMake(2, 3, 10.5, 5)));
    EXPECT_FALSE(CGRectContainsRect(kRect, CGRectMake(1.5, 3, 5, 5)));
    EXPECT_FALSE(CGRectContainsRect(kRect, CGRectMake(2, 2.5, 5, 5)));
    EXPECT_FALSE(CGRectContainsRect(kRect, CGRectMake(2, 3.5, 5, 5)));
    EXPECT_TRUE(CGRectContainsRect(kRect, CGRectNull)) << "adding nothing changes nothing";
    EXPECT_FALSE(CGRectContainsRect(CGRectNull, kRect));
    EXPECT_TRUE(CGRectContainsRect(CGRectNull, CGRectNull));
}

TEST(CGGeometry, UnionAndIntersectionKeepTheLawsOfSetsExactly)
{
    std::mt19937 random(1);
    for (int trial = 0; trial < 2000; ++trial) {
        const CGRect a = randomRect(random);
        const CGRect b = randomRect(random);
        SCOPED_TRACE(describe(a) + " | " + describe(b));
        const CGRect both = CGRectUnion(a, b);
        const CGRect common = CGRectIntersection(a, b);
        EXPECT_TRUE(CGRectEqualToRect(both, CGRectUnion(b, a)));
        EXPECT_TRUE(CGRectEqualToRect(common, CGRectIntersection(b, a)));
        EXPECT_TRUE(CGRectEqualToRect(CGRectUnion(a, a), a));
        EXPECT_TRUE(CGRectEqualToRect(CGRectIntersection(a, a), a));
        EXPECT_TRUE(CGRectEqualToRect(CGRectIntersection(a, CGRectInfinite), a));
        EXPECT_EQ(
            CGRectIntersectsRect(a, b), !CGRectIsEmpty(common) && !CGRectIsEmpty(a) && !CGRectIsEmpty(b));
        if (CGRectContainsRect(a, b)) {
            EXPECT_TRUE(CGRectEqualToRect(both, a));
            EXPECT_TRUE(CGRectEqualToRect(common, b));
        }
    }
}

TEST(CGGeometry, NumbersThatAreNoneDoNotCrash)
{
    const CGFloat odd[] = {kNaN, kInfinity, -kInfinity, DBL_MAX, -DBL_MAX, 0, -0.0, 1};
    for (const CGFloat x : odd) {
        for (const CGFloat width : odd) {
            const CGRect rect = CGRectMake(x, width, width, x);
            (void)CGRectStandardize(rect);
            (void)CGRectIntegral(rect);
            (void)CGRectInset(rect, width, x);
            (void)CGRectUnion(rect, kRect);
            (void)CGRectIntersection(rect, kRect);
            EXPECT_FALSE(CGRectContainsPoint(rect, CGPointMake(kNaN, kNaN)));
            EXPECT_FALSE(CGRectIntersectsRect(rect, CGRectMake(kNaN, kNaN, kNaN, kNaN)));
        }
    }
}

} // namespace
