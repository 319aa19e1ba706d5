#pragma once

#include "CoreGraphics/raster/ImageView.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

// The loops that compute means of an image's pixels. All processors give the same results.

/// Runs of pixels along an axis of an image, all of the same length, and the weights of the pixels.
struct WeightedRuns {
    int pixelCount = 1; ///< of each run
    std::vector<std::int32_t> first;
    std::vector<float>
        weights; ///< the first ones of all runs, `stride` apart from the second ones, and so on
    std::size_t stride = 0;

    /// Makes room for `count` runs that cover windows of a length in an axis of `axisLength` pixels.
    void resize(double windowLength, int axisLength, std::size_t count);
};

/// Sets the first pixels and the weights of runs, which cover windows of
/// a length around `center`, `center + step` and so on, in an axis of `pixelCount` pixels, of which those at
/// the border continue beyond the edges. A window of the length 1 gives the weights of linear interpolation.
void placeWindows(
    double center, double step, double length, int pixelCount, WeightedRuns& runs, std::size_t count);

/// A run of rows of an image, and their weights in a mean.
struct WeightedRows {
    int first;
    int last;
    float firstWeight;
    float innerWeight; ///< of each row between the first and the last
    float lastWeight;
};

/// The sums of the bytes of rows, multiplied by their weights. `top` points into the first row. `line` is
/// written beyond its end by less than a vector of bytes has elements.
void weighRows(const unsigned char* top, std::size_t bytesPerRow, const WeightedRows& rows, float* line,
    std::size_t byteCount);

/// The rounded means of the runs from `begin` on, from `channels` (1 or 4) numbers for each pixel of a line.
void averageRuns(const float* line, int channels, const WeightedRuns& runs, std::size_t begin,
    unsigned char* pixels, std::size_t count);

// The same in 16 bits, for pixels of four bytes. Each weight of a mean rounds a product down, so that there
// may be only a few.

/// In a run, or in rows.
inline constexpr int kMostShortWeights = 16;

/// Runs with weights in 16 bits, each repeated for the four bytes of a pixel.
struct ShortRuns {
    std::size_t pixelCount = 0; ///< of each run; even, with weights of 0 for what is read beyond the runs
    std::vector<std::uint64_t> weights; ///< run after run

    void assign(const WeightedRuns& runs, std::size_t count);
};

/// A part of 1 as a weight.
std::uint16_t shortWeight(float weight);

/// The sums of the bytes of consecutive rows, multiplied by their weights. Rows that are `ahead` bytes away
/// will be weighed next.
void weighRowsInShorts(const unsigned char* top, std::size_t bytesPerRow,
    std::span<const std::uint16_t> weights, std::ptrdiff_t ahead, std::uint16_t* line, std::size_t byteCount);

/// The rounded means of runs, whose first pixels are `first`. `begin` is the index of the first run, and
/// `roundings` the number of products that were rounded for each result. `pixels` has room for 12 more bytes.
void averageShorts(const std::uint16_t* line, const std::int32_t* first, const ShortRuns& runs,
    std::size_t begin, int roundings, unsigned char* pixels, std::size_t count);

/// The rounded means of rectangles of pixels, each the product of two runs. `pixels` has room for 16 more
/// bytes. Rectangles that are `ahead` bytes away will be needed soon.
void averageRectangles(const ImageView& image, const WeightedRuns& columns, const WeightedRuns& rows,
    std::ptrdiff_t ahead, unsigned char* pixels, std::size_t count);
