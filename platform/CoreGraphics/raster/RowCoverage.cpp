#include "CoreGraphics/raster/RowCoverage.h"

#include <cstring>

namespace {

/// Smallest number of uncovered or of fully covered pixels in a row that is worth a separate span.
constexpr int kLongRun = 16;

} // namespace

void RowCoverage::setWidth(int width)
{
    _width = width;
    // A line at the right edge touches the two pixels beyond it.
    const auto sums = std::size_t(width) + 2;
    if (_sums.size() >= sums)
        return;
    _sums.resize(sums);
    _coverage.resize(sums);
    _touched.resize((sums + kBitsPerWord - 1) / kBitsPerWord);
}

void RowCoverage::finish()
{
    _spans.clear();
    _sum = 0;
    int x = 0;
    const std::size_t words = (std::size_t(_width) + 1) / kBitsPerWord + 1;
    for (std::size_t word = 0; word < words; ++word) {
        std::uint64_t bits = _touched[word];
        _touched[word] = 0;
        while (bits != 0) {
            const int bit = std::countr_zero(bits);
            const int count = std::countr_one(bits >> bit);
            const int begin = int(word * kBitsPerWord) + bit;
            addConstant(x, std::min(begin, _width), toByte(_sum));
            x = begin + count;
            finishTouched(begin, x);
            bits = bit + count < int(kBitsPerWord) ? bits & (~std::uint64_t(0) << (bit + count)) : 0;
        }
    }
    addConstant(x, _width, toByte(_sum));
}

void RowCoverage::finishTouched(int begin, int end)
{
    const int visibleEnd = std::min(end, _width);
    for (int x = begin; x < visibleEnd; ++x) {
        _sum += _sums[std::size_t(x)];
        _coverage[std::size_t(x)] = toByte(_sum);
    }
    std::fill(_sums.begin() + begin, _sums.begin() + end, 0);
    // Beside an edge on a pixel boundary, which touches two pixels, nothing is mixed.
    int last = visibleEnd;
    while (last > begin && _coverage[std::size_t(last) - 1] == 0)
        --last;
    if (begin < last)
        addMixed(begin, last);
}

void RowCoverage::addConstant(int begin, int end, unsigned char coverage)
{
    if (begin >= end)
        return;
    const bool followsMixed = !_spans.empty() && !_spans.back().isFull && _spans.back().end == begin;
    if (coverage == 0 && !(followsMixed && end - begin < kLongRun && end < _width))
        return;
    if (coverage == 255 && end - begin >= kLongRun) {
        if (followsMixed)
            begin = takeFullEnd(begin);
        _spans.push_back({begin, end, true});
        return;
    }
    std::memset(&_coverage[std::size_t(begin)], coverage, std::size_t(end - begin));
    addMixed(begin, end);
}

int RowCoverage::takeFullEnd(int end)
{
    CoverageSpan& mixed = _spans.back();
    while (end > mixed.begin && _coverage[std::size_t(end) - 1] == 255)
        --end;
    mixed.end = end;
    if (mixed.begin == end)
        _spans.pop_back();
    return end;
}

void RowCoverage::addMixed(int begin, int end)
{
    if (!_spans.empty() && !_spans.back().isFull && _spans.back().end == begin)
        _spans.back().end = end;
    else
        _spans.push_back({begin, end, false});
}
