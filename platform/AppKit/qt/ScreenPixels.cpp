#include "ScreenPixels.h"

#include <QPaintEngine>
#include <QPainter>

#include <bit>

std::optional<ScreenPixels> ScreenPixels::of(const QPainter& painter)
{
    QPaintDevice* const device = painter.paintEngine()->paintDevice();
    const QTransform transform = painter.deviceTransform();
    const QPoint offset(qRound(transform.dx()), qRound(transform.dy()));
    const bool liesOnPixels = transform.type() <= QTransform::TxTranslate
        && QPointF(offset) == QPointF(transform.dx(), transform.dy());
    if (!device || device->devType() != QInternal::Image || !liesOnPixels
        || std::endian::native != std::endian::little)
        return std::nullopt;
    auto& image = static_cast<QImage&>(*device);
    if (image.format() != QImage::Format_RGB32)
        return std::nullopt;
    return ScreenPixels(image, offset);
}

void ScreenPixels::copy(const QImage& image, const QRect& area) const
{
    const QRect source = area & image.rect() & _image.rect().translated(-_offset);
    for (int y = source.top(); y <= source.bottom(); ++y) {
        const auto* const from = reinterpret_cast<const quint32*>(image.constScanLine(y)) + source.left();
        auto* const to =
            reinterpret_cast<quint32*>(_image.scanLine(y + _offset.y())) + source.left() + _offset.x();
        for (int x = 0; x < source.width(); ++x) {
            const quint32 pixel = from[x]; // alpha, blue, green, red
            to[x] = 0xFF000000U | (pixel & 0xFF00U) | (pixel & 0xFFU) << 16 | (pixel >> 16 & 0xFFU);
        }
    }
}
