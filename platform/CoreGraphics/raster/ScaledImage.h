#pragma once

#include "CoreGraphics/raster/ImageKernels.h"
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
        std::vector<std::uint16_t> evens; ///< of pixels; of alphas, all
        std::vector<std::uint16_t> odds;

        MixedPixels from(std::size_t column) { return {&evens[2 * column], &odds[2 * column]}; }
    };

    MixedRow& mixedRow(int y);
    void mixAlphas(const unsigned char* alphas, MixedRow& row) const;
    /// Interpolates between pixels anywhere in a row of the image, for some of the columns.
    void mixAnywhere(const unsigned char* pixels, std::size_t begin, std::size_t end, MixedRow& row);
    const unsigned char* nearest(int column, int y, int count);
    /// Interpolates between two rows of the image, the upper one given, at once. `next` is that of the next
    /// row.
    const unsigned char* mixedSquares(int above, int next, std::uint32_t part, int column, int count);

    ImageView _image;
    CGAffineTransform _imageFromPixel{};
    PixelRect _area;
    bool _isNearest = false;
    std::vector<std::int32_t> _indices; ///< of the pixels left of the samples
    std::vector<std::uint32_t> _parts;
    // The columns whose samples lie between neighbours of the image, at the same place in each pair.
    std::size_t _neighboursBegin = 0;
    std::size_t _neighboursEnd = 0;
    std::array<MixedRow, 2> _mixedRows; ///< of even and of odd rows
    bool _mixesSquares = false;         ///< no row of the image is interpolated more than once
    std::vector<std::uint64_t> _pairs;
    std::vector<unsigned char> _row;
};
