#pragma once

#include "CoreGraphics/raster/CoverageRows.h"
#include "CoreGraphics/raster/SignedAreas.h"

#include <algorithm>
#include <cstddef>
#include <vector>

/// Sums the signed areas to the right of lines within a row of pixels, and turns them into spans of coverage.
class RowCoverage {
public:
    /// Prepares for rows of this many pixels. Keeps the memory of wider ones.
    void setWidth(int width);

    /// Adds the area to the right of a line of a height in rows: positive for the left end of the inside.
    /// Both x lie between 0 and the width, and in a range that is touched before the row is finished.
    void addLine(double topX, double bottomX, double signedHeight);
    /// Has the row look at a range for lines. Takes the least time when ranges come from left to right.
    void touch(double left, double right);
    /// Turns what has been added into spans, and clears it. The coverage must be between 0 and 1, except for
    /// rounding errors.
    void finish();
    /// Removes what has been added.
    void clear() { finish(); }

    /// Of the row that was finished last.
    std::span<const CoverageSpan> spans() const { return {_spans.data(), _endSpan}; }
    /// In the spans of that row that are not full.
    const unsigned char* coverage() const { return _coverage.data() + kBlock; }

private:
    /// Pixels whose sums may not be zero.
    struct Range {
        int begin;
        int end;
    };

    /// Mixed spans are at least this long where full ones beside them allow it: so many pixels are blended
    /// together.
    static constexpr int kBlock = 8;

    /// Sets the coverage of a range, and clears its sums. Returns the sum at its end.
    int finishRange(const Range& range, int sum);
    bool followsMixed(int x) const
    {
        return _endSpan != _spans.data() && !_endSpan[-1].isFull && _endSpan[-1].end == x;
    }
    /// Adds the runs of a long range.
    void addRuns(int begin, int end);
    void addConstant(int begin, int end, unsigned char coverage);
    /// Adds a long run of full pixels.
    void addFull(int begin, int end);
    /// Adds pixels whose bytes have been set.
    void addMixed(int begin, int end);
    /// In memory with some room on both sides.
    unsigned char* bytes() { return _coverage.data() + kBlock; }

    int _width = 0;
    std::vector<int> _sums;      ///< differences between neighbours; all zero between rows
    std::vector<Range> _touched; ///< from left to right, none next to another
    std::vector<unsigned char> _coverage;
    std::vector<CoverageSpan> _spans; ///< memory
    CoverageSpan* _endSpan = nullptr; ///< of those in use
};

inline void RowCoverage::touch(double left, double right)
{
    // A line changes the sum at the pixel to the right of its own.
    Range range{int(left), int(right) + 2};
    while (!_touched.empty() && _touched.back().end >= range.begin) {
        range = {std::min(range.begin, _touched.back().begin), std::max(range.end, _touched.back().end)};
        _touched.pop_back();
    }
    _touched.push_back(range);
}

inline void RowCoverage::addLine(double topX, double bottomX, double signedHeight)
{
    const double left = std::min(topX, bottomX);
    const double right = std::max(topX, bottomX);
    const int first = int(left);
    addAreas(&_sums[std::size_t(first)], left - first, right - first, int(right) - first,
        signedHeight * kFullArea);
}
