#pragma once

#include "Canvas.h"

#include <cairo.h>
#include <memory>
#include <numbers>

struct CairoDelete {
    void operator()(cairo_surface_t* object) const { cairo_surface_destroy(object); }
    void operator()(cairo_t* object) const { cairo_destroy(object); }
    void operator()(cairo_pattern_t* object) const { cairo_pattern_destroy(object); }
};
template <class T> using CairoPtr = std::unique_ptr<T, CairoDelete>;

/// An image surface of cairo's native format, 32-bit ARGB. The origin is at the upper left.
class CairoCanvas {
public:
    static constexpr const char* kLibrary = "cairo";

    explicit CairoCanvas(Size size, double alpha = 1)
        : _surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, size.width, size.height))
        , _cairo(cairo_create(_surface.get()))
    {
        constexpr double kTolerance = 0.02; // of curves, in pixels: that of our contexts
        cairo_set_tolerance(cairo(), kTolerance);
        cairo_set_source_rgba(cairo(), kColor[0], kColor[1], kColor[2], alpha);
        cairo_set_line_width(cairo(), kLineWidth);
    }

    cairo_t* cairo() const { return _cairo.get(); }
    cairo_surface_t* surface() const { return _surface.get(); }

private:
    CairoPtr<cairo_surface_t> _surface;
    CairoPtr<cairo_t> _cairo;
};

// Shapes that cairo has no function for.

inline void addRect(cairo_t* cairo, CGRect rect)
{
    cairo_rectangle(cairo, rect.origin.x, rect.origin.y, rect.size.width, rect.size.height);
}

/// The four cubics of an ellipse, as in our paths.
inline void addEllipse(cairo_t* cairo, CGRect rect)
{
    constexpr double kKappa = 0.5522847498; // control points of a quarter circle
    const double cx = CGRectGetMidX(rect);
    const double cy = CGRectGetMidY(rect);
    const double rx = rect.size.width / 2;
    const double ry = rect.size.height / 2;
    cairo_move_to(cairo, cx + rx, cy);
    cairo_curve_to(cairo, cx + rx, cy + kKappa * ry, cx + kKappa * rx, cy + ry, cx, cy + ry);
    cairo_curve_to(cairo, cx - kKappa * rx, cy + ry, cx - rx, cy + kKappa * ry, cx - rx, cy);
    cairo_curve_to(cairo, cx - rx, cy - kKappa * ry, cx - kKappa * rx, cy - ry, cx, cy - ry);
    cairo_curve_to(cairo, cx + kKappa * rx, cy - ry, cx + rx, cy - kKappa * ry, cx + rx, cy);
    cairo_close_path(cairo);
}

inline void addRoundedRect(cairo_t* cairo, CGRect rect, double radius)
{
    constexpr double kQuarter = std::numbers::pi / 2;
    const double left = CGRectGetMinX(rect) + radius;
    const double right = CGRectGetMaxX(rect) - radius;
    const double top = CGRectGetMinY(rect) + radius;
    const double bottom = CGRectGetMaxY(rect) - radius;
    cairo_new_sub_path(cairo);
    cairo_arc(cairo, right, bottom, radius, 0, kQuarter);
    cairo_arc(cairo, left, bottom, radius, kQuarter, 2 * kQuarter);
    cairo_arc(cairo, left, top, radius, 2 * kQuarter, 3 * kQuarter);
    cairo_arc(cairo, right, top, radius, 3 * kQuarter, 4 * kQuarter);
    cairo_close_path(cairo);
}

/// The shapes that several tables draw.
inline void fillRect(CairoCanvas& canvas, CGRect rect)
{
    addRect(canvas.cairo(), rect);
    cairo_fill(canvas.cairo());
}

inline void fillEllipse(CairoCanvas& canvas, CGRect rect)
{
    addEllipse(canvas.cairo(), rect);
    cairo_fill(canvas.cairo());
}
