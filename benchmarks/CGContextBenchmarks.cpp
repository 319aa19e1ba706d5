// Bitmap contexts beside raw cairo, which draws the same shapes into memory of the same size at the quality
// settings that the contexts use (tolerance 0.02, default antialiasing).

#include <CoreGraphics/CoreGraphics.h>

#include <benchmark/benchmark.h>
#include <cairo.h>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr double kTolerance = 0.02;

struct Size {
    int width;
    int height;
};
constexpr Size kSizes[]{{60, 24}, {400, 300}, {1920, 1080}};

/// Our context and cairo's, each on pixels of its own.
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
void addEllipse(cairo_t* cairo, CGRect rect)
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

CGRect whole(Size size)
{
    return CGRectMake(0, 0, size.width, size.height);
}
CGRect fractional(Size size)
{
    return CGRectMake(2.3, 3.6, size.width - 5.1, size.height - 7.4);
}

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

void clipRect(CGContextRef context, Size size)
{
    CGContextSaveGState(context);
    CGContextClipToRect(context, CGRectMake(4, 4, size.width - 8, size.height - 8));
    CGContextFillEllipseInRect(context, fractional(size));
    CGContextRestoreGState(context);
}
void clipRect(cairo_t* cairo, Size size)
{
    cairo_save(cairo);
    cairo_rectangle(cairo, 4, 4, size.width - 8, size.height - 8);
    cairo_clip(cairo);
    addEllipse(cairo, fractional(size));
    cairo_fill(cairo);
    cairo_restore(cairo);
}

void clipEllipse(CGContextRef context, Size size)
{
    CGContextSaveGState(context);
    CGContextAddEllipseInRect(context, fractional(size));
    CGContextClip(context);
    CGContextFillRect(context, whole(size));
    CGContextRestoreGState(context);
}
void clipEllipse(cairo_t* cairo, Size size)
{
    cairo_save(cairo);
    addEllipse(cairo, fractional(size));
    cairo_clip(cairo);
    cairo_rectangle(cairo, 0, 0, size.width, size.height);
    cairo_fill(cairo);
    cairo_restore(cairo);
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
        const std::string place = "/" + std::to_string(size.width) + "x" + std::to_string(size.height);
        benchmark::RegisterBenchmark(
            (name + place + "/ours").c_str(), [=](benchmark::State& state) { ours(state, size, draw); });
        benchmark::RegisterBenchmark(
            (name + place + "/cairo").c_str(), [=](benchmark::State& state) { cairos(state, size, draw); });
    }
}

// Images: a quarter of the canvas's width and height, pixel on pixel, and stretched to twice that.

struct ImageCase {
    Size size;
    bool stretched;

    int width() const { return size.width / 4; }
    int height() const { return size.height / 4; }
    CGRect target() const
    {
        const int factor = stretched ? 2 : 1;
        return CGRectMake(3, 3, width() * factor, height() * factor);
    }
};

void drawOurImage(benchmark::State& state, ImageCase image)
{
    const Ours canvas(image.size);
    const Ours source({image.width(), image.height()});
    CGContextFillEllipseInRect(source.context.get(), whole({image.width(), image.height()}));
    const auto picture = adopt(CGBitmapContextCreateImage(source.context.get()));
    CGContextSetInterpolationQuality(canvas.context.get(), kCGInterpolationLow);
    for (auto _ : state)
        CGContextDrawImage(canvas.context.get(), image.target(), picture.get());
}

void drawCairosImage(benchmark::State& state, ImageCase image)
{
    const Cairo canvas(image.size);
    const Cairo source({image.width(), image.height()});
    addEllipse(source.cairo.get(), whole({image.width(), image.height()}));
    cairo_fill(source.cairo.get());
    cairo_t* cairo = canvas.cairo.get();
    const CGRect target = image.target();
    for (auto _ : state) {
        cairo_save(cairo);
        cairo_rectangle(cairo, target.origin.x, target.origin.y, target.size.width, target.size.height);
        cairo_translate(cairo, target.origin.x, target.origin.y + target.size.height);
        cairo_scale(cairo, target.size.width / image.width(), -target.size.height / image.height());
        cairo_set_source_surface(cairo, source.surface.get(), 0, 0);
        cairo_pattern_set_extend(cairo_get_source(cairo), CAIRO_EXTEND_PAD);
        cairo_pattern_set_filter(cairo_get_source(cairo), CAIRO_FILTER_BILINEAR);
        cairo_fill(cairo);
        cairo_restore(cairo);
    }
}

// The squares of a QR code of 41 modules in a canvas of 200 pixels, modules between pixels.

constexpr int kModules = 41;
constexpr Size kCodeSize{200, 200};
constexpr double kModule = 190.0 / kModules;

std::vector<CGRect> darkModules()
{
    std::mt19937 random(41);
    std::vector<CGRect> squares;
    for (int y = 0; y < kModules; ++y) {
        for (int x = 0; x < kModules; ++x) {
            if (random() % 2)
                squares.push_back(CGRectMake(x, y, 1, 1));
        }
    }
    return squares;
}

void fillOurSquares(benchmark::State& state)
{
    const Ours canvas(kCodeSize);
    CGContextRef context = canvas.context.get();
    const auto squares = darkModules();
    const auto path = adopt(CGPathCreateMutable());
    CGPathAddRects(path.get(), nullptr, squares.data(), squares.size());
    CGContextTranslateCTM(context, 5, 195);
    CGContextScaleCTM(context, kModule, -kModule);
    for (auto _ : state) {
        CGContextAddPath(context, path.get());
        CGContextFillPath(context);
    }
    state.counters["squares"] = static_cast<double>(squares.size());
}

void fillCairosSquares(benchmark::State& state)
{
    const Cairo canvas(kCodeSize);
    cairo_t* cairo = canvas.cairo.get();
    const auto squares = darkModules();
    cairo_translate(cairo, 5, 195);
    cairo_scale(cairo, kModule, -kModule);
    for (auto _ : state) {
        for (const CGRect& square : squares)
            cairo_rectangle(cairo, square.origin.x, square.origin.y, 1, 1);
        cairo_fill(cairo);
    }
    state.counters["squares"] = static_cast<double>(squares.size());
}

const bool registered = [] {
    addCase("fill/rectangle", [](auto* context, Size size) { fillRect(context, size); });
    addCase(
        "fill/rectangle between pixels", [](auto* context, Size size) { fillFractionalRect(context, size); });
    addCase("fill/ellipse", [](auto* context, Size size) { fillEllipse(context, size); });
    addCase("stroke/rectangle", [](auto* context, Size size) { strokeRect(context, size); });
    addCase("stroke/ellipse", [](auto* context, Size size) { strokeEllipse(context, size); });
    addCase("stroke/zigzag", [](auto* context, Size size) { strokeZigzag(context, size); });
    addCase("clip/rectangle, fill ellipse", [](auto* context, Size size) { clipRect(context, size); });
    addCase("clip/ellipse, fill rectangle", [](auto* context, Size size) { clipEllipse(context, size); });
    for (const Size size : kSizes) {
        for (const bool stretched : {false, true}) {
            const std::string name = std::string("image/") + (stretched ? "stretched" : "pixel on pixel")
                + "/" + std::to_string(size.width) + "x" + std::to_string(size.height);
            const ImageCase image{size, stretched};
            benchmark::RegisterBenchmark(
                (name + "/ours").c_str(), [=](benchmark::State& state) { drawOurImage(state, image); });
            benchmark::RegisterBenchmark(
                (name + "/cairo").c_str(), [=](benchmark::State& state) { drawCairosImage(state, image); });
        }
    }
    benchmark::RegisterBenchmark("squares/41 modules, 200 pixels/ours", fillOurSquares);
    benchmark::RegisterBenchmark("squares/41 modules, 200 pixels/cairo", fillCairosSquares);
    benchmark::AddCustomContext("cairo", cairo_version_string());
    return true;
}();

} // namespace
