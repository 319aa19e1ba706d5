// Capsules of all types, sizes and scripts. A click switches one between outlined and filled.

#include "Page.h"

#include <AppKit/NSColor.h>
#include <AppKit/NSEvent.h>
#include <KorvidAppKit/ZRCapsuleView.h>
#include <KorvidAppKit/ZRGraphics.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr CGFloat kCardMargin = 20;
constexpr CGFloat kGap = 10;

/// A capsule that a click switches between outlined and filled.
class ClickedCapsule : public ZRCapsuleView {
public:
    using ZRCapsuleView::ZRCapsuleView;

    void mouseDown(NSEvent*) override
    {
        setDrawType(
            drawType() == kZRCapsuleDrawTypeOutline ? kZRCapsuleDrawTypeFilled : kZRCapsuleDrawTypeOutline);
    }

protected:
    ~ClickedCapsule() override = default;
};

/// A card with capsules in rows.
class CapsulesCard : public NSView {
public:
    using NSView::NSView;

    /// Adds a capsule of its intrinsic size to the right of the last one, clipped at the card's margin. One
    /// without text, whose intrinsic size is zero, gets the size of one with a letter.
    void add(const NSString& text, double fontSize, const char* color, std::int32_t type)
    {
        auto capsule = make<ClickedCapsule>();
        capsule->setString(text);
        capsule->setFontSize(fontSize);
        capsule->setColor(galleryColor(color));
        capsule->setDrawType(type);
        NSSize size = capsule->intrinsicContentSize();
        if (size.height == 0) {
            capsule->setString("n");
            size = capsule->intrinsicContentSize();
            capsule->setString(text);
        }
        const CGFloat right = kGalleryCardSide - kCardMargin;
        if (_rows.empty() || (_x > kCardMargin && _x + size.width > right))
            endRow();
        capsule->setFrame(NSMakeRect(_x, 0, std::min(size.width, right - _x), size.height));
        capsule->setToolTip(text);
        addSubview(capsule);
        _x += size.width + kGap;
        Row& row = _rows.back();
        row.capsules.push_back(capsule);
        row.height = std::max(row.height, size.height);
    }

    void endRow()
    {
        _rows.emplace_back();
        _x = kCardMargin;
    }

    /// Spreads the rows over the height of the card, which grows if they do not fit.
    void layOut()
    {
        CGFloat height = 0;
        for (const Row& row : _rows)
            height += row.height;
        const auto gaps = static_cast<CGFloat>(_rows.size() - 1);
        const CGFloat room = kGalleryCardSide - 2 * kCardMargin;
        const CGFloat gap = std::max(kGap, std::floor((room - height) / gaps));
        setFrameSize({kGalleryCardSide, std::max(room, std::ceil(height + gaps * gap)) + 2 * kCardMargin});
        CGFloat top = frame().size.height - kCardMargin;
        for (const Row& row : _rows) {
            for (NSView* capsule : row.capsules)
                capsule->setFrameOrigin({capsule->frame().origin.x, top - capsule->frame().size.height});
            top -= row.height + gap;
        }
    }

    void drawRect(NSRect) override { fillGalleryCard(ZRGraphics::sharedContext(), bounds()); }

protected:
    ~CapsulesCard() override = default;

private:
    struct Row {
        std::vector<NSView*> capsules; ///< among the subviews
        CGFloat height = 0;
    };

    std::vector<Row> _rows;
    CGFloat _x = 0;
};

/// The user's own text, else `text`.
NSString textOr(const GalleryOptions& options, const char* text)
{
    return options.text ? options.text : NSString(text);
}

void addTypes(CapsulesCard& card, const GalleryOptions& options)
{
    card.add(textOr(options, "outline"), 13, "zel-white-evenstronger", kZRCapsuleDrawTypeOutline);
    card.add(textOr(options, "filled"), 13, "zel-white-evenstronger", kZRCapsuleDrawTypeFilled);
    card.add(textOr(options, "neither"), 13, "zel-white-evenstronger", 0);
    card.add("", 13, "zel-blue-highlight", kZRCapsuleDrawTypeOutline);
    card.add("", 13, "zel-blue-highlight", kZRCapsuleDrawTypeFilled);
    card.endRow();
}

void addColors(CapsulesCard& card, const GalleryOptions& options)
{
    struct Tag {
        const char* text;
        const char* color;
    };
    static constexpr Tag kTags[] = {{"blocked", "zel-status-red"}, {"in review", "zel-orange-highlight"},
        {"waiting", "zel-warning"}, {"passed", "zel-green-highlight"}, {"draft", "zel-blue-highlight"},
        {"archived", "zel-cool-gray-mid"}};
    for (const std::int32_t type : {kZRCapsuleDrawTypeOutline, kZRCapsuleDrawTypeFilled}) {
        for (const Tag& tag : kTags)
            card.add(textOr(options, tag.text), 9, tag.color, type);
        card.endRow();
    }
}

void addScripts(CapsulesCard& card)
{
    static constexpr const char* kTexts[] = {
        "Größe", "Ελληνικά", "שלום עולם", "مرحبا", "你好，世界", "🎉 3 новых"};
    for (const char* text : kTexts)
        card.add(text, 11, "zel-blue-highlight", kZRCapsuleDrawTypeOutline);
    card.endRow();
}

void addSizes(CapsulesCard& card, const GalleryOptions& options)
{
    for (const double size : {7.0, 9.0, 14.0, 24.0})
        card.add(textOr(options, "42 %"), size, "zel-green-highlight", kZRCapsuleDrawTypeFilled);
    card.endRow();
    card.add(textOr(options, "a status that has more to say than there is room for in its row"), 11,
        "zel-orange-highlight", kZRCapsuleDrawTypeOutline);
}

RetainPtr<NSView> makeCapsulesPage(const GalleryOptions& options)
{
    auto card = make<CapsulesCard>(NSRect{{kGalleryMargin, kGalleryMargin}, {}});
    addTypes(*card, options);
    addColors(*card, options);
    addScripts(*card);
    addSizes(*card, options);
    card->layOut();
    auto page = makeGalleryPage(card->frame().size);
    page->addSubview(card);
    return page;
}

const GalleryPage page{"capsules", 85, "Capsules",
    "Tags in all types, colours, scripts and sizes. Click one to fill or to empty it. Show your own text "
    "with --text TEXT.",
    makeCapsulesPage};

} // namespace
