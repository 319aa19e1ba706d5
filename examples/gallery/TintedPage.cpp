// Images in one colour: a picture with soft edges and holes, as it is and tinted. Each keeps its alpha; a
// translucent tint lets the picture's own colours through.

#include "Icon.h"
#include "Page.h"
#include "Text.h"

#include <KorvidAppKit/ZRAppKitAdditions.h>
#include <KorvidAppKit/ZRGraphics.h>

#include <AppKit/NSImage.h>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace {

/// A picture in the middle of a card, with a caption.
class TintedCard : public NSView {
public:
    TintedCard(NSString caption, RetainPtr<NSImage> image)
        : _caption(std::move(caption))
        , _image(std::move(image))
    {
    }

    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        fillGalleryCard(context, bounds());
        drawCaption(context, bounds(), _caption);
        const NSRect room = aboveCaption(bounds());
        const CGFloat side = std::round(std::min(room.size.width, room.size.height) * 0.7);
        _image->drawInRect(
            NSMakeRect(std::round(NSMidX(room) - side / 2), std::round(NSMidY(room) - side / 2), side, side));
    }

protected:
    ~TintedCard() override = default;

private:
    const NSString _caption;
    const RetainPtr<NSImage> _image;
};

RetainPtr<NSView> makeTintedPage(const GalleryOptions&)
{
    const auto icon = makeGalleryIcon(256);
    const auto tinted = [&](const char* hex) {
        const auto color = ZRGraphics::sharedGraphics()->platformColorFromHex(hex);
        return ZRAppKitAdditions_NSImage::imageByTinting(icon, color);
    };
    std::vector<RetainPtr<NSView>> cards{
        make<TintedCard>("As it is", icon),
        make<TintedCard>("Blue", tinted("3D7DFF")),
        make<TintedCard>("Orange", tinted("FF8A1E")),
        make<TintedCard>("Half orange", tinted("FF8A1E80")),
    };
    return makeGalleryPage(std::move(cards), galleryGrid(2, 4));
}

const GalleryPage tintedPage{"tinted", 93, "Tinted images",
    "One picture in several colours. Every pixel keeps its alpha, so soft edges stay soft.", makeTintedPage};

} // namespace
