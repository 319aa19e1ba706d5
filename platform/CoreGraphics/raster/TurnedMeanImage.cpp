#include "CoreGraphics/raster/TurnedMeanImage.h"

#include "CoreGraphics/raster/ImageKernels.h"
#include "CoreGraphics/raster/ImagePairs.h"
#include "CoreGraphics/raster/MeanImage.h"

#include <algorithm>
#include <cmath>

namespace {

/// Means are computed for this many drawn pixels at a time, with less memory than for whole rows. Vectors of
/// all lengths fit in.
constexpr int kBlock = 64;

/// How many times the area of a drawn pixel a rectangle has at most: it limits the time under transforms that
/// shear an image extremely.
constexpr double kMostArea = 4;

/// The distances along the image's axes by which the samples of drawn pixels differ.
CGSize steps(const CGAffineTransform& imageFromPixel)
{
    return {std::hypot(imageFromPixel.a, imageFromPixel.c), std::hypot(imageFromPixel.b, imageFromPixel.d)};
}

void makeRoom(WeightedRuns& runs, double length, int pixelCount)
{
    runs.pixelCount = int(std::min(std::ceil(length) + 1, double(pixelCount)));
    runs.stride = kBlock;
    resizePadded(runs.first, kBlock, 0);
    resizePadded(runs.weights, kBlock * std::size_t(runs.pixelCount), 0);
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
    makeRoom(_columns, _width, image.width);
    makeRoom(_rows, _height, image.height);
}

const unsigned char* TurnedMeanImage::row(int column, int row, int count)
{
    const CGAffineTransform& t = _imageFromPixel;
    resizePadded(_row, 4 * std::size_t(count), kImagePadding);
    for (int begin = 0; begin < count; begin += kBlock) {
        const CGPoint center = CGPointApplyAffineTransform({column + begin + 0.5, row + 0.5}, t);
        const auto blockCount = std::size_t(std::min(kBlock, count - begin));
        placeWindows(center.x, t.a, _width, _image.width, _columns, blockCount);
        placeWindows(center.y, t.b, _height, _image.height, _rows, blockCount);
        averageRectangles(
            _image, _columns, _rows, _row.data() + _image.bytesPerPixel() * std::size_t(begin), blockCount);
    }
    return _row.data();
}
