#include "MouseWindow.h"
#include "PDFDrawing.h"

#include <KorvidAppKit/ZRPDFButtonCell.h>

#include <AppKit/NSButton.h>
#include <AppKit/NSColor.h>

#include "Foundation/testing/NSLogCapture.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

/// Counts calls of the setter that `setPdf` uses.
class WatchedCell : public ZRPDFButtonCell {
public:
    void setPdfPageNum(NSInteger number) override
    {
        ++pageChanges;
        ZRPDFButtonCell::setPdfPageNum(number);
    }
    int pageChanges = 0;
};

/// A button of 20 x 20 points with the cell, in a window.
class ButtonWithCell {
public:
    ButtonWithCell()
    {
        button->setCell(cell);
        button->setNeedsDisplay(false);
    }

    /// The cell, drawn into `frame` on a canvas of 40 x 40 points, y upward.
    Rendering drawn(NSRect frame = NSMakeRect(0, 0, 20, 20)) const
    {
        Rendering rendering = transparentRendering(40, 40);
        const CurrentContext current(rendering.context());
        cell->drawWithFrame(frame, button);
        return rendering;
    }
    CanvasPixel color() const { return drawn().at(5, 15); }

    const RetainPtr<NSButton> button = make<NSButton>(NSMakeRect(0, 0, 20, 20));
    const RetainPtr<WatchedCell> cell = make<WatchedCell>();
    const MouseWindow mouse{button};
};

} // namespace

TEST(ZRPDFButtonCell, StartsOnPageOneWithoutDocumentAndColours)
{
    const auto cell = make<ZRPDFButtonCell>();
    EXPECT_EQ(cell->pdf(), nullptr);
    EXPECT_EQ(cell->pdfColor(), nullptr);
    EXPECT_EQ(cell->pdfHighlightColor(), nullptr);
    EXPECT_EQ(cell->pdfPageNum(), 1);
    EXPECT_EQ(cell->pdfInset(), 0);
    EXPECT_EQ(cell->fillMode(), ZRPDFFillModeFit);
}

TEST(ZRPDFButtonCell, ADocumentIsShownFromItsFirstPage)
{
    const ButtonWithCell b;
    const auto pdf = loadCorner();
    b.cell->setPdf(pdf);
    EXPECT_EQ(b.cell->pdf(), pdf.get());
    EXPECT_EQ(b.cell->pageChanges, 1);
    EXPECT_TRUE(takeDisplayMark(b.button));
    b.cell->setPdfPageNum(4);
    takeDisplayMark(b.button);
    b.cell->setPdf(pdf);
    EXPECT_EQ(b.cell->pdfPageNum(), 1);
    EXPECT_TRUE(takeDisplayMark(b.button));
    b.cell->setPdf(pdf);
    EXPECT_TRUE(takeDisplayMark(b.button));
}

TEST(ZRPDFButtonCell, ColoursAreRetainedAndAlwaysRedraw)
{
    const ButtonWithCell b;
    const auto color = makeColor(1, 0, 0, 1);
    for (int i = 0; i < 2; ++i) {
        b.cell->setPdfColor(color);
        EXPECT_TRUE(takeDisplayMark(b.button));
        b.cell->setPdfHighlightColor(color);
        EXPECT_TRUE(takeDisplayMark(b.button));
    }
    EXPECT_EQ(b.cell->pdfColor(), color.get());
    EXPECT_EQ(b.cell->pdfHighlightColor(), color.get());
    b.cell->setPdfColor(nullptr);
    EXPECT_EQ(b.cell->pdfColor(), nullptr);
    EXPECT_TRUE(takeDisplayMark(b.button));
    b.cell->setPdfHighlightColor(makeColor(0, 0, 1, 1));
    EXPECT_EQ(CGColorGetComponents(b.cell->pdfHighlightColor())[2], 1);
}

TEST(ZRPDFButtonCell, PageAndInsetRedrawWhenTheyChange)
{
    const ButtonWithCell b;
    b.cell->setPdfPageNum(1);
    b.cell->setPdfInset(0);
    EXPECT_FALSE(takeDisplayMark(b.button));
    b.cell->setPdfPageNum(2);
    EXPECT_EQ(b.cell->pdfPageNum(), 2);
    EXPECT_TRUE(takeDisplayMark(b.button));
    b.cell->setPdfPageNum(2);
    EXPECT_FALSE(takeDisplayMark(b.button));
    b.cell->setPdfInset(1.5);
    EXPECT_EQ(b.cell->pdfInset(), 1.5);
    EXPECT_TRUE(takeDisplayMark(b.button));
    b.cell->setPdfInset(1.5);
    EXPECT_FALSE(takeDisplayMark(b.button));
}

TEST(ZRPDFButtonCell, TheFillModeAloneDoesNotRedraw)
{
    const ButtonWithCell b;
    b.cell->setFillMode(ZRPDFFillModeNatural);
    EXPECT_EQ(b.cell->fillMode(), ZRPDFFillModeNatural);
    EXPECT_FALSE(takeDisplayMark(b.button));
}

TEST(ZRPDFButtonCell, SettersWorkWithoutAControl)
{
    const auto cell = make<ZRPDFButtonCell>();
    cell->setPdf(loadCorner());
    cell->setPdfColor(makeColor(1, 0, 0, 1));
    cell->setPdfHighlightColor(makeColor(1, 0, 0, 1));
    cell->setPdfPageNum(3);
    cell->setPdfInset(2);
    EXPECT_EQ(cell->pdfPageNum(), 3);
    EXPECT_EQ(cell->pdfInset(), 2);
}

TEST(ZRPDFButtonCell, DrawsThePageForYDownwardAndNothingElse)
{
    const ButtonWithCell b;
    b.cell->setTitle("a title that is not drawn");
    b.cell->setPdf(loadCorner());
    EXPECT_EQ(paintedBox(b.drawn()), "0 10 10 10");
    EXPECT_EQ(paintedBox(b.drawn(), 1), "0 10 10 10"); // neither bezel nor title
    EXPECT_EQ(b.color(), kBlue);
    EXPECT_EQ(paintedBox(b.drawn(NSMakeRect(6, 4, 30, 20)), 1), "11 14 10 10");
    b.cell->setFillMode(ZRPDFFillModeNatural);
    EXPECT_EQ(paintedBox(b.drawn(), 1), "5 10 5 5");
    b.cell->setFillMode(ZRPDFFillModeFill);
    EXPECT_EQ(paintedBox(b.drawn(NSMakeRect(0, 0, 30, 20)), 1), "0 10 15 15");
}

TEST(ZRPDFButtonCell, IsUprightInItsButton)
{
    const ButtonWithCell b;
    b.cell->setPdf(loadCorner());
    const auto bitmap = NSBitmapImageRep::initWithBitmapDataPlanes(
        nullptr, 20, 20, 8, 4, true, false, NSDeviceRGBColorSpace, 0, 0);
    b.button->cacheDisplayInRect(b.button->bounds(), bitmap);
    EXPECT_EQ(bitmap->colorAtX(5, 15)->alphaComponent(),
        1); // rows count from the top
    EXPECT_EQ(bitmap->colorAtX(5, 5)->alphaComponent(), 0);
    EXPECT_EQ(bitmap->colorAtX(15, 15)->alphaComponent(), 0);
}

TEST(ZRPDFButtonCell, TheInsetIsLeftFreeOnEverySide)
{
    const ButtonWithCell b;
    b.cell->setPdf(loadPage("0 0 10 10 re f", "/MediaBox [0 0 10 10]"));
    b.cell->setPdfInset(4);
    EXPECT_EQ(paintedBox(b.drawn(), 1), "4 4 12 12");
    b.cell->setPdfInset(-5);
    EXPECT_EQ(paintedBox(b.drawn(NSMakeRect(5, 5, 20, 20)), 1), "0 0 30 30");
}

TEST(ZRPDFButtonCell, WithoutADocumentALineIsLogged)
{
    const ButtonWithCell b;
    b.cell->setPdfInset(10); // looked at later
    const NSLogCapture log;
    EXPECT_EQ(paintedBox(b.drawn(), 1), "empty");
    EXPECT_EQ(log.messages(), std::vector{b.cell->description().UTF8String() + " missing PDF resource"});
}

TEST(ZRPDFButtonCell, WithoutWidthOrHeightALineIsLogged)
{
    const ButtonWithCell b;
    b.cell->setPdf(loadCorner());
    const auto messages = [&](double inset, NSRect frame) {
        const NSLogCapture log;
        b.cell->setPdfInset(inset);
        EXPECT_EQ(paintedBox(b.drawn(frame), 1), "empty");
        return log.messages();
    };
    const std::vector<std::string> expected{"WTF"};
    EXPECT_EQ(messages(10, NSMakeRect(0, 0, 20, 20)), expected);
    EXPECT_EQ(messages(10, NSMakeRect(0, 0, 20, 40)), expected);
    EXPECT_EQ(messages(10, NSMakeRect(0, 0, 40, 20)), expected);
    EXPECT_EQ(messages(11, NSMakeRect(0, 0, 20, 20)),
        expected); // more than the frame has: nothing is left
    EXPECT_EQ(messages(0, NSMakeRect(0, 0, 0, 20)), expected);
    EXPECT_EQ(messages(0, NSMakeRect(0, 0, 20, 0)), expected);
    EXPECT_EQ(messages(std::numeric_limits<double>::quiet_NaN(), NSMakeRect(0, 0, 20, 20)),
        std::vector<std::string>{}); // draws nothing
}

TEST(ZRPDFButtonCell, TheHighlightColourShowsWhilePressedOrOn)
{
    const ButtonWithCell b;
    b.cell->setPdf(loadCorner());
    b.cell->setPdfColor(makeColor(1, 0, 0, 1));
    b.cell->setPdfHighlightColor(makeColor(0, 1, 0, 1));
    EXPECT_EQ(b.color(), kRed);
    b.button->setHighlighted(true);
    EXPECT_EQ(b.color(), kGreen);
    b.button->setHighlighted(false);
    EXPECT_EQ(b.color(), kRed);
    b.cell->setState(NSControlStateValueOn);
    EXPECT_EQ(b.color(), kGreen);
    b.button->setHighlighted(true);
    EXPECT_EQ(b.color(), kGreen);
}

TEST(ZRPDFButtonCell, WithoutAHighlightColourBothLooksAreTheSame)
{
    const ButtonWithCell b;
    b.cell->setPdf(loadCorner());
    b.cell->setPdfColor(makeColor(1, 0, 0, 1));
    EXPECT_EQ(b.color(), kRed);
    b.button->setHighlighted(true);
    EXPECT_EQ(b.color(), kRed);
}

TEST(ZRPDFButtonCell, WithOnlyAHighlightColourThePageIsUntintedUntilPressed)
{
    const ButtonWithCell b;
    b.cell->setPdf(loadCorner());
    b.cell->setPdfHighlightColor(makeColor(0, 1, 0, 1));
    EXPECT_EQ(b.color(), kBlue);
    b.button->setHighlighted(true);
    EXPECT_EQ(b.color(), kGreen);
}

TEST(ZRPDFButtonCell, ATintNeedsTheScaleOfAWindow)
{
    const ButtonWithCell b;
    b.cell->setPdf(loadCorner());
    b.button->removeFromSuperview();
    EXPECT_EQ(b.color(), kBlue);
    b.cell->setPdfColor(makeColor(1, 0, 0, 1));
    EXPECT_EQ(b.color(), kTransparent); // 0 pixels per point
    const Rendering rendering = transparentRendering(40, 40);
    const CurrentContext current(rendering.context());
    b.cell->drawWithFrame(NSMakeRect(0, 0, 20, 20), nullptr);
    EXPECT_EQ(paintedBox(rendering, 1), "empty");
    b.cell->drawWithFrame(NSMakeRect(0, 0, 20, 20), b.mouse.window->contentView());
    EXPECT_EQ(paintedBox(rendering, 1),
        "0 10 10 10"); // the view that is passed has the window
}

TEST(ZRPDFButtonCell, WithoutAContextALineIsLoggedByTheDocument)
{
    const ButtonWithCell b;
    const auto pdf = loadCorner();
    b.cell->setPdf(pdf);
    const NSLogCapture log;
    b.cell->drawWithFrame(NSMakeRect(0, 0, 20, 20), b.button);
    EXPECT_EQ(log.messages(), std::vector{"ERR: null cxt in " + pdf->description().UTF8String()});
}

TEST(ZRPDFButtonCell, APressDrawsTheHighlightAndTheActionIsSentOnRelease)
{
    class Counter : public NSObject {
    public:
        void pressed(NSButton*) { ++count; }
        int count = 0;
    };
    const ButtonWithCell b;
    b.cell->setPdf(loadCorner());
    b.cell->setPdfColor(makeColor(1, 0, 0, 1));
    b.cell->setPdfHighlightColor(makeColor(0, 1, 0, 1));
    const auto counter = make<Counter>();
    b.button->setTarget(counter);
    b.button->setAction(selector<&Counter::pressed>);
    b.mouse.press(10, 10);
    EXPECT_EQ(b.color(), kGreen);
    b.mouse.drag(90, 90);
    EXPECT_EQ(b.color(), kRed);
    b.mouse.drag(10, 10);
    EXPECT_EQ(b.color(), kGreen);
    EXPECT_EQ(counter->count, 0);
    b.mouse.release(10, 10);
    EXPECT_EQ(b.color(), kRed);
    EXPECT_EQ(counter->count, 1);
}
