#include "support/Canvas.h"
#include "support/Describe.h"

#include <CoreGraphics/CoreGraphics.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <random>

namespace {

using Triangle = std::array<CGPoint, 3>;

void addTriangle(CGContextRef context, const Triangle& triangle)
{
    CGContextMoveToPoint(context, triangle[0].x, triangle[0].y);
    CGContextAddLineToPoint(context, triangle[1].x, triangle[1].y);
    CGContextAddLineToPoint(context, triangle[2].x, triangle[2].y);
}

/// On which side of the line from `a` to `b` a point lies: the sign of twice an area.
double side(CGPoint a, CGPoint b, CGPoint point)
{
    return (b.x - a.x) * (point.y - a.y) - (b.y - a.y) * (point.x - a.x);
}

bool contains(const Triangle& t, CGPoint point)
{
    const double sides[]{side(t[0], t[1], point), side(t[1], t[2], point), side(t[2], t[0], point)};
    const auto isPositive = [](double value) { return value > 0; };
    return std::ranges::all_of(sides, isPositive) || std::ranges::none_of(sides, isPositive);
}

Canvas makeCanvas(int width, int height)
{
    Canvas canvas(width, height);
    CGContextSetShouldAntialias(canvas.context(), false);
    return canvas;
}

void fillEverything(const Canvas& canvas)
{
    CGContextFillRect(canvas.context(), CGRectMake(0, 0, canvas.width(), canvas.height()));
}

constexpr int kSide = 40;

/// The number of pixels of a kSide x kSide canvas that are painted although a triangle does not contain their
/// centre, or the other way round.
int wrongPixels(const Canvas& canvas, const Triangle& triangle)
{
    int count = 0;
    for (int row = 0; row < kSide; ++row) {
        for (int column = 0; column < kSide; ++column) {
            const CGPoint center{column + 0.5, kSide - row - 0.5};
            count += canvas.alpha(column, row) != (contains(triangle, center) ? 255 : 0);
        }
    }
    return count;
}

Triangle randomTriangle(std::mt19937& random)
{
    std::uniform_real_distribution coordinate(-5.0, kSide + 5.0);
    Triangle triangle;
    for (CGPoint& point : triangle)
        point = {coordinate(random), coordinate(random)};
    return triangle;
}

} // namespace

TEST(CGContextShouldAntialias, WhenOffFillsThePixelsWhoseCentresThePathContains)
{
    std::mt19937 random(1);
    for (int trial = 0; trial < 500; ++trial) {
        const Triangle triangle = randomTriangle(random);
        Canvas canvas = makeCanvas(kSide, kSide);
        addTriangle(canvas.context(), triangle);
        CGContextFillPath(canvas.context());
        ASSERT_EQ(wrongPixels(canvas, triangle), 0)
            << describe(triangle[0]) << ", " << describe(triangle[1]) << ", " << describe(triangle[2]);
    }
}

TEST(CGContextShouldAntialias, WhenOffClipsToThePixelsWhoseCentresThePathContains)
{
    std::mt19937 random(2);
    for (int trial = 0; trial < 100; ++trial) {
        const Triangle triangle = randomTriangle(random);
        Canvas canvas = makeCanvas(kSide, kSide);
        addTriangle(canvas.context(), triangle);
        CGContextClip(canvas.context());
        fillEverything(canvas);
        ASSERT_EQ(wrongPixels(canvas, triangle), 0)
            << describe(triangle[0]) << ", " << describe(triangle[1]) << ", " << describe(triangle[2]);
    }
}

TEST(CGContextShouldAntialias, WhenOffCentresOnLeftAndTopEdgesAreInside)
{
    Canvas canvas = makeCanvas(5, 5);
    CGContextMoveToPoint(canvas.context(), 0.5, 2.5); // a diamond whose edges pass through pixel centres
    CGContextAddLineToPoint(canvas.context(), 2.5, 4.5);
    CGContextAddLineToPoint(canvas.context(), 4.5, 2.5);
    CGContextAddLineToPoint(canvas.context(), 2.5, 0.5);
    CGContextFillPath(canvas.context());
    EXPECT_COVERAGE(canvas,
        "....."
        ".##.."
        "####."
        ".##.."
        ".....");
}

TEST(CGContextShouldAntialias, WhenOffTrianglesWithACommonEdgePaintNoPixelTwice)
{
    const CGPoint corners[]{{0, 0}, {8, 0}, {8, 8}, {0, 8}};
    Canvas canvas = makeCanvas(8, 8);
    CGContextSetGrayFillColor(canvas.context(), 0, 0.5);
    for (int i = 0; i < 4; ++i) {
        addTriangle(canvas.context(), {corners[i], corners[(i + 1) % 4], {4.5, 3.5}});
        CGContextFillPath(canvas.context());
    }
    for (int row = 0; row < 8; ++row) {
        for (int column = 0; column < 8; ++column)
            EXPECT_EQ(canvas.alpha(column, row), 128) << column << ", " << row;
    }
}

TEST(CGContextShouldAntialias, WhenOffFillsByEitherRule)
{
    for (const bool isEvenOdd : {false, true}) {
        SCOPED_TRACE(isEvenOdd ? "even-odd" : "winding");
        Canvas canvas = makeCanvas(6, 6);
        CGContextTranslateCTM(canvas.context(), 3, 3);
        CGContextRotateCTM(canvas.context(), std::numbers::pi / 4);
        CGContextAddRect(canvas.context(), CGRectMake(-2, -2, 4, 4));
        CGContextAddRect(canvas.context(), CGRectMake(-1, -1, 2, 2));
        CGContextDrawPath(canvas.context(), isEvenOdd ? kCGPathEOFill : kCGPathFill);
        EXPECT_COVERAGE(canvas,
            isEvenOdd ? "......"
                        "..##.."
                        ".#..#."
                        ".#..#."
                        "..##.."
                        "......"
                      : "......"
                        "..##.."
                        ".####."
                        ".####."
                        "..##.."
                        "......");
    }
}

TEST(CGContextShouldAntialias, WhenOffFollowsCurves)
{
    Canvas ellipse = makeCanvas(8, 6);
    CGContextFillEllipseInRect(ellipse.context(), CGRectMake(0, 0, 8, 6));
    EXPECT_COVERAGE(ellipse,
        "..####.."
        ".######."
        "########"
        "########"
        ".######."
        "..####..");

    Canvas quadratic = makeCanvas(4, 4);
    CGContextMoveToPoint(quadratic.context(), 0, 0);
    // Between the diagonal and the curve x = 8t - 4t², y = 4t².
    CGContextAddQuadCurveToPoint(quadratic.context(), 4, 0, 4, 4);
    CGContextFillPath(quadratic.context());
    EXPECT_COVERAGE(quadratic,
        "...#"
        "..##"
        ".##."
        "##..");
}

TEST(CGContextShouldAntialias, WhenOffAppliesInEveryBlendModeAndThroughAClip)
{
    Canvas canvas = makeCanvas(6, 4);
    CGContextAddEllipseInRect(canvas.context(), CGRectMake(0, 0, 6, 4));
    CGContextClip(canvas.context());
    CGContextSetBlendMode(canvas.context(), kCGBlendModePlusLighter);
    addTriangle(canvas.context(), {CGPoint{0, 0}, {6, 0}, {6, 8}});
    CGContextFillPath(canvas.context());
    EXPECT_COVERAGE(canvas,
        "...##."
        "..####"
        ".#####"
        ".####.");
}
