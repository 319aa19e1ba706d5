#include "support/Canvas.h"
#include "support/Describe.h"

#include <CoreGraphics/CoreGraphics.h>

#include <gtest/gtest.h>

namespace {

constexpr CGFloat kGreenComponents[] = {0, 1, 0, 1};

/// A scale of 2, and a red fill colour that no stroke may use or change.
class CGContextStrokeColor : public testing::Test {
protected:
    CGContextStrokeColor()
    {
        CGContextScaleCTM(context, 2, 2);
        CGContextSetRGBFillColor(context, 1, 0, 0, 1);
    }

    /// The colour of a transparent pixel after a line covers it.
    CanvasPixel stroked()
    {
        CGContextClearRect(context, CGRectMake(0, 0, 0.5, 0.5));
        CGContextSetLineWidth(context, 0.5);
        CGContextMoveToPoint(context, 0, 0.25);
        CGContextAddLineToPoint(context, 0.5, 0.25);
        CGContextStrokePath(context);
        return canvas.pixel(0, 0);
    }

    CanvasPixel filled()
    {
        CGContextFillRect(context, CGRectMake(0, 0, 0.5, 0.5));
        return canvas.pixel(0, 0);
    }

    const RetainPtr<CGColorSpace> sRGB = adopt(CGColorSpaceCreateWithName(kCGColorSpaceSRGB));
    const RetainPtr<CGColorSpace> gray = adopt(CGColorSpaceCreateDeviceGray());
    Canvas canvas{1, 1};
    const CGContextRef context = canvas.context();
};

} // namespace

TEST_F(CGContextStrokeColor, SettingASpaceSetsItsDefaultColour)
{
    CGContextSetRGBStrokeColor(context, 0, 1, 0, 0.5);
    CGContextSetStrokeColorSpace(context, nullptr);
    EXPECT_EQ(stroked(), rgba(0, 128, 0, 128));
    CGContextSetStrokeColorSpace(context, sRGB);
    EXPECT_EQ(stroked(), kBlack);
    EXPECT_EQ(filled(), kRed);
}

TEST_F(CGContextStrokeColor, ComponentsAreInterpretedInTheCurrentSpace)
{
    // The device gray space of a new context: one component and alpha.
    const CGFloat components[]{0.5, 0.4, 1, 1};
    CGContextSetStrokeColor(context, components);
    EXPECT_EQ(stroked(), rgba(51, 51, 51, 102));
    CGContextSetStrokeColorSpace(context, sRGB);
    CGContextSetStrokeColor(context, kGreenComponents);
    EXPECT_EQ(stroked(), kGreen);
    CGContextSetStrokeColor(context, nullptr);
    EXPECT_EQ(stroked(), kGreen);
    EXPECT_EQ(filled(), kRed);
}

TEST_F(CGContextStrokeColor, APatternSpacePaintsNothingWhateverItsComponents)
{
    const auto pattern = adopt(CGColorSpaceCreatePattern(sRGB));
    CGContextSetStrokeColorSpace(context, pattern);
    EXPECT_EQ(stroked(), kTransparent);
    CGContextSetStrokeColor(context, kGreenComponents);
    EXPECT_EQ(stroked(), kTransparent);
    CGContextSetStrokeColorSpace(context, gray);
    EXPECT_EQ(stroked(), kBlack);
    EXPECT_EQ(filled(), kRed);
}

TEST_F(CGContextStrokeColor, GraySetsWhiteAndAlpha)
{
    CGContextSetStrokeColorSpace(context, sRGB);
    CGContextSetGrayStrokeColor(context, 0.5, 0.4);
    EXPECT_EQ(stroked(), rgba(51, 51, 51, 102));
    // This also sets the gray space: the second component is the alpha.
    CGContextSetStrokeColor(context, kGreenComponents);
    EXPECT_EQ(stroked(), kBlack);
    EXPECT_EQ(filled(), kRed);
}

TEST_F(CGContextStrokeColor, AColourObjectSetsItsSpace)
{
    const auto color = adopt(CGColorCreate(sRGB, kGreenComponents));
    CGContextSetStrokeColorWithColor(context, color);
    CGContextSetStrokeColorWithColor(context, nullptr);
    EXPECT_EQ(stroked(), kGreen);
    const CGFloat blue[]{0, 0, 1, 1};
    CGContextSetStrokeColor(context, blue);
    EXPECT_EQ(stroked(), rgba(0, 0, 255, 255));
    EXPECT_EQ(filled(), kRed);
}

TEST_F(CGContextStrokeColor, IsSavedAndRestored)
{
    CGContextSetRGBStrokeColor(context, 0, 1, 0, 1);
    CGContextSaveGState(context);
    CGContextSetGrayStrokeColor(context, 1, 0.4);
    CGContextRestoreGState(context);
    EXPECT_EQ(stroked(), kGreen);
}

TEST(CGContextConvert, DeviceSpaceHasItsOriginAtTheTopLeft)
{
    Canvas canvas(1, 100);
    const CGContextRef context = canvas.context();
    EXPECT_EQ(describe(CGContextGetUserSpaceToDeviceSpaceTransform(context)), "1 0 0 -1 0 100");
    EXPECT_EQ(describe(CGContextConvertPointToDeviceSpace(context, CGPointMake(0, 0))), "0 100");
    CGContextScaleCTM(context, 2, 2);
    EXPECT_EQ(describe(CGContextGetUserSpaceToDeviceSpaceTransform(context)), "2 0 0 -2 0 100");
    EXPECT_EQ(describe(CGContextConvertRectToDeviceSpace(context, CGRectMake(1, 10, 3, 5))), "2 70 6 10");
}

// From user to device space a point (x, y) goes to (4 - 3y, 5 - 2x): a quarter turn, then both sides
// stretched and the y axis turned downward.
TEST(CGContextConvert, AppliesTheTransformInBothDirections)
{
    Canvas canvas(1, 10);
    const CGContextRef context = canvas.context();
    CGContextConcatCTM(context, CGAffineTransformMake(0, 2, -3, 0, 4, 5));
    EXPECT_EQ(describe(CGContextGetUserSpaceToDeviceSpaceTransform(context)), "0 -2 -3 0 4 5");
    EXPECT_EQ(describe(CGContextConvertPointToDeviceSpace(context, CGPointMake(1, 2))), "-2 3");
    EXPECT_EQ(describe(CGContextConvertPointToUserSpace(context, CGPointMake(-2, 3))), "1 2");
    EXPECT_EQ(describe(CGContextConvertSizeToDeviceSpace(context, CGSizeMake(1, 2))), "-6 -2");
    EXPECT_EQ(describe(CGContextConvertSizeToUserSpace(context, CGSizeMake(-6, -2))), "1 2");
    EXPECT_EQ(describe(CGContextConvertRectToDeviceSpace(context, CGRectMake(1, 2, 3, 4))), "-14 -3 12 6");
    EXPECT_EQ(describe(CGContextConvertRectToUserSpace(context, CGRectMake(-14, -3, 12, 6))), "1 2 3 4");
}

TEST(CGContextConvert, ARotatedRectangleConvertsToItsBoundingBox)
{
    Canvas canvas(1, 3);
    const CGContextRef context = canvas.context();
    CGContextConcatCTM(context, CGAffineTransformMake(1, 1, -1, 1, 0, 0)); // 1/8 turn, a scale of √2
    EXPECT_EQ(describe(CGContextConvertRectToDeviceSpace(context, CGRectMake(0, 0, 2, 1))), "-1 0 3 3");
    EXPECT_EQ(describe(CGContextConvertRectToUserSpace(context, CGRectMake(0, 0, 2, 2))), "0.5 -0.5 2 2");
}

TEST(CGContextConvert, ConversionsToUserSpaceChangeNothingWithoutAnInverse)
{
    for (const CGAffineTransform& flat :
        {CGAffineTransformMakeScale(0, 2), CGAffineTransformMake(1e-320, 0, 0, 2, 7, 7)}) {
        Canvas canvas(3, 2);
        const CGContextRef context = canvas.context();
        CGContextMoveToPoint(context, 3, 4);
        CGContextConcatCTM(context, flat);
        EXPECT_EQ(describe(CGContextConvertPointToUserSpace(context, CGPointMake(3, 4))), "3 4");
        EXPECT_EQ(describe(CGContextConvertSizeToUserSpace(context, CGSizeMake(3, 4))), "3 4");
        EXPECT_EQ(describe(CGContextConvertRectToUserSpace(context, CGRectMake(1, 2, 3, 4))), "1 2 3 4");
        EXPECT_EQ(describe(CGContextGetPathCurrentPoint(context)), "3 4");
        EXPECT_EQ(describe(adopt(CGContextCopyPath(context))), "M 3 4");
        EXPECT_EQ(describe(CGContextGetClipBoundingBox(context)), "0 0 3 2");
    }
}

TEST(CGContextConvert, ANullContextConvertsNothing)
{
    EXPECT_EQ(describe(CGContextGetUserSpaceToDeviceSpaceTransform(nullptr)), "1 0 0 1 0 0");
    EXPECT_EQ(describe(CGContextConvertPointToUserSpace(nullptr, CGPointMake(1, 2))), "1 2");
    EXPECT_EQ(describe(CGContextConvertSizeToDeviceSpace(nullptr, CGSizeMake(1, 2))), "1 2");
    EXPECT_EQ(describe(CGContextConvertSizeToUserSpace(nullptr, CGSizeMake(1, 2))), "1 2");
    EXPECT_EQ(describe(CGContextConvertRectToDeviceSpace(nullptr, CGRectMake(1, 2, 3, 4))), "1 2 3 4");
    EXPECT_EQ(describe(CGContextConvertRectToUserSpace(nullptr, CGRectMake(1, 2, 3, 4))), "1 2 3 4");
    EXPECT_EQ(describe(CGContextGetPathCurrentPoint(nullptr)), "0 0");
}

TEST(CGContextFlush, ChangesNothing)
{
    Canvas canvas(2, 1);
    const CGContextRef context = canvas.context();
    CGContextScaleCTM(context, 2, 2);
    CGContextSetRGBFillColor(context, 0, 1, 0, 1);
    CGContextFillRect(context, CGRectMake(0, 0, 0.5, 0.5));
    EXPECT_EQ(canvas.pixel(0, 0), kGreen); // drawn before any flush
    CGContextMoveToPoint(context, 3, 4);
    for (void (*const flush)(CGContextRef) : {CGContextFlush, CGContextSynchronize}) {
        canvas.setPixel(1, 0, kRed); // by the owner of the memory
        flush(context);
        EXPECT_EQ(canvas.pixel(0, 0), kGreen);
        EXPECT_EQ(canvas.pixel(1, 0), kRed);
        EXPECT_EQ(describe(CGContextGetCTM(context)), "2 0 0 2 0 0");
        EXPECT_EQ(describe(CGContextGetPathCurrentPoint(context)), "3 4");
    }
}
