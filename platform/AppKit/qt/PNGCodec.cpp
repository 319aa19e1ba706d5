#include "AppKit/PNGCodec.h"

#include <QBuffer>
#include <QIODevice>
#include <QImage>
#include <QImageReader>
#include <QImageWriter>

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

namespace {

constexpr int kDotsPerMeter = 2835; // 72 dpi

/// The longest side of a QImage.
constexpr std::size_t kMostPixelsPerSide = std::numeric_limits<int>::max();

/// The colour type is byte 25 of a file, in its first chunk.
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

/// Collects what is written. When memory runs out a write fails, without an exception, which would have to
/// pass through the C code of the encoder.
class ByteWriter final : public QIODevice {
public:
    ByteWriter() { open(QIODevice::WriteOnly | QIODevice::Unbuffered); }

    std::vector<std::byte> takeBytes() { return std::move(_bytes); }

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char* data, qint64 size) override
    {
        try {
            const auto* const bytes = reinterpret_cast<const std::byte*>(data);
            _bytes.insert(_bytes.end(), bytes, bytes + size);
            return size;
        } catch (const std::bad_alloc&) {
            return -1;
        }
    }

private:
    std::vector<std::byte> _bytes;
};

} // namespace

std::vector<std::byte> encodePNG(PNGPicture picture)
{
    if (std::max(picture.width, picture.height) > kMostPixelsPerSide)
        return {};
    const std::size_t bytesPerRow = picture.width * PNGPicture::bytesPerPixel(picture.format);
    QImage image(picture.bytes.data(), static_cast<int>(picture.width), static_cast<int>(picture.height),
        static_cast<qsizetype>(bytesPerRow), imageFormat(picture.format));
    // These do not copy the pixels, since `image` refers to memory that may change. Without them the file
    // would hold the resolution of the screen.
    image.setDotsPerMeterX(kDotsPerMeter);
    image.setDotsPerMeterY(kDotsPerMeter);

    ByteWriter writer;
    if (!QImageWriter(&writer, "png").write(image))
        return {};
    return writer.takeBytes();
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
    // Read into memory that is there already, the picture need not obey QImageReader's limit on allocations,
    // which a program may set for files of its own.
    QImage image(size, reader.imageFormat());
    if (image.isNull() || !reader.read(&image))
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
