#include "Gradients.h"
#include "support/Canvas.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

constexpr CGGradientDrawingOptions kBefore = kCGGradientDrawsBeforeStartLocation;
constexpr CGGradientDrawingOptions kAfter = kCGGradientDrawsAfterEndLocation;

struct Circle {
    CGPoint center;
    CGFloat radius;
};

/// Red to blue between two circles.
Canvas drawn(int width, int height, Circle start, Circle end, CGGradientDrawingOptions options)
{
    Canvas canvas(width, height);
    CGContextDrawRadialGradient(canvas.context(), gradientOf({kRedColor, kBlueColor}).get(), start.center,
        start.radius, end.center, end.radius, options);
    return canvas;
}

} // namespace

TEST(CGContextDrawRadialGradient, RunsOutwardFromACentre)
{
    const Canvas canvas = drawn(9, 1, {{4.5, 0.5}, 0}, {{4.5, 0.5}, 4}, 0);
    EXPECT_COVERAGE(canvas, ".#######."); // the pixel at distance 4 is the first beyond the end
    EXPECT_EQ(canvas.pixel(4, 0), kRed);
    EXPECT_TRUE(isAbout(canvas.pixel(5, 0), rgba(191, 0, 64, 255)));
    EXPECT_EQ(canvas.pixel(3, 0), canvas.pixel(5, 0));
    EXPECT_TRUE(isAbout(canvas.pixel(7, 0), rgba(64, 0, 191, 255)));
}

TEST(CGContextDrawRadialGradient, ExtendsOnTheSidesThatTheOptionsName)
{
    const Circle inner{{4.5, 0.5}, 2}, outer{{4.5, 0.5}, 4};
    EXPECT_COVERAGE(drawn(9, 1, inner, outer, 0), ".##...##.");
    EXPECT_COVERAGE(drawn(9, 1, inner, outer, kBefore), ".#######.");
    EXPECT_EQ(drawn(9, 1, inner, outer, kBefore).pixel(4, 0), kRed);
    EXPECT_COVERAGE(drawn(9, 1, inner, outer, kAfter), "###...###");
    EXPECT_EQ(drawn(9, 1, inner, outer, kAfter).pixel(0, 0), kBlue);
    EXPECT_COVERAGE(drawn(9, 1, inner, outer, kBoth), "#########");
}

TEST(CGContextDrawRadialGradient, MayRunInward)
{
    const Circle inner{{4.5, 0.5}, 2}, outer{{4.5, 0.5}, 4};
    // The pixels at distance 4 are at the start, those at distance 2 at the end.
    EXPECT_COVERAGE(drawn(9, 1, outer, inner, 0), "##.....##");
    EXPECT_COVERAGE(drawn(9, 1, outer, inner, kAfter), "#########");
    EXPECT_EQ(drawn(9, 1, outer, inner, kAfter).pixel(4, 0), kBlue);
    EXPECT_TRUE(isAbout(drawn(9, 1, outer, inner, 0).pixel(1, 0), rgba(128, 0, 128, 255)));
}

TEST(CGContextDrawRadialGradient, MayHaveAnOffCentreFocus)
{
    // From (2, 0.5) the circle of radius 4 around (4.5, 0.5) is 1.5 away to the left, 6.5 to the right.
    const Canvas canvas = drawn(9, 1, {{2, 0.5}, 0}, {{4.5, 0.5}, 4}, 0);
    EXPECT_COVERAGE(canvas, ".#######.");
    EXPECT_TRUE(isAbout(canvas.pixel(1, 0), rgba(170, 0, 85, 255))); // 0.5 of 1.5
    EXPECT_TRUE(isAbout(canvas.pixel(7, 0), rgba(39, 0, 216, 255))); // 5.5 of 6.5
}

TEST(CGContextDrawRadialGradient, CirclesOfOneSizeMakeAStrip)
{
    const Circle left{{2.5, 2.5}, 1.6}, right{{7.5, 2.5}, 1.6};
    EXPECT_COVERAGE(drawn(10, 5, left, right, kBoth),
        ".........."
        "##########"
        "##########"
        "##########"
        "..........");
    // The left side of a later circle passes what no right side does.
    EXPECT_COVERAGE(drawn(10, 5, left, right, 0),
        ".........."
        ".########."
        ".########."
        ".########."
        "..........");
}

// Seen from the side, the circles fill a cone that ends in a point.
TEST(CGContextDrawRadialGradient, DisjointCirclesMakeACone)
{
    const Circle small{{4.5, 2.5}, 0.5}, large{{8.5, 2.5}, 2.5};
    const Canvas both = drawn(10, 5, small, large, kBoth);
    // The point is at x = 3.5. To its right the cone leaves it at an angle of asin(2 / 4), 30 degrees.
    EXPECT_COVERAGE(both,
        ".......###"
        ".....#####"
        "...#######"
        ".....#####"
        ".......###");
}

TEST(CGContextDrawRadialGradient, TheLastCircleThroughAPointDeterminesItsColour)
{
    // Both end circles and all between them contain the point (4.5, 0.5).
    const Canvas canvas = drawn(9, 1, {{3.5, 0.5}, 2}, {{5.5, 0.5}, 2}, 0);
    // Its left side passes x = 4.5 at 1.5, after the end; its right side at -0.5, before the start.
    EXPECT_EQ(canvas.pixel(4, 0), rgba(0, 0, 0, 0));
    // Its left side passes x = 2.5 at 0.5, and x = 6.5 with its right one.
    EXPECT_TRUE(isAbout(canvas.pixel(2, 0), rgba(128, 0, 128, 255)));
    EXPECT_TRUE(isAbout(canvas.pixel(6, 0), rgba(128, 0, 128, 255)));
    const Canvas extended = drawn(9, 1, {{3.5, 0.5}, 2}, {{5.5, 0.5}, 2}, kBoth);
    EXPECT_EQ(extended.pixel(4, 0), kBlue);
    EXPECT_EQ(drawn(9, 1, {{3.5, 0.5}, 2}, {{5.5, 0.5}, 2}, kBefore).pixel(4, 0), kRed);
}

// Circles that touch from inside fill half a plane.
TEST(CGContextDrawRadialGradient, CirclesMayTouchInternally)
{
    // They touch at x = 1: from there the diameter grows from 2 to 6.
    const Canvas canvas = drawn(9, 1, {{2, 0.5}, 1}, {{4, 0.5}, 3}, kBoth);
    EXPECT_COVERAGE(canvas, ".########");
    EXPECT_EQ(canvas.pixel(1, 0), kRed);
    EXPECT_TRUE(isAbout(canvas.pixel(4, 0), rgba(159, 0, 96, 255))); // 3.5 from the left: 1.5 of 4
    EXPECT_EQ(canvas.pixel(8, 0), kBlue);
}

TEST(CGContextDrawRadialGradient, FollowsTheTransform)
{
    Canvas canvas(9, 9);
    CGContextTranslateCTM(canvas.context(), 4.5, 4.5);
    CGContextScaleCTM(canvas.context(), 4.2, 2.2);
    CGContextDrawRadialGradient(
        canvas.context(), gradientOf({kRedColor, kBlueColor}).get(), {0, 0}, 0, {0, 0}, 1, 0);
    EXPECT_COVERAGE(canvas,
        "........."
        "........."
        "...###..."
        ".#######."
        "#########"
        ".#######."
        "...###..."
        "........."
        ".........");
}

TEST(CGContextDrawRadialGradient, DrawsNothingForInvalidCircles)
{
    constexpr CGFloat kNaN = std::numeric_limits<CGFloat>::quiet_NaN();
    constexpr CGFloat kInfinity = std::numeric_limits<CGFloat>::infinity();
    const char* const nothing = "...";
    const Circle circle{{1, 0}, 1};
    EXPECT_COVERAGE(drawn(3, 1, circle, circle, kBoth), nothing);
    EXPECT_COVERAGE(drawn(3, 1, circle, {{1, 0}, -1}, kBoth), nothing);
    EXPECT_COVERAGE(drawn(3, 1, {{1, 0}, -0.1}, {{1, 0}, 3}, kBoth), nothing);
    EXPECT_COVERAGE(drawn(3, 1, circle, {{1, 0}, kNaN}, kBoth), nothing);
    EXPECT_COVERAGE(drawn(3, 1, circle, {{1, kInfinity}, 2}, kBoth), nothing);
    EXPECT_COVERAGE(drawn(3, 1, {{kNaN, 0}, 1}, circle, kBoth), nothing);
    EXPECT_COVERAGE(drawn(3, 1, {{0, 0.5}, 0}, {{3, 0.2}, 0}, kBoth), nothing);
    CGContextDrawRadialGradient(nullptr, gradientOf({kRedColor}).get(), {0, 0}, 0, {0, 0}, 1, kBoth);
    Canvas canvas(1, 1);
    CGContextDrawRadialGradient(canvas.context(), nullptr, {0, 0}, 0, {0, 0}, 1, kBoth);
    EXPECT_COVERAGE(canvas, ".");
}
