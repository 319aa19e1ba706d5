#include "NSWindowEvents.h"

#include "PointerTracker.h"
#include "ViewPainter.h"

#include <AppKit/NSAppearance.h>
#include <AppKit/NSApplication.h>
#include <AppKit/NSColor.h>
#include <Foundation/CFDate.h>
#include <Foundation/NSLog.h>

#include <algorithm>
#include <cmath>
#include <exception>

namespace {

/// The background gray of a window without a background colour.
CGFloat defaultBackground(const NSAppearance& appearance)
{
    const bool isDark =
        appearance.bestMatchFromAppearancesWithNames({NSAppearanceNameAqua, NSAppearanceNameDarkAqua})
        == NSAppearanceNameDarkAqua;
    return isDark ? 30 / 255.0 : 236 / 255.0;
}

/// Fills rectangles with a window's background, whatever was there.
class Background {
public:
    Background(const NSWindow& window, bool isTransparent)
        : _color(window.backgroundColor())
        , _shade(_color || isTransparent ? 0 : defaultBackground(*window.effectiveAppearance()))
        , _alpha(isTransparent ? 0 : 1)
    {
    }

    void fill(CGContextRef context, CGRect rect) const
    {
        CGContextSaveGState(context);
        CGContextSetBlendMode(context, kCGBlendModeCopy);
        if (_color)
            CGContextSetFillColorWithColor(context, _color->CGColor());
        else
            CGContextSetRGBFillColor(context, _shade, _shade, _shade, _alpha);
        CGContextFillRect(context, rect);
        CGContextRestoreGState(context);
    }

private:
    const RetainPtr<NSColor> _color;
    const CGFloat _shade;
    const CGFloat _alpha;
};

} // namespace

// Drawing.

void NSWindow::Events::draw(
    CGContextRef context, CGAffineTransform baseFromWindow, const CGRect* baseRects, std::size_t count)
{
    const RetainPtr<NSWindow> window = &_window;
    NSAppearance* const appearance = window->effectiveAppearance();
    if (appearance == NSAppearance::currentDrawingAppearance())
        return drawViews(context, baseFromWindow, baseRects, count);
    appearance->performAsCurrentDrawingAppearance(
        [&] { drawViews(context, baseFromWindow, baseRects, count); });
}

void NSWindow::Events::drawViews(
    CGContextRef context, CGAffineTransform baseFromWindow, const CGRect* baseRects, std::size_t count)
{
    const RetainPtr<NSWindow> window = &_window;
    const Background background(*window, window->_isEmbedded);
    ViewPainter painter(context, _layerMemory);
    for (std::size_t i = 0; i < count; ++i) {
        background.fill(context, baseRects[i]);
        const RetainPtr<NSView> view = window->_contentView;
        if (!view || view->_isHidden)
            continue;
        // An exception must neither leave other windows undrawn nor unwind the window system's event loop.
        try {
            painter.draw(*view, CGAffineTransformConcat(view->superviewFromView(), baseFromWindow),
                baseRects[i], [&] { background.fill(context, baseRects[i]); });
        } catch (const std::exception& exception) {
            NSLog("A view failed to draw: %@", exception.what());
        }
    }
}

void NSWindow::Events::contentRectDidChange(NSRect content)
{
    const RetainPtr<NSWindow> window = &_window;
    window->contentRectDidChange(content);
}

// Events from the window system.

NSWindow::Events::Click NSWindow::Events::clickForPress(
    NSInteger button, NSPoint location, NSTimeInterval timestamp)
{
    // A hand may move the pointer a little between two clicks.
    constexpr CGFloat kSlip = 4; // points
    const NSTimeInterval pause = timestamp - _lastTimestamp;
    const bool continues = button == _lastButton && pause >= 0 && pause <= NSEvent::doubleClickInterval()
        && std::fabs(location.x - _lastLocation.x) <= kSlip
        && std::fabs(location.y - _lastLocation.y) <= kSlip;
    _lastClick = {_lastClick.number + 1, continues ? _lastClick.count + 1 : 1};
    _lastButton = button;
    _lastLocation = location;
    _lastTimestamp = timestamp;
    return _lastClick;
}

void NSWindow::Events::mouseEvent(const HostMouseEvent& event)
{
    constexpr NSEventType types[3][3] = {
        {NSEventTypeLeftMouseDown, NSEventTypeLeftMouseDragged, NSEventTypeLeftMouseUp},
        {NSEventTypeRightMouseDown, NSEventTypeRightMouseDragged, NSEventTypeRightMouseUp},
        {NSEventTypeOtherMouseDown, NSEventTypeOtherMouseDragged, NSEventTypeOtherMouseUp},
    };
    const RetainPtr<NSWindow> window = &_window;
    const NSTimeInterval timestamp = CFAbsoluteTimeGetCurrent();
    if (event.action == HostAction::Moved) {
        NSApp->handleEvent(adopt(
            new NSEvent({NSEventTypeMouseMoved, event.location, event.modifierFlags, timestamp}, window))
                               .get());
        return;
    }
    Click& click = _clicks[slot(event.button)];
    if (event.action == HostAction::Down)
        click = clickForPress(event.button, event.location, timestamp);

    NSEvent::Fields fields{types[slot(event.button)][static_cast<int>(event.action)], event.location,
        event.modifierFlags, timestamp};
    fields.buttonNumber = event.button;
    fields.eventNumber = click.number;
    fields.clickCount = click.count;
    fields.pressure = event.action == HostAction::Up ? 0 : 1;
    NSApp->handleEvent(adopt(new NSEvent(std::move(fields), window)).get());
}

void NSWindow::Events::mouseLeft(NSPoint location, NSEventModifierFlags modifierFlags)
{
    const RetainPtr<NSWindow> window = &_window;
    NSApp->handleEvent(adopt(
        new NSEvent({NSEventTypeMouseExited, location, modifierFlags, CFAbsoluteTimeGetCurrent()}, window))
                           .get());
}

void NSWindow::Events::keyStatusDidChange(bool isKey)
{
    const RetainPtr<NSWindow> window = &_window;
    if (isKey)
        window->becomeKeyWindow();
    else
        window->resignKeyWindow();
}

/// Whether a view has handled the event, or may do so later.
bool NSWindow::Events::handle(NSEvent::Fields fields)
{
    const RetainPtr<NSWindow> window = &_window;
    _unhandled = nullptr;
    const auto event = adopt(new NSEvent(std::move(fields), window));
    NSApp->handleEvent(event);
    return _unhandled != event;
}

bool NSWindow::Events::scrollEvent(const HostScrollEvent& event)
{
    NSEvent::Fields fields{
        NSEventTypeScrollWheel, event.location, event.modifierFlags, CFAbsoluteTimeGetCurrent()};
    fields.scrollingDelta = event.delta;
    fields.hasPreciseScrollingDeltas = event.isPrecise;
    return handle(std::move(fields));
}

bool NSWindow::Events::keyEvent(const HostKeyEvent& event)
{
    NSEvent::Fields fields{event.action == HostAction::Down ? NSEventTypeKeyDown : NSEventTypeKeyUp,
        event.location, event.modifierFlags, CFAbsoluteTimeGetCurrent()};
    fields.characters = event.characters;
    fields.charactersIgnoringModifiers = event.charactersIgnoringModifiers;
    fields.isARepeat = event.isARepeat;
    return handle(std::move(fields));
}

void NSWindow::Events::closeRequested()
{
    _window.performClose();
}

HostToolTip NSWindow::Events::toolTipAt(NSPoint location)
{
    NSView* content = _window.contentView();
    for (NSView* view = content ? content->hitTest(location) : nullptr; view; view = view->superview()) {
        if (view->toolTip())
            return {view->toolTip(), view->convertRectToView(view->visibleRect(), nullptr)};
    }
    return {};
}

// For an embedded window.

void NSWindow::Events::willAppear()
{
    const RetainPtr<NSWindow> window = &_window;
    window->willShow();
}

void NSWindow::Events::activeStatusDidChange()
{
    const RetainPtr<NSWindow> window = &_window;
    window->_pointer->refresh(window->isAnyButtonDown());
}

void NSWindow::Events::appearanceDidChange()
{
    const RetainPtr<NSWindow> window = &_window;
    window->setNeedsDisplayInRect({NSZeroPoint, window->_contentRect.size});
}
