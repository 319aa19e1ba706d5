#pragma once

#include "Canvas.h"

#include <QBrush>
#include <QImage>
#include <QPainter>
#include <QPen>

/// An image of Qt's native format: in others, QPainter draws small shapes 5 to 10 times slower. The origin is
/// at the upper left.
class QtCanvas {
public:
    static constexpr const char* kLibrary = "Qt";

    explicit QtCanvas(Size size, double alpha = 1)
        : _color(QColor::fromRgbF(float(kColor[0]), float(kColor[1]), float(kColor[2]), float(alpha)))
        , _pen(_color, kLineWidth, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin)
        , _image(size.width, size.height, QImage::Format_ARGB32_Premultiplied)
    {
        _image.fill(Qt::transparent);
        _painter.begin(&_image);
        _painter.setRenderHint(QPainter::Antialiasing);
        _painter.setPen(Qt::NoPen);
        _painter.setBrush(Qt::NoBrush);
    }

    QPainter& painter() { return _painter; }
    const QColor& color() const { return _color; }
    /// Of strokes. Corners are mitred, as in the other libraries.
    const QPen& pen() const { return _pen; }
    /// Only without an active painter.
    const QImage& image() const { return _image; }

private:
    QColor _color;
    QPen _pen;
    QImage _image;
    QPainter _painter;
};

inline QRectF qtRect(CGRect rect)
{
    return {rect.origin.x, rect.origin.y, rect.size.width, rect.size.height};
}

/// The shapes that several tables draw.
inline void fillRect(QtCanvas& canvas, CGRect rect)
{
    canvas.painter().fillRect(qtRect(rect), canvas.color());
}

inline void fillEllipse(QtCanvas& canvas, CGRect rect)
{
    canvas.painter().setBrush(canvas.color());
    canvas.painter().drawEllipse(qtRect(rect));
}
