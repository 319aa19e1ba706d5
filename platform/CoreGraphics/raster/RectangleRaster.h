#pragma once

#include "CoreGraphics/raster/CoverageRows.h"
#include "CoreGraphics/raster/Pixels.h"

#include <cstdint>
#include <vector>

/// Computes the coverage of each pixel by rectangles that do not overlap. Their edges are rounded to 1/32,640
/// of a pixel.
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
    void addToPartialRow(int row, std::uint16_t height);
    void finishPartialRow();
    void clearLine();
    /// Reports rows that lie completely in the current band.
    void reportLine(int top, int bottom);

    // Coverage in whole numbers, whose sums are the same on each processor; index 0 is the left edge of the
    // limits. Both rows are all zero between calls.
    std::vector<std::uint16_t> _line;    ///< covered widths in a row that lies completely in the current band
    std::vector<std::uint32_t> _partial; ///< sum of the areas of the bands that cover part of one row
    std::vector<CoverageSpan> _spans;    ///< where the line is not zero
    std::vector<unsigned char> _bytes;   ///< of reported rows
    int _partialRow = 0;
    int _partialBegin = 0;
    int _partialEnd = 0; ///< the partial row is empty when this is not beyond the beginning
    CoverageRows* _sink = nullptr;
};
