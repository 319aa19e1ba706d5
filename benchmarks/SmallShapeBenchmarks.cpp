// What views draw repeatedly: small rounded rectangles, filled, stroked and with a shadow.

#include "Benchmarks.h"
#include "CairoCanvas.h"
#include "KorvidCanvas.h"
#include "PeerShadows.h"
#include "QtCanvas.h"
#include "Table.h"

namespace {

constexpr const char* kTable = "small shape";
constexpr Size kCanvas{120, 60};
constexpr CGRect kControl{{20, 19}, {80, 22}};
constexpr CGRect kBadge{{30, 18}, {60, 24}};
constexpr double kRadius = 11;

CGRect moved(CGRect rect, double offset)
{
    return CGRectOffset(rect, offset, offset);
}

void addRoundedRect(KorvidCanvas& canvas, CGRect rect)
{
    const auto path = adopt(CGPathCreateWithRoundedRect(rect, kRadius, kRadius, nullptr));
    CGContextAddPath(canvas.context(), path);
}

void fill(KorvidCanvas& canvas, CGRect rect)
{
    addRoundedRect(canvas, rect);
    CGContextFillPath(canvas.context());
}
void fill(CairoCanvas& canvas, CGRect rect)
{
    addRoundedRect(canvas.cairo(), rect, kRadius);
    cairo_fill(canvas.cairo());
}
void fill(QtCanvas& canvas, CGRect rect)
{
    canvas.painter().setPen(Qt::NoPen);
    canvas.painter().setBrush(canvas.color());
    canvas.painter().drawRoundedRect(qtRect(rect), kRadius, kRadius);
}

void stroke(KorvidCanvas& canvas, CGRect rect)
{
    addRoundedRect(canvas, rect);
    CGContextStrokePath(canvas.context());
}
void stroke(CairoCanvas& canvas, CGRect rect)
{
    addRoundedRect(canvas.cairo(), rect, kRadius);
    cairo_stroke(canvas.cairo());
}
void stroke(QtCanvas& canvas, CGRect rect)
{
    canvas.painter().setPen(canvas.pen());
    canvas.painter().setBrush(Qt::NoBrush);
    canvas.painter().drawRoundedRect(qtRect(rect), kRadius, kRadius);
}

/// Fills and strokes at an offset each time.
template <class Canvas, class Draw> void addMoving(const std::string& name, bool moves, Draw draw)
{
    addBenchmark(kTable, name, Canvas::kLibrary, [=](benchmark::State& state) {
        Canvas canvas(kCanvas);
        Motion motion(moves);
        for (auto _ : state)
            draw(canvas, moved(kControl, motion.next()));
    });
}

void drawKorvidShadow(benchmark::State& state, bool moves)
{
    KorvidCanvas canvas(kCanvas);
    CGContextSetShadow(canvas.context(), CGSizeMake(0, -kShadowDown), kShadowBlur);
    Motion motion(moves);
    for (auto _ : state)
        fill(canvas, moved(kBadge, motion.next()));
}

void drawCairoShadow(benchmark::State& state, bool moves)
{
    CairoCanvas canvas(kCanvas);
    const CairoShadow shadow(kBadge.size, kRadius);
    Motion motion(moves);
    for (auto _ : state) {
        const CGRect rect = moved(kBadge, motion.next());
        shadow.draw(canvas.cairo(), rect.origin);
        cairo_set_source_rgb(canvas.cairo(), kColor[0], kColor[1], kColor[2]);
        fill(canvas, rect);
    }
}

void drawQtShadow(benchmark::State& state, bool moves)
{
    QtCanvas canvas(kCanvas);
    const QtShadow shadow(kBadge.size, kRadius);
    Motion motion(moves);
    for (auto _ : state) {
        const CGRect rect = moved(kBadge, motion.next());
        shadow.draw(canvas.painter(), rect.origin);
        fill(canvas, rect);
    }
}

} // namespace

void addSmallShapeBenchmarks()
{
    addTable({kTable, "Small shapes",
        "Rounded rectangles of 80 x 22 pixels, and one of 60 x 24 with a shadow. Those that move have "
        "another "
        "subpixel position each time, so that nothing drawn before can be reused. cairo and QPainter have no "
        "shadows: a program that uses them blurs a mask by loops of its own, here once before the "
        "measurement, "
        "and draws that."});
    for (const bool moves : {false, true}) {
        const std::string how = moves ? "/moving" : "/in place";
        const auto add = [&](const std::string& name, auto draw) {
            addMoving<KorvidCanvas>(name + how, moves, draw);
            addMoving<CairoCanvas>(name + how, moves, draw);
            addMoving<QtCanvas>(name + how, moves, draw);
        };
        add("fill", [](auto& canvas, CGRect rect) { fill(canvas, rect); });
        add("stroke", [](auto& canvas, CGRect rect) { stroke(canvas, rect); });
        const auto addShadow = [&](const char* library, void (*draw)(benchmark::State&, bool)) {
            addBenchmark(kTable, "fill with shadow" + how, library,
                [=](benchmark::State& state) { draw(state, moves); });
        };
        addShadow(KorvidCanvas::kLibrary, drawKorvidShadow);
        addShadow(CairoCanvas::kLibrary, drawCairoShadow);
        addShadow(QtCanvas::kLibrary, drawQtShadow);
    }
}
