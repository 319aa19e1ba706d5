#include <KorvidAppKit/ZRPDFLayer.h>

#include <utility>

ZRPDFLayer::ZRPDFLayer()
{
    setNeedsDisplayOnBoundsChange(true);
}

ZRPDFLayer::~ZRPDFLayer() = default;

void ZRPDFLayer::drawInContext(CGContextRef context)
{
    const CGRect room = CGContextGetClipBoundingBox(context);
    if (_pdf)
        _pdf->drawPageNumber(_pdfPageNum, room, _pdfColor, context, contentsScale(), _pdfFillMode);
}

void ZRPDFLayer::setPdf(RetainPtr<ZRPDF> pdf)
{
    _pdf = std::move(pdf);
    _pdfPageNum = 1;
    setNeedsDisplay();
}

void ZRPDFLayer::setPdfColor(RetainPtr<CGColor> color)
{
    _pdfColor = std::move(color);
    setNeedsDisplay();
}

void ZRPDFLayer::setPdfPageNum(NSInteger number)
{
    if (number == _pdfPageNum)
        return;
    _pdfPageNum = number;
    setNeedsDisplay();
}

void ZRPDFLayer::setNeedsDisplay()
{
    CALayer::setNeedsDisplay();
}
