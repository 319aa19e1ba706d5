#include "support/Canvas.h"
#include "support/Describe.h"

#include "Foundation/testing/NSLogCapture.h"

#include <CoreGraphics/CoreGraphics.h>

#include <gtest/gtest.h>
#include <numbers>
#include <vector>

namespace {

constexpr double kQuarterTurn = std::numbers::pi / 2;

/// User space is transposed: (x, y) is drawn at (3y + 4, 2x + 5). Mirrored and scaled differently along each
/// axis, so that different mistakes give different results.
class CGContextPathAcross : public testing::Test {
protected:
    CGContextPathAcross() { CGContextConcatCTM(context, CGAffineTransformMake(0, 2, 3, 0, 4, 5)); }

    /// The current path in device space.
    std::string path()
    {
        CGContextSaveGState(context);
        CGContextConcatCTM(context, CGAffineTransformInvert(CGContextGetCTM(context)));
        const auto copy = adopt(CGContextCopyPath(context));
        CGContextRestoreGState(context);
        return describe(copy);
    }

    Canvas canvas{8, 8};
    const CGContextRef context = canvas.context();
};

} // namespace

TEST_F(CGContextPathAcross, CubicCurvesPreserveTheOrderOfTheirPoints)
{
    CGContextMoveToPoint(context, 1, 2);
    CGContextAddCurveToPoint(context, 3, 4, 5, 6, 7, 8);
    EXPECT_EQ(path(), "M 10 7 C 16 11 22 15 28 19");
}

TEST_F(CGContextPathAcross, QuadraticCurvesStayQuadratic)
{
    CGContextMoveToPoint(context, 1, 2);
    CGContextAddQuadCurveToPoint(context, 3, 4, 5, 6);
    EXPECT_EQ(path(), "M 10 7 Q 16 11 22 15");
}

TEST_F(CGContextPathAcross, LinesStartANewSubpath)
{
    const CGPoint points[]{{1, 2}, {3, 4}, {0, 0}};
    CGContextMoveToPoint(context, 9, 9);
    CGContextAddLines(context, points, 3);
    EXPECT_EQ(path(), "M 31 23 M 10 7 L 16 11 L 4 5");
    CGContextAddLines(context, points, 0);
    CGContextAddLines(context, nullptr, 3);
    EXPECT_EQ(path(), "M 31 23 M 10 7 L 16 11 L 4 5");
}

TEST_F(CGContextPathAcross, RectanglesAreAddedInOrder)
{
    const CGRect rects[]{CGRectMake(1, 2, 3, 4), CGRectNull, CGRectMake(0, 0, -1, 1)};
    CGContextAddRects(context, rects, 3);
    EXPECT_EQ(path(),
        "M 10 7 L 10 13 L 22 13 L 22 7 Z "
        "M 4 3 L 4 5 L 7 5 L 7 3 Z");
    CGContextAddRects(context, nullptr, 3);
    CGContextFillPath(context);
    EXPECT_COVERAGE(canvas, // the first rectangle is outside the canvas
        "........"
        "........"
        "........"
        "....###."
        "....###."
        "........"
        "........"
        "........");
}

// The control points of a quarter of the unit circle are 0.552285 from its ends.
TEST_F(CGContextPathAcross, ArcsTurnInUserSpace)
{
    CGContextAddArc(context, 0, 0, 1, 0, kQuarterTurn, 0);
    EXPECT_EQ(path(), "M 4 7 C 5.656854 7 7 6.104569 7 5");
    CGContextBeginPath(context);
    CGContextAddArc(context, 0, 0, 1, 0, -kQuarterTurn, 2); // any value but 0 means clockwise
    EXPECT_EQ(path(), "M 4 7 C 2.343146 7 1 6.104569 1 5");
}

TEST_F(CGContextPathAcross, ArcsAreJoinedToTheCurrentPoint)
{
    CGContextMoveToPoint(context, 2, 2);
    CGContextAddArc(context, 10, 20, 1, 0, kQuarterTurn, 0);
    EXPECT_EQ(path(), "M 10 9 L 64 27 C 65.656854 27 67 26.104569 67 25");
}

// A rounded corner between a leg along x and one along y. In user space the radius is 5 and the control
// points are 5 x 0.552285 from the ends: (7.761424, 0) and (10, 2.238576).
TEST_F(CGContextPathAcross, RoundedCornersAreRoundInUserSpace)
{
    CGContextMoveToPoint(context, 0, 0);
    CGContextAddArcToPoint(context, 10, 0, 10, 10, 5);
    EXPECT_EQ(path(), "M 4 5 L 4 15 C 4 20.522847 10.715729 25 19 25");
}

TEST_F(CGContextPathAcross, ARoundedCornerStartsWhereTheCurrentPointIsNow)
{
    CGContextMoveToPoint(context, 0, 0);
    CGContextTranslateCTM(context, -10, 0); // the current point becomes (10, 0), the leg runs the other way
    CGContextAddArcToPoint(context, 0, 0, 0, 10, 5);
    EXPECT_EQ(path(), "M 4 5 L 4 -5 C 4 -10.522847 10.715729 -15 19 -15");
}

TEST_F(CGContextPathAcross, NothingIsAddedWithoutACurrentPoint)
{
    const NSLogCapture log;
    CGContextAddLineToPoint(context, 1, 2);
    CGContextAddCurveToPoint(context, 1, 2, 3, 4, 5, 6);
    CGContextAddQuadCurveToPoint(context, 1, 2, 3, 4);
    CGContextAddArcToPoint(context, 1, 2, 3, 4, 5);
    CGContextClosePath(context);
    EXPECT_EQ(path(), "null");
    EXPECT_EQ(log.messages().size(), 5U);
}

TEST_F(CGContextPathAcross, ClosingReturnsToTheStartOfTheSubpath)
{
    CGContextMoveToPoint(context, 7, 7);
    CGContextMoveToPoint(context, 1, 2);
    CGContextAddLineToPoint(context, 3, 4);
    CGContextClosePath(context);
    EXPECT_EQ(describe(CGContextGetPathCurrentPoint(context)), "1 2");
    CGContextAddQuadCurveToPoint(context, 3, 4, 5, 6);
    EXPECT_EQ(path(), "M 25 19 M 10 7 L 16 11 Z Q 16 11 22 15");
    EXPECT_EQ(describe(CGContextGetPathCurrentPoint(context)), "5 6");
}

TEST_F(CGContextPathAcross, TheCurrentPointIsReportedInTheCurrentUserSpace)
{
    EXPECT_EQ(describe(CGContextGetPathCurrentPoint(context)), "0 0");
    CGContextMoveToPoint(context, 1, 2);
    CGContextAddLineToPoint(context, 3, 4);
    EXPECT_EQ(describe(CGContextGetPathCurrentPoint(context)), "3 4");
    CGContextTranslateCTM(context, 1, -1);
    CGContextScaleCTM(context, 0.5, 0.25);
    EXPECT_EQ(describe(CGContextGetPathCurrentPoint(context)), "4 20");
    CGContextBeginPath(context);
    EXPECT_EQ(describe(CGContextGetPathCurrentPoint(context)), "0 0");
}

TEST_F(CGContextPathAcross, BeginningAPathDiscardsThePreviousOne)
{
    CGContextAddRect(context, CGRectMake(-1, -1, 2, 2));
    CGContextBeginPath(context);
    EXPECT_TRUE(CGContextIsPathEmpty(context));
    CGContextAddRect(context, CGRectMake(0, 0, 1, 1));
    EXPECT_EQ(path(), "M 4 5 L 4 7 L 7 7 L 7 5 Z");
}

TEST_F(CGContextPathAcross, ACopyIsInTheCurrentUserSpaceAndIndependent)
{
    EXPECT_EQ(CGContextCopyPath(context), nullptr);
    CGContextMoveToPoint(context, 1, 2);
    CGContextAddQuadCurveToPoint(context, 3, 4, 5, 6);
    const auto copy = adopt(CGContextCopyPath(context));
    CGContextTranslateCTM(context, 1, -1);
    const auto moved = adopt(CGContextCopyPath(context));
    CGContextClosePath(context);
    CGContextBeginPath(context);
    EXPECT_EQ(describe(copy), "M 1 2 Q 3 4 5 6");
    EXPECT_EQ(describe(moved), "M 0 3 Q 2 5 4 7");
}

TEST(CGContextPath, ALineIsDrawnWhereASubpathIsClosed)
{
    const auto strokeThreeSides = [](bool isClosed) {
        Canvas canvas(6, 6);
        CGContextScaleCTM(canvas.context(), 2, 2);
        CGContextSetLineWidth(canvas.context(), 0.5);
        CGContextMoveToPoint(canvas.context(), 0.75, 2.25);
        CGContextAddLineToPoint(canvas.context(), 0.75, 0.75);
        CGContextAddLineToPoint(canvas.context(), 2.25, 0.75);
        CGContextAddLineToPoint(canvas.context(), 2.25, 2.25);
        if (isClosed)
            CGContextClosePath(canvas.context());
        CGContextStrokePath(canvas.context());
        return canvas;
    };
    EXPECT_COVERAGE(strokeThreeSides(true),
        "......"
        ".####."
        ".#..#."
        ".#..#."
        ".####."
        "......");
    EXPECT_COVERAGE(strokeThreeSides(false),
        "......"
        ".+..+." // the lines end in the middle of the pixels
        ".#..#."
        ".#..#."
        ".####."
        "......");
}

namespace {

/// Adds the area below the curve y = x² / 4 for x from 0 to 4, beginning at the current point (0, 0).
void addBelowParabola(CGContextRef context)
{
    CGContextAddQuadCurveToPoint(context, 2, 0, 4, 4);
    CGContextAddLineToPoint(context, 4, 0);
}

/// Expects that every column of 8 x 8 pixels is filled to the mean height of the curve y = x² / 8 in it.
void expectParabola(const Canvas& canvas)
{
    // Curves are flattened with an error of less than a twentieth of a pixel.
    constexpr double kTolerance = 0.05;
    for (int column = 0; column < 8; ++column) {
        double height = 0;
        for (int row = 0; row < 8; ++row)
            height += canvas.alpha(column, row) / 255.0;
        // The area below x² / 8 from 0 is x³ / 24.
        EXPECT_NEAR(height, (3.0 * column * column + 3 * column + 1) / 24, kTolerance) << "column " << column;
    }
}

} // namespace

TEST(CGContextPath, QuadraticCurvesAreDrawnAsParabolas)
{
    Canvas canvas(8, 8);
    CGContextScaleCTM(canvas.context(), 2, 2);
    CGContextMoveToPoint(canvas.context(), 0, 0);
    addBelowParabola(canvas.context());
    CGContextFillPath(canvas.context());
    expectParabola(canvas);
}

TEST(CGContextPath, AQuadraticCurveDirectlyAfterACloseStartsAtTheSubpathsStart)
{
    Canvas canvas(8, 8);
    CGContextScaleCTM(canvas.context(), 2, 2);
    CGContextMoveToPoint(canvas.context(), 0, 0);
    CGContextAddLineToPoint(canvas.context(), 4, 0); // there and back: fills nothing
    CGContextClosePath(canvas.context());
    addBelowParabola(canvas.context());
    CGContextFillPath(canvas.context());
    expectParabola(canvas);
}
