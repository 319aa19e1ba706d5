#pragma once

#include <QImage>
#include <QPoint>

#include <optional>

class QPainter;

/// The pixels that a painter paints on. QPainter::drawImage takes more than twice as long to copy an image of
/// another byte order there.
class ScreenPixels {
public:
    /// Nothing if they are not in memory, are not of 8 bits in Format_RGB32, or do not lie on those of the
    /// painter's present coordinates. Valid while the painter is active.
    static std::optional<ScreenPixels> of(const QPainter& painter);

    /// Copies a rectangle of an image in Format_RGBA8888_Premultiplied, over black, to the same place in the
    /// painter's coordinates. The painter's clip is ignored.
    void copy(const QImage& image, const QRect& area) const;

private:
    ScreenPixels(QImage& image, QPoint offset)
        : _image(image)
        , _offset(offset)
    {
    }

    QImage& _image;
    QPoint _offset; ///< from the painter's coordinates
};
