// Capsules of all types, sizes and scripts. A click switches one between outlined and filled.

#include "Page.h"

#include <AppKit/NSColor.h>
#include <AppKit/NSEvent.h>
#include <KorvidAppKit/ZRCapsuleView.h>
#include <KorvidAppKit/ZRGraphics.h>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace {

constexpr CGFloat kCapsulesMargin = 16;
constexpr CGFloat kCapsuleGap = 10;

/// What a capsule shows.
struct Tag {
    NSString text;
    double fontSize;
    const char* lineColor; ///< of outline and text
    const char* fillColor; ///< on which its text, dark or white, is readable
    std::int32_t type;
};

/// A capsule that a click switches between outlined and filled.
class ClickedCapsule : public ZRCapsuleView {
public:
    explicit ClickedCapsule(const Tag& tag)
        : _tag(tag)
    {
        setString(tag.text);
        setToolTip(tag.text);
        setType(tag.type);
    }

    const Tag& tag() const { return _tag; }

    void mouseDown(NSEvent*) override
    {
        setType(
            drawType() == kZRCapsuleDrawTypeOutline ? kZRCapsuleDrawTypeFilled : kZRCapsuleDrawTypeOutline);
    }

    /// Makes the capsule as large as its text needs it at `zoom` times its font size, on whole points, but at
    /// most that wide: then the text is shortened, and the result is false.
    bool fit(double zoom, CGFloat maximumWidth)
    {
        setFontSize(_tag.fontSize * zoom);
        setString(_tag.text.length() > 0 ? _tag.text : NSString("n")); // without text it has no size
        NSSize size = intrinsicContentSize();
        const bool fits = size.width <= maximumWidth;
        for (NSUInteger length = _tag.text.length(); size.width > maximumWidth && length > 1; --length) {
            setString(NSString(_tag.text.substringWithRange({0, length - 1}).UTF8String() + "…"));
            size = intrinsicContentSize();
        }
        if (_tag.text.length() == 0)
            setString("");
        setFrameSize({std::ceil(size.width), std::ceil(size.height)});
        // Of the size, 3/8 are below the baseline, and the rounding is divided above and below.
        _baseline = frame().size.height / 2 - size.height / 8;
        return fits;
    }

    /// From the bottom of the frame.
    CGFloat baseline() const { return _baseline; }

protected:
    ~ClickedCapsule() override = default;

private:
    void setType(std::int32_t type)
    {
        setDrawType(type);
        // Of neither type, the capsule is a red rectangle.
        setColor(galleryColor(type == kZRCapsuleDrawTypeFilled ? _tag.fillColor
                : type == kZRCapsuleDrawTypeOutline            ? _tag.lineColor
                                                               : "black"));
    }

    const Tag _tag;
    CGFloat _baseline = 0;
};

/// A card with capsules in rows, as large as they fit on it.
class CapsulesCard : public NSView {
public:
    /// Each group starts a row.
    explicit CapsulesCard(const std::vector<std::vector<Tag>>& groups)
    {
        for (const auto& group : groups) {
            _groups.emplace_back();
            for (const Tag& tag : group) {
                auto capsule = make<ClickedCapsule>(tag);
                _groups.back().push_back(capsule.get());
                addSubview(std::move(capsule));
            }
        }
    }

    /// The height that the card needs at that width.
    CGFloat minimumHeight(CGFloat width)
    {
        arrange(width, 1);
        return neededHeight();
    }

    void resizeSubviewsWithOldSize(NSSize) override
    {
        // The largest size at which each group takes one row.
        constexpr int kMaximumZoom = 20, kMinimumZoom = 8; // in eighths
        for (int eighths = kMaximumZoom; eighths >= kMinimumZoom; --eighths) {
            const bool isWhole = arrange(bounds().size.width, eighths / 8.0);
            if (isWhole && _rows.size() == _groups.size() && neededHeight() <= bounds().size.height)
                break;
        }
        placeRows();
    }

    void drawRect(NSRect) override { fillGalleryCard(ZRGraphics::sharedContext(), bounds()); }

protected:
    ~CapsulesCard() override = default;

private:
    /// Capsules on one baseline.
    struct Row {
        std::vector<ClickedCapsule*> capsules;
        CGFloat above = 0, below = 0; ///< the largest extents from the baseline

        CGFloat height() const { return above + below; }
    };

    CGFloat neededHeight() const
    {
        CGFloat height = 2 * kCapsulesMargin - kCapsuleGap;
        for (const Row& row : _rows)
            height += row.height() + kCapsuleGap;
        return height;
    }

    /// Divides the capsules into rows and places them from left to right. False when a text is shortened.
    bool arrange(CGFloat width, double zoom)
    {
        const CGFloat right = width - kCapsulesMargin;
        bool isWhole = true;
        _rows.clear();
        for (const auto& group : _groups) {
            CGFloat x = right;
            for (ClickedCapsule* capsule : group) {
                isWhole &= capsule->fit(zoom, right - kCapsulesMargin);
                const NSSize size = capsule->frame().size;
                if (capsule == group.front() || x + size.width > right) {
                    _rows.emplace_back();
                    x = kCapsulesMargin;
                }
                capsule->setFrameOrigin({x, 0});
                x += size.width + kCapsuleGap;
                Row& row = _rows.back();
                row.capsules.push_back(capsule);
                row.below = std::max(row.below, std::round(capsule->baseline()));
                row.above = std::max(row.above, size.height - std::round(capsule->baseline()));
            }
        }
        return isWhole;
    }

    /// Spreads the rows over the height of the card.
    void placeRows()
    {
        const CGFloat rest = bounds().size.height - neededHeight();
        const CGFloat gap = kCapsuleGap + std::max(0.0, std::floor(rest / CGFloat(_rows.size() + 1)));
        CGFloat top = bounds().size.height - kCapsulesMargin - (gap - kCapsuleGap);
        for (const Row& row : _rows) {
            const CGFloat baseline = top - row.above;
            for (ClickedCapsule* capsule : row.capsules)
                capsule->setFrameOrigin(
                    {capsule->frame().origin.x, baseline - std::round(capsule->baseline())});
            top -= row.height() + gap;
        }
    }

    std::vector<std::vector<ClickedCapsule*>> _groups; ///< among the subviews
    std::vector<Row> _rows;
};

/// The capsules of all types and colours. A text of the user's replaces each of theirs.
std::vector<std::vector<Tag>> makeTypesAndColors(const GalleryOptions& options)
{
    const auto textOr = [&](const char* text) { return options.text ? options.text : NSString(text); };
    const auto inBothTypes = [&](auto make) {
        return std::vector{make(kZRCapsuleDrawTypeOutline), make(kZRCapsuleDrawTypeFilled)};
    };
    std::vector<std::vector<Tag>> groups{{
        {textOr("outline"), 13, "zel-white-evenstronger", "zel-white-evenstronger",
            kZRCapsuleDrawTypeOutline},
        {textOr("filled"), 13, "zel-white-evenstronger", "zel-white-evenstronger", kZRCapsuleDrawTypeFilled},
        {textOr("neither"), 13, "zel-white-evenstronger", "zel-white-evenstronger", 0},
        {"", 13, "zel-blue-highlight", "zel-blue-highlight", kZRCapsuleDrawTypeOutline},
        {"", 13, "zel-blue-highlight", "zel-blue-highlight", kZRCapsuleDrawTypeFilled},
    }};
    const auto colors = inBothTypes([&](std::int32_t type) {
        return std::vector<Tag>{
            {textOr("blocked"), 9, "gallery-red", "gallery-red-fill", type},
            {textOr("in review"), 9, "zel-orange-highlight", "gallery-orange-fill", type},
            {textOr("waiting"), 9, "zel-warning", "gallery-yellow-fill", type},
            {textOr("passed"), 9, "zel-green-highlight", "gallery-green-fill", type},
            {textOr("draft"), 9, "zel-blue-highlight", "gallery-blue-fill", type},
            {textOr("archived"), 9, "zel-menu-fg", "gallery-gray-fill", type},
        };
    });
    groups.insert(groups.end(), colors.begin(), colors.end());
    return groups;
}

/// Capsules in several scripts and sizes.
std::vector<std::vector<Tag>> makeScriptsAndSizes(const GalleryOptions& options)
{
    const auto script = [](const char* text) {
        return Tag{text, 11, "zel-blue-highlight", "gallery-blue-fill", kZRCapsuleDrawTypeOutline};
    };
    const auto size = [&](double fontSize) {
        return Tag{options.text ? options.text : NSString("42 %"), fontSize, "zel-green-highlight",
            "gallery-green-fill", kZRCapsuleDrawTypeFilled};
    };
    const Tag status{options.text ? options.text : NSString("a longer status"), 11, "zel-orange-highlight",
        "gallery-orange-fill", kZRCapsuleDrawTypeOutline};
    return {{script("Größe"), script("Ελληνικά"), script("שלום עולם"), script("مرحبا")},
        {script("你好，世界"), script("3 новых"), status}, {size(8), size(11), size(14), size(22)}};
}

/// Two cards, the one above the other, in proportion to the heights that they need.
GalleryLayout makeLayout(CGFloat firstHeight, CGFloat secondHeight)
{
    return [=](NSRect inside) {
        const CGFloat room = inside.size.height - kGalleryGap;
        NSRect upper = inside, lower = inside;
        upper.size.height = std::round(room * firstHeight / (firstHeight + secondHeight));
        lower.size.height = room - upper.size.height;
        upper.origin.y = NSMaxY(lower) + kGalleryGap;
        return std::vector<NSRect>{upper, lower};
    };
}

RetainPtr<NSView> makeCapsulesPage(const GalleryOptions& options)
{
    const auto first = make<CapsulesCard>(makeTypesAndColors(options));
    const auto second = make<CapsulesCard>(makeScriptsAndSizes(options));
    const CGFloat firstHeight = first->minimumHeight(kGalleryCardSide);
    const CGFloat secondHeight = second->minimumHeight(kGalleryCardSide);
    const NSSize inside{
        kGalleryCardSide, std::max(kGalleryCardSide, firstHeight + kGalleryGap + secondHeight)};
    return makeGalleryPage({first, second}, makeLayout(firstHeight, secondHeight), inside, inside);
}

const GalleryPage capsulesPage{"capsules", 85, "Capsules",
    "Tags in all types, colours, scripts and sizes. Click one to fill or to empty it. Show your own text "
    "with --text TEXT.",
    makeCapsulesPage};

} // namespace
