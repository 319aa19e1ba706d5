#include "Foundation/testing/NSLogCapture.h"
#include "support/Canvas.h"

#include <CoreGraphics/CoreGraphics.h>

#include <array>
#include <gtest/gtest.h>

namespace {

void fill(CGContextRef context, CanvasPixel color, CGRect rect)
{
    const auto part = [&](std::size_t i) { return color.bytes[i] / 255.0; };
    CGContextSetRGBFillColor(context, part(0), part(1), part(2), part(3));
    CGContextFillRect(context, rect);
}

void begin(CGContextRef context)
{
    CGContextBeginTransparencyLayer(context, nullptr);
}

void setGreenShadow(CGContextRef context, CGFloat dx, CGFloat dy)
{
    const auto space = adopt(CGColorSpaceCreateDeviceRGB());
    const CGFloat green[]{0, 1, 0, 1};
    const auto color = adopt(CGColorCreate(space, green));
    CGContextSetShadowWithColor(context, CGSizeMake(dx, dy), 0, color);
}

} // namespace

TEST(CGContextTransparencyLayer, OverlappingShapesFadeAsOne)
{
    Canvas canvas(3, 1);
    CGContextSetAlpha(canvas.context(), 0.4);
    begin(canvas.context());
    fill(canvas.context(), kRed, CGRectMake(0, 0, 2, 1));
    fill(canvas.context(), kBlue, CGRectMake(1, 0, 1, 1));
    EXPECT_EQ(canvas.pixel(0, 0), kTransparent); // not painted before its end
    CGContextEndTransparencyLayer(canvas.context());
    EXPECT_EQ(canvas.pixel(0, 0), rgba(102, 0, 0, 102));
    EXPECT_EQ(canvas.pixel(1, 0), rgba(0, 0, 102, 102));
    EXPECT_EQ(canvas.pixel(2, 0), kTransparent);
}

TEST(CGContextTransparencyLayer, ResetsAlphaModeAndShadowInsideAndRestoresTheStateAtItsEnd)
{
    Canvas canvas(6, 1);
    fill(canvas.context(), kBlue, CGRectMake(0, 0, 6, 1));
    CGContextSetAlpha(canvas.context(), 0.5);
    CGContextSetBlendMode(canvas.context(), kCGBlendModeClear);
    setGreenShadow(canvas.context(), 1, 0);
    CGContextTranslateCTM(canvas.context(), 1, 0);
    begin(canvas.context());
    CGContextTranslateCTM(canvas.context(), 3, 0);
    fill(canvas.context(), kRed, CGRectMake(-4, 0, 1, 1));
    CGContextSetAlpha(canvas.context(), 0.3);
    CGContextEndTransparencyLayer(canvas.context());

    EXPECT_EQ(CGContextGetCTM(canvas.context()).tx, 1);
    // Cleared by the mode that was set at the beginning: by the shadow too.
    for (int x = 0; x < 6; ++x)
        EXPECT_EQ(canvas.pixel(x, 0), kTransparent) << x;
    CGContextSetBlendMode(canvas.context(), kCGBlendModeNormal);
    CGContextSetShadowWithColor(canvas.context(), CGSizeZero, 0, nullptr);
    fill(canvas.context(), kRed, CGRectMake(0, 0, 1, 1));
    EXPECT_EQ(canvas.pixel(1, 0), rgba(128, 0, 0, 128)); // alpha 0.5 again
}

TEST(CGContextTransparencyLayer, CastsOneShadowOfAllShapes)
{
    const auto draw = [](bool isLayer) {
        Canvas canvas(4, 1);
        setGreenShadow(canvas.context(), 1, 0);
        if (isLayer)
            begin(canvas.context());
        fill(canvas.context(), kRed, CGRectMake(0, 0, 1, 1));
        fill(canvas.context(), kRed, CGRectMake(1, 0, 1, 1));
        fill(canvas.context(), kBlue, CGRectMake(0, 0, 1, 1));
        if (isLayer)
            CGContextEndTransparencyLayer(canvas.context());
        return canvas;
    };
    EXPECT_EQ(draw(false).pixel(1, 0), kGreen); // the shadow of the last shape lies on the second one
    EXPECT_EQ(draw(true).pixel(0, 0), kBlue);
    EXPECT_EQ(draw(true).pixel(1, 0), kRed);
    EXPECT_EQ(draw(true).pixel(2, 0), kGreen);
    EXPECT_EQ(draw(true).pixel(3, 0), kTransparent);
}

TEST(CGContextTransparencyLayer, ShapesOutsideOfTheClipCastShadowsIntoIt)
{
    Canvas canvas(4, 4);
    CGContextClipToRect(canvas.context(), CGRectMake(2, 2, 2, 2));
    setGreenShadow(canvas.context(), 2, 2);
    begin(canvas.context());
    fill(canvas.context(), kRed, CGRectMake(-1, -1, 2, 2));
    fill(canvas.context(), kRed, CGRectMake(1, 1, 1, 1));
    CGContextEndTransparencyLayer(canvas.context());
    EXPECT_COVERAGE(canvas,
        "...#"
        "..#."
        "...."
        "....");
    EXPECT_EQ(canvas.pixel(2, 1), kGreen);
}

TEST(CGContextTransparencyLayer, AShadowThatIsFarAwayTakesNoMemory)
{
    Canvas canvas(4, 4);
    setGreenShadow(canvas.context(), 900000, -900000);
    begin(canvas.context());
    fill(canvas.context(), kRed, CGRectMake(0, 0, 1, 1));
    CGContextEndTransparencyLayer(canvas.context());
    EXPECT_EQ(canvas.pixel(0, 3), kRed);
}

TEST(CGContextTransparencyLayer, IsBlendedInTheModeOfItsBeginning)
{
    Canvas canvas(2, 1);
    fill(canvas.context(), rgba(255, 102, 0, 255), CGRectMake(0, 0, 2, 1));
    CGContextSetBlendMode(canvas.context(), kCGBlendModeMultiply);
    begin(canvas.context());
    fill(canvas.context(), rgba(0, 255, 0, 255), CGRectMake(0, 0, 1, 1));
    fill(canvas.context(), rgba(255, 255, 255, 255), CGRectMake(0, 0, 1, 1)); // over the green, not times it
    fill(canvas.context(), rgba(51, 255, 0, 255), CGRectMake(1, 0, 1, 1));
    CGContextEndTransparencyLayer(canvas.context());
    EXPECT_EQ(canvas.pixel(0, 0), rgba(255, 102, 0, 255));
    EXPECT_EQ(canvas.pixel(1, 0), rgba(51, 102, 0, 255));
}

TEST(CGContextTransparencyLayer, ModesWithinItActOnTheLayerAlone)
{
    Canvas canvas(2, 1);
    fill(canvas.context(), kRed, CGRectMake(0, 0, 2, 1));
    begin(canvas.context());
    CGContextSetBlendMode(canvas.context(), kCGBlendModeClear);
    fill(canvas.context(), kBlue, CGRectMake(0, 0, 1, 1));
    CGContextClearRect(canvas.context(), CGRectMake(0, 0, 2, 1));
    CGContextSetBlendMode(canvas.context(), kCGBlendModeDestinationOver);
    fill(canvas.context(), kBlue, CGRectMake(1, 0, 1, 1));
    CGContextEndTransparencyLayer(canvas.context());
    EXPECT_EQ(canvas.pixel(0, 0), kRed);
    EXPECT_EQ(canvas.pixel(1, 0), kBlue);
}

TEST(CGContextTransparencyLayer, ClipsEachEdgeOnce)
{
    Canvas canvas(3, 1);
    CGContextClipToRect(canvas.context(), CGRectMake(0.5, 0, 2, 1));
    begin(canvas.context());
    fill(canvas.context(), kRed, CGRectMake(0, 0, 3, 1));
    CGContextEndTransparencyLayer(canvas.context());
    EXPECT_EQ(canvas.pixel(0, 0), rgba(128, 0, 0, 128));
    EXPECT_EQ(canvas.pixel(1, 0), kRed);
    EXPECT_EQ(canvas.pixel(2, 0), rgba(128, 0, 0, 128));
}

TEST(CGContextTransparencyLayer, ClipsOfTheLayerEndWithIt)
{
    Canvas canvas(3, 3);
    begin(canvas.context());
    CGContextAddEllipseInRect(canvas.context(), CGRectMake(-3, -3, 9, 9));
    CGContextClip(canvas.context());
    CGContextClipToRect(canvas.context(), CGRectMake(1, 1, 1, 1));
    fill(canvas.context(), kRed, CGRectMake(0, 0, 3, 3));
    CGContextEndTransparencyLayer(canvas.context());
    EXPECT_COVERAGE(canvas, "....#....");
    fill(canvas.context(), kRed, CGRectMake(0, 0, 1, 1));
    EXPECT_COVERAGE(canvas, "....#.#..");
}

TEST(CGContextTransparencyLayer, CanBeNested)
{
    Canvas canvas(3, 1);
    CGContextSetAlpha(canvas.context(), 0.6);
    begin(canvas.context());
    fill(canvas.context(), kRed, CGRectMake(0, 0, 2, 1));
    CGContextSetAlpha(canvas.context(), 0.4);
    begin(canvas.context());
    fill(canvas.context(), kBlue, CGRectMake(1, 0, 2, 1));
    CGContextEndTransparencyLayer(canvas.context());
    EXPECT_EQ(canvas.pixel(1, 0), kTransparent);
    CGContextEndTransparencyLayer(canvas.context());
    EXPECT_EQ(canvas.pixel(0, 0), rgba(153, 0, 0, 153));
    // 0.4 blue over red is (153, 0, 102, 255), of which 0.6 remain.
    EXPECT_EQ(canvas.pixel(1, 0), rgba(92, 0, 61, 153));
    EXPECT_EQ(canvas.pixel(2, 0), rgba(0, 0, 61, 61));
}

TEST(CGContextTransparencyLayer, WithARectHasOnlyThePixelsThatTheRectTouches)
{
    Canvas canvas(4, 4);
    CGContextScaleCTM(canvas.context(), 2, 2);
    CGContextBeginTransparencyLayerWithRect(canvas.context(), CGRectMake(1.25, 1, -1, 0.5), nullptr);
    const CGRect bounds = CGContextGetClipBoundingBox(canvas.context());
    fill(canvas.context(), kRed, CGRectMake(0, 0, 2, 2));
    CGContextEndTransparencyLayer(canvas.context());
    EXPECT_TRUE(CGRectEqualToRect(bounds, CGRectMake(0, 1, 1.5, 0.5)));
    EXPECT_COVERAGE(canvas,
        "...."
        "###."
        "...."
        "....");
}

TEST(CGContextTransparencyLayer, WithoutPixelsPaintsNothing)
{
    for (const CGRect rect : {CGRectNull, CGRectMake(1, 1, 0, 5), CGRectMake(7, 7, 2, 2)}) {
        Canvas canvas(2, 2);
        CGContextBeginTransparencyLayerWithRect(canvas.context(), rect, nullptr);
        fill(canvas.context(), kRed, CGRectMake(0, 0, 2, 2));
        CGContextEndTransparencyLayer(canvas.context());
        EXPECT_COVERAGE(canvas, "....");
        fill(canvas.context(), kRed, CGRectMake(0, 0, 1, 1));
        EXPECT_COVERAGE(canvas, "..#.");
    }
}

TEST(CGContextTransparencyLayer, FadesInAnAlphaOnlyContext)
{
    Canvas canvas(3, 1, Canvas::Format::AlphaOnly);
    CGContextSetAlpha(canvas.context(), 0.4);
    begin(canvas.context());
    fill(canvas.context(), kRed, CGRectMake(0, 0, 2, 1));
    fill(canvas.context(), kRed, CGRectMake(1, 0, 1, 1));
    CGContextEndTransparencyLayer(canvas.context());
    EXPECT_EQ(canvas.alpha(0, 0), 102);
    EXPECT_EQ(canvas.alpha(1, 0), 102);
    EXPECT_EQ(canvas.alpha(2, 0), 0);
}

TEST(CGContextTransparencyLayer, IsTransparentAtFirstInAContextWithoutAlpha)
{
    std::array<unsigned char, 8> pixels{255, 255, 255, 0, 255, 255, 255, 0};
    const auto space = adopt(CGColorSpaceCreateDeviceRGB());
    const auto context =
        adopt(CGBitmapContextCreate(pixels.data(), 2, 1, 8, 8, space, kCGImageAlphaNoneSkipLast));
    CGContextSetAlpha(context, 0.2);
    begin(context);
    fill(context, kRed, CGRectMake(0, 0, 1, 1));
    CGContextEndTransparencyLayer(context);
    EXPECT_EQ(pixels[0], 255);
    EXPECT_EQ(pixels[1], 204);
    EXPECT_EQ(pixels[2], 204);
    EXPECT_EQ(pixels[5], 255);
}

TEST(CGContextTransparencyLayer, AnEndWithoutALayerIsLoggedAndIgnored)
{
    Canvas canvas(1, 1);
    CGContextSaveGState(canvas.context());
    const NSLogCapture log;
    CGContextEndTransparencyLayer(canvas.context());
    CGContextEndTransparencyLayer(nullptr);
    EXPECT_EQ(log.messages().size(), 1U);
    CGContextRestoreGState(canvas.context()); // the saved state is still there
    EXPECT_EQ(log.messages().size(), 1U);
}

TEST(CGContextTransparencyLayer, DropsStatesThatWereSavedInIt)
{
    Canvas canvas(2, 1);
    begin(canvas.context());
    CGContextSaveGState(canvas.context());
    CGContextTranslateCTM(canvas.context(), 1, 0);
    fill(canvas.context(), kRed, CGRectMake(0, 0, 1, 1));
    CGContextEndTransparencyLayer(canvas.context());
    EXPECT_COVERAGE(canvas, ".#");
    EXPECT_EQ(CGContextGetCTM(canvas.context()).tx, 0);
    const NSLogCapture log;
    CGContextRestoreGState(canvas.context());
    EXPECT_EQ(log.messages().size(), 1U);
}

TEST(CGContextTransparencyLayer, IsEndedWhenAStateFromBeforeItIsRestored)
{
    Canvas canvas(2, 1);
    CGContextSaveGState(canvas.context());
    CGContextTranslateCTM(canvas.context(), 1, 0);
    begin(canvas.context());
    fill(canvas.context(), kRed, CGRectMake(0, 0, 1, 1));
    const NSLogCapture log;
    CGContextRestoreGState(canvas.context());
    EXPECT_EQ(log.messages().size(), 1U);
    EXPECT_COVERAGE(canvas, ".#");
    EXPECT_EQ(CGContextGetCTM(canvas.context()).tx, 0);
}

TEST(CGContextTransparencyLayer, HoldsImagesGradientsAndStrokes)
{
    const auto draw = [](CGContextRef context) {
        const auto space = adopt(CGColorSpaceCreateDeviceRGB());
        const CGFloat components[]{1, 0, 0, 1, 0, 0, 1, 0.5};
        const auto gradient = adopt(CGGradientCreateWithColorComponents(space, components, nullptr, 2));
        CGContextDrawLinearGradient(context, gradient, CGPointMake(2, 0), CGPointMake(6, 3), 0);
        Canvas picture(2, 2);
        fill(picture.context(), kGreen, CGRectMake(0, 0, 1, 1));
        CGContextDrawImage(
            context, CGRectMake(1.5, 1, 5, 5), adopt(CGBitmapContextCreateImage(picture.context())).get());
        CGContextStrokeEllipseInRect(context, CGRectMake(2, 2, 5, 4));
    };
    Canvas direct(9, 9);
    draw(direct.context());
    Canvas layered(9, 9);
    CGContextBeginTransparencyLayerWithRect(layered.context(), CGRectMake(1, 1, 8, 8), nullptr);
    draw(layered.context());
    CGContextEndTransparencyLayer(layered.context());
    for (int y = 0; y < 8; ++y) {
        for (int x = 1; x < 9; ++x)
            EXPECT_EQ(layered.pixel(x, y), direct.pixel(x, y)) << x << ", " << y;
    }
    EXPECT_EQ(layered.pixel(0, 8), kTransparent);
}
