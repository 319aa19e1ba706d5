#include "views/ZRFocusRing.h"

#include <AppKit/NSWindow.h>
#include <KorvidAppKit/ZRGraphics.h>

#include "graphics/ZRSavedGState.h"

#include <algorithm>

namespace {

constexpr CGFloat kLineWidth = 1;

/// Strokes the outermost line within a rounded rectangle.
void strokeInside(CGContextRef context, NSRect rect, CGFloat radius, const char* hex)
{
    const NSRect middle = CGRectInset(rect, kLineWidth / 2, kLineWidth / 2);
    if (!(middle.size.width > 0 && middle.size.height > 0))
        return;
    const CGFloat half = std::min(middle.size.width, middle.size.height) / 2;
    const CGFloat corner = std::clamp<CGFloat>(radius - kLineWidth / 2, 0, half);
    const auto path = adopt(CGPathCreateWithRoundedRect(middle, corner, corner, nullptr));
    CGContextSetStrokeColorWithColor(context, ZRGraphics::sharedGraphics()->CGColorFromHex(hex));
    CGContextAddPath(context, path);
    CGContextStrokePath(context);
}

} // namespace

void ZRFocusRing::setVisible(NSView& view, bool isVisible)
{
    if (isVisible == _isVisible)
        return;
    _isVisible = isVisible;
    view.setNeedsDisplay(true);
}

void ZRFocusRing::draw(CGContextRef context, const NSView& view, NSRect rect, CGFloat radius) const
{
    const NSWindow* const window = view.window();
    if (!_isVisible || !window || !window->isKeyWindow() || window->firstResponder() != &view)
        return;
    const ZRSavedGState savedState(context);
    CGContextSetLineWidth(context, kLineWidth);
    strokeInside(context, rect, radius, "ffffffff");
    strokeInside(context, CGRectInset(rect, kLineWidth, kLineWidth), radius - kLineWidth, "000000ff");
}
