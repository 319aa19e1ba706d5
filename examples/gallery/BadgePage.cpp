// Count badges: with growing counts on icons, and the same badge at growing scales.

#include "Page.h"

#include <KorvidAppKit/ZRGraphics.h>
#include <KorvidAppKit/ZRShapes.h>

#include <cmath>

namespace {

constexpr CGFloat kIconSide = 64;
constexpr CGFloat kIconRadius = 14;
constexpr CGFloat kFontSize = 14;

struct IconWithBadge {
    CGPoint centre; ///< of the icon, on the card
    const char* color;
    const char* badgeColor;
    const char* text;
};
constexpr IconWithBadge kIcons[] = {
    {{72, 296}, "zel-blue-highlight", "zel-status-red", "1"},
    {{188, 296}, "zel-green-highlight", "zel-status-red", "24"},
    {{304, 296}, "zel-orange-highlight", "zel-status-red", "1024"},
};

/// A badge without an icon.
struct ScaledBadge {
    CGPoint centre;
    CGFloat scale;
};
constexpr ScaledBadge kScaled[] = {{{52, 112}, 1}, {{142, 112}, 2}, {{282, 112}, 4}};
/// One below the other, to leave room for a long text of the user's.
constexpr ScaledBadge kStacked[] = {{{188, 208}, 1}, {{188, 152}, 2}, {{188, 62}, 3}};

/// Draws a badge, in pixels, since its shadow has a size in pixels; `scale` is relative to points.
void drawBadge(CGContextRef context, CGPoint centre, const char* color, const NSString& text, CGFloat scale)
{
    const CGFloat pixelsPerPoint = std::abs(CGContextConvertSizeToDeviceSpace(context, {1, 1}).width);
    CGContextSaveGState(context);
    CGContextTranslateCTM(context, centre.x, centre.y);
    CGContextScaleCTM(context, 1 / pixelsPerPoint, 1 / pixelsPerPoint);
    ZRDrawBadge(context, galleryCGColor(color), text, kFontSize, scale * pixelsPerPoint);
    CGContextRestoreGState(context);
}

class BadgesView : public NSView {
public:
    /// `text` replaces all texts of the page unless it is null.
    BadgesView(NSRect frame, NSString text)
        : NSView(frame)
        , _text(std::move(text))
    {
    }

    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        fillGalleryCard(context, bounds());
        for (const IconWithBadge& icon : kIcons) {
            const CGRect square = CGRectMake(
                icon.centre.x - kIconSide / 2, icon.centre.y - kIconSide / 2, kIconSide, kIconSide);
            const auto outline = adopt(ZRCreateRoundedRectPath(kZRCornerAll, square, kIconRadius));
            CGContextSetFillColorWithColor(context, galleryCGColor(icon.color));
            CGContextAddPath(context, outline);
            CGContextFillPath(context);
            drawBadge(context, {CGRectGetMaxX(square) - 4, CGRectGetMaxY(square) - 4}, icon.badgeColor,
                textOr(icon.text), 1);
        }
        for (const ScaledBadge& badge : _text ? kStacked : kScaled)
            drawBadge(context, badge.centre, "zel-blue-highlight", textOr("7"), badge.scale);
    }

protected:
    ~BadgesView() override = default;

private:
    NSString textOr(const char* text) const { return _text ? _text : NSString(text); }

    NSString _text;
};

RetainPtr<NSView> makeBadgePage(const GalleryOptions& options)
{
    auto page = makeGalleryPage();
    page->addSubview(make<BadgesView>(
        NSMakeRect(kGalleryMargin, kGalleryMargin, kGalleryCardSide, kGalleryCardSide), options.text));
    return page;
}

const GalleryPage page{"badges", 80, "Badges",
    "Counts on icons, as wide as they need to be, and one badge at three scales. Show your own with --text "
    "TEXT.",
    makeBadgePage};

} // namespace
