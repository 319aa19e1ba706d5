#pragma once

// Our bitmap context and raw cairo, side by side: cairo draws the same shapes into memory of the same size at
// the quality settings that the contexts use (tolerance 0.02, default antialiasing).

#include <CoreGraphics/CoreGraphics.h>

#include <benchmark/benchmark.h>
#include <cairo.h>
#include <memory>
#include <string>

constexpr double kTolerance = 0.02;

struct Size {
    int width;
    int height;
};
constexpr Size kSizes[]{{60, 24}, {400, 300}, {1920, 1080}};

inline std::string nameOf(Size size)
{
    return std::to_string(size.width) + "x" + std::to_string(size.height);
}

/// Our context, on pixels of its own.
struct Ours {
    explicit Ours(Size size)
        : space(adopt(CGColorSpaceCreateDeviceRGB()))
        , context(adopt(CGBitmapContextCreate(nullptr, static_cast<std::size_t>(size.width),
              static_cast<std::size_t>(size.height), 8, 0, space.get(), kCGImageAlphaPremultipliedLast)))
    {
        CGContextSetRGBFillColor(context.get(), 0.2, 0.4, 0.6, 0.9);
        CGContextSetRGBStrokeColor(context.get(), 0.2, 0.4, 0.6, 0.9);
        CGContextSetLineWidth(context.get(), 3);
    }
    RetainPtr<CGColorSpace> space;
    RetainPtr<CGContext> context;
};

/// cairo's, likewise.
struct Cairo {
    explicit Cairo(Size size)
        : surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, size.width, size.height))
        , cairo(cairo_create(surface.get()))
    {
        cairo_set_tolerance(cairo.get(), kTolerance);
        cairo_set_source_rgba(cairo.get(), 0.6, 0.4, 0.2, 0.9);
        cairo_set_line_width(cairo.get(), 3);
        // User space with y upward, like ours.
        cairo_translate(cairo.get(), 0, size.height);
        cairo_scale(cairo.get(), 1, -1);
    }
    struct Delete {
        void operator()(cairo_surface_t* object) const { cairo_surface_destroy(object); }
        void operator()(cairo_t* object) const { cairo_destroy(object); }
        void operator()(cairo_pattern_t* object) const { cairo_pattern_destroy(object); }
    };
    std::unique_ptr<cairo_surface_t, Delete> surface;
    std::unique_ptr<cairo_t, Delete> cairo;
};

/// The four cubics that stand for an ellipse, as our paths have them.
inline void addEllipse(cairo_t* cairo, CGRect rect)
{
    constexpr double kKappa = 0.5522847498;
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

inline CGRect whole(Size size)
{
    return CGRectMake(0, 0, size.width, size.height);
}
inline CGRect fractional(Size size)
{
    return CGRectMake(2.3, 3.6, size.width - 5.1, size.height - 7.4);
}

template <class Draw> void ours(benchmark::State& state, Size size, Draw draw)
{
    const Ours canvas(size);
    for (auto _ : state)
        draw(canvas.context.get(), size);
}

template <class Draw> void cairos(benchmark::State& state, Size size, Draw draw)
{
    const Cairo canvas(size);
    for (auto _ : state)
        draw(canvas.cairo.get(), size);
    cairo_surface_flush(canvas.surface.get());
}

/// Both sides of one case at each size.
template <class Draw> void addCase(const std::string& name, Draw draw)
{
    for (const Size size : kSizes) {
        const std::string place = name + "/" + nameOf(size);
        benchmark::RegisterBenchmark(
            (place + "/ours").c_str(), [=](benchmark::State& state) { ours(state, size, draw); });
        benchmark::RegisterBenchmark(
            (place + "/cairo").c_str(), [=](benchmark::State& state) { cairos(state, size, draw); });
    }
}
