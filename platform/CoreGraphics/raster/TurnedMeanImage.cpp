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
    _isSmall = !image.isAlphaOnly && std::max(_width, _height) <= MeanWindow::kGreatestLength;
    if (_isSmall) {
        _columnsInside = MeanWindow(_width);
        _rowsInside = MeanWindow(_height);
    }
    _ahead = bytesBetweenRows(image, imageFromPixel, 1);
    _columns.resize(_width, image.width, kBlock);
    _rows.resize(_height, image.height, kBlock);
}

SampleRow TurnedMeanImage::centers(int row) const
{
    const CGAffineTransform& t = _imageFromPixel;
    return {
        .x = {0.5 * t.a + (row + 0.5) * t.c + t.tx, t.a}, .y = {0.5 * t.b + (row + 0.5) * t.d + t.ty, t.b}};
}

const unsigned char* TurnedMeanImage::row(int column, int row, int count)
{
    resizePadded(_row, 4 * std::size_t(count), kImagePadding);
    const SampleRow centers = this->centers(row);
    SampleRow corners = centers;
    corners.x.start -= _width / 2;
    corners.y.start -= _height / 2;
    const SampleColumns all{column, column + count};
    const SampleColumns inside = _isSmall ? corners.within(_image.width - _columnsInside.readCount(),
                                     _image.height - _rowsInside.readCount(), all)
                                          : SampleColumns{all.end, all.end};
    const auto pixelsAt = [&](int at) {
        return _row.data() + _image.bytesPerPixel() * std::size_t(at - column);
    };
    // From left to right: what is written beyond the end of a part is replaced by the next one.
    averageAnywhere(centers, {all.begin, inside.begin}, pixelsAt(all.begin));
    if (!inside.isEmpty())
        averageRectangles(_image, _columnsInside, _rowsInside, corners.steps(inside.begin), _ahead,
            pixelsAt(inside.begin), std::size_t(inside.end - inside.begin));
    averageAnywhere(centers, {inside.end, all.end}, pixelsAt(inside.end));
    return _row.data();
}

void TurnedMeanImage::averageAnywhere(
    const SampleRow& centers, const SampleColumns& columns, unsigned char* pixels)
{
    for (int begin = columns.begin; begin < columns.end; begin += kBlock) {
        const auto count = std::size_t(std::min(kBlock, columns.end - begin));
        placeWindows(centers.x.at(begin), centers.x.step, _width, _image.width, _columns, count);
        placeWindows(centers.y.at(begin), centers.y.step, _height, _image.height, _rows, count);
        averageRectangles(_image, _columns, _rows, _ahead,
            pixels + _image.bytesPerPixel() * std::size_t(begin - columns.begin), count);
    }
}
