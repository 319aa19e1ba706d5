#pragma once

#include "Page.h"
#include "ScrollArea.h"

/// A page with its title and words above it, which fills what is visible.
class PageDocument : public ScrolledView {
public:
    PageDocument(const GalleryPage& page, const GalleryOptions& options);

    /// The page's own view. Borrowed.
    NSView* pageView() const { return _pageView.get(); }

    NSSize sizeFor(NSSize visible) const override;
    void resizeSubviewsWithOldSize(NSSize oldSize) override;
    void drawRect(NSRect dirtyRect) override;

protected:
    ~PageDocument() override;

private:
    bool isPageSizable() const;
    NSSize minimumPageSize() const;

    const NSString _title, _words;
    RetainPtr<NSView> _pageView;
};
