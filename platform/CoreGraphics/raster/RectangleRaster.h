#pragma once

#include "CoreGraphics/raster/CoverageRows.h"
#include "CoreGraphics/raster/Pixels.h"

#include <vector>

/// Computes the exact coverage of each pixel by rectangles that do not overlap.
///
/// The rectangles are sorted into bands from top to bottom; those of a band have the same top and bottom and
/// run from left to right. A band of any height takes about the time of one row of pixels, because its inner
/// rows are equal.
class RectangleRaster {
public:
    /// Reports the part within `limits`.
    void run(std::span<const AreaRect> rects, const PixelRect& limits, CoverageRows& sink);

private:
    void addToLine(double left, double right);
    void addMixed(int begin, int end);
    void addBand(double top, double bottom);
    void addToPartialRow(int row, double height);
    void finishPartialRow();
    void clearLine();
    /// Reports rows with the same coverage.
    void report(int top, int bottom, std::span<const CoverageSpan> spans, const std::vector<float>& coverage);

    // Coverage, 0 to 1 except for the rounding of sums; index 0 is the left edge of the limits. Both rows are
    // all zero between calls.
    std::vector<float> _line;          ///< coverage of a row that lies completely in the current band
    std::vector<float> _partial;       ///< sum of the bands that cover part of one row
    std::vector<CoverageSpan> _spans;  ///< where the line is not zero
    std::vector<unsigned char> _bytes; ///< of reported rows
    int _partialRow = 0;
    int _partialBegin = 0;
    int _partialEnd = 0; ///< the partial row is empty when this is not beyond the beginning
    CoverageRows* _sink = nullptr;
};
