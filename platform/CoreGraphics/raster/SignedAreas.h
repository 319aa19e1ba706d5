#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

// Sums of the signed areas to the right of lines, within a row of pixels.
//
// Each line adds its height to the pixels that it crosses, in proportion to how much of them lies to its
// right; a running sum of these differences is the coverage. The sums are whole numbers, so that their order
// does not matter and lines of opposite directions cancel each other exactly.

/// Full coverage in units of the sums. 255 times this is within 31 bits.
inline constexpr int kFullArea = 1 << 23;

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
    // Pixel p gets what lies right of the line within it.
    const double perPixel = height / (right - left);
    const double inFirst = 1 - left;
    const double beyondLast = last + 1 - right;
    int before = roundedArea(0.5 * perPixel * inFirst * inFirst);
    differences[0] += before;
    for (int p = 1; p < last; ++p) {
        const int area = roundedArea(perPixel * (p - left + 0.5));
        differences[p] += area - before;
        before = area;
    }
    const int area = roundedArea(perPixel * (last - left + 0.5 - 0.5 * beyondLast * beyondLast));
    differences[last] += area - before;
    differences[last + 1] += all - area;
}

/// 0 to 255, whatever the sum's sign.
inline unsigned char coverageOfArea(int sum)
{
    return static_cast<unsigned char>(
        (unsigned(std::min(std::abs(sum), kFullArea)) * 255 + kFullArea / 2) / kFullArea);
}

/// The differences of rows of pixels.
struct AreaRows {
    static constexpr int kBlock = 8;
    static constexpr int kBlocksPerWord = 64;

    int* differences;
    int stride; ///< from row to row, a multiple of a block
    int count;
    const std::uint64_t* touched; ///< of each row, bits for the blocks whose differences may not be zero
    std::size_t wordsPerRow;      ///< of these bits
    const unsigned char* isNew;   ///< of each row, whether it may differ from the one above
};

/// Sets the coverage of rows, with the same stride, and clears their differences. Rows have one word of bits.
void takeCoverage(const AreaRows& rows, unsigned char* coverage);

/// The same for the blocks that are touched in new rows. Beyond them, the coverage is that of the pixel
/// before.
void takeTouchedCoverage(const AreaRows& rows, unsigned char* coverage);

/// Calls `visit(begin, end)` for the runs of touched pixels in a row. Runs may follow each other.
template <class Visit> void forEachTouched(const std::uint64_t* touched, std::size_t wordCount, Visit visit)
{
    constexpr int kBlocks = AreaRows::kBlocksPerWord;
    for (std::size_t i = 0; i < wordCount; ++i) {
        const int left = int(i) * kBlocks;
        for (std::uint64_t word = touched[i]; word != 0;) {
            const int first = std::countr_zero(word);
            const int end = first + std::countr_one(word >> first);
            visit((left + first) * AreaRows::kBlock, (left + end) * AreaRows::kBlock);
            word = end < kBlocks ? word >> end << end : 0;
        }
    }
}
