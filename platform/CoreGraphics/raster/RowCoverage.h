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
    /// Has the row look at a range for lines.
    void touch(double left, double right);
    /// Turns what has been added into spans, and clears it. The coverage must be between 0 and 1, except for
    /// rounding errors.
    void finish();
    /// Removes what has been added.
    void clear() { finish(); }

    /// Of the row that was finished last.
    std::span<const CoverageSpan> spans() const { return _spans; }
    /// In the spans of that row that are not full.
    const unsigned char* coverage() const { return _coverage.data(); }

private:
    /// Full coverage in units of the sums. 255 times this is within 31 bits.
    static constexpr int kFull = 1 << 23;
    static constexpr std::size_t kBitsPerWord = 64;

    /// The nearest whole number. Adding this constant leaves it in the lowest bits, without a call of the
    /// mathematical library.
    static int rounded(double value)
    {
        constexpr double kLowestBitIsOne = 3.0 * (std::uint64_t(1) << 51);
        return int(std::uint32_t(std::bit_cast<std::uint64_t>(value + kLowestBitIsOne)));
    }
    static unsigned char toByte(int sum)
    {
        return static_cast<unsigned char>((std::clamp(sum, 0, kFull) * 255 + kFull / 2) / kFull);
    }
    void finishTouched(int begin, int end);
    void addConstant(int begin, int end, unsigned char coverage);
    /// Removes the full pixels at the end of the last span, which is mixed. Returns its new end.
    int takeFullEnd(int end);
    /// Adds pixels whose bytes have been set.
    void addMixed(int begin, int end);

    int _width = 0;
    int _sum = 0;                        ///< up to the pixel that is finished next
    std::vector<int> _sums;              ///< differences between neighbours; all zero between rows
    std::vector<std::uint64_t> _touched; ///< a bit for each sum that may not be zero
    std::vector<unsigned char> _coverage;
    std::vector<CoverageSpan> _spans;
};

inline void RowCoverage::touch(double left, double right)
{
    // A line changes the sum at the pixel to the right of its own.
    const auto first = std::size_t(int(left));
    const auto last = std::size_t(int(right)) + 1;
    constexpr auto kAll = ~std::uint64_t(0);
    const std::size_t firstWord = first / kBitsPerWord;
    const std::size_t lastWord = last / kBitsPerWord;
    const auto from = kAll << (first % kBitsPerWord);
    const auto until = kAll >> (kBitsPerWord - 1 - last % kBitsPerWord);
    if (firstWord == lastWord) {
        _touched[firstWord] |= from & until;
        return;
    }
    _touched[firstWord] |= from;
    for (std::size_t word = firstWord + 1; word < lastWord; ++word)
        _touched[word] = kAll;
    _touched[lastWord] |= until;
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
