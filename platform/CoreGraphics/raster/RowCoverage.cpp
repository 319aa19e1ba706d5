#include "CoreGraphics/raster/RowCoverage.h"

#include "CoreGraphics/raster/CoverageRuns.h"

#include <cstring>

namespace {

/// Longer ranges, of many lines, are searched for such runs.
constexpr int kLongRange = 64;

/// Eight full pixels.
constexpr std::uint64_t kFullBlock = ~std::uint64_t(0);

} // namespace

void RowCoverage::setWidth(int width)
{
    _width = width;
    // A line at the right edge touches the two pixels beyond it.
    const auto sums = std::size_t(width) + 2;
    if (_sums.size() >= sums)
        return;
    _sums.resize(sums);
    _coverage.resize(sums + 2 * std::size_t(kBlock));
    _spans.resize(sums); // more than there can be
}

void RowCoverage::finish()
{
    _endSpan = _spans.data();
    int sum = 0;
    int x = 0;
    for (const Range& range : _touched) {
        addConstant(x, std::min(range.begin, _width), coverageOfArea(sum));
        sum = finishRange(range, sum);
        x = range.end;
    }
    addConstant(x, _width, coverageOfArea(sum));
    _touched.clear();
}

inline int RowCoverage::finishRange(const Range& range, int sum)
{
    int* const sums = _sums.data();
    unsigned char* const coverage = bytes();
    const int end = std::min(range.end, _width);
    for (int x = range.begin; x < end; ++x) {
        sum += sums[x];
        sums[x] = 0;
        coverage[x] = coverageOfArea(sum);
    }
    for (int x = end; x < range.end; ++x)
        sums[x] = 0;
    // Beside an edge on a pixel boundary, which touches two pixels, nothing is mixed.
    int last = end;
    while (last > range.begin && coverage[last - 1] == 0)
        --last;
    if (last - range.begin > kLongRange)
        addRuns(range.begin, last);
    else if (range.begin < last)
        addMixed(range.begin, last);
    return sum;
}

void RowCoverage::addRuns(int begin, int end)
{
    for (int x = begin; x < end;) {
        const CoverageRun run = coverageRunAt(bytes() + x, end - x);
        const int runEnd = x + run.count;
        if (run.kind == CoverageRun::Kind::Full && run.count >= kLongRun)
            addFull(x, runEnd);
        else if (run.kind != CoverageRun::Kind::None || (run.count < kLongRun && followsMixed(x)))
            addMixed(x, runEnd);
        x = runEnd;
    }
}

inline void RowCoverage::addConstant(int begin, int end, unsigned char coverage)
{
    if (begin >= end)
        return;
    if (coverage == 255 && end - begin >= kLongRun)
        return addFull(begin, end);
    if (coverage == 0 && !(end - begin < kLongRun && end < _width && followsMixed(begin)))
        return;
    std::memset(bytes() + begin, coverage, std::size_t(end - begin));
    addMixed(begin, end);
}

inline void RowCoverage::addFull(int begin, int end)
{
    if (followsMixed(begin)) {
        // The full pixels at the end of the mixed span are part of the full one, but for those that
        // complete a block.
        CoverageSpan& mixed = _endSpan[-1];
        while (begin > mixed.begin && bytes()[begin - 1] == 255)
            --begin;
        if (begin == mixed.begin) {
            --_endSpan;
        } else {
            std::memcpy(bytes() + begin, &kFullBlock, sizeof kFullBlock);
            begin = std::max(begin, mixed.begin + kBlock);
            mixed.end = begin;
        }
    }
    *_endSpan++ = {begin, end, true};
}

inline void RowCoverage::addMixed(int begin, int end)
{
    if (_endSpan != _spans.data() && _endSpan[-1].end == begin) {
        CoverageSpan& before = _endSpan[-1];
        if (!before.isFull) {
            before.end = end;
            return;
        }
        std::memcpy(bytes() + begin - kBlock, &kFullBlock, sizeof kFullBlock);
        begin -= std::clamp(begin + kBlock - end, 0, before.end - before.begin - 1);
        before.end = begin;
    }
    *_endSpan++ = {begin, end, false};
}
