// Panels filled with a gradient of three colours. The gradients are made before the measurement.

#include "Benchmarks.h"
#include "CairoCanvas.h"
#include "CurrentContext.h"
#include "KorvidCanvas.h"
#include "QtCanvas.h"
#include "Table.h"

#include <KorvidAppKit/ZRGradientView.h>
#include <KorvidAppKit/ZRShapes.h>

#include <QGradient>

namespace {

constexpr const char* kTable = "gradient";
constexpr Size kPanels[]{{400, 300}, {1920, 1080}};
constexpr double kStops[]{0, 0.4, 1};
constexpr double kColors[][3]{{0.11, 0.16, 0.29}, {0.42, 0.19, 0.55}, {0.96, 0.55, 0.33}};
constexpr double kCornerRadius = 12;

enum class Direction { Vertical, Horizontal, Diagonal, Radial };

struct Panel {
    std::string name;
    Direction direction;
    double alpha = 1;
};

/// Of a linear gradient, which starts at the origin.
CGPoint endOf(Direction direction, Size size)
{
    return {direction == Direction::Vertical ? 0.0 : size.width,
        direction == Direction::Horizontal ? 0.0 : size.height};
}

CGPoint centreOf(Size size)
{
    return {size.width / 2.0, size.height / 2.0};
}

RetainPtr<CGGradient> makeGradient(const Panel& panel)
{
    const auto space = adopt(CGColorSpaceCreateDeviceRGB());
    std::vector<CGFloat> components;
    for (const auto& color : kColors)
        components.insert(components.end(), {color[0], color[1], color[2], panel.alpha});
    return adopt(CGGradientCreateWithColorComponents(space, components.data(), kStops, 3));
}

CairoPtr<cairo_pattern_t> makePattern(const Panel& panel, Size size)
{
    const CGPoint centre = centreOf(size);
    const CGPoint end = endOf(panel.direction, size);
    CairoPtr<cairo_pattern_t> pattern(panel.direction == Direction::Radial
            ? cairo_pattern_create_radial(centre.x, centre.y, 0, centre.x, centre.y, size.height)
            : cairo_pattern_create_linear(0, 0, end.x, end.y));
    for (int i = 0; i < 3; ++i)
        cairo_pattern_add_color_stop_rgba(
            pattern.get(), kStops[i], kColors[i][0], kColors[i][1], kColors[i][2], panel.alpha);
    return pattern;
}

QBrush makeBrush(const Panel& panel, Size size)
{
    const CGPoint centre = centreOf(size);
    const CGPoint end = endOf(panel.direction, size);
    QGradient gradient;
    if (panel.direction == Direction::Radial)
        gradient = QRadialGradient(centre.x, centre.y, size.height);
    else
        gradient = QLinearGradient(0, 0, end.x, end.y);
    for (int i = 0; i < 3; ++i) {
        const auto channel = [i](int c) { return float(kColors[i][c]); };
        gradient.setColorAt(
            kStops[i], QColor::fromRgbF(channel(0), channel(1), channel(2), float(panel.alpha)));
    }
    return gradient;
}

void drawKorvidPanel(benchmark::State& state, const Panel& panel, Size size)
{
    const KorvidCanvas canvas(size);
    const auto gradient = makeGradient(panel);
    constexpr CGGradientDrawingOptions kBothEnds =
        kCGGradientDrawsBeforeStartLocation | kCGGradientDrawsAfterEndLocation;
    for (auto _ : state) {
        if (panel.direction == Direction::Radial)
            CGContextDrawRadialGradient(
                canvas.context(), gradient, centreOf(size), 0, centreOf(size), size.height, kBothEnds);
        else
            CGContextDrawLinearGradient(
                canvas.context(), gradient, {0, 0}, endOf(panel.direction, size), kBothEnds);
    }
}

void drawCairoPanel(benchmark::State& state, const Panel& panel, Size size)
{
    const CairoCanvas canvas(size);
    const auto pattern = makePattern(panel, size);
    cairo_set_source(canvas.cairo(), pattern.get());
    for (auto _ : state)
        cairo_paint(canvas.cairo());
}

void drawQtPanel(benchmark::State& state, const Panel& panel, Size size)
{
    QtCanvas canvas(size);
    const QBrush brush = makeBrush(panel, size);
    for (auto _ : state)
        canvas.painter().fillRect(qtRect(whole(size)), brush);
}

void drawKorvidRoundedPanel(benchmark::State& state, const Panel& panel, Size size)
{
    const KorvidCanvas canvas(size);
    const CurrentContext current(canvas);
    const auto gradient = makeGradient(panel);
    const auto view = make<ZRGradientView>(whole(size));
    view->setGradient(gradient);
    const CGPoint end = endOf(panel.direction, size);
    view->setEndPoint({end.x / size.width, end.y / size.height});
    view->setRoundedCorners(kZRCornerAll);
    view->setCornerRadius(kCornerRadius);
    for (auto _ : state)
        view->drawRect(view->bounds());
}

void drawCairoRoundedPanel(benchmark::State& state, const Panel& panel, Size size)
{
    const CairoCanvas canvas(size);
    const auto pattern = makePattern(panel, size);
    cairo_set_source(canvas.cairo(), pattern.get());
    for (auto _ : state) {
        addRoundedRect(canvas.cairo(), whole(size), kCornerRadius);
        cairo_fill(canvas.cairo());
    }
}

void drawQtRoundedPanel(benchmark::State& state, const Panel& panel, Size size)
{
    QtCanvas canvas(size);
    canvas.painter().setBrush(makeBrush(panel, size));
    for (auto _ : state)
        canvas.painter().drawRoundedRect(qtRect(whole(size)), kCornerRadius, kCornerRadius);
}

using Draw = void (*)(benchmark::State&, const Panel&, Size);

void add(const Panel& panel, Draw drawKorvid, Draw drawCairo, Draw drawQt)
{
    for (const Size size : kPanels) {
        const auto addOne = [&](const char* library, Draw draw) {
            addBenchmark(kTable, panel.name + "/" + nameOf(size), library,
                [=](benchmark::State& state) { draw(state, panel, size); });
        };
        addOne(KorvidCanvas::kLibrary, drawKorvid);
        addOne(CairoCanvas::kLibrary, drawCairo);
        addOne(QtCanvas::kLibrary, drawQt);
    }
}

} // namespace

void addGradientBenchmarks()
{
    addTable({kTable, "Gradients",
        "Panels filled with a gradient of three colours. Those with round corners are drawn by "
        "ZRGradientView, "
        "its clip included. QPainter spreads large fills over all processors; their times are added up."});
    constexpr double kTranslucent = 0.8;
    const Panel panels[]{{"vertical", Direction::Vertical}, {"horizontal", Direction::Horizontal},
        {"diagonal", Direction::Diagonal}, {"radial", Direction::Radial},
        {"vertical, translucent", Direction::Vertical, kTranslucent},
        {"diagonal, translucent", Direction::Diagonal, kTranslucent},
        {"radial, translucent", Direction::Radial, kTranslucent}};
    for (const Panel& panel : panels)
        add(panel, drawKorvidPanel, drawCairoPanel, drawQtPanel);
    const Panel roundedPanels[]{
        {"vertical, round corners", Direction::Vertical}, {"diagonal, round corners", Direction::Diagonal}};
    for (const Panel& panel : roundedPanels)
        add(panel, drawKorvidRoundedPanel, drawCairoRoundedPanel, drawQtRoundedPanel);
}
