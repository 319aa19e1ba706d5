#pragma once

#include "CoreGraphics/raster/ImageView.h"
#include "CoreGraphics/raster/Pixels.h"

#include <CoreGraphics/CGAffineTransform.h>

#include <array>
#include <vector>

/// Samples of an image whose axes are those of the drawn pixels: the nearest pixels, or linear interpolation.
/// Beyond the edges the image continues in the colours of its border.
class ScaledImage {
public:
    /// Borrows the image's pixels. Rows are drawn within `area` from now on.
    void begin(const ImageView& image, const CGAffineTransform& imageFromPixel, bool isNearest,
        const PixelRect& area);

    /// Pixels of a row from `column` on, valid until the next call.
    const unsigned char* row(int column, int row, int count);

private:
    /// A row of the image, interpolated along x at all columns of the area.
    struct MixedRow {
        int y = -1;
        std::vector<std::uint16_t> values;
    };

    const std::uint16_t* mixedRow(int y);
    const unsigned char* nearest(int column, int y, int count);

    ImageView _image;
    CGAffineTransform _imageFromPixel{};
    PixelRect _area;
    bool _isNearest = false;
    std::vector<std::int32_t> _indices; ///< of the pixels left of the samples
    std::vector<std::uint32_t> _parts;
    std::array<MixedRow, 2> _mixedRows; ///< of even and of odd rows
    std::vector<std::uint64_t> _pairs;
    std::vector<unsigned char> _row;
};
