#include "Page.h"

#include "Text.h"

#include <KorvidAppKit/ZRGraphics.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

std::vector<const GalleryPage*>& pages()
{
    static std::vector<const GalleryPage*> list;
    return list;
}

void addCard(CGContextRef context, NSRect card)
{
    const auto outline =
        adopt(CGPathCreateWithRoundedRect(card, kGalleryCardRadius, kGalleryCardRadius, nullptr));
    CGContextAddPath(context, outline);
}

NSSize withMargins(NSSize inside)
{
    return {inside.width + 2 * kGalleryMargin, inside.height + 2 * kGalleryMargin};
}

/// A page that lays its cards out.
class CardsPage : public NSView {
public:
    CardsPage(std::vector<RetainPtr<NSView>> cards, GalleryLayout layout, NSSize inside, NSSize minimumInside)
        : NSView(NSRect{NSZeroPoint, withMargins(inside)})
        , _layout(std::move(layout))
        , _minimumSize(withMargins(minimumInside))
    {
        setAutoresizingMask(NSViewWidthSizable | NSViewHeightSizable);
        for (auto& card : cards)
            addSubview(std::move(card));
        CardsPage::resizeSubviewsWithOldSize(bounds().size);
    }

    NSSize intrinsicContentSize() const override { return _minimumSize; }

    void resizeSubviewsWithOldSize(NSSize) override
    {
        const auto frames = _layout(NSInsetRect(bounds(), kGalleryMargin, kGalleryMargin));
        for (std::size_t i = 0; i < frames.size(); ++i) {
            subviews()[i]->setFrame(frames[i]);
            subviews()[i]->setHidden(NSIsEmptyRect(frames[i]));
        }
    }

protected:
    ~CardsPage() override = default;

private:
    const GalleryLayout _layout;
    const NSSize _minimumSize;
};

} // namespace

GalleryPage::GalleryPage(const char* pageName, int pageOrder, const char* pageTitle, const char* pageWords,
    RetainPtr<NSView> (*make)(const GalleryOptions& options))
    : name(pageName)
    , order(pageOrder)
    , title(pageTitle)
    , words(pageWords)
    , makeView(make)
{
    pages().push_back(this);
}

std::vector<const GalleryPage*> GalleryPage::all()
{
    auto sorted = pages();
    std::sort(sorted.begin(), sorted.end(), [](const auto* a, const auto* b) { return a->order < b->order; });
    return sorted;
}

RetainPtr<NSView> makeGalleryPage(NSSize inside)
{
    return make<NSView>(NSRect{NSZeroPoint, withMargins(inside)});
}

RetainPtr<NSView> makeGalleryPage(
    std::vector<RetainPtr<NSView>> cards, GalleryLayout layout, NSSize inside, NSSize minimumInside)
{
    return make<CardsPage>(std::move(cards), std::move(layout), inside, minimumInside);
}

GalleryLayout galleryGrid(std::size_t columns, std::size_t count, CGFloat gap)
{
    return [columns, count, gap](NSRect inside) {
        const std::size_t rows = (count + columns - 1) / columns;
        // The edge before the cell of that number, with the gap before it.
        const auto edge = [gap](CGFloat side, std::size_t number, std::size_t cells) {
            return std::round((side + gap) * CGFloat(number) / CGFloat(cells));
        };
        std::vector<NSRect> frames;
        for (std::size_t i = 0; i < count; ++i) {
            const CGFloat left = edge(inside.size.width, i % columns, columns);
            const CGFloat right = edge(inside.size.width, i % columns + 1, columns) - gap;
            const CGFloat top = edge(inside.size.height, i / columns, rows);
            const CGFloat bottom = edge(inside.size.height, i / columns + 1, rows) - gap;
            frames.push_back(
                NSMakeRect(inside.origin.x + left, NSMaxY(inside) - bottom, right - left, bottom - top));
        }
        return frames;
    };
}

RetainPtr<NSColor> galleryColor(const char* name)
{
    auto* graphics = ZRGraphics::sharedGraphics();
    if (auto color = graphics->platformColorNamed(name))
        return color;
    return graphics->platformColorFromHex(graphics->hexForBuiltInColorNamed(name));
}

CGColorRef galleryCGColor(const char* name)
{
    const auto color = ZRGraphics::sharedGraphics()->platformColorNamed(name);
    return color ? color->CGColor() : paletteColor(name);
}

CGColorRef paletteColor(const char* name)
{
    auto* graphics = ZRGraphics::sharedGraphics();
    return graphics->CGColorFromHex(graphics->hexForBuiltInColorNamed(name));
}

void fillGalleryCard(CGContextRef context, NSRect card, const char* color)
{
    CGContextSetFillColorWithColor(context, galleryCGColor(color));
    addCard(context, card);
    CGContextFillPath(context);
}

NSRect aboveCaption(NSRect card)
{
    constexpr CGFloat kHeight = 32;
    return NSMakeRect(
        card.origin.x, card.origin.y + kHeight, card.size.width, std::max(card.size.height - kHeight, 0.0));
}

void drawCaption(CGContextRef context, NSRect card, const NSString& text)
{
    constexpr CGFloat kIndent = 12;
    drawLabel(context, shortenedText(text, kCaptionText, card.size.width - 2 * kIndent),
        {card.origin.x + kIndent, card.origin.y + 11}, kCaptionText);
}

void clipToGalleryCard(CGContextRef context, NSRect card)
{
    addCard(context, card);
    CGContextClip(context);
}
