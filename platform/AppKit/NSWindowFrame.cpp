#include "Foundation/RunLoop.h"
#include "Host.h"

#include <AppKit/NSScreen.h>
#include <AppKit/NSWindow.h>
#include <Foundation/CFDate.h>
#include <Foundation/NSTimer.h>

#include <algorithm>
#include <cmath>

namespace {

/// The farthest that an edge of `a` is from that of `b`.
CGFloat greatestDifference(NSRect a, NSRect b)
{
    return std::max({std::fabs(NSMinX(a) - NSMinX(b)), std::fabs(NSMaxX(a) - NSMaxX(b)),
        std::fabs(NSMinY(a) - NSMinY(b)), std::fabs(NSMaxY(a) - NSMaxY(b))});
}

/// The rectangle at `progress` of 0 to 1 from `a` to `b`.
NSRect between(NSRect a, NSRect b, CGFloat progress)
{
    const auto mix = [progress](CGFloat from, CGFloat to) { return from + (to - from) * progress; };
    return NSMakeRect(mix(a.origin.x, b.origin.x), mix(a.origin.y, b.origin.y),
        mix(a.size.width, b.size.width), mix(a.size.height, b.size.height));
}

} // namespace

void NSWindow::setFrame(NSRect frame, bool display)
{
    setFrame(frame, display, false);
}

void NSWindow::setFrame(NSRect frame, bool display, bool animate)
{
    endAnimation();
    const NSTimeInterval duration = animate && isVisible() ? animationResizeTime(frame) : 0;
    if (!(duration > 0))
        return moveToFrame(frame, display);

    constexpr NSTimeInterval kInterval = 1 / 60.0;
    constexpr NSTimeInterval kTolerance = 1e-6; // of the sum of intervals
    const NSRect start = this->frame();
    const NSTimeInterval begin = CFAbsoluteTimeGetCurrent();
    // The window ends the timer when it is destroyed, so the block may refer to it.
    _animation = NSTimer::timerWithTimeInterval(kInterval, true, [=, this](NSTimer*) {
        const NSTimeInterval elapsed = CFAbsoluteTimeGetCurrent() - begin;
        const bool isLast = !(elapsed < duration - kTolerance) || !isVisible();
        const CGFloat time = isLast ? 1 : std::max(elapsed / duration, 0.0);
        if (isLast)
            endAnimation();
        const CGFloat eased = time * time * (3 - 2 * time);
        moveToFrame(isLast ? frame : between(start, frame, eased), display);
    });
    NSRunLoop::mainRunLoop()->addTimer(_animation, NSRunLoopCommonModes);
}

NSTimeInterval NSWindow::animationResizeTime(NSRect frame) const
{
    constexpr NSTimeInterval kTime = 0.2;
    constexpr CGFloat kDistance = 150;
    return kTime * greatestDifference(this->frame(), frame) / kDistance;
}

void NSWindow::moveToFrame(NSRect frame, bool display)
{
    const RetainPtr<NSWindow> keep = this;
    setContentRect(contentRectForFrameRect(frame));
    if (display)
        displayIfNeeded();
}

void NSWindow::endAnimation()
{
    if (const RetainPtr<NSTimer> timer = std::move(_animation))
        timer->invalidate();
}

// Backing and screen.

NSRect NSWindow::convertRectToBacking(NSRect rect) const
{
    const CGFloat scale = backingScaleFactor();
    return CGRectApplyAffineTransform(rect, CGAffineTransformMakeScale(scale, scale));
}

NSRect NSWindow::convertRectFromBacking(NSRect rect) const
{
    const CGFloat scale = 1 / backingScaleFactor();
    return CGRectApplyAffineTransform(rect, CGAffineTransformMakeScale(scale, scale));
}

RetainPtr<NSScreen> NSWindow::screen() const
{
    const NSRect frame = this->frame();
    RetainPtr<NSScreen> found;
    CGFloat largest = 0;
    for (const auto& screen : NSScreen::screens()) {
        const NSSize shared = NSIntersectionRect(screen->frame(), frame).size;
        if (shared.width * shared.height > largest) {
            largest = shared.width * shared.height;
            found = screen;
        }
    }
    return found;
}

// Layout.

void NSWindow::scheduleLayout()
{
    if (std::exchange(_layoutIsScheduled, true))
        return;
    RunLoopCore::main().post([weakWindow = WeakPtr<NSWindow>(this)] {
        const RetainPtr<NSWindow> window = weakWindow.lock();
        if (!window)
            return;
        window->_layoutIsScheduled = false;
        if (const RetainPtr<NSView> view = window->_contentView)
            view->layoutSubtreeIfNeeded();
    });
}
