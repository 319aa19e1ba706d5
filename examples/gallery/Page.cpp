#include "Page.h"

#include <KorvidAppKit/ZRGraphics.h>

#include <algorithm>

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

} // namespace

GalleryPage::GalleryPage(
    const char* pageName, int pageOrder, RetainPtr<NSView> (*make)(const GalleryOptions& options))
    : name(pageName)
    , order(pageOrder)
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
    return make<NSView>(
        NSMakeRect(0, 0, inside.width + 2 * kGalleryMargin, inside.height + 2 * kGalleryMargin));
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

void clipToGalleryCard(CGContextRef context, NSRect card)
{
    addCard(context, card);
    CGContextClip(context);
}
