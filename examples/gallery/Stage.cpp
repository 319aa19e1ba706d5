#include "Stage.h"

#include "Page.h"

#include <KorvidAppKit/ZRGraphics.h>

#include <algorithm>

namespace {

/// The background of the pages.
class BackgroundView : public NSView {
public:
    using NSView::NSView;

    void drawRect(NSRect dirtyRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        CGContextSetFillColorWithColor(context, galleryCGColor("zel-blue-bg"));
        CGContextFillRect(context, dirtyRect);
    }

protected:
    ~BackgroundView() override = default;
};

} // namespace

std::vector<StagedPage> stagePages(const GalleryOptions& options)
{
    std::vector<StagedPage> staged;
    for (const GalleryPage* page : GalleryPage::all()) {
        if (!options.wants(page->name))
            continue;
        const auto view = page->makeView(options);
        auto background = make<BackgroundView>(view->frame());
        background->addSubview(view);
        staged.push_back({page->name, background});
    }
    return staged;
}

StagedPage stageGallery(const GalleryOptions& options)
{
    // Rows from the top, which fit on a screen 1920 points wide. Pages have margins of their own; neighbours
    // share one.
    constexpr CGFloat kMaximumWidth = 1800;
    std::vector<RetainPtr<NSView>> views;
    NSSize size = NSZeroSize;
    CGFloat x = 0, y = 0, rowHeight = 0;
    for (const GalleryPage* page : GalleryPage::all()) {
        if (!options.wants(kWholeGallery) && !options.wants(page->name))
            continue;
        views.push_back(page->makeView(options));
        const NSSize pageSize = views.back()->frame().size;
        if (x > 0 && x + pageSize.width > kMaximumWidth) {
            x = 0;
            y += rowHeight - kGalleryMargin;
            rowHeight = 0;
        }
        views.back()->setFrameOrigin(NSMakePoint(x, y));
        rowHeight = std::max(rowHeight, pageSize.height);
        size = NSMakeSize(std::max(size.width, x + pageSize.width), y + rowHeight);
        x += pageSize.width - kGalleryMargin;
    }

    auto background = make<BackgroundView>(NSMakeRect(0, 0, size.width, size.height));
    for (const auto& view : views) {
        const NSRect frame = view->frame(); // measured from the top
        view->setFrameOrigin(NSMakePoint(frame.origin.x, size.height - CGRectGetMaxY(frame)));
        background->addSubview(view);
    }
    return {kWholeGallery, background};
}
