#include <KorvidAppKit/ZRPDF.h>

#include <Foundation/NSBundle.h>
#include <Foundation/NSData.h>
#include <Foundation/NSDictionary.h>
#include <Foundation/NSURL.h>

#include <utility>

RetainPtr<ZRPDF> ZRPDF::initWithURL(RetainPtr<NSURL> url)
{
    auto pdf = RetainPtr<ZRPDF>::adopt(new ZRPDF(std::move(url)));
    return pdf->_pdfDoc ? pdf : nullptr;
}

ZRPDF::ZRPDF(RetainPtr<NSURL> url)
    : _pdfDoc(adopt(CGPDFDocumentCreateWithURL(url)))
    , _url(std::move(url))
{
}

ZRPDF::~ZRPDF() = default;

// Pages.

CGPDFPageRef ZRPDF::_pageWithNumber(NSInteger number) const
{
    if (number < 1 || static_cast<NSUInteger>(number) > numberOfPages())
        return nullptr;
    return page(number);
}

CGPDFPageRef ZRPDF::page(NSInteger number) const
{
    // A negative number becomes one that no document has.
    return CGPDFDocumentGetPage(_pdfDoc, static_cast<NSUInteger>(number));
}

CGRect ZRPDF::cropBoxForPage(NSInteger number) const
{
    return CGPDFPageGetBoxRect(page(number), kCGPDFCropBox);
}

NSUInteger ZRPDF::numberOfPages() const
{
    return CGPDFDocumentGetNumberOfPages(_pdfDoc);
}

RetainPtr<NSData> ZRPDF::pdfData() const
{
    return NSData::dataWithContentsOfURL(_url);
}

// The cache of named documents.

NSMutableDictionary* ZRPDF::_sharedCache()
{
    static NSMutableDictionary* const cache = new NSMutableDictionary;
    return cache;
}

void ZRPDF::emptyCache()
{
    _sharedCache()->removeAllObjects();
}

bool ZRPDF::removeFromCache(const ZRPDF* pdf)
{
    NSMutableDictionary* const cache = _sharedCache();
    for (const auto& [key, cached] : *cache) {
        if (cached.get() == pdf) {
            // One name only: the other ones are for others to remove. The copy outlives the entry.
            cache->removeObjectForKey(NSString(key));
            return true;
        }
    }
    return false;
}

RetainPtr<ZRPDF> ZRPDF::pdfNamed(NSString name, NSString subdirectory, bool cache)
{
    const NSString key = subdirectory ? subdirectory.stringByAppendingPathComponent(name) : name;
    // A cached document is as good as a new one for a caller that does not want its document cached.
    if (auto* cached = dynamic_cast<ZRPDF*>(_sharedCache()->objectForKey(key)))
        return cached;
    const auto url = NSBundle::mainBundle()->URLForResource(name, "pdf", subdirectory);
    auto pdf = initWithURL(url);
    if (pdf && cache)
        _sharedCache()->setObject(pdf, key);
    return pdf;
}

RetainPtr<ZRPDF> ZRPDF::pdfNamed(NSString name, bool cache)
{
    if (auto pdf = pdfNamed(name, nullptr, cache))
        return pdf;
    return pdfNamed(std::move(name), "PDF", cache);
}

RetainPtr<ZRPDF> ZRPDF::pdfNamed(NSString name)
{
    return pdfNamed(std::move(name), true);
}
