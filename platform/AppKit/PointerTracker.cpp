#include "PointerTracker.h"

#include "Foundation/RunLoop.h"
#include "Host.h"
#include "SubviewIndex.h"

#include <algorithm>

namespace {

template <class T> bool contains(const std::vector<T>& list, const T& element)
{
    return std::find(list.begin(), list.end(), element) != list.end();
}

} // namespace

// Where the pointer is.

void PointerTracker::moveTo(const NSEvent& event, bool isButtonHeld)
{
    _position = Position{event.locationInWindow(), event.modifierFlags(), event.timestamp()};
    refresh(isButtonHeld);
}

void PointerTracker::refresh(bool isButtonHeld)
{
    _isButtonHeld = isButtonHeld;
    if (!_position)
        return;
    const Position position = *_position;
    enterAndExit(areasAt(position.location), position, isButtonHeld);
    if (!isButtonHeld && _position)
        updateCursor(position);
}

void PointerTracker::viewsDidChange()
{
    if (!_position || std::exchange(_refreshIsScheduled, true))
        return;
    RunLoopCore::main().post([this, weakWindow = WeakPtr<NSWindow>(&_window)] {
        const RetainPtr<NSWindow> window = weakWindow.lock();
        if (!window)
            return; // and so is this tracker
        _refreshIsScheduled = false;
        refresh(_isButtonHeld);
    });
}

void PointerTracker::leave(const NSEvent& event)
{
    _position.reset();
    forgetCursor();
    enterAndExit({}, {event.locationInWindow(), event.modifierFlags(), event.timestamp()}, false);
}

void PointerTracker::forget(const NSView* view)
{
    std::erase_if(_entered, [&](const TrackedArea& tracked) { return tracked.view == view; });
}

// Tracking areas.

std::vector<PointerTracker::TrackedArea> PointerTracker::areasAt(NSPoint location)
{
    // What views change now, in updateTrackingAreas, is taken into account at once.
    struct WithoutScheduling {
        bool& isScheduled;
        const bool wasScheduled;
        explicit WithoutScheduling(bool& flag)
            : isScheduled(flag)
            , wasScheduled(std::exchange(flag, true))
        {
        }
        WithoutScheduling(const WithoutScheduling&) = delete;
        WithoutScheduling& operator=(const WithoutScheduling&) = delete;
        ~WithoutScheduling() { isScheduled = wasScheduled; }
    } const scope(_refreshIsScheduled);
    std::vector<TrackedArea> areas;
    if (const RetainPtr<NSView> content = _window.contentView())
        collectAreas(*content, location, areas);
    return areas;
}

/// Adds the active areas of the view and its descendants that contain the point.
void PointerTracker::collectAreas(
    NSView& view, NSPoint pointInSuperview, std::vector<TrackedArea>& areas) const
{
    if (view.isHidden())
        return;
    const NSPoint point =
        CGPointApplyAffineTransform(pointInSuperview, CGAffineTransformInvert(view.superviewFromView()));
    if (!view.mouse(point, view.bounds()))
        return;
    view.ensureTracking();
    if (view._tracking) {
        for (const auto& area : view._tracking->areas) {
            TrackedArea tracked{area, &view};
            const bool isInside =
                (area->options() & NSTrackingInVisibleRect) || view.mouse(point, area->rect());
            if (isInside && isActive(tracked))
                areas.push_back(std::move(tracked));
        }
    }
    if (const auto* const index = view.subviewIndex()) {
        NSView::SubviewIndex::Found found;
        return index->forEach(
            {point, NSZeroSize}, found, [&](NSView& subview) { collectAreas(subview, point, areas); });
    }
    const auto subviews = view.subviews();
    for (const auto& subview : subviews)
        collectAreas(*subview, point, areas);
}

bool PointerTracker::isActive(const TrackedArea& tracked) const
{
    const NSTrackingAreaOptions options = tracked.area->options();
    return (options & NSTrackingActiveAlways)
        || ((options & NSTrackingActiveInKeyWindow) && _window.isActive())
        || ((options & NSTrackingActiveInActiveApp) && Host::shared().isActive())
        || ((options & NSTrackingActiveWhenFirstResponder) && _window.firstResponder() == tracked.view);
}

/// False once the area was removed or its view has left the window.
bool PointerTracker::isTracked(const TrackedArea& tracked) const
{
    return tracked.view->window() == &_window && contains(tracked.view->trackingAreas(), tracked.area);
}

void PointerTracker::enterAndExit(std::vector<TrackedArea> now, const Position& position, bool isButtonHeld)
{
    const auto reports = [&](const TrackedArea& tracked) {
        return !isButtonHeld || (tracked.area->options() & NSTrackingEnabledDuringMouseDrag);
    };
    std::vector<TrackedArea> exited, entered;
    for (const TrackedArea& tracked : _entered) {
        if (!contains(now, tracked) && reports(tracked) && isTracked(tracked))
            exited.push_back(tracked);
    }
    for (TrackedArea& tracked : now) {
        if (!contains(_entered, tracked) && reports(tracked))
            entered.push_back(std::move(tracked));
    }
    // The list is complete before anybody is notified, who may move the pointer on.
    std::erase_if(_entered,
        [&](const TrackedArea& tracked) { return contains(exited, tracked) || !isTracked(tracked); });
    _entered.insert(_entered.end(), entered.begin(), entered.end());

    std::reverse(exited.begin(), exited.end()); // subviews first
    for (const TrackedArea& tracked : exited) {
        if (tracked.area->options() & NSTrackingMouseEnteredAndExited)
            notify(tracked, NSEventTypeMouseExited, position);
    }
    for (const TrackedArea& tracked : entered) {
        if ((tracked.area->options() & NSTrackingMouseEnteredAndExited) && contains(_entered, tracked))
            notify(tracked, NSEventTypeMouseEntered, position);
    }
}

void PointerTracker::reportMove(NSEvent& event)
{
    const auto entered = _entered;
    for (const TrackedArea& tracked : entered) {
        if (!(tracked.area->options() & NSTrackingMouseMoved) || !contains(_entered, tracked))
            continue;
        if (const RetainPtr<NSResponder> owner = tracked.area->owner())
            owner->mouseMoved(&event);
    }
}

void PointerTracker::notify(const TrackedArea& tracked, NSEventType type, const Position& position) const
{
    const RetainPtr<NSEvent> event = NSEvent::enterExitEventWithType(type, position.location,
        position.modifierFlags, position.timestamp, _window.windowNumber(), tracked.area);
    _window.sendEvent(event);
}

// Cursors.

/// The first of the view under the pointer and its superviews that has a cursor there decides.
PointerTracker::CursorSource PointerTracker::cursorSourceAt(NSPoint location) const
{
    const RetainPtr<NSView> content = _window.contentView();
    const RetainPtr<NSView> hit = content ? content->hitTest(location) : nullptr;
    for (RetainPtr<NSView> view = hit; view; view = view->superview()) {
        if (!view->_tracking)
            continue;
        const NSPoint point = view->convertPointFromView(location, nullptr);
        const auto& rects = view->_tracking->cursorRects;
        for (auto rect = rects.rbegin(); rect != rects.rend(); ++rect) {
            if (view->mouse(point, rect->rect))
                return rect->cursor;
        }
        for (const auto& area : view->_tracking->areas) {
            const bool isInside =
                (area->options() & NSTrackingInVisibleRect) || view->mouse(point, area->rect());
            if ((area->options() & NSTrackingCursorUpdate) && isInside && isActive({area, view}))
                return area;
        }
    }
    return nullptr;
}

void PointerTracker::updateCursor(const Position& position)
{
    CursorSource source = cursorSourceAt(position.location);
    if (_cursorIsKnown && source == _cursorSource)
        return;
    _cursorSource = source;
    _cursorIsKnown = true;
    if (auto* const area = dynamic_cast<NSTrackingArea*>(source.get()))
        notify({area, nullptr}, NSEventTypeCursorUpdate, position);
    else if (auto* const cursor = dynamic_cast<NSCursor*>(source.get()))
        cursor->set();
    else
        NSCursor::arrowCursor()->set();
}
