#pragma once

#include "CoreGraphics/CGGradientInternal.h"
#include "CoreGraphics/raster/GradientGeometry.h"

#include <span>

/// The pixels that a gradient paints, row by row.
class GradientRows {
public:
    /// Paints the gradient's colours, and 0 where it does not extend beyond its ends. Borrows both.
    GradientRows(const CGGradient& gradient, const GradientGeometry& geometry);

    /// 255 in every byte of the pixels that are drawn, 0 elsewhere. Borrows the geometry.
    GradientRows stencil() const { return GradientRows(_geometry); }

    /// True when every pixel is painted.
    bool isUnbounded() const { return _geometry.isUnbounded(); }
    /// True when every pixel is painted and opaque.
    bool isOpaque() const;
    /// True when any `count` successive rows are equal.
    bool isSameInRows(int count) const { return stands(_geometry.ramp().perRow, count); }
    /// True when any `count` successive pixels of a row are equal.
    bool isSameInColumns(int count) const { return stands(_geometry.ramp().perColumn, count); }

    CGGradientPixel pixel(int column, int row) const { return pixelAt(_geometry.locationAt(column, row)); }
    /// Writes pixels of a row from `column` on.
    void fill(int column, int row, std::span<CGGradientPixel> pixels) const;

private:
    explicit GradientRows(const GradientGeometry& geometry);
    bool stands(double perPixel, int count) const;
    bool fillFromCells(int column, int row, std::span<CGGradientPixel> pixels) const;
    CGGradientPixel pixelAt(double location) const;

    const GradientGeometry& _geometry;
    const CGGradient* _gradient; ///< null: a stencil
    std::span<const CGGradientPixel> _cells;
    CGGradientPixel _before; ///< of locations below 0
    CGGradientPixel _after;  ///< of locations from 1 on
};
