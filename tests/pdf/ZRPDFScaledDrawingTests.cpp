// The methods with a scale factor: flipped or not, tints in every fill mode and enlarged with the factor.

#include "PDFDrawing.h"

#include "Foundation/testing/NSLogCapture.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

struct Draw {
    NSInteger number = 1;
    CGRect rect{};
    CGColorRef color = nullptr;
    double scaleFactor = 1;
    int mode = ZRPDFFillModeFit;
    bool flipped = false;
    int side = 60;    ///< of the canvas, in points
    double scale = 1; ///< pixels per point of the canvas
};

Rendering drawn(const ZRPDF& pdf, const Draw& draw)
{
    Rendering rendering = transparentRendering(draw.side, draw.side, draw.scale);
    pdf.drawPageNumber(
        draw.number, draw.rect, draw.color, rendering.context(), draw.scaleFactor, draw.mode, draw.flipped);
    return rendering;
}

} // namespace

TEST(ZRPDFScaledDrawing, PlainPagesAreFittedFilledOrNatural)
{
    const auto pdf = loadQuarters();
    const CGRect rect = CGRectMake(30, 80, 50, 50);
    // 12.5 points free on each side: whole pixels at two per point.
    EXPECT_EQ(paintedBox(drawn(*pdf, {.rect = rect, .side = 220, .scale = 2})), "85 160 50 100");
    EXPECT_EQ(
        paintedBox(drawn(*pdf, {.rect = rect, .mode = ZRPDFFillModeFill, .side = 220})), "30 55 50 100");
    for (const int mode : {ZRPDFFillModeNatural, ZRPDFFillMode(7), ZRPDFFillMode(-1)})
        EXPECT_EQ(paintedBox(drawn(*pdf, {.rect = rect, .mode = mode, .side = 220})), "5 5 100 200") << mode;
}

TEST(ZRPDFScaledDrawing, FlippedPagesAreUpsideDownWithinTheRectangle)
{
    const auto corner = loadCorner();
    const CGRect rect = CGRectMake(10, 20, 10, 30); // the page is centred: y from 30 to 40
    EXPECT_EQ(paintedBox(drawn(*corner, {.rect = rect})), "10 30 5 5");
    EXPECT_EQ(paintedBox(drawn(*corner, {.rect = rect, .flipped = true})), "10 35 5 5");
    // Not symmetric to the middle once the crop box has an origin: 3 points from the top instead of the
    // bottom.
    const auto shifted = loadPage("0 3 5 5 re f", "/MediaBox [0 3 10 13]");
    EXPECT_EQ(paintedBox(drawn(*shifted, {.rect = rect})), "10 33 5 5");
    EXPECT_EQ(paintedBox(drawn(*shifted, {.rect = rect, .flipped = true})), "10 32 5 5");
}

TEST(ZRPDFScaledDrawing, TheShortFormIsFlipped)
{
    const auto corner = loadCorner();
    const auto color = makeColor(1, 0, 0, 1);
    for (const CGColorRef tint : {CGColorRef(nullptr), CGColorRef(color)}) {
        SCOPED_TRACE(tint ? "tinted" : "plain");
        const Rendering rendering = transparentRendering(60, 60);
        corner->drawPageNumber(1, CGRectMake(0, 0, 40, 20), tint, rendering.context(), 2, ZRPDFFillModeFill);
        // Scaled by four and centred: y from -10 to 30. The tint is cut off at the rectangle.
        EXPECT_EQ(paintedBox(rendering), tint ? "0 10 20 10" : "0 10 20 20");
    }
}

TEST(ZRPDFScaledDrawing, OnlyTheTintDependsOnTheScaleFactor)
{
    const auto corner = loadCorner();
    for (const double factor : {0.0, 0.5, 1.0, 3.0, std::numeric_limits<double>::quiet_NaN()}) {
        const Rendering r = drawn(*corner, {.rect = CGRectMake(10, 20, 10, 10), .scaleFactor = factor});
        EXPECT_EQ(paintedBox(r), "10 20 5 5") << factor;
    }
}

TEST(ZRPDFScaledDrawing, PagesOutOfRangeDrawNothingSilently)
{
    const auto corner = loadCorner();
    const auto color = makeColor(1, 0, 0, 1);
    const NSLogCapture log;
    for (const NSInteger number : {0, -1, 2}) {
        for (const CGColorRef tint : {CGColorRef(nullptr), CGColorRef(color)})
            EXPECT_EQ(paintedBox(drawn(
                          *corner, {.number = number, .rect = CGRectMake(0, 0, 50, 50), .color = tint})),
                "empty");
    }
    EXPECT_EQ(log.messages(), std::vector<std::string>{});
}

TEST(ZRPDFScaledDrawing, ADocumentWithoutPagesIsLogged)
{
    const auto pdf = make<MissingPDF>();
    const NSLogCapture log;
    EXPECT_EQ(paintedBox(drawn(*pdf, {.rect = CGRectMake(0, 0, 50, 50)})), "empty");
    EXPECT_EQ(log.messages(), std::vector{"PDF error for " + pdf->description().UTF8String()});
}

TEST(ZRPDFScaledDrawing, WithoutAContextTheCurrentOneIsUsed)
{
    const auto corner = loadCorner();
    const Rendering rendering = transparentRendering(60, 60);
    const CurrentContext current(rendering.context());
    corner->drawPageNumber(1, CGRectMake(10, 20, 10, 10), nullptr, nullptr, 1, ZRPDFFillModeFit, false);
    EXPECT_EQ(paintedBox(rendering), "10 20 5 5");
}

TEST(ZRPDFScaledDrawing, WithoutAnyContextALineIsLogged)
{
    const auto pdf = make<MissingPDF>();
    const NSLogCapture log;
    pdf->drawPageNumber(1, CGRectMake(0, 0, 9, 9), nullptr, nullptr, 1, ZRPDFFillModeFit, false);
    pdf->drawPageNumber(1, CGRectMake(0, 0, 9, 9), nullptr, nullptr, 1, ZRPDFFillModeFit);
    EXPECT_EQ(
        log.messages(), (std::vector<std::string>(2, "ERR: null cxt in " + pdf->description().UTF8String())));
}

TEST(ZRPDFScaledDrawing, TintUsesTheFillMode)
{
    const auto pdf = loadQuarters();
    const auto color = makeColor(1, 0, 0, 1);
    const CGRect rect = CGRectMake(4, 30, 48, 48);
    const auto box = [&](int mode) {
        return paintedBox(drawn(*pdf, {.rect = rect, .color = color, .mode = mode, .side = 120}));
    };
    EXPECT_EQ(box(ZRPDFFillModeFit), "16 30 24 48");
    // The mask ends at the rectangle.
    EXPECT_EQ(box(ZRPDFFillModeFill), "4 30 48 48");
    EXPECT_EQ(box(ZRPDFFillModeNatural), "4 30 48 48");

    const auto small = loadPage("0 0 10 20 re f", "/MediaBox [0 0 10 20]");
    for (const int mode : {ZRPDFFillModeNatural, ZRPDFFillMode(9)})
        EXPECT_EQ(paintedBox(drawn(*small, {.rect = rect, .color = color, .mode = mode})), "23 44 10 16")
            << mode; // the canvas ends at 60
}

TEST(ZRPDFScaledDrawing, TintReplacesTheColoursAndKeepsTheAlpha)
{
    const auto pdf = loadQuarters();
    const auto color = makeColor(0, 1, 0, 0.2);
    const Rendering r = drawn(*pdf, {.rect = CGRectMake(0, 0, 25, 50), .color = color});
    EXPECT_EQ(r.at(5, 5), rgba(0, 51, 0, 51));
    EXPECT_EQ(r.at(20, 45), rgba(0, 51, 0, 51));
}

TEST(ZRPDFScaledDrawing, TintedPagesFlipLikePlainOnes)
{
    const auto corner = loadCorner();
    const auto color = makeColor(1, 0, 0, 1);
    for (const double factor : {1.0, 2.0}) {
        Draw draw{.rect = CGRectMake(0, 0, 10, 30), .color = color, .scaleFactor = factor};
        EXPECT_EQ(paintedBox(drawn(*corner, draw)), "0 10 5 5") << factor;
        draw.flipped = true;
        EXPECT_EQ(paintedBox(drawn(*corner, draw)), "0 15 5 5") << factor;
    }
}

TEST(ZRPDFScaledDrawing, TheMaskHasTheScaleFactorsResolution)
{
    // A line of half a point: one pixel of the mask at two pixels per point, half a pixel at one.
    const auto pdf = loadPage("4 0 0.5 10 re f", "/MediaBox [0 0 10 10]");
    const auto color = makeColor(1, 0, 0, 1);
    Draw draw{.rect = CGRectMake(0, 0, 10, 10), .color = color, .scaleFactor = 2, .side = 10, .scale = 2};
    const Rendering sharp = drawn(*pdf, draw);
    EXPECT_EQ(sharp.at(4.25, 5), kRed);
    EXPECT_EQ(sharp.at(4.75, 5), kTransparent);
    EXPECT_EQ(sharp.at(3.75, 5), kTransparent);
    draw.scaleFactor = 1;
    const Rendering soft = drawn(*pdf, draw);
    EXPECT_EQ(paintedBox(soft, 129), "empty");
    EXPECT_GT(soft.at(4.75, 5).bytes[3], 60);
}

TEST(ZRPDFScaledDrawing, TheMaskIsTruncatedToWholePixels)
{
    // 3.9 x 2.6 points at two pixels per point, 7.8 x 5.2, are 7 x 5 pixels: stretched over the rectangle
    // again.
    const auto color = makeColor(1, 0, 0, 1);
    const auto box = [&](const char* content, bool flipped) {
        const auto page = loadPage(content, "/MediaBox [0 0 39 26]");
        return drawn(*page,
            {.rect = CGRectMake(0, 0, 3.9, 2.6),
                .color = color,
                .scaleFactor = 2,
                .flipped = flipped,
                .side = 40,
                .scale = 10});
    };
    // The page's left 5 mask pixels of 7 end at 5 / 7 of the width, not at 5 / 7.8.
    const std::string content = "0 0 25 26 re f"; // 25 of 39 points are 5 of 7.8 pixels
    EXPECT_EQ(box(content.c_str(), false).at(3.9 * 4.4 / 7, 1).bytes[3], 255);
    EXPECT_EQ(box(content.c_str(), false).at(3.9 * 5.6 / 7, 1).bytes[3], 0);
    // Flipped by the height that is not truncated, 5.2: its lowest fifth of a pixel is lost below the mask.
    const Rendering flipped = box("0 25 39 1 re f", true); // the page's top point is 0.2 pixels high
    EXPECT_LT(flipped.at(1, 0.05).bytes[3], 60);
    const Rendering upright = box("0 0 39 1 re f", false); // its lowest point, at the bottom
    EXPECT_GT(upright.at(1, 0.05).bytes[3], 40);
}

TEST(ZRPDFScaledDrawing, AFactorBelowOneShrinksThePageWithinTheMask)
{
    // The mask has a pixel per point; at half the size the page fills its lower left quarter.
    const auto pdf = loadPage("0 0 40 40 re f", "/MediaBox [0 0 40 40]");
    const auto color = makeColor(1, 0, 0, 1);
    Draw draw{.rect = CGRectMake(10, 15, 40, 40), .color = color, .scaleFactor = 0.5};
    EXPECT_EQ(paintedBox(drawn(*pdf, draw)), "10 15 20 20");
    draw.flipped = true; // the upper left quarter: the flip is not scaled
    EXPECT_EQ(paintedBox(drawn(*pdf, draw)), "10 35 20 20");
}

TEST(ZRPDFScaledDrawing, AFactorOfZeroDrawsNoTint)
{
    const auto corner = loadCorner();
    const auto color = makeColor(1, 0, 0, 1);
    const NSLogCapture log;
    for (const double factor : {0.0, std::numeric_limits<double>::quiet_NaN()}) {
        const Rendering r =
            drawn(*corner, {.rect = CGRectMake(0, 0, 40, 40), .color = color, .scaleFactor = factor});
        EXPECT_EQ(paintedBox(r, 1), "empty") << factor;
    }
    EXPECT_EQ(log.messages(), std::vector<std::string>{});
}

TEST(ZRPDFScaledDrawing, AnEnlargedTintPaintsOnlyWhereBothRectanglesOverlap)
{
    // The mask lies over (20, 10, 30, 30), the filled rectangle is (40, 20, 60, 60).
    const auto pdf = loadPage("0 0 30 30 re f", "/MediaBox [0 0 30 30]");
    const auto color = makeColor(1, 0, 0, 1);
    Draw draw{.rect = CGRectMake(20, 10, 30, 30), .color = color, .scaleFactor = 2};
    EXPECT_EQ(paintedBox(drawn(*pdf, draw)), "40 20 10 20");
    // Without an enlargement all of it is painted.
    draw.scaleFactor = 1;
    EXPECT_EQ(paintedBox(drawn(*pdf, draw)), "20 10 30 30");
    // No overlap is left.
    draw.scaleFactor = 3;
    EXPECT_EQ(paintedBox(drawn(*pdf, draw), 1), "empty");
    // To the left of and below the origin the filled rectangle ends at -20 x 2 + 30 x 2.
    draw.rect = CGRectMake(-20, -10, 30, 30);
    draw.scaleFactor = 2;
    EXPECT_EQ(paintedBox(drawn(*pdf, draw)), "0 0 10 20");
}

TEST(ZRPDFScaledDrawing, TheContextKeepsDeviceRGBAndNothingElse)
{
    const auto pdf = loadQuarters();
    const auto color = makeColor(0, 0, 1, 1);
    const auto missing = make<MissingPDF>();
    const auto gray = adopt(CGColorSpaceCreateDeviceGray());
    const auto expectRGB = [&](const ZRPDF& document, NSInteger number, CGColorRef tint) {
        const NSLogCapture log;
        Rendering rendering(60, 60);
        const CGContextRef context = rendering.context();
        CGContextSetFillColorSpace(context, gray);
        CGContextSetStrokeColorSpace(context, gray);
        CGContextTranslateCTM(context, 1, 2);
        const CGAffineTransform before = CGContextGetCTM(context);
        document.drawPageNumber(number, CGRectMake(7, 9, 20, 20), tint, context, 2, ZRPDFFillModeFill, true);
        EXPECT_TRUE(CGAffineTransformEqualToTransform(CGContextGetCTM(context), before));
        EXPECT_EQ(describe(CGContextGetClipBoundingBox(context)), "-1 -2 60 60");
        CGContextFillRect(context, CGRectMake(50, 50, 4, 4)); // a new space begins with opaque black
        EXPECT_EQ(rendering.at(53, 54), kBlack);
        const CGFloat components[]{0, 1, 0, 1}; // black with alpha 1, and more, in a gray space
        CGContextSetFillColor(context, components);
        CGContextFillRect(context, CGRectMake(50, 50, 4, 4));
        EXPECT_EQ(rendering.at(53, 54), kGreen);
        CGContextSetRGBFillColor(context, 0, 0, 0, 1);
        CGContextSetStrokeColor(context, components);
        CGContextStrokeRectWithWidth(context, CGRectMake(42, 52, 4, 4), 2);
        EXPECT_EQ(rendering.at(43, 56), kGreen);
    };
    expectRGB(*pdf, 1, nullptr);
    expectRGB(*pdf, 1, color);
    expectRGB(*pdf, 0, nullptr);
    expectRGB(*missing, 1, nullptr);
}

TEST(ZRPDFScaledDrawing, EmptyAndInvalidValuesDrawNothing)
{
    const auto pdf = loadQuarters();
    const auto color = makeColor(0, 0, 1, 1);
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    const CGRect rects[]{CGRectZero, CGRectNull, CGRectMake(0, 0, 0, 50), CGRectMake(0, 0, 50, 0),
        CGRectMake(kNaN, 0, 50, 50), CGRectMake(0, 0, kNaN, kNaN), CGRectMake(0, 0, 0.9, 0.9)};
    const NSLogCapture log;
    for (const CGRect& rect : rects) {
        SCOPED_TRACE(describe(rect));
        EXPECT_EQ(paintedBox(drawn(*pdf, {.rect = rect}), 255), "empty");
        EXPECT_EQ(paintedBox(drawn(*pdf, {.rect = rect, .color = color}), 1), "empty");
    }
    EXPECT_EQ(log.messages(), std::vector<std::string>{});
    // Too large for a mask: logged by the platform, and nothing is drawn.
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const CGRect rect = CGRectMake(0, 0, 40, 40);
    EXPECT_EQ(paintedBox(drawn(*pdf, {.rect = rect, .color = color, .scaleFactor = 1e300}), 1), "empty");
    EXPECT_EQ(paintedBox(drawn(*pdf, {.rect = rect, .color = color, .scaleFactor = kInfinity}), 1), "empty");
    EXPECT_EQ(paintedBox(drawn(*pdf, {.rect = CGRectInfinite, .color = color}), 1), "empty");
}
