// Filled paths, of which most have another subpixel position each time.

#include "Benchmarks.h"
#include "CairoCanvas.h"
#include "KorvidCanvas.h"
#include "QtCanvas.h"
#include "Table.h"

#include <QPainterPath>

#include <algorithm>
#include <random>

namespace {

constexpr const char* kTable = "path";
constexpr double kRadius = 9;
/// Around the shapes, in pixels.
constexpr double kMargin = 3;

void fillRoundedRect(KorvidCanvas& canvas, CGRect rect)
{
    const auto path = adopt(CGPathCreateWithRoundedRect(rect, kRadius, kRadius, nullptr));
    CGContextAddPath(canvas.context(), path);
    CGContextFillPath(canvas.context());
}
void fillRoundedRect(CairoCanvas& canvas, CGRect rect)
{
    addRoundedRect(canvas.cairo(), rect, kRadius);
    cairo_fill(canvas.cairo());
}
void fillRoundedRect(QtCanvas& canvas, CGRect rect)
{
    canvas.painter().setPen(Qt::NoPen);
    canvas.painter().setBrush(canvas.color());
    canvas.painter().drawRoundedRect(qtRect(rect), kRadius, kRadius);
}

/// The corners of a star in a square: each line leads to the point that is 40 of 101 points farther on.
std::vector<CGPoint> star(CGRect square)
{
    constexpr int kCorners = 101;
    constexpr int kStep = 40;
    const double radius = square.size.width / 2;
    std::vector<CGPoint> points;
    for (int i = 0; i < kCorners; ++i) {
        const double angle = 2 * std::numbers::pi * kStep * i / kCorners;
        points.push_back({CGRectGetMidX(square) + radius * std::cos(angle),
            CGRectGetMidY(square) + radius * std::sin(angle)});
    }
    return points;
}

void fillPolygon(KorvidCanvas& canvas, const std::vector<CGPoint>& points)
{
    CGContextAddLines(canvas.context(), points.data(), points.size());
    CGContextFillPath(canvas.context());
}
void fillPolygon(CairoCanvas& canvas, const std::vector<CGPoint>& points)
{
    for (const CGPoint point : points)
        cairo_line_to(canvas.cairo(), point.x, point.y);
    cairo_fill(canvas.cairo());
}
void fillPolygon(QtCanvas& canvas, const std::vector<CGPoint>& points)
{
    static_assert(sizeof(QPointF) == sizeof(CGPoint)); // two doubles each
    canvas.painter().setPen(Qt::NoPen);
    canvas.painter().setBrush(canvas.color());
    canvas.painter().drawPolygon(
        reinterpret_cast<const QPointF*>(points.data()), int(points.size()), Qt::WindingFill);
}

template <class Canvas, class Draw> void addMovingTo(const std::string& name, Size size, Draw draw)
{
    addBenchmark(kTable, name + "/" + nameOf(size), Canvas::kLibrary, [=](benchmark::State& state) {
        Canvas canvas({size.width + int(2 * kMargin) + 1, size.height + int(2 * kMargin) + 1});
        Motion motion(true);
        for (auto _ : state) {
            const double offset = motion.next();
            draw(canvas, CGRectMake(kMargin + offset, kMargin + offset, size.width, size.height));
        }
    });
}

template <class Draw> void addMoving(const std::string& name, Size size, Draw draw)
{
    addMovingTo<KorvidCanvas>(name, size, draw);
    addMovingTo<CairoCanvas>(name, size, draw);
    addMovingTo<QtCanvas>(name, size, draw);
}

constexpr Size kSquaresCanvas{200, 200};

/// Squares of a grid whose lines are between the pixels, in any order.
std::vector<CGRect> squares()
{
    constexpr int kColumns = 41;
    constexpr std::size_t kCount = 860;
    const double side = double(kSquaresCanvas.width) / kColumns;
    std::vector<CGRect> all;
    all.reserve(std::size_t(kColumns) * kColumns);
    for (int row = 0; row < kColumns; ++row) {
        for (int column = 0; column < kColumns; ++column)
            all.push_back(CGRectMake(column * side, row * side, side, side));
    }
    std::ranges::shuffle(all, std::mt19937(1));
    all.resize(kCount);
    return all;
}

RetainPtr<CGPath> squaresPath(const std::vector<CGRect>& rects)
{
    auto path = adopt(CGPathCreateMutable());
    CGPathAddRects(path, nullptr, rects.data(), rects.size());
    return path;
}

void fillSquaresWithKorvid(benchmark::State& state)
{
    KorvidCanvas canvas(kSquaresCanvas);
    const auto path = adopt(CGPathCreateCopy(squaresPath(squares()).get()));
    for (auto _ : state) {
        CGContextAddPath(canvas.context(), path);
        CGContextFillPath(canvas.context());
    }
}

void fillNewSquaresWithKorvid(benchmark::State& state)
{
    KorvidCanvas canvas(kSquaresCanvas);
    const auto rects = squares();
    for (auto _ : state) {
        const auto path = squaresPath(rects);
        CGContextAddPath(canvas.context(), path);
        CGContextFillPath(canvas.context());
    }
}

void fillSquaresWithCairo(benchmark::State& state)
{
    CairoCanvas canvas(kSquaresCanvas);
    for (const CGRect rect : squares())
        addRect(canvas.cairo(), rect);
    for (auto _ : state)
        cairo_fill_preserve(canvas.cairo());
}

void fillNewSquaresWithCairo(benchmark::State& state)
{
    CairoCanvas canvas(kSquaresCanvas);
    const auto rects = squares();
    for (auto _ : state) {
        for (const CGRect rect : rects)
            addRect(canvas.cairo(), rect);
        cairo_fill(canvas.cairo());
    }
}

QPainterPath qtSquaresPath(const std::vector<CGRect>& rects)
{
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    for (const CGRect rect : rects)
        path.addRect(qtRect(rect));
    return path;
}

void fillSquaresWithQt(benchmark::State& state)
{
    QtCanvas canvas(kSquaresCanvas);
    const QPainterPath path = qtSquaresPath(squares());
    for (auto _ : state)
        canvas.painter().fillPath(path, canvas.color());
}

void fillNewSquaresWithQt(benchmark::State& state)
{
    QtCanvas canvas(kSquaresCanvas);
    const auto rects = squares();
    for (auto _ : state)
        canvas.painter().fillPath(qtSquaresPath(rects), canvas.color());
}

} // namespace

void addPathBenchmarks()
{
    addTable({kTable, "Filled paths",
        "Opaque shapes that have another subpixel position each time, so that nothing drawn before can be "
        "reused. The star has 101 corners, and its lines cross 3,939 times. The squares are those of one "
        "path, "
        "in any order, with edges between the pixels. They stay in place: the path is made once, and ours "
        "caches "
        "in it the order in which the squares are drawn, nothing else. In the last row, each drawing makes "
        "its "
        "path anew."});
    const auto roundedRect = [](auto& canvas, CGRect rect) { fillRoundedRect(canvas, rect); };
    const auto ellipse = [](auto& canvas, CGRect rect) { fillEllipse(canvas, rect); };
    addMoving("rounded rectangle", {80, 22}, roundedRect);
    addMoving("rounded rectangle", {300, 120}, roundedRect);
    addMoving("ellipse", {24, 24}, ellipse);
    addMoving("ellipse", {400, 300}, ellipse);
    addMoving("ellipse", {1920, 1080}, ellipse);
    addMoving("star", {400, 400}, [](auto& canvas, CGRect rect) { fillPolygon(canvas, star(rect)); });
    addBenchmark(kTable, "860 squares/200x200", KorvidCanvas::kLibrary, fillSquaresWithKorvid);
    addBenchmark(kTable, "860 squares/200x200", CairoCanvas::kLibrary, fillSquaresWithCairo);
    addBenchmark(kTable, "860 squares/200x200", QtCanvas::kLibrary, fillSquaresWithQt);
    addBenchmark(kTable, "860 squares, new path/200x200", KorvidCanvas::kLibrary, fillNewSquaresWithKorvid);
    addBenchmark(kTable, "860 squares, new path/200x200", CairoCanvas::kLibrary, fillNewSquaresWithCairo);
    addBenchmark(kTable, "860 squares, new path/200x200", QtCanvas::kLibrary, fillNewSquaresWithQt);
}
