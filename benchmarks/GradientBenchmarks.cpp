#include "BenchmarkCanvas.h"

#include <AppKit/NSGraphicsContext.h>
#include <KorvidAppKit/ZRGradientView.h>
#include <KorvidAppKit/ZRShapes.h>

#include <QGradient>
#include <QImage>
#include <QPainter>

#include <cmath>

// Panels filled with a gradient of three colours, the same in three libraries. Gradients are
// made once; contexts and painters, too.

namespace {

enum class Kind {
    Vertical,
    Horizontal,
    Diagonal,
    Radial,
    TranslucentVertical,
    TranslucentDiagonal,
    TranslucentRadial,
};

constexpr Size kPanels[]{{400, 300}, {1920, 1080}};
constexpr double kStops[]{0, 0.4, 1};
constexpr double kColors[][4]{{0.11, 0.16, 0.29, 1}, {0.42, 0.19, 0.55, 1}, {0.96, 0.55, 0.33, 1}};

bool isRadial(Kind kind)
{
    return kind == Kind::Radial || kind == Kind::TranslucentRadial;
}

double alphaOf(Kind kind)
{
    return kind >= Kind::TranslucentVertical ? 0.8 : 1;
}

CGPoint endOf(Kind kind, Size size)
{
    const bool isVertical = kind == Kind::Vertical || kind == Kind::TranslucentVertical;
    return {isVertical ? 0.0 : size.width, kind == Kind::Horizontal ? 0.0 : size.height};
}

void setPixels(benchmark::State& state, Size size)
{
    state.SetItemsProcessed(state.iterations() * size.width * size.height);
}

RetainPtr<CGGradient> makeGradient(Kind kind)
{
    const auto space = adopt(CGColorSpaceCreateDeviceRGB());
    std::vector<CGFloat> components;
    for (const auto& color : kColors)
        components.insert(components.end(), {color[0], color[1], color[2], alphaOf(kind)});
    return adopt(CGGradientCreateWithColorComponents(space.get(), components.data(), kStops, 3));
}

std::unique_ptr<cairo_pattern_t, Cairo::Delete> makePattern(Kind kind, Size size)
{
    const CGPoint centre{size.width / 2.0, size.height / 2.0}, end = endOf(kind, size);
    std::unique_ptr<cairo_pattern_t, Cairo::Delete> pattern(isRadial(kind)
            ? cairo_pattern_create_radial(centre.x, centre.y, 0, centre.x, centre.y, size.height)
            : cairo_pattern_create_linear(0, 0, end.x, end.y));
    for (int i = 0; i < 3; ++i)
        cairo_pattern_add_color_stop_rgba(
            pattern.get(), kStops[i], kColors[i][2], kColors[i][1], kColors[i][0], alphaOf(kind));
    return pattern;
}

QBrush makeBrush(Kind kind, Size size)
{
    const CGPoint end = endOf(kind, size);
    QGradient gradient;
    if (isRadial(kind))
        gradient = QRadialGradient(size.width / 2.0, size.height / 2.0, size.height);
    else
        gradient = QLinearGradient(0, 0, end.x, end.y);
    for (int i = 0; i < 3; ++i) {
        const auto channel = [i](int c) { return static_cast<float>(kColors[i][c]); };
        gradient.setColorAt(kStops[i],
            QColor::fromRgbF(channel(0), channel(1), channel(2), static_cast<float>(alphaOf(kind))));
    }
    return gradient;
}

void ours(benchmark::State& state, Kind kind, Size size)
{
    const Ours canvas(size);
    const auto gradient = makeGradient(kind);
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
    const auto pattern = makePattern(kind, size);
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
    QPainter painter(&image);
    const QBrush brush = makeBrush(kind, size);
    for (auto _ : state)
        painter.fillRect(image.rect(), brush);
    setPixels(state, size);
}

constexpr double kRadius = 12;

/// A diagonal panel with round corners, as the view draws it.
void ourRoundedPanel(benchmark::State& state, Kind kind, Size size)
{
    const Ours canvas(size);
    const auto view = make<ZRGradientView>(whole(size));
    view->setGradient(makeGradient(kind));
    view->setEndPoint({endOf(kind, size).x / size.width, endOf(kind, size).y / size.height});
    view->setRoundedCorners(kZRCornerAll);
    view->setCornerRadius(kRadius);
    const auto graphics = NSGraphicsContext::graphicsContextWithCGContext(canvas.context, false);
    NSGraphicsContext::setCurrentContext(graphics.get());
    for (auto _ : state)
        view->drawRect(view->bounds());
    NSGraphicsContext::setCurrentContext(nullptr);
    setPixels(state, size);
}

void qtRoundedPanel(benchmark::State& state, Kind kind, Size size)
{
    QImage image(size.width, size.height, QImage::Format_RGBA8888_Premultiplied);
    image.fill(0);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(makeBrush(kind, size));
    for (auto _ : state)
        painter.drawRoundedRect(image.rect(), kRadius, kRadius);
    setPixels(state, size);
}

void cairoRoundedPanel(benchmark::State& state, Kind kind, Size size)
{
    const Cairo canvas(size);
    const auto pattern = makePattern(kind, size);
    cairo_t* const cairo = canvas.cairo.get();
    cairo_set_source(cairo, pattern.get());
    const double right = size.width - kRadius, top = size.height - kRadius, quarter = std::acos(-1) / 2;
    for (auto _ : state) {
        cairo_arc(cairo, right, top, kRadius, 0, quarter);
        cairo_arc(cairo, kRadius, top, kRadius, quarter, 2 * quarter);
        cairo_arc(cairo, kRadius, kRadius, kRadius, 2 * quarter, 3 * quarter);
        cairo_arc(cairo, right, kRadius, kRadius, 3 * quarter, 4 * quarter);
        cairo_close_path(cairo);
        cairo_fill(cairo);
    }
    cairo_surface_flush(canvas.surface.get());
    setPixels(state, size);
}

using Draw = void (*)(benchmark::State&, Kind, Size);

void addPanels(const std::string& name, Kind kind, Draw ours, Draw qts, Draw cairos)
{
    for (const Size size : kPanels) {
        const std::string place = name + "/" + nameOf(size);
        const auto add = [&](const char* who, Draw draw) {
            // Qt spreads large fills over threads: what counts is the time that passes.
            benchmark::RegisterBenchmark((place + who).c_str(), draw, kind, size)
                ->Unit(benchmark::kMicrosecond)
                ->MeasureProcessCPUTime()
                ->UseRealTime();
        };
        add("/ours", ours);
        add("/QPainter", qts);
        add("/cairo", cairos);
    }
}

const bool isAdded = [] {
    const auto add = [](const std::string& name, Kind kind) { addPanels(name, kind, ours, qts, cairos); };
    add("gradient/vertical", Kind::Vertical);
    add("gradient/horizontal", Kind::Horizontal);
    add("gradient/diagonal", Kind::Diagonal);
    add("gradient/radial", Kind::Radial);
    add("gradient/translucentVertical", Kind::TranslucentVertical);
    add("gradient/translucentDiagonal", Kind::TranslucentDiagonal);
    add("gradient/translucentRadial", Kind::TranslucentRadial);
    const auto addRounded = [](const std::string& name, Kind kind) {
        addPanels(name, kind, ourRoundedPanel, qtRoundedPanel, cairoRoundedPanel);
    };
    addRounded("gradient/roundedVertical", Kind::Vertical);
    addRounded("gradient/roundedDiagonal", Kind::Diagonal);
    return true;
}();

} // namespace
