#include "CoreGraphics/raster/ImageSampler.h"

#include "CoreGraphics/raster/ImageKernels.h"
#include "CoreGraphics/raster/ImagePairs.h"

#include <algorithm>
#include <cmath>

namespace {

/// In pixels: sums of positions do not overflow.
constexpr std::size_t kMaxImageSide = std::size_t(1) << 30;
/// The greatest number in a transform: what is computed from it is finite.
constexpr double kMaxFactor = 1e100;
/// In pixels of the image, a distance that changes no drawn pixel by a quarter of a step of 255.
constexpr double kNegligibleOffset = 1.0 / 1024;

/// In nanoseconds of one thread. Others take about 50 us of processor time to start, so that less work shared
/// with them takes noticeably more of it, and ends at most a little earlier.
constexpr double kLeastSharedTime = 1e6;

bool isUsable(const CGAffineTransform& t)
{
    const double factors[]{t.a, t.b, t.c, t.d, t.tx, t.ty};
    return std::ranges::all_of(factors, [](double factor) { return std::abs(factor) <= kMaxFactor; });
}

bool isInteger(double value)
{
    constexpr double kAllIntegers = 9007199254740992; // there is no greater number with a fraction
    return std::abs(value) >= kAllIntegers || double(std::int64_t(value)) == value;
}

/// Replaces a number by the nearest integer other than 0, if that makes no visible difference at `distance`.
void makeInteger(double& value, double distance)
{
    if (isInteger(value))
        return;
    const double whole = std::round(value);
    if (whole != 0 && std::abs(value - whole) * distance < kNegligibleOffset)
        value = whole;
}

/// Replaces an offset by the nearest integer, if that makes no visible difference.
void makeIntegerOffset(double& offset)
{
    if (!isInteger(offset) && std::abs(offset - std::round(offset)) < kNegligibleOffset)
        offset = std::round(offset);
}

/// The transform without what rounding errors have added to it.
CGAffineTransform simplified(CGAffineTransform t, const PixelRect& area)
{
    const int distance =
        std::max({std::abs(area.left), std::abs(area.top), std::abs(area.right), std::abs(area.bottom)});
    if (std::max(std::abs(t.b), std::abs(t.c)) * distance >= kNegligibleOffset)
        return t;
    t.b = 0;
    t.c = 0;
    makeInteger(t.a, distance);
    makeInteger(t.d, distance);
    if (isInteger(t.a))
        makeIntegerOffset(t.tx);
    if (isInteger(t.d))
        makeIntegerOffset(t.ty);
    return t;
}

} // namespace

bool ImageSampler::begin(const CGImage& drawable, const CGAffineTransform& imageFromPixel, ImageFilter filter,
    const PixelRect& area)
{
    if (std::max(drawable.width, drawable.height) > kMaxImageSide || !isUsable(imageFromPixel))
        return false;
    _isAlphaOnly = drawable.format == CGPixelFormat::Alpha;
    _isOpaque = _isAlphaUnset = drawable.format == CGPixelFormat::RGBX;
    _image = {
        drawable.bytes(), drawable.bytesPerRow, int(drawable.width), int(drawable.height), _isAlphaOnly};
    _imageFromPixel = simplified(imageFromPixel, area);
    _area = area;
    _kind = kindFor(filter);

    const bool isNearest = filter == ImageFilter::Nearest;
    if (_kind == Kind::Turned) {
        _turned.begin(_image, _imageFromPixel, isNearest);
    } else if (_kind == Kind::TurnedMean) {
        _turnedMean.begin(_image, _imageFromPixel);
    } else if (_kind == Kind::Scaled) {
        _scaled.begin(_image, _imageFromPixel, isNearest, area);
    } else if (_kind == Kind::Mean) {
        _mean.begin(_image, _imageFromPixel, area);
    } else {
        resizePadded(_row, 4 * std::size_t(area.width()), kImagePadding);
    }
    return true;
}

ImageSampler::Kind ImageSampler::kindFor(ImageFilter filter) const
{
    const CGAffineTransform& t = _imageFromPixel;
    if (t.b != 0 || t.c != 0)
        return filter == ImageFilter::Mean && TurnedMeanImage::isFor(t) ? Kind::TurnedMean : Kind::Turned;
    const bool isAligned = isInteger(t.tx) && isInteger(t.ty) && isWithinImage();
    if (t.a == 1 && std::abs(t.d) == 1 && isAligned)
        return Kind::Copied;
    if (filter == ImageFilter::Nearest)
        return Kind::Scaled;
    if (t.a == 2 && std::abs(t.d) == 2 && isAligned && !_isAlphaOnly)
        return Kind::Halved;
    if (filter == ImageFilter::Mean && (MeanImage::isFor(t.a) || MeanImage::isFor(t.d)))
        return Kind::Mean;
    return Kind::Scaled;
}

bool ImageSampler::isWithinImage() const
{
    const CGAffineTransform& t = _imageFromPixel;
    const auto [left, right] = std::minmax({_area.left * t.a + t.tx, _area.right * t.a + t.tx});
    const auto [top, bottom] = std::minmax({_area.top * t.d + t.ty, _area.bottom * t.d + t.ty});
    return left >= 0 && right <= _image.width && top >= 0 && bottom <= _image.height;
}

const unsigned char* ImageSampler::row(int column, int row, int count)
{
    const unsigned char* pixels = sampled(column, row, count);
    if (!_isAlphaUnset)
        return pixels;
    resizePadded(_opaqueRow, 4 * std::size_t(count), kImagePadding);
    copyOpaque(pixels, _opaqueRow.data(), std::size_t(count));
    return _opaqueRow.data();
}

RowsInMemory ImageSampler::rowsInMemory(int column, int row) const
{
    if (_kind != Kind::Copied || _isAlphaUnset)
        return {};
    const auto bytesPerRow = std::ptrdiff_t(_image.bytesPerRow);
    return {copied(column, row), _imageFromPixel.d > 0 ? bytesPerRow : -bytesPerRow};
}

std::unique_ptr<PixelSource> ImageSampler::forOtherThread(std::int64_t pixelCount) const
{
    if (timeOfPixel() * double(pixelCount) < kLeastSharedTime)
        return nullptr;
    return std::make_unique<ImageSampler>(*this);
}

double ImageSampler::timeOfPixel() const
{
    const CGAffineTransform& t = _imageFromPixel;
    const double covered = std::abs(t.a * t.d - t.b * t.c); // pixels of the image
    switch (_kind) {
    case Kind::Copied:
        return 0.3;
    case Kind::Halved:
        return 0.5;
    case Kind::Scaled:
        return 0.4 + 0.12 * std::min(covered, 10.0);
    case Kind::Mean:
        return 0.3 * covered;
    case Kind::TurnedMean:
        return 0.65 * covered;
    default:
        return 1.4;
    }
}

const unsigned char* ImageSampler::sampled(int column, int row, int count)
{
    switch (_kind) {
    case Kind::Copied:
        return copied(column, row);
    case Kind::Halved:
        return halved(column, row, count);
    case Kind::Scaled:
        return _scaled.row(column, row, count);
    case Kind::Mean:
        return _mean.row(column, row, count);
    case Kind::TurnedMean:
        return _turnedMean.row(column, row, count);
    default:
        return _turned.row(column, row, count);
    }
}

const unsigned char* ImageSampler::copied(int column, int row) const
{
    const double y = (row + 0.5) * _imageFromPixel.d + _imageFromPixel.ty;
    return _image.pixel(column + int(_imageFromPixel.tx), int(y));
}

const unsigned char* ImageSampler::halved(int column, int row, int count)
{
    const double center = (row + 0.5) * _imageFromPixel.d + _imageFromPixel.ty;
    const unsigned char* above = _image.pixel(2 * column + int(_imageFromPixel.tx), int(center) - 1);
    halveRows(above, above + _image.bytesPerRow, _row.data(), std::size_t(count));
    return _row.data();
}
