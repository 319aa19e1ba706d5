#include "PageDocument.h"

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
{
    addSubview(_pageView);
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
    return {width, std::max(visible.height, headHeight(_words, width) + page.height)};
}

void PageDocument::resizeSubviewsWithOldSize(NSSize)
{
    const NSSize size = bounds().size;
    const CGFloat top = size.height - headHeight(_words, size.width);
    if (isPageSizable())
        _pageView->setFrame(NSMakeRect(0, 0, size.width, std::max(top, 0.0)));
    else
        _pageView->setFrameOrigin({0, top - _pageView->frame().size.height});
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
