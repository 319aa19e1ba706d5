// What a program remembers: a switch and a count that are stored in the user's settings, and a colour that
// was written into an archive and read again. In pictures, nothing is stored.

#include "Page.h"
#include "Text.h"

#include <AppKit/NSButton.h>
#include <Foundation/NSData.h>
#include <Foundation/NSFormat.h>
#include <Foundation/NSKeyedArchiver.h>
#include <Foundation/NSUserDefaults.h>
#include <KorvidAppKit/ZR2DColorPicker.h>
#include <KorvidAppKit/ZRGraphics.h>
#include <KorvidAppKit/ZRSwitchControl.h>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace {

constexpr const char* kSwitchKey = "SettingsPageSwitch";
constexpr const char* kClicksKey = "SettingsPageClicks";

/// The rectangle of that size in the middle of the room, on whole points.
NSRect middleOf(NSRect room, NSSize size)
{
    return NSMakeRect(std::round(NSMidX(room) - size.width / 2), std::round(NSMidY(room) - size.height / 2),
        size.width, size.height);
}

/// A switch whose state lasts from one run to the next.
class StoredSwitchCard : public NSView {
public:
    StoredSwitchCard()
    {
        _switch->setAccessibilityLabel("Remembered");
        _switch->setTarget(this);
        _switch->setAction(selector<&StoredSwitchCard::toggled>);
        addSubview(_switch);
    }

    void toggled() { NSUserDefaults::standardUserDefaults()->setBool(_switch->isOn(), kSwitchKey); }

    void viewDidMoveToWindow() override
    {
        if (window())
            _switch->setOn(NSUserDefaults::standardUserDefaults()->boolForKey(kSwitchKey), false);
    }

    void resizeSubviewsWithOldSize(NSSize) override
    {
        _switch->setFrame(middleOf(aboveCaption(bounds()), {88, 32}));
    }

    void drawRect(NSRect) override
    {
        fillGalleryCard(ZRGraphics::sharedContext(), bounds());
        drawCaption(ZRGraphics::sharedContext(), bounds(), "Lasts after a restart");
    }

protected:
    ~StoredSwitchCard() override = default;

private:
    const RetainPtr<ZRSwitchControl> _switch = make<ZRSwitchControl>(NSMakeRect(0, 0, 88, 32));
};

/// The number of clicks of all runs.
class StoredCountCard : public NSView {
public:
    StoredCountCard()
        : _add(NSButton::buttonWithTitle("Add one", this, selector<&StoredCountCard::add>))
        , _forget(NSButton::buttonWithTitle("Forget", this, selector<&StoredCountCard::forget>))
    {
        addSubview(_add);
        addSubview(_forget);
    }

    void add() { store(_clicks + 1); }
    void forget()
    {
        NSUserDefaults::standardUserDefaults()->removeObjectForKey(kClicksKey);
        show(0);
    }

    void viewDidMoveToWindow() override
    {
        if (window())
            show(NSUserDefaults::standardUserDefaults()->integerForKey(kClicksKey));
    }

    void resizeSubviewsWithOldSize(NSSize) override
    {
        constexpr CGFloat kHeight = 28, kGap = 12;
        const NSRect room = NSInsetRect(aboveCaption(bounds()), kGap, kGap);
        const CGFloat width = std::min(120.0, std::floor((room.size.width - kGap) / 2));
        const CGFloat left = std::round(NSMidX(room) - width - kGap / 2);
        _add->setFrame(NSMakeRect(left, NSMinY(room), width, kHeight));
        _forget->setFrame(NSMakeRect(left + width + kGap, NSMinY(room), width, kHeight));
    }

    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        fillGalleryCard(context, bounds());
        drawCaption(context, bounds(), "Counted over all runs");
        NSRect room = aboveCaption(bounds());
        room.origin.y += 40;
        room.size.height -= 40;
        drawLabel(context, NSString::stringWithFormat("%d", int(_clicks)), {NSMidX(room), NSMidY(room)},
            kFigureText, LabelPlace::Around);
    }

protected:
    ~StoredCountCard() override = default;

private:
    void store(NSInteger clicks)
    {
        NSUserDefaults::standardUserDefaults()->setInteger(clicks, kClicksKey);
        show(clicks);
    }
    void show(NSInteger clicks)
    {
        _clicks = clicks;
        setNeedsDisplay(true);
    }

    const RetainPtr<NSButton> _add, _forget;
    NSInteger _clicks = 0;
};

/// A colour, and the one that its archive holds.
class ArchiveCard : public NSView {
public:
    ArchiveCard()
    {
        _picker->setAxes(kZR2DColorPickerAxesHueSaturation);
        _picker->setThirdComponent(1);
        _picker->setComps({0.55, 0.6});
        _picker->setComponentsChangedCB([this](ZR2Components) { archive(); });
        addSubview(_picker);
        archive();
    }

    void resizeSubviewsWithOldSize(NSSize) override
    {
        NSRect room = NSInsetRect(aboveCaption(bounds()), 16, 0);
        room.size.height -= 16;
        room.size.width = std::round(room.size.width * 0.45);
        _picker->setFrame(room);
    }

    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        fillGalleryCard(context, bounds());
        drawCaption(context, bounds(), "Picked, written into an archive, and read from it");
        const NSRect picked = _picker->frame();
        constexpr CGFloat kSide = 56;
        const CGFloat left = NSMaxX(picked) + 24, middle = NSMidY(picked);
        if (_copy) {
            const auto swatch = adopt(CGPathCreateWithRoundedRect(
                NSMakeRect(left, std::round(middle - kSide / 2), kSide, kSide), 8, 8, nullptr));
            CGContextSetFillColorWithColor(context, _copy->CGColor());
            CGContextAddPath(context, swatch);
            CGContextFillPath(context);
        }
        drawLabels(context, {NSString::stringWithFormat("%d bytes", int(_size)), "of archive"},
            {left + kSide + 16, std::round(middle + 4)}, kCardText);
    }

protected:
    ~ArchiveCard() override = default;

private:
    void archive()
    {
        const auto color = _picker->color();
        const auto data = NSKeyedArchiver::archivedDataWithRootObject(color, true);
        _size = data->length();
        _copy = NSKeyedUnarchiver::unarchivedObjectOfClass<NSColor>(data);
        setNeedsDisplay(true);
    }

    const RetainPtr<ZR2DColorPicker> _picker = make<ZR2DColorPicker>();
    RetainPtr<NSColor> _copy;
    NSUInteger _size = 0;
};

/// Two cards above a wide one.
std::vector<NSRect> layOutSettings(NSRect inside)
{
    auto frames = galleryGrid(2, 4)(inside);
    frames[2] = NSUnionRect(frames[2], frames[3]);
    frames.pop_back();
    return frames;
}

RetainPtr<NSView> makeSettingsPage(const GalleryOptions&)
{
    return makeGalleryPage(
        {make<StoredSwitchCard>(), make<StoredCountCard>(), make<ArchiveCard>()}, layOutSettings);
}

const GalleryPage settingsPage{"settings", 96, "Settings and archives",
    "The switch and the count are stored in your settings, for the next start. The colour that you pick is "
    "archived and "
    "read again.",
    makeSettingsPage};

} // namespace
