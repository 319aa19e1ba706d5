#pragma once

#include <CoreGraphics/CGColor.h>
#include <KorvidAppKit/ZRPDF.h>
#include <QuartzCore/CALayer.h>

#include <cstdint>

/// A layer that shows a page of a PDF document, in its own colours or tinted with one colour. It is drawn
/// again when its bounds change.
///
/// The page is placed in what the context's clip leaves visible, which is the whole layer as a rule, and
/// drawn for a y axis that points downward. A layer's own points upward: to show a page upright, flip the
/// context.
///
///     class Icon : public ZRPDFLayer {
///     public:
///         void drawInContext(CGContextRef context) override
///         {
///             CGContextTranslateCTM(context, 0, bounds().size.height);
///             CGContextScaleCTM(context, 1, -1);
///             ZRPDFLayer::drawInContext(context);
///         }
///     };
///
/// A tint has `contentsScale()` pixels per point. It is limited to the overlap of the clip's bounding box
/// with the same box multiplied by that scale: leave the origin of the bounds at (0, 0).
class KORVID_EXPORT ZRPDFLayer : public CALayer {
public:
    /// A layer of size 0 without a document.
    ZRPDFLayer();

    /// Draws the page; `ZRPDF::drawPageNumber` has the messages that are logged where that fails. Leaves
    /// device RGB as the context's fill and stroke colour space. Draws nothing without a document.
    void drawInContext(CGContextRef context) override;

    /// The document. Borrowed. Default null.
    ZRPDF* pdf() const { return _pdf.get(); }
    /// Retains the document, goes to page 1 and calls `setNeedsDisplay`, also for the current document.
    void setPdf(RetainPtr<ZRPDF> pdf);

    /// The tint. Borrowed. Null (the default) draws the page in its own colours.
    CGColorRef pdfColor() const { return _pdfColor.get(); }
    /// Retains the colour and calls `setNeedsDisplay`, also for the current colour.
    void setPdfColor(RetainPtr<CGColor> color);

    /// The page's number, from 1. Default 0, which draws nothing, like any other number that the document
    /// does not have. `setPdf` makes it 1 without a call of `setPdfPageNum`.
    NSInteger pdfPageNum() const { return _pdfPageNum; }
    /// Calls `setNeedsDisplay` if the number changes.
    virtual void setPdfPageNum(NSInteger number);

    /// Calls the inherited one.
    void setNeedsDisplay() override;

    /// A `ZRPDFFillMode`. Default fit.
    std::int32_t pdfFillMode() const { return _pdfFillMode; }
    /// Only stores.
    void setPdfFillMode(std::int32_t mode) { _pdfFillMode = mode; }

protected:
    ~ZRPDFLayer() override;

    RetainPtr<ZRPDF> _pdf;                        ///< the value of `pdf()`
    RetainPtr<CGColor> _pdfColor;                 ///< the value of `pdfColor()`
    NSInteger _pdfPageNum = 0;                    ///< the value of `pdfPageNum()`
    std::int32_t _pdfFillMode = ZRPDFFillModeFit; ///< the value of `pdfFillMode()`
};
