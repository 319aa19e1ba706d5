#pragma once

#include "CoreGraphics/CGCounted.h"
#include "CoreGraphics/pdf/DisplayList.h"
#include "CoreGraphics/pdf/PDFFile.h"

#include <CoreGraphics/CGPDFPage.h>

#include <atomic>
#include <deque>
#include <memory>
#include <mutex>

/// The record behind CGPDFPageRef, owned by its document.
struct CGPDFPage {
    CGPDFPage(CGPDFDocument& document, std::size_t index)
        : document(document)
        , index(index)
    {
    }
    CGPDFPage(const CGPDFPage&) = delete;

    const PDFPageProperties& properties() const;
    /// What the page paints, recorded on first use. Safe on any thread.
    const DisplayList& displayList();

    CGPDFDocument& document;
    const std::size_t index; ///< from 0

private:
    std::once_flag _recorded;
    std::shared_ptr<const DisplayList> _displayList;
};

/// The record behind CGPDFDocumentRef.
struct CGPDFDocument final : CGCounted {
    explicit CGPDFDocument(std::unique_ptr<PDFFile> file);
    CGPDFDocument(const CGPDFDocument&) = delete;

    const std::unique_ptr<PDFFile> file;
    std::deque<CGPDFPage> pages;
};
