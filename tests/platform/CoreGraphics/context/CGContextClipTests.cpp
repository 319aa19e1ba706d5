#include "support/Canvas.h"

#include "Foundation/testing/NSLogCapture.h"

#include <CoreGraphics/CoreGraphics.h>
#include <Foundation/NSData.h>

#include <gtest/gtest.h>
#include <vector>

namespace {

void fillAll(const Canvas& canvas)
{
    CGContextSetGrayFillColor(canvas.context(), 0, 1);
    CGContextFillRect(canvas.context(), CGRectMake(-100, -100, 200, 200));
}

RetainPtr<CGDataProvider> providerOf(const std::vector<unsigned char>& bytes)
{
    return adopt(CGDataProviderCreateWithCFData(NSData::dataWithBytes(bytes.data(), bytes.size()).get()));
}

RetainPtr<CGImage> maskImage(std::size_t width, std::size_t height, const std::vector<unsigned char>& samples)
{
    return adopt(CGImageMaskCreate(width, height, 8, 8, width, providerOf(samples).get(), nullptr, false));
}

RetainPtr<CGImage> grayImage(std::size_t width, std::size_t height, const std::vector<unsigned char>& samples)
{
    const auto space = adopt(CGColorSpaceCreateDeviceGray());
    return adopt(CGImageCreate(width, height, 8, 8, width, space, kCGImageAlphaNone,
        providerOf(samples).get(), nullptr, false, kCGRenderingIntentDefault));
}

} // namespace

TEST(CGContextClip, RectanglesClipAtWholeAndHalfPixels)
{
    Canvas canvas(6, 4);
    CGContextClipToRect(canvas.context(), CGRectMake(1, 1, 3.5, 2));
    fillAll(canvas);
    EXPECT_COVERAGE(canvas,
        "......"
        ".###+."
        ".###+."
        "......");
}

TEST(CGContextClip, OnlyEverShrinks)
{
    Canvas canvas(4, 2);
    CGContextClipToRect(canvas.context(), CGRectMake(0, 0, 2, 2));
    CGContextClipToRect(canvas.context(), CGRectMake(1, 0, 3, 2));
    fillAll(canvas);
    EXPECT_COVERAGE(canvas,
        ".#.."
        ".#..");
}

TEST(CGContextClip, CoveragesMultiply)
{
    // The same half pixel in clip and shape: a half of a half. An intersection of outlines would be a half.
    Canvas canvas(3, 1);
    CGContextClipToRect(canvas.context(), CGRectMake(0, 0, 1.5, 1));
    CGContextSetGrayFillColor(canvas.context(), 0, 1);
    CGContextFillRect(canvas.context(), CGRectMake(0, 0, 1.5, 1));
    EXPECT_COVERAGE(canvas, "#-.");

    Canvas twice(3, 1);
    CGContextClipToRect(twice.context(), CGRectMake(0, 0, 1.5, 1));
    CGContextClipToRect(twice.context(), CGRectMake(0, 0, 1.5, 1));
    fillAll(twice);
    EXPECT_COVERAGE(twice, "#-.");
}

TEST(CGContextClip, EndsWithTheStateInWhichItWasSet)
{
    Canvas canvas(4, 1);
    CGContextSaveGState(canvas.context());
    CGContextAddEllipseInRect(canvas.context(), CGRectMake(0, 0, 0.1, 0.1));
    CGContextClip(canvas.context());
    CGContextSaveGState(canvas.context());
    CGContextClipToRect(canvas.context(), CGRectMake(0, 0, 0, 0));
    CGContextRestoreGState(canvas.context());
    CGContextRestoreGState(canvas.context());
    fillAll(canvas);
    EXPECT_COVERAGE(canvas, "####");
}

TEST(CGContextClip, StaysWhereItWasSetWhenTheTransformChanges)
{
    Canvas canvas(4, 1);
    CGContextTranslateCTM(canvas.context(), 1, 0);
    CGContextClipToRect(canvas.context(), CGRectMake(0, 0, 1, 1));
    CGContextTranslateCTM(canvas.context(), 2, 0);
    fillAll(canvas);
    EXPECT_COVERAGE(canvas, ".#..");
}

TEST(CGContextClip, PathsClipAlikeHoweverMuchIsPaintedAtATime)
{
    const auto clipToEllipse = [](CGContextRef context) {
        CGContextAddEllipseInRect(context, CGRectMake(0.5, 1, 7, 5.5));
        CGContextClip(context);
    };
    Canvas whole(8, 8);
    clipToEllipse(whole.context());
    fillAll(whole);

    // Covers everything without being a rectangle.
    const CGPoint triangle[]{{-9, -9}, {30, -9}, {-9, 30}};
    Canvas rects(8, 8);
    clipToEllipse(rects.context());
    Canvas paths(8, 8);
    for (int y = 0; y < 8; ++y) {
        for (int x = 0; x < 8; ++x) {
            CGContextFillRect(rects.context(), CGRectMake(x, y, 1, 1));
            CGContextSaveGState(paths.context());
            clipToEllipse(paths.context());
            CGContextClipToRect(paths.context(), CGRectMake(x, y, 1, 1));
            CGContextAddLines(paths.context(), triangle, 3);
            CGContextFillPath(paths.context());
            CGContextRestoreGState(paths.context());
        }
    }
    for (int row = 0; row < 8; ++row) {
        for (int column = 0; column < 8; ++column) {
            EXPECT_EQ(rects.alpha(column, row), whole.alpha(column, row)) << column << ", " << row;
            EXPECT_EQ(paths.alpha(column, row), whole.alpha(column, row)) << column << ", " << row;
        }
    }
}

TEST(CGContextClip, PathsClipByTheWindingOrTheEvenOddRule)
{
    const auto addNested = [](CGContextRef context) {
        CGContextAddRect(context, CGRectMake(0, 0, 5, 3));
        CGContextAddRect(context, CGRectMake(1, 1, 3, 1));
    };
    Canvas winding(5, 3);
    addNested(winding.context());
    CGContextClip(winding.context());
    fillAll(winding);
    EXPECT_COVERAGE(winding,
        "#####"
        "#####"
        "#####");

    Canvas evenOdd(5, 3);
    addNested(evenOdd.context());
    CGContextEOClip(evenOdd.context());
    EXPECT_TRUE(CGContextIsPathEmpty(evenOdd.context()));
    fillAll(evenOdd);
    EXPECT_COVERAGE(evenOdd,
        "#####"
        "#...#"
        "#####");
}

TEST(CGContextClip, EmptyPathChangesNothingAndAPathWithoutAreaClipsEverything)
{
    Canvas canvas(2, 1);
    CGContextClip(canvas.context());
    fillAll(canvas);
    EXPECT_COVERAGE(canvas, "##");

    Canvas nothing(2, 1);
    CGContextMoveToPoint(nothing.context(), 0, 0);
    CGContextAddLineToPoint(nothing.context(), 2, 1);
    CGContextClip(nothing.context());
    fillAll(nothing);
    EXPECT_COVERAGE(nothing, "..");
}

TEST(CGContextClip, ClipsToTheUnionOfSeveralRectangles)
{
    Canvas canvas(5, 1);
    const CGRect rects[]{CGRectMake(0, 0, 2, 1), CGRectMake(1, 0, 1, 1), CGRectMake(4, 0, 1, 1)};
    CGContextClipToRects(canvas.context(), rects, 3);
    fillAll(canvas);
    EXPECT_COVERAGE(canvas, "##..#");
}

TEST(CGContextClip, BoundingBoxIsInUserSpace)
{
    Canvas canvas(10, 10);
    CGContextScaleCTM(canvas.context(), 2, 2);
    EXPECT_TRUE(CGRectEqualToRect(CGContextGetClipBoundingBox(canvas.context()), CGRectMake(0, 0, 5, 5)));
    CGContextClipToRect(canvas.context(), CGRectMake(1, 1, 2, 3));
    EXPECT_TRUE(CGRectEqualToRect(CGContextGetClipBoundingBox(canvas.context()), CGRectMake(1, 1, 2, 3)));
}

TEST(CGContextClipToMask, MaskImagePaintsWhereSamplesAreZero)
{
    Canvas canvas(6, 4);
    const auto mask = maskImage(4, 2,
        {
            0, 0, 255, 255,   // top row
            0, 255, 255, 255, // bottom row
        });
    CGContextClipToMask(canvas.context(), CGRectMake(1, 1, 4, 2), mask);
    fillAll(canvas);
    EXPECT_COVERAGE(canvas,
        "......"
        ".##..."
        ".#...."
        "......");
}

TEST(CGContextClipToMask, GrayImagePaintsInProportionToItsValue)
{
    Canvas canvas(4, 1);
    CGContextClipToMask(canvas.context(), CGRectMake(0, 0, 4, 1), grayImage(4, 1, {0, 64, 128, 255}).get());
    fillAll(canvas);
    EXPECT_COVERAGE(canvas, ".-+#");
}

TEST(CGContextClipToMask, ImageOfAnAlphaOnlyContextPaintsWhereItsAlphaIsHigh)
{
    Canvas shape(3, 2, Canvas::Format::AlphaOnly);
    CGContextFillRect(shape.context(), CGRectMake(0, 1, 1, 1)); // top left
    const auto image = adopt(CGBitmapContextCreateImage(shape.context()));
    Canvas canvas(3, 2);
    CGContextClipToMask(canvas.context(), CGRectMake(0, 0, 3, 2), image);
    fillAll(canvas);
    EXPECT_COVERAGE(canvas,
        "#.."
        "...");
}

TEST(CGContextClipToMask, MasksAndClipsMultiply)
{
    Canvas canvas(4, 1);
    const auto half = grayImage(1, 1, {128});
    CGContextClipToMask(canvas.context(), CGRectMake(0, 0, 4, 1), half);
    CGContextClipToMask(canvas.context(), CGRectMake(1, 0, 3, 1), half);
    CGContextClipToRect(canvas.context(), CGRectMake(0, 0, 3, 1));
    fillAll(canvas);
    EXPECT_COVERAGE(canvas, ".--.");
}

TEST(CGContextClipToMask, AppliesInEveryBlendMode)
{
    for (const CGBlendMode mode : {kCGBlendModeNormal, kCGBlendModeCopy, kCGBlendModeSourceOut}) {
        Canvas canvas(3, 1);
        CGContextClipToMask(canvas.context(), CGRectMake(0, 0, 3, 1), grayImage(3, 1, {0, 128, 255}).get());
        CGContextSetBlendMode(canvas.context(), mode);
        fillAll(canvas);
        EXPECT_COVERAGE(canvas, ".+#");
    }
}

TEST(CGContextClipToMask, AnUnsupportedImageIsLoggedAndIgnored)
{
    Canvas colors(1, 1);
    const auto image = adopt(CGBitmapContextCreateImage(colors.context()));
    const NSLogCapture log;
    Canvas canvas(2, 1);
    CGContextClipToMask(canvas.context(), CGRectMake(0, 0, 1, 1), image);
    fillAll(canvas);
    EXPECT_COVERAGE(canvas, "##");
    EXPECT_EQ(log.messages().size(), 1U);
    CGContextClearRect(canvas.context(), CGRectMake(0, 0, 2, 1));
    CGContextClipToMask(canvas.context(), CGRectMake(0, 0, 1, 1), nullptr);
    fillAll(canvas);
    EXPECT_COVERAGE(canvas, "#.");
}
