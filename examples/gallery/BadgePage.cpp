// Count badges: with growing counts on icons, and the same badge at growing scales.

#include "Page.h"
#include "Text.h"

#include <Foundation/NSFormat.h>
#include <KorvidAppKit/ZRGraphics.h>
#include <KorvidAppKit/ZRShapes.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr CGFloat kBadgeFontSize = 14;
// Dark enough for the white text of badges, sheen included.
constexpr const char* kRed = "B8001F";
constexpr const char* kBlue = "0A4A96";

struct IconWithBadge {
    const char* color;
    const char* text;
};
constexpr IconWithBadge kIcons[] = {
    {"zel-blue-highlight", "1"},
    {"zel-green-highlight", "24"},
    {"zel-orange-highlight", "1024"},
};
constexpr CGFloat kScales[] = {1, 2, 4};
/// Smaller, and one below the other, to leave room for a long text of the user's.
constexpr CGFloat kStackedScales[] = {1, 2, 3};
/// The centres of these, in parts of the card's height.
constexpr CGFloat kStacked[] = {0.53, 0.39, 0.16};

/// Draws a badge, in pixels, since its shadow has a size in pixels; `scale` is relative to points.
void drawBadge(CGContextRef context, CGPoint centre, const char* hex, const NSString& text, CGFloat scale)
{
    const CGFloat pixelsPerPoint = std::abs(CGContextConvertSizeToDeviceSpace(context, {1, 1}).width);
    CGContextSaveGState(context);
    CGContextTranslateCTM(context, centre.x, centre.y);
    CGContextScaleCTM(context, 1 / pixelsPerPoint, 1 / pixelsPerPoint);
    ZRDrawBadge(context, ZRGraphics::sharedGraphics()->CGColorFromHex(hex), text, kBadgeFontSize,
        scale * pixelsPerPoint);
    CGContextRestoreGState(context);
}

/// Three icons with badges above three badges.
class BadgesView : public NSView {
public:
    /// `text` replaces all texts of the page unless it is null.
    explicit BadgesView(NSString text)
        : _text(std::move(text))
    {
    }

    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        fillGalleryCard(context, bounds());
        for (std::size_t i = 0; i < std::size(kIcons); ++i)
            drawIcon(context, kIcons[i], place(i, 0.73));
        if (_text)
            drawStack(context);
        else
            drawRow(context);
    }

protected:
    ~BadgesView() override = default;

private:
    /// Lengths relative to those on a card of the usual size, in halves.
    CGFloat zoom() const
    {
        const NSSize size = bounds().size;
        return std::max(1.0, std::round(2 * std::min(size.width, size.height) / kGalleryCardSide) / 2);
    }

    /// The middle of a column, at a part of the height.
    CGPoint place(std::size_t column, CGFloat partOfHeight) const
    {
        const NSSize size = bounds().size;
        return {
            std::round(size.width * (0.19 + 0.3 * CGFloat(column))), std::round(size.height * partOfHeight)};
    }

    void drawIcon(CGContextRef context, const IconWithBadge& icon, CGPoint centre) const
    {
        const CGFloat side = 76 * zoom();
        const CGRect square = CGRectMake(centre.x - side / 2, centre.y - side / 2, side, side);
        const auto outline = adopt(ZRCreateRoundedRectPath(kZRCornerAll, square, side * 0.22));
        CGContextSetFillColorWithColor(context, galleryCGColor(icon.color));
        CGContextAddPath(context, outline);
        CGContextFillPath(context);
        drawBadge(context, {CGRectGetMaxX(square) - 4, CGRectGetMaxY(square) - 4}, kRed,
            _text ? _text : NSString(icon.text), zoom());
    }

    void drawRow(CGContextRef context) const
    {
        for (std::size_t i = 0; i < std::size(kScales); ++i) {
            const CGPoint centre = place(i, 0.3);
            drawBadge(context, centre, kBlue, "7", kScales[i] * zoom());
            drawLabel(context, NSString::stringWithFormat("scale %g", kScales[i] * zoom()), {centre.x, 18},
                kCaptionText, LabelPlace::CentredOnPoint);
        }
    }

    void drawStack(CGContextRef context) const
    {
        for (std::size_t i = 0; i < std::size(kStacked); ++i)
            drawBadge(context, place(1, kStacked[i]), kBlue, _text, kStackedScales[i] * zoom());
    }

    const NSString _text;
};

RetainPtr<NSView> makeBadgePage(const GalleryOptions& options)
{
    return makeGalleryPage({make<BadgesView>(options.text)}, galleryGrid(1, 1));
}

const GalleryPage badgesPage{"badges", 80, "Badges",
    "Counts on icons, as wide as they need to be, and one badge at three scales. Show your own with --text "
    "TEXT.",
    makeBadgePage};

} // namespace
