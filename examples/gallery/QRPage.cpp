// The QR code of the user's own text, on a light card.

#include "Page.h"

#include <AppKit/NSColor.h>
#include <KorvidAppKit/ZRGraphics.h>
#include <KorvidAppKit/ZRQRCodeGenerator.h>
#include <KorvidAppKit/ZRQRView.h>

#include <algorithm>

namespace {

/// Side of the card in points: the largest symbol, 177 modules, fits with two points each.
constexpr NSInteger kCard = 376;
/// Width of the light margin that QR code readers require, in modules.
constexpr NSInteger kQuietZone = 4;

/// The light card around the code.
class CardView : public NSView {
public:
    using NSView::NSView;

    void drawRect(NSRect) override { fillGalleryCard(ZRGraphics::sharedContext(), bounds(), "white"); }

protected:
    ~CardView() override = default;
};

RetainPtr<NSView> makeQRPage(const GalleryOptions& options)
{
    NSInteger dim = 0;
    const auto symbol =
        adopt(ZRQRCodeGenerator::sharedQRCodeGenerator()->copyQRPathFromText(options.qrText, &dim));

    // With a whole number of points per module all edges are pixel-aligned. The code's square leaves the
    // card's round corners free. The colours are the same in every appearance: readers expect dark on light.
    const auto pointsPerModule = std::max<NSInteger>(1, kCard / (dim + 2 * kQuietZone));
    const NSInteger inset = (kCard - dim * pointsPerModule) / 2 - static_cast<NSInteger>(kGalleryCardRadius);
    const auto side = static_cast<CGFloat>(dim * pointsPerModule + 2 * inset);

    auto code = make<ZRQRView>(NSMakeRect(kGalleryCardRadius, kGalleryCardRadius, side, side));
    code->setInset(static_cast<CGFloat>(inset));
    code->setBgColor(NSColor::colorWithCGColor(paletteColor("white")));
    code->setFgColor(NSColor::colorWithCGColor(paletteColor("zel-blue-bg")));
    code->setString(options.qrText);
    code->setToolTip(options.qrText);

    auto card = make<CardView>(NSMakeRect(kGalleryMargin, kGalleryMargin, kCard, kCard));
    card->addSubview(code);
    auto page = makeGalleryPage({kCard, kCard});
    page->addSubview(card);
    return page;
}

const GalleryPage page{"qr", 10, "QR code",
    "Your own text as a QR code, at the smallest size that holds it. Start the gallery with --qr TEXT to "
    "show another.",
    makeQRPage};

} // namespace
