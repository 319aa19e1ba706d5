#pragma once

#include "support/Canvas.h"

#include <AppKit/NSBitmapImageRep.h>
#include <AppKit/NSGraphicsContext.h>
#include <AppKit/NSView.h>
#include <Foundation/NSData.h>

/// Returns whether the view is marked for display, and clears the mark.
inline bool takeDisplayMark(NSView* view)
{
    const bool isMarked = view->needsDisplay();
    view->setNeedsDisplay(false);
    return isMarked;
}

/// A canvas to draw a view on: as many points as given, y upward, `scale` pixels for each. Every pixel is
/// green at first, so that erased pixels differ from untouched ones.
class Rendering {
public:
    Rendering(int width, int height, double scale = 1)
        : _scale(scale)
        , _canvas(static_cast<int>(width * scale), static_cast<int>(height * scale))
    {
        CGContextScaleCTM(context(), scale, scale);
        CGContextSetRGBFillColor(context(), 0, 1, 0, 1);
        CGContextFillRect(context(), CGRectMake(0, 0, width, height));
    }

    CGContextRef context() const { return _canvas.context(); }
    const Canvas& canvas() const { return _canvas; }

    /// Lets the view draw, its coordinates taken for the canvas's.
    void draw(NSView* view) { draw(view, view->bounds()); }
    void draw(NSView* view, NSRect dirtyRect)
    {
        const auto graphics = NSGraphicsContext::graphicsContextWithCGContext(context(), false);
        NSGraphicsContext::setCurrentContext(graphics);
        view->drawRect(dirtyRect);
        NSGraphicsContext::setCurrentContext(nullptr);
    }

    /// The pixel that holds a point.
    CanvasPixel at(double x, double y) const
    {
        return _canvas.pixel(
            static_cast<int>(x * _scale), _canvas.height() - 1 - static_cast<int>(y * _scale));
    }

    /// The canvas as the content of a PNG file.
    RetainPtr<NSData> png() const
    {
        const auto image = adopt(CGBitmapContextCreateImage(context()));
        return NSBitmapImageRep::initWithCGImage(image)->representationUsingType(
            NSBitmapImageFileTypePNG, nullptr);
    }

private:
    double _scale;
    Canvas _canvas;
};
