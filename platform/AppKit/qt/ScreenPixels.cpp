#include "ScreenPixels.h"

#include <QPaintEngine>
#include <QPainter>

#include <bit>

namespace {

/// Writes RGBA pixels, premultiplied, in Format_RGB32: over black.
[[gnu::always_inline]] inline void convert(const quint32* from, quint32* to, int count)
{
    for (int x = 0; x < count; ++x) {
        const quint32 blueAndRed = from[x] & 0xFF00FFU;
        to[x] = 0xFF000000U | (from[x] & 0xFF00U) | blueAndRed << 16 | blueAndRed >> 16;
    }
}

#if defined(__x86_64__)
/// For a vector unit that takes twice as many pixels at a time.
[[gnu::target("avx2")]] void convertWithAVX2(const quint32* from, quint32* to, int count)
{
    convert(from, to, count);
}
#endif

void convertRow(const quint32* from, quint32* to, int count)
{
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx2"))
        return convertWithAVX2(from, to, count);
#endif
    convert(from, to, count);
}

} // namespace

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
        convertRow(from, to, source.width());
    }
}
