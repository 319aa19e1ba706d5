#include "ViewTracking.h"

#include <AppKit/NSWindow.h>

#include <algorithm>

NSView::Tracking& NSView::tracking()
{
    if (!_tracking)
        _tracking = std::make_unique<Tracking>();
    return *_tracking;
}

/// Lets the view bring its tracking areas and cursor rectangles up to date, if its place has changed.
void NSView::ensureTracking()
{
    if (std::exchange(_trackingIsCurrent, true))
        return;
    const RetainPtr<NSView> keep = this;
    updateTrackingAreas();
    discardCursorRects();
    resetCursorRects();
}

const std::vector<RetainPtr<NSTrackingArea>>& NSView::trackingAreas() const
{
    static const std::vector<RetainPtr<NSTrackingArea>> none;
    return _tracking ? _tracking->areas : none;
}

void NSView::addTrackingArea(RetainPtr<NSTrackingArea> area)
{
    if (area)
        tracking().areas.push_back(std::move(area));
}

void NSView::removeTrackingArea(NSTrackingArea* area)
{
    if (!_tracking)
        return;
    const RetainPtr<NSTrackingArea> keep = area;
    std::erase(_tracking->areas, keep);
}

void NSView::updateTrackingAreas() { }

void NSView::addCursorRect(NSRect rect, RetainPtr<NSCursor> cursor)
{
    if (cursor)
        tracking().cursorRects.push_back({CGRectStandardize(rect), std::move(cursor)});
}

void NSView::discardCursorRects()
{
    if (_tracking)
        _tracking->cursorRects.clear();
}

void NSView::resetCursorRects() { }

void NSWindow::invalidateCursorRectsForView(NSView* view)
{
    if (view && view->window() == this)
        view->_trackingIsCurrent = false;
}
