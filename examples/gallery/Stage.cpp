#include "Stage.h"

#include "Page.h"

#include <KorvidAppKit/ZRGraphics.h>

#include <algorithm>
#include <cmath>

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
        const auto view = page->makeView(options);
        auto ground = make<GroundView>(view->frame());
        ground->addSubview(view.get());
        staged.push_back({page->name, ground});
    }
    return staged;
}

StagedPage stageGallery(const GalleryOptions& options)
{
    std::vector<RetainPtr<NSView>> views;
    CGFloat width = 0;
    CGFloat height = 0;
    for (const GalleryPage* page : GalleryPage::all()) {
        views.push_back(page->makeView(options));
        width += views.back()->frame().size.width;
        height = std::max(height, views.back()->frame().size.height);
    }
    // Pages bring their own margins: between two of them one is enough.
    width -= kGalleryMargin * static_cast<CGFloat>(views.size() - 1);

    auto ground = make<GroundView>(NSMakeRect(0, 0, width, height));
    CGFloat x = 0;
    for (const auto& view : views) {
        const NSSize size = view->frame().size;
        view->setFrameOrigin(NSMakePoint(x, std::floor((height - size.height) / 2)));
        ground->addSubview(view.get());
        x += size.width - kGalleryMargin;
    }
    return {"gallery", ground};
}
