#pragma once

#include "CoreGraphics/raster/PixelSource.h"

#include <cstddef>
#include <cstdint>
#include <span>

/// Paints premultiplied pixels over others in the normal mode, multiplied by `alpha` and, unless it is null,
/// by a byte of coverage for each. `bytes`, four for each pixel, may have any address. A result is at most 1
/// from the exact one.
void blendPixels(unsigned char* bytes, std::span<const std::uint32_t> pixels, const unsigned char* coverage,
    std::uint8_t alpha);
/// Like blendPixels, with one pixel in place of each.
void blendPixel(unsigned char* bytes, std::uint32_t pixel, std::size_t count, const unsigned char* coverage,
    std::uint8_t alpha);

/// Paints rows of premultiplied pixels over others in the normal mode. Both may have any address.
void paintOver(
    unsigned char* bytes, std::size_t bytesPerRow, const RowsInMemory& pixels, std::size_t width, int height);
