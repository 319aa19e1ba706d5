#pragma once

#include "CoreGraphics/CGPathInternal.h"
#include "CoreGraphics/raster/PixelRect.h"

#include <memory>
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

/// What is painted or clipped to, lent for the call.
///
/// Paths lie in base space, y upward; pixel rows run downward, so it takes the height of the pixels to relate
/// the two.
struct Shape {
    const CGPath* path = nullptr; ///< may be null when there are rectangles
    std::span<const AreaRect> rectangles =
        {};                   ///< in the order RectangleRaster wants; if any, all of the shape
    const Pen* pen = nullptr; ///< null: the path is filled
    bool isEvenOdd = false;
    bool isAntialiased = true;

    /// The pixels that the shape may touch, of those in `limits`; rather too many than too few.
    PixelRect pixels(const PixelRect& limits, int height) const;
    /// True for a path that is filled without antialiasing: see CenterRaster.h. Rectangles have edges between
    /// pixels then.
    bool fillsCenters() const { return !isAntialiased && path && !pen && rectangles.empty(); }
    /// True only if every one of the pixels is covered whole.
    bool covers(const PixelRect& pixels) const
    {
        return rectangles.size() == 1 && rectangles[0].contains(pixels);
    }
};

/// The rectangle that an upright transform makes of `rect`, in pixels.
AreaRect areaRect(CGRect rect, const CGAffineTransform& baseFromUser, int height);

/// Without antialiasing a pixel is in when its centre is: moves the edges to where that makes them whole.
AreaRect snapped(const AreaRect& rect);

/// The rectangles of a path that has nothing else, when they neither overlap nor leave the order of rows of
/// squares: each beside the one before, or in a band of its own further on, always in the same directions.
/// Neighbours are merged, degenerate ones left out, and the order becomes that of RectangleRaster. False,
/// with anything in `rectangles`, when the path is not like that.
bool takeScanOrderedRectangles(
    const CGPath& path, int height, bool isAntialiased, std::vector<AreaRect>& rectangles);

/// The outline of a single upright rectangle, when its corners are mitred and the line is solid. False when
/// it is not so simple.
bool takeStrokedRectangle(
    const CGPath& path, const Pen& pen, int height, bool isAntialiased, std::vector<AreaRect>& rectangles);
