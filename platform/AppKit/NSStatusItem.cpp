#include "Host.h"
#include "testing/StatusTray.h"

#include <AppKit/NSApplication.h>
#include <AppKit/NSImage.h>
#include <AppKit/NSStatusBar.h>
#include <AppKit/NSWindow.h>
#include <CoreGraphics/CGBitmapContext.h>
#include <CoreGraphics/CGColorSpace.h>

#include <algorithm>
#include <optional>
#include <vector>

namespace {

/// In points; the usual height of an icon.
constexpr CGFloat kThickness = 22;

std::optional<NSRect> trayFrameForTests;

/// All items, for changes of the tray in tests.
std::vector<NSStatusItem*>& allItems()
{
    static std::vector<NSStatusItem*> items;
    return items;
}

/// The largest rectangle of those proportions in the middle of a square.
NSRect fitted(NSSize size, CGFloat side)
{
    const CGFloat longer = std::max(size.width, size.height);
    if (!(longer > 0))
        return NSZeroRect;
    const NSSize scaled = {size.width * side / longer, size.height * side / longer};
    return NSMakeRect((side - scaled.width) / 2, (side - scaled.height) / 2, scaled.width, scaled.height);
}

/// The picture as a square icon with enough pixels for scale 2.
RetainPtr<CGImage> icon(const NSImage* image)
{
    constexpr std::size_t kPixels = 2 * std::size_t(kThickness);
    const auto space = adopt(CGColorSpaceCreateWithName(kCGColorSpaceSRGB));
    const auto context =
        adopt(CGBitmapContextCreate(nullptr, kPixels, kPixels, 8, 0, space, kCGImageAlphaPremultipliedLast));
    if (const CGImageRef pixels = image ? image->CGImageForProposedRect() : nullptr)
        CGContextDrawImage(context, fitted(image->size(), CGFloat(kPixels)), pixels);
    return adopt(CGBitmapContextCreateImage(context));
}

} // namespace

class NSStatusItem::Events final : public HostStatusItemEvents {
public:
    explicit Events(NSStatusItem& item)
        : _item(item)
    {
    }

    void statusItemFrameDidChange() override { _item.frameDidChange(); }
    void statusItemWasPressed() override
    {
        const RetainPtr<NSStatusItem> keep = &_item;
        keep->_button->performClick();
    }

private:
    NSStatusItem& _item;
};

NSStatusItem::NSStatusItem(CGFloat length)
    : _length(length)
    , _button(adopt(new NSStatusBarButton(*this)))
    , _events(std::make_unique<Events>(*this))
    , _host(Host::shared().makeStatusItem(*_events))
{
    allItems().push_back(this);
    imageDidChange();
    setVisible(true);
}

NSStatusItem::~NSStatusItem()
{
    std::erase(allItems(), this);
    _button->_item = nullptr;
    if (_window)
        _window->setContentView(nullptr);
}

void NSStatusItem::setVisible(bool visible)
{
    if (visible == _isVisible)
        return;
    _isVisible = visible;
    imageDidChange();
    _host->setVisible(visible);
    frameDidChange();
}

void NSStatusItem::imageDidChange()
{
    const auto image = icon(_button->image());
    _host->setImage(image);
    _host->setToolTip(_button->toolTip());
}

/// Puts the button into a window in the place of the icon.
void NSStatusItem::frameDidChange()
{
    std::optional<NSRect> frame;
    if (_isVisible)
        frame = trayFrameForTests ? trayFrameForTests : _host->frame();
    if (!frame) {
        if (const RetainPtr<NSWindow> window = std::move(_window))
            window->setContentView(nullptr);
        return;
    }
    if (!_window) {
        _window = make<NSWindow>(*frame, NSWindowStyleMaskBorderless, NSBackingStoreBuffered, false);
        _window->setContentView(_button);
    }
    _window->setFrame(*frame, false);
}

// The button.

NSStatusBarButton::NSStatusBarButton(NSStatusItem& item)
    : NSButton(NSMakeRect(0, 0, kThickness, kThickness))
    , _item(&item)
{
    setBordered(false);
}

NSStatusBarButton::~NSStatusBarButton() = default;

void NSStatusBarButton::setImage(RetainPtr<NSImage> image)
{
    _image = std::move(image);
    setNeedsDisplay(true);
    if (_item)
        _item->imageDidChange();
}

void NSStatusBarButton::drawRect(NSRect)
{
    if (!_image)
        return;
    const NSRect bounds = this->bounds();
    const CGFloat side = std::min(bounds.size.width, bounds.size.height);
    const NSRect square = fitted(_image->size(), side);
    _image->drawInRect(NSOffsetRect(square, NSMidX(bounds) - side / 2, NSMidY(bounds) - side / 2));
}

// The tray.

NSStatusBar::NSStatusBar() = default;

NSStatusBar::~NSStatusBar() = default;

NSStatusBar* NSStatusBar::systemStatusBar()
{
    static auto* const bar = new NSStatusBar;
    return bar;
}

RetainPtr<NSStatusItem> NSStatusBar::statusItemWithLength(CGFloat length)
{
    NSApplication::sharedApplication();
    return adopt(new NSStatusItem(length));
}

void NSStatusBar::removeStatusItem(NSStatusItem* item)
{
    if (item)
        item->setVisible(false);
}

CGFloat NSStatusBar::thickness() const
{
    return kThickness;
}

// The seam for tests.

StatusTray::StatusTray(NSRect frame)
{
    trayFrameForTests = frame;
    for (NSStatusItem* item : allItems())
        item->frameDidChange();
}

StatusTray::~StatusTray()
{
    trayFrameForTests.reset();
    for (NSStatusItem* item : allItems())
        item->frameDidChange();
}
