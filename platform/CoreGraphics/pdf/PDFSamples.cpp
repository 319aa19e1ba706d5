#include "CoreGraphics/pdf/PDFSamples.h"

#include "CoreGraphics/pdf/PDFBits.h"
#include "CoreGraphics/pdf/PDFImage.h"
#include "CoreGraphics/pdf/PDFJPEG.h"
#include "CoreGraphics/pdf/PDFRecording.h"

#include <algorithm>

namespace {

constexpr int kMostPixelsOfSide = 1'000'000;

std::optional<PDFSamples> decodeJPEG(const PDFImageData& image, PDFRecording& recording)
{
    const PDFObject transform = image.filterParameters["ColorTransform"];
    auto decoded = decodeJPEG(image.bytes,
        !transform.isNumber()          ? PDFJPEGTransform::Default
            : transform.integer() == 0 ? PDFJPEGTransform::None
                                       : PDFJPEGTransform::Luminance,
        recording.budget().decodedBytesLeft());
    if (decoded.components == 0) {
        recording.notDrawn("an image is not drawn (invalid DCTDecode)");
        return std::nullopt;
    }
    recording.budget().spendDecodedBytes(decoded.samples.size());
    recording.budget().spendImagePixels(decoded.width * decoded.height);
    return PDFSamples{decoded.width, decoded.height, decoded.components, 8, std::move(decoded.samples)};
}

} // namespace

void PDFSamples::readRow(std::size_t y, std::span<std::uint16_t> samples) const
{
    const std::size_t start = std::min(y * bytesPerRow(), bytes.size());
    const std::string_view row = std::string_view(bytes).substr(start, bytesPerRow());
    const std::size_t count = std::min(samples.size(), row.size() * 8 / std::size_t(bits));
    for (std::size_t i = 0; i < count; ++i)
        samples[i] = std::uint16_t(
            bits == 8 ? std::uint8_t(row[i]) : bitsAt(row, i * std::size_t(bits), std::size_t(bits)));
    std::ranges::fill(samples.subspan(count), std::uint16_t(0));
}

std::optional<PDFSamples> decodePDFSamples(
    const PDFImageData& image, std::size_t components, int bits, PDFRecording& recording)
{
    if (image.pictureFilter == "DCTDecode")
        return decodeJPEG(image, recording);
    if (!image.pictureFilter.empty()) {
        recording.notDrawn("an image is not drawn (" + image.pictureFilter + ")");
        return std::nullopt;
    }
    const int width = image.dictionary["Width"].integer();
    const int height = image.dictionary["Height"].integer();
    const bool isValid = width > 0 && height > 0 && width <= kMostPixelsOfSide && height <= kMostPixelsOfSide
        && (bits == 1 || bits == 2 || bits == 4 || bits == 8 || bits == 16) && components > 0;
    if (!isValid) {
        recording.notDrawn("an image is not drawn (invalid size)");
        return std::nullopt;
    }
    recording.budget().spendImagePixels(std::size_t(width) * std::size_t(height));
    return PDFSamples{std::size_t(width), std::size_t(height), components, bits, image.bytes};
}
