// Images drawn into rectangles.

#include "Benchmarks.h"
#include "CairoCanvas.h"
#include "KorvidCanvas.h"
#include "QtCanvas.h"
#include "Table.h"

namespace {

constexpr const char* kTable = "image";

/// An image that is scaled to a rectangle, with linear interpolation.
struct ImageCase {
    std::string name;
    Size canvas;
    Size image;
    CGRect target;
    bool isShrunk = false; ///< with a filter over all samples that fall into a pixel
};

void drawKorvidImage(benchmark::State& state, const ImageCase& test)
{
    const KorvidCanvas canvas(test.canvas);
    const KorvidCanvas source(test.image);
    CGContextFillEllipseInRect(source.context(), whole(test.image));
    const auto image = adopt(CGBitmapContextCreateImage(source.context()));
    CGContextSetInterpolationQuality(
        canvas.context(), test.isShrunk ? kCGInterpolationDefault : kCGInterpolationLow);
    for (auto _ : state)
        CGContextDrawImage(canvas.context(), test.target, image);
}

void drawCairoImage(benchmark::State& state, const ImageCase& test)
{
    const CairoCanvas canvas(test.canvas);
    const CairoCanvas source(test.image);
    addEllipse(source.cairo(), whole(test.image));
    cairo_fill(source.cairo());
    cairo_t* cairo = canvas.cairo();
    const CGRect& target = test.target;
    for (auto _ : state) {
        cairo_save(cairo);
        addRect(cairo, target);
        cairo_translate(cairo, target.origin.x, target.origin.y);
        cairo_scale(cairo, target.size.width / test.image.width, target.size.height / test.image.height);
        cairo_set_source_surface(cairo, source.surface(), 0, 0);
        cairo_pattern_set_extend(cairo_get_source(cairo), CAIRO_EXTEND_PAD);
        cairo_pattern_set_filter(
            cairo_get_source(cairo), test.isShrunk ? CAIRO_FILTER_GOOD : CAIRO_FILTER_BILINEAR);
        cairo_fill(cairo);
        cairo_restore(cairo);
    }
}

void drawQtImage(benchmark::State& state, const ImageCase& test)
{
    QtCanvas canvas(test.canvas);
    QtCanvas source(test.image);
    source.painter().setBrush(source.color());
    source.painter().drawEllipse(qtRect(whole(test.image)));
    source.painter().end();
    const QImage image = source.image();
    canvas.painter().setRenderHint(QPainter::SmoothPixmapTransform);
    for (auto _ : state)
        canvas.painter().drawImage(qtRect(test.target), image);
}

void add(const ImageCase& test)
{
    const std::string name = test.name + "/" + nameOf(test.canvas);
    addBenchmark(kTable, name, KorvidCanvas::kLibrary,
        [test](benchmark::State& state) { drawKorvidImage(state, test); });
    addBenchmark(kTable, name, CairoCanvas::kLibrary,
        [test](benchmark::State& state) { drawCairoImage(state, test); });
    if (!test.isShrunk) // QPainter has no such filter
        addBenchmark(
            kTable, name, QtCanvas::kLibrary, [test](benchmark::State& state) { drawQtImage(state, test); });
}

} // namespace

void addImageBenchmarks()
{
    addTable({kTable, "Images",
        "An image of a quarter of the canvas's width and height, at its own size, pixel-aligned, or at twice "
        "its "
        "size; and an image of 800 x 600 pixels that is shrunk to the canvas with a filter over all its "
        "samples, "
        "which QPainter does not have."});
    for (const Size canvas : kSizes) {
        const Size image{canvas.width / 4, canvas.height / 4};
        const auto target = [image](int factor) {
            return CGRectMake(3, 3, image.width * factor, image.height * factor);
        };
        add({"own size", canvas, image, target(1)});
        add({"enlarged", canvas, image, target(2)});
    }
    constexpr Size kCanvas{400, 300};
    add({"shrunk", kCanvas, {800, 600}, whole(kCanvas), true});
}
