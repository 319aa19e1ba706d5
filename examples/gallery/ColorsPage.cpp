// The palette of named colours, in the order of its table: a swatch for each, with name and hex string as
// tool tip. A colour that the application's catalogue has too is shown in its variant for the appearance.

#include "Page.h"

#include <KorvidAppKit/ZRGraphics.h>

#include <algorithm>
#include <span>
#include <string>
#include <string_view>

namespace {

/// The layout of one group of swatches.
struct Grid {
    NSInteger columns;
    NSSize swatch;
};

// Nine plain colours in one row, the 28 of the theme in four. Both grids are 496 points wide; with the gap
// between them they are 376 points high, like a card.
constexpr Grid kPlainColors{9, {48, 48}};
constexpr Grid kThemeColors{7, {64, 72}};
constexpr CGFloat kGap = 8;
constexpr CGFloat kGroupGap = 16;
constexpr CGFloat kWidth = 9 * 48 + 8 * kGap;
constexpr CGFloat kHeight = 48 + kGroupGap + 4 * 72 + 3 * kGap;
static_assert(kWidth == 7 * 64 + 6 * kGap);

/// Side of the squares behind translucent colours.
constexpr CGFloat kChecker = 8;

/// Fills a rectangle, whose sides are multiples of `kChecker`, with a checkerboard.
void drawCheckers(CGContextRef context, NSRect rect)
{
    CGContextSetFillColorWithColor(context, paletteColor("zel-mid-gray"));
    CGContextFillRect(context, rect);
    CGContextSetFillColorWithColor(context, paletteColor("zel-cool-gray-mid"));
    const auto columns = static_cast<int>(rect.size.width / kChecker);
    const auto rows = static_cast<int>(rect.size.height / kChecker);
    for (int row = 0; row < rows; ++row) {
        for (int column = row % 2; column < columns; column += 2) {
            const CGFloat x = rect.origin.x + column * kChecker;
            const CGFloat y = rect.origin.y + row * kChecker;
            CGContextFillRect(context, NSMakeRect(x, y, kChecker, kChecker));
        }
    }
}

/// One colour in a rounded square, over a checkerboard where it is translucent.
class SwatchView : public NSView {
public:
    SwatchView(NSRect frame, const ZRNamedColor& color)
        : NSView(frame)
        , _name(color.name)
    {
        setToolTip(NSString(std::string(color.name) + " #" + color.hex));
    }

    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        const NSRect rect = bounds();
        CGContextSaveGState(context);
        clipToGalleryCard(context, rect);
        const CGColorRef color = galleryCGColor(_name);
        if (CGColorGetAlpha(color) < 1)
            drawCheckers(context, rect);
        CGContextSetFillColorWithColor(context, color);
        CGContextFillRect(context, rect);
        CGContextRestoreGState(context);

        // A hairline inside the edge, so that every swatch stands out from the ground.
        const auto inner = adopt(CGPathCreateWithRoundedRect(
            NSInsetRect(rect, 0.5, 0.5), kGalleryCardRadius - 0.5, kGalleryCardRadius - 0.5, nullptr));
        CGContextAddPath(context, inner);
        CGContextSetLineWidth(context, 1);
        CGContextSetStrokeColorWithColor(context, galleryCGColor("zel-hairline"));
        CGContextStrokePath(context);
    }

protected:
    ~SwatchView() override = default;

private:
    const char* _name; ///< of the palette, which lives as long as the process
};

/// Lays out swatches from the left, row below row, the first row below `top`.
void addSwatches(NSView* page, std::span<const ZRNamedColor> colors, const Grid& grid, CGFloat top)
{
    NSInteger column = 0;
    CGFloat x = kGalleryMargin;
    CGFloat y = top - grid.swatch.height;
    for (const auto& color : colors) {
        page->addSubview(make<SwatchView>(NSRect{{x, y}, grid.swatch}, color));
        x += grid.swatch.width + kGap;
        if (++column == grid.columns) {
            column = 0;
            x = kGalleryMargin;
            y -= grid.swatch.height + kGap;
        }
    }
}

RetainPtr<NSView> makeColorsPage(const GalleryOptions&)
{
    const auto colors = ZRGraphics::builtInColors();
    const auto firstOfTheme = std::find_if(colors.begin(), colors.end(),
        [](const ZRNamedColor& color) { return std::string_view(color.name).starts_with("zel-"); });
    const auto plainCount = static_cast<std::size_t>(firstOfTheme - colors.begin());

    auto page = makeGalleryPage({kWidth, kHeight});
    const CGFloat top = kGalleryMargin + kHeight;
    addSwatches(page, colors.first(plainCount), kPlainColors, top);
    addSwatches(
        page.get(), colors.subspan(plainCount), kThemeColors, top - kPlainColors.swatch.height - kGroupGap);
    return page;
}

const GalleryPage page{"colors", 20, "Colours",
    "The palette of named colours; a checkerboard shows through translucent ones. The application's "
    "catalogue has a light and a dark variant of some. Rest the pointer on a colour for its name and its hex "
    "string.",
    makeColorsPage};

} // namespace
