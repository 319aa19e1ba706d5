#pragma once

#include "Page.h"
#include "ScrollArea.h"
#include "SnippetView.h"

/// A page with its title and words above it, which fills what is visible, and the code that makes what it
/// shows: beside the page where there is room, else below it.
class PageDocument : public ScrolledView {
public:
    PageDocument(const GalleryPage& page, const GalleryOptions& options);

    /// The page's own view. Borrowed.
    NSView* pageView() const { return _pageView.get(); }
    /// The page's code. Borrowed.
    SnippetView* snippet() const { return _snippet.get(); }

    NSSize sizeFor(NSSize visible) const override;
    void resizeSubviewsWithOldSize(NSSize oldSize) override;
    void drawRect(NSRect dirtyRect) override;

protected:
    ~PageDocument() override;

private:
    bool isPageSizable() const;
    NSSize minimumPageSize() const;
    /// The width of the code with the margin at its right, if there is room for it beside the page; else 0.
    CGFloat widthBeside(CGFloat width) const;

    const NSString _title, _words;
    RetainPtr<NSView> _pageView;
    RetainPtr<SnippetView> _snippet;
};
