// Images drawn into rectangles.

#include "Benchmarks.h"
#include "CairoCanvas.h"
#include "KorvidCanvas.h"
#include "QtCanvas.h"
#include "Table.h"

#include <cmath>

namespace {

constexpr const char* kTable = "image";
constexpr Size kPicture{800, 600};
/// In pixels: without it, QPainter draws an image of its own size at whole pixels.
constexpr double kLeastStretch = 0.01;

/// How an image becomes smaller.
enum class Shrinking : std::uint8_t {
    Linear, ///< interpolated between four samples
    Mean,   ///< with a filter over all samples that fall into a pixel
};

/// An ellipse on a transparent or an opaque background, drawn into a rectangle.
struct ImageCase {
    std::string name;
    Size canvas;
    Size image;
    CGRect target;
    Shrinking shrinking = Shrinking::Linear;
    bool isOpaque = false;
    double angle = 0; ///< radians by which the coordinates are turned
    /// Whether the image has its own size and lies between pixels.
    bool isShifted() const
    {
        return target.size.width == image.width && target.origin.x != std::floor(target.origin.x);
    }
};

void drawKorvidImage(benchmark::State& state, const ImageCase& test)
{
    const KorvidCanvas canvas(test.canvas);
    const KorvidCanvas source(test.image);
    CGContextFillEllipseInRect(source.context(), whole(test.image));
    if (test.isOpaque) {
        CGContextSetBlendMode(source.context(), kCGBlendModeDestinationOver);
        CGContextSetGrayFillColor(source.context(), 1, 1);
        CGContextFillRect(source.context(), whole(test.image));
    }
    const auto image = adopt(CGBitmapContextCreateImage(source.context()));
    CGContextSetInterpolationQuality(
        canvas.context(), test.shrinking == Shrinking::Mean ? kCGInterpolationDefault : kCGInterpolationLow);
    CGContextRotateCTM(canvas.context(), test.angle);
    for (auto _ : state)
        CGContextDrawImage(canvas.context(), test.target, image);
}

void drawCairoImage(benchmark::State& state, const ImageCase& test)
{
    const CairoCanvas canvas(test.canvas);
    const CairoCanvas source(test.image);
    if (test.isOpaque) {
        cairo_save(source.cairo());
        cairo_set_source_rgb(source.cairo(), 1, 1, 1);
        cairo_paint(source.cairo());
        cairo_restore(source.cairo());
    }
    addEllipse(source.cairo(), whole(test.image));
    cairo_fill(source.cairo());
    cairo_t* cairo = canvas.cairo();
    const CGRect& target = test.target;
    cairo_rotate(cairo, test.angle);
    for (auto _ : state) {
        cairo_save(cairo);
        addRect(cairo, target);
        cairo_translate(cairo, target.origin.x, target.origin.y);
        cairo_scale(cairo, target.size.width / test.image.width, target.size.height / test.image.height);
        cairo_set_source_surface(cairo, source.surface(), 0, 0);
        cairo_pattern_set_extend(cairo_get_source(cairo), CAIRO_EXTEND_PAD);
        cairo_pattern_set_filter(cairo_get_source(cairo),
            test.shrinking == Shrinking::Mean ? CAIRO_FILTER_GOOD : CAIRO_FILTER_BILINEAR);
        cairo_fill(cairo);
        cairo_restore(cairo);
    }
}

void drawQtImage(benchmark::State& state, const ImageCase& test)
{
    QtCanvas canvas(test.canvas);
    QtCanvas source(test.image);
    if (test.isOpaque)
        source.painter().fillRect(qtRect(whole(test.image)), Qt::white);
    source.painter().setBrush(source.color());
    source.painter().drawEllipse(qtRect(whole(test.image)));
    source.painter().end();
    const QImage image = source.image();
    canvas.painter().setRenderHint(QPainter::SmoothPixmapTransform);
    canvas.painter().rotate(test.angle * 180 / std::numbers::pi);
    QRectF target = qtRect(test.target);
    if (test.isShifted())
        target.setWidth(target.width() + kLeastStretch);
    for (auto _ : state)
        canvas.painter().drawImage(target, image);
}

void add(const ImageCase& test)
{
    addBenchmark(kTable, test.name, KorvidCanvas::kLibrary,
        [test](benchmark::State& state) { drawKorvidImage(state, test); });
    addBenchmark(kTable, test.name, CairoCanvas::kLibrary,
        [test](benchmark::State& state) { drawCairoImage(state, test); });
    const bool isOther = test.shrinking == Shrinking::Mean || test.isShifted();
    addBenchmark(kTable, test.name, isOther ? "Qt, linear" : QtCanvas::kLibrary,
        [test](benchmark::State& state) { drawQtImage(state, test); });
}

/// A picture of 800 x 600 pixels, drawn into a canvas in which it has some room.
void addPictures(const std::string& kind, bool isOpaque)
{
    constexpr Size kCanvas{820, 620};
    constexpr CGRect kReduced{{10.3, 12.4}, {317, 211}};
    constexpr CGRect kHalf{{10, 12}, {400, 300}};
    const auto addPicture = [&](const char* name, CGRect target, Shrinking shrinking, double angle = 0) {
        add({kind + ", " + name, kCanvas, kPicture, target, shrinking, isOpaque, angle});
    };
    addPicture("own size", CGRectMake(10, 12, kPicture.width, kPicture.height), Shrinking::Linear);
    addPicture("between pixels", CGRectMake(10.3, 12.4, kPicture.width, kPicture.height), Shrinking::Linear);
    addPicture("to 317x211, mean", kReduced, Shrinking::Mean);
    addPicture("to 317x211", kReduced, Shrinking::Linear);
    addPicture("to half, mean", kHalf, Shrinking::Mean);
    addPicture("to half", kHalf, Shrinking::Linear);
    addPicture("turned", CGRectMake(10, 12, kPicture.width, kPicture.height), Shrinking::Linear, 0.1);
    addPicture("turned, to 317x211, mean", kReduced, Shrinking::Mean, 0.1);
}

} // namespace

void addImageBenchmarks()
{
    addTable({kTable, "Images",
        "An image of a quarter of the canvas's width and height, at its own size, pixel-aligned, or at twice "
        "its size; and an image of 800 x 600 pixels, translucent at its corners or opaque. QPainter draws an "
        "image of its own size at whole pixels, where the others interpolate between them; in its second "
        "column, it stretches the image by 0.01 pixels and interpolates, too. \"Mean\" is a filter over all "
        "samples that fall into a pixel, which QPainter does not have: its second column is linear "
        "interpolation then."});
    for (const Size canvas : kSizes) {
        const Size image{canvas.width / 4, canvas.height / 4};
        const auto target = [image](int factor) {
            return CGRectMake(3, 3, image.width * factor, image.height * factor);
        };
        add({"own size/" + nameOf(canvas), canvas, image, target(1)});
        add({"enlarged/" + nameOf(canvas), canvas, image, target(2)});
    }
    addPictures("picture", false);
    addPictures("opaque picture", true);
}
