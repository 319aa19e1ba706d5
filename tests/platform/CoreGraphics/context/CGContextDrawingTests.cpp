#include "support/Canvas.h"
#include "support/Describe.h"
#include "support/Numbers.h"

#include "Foundation/testing/NSLogCapture.h"

#include <CoreGraphics/CoreGraphics.h>

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

TEST(CGContextFill, RectanglesCoverPixelsByTheirExactArea)
{
    Canvas canvas(4, 3);
    CGContextFillRect(canvas.context(), CGRectMake(0.5, 0.5, 2.25, 2));
    EXPECT_COVERAGE(canvas,
        "-+?."
        "+#*."
        "-+?.");
    EXPECT_EQ(canvas.alpha(2, 1), 191);
    EXPECT_NEAR(canvas.alpha(2, 0), 255 * 0.375, 1);
}

TEST(CGContextFill, NegativeSizesAreStandardizedAndEmptyRectanglesPaintNothing)
{
    Canvas canvas(3, 2);
    CGContextFillRect(canvas.context(), CGRectMake(2, 2, -1, -1));
    CGContextFillRect(canvas.context(), CGRectMake(0, 0, 0, 2));
    CGContextFillRect(canvas.context(), CGRectNull);
    EXPECT_COVERAGE(canvas,
        ".#."
        "...");
}

TEST(CGContextFill, EvenOddLeavesTheOverlapUnpainted)
{
    Canvas canvas(4, 1);
    CGContextAddRect(canvas.context(), CGRectMake(0, 0, 3, 1));
    CGContextAddRect(canvas.context(), CGRectMake(1, 0, 3, 1));
    CGContextEOFillPath(canvas.context());
    EXPECT_COVERAGE(canvas, "#..#");
}

TEST(CGContextFill, OverlappingRectanglesOfAPathAreFilledOnce)
{
    Canvas canvas(4, 1);
    CGContextSetGrayFillColor(canvas.context(), 0, 0.5);
    CGContextAddRect(canvas.context(), CGRectMake(0, 0, 3, 1));
    CGContextAddRect(canvas.context(), CGRectMake(1, 0, 3, 1));
    CGContextFillPath(canvas.context());
    EXPECT_COVERAGE(canvas, "++++");

    Canvas list(4, 1);
    CGContextSetGrayFillColor(list.context(), 0, 0.5);
    const CGRect rects[]{CGRectMake(0, 0, 3, 1), CGRectMake(1, 0, 3, 1)};
    CGContextFillRects(list.context(), rects, 2);
    EXPECT_COVERAGE(list, "++++");
}

// At the default tolerance of the library below, circles are too small: by 3 steps of 255 on average and 14
// at worst. These bounds are for the tolerance that contexts set.
TEST(CGContextFill, CirclesCoverTheirArea)
{
    constexpr double kRadius = 25.3;
    constexpr int kSize = 60;
    Canvas canvas(kSize, kSize);
    CGContextFillEllipseInRect(
        canvas.context(), CGRectMake(30.2 - kRadius, 29.7 - kRadius, 2 * kRadius, 2 * kRadius));
    double sum = 0;
    for (int row = 0; row < kSize; ++row) {
        for (int column = 0; column < kSize; ++column) {
            // 32 x 32 samples a pixel.
            int inside = 0;
            for (int i = 0; i < 1024; ++i) {
                const int sampleColumn = i % 32, sampleRow = i / 32;
                const double x = column + (sampleColumn + 0.5) / 32 - 30.2;
                const double y = kSize - row - (sampleRow + 0.5) / 32 - 29.7;
                inside += x * x + y * y < kRadius * kRadius;
            }
            EXPECT_NEAR(canvas.alpha(column, row), inside * 255 / 1024.0, 9) << column << ", " << row;
            sum += canvas.alpha(column, row) / 255.0;
        }
    }
    EXPECT_NEAR(sum, std::numbers::pi * kRadius * kRadius, 1.5);
}

TEST(CGContextFill, PaintingClearsTheCurrentPath)
{
    Canvas canvas(4, 4);
    for (const CGPathDrawingMode mode :
        {kCGPathFill, kCGPathEOFill, kCGPathStroke, kCGPathFillStroke, kCGPathEOFillStroke}) {
        CGContextAddRect(canvas.context(), CGRectMake(1, 1, 1, 1));
        CGContextDrawPath(canvas.context(), mode);
        EXPECT_TRUE(CGContextIsPathEmpty(canvas.context()));
    }
}

TEST(CGContextFill, NaNCoordinatesPaintNothingAndHugeOnesAreClipped)
{
    const NSLogCapture log;
    Canvas canvas(3, 1);
    CGContextFillRect(canvas.context(), CGRectMake(std::nan(""), 0, 1, 1));
    CGContextMoveToPoint(canvas.context(), kInfinity, 0);
    CGContextAddLineToPoint(canvas.context(), 1, std::nan(""));
    CGContextFillPath(canvas.context());
    EXPECT_COVERAGE(canvas, "...");
    CGContextFillRect(canvas.context(), CGRectMake(-1e12, -1e12, 2e12, 2e12));
    EXPECT_COVERAGE(canvas, "###");
}

TEST(CGContextFill, WithoutAntialiasingAPixelIsPaintedWhereItsCentreIsInside)
{
    Canvas canvas(4, 1);
    CGContextSetShouldAntialias(canvas.context(), false);
    CGContextFillRect(canvas.context(), CGRectMake(0.6, 0, 2, 1));
    EXPECT_COVERAGE(canvas, ".##.");
}

TEST(CGContextStroke, IsCentredOnThePath)
{
    Canvas canvas(5, 5);
    CGContextStrokeRectWithWidth(canvas.context(), CGRectMake(1, 1, 3, 3), 1);
    EXPECT_COVERAGE(canvas,
        "-+++-"
        "+*+*+"
        "++.++"
        "+*+*+"
        "-+++-");

    Canvas inside(5, 5);
    CGContextSetLineWidth(inside.context(), 1);
    CGContextStrokeRect(inside.context(), CGRectMake(0.5, 0.5, 4, 4));
    EXPECT_COVERAGE(inside,
        "#####"
        "#...#"
        "#...#"
        "#...#"
        "#####");
}

TEST(CGContextStroke, IsTransformedByTheCTM)
{
    Canvas canvas(6, 4);
    CGContextScaleCTM(canvas.context(), 2, 1);
    CGContextSetLineWidth(canvas.context(), 1);
    CGContextMoveToPoint(canvas.context(), 1.5, 0);
    CGContextAddLineToPoint(canvas.context(), 1.5, 4);
    CGContextStrokePath(canvas.context());
    EXPECT_COVERAGE(canvas,
        "..##.."
        "..##.."
        "..##.."
        "..##..");
}

TEST(CGContextStroke, CapsReachBeyondTheEnds)
{
    const auto strokeWith = [](CGLineCap cap) {
        Canvas canvas(6, 2);
        CGContextSetLineWidth(canvas.context(), 2);
        CGContextSetLineCap(canvas.context(), cap);
        CGContextMoveToPoint(canvas.context(), 2, 1);
        CGContextAddLineToPoint(canvas.context(), 4, 1);
        CGContextStrokePath(canvas.context());
        return canvas;
    };
    EXPECT_COVERAGE(strokeWith(kCGLineCapButt),
        "..##.."
        "..##..");
    EXPECT_COVERAGE(strokeWith(kCGLineCapSquare),
        ".####."
        ".####.");
    const Canvas round = strokeWith(kCGLineCapRound);
    EXPECT_NEAR(round.alpha(1, 0), 255 * std::numbers::pi / 4, 9); // a quarter of a disc of radius 1
    EXPECT_EQ(round.alpha(0, 0), 0);
}

TEST(CGContextStroke, DashesAreDrawnUntilTheyAreReset)
{
    Canvas canvas(8, 1);
    const CGFloat lengths[]{2, 1};
    CGContextSetLineDash(canvas.context(), 1, lengths, 2);
    CGContextSetLineWidth(canvas.context(), 1);
    CGContextMoveToPoint(canvas.context(), 0, 0.5);
    CGContextAddLineToPoint(canvas.context(), 8, 0.5);
    CGContextStrokePath(canvas.context());
    EXPECT_COVERAGE(canvas, "#.##.##.");

    const CGFloat nothing[]{0, 0};
    CGContextSetLineDash(canvas.context(), 0, nothing, 2);
    CGContextMoveToPoint(canvas.context(), 0, 0.5);
    CGContextAddLineToPoint(canvas.context(), 8, 0.5);
    CGContextStrokePath(canvas.context());
    EXPECT_COVERAGE(canvas, "########");
}

TEST(CGContextStroke, LinesOfZeroWidthAreNotDrawn)
{
    for (const double width : {0.0, std::nan(""), kInfinity}) {
        SCOPED_TRACE(width);
        Canvas canvas(3, 3);
        CGContextStrokeRectWithWidth(canvas.context(), CGRectMake(1, 1, 1, 1), width);
        EXPECT_COVERAGE(canvas,
            "..."
            "..."
            "...");
    }
}

TEST(CGContextStroke, ANegativeLineWidthIsIgnored)
{
    Canvas canvas(6, 3);
    CGContextSetLineWidth(canvas.context(), 2);
    CGContextSetLineWidth(canvas.context(), -1);
    CGContextMoveToPoint(canvas.context(), 0, 1);
    CGContextAddLineToPoint(canvas.context(), 2, 1);
    CGContextStrokePath(canvas.context());
    CGContextStrokeRectWithWidth(canvas.context(), CGRectMake(4, 0, 2, 4), -1);
    EXPECT_COVERAGE(canvas,
        "...###"
        "##.###"
        "##.###");
}

TEST(CGContextStroke, IsDrawnAfterTheFillInTheSameCall)
{
    Canvas canvas(4, 4);
    CGContextSetRGBFillColor(canvas.context(), 1, 0, 0, 1);
    CGContextSetRGBStrokeColor(canvas.context(), 0, 0, 1, 1);
    CGContextSetLineWidth(canvas.context(), 2);
    CGContextAddRect(canvas.context(), CGRectMake(1, 1, 2, 2));
    CGContextDrawPath(canvas.context(), kCGPathFillStroke);
    EXPECT_EQ(canvas.pixel(0, 0), rgba(0, 0, 255, 255));
    EXPECT_EQ(canvas.pixel(1, 1), rgba(0, 0, 255, 255)); // the inner half of the line
}

TEST(CGContextTransform, ChangesApplyToUserSpace)
{
    Canvas canvas(4, 4);
    CGContextTranslateCTM(canvas.context(), 1, 1);
    CGContextScaleCTM(canvas.context(), 2, 2);
    CGContextFillRect(canvas.context(), CGRectMake(0, 0, 1, 0.5));
    EXPECT_COVERAGE(canvas,
        "...."
        "...."
        ".##."
        "....");
    EXPECT_EQ(describe(CGContextGetCTM(canvas.context())), "2 0 0 2 1 1");
}

TEST(CGContextTransform, FlipsAndRotates)
{
    Canvas flipped(2, 3);
    CGContextTranslateCTM(flipped.context(), 0, 3);
    CGContextScaleCTM(flipped.context(), 1, -1);
    CGContextFillRect(flipped.context(), CGRectMake(0, 0, 1, 1));
    EXPECT_COVERAGE(flipped,
        "#."
        ".."
        "..");

    Canvas turned(3, 3);
    CGContextTranslateCTM(turned.context(), 2, 0);
    CGContextRotateCTM(turned.context(), std::numbers::pi / 2);
    CGContextFillRect(turned.context(), CGRectMake(0, 0, 3, 1)); // now from (1, 0) to (2, 3)
    EXPECT_COVERAGE(turned,
        ".#."
        ".#."
        ".#.");
}

TEST(CGContextTransform, PointsOfThePathAreTransformedWhenTheyAreAdded)
{
    Canvas canvas(4, 1);
    CGContextAddRect(canvas.context(), CGRectMake(0, 0, 1, 1));
    CGContextTranslateCTM(canvas.context(), 3, 0);
    CGContextAddRect(canvas.context(), CGRectMake(0, 0, 1, 1));
    EXPECT_EQ(describe(CGContextGetPathBoundingBox(canvas.context())), "-3 0 4 1");
    CGContextFillPath(canvas.context());
    EXPECT_COVERAGE(canvas, "#..#");
}

TEST(CGContextTransform, SingularTransformsDrawNothing)
{
    Canvas canvas(2, 1);
    CGContextScaleCTM(canvas.context(), 0, 1);
    CGContextFillRect(canvas.context(), CGRectMake(0, 0, 2, 1));
    CGContextStrokeRect(canvas.context(), CGRectMake(0, 0, 2, 1));
    EXPECT_COVERAGE(canvas, "..");
}

TEST(CGContextState, IsSavedAndRestoredCompletely)
{
    Canvas canvas(2, 1);
    CGContextRef context = canvas.context();
    CGContextSetRGBFillColor(context, 1, 0, 0, 1);
    CGContextSaveGState(context);
    CGContextSetRGBFillColor(context, 0, 1, 0, 1);
    CGContextSetAlpha(context, 0.5);
    CGContextSetBlendMode(context, kCGBlendModeClear);
    CGContextTranslateCTM(context, 5, 5);
    CGContextSetLineWidth(context, 9);
    CGContextSetInterpolationQuality(context, kCGInterpolationNone);
    CGContextRestoreGState(context);
    CGContextFillRect(context, CGRectMake(0, 0, 2, 1));
    EXPECT_EQ(canvas.pixel(0, 0), rgba(255, 0, 0, 255));
    EXPECT_EQ(CGContextGetInterpolationQuality(context), kCGInterpolationDefault);
}

TEST(CGContextState, RestoringWithoutSavingIsLoggedAndHarmless)
{
    const NSLogCapture log;
    Canvas canvas(1, 1);
    CGContextTranslateCTM(canvas.context(), 1, 0);
    CGContextRestoreGState(canvas.context());
    EXPECT_EQ(describe(CGContextGetCTM(canvas.context())), "1 0 0 1 1 0");
    EXPECT_EQ(log.messages().size(), 1U);
}

TEST(CGContextColor, SettingASpaceSetsItsDefaultColour)
{
    Canvas canvas(2, 1);
    const auto sRGB = adopt(CGColorSpaceCreateWithName(kCGColorSpaceSRGB));
    CGContextSetRGBFillColor(canvas.context(), 1, 0, 0, 0.5);
    CGContextSetFillColorSpace(canvas.context(), sRGB);
    CGContextFillRect(canvas.context(), CGRectMake(0, 0, 1, 1));
    EXPECT_EQ(canvas.pixel(0, 0), rgba(0, 0, 0, 255));
    const CGFloat components[]{0, 1, 0, 1};
    CGContextSetFillColor(canvas.context(), components);
    CGContextFillRect(canvas.context(), CGRectMake(1, 0, 1, 1));
    EXPECT_EQ(canvas.pixel(1, 0), rgba(0, 255, 0, 255));
}

TEST(CGContextColor, ColourObjectsSetTheFillAndStrokeColours)
{
    Canvas canvas(1, 1);
    const auto gray = adopt(CGColorSpaceCreateDeviceGray());
    const CGFloat components[]{0.2, 1};
    const auto color = adopt(CGColorCreate(gray, components));
    CGContextSetFillColorWithColor(canvas.context(), color);
    CGContextSetFillColorWithColor(canvas.context(), nullptr);
    CGContextFillRect(canvas.context(), CGRectMake(0, 0, 1, 1));
    EXPECT_EQ(canvas.pixel(0, 0), rgba(51, 51, 51, 255));
}

TEST(CGContext, NullIsAcceptedEverywhere)
{
    const CGFloat numbers[]{1, 1, 1, 1};
    const CGRect rect = CGRectMake(0, 0, 1, 1);
    const CGPoint point = CGPointMake(1, 2);
    EXPECT_EQ(CGContextRetain(nullptr), nullptr);
    CGContextRelease(nullptr);
    CGContextSaveGState(nullptr);
    CGContextRestoreGState(nullptr);
    CGContextTranslateCTM(nullptr, 1, 1);
    CGContextScaleCTM(nullptr, 1, 1);
    CGContextRotateCTM(nullptr, 1);
    CGContextConcatCTM(nullptr, CGAffineTransformIdentity);
    EXPECT_TRUE(CGAffineTransformIsIdentity(CGContextGetCTM(nullptr)));
    EXPECT_EQ(describe(CGContextConvertPointToDeviceSpace(nullptr, point)), "1 2");
    CGContextBeginPath(nullptr);
    CGContextMoveToPoint(nullptr, 1, 1);
    CGContextAddLineToPoint(nullptr, 1, 1);
    CGContextAddCurveToPoint(nullptr, 1, 1, 1, 1, 1, 1);
    CGContextAddQuadCurveToPoint(nullptr, 1, 1, 1, 1);
    CGContextClosePath(nullptr);
    CGContextAddRect(nullptr, rect);
    CGContextAddRects(nullptr, &rect, 1);
    CGContextAddLines(nullptr, &point, 1);
    CGContextAddEllipseInRect(nullptr, rect);
    CGContextAddArc(nullptr, 0, 0, 1, 0, 1, 0);
    CGContextAddArcToPoint(nullptr, 0, 0, 1, 1, 1);
    CGContextAddPath(nullptr, nullptr);
    EXPECT_EQ(CGContextCopyPath(nullptr), nullptr);
    EXPECT_TRUE(CGRectIsNull(CGContextGetPathBoundingBox(nullptr)));
    EXPECT_TRUE(CGContextIsPathEmpty(nullptr));
    CGContextDrawPath(nullptr, kCGPathFill);
    CGContextFillPath(nullptr);
    CGContextEOFillPath(nullptr);
    CGContextStrokePath(nullptr);
    CGContextFillRect(nullptr, rect);
    CGContextFillRects(nullptr, &rect, 1);
    CGContextStrokeRect(nullptr, rect);
    CGContextStrokeRectWithWidth(nullptr, rect, 1);
    CGContextFillEllipseInRect(nullptr, rect);
    CGContextStrokeEllipseInRect(nullptr, rect);
    CGContextClearRect(nullptr, rect);
    CGContextDrawImage(nullptr, rect, nullptr);
    CGContextClip(nullptr);
    CGContextEOClip(nullptr);
    CGContextClipToRect(nullptr, rect);
    CGContextClipToRects(nullptr, &rect, 1);
    CGContextClipToMask(nullptr, rect, nullptr);
    EXPECT_TRUE(CGRectIsNull(CGContextGetClipBoundingBox(nullptr)));
    CGContextSetLineWidth(nullptr, 1);
    CGContextSetLineCap(nullptr, kCGLineCapRound);
    CGContextSetLineJoin(nullptr, kCGLineJoinRound);
    CGContextSetMiterLimit(nullptr, 1);
    CGContextSetLineDash(nullptr, 0, numbers, 1);
    CGContextSetFillColorSpace(nullptr, nullptr);
    CGContextSetStrokeColorSpace(nullptr, nullptr);
    CGContextSetFillColor(nullptr, numbers);
    CGContextSetStrokeColor(nullptr, numbers);
    CGContextSetFillColorWithColor(nullptr, nullptr);
    CGContextSetStrokeColorWithColor(nullptr, nullptr);
    CGContextSetRGBFillColor(nullptr, 1, 1, 1, 1);
    CGContextSetRGBStrokeColor(nullptr, 1, 1, 1, 1);
    CGContextSetGrayFillColor(nullptr, 1, 1);
    CGContextSetGrayStrokeColor(nullptr, 1, 1);
    CGContextSetAlpha(nullptr, 1);
    CGContextSetBlendMode(nullptr, kCGBlendModeCopy);
    CGContextSetShouldAntialias(nullptr, false);
    CGContextSetInterpolationQuality(nullptr, kCGInterpolationLow);
    CGContextFlush(nullptr);
    CGContextSynchronize(nullptr);
}
