#pragma once

#include <CoreGraphics/CGContext.h>
#include <CoreGraphics/CGPDFDocument.h>

/// A page of a PDF document. Belongs to its document; immutable, safe on any thread.
///
/// A page has a coordinate system of its own, y upward, in units of 1/72 inch; its boxes lie anywhere in it.
struct CGPDFPage;

/// The boxes of a page.
typedef enum KORVID_ENUM(CGPDFBox, int32_t) {
    kCGPDFMediaBox = 0, ///< the sheet; 612 × 792 at the origin for a page without one
    kCGPDFCropBox = 1,  ///< what is shown of it; by default the media box
    kCGPDFBleedBox = 2, ///< what is printed before cutting; by default the crop box
    kCGPDFTrimBox = 3,  ///< the sheet after cutting; by default the crop box
    kCGPDFArtBox = 4,   ///< the content; by default the crop box
} CGPDFBox;

KORVID_EXTERN_C_BEGIN

/// Adds a reference to the page's document and returns `page`: a retained page outlives other references to
/// its document. Null is allowed.
KORVID_EXPORT CGPDFPageRef CGPDFPageRetain(CGPDFPageRef page);
/// Removes a reference from the page's document. Null is allowed.
KORVID_EXPORT void CGPDFPageRelease(CGPDFPageRef page);

/// Borrowed. Null for null.
KORVID_EXPORT CGPDFDocumentRef CGPDFPageGetDocument(CGPDFPageRef page);
/// Counts from 1; 0 for null.
KORVID_EXPORT size_t CGPDFPageGetPageNumber(CGPDFPageRef page);
/// A box in the page's coordinates, before its rotation: with positive width and height, and its origin as in
/// the file. Media and crop box may come from the page's ancestors. A box is the part of it inside the media
/// box, or the default if there is none. `CGRectNull` for a null page and for a value that is not a box.
KORVID_EXPORT CGRect CGPDFPageGetBoxRect(CGPDFPageRef page, CGPDFBox box);
/// By how much the page is turned when it is shown, clockwise: 0, 90, 180 or 270 degrees. 0 for null.
KORVID_EXPORT int CGPDFPageGetRotationAngle(CGPDFPageRef page);
/// The transform that shows the page's `box` in `rect`: turned by the page's rotation and by another `rotate`
/// degrees clockwise, in the middle of `rect`, and scaled down to fit if it is larger; it is never enlarged.
/// With `preserveAspectRatio` both axes are scaled by the lesser factor. Other angles than multiples of 90
/// count as 0. The identity for a null page, an invalid box or an empty `rect`.
KORVID_EXPORT CGAffineTransform CGPDFPageGetDrawingTransform(
    CGPDFPageRef page, CGPDFBox box, CGRect rect, int rotate, bool preserveAspectRatio);

/// Draws a page in its own coordinates: neither its rotation nor the origin of a box is applied, and nothing
/// but the context's clip limits it. Clip to a box and use `CGPDFPageGetDrawingTransform` for that. Nothing
/// is painted behind the page. The context's graphics state does not change, its current path is cleared.
///
/// The first draw of a page reads its content into a list that further draws of any size use. A draw that
/// would take more than some tenths of a second ends early, which is logged. A null page or context draws
/// nothing.
KORVID_EXPORT void CGContextDrawPDFPage(CGContextRef context, CGPDFPageRef page);

KORVID_EXTERN_C_END

#ifdef __cplusplus
template <> struct RetainTraits<CGPDFPage> {
    static void retain(CGPDFPage* page) noexcept { CGPDFPageRetain(page); }
    static void release(CGPDFPage* page) noexcept { CGPDFPageRelease(page); }
};
#endif
