#include "CoreGraphics/FiniteGeometry.h"
#include "HostedLayer.h"
#include "PointerTracker.h"
#include "SubviewIndex.h"
#include "ViewLayout.h"
#include "ViewPainter.h"

#include <AppKit/NSWindow.h>

#include <cmath>

namespace {

/// The two ends of a side after its container grew by `change`; see NSView::resizeWithOldSuperviewSize.
struct Side {
    CGFloat start;
    CGFloat length;

    void share(
        CGFloat change, CGFloat oldContainerLength, bool startFlexible, bool lengthFlexible, bool endFlexible)
    {
        const CGFloat startPart = startFlexible ? start : 0;
        const CGFloat lengthPart = lengthFlexible ? length : 0;
        const CGFloat endPart = endFlexible ? oldContainerLength - start - length : 0;
        const CGFloat sum = startPart + lengthPart + endPart;
        const auto shareOf = [&](CGFloat part, bool isFlexible) {
            if (sum > 0)
                return change * part / sum;
            return isFlexible ? change / (startFlexible + lengthFlexible + endFlexible) : 0;
        };
        start += shareOf(startPart, startFlexible);
        length = std::fmax(length + shareOf(lengthPart, lengthFlexible), 0);
    }
};

/// The pixel boundary at or before `edge`, in the direction in which the coordinate grows. Pixel boundaries
/// are the whole numbers after scaling and moving by `offset`; `scale` is negative where y is flipped.
CGFloat flooredToPixel(CGFloat edge, CGFloat scale, CGFloat offset)
{
    // Rounding errors must not move an edge that is meant to lie on a boundary by a whole pixel.
    constexpr CGFloat kTolerance = 1e-6;
    const CGFloat pixel = edge * scale + offset;
    const CGFloat boundary = scale > 0 ? std::floor(pixel + kTolerance) : std::ceil(pixel - kTolerance);
    return (boundary - offset) / scale;
}

} // namespace

NSView::NSView(NSRect frame)
    : _frame{finiteOrZero(frame.origin), positiveOrZero(frame.size)}
    , _bounds{NSZeroPoint, _frame.size}
{
}

void NSView::setFrame(NSRect frame)
{
    setFrameOrigin(frame.origin);
    setFrameSize(frame.size);
}

void NSView::setFrameOrigin(NSPoint origin)
{
    origin = finiteOrZero(origin);
    if (NSEqualPoints(origin, _frame.origin))
        return;
    const NSRect old = _frame;
    _frame.origin = origin;
    if (_superview && _superview->_subviewIndex)
        _superview->_subviewIndex->move(*this, old);
    _trackingIsCurrent = false;
    setNeedsDisplayInSuperview(old);
    setNeedsDisplayInSuperview(_frame);
    if (_superview)
        _superview->subviewFrameDidChange(this);
}

void NSView::setFrameSize(NSSize size)
{
    size = positiveOrZero(size);
    if (NSEqualSizes(size, _frame.size))
        return;
    const NSRect old = _frame;
    const NSSize oldBoundsSize = _bounds.size;
    _frame.size = size;
    if (_superview && _superview->_subviewIndex)
        _superview->_subviewIndex->move(*this, old);
    _bounds.size = {size.width / _scale.width, size.height / _scale.height};
    _needsDisplay = true;
    setNeedsDisplayInSuperview(old);
    setNeedsDisplayInSuperview(_frame);
    boundsDidChange();
    if (_autoresizesSubviews)
        resizeSubviewsWithOldSize(oldBoundsSize);
    if (_layout)
        layOutConstraints();
    if (_superview)
        _superview->subviewFrameDidChange(this);
}

void NSView::setBounds(NSRect bounds)
{
    setBoundsOrigin(bounds.origin);
    setBoundsSize(bounds.size);
}

void NSView::setBoundsOrigin(NSPoint origin)
{
    origin = finiteOrZero(origin);
    if (NSEqualPoints(origin, _bounds.origin))
        return;
    _bounds.origin = origin;
    boundsDidChange();
    setNeedsDisplay(true);
}

void NSView::setBoundsSize(NSSize size)
{
    const auto setSide = [](CGFloat side, CGFloat frameSide, CGFloat& boundsSide, CGFloat& scale) {
        // Zero and denormal scales have no inverse to convert by.
        if (!std::isnormal(frameSide / side) || !std::isnormal(side) || side < 0 || side == boundsSide)
            return false;
        boundsSide = side;
        scale = frameSide / side;
        return true;
    };
    const bool wider = setSide(size.width, _frame.size.width, _bounds.size.width, _scale.width);
    const bool higher = setSide(size.height, _frame.size.height, _bounds.size.height, _scale.height);
    if (wider || higher) {
        boundsDidChange();
        setNeedsDisplay(true);
        if (_layout)
            layOutConstraints();
    }
}

/// Adapts what depends on the bounds, but for subviews.
void NSView::boundsDidChange()
{
    _trackingIsCurrent = false;
    if (_window)
        _window->_pointer->viewsDidChange();
    if (_hostedLayer)
        _hostedLayer->resize();
}

void NSView::resizeSubviewsWithOldSize(NSSize oldSize)
{
    const auto subviews = _subviews;
    for (const auto& subview : subviews) {
        if (subview->_superview == this)
            subview->resizeWithOldSuperviewSize(oldSize);
    }
}

void NSView::resizeWithOldSuperviewSize(NSSize oldSize)
{
    if (!_superview || _autoresizingMask == NSViewNotSizable)
        return;

    const NSSize newSize = _superview->_bounds.size;
    const auto flexible = [this](NSAutoresizingMaskOptions part) { return (_autoresizingMask & part) != 0; };
    Side x{_frame.origin.x - _superview->_bounds.origin.x, _frame.size.width};
    Side y{_frame.origin.y - _superview->_bounds.origin.y, _frame.size.height};
    x.share(newSize.width - oldSize.width, oldSize.width, flexible(NSViewMinXMargin),
        flexible(NSViewWidthSizable), flexible(NSViewMaxXMargin));
    y.share(newSize.height - oldSize.height, oldSize.height, flexible(NSViewMinYMargin),
        flexible(NSViewHeightSizable), flexible(NSViewMaxYMargin));

    const CGAffineTransform backing = _superview->backingFromView();
    const auto flooredX = [&](CGFloat edge) {
        return flooredToPixel(_superview->_bounds.origin.x + edge, backing.a, backing.tx);
    };
    const auto flooredY = [&](CGFloat edge) {
        return flooredToPixel(_superview->_bounds.origin.y + edge, backing.d, backing.ty);
    };
    constexpr NSAutoresizingMaskOptions horizontal = NSViewMinXMargin | NSViewWidthSizable | NSViewMaxXMargin;
    constexpr NSAutoresizingMaskOptions vertical = NSViewMinYMargin | NSViewHeightSizable | NSViewMaxYMargin;
    NSRect frame = _frame;
    if (flexible(horizontal)) {
        frame.origin.x = flooredX(x.start);
        frame.size.width = flooredX(x.start + x.length) - frame.origin.x;
    }
    if (flexible(vertical)) {
        frame.origin.y = flooredY(y.start);
        frame.size.height = flooredY(y.start + y.length) - frame.origin.y;
    }
    setFrame(frame);
}

NSSize NSView::intrinsicContentSize() const
{
    return {NSViewNoIntrinsicMetric, NSViewNoIntrinsicMetric};
}

void NSView::invalidateIntrinsicContentSize()
{
    for (NSView* superview = _superview; superview; superview = superview->_superview)
        superview->subviewIntrinsicContentSizeDidChange(this);
    if (_superview && !_translatesAutoresizingMask && (_superview->_layout || _layout))
        _superview->setNeedsLayout(true);
}

void NSView::subviewIntrinsicContentSizeDidChange(NSView*) { }

/// From this view's coordinates to those of the superview, or of the window for a root.
CGAffineTransform NSView::superviewFromView() const
{
    const CGFloat sx = _scale.width;
    const CGFloat sy = _scale.height;
    const bool isSuperviewFlipped = _superview && _superview->isFlipped();
    if (isFlipped() == isSuperviewFlipped)
        return {
            sx, 0, 0, sy, _frame.origin.x - _bounds.origin.x * sx, _frame.origin.y - _bounds.origin.y * sy};
    return {sx, 0, 0, -sy, _frame.origin.x - _bounds.origin.x * sx, NSMaxY(_frame) + _bounds.origin.y * sy};
}

CGAffineTransform NSView::windowFromView() const
{
    CGAffineTransform transform = superviewFromView();
    for (const NSView* view = _superview; view; view = view->_superview)
        transform = CGAffineTransformConcat(transform, view->superviewFromView());
    return transform;
}

CGAffineTransform NSView::transformTo(const NSView* view) const
{
    if (view == this)
        return CGAffineTransformIdentity;
    if (!view)
        return windowFromView();
    if (view == _superview)
        return superviewFromView();
    if (view->_superview == this)
        return CGAffineTransformInvert(view->superviewFromView());
    return CGAffineTransformConcat(windowFromView(), CGAffineTransformInvert(view->windowFromView()));
}

NSPoint NSView::convertPointToView(NSPoint point, const NSView* view) const
{
    return CGPointApplyAffineTransform(point, transformTo(view));
}

NSPoint NSView::convertPointFromView(NSPoint point, const NSView* view) const
{
    return CGPointApplyAffineTransform(
        point, view ? view->transformTo(this) : CGAffineTransformInvert(windowFromView()));
}

NSSize NSView::convertSizeToView(NSSize size, const NSView* view) const
{
    const CGAffineTransform transform = transformTo(view);
    return {size.width * transform.a, size.height * std::fabs(transform.d)};
}

NSSize NSView::convertSizeFromView(NSSize size, const NSView* view) const
{
    const CGAffineTransform transform =
        view ? view->transformTo(this) : CGAffineTransformInvert(windowFromView());
    return {size.width * transform.a, size.height * std::fabs(transform.d)};
}

NSRect NSView::convertRectToView(NSRect rect, const NSView* view) const
{
    return CGRectApplyAffineTransform(rect, transformTo(view));
}

NSRect NSView::convertRectFromView(NSRect rect, const NSView* view) const
{
    return CGRectApplyAffineTransform(
        rect, view ? view->transformTo(this) : CGAffineTransformInvert(windowFromView()));
}

/// From this view's coordinates to pixels of the window's backing, or else of what is drawn into; y upward.
CGAffineTransform NSView::backingFromView() const
{
    const CGFloat scale = _window ? _window->backingScaleFactor() : ViewPainter::currentScale();
    return CGAffineTransformConcat(windowFromView(), CGAffineTransformMakeScale(scale, scale));
}

NSRect NSView::convertRectToBacking(NSRect rect) const
{
    return CGRectApplyAffineTransform(rect, backingFromView());
}

NSRect NSView::convertRectFromBacking(NSRect rect) const
{
    return CGRectApplyAffineTransform(rect, CGAffineTransformInvert(backingFromView()));
}

NSRect NSView::visibleRect() const
{
    if (isHiddenOrHasHiddenAncestor())
        return NSZeroRect;
    if (!_window)
        return _bounds;
    NSRect visible = _bounds;
    for (const NSView* ancestor = _superview; ancestor && !NSIsEmptyRect(visible);
         ancestor = ancestor->_superview)
        visible = NSIntersectionRect(visible, convertRectFromView(ancestor->_bounds, ancestor));
    return NSIsEmptyRect(visible) ? NSZeroRect : visible;
}
