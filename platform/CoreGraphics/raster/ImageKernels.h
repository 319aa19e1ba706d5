#pragma once

#include "CoreGraphics/raster/ImageView.h"

#include <cstddef>
#include <cstdint>

// The loops that resample rows of images. Pixels are four bytes each. All processors give the same results.
//
// Where a position lies between two pixels is given as a part of 2^32, of which the upper 16 bits count.
// Interpolated values have 8 more bits than bytes, so that a result is rounded once.
//
// Arrays that are not rows of an image are read and written beyond their ends.

/// The greatest number of bytes by which arrays are read and written beyond their ends.
inline constexpr std::size_t kImagePadding = 256;

/// The whole and the fractional parts of `begin`, `begin + step` and so on, limited to 0 ... `limit`. The
/// whole part is at most `lastIndex`; at the limit the fractional part then reaches its greatest value.
void placeSamples(double begin, double step, double limit, int lastIndex, std::int32_t* indices,
    std::uint32_t* parts, std::size_t count);

/// Interpolated pixels: their bytes 0 and 2, and their bytes 1 and 3.
struct MixedPixels {
    std::uint16_t* evens;
    std::uint16_t* odds;
};

/// Interpolates within pairs of pixels.
void mixPairs(
    const std::uint64_t* pairs, const std::uint32_t* parts, const MixedPixels& mixed, std::size_t count);
/// Interpolates between the pixels of a row of an image of `count` + 1 pixels, at the same place in each
/// pair.
void mixNeighbours(const unsigned char* row, std::uint32_t part, const MixedPixels& mixed, std::size_t count);
/// Interpolates between two rows of interpolated pixels.
void mixRows(const MixedPixels& above, const MixedPixels& below, std::uint32_t part, unsigned char* pixels,
    std::size_t count);
/// Interpolates within squares of pixels, a pair above another one.
void mixSquares(const std::uint64_t* above, const std::uint64_t* below, const std::uint32_t* partsX,
    const std::uint32_t* partsY, unsigned char* pixels, std::size_t count);
/// Interpolates within squares of pixels in a row of an image and another one, `down` bytes behind it. All
/// are at the same place along y, with their left pixels in the given columns.
void mixSquares(const unsigned char* row, std::ptrdiff_t down, const std::int32_t* columns,
    const std::uint32_t* partsX, std::uint32_t partY, unsigned char* pixels, std::size_t count);
/// Positions in an image of samples at equal distances. Pixels are counted in the upper 32 bits, parts
/// between them in the lower ones.
struct SampleSteps {
    std::uint64_t x; ///< of the first sample
    std::uint64_t y;
    std::uint64_t stepX;
    std::uint64_t stepY;
};
/// Interpolates within squares of an image's pixels, around samples at equal distances. Pixels that are
/// `ahead` bytes away will be needed soon.
void mixSquares(const ImageView& image, const SampleSteps& steps, std::ptrdiff_t ahead, unsigned char* pixels,
    std::size_t count);
/// The means of squares of four pixels, from two rows of an image of 2 `count` pixels.
void halveRows(
    const unsigned char* above, const unsigned char* below, unsigned char* pixels, std::size_t count);

/// Copies a row of an image, with an alpha of 255 for each pixel.
void copyOpaque(const unsigned char* row, unsigned char* pixels, std::size_t count);
