#include <AppKit/NSClipView.h>

#include <AppKit/NSEvent.h>

#include <algorithm>
#include <cmath>
#include <utility>

NSClipView::~NSClipView() = default;

void NSClipView::setDocumentView(RetainPtr<NSView> view)
{
    if (view == _documentView)
        return;
    if (const RetainPtr<NSView> old = std::move(_documentView))
        old->removeFromSuperview();
    _documentView = view;
    addSubview(std::move(view));
    scrollToPoint(documentRect().origin);
}

NSRect NSClipView::documentRect() const
{
    return _documentView ? _documentView->frame() : NSZeroRect;
}

NSRect NSClipView::documentVisibleRect() const
{
    if (!_documentView)
        return NSZeroRect;
    return NSIntersectionRect(convertRectToView(bounds(), _documentView), _documentView->bounds());
}

NSRect NSClipView::constrainBoundsRect(NSRect bounds) const
{
    if (!_documentView)
        return bounds;
    const NSRect document = documentRect();
    const auto within = [](CGFloat start, CGFloat least, CGFloat greatest) {
        return std::max(std::min(start, greatest), least);
    };
    bounds.origin.x = within(bounds.origin.x, NSMinX(document), NSMaxX(document) - bounds.size.width);
    bounds.origin.y = within(bounds.origin.y, NSMinY(document), NSMaxY(document) - bounds.size.height);
    return bounds;
}

void NSClipView::scrollToPoint(NSPoint point)
{
    setBoundsOrigin(constrainBoundsRect({point, bounds().size}).origin);
}

void NSClipView::scrollWheel(NSEvent* event)
{
    constexpr CGFloat kLine = 16;
    CGFloat x = event->scrollingDeltaX(), y = event->scrollingDeltaY();
    if (!event->hasPreciseScrollingDeltas()) {
        x *= kLine;
        y *= kLine;
    }
    if (event->modifierFlags() & NSEventModifierFlagShift && x == 0)
        std::swap(x, y);
    const NSPoint old = bounds().origin;
    scrollToPoint({old.x - x, isFlipped() ? old.y - y : old.y + y});
    if (NSEqualPoints(old, bounds().origin))
        NSView::scrollWheel(event);
}

void NSClipView::setFrameSize(NSSize size)
{
    NSView::setFrameSize(size);
    scrollToPoint(bounds().origin);
}

void NSClipView::subviewFrameDidChange(NSView* view)
{
    NSView::subviewFrameDidChange(view);
    if (view == _documentView)
        scrollToPoint(bounds().origin);
}

// A view's own part in it.

bool NSView::scrollRectToVisible(NSRect rect)
{
    NSView* ancestor = superview();
    while (ancestor && !dynamic_cast<NSClipView*>(ancestor))
        ancestor = ancestor->superview();
    auto* const clip = dynamic_cast<NSClipView*>(ancestor);
    if (!clip)
        return false;
    const NSRect wanted = convertRectToView(rect, clip);
    const NSRect visible = clip->bounds();
    // Of what is too large for it, the start becomes visible.
    const auto moved = [](CGFloat start, CGFloat length, CGFloat wantedStart, CGFloat wantedLength) {
        const CGFloat end = std::min(wantedStart + wantedLength, wantedStart + length);
        return std::min(std::max(start, end - length), wantedStart);
    };
    const NSPoint old = visible.origin;
    clip->scrollToPoint({moved(old.x, visible.size.width, wanted.origin.x, wanted.size.width),
        moved(old.y, visible.size.height, wanted.origin.y, wanted.size.height)});
    return !NSEqualPoints(old, clip->bounds().origin);
}
