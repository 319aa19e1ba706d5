#pragma once

#include "CoreGraphics/CGCubic.h"

#include <array>
#include <cstddef>

/// The lengths along a curve. Borrows the curve.
class CurveLength {
public:
    explicit CurveLength(const CGCubicCurve& curve);

    double total() const { return _lengths.back(); }
    /// t of the point that is at a length from the start.
    double parameterAt(double length) const;

private:
    static constexpr std::size_t kParts = 32;

    double speedAt(double t) const;
    double between(double t0, double t1) const;

    const CGCubicCurve& _curve;
    std::array<double, kParts + 1> _lengths{}; ///< from the start to each part of equal t
};

/// The part of a curve from one t to another.
CGCubic part(const CGCubic& curve, double t0, double t1);
