#pragma once

#include "CoreGraphics/raster/ImageView.h"
#include "CoreGraphics/raster/MeanKernels.h"
#include "CoreGraphics/raster/Pixels.h"

#include <CoreGraphics/CGAffineTransform.h>

#include <vector>

/// The means of the pixels of an image that drawn pixels cover, with the image's axes those of the drawn
/// pixels. Along an axis on which it hardly shrinks, the image is interpolated. Beyond the edges it continues
/// in the colours of its border.
class MeanImage {
public:
    /// True when an image is shrunk so much, by this many of its pixels for each drawn one, that the mean
    /// differs visibly from an interpolation.
    static bool isFor(double step);
    /// The pixels of the image in a mean along an axis, as a length: 1, as in linear interpolation, where the
    /// image hardly shrinks.
    static double windowLength(double step);

    /// Borrows the image's pixels. Rows are drawn within `area` from now on.
    void begin(const ImageView& image, const CGAffineTransform& imageFromPixel, const PixelRect& area);

    /// Pixels of a row from `column` on, valid until the next call.
    const unsigned char* row(int column, int row, int count);

private:
    /// Sets the line to the means of rows of the image.
    void weigh(const WeightedRows& rows);

    ImageView _image;
    CGAffineTransform _imageFromPixel{};
    PixelRect _area;
    WeightedRuns _columns; ///< of the area, counted from `_firstColumn`
    int _firstColumn = 0;  ///< of the image, which any column of the area needs
    int _columnCount = 0;
    int _lineRow = 0; ///< the drawn row whose means along y are in `_line`
    bool _hasLine = false;
    bool _isShort = false; ///< whether there are so few weights that 16 bits suffice
    int _rowCount = 0;     ///< of the image, in that line
    ShortRuns _shortColumns;
    std::vector<std::uint16_t> _shortLine;
    std::vector<float> _line;
    std::vector<unsigned char> _row;
};
