#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// A colour as it lies in the pixels: premultiplied bytes red, green, blue, alpha.
using PixelBytes = std::array<std::uint8_t, 4>;

/// Blends pixels with a colour, each through a byte of coverage: D = coverage x colour + (1 - coverage x
/// hidden) x D, in 16 bits and rounded once. `bytes`, four for each pixel, or one of alpha alone, may have
/// any address. Pixels that are not covered stay as they are.
void blendSolid(unsigned char* bytes, const unsigned char* coverage, std::size_t count, PixelBytes color,
    std::uint8_t hidden, bool isAlphaOnly);
