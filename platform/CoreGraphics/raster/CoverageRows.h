#pragma once

#include <span>

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

protected:
    ~CoverageRows() = default;
};
