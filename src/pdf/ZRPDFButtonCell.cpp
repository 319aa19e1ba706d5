#include <KorvidAppKit/ZRPDFButtonCell.h>

#include <AppKit/NSControl.h>
#include <AppKit/NSWindow.h>
#include <Foundation/NSLog.h>
#include <KorvidAppKit/ZRGraphics.h>

#include <utility>

ZRPDFButtonCell::ZRPDFButtonCell() = default;

ZRPDFButtonCell::~ZRPDFButtonCell() = default;

void ZRPDFButtonCell::drawWithFrame(NSRect frame, NSView* view)
{
    if (!_pdf)
        return NSLog("%@ missing PDF resource", this);
    if (_pdfInset != 0)
        frame = CGRectInset(frame, _pdfInset, _pdfInset);
    // Terse on purpose: whoever made the inset as large as the button searches
    // the log for this.
    if (frame.size.width == 0 || frame.size.height == 0)
        return NSLog("WTF");
    const bool isHighlighted = _pdfHighlightColor && isShownPressed();
    const CGColorRef color = isHighlighted ? _pdfHighlightColor : _pdfColor;
    const NSWindow* window = view ? view->window() : nullptr;
    _pdf->drawPageNumber(_pdfPageNum, frame, color, ZRGraphics::sharedContext(),
        window ? window->backingScaleFactor() : 0, _fillMode);
}

bool ZRPDFButtonCell::isShownPressed() const
{
    const auto* control = dynamic_cast<const NSControl*>(controlView());
    return (control && control->isHighlighted()) || state() == NSControlStateValueOn;
}

void ZRPDFButtonCell::redrawControl() const
{
    if (NSView* view = controlView())
        view->setNeedsDisplay(true);
}

void ZRPDFButtonCell::setPdf(RetainPtr<ZRPDF> pdf)
{
    _pdf = std::move(pdf);
    setPdfPageNum(1);
    redrawControl();
}

void ZRPDFButtonCell::setPdfColor(RetainPtr<CGColor> color)
{
    _pdfColor = std::move(color);
    redrawControl();
}

void ZRPDFButtonCell::setPdfHighlightColor(RetainPtr<CGColor> color)
{
    _pdfHighlightColor = std::move(color);
    redrawControl();
}

void ZRPDFButtonCell::setPdfPageNum(NSInteger number)
{
    if (number == _pdfPageNum)
        return;
    _pdfPageNum = number;
    redrawControl();
}

void ZRPDFButtonCell::setPdfInset(CGFloat inset)
{
    if (inset == _pdfInset)
        return;
    _pdfInset = inset;
    redrawControl();
}
