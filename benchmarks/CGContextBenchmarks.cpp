// Fills and strokes beside raw cairo.

#include "BenchmarkCanvas.h"

namespace {

void fillRect(CGContextRef context, Size size)
{
    CGContextFillRect(context, whole(size));
}
void fillRect(cairo_t* cairo, Size size)
{
    cairo_rectangle(cairo, 0, 0, size.width, size.height);
    cairo_fill(cairo);
}

void fillFractionalRect(CGContextRef context, Size size)
{
    CGContextFillRect(context, fractional(size));
}
void fillFractionalRect(cairo_t* cairo, Size size)
{
    const CGRect rect = fractional(size);
    cairo_rectangle(cairo, rect.origin.x, rect.origin.y, rect.size.width, rect.size.height);
    cairo_fill(cairo);
}

void fillEllipse(CGContextRef context, Size size)
{
    CGContextFillEllipseInRect(context, fractional(size));
}
void fillEllipse(cairo_t* cairo, Size size)
{
    addEllipse(cairo, fractional(size));
    cairo_fill(cairo);
}

void strokeEllipse(CGContextRef context, Size size)
{
    CGContextStrokeEllipseInRect(context, fractional(size));
}
void strokeEllipse(cairo_t* cairo, Size size)
{
    addEllipse(cairo, fractional(size));
    cairo_stroke(cairo);
}

void strokeRect(CGContextRef context, Size size)
{
    CGContextStrokeRect(context, fractional(size));
}
void strokeRect(cairo_t* cairo, Size size)
{
    const CGRect rect = fractional(size);
    cairo_rectangle(cairo, rect.origin.x, rect.origin.y, rect.size.width, rect.size.height);
    cairo_stroke(cairo);
}

void strokeZigzag(CGContextRef context, Size size)
{
    CGContextMoveToPoint(context, 0, 0);
    for (int i = 1; i <= 20; ++i)
        CGContextAddLineToPoint(context, size.width * i / 20.0, i % 2 ? size.height : 0);
    CGContextStrokePath(context);
}
void strokeZigzag(cairo_t* cairo, Size size)
{
    cairo_move_to(cairo, 0, 0);
    for (int i = 1; i <= 20; ++i)
        cairo_line_to(cairo, size.width * i / 20.0, i % 2 ? size.height : 0);
    cairo_stroke(cairo);
}

const bool registered = [] {
    addCase("fill/rectangle", [](auto* context, Size size) { fillRect(context, size); });
    addCase(
        "fill/rectangle between pixels", [](auto* context, Size size) { fillFractionalRect(context, size); });
    addCase("fill/ellipse", [](auto* context, Size size) { fillEllipse(context, size); });
    addCase("stroke/rectangle", [](auto* context, Size size) { strokeRect(context, size); });
    addCase("stroke/ellipse", [](auto* context, Size size) { strokeEllipse(context, size); });
    addCase("stroke/zigzag", [](auto* context, Size size) { strokeZigzag(context, size); });
    benchmark::AddCustomContext("cairo", cairo_version_string());
    return true;
}();

} // namespace
