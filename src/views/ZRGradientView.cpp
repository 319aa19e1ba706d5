#include <KorvidAppKit/ZRGradientView.h>

#include <AppKit/NSColor.h>
#include <KorvidAppKit/ZRGraphics.h>
#include <KorvidAppKit/ZRShapes.h>

#include "graphics/ZRSRGBColorSpaces.h"
#include "graphics/ZRSavedGState.h"
#include "views/ZRReplaceColor.h"

#include <algorithm>

namespace {

const NSCodingClass<ZRGradientView> gradientViewCoding("ZRGradientView");

} // namespace

ZRGradientView::ZRGradientView() = default;

ZRGradientView::ZRGradientView(NSRect frame)
    : NSView(frame)
{
}

ZRGradientView::ZRGradientView(NSCoder* coder)
    : NSView(coder)
{
}

ZRGradientView::~ZRGradientView() = default;

void ZRGradientView::setColor(RetainPtr<NSColor> color)
{
    if (ZRReplaceColor(_color, std::move(color)))
        snd();
}

void ZRGradientView::setGradient(RetainPtr<CGGradient> gradient)
{
    _gradient = std::move(gradient);
    snd();
}

RetainPtr<NSColor> ZRGradientView::strokeColor() const
{
    const std::lock_guard guard(_atomicMutex);
    return _strokeColor;
}

void ZRGradientView::setStrokeColor(RetainPtr<NSColor> color)
{
    const std::lock_guard guard(_atomicMutex);
    std::swap(_strokeColor, color); // the old colour is released with the parameter, after the lock
}

NSPoint ZRGradientView::atomic(const NSPoint& point) const
{
    const std::lock_guard guard(_atomicMutex);
    return point;
}

void ZRGradientView::setAtomic(NSPoint& point, NSPoint value)
{
    const std::lock_guard guard(_atomicMutex);
    point = value;
}

void ZRGradientView::drawRect(NSRect dirtyRect)
{
    const CGContextRef context = ZRGraphics::sharedContext();
    if (!context)
        return;
    // Before the state is saved: sRGB stays set for what is drawn next in the same pass.
    ZRSetSRGBColorSpaces(context);

    const NSRect bounds = this->bounds();
    const ZRSavedGState savedState(context);
    RetainPtr<const CGPath> roundedOutline;
    if (_cornerRadius > 0 && _roundedCorners != 0) {
        roundedOutline = adopt(
            ZRCreateRoundedRectPath(static_cast<std::uint32_t>(_roundedCorners), bounds, _cornerRadius));
        CGContextAddPath(context, roundedOutline);
        CGContextClip(context);
    }

    if (_gradient) {
        drawGradient(context);
        // Only gradients have a bezel.
        if (_bezel)
            drawBezel(context);
    } else if (_color) {
        _color->set();
        CGContextFillRect(context, dirtyRect);
    }
    drawStroke(context, roundedOutline);
}

void ZRGradientView::drawGradient(CGContextRef context) const
{
    // Placed by the size alone, from (0, 0): where the bounds' origin moves, the gradient scrolls with the
    // content.
    const auto [width, height] = bounds().size;
    const auto scaled = [width = width, height = height](
                            NSPoint point) { return CGPointMake(point.x * width, point.y * height); };
    constexpr CGGradientDrawingOptions kBothEnds =
        kCGGradientDrawsBeforeStartLocation | kCGGradientDrawsAfterEndLocation;
    if (_type == kZRGradientTypeRadial) {
        const CGFloat side = std::min(width, height);
        CGContextDrawRadialGradient(context, _gradient, scaled(startCenter()), _startRadius * side,
            scaled(endCenter()), _endRadius * side, kBothEnds);
    } else if (_type == kZRGradientTypeLinear) {
        CGContextDrawLinearGradient(context, _gradient, scaled(startPoint()), scaled(endPoint()), kBothEnds);
    }
}

void ZRGradientView::drawBezel(CGContextRef context) const
{
    static const auto dark = adopt(CGColorCreateSRGB(0, 0, 0, 0.267));
    static const auto light = adopt(CGColorCreateSRGB(1, 1, 1, 0.133));
    const auto [width, height] = bounds().size;
    const ZRSavedGState savedState(context);
    ZRSetSRGBColorSpaces(context);
    CGContextSetFillColorWithColor(context, dark);
    CGContextFillRect(context, CGRectMake(0, height - 1, width, 1));
    CGContextSetFillColorWithColor(context, light);
    CGContextFillRect(context, CGRectMake(0, 0, width, 1));
}

/// A null outline stands for the bounds.
void ZRGradientView::drawStroke(CGContextRef context, CGPathRef outline) const
{
    const auto color = strokeColor();
    if (!(_stroke > 0) || !color)
        return;
    const ZRSavedGState savedState(context);
    // The stroke is centred on the edge: its outer half is clipped.
    CGContextSetLineWidth(context, 2 * _stroke);
    CGContextSetStrokeColorWithColor(context, color->CGColor());
    if (outline)
        CGContextAddPath(context, outline);
    else
        CGContextAddRect(context, bounds());
    CGContextStrokePath(context);
}
