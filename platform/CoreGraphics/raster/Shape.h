#pragma once

#include "CoreGraphics/CGPathInternal.h"
#include "CoreGraphics/raster/PixelSpace.h"

#include <memory>
#include <optional>
#include <span>
#include <vector>

/// The line attributes of a graphics state.
struct LineStyle {
    CGFloat width = 1; ///< finite, not negative
    CGLineCap cap = kCGLineCapButt;
    CGLineJoin join = kCGLineJoinMiter;
    CGFloat miterLimit = 10;
    CGFloat dashPhase = 0;
    std::shared_ptr<const std::vector<double>> dashes; ///< null for a solid line

    /// Ignores negative widths. Infinite ones and NaN count as 0: such lines are not drawn.
    void setWidth(CGFloat value)
    {
        if (!(value < 0))
            width = std::isfinite(value) ? value : 0;
    }
    /// Ignores invalid values.
    void setCap(CGLineCap value)
    {
        if (value >= kCGLineCapButt && value <= kCGLineCapSquare)
            cap = value;
    }
    /// Ignores invalid values.
    void setJoin(CGLineJoin value)
    {
        if (value >= kCGLineJoinMiter && value <= kCGLineJoinBevel)
            join = value;
    }
    /// Values below 1 and NaN count as 1.
    void setMiterLimit(CGFloat value) { miterLimit = value > 1 ? value : 1; }
    /// The greatest distance of a stroke's outline from its path, in line widths, under a uniform scale.
    double reach() const;
};

/// The pen of a stroke: a line style and the CTM at the time of the stroke.
struct Pen {
    const LineStyle* style = nullptr;
    CGAffineTransform baseFromUser = CGAffineTransformIdentity;

    /// The greatest distance of a stroke's outline from its path, in units of user space.
    double reach() const;
};

/// A shape to paint or to clip to. Borrows everything it refers to. Paths are in base space, rectangles in
/// pixel space.
struct Shape {
    PixelSpace space = {};                     ///< of the destination
    const CGPath* path = nullptr;              ///< may be null when there are rectangles
    std::span<const AreaRect> rectangles = {}; ///< in RectangleRaster's order; if not empty, the whole shape
    const Pen* pen = nullptr;                  ///< null: the path is filled
    bool isEvenOdd = false;
    bool isAntialiased = true;

    /// A conservative bound of the pixels in `limits` that the shape touches.
    PixelRect pixels(const PixelRect& limits) const;
    /// True for a path that is filled with antialiasing: see PathRows.h.
    bool fillsPath() const { return isAntialiased && path && !pen && rectangles.empty(); }
    /// True for a path that is stroked with antialiasing: see StrokeOutline.h.
    bool strokesPath() const { return isAntialiased && path && pen && rectangles.empty(); }
    /// True for a path that is filled or stroked without antialiasing: see CenterRaster.h.
    bool fillsCenters() const { return !isAntialiased && path && rectangles.empty(); }
};

/// `rect` in pixel space, for a transform that keeps rectangles axis-aligned.
AreaRect areaRect(CGRect rect, const CGAffineTransform& baseFromUser, const PixelSpace& space);

/// The rectangle of the pixels whose centres are inside, which are those painted without antialiasing.
AreaRect snapped(const AreaRect& rect);

/// The outline of a single upright rectangle with mitred corners and a solid line, as rectangles in `memory`.
std::optional<std::span<const AreaRect>> rectanglesOfStroke(const CGPath& path, const Pen& pen,
    const PixelSpace& space, bool isAntialiased, std::vector<AreaRect>& memory);
