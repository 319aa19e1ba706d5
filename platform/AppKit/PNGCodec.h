#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

/// Pixels in the layout of PNG files: rows from the top without padding, alpha straight.
struct PNGPicture {
    enum class Format {
        Gray, ///< one byte per pixel, opaque
        RGB,  ///< three bytes, opaque
        RGBA, ///< four bytes
    };

    static constexpr std::size_t bytesPerPixel(Format format)
    {
        return format == Format::Gray ? 1 : format == Format::RGB ? 3 : 4;
    }

    Format format;
    std::size_t width;
    std::size_t height;
    std::vector<std::uint8_t> bytes;
};

/// The largest picture that is read: a small file could unpack to any size.
inline constexpr std::size_t kMostPNGPixels = std::size_t(1) << 26;

/// The bytes of a file, the same for the same picture; empty when memory runs out or a side is longer than a
/// million pixels.
std::vector<std::byte> encodePNG(const PNGPicture& picture);
/// The picture in a file; nothing when the file is damaged, of another format or too large. Throws
/// std::bad_alloc when memory runs out.
std::optional<PNGPicture> decodePNG(std::span<const std::byte> file);
