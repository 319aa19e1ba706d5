#include "CoreGraphics/raster/MeanImage.h"

#include "CoreGraphics/raster/ImageKernels.h"
#include "CoreGraphics/raster/ImagePairs.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

namespace {

/// Up to this many pixels of the image per drawn pixel, an image is interpolated, not averaged.
constexpr double kInterpolatedShrinking = 4.0 / 3;

/// The rows of a run around a centre. A run of one row's size gives the weights of linear interpolation.
WeightedRows rowsAt(double center, double size, int count)
{
    center = std::clamp(center, -size, count + size);
    const double begin = center - size / 2;
    const double end = begin + size;
    const double first = std::clamp(std::floor(begin), 0.0, count - 1.0);
    const double last = std::clamp(std::ceil(end) - 1, first, count - 1.0);
    if (first == last)
        return {int(first), int(last), 1, 0, 0};
    // The rows at the border continue beyond the edges.
    return {int(first), int(last), float((first + 1 - begin) / size), float(1 / size),
        float((end - last) / size)};
}

} // namespace

bool MeanImage::isFor(double step)
{
    return std::abs(step) > kInterpolatedShrinking;
}

double MeanImage::windowLength(double step)
{
    return isFor(step) ? std::abs(step) : 1;
}

void MeanImage::begin(const ImageView& image, const CGAffineTransform& imageFromPixel, const PixelRect& area)
{
    _image = image;
    _imageFromPixel = imageFromPixel;
    _area = area;
    _hasLine = false;
    const auto width = std::size_t(area.width());
    const double length = windowLength(imageFromPixel.a);
    const double center = (area.left + 0.5) * imageFromPixel.a + imageFromPixel.tx;
    _columns.resize(length, image.width, width);
    placeWindows(center, imageFromPixel.a, length, image.width, _columns, width);

    const std::span firsts(_columns.first.data(), width);
    const auto [least, greatest] = std::minmax(firsts.front(), firsts.back());
    _firstColumn = least;
    _columnCount = greatest + _columns.pixelCount - least;
    for (std::int32_t& first : firsts)
        first -= _firstColumn;

    const double rowCount = std::ceil(windowLength(imageFromPixel.d)) + 1;
    _isShort =
        !image.isAlphaOnly && _columns.pixelCount <= kMostShortWeights && rowCount <= kMostShortWeights;
    if (_isShort)
        _shortColumns.assign(_columns, width);
}

const unsigned char* MeanImage::row(int column, int row, int count)
{
    if (!_hasLine || _lineRow != row) {
        const double center = (row + 0.5) * _imageFromPixel.d + _imageFromPixel.ty;
        weigh(rowsAt(center, windowLength(_imageFromPixel.d), _image.height));
        _lineRow = row;
        _hasLine = true;
    }
    const auto size = std::size_t(count);
    const auto begin = std::size_t(column - _area.left);
    resizePadded(_row, 4 * size, kImagePadding);
    if (_isShort)
        averageShorts(_shortLine.data(), _columns.first.data(), _shortColumns, begin,
            _columns.pixelCount + _rowCount, _row.data(), size);
    else
        averageRuns(_line.data(), int(_image.bytesPerPixel()), _columns, begin, _row.data(), size);
    return _row.data();
}

void MeanImage::weigh(const WeightedRows& rows)
{
    const unsigned char* top = _image.pixel(_firstColumn, rows.first);
    const std::size_t size = std::size_t(_columnCount) * _image.bytesPerPixel();
    if (!_isShort) {
        resizePadded(_line, size, kImagePadding);
        return weighRows(top, _image.bytesPerRow, rows, _line.data(), size);
    }
    resizePadded(_shortLine, size, kImagePadding);
    _rowCount = rows.last + 1 - rows.first;
    std::array<std::uint16_t, kMostShortWeights> weights;
    weights.fill(shortWeight(rows.innerWeight));
    weights[0] = shortWeight(rows.firstWeight);
    if (_rowCount > 1)
        weights[std::size_t(_rowCount) - 1] = shortWeight(rows.lastWeight);
    const auto ahead = std::ptrdiff_t(std::round(_imageFromPixel.d)) * std::ptrdiff_t(_image.bytesPerRow);
    weighRowsInShorts(
        top, _image.bytesPerRow, {weights.data(), std::size_t(_rowCount)}, ahead, _shortLine.data(), size);
}
