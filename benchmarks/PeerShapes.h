#pragma once

// Rounded rectangles and their shadows, as programs draw them with cairo and with Qt. Neither has shadows:
// the alphas are drawn apart, blurred by plain loops and painted through. Rows run downward.

#include "BenchmarkCanvas.h"
#include "PlainGaussian.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include <numbers>

constexpr double kShadowBlur = 4;
constexpr double kShadowDown = 5;

/// Registers `run(state, arguments...)`.
template <class Run, class... Arguments> void add(const std::string& name, Run run, Arguments... arguments)
{
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) { run(state, arguments...); });
}

/// Where to draw next, in pixels from the place of what is drawn.
class Place {
public:
    explicit Place(bool moves)
        : _step(moves ? std::numbers::phi : 0)
    {
    }
    double next() { return _place = std::fmod(_place + _step, 1); }

private:
    double _step;
    double _place = 0;
};

inline void addRoundedRect(cairo_t* cairo, CGRect rect, double radius)
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

inline QPainterPath roundedRect(CGRect rect, double radius)
{
    QPainterPath path;
    path.addRoundedRect(
        QRectF(rect.origin.x, rect.origin.y, rect.size.width, rect.size.height), radius, radius);
    return path;
}

/// Qt's, on pixels of its own.
struct Qts {
    explicit Qts(Size size)
        : image(size.width, size.height, QImage::Format_RGBA8888_Premultiplied)
    {
        image.fill(Qt::transparent);
        painter.begin(&image);
        painter.setRenderHint(QPainter::Antialiasing);
    }
    QImage image;
    QPainter painter;
};

/// Pixels that a shadow takes, wherever it lies between them.
inline int shadowWidth(CGRect rect)
{
    return int(std::ceil(rect.size.width)) + 2 * int(kShadowBlur) + 1;
}
inline int shadowHeight(CGRect rect)
{
    return int(std::ceil(rect.size.height)) + 2 * int(kShadowBlur) + 1;
}

/// Alphas that go as far as the shadow does.
class CairoShadow {
public:
    CairoShadow(CGRect rect, double radius)
        : _rect(rect)
        , _radius(radius)
        , _surface(cairo_image_surface_create(CAIRO_FORMAT_A8, shadowWidth(rect), shadowHeight(rect)))
        , _cairo(cairo_create(_surface.get()))
        , _gaussian(int(kShadowBlur))
    {
        cairo_set_tolerance(_cairo.get(), kTolerance);
    }
    void draw(double place)
    {
        cairo_set_operator(_cairo.get(), CAIRO_OPERATOR_CLEAR);
        cairo_paint(_cairo.get());
        cairo_set_operator(_cairo.get(), CAIRO_OPERATOR_OVER);
        addRoundedRect(_cairo.get(),
            CGRectMake(kShadowBlur + place, kShadowBlur + place, _rect.size.width, _rect.size.height),
            _radius);
        cairo_fill(_cairo.get());
        cairo_surface_flush(_surface.get());
        _gaussian.run(cairo_image_surface_get_data(_surface.get()), shadowWidth(_rect), shadowHeight(_rect),
            cairo_image_surface_get_stride(_surface.get()));
        cairo_surface_mark_dirty(_surface.get());
    }
    void paint(cairo_t* cairo)
    {
        cairo_set_source_rgba(cairo, 0, 0, 0, 1.0 / 3);
        cairo_mask_surface(
            cairo, _surface.get(), _rect.origin.x - kShadowBlur, _rect.origin.y - kShadowBlur + kShadowDown);
    }

private:
    CGRect _rect;
    double _radius;
    std::unique_ptr<cairo_surface_t, Cairo::Delete> _surface;
    std::unique_ptr<cairo_t, Cairo::Delete> _cairo;
    PlainGaussian _gaussian;
};

/// A picture of the shadow in its colour.
class QtShadow {
public:
    QtShadow(CGRect rect, double radius)
        : _rect(rect)
        , _radius(radius)
        , _alphas(shadowWidth(rect), shadowHeight(rect), QImage::Format_Alpha8)
        , _image(shadowWidth(rect), shadowHeight(rect), QImage::Format_RGBA8888_Premultiplied)
        , _gaussian(int(kShadowBlur))
    {
    }
    void draw(double place)
    {
        _alphas.fill(Qt::transparent);
        QPainter painter(&_alphas);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillPath(roundedRect(CGRectMake(kShadowBlur + place, kShadowBlur + place, _rect.size.width,
                                         _rect.size.height),
                             _radius),
            Qt::black);
        painter.end();
        _gaussian.run(_alphas.bits(), shadowWidth(_rect), shadowHeight(_rect), int(_alphas.bytesPerLine()));
        _image.fill(QColor::fromRgbF(0, 0, 0, 1.0F / 3));
        QPainter tint(&_image);
        tint.setCompositionMode(QPainter::CompositionMode_DestinationIn);
        tint.drawImage(0, 0, _alphas);
    }
    void paint(QPainter& painter) const
    {
        painter.drawImage(
            QPointF(_rect.origin.x - kShadowBlur, _rect.origin.y - kShadowBlur + kShadowDown), _image);
    }

private:
    CGRect _rect;
    double _radius;
    QImage _alphas;
    QImage _image;
    PlainGaussian _gaussian;
};
