#pragma once

#include "CoreGraphics/raster/MaskView.h"

#include <span>

/// Smallest number of uncovered or of fully covered pixels in a row that is worth a separate span.
inline constexpr int kLongRun = 16;

/// A run of pixels in a row, either all fully covered or each with its own coverage.
struct CoverageSpan {
    int begin;
    int end;
    bool isFull; ///< all pixels are fully covered; their coverage values are not set
};

/// Receives the coverage of a shape, row by row.
class CoverageRows {
public:
    /// Receives the rows `top` to `bottom` (exclusive), which all have the same coverage: `coverage[x]`, 0 to
    /// 255, in the spans, which run from left to right, and none elsewhere. x counts from the left edge of
    /// the raster's limits. Each row is reported once, from top to bottom.
    virtual void rows(
        int top, int bottom, std::span<const CoverageSpan> spans, const unsigned char* coverage) = 0;
    /// Receives the rows of a small shape together. The mask's area are rows of the raster's limits; each row
    /// is reported once, here or there.
    virtual void mask(const MaskView& mask)
    {
        const CoverageSpan all{0, mask.area.width(), false};
        for (int y = mask.area.top; y < mask.area.bottom; ++y)
            rows(y, y + 1, {&all, 1}, mask.pixel(mask.area.left, y));
    }

protected:
    ~CoverageRows() = default;
};
