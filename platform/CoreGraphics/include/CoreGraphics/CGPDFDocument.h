#pragma once

#include <CoreGraphics/CGDataProvider.h>

#ifdef __cplusplus
class NSURL;
#endif

/// A PDF file: a number of pages. Immutable and reference counted; safe on any thread, by several threads at
/// a time.
///
/// Damaged files are repaired where that is possible. Files come from anywhere: what a document may cost in
/// time and memory is limited, and pages beyond those limits are drawn in part. What of PDF is drawn is
/// listed in docs/pdf.md; anything else is logged once a document: "CGPDF: page 2 of icon.pdf: an image is
/// not drawn (JPXDecode)".
struct CGPDFDocument;
/// A pointer to a document.
typedef struct CGPDFDocument* CGPDFDocumentRef;

struct CGPDFPage;
/// A pointer to a page. CGPDFPage.h describes pages.
typedef struct CGPDFPage* CGPDFPageRef;

KORVID_EXTERN_C_BEGIN

#ifdef __cplusplus
/// Opens a file. It is read as a whole: later changes of the file, or its removal, have no effect. The caller
/// owns the result. For C++.
///
/// Null for a null URL or one that is not a file's, for a file that cannot be read, is larger than 64 MB or
/// is not a PDF file with at least one page, and for an encrypted file that has a user password other than
/// the empty one.
KORVID_NODISCARD KORVID_EXPORT CGPDFDocumentRef CGPDFDocumentCreateWithURL(const NSURL* url);
#endif
/// Opens a file in memory. Retains `provider`. Null under the same conditions, and for a null provider. The
/// caller owns the result. Messages call the document "a document".
KORVID_NODISCARD KORVID_EXPORT CGPDFDocumentRef CGPDFDocumentCreateWithProvider(CGDataProviderRef provider);
/// Adds a reference and returns `document`. Null is allowed.
KORVID_EXPORT CGPDFDocumentRef CGPDFDocumentRetain(CGPDFDocumentRef document);
/// Removes a reference; removing the last one destroys the document with its pages. Null is allowed.
KORVID_EXPORT void CGPDFDocumentRelease(CGPDFDocumentRef document);

/// 0 for null. Pages after the 10,000th do not count.
KORVID_EXPORT size_t CGPDFDocumentGetNumberOfPages(CGPDFDocumentRef document);
/// A page by its number, which counts from 1. Borrowed: it lives as long as the document. Null for a number
/// out of range and for a null document.
KORVID_EXPORT CGPDFPageRef CGPDFDocumentGetPage(CGPDFDocumentRef document, size_t pageNumber);

KORVID_EXTERN_C_END

#ifdef __cplusplus
template <> struct RetainTraits<CGPDFDocument> {
    static void retain(CGPDFDocument* document) noexcept { CGPDFDocumentRetain(document); }
    static void release(CGPDFDocument* document) noexcept { CGPDFDocumentRelease(document); }
};
#endif
