#pragma once

#include <AppKit/NSGraphicsContext.h>
#include <AppKit/NSView.h>

/// Draws a tree of views into a context.
///
/// Each view is clipped to its bounds and those above it, widened to whole pixels: at a fractional scale a
/// shape that fills its view keeps its soft edge, and a part that is drawn alone gets the very pixels that it
/// has in the whole.
class ViewPainter {
public:
    /// The context's graphics state is as before after each call; it must not change in between.
    explicit ViewPainter(CGContextRef context);
    ViewPainter(const ViewPainter&) = delete;
    ViewPainter& operator=(const ViewPainter&) = delete;
    /// Makes the NSGraphicsContext current again that was so before.
    ~ViewPainter();

    /// Draws what `view` and the views in it have within `clip`, pixels of device space with whole edges.
    void draw(NSView& view, CGAffineTransform userFromView, CGRect clip);

    /// The smallest rectangle with whole edges around one of user space, in device space.
    CGRect pixelsAround(CGRect rect) const;

private:
    NSGraphicsContext* graphicsContext(bool flipped);

    CGContextRef _context;
    const CGAffineTransform _deviceFromUser;
    const CGAffineTransform _userFromDevice;
    const RetainPtr<NSGraphicsContext> _previous;
    RetainPtr<NSGraphicsContext> _upright;
    RetainPtr<NSGraphicsContext> _flipped;
};
