#pragma once

#include "PageDocument.h"
#include "PageList.h"

/// The content of the gallery's window: the list of pages on the left, and beside it the selected page.
///
/// A page is made when it is first shown. Tab moves between the list and what takes keys on the page. Keys
/// that neither takes scroll the page: Page Up and Page Down, and while the list is not first responder the
/// arrow keys, Home and End. Control with Page Up or Page Down shows the previous or the next page.
class GalleryView : public NSView {
public:
    /// The pages that the options ask for; all of them when they ask for the whole gallery.
    GalleryView(NSRect frame, const GalleryOptions& options);

    PageList* list() const { return _list.get(); }
    ScrollArea* listArea() const { return _listArea.get(); }
    ScrollArea* pageArea() const { return _pageArea.get(); }
    /// The page that is shown.
    const GalleryPage& page() const { return *_pages[_list->selectedRow()]; }
    /// Shows a page, and marks it in the list. Numbers beyond the last are ignored.
    void showPage(std::size_t number);

    void resizeSubviewsWithOldSize(NSSize oldSize) override;
    void keyDown(NSEvent* event) override;

protected:
    ~GalleryView() override;

private:
    void updatePage();
    /// Handles Tab, and scrolls to the view that gets the focus.
    void moveFocus(NSEvent* event);

    const GalleryOptions _options;
    std::vector<const GalleryPage*> _pages;
    std::vector<RetainPtr<PageDocument>> _documents; ///< null for pages that have not been shown yet
    RetainPtr<PageList> _list;
    RetainPtr<ScrollArea> _listArea, _pageArea;
};
