#pragma once

#include "CoreGraphics/raster/Pixels.h"

#include <CoreGraphics/CGAffineTransform.h>

/// The space of a bitmap's pixels, rows counted downward from its upper edge, and its relation to base space,
/// which runs upward from its lower edge. Owns the flip of y between the two.
struct PixelSpace {
    int width = 0;
    int height = 0;

    PixelRect bounds() const { return {0, 0, width, height}; }
    /// y of pixel space from base space, and back.
    double flipped(double y) const { return height - y; }
    CGPoint flipped(CGPoint point) const { return {point.x, flipped(point.y)}; }
    /// From base space to pixel space; the inverse is the same.
    CGAffineTransform flip() const { return {1, 0, 0, -1, 0, double(height)}; }

    /// The rectangle between two opposite corners in base space.
    AreaRect area(CGPoint corner, CGPoint opposite) const
    {
        return {std::min(corner.x, opposite.x), flipped(std::max(corner.y, opposite.y)),
            std::max(corner.x, opposite.x), flipped(std::min(corner.y, opposite.y))};
    }
    /// Where pixels lie in base space.
    CGRect baseRect(const PixelRect& pixels) const
    {
        return {
            {double(pixels.left), flipped(pixels.bottom)}, {double(pixels.width()), double(pixels.height())}};
    }
};
