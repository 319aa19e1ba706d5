#include <AppKit/NSView.h>
#include <AppKit/NSWindow.h>

#include <cmath>

namespace {

CGFloat finite(CGFloat number)
{
    return std::isfinite(number) ? number : 0;
}

NSPoint finite(NSPoint point)
{
    return {finite(point.x), finite(point.y)};
}

NSSize positive(NSSize size)
{
    return {std::fmax(finite(size.width), 0), std::fmax(finite(size.height), 0)};
}

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

} // namespace

NSView::NSView(NSRect frame)
    : _frame{finite(frame.origin), positive(frame.size)}
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
    origin = finite(origin);
    if (NSEqualPoints(origin, _frame.origin))
        return;
    const NSRect old = _frame;
    _frame.origin = origin;
    setNeedsDisplayInSuperview(old);
    setNeedsDisplayInSuperview(_frame);
}

void NSView::setFrameSize(NSSize size)
{
    size = positive(size);
    if (NSEqualSizes(size, _frame.size))
        return;
    const NSRect old = _frame;
    const NSSize oldBoundsSize = _bounds.size;
    _frame.size = size;
    _bounds.size = {size.width / _scale.width, size.height / _scale.height};
    _needsDisplay = true;
    setNeedsDisplayInSuperview(old);
    setNeedsDisplayInSuperview(_frame);
    if (_autoresizesSubviews)
        resizeSubviewsWithOldSize(oldBoundsSize);
}

void NSView::setBounds(NSRect bounds)
{
    setBoundsOrigin(bounds.origin);
    setBoundsSize(bounds.size);
}

void NSView::setBoundsOrigin(NSPoint origin)
{
    origin = finite(origin);
    if (NSEqualPoints(origin, _bounds.origin))
        return;
    _bounds.origin = origin;
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
    if (wider || higher)
        setNeedsDisplay(true);
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

    const NSRect shared = NSMakeRect(
        _superview->_bounds.origin.x + x.start, _superview->_bounds.origin.y + y.start, x.length, y.length);
    const NSRect pixels = _superview->convertRectToBacking(shared);
    const CGFloat minX = std::round(NSMinX(pixels));
    const CGFloat minY = std::round(NSMinY(pixels));
    const NSRect aligned = _superview->convertRectFromBacking(
        NSMakeRect(minX, minY, std::round(NSMaxX(pixels)) - minX, std::round(NSMaxY(pixels)) - minY));
    constexpr NSAutoresizingMaskOptions horizontal = NSViewMinXMargin | NSViewWidthSizable | NSViewMaxXMargin;
    constexpr NSAutoresizingMaskOptions vertical = NSViewMinYMargin | NSViewHeightSizable | NSViewMaxYMargin;
    NSRect frame = _frame;
    if (flexible(horizontal)) {
        frame.origin.x = aligned.origin.x;
        frame.size.width = aligned.size.width;
    }
    if (flexible(vertical)) {
        frame.origin.y = aligned.origin.y;
        frame.size.height = aligned.size.height;
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

NSRect NSView::convertRectToBacking(NSRect rect) const
{
    const CGFloat scale = _window ? _window->backingScaleFactor() : 1;
    return CGRectApplyAffineTransform(
        convertRectToView(rect, nullptr), CGAffineTransformMakeScale(scale, scale));
}

NSRect NSView::convertRectFromBacking(NSRect rect) const
{
    const CGFloat scale = _window ? 1 / _window->backingScaleFactor() : 1;
    return convertRectFromView(
        CGRectApplyAffineTransform(rect, CGAffineTransformMakeScale(scale, scale)), nullptr);
}

NSRect NSView::visibleRect() const
{
    NSRect visible = _bounds;
    for (const NSView* ancestor = _superview; ancestor && !NSIsEmptyRect(visible);
         ancestor = ancestor->_superview)
        visible = NSIntersectionRect(visible, convertRectFromView(ancestor->_bounds, ancestor));
    return NSIsEmptyRect(visible) ? NSZeroRect : visible;
}
