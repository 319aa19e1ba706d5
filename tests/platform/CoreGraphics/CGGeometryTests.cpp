#include <CoreGraphics/CGGeometry.h>

#include "support/Describe.h"
#include "support/Numbers.h"

#include <gtest/gtest.h>
#include <random>

namespace {

/// (2, 3) to (12, 8).
constexpr CGRect kRect = CGRectMake(2, 3, 10, 5);
/// The same edges with negative sizes.
constexpr CGRect kBackwards = CGRectMake(12, 8, -10, -5);

/// Rectangles with coordinates in tenths, so that sums are rounded, some with negative sizes.
CGRect randomRect(std::mt19937& random)
{
    std::uniform_int_distribution tenths(-100, 100);
    return CGRectMake(
        tenths(random) / 10.0, tenths(random) / 10.0, tenths(random) / 10.0, tenths(random) / 10.0);
}

TEST(CGGeometry, ReturnsEdgesMiddlesAndSides)
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

TEST(CGRectStandardize, MakesSizesPositive)
{
    EXPECT_EQ(describe(CGRectStandardize(kBackwards)), "2 3 10 5");
    EXPECT_EQ(describe(CGRectStandardize(CGRectMake(0, 0, 4, -6))), "0 -6 4 6");
    EXPECT_EQ(describe(CGRectStandardize(CGRectNull)), "null");
    EXPECT_EQ(describe(CGRectStandardize(CGRectInfinite)), "infinite");
}

TEST(CGRectStandardize, OfARectangleWithANullOriginIsCGRectNull)
{
    for (const CGRect& rect : {CGRectMake(kInfinity, 2, 3, 4), CGRectMake(1, kInfinity, -3, 4),
             CGRectMake(kInfinity, kInfinity, -kInfinity, 7)}) {
        const CGRect standardized = CGRectStandardize(rect);
        EXPECT_EQ(standardized.origin.x, kInfinity);
        EXPECT_EQ(standardized.origin.y, kInfinity);
        EXPECT_EQ(standardized.size.width, 0);
        EXPECT_EQ(standardized.size.height, 0);
        EXPECT_TRUE(CGRectEqualToRect(rect, CGRectNull));
        EXPECT_TRUE(CGRectEqualToRect(CGRectMake(5, kInfinity, 6, 7), rect));
    }
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

TEST(CGRectInset, PreservesASideOfExactlyZeroAndReturnsNullBelow)
{
    EXPECT_EQ(describe(CGRectInset(kRect, 5, 2.5)), "7 5.5 0 0");
    EXPECT_EQ(describe(CGRectInset(kRect, 5.5, 0)), "null");
    EXPECT_EQ(describe(CGRectInset(kRect, 0, 3)), "null");
    EXPECT_EQ(describe(CGRectInset(CGRectNull, -5, -5)), "null");
}

TEST(CGRectOffset, StandardizesAndMovesTheOrigin)
{
    EXPECT_EQ(describe(CGRectOffset(kRect, 1, -2)), "3 1 10 5");
    EXPECT_EQ(describe(CGRectOffset(kBackwards, 1, -2)), "3 1 10 5");
    EXPECT_EQ(describe(CGRectOffset(CGRectNull, 1, 1)), "null");
}

TEST(CGRectIntegral, RoundsEdgesOutwardToIntegers)
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

TEST(CGRectUnion, WithNullReturnsTheOther)
{
    EXPECT_EQ(describe(CGRectUnion(kRect, CGRectNull)), "2 3 10 5");
    EXPECT_EQ(describe(CGRectUnion(CGRectNull, kBackwards)), "2 3 10 5");
    EXPECT_EQ(describe(CGRectUnion(CGRectNull, CGRectNull)), "null");
    EXPECT_EQ(describe(CGRectUnion(CGRectInfinite, kRect)), "infinite");
}

TEST(CGRectIntersection, ReturnsTheCommonArea)
{
    EXPECT_EQ(describe(CGRectIntersection(kRect, CGRectMake(5, 0, 100, 5))), "5 3 7 2");
    EXPECT_EQ(describe(CGRectIntersection(kBackwards, CGRectMake(6, 6, -2, -2))), "4 4 2 2");
    EXPECT_EQ(describe(CGRectIntersection(CGRectInfinite, kRect)), "2 3 10 5");
}

TEST(CGRectIntersection, OfTouchingRectanglesHasASideOfZero)
{
    EXPECT_EQ(describe(CGRectIntersection(kRect, CGRectMake(12, 0, 5, 5))), "12 3 0 2");
    EXPECT_EQ(describe(CGRectIntersection(kRect, CGRectMake(12, 8, 5, 5))), "12 8 0 0");
}

TEST(CGRectIntersection, OfDisjointRectanglesAndOfNullIsNull)
{
    EXPECT_EQ(describe(CGRectIntersection(kRect, CGRectMake(13, 3, 5, 5))), "null");
    EXPECT_EQ(describe(CGRectIntersection(kRect, CGRectMake(2, -3, 5, 5))), "null");
    EXPECT_EQ(describe(CGRectIntersection(kRect, CGRectNull)), "null");
    EXPECT_EQ(describe(CGRectIntersection(CGRectNull, kRect)), "null");
    EXPECT_EQ(describe(CGRectIntersection(CGRectMake(0, 0, kNaN, 5), kRect)), "null");
}

TEST(CGRectIntersectsRect, IsTrueWhenTheIntersectionIsNotNull)
{
    struct Case {
        CGRect rect;
        bool intersects;
        const char* name;
    };
    for (const auto& [rect, intersects, name] : {
             Case{CGRectMake(11, 7, 5, 5), true, "a shared area"},
             Case{CGRectMake(12, 0, 5, 5), true, "touching on the right"},
             Case{CGRectMake(-3, 3, 5, 5), true, "touching on the left"},
             Case{CGRectMake(2, 8, 5, 5), true, "touching above"},
             Case{CGRectMake(12, 8, 5, 5), true, "touching at a corner"},
             Case{CGRectMake(5, 5, 0, 1), true, "an empty rectangle inside"},
             Case{CGRectMake(12.5, 3, 5, 5), false, "apart in x"},
             Case{CGRectMake(2, -3, 5, 5.5), false, "apart in y"},
             Case{CGRectMake(13, 5, 0, 0), false, "an empty rectangle apart"},
             Case{CGRectNull, false, "null"},
             Case{CGRectMake(3, 4, kNaN, 2), false, "NaN"},
         }) {
        SCOPED_TRACE(name);
        for (const CGRect& other : {kRect, kBackwards}) {
            EXPECT_EQ(CGRectIntersectsRect(other, rect), intersects);
            EXPECT_EQ(CGRectIntersectsRect(rect, other), intersects);
            EXPECT_EQ(CGRectIsNull(CGRectIntersection(other, rect)), !intersects);
        }
    }
    EXPECT_FALSE(CGRectIntersectsRect(CGRectNull, CGRectNull));
}

/// Both parts of kRect, or of the same rectangle with negative sizes, as text.
std::string divided(CGFloat amount, CGRectEdge edge, CGRect rect = kRect)
{
    CGRect slice = CGRectZero;
    CGRect remainder = CGRectZero;
    CGRectDivide(rect, &slice, &remainder, amount, edge);
    return describe(slice) + " | " + describe(remainder);
}

TEST(CGRectDivide, CutsASliceOffTheEdge)
{
    EXPECT_EQ(divided(3, CGRectMinXEdge), "2 3 3 5 | 5 3 7 5");
    EXPECT_EQ(divided(3, CGRectMaxXEdge), "9 3 3 5 | 2 3 7 5");
    EXPECT_EQ(divided(2, CGRectMinYEdge), "2 3 10 2 | 2 5 10 3");
    EXPECT_EQ(divided(2, CGRectMaxYEdge), "2 6 10 2 | 2 3 10 3");
    EXPECT_EQ(divided(3, CGRectMaxXEdge, kBackwards), "9 3 3 5 | 2 3 7 5");
}

TEST(CGRectDivide, LimitsTheAmountToTheRectangle)
{
    EXPECT_EQ(divided(10.5, CGRectMinXEdge), "2 3 10 5 | 12 3 0 5");
    EXPECT_EQ(divided(kInfinity, CGRectMaxYEdge), "2 3 10 5 | 2 3 10 0");
    for (const CGFloat nothing : {0.0, -1.0, -kInfinity, kNaN}) {
        EXPECT_EQ(divided(nothing, CGRectMinXEdge), "2 3 0 5 | 2 3 10 5");
        EXPECT_EQ(divided(nothing, CGRectMaxYEdge), "2 8 10 0 | 2 3 10 5");
    }
}

TEST(CGRectDivide, ReturnsNullForNullAndAcceptsNullPointers)
{
    EXPECT_EQ(divided(1, CGRectMinXEdge, CGRectNull), "null | null");
    CGRect slice = CGRectZero;
    CGRectDivide(kRect, &slice, nullptr, 1, CGRectMinXEdge);
    EXPECT_EQ(describe(slice), "2 3 1 5");
    CGRect remainder = CGRectZero;
    CGRectDivide(kRect, nullptr, &remainder, 1, CGRectMinXEdge);
    EXPECT_EQ(describe(remainder), "3 3 9 5");
}

TEST(CGRectContainsPoint, IncludesTheMinimumEdgesAndExcludesTheMaximumOnes)
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

TEST(CGRectContainsRect, IsTrueWhenEdgesCoincide)
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

TEST(CGGeometry, UnionAndIntersectionObeyTheLawsOfSetsExactly)
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
        EXPECT_EQ(CGRectIntersectsRect(a, b), !CGRectIsNull(common));
        if (CGRectContainsRect(a, b)) {
            EXPECT_TRUE(CGRectEqualToRect(both, a));
            EXPECT_TRUE(CGRectEqualToRect(common, b));
        }
    }
}

TEST(CGGeometry, InfiniteAndNaNCoordinatesDoNotCrash)
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
