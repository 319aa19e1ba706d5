// PDF icons, or the pages of the user's own files: in their own colours, tinted, in all fill modes, in
// layers, as buttons that light up while they are pressed or on, and as images.

#include "Page.h"
#include "Text.h"

#include <AppKit/NSButton.h>
#include <AppKit/NSImage.h>
#include <KorvidAppKit/ZRGraphics.h>
#include <KorvidAppKit/ZRPDF.h>
#include <KorvidAppKit/ZRPDFButtonCell.h>
#include <KorvidAppKit/ZRPDFLayer.h>
#include <KorvidAppKit/ZRPDFView.h>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace {

constexpr CGFloat kIconsWidth = 2 * kGalleryCardSide + kGalleryMargin; // of the page within its margins
constexpr CGFloat kIconGap = 12; // around and between the icons of a card
constexpr std::size_t kMostIcons = 24;

/// A page of a document.
struct Icon {
    RetainPtr<ZRPDF> pdf;
    NSInteger page = 1;
};

/// The first pages of the user's documents, or else the gallery's own icons.
std::vector<Icon> iconsOf(const GalleryOptions& options)
{
    std::vector<Icon> icons;
    for (const auto& pdf : options.pdfs) {
        for (NSUInteger page = 1; page <= pdf->numberOfPages() && icons.size() < kMostIcons; ++page)
            icons.push_back({pdf, NSInteger(page)});
    }
    if (options.pdfs.empty()) {
        for (const char* name : {"star", "heart", "bell", "gear", "lock", "cloud", "chart", "mail"}) {
            if (auto pdf = ZRPDF::pdfNamed(name))
                icons.push_back({std::move(pdf)});
        }
    }
    return icons;
}

/// A colour that can be told from light and dark cards alike.
RetainPtr<CGColor> iconColor(const char* hex)
{
    return ZRGraphics::sharedGraphics()->CGColorFromHex(hex);
}

// What shows an icon.

RetainPtr<NSView> makePlainView(const Icon& icon)
{
    auto view = make<ZRPDFView>(NSZeroRect);
    view->setPdf(icon.pdf);
    view->setPdfPageNum(icon.page);
    return view;
}

RetainPtr<NSView> makeTintedView(const Icon& icon)
{
    auto view = make<ZRPDFView>(NSZeroRect);
    view->setPdf(icon.pdf);
    view->setPdfPageNum(icon.page);
    view->setPdfColorPlatform(galleryColor("zel-white-evenstronger")); // follows the appearance
    return view;
}

/// A layer draws for y downward, but has y upward: it is turned.
class IconLayer : public ZRPDFLayer {
public:
    void drawInContext(CGContextRef context) override
    {
        CGContextTranslateCTM(context, 0, bounds().size.height);
        CGContextScaleCTM(context, 1, -1);
        ZRPDFLayer::drawInContext(context);
    }

protected:
    ~IconLayer() override = default;
};

RetainPtr<NSView> makeLayerView(const Icon& icon)
{
    const auto layer = make<IconLayer>();
    layer->setPdf(icon.pdf);
    layer->setPdfPageNum(icon.page);
    layer->setPdfColor(iconColor("00aaaa"));
    auto view = make<NSView>(NSZeroRect);
    view->setLayer(layer);
    view->setWantsLayer(true);
    return view;
}

RetainPtr<NSView> makeButton(const Icon& icon)
{
    const auto cell = make<ZRPDFButtonCell>();
    cell->setPdf(icon.pdf);
    cell->setPdfPageNum(icon.page);
    // No colour for the normal look: pictures are drawn without a window, where a button shows no tint.
    cell->setPdfHighlightColor(iconColor("fb7f15"));
    cell->setButtonType(NSButtonTypePushOnPushOff);
    auto button = make<NSButton>(NSZeroRect);
    button->setCell(cell);
    return button;
}

/// An image of a page, as large as its pixels, on the canvas that was asked for.
class ImageView : public NSView {
public:
    explicit ImageView(const Icon& icon)
        : _icon(icon)
    {
    }

    void resizeSubviewsWithOldSize(NSSize) override
    {
        _image = _icon.pdf->rasterizedNSImageForPage(_icon.page, bounds().size);
    }

    void drawRect(NSRect) override
    {
        if (!_image)
            return;
        // It covers the view: of a page with another shape, the middle is shown.
        const NSSize room = bounds().size, size = _image->size();
        _image->drawInRect(NSMakeRect(std::floor((room.width - size.width) / 2),
            std::floor((room.height - size.height) / 2), size.width, size.height));
        CGContextRef context = ZRGraphics::sharedContext();
        CGContextSetStrokeColorWithColor(context, galleryCGColor("zel-hairline-solid"));
        CGContextStrokeRectWithWidth(context, NSInsetRect(bounds(), 0.5, 0.5), 1);
    }

protected:
    ~ImageView() override = default;

private:
    const Icon _icon;
    RetainPtr<NSImage> _image;
};

RetainPtr<NSView> makeImageView(const Icon& icon)
{
    return make<ImageView>(icon);
}

/// A view in one of the fill modes, with a hairline around it.
class FillModeView : public ZRPDFView {
public:
    FillModeView(const Icon& icon, std::int32_t mode)
        : ZRPDFView(NSZeroRect)
    {
        setPdf(icon.pdf);
        setPdfPageNum(icon.page);
        setFillMode(mode);
    }

    void drawRect(NSRect dirtyRect) override
    {
        ZRPDFView::drawRect(dirtyRect);
        CGContextRef context = ZRGraphics::sharedContext();
        CGContextSetStrokeColorWithColor(context, galleryCGColor("zel-hairline-solid"));
        CGContextStrokeRectWithWidth(context, NSInsetRect(bounds(), 0.5, 0.5), 1);
    }

protected:
    ~FillModeView() override = default;
};

// Cards.

/// The number of columns in which that many equal squares are largest.
std::size_t columnsFor(std::size_t count, NSSize room)
{
    const auto sideWith = [&](std::size_t columns) {
        const std::size_t rows = (count + columns - 1) / columns;
        return std::min((room.width + kIconGap) / CGFloat(columns), (room.height + kIconGap) / CGFloat(rows));
    };
    std::size_t best = 1;
    for (std::size_t columns = 2; columns <= count; ++columns) {
        if (sideWith(columns) > sideWith(best))
            best = columns;
    }
    return best;
}

/// A card with a caption, above which its views fill the room: as squares, or as tall columns.
class IconsCard : public NSView {
public:
    enum class Shape { Squares, Columns };

    IconsCard(NSString caption, Shape shape, std::vector<RetainPtr<NSView>> views)
        : _caption(std::move(caption))
        , _shape(shape)
    {
        for (auto& view : views)
            addSubview(std::move(view));
    }

    void resizeSubviewsWithOldSize(NSSize) override
    {
        const std::size_t count = subviews().size();
        NSRect room = NSInsetRect(aboveCaption(bounds()), kIconGap, 0);
        room.size.height -= kIconGap;
        if (count == 0 || room.size.width <= 0 || room.size.height <= 0)
            return;
        const std::size_t columns = _shape == Shape::Columns ? count : columnsFor(count, room.size);
        const auto cells = galleryGrid(columns, count, kIconGap)(room);
        for (std::size_t i = 0; i < count; ++i)
            subviews()[i]->setFrame(_shape == Shape::Columns ? cells[i] : squareIn(cells[i]));
    }

    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        fillGalleryCard(context, bounds());
        drawCaption(context, bounds(), _caption);
    }

protected:
    ~IconsCard() override = default;

private:
    /// The largest square of whole points in the middle.
    static NSRect squareIn(NSRect cell)
    {
        const CGFloat side = std::floor(std::min(cell.size.width, cell.size.height));
        return NSMakeRect(
            std::floor(NSMidX(cell) - side / 2), std::floor(NSMidY(cell) - side / 2), side, side);
    }

    const NSString _caption;
    const Shape _shape;
};

RetainPtr<NSView> makeCard(const char* caption, const std::vector<Icon>& icons,
    RetainPtr<NSView> (*makeView)(const Icon& icon), std::size_t most = kMostIcons)
{
    std::vector<RetainPtr<NSView>> views;
    for (std::size_t i = 0; i < std::min(most, icons.size()); ++i)
        views.push_back(makeView(icons[i]));
    return make<IconsCard>(caption, IconsCard::Shape::Squares, std::move(views));
}

RetainPtr<NSView> makeFillModesCard(const std::vector<Icon>& icons)
{
    std::vector<RetainPtr<NSView>> views;
    if (!icons.empty()) {
        for (const auto mode : {ZRPDFFillModeFit, ZRPDFFillModeFill, ZRPDFFillModeNatural})
            views.emplace_back(make<FillModeView>(icons.front(), mode));
    }
    return make<IconsCard>("Views: fit, fill, natural size", IconsCard::Shape::Columns, std::move(views));
}

RetainPtr<NSView> makePDFPage(const GalleryOptions& options)
{
    const auto icons = iconsOf(options);
    return makeGalleryPage({makeCard("Views: own colours", icons, makePlainView),
                               makeCard("Views: tinted", icons, makeTintedView), makeFillModesCard(icons),
                               makeCard("Layers: tinted", icons, makeLayerView),
                               makeCard("Buttons: press one", icons, makeButton),
                               makeCard("Images, a pixel per point", icons, makeImageView, 6)},
        galleryGrid(3, 6), {kIconsWidth, kGalleryCardSide}, {512, kGalleryCardSide});
}

const GalleryPage pdfPage{"pdf", 88, "PDF icons",
    "Pages of PDF files in their own colours, tinted, as buttons and as images. Press a button to light it "
    "up. "
    "Show your own files with --pdf FILE.",
    makePDFPage};

} // namespace
