#include "CoreGraphics/raster/TurnedImage.h"

#include "CoreGraphics/raster/ImageKernels.h"
#include "CoreGraphics/raster/ImagePairs.h"
#include "CoreGraphics/raster/Prefetch.h"

#include <algorithm>
#include <cmath>

namespace {

/// Positions below this, in pixels, fit into fixed-point numbers with 32 fractional bits.
constexpr double kMaxPosition = 1 << 30;

std::uint64_t toFixed(double value)
{
    constexpr double kOne = 4294967296;
    return std::uint64_t(std::llround(value * kOne));
}

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

double TurnedImage::x(double column, double row) const
{
    const double offset = _isNearest ? 0 : 0.5; // linear interpolation is between the centres of pixels
    return (column + 0.5) * _imageFromPixel.a + (row + 0.5) * _imageFromPixel.c + _imageFromPixel.tx - offset;
}

double TurnedImage::y(double column, double row) const
{
    const double offset = _isNearest ? 0 : 0.5;
    return (column + 0.5) * _imageFromPixel.b + (row + 0.5) * _imageFromPixel.d + _imageFromPixel.ty - offset;
}

const unsigned char* TurnedImage::row(int column, int row, int count)
{
    makeRoom(std::size_t(count));
    const Columns all{column, column + count};
    const Columns fast = inside(row, all);
    const auto pixelsAt = [&](int at) {
        return _row.data() + _image.bytesPerPixel() * std::size_t(at - column);
    };
    // From left to right: what is written beyond the end of a part is replaced by the next one.
    sampleAnywhere(row, {all.begin, fast.begin}, pixelsAt(all.begin));
    sampleInside(row, fast, pixelsAt(fast.begin));
    sampleAnywhere(row, {fast.end, all.end}, pixelsAt(fast.end));
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

TurnedImage::Columns TurnedImage::inside(int row, const Columns& columns) const
{
    const Columns none{columns.end, columns.end};
    const CGAffineTransform& t = _imageFromPixel;
    const double startX = x(0, row);
    const double startY = y(0, row);
    if (_isNearest || _image.isAlphaOnly
        || !(std::max({std::abs(t.a), std::abs(t.b), std::abs(startX), std::abs(startY)}) < kMaxPosition))
        return none;
    double first = columns.begin;
    double last = columns.end;
    // A column less at either end allows for rounding errors.
    const auto limit = [&](double start, double step, double length) {
        if (step == 0) {
            if (!(start >= 0 && start < length))
                last = first;
            return;
        }
        const double atStart = -start / step;
        const double atEnd = (length - start) / step;
        first = std::max(first, std::ceil(std::min(atStart, atEnd)) + 1);
        last = std::min(last, std::floor(std::max(atStart, atEnd)) - 1);
    };
    limit(startX, t.a, _image.width - 1);
    limit(startY, t.b, _image.height - 1);
    return first < last ? Columns{int(first), int(last)} : none;
}

void TurnedImage::sampleInside(int row, const Columns& columns, unsigned char* pixels)
{
    if (columns.begin >= columns.end)
        return;
    const auto count = std::size_t(columns.end - columns.begin);
    SampleSteps steps{.x = toFixed(this->x(0, row)),
        .y = toFixed(this->y(0, row)),
        .stepX = toFixed(_imageFromPixel.a),
        .stepY = toFixed(_imageFromPixel.b)};
    // Modulo 2^64, so that the column does not have to be positive.
    steps.x += steps.stepX * std::uint64_t(columns.begin);
    steps.y += steps.stepY * std::uint64_t(columns.begin);
    // Copies of what the compiler would read again after each pair that is written.
    const unsigned char* const data = _image.data;
    const std::size_t bytesPerRow = _image.bytesPerRow;
    std::uint64_t* const above = _above.data();
    std::uint64_t* const below = _below.data();
    std::uint64_t x = steps.x;
    std::uint64_t y = steps.y;
    const std::ptrdiff_t ahead = bytesBetweenRows(_image, _imageFromPixel, kRowsAhead)
        + std::ptrdiff_t(bytesPerRow); // the lower one of two
    for (std::size_t i = 0; i < count; ++i, x += steps.stepX, y += steps.stepY) {
        const unsigned char* at = data + (y >> 32) * bytesPerRow + 4 * (x >> 32);
        std::memcpy(above + i, at, sizeof *above);
        std::memcpy(below + i, at + bytesPerRow, sizeof *below);
        if (i % kPixelsPerPrefetch == 0)
            prefetch(at, ahead);
    }
    mixSquares(above, below, steps, pixels, count);
}

void TurnedImage::sampleAnywhere(int row, const Columns& columns, unsigned char* pixels)
{
    if (columns.begin >= columns.end)
        return;
    place(row, columns);
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

void TurnedImage::place(int row, const Columns& columns)
{
    const auto count = std::size_t(columns.end - columns.begin);
    const auto lastIndex = [&](int length) { return _isNearest ? length - 1 : std::max(length - 2, 0); };
    placeSamples(x(columns.begin, row), _imageFromPixel.a, _image.width - 1, lastIndex(_image.width),
        _columns.data(), _partsX.data(), count);
    placeSamples(y(columns.begin, row), _imageFromPixel.b, _image.height - 1, lastIndex(_image.height),
        _rows.data(), _partsY.data(), count);
}
