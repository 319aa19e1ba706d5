// The method without a scale factor: unflipped, any colour space, tints always fitted.

#include "PDFDrawing.h"

#include <CoreGraphics/CGColor.h>

#include "Foundation/testing/NSLogCapture.h"

#include <gtest/gtest.h>
#include <thread>

namespace {

/// Draws into a canvas of so many points, y upward.
Rendering drawn(const ZRPDF& pdf, NSInteger number, CGRect rect, CGColorRef color, int mode, int side = 60,
    double scale = 1)
{
    Rendering rendering = transparentRendering(side, side, scale);
    pdf.drawPageNumber(number, rect, color, nullptr, rendering.context(), mode);
    return rendering;
}

} // namespace

TEST(ZRPDFDrawing, FittedPageIsCentred)
{
    // 100 x 200 in 50 x 50: a quarter of the size, 12.5 points from the left.
    const auto pdf = loadQuarters();
    const Rendering r = drawn(*pdf, 1, CGRectMake(4, 6, 50, 50), nullptr, ZRPDFFillModeFit);
    EXPECT_EQ(paintedBox(r), "17 6 24 50"); // whole pixels only: the two halves aside are half covered
    EXPECT_EQ(r.at(16.5, 20), rgba(128, 0, 0, 128));
    EXPECT_EQ(r.at(41.5, 20), rgba(0, 128, 0, 128));
    EXPECT_EQ(r.at(17.5, 30.5), kRed);
    EXPECT_EQ(r.at(40.5, 30.5), kGreen);
    EXPECT_EQ(r.at(17.5, 31.5), kBlue);
    EXPECT_EQ(r.at(40.5, 31.5), kBlack);
    EXPECT_EQ(r.at(15.5, 20), kTransparent);
    EXPECT_EQ(r.at(42.5, 20), kTransparent);
}

TEST(ZRPDFDrawing, FillingPageCoversTheRectangleAndIsNotClipped)
{
    // Half of the size, 25 points above and below the rectangle.
    const auto pdf = loadQuarters();
    const Rendering r = drawn(*pdf, 1, CGRectMake(4, 30, 50, 50), nullptr, ZRPDFFillModeFill, 120);
    EXPECT_EQ(paintedBox(r), "4 5 50 100");
    EXPECT_EQ(r.at(28.5, 54.5), kRed);
    EXPECT_EQ(r.at(29.5, 55.5), kBlack);
}

TEST(ZRPDFDrawing, NaturalPageHasItsOwnSize)
{
    const auto pdf = loadQuarters();
    const Rendering r = drawn(*pdf, 1, CGRectMake(30, 80, 50, 50), nullptr, ZRPDFFillModeNatural, 220);
    EXPECT_EQ(paintedBox(r), "5 5 100 200");
    EXPECT_EQ(r.at(54.5, 104.5), kRed);
    EXPECT_EQ(r.at(55.5, 105.5), kBlack);
}

TEST(ZRPDFDrawing, EveryOtherFillModeIsNatural)
{
    const auto pdf = loadQuarters();
    for (const int mode : {3, 7, -1, 1 << 30})
        EXPECT_EQ(paintedBox(drawn(*pdf, 1, CGRectMake(30, 80, 50, 50), nullptr, mode, 220)), "5 5 100 200")
            << mode;
}

TEST(ZRPDFDrawing, AWideRectangleCentresAcross)
{
    const auto pdf = loadQuarters();
    EXPECT_EQ(paintedBox(drawn(*pdf, 1, CGRectMake(10, 20, 90, 20), nullptr, ZRPDFFillModeFit, 120)),
        "50 20 10 20");
    EXPECT_EQ(paintedBox(drawn(*pdf, 1, CGRectMake(10, 60, 60, 20), nullptr, ZRPDFFillModeFill, 150)),
        "10 10 60 120");
}

TEST(ZRPDFDrawing, TheOriginOfTheCropBoxIsNotSubtracted)
{
    // Scaled by two, the page's own (10, 20) lies 20 and 40 points from the rectangle's corner.
    const auto pdf = loadPage("1 0 0 rg 10 20 10 10 re f", "/MediaBox [0 0 90 90] /CropBox [10 20 20 30]");
    const Rendering r = drawn(*pdf, 1, CGRectMake(5, 6, 20, 20), nullptr, ZRPDFFillModeFit, 80);
    EXPECT_EQ(paintedBox(r), "25 46 20 20");
}

TEST(ZRPDFDrawing, TheCropBoxIsExtendedToWholePoints)
{
    // 0.4 to 9.5 becomes 0 to 10: twice the size. The page is drawn beyond its crop box.
    const auto pdf = loadPage("1 0 0 rg 0 0 10 10 re f", "/MediaBox [0 0 90 90] /CropBox [0.4 0.6 9.5 9.1]");
    EXPECT_EQ(
        paintedBox(drawn(*pdf, 1, CGRectMake(10, 20, 20, 20), nullptr, ZRPDFFillModeFit)), "10 20 20 20");
}

TEST(ZRPDFDrawing, PageZeroIsPageOne)
{
    const auto pdf = loadPDF(pdfFile({{"1 0 0 rg 0 0 16 16 re f"}, {"0 0 1 rg 0 0 16 16 re f"}}));
    const CGRect rect = CGRectMake(0, 0, 16, 16);
    const NSLogCapture log;
    EXPECT_EQ(drawn(*pdf, 0, rect, nullptr, 0).at(8, 8), kRed);
    EXPECT_EQ(drawn(*pdf, 1, rect, nullptr, 0).at(8, 8), kRed);
    EXPECT_EQ(drawn(*pdf, 2, rect, nullptr, 0).at(8, 8), kBlue);
    const auto color = makeColor(0, 1, 0, 1);
    EXPECT_EQ(drawn(*pdf, 0, rect, color, 0).at(8, 8), kGreen);
    EXPECT_EQ(log.messages(), std::vector<std::string>{});
}

TEST(ZRPDFDrawing, ANegativePageDrawsNothingSilently)
{
    const auto pdf = loadQuarters();
    const NSLogCapture log;
    EXPECT_EQ(paintedBox(drawn(*pdf, -1, CGRectMake(0, 0, 50, 50), nullptr, 0)), "empty");
    EXPECT_EQ(log.messages(), std::vector<std::string>{});
}

TEST(ZRPDFDrawing, APageAboveTheLastIsLogged)
{
    const auto pdf = loadQuarters();
    const NSLogCapture log;
    EXPECT_EQ(paintedBox(drawn(*pdf, 2, CGRectMake(0, 0, 50, 50), nullptr, 0)), "empty");
    EXPECT_EQ(log.messages(), std::vector{"PDF error for " + pdf->description().UTF8String()});
}

TEST(ZRPDFDrawing, WithoutADocumentEveryPageIsAboveTheLast)
{
    const auto pdf = make<MissingPDF>();
    const NSLogCapture log;
    EXPECT_EQ(paintedBox(drawn(*pdf, 0, CGRectMake(0, 0, 50, 50), nullptr, 0)), "empty");
    EXPECT_EQ(log.messages(), std::vector{"PDF error for " + pdf->description().UTF8String()});
}

TEST(ZRPDFDrawing, WithoutAContextTheCurrentOneIsUsed)
{
    const auto pdf = loadQuarters();
    const Rendering rendering = transparentRendering(60, 60);
    const CurrentContext current(rendering.context());
    pdf->drawPageNumber(1, CGRectMake(0, 0, 25, 50), nullptr, nullptr, nullptr, ZRPDFFillModeFit);
    EXPECT_EQ(paintedBox(rendering), "0 0 25 50");
}

TEST(ZRPDFDrawing, WithoutAnyContextALineIsLogged)
{
    const auto pdf = loadQuarters();
    const NSLogCapture log;
    pdf->drawPageNumber(1, CGRectMake(0, 0, 25, 50), nullptr, nullptr, nullptr, ZRPDFFillModeFit);
    pdf->drawPageNumber(9, CGRectMake(0, 0, 25, 50), nullptr, nullptr, nullptr, ZRPDFFillModeFit);
    EXPECT_EQ(log.messages(), (std::vector<std::string>(2, "Tried to draw ZRPDF page with no context")));
}

TEST(ZRPDFDrawing, TintKeepsThePagesShapeAndReplacesItsColours)
{
    const auto pdf = loadQuarters();
    const auto color = makeColor(0, 0, 1, 0.5);
    const Rendering r = drawn(*pdf, 1, CGRectMake(5, 5, 25, 50), color, ZRPDFFillModeFit);
    EXPECT_EQ(paintedBox(r, 128), "5 5 25 50");
    EXPECT_EQ(r.at(10, 10), rgba(0, 0, 128, 128));
    EXPECT_EQ(r.at(25, 50), rgba(0, 0, 128, 128));
}

TEST(ZRPDFDrawing, TintIsFittedWhateverTheFillModeIs)
{
    const auto pdf = loadQuarters();
    const auto color = makeColor(0, 0, 1, 1);
    for (const int mode : {ZRPDFFillModeFit, ZRPDFFillModeFill, ZRPDFFillModeNatural, ZRPDFFillMode(7)}) {
        const Rendering r = drawn(*pdf, 1, CGRectMake(4, 30, 48, 48), color, mode, 120);
        EXPECT_EQ(paintedBox(r), "16 30 24 48") << mode;
    }
}

TEST(ZRPDFDrawing, TintHasTheResolutionOfTheContextRoundedToPixels)
{
    const auto pdf = loadPage("1 1 1 1 re f", "/MediaBox [0 0 3 3]");
    const auto color = makeColor(1, 0, 0, 1);
    // 2.6 pixels are rounded to a mask of 3, whose middle one is painted. Of 2 pixels, or of 4, none would be
    // painted by more than half.
    const Rendering r = drawn(*pdf, 1, CGRectMake(0, 0, 2.6, 2.6), color, ZRPDFFillModeFit, 8);
    EXPECT_GT(r.at(1.5, 1.5).bytes[3], 128);
    // Two pixels per point: the page's pixels are those of the canvas.
    const Rendering sharp = drawn(*pdf, 1, CGRectMake(1, 1, 1.5, 1.5), color, ZRPDFFillModeFit, 8, 2);
    EXPECT_EQ(paintedBox(sharp), "3 3 1 1");
    EXPECT_EQ(paintedBox(sharp, 1), "3 3 1 1");
}

TEST(ZRPDFDrawing, HalvesOfMaskPixelsAreRoundedAwayFromZero)
{
    // 2.5 and 4.5 pixels become 3 and 5: a page of 3 x 5 fits exactly, and its first pixel covers a third and
    // a fifth.
    const auto pdf = loadPage("0 0 3 5 re f", "/MediaBox [0 0 3 5]");
    const auto color = makeColor(1, 0, 0, 1);
    const Rendering r = drawn(*pdf, 1, CGRectMake(1, 1, 2.5, 4.5), color, ZRPDFFillModeFit, 8);
    EXPECT_EQ(paintedBox(r), "1 1 2 4");
    // Nothing is left free beside the page, as there would be in a mask of 2 x 4 pixels.
    // The rectangle's edge counts twice, as the mask's and as that of what is filled: half of a half is
    // covered.
    EXPECT_EQ(r.at(3.5, 3), rgba(64, 0, 0, 64));
    EXPECT_EQ(r.at(2, 5.5), rgba(64, 0, 0, 64));
}

TEST(ZRPDFDrawing, TheColourSpaceIsInForceWhileThePageIsDrawn)
{
    // A page that sets no colour is black in every space: a stencil shows that the state is the page's own.
    const auto pdf = loadPage("0 0 16 16 re f", "/MediaBox [0 0 16 16]");
    const auto gray = adopt(CGColorSpaceCreateDeviceGray());
    Rendering rendering(16, 16);
    CGContextSetRGBFillColor(rendering.context(), 1, 0, 0, 1);
    pdf->drawPageNumber(1, CGRectMake(0, 0, 16, 16), nullptr, gray, rendering.context(), ZRPDFFillModeFit);
    EXPECT_EQ(rendering.at(8, 8), kBlack);
}

TEST(ZRPDFDrawing, TheGraphicsStateIsRestored)
{
    const auto pdf = loadQuarters();
    const auto color = makeColor(0, 0, 1, 1);
    for (const CGColorRef tint : {CGColorRef(nullptr), CGColorRef(color)}) {
        SCOPED_TRACE(tint ? "tinted" : "plain");
        Rendering rendering(60, 60);
        const CGContextRef context = rendering.context();
        CGContextSetRGBFillColor(context, 1, 0, 0, 1);
        const CGAffineTransform before = CGContextGetCTM(context);
        pdf->drawPageNumber(1, CGRectMake(7, 9, 20, 20), tint, nullptr, context, ZRPDFFillModeFill);
        EXPECT_TRUE(CGAffineTransformEqualToTransform(CGContextGetCTM(context), before));
        EXPECT_EQ(describe(CGContextGetClipBoundingBox(context)), "0 0 60 60");
        CGContextFillRect(context, CGRectMake(50, 50, 4, 4));
        EXPECT_EQ(rendering.at(52, 52), kRed); // neither the fill colour nor its space has changed
        const CGFloat components[]{0, 0, 1, 1};
        CGContextSetFillColor(context, components); // of four components: the space is still RGB
        CGContextFillRect(context, CGRectMake(50, 50, 4, 4));
        EXPECT_EQ(rendering.at(52, 52), kBlue);
    }
}

TEST(ZRPDFDrawing, EmptyAndInvalidRectanglesDrawNothing)
{
    const auto pdf = loadQuarters();
    const auto color = makeColor(0, 0, 1, 1);
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    const CGRect rects[]{CGRectZero, CGRectNull, CGRectMake(0, 0, 0, 50), CGRectMake(0, 0, 50, 0),
        CGRectMake(kNaN, 0, 50, 50), CGRectMake(0, 0, kNaN, kNaN)};
    const NSLogCapture log;
    for (const CGRect& rect : rects) {
        SCOPED_TRACE(describe(rect));
        EXPECT_EQ(paintedBox(drawn(*pdf, 1, rect, nullptr, ZRPDFFillModeFit)), "empty");
        EXPECT_EQ(paintedBox(drawn(*pdf, 1, rect, color, ZRPDFFillModeFit)), "empty");
    }
    EXPECT_EQ(log.messages(), std::vector<std::string>{});
    // Too large for a mask: logged by the platform, and nothing is drawn.
    EXPECT_EQ(paintedBox(drawn(*pdf, 1, CGRectMake(0, 0, 1e300, 1e300), color, ZRPDFFillModeFit)), "empty");
    EXPECT_EQ(paintedBox(drawn(*pdf, 1, CGRectInfinite, color, ZRPDFFillModeFit)), "empty");
}

TEST(ZRPDFDrawing, ATintInAMirroredOrTurnedContextDrawsNothing)
{
    const auto pdf = loadQuarters();
    const auto color = makeColor(0, 0, 1, 1);
    for (const CGAffineTransform& transform :
        {CGAffineTransformMake(-1, 0, 0, 1, 50, 0), CGAffineTransformMake(0, 1, -1, 0, 50, 0)}) {
        const Rendering rendering = transparentRendering(50, 50);
        CGContextConcatCTM(rendering.context(), transform);
        pdf->drawPageNumber(
            1, CGRectMake(0, 0, 50, 50), color, nullptr, rendering.context(), ZRPDFFillModeFit);
        EXPECT_EQ(paintedBox(rendering), "empty");
    }
}

TEST(ZRPDFDrawing, OneDocumentMayBeDrawnOnSeveralThreads)
{
    const auto pdf = loadQuarters();
    const auto color = makeColor(0, 0, 1, 1);
    const std::string expected =
        paintedBox(drawn(*pdf, 1, CGRectMake(4, 30, 50, 50), nullptr, ZRPDFFillModeFill, 120));
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 10; ++round) {
                EXPECT_EQ(paintedBox(drawn(*pdf, 1, CGRectMake(4, 30, 50, 50), nullptr, 1, 120)), expected);
                EXPECT_EQ(paintedBox(drawn(*pdf, 1, CGRectMake(5, 5, 25, 50), color, 0)), "5 5 25 50");
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}
