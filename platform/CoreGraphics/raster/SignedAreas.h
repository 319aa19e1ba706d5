#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

// Sums of the signed areas to the right of lines, within a row of pixels.
//
// Each line adds its height to the pixels that it crosses, in proportion to how much of them lies to its
// right; a running sum of these differences is the coverage. The sums are whole numbers, so that their order
// does not matter and lines of opposite directions cancel each other exactly.

/// Full coverage in units of the sums. 255 times this is within 31 bits.
inline constexpr int kFullArea = 1 << 23;

/// In pixels. Lines from within this distance are as exact as those nearby.
inline constexpr double kFarthestExactLine = 1e6;

/// The nearest whole number. Adding this constant leaves it in the lowest bits, without a call of the
/// mathematical library.
inline int roundedArea(double value)
{
    constexpr double kLowestBitIsOne = 3.0 * (std::uint64_t(1) << 51);
    return int(std::uint32_t(std::bit_cast<std::uint64_t>(value + kLowestBitIsOne)));
}

/// Adds the area to the right of a line from `left` to `right`, in pixels from the first one that it meets,
/// to differences between neighbours, of which there are two more than pixels that it meets. The last of
/// these has the index `last`. The height is in units of the sums, and positive for a line at the left end of
/// the inside.
inline void addAreas(int* differences, double left, double right, int last, double height)
{
    const int all = roundedArea(height);
    if (last == 0) {
        const int rest = roundedArea(height * (0.5 * (left + right)));
        differences[0] += all - rest;
        differences[1] += rest;
        return;
    }
    // A pixel gets what lies right of the line within it: a triangle in the first one, all but a triangle in
    // the last one.
    const double perPixel = height / (right - left);
    const double inFirst = 1 - left;
    const double inLast = right - last;
    int before = roundedArea(0.5 * perPixel * inFirst * inFirst);
    const int rest = roundedArea(0.5 * perPixel * inLast * inLast);
    differences[0] += before;
    double middle = inFirst + 0.5;
    for (int p = 1; p < last; ++p, ++middle) {
        const int area = roundedArea(perPixel * middle);
        differences[p] += area - before;
        before = area;
    }
    differences[last] += all - rest - before;
    differences[last + 1] += rest;
}

/// 0 to 255, whatever the sum's sign.
inline unsigned char coverageOfArea(int sum)
{
    return static_cast<unsigned char>(
        (unsigned(std::min(std::abs(sum), kFullArea)) * 255 + kFullArea / 2) / kFullArea);
}

/// The differences of rows of pixels, in blocks.
struct AreaRows {
    static constexpr int kBlock = 8;
    /// Bytes that may be read after those of the last row's blocks.
    static constexpr int kBlockPadding = 7;

    int* differences;
    int count;
    const unsigned char* touched; ///< of each block of each row, 0 if all its differences are 0
    int blocksPerRow;
    const unsigned char* isNew; ///< of each row, 0 if it is equal to the one above

    int stride() const { return blocksPerRow * kBlock; }
};

/// Sets the coverage of rows, with the same stride, and clears their differences.
void takeCoverage(const AreaRows& rows, unsigned char* coverage);

/// The same for the blocks that are touched in new rows. Beyond them, the coverage is that of the pixel
/// before.
void takeTouchedCoverage(const AreaRows& rows, unsigned char* coverage);

/// Calls `visit(begin, end)` for the runs of touched pixels in a row of blocks.
template <class Visit> void forEachTouched(const unsigned char* touched, int blockCount, Visit visit)
{
    for (int block = 0; block < blockCount;) {
        std::uint64_t eight;
        std::memcpy(&eight, touched + block, sizeof eight);
        if (eight == 0) {
            block += int(sizeof eight);
            continue;
        }
        if (touched[block] == 0) {
            ++block;
            continue;
        }
        const int begin = block;
        do
            ++block;
        while (block < blockCount && touched[block] != 0);
        visit(begin * AreaRows::kBlock, block * AreaRows::kBlock);
    }
}
