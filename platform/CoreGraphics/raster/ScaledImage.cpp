#include "CoreGraphics/raster/ScaledImage.h"

#include "CoreGraphics/raster/ImagePairs.h"
#include "CoreGraphics/raster/Prefetch.h"

#include <algorithm>
#include <cmath>

namespace {

/// In rows of the image, a distance of drawn rows at which these have no row of the image in common.
constexpr double kStepWithoutRepeats = 2;

} // namespace

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

    _mixesSquares = !isNearest && !image.isAlphaOnly && image.width > 1
        && std::abs(imageFromPixel.d) >= kStepWithoutRepeats;
    _neighboursBegin = 0;
    _neighboursEnd = 0;
    if (isNearest || image.isAlphaOnly || imageFromPixel.a != 1)
        return;
    const double left = std::floor(begin);
    _neighboursBegin = std::size_t(std::clamp<double>(-left, 0, area.width()));
    _neighboursEnd = std::size_t(std::clamp<double>(last - left, double(_neighboursBegin), area.width()));
}

const unsigned char* ScaledImage::row(int column, int row, int count)
{
    const double center = (row + 0.5) * _imageFromPixel.d + _imageFromPixel.ty;
    const int last = _image.height - 1;
    if (_isNearest)
        return nearest(column, int(std::clamp<double>(center, 0, last)), count);

    const double y = std::clamp<double>(center - 0.5, 0, last);
    const auto rowAbove = [last](double at) { return std::min(int(at), std::max(last - 1, 0)); };
    const int above = rowAbove(y);
    const std::uint32_t part = partOf(y - above);
    if (_mixesSquares) {
        const int next = rowAbove(std::clamp<double>(y + _imageFromPixel.d, 0, last));
        return mixedSquares(above, next, part, column, count);
    }
    MixedRow& first = mixedRow(above);
    MixedRow& second = part == 0 ? first : mixedRow(above + 1);
    const auto begin = std::size_t(column - _area.left);
    if (!_image.isAlphaOnly) {
        mixRows(first.from(begin), second.from(begin), part, _row.data(), std::size_t(count));
    } else {
        for (std::size_t i = 0; i < std::size_t(count); ++i)
            _row[i] = alphaByte(mixedAlpha(first.evens[begin + i], second.evens[begin + i], part));
    }
    return _row.data();
}

ScaledImage::MixedRow& ScaledImage::mixedRow(int y)
{
    MixedRow& row = _mixedRows[std::size_t(y % 2)];
    if (row.y == y)
        return row;
    row.y = y;
    const auto width = std::size_t(_area.width());
    resizePadded(row.evens, 2 * width, kImagePadding);
    resizePadded(row.odds, 2 * width, kImagePadding);
    const unsigned char* pixels = _image.row(y);
    if (_image.isAlphaOnly) {
        mixAlphas(pixels, row);
        return row;
    }
    // From left to right: what is written beyond the end of a part is replaced by the next one.
    mixAnywhere(pixels, 0, _neighboursBegin, row);
    if (_neighboursBegin < _neighboursEnd)
        mixNeighbours(pixels + 4 * std::ptrdiff_t(_indices[_neighboursBegin]), _parts[_neighboursBegin],
            row.from(_neighboursBegin), _neighboursEnd - _neighboursBegin);
    mixAnywhere(pixels, _neighboursEnd, width, row);
    return row;
}

void ScaledImage::mixAlphas(const unsigned char* alphas, MixedRow& row) const
{
    const std::size_t step = _image.width > 1 ? 1 : 0;
    for (std::size_t i = 0; i < std::size_t(_area.width()); ++i) {
        const unsigned char* at = alphas + _indices[i];
        row.evens[i] = std::uint16_t(mixedAlpha(at[0] * 256U, at[step] * 256U, _parts[i]));
    }
}

void ScaledImage::mixAnywhere(const unsigned char* pixels, std::size_t begin, std::size_t end, MixedRow& row)
{
    if (begin >= end)
        return;
    if (_image.width > 1) {
        std::uint64_t* pairs = _pairs.data();
        const std::int32_t* indices = _indices.data();
        for (std::size_t i = begin; i < end; ++i)
            std::memcpy(pairs + i, pixels + 4 * std::ptrdiff_t(indices[i]), sizeof *pairs);
    } else {
        std::fill(&_pairs[begin], &_pairs[end], pixelPair(pixels, 0));
    }
    mixPairs(&_pairs[begin], &_parts[begin], row.from(begin), end - begin);
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

const unsigned char* ScaledImage::mixedSquares(int above, int next, std::uint32_t part, int column, int count)
{
    const auto begin = std::size_t(column - _area.left);
    const auto size = std::size_t(count);
    const std::int32_t* const indices = &_indices[begin];
    const unsigned char* const pixels = _image.row(above);
    const auto bytesPerRow = std::ptrdiff_t(_image.bytesPerRow);
    const std::ptrdiff_t below = part == 0 ? 0 : bytesPerRow;

    const auto [left, right] = std::minmax({indices[0], indices[size - 1]});
    const std::ptrdiff_t toNext = (next - above) * bytesPerRow;
    for (std::ptrdiff_t at = 4 * std::ptrdiff_t(left); at <= 4 * std::ptrdiff_t(right); at += kCacheLine) {
        prefetch(pixels, toNext + at);
        prefetch(pixels, toNext + bytesPerRow + at);
    }

    mixSquares(pixels, below, indices, &_parts[begin], part, _row.data(), size);
    return _row.data();
}
