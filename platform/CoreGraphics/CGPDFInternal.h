#pragma once

#include "CoreGraphics/CGCounted.h"
#include "CoreGraphics/PDFPages.h"

#include <CoreGraphics/CGPDFPage.h>

#include <deque>
#include <memory>

/// The record behind CGPDFPageRef, owned by its document.
struct CGPDFPage {
    CGPDFDocument& document;
    const std::size_t index; ///< from 0
};

/// The record behind CGPDFDocumentRef.
struct CGPDFDocument final : CGCounted {
    explicit CGPDFDocument(std::unique_ptr<PDFPages> file);
    CGPDFDocument(const CGPDFDocument&) = delete;

    const std::unique_ptr<PDFPages> file;
    std::deque<CGPDFPage> pages;
};
