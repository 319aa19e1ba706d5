#include "support/Canvas.h"
#include "support/Numbers.h"

#include <CoreGraphics/CoreGraphics.h>

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace {

/// Black at an alpha of 1/3.
constexpr CanvasPixel kDefault = rgba(0, 0, 0, 85);

RetainPtr<CGColor> colorOf(CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha)
{
    const auto space = adopt(CGColorSpaceCreateDeviceRGB());
    const CGFloat components[]{red, green, blue, alpha};
    return adopt(CGColorCreate(space, components));
}

/// A hard opaque shadow, for comparison with coverage pictures.
void setHardShadow(CGContextRef context, CGFloat dx, CGFloat dy)
{
    CGContextSetShadowWithColor(context, CGSizeMake(dx, dy), 0, colorOf(0, 1, 0, 1).get());
}

void fillRed(CGContextRef context, CGRect rect)
{
    CGContextSetRGBFillColor(context, 1, 0, 0, 1);
    CGContextFillRect(context, rect);
}

} // namespace

TEST(CGContextShadow, IsBlackAtOneThirdAlphaAndBelowTheShape)
{
    Canvas canvas(4, 4);
    CGContextSetShadow(canvas.context(), CGSizeMake(1, -1), 0);
    fillRed(canvas.context(), CGRectMake(0, 2, 2, 2));
    EXPECT_EQ(canvas.pixel(0, 0), kRed);
    EXPECT_EQ(canvas.pixel(1, 1), kRed);
    EXPECT_EQ(canvas.pixel(2, 1), kDefault);
    EXPECT_EQ(canvas.pixel(1, 2), kDefault);
    EXPECT_EQ(canvas.pixel(2, 2), kDefault);
    EXPECT_EQ(canvas.pixel(2, 0), kTransparent);
    EXPECT_EQ(canvas.pixel(3, 2), kTransparent);
}

TEST(CGContextShadow, FallsRightAndUpByAPositiveOffset)
{
    Canvas canvas(5, 4);
    setHardShadow(canvas.context(), 2, 1);
    fillRed(canvas.context(), CGRectMake(0, 0, 2, 2));
    EXPECT_COVERAGE(canvas,
        "....."
        "..##."
        "####."
        "##...");
    EXPECT_EQ(canvas.pixel(1, 2), kRed);
    EXPECT_EQ(canvas.pixel(2, 2), kGreen);
}

TEST(CGContextShadow, IgnoresTheTransform)
{
    Canvas canvas(6, 5);
    const CGContextRef context = canvas.context();
    CGContextTranslateCTM(context, 0, 5);
    CGContextScaleCTM(context, 2, -2);
    setHardShadow(context, 2, 1);
    fillRed(context, CGRectMake(1, 1, 1, 1));
    EXPECT_COVERAGE(canvas,
        "......"
        "....##"
        "..####"
        "..##.."
        "......");
    Canvas blurred(8, 1);
    CGContextScaleCTM(blurred.context(), 2, 2);
    CGContextSetShadow(blurred.context(), CGSizeZero, 2);
    fillRed(blurred.context(), CGRectMake(-2, -9, 4, 20));
    EXPECT_EQ(blurred.pixel(3, 0), kRed);
    EXPECT_GT(blurred.alpha(5, 0), 0);
    EXPECT_EQ(blurred.alpha(6, 0), 0);
}

TEST(CGContextShadow, RoundsItsOffsetToWholePixels)
{
    Canvas canvas(4, 4);
    setHardShadow(canvas.context(), 1.4, 0.6);
    fillRed(canvas.context(), CGRectMake(0, 0, 2, 2));
    EXPECT_COVERAGE(canvas,
        "...."
        ".##."
        "###."
        "##..");
    // The shape's subpixel position is preserved.
    Canvas between(4, 1);
    setHardShadow(between.context(), 2, 0);
    fillRed(between.context(), CGRectMake(0.5, 0, 1, 1));
    EXPECT_COVERAGE(between, "++++");
}

TEST(CGContextShadow, ExtendsByExactlyTheBlurInPixels)
{
    for (const int blur : {1, 2, 5, 8}) {
        Canvas canvas(2 * blur + 6, 2 * blur + 6);
        CGContextSetShadowWithColor(canvas.context(), CGSizeZero, blur, colorOf(0, 0, 0, 1).get());
        // All edges are 2 pixels inside the shadow's extent.
        fillRed(canvas.context(), CGRectMake(blur + 2, blur + 2, 2, 2));
        for (int i = 0; i < canvas.width(); ++i) {
            const bool isReached = i >= 2 && i < canvas.width() - 2;
            EXPECT_EQ(canvas.alpha(i, blur + 2) > 0, isReached) << blur << " " << i;
            EXPECT_EQ(canvas.alpha(blur + 2, i) > 0, isReached) << blur << " " << i;
        }
    }
    // A fractional blur is rounded up.
    Canvas canvas(8, 1);
    CGContextSetShadowWithColor(canvas.context(), CGSizeZero, 2.5, colorOf(0, 0, 0, 1).get());
    fillRed(canvas.context(), CGRectMake(0, -9, 2, 20));
    EXPECT_GT(canvas.alpha(4, 0), 0);
    EXPECT_EQ(canvas.alpha(5, 0), 0);
}

TEST(CGContextShadow, HasHardEdgesForATinyBlur)
{
    for (const CGFloat blur : {1e-200, 5e-324}) {
        SCOPED_TRACE(blur);
        Canvas canvas(5, 3);
        CGContextSetShadowWithColor(canvas.context(), CGSizeMake(2, 0), blur, colorOf(0, 1, 0, 1).get());
        fillRed(canvas.context(), CGRectMake(1, 1, 1, 1));
        EXPECT_COVERAGE(canvas,
            "....."
            ".#.#."
            ".....");
    }
}

TEST(CGContextShadow, IsAGaussianBlurOfTheShape)
{
    constexpr int kSize = 24;
    for (const double blur : {1.0, 3.0, 4.5, 8.0}) {
        const int reach = int(std::ceil(blur));
        const double deviation = blur / 2;
        double sum = 0;
        for (int i = -reach; i <= reach; ++i)
            sum += std::exp(-i * i / (2 * deviation * deviation));
        // The blurred coverage of a pixel along one axis, for a side that ends at pixel 12.
        const auto share = [&](int pixel) {
            double covered = 0;
            for (int i = -reach; i <= reach; ++i)
                covered += pixel + i < 12 ? std::exp(-i * i / (2 * deviation * deviation)) / sum : 0;
            return covered;
        };
        Canvas canvas(kSize, kSize);
        // Only the shadow is visible: the shape is beyond the left and the top edge.
        CGContextSetShadowWithColor(canvas.context(), CGSizeMake(200, -200), blur, colorOf(0, 0, 0, 1).get());
        CGContextFillRect(canvas.context(), CGRectMake(-288, 212, 100, 100));
        for (int y = 0; y < kSize; ++y) {
            for (int x = 0; x < kSize; ++x)
                EXPECT_EQ(canvas.alpha(x, y), std::lround(255 * share(x) * share(y))) << x << " " << y;
        }
    }
}

TEST(CGContextShadow, HasTheGivenColour)
{
    Canvas canvas(2, 1);
    CGContextSetShadowWithColor(canvas.context(), CGSizeMake(1, 0), 0, colorOf(1, 0.2, 0, 0.4).get());
    fillRed(canvas.context(), CGRectMake(0, 0, 1, 1));
    EXPECT_EQ(canvas.pixel(1, 0), rgba(102, 20, 0, 102));

    // A gray is converted from its own space.
    const auto gray = adopt(CGColorSpaceCreateDeviceGray());
    const CGFloat half[]{0.4, 1};
    const auto color = adopt(CGColorCreate(gray, half));
    Canvas other(2, 1);
    CGContextSetShadowWithColor(other.context(), CGSizeMake(1, 0), 0, color);
    fillRed(other.context(), CGRectMake(0, 0, 1, 1));
    EXPECT_EQ(other.pixel(1, 0), rgba(102, 102, 102, 255));
}

TEST(CGContextShadow, IsDisabledByANullOrTransparentColour)
{
    for (const auto& color : {RetainPtr<CGColor>(), colorOf(1, 1, 1, 0), colorOf(1, 1, 1, -1)}) {
        Canvas canvas(2, 1);
        setHardShadow(canvas.context(), 1, 0);
        CGContextSetShadowWithColor(canvas.context(), CGSizeMake(1, 0), 0, color);
        fillRed(canvas.context(), CGRectMake(0, 0, 1, 1));
        EXPECT_EQ(canvas.pixel(1, 0), kTransparent);
    }
}

// Differs: Apple documents no such way to disable shadows; there the shadow would be painted exactly under
// the shape.
TEST(CGContextShadow, IsDisabledByZeroOffsetAndBlurUnlessAColourIsGiven)
{
    Canvas canvas(1, 1);
    setHardShadow(canvas.context(), 1, 0);
    CGContextSetShadow(canvas.context(), CGSizeZero, 0);
    CGContextSetRGBFillColor(canvas.context(), 1, 0, 0, 0.4);
    CGContextFillRect(canvas.context(), CGRectMake(0, 0, 1, 1));
    EXPECT_EQ(canvas.pixel(0, 0), rgba(102, 0, 0, 102));

    Canvas under(1, 1);
    setHardShadow(under.context(), 0, 0);
    CGContextSetRGBFillColor(under.context(), 1, 0, 0, 0.4);
    CGContextFillRect(under.context(), CGRectMake(0, 0, 1, 1));
    EXPECT_EQ(under.pixel(0, 0), rgba(102, 61, 0, 163)); // 0.4 of green, of which 0.6 remains under the red
}

TEST(CGContextShadow, IsMultipliedByTheAlphaOfThePaint)
{
    Canvas canvas(2, 1);
    setHardShadow(canvas.context(), 1, 0);
    CGContextSetRGBFillColor(canvas.context(), 1, 0, 0, 0.4);
    CGContextSetAlpha(canvas.context(), 0.5);
    CGContextFillRect(canvas.context(), CGRectMake(0, 0, 1, 1));
    EXPECT_EQ(canvas.pixel(0, 0), rgba(51, 0, 0, 51));
    EXPECT_EQ(canvas.pixel(1, 0), rgba(0, 51, 0, 51));
}

TEST(CGContextShadow, IsNotCastByTransparentPaint)
{
    Canvas canvas(2, 1);
    setHardShadow(canvas.context(), 1, 0);
    CGContextSetBlendMode(canvas.context(), kCGBlendModeCopy);
    canvas.setPixel(1, 0, kRed);
    CGContextSetRGBFillColor(canvas.context(), 1, 0, 0, 0);
    CGContextFillRect(canvas.context(), CGRectMake(0, 0, 1, 1));
    EXPECT_EQ(canvas.pixel(1, 0), kRed);
    const auto pattern = adopt(CGColorSpaceCreatePattern(nullptr));
    CGContextSetFillColorSpace(canvas.context(), pattern);
    CGContextFillRect(canvas.context(), CGRectMake(0, 0, 1, 1));
    EXPECT_EQ(canvas.pixel(1, 0), kRed);
}

TEST(CGContextShadow, UsesTheBlendMode)
{
    Canvas canvas(3, 1);
    canvas.setPixel(1, 0, rgba(0, 0, 255, 255));
    setHardShadow(canvas.context(), 1, 0);
    CGContextSetBlendMode(canvas.context(), kCGBlendModeDestinationOver);
    fillRed(canvas.context(), CGRectMake(0, 0, 2, 1));
    EXPECT_EQ(canvas.pixel(0, 0), kRed);
    EXPECT_EQ(canvas.pixel(1, 0), rgba(0, 0, 255, 255));
    EXPECT_EQ(canvas.pixel(2, 0), kGreen);

    // Pixels outside the rectangles are unchanged in modes that clear the backdrop, too.
    Canvas atop(3, 2);
    for (const int row : {0, 1})
        for (const int column : {0, 1, 2})
            atop.setPixel(column, row, rgba(0, 0, 255, 255));
    setHardShadow(atop.context(), 1, 0);
    CGContextSetBlendMode(atop.context(), kCGBlendModeSourceIn);
    fillRed(atop.context(), CGRectMake(0, 0, 2, 1));
    EXPECT_EQ(atop.pixel(0, 1), kRed);
    EXPECT_EQ(atop.pixel(2, 1), kGreen);
    EXPECT_EQ(atop.pixel(2, 0), rgba(0, 0, 255, 255));
}

TEST(CGContextShadow, StaysWithinTheClip)
{
    Canvas canvas(5, 2);
    CGContextClipToRect(canvas.context(), CGRectMake(0, 0, 2.5, 1));
    setHardShadow(canvas.context(), 1, 0);
    fillRed(canvas.context(), CGRectMake(0, 0, 2, 2));
    EXPECT_COVERAGE(canvas,
        "....."
        "##+..");
    EXPECT_EQ(canvas.pixel(1, 1), kRed);
    EXPECT_EQ(canvas.pixel(2, 1), rgba(0, 128, 0, 128));
}

TEST(CGContextShadow, IsCastFromOutsideTheClipAndTheBitmap)
{
    for (const CGFloat blur : {0, 3}) {
        // The right half of a canvas of twice the width.
        Canvas whole(24, 12);
        Canvas half(12, 12);
        Canvas clipped(24, 12);
        CGContextTranslateCTM(half.context(), -12, 0);
        CGContextClipToRect(clipped.context(), CGRectMake(12, 0, 12, 12));
        for (const Canvas* canvas : {&whole, &half, &clipped}) {
            CGContextSetShadow(canvas->context(), CGSizeMake(8, -1), blur);
            CGContextFillEllipseInRect(canvas->context(), CGRectMake(1, 2, 10, 9));
        }
        for (int y = 0; y < 12; ++y) {
            for (int x = 0; x < 12; ++x) {
                EXPECT_EQ(half.alpha(x, y), whole.alpha(x + 12, y)) << x << " " << y;
                EXPECT_EQ(clipped.alpha(x + 12, y), whole.alpha(x + 12, y)) << x << " " << y;
                EXPECT_EQ(clipped.alpha(x, y), 0);
            }
        }
        EXPECT_EQ(half.alpha(2, 6), 85);
    }
}

TEST(CGContextShadow, OfAStrokeFallsOnTheFillOfTheSamePath)
{
    Canvas canvas(8, 6);
    const CGContextRef context = canvas.context();
    setHardShadow(context, 1, 0);
    CGContextSetRGBFillColor(context, 1, 0, 0, 1);
    CGContextSetRGBStrokeColor(context, 0, 0, 1, 1);
    CGContextSetLineWidth(context, 1);
    CGContextAddRect(context, CGRectMake(0.5, 0.5, 6, 5));
    CGContextDrawPath(context, kCGPathFillStroke);
    const CanvasPixel blue = rgba(0, 0, 255, 255);
    const CanvasPixel row[]{blue, kGreen, kRed, kRed, kRed, kRed, blue, kGreen};
    for (int x = 0; x < 8; ++x)
        EXPECT_EQ(canvas.pixel(x, 2), row[x]) << x;
}

TEST(CGContextShadow, OfAnImageFollowsItsAlpha)
{
    Canvas source(3, 1);
    source.setPixel(0, 0, kRed);
    source.setPixel(2, 0, rgba(0, 0, 102, 102));
    const auto image = adopt(CGBitmapContextCreateImage(source.context()));
    for (const CGFloat alpha : {1.0, 0.5}) {
        const int whole = alpha == 1 ? 255 : 128;
        const int part = alpha == 1 ? 102 : 51;
        Canvas canvas(3, 2);
        setHardShadow(canvas.context(), 0, -1);
        CGContextSetAlpha(canvas.context(), alpha);
        CGContextDrawImage(canvas.context(), CGRectMake(0, 1, 3, 1), image);
        EXPECT_EQ(canvas.pixel(0, 0), rgba(whole, 0, 0, whole));
        EXPECT_EQ(canvas.pixel(0, 1), rgba(0, whole, 0, whole));
        EXPECT_EQ(canvas.pixel(1, 1), kTransparent);
        EXPECT_EQ(canvas.pixel(2, 1), rgba(0, part, 0, part));
    }
}

TEST(CGContextShadow, OfAnImageOutsideTheCanvasIsVisible)
{
    Canvas source(3, 1);
    source.setPixel(0, 0, kRed);
    const auto image = adopt(CGBitmapContextCreateImage(source.context()));
    for (const CGFloat alpha : {1.0, 0.5}) {
        Canvas canvas(3, 1);
        setHardShadow(canvas.context(), 0, -4);
        CGContextSetAlpha(canvas.context(), alpha);
        CGContextDrawImage(canvas.context(), CGRectMake(0, 4, 3, 1), image);
        EXPECT_EQ(canvas.alpha(0, 0), alpha == 1 ? 255 : 128);
        EXPECT_EQ(canvas.alpha(1, 0), 0);
    }
}

TEST(CGContextShadow, OfAMaskFollowsItsShape)
{
    Canvas source(2, 1, Canvas::Format::AlphaOnly);
    source.setPixel(1, 0, rgba(0, 0, 0, 255));
    const auto mask = adopt(CGBitmapContextCreateImage(source.context()));
    Canvas canvas(2, 2);
    setHardShadow(canvas.context(), 0, -1);
    CGContextSetRGBFillColor(canvas.context(), 1, 0, 0, 0.4);
    CGContextDrawImage(canvas.context(), CGRectMake(0, 1, 2, 1), mask);
    EXPECT_EQ(canvas.pixel(0, 0), kTransparent);
    EXPECT_EQ(canvas.pixel(1, 0), rgba(102, 0, 0, 102));
    EXPECT_EQ(canvas.pixel(0, 1), kTransparent);
    EXPECT_EQ(canvas.pixel(1, 1), rgba(0, 102, 0, 102));
}

TEST(CGContextShadow, IsNotCastByClearing)
{
    Canvas canvas(3, 1);
    for (const int column : {0, 1, 2})
        canvas.setPixel(column, 0, kRed);
    setHardShadow(canvas.context(), 1, 0);
    CGContextClearRect(canvas.context(), CGRectMake(0, 0, 2, 1));
    EXPECT_EQ(canvas.pixel(0, 0), kTransparent);
    EXPECT_EQ(canvas.pixel(1, 0), kTransparent);
    EXPECT_EQ(canvas.pixel(2, 0), kRed);
}

TEST(CGContextShadow, FollowsEdgesWithoutAntialiasing)
{
    Canvas canvas(4, 1);
    CGContextSetShouldAntialias(canvas.context(), false);
    setHardShadow(canvas.context(), 2, 0);
    fillRed(canvas.context(), CGRectMake(0.6, 0, 1, 1));
    EXPECT_COVERAGE(canvas, ".#.#");
}

TEST(CGContextShadow, IsSavedAndRestored)
{
    Canvas canvas(2, 1);
    setHardShadow(canvas.context(), 1, 0);
    CGContextSaveGState(canvas.context());
    CGContextSetShadowWithColor(canvas.context(), CGSizeMake(1, 0), 0, nullptr);
    fillRed(canvas.context(), CGRectMake(0, 0, 1, 1));
    EXPECT_EQ(canvas.pixel(1, 0), kTransparent);
    CGContextRestoreGState(canvas.context());
    fillRed(canvas.context(), CGRectMake(0, 0, 1, 1));
    EXPECT_EQ(canvas.pixel(1, 0), kGreen);
}

TEST(CGContextShadow, IsDrawnInAlphaOnlyContexts)
{
    Canvas canvas(4, 1, Canvas::Format::AlphaOnly);
    CGContextSetShadow(canvas.context(), CGSizeMake(2, 0), 0);
    CGContextFillRect(canvas.context(), CGRectMake(0, 0, 2, 1));
    EXPECT_EQ(canvas.alpha(1, 0), 255);
    EXPECT_EQ(canvas.alpha(2, 0), 85);
}

TEST(CGContextShadow, IgnoresInvalidBlursAndUnreachableOffsets)
{
    for (const CGFloat blur : {-1.0, kNaN, -kInfinity}) {
        Canvas canvas(3, 1);
        CGContextSetShadow(canvas.context(), CGSizeMake(1, kNaN), blur);
        fillRed(canvas.context(), CGRectMake(0, 0, 1, 1));
        EXPECT_EQ(canvas.pixel(1, 0), kDefault);
        EXPECT_EQ(canvas.pixel(2, 0), kTransparent);
    }
    // Too far away to be visible.
    for (const CGFloat offset : {kInfinity, -kInfinity, 1e300}) {
        Canvas canvas(3, 1);
        CGContextSetShadow(canvas.context(), CGSizeMake(offset, 0), 0);
        fillRed(canvas.context(), CGRectMake(0, 0, 1, 1));
        EXPECT_EQ(canvas.pixel(0, 0), kRed);
        EXPECT_EQ(canvas.pixel(1, 0), kTransparent);
    }
}

TEST(CGContextShadow, ClampsTheBlurToItsMaximum)
{
    Canvas largest(4, 1);
    Canvas larger(4, 1);
    CGContextSetShadowWithColor(largest.context(), CGSizeMake(1e4, 0), 500, colorOf(0, 0, 0, 1).get());
    CGContextSetShadowWithColor(larger.context(), CGSizeMake(1e4, 0), kInfinity, colorOf(0, 0, 0, 1).get());
    for (const Canvas* canvas : {&largest, &larger})
        CGContextFillRect(canvas->context(), CGRectMake(-1e4 + 2, -2000, 3000, 4000));
    EXPECT_EQ(largest.pixel(0, 0), larger.pixel(0, 0));
    EXPECT_NEAR(largest.alpha(0, 0), 127, 2); // near the middle of the edge
}

TEST(CGContextShadow, AcceptsANullContext)
{
    CGContextSetShadow(nullptr, CGSizeMake(1, 1), 1);
    CGContextSetShadowWithColor(nullptr, CGSizeMake(1, 1), 1, colorOf(0, 0, 0, 1).get());
}
