// Fills within clips beside raw cairo. cairo intersects the outlines where we multiply the coverages.

#include "BenchmarkCanvas.h"

namespace {

void addRect(CGContextRef context, CGRect rect)
{
    CGContextAddRect(context, rect);
}
void addRect(cairo_t* cairo, CGRect rect)
{
    cairo_rectangle(cairo, rect.origin.x, rect.origin.y, rect.size.width, rect.size.height);
}

void addEllipse(CGContextRef context, CGRect rect)
{
    CGContextAddEllipseInRect(context, rect);
}

void fill(CGContextRef context)
{
    CGContextFillPath(context);
}
void fill(cairo_t* cairo)
{
    cairo_fill(cairo);
}

/// Draws within a clip that `addClip` outlines.
template <class AddClip, class Draw> void clipped(CGContextRef context, AddClip addClip, Draw draw)
{
    CGContextSaveGState(context);
    addClip();
    CGContextClip(context);
    draw();
    CGContextRestoreGState(context);
}
template <class AddClip, class Draw> void clipped(cairo_t* cairo, AddClip addClip, Draw draw)
{
    cairo_save(cairo);
    addClip();
    cairo_clip(cairo);
    draw();
    cairo_restore(cairo);
}

CGRect wholePixels(Size size)
{
    return CGRectInset(whole(size), 4, 4);
}

/// Lies across the edges of all the clips.
CGRect offset(Size size)
{
    return CGRectOffset(fractional(size), size.width / 6.0, size.height / 6.0);
}

void fillWhole(auto* context, Size size)
{
    addRect(context, whole(size));
    fill(context);
}

/// A ground and something on it.
void fillTwoRects(auto* context, Size size)
{
    fillWhole(context, size);
    addRect(context, offset(size));
    fill(context);
}

void fillEllipse(auto* context, Size size)
{
    addEllipse(context, offset(size));
    fill(context);
}

const bool registered = [] {
    addCase("clip/rectangle, fill ellipse", [](auto* context, Size size) {
        clipped(
            context, [=] { addRect(context, wholePixels(size)); }, [=] { fillEllipse(context, size); });
    });
    addCase("clip/rectangle between pixels, fill ellipse", [](auto* context, Size size) {
        clipped(
            context, [=] { addRect(context, fractional(size)); }, [=] { fillEllipse(context, size); });
    });
    addCase("clip/rectangle between pixels, fill 2 rectangles", [](auto* context, Size size) {
        clipped(
            context, [=] { addRect(context, fractional(size)); }, [=] { fillTwoRects(context, size); });
    });
    addCase("clip/ellipse, fill rectangle", [](auto* context, Size size) {
        clipped(
            context, [=] { addEllipse(context, fractional(size)); }, [=] { fillWhole(context, size); });
    });
    addCase("clip/ellipse, fill 2 rectangles", [](auto* context, Size size) {
        clipped(
            context, [=] { addEllipse(context, fractional(size)); }, [=] { fillTwoRects(context, size); });
    });
    addCase("clip/ellipse, fill ellipse", [](auto* context, Size size) {
        clipped(
            context, [=] { addEllipse(context, fractional(size)); }, [=] { fillEllipse(context, size); });
    });
    return true;
}();

} // namespace
