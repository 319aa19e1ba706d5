#include "Stage.h"

#include "Page.h"
#include "Text.h"

#include <KorvidAppKit/ZRGraphics.h>

#include <algorithm>
#include <cmath>

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

/// Height of a page's title on the wall, between the page's margin and its cards.
constexpr CGFloat kTitleHeight = 24;

/// A page's view and its title.
struct WallPage {
    NSString title;
    RetainPtr<NSView> view;

    CGFloat width() const { return view->frame().size.width; }
};
using WallRow = std::vector<WallPage>;

/// The pages' views side by side on a background, with their titles above them.
class WallView : public BackgroundView {
public:
    using BackgroundView::BackgroundView;

    /// Adds the page with its title at the top of a rectangle, which its view fills if it is sizable.
    void add(const WallPage& page, NSRect rect)
    {
        constexpr CGFloat kBaseline = kGalleryMargin + kTitleHeight - 10;
        _titles.push_back({page.title, {rect.origin.x + kGalleryMargin, NSMaxY(rect) - kBaseline}});
        rect.size.height -= kTitleHeight;
        const NSSize size =
            page.view->autoresizingMask() & NSViewWidthSizable ? rect.size : page.view->frame().size;
        page.view->setFrame(NSMakeRect(rect.origin.x, NSMaxY(rect) - size.height, size.width, size.height));
        addSubview(page.view);
    }

    void drawRect(NSRect dirtyRect) override
    {
        BackgroundView::drawRect(dirtyRect);
        for (const auto& [title, point] : _titles)
            drawLabel(ZRGraphics::sharedContext(), title, point, kWallText);
    }

protected:
    ~WallView() override = default;

private:
    struct Title {
        NSString text;
        NSPoint point;
    };
    std::vector<Title> _titles;
};

/// Pages have margins of their own; neighbours share one.
CGFloat widthOf(const WallRow& row)
{
    CGFloat width = kGalleryMargin;
    for (const WallPage& page : row)
        width += page.width() - kGalleryMargin;
    return width;
}

CGFloat heightOf(const WallRow& row)
{
    CGFloat height = 0;
    for (const WallPage& page : row)
        height = std::max(height, page.view->frame().size.height);
    return height + kTitleHeight;
}

/// The pages in order, in rows that are at most that wide or hold one page.
std::vector<WallRow> rowsWithin(const WallRow& pages, CGFloat width)
{
    std::vector<WallRow> rows;
    for (const WallPage& page : pages) {
        if (rows.empty() || widthOf(rows.back()) + page.width() - kGalleryMargin > width)
            rows.emplace_back();
        rows.back().push_back(page);
    }
    return rows;
}

/// As few rows as the maximum width allows, as even as possible.
std::vector<WallRow> evenRows(const WallRow& pages)
{
    constexpr CGFloat kMaximumWidth = 2048, kStep = 8;
    CGFloat width = kMaximumWidth;
    const std::size_t count = rowsWithin(pages, width).size();
    while (width > kStep && rowsWithin(pages, width - kStep).size() == count)
        width -= kStep;
    return rowsWithin(pages, width);
}

/// Adds a row whose top is at `top`. Its pages are widened in equal parts so that it is `width` wide.
void addRow(WallView& wall, const WallRow& row, CGFloat top, CGFloat width)
{
    const CGFloat height = heightOf(row);
    const CGFloat rest = width - widthOf(row);
    CGFloat x = 0;
    for (std::size_t i = 0; i < row.size(); ++i) {
        const auto count = static_cast<CGFloat>(row.size()), number = static_cast<CGFloat>(i);
        const CGFloat pageWidth =
            row[i].width() + std::floor(rest * (number + 1) / count) - std::floor(rest * number / count);
        wall.add(row[i], NSMakeRect(x, top - height, pageWidth, height));
        x += pageWidth - kGalleryMargin;
    }
}

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
    WallRow pages;
    for (const GalleryPage* page : GalleryPage::all())
        pages.push_back({page->title, page->makeView(options)});
    const auto rows = evenRows(pages);
    NSSize size{0, kGalleryMargin};
    for (const WallRow& row : rows) {
        size.width = std::max(size.width, widthOf(row));
        size.height += heightOf(row) - kGalleryMargin;
    }
    auto wall = make<WallView>(NSRect{NSZeroPoint, size});
    CGFloat top = size.height;
    for (const WallRow& row : rows) {
        addRow(*wall, row, top, size.width);
        top -= heightOf(row) - kGalleryMargin;
    }
    return {kWholeGallery, wall};
}
