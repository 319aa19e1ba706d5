// Fills and strokes.

#include "Benchmarks.h"
#include "CairoCanvas.h"
#include "KorvidCanvas.h"
#include "QtCanvas.h"
#include "Table.h"

namespace {

void strokeRect(KorvidCanvas& canvas, CGRect rect)
{
    CGContextStrokeRect(canvas.context(), rect);
}
void strokeRect(CairoCanvas& canvas, CGRect rect)
{
    addRect(canvas.cairo(), rect);
    cairo_stroke(canvas.cairo());
}
void strokeRect(QtCanvas& canvas, CGRect rect)
{
    canvas.painter().setPen(canvas.pen());
    canvas.painter().drawRect(qtRect(rect));
}

void strokeEllipse(KorvidCanvas& canvas, CGRect rect)
{
    CGContextStrokeEllipseInRect(canvas.context(), rect);
}
void strokeEllipse(CairoCanvas& canvas, CGRect rect)
{
    addEllipse(canvas.cairo(), rect);
    cairo_stroke(canvas.cairo());
}
void strokeEllipse(QtCanvas& canvas, CGRect rect)
{
    canvas.painter().setPen(canvas.pen());
    canvas.painter().drawEllipse(qtRect(rect));
}

/// A line from edge to edge of the canvas.
std::vector<CGPoint> zigzag(Size size)
{
    constexpr int kStrokes = 20;
    std::vector<CGPoint> points;
    for (int i = 0; i <= kStrokes; ++i)
        points.push_back(CGPointMake(size.width * i / double(kStrokes), i % 2 ? size.height : 0));
    return points;
}

void strokeLine(KorvidCanvas& canvas, const std::vector<CGPoint>& points)
{
    CGContextAddLines(canvas.context(), points.data(), points.size());
    CGContextStrokePath(canvas.context());
}
void strokeLine(CairoCanvas& canvas, const std::vector<CGPoint>& points)
{
    for (const CGPoint point : points)
        cairo_line_to(canvas.cairo(), point.x, point.y);
    cairo_stroke(canvas.cairo());
}
void strokeLine(QtCanvas& canvas, const std::vector<CGPoint>& points)
{
    static_assert(sizeof(QPointF) == sizeof(CGPoint)); // two doubles each
    canvas.painter().setPen(canvas.pen());
    canvas.painter().drawPolyline(reinterpret_cast<const QPointF*>(points.data()), int(points.size()));
}

} // namespace

void addShapeBenchmarks()
{
    addTable({"shape", "Fills and strokes",
        "One shape over most of the canvas, in an opaque colour unless it says otherwise, with edges between "
        "the "
        "pixels. Strokes are 3 pixels wide."});
    const auto add = [](const char* name, auto draw) {
        addDrawings<KorvidCanvas, CairoCanvas, QtCanvas>("shape", name, draw);
    };
    const auto addTranslucent = [](const std::string& name, auto draw) {
        constexpr double kAlpha = 0.9;
        for (const Size size : kSizes)
            addDrawing<KorvidCanvas, CairoCanvas, QtCanvas>(
                "shape", name + ", translucent/" + nameOf(size), size, kAlpha, draw);
    };
    const auto fillWhole = [](auto& canvas, Size size) { fillRect(canvas, whole(size)); };
    add("fill pixel-aligned rectangle", fillWhole);
    addTranslucent("fill pixel-aligned rectangle", fillWhole);
    add("fill rectangle", [](auto& canvas, Size size) { fillRect(canvas, fractional(size)); });
    const auto fillMost = [](auto& canvas, Size size) { fillEllipse(canvas, fractional(size)); };
    add("fill ellipse", fillMost);
    addTranslucent("fill ellipse", fillMost);
    add("stroke rectangle", [](auto& canvas, Size size) { strokeRect(canvas, fractional(size)); });
    add("stroke ellipse", [](auto& canvas, Size size) { strokeEllipse(canvas, fractional(size)); });
    for (const Size size : kSizes) {
        addDrawing<KorvidCanvas, CairoCanvas, QtCanvas>("shape", "stroke zigzag/" + nameOf(size), size, 1,
            [points = zigzag(size)](auto& canvas, Size) { strokeLine(canvas, points); });
    }
}
