#pragma once

#include "CoreGraphics/raster/ImageKernels.h"
#include "CoreGraphics/raster/ImageView.h"

#include <cstddef>
#include <cstdint>

/// A window of some length on an axis of an image, as the weights of the pixels that it covers.
///
/// The pixels that it covers completely weigh `inner`, all together 65536. The integer weights of the two at
/// its ends depend on where it begins.
class MeanWindow {
public:
    static constexpr int kPixelsAtOnce = 4;
    /// Each weight of a mean rounds a product down, so that there may be only a few.
    static constexpr int kMostPixels = 16;
    static constexpr double kGreatestLength = kMostPixels - 1;

    MeanWindow() = default;
    /// A length of 1 gives the weights of linear interpolation. Lengths are 1 to `kGreatestLength`.
    explicit MeanWindow(double length);

    std::uint16_t inner() const { return _inner; }
    /// The number of pixels that it touches at most.
    int pixelCount() const { return _pixelCount; }
    /// The number of pixels that are read, some of which weigh nothing.
    int readCount() const { return (_pixelCount + kPixelsAtOnce - 1) / kPixelsAtOnce * kPixelsAtOnce; }

private:
    std::uint16_t _inner = 65535;
    int _pixelCount = 2;
};

/// The rounded means of rectangles of an image's pixels, four bytes each, whose upper left corners are at
/// equal distances. What is read of them, and of the one after the last, lies in the image. Those that are
/// `ahead` bytes away will be needed soon. `pixels` has room for `kImagePadding` more bytes. All processors
/// give the same results.
void averageRectangles(const ImageView& image, const MeanWindow& columns, const MeanWindow& rows,
    const SampleSteps& begins, std::ptrdiff_t ahead, unsigned char* pixels, std::size_t count);
