#include "CoreGraphics/raster/ImageSampler.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

/// Up to this many pixels of the image per drawn pixel, an image is interpolated, not averaged.
constexpr double kInterpolatedShrinking = 4.0 / 3;

bool isUpright(const CGAffineTransform& transform)
{
    return transform.b == 0 && transform.c == 0;
}

} // namespace

ImageSampler::ImageSampler(
    const CGImage& drawable, const CGAffineTransform& imageFromPixel, ImageFilter filter)
    : _image(drawable)
    , _imageFromPixel(imageFromPixel)
    , _filter(filter)
{
    const auto covered = [filter](double step) {
        return filter == ImageFilter::Average && step > kInterpolatedShrinking ? step : 1;
    };
    _width = covered(std::hypot(imageFromPixel.a, imageFromPixel.c));
    _height = covered(std::hypot(imageFromPixel.b, imageFromPixel.d));
}

void ImageSampler::fill(int column, int row, int count, unsigned char* bytes)
{
    if (_image.format == CGPixelFormat::Alpha)
        return fillRow<1>(column, row, count, bytes);
    fillRow<4>(column, row, count, bytes);
    if (_image.format == CGPixelFormat::RGBX) {
        for (std::ptrdiff_t i = 0; i < count; ++i)
            bytes[4 * i + 3] = 255;
    }
}

/// A window of one pixel's size gives the weights of linear interpolation.
ImageSampler::Window ImageSampler::window(double center, double size, std::size_t count) const
{
    const auto limit = double(count);
    center = std::clamp(center, -size, limit + size);
    if (_filter == ImageFilter::Nearest) {
        const auto nearest = std::ptrdiff_t(std::clamp(std::floor(center), 0.0, limit - 1));
        return {nearest, nearest, 1, 0, 1};
    }
    const double begin = center - size / 2;
    const double end = begin + size;
    const double first = std::clamp(std::floor(begin), 0.0, limit - 1);
    const double last = std::clamp(std::ceil(end) - 1, first, limit - 1);
    if (first == last)
        return {std::ptrdiff_t(first), std::ptrdiff_t(last), 1, 0, 1};
    // The pixels at the border continue beyond the edges.
    return {std::ptrdiff_t(first), std::ptrdiff_t(last), float((first + 1 - begin) / size), float(1 / size),
        float((end - last) / size)};
}

template <int channels> void ImageSampler::fillRow(int column, int row, int count, unsigned char* bytes)
{
    const CGAffineTransform& t = _imageFromPixel;
    const auto point = [&](int x) { return CGPointApplyAffineTransform({x + 0.5, row + 0.5}, t); };
    if (!isUpright(t)) {
        for (int i = 0; i < count; ++i, bytes += channels) {
            const CGPoint center = point(column + i);
            sample<channels>(
                window(center.x, _width, _image.width), window(center.y, _height, _image.height), bytes);
        }
        return;
    }
    if (_firstColumn != column || _columns.size() != std::size_t(count)) {
        _columns.clear();
        for (int i = 0; i < count; ++i)
            _columns.push_back(window(point(column + i).x, _width, _image.width));
        _firstColumn = column;
    }
    const Window rows = window(point(column).y, _height, _image.height);
    for (const Window& columns : _columns) {
        sample<channels>(columns, rows, bytes);
        bytes += channels;
    }
}

template <int channels>
void ImageSampler::sample(const Window& columns, const Window& rows, unsigned char* bytes) const
{
    float sums[channels]{};
    for (std::ptrdiff_t y = rows.first; y <= rows.last; ++y) {
        const unsigned char* pixel =
            _image.bytes() + y * std::ptrdiff_t(_image.bytesPerRow) + columns.first * channels;
        float line[channels]{};
        for (std::ptrdiff_t x = columns.first; x <= columns.last; ++x, pixel += channels) {
            const float weight = columns.weight(x);
            for (int channel = 0; channel < channels; ++channel)
                line[channel] += weight * float(pixel[channel]);
        }
        const float weight = rows.weight(y);
        for (int channel = 0; channel < channels; ++channel)
            sums[channel] += weight * line[channel];
    }
    for (int channel = 0; channel < channels; ++channel) {
        const float rounded = sums[channel] + 0.5F; // what is cut off below makes it the nearest
        bytes[channel] = static_cast<unsigned char>(rounded);
    }
}
