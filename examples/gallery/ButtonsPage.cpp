// Buttons: ones that do something and count, ones that stay on, disabled ones, and two that turn the needle
// of a dial, which is a layer, and tint the image below it. The caption of each card says what they did.

#include "Page.h"

#include <AppKit/NSButton.h>
#include <AppKit/NSGraphicsContext.h>
#include <AppKit/NSImage.h>
#include <Foundation/NSFormat.h>
#include <QuartzCore/CALayer.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>
#include <vector>

namespace {

constexpr CGFloat kButtonGap = 12; ///< between buttons
constexpr NSSize kButtonSize{112, 28};

/// A card with buttons one below the other in the middle, and a caption.
class ButtonsCard : public NSView {
public:
    explicit ButtonsCard(NSString caption)
        : _caption(std::move(caption))
    {
    }

    NSButton* addButton(NSString title)
    {
        auto button = NSButton::buttonWithTitle(std::move(title), nullptr, nullptr);
        button->setFrameSize(kButtonSize);
        addSubview(button);
        _buttons.push_back(button);
        return button.get();
    }
    void setCaption(NSString caption)
    {
        _caption = std::move(caption);
        setNeedsDisplay(true);
    }

    void resizeSubviewsWithOldSize(NSSize) override
    {
        const NSRect room = buttonRoom();
        const auto count = CGFloat(_buttons.size());
        const CGFloat height = count * kButtonSize.height + (count - 1) * kButtonGap;
        CGFloat y = std::round(NSMidY(room) + height / 2);
        for (const auto& button : _buttons) {
            y -= kButtonSize.height;
            button->setFrameOrigin(NSMakePoint(std::round(NSMidX(room) - kButtonSize.width / 2), y));
            y -= kButtonGap;
        }
    }

    void drawRect(NSRect) override
    {
        CGContextRef context = NSGraphicsContext::currentContext()->CGContext();
        fillGalleryCard(context, bounds());
        drawCaption(context, bounds(), _caption);
    }

protected:
    ~ButtonsCard() override = default;

    /// Where the buttons are.
    virtual NSRect buttonRoom() const { return aboveCaption(bounds()); }

private:
    NSString _caption;
    std::vector<RetainPtr<NSButton>> _buttons;
};

/// Buttons that are clicked once at a time.
class CountingCard : public ButtonsCard {
public:
    CountingCard()
        : ButtonsCard("Return clicks Apply")
    {
        NSButton* const apply = addButton("Apply");
        apply->setKeyEquivalent("\r");
        for (NSButton* button : {apply, addButton("Reset"), addButton("Cancel")}) {
            button->setTarget(this);
            button->setAction(selector<&CountingCard::clicked>);
        }
    }

    void clicked(NSButton* button)
    {
        ++_clicks;
        setCaption(NSString::stringWithFormat("%@: click %d", button->title(), _clicks));
    }

private:
    int _clicks = 0;
};

/// Buttons that stay on until they are clicked again.
class StateCard : public ButtonsCard {
public:
    StateCard()
        : ButtonsCard("")
        , _grid(addButton("Grid"))
        , _sound(addButton("Mute"))
    {
        _grid->setButtonType(NSButtonTypePushOnPushOff);
        _grid->setState(NSControlStateValueOn);
        _sound->setButtonType(NSButtonTypeToggle);
        _sound->setAlternateTitle("Unmute");
        for (NSButton* button : {_grid, _sound}) {
            button->setTarget(this);
            button->setAction(selector<&StateCard::toggled>);
        }
        toggled();
    }

    void toggled()
    {
        setCaption(NSString::stringWithFormat(
            "The grid is %s, the sound %s", _grid->state() ? "on" : "off", _sound->state() ? "off" : "on"));
    }

private:
    NSButton* const _grid;
    NSButton* const _sound;
};

/// The face of a dial, drawn again only when the needle has turned or the size has changed.
class DialLayer : public CALayer {
public:
    DialLayer()
    {
        setNeedsDisplayOnBoundsChange(true);
        setNeedsDisplay();
    }
    void turn(CGFloat radians)
    {
        _angle += radians;
        setNeedsDisplay();
    }
    void drawInContext(CGContextRef context) override
    {
        const CGFloat radius = std::min(bounds().size.width, bounds().size.height) / 2 - 2;
        CGContextTranslateCTM(context, CGRectGetMidX(bounds()), CGRectGetMidY(bounds()));
        CGContextSetRGBStrokeColor(context, 0, 2 / 3.0, 2 / 3.0, 1);
        CGContextSetLineWidth(context, 3);
        CGContextStrokeEllipseInRect(context, CGRectMake(-radius, -radius, 2 * radius, 2 * radius));
        CGContextRotateCTM(context, -_angle);
        CGContextMoveToPoint(context, 0, 0);
        CGContextAddLineToPoint(context, 0, radius * 0.8);
        CGContextStrokePath(context);
    }

private:
    CGFloat _angle = std::numbers::pi / 4;
};

/// An image of a star in gray.
RetainPtr<NSImage> makeStarImage()
{
    auto star = make<NSImage>(NSMakeSize(96, 96));
    star->lockFocus();
    CGContextRef context = NSGraphicsContext::currentContext()->CGContext();
    CGContextTranslateCTM(context, 48, 46);
    for (int i = 0; i < 10; ++i) {
        const CGFloat radius = i % 2 == 0 ? 46 : 18;
        const CGFloat angle = i * std::numbers::pi / 5;
        const CGPoint point{radius * std::sin(angle), radius * std::cos(angle)};
        if (i == 0)
            CGContextMoveToPoint(context, point.x, point.y);
        else
            CGContextAddLineToPoint(context, point.x, point.y);
    }
    CGContextSetRGBFillColor(context, 0.6, 0.6, 0.6, 1);
    CGContextFillPath(context);
    star->unlockFocus();
    return star;
}

/// A copy of an image whose pixels have one colour and the alpha that they had.
RetainPtr<NSImage> tinted(const NSImage& image, const NSColor& color)
{
    auto copy = image.copy();
    copy->lockFocus();
    color.set();
    NSRectFillUsingOperation({NSZeroPoint, copy->size()}, NSCompositingOperationSourceAtop);
    copy->unlockFocus();
    return copy;
}

/// A layer and an image, with a button for each.
class DialCard : public ButtonsCard {
public:
    DialCard()
        : ButtonsCard("A layer and a tinted image")
    {
        _dial->setLayer(_layer);
        _dial->setWantsLayer(true);
        addSubview(_dial);
        NSButton* const turn = addButton("Turn");
        turn->setTarget(this);
        turn->setAction(selector<&DialCard::turn>);
        NSButton* const tint = addButton("Tint");
        tint->setButtonType(NSButtonTypePushOnPushOff);
        tint->setState(NSControlStateValueOn);
        tint->setTarget(this);
        tint->setAction(selector<&DialCard::tint>);
    }

    void turn() { _layer->turn(std::numbers::pi / 4); }
    void tint(NSButton* button)
    {
        _isTinted = button->state() == NSControlStateValueOn;
        setNeedsDisplay(true);
    }

    void resizeSubviewsWithOldSize(NSSize oldSize) override
    {
        ButtonsCard::resizeSubviewsWithOldSize(oldSize);
        _dial->setFrame(picture(0));
    }
    void drawRect(NSRect dirtyRect) override
    {
        ButtonsCard::drawRect(dirtyRect);
        (_isTinted ? _tintedStar : _star)->drawInRect(picture(1));
    }

protected:
    /// The lower half of the card.
    NSRect buttonRoom() const override
    {
        NSRect room = aboveCaption(bounds());
        room.size.height = std::round(room.size.height * 0.55);
        return room;
    }

private:
    /// The place of the dial or of the star, side by side above the buttons.
    NSRect picture(int column) const
    {
        const NSRect above = aboveCaption(bounds());
        const CGFloat bottom = NSMaxY(buttonRoom());
        const CGFloat side = std::round(std::min(above.size.width / 2, NSMaxY(above) - bottom) * 0.7);
        const CGFloat middle = NSMinX(above) + above.size.width * (column == 0 ? 0.3 : 0.7);
        return NSMakeRect(std::round(middle - side / 2), bottom, side, side);
    }

    const RetainPtr<NSView> _dial = make<NSView>();
    const RetainPtr<DialLayer> _layer = make<DialLayer>();
    const RetainPtr<NSImage> _star = makeStarImage();
    const RetainPtr<NSImage> _tintedStar = tinted(*_star, *NSColor::orangeColor());
    bool _isTinted = true;
};

RetainPtr<NSView> makeDisabledCard()
{
    auto card = make<ButtonsCard>("Disabled");
    card->addButton("Off")->setEnabled(false);
    NSButton* const on = card->addButton("On");
    on->setState(NSControlStateValueOn);
    on->setEnabled(false);
    return card;
}

RetainPtr<NSView> makeButtonsPage(const GalleryOptions&)
{
    std::vector<RetainPtr<NSView>> cards{
        make<CountingCard>(), make<StateCard>(), makeDisabledCard(), make<DialCard>()};
    return makeGalleryPage(std::move(cards), galleryGrid(2, 4));
}

const GalleryPage buttonsPage{"buttons", 89, "Buttons",
    "Buttons that do something, and buttons that stay on. Press one and draw the pointer off it to change "
    "your mind; Tab and Space work, too, and Return clicks the one with the teal edge.",
    makeButtonsPage};

} // namespace
