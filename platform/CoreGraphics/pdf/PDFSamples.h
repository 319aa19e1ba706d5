#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

class PDFObject;
class PDFRecording;
struct PDFImageData;

/// The samples of an image as its file stores them: numbers of 1, 2, 4, 8 or 16 bits, each row starting at a
/// byte.
struct PDFSamples {
    std::size_t width = 0;
    std::size_t height = 0;
    std::size_t components = 0; ///< samples of a pixel
    int bits = 8;
    std::string bytes;

    /// Reads a row, the top one first, into `width * components` numbers. Missing samples are 0.
    void readRow(std::size_t y, std::span<std::uint16_t> samples) const;
    std::size_t bytesPerRow() const { return (width * components * std::size_t(bits) + 7) / 8; }
    std::uint32_t largest() const { return (std::uint32_t(1) << bits) - 1; }
};

/// The samples of an image with that many components and that many bits; a JPEG image decides both itself.
/// Takes the pixels from the budget. Nothing, and the reason is logged, when the image cannot be decoded.
std::optional<PDFSamples> decodePDFSamples(
    const PDFImageData& image, std::size_t components, int bits, PDFRecording& recording);
