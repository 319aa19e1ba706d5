// A long list in a clip view, which the wheel scrolls. Buttons and a map beside the list scroll it, too.

#include "Page.h"
#include "Text.h"

#include <AppKit/NSButton.h>
#include <AppKit/NSEvent.h>
#include <Foundation/NSFormat.h>
#include <KorvidAppKit/ZRFlippedClipView.h>
#include <KorvidAppKit/ZRGraphics.h>

#include <cmath>
#include <vector>

namespace {

/// Rows of all hues.
class HueRows : public NSView {
public:
    static constexpr int kCount = 40;
    static constexpr CGFloat kHeight = 32;

    static RetainPtr<NSColor> colorOf(int row)
    {
        return NSColor::colorWithHue(CGFloat(row) / kCount, 0.6, 0.85, 1);
    }

    NSRect rectOf(int row) const
    {
        return NSMakeRect(0, bounds().size.height - kHeight * (row + 1), bounds().size.width, kHeight);
    }

    void drawRect(NSRect dirtyRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        for (int row = 0; row < kCount; ++row) {
            const NSRect rect = rectOf(row);
            if (!NSIntersectsRect(rect, dirtyRect))
                continue;
            CGContextSetFillColorWithColor(context, colorOf(row)->CGColor());
            CGContextFillEllipseInRect(context, NSMakeRect(8, NSMidY(rect) - 8, 16, 16));
            drawLabel(
                context, NSString::stringWithFormat("Row %d", row + 1), {36, NSMinY(rect) + 11}, kCardText);
            CGContextSetFillColorWithColor(context, galleryCGColor("zel-hairline-solid"));
            CGContextFillRect(context, NSMakeRect(0, NSMinY(rect), rect.size.width, 1));
        }
    }

protected:
    ~HueRows() override = default;
};

/// Redraws what is around it when the wheel scrolls it.
class WatchedClipView : public ZRFlippedClipView {
public:
    void scrollWheel(NSEvent* event) override
    {
        ZRFlippedClipView::scrollWheel(event);
        superview()->setNeedsDisplay(true);
    }

protected:
    ~WatchedClipView() override = default;
};

/// The list, and beside it buttons above a map: all rows, with a frame around those that are visible.
class ScrollingCard : public NSView {
public:
    ScrollingCard()
        : _buttons{NSButton::buttonWithTitle("To the start", this, selector<&ScrollingCard::showStart>),
            NSButton::buttonWithTitle("To row 20", this, selector<&ScrollingCard::showMiddle>),
            NSButton::buttonWithTitle("To the end", this, selector<&ScrollingCard::showEnd>)}
    {
        _clip->setDocumentView(_rows);
        addSubview(_clip);
        for (const auto& button : _buttons)
            addSubview(button);
    }

    void showStart() { scrollTo(0); }
    void showMiddle()
    {
        _rows->scrollRectToVisible(_rows->rectOf(19));
        setNeedsDisplay(true);
    }
    void showEnd() { scrollTo(_rows->frame().size.height); }

    void mouseDown(NSEvent* event) override
    {
        _isMapPressed = mouse(convertPointFromView(event->locationInWindow(), nullptr), _map);
        mouseDragged(event);
    }
    void mouseDragged(NSEvent* event) override
    {
        if (!_isMapPressed)
            return;
        const NSPoint point = convertPointFromView(event->locationInWindow(), nullptr);
        const CGFloat part = (NSMaxY(_map) - point.y) / _map.size.height;
        scrollTo(std::round(part * _rows->frame().size.height - _clip->bounds().size.height / 2));
    }

    void resizeSubviewsWithOldSize(NSSize) override
    {
        constexpr CGFloat kGap = 12, kSideWidth = 116, kButtonHeight = 28;
        NSRect room = NSInsetRect(aboveCaption(bounds()), kGap, 0);
        room.size.height -= kGap;
        const CGFloat left = NSMaxX(room) - kSideWidth;
        _clip->setFrame(NSMakeRect(NSMinX(room), NSMinY(room), left - kGap - NSMinX(room), room.size.height));
        _rows->setFrameSize({_clip->frame().size.width, HueRows::kCount * HueRows::kHeight});
        CGFloat top = NSMaxY(room);
        for (const auto& button : _buttons) {
            button->setFrame(NSMakeRect(left, top - kButtonHeight, kSideWidth, kButtonHeight));
            top -= kButtonHeight + kGap;
        }
        _map = NSMakeRect(left, NSMinY(room), kSideWidth, top - NSMinY(room));
    }

    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        fillGalleryCard(context, bounds());
        drawCaption(context, bounds(), "Turn the wheel over the list");
        const auto yOf = [this](CGFloat part) { return std::round(NSMaxY(_map) - part * _map.size.height); };
        for (int row = 0; row < HueRows::kCount; ++row) {
            // Each down to the bottom, under the next ones: no gaps, at any scale.
            const CGFloat height = yOf(CGFloat(row) / HueRows::kCount) - NSMinY(_map);
            CGContextSetFillColorWithColor(context, HueRows::colorOf(row)->CGColor());
            CGContextFillRect(context, NSMakeRect(NSMinX(_map), NSMinY(_map), _map.size.width, height));
        }

        const NSRect visible = _clip->documentVisibleRect();
        const CGFloat total = _rows->bounds().size.height;
        const CGFloat top = yOf(1 - NSMaxY(visible) / total), bottom = yOf(1 - NSMinY(visible) / total);
        CGContextSetStrokeColorWithColor(context, galleryCGColor("zel-white-evenstronger"));
        CGContextStrokeRectWithWidth(
            context, NSInsetRect(NSMakeRect(NSMinX(_map), bottom, _map.size.width, top - bottom), 1, 1), 2);
    }

protected:
    ~ScrollingCard() override = default;

private:
    void scrollTo(CGFloat y)
    {
        _clip->scrollToPoint({0, y});
        setNeedsDisplay(true);
    }

    const RetainPtr<HueRows> _rows = make<HueRows>();
    const RetainPtr<WatchedClipView> _clip = make<WatchedClipView>();
    const std::vector<RetainPtr<NSButton>> _buttons;
    NSRect _map{};
    bool _isMapPressed = false;
};

RetainPtr<NSView> makeScrollingPage(const GalleryOptions&)
{
    return makeGalleryPage({make<ScrollingCard>()}, galleryGrid(1, 1));
}

const GalleryPage scrollingPage{"scrolling", 91, "Scrolling",
    "A list that is longer than its view. Turn the wheel, press the buttons, or drag in the map.",
    makeScrollingPage};

} // namespace
