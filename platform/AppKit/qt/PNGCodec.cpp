#include "AppKit/PNGCodec.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <QImageWriter>

#include <algorithm>
#include <cstring>
#include <limits>

namespace {

constexpr int kDotsPerMeter = 2835; // 72 dpi

/// What a QImage can count.
constexpr std::size_t kLongestSide = std::numeric_limits<int>::max();

/// Byte 25 of a file, in its first chunk, tells what a pixel is made of.
constexpr std::size_t kColorTypeOffset = 25;
constexpr std::byte kGrayColorType{0};

QImage::Format imageFormat(PNGPicture::Format format)
{
    switch (format) {
    case PNGPicture::Format::Gray:
        return QImage::Format_Grayscale8;
    case PNGPicture::Format::RGB:
        return QImage::Format_RGB888;
    case PNGPicture::Format::RGBA:
        break;
    }
    return QImage::Format_RGBA8888;
}

} // namespace

std::vector<std::byte> encodePNG(PNGPicture picture)
{
    if (std::max(picture.width, picture.height) > kLongestSide)
        return {};
    const std::size_t bytesPerRow = picture.width * PNGPicture::bytesPerPixel(picture.format);
    QImage image(picture.bytes.data(), static_cast<int>(picture.width), static_cast<int>(picture.height),
        static_cast<qsizetype>(bytesPerRow), imageFormat(picture.format));
    // These do not copy the pixels, as the picture is ours to change. Without them the file would tell
    // the resolution of the screen.
    image.setDotsPerMeterX(kDotsPerMeter);
    image.setDotsPerMeterY(kDotsPerMeter);

    QByteArray file;
    QBuffer buffer(&file);
    if (!QImageWriter(&buffer, "png").write(image))
        return {};
    const auto* bytes = reinterpret_cast<const std::byte*>(file.constData());
    return {bytes, bytes + file.size()};
}

std::optional<PNGPicture> decodePNG(std::span<const std::byte> file)
{
    QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char*>(file.data()), std::ssize(file));
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer, "png");
    reader.setAutoDetectImageFormat(false);
    const QSize size = reader.size();
    if (size.isEmpty()
        || static_cast<std::size_t>(size.width()) * static_cast<std::size_t>(size.height()) > kMostPNGPixels)
        return std::nullopt;
    QImage image;
    if (!reader.read(&image))
        return std::nullopt;

    PNGPicture picture{PNGPicture::Format::RGB, static_cast<std::size_t>(image.width()),
        static_cast<std::size_t>(image.height()), {}};
    if (image.hasAlphaChannel())
        picture.format = PNGPicture::Format::RGBA;
    else if (file[kColorTypeOffset] == kGrayColorType)
        picture.format = PNGPicture::Format::Gray;

    image = std::move(image).convertToFormat(imageFormat(picture.format));
    if (image.isNull())
        return std::nullopt;
    const std::size_t bytesPerRow = picture.width * PNGPicture::bytesPerPixel(picture.format);
    picture.bytes.resize(bytesPerRow * picture.height);
    for (std::size_t row = 0; row < picture.height; ++row)
        std::memcpy(picture.bytes.data() + row * bytesPerRow, image.constScanLine(static_cast<int>(row)),
            bytesPerRow);
    return picture;
}
