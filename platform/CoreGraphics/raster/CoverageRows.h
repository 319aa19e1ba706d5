#pragma once

#include <span>

/// A run of pixels in a row that are treated alike.
struct CoverageSpan {
    int begin;
    int end;
    bool isFull; ///< all pixels are fully covered; their coverages are not filled in
};

/// Receives the coverage of a shape, row by row.
class CoverageRows {
public:
    /// The rows `top` to `bottom` (exclusive) all have the same coverage: `coverage[x]` (0 to 1, but for the
    /// rounding of a sum) in the spans, which run from left to right, and none elsewhere. x counts from
    /// the left edge of the raster's limits. Rows come from top to bottom, each once.
    virtual void rows(int top, int bottom, std::span<const CoverageSpan> spans, const float* coverage) = 0;

protected:
    ~CoverageRows() = default;
};
