#pragma once

#include <algorithm>
#include <cmath>

/// A rectangle of whole pixels, rows counted downward from the first row of the memory.
/// The right and bottom edges are exclusive.
struct PixelRect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    int width() const { return right - left; }
    int height() const { return bottom - top; }
    bool isEmpty() const { return left >= right || top >= bottom; }
    bool operator==(const PixelRect&) const = default;

    PixelRect intersection(const PixelRect& other) const
    {
        return {std::max(left, other.left), std::max(top, other.top), std::min(right, other.right),
            std::min(bottom, other.bottom)};
    }
    bool contains(const PixelRect& other) const
    {
        return left <= other.left && top <= other.top && right >= other.right && bottom >= other.bottom;
    }
};

/// A rectangle whose edges may lie anywhere within pixels; rows run downward as in PixelRect.
struct AreaRect {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;

    bool isEmpty() const { return !(left < right && top < bottom); } ///< also when an edge is NaN
    bool contains(const PixelRect& other) const
    {
        return left <= other.left && top <= other.top && right >= other.right && bottom >= other.bottom;
    }
    bool isWholePixels() const
    {
        return std::floor(left) == left && std::floor(top) == top && std::floor(right) == right
            && std::floor(bottom) == bottom;
    }
    /// The pixels that this touches, of those in `limits`.
    PixelRect pixels(const PixelRect& limits) const
    {
        if (isEmpty())
            return {};
        return {int(std::floor(std::clamp<double>(left, limits.left, limits.right))),
            int(std::floor(std::clamp<double>(top, limits.top, limits.bottom))),
            int(std::ceil(std::clamp<double>(right, limits.left, limits.right))),
            int(std::ceil(std::clamp<double>(bottom, limits.top, limits.bottom)))};
    }
};
