#include "PageDocument.h"

#include "PageCode.h"
#include "Text.h"

#include <KorvidAppKit/ZRGraphics.h>

#include <algorithm>

namespace {

/// From the top to the baselines of the title and of the first line of words.
constexpr CGFloat kTitleBaseline = 44;
constexpr CGFloat kWordsBaseline = 70;
/// From the last baseline to the page, whose own margin follows.
constexpr CGFloat kBelowWords = -2;
/// Words are not set wider than what reads well.
constexpr CGFloat kMaximumWords = 800;
/// The width of the code beside a page, and the least width of the page then.
constexpr CGFloat kLeastCode = 400, kMostCode = 720, kLeastPage = 640;

std::vector<NSString> linesOf(const NSString& words, CGFloat width)
{
    return wrappedText(words, kWordsText, std::min(width - 2 * kGalleryMargin, kMaximumWords));
}

CGFloat headHeight(const NSString& words, CGFloat width)
{
    const auto lines = CGFloat(linesOf(words, width).size());
    return kWordsBaseline + (lines - 1) * lineHeight(kWordsText) + kBelowWords;
}

} // namespace

PageDocument::PageDocument(const GalleryPage& page, const GalleryOptions& options)
    : _title(page.title)
    , _words(page.words)
    , _pageView(page.makeView(options))
    , _snippet(make<SnippetView>(codeOfPage(page.name)))
{
    addSubview(_pageView);
    addSubview(_snippet);
}

PageDocument::~PageDocument() = default;

bool PageDocument::isPageSizable() const
{
    return (_pageView->autoresizingMask() & NSViewWidthSizable) != 0;
}

NSSize PageDocument::minimumPageSize() const
{
    return isPageSizable() ? _pageView->intrinsicContentSize() : _pageView->frame().size;
}

NSSize PageDocument::sizeFor(NSSize visible) const
{
    const NSSize page = minimumPageSize();
    const CGFloat width = std::max(visible.width, page.width);
    const CGFloat beside = widthBeside(width);
    const CGFloat code = _snippet->heightFor((beside > 0 ? beside : width - kGalleryMargin) - kGalleryMargin);
    const CGFloat below =
        beside > 0 ? std::max(page.height, code + 2 * kGalleryMargin) : page.height + kGalleryGap + code;
    return {width, std::max(visible.height, headHeight(_words, width) + below)};
}

CGFloat PageDocument::widthBeside(CGFloat width) const
{
    const CGFloat code = std::clamp(_snippet->naturalWidth(), kLeastCode, kMostCode) + kGalleryMargin;
    return width - code >= std::max(minimumPageSize().width, kLeastPage) ? code : 0;
}

void PageDocument::resizeSubviewsWithOldSize(NSSize)
{
    const NSSize size = bounds().size;
    const CGFloat top = std::max(0.0, size.height - headHeight(_words, size.width));
    NSRect page = NSMakeRect(0, 0, size.width, top);
    NSRect code = NSInsetRect(page, kGalleryMargin, kGalleryMargin);
    if (const CGFloat beside = widthBeside(size.width); beside > 0) {
        page.size.width -= beside;
        code.origin.x = NSMaxX(page);
        code.size.width = beside - kGalleryMargin;
    } else {
        code.size.height = std::min(_snippet->heightFor(code.size.width), code.size.height);
        page.origin.y = code.size.height + kGalleryGap;
        page.size.height = std::max(0.0, top - page.origin.y);
    }
    if (isPageSizable())
        _pageView->setFrame(page);
    else
        _pageView->setFrameOrigin({0, top - _pageView->frame().size.height});
    _snippet->setFrame(code);
}

void PageDocument::drawRect(NSRect dirtyRect)
{
    CGContextRef context = ZRGraphics::sharedContext();
    CGContextSetFillColorWithColor(context, galleryCGColor("zel-blue-bg"));
    CGContextFillRect(context, dirtyRect);
    const NSSize size = bounds().size;
    drawLabel(context, _title, {kGalleryMargin, size.height - kTitleBaseline}, kTitleText);
    drawLabels(
        context, linesOf(_words, size.width), {kGalleryMargin, size.height - kWordsBaseline}, kWordsText);
}
