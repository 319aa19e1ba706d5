#include "support/Canvas.h"

#include <CoreGraphics/CoreGraphics.h>

#include <cfloat>
#include <gtest/gtest.h>
#include <numbers>

namespace {

struct NamedTransform {
    const char* name;
    CGAffineTransform transform;
};

/// All have an inverse.
const NamedTransform kTransforms[]{
    {"identity", CGAffineTransformIdentity},
    {"moved", CGAffineTransformMakeTranslation(-3, 1e9)},
    {"scaled by 3", CGAffineTransformMakeScale(3, 3)},
    {"scaled by a tenth", CGAffineTransformMakeScale(0.1, 0.1)},
    {"scaled by 1e300", CGAffineTransformMakeScale(1e300, 1e300)},
    {"flipped and scaled", CGAffineTransformMake(5, 0, 0, -5, 0, 4)},
    {"quarter turn", CGAffineTransformMake(0, 4, -4, 0, 0, 0)},
    {"eighth turn", CGAffineTransformMakeRotation(std::numbers::pi / 4)},
    {"eighth turn, scaled by 3", CGAffineTransformMake(3, 3, -3, 3, 1, 1)},
    {"leaning", CGAffineTransformMake(1, 0, 1000, 1, 0, 0)},
    {"leaning the other way", CGAffineTransformMake(1, -1000, 0, 1, 0, 0)},
};

void fillEverything(CGContextRef context)
{
    CGContextFillRect(context, CGRectMake(-9, -9, 18, 18));
}

TEST(CGRectInfinite, FillsEveryPixelUnderEachTransform)
{
    for (const bool isAntialiased : {true, false}) {
        for (const auto& [name, transform] : kTransforms) {
            SCOPED_TRACE(name);
            SCOPED_TRACE(isAntialiased);
            Canvas canvas(3, 2);
            CGContextSetShouldAntialias(canvas.context(), isAntialiased);
            CGContextConcatCTM(canvas.context(), transform);
            CGContextFillRect(canvas.context(), CGRectInfinite);
            EXPECT_COVERAGE(canvas,
                "###"
                "###");
            CGContextSetBlendMode(canvas.context(), kCGBlendModeClear);
            CGContextAddRect(canvas.context(), CGRectInfinite);
            CGContextFillPath(canvas.context());
            EXPECT_COVERAGE(canvas,
                "..."
                "...");
        }
    }
}

TEST(CGRectInfinite, ClipsNothingUnderEachTransform)
{
    for (const auto& [name, transform] : kTransforms) {
        SCOPED_TRACE(name);
        Canvas canvas(3, 2);
        CGContextConcatCTM(canvas.context(), transform);
        CGContextClipToRect(canvas.context(), CGRectInfinite);
        CGContextAddRect(canvas.context(), CGRectInfinite);
        CGContextClip(canvas.context());
        CGContextFillRect(canvas.context(), CGRectInfinite);
        EXPECT_COVERAGE(canvas,
            "###"
            "###");
    }
}

TEST(CGRectInfinite, AroundAHoleFillsAllButTheHoleUnderEachTransform)
{
    for (const bool isClip : {false, true}) {
        for (const auto& [name, transform] : kTransforms) {
            SCOPED_TRACE(name);
            SCOPED_TRACE(isClip ? "as a clip" : "filled");
            Canvas canvas(4, 4);
            CGContextSaveGState(canvas.context());
            CGContextConcatCTM(canvas.context(), transform);
            CGContextAddRect(canvas.context(), CGRectInfinite);
            CGContextRestoreGState(canvas.context());
            CGContextAddRect(canvas.context(), CGRectMake(1, 1, 2, 2));
            if (isClip) {
                CGContextEOClip(canvas.context());
                fillEverything(canvas.context());
            } else {
                CGContextEOFillPath(canvas.context());
            }
            EXPECT_COVERAGE(canvas,
                "####"
                "#..#"
                "#..#"
                "####");
        }
    }
}

TEST(CGPathAddRect, LimitsCoordinatesThatOverflowToThoseOfTheInfiniteRectangle)
{
    const CGAffineTransform scale = CGAffineTransformMakeScale(3, 1e300);
    const auto path = adopt(CGPathCreateWithRect(CGRectInfinite, &scale));
    EXPECT_TRUE(CGRectIsInfinite(CGPathGetBoundingBox(path.get())));
    const auto large = adopt(CGPathCreateWithRect(CGRectMake(0, 1, 1e308, 2), &scale));
    EXPECT_EQ(CGRectGetMaxX(CGPathGetBoundingBox(large.get())), DBL_MAX / 2);
    EXPECT_EQ(CGRectGetMinY(CGPathGetBoundingBox(large.get())), 1e300);
}

TEST(CGContextFill, LinesBeyondTheCoordinateRangeKeepTheirSlope)
{
    // Below the line from (0, 0) to (4e7, 2e7), which is clipped on the way.
    Canvas canvas(4, 2);
    CGContextMoveToPoint(canvas.context(), 0, 0);
    CGContextAddLineToPoint(canvas.context(), 4e7, 2e7);
    CGContextAddLineToPoint(canvas.context(), 4e7, 0);
    CGContextFillPath(canvas.context());
    constexpr int kTolerance = 9; // slopes are drawn in steps of a fifteenth of a pixel
    const double expected[][4]{{0, 0, 0.25, 0.75}, {0.25, 0.75, 1, 1}};
    for (int row = 0; row < 2; ++row) {
        for (int column = 0; column < 4; ++column)
            EXPECT_NEAR(canvas.alpha(column, row), expected[row][column] * 255, kTolerance)
                << column << ", " << row;
    }
}

/// A square around everything, of lines or of curves along them.
void addGreatestSquare(CGContextRef context, bool isCurved)
{
    constexpr double kGreatest = DBL_MAX;
    const CGPoint corners[]{
        {kGreatest, -kGreatest}, {kGreatest, kGreatest}, {-kGreatest, kGreatest}, {-kGreatest, -kGreatest}};
    CGPoint from = corners[3];
    CGContextMoveToPoint(context, from.x, from.y);
    for (const CGPoint to : corners) {
        if (isCurved)
            CGContextAddCurveToPoint(context, from.x, from.y, to.x, to.y, to.x, to.y);
        else
            CGContextAddLineToPoint(context, to.x, to.y);
        from = to;
    }
}

TEST(CGContextFill, GreatestCoordinatesFillEveryPixel)
{
    for (const bool isCurved : {false, true}) {
        SCOPED_TRACE(isCurved ? "curves" : "lines");
        Canvas canvas(3, 2);
        addGreatestSquare(canvas.context(), isCurved);
        CGContextFillPath(canvas.context());
        EXPECT_COVERAGE(canvas,
            "###"
            "###");
    }
}

TEST(CGContextStroke, GreatestCoordinatesKeepALineInItsRow)
{
    Canvas canvas(3, 3);
    CGContextMoveToPoint(canvas.context(), -DBL_MAX, 1.5);
    CGContextAddLineToPoint(canvas.context(), DBL_MAX, 1.5);
    CGContextStrokePath(canvas.context());
    EXPECT_COVERAGE(canvas,
        "..."
        "###"
        "...");
}

TEST(CGContextStroke, APenThatIsNearlyFlatDrawsWithoutOverflow)
{
    // Seen from the pen, the line is longer than any number.
    Canvas canvas(3, 2);
    CGContextMoveToPoint(canvas.context(), 8.66, 1e9);
    CGContextAddLineToPoint(canvas.context(), 0, 94);
    CGContextAddLineToPoint(canvas.context(), -2.12, -4.64);
    CGContextConcatCTM(canvas.context(), CGAffineTransformMake(46.4, 1e-300, 370, 1e-300, 22.87, 0));
    CGContextSetLineWidth(canvas.context(), 42.48);
    CGContextSetLineJoin(canvas.context(), kCGLineJoinRound);
    CGContextStrokePath(canvas.context());
    CGContextFillRect(canvas.context(), CGRectInfinite);
    EXPECT_COVERAGE(canvas,
        "###"
        "###");
}

} // namespace
