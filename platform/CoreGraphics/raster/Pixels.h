#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

// Rectangles of pixels, and the memory of pixels. Rows are counted downward in this file.

/// A pixel's colour in memory: premultiplied bytes red, green, blue, alpha.
using PixelBytes = std::array<std::uint8_t, 4>;

/// The bytes of a pixel: premultiplied red, green, blue and alpha; red, green, blue and an unused one,
/// opaque; or alpha alone.
enum class PixelLayout : std::uint8_t { RGBA, RGBX, Alpha };

/// A non-owning view of rows of pixels.
struct PixelMemory {
    unsigned char* data = nullptr; ///< the first pixel of the top row
    std::size_t bytesPerRow = 0;
    PixelLayout layout = PixelLayout::RGBA;

    bool isAlphaOnly() const { return layout == PixelLayout::Alpha; }
    std::size_t bytesPerPixel() const { return isAlphaOnly() ? 1 : 4; }
    /// Counted from the first pixel.
    unsigned char* pixel(int x, int y) const
    {
        return data + std::size_t(y) * bytesPerRow + std::size_t(x) * bytesPerPixel();
    }
};

/// A corner of pixels.
struct PixelPoint {
    int x = 0;
    int y = 0;
};

/// A pixel-aligned rectangle. The right and bottom edges are exclusive.
struct PixelRect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    int width() const { return right - left; }
    int height() const { return bottom - top; }
    std::int64_t pixelCount() const { return std::int64_t(width()) * height(); }
    bool isEmpty() const { return left >= right || top >= bottom; }
    bool operator==(const PixelRect&) const = default;

    PixelRect intersection(const PixelRect& other) const
    {
        return {std::max(left, other.left), std::max(top, other.top), std::min(right, other.right),
            std::min(bottom, other.bottom)};
    }
    /// The smallest rectangle that contains both. Neither may be empty.
    PixelRect united(const PixelRect& other) const
    {
        return {std::min(left, other.left), std::min(top, other.top), std::max(right, other.right),
            std::max(bottom, other.bottom)};
    }
    bool contains(const PixelRect& other) const
    {
        return left <= other.left && top <= other.top && right >= other.right && bottom >= other.bottom;
    }
    PixelRect moved(int byX, int byY) const { return {left + byX, top + byY, right + byX, bottom + byY}; }
    /// The rectangle extended by this many pixels on each side.
    PixelRect grown(int by) const { return {left - by, top - by, right + by, bottom + by}; }
};

/// Pixels with coordinates beyond this are never drawn.
inline constexpr int kFarthestPixel = 1'000'000;
inline constexpr PixelRect kAllPixels{-kFarthestPixel, -kFarthestPixel, kFarthestPixel, kFarthestPixel};

/// A rectangle with edges at any subpixel position.
struct AreaRect {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;

    static AreaRect of(const PixelRect& pixels)
    {
        return {double(pixels.left), double(pixels.top), double(pixels.right), double(pixels.bottom)};
    }

    bool isEmpty() const { return !(left < right && top < bottom); } ///< also when an edge is NaN
    bool contains(const PixelRect& other) const
    {
        return left <= other.left && top <= other.top && right >= other.right && bottom >= other.bottom;
    }
    /// The part of a column or row of pixels that lies between the edges, 0 to 1.
    double coveredWidth(int x) const { return covered(left, right, x); }
    double coveredHeight(int y) const { return covered(top, bottom, y); }
    /// The rectangle whose coverage of each pixel is the product of both coverages. Only one of them may be
    /// unbounded.
    AreaRect multiplied(const AreaRect& other) const
    {
        if (isEmpty() || other.isEmpty())
            return {};
        AreaRect product;
        multiply(left, right, other.left, other.right, product.left, product.right);
        multiply(top, bottom, other.top, other.bottom, product.top, product.bottom);
        return product;
    }
    /// The pixels in `limits` that this rectangle touches.
    PixelRect pixels(const PixelRect& limits) const
    {
        if (isEmpty())
            return {};
        // Integers are at hand on all processors, std::floor is not.
        const auto floor = [](double edge, int least, int greatest) {
            const double inside = std::clamp<double>(edge, least, greatest);
            return int(inside) - (int(inside) > inside ? 1 : 0);
        };
        const auto ceil = [](double edge, int least, int greatest) {
            const double inside = std::clamp<double>(edge, least, greatest);
            return int(inside) + (int(inside) < inside ? 1 : 0);
        };
        return {floor(left, limits.left, limits.right), floor(top, limits.top, limits.bottom),
            ceil(right, limits.left, limits.right), ceil(bottom, limits.top, limits.bottom)};
    }

private:
    static double covered(double begin, double end, double pixel)
    {
        return std::max(std::min(end, pixel + 1) - std::max(begin, pixel), 0.0);
    }
    /// An interval covers pixels in part only at its ends, so the product of two is an interval, too. Its end
    /// is not beyond its beginning when the two have no pixel in common.
    static void multiply(double begin, double end, double otherBegin, double otherEnd, double& productBegin,
        double& productEnd)
    {
        const double first = std::floor(std::max(begin, otherBegin));
        const double last = std::ceil(std::min(end, otherEnd)) - 1;
        const auto share = [&](double pixel) {
            return covered(begin, end, pixel) * covered(otherBegin, otherEnd, pixel);
        };
        productBegin = first == last ? first : first + 1 - share(first);
        productEnd = last + share(last);
    }
};
