#include "PDFDrawing.h"

#include <KorvidAppKit/ZRPDFView.h>

#include <AppKit/NSColor.h>
#include <Foundation/NSKeyedArchiver.h>

#include "Foundation/testing/NSLogCapture.h"

#include <atomic>
#include <gtest/gtest.h>
#include <thread>

namespace {

/// Counts calls of the setter that `setPdf` uses.
class WatchedView : public ZRPDFView {
public:
    using ZRPDFView::ZRPDFView;
    void setPdfPageNum(NSInteger number) override
    {
        ++pageChanges;
        ZRPDFView::setPdfPageNum(number);
    }
    int pageChanges = 0;
};

RetainPtr<WatchedView> makeView(double width, double height)
{
    auto view = make<WatchedView>(NSMakeRect(0, 0, width, height));
    view->setNeedsDisplay(false);
    return view;
}

/// The view on a canvas, transparent at first, of so many points.
Rendering shownView(NSView* view, int width, int height, double scale = 1)
{
    Rendering rendering = transparentRendering(width, height, scale);
    rendering.draw(view);
    return rendering;
}

} // namespace

TEST(ZRPDFView, StartsWithoutDocumentColoursAndPage)
{
    const auto view = makeView(20, 20);
    EXPECT_EQ(view->pdf(), nullptr);
    EXPECT_EQ(view->pdfColor(), nullptr);
    EXPECT_EQ(view->pdfColorPlatform(), nullptr);
    EXPECT_EQ(view->pdfPageNum(), 0);
    EXPECT_EQ(view->fillMode(), ZRPDFFillModeFit);
    EXPECT_EQ(describe(view->trans()), "1 0 0 1 0 0");
    EXPECT_FALSE(view->isFlipped());
    EXPECT_EQ(describe(make<ZRPDFView>()->frame()), "0 0 0 0");
    const NSLogCapture log;
    EXPECT_EQ(paintedBox(shownView(view, 20, 20), 1), "empty");
    EXPECT_EQ(log.messages(), std::vector<std::string>{});
}

TEST(ZRPDFView, ADocumentIsShownFromItsFirstPage)
{
    const auto view = makeView(20, 20);
    const auto pdf = loadQuarters();
    view->setPdf(pdf);
    EXPECT_EQ(view->pdf(), pdf.get());
    EXPECT_EQ(view->pdfPageNum(), 1);
    EXPECT_EQ(view->pageChanges, 1);
    EXPECT_TRUE(takeDisplayMark(view));

    view->setPdfPageNum(7);
    takeDisplayMark(view);
    view->setPdf(pdf); // the same document: page 1 again, and redrawn
    EXPECT_EQ(view->pdfPageNum(), 1);
    EXPECT_TRUE(takeDisplayMark(view));
    view->setPdf(pdf); // even if nothing changes
    EXPECT_TRUE(takeDisplayMark(view));
    view->setPdf(nullptr);
    EXPECT_EQ(view->pdf(), nullptr);
    EXPECT_TRUE(takeDisplayMark(view));
}

TEST(ZRPDFView, APageNumberRedrawsWhenItChanges)
{
    const auto view = makeView(20, 20);
    view->setPdfPageNum(0);
    EXPECT_FALSE(takeDisplayMark(view));
    view->setPdfPageNum(-1);
    EXPECT_EQ(view->pdfPageNum(), -1);
    EXPECT_TRUE(takeDisplayMark(view));
    view->setPdfPageNum(-1);
    EXPECT_FALSE(takeDisplayMark(view));
}

TEST(ZRPDFView, ColoursAreRetainedAndAlwaysRedraw)
{
    const auto view = makeView(20, 20);
    auto color = makeColor(1, 0, 0, 1);
    view->setPdfColor(color);
    EXPECT_EQ(view->pdfColor(), color.get());
    EXPECT_TRUE(takeDisplayMark(view));
    view->setPdfColor(color);
    EXPECT_TRUE(takeDisplayMark(view));
    color = nullptr;
    EXPECT_EQ(CGColorGetComponents(view->pdfColor())[0], 1);
    view->setPdfColor(nullptr);
    EXPECT_EQ(view->pdfColor(), nullptr);
    EXPECT_TRUE(takeDisplayMark(view));

    NSColor* const platformColor = NSColor::redColor();
    view->setPdfColorPlatform(platformColor);
    EXPECT_EQ(view->pdfColorPlatform(), platformColor);
    EXPECT_TRUE(takeDisplayMark(view));
    view->setPdfColorPlatform(platformColor);
    EXPECT_TRUE(takeDisplayMark(view));
    view->setPdfColorPlatform(nullptr);
    EXPECT_EQ(view->pdfColorPlatform(), nullptr);
    EXPECT_TRUE(takeDisplayMark(view));
}

TEST(ZRPDFView, FillModeAndTransformAloneDoNotRedraw)
{
    const auto view = makeView(20, 20);
    view->setFillMode(ZRPDFFillModeFill);
    EXPECT_EQ(view->fillMode(), ZRPDFFillModeFill);
    view->setTrans(CGAffineTransformMakeScale(2, 3));
    EXPECT_EQ(describe(view->trans()), "2 0 0 3 0 0");
    EXPECT_FALSE(takeDisplayMark(view));
    view->setNeedsDisplay();
    EXPECT_TRUE(takeDisplayMark(view));
}

TEST(ZRPDFView, ThePageIsUprightAndFitted)
{
    const auto view = makeView(50, 50);
    view->setPdf(loadQuarters());
    for (const double scale : {1.0, 2.0}) {
        const Rendering r = shownView(view, 50, 50, scale);
        EXPECT_EQ(r.at(24, 24), kRed);
        EXPECT_EQ(r.at(26, 24), kGreen);
        EXPECT_EQ(r.at(24, 26), kBlue);
        EXPECT_EQ(r.at(26, 26), kBlack);
        EXPECT_EQ(r.at(11.5, 25), kTransparent);
        EXPECT_EQ(r.at(38.5, 25), kTransparent);
        EXPECT_EQ(r.at(25, 0), kGreen);
        EXPECT_EQ(r.at(25, 49), kBlack);
    }
}

TEST(ZRPDFView, TheFillModeApplies)
{
    const auto view = makeView(20, 40);
    view->setPdf(loadCorner());
    EXPECT_EQ(paintedBox(shownView(view, 60, 60)), "0 10 10 10");
    view->setFillMode(ZRPDFFillModeFill);
    Rendering wide = transparentRendering(60, 60);
    CGContextTranslateCTM(wide.context(), 20, 0);
    wide.draw(view);
    EXPECT_EQ(paintedBox(wide), "10 0 20 20"); // 40 wide, 10 to the left of the view
    view->setFillMode(ZRPDFFillModeNatural);
    EXPECT_EQ(paintedBox(shownView(view, 60, 60)), "5 15 5 5");
    view->setFillMode(7);
    EXPECT_EQ(paintedBox(shownView(view, 60, 60)), "5 15 5 5");
}

TEST(ZRPDFView, PagesThatTheDocumentDoesNotHaveLeaveTheViewBlank)
{
    const auto view = makeView(20, 20);
    view->setPdf(loadPDF(pdfFile({{"1 0 0 rg 0 0 16 16 re f"}, {"0 0 1 rg 0 0 16 16 re f"}})));
    const NSLogCapture log;
    EXPECT_EQ(shownView(view, 20, 20).at(10, 10), kRed);
    view->setPdfPageNum(2);
    EXPECT_EQ(shownView(view, 20, 20).at(10, 10), kBlue);
    for (const NSInteger number : {-1, 0, 3}) {
        view->setPdfPageNum(number);
        EXPECT_EQ(paintedBox(shownView(view, 20, 20), 1), "empty") << number;
    }
    EXPECT_EQ(log.messages(), std::vector<std::string>{});
}

TEST(ZRPDFView, ThePlatformColourWinsOverTheOther)
{
    const auto view = makeView(10, 10);
    view->setPdf(loadCorner());
    view->setPdfColor(makeColor(1, 0, 0, 1));
    EXPECT_EQ(shownView(view, 10, 10).at(2, 2), kRed);
    view->setPdfColorPlatform(NSColor::colorWithSRGBRed(0, 1, 0, 1));
    EXPECT_EQ(shownView(view, 10, 10).at(2, 2), kGreen);
    EXPECT_EQ(paintedBox(shownView(view, 10, 10), 1), "0 0 5 5");
    view->setPdfColor(nullptr);
    EXPECT_EQ(shownView(view, 10, 10).at(2, 2), kGreen);
    view->setPdfColorPlatform(nullptr);
    EXPECT_EQ(shownView(view, 10, 10).at(2, 2), kBlue);
}

TEST(ZRPDFView, ATintHasTwoPixelsPerPointOnEveryScreen)
{
    // A line of half a point is one pixel of the mask, at 4 pixels per point two of the canvas: sharp at its
    // sides, but for the pixel at each that is interpolated. A finer mask would not be, a coarser one would
    // widen it.
    const auto view = makeView(10, 10);
    view->setPdf(loadPage("4 0 0.5 10 re f", "/MediaBox [0 0 10 10]"));
    view->setPdfColor(makeColor(1, 0, 0, 1));
    const Rendering twice = shownView(view, 10, 10, 2);
    EXPECT_EQ(paintedBox(twice), "8 0 1 20");
    EXPECT_EQ(paintedBox(twice, 1), "8 0 1 20");
    view->setPdf(loadPage("4 0 0.25 10 re f", "/MediaBox [0 0 10 10]"));
    const Rendering fine = shownView(view, 10, 10, 4);
    EXPECT_EQ(paintedBox(fine, 129), "empty"); // half a pixel of the mask
    EXPECT_NE(paintedBox(fine, 60), "empty");
}

TEST(ZRPDFView, ATintIsLimitedToTwiceTheBounds)
{
    // The bounds are (6, 0, 10, 10), their double (12, 0, 20, 20).
    const auto view = makeView(10, 10);
    view->setBounds(NSMakeRect(6, 0, 10, 10));
    view->setPdf(loadPage("0 0 10 10 re f", "/MediaBox [0 0 10 10]"));
    EXPECT_EQ(paintedBox(shownView(view, 30, 30)), "6 0 10 10");
    view->setPdfColor(makeColor(1, 0, 0, 1));
    EXPECT_EQ(paintedBox(shownView(view, 30, 30)), "12 0 4 10");
}

TEST(ZRPDFView, TheHeightOfTheFrameTurnsThePageNotThatOfTheBounds)
{
    // Upside down from 20 points upward, and again within the bounds: 20 - 30 points too low.
    const auto view = makeView(20, 20);
    view->setBounds(NSMakeRect(0, 0, 30, 30));
    view->setPdf(loadPage("0 0 10 10 re f", "/MediaBox [0 0 30 30]"));
    Rendering rendering = transparentRendering(40, 40);
    CGContextTranslateCTM(rendering.context(), 0, 15);
    rendering.draw(view);
    EXPECT_EQ(paintedBox(rendering), "0 5 10 10");
}

TEST(ZRPDFView, TheTransformCountsFromTheTopLeftWithYDownward)
{
    const auto view = makeView(20, 20);
    view->setPdf(loadPage("0 0 20 20 re f", "/MediaBox [0 0 20 20]"));
    view->setTrans(CGAffineTransformMake(0.5, 0, 0, 0.25, 2, 1));
    // Half as wide and 2 points from the left; a quarter as high and 1 point from the top.
    EXPECT_EQ(paintedBox(shownView(view, 20, 20)), "2 14 10 5");
}

TEST(ZRPDFView, TheTransformMayBeSetOnAnotherThread)
{
    const auto view = makeView(20, 20);
    std::atomic<bool> isDone = false;
    std::thread other([&] {
        for (int i = 0; i < 1000; ++i)
            view->setTrans(i % 2 ? CGAffineTransformMakeScale(2, 2) : CGAffineTransformMakeScale(3, 3));
        isDone = true;
    });
    do {
        const CGAffineTransform transform = view->trans();
        EXPECT_EQ(transform.a, transform.d);
    } while (!isDone);
    other.join();
}

TEST(ZRPDFView, TheDirtyRectangleMakesNoDifference)
{
    const auto view = makeView(20, 20);
    view->setPdf(loadCorner());
    Rendering rendering = transparentRendering(20, 20);
    rendering.draw(view, NSMakeRect(19, 19, 1, 1));
    EXPECT_EQ(paintedBox(rendering), "0 0 10 10");
}

TEST(ZRPDFView, TheGraphicsStateIsRestored)
{
    const auto view = makeView(20, 20);
    view->setPdf(loadCorner());
    view->setPdfColor(makeColor(1, 0, 0, 1));
    view->setTrans(CGAffineTransformMakeScale(2, 2));
    Rendering rendering = transparentRendering(20, 20);
    const CGContextRef context = rendering.context();
    const auto gray = adopt(CGColorSpaceCreateDeviceGray());
    CGContextSetFillColorSpace(context, gray);
    rendering.draw(view);
    EXPECT_EQ(describe(CGContextGetCTM(context)), "1 0 0 1 0 0");
    EXPECT_EQ(describe(CGContextGetClipBoundingBox(context)), "0 0 20 20");
    const CGFloat components[]{1, 1}; // white: the space is still gray
    CGContextSetFillColor(context, components);
    CGContextFillRect(context, CGRectMake(0, 0, 20, 20));
    EXPECT_EQ(rendering.at(10, 10), kWhite);
}

TEST(ZRPDFView, DrawingOutsideOfADrawingPassIsLoggedByTheDocument)
{
    const auto view = makeView(20, 20);
    const auto pdf = loadCorner();
    ASSERT_EQ(NSGraphicsContext::currentContext(), nullptr);
    const NSLogCapture log;
    view->drawRect(view->bounds()); // no document, no message
    view->setPdf(pdf);
    view->drawRect(view->bounds());
    const std::string message = "ERR: null cxt in " + pdf->description().UTF8String();
    EXPECT_EQ(log.messages(), std::vector{message});
    view->setPdfPageNum(-1); // not drawn at all
    view->drawRect(view->bounds());
    EXPECT_EQ(log.messages(), std::vector{message});
    view->setPdfPageNum(0); // drawn as a page that the document does not have
    view->drawRect(view->bounds());
    EXPECT_EQ(log.messages(), (std::vector{message, message}));
}

TEST(ZRPDFView, IsUnarchivedWithItsFrameAndDefaults)
{
    const auto view = make<ZRPDFView>(NSMakeRect(1, 2, 30, 40));
    view->setPdf(loadCorner());
    view->setFillMode(ZRPDFFillModeFill);
    view->setTrans(CGAffineTransformMakeScale(2, 2));
    const auto data = NSKeyedArchiver::archivedDataWithRootObject(view, true);
    ASSERT_TRUE(data);
    const auto back = NSKeyedUnarchiver::unarchivedObjectOfClass<ZRPDFView>(data);
    ASSERT_TRUE(back);
    EXPECT_EQ(describe(back->frame()), "1 2 30 40");
    EXPECT_EQ(back->pdf(), nullptr);
    EXPECT_EQ(back->pdfPageNum(), 0);
    EXPECT_EQ(back->fillMode(), ZRPDFFillModeFit);
    EXPECT_EQ(describe(back->trans()), "1 0 0 1 0 0");
}
