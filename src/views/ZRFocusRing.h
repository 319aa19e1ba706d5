#pragma once

#include <AppKit/NSView.h>
#include <CoreGraphics/CGContext.h>

/// Whether a view shows that keys go to it: not after a press on it, which shows that by itself.
///
/// A view that can be operated by keys has one of these, and calls it from the methods of the same names.
class ZRFocusRing {
public:
    void becomeFirstResponder(NSView& view) { setVisible(view, true); }
    void resignFirstResponder(NSView& view) { setVisible(view, false); }
    void mouseDown(NSView& view) { setVisible(view, false); }
    void keyDown(NSView& view) { setVisible(view, true); }

    /// Draws the ring along the inside of a rectangle with corners of a radius, if the view is first
    /// responder of the key window and not used with the mouse: a white line and a black one inside of it,
    /// one point each, so that one of them contrasts with whatever is behind.
    void draw(CGContextRef context, const NSView& view, NSRect rect, CGFloat radius) const;

private:
    void setVisible(NSView& view, bool isVisible);

    bool _isVisible = false;
};
