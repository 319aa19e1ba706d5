#pragma once

#include "CoreGraphics/CGColorInternal.h"

#include <CoreGraphics/CGGradient.h>

#include <vector>

/// A colour's place in a gradient.
struct CGGradientStop {
    CGFloat location;                  ///< 0 to 1
    std::array<CGFloat, 4> components; ///< of the gradient's space, alpha last, each 0 to 1
};

/// A pixel as it lies in memory, premultiplied red first, read as one number.
using CGGradientPixel = std::uint32_t;

/// The record behind CGGradientRef.
struct CGGradient final : CGCounted {
    /// Stops in any order, at least one.
    CGGradient(CGColorSpaceRef space, std::vector<CGGradientStop> stops);

    /// In `cells`: the colour changes too much within the cell for one pixel to stand for all of it. No
    /// premultiplied colour is transparent and red.
    static constexpr CGGradientPixel kUnsettled = 1;

    /// The colour at a location; the first stop's before the first, the last one's from the last on.
    CGGradientPixel pixelAt(CGFloat location) const;
    CGGradientPixel firstPixel() const { return pixelOf(_stops.front().components); }
    CGGradientPixel lastPixel() const { return pixelOf(_stops.back().components); }

    /// The colours of equal parts of 0 to 1, each off by at most half a step of 255 before it is rounded: so
    /// they are within 1 of `pixelAt`. Never empty.
    const std::vector<CGGradientPixel>& cells() const { return _cells; }
    bool isOpaque() const { return _isOpaque; }

private:
    std::array<CGFloat, 4> componentsAt(CGFloat location, std::size_t following) const;
    CGGradientPixel pixelOf(const std::array<CGFloat, 4>& components) const;
    double steepness(std::size_t following) const;
    std::size_t cellCount() const;
    void fillCells();

    RetainPtr<CGColorSpace> _space;
    std::vector<CGGradientStop> _stops; ///< by location
    bool _isOpaque;
    std::vector<CGGradientPixel> _cells;
};
