// The QR code of the user's own text, on a light card.

#include "Page.h"
#include "Text.h"

#include <AppKit/NSColor.h>
#include <Foundation/NSFormat.h>
#include <KorvidAppKit/ZRGraphics.h>
#include <KorvidAppKit/ZRQRCodeGenerator.h>
#include <KorvidAppKit/ZRQRView.h>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace {

/// Width of the light margin that QR code readers require, in modules.
constexpr NSInteger kQuietZone = 4;
/// The least width of the card with words.
constexpr CGFloat kFacts = 220;

NSInteger modulesOf(const NSString& text)
{
    NSInteger dim = 0;
    const auto symbol = adopt(ZRQRCodeGenerator::sharedQRCodeGenerator()->copyQRPathFromText(text, &dim));
    return dim;
}

/// The light card around the code, which is as large as fits.
class CodeCard : public NSView {
public:
    explicit CodeCard(const NSString& text)
        : _modules(modulesOf(text))
        , _code(make<ZRQRView>(NSZeroRect))
    {
        // The colours are the same in every appearance: readers expect dark on light.
        _code->setBgColor(NSColor::colorWithCGColor(paletteColor("white")));
        _code->setFgColor(NSColor::colorWithCGColor(paletteColor("zel-blue-bg")));
        _code->setString(text);
        _code->setToolTip(text);
        addSubview(_code);
    }

    void resizeSubviewsWithOldSize(NSSize) override
    {
        // With a whole number of points per module all edges are pixel-aligned. The code's square leaves the
        // card's round corners free.
        const NSSize size = bounds().size;
        const auto card = static_cast<NSInteger>(std::min(size.width, size.height));
        const auto pointsPerModule = std::max<NSInteger>(1, card / (_modules + 2 * kQuietZone));
        const NSInteger symbol = _modules * pointsPerModule;
        const NSInteger inset = (card - symbol) / 2 - static_cast<NSInteger>(kGalleryCardRadius);
        const auto side = static_cast<CGFloat>(symbol + 2 * inset);
        _code->setInset(static_cast<CGFloat>(inset));
        _code->setFrame(
            NSMakeRect(std::floor((size.width - static_cast<CGFloat>(card)) / 2) + kGalleryCardRadius,
                std::floor((size.height - static_cast<CGFloat>(card)) / 2) + kGalleryCardRadius, side, side));
    }

    void drawRect(NSRect) override { fillGalleryCard(ZRGraphics::sharedContext(), bounds(), "white"); }

protected:
    ~CodeCard() override = default;

private:
    const NSInteger _modules; ///< on each side
    const RetainPtr<ZRQRView> _code;
};

/// A card with what the code holds, and its size.
class FactsCard : public NSView {
public:
    explicit FactsCard(NSString text)
        : _text(std::move(text))
    {
        const NSInteger dim = modulesOf(_text);
        _facts = {{"Modules", NSString::stringWithFormat("%d × %d", int(dim), int(dim))},
            {"Version", NSString::stringWithFormat("%d of 40", int((dim - 17) / 4))},
            {"Error correction", "medium or better"},
            {"Bytes of text", NSString::stringWithFormat("%zu", _text.UTF8String().size())}};
    }

    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        fillGalleryCard(context, bounds());
        constexpr CGFloat kIndent = 20;
        const CGFloat width = bounds().size.width - 2 * kIndent;
        CGFloat y = bounds().size.height - 32;
        const auto drawFact = [&](const NSString& name, const std::vector<NSString>& lines) {
            drawLabel(context, name, {kIndent, y}, kCaptionText);
            y -= lineHeight(kCardText) + 1;
            drawLabels(context, lines, {kIndent, y}, kCardText);
            y -= lineHeight(kCardText) * static_cast<CGFloat>(lines.size()) + 16;
        };
        for (const auto& [name, value] : _facts)
            drawFact(name, {value});
        // The text takes what is left.
        const CGFloat room = y - lineHeight(kCardText) - kIndent;
        const auto most = static_cast<std::size_t>(std::max(1.0, 1 + room / lineHeight(kCardText)));
        drawFact("Text", firstLines(wrappedText(_text, kCardText, width), most, width));
    }

protected:
    ~FactsCard() override = default;

private:
    /// At most so many lines; an ellipsis stands for more.
    static std::vector<NSString> firstLines(std::vector<NSString> lines, std::size_t most, CGFloat width)
    {
        if (lines.size() > most) {
            lines.resize(most);
            // Longer than the line for sure, so that the ellipsis is added.
            lines.back() =
                shortenedText(NSString(lines.back().UTF8String() + " and many more words"), kCardText, width);
        }
        return lines;
    }

    const NSString _text;
    std::vector<std::pair<NSString, NSString>> _facts;
};

/// The code's card is a square if the words have room beside it, else it fills the page.
std::vector<NSRect> layOutCode(NSRect inside)
{
    const NSSize size = inside.size;
    const CGFloat side = std::min(size.width, size.height);
    if (size.width < side + kGalleryGap + kFacts)
        return {inside, NSZeroRect};
    return {NSMakeRect(inside.origin.x, inside.origin.y, side, side),
        NSMakeRect(
            inside.origin.x + side + kGalleryGap, inside.origin.y, size.width - side - kGalleryGap, side)};
}

RetainPtr<NSView> makeQRPage(const GalleryOptions& options)
{
    return makeGalleryPage({make<CodeCard>(options.qrText), make<FactsCard>(options.qrText)}, layOutCode);
}

const GalleryPage qrPage{"qr", 10, "QR code",
    "Your own text as a QR code, at the smallest size that holds it. Start the gallery with --qr TEXT to "
    "show another.",
    makeQRPage};

} // namespace
