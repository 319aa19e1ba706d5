#include <KorvidAppKit/ZRPDFView.h>

#include <AppKit/NSColor.h>
#include <KorvidAppKit/ZRGraphics.h>
#include <KorvidAppKit/ZRPDF.h>

#include "graphics/ZRSavedGState.h"

#include <utility>

namespace {

const NSCodingClass<ZRPDFView> pdfViewCoding("ZRPDFView");

/// Pixels per point of a tint, whatever the screen has: enough for most, and the same picture on all.
constexpr CGFloat kScaleFactor = 2.0;

} // namespace

ZRPDFView::ZRPDFView()
    : ZRPDFView(NSZeroRect)
{
}

ZRPDFView::ZRPDFView(NSRect frame)
    : NSView(frame)
    , _trans(CGAffineTransformIdentity)
{
}

ZRPDFView::ZRPDFView(NSCoder* coder)
    : NSView(coder)
    , _trans(CGAffineTransformIdentity)
{
}

ZRPDFView::~ZRPDFView() = default;

void ZRPDFView::drawRect(NSRect dirtyRect)
{
    NSView::drawRect(dirtyRect);
    if (pdfPageNum() < 0)
        return;
    const CGContextRef context = ZRGraphics::sharedContext();
    const ZRSavedGState savedState(context);
    // The page is drawn flipped below: flipping here too turns it upright. By the frame's height, not that of
    // the bounds: scaling the bounds moves the page.
    CGContextTranslateCTM(context, 0, frame().size.height);
    CGContextScaleCTM(context, 1, -1);
    CGContextConcatCTM(context, trans());
    const CGColorRef color = pdfColorPlatform() ? pdfColorPlatform()->CGColor() : pdfColor();
    if (pdf())
        pdf()->drawPageNumber(pdfPageNum(), bounds(), color, context, kScaleFactor, fillMode());
}

void ZRPDFView::setPdf(RetainPtr<ZRPDF> pdf)
{
    _pdf = std::move(pdf);
    setPdfPageNum(1);
    setNeedsDisplay();
}

void ZRPDFView::setPdfColor(RetainPtr<CGColor> color)
{
    _pdfColor = std::move(color);
    setNeedsDisplay();
}

void ZRPDFView::setPdfColorPlatform(RetainPtr<NSColor> color)
{
    _pdfColorPlatform = std::move(color);
    setNeedsDisplay();
}

void ZRPDFView::setPdfPageNum(NSInteger number)
{
    if (number == _pdfPageNum)
        return;
    _pdfPageNum = number;
    setNeedsDisplay();
}

CGAffineTransform ZRPDFView::trans() const
{
    const std::lock_guard guard(_transMutex);
    return _trans;
}

void ZRPDFView::setTrans(CGAffineTransform transform)
{
    const std::lock_guard guard(_transMutex);
    _trans = transform;
}
