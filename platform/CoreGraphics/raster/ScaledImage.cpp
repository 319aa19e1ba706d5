#include "CoreGraphics/raster/ScaledImage.h"

#include "CoreGraphics/raster/ImageKernels.h"
#include "CoreGraphics/raster/ImagePairs.h"

#include <algorithm>
#include <cmath>

void ScaledImage::begin(
    const ImageView& image, const CGAffineTransform& imageFromPixel, bool isNearest, const PixelRect& area)
{
    _image = image;
    _imageFromPixel = imageFromPixel;
    _isNearest = isNearest;
    _area = area;
    for (MixedRow& row : _mixedRows)
        row.y = -1;

    const auto width = std::size_t(area.width());
    resizePadded(_indices, width, kImagePadding);
    resizePadded(_parts, width, kImagePadding);
    resizePadded(_pairs, width, kImagePadding);
    resizePadded(_row, 4 * width, kImagePadding);
    const double offset = isNearest ? 0 : 0.5; // linear interpolation is between the centres of pixels
    const double begin = (area.left + 0.5) * imageFromPixel.a + imageFromPixel.tx - offset;
    const int last = image.width - 1;
    placeSamples(begin, imageFromPixel.a, last, isNearest ? last : std::max(last - 1, 0), _indices.data(),
        _parts.data(), width);
}

const unsigned char* ScaledImage::row(int column, int row, int count)
{
    const double center = (row + 0.5) * _imageFromPixel.d + _imageFromPixel.ty;
    const int last = _image.height - 1;
    if (_isNearest)
        return nearest(column, int(std::clamp<double>(center, 0, last)), count);

    const double y = std::clamp<double>(center - 0.5, 0, last);
    const int above = std::min(int(y), std::max(last - 1, 0));
    const std::uint32_t part = partOf(y - above);
    const std::uint16_t* first = mixedRow(above);
    const std::uint16_t* second = part == 0 ? first : mixedRow(above + 1);
    const auto begin = std::size_t(column - _area.left);
    if (!_image.isAlphaOnly) {
        mixRows(first + 4 * begin, second + 4 * begin, part, _row.data(), std::size_t(count));
    } else {
        for (std::size_t i = 0; i < std::size_t(count); ++i)
            _row[i] = alphaByte(mixedAlpha(first[begin + i], second[begin + i], part));
    }
    return _row.data();
}

const std::uint16_t* ScaledImage::mixedRow(int y)
{
    MixedRow& row = _mixedRows[std::size_t(y % 2)];
    if (row.y == y)
        return row.values.data();
    row.y = y;
    const auto width = std::size_t(_area.width());
    resizePadded(row.values, 4 * width, kImagePadding);
    const unsigned char* pixels = _image.row(y);
    const std::size_t step = _image.width > 1 ? _image.bytesPerPixel() : 0;
    if (_image.isAlphaOnly) {
        for (std::size_t i = 0; i < width; ++i) {
            const unsigned char* at = pixels + _indices[i];
            row.values[i] = std::uint16_t(mixedAlpha(at[0] * 256U, at[step] * 256U, _parts[i]));
        }
        return row.values.data();
    }
    for (std::size_t i = 0; i < width; ++i)
        _pairs[i] = pixelPair(pixels + 4 * std::ptrdiff_t(_indices[i]), step);
    mixPairs(_pairs.data(), _parts.data(), row.values.data(), width);
    return row.values.data();
}

const unsigned char* ScaledImage::nearest(int column, int y, int count)
{
    const unsigned char* pixels = _image.row(y);
    const std::int32_t* indices = _indices.data() + (column - _area.left);
    for (int i = 0; i < count; ++i) {
        if (_image.isAlphaOnly)
            _row[std::size_t(i)] = pixels[indices[i]];
        else
            std::memcpy(_row.data() + 4 * std::ptrdiff_t(i), pixels + 4 * std::ptrdiff_t(indices[i]), 4);
    }
    return _row.data();
}
