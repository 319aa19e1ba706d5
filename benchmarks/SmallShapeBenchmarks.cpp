// What views draw time and again: rounded rectangles, filled, stroked and with a shadow. "still" draws the
// same at the same place each time, "moving" never twice at the same place between the pixels.

#include "BenchmarkCanvas.h"
#include "PlainGaussian.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include <numbers>

namespace {

constexpr Size kCanvas{120, 60};
constexpr CGRect kCapsule{{20, 19}, {80, 22}};
constexpr CGRect kBadge{{30, 18}, {60, 24}};
constexpr double kRadius = 11;
constexpr double kBlur = 4;
constexpr double kDown = 5;

/// Where to draw next, in pixels from the place of the shape.
class Place {
public:
    explicit Place(bool moves)
        : _step(moves ? std::numbers::phi : 0)
    {
    }
    double next()
    {
        _place = std::fmod(_place + _step, 1);
        return _place;
    }

private:
    double _step;
    double _place = 0;
};

CGRect moved(CGRect rect, double by)
{
    return CGRectOffset(rect, by, by);
}

void addRoundedRect(cairo_t* cairo, CGRect rect, double radius)
{
    const double left = CGRectGetMinX(rect) + radius;
    const double right = CGRectGetMaxX(rect) - radius;
    const double low = CGRectGetMinY(rect) + radius;
    const double high = CGRectGetMaxY(rect) - radius;
    constexpr double kQuarter = std::numbers::pi / 2;
    cairo_new_sub_path(cairo);
    cairo_arc(cairo, right, high, radius, 0, kQuarter);
    cairo_arc(cairo, left, high, radius, kQuarter, 2 * kQuarter);
    cairo_arc(cairo, left, low, radius, 2 * kQuarter, 3 * kQuarter);
    cairo_arc(cairo, right, low, radius, 3 * kQuarter, 4 * kQuarter);
    cairo_close_path(cairo);
}

QPainterPath roundedRect(CGRect rect, double radius)
{
    QPainterPath path;
    path.addRoundedRect(
        QRectF(rect.origin.x, rect.origin.y, rect.size.width, rect.size.height), radius, radius);
    return path;
}

/// Qt's, on pixels of its own.
struct Qts {
    Qts()
        : image(kCanvas.width, kCanvas.height, QImage::Format_RGBA8888_Premultiplied)
    {
        image.fill(Qt::transparent);
        painter.begin(&image);
        painter.setRenderHint(QPainter::Antialiasing);
    }
    QImage image;
    QPainter painter;
};
const QColor kQtColor = QColor::fromRgbF(0.2F, 0.4F, 0.6F, 0.9F);

// Fills.

void fillOurs(benchmark::State& state, bool moves)
{
    const Ours canvas(kCanvas);
    Place place(moves);
    for (auto _ : state) {
        const auto path =
            adopt(CGPathCreateWithRoundedRect(moved(kCapsule, place.next()), kRadius, kRadius, nullptr));
        CGContextAddPath(canvas.context.get(), path.get());
        CGContextFillPath(canvas.context.get());
    }
}
void fillCairos(benchmark::State& state, bool moves)
{
    const Cairo canvas(kCanvas);
    Place place(moves);
    for (auto _ : state) {
        addRoundedRect(canvas.cairo.get(), moved(kCapsule, place.next()), kRadius);
        cairo_fill(canvas.cairo.get());
    }
}
void fillQts(benchmark::State& state, bool moves)
{
    Qts canvas;
    Place place(moves);
    for (auto _ : state)
        canvas.painter.fillPath(roundedRect(moved(kCapsule, place.next()), kRadius), kQtColor);
}

// Strokes, three wide like those of the other benchmarks.

void strokeOurs(benchmark::State& state, bool moves)
{
    const Ours canvas(kCanvas);
    Place place(moves);
    for (auto _ : state) {
        const auto path =
            adopt(CGPathCreateWithRoundedRect(moved(kCapsule, place.next()), kRadius, kRadius, nullptr));
        CGContextAddPath(canvas.context.get(), path.get());
        CGContextStrokePath(canvas.context.get());
    }
}
void strokeCairos(benchmark::State& state, bool moves)
{
    const Cairo canvas(kCanvas);
    Place place(moves);
    for (auto _ : state) {
        addRoundedRect(canvas.cairo.get(), moved(kCapsule, place.next()), kRadius);
        cairo_stroke(canvas.cairo.get());
    }
}
void strokeQts(benchmark::State& state, bool moves)
{
    Qts canvas;
    Place place(moves);
    const QPen pen(kQtColor, 3);
    for (auto _ : state)
        canvas.painter.strokePath(roundedRect(moved(kCapsule, place.next()), kRadius), pen);
}

// The outline of a badge, filled with a shadow below it. The peers have none: they draw the alphas apart,
// blur them by plain loops and paint through them.

void shadowOurs(benchmark::State& state, bool moves)
{
    const Ours canvas(kCanvas);
    CGContextSetShadow(canvas.context.get(), CGSizeMake(0, -kDown), kBlur);
    Place place(moves);
    for (auto _ : state) {
        const auto path =
            adopt(CGPathCreateWithRoundedRect(moved(kBadge, place.next()), kRadius, kRadius, nullptr));
        CGContextAddPath(canvas.context.get(), path.get());
        CGContextFillPath(canvas.context.get());
    }
}

/// Alphas that go as far as the shadow does.
class CairoShadow {
public:
    CairoShadow()
        : _surface(cairo_image_surface_create(CAIRO_FORMAT_A8, kWidth, kHeight))
        , _cairo(cairo_create(_surface.get()))
        , _gaussian(int(kBlur))
    {
        cairo_set_tolerance(_cairo.get(), kTolerance);
    }
    void draw(double place)
    {
        cairo_set_operator(_cairo.get(), CAIRO_OPERATOR_CLEAR);
        cairo_paint(_cairo.get());
        cairo_set_operator(_cairo.get(), CAIRO_OPERATOR_OVER);
        addRoundedRect(_cairo.get(), CGRectMake(kBlur + place, kBlur + place, 60, 24), kRadius);
        cairo_fill(_cairo.get());
        cairo_surface_flush(_surface.get());
        _gaussian.run(cairo_image_surface_get_data(_surface.get()), kWidth, kHeight,
            cairo_image_surface_get_stride(_surface.get()));
        cairo_surface_mark_dirty(_surface.get());
    }
    void paint(cairo_t* cairo)
    {
        cairo_set_source_rgba(cairo, 0, 0, 0, 1.0 / 3);
        cairo_mask_surface(cairo, _surface.get(), kBadge.origin.x - kBlur, kBadge.origin.y - kBlur + kDown);
    }

private:
    static constexpr int kWidth = 60 + 2 * int(kBlur) + 1;
    static constexpr int kHeight = 24 + 2 * int(kBlur) + 1;

    std::unique_ptr<cairo_surface_t, Cairo::Delete> _surface;
    std::unique_ptr<cairo_t, Cairo::Delete> _cairo;
    PlainGaussian _gaussian;
};

void shadowCairos(benchmark::State& state, bool moves, bool keeps)
{
    const Cairo canvas(kCanvas);
    cairo_identity_matrix(canvas.cairo.get()); // or the blurred alphas would be resampled
    CairoShadow shadow;
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

/// A picture of the shadow in its colour.
class QtShadow {
public:
    QtShadow()
        : _alphas(kWidth, kHeight, QImage::Format_Alpha8)
        , _image(kWidth, kHeight, QImage::Format_RGBA8888_Premultiplied)
        , _gaussian(int(kBlur))
    {
    }
    void draw(double place)
    {
        _alphas.fill(Qt::transparent);
        QPainter painter(&_alphas);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillPath(roundedRect(CGRectMake(kBlur + place, kBlur + place, 60, 24), kRadius), Qt::black);
        painter.end();
        _gaussian.run(_alphas.bits(), kWidth, kHeight, int(_alphas.bytesPerLine()));
        _image.fill(QColor::fromRgbF(0, 0, 0, 1.0F / 3));
        QPainter tint(&_image);
        tint.setCompositionMode(QPainter::CompositionMode_DestinationIn);
        tint.drawImage(0, 0, _alphas);
    }
    void paint(QPainter& painter) const
    {
        painter.drawImage(QPointF(kBadge.origin.x - kBlur, kBadge.origin.y - kBlur + kDown), _image);
    }

private:
    static constexpr int kWidth = 60 + 2 * int(kBlur) + 1;
    static constexpr int kHeight = 24 + 2 * int(kBlur) + 1;

    QImage _alphas;
    QImage _image;
    PlainGaussian _gaussian;
};

void shadowQts(benchmark::State& state, bool moves, bool keeps)
{
    Qts canvas;
    QtShadow shadow;
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

template <class Run, class... Arguments> void add(const std::string& name, Run run, Arguments... arguments)
{
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) { run(state, arguments...); });
}

const bool registered = [] {
    for (const bool moves : {false, true}) {
        const std::string place = moves ? "moving/" : "still/";
        add("rounded rectangle 80x22/fill/" + place + "ours", fillOurs, moves);
        add("rounded rectangle 80x22/fill/" + place + "cairo", fillCairos, moves);
        add("rounded rectangle 80x22/fill/" + place + "QPainter", fillQts, moves);
        add("rounded rectangle 80x22/stroke/" + place + "ours", strokeOurs, moves);
        add("rounded rectangle 80x22/stroke/" + place + "cairo", strokeCairos, moves);
        add("rounded rectangle 80x22/stroke/" + place + "QPainter", strokeQts, moves);
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
