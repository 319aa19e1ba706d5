#pragma once

#include "CoreGraphics/raster/ImageView.h"
#include "CoreGraphics/raster/SampleRow.h"

#include <CoreGraphics/CGAffineTransform.h>

#include <cstdint>
#include <vector>

/// Samples of an image under any transform: the nearest pixels, or linear interpolation. Beyond the edges the
/// image continues in the colours of its border.
class TurnedImage {
public:
    /// Borrows the image's pixels.
    void begin(const ImageView& image, const CGAffineTransform& imageFromPixel, bool isNearest);

    /// Pixels of a row from `column` on, valid until the next call.
    const unsigned char* row(int column, int row, int count);

private:
    /// In the image, in pixels from the centre of its first one, or from its corner.
    SampleRow samples(int row) const;
    /// Samples that lie between four pixels of the image.
    void sampleInside(const SampleRow& samples, const SampleColumns& columns, unsigned char* pixels);
    void sampleAnywhere(const SampleRow& samples, const SampleColumns& columns, unsigned char* pixels);
    void place(const SampleRow& samples, const SampleColumns& columns);
    void makeRoom(std::size_t count);

    ImageView _image;
    CGAffineTransform _imageFromPixel{};
    bool _isNearest = false;
    // Of the pixel above and to the left of each sample, and the sample's distance from it.
    std::vector<std::int32_t> _columns, _rows;
    std::vector<std::uint32_t> _partsX, _partsY;
    std::vector<std::uint64_t> _above, _below;
    std::vector<unsigned char> _row;
};
