#include "CoreGraphics/raster/MeanImage.h"

#include "CoreGraphics/raster/ImagePairs.h"

#include <algorithm>
#include <cmath>

namespace {

/// Up to this many pixels of the image per drawn pixel, an image is interpolated, not averaged.
constexpr double kInterpolatedShrinking = 4.0 / 3;

/// As many bytes fit into a sum of 16 bits.
constexpr int kMostRows = 257;

/// The pixels of a run around a centre. A run of one pixel's size gives the weights of linear interpolation.
MeanWindow windowAt(double center, double size, int count)
{
    center = std::clamp(center, -size, count + size);
    const double begin = center - size / 2;
    const double end = begin + size;
    const double first = std::clamp(std::floor(begin), 0.0, count - 1.0);
    const double last = std::clamp(std::ceil(end) - 1, first, count - 1.0);
    if (first == last)
        return {int(first), int(last), 1, 0, 0};
    // The pixels at the border continue beyond the edges.
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
    _columns.clear();
    const double size = windowLength(imageFromPixel.a);
    for (int x = area.left; x < area.right; ++x)
        _columns.push_back(windowAt((x + 0.5) * imageFromPixel.a + imageFromPixel.tx, size, image.width));

    const MeanWindow& left = imageFromPixel.a > 0 ? _columns.front() : _columns.back();
    const MeanWindow& right = imageFromPixel.a > 0 ? _columns.back() : _columns.front();
    _firstColumn = left.first;
    _columnCount = right.last + 1 - left.first;
    for (MeanWindow& window : _columns) {
        window.first -= _firstColumn;
        window.last -= _firstColumn;
    }
}

const unsigned char* MeanImage::row(int column, int row, int count)
{
    if (!_hasLine || _lineRow != row) {
        const double center = (row + 0.5) * _imageFromPixel.d + _imageFromPixel.ty;
        addRows(windowAt(center, windowLength(_imageFromPixel.d), _image.height));
        _lineRow = row;
        _hasLine = true;
    }
    const auto size = std::size_t(count);
    resizePadded(_row, 4 * size, kImagePadding);
    const MeanWindow* windows = _columns.data() + (column - _area.left);
    if (!_image.isAlphaOnly) {
        averagePixels(_line.data(), windows, _row.data(), size);
        return _row.data();
    }
    for (std::size_t i = 0; i < size; ++i) {
        const MeanWindow& window = windows[i];
        float inner = 0;
        for (int x = window.first + 1; x < window.last; ++x)
            inner += _line[std::size_t(x)];
        const float sum = _line[std::size_t(window.first)] * window.firstWeight
            + _line[std::size_t(window.last)] * window.lastWeight + inner * window.innerWeight;
        _row[i] = static_cast<unsigned char>(std::lround(sum));
    }
    return _row.data();
}

/// Sets the line to the means of rows of the image.
void MeanImage::addRows(const MeanWindow& rows)
{
    const std::size_t size = std::size_t(_columnCount) * _image.bytesPerPixel();
    const auto pixels = [&](int y) { return _image.pixel(_firstColumn, y); };
    resizePadded(_line, size, kImagePadding);
    resizePadded(_sums, size, kImagePadding);
    weighRows(pixels(rows.first), rows.firstWeight, pixels(rows.last), rows.lastWeight, _line.data(), size);
    for (int y = rows.first + 1; y < rows.last;) {
        std::fill_n(_sums.begin(), size, std::uint16_t(0));
        for (const int end = std::min(y + kMostRows, rows.last); y < end; ++y)
            addRow(pixels(y), _sums.data(), size);
        addSums(_sums.data(), rows.innerWeight, _line.data(), size);
    }
}
