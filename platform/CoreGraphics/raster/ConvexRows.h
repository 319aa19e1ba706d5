#pragma once

#include "CoreGraphics/raster/Pixels.h"
#include "CoreGraphics/raster/Polygons.h"
#include "CoreGraphics/raster/RowCoverage.h"

#include <array>
#include <optional>

/// Computes the exact coverage of a convex polygon, row by row.
///
/// Nothing covers a pixel twice there, so the sum of the signed areas of all lines is the coverage, in
/// whatever order they are added: a row needs no bands, no sorting and no winding numbers.
class ConvexRows {
public:
    /// The one of this thread: its memory serves all polygons.
    static ConvexRows& ofThread();

    /// Reports the inside of a single convex polygon, in pixels from the limits' upper left corner. Returns
    /// false, without a report, unless it is near enough.
    bool run(const Polygons& polygons, const PixelRect& limits, CoverageRows& sink);

private:
    /// A convex polygon, level lines and less than that not counted.
    struct Convex {
        std::span<const CGPoint> corners;
        std::size_t top;
        std::size_t bottom;
        bool isClockwise; ///< as seen with rows counted downward
        bool isWithin;    ///< the left and the right limit

        double topY() const { return corners[top].y; }
        double bottomY() const { return corners[bottom].y; }
    };
    /// The left or the right side of a polygon, from top to bottom.
    class Side {
    public:
        /// Of the rows, in pixels.
        void setWidth(double width) { _width = width; }
        /// Begins at the top of the polygon or of the first row.
        void begin(const Convex& polygon, bool isForward, double sign);
        bool isEnded() const { return _isEnded; }
        /// Adds the part above the lower edge of a row.
        void addTo(RowCoverage& row, double bottom);
        /// The number of rows from `row` on that one upright line crosses.
        int uprightRows(int row) const;
        /// Leaves out rows that an upright line crosses.
        void skipTo(double y) { _y = y; }

    private:
        /// Goes on with the next line that runs down, or ends.
        void advance();
        /// Adds a line of a polygon that reaches beyond the limits: what is to their left at their left side,
        /// nothing of what is to their right.
        void addCut(RowCoverage& row, double left, double right, double height) const;
        double xAt(double y) const { return _from.x + (y - _from.y) * _slope; }

        std::span<const CGPoint> _corners;
        std::size_t _corner = 0; ///< at which the line ends
        std::size_t _last = 0;
        bool _isForward = true;
        bool _isEnded = false;
        bool _isWithin = true;
        double _width = 0;
        double _sign = 1;
        double _slope = 0; ///< of x by y
        CGPoint _from{};   ///< of the line
        CGPoint _to{};
        double _x = 0; ///< down to where the line has been added
        double _y = 0;
    };

    static std::optional<Convex> convex(std::span<const CGPoint> corners, double width);
    void scan(const Convex& polygon, const PixelRect& limits, CoverageRows& sink);

    RowCoverage _row;
    std::array<Side, 2> _sides; ///< the left and the right one
};
