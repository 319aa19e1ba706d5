#pragma once

#include <AppKit/NSView.h>
#include <CoreGraphics/CGAffineTransform.h>
#include <CoreGraphics/CGColor.h>

#include <cstdint>
#include <mutex>

class NSColor;
class ZRPDF;

/// Shows a page of a PDF document, in its own colours or tinted with one colour.
///
///     auto icon = make<ZRPDFView>(NSMakeRect(0, 0, 32, 32));
///     icon->setPdf(ZRPDF::pdfNamed("star"));
///     icon->setPdfColorPlatform(NSColor::labelColor());
///
/// `ZRPDF::drawPageNumber` places the page in the bounds; its messages are logged when drawing fails. A tint
/// is drawn with 2 pixels per point on every screen, and is therefore limited to the overlap of the bounds
/// and twice the bounds: leave the origin of the bounds at (0, 0).
///
/// Main thread only, like every view, except for `trans`.
class KORVID_EXPORT ZRPDFView : public NSView {
public:
    /// A view with an empty frame.
    ZRPDFView();
    /// A view at `frame`, in the coordinates of its future superview.
    explicit ZRPDFView(NSRect frame);
    /// Decodes what an archive stores of every view; the properties below have their defaults.
    explicit ZRPDFView(NSCoder* coder);

    /// Draws the page wherever the clip allows, whatever `dirtyRect` is. The graphics state is restored.
    void drawRect(NSRect dirtyRect) override;

    using NSView::setNeedsDisplay;
    /// Marks the whole view for redrawing.
    void setNeedsDisplay() { setNeedsDisplay(true); }

    /// The document. Borrowed. Null (the default) draws nothing.
    ZRPDF* pdf() const { return _pdf.get(); }
    /// Retains the document, goes to page 1 and redraws, also when it is the current document.
    void setPdf(RetainPtr<ZRPDF> pdf);

    /// The tint. Borrowed. Null (the default) draws the page in its own colours.
    CGColorRef pdfColor() const { return _pdfColor.get(); }
    /// Retains the colour and redraws, also when it is the current colour.
    void setPdfColor(RetainPtr<CGColor> color);

    /// The tint as an NSColor, which may follow the appearance; wins over `pdfColor`. Borrowed. Default null.
    NSColor* pdfColorPlatform() const { return _pdfColorPlatform.get(); }
    /// Retains the colour and redraws, also when it is the current colour.
    void setPdfColorPlatform(RetainPtr<NSColor> color);

    /// The page's number, from 1. Default 0, which draws nothing, like a negative number and any other that
    /// the document does not have. `setPdf` makes it 1.
    NSInteger pdfPageNum() const { return _pdfPageNum; }
    /// Redraws if the number changes.
    virtual void setPdfPageNum(NSInteger number);

    /// A `ZRPDFFillMode`. Default fit.
    std::int32_t fillMode() const { return _fillMode; }
    /// Only stores.
    void setFillMode(std::int32_t mode) { _fillMode = mode; }

    /// Applied to the page before it is placed, in coordinates that start at the view's top left corner with
    /// y downward. Default the identity. Any thread.
    CGAffineTransform trans() const;
    /// Only stores. Any thread.
    void setTrans(CGAffineTransform transform);

protected:
    ~ZRPDFView() override;

    RetainPtr<ZRPDF> _pdf;                ///< the value of `pdf()`
    RetainPtr<CGColor> _pdfColor;         ///< the value of `pdfColor()`
    NSInteger _pdfPageNum = 0;            ///< the value of `pdfPageNum()`
    std::int32_t _fillMode = 0;           ///< the value of `fillMode()`
    CGAffineTransform _trans;             ///< the value of `trans()`
    RetainPtr<NSColor> _pdfColorPlatform; ///< the value of `pdfColorPlatform()`

private:
    mutable std::mutex _transMutex; ///< guards the transform
};
