// A capsule view with a status word.

#include "Benchmarks.h"
#include "CurrentContext.h"
#include "PeerText.h"
#include "Table.h"

#include <AppKit/NSColor.h>
#include <KorvidAppKit/ZRCapsuleView.h>

namespace {

constexpr const char* kTable = "capsule";
constexpr Size kCanvas{80, 22};
constexpr char kText[] = "connected";
constexpr TextStyle kStyle{9, false, 9.0 / 8};
constexpr double kOutlineWidth = 0.66;
constexpr CGRect kOutline{
    {kOutlineWidth / 2, kOutlineWidth / 2}, {kCanvas.width - kOutlineWidth, kCanvas.height - kOutlineWidth}};
constexpr double kRadius = kOutline.size.height / 4;

struct Case {
    bool isFilled;
    bool moves;
};

void drawKorvidCapsule(benchmark::State& state, Case test)
{
    const KorvidCanvas canvas(kCanvas);
    const CurrentContext current(canvas);
    const auto color = NSColor::orangeColor();
    const auto view = make<ZRCapsuleView>(whole(kCanvas));
    view->setString(kText);
    view->setColor(color);
    view->setDrawType(test.isFilled ? kZRCapsuleDrawTypeFilled : kZRCapsuleDrawTypeOutline);
    Motion motion(test.moves);
    double x = 0;
    for (auto _ : state) {
        const double next = motion.next();
        CGContextTranslateCTM(canvas.context(), next - x, 0);
        x = next;
        view->drawRect(view->bounds());
    }
}

void drawCairoCapsule(benchmark::State& state, Case test)
{
    const CairoCanvas canvas(kCanvas);
    cairo_t* const cairo = canvas.cairo();
    const PangoLine line(canvas, kText, kStyle);
    cairo_set_line_width(cairo, kOutlineWidth);
    Motion motion(test.moves);
    for (auto _ : state) {
        const double x = motion.next();
        cairo_set_source_rgb(cairo, 1, 0.5, 0);
        addRoundedRect(cairo, CGRectOffset(kOutline, x, 0), kRadius);
        if (test.isFilled)
            cairo_fill(cairo);
        else
            cairo_stroke(cairo);
        if (test.isFilled)
            cairo_set_source_rgb(cairo, 1, 1, 1);
        line.draw(cairo, CGRectOffset(kOutline, x, 0));
    }
}

void drawQtCapsule(benchmark::State& state, Case test)
{
    QtCanvas canvas(kCanvas);
    QPainter& painter = canvas.painter();
    const QtLine line(kText, kStyle);
    painter.setFont(line.font());
    const QColor orange(255, 128, 0);
    const QPen outline(orange, kOutlineWidth);
    Motion motion(test.moves);
    for (auto _ : state) {
        const CGRect rect = CGRectOffset(kOutline, motion.next(), 0);
        painter.setPen(test.isFilled ? QPen(Qt::NoPen) : outline);
        painter.setBrush(test.isFilled ? QBrush(orange) : QBrush(Qt::NoBrush));
        painter.drawRoundedRect(qtRect(rect), kRadius, kRadius);
        painter.setPen(test.isFilled ? QColor(Qt::white) : orange);
        line.draw(painter, rect);
    }
}

} // namespace

void addCapsuleBenchmarks()
{
    addTable({kTable, "Capsules",
        "A ZRCapsuleView of 80 x 22 pixels with a status word in 9 pixels, as a window draws it. A moving "
        "one has "
        "another subpixel position each time. The peers lay the word out once, before the measurement: "
        "cairo's "
        "by Pango, QPainter's as a QStaticText."});
    for (const bool moves : {false, true}) {
        for (const bool isFilled : {false, true}) {
            const std::string name =
                std::string(isFilled ? "filled" : "outline") + (moves ? "/moving" : "/in place");
            const auto add = [&](const char* library, void (*draw)(benchmark::State&, Case)) {
                addBenchmark(kTable, name, library, [=](benchmark::State& state) {
                    draw(state, {isFilled, moves});
                });
            };
            add(KorvidCanvas::kLibrary, drawKorvidCapsule);
            add(CairoCanvas::kLibrary, drawCairoCapsule);
            add(QtCanvas::kLibrary, drawQtCapsule);
        }
    }
}
