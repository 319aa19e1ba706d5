// The palette of named colours, in the order of its table: a swatch for each, with name and hex string as
// tool tip. A colour that the application's catalogue has too is shown in its variant for the appearance.

#include "Captioned.h"

#include <KorvidAppKit/ZRGraphics.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>
#include <utility>

namespace {

/// Columns of the plain colours, which take one row, and of those of the theme.
constexpr std::size_t kPlainColumns = 9;
constexpr std::size_t kThemeColumns = 7;
constexpr CGFloat kSwatchGap = 8;
constexpr CGFloat kGroupGap = 16;
/// Of the page within its margins: plain swatches of 48 x 48, and those of the theme of 64 x 72.
constexpr NSSize kSwatchesSize{9 * 48 + 8 * kSwatchGap, 48 + kGroupGap + 4 * 72 + 3 * kSwatchGap};

/// Side of the squares behind translucent colours.
constexpr CGFloat kChecker = 8;

/// Fills a rectangle with a checkerboard.
void drawCheckers(CGContextRef context, NSRect rect)
{
    CGContextSetFillColorWithColor(context, paletteColor("zel-mid-gray"));
    CGContextFillRect(context, rect);
    CGContextSetFillColorWithColor(context, paletteColor("zel-cool-gray-mid"));
    const auto columns = static_cast<int>(std::ceil(rect.size.width / kChecker));
    const auto rows = static_cast<int>(std::ceil(rect.size.height / kChecker));
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
    explicit SwatchView(const ZRNamedColor& color)
        : _name(color.name)
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

/// The number of the palette's colours before those of the theme.
std::size_t plainCount()
{
    const auto colors = ZRGraphics::builtInColors();
    const auto firstOfTheme = std::find_if(colors.begin(), colors.end(),
        [](const ZRNamedColor& color) { return std::string_view(color.name).starts_with("zel-"); });
    return static_cast<std::size_t>(firstOfTheme - colors.begin());
}

std::vector<NSRect> layOutSwatches(NSRect inside)
{
    const std::size_t count = ZRGraphics::builtInColors().size();
    const CGFloat plainHeight = std::floor(inside.size.height * 48 / kSwatchesSize.height);
    const NSRect plain =
        NSMakeRect(inside.origin.x, NSMaxY(inside) - plainHeight, inside.size.width, plainHeight);
    NSRect theme = inside;
    theme.size.height -= plainHeight + kGroupGap;
    auto frames = galleryGrid(kPlainColumns, plainCount(), kSwatchGap)(plain);
    const auto rest = galleryGrid(kThemeColumns, count - plainCount(), kSwatchGap)(theme);
    frames.insert(frames.end(), rest.begin(), rest.end());
    return frames;
}

RetainPtr<NSView> makeColorsPage(const GalleryOptions&)
{
    std::vector<RetainPtr<NSView>> swatches;
    for (const ZRNamedColor& color : ZRGraphics::builtInColors()) {
        const std::size_t lines = swatches.size() < plainCount() ? 1 : 2;
        swatches.emplace_back(make<CaptionedView>(make<SwatchView>(color), color.name, lines));
    }
    return makeGalleryPage(std::move(swatches), layOutSwatches, kSwatchesSize, kSwatchesSize);
}

const GalleryPage colorsPage{"colors", 20, "Colours",
    "The palette of named colours; a checkerboard shows through translucent ones. The application's "
    "catalogue has a light and a dark variant of some. Rest the pointer on a colour for its name and its hex "
    "string.",
    makeColorsPage};

} // namespace
