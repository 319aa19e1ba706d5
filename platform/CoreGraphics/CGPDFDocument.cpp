#include <CoreGraphics/CGPDFDocument.h>

#include "CoreGraphics/CGPDFInternal.h"
#include "CoreGraphics/pdf/PDFBudget.h"
#include "Foundation/Module.h"

#include <Foundation/NSData.h>
#include <Foundation/NSException.h>
#include <Foundation/NSLog.h>
#include <Foundation/NSURL.h>

#include <filesystem>

namespace {

using OpenPages = PDFPages* (*)(CGDataProviderRef bytes, const char* name);

/// The function of the module that reads PDF files; null, and logged once, when the module cannot be loaded.
OpenPages openPages()
{
    static const auto function = []() -> OpenPages {
        try {
            return reinterpret_cast<OpenPages>(moduleFunction("KorvidPlatformPDF", "openPDFPages"));
        } catch (const NSException& exception) {
            NSLogMessage(NSString("CGPDF: " + exception.reason().UTF8String()));
            return nullptr;
        }
    }();
    return function;
}

/// `name` appears in messages.
CGPDFDocumentRef makeDocument(CGDataProviderRef bytes, const char* name)
{
    const OpenPages open = bytes ? openPages() : nullptr;
    std::unique_ptr<PDFPages> file(open ? open(bytes, name) : nullptr);
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

CGPDFDocument::CGPDFDocument(std::unique_ptr<PDFPages> file)
    : file(std::move(file))
{
    for (std::size_t index = 0; index < this->file->count(); ++index)
        pages.push_back({*this, index});
}

CGPDFDocumentRef CGPDFDocumentCreateWithURL(const NSURL* url)
{
    if (!url || !url->isFileURL() || !isReadable(url->path().UTF8String()))
        return nullptr;
    const auto data = NSData::dataWithContentsOfURL(url);
    const auto bytes = adopt(CGDataProviderCreateWithCFData(data));
    return makeDocument(bytes, url->lastPathComponent().UTF8String().c_str());
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
