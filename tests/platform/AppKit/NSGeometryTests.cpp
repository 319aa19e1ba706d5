#include "support/Describe.h"

#include <AppKit/NSGeometry.h>
#include <gtest/gtest.h>

#include <cmath>

namespace {

constexpr NSRect rect = NSMakeRect(10, 20, 30, 40);

TEST(NSGeometry, EdgesAreReturnedAsStored)
{
    EXPECT_EQ(NSMinX(rect), 10);
    EXPECT_EQ(NSMidX(rect), 25);
    EXPECT_EQ(NSMaxX(rect), 40);
    EXPECT_EQ(NSMinY(rect), 20);
    EXPECT_EQ(NSMidY(rect), 40);
    EXPECT_EQ(NSMaxY(rect), 60);
    EXPECT_EQ(NSWidth(rect), 30);
    EXPECT_EQ(NSHeight(rect), 40);
    EXPECT_EQ(NSMaxX(NSMakeRect(10, 0, -4, 1)), 6);
}

TEST(NSGeometry, EqualityComparesNumbers)
{
    EXPECT_TRUE(NSEqualRects(rect, NSMakeRect(10, 20, 30, 40)));
    EXPECT_FALSE(NSEqualRects(rect, NSMakeRect(10, 20, 30, 41)));
    EXPECT_FALSE(NSEqualRects(NSMakeRect(0, 0, 4, 4), NSMakeRect(4, 4, -4, -4)));
    EXPECT_TRUE(NSEqualPoints(NSMakePoint(1, 2), NSMakePoint(1, 2)));
    EXPECT_FALSE(NSEqualPoints(NSMakePoint(1, 2), NSMakePoint(2, 1)));
    EXPECT_TRUE(NSEqualSizes(NSMakeSize(1, 2), NSMakeSize(1, 2)));
    EXPECT_FALSE(NSEqualSizes(NSMakeSize(1, 2), NSMakeSize(1, 3)));
}

TEST(NSGeometry, RectanglesWithoutPositiveSidesAreEmpty)
{
    EXPECT_FALSE(NSIsEmptyRect(rect));
    EXPECT_TRUE(NSIsEmptyRect(NSMakeRect(1, 1, 0, 5)));
    EXPECT_TRUE(NSIsEmptyRect(NSMakeRect(1, 1, 5, -1)));
    EXPECT_TRUE(NSIsEmptyRect(NSMakeRect(1, 1, NAN, 5)));
    EXPECT_TRUE(NSIsEmptyRect(CGRectNull));
}

TEST(NSGeometry, IntegralRoundsEdgesOutward)
{
    EXPECT_EQ(describe(NSIntegralRect(NSMakeRect(0.5, -0.5, 1, 2))), "0 -1 2 3");
    EXPECT_EQ(describe(NSIntegralRect(rect)), "10 20 30 40");
}

TEST(NSGeometry, IntegralOfANegativeSizeIsTheZeroRectangle)
{
    EXPECT_EQ(describe(NSIntegralRect(NSMakeRect(5.5, 5.5, -2, 3))), "0 0 0 0");
    EXPECT_EQ(describe(NSIntegralRect(NSMakeRect(5.5, 5.5, 2, -3))), "0 0 0 0");
    EXPECT_EQ(describe(NSIntegralRect(NSMakeRect(5.5, 5.5, 0, 3))), "0 0 0 0");
}

TEST(NSGeometry, InsetCanReturnNegativeSizes)
{
    EXPECT_EQ(describe(NSInsetRect(rect, 1, 2)), "11 22 28 36");
    EXPECT_EQ(describe(NSInsetRect(rect, -1, -2)), "9 18 32 44");
    EXPECT_EQ(describe(NSInsetRect(NSMakeRect(0, 0, 4, 4), 3, 0)), "3 0 -2 4");
}

TEST(NSGeometry, OffsetMovesTheOrigin)
{
    EXPECT_EQ(describe(NSOffsetRect(rect, -1, 5)), "9 25 30 40");
}

TEST(NSGeometry, UnionIgnoresEmptyRectangles)
{
    EXPECT_EQ(describe(NSUnionRect(rect, NSMakeRect(0, 0, 5, 5))), "0 0 40 60");
    EXPECT_EQ(describe(NSUnionRect(rect, NSMakeRect(0, 0, 0, 5))), "10 20 30 40");
    EXPECT_EQ(describe(NSUnionRect(NSMakeRect(0, 0, -5, 5), rect)), "10 20 30 40");
    EXPECT_EQ(describe(NSUnionRect(NSMakeRect(7, 7, 0, 5), NSZeroRect)), "0 0 0 0");
}

TEST(NSGeometry, IntersectionOfTouchingRectanglesIsTheZeroRectangle)
{
    EXPECT_EQ(describe(NSIntersectionRect(rect, NSMakeRect(0, 0, 15, 25))), "10 20 5 5");
    EXPECT_EQ(describe(NSIntersectionRect(rect, NSMakeRect(40, 20, 5, 5))), "0 0 0 0");
    EXPECT_EQ(describe(NSIntersectionRect(rect, NSMakeRect(100, 0, 5, 5))), "0 0 0 0");
    EXPECT_EQ(describe(NSIntersectionRect(rect, NSMakeRect(40, 60, -5, -5))), "0 0 0 0");
    EXPECT_TRUE(NSIntersectsRect(rect, NSMakeRect(0, 0, 15, 25)));
    EXPECT_FALSE(NSIntersectsRect(rect, NSMakeRect(40, 20, 5, 5)));
    EXPECT_FALSE(NSIntersectsRect(rect, NSMakeRect(40, 60, -5, -5)));
}

TEST(NSGeometry, ContainmentIncludesTheEdges)
{
    EXPECT_TRUE(NSContainsRect(rect, rect));
    EXPECT_FALSE(NSContainsRect(rect, NSMakeRect(10, 20, 31, 1)));
    EXPECT_FALSE(NSContainsRect(rect, NSMakeRect(10, 20, 0, 1)));
}

TEST(NSGeometry, AMouseIsInsideAtTheTopEdgeAndOutsideAtTheBottomEdge)
{
    EXPECT_TRUE(NSMouseInRect(NSMakePoint(10, 60), rect, false));
    EXPECT_FALSE(NSMouseInRect(NSMakePoint(10, 20), rect, false));
    EXPECT_TRUE(NSMouseInRect(NSMakePoint(10, 20), rect, true));
    EXPECT_FALSE(NSMouseInRect(NSMakePoint(10, 60), rect, true));
    EXPECT_FALSE(NSMouseInRect(NSMakePoint(40, 30), rect, true));
    EXPECT_FALSE(NSMouseInRect(NSMakePoint(NAN, 30), rect, true));
    EXPECT_TRUE(NSPointInRect(NSMakePoint(10, 20), rect));
    EXPECT_FALSE(NSPointInRect(NSMakePoint(10, 60), rect));
}

} // namespace
