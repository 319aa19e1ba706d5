#pragma once

// Shadows of rounded rectangles, as programs draw them with libraries that have none: a mask is drawn and
// blurred once, and then drawn wherever the shadow is needed.

#include "CairoCanvas.h"
#include "PlainGaussian.h"
#include "QtCanvas.h"

inline constexpr double kShadowBlur = 4;
inline constexpr double kShadowDown = 5;
inline constexpr double kShadowAlpha = 1.0 / 3;

/// Of the mask: as far as the shadow reaches.
inline Size shadowSize(CGSize size)
{
    constexpr double kBothSides = 2 * kShadowBlur;
    return {int(std::ceil(size.width + kBothSides)), int(std::ceil(size.height + kBothSides))};
}

/// The shape within the mask.
inline CGRect shapeInShadow(CGSize size)
{
    return CGRectMake(kShadowBlur, kShadowBlur, size.width, size.height);
}

class CairoShadow {
public:
    CairoShadow(CGSize size, double radius)
        : _mask(cairo_image_surface_create(CAIRO_FORMAT_A8, shadowSize(size).width, shadowSize(size).height))
    {
        const CairoPtr<cairo_t> cairo(cairo_create(_mask.get()));
        addRoundedRect(cairo.get(), shapeInShadow(size), radius);
        cairo_fill(cairo.get());
        cairo_surface_flush(_mask.get());
        PlainGaussian(int(kShadowBlur))
            .run(cairo_image_surface_get_data(_mask.get()), shadowSize(size).width, shadowSize(size).height,
                cairo_image_surface_get_stride(_mask.get()));
        cairo_surface_mark_dirty(_mask.get());
    }
    /// Below the shape whose upper left corner is `origin`. Changes the source of `cairo`.
    void draw(cairo_t* cairo, CGPoint origin) const
    {
        cairo_set_source_rgba(cairo, 0, 0, 0, kShadowAlpha);
        cairo_mask_surface(cairo, _mask.get(), origin.x - kShadowBlur, origin.y - kShadowBlur + kShadowDown);
    }

private:
    CairoPtr<cairo_surface_t> _mask;
};

/// An image in the shadow's colour, as QPainter draws images faster than masks.
class QtShadow {
public:
    QtShadow(CGSize size, double radius)
        : _image(shadowSize(size).width, shadowSize(size).height, QImage::Format_ARGB32_Premultiplied)
    {
        QImage mask(_image.size(), QImage::Format_Alpha8);
        mask.fill(0);
        QPainter shape(&mask);
        shape.setRenderHint(QPainter::Antialiasing);
        shape.setPen(Qt::NoPen);
        shape.setBrush(Qt::black);
        shape.drawRoundedRect(qtRect(shapeInShadow(size)), radius, radius);
        shape.end();
        PlainGaussian(int(kShadowBlur)).run(mask.bits(), mask.width(), mask.height(), mask.bytesPerLine());
        _image.fill(QColor::fromRgbF(0, 0, 0, float(kShadowAlpha)));
        QPainter tint(&_image);
        tint.setCompositionMode(QPainter::CompositionMode_DestinationIn);
        tint.drawImage(0, 0, mask);
    }
    /// Below the shape whose upper left corner is `origin`.
    void draw(QPainter& painter, CGPoint origin) const
    {
        painter.drawImage(QPointF(origin.x - kShadowBlur, origin.y - kShadowBlur + kShadowDown), _image);
    }

private:
    QImage _image;
};
