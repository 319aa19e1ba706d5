#include "CoreGraphics/raster/TurnedImage.h"

#include "CoreGraphics/raster/ImageKernels.h"
#include "CoreGraphics/raster/ImagePairs.h"

#include <algorithm>
#include <cmath>

namespace {

/// Each drawn row crosses many rows of the image. The pixels that it needs are requested so many drawn rows
/// before.
constexpr int kRowsAhead = 2;

} // namespace

void TurnedImage::begin(const ImageView& image, const CGAffineTransform& imageFromPixel, bool isNearest)
{
    _image = image;
    _imageFromPixel = imageFromPixel;
    _isNearest = isNearest;
}

SampleRow TurnedImage::samples(int row) const
{
    const CGAffineTransform& t = _imageFromPixel;
    const double offset = _isNearest ? 0 : 0.5; // linear interpolation is between the centres of pixels
    return {.x = {0.5 * t.a + (row + 0.5) * t.c + t.tx - offset, t.a},
        .y = {0.5 * t.b + (row + 0.5) * t.d + t.ty - offset, t.b}};
}

const unsigned char* TurnedImage::row(int column, int row, int count)
{
    makeRoom(std::size_t(count));
    const SampleRow samples = this->samples(row);
    const SampleColumns all{column, column + count};
    const bool isFast = !_isNearest && !_image.isAlphaOnly;
    const SampleColumns fast =
        isFast ? samples.within(_image.width - 1, _image.height - 1, all) : SampleColumns{all.end, all.end};
    const auto pixelsAt = [&](int at) {
        return _row.data() + _image.bytesPerPixel() * std::size_t(at - column);
    };
    // From left to right: what is written beyond the end of a part is replaced by the next one.
    sampleAnywhere(samples, {all.begin, fast.begin}, pixelsAt(all.begin));
    sampleInside(samples, fast, pixelsAt(fast.begin));
    sampleAnywhere(samples, {fast.end, all.end}, pixelsAt(fast.end));
    return _row.data();
}

void TurnedImage::makeRoom(std::size_t count)
{
    resizePadded(_columns, count, kImagePadding);
    resizePadded(_rows, count, kImagePadding);
    resizePadded(_partsX, count, kImagePadding);
    resizePadded(_partsY, count, kImagePadding);
    resizePadded(_above, count, kImagePadding);
    resizePadded(_below, count, kImagePadding);
    resizePadded(_row, 4 * count, kImagePadding);
}

void TurnedImage::sampleInside(const SampleRow& samples, const SampleColumns& columns, unsigned char* pixels)
{
    if (columns.isEmpty())
        return;
    const std::ptrdiff_t ahead = bytesBetweenRows(_image, _imageFromPixel, kRowsAhead)
        + std::ptrdiff_t(_image.bytesPerRow); // the lower one of two
    mixSquares(_image, samples.steps(columns.begin), ahead, pixels, std::size_t(columns.end - columns.begin));
}

void TurnedImage::sampleAnywhere(
    const SampleRow& samples, const SampleColumns& columns, unsigned char* pixels)
{
    if (columns.isEmpty())
        return;
    place(samples, columns);
    const auto count = std::size_t(columns.end - columns.begin);
    const std::size_t channels = _image.bytesPerPixel();
    const std::size_t right = _image.width > 1 ? channels : 0;
    const std::size_t down = _image.height > 1 ? _image.bytesPerRow : 0;
    for (std::size_t i = 0; i < count; ++i) {
        const unsigned char* at = _image.pixel(_columns[i], _rows[i]);
        if (_isNearest) {
            std::memcpy(pixels + channels * i, at, channels);
        } else if (_image.isAlphaOnly) {
            const unsigned above = mixedAlpha(at[0] * 256U, at[right] * 256U, _partsX[i]);
            const unsigned below = mixedAlpha(at[down] * 256U, at[down + right] * 256U, _partsX[i]);
            pixels[i] = alphaByte(mixedAlpha(above, below, _partsY[i]));
        } else {
            _above[i] = pixelPair(at, right);
            _below[i] = pixelPair(at + down, right);
        }
    }
    if (!_isNearest && !_image.isAlphaOnly)
        mixSquares(_above.data(), _below.data(), _partsX.data(), _partsY.data(), pixels, count);
}

void TurnedImage::place(const SampleRow& samples, const SampleColumns& columns)
{
    const auto count = std::size_t(columns.end - columns.begin);
    const auto lastIndex = [&](int length) { return _isNearest ? length - 1 : std::max(length - 2, 0); };
    placeSamples(samples.x.at(columns.begin), samples.x.step, _image.width - 1, lastIndex(_image.width),
        _columns.data(), _partsX.data(), count);
    placeSamples(samples.y.at(columns.begin), samples.y.step, _image.height - 1, lastIndex(_image.height),
        _rows.data(), _partsY.data(), count);
}
