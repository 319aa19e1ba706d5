#include "CoreGraphics/raster/TurnedMeanImage.h"

#include "CoreGraphics/raster/ImageKernels.h"
#include "CoreGraphics/raster/ImagePairs.h"
#include "CoreGraphics/raster/MeanImage.h"

#include <algorithm>
#include <cmath>

namespace {

/// Means are computed for this many drawn pixels at a time, with less memory than for whole rows.
constexpr int kBlock = 64;

/// How many times the area of a drawn pixel a rectangle has at most: it limits the time under transforms that
/// shear an image extremely.
constexpr double kMostArea = 4;

/// The distances along the image's axes by which the samples of drawn pixels differ.
CGSize steps(const CGAffineTransform& imageFromPixel)
{
    return {std::hypot(imageFromPixel.a, imageFromPixel.c), std::hypot(imageFromPixel.b, imageFromPixel.d)};
}

} // namespace

bool TurnedMeanImage::isFor(const CGAffineTransform& imageFromPixel)
{
    const CGSize step = steps(imageFromPixel);
    return MeanImage::isFor(step.width) || MeanImage::isFor(step.height);
}

void TurnedMeanImage::begin(const ImageView& image, const CGAffineTransform& imageFromPixel)
{
    _image = image;
    _imageFromPixel = imageFromPixel;
    const CGSize step = steps(imageFromPixel);
    const double pixelArea =
        std::abs(imageFromPixel.a * imageFromPixel.d - imageFromPixel.b * imageFromPixel.c);
    const double factor = std::min(1.0, std::sqrt(kMostArea * pixelArea / (step.width * step.height)));
    _width = MeanImage::windowLength(factor * step.width);
    _height = MeanImage::windowLength(factor * step.height);
    _columns.resize(_width, image.width, kBlock);
    _rows.resize(_height, image.height, kBlock);
}

const unsigned char* TurnedMeanImage::row(int column, int row, int count)
{
    const CGAffineTransform& t = _imageFromPixel;
    const std::ptrdiff_t ahead = bytesBetweenRows(_image, t, 1);
    resizePadded(_row, 4 * std::size_t(count), kImagePadding);
    for (int begin = 0; begin < count; begin += kBlock) {
        const CGPoint center = CGPointApplyAffineTransform({column + begin + 0.5, row + 0.5}, t);
        const auto blockCount = std::size_t(std::min(kBlock, count - begin));
        placeWindows(center.x, t.a, _width, _image.width, _columns, blockCount);
        placeWindows(center.y, t.b, _height, _image.height, _rows, blockCount);
        averageRectangles(_image, _columns, _rows, ahead,
            _row.data() + _image.bytesPerPixel() * std::size_t(begin), blockCount);
    }
    return _row.data();
}
