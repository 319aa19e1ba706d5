// What views draw time and again: rounded rectangles, filled, stroked and with a shadow. "still" draws the
// same at the same place each time, "moving" never twice at the same place between the pixels.

#include "BenchmarkCanvas.h"
#include "PeerShapes.h"

namespace {

constexpr Size kCanvas{120, 60};
constexpr CGRect kCapsule{{20, 19}, {80, 22}};
constexpr CGRect kBadge{{30, 18}, {60, 24}};
constexpr double kRadius = 11;

CGRect moved(CGRect rect, double by)
{
    return CGRectOffset(rect, by, by);
}

const QColor kQtColor = QColor::fromRgbF(0.2F, 0.4F, 0.6F, 0.9F);

// Fills and strokes, which are three wide like those of the other benchmarks.

void drawOurs(benchmark::State& state, CGPathDrawingMode mode, bool moves)
{
    const Ours canvas(kCanvas);
    Place place(moves);
    for (auto _ : state) {
        const auto path =
            adopt(CGPathCreateWithRoundedRect(moved(kCapsule, place.next()), kRadius, kRadius, nullptr));
        CGContextAddPath(canvas.context.get(), path.get());
        CGContextDrawPath(canvas.context.get(), mode);
    }
}
void drawCairos(benchmark::State& state, void (*paint)(cairo_t*), bool moves)
{
    const Cairo canvas(kCanvas);
    Place place(moves);
    for (auto _ : state) {
        addRoundedRect(canvas.cairo.get(), moved(kCapsule, place.next()), kRadius);
        paint(canvas.cairo.get());
    }
}
/// `paint` takes a painter and a path.
template <class Draw> void drawQts(benchmark::State& state, Draw paint, bool moves)
{
    Qts canvas(kCanvas);
    Place place(moves);
    for (auto _ : state)
        paint(canvas.painter, roundedRect(moved(kCapsule, place.next()), kRadius));
}

// The outline of a badge, filled with a shadow below it. The peers have none: they draw the alphas apart,
// blur them by plain loops and paint through them.

void shadowOurs(benchmark::State& state, bool moves)
{
    const Ours canvas(kCanvas);
    CGContextSetShadow(canvas.context.get(), CGSizeMake(0, -kShadowDown), kShadowBlur);
    Place place(moves);
    for (auto _ : state) {
        const auto path =
            adopt(CGPathCreateWithRoundedRect(moved(kBadge, place.next()), kRadius, kRadius, nullptr));
        CGContextAddPath(canvas.context.get(), path.get());
        CGContextFillPath(canvas.context.get());
    }
}

void shadowCairos(benchmark::State& state, bool moves, bool keeps)
{
    const Cairo canvas(kCanvas);
    cairo_identity_matrix(canvas.cairo.get()); // or the blurred alphas would be resampled
    CairoShadow shadow(kBadge, kRadius);
    shadow.draw(0);
    Place place(moves);
    for (auto _ : state) {
        const double by = place.next();
        if (!keeps)
            shadow.draw(by);
        shadow.paint(canvas.cairo.get());
        cairo_set_source_rgba(canvas.cairo.get(), 0.6, 0.4, 0.2, 0.9);
        addRoundedRect(canvas.cairo.get(), moved(kBadge, by), kRadius);
        cairo_fill(canvas.cairo.get());
    }
}

void shadowQts(benchmark::State& state, bool moves, bool keeps)
{
    Qts canvas(kCanvas);
    QtShadow shadow(kBadge, kRadius);
    shadow.draw(0);
    Place place(moves);
    for (auto _ : state) {
        const double by = place.next();
        if (!keeps)
            shadow.draw(by);
        shadow.paint(canvas.painter);
        canvas.painter.fillPath(roundedRect(moved(kBadge, by), kRadius), kQtColor);
    }
}

const bool registered = [] {
    for (const bool moves : {false, true}) {
        const std::string place = moves ? "moving/" : "still/";
        const std::string fill = "rounded rectangle 80x22/fill/" + place;
        add(fill + "ours", drawOurs, kCGPathFill, moves);
        add(fill + "cairo", drawCairos, cairo_fill, moves);
        const auto fillQts = [](QPainter& painter, const QPainterPath& path) {
            painter.fillPath(path, kQtColor);
        };
        add(fill + "QPainter", drawQts<decltype(fillQts)>, fillQts, moves);
        const std::string stroke = "rounded rectangle 80x22/stroke/" + place;
        add(stroke + "ours", drawOurs, kCGPathStroke, moves);
        add(stroke + "cairo", drawCairos, cairo_stroke, moves);
        const auto strokeQts = [pen = QPen(kQtColor, 3)](QPainter& painter, const QPainterPath& path) {
            painter.strokePath(path, pen);
        };
        add(stroke + "QPainter", drawQts<decltype(strokeQts)>, strokeQts, moves);
        add("badge 60x24 with shadow/" + place + "ours", shadowOurs, moves);
        add("badge 60x24 with shadow/" + place + "cairo, plain blur", shadowCairos, moves, false);
        add("badge 60x24 with shadow/" + place + "QPainter, plain blur", shadowQts, moves, false);
    }
    add("badge 60x24 with shadow/still/cairo, blur kept by the program", shadowCairos, false, true);
    add("badge 60x24 with shadow/still/QPainter, blur kept by the program", shadowQts, false, true);
    benchmark::AddCustomContext("Qt", qVersion());
    return true;
}();

} // namespace
