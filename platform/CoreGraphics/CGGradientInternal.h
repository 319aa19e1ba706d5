#pragma once

#include "CoreGraphics/CGColorInternal.h"

#include <CoreGraphics/CGGradient.h>

#include <vector>

/// A colour at a location of a gradient.
struct CGGradientStop {
    CGFloat location;                  ///< 0 to 1
    std::array<CGFloat, 4> components; ///< of the gradient's space, alpha last, each 0 to 1
};

/// A premultiplied pixel, red first in memory, as one number.
using CGGradientPixel = std::uint32_t;

/// The record behind CGGradientRef.
struct CGGradient final : CGCounted {
    /// Stops in any order, at least one.
    CGGradient(CGColorSpaceRef space, std::vector<CGGradientStop> stops);

    /// Marks a cell in `cells` within which the colour changes too much for a single pixel. No premultiplied
    /// colour has this value, which is transparent and red.
    static constexpr CGGradientPixel kUnsettled = 1;

    /// The colour at a location: the first stop's before it, the last stop's from it on.
    CGGradientPixel pixelAt(CGFloat location) const;
    CGGradientPixel firstPixel() const { return pixelOf(_stops.front().components); }
    CGGradientPixel lastPixel() const { return pixelOf(_stops.back().components); }

    /// The colours of equal parts of 0 to 1. Their error is at most half a step of 255 before rounding, so
    /// that they differ from `pixelAt` by at most 1. Never empty.
    const std::vector<CGGradientPixel>& cells() const { return _cells; }
    bool isOpaque() const { return _isOpaque; }

private:
    std::array<CGFloat, 4> componentsAt(CGFloat location, std::size_t following) const;
    CGGradientPixel pixelOf(const std::array<CGFloat, 4>& components) const;
    double steepness(std::size_t following) const;
    std::size_t cellCount() const;
    void fillCells();

    RetainPtr<CGColorSpace> _space;
    std::vector<CGGradientStop> _stops; ///< sorted by location
    bool _isOpaque;
    std::vector<CGGradientPixel> _cells;
};
