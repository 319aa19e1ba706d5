#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

/// Pixels as a PNG file knows them: rows from the top without padding, alpha straight.
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

/// More pixels are not read: a small file could unpack to any size.
inline constexpr std::size_t kMostPNGPixels = std::size_t(1) << 26;

/// The file's bytes, the same for the same picture; empty when there is no memory or a side is too long.
std::vector<std::byte> encodePNG(PNGPicture picture);
/// The picture in a file; nothing when the file is damaged, of another format or too large.
std::optional<PNGPicture> decodePNG(std::span<const std::byte> file);
