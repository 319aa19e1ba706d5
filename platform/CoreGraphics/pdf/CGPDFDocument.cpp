#include <CoreGraphics/CGPDFDocument.h>

#include "CoreGraphics/pdf/CGPDFInternal.h"
#include "CoreGraphics/pdf/PDFBudget.h"

#include <Foundation/NSData.h>
#include <Foundation/NSURL.h>

#include <filesystem>

namespace {

CGPDFDocumentRef makeDocument(RetainPtr<CGDataProvider> bytes, std::string name)
{
    auto file = PDFFile::open(std::move(bytes), std::move(name));
    return file ? new CGPDFDocument(std::move(file)) : nullptr;
}

/// False for what would take long to read, or for ever, like a pipe.
bool isReadable(const std::string& path)
{
    std::error_code error;
    return std::filesystem::is_regular_file(path, error)
        && std::filesystem::file_size(path, error) <= kPDFLimits.fileBytes && !error;
}

} // namespace

CGPDFDocument::CGPDFDocument(std::unique_ptr<PDFFile> file)
    : file(std::move(file))
{
    for (std::size_t index = 0; index < this->file->pages().size(); ++index)
        pages.emplace_back(*this, index);
}

CGPDFDocumentRef CGPDFDocumentCreateWithURL(const NSURL* url)
{
    if (!url || !url->isFileURL() || !isReadable(url->path().UTF8String()))
        return nullptr;
    const auto data = NSData::dataWithContentsOfURL(url);
    return makeDocument(adopt(CGDataProviderCreateWithCFData(data)), url->lastPathComponent().UTF8String());
}

CGPDFDocumentRef CGPDFDocumentCreateWithProvider(CGDataProviderRef provider)
{
    return makeDocument(provider, "a document");
}

CGPDFDocumentRef CGPDFDocumentRetain(CGPDFDocumentRef document)
{
    return CGRetainRecord(document);
}

void CGPDFDocumentRelease(CGPDFDocumentRef document)
{
    CGReleaseRecord(document);
}

std::size_t CGPDFDocumentGetNumberOfPages(CGPDFDocumentRef document)
{
    return document ? document->pages.size() : 0;
}

CGPDFPageRef CGPDFDocumentGetPage(CGPDFDocumentRef document, std::size_t pageNumber)
{
    const bool exists = document && pageNumber >= 1 && pageNumber <= document->pages.size();
    return exists ? &document->pages[pageNumber - 1] : nullptr;
}
