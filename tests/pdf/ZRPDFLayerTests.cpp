#include "PDFDrawing.h"

#include <KorvidAppKit/ZRPDFLayer.h>

#include "Foundation/testing/NSLogCapture.h"

#include <gtest/gtest.h>

namespace {

/// Counts calls of setters.
class WatchedLayer : public ZRPDFLayer {
public:
    void setNeedsDisplay() override
    {
        ++marks;
        ZRPDFLayer::setNeedsDisplay();
    }
    void setPdfPageNum(NSInteger number) override
    {
        ++pageChanges;
        ZRPDFLayer::setPdfPageNum(number);
    }
    int marks = 0;
    int pageChanges = 0;
};

/// Draws the layer on a canvas of 40 x 40 points, clipped to `clip`.
Rendering drawn(ZRPDFLayer* layer, CGRect clip)
{
    Rendering rendering = transparentRendering(40, 40);
    CGContextClipToRect(rendering.context(), clip);
    layer->drawInContext(rendering.context());
    return rendering;
}

} // namespace

TEST(ZRPDFLayer, StartsEmptyAndIsRedrawnWhenItsBoundsChange)
{
    const auto layer = make<WatchedLayer>();
    EXPECT_EQ(layer->pdf(), nullptr);
    EXPECT_EQ(layer->pdfColor(), nullptr);
    EXPECT_EQ(layer->pdfPageNum(), 0);
    EXPECT_EQ(layer->pdfFillMode(), ZRPDFFillModeFit);
    EXPECT_TRUE(layer->needsDisplayOnBoundsChange());
    layer->setBounds(CGRectMake(0, 0, 20, 20));
    EXPECT_EQ(layer->marks, 1);
    EXPECT_TRUE(layer->needsDisplay());
}

TEST(ZRPDFLayer, ADocumentIsShownFromItsFirstPageWithoutThePagesSetter)
{
    const auto layer = make<WatchedLayer>();
    const auto pdf = loadCorner();
    layer->setPdf(pdf);
    EXPECT_EQ(layer->pdf(), pdf.get());
    EXPECT_EQ(layer->pdfPageNum(), 1);
    EXPECT_EQ(layer->pageChanges, 0);
    EXPECT_EQ(layer->marks, 1);
    layer->setPdf(pdf); // page 1 already: redrawn nevertheless
    EXPECT_EQ(layer->marks, 2);
    layer->ZRPDFLayer::setPdfPageNum(5);
    layer->setPdf(nullptr);
    EXPECT_EQ(layer->pdfPageNum(), 1);
    EXPECT_EQ(layer->pdf(), nullptr);
}

TEST(ZRPDFLayer, SettersMarkTheLayerAsDocumented)
{
    const auto layer = make<WatchedLayer>();
    auto color = makeColor(1, 0, 0, 1);
    layer->setPdfColor(color);
    EXPECT_EQ(layer->pdfColor(), color.get());
    EXPECT_EQ(layer->marks, 1);
    layer->setPdfColor(color);
    EXPECT_EQ(layer->marks, 2);
    color = nullptr;
    EXPECT_EQ(CGColorGetComponents(layer->pdfColor())[0], 1);
    layer->setPdfColor(nullptr);
    EXPECT_EQ(layer->pdfColor(), nullptr);
    EXPECT_EQ(layer->marks, 3);

    layer->setPdfPageNum(0);
    EXPECT_EQ(layer->marks, 3);
    layer->setPdfPageNum(2);
    EXPECT_EQ(layer->pdfPageNum(), 2);
    EXPECT_EQ(layer->marks, 4);
    layer->setPdfPageNum(2);
    EXPECT_EQ(layer->marks, 4);

    layer->setPdfFillMode(ZRPDFFillModeFill);
    EXPECT_EQ(layer->pdfFillMode(), ZRPDFFillModeFill);
    EXPECT_EQ(layer->marks, 4);
}

TEST(ZRPDFLayer, ThePageIsPlacedInTheClipUpsideDown)
{
    const auto layer = make<ZRPDFLayer>();
    layer->setBounds(CGRectMake(0, 0, 7, 9)); // not used for the placement
    layer->setPdf(loadCorner());
    EXPECT_EQ(paintedBox(drawn(layer, CGRectMake(4, 6, 20, 20))), "4 16 10 10");
    layer->setPdfFillMode(ZRPDFFillModeFill);
    EXPECT_EQ(paintedBox(drawn(layer, CGRectMake(4, 6, 20, 40))), "4 23 10 17"); // to the canvas's edge
    layer->setPdfFillMode(ZRPDFFillModeNatural);
    EXPECT_EQ(paintedBox(drawn(layer, CGRectMake(4, 6, 20, 20))), "9 16 5 5");
}

TEST(ZRPDFLayer, ATintHasTheScaleOfTheContents)
{
    const auto layer = make<ZRPDFLayer>();
    layer->setPdf(loadPage("0 0 20 20 re f", "/MediaBox [0 0 20 20]"));
    layer->setPdfColor(makeColor(1, 0, 0, 1));
    // The tint ends where the clip's box and the same box times the scale overlap.
    EXPECT_EQ(paintedBox(drawn(layer, CGRectMake(5, 3, 20, 20))), "5 3 20 20");
    layer->setContentsScale(2);
    EXPECT_EQ(paintedBox(drawn(layer, CGRectMake(5, 3, 20, 20))), "10 6 15 17");
    layer->setContentsScale(3);
    EXPECT_EQ(paintedBox(drawn(layer, CGRectMake(5, 3, 20, 20))), "15 9 10 14");
    EXPECT_EQ(drawn(layer, CGRectMake(0, 0, 20, 20)).at(10, 10), kRed);
}

TEST(ZRPDFLayer, ShowsThePageThroughItsContents)
{
    const auto layer = make<ZRPDFLayer>();
    layer->setBounds(CGRectMake(0, 0, 20, 20));
    layer->setContentsScale(2);
    layer->setPdf(loadCorner());
    const Rendering rendering = transparentRendering(20, 20, 2);
    layer->renderInContext(rendering.context());
    EXPECT_EQ(paintedBox(rendering), "0 20 20 20");
    EXPECT_EQ(rendering.at(1, 19), kBlue);
}

TEST(ZRPDFLayer, WithoutADocumentOrPageNothingIsDrawn)
{
    const auto layer = make<ZRPDFLayer>();
    const NSLogCapture log;
    EXPECT_EQ(paintedBox(drawn(layer, CGRectMake(0, 0, 20, 20)), 1), "empty");
    layer->setPdf(loadCorner());
    for (const NSInteger number : {-1, 0, 2}) {
        layer->setPdfPageNum(number);
        EXPECT_EQ(paintedBox(drawn(layer, CGRectMake(0, 0, 20, 20)), 1), "empty");
    }
    layer->setPdfPageNum(1);
    layer->setPdfColor(makeColor(1, 0, 0, 1));
    EXPECT_EQ(paintedBox(drawn(layer, CGRectZero), 1), "empty"); // the clip is empty
    layer->setPdfColor(nullptr);
    EXPECT_EQ(paintedBox(drawn(layer, CGRectZero), 1), "empty");
    EXPECT_EQ(log.messages(), std::vector<std::string>{});
}

TEST(ZRPDFLayer, ANullContextIsLoggedByTheDocument)
{
    const auto layer = make<ZRPDFLayer>();
    const auto pdf = loadCorner();
    layer->setPdf(pdf);
    const NSLogCapture log;
    layer->drawInContext(nullptr);
    EXPECT_EQ(log.messages(), std::vector{"ERR: null cxt in " + pdf->description().UTF8String()});
}

TEST(ZRPDFLayer, TheStateIsNotSavedAroundTheDraw)
{
    // The colour spaces that the document leaves are those of what is drawn on top.
    const auto layer = make<ZRPDFLayer>();
    layer->setPdf(loadCorner());
    Rendering rendering = transparentRendering(20, 20);
    CGContextSetRGBFillColor(rendering.context(), 1, 0, 0, 1);
    layer->drawInContext(rendering.context());
    CGContextFillRect(rendering.context(), CGRectMake(0, 0, 20, 20));
    EXPECT_EQ(rendering.at(10, 10), kBlack);
}
