#pragma once

#include "CoreGraphics/raster/Pixels.h"

/// Blends pixels with a colour, each through a byte of coverage: D = coverage x colour + (1 - coverage x
/// hidden) x D, in 16 bits and rounded once. `bytes`, four for each pixel, or one if there is only alpha, may
/// have any address. Pixels that are not covered do not change. Null coverage means full coverage.
void blendSolid(unsigned char* bytes, const unsigned char* coverage, std::size_t count, PixelBytes color,
    std::uint8_t hidden, bool isAlphaOnly);
