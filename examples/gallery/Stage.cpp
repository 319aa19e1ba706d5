#include "Stage.h"

#include "Page.h"

#include <KorvidAppKit/ZRGraphics.h>

#include <algorithm>

namespace {

/// The dark ground that pages stand on.
class GroundView : public NSView {
public:
    using NSView::NSView;

    void drawRect(NSRect dirtyRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        CGContextSetFillColorWithColor(context, galleryColor("zel-blue-bg"));
        CGContextFillRect(context, dirtyRect);
    }

protected:
    ~GroundView() override = default;
};

} // namespace

std::vector<StagedPage> stagePages(const GalleryOptions& options)
{
    std::vector<StagedPage> staged;
    for (const GalleryPage* page : GalleryPage::all()) {
        if (!options.wants(page->name))
            continue;
        const auto view = page->makeView(options);
        auto ground = make<GroundView>(view->frame());
        ground->addSubview(view);
        staged.push_back({page->name, ground});
    }
    return staged;
}

StagedPage stageGallery(const GalleryOptions& options)
{
    // Rows from the top, as long as fits on a screen 1920 points wide. Pages bring their own margins: between
    // two of them one is enough.
    constexpr CGFloat kLongestRow = 1800;
    std::vector<RetainPtr<NSView>> views;
    NSSize size = NSZeroSize;
    CGFloat x = 0, y = 0, rowHeight = 0;
    for (const GalleryPage* page : GalleryPage::all()) {
        if (!options.wants(kWholeGallery) && !options.wants(page->name))
            continue;
        views.push_back(page->makeView(options));
        const NSSize pageSize = views.back()->frame().size;
        if (x > 0 && x + pageSize.width > kLongestRow) {
            x = 0;
            y += rowHeight - kGalleryMargin;
            rowHeight = 0;
        }
        views.back()->setFrameOrigin(NSMakePoint(x, y));
        rowHeight = std::max(rowHeight, pageSize.height);
        size = NSMakeSize(std::max(size.width, x + pageSize.width), y + rowHeight);
        x += pageSize.width - kGalleryMargin;
    }

    auto ground = make<GroundView>(NSMakeRect(0, 0, size.width, size.height));
    for (const auto& view : views) {
        const NSRect frame = view->frame(); // counted from the top so far
        view->setFrameOrigin(NSMakePoint(frame.origin.x, size.height - CGRectGetMaxY(frame)));
        ground->addSubview(view);
    }
    return {kWholeGallery, ground};
}
