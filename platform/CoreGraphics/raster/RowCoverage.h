#pragma once

#include "CoreGraphics/raster/CoverageRows.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

/// Sums the signed areas to the right of lines within a row of pixels, and turns them into coverage.
///
/// Each line adds its height to the pixels that it crosses, in proportion to how much of them lies to its
/// right; a running sum of these is the coverage. The sums are whole numbers, so that their order does not
/// matter and lines of opposite directions cancel each other exactly.
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
    /// Full coverage in units of the sums. 255 times this is within 31 bits.
    static constexpr int kFull = 1 << 23;

    /// The nearest whole number. Adding this constant leaves it in the lowest bits, without a call of the
    /// mathematical library.
    static int rounded(double value)
    {
        constexpr double kLowestBitIsOne = 3.0 * (std::uint64_t(1) << 51);
        return int(std::uint32_t(std::bit_cast<std::uint64_t>(value + kLowestBitIsOne)));
    }
    static unsigned char toByte(int sum)
    {
        return static_cast<unsigned char>((unsigned(std::clamp(sum, 0, kFull)) * 255 + kFull / 2) / kFull);
    }
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
    const int last = int(right);
    const double height = signedHeight * kFull;
    const int all = rounded(height);
    int* sums = &_sums[std::size_t(first)];
    if (first == last) {
        const int rest = rounded(height * (0.5 * (left + right) - first));
        sums[0] += all - rest;
        sums[1] += rest;
        return;
    }
    // The line meets the pixels `first` to `last`. Pixel p gets what lies right of the line within it.
    const double perPixel = height / (right - left);
    const double inFirst = first + 1 - left;
    const double beyondLast = last + 1 - right;
    int before = rounded(0.5 * perPixel * inFirst * inFirst);
    sums[0] += before;
    for (int p = first + 1; p < last; ++p) {
        const int area = rounded(perPixel * (p - left + 0.5));
        *++sums += area - before;
        before = area;
    }
    const int area = rounded(perPixel * (last - left + 0.5 - 0.5 * beyondLast * beyondLast));
    sums[1] += area - before;
    sums[2] += all - area;
}
