#include "BenchmarkCanvas.h"

#include <QGradient>
#include <QImage>
#include <QPainter>

#include <cmath>

// Panels filled with a gradient of two or three opaque colours, the same in three libraries. Gradients are
// made once; contexts and painters, too.

namespace {

enum class Kind { Vertical, Horizontal, Diagonal, Radial, TranslucentDiagonal, TranslucentRadial };

constexpr Size kPanels[]{{400, 300}, {1920, 1080}};
constexpr double kStops[]{0, 0.4, 1};
constexpr double kColors[][4]{{0.11, 0.16, 0.29, 1}, {0.42, 0.19, 0.55, 1}, {0.96, 0.55, 0.33, 1}};

bool isRadial(Kind kind)
{
    return kind == Kind::Radial || kind == Kind::TranslucentRadial;
}

double alphaOf(Kind kind)
{
    return kind == Kind::TranslucentDiagonal || kind == Kind::TranslucentRadial ? 0.8 : 1;
}

CGPoint endOf(Kind kind, Size size)
{
    return {kind == Kind::Vertical ? 0.0 : size.width, kind == Kind::Horizontal ? 0.0 : size.height};
}

void setPixels(benchmark::State& state, Size size)
{
    state.SetItemsProcessed(state.iterations() * size.width * size.height);
}

void ours(benchmark::State& state, Kind kind, Size size)
{
    const Ours canvas(size);
    std::vector<CGFloat> components;
    for (const auto& color : kColors)
        components.insert(components.end(), {color[0], color[1], color[2], alphaOf(kind)});
    const auto gradient =
        adopt(CGGradientCreateWithColorComponents(canvas.space.get(), components.data(), kStops, 3));
    const CGPoint centre{size.width / 2.0, size.height / 2.0};
    for (auto _ : state) {
        if (isRadial(kind))
            CGContextDrawRadialGradient(
                canvas.context.get(), gradient.get(), centre, 0, centre, size.height, 3);
        else
            CGContextDrawLinearGradient(canvas.context.get(), gradient.get(), {0, 0}, endOf(kind, size), 3);
    }
    setPixels(state, size);
}

void cairos(benchmark::State& state, Kind kind, Size size)
{
    const Cairo canvas(size);
    const CGPoint centre{size.width / 2.0, size.height / 2.0}, end = endOf(kind, size);
    const std::unique_ptr<cairo_pattern_t, Cairo::Delete> pattern(isRadial(kind)
            ? cairo_pattern_create_radial(centre.x, centre.y, 0, centre.x, centre.y, size.height)
            : cairo_pattern_create_linear(0, 0, end.x, end.y));
    for (int i = 0; i < 3; ++i)
        cairo_pattern_add_color_stop_rgba(
            pattern.get(), kStops[i], kColors[i][2], kColors[i][1], kColors[i][0], alphaOf(kind));
    cairo_set_source(canvas.cairo.get(), pattern.get());
    for (auto _ : state)
        cairo_paint(canvas.cairo.get());
    cairo_surface_flush(canvas.surface.get());
    setPixels(state, size);
}

void qts(benchmark::State& state, Kind kind, Size size)
{
    QImage image(size.width, size.height, QImage::Format_RGBA8888_Premultiplied);
    image.fill(0);
    const CGPoint end = endOf(kind, size);
    QGradient gradient;
    if (isRadial(kind))
        gradient = QRadialGradient(size.width / 2.0, size.height / 2.0, size.height);
    else
        gradient = QLinearGradient(0, 0, end.x, end.y);
    for (int i = 0; i < 3; ++i)
        gradient.setColorAt(
            kStops[i], QColor::fromRgbF(kColors[i][0], kColors[i][1], kColors[i][2], alphaOf(kind)));
    QPainter painter(&image);
    const QBrush brush(gradient);
    for (auto _ : state)
        painter.fillRect(image.rect(), brush);
    setPixels(state, size);
}

void addPanels(const std::string& name, Kind kind)
{
    for (const Size size : kPanels) {
        const std::string place = name + "/" + nameOf(size);
        const auto add = [&](const std::string& who, void (*draw)(benchmark::State&, Kind, Size)) {
            // Qt spreads large fills over threads: what counts is the time that passes.
            benchmark::RegisterBenchmark((place + "/" + who).c_str(), draw, kind, size)
                ->Unit(benchmark::kMicrosecond)
                ->MeasureProcessCPUTime()
                ->UseRealTime();
        };
        add("ours", ours);
        add("QPainter", qts);
        add("cairo", cairos);
    }
}

const bool isAdded = [] {
    addPanels("gradient/vertical", Kind::Vertical);
    addPanels("gradient/horizontal", Kind::Horizontal);
    addPanels("gradient/diagonal", Kind::Diagonal);
    addPanels("gradient/radial", Kind::Radial);
    addPanels("gradient/translucentDiagonal", Kind::TranslucentDiagonal);
    addPanels("gradient/translucentRadial", Kind::TranslucentRadial);
    return true;
}();

} // namespace
