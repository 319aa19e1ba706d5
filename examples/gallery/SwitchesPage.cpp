// Switches: plain ones, one whose state colours a lamp, disabled ones, and large ones with words in
// proportion. A click or a drag operates each of them.

#include "Page.h"
#include "Text.h"

#include <KorvidAppKit/ZRGraphics.h>
#include <KorvidAppKit/ZRSwitchControl.h>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace {

/// The room around the switches of a card, and between them.
constexpr CGFloat kSwitchGap = 16;

struct SwitchLook {
    NSSize size;
    bool isOn;
    bool isEnabled = true;
    double fontSizeCoefficient = 0;
    double fontSizeMinimum = 0;
};

/// A card with switches one below the other, and a caption. All are enlarged to fill a large card.
class SwitchesCard : public NSView {
public:
    SwitchesCard(NSString caption, const std::vector<SwitchLook>& looks)
        : _caption(std::move(caption))
    {
        for (const SwitchLook& look : looks) {
            const auto control = make<ZRSwitchControl>(NSRect{NSZeroPoint, look.size});
            control->setOn(look.isOn, false);
            control->setEnabled(look.isEnabled);
            control->setViewHeightFontSizeCoefficient(look.fontSizeCoefficient);
            control->setViewHeightFontSizeMinimum(look.fontSizeMinimum);
            addSubview(control);
            _sizes.push_back(look.size);
        }
    }

    void resizeSubviewsWithOldSize(NSSize) override
    {
        const NSRect room = this->room();
        NSSize natural = {0, CGFloat(_sizes.size() - 1) * kSwitchGap};
        for (const NSSize& size : _sizes)
            natural = {std::max(natural.width, size.width), natural.height + size.height};
        const CGFloat widest = std::min((room.size.width - 2 * kSwitchGap) / natural.width,
            (room.size.height - 2 * kSwitchGap) / natural.height);
        const CGFloat zoom = std::max(1.0, std::floor(widest * 2) / 2);

        CGFloat top = std::round(NSMidY(room) + natural.height * zoom / 2);
        for (std::size_t i = 0; i < _sizes.size(); ++i) {
            const NSSize size = {_sizes[i].width * zoom, _sizes[i].height * zoom};
            NSView* const control = subviews()[i];
            control->setFrame(NSMakeRect(
                std::round(NSMidX(room) - size.width / 2), top - size.height, size.width, size.height));
            control->setBoundsSize(_sizes[i]); // enlarges the words too
            top -= size.height + std::round(kSwitchGap * zoom);
        }
    }

    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        fillGalleryCard(context, bounds());
        drawCaption(context, bounds(), _caption);
    }

protected:
    ~SwitchesCard() override = default;

    /// Where the switches are.
    virtual NSRect room() const { return aboveCaption(bounds()); }
    ZRSwitchControl* firstSwitch() const { return dynamic_cast<ZRSwitchControl*>(subviews().front().get()); }

private:
    const NSString _caption;
    std::vector<NSSize> _sizes; ///< without enlargement
};

/// A card with a lamp above its switch.
class LampCard : public SwitchesCard {
public:
    LampCard()
        : SwitchesCard("Coloured by its state", {{{66, 24}, true}})
    {
        firstSwitch()->setTarget(this);
        firstSwitch()->setAction(selector<&LampCard::toggled>);
    }

    void toggled() { setNeedsDisplay(true); }

    void drawRect(NSRect dirtyRect) override
    {
        SwitchesCard::drawRect(dirtyRect);
        CGContextRef context = ZRGraphics::sharedContext();
        const NSRect above = aboveCaption(bounds());
        const CGFloat height = NSMaxY(above) - NSMaxY(room());
        const CGFloat side = std::round(std::min(height, above.size.width) * 0.6);
        const NSRect lamp = NSMakeRect(std::round(NSMidX(above) - side / 2),
            std::round(NSMaxY(room()) + (height - side) * 0.4), side, side);
        const bool isLit = firstSwitch()->isOn();
        CGContextSetFillColorWithColor(context,
            isLit ? ZRGraphics::sharedGraphics()->CGColorFromHex("00aaaa")
                  : galleryCGColor("zel-hairline-solid"));
        CGContextFillEllipseInRect(context, lamp);
    }

protected:
    ~LampCard() override = default;

    /// The lower half of the card.
    NSRect room() const override
    {
        NSRect room = aboveCaption(bounds());
        room.size.height = std::round(room.size.height / 2);
        return room;
    }
};

RetainPtr<NSView> makeSwitchesPage(const GalleryOptions&)
{
    std::vector<RetainPtr<NSView>> cards{
        make<SwitchesCard>("Plain", std::vector<SwitchLook>{{{66, 24}, true}, {{66, 24}, false}}),
        make<LampCard>(),
        make<SwitchesCard>(
            "Disabled", std::vector<SwitchLook>{{{66, 24}, true, false}, {{66, 24}, false, false}}),
        make<SwitchesCard>("Words in proportion",
            std::vector<SwitchLook>{{{126, 48}, true, true, 0.42}, {{84, 32}, false, true, 0.42, 12}}),
    };
    return makeGalleryPage(std::move(cards), galleryGrid(2, 4));
}

const GalleryPage switchesPage{"switches", 86, "Switches",
    "On and off, with words that are cut out of the knob. Click a switch or drag its knob: it moves within "
    "0.2 "
    "seconds, and turns around when you change your mind.",
    makeSwitchesPage};

} // namespace
