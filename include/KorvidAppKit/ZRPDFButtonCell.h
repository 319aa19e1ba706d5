#pragma once

#include <AppKit/NSButtonCell.h>
#include <CoreGraphics/CGColor.h>
#include <KorvidAppKit/ZRPDF.h>

#include <cstdint>

/// Makes a button an icon: a page of a PDF document, in one colour, and in another one while the button is
/// pressed or on.
///
///     auto cell = make<ZRPDFButtonCell>();
///     cell->setPdf(ZRPDF::pdfNamed("star"));
///     cell->setPdfColor(graphics->CGColorFromHex("ffffff80"));
///     cell->setPdfHighlightColor(graphics->CGColorFromHex("01dafd"));
///     auto button = make<NSButton>(NSMakeRect(0, 0, 32, 32));
///     button->setCell(cell);
///
/// A tint has as many pixels per point as the window of the button, so that outside of a window only a page
/// in its own colours is drawn. On screens with more than one pixel per point, a tint with an inset ends at
/// the inset times that number: leave a margin on the icon's page instead.
///
/// Main thread only, like every cell.
class KORVID_EXPORT ZRPDFButtonCell : public NSButtonCell {
public:
    /// A cell without a document and colours.
    ZRPDFButtonCell();

    /// Draws the page in `frame` less the inset, and nothing else of a button: neither bezel nor title.
    ///
    /// The button is drawn as pressed while its control is highlighted or the cell's state is on. Without a
    /// document logs the cell's description and " missing PDF resource"; with nothing left of the frame's
    /// width or height logs "WTF". `ZRPDF::drawPageNumber` has the other messages. Leaves device RGB as the
    /// context's fill and stroke colour space.
    void drawWithFrame(NSRect frame, NSView* view) override;

    /// The document. Borrowed. Default null.
    ZRPDF* pdf() const { return _pdf.get(); }
    /// Retains the document, goes to page 1 and redraws the control, also for the current document.
    void setPdf(RetainPtr<ZRPDF> pdf);

    /// The tint. Borrowed. Null (the default) draws the page in its own colours.
    CGColorRef pdfColor() const { return _pdfColor.get(); }
    /// Retains the colour and redraws the control, also for the current colour.
    void setPdfColor(RetainPtr<CGColor> color);

    /// The tint while the button is pressed or on. Borrowed. Null (the default) stands for `pdfColor()`.
    CGColorRef pdfHighlightColor() const { return _pdfHighlightColor.get(); }
    /// Retains the colour and redraws the control, also for the current colour.
    void setPdfHighlightColor(RetainPtr<CGColor> color);

    /// The page's number, from 1. Default 1. A number that the document does not have draws nothing.
    NSInteger pdfPageNum() const { return _pdfPageNum; }
    /// Redraws the control if the number changes.
    virtual void setPdfPageNum(NSInteger number);

    /// Margin in points between the frame and the page's rectangle, on every side; a negative one makes the
    /// rectangle larger than the frame. Default 0.
    CGFloat pdfInset() const { return _pdfInset; }
    /// Redraws the control if the inset changes.
    void setPdfInset(CGFloat inset);

    /// A `ZRPDFFillMode`. Default fit.
    std::int32_t fillMode() const { return _fillMode; }
    /// Only stores.
    void setFillMode(std::int32_t mode) { _fillMode = mode; }

protected:
    ~ZRPDFButtonCell() override;

    RetainPtr<ZRPDF> _pdf;                     ///< the value of `pdf()`
    RetainPtr<CGColor> _pdfColor;              ///< the value of `pdfColor()`
    RetainPtr<CGColor> _pdfHighlightColor;     ///< the value of `pdfHighlightColor()`
    NSInteger _pdfPageNum = 1;                 ///< the value of `pdfPageNum()`
    std::int32_t _fillMode = ZRPDFFillModeFit; ///< the value of `fillMode()`
    CGFloat _pdfInset = 0;                     ///< the value of `pdfInset()`

private:
    bool isShownPressed() const;
    void redrawControl() const;
};
