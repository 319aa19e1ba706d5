#pragma once

#include "CoreGraphics/CGPathInternal.h"
#include "CoreGraphics/raster/PixelSpace.h"

#include <memory>
#include <optional>
#include <span>
#include <vector>

/// Everything that shapes a line.
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
    /// How far a line may reach to the side of its path, in widths, where units are alike in all directions.
    double reach() const;
};

/// The pen of a stroke: a line style in the user space of the moment.
struct Pen {
    const LineStyle* style = nullptr;
    CGAffineTransform baseFromUser = CGAffineTransformIdentity;

    /// How far a line may reach to the side of its path, in units of user space.
    double reach() const;
};

/// What is painted or clipped to; borrows everything for the call. Paths lie in base space, rectangles in
/// pixel space.
struct Shape {
    PixelSpace space = {};                     ///< of the pixels that it is drawn on
    const CGPath* path = nullptr;              ///< may be null when there are rectangles
    std::span<const AreaRect> rectangles = {}; ///< in RectangleRaster's order; if any, all of the shape
    const Pen* pen = nullptr;                  ///< null: the path is filled
    bool isEvenOdd = false;
    bool isAntialiased = true;

    /// The pixels of `limits` that the shape may touch; rather too many than too few.
    PixelRect pixels(const PixelRect& limits) const;
    /// True for a path that is filled without antialiasing: see CenterRaster.h.
    bool fillsCenters() const { return !isAntialiased && path && !pen && rectangles.empty(); }
};

/// The rectangle that an upright transform makes of `rect`, in pixel space.
AreaRect areaRect(CGRect rect, const CGAffineTransform& baseFromUser, const PixelSpace& space);

/// The rectangle of the pixels whose centres are inside: what is painted without antialiasing.
AreaRect snapped(const AreaRect& rect);

/// The rectangles of a path that consists only of rectangles, if they have the order of scanned rows of
/// squares without overlaps: each beside the one before, or in a band of its own further on, always in the
/// same directions. In RectangleRaster's order, neighbours merged, empty ones left out. They lie in `memory`.
std::optional<std::span<const AreaRect>> rectanglesInScanOrder(
    const CGPath& path, const PixelSpace& space, bool isAntialiased, std::vector<AreaRect>& memory);

/// The outline of a single upright rectangle with mitred corners and a solid line, as rectangles in `memory`.
std::optional<std::span<const AreaRect>> rectanglesOfStroke(const CGPath& path, const Pen& pen,
    const PixelSpace& space, bool isAntialiased, std::vector<AreaRect>& memory);
