// Images beside raw cairo.

#include "BenchmarkCanvas.h"

namespace {

/// An image that is stretched over a rectangle.
struct ImageCase {
    Size canvas;
    Size image;
    CGRect target;
    CGInterpolationQuality quality;
    cairo_filter_t filter; ///< what gives cairo the same quality
};

void drawOurImage(benchmark::State& state, const ImageCase& test)
{
    const Ours canvas(test.canvas);
    const Ours source(test.image);
    CGContextFillEllipseInRect(source.context.get(), whole(test.image));
    const auto picture = adopt(CGBitmapContextCreateImage(source.context.get()));
    CGContextSetInterpolationQuality(canvas.context.get(), test.quality);
    for (auto _ : state)
        CGContextDrawImage(canvas.context.get(), test.target, picture.get());
}

void drawCairosImage(benchmark::State& state, const ImageCase& test)
{
    const Cairo canvas(test.canvas);
    const Cairo source(test.image);
    addEllipse(source.cairo.get(), whole(test.image));
    cairo_fill(source.cairo.get());
    cairo_t* cairo = canvas.cairo.get();
    const CGRect& target = test.target;
    for (auto _ : state) {
        cairo_save(cairo);
        cairo_rectangle(cairo, target.origin.x, target.origin.y, target.size.width, target.size.height);
        cairo_translate(cairo, target.origin.x, target.origin.y + target.size.height);
        cairo_scale(cairo, target.size.width / test.image.width, -target.size.height / test.image.height);
        cairo_set_source_surface(cairo, source.surface.get(), 0, 0);
        cairo_pattern_set_extend(cairo_get_source(cairo), CAIRO_EXTEND_PAD);
        cairo_pattern_set_filter(cairo_get_source(cairo), test.filter);
        cairo_fill(cairo);
        cairo_restore(cairo);
    }
}

void addImageCase(const std::string& name, const ImageCase& test)
{
    const std::string place = name + "/" + nameOf(test.canvas);
    benchmark::RegisterBenchmark(
        (place + "/ours").c_str(), [=](benchmark::State& state) { drawOurImage(state, test); });
    benchmark::RegisterBenchmark(
        (place + "/cairo").c_str(), [=](benchmark::State& state) { drawCairosImage(state, test); });
}

const bool registered = [] {
    for (const Size canvas : kSizes) {
        const Size image{canvas.width / 4, canvas.height / 4};
        const auto target = [=](int factor) {
            return CGRectMake(3, 3, image.width * factor, image.height * factor);
        };
        addImageCase(
            "image/pixel on pixel", {canvas, image, target(1), kCGInterpolationLow, CAIRO_FILTER_BILINEAR});
        addImageCase(
            "image/stretched", {canvas, image, target(2), kCGInterpolationLow, CAIRO_FILTER_BILINEAR});
    }
    const Size canvas{400, 300};
    addImageCase("image/shrunk from 800x600",
        {canvas, {800, 600}, whole(canvas), kCGInterpolationDefault, CAIRO_FILTER_GOOD});
    return true;
}();

} // namespace
