#pragma once

#include "CoreGraphics/CGCubic.h"

#include <algorithm>
#include <limits>

/// The box in which something matters; infinite at first.
struct VisibleBox {
    CGPoint from{-std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};
    CGPoint to{std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity()};

    /// Whether a line comes nearer to the box than a distance, or might do so.
    bool isNear(CGPoint start, CGPoint end, double distance) const
    {
        return std::max(start.x, end.x) + distance >= from.x && std::min(start.x, end.x) - distance <= to.x
            && std::max(start.y, end.y) + distance >= from.y && std::min(start.y, end.y) - distance <= to.y;
    }
    /// The same for a curve.
    bool isNear(const CGCubicCurve& curve, double distance) const
    {
        const auto [left, right] =
            std::minmax({curve.x.start, curve.x.control1, curve.x.control2, curve.x.end});
        const auto [low, high] =
            std::minmax({curve.y.start, curve.y.control1, curve.y.control2, curve.y.end});
        return isNear(CGPoint{left, low}, CGPoint{right, high}, distance);
    }
};
