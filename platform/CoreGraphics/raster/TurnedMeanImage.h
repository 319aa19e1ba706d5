#pragma once

#include "CoreGraphics/raster/ImageView.h"
#include "CoreGraphics/raster/MeanKernels.h"
#include "CoreGraphics/raster/RectangleMeans.h"
#include "CoreGraphics/raster/SampleRow.h"

#include <CoreGraphics/CGAffineTransform.h>

#include <vector>

/// The means of the pixels of an image around the centres of drawn pixels, under any transform.
///
/// The pixels lie in a rectangle along the image's axes, whose sides are as long as the distances along these
/// axes by which the samples of drawn pixels differ. If the image is turned and evenly shrunk, it is as large
/// as a drawn pixel; if the image is sheared, it is at most four times as large, and smaller sides have that
/// area then. Along an axis on which it hardly shrinks, the image is interpolated. Beyond the edges it
/// continues in the colours of its border.
class TurnedMeanImage {
public:
    /// True when the mean differs visibly from an interpolation.
    static bool isFor(const CGAffineTransform& imageFromPixel);

    /// Borrows the image's pixels.
    void begin(const ImageView& image, const CGAffineTransform& imageFromPixel);

    /// Pixels of a row from `column` on, valid until the next call.
    const unsigned char* row(int column, int row, int count);

private:
    /// The centres of a row's rectangles.
    SampleRow centers(int row) const;
    void averageAnywhere(const SampleRow& centers, const SampleColumns& columns, unsigned char* pixels);

    ImageView _image;
    CGAffineTransform _imageFromPixel{};
    double _width = 1; ///< of the rectangles
    double _height = 1;
    bool _isSmall = false;     ///< whether there are so few weights that 16 bits suffice
    MeanWindow _columnsInside; ///< of small rectangles
    MeanWindow _rowsInside;
    std::ptrdiff_t _ahead = 0; ///< where the next row's rectangles are, in bytes
    WeightedRuns _columns;
    WeightedRuns _rows;
    std::vector<unsigned char> _row;
};
