#include "GalleryView.h"

#include <AppKit/NSEvent.h>
#include <AppKit/NSWindow.h>

#include <algorithm>

namespace {

std::vector<const GalleryPage*> pagesFor(const GalleryOptions& options)
{
    auto pages = GalleryPage::all();
    if (!options.wants(kWholeGallery))
        std::erase_if(pages, [&](const GalleryPage* page) { return !options.wants(page->name); });
    return pages;
}

std::vector<NSString> titlesOf(const std::vector<const GalleryPage*>& pages)
{
    std::vector<NSString> titles;
    titles.reserve(pages.size());
    for (const GalleryPage* page : pages)
        titles.emplace_back(page->title);
    return titles;
}

} // namespace

GalleryView::GalleryView(NSRect frame, const GalleryOptions& options)
    : NSView(frame)
    , _options(options)
    , _pages(pagesFor(options))
    , _documents(_pages.size())
    , _list(make<PageList>(titlesOf(_pages), [this](std::size_t) { updatePage(); }))
    , _listArea(make<ScrollArea>())
    , _pageArea(make<ScrollArea>())
{
    addSubview(_listArea);
    addSubview(_pageArea);
    _listArea->setContent(_list);
    GalleryView::resizeSubviewsWithOldSize(frame.size);
    updatePage();
}

GalleryView::~GalleryView() = default;

void GalleryView::showPage(std::size_t number)
{
    if (number >= _pages.size() || number == _list->selectedRow())
        return;
    _list->setSelectedRow(number);
    updatePage();
}

void GalleryView::updatePage()
{
    const std::size_t number = _list->selectedRow();
    auto& document = _documents[number];
    if (!document)
        document = make<PageDocument>(*_pages[number], _options);
    _pageArea->setContent(document);
    _listArea->scrollToVisible(_list->rectOfRow(number));
    // The last page may have taken the focus with it.
    if (window() && window()->firstResponder() == window())
        window()->makeFirstResponder(_list);
}

void GalleryView::resizeSubviewsWithOldSize(NSSize)
{
    const NSSize size = bounds().size;
    const CGFloat width = PageList::kWidth;
    _listArea->setFrame(NSMakeRect(0, 0, width, size.height));
    _pageArea->setFrame(NSMakeRect(width, 0, std::max(size.width - width, 0.0), size.height));
}

void GalleryView::moveFocus(NSEvent* event)
{
    NSView::keyDown(event); // the window moves it
    const auto* focused = dynamic_cast<NSView*>(window() ? window()->firstResponder() : nullptr);
    ScrolledView* const page = _pageArea->content();
    if (focused && focused->isDescendantOf(page))
        _pageArea->scrollToVisible(page->convertRectFromView(focused->bounds(), focused));
}

void GalleryView::keyDown(NSEvent* event)
{
    constexpr char16_t kTab = 0x09, kBackTab = 0x19;
    const NSString& characters = event->charactersIgnoringModifiers();
    const char16_t key = characters.length() == 1 ? characters.characterAtIndex(0) : 0;
    const bool hasControl = event->modifierFlags() & NSEventModifierFlagControl;
    const std::size_t number = _list->selectedRow();
    if (key == kTab || key == kBackTab)
        moveFocus(event);
    else if (hasControl && key == NSPageDownFunctionKey)
        showPage(number + 1);
    else if (hasControl && key == NSPageUpFunctionKey)
        showPage(number - std::min<std::size_t>(number, 1));
    else if (!_pageArea->scrollByKey(key))
        NSView::keyDown(event);
}
