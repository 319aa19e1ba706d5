#pragma once

#include "CoreGraphics/raster/ImageView.h"

#include <cstddef>
#include <cstdint>
#include <vector>

// The loops that compute means of rectangles of an image's pixels. All processors give the same results.

/// Runs of pixels along an axis of an image, all of the same length, and the weights of the pixels.
struct WeightedRuns {
    int pixelCount = 1; ///< of each run
    std::vector<std::int32_t> first;
    std::vector<float>
        weights; ///< the first ones of all runs, `stride` apart from the second ones, and so on
    std::size_t stride = 0;
};

/// Sets the first pixels and the weights of runs, which cover windows of
/// a length around `center`, `center + step` and so on, in an axis of `pixelCount` pixels, of which those at
/// the border continue beyond the edges. A window of the length 1 gives the weights of linear interpolation.
void placeWindows(
    double center, double step, double length, int pixelCount, WeightedRuns& runs, std::size_t count);

/// The rounded means of rectangles of pixels, each the product of two runs. `pixels` has room for 16 more
/// bytes.
void averageRectangles(const ImageView& image, const WeightedRuns& columns, const WeightedRuns& rows,
    unsigned char* pixels, std::size_t count);
