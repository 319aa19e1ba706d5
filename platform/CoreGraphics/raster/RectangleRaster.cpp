#include "CoreGraphics/raster/RectangleRaster.h"

namespace {

/// Smallest number of uncovered or of fully covered pixels in a row that is worth a separate span.
constexpr int kLongRun = 32;

/// The width of a pixel in units of the line: 128 for each of the 255 steps of coverage.
constexpr int kWidthBits = 7;
constexpr int kWidth = 255 << kWidthBits;
/// The height of a pixel in units of the bands' heights.
constexpr int kHeightBits = 15;
constexpr int kHeight = 1 << kHeightBits;

/// The nearest whole number of units in a part of a pixel, 0 to 1. Equal edges are rounded alike, so that
/// what rectangles without gaps add to a pixel has no gaps either.
int unitsIn(double part, int unitsPerPixel)
{
    return (int(part * (2 * unitsPerPixel)) + 1) / 2;
}

/// The nearest byte of coverage to a sum with this many units for each step. Loops over it are vectorized.
template <int unitBits, class Sum> unsigned char byteOf(Sum sum)
{
    return static_cast<unsigned char>(Sum(sum + (Sum(1) << (unitBits - 1))) >> unitBits);
}

} // namespace

void RectangleRaster::run(std::span<const AreaRect> rects, const PixelRect& limits, CoverageRows& sink)
{
    const auto width = std::size_t(limits.width());
    if (_line.size() < width) {
        _line.resize(width);
        _partial.resize(width);
        _bytes.resize(width);
    }
    _sink = &sink;

    for (std::size_t i = 0; i < rects.size();) {
        const double bandTop = rects[i].top;
        const double top = std::max<double>(bandTop, limits.top);
        const double bottom = std::min<double>(rects[i].bottom, limits.bottom);
        const bool isVisible = top < bottom;
        for (; i < rects.size() && rects[i].top == bandTop; ++i) {
            // Edges that differ may be equal after the subtraction, which rounds.
            const double left = std::max<double>(rects[i].left, limits.left) - limits.left;
            const double right = std::min<double>(rects[i].right, limits.right) - limits.left;
            if (isVisible && left < right)
                addToLine(left, right);
        }
        if (_spans.empty())
            continue;
        addBand(top, bottom);
        clearLine();
    }
    finishPartialRow();
}

void RectangleRaster::addToLine(double left, double right)
{
    const int first = int(left); // the edges are not negative: this is the floor
    const int last = int(right);
    const int before = unitsIn(left - first, kWidth);
    const int beyond = unitsIn(right - last, kWidth);
    if (first == last) {
        _line[first] += std::uint16_t(beyond - before);
        addMixed(first, first + 1);
        return;
    }
    const int fullBegin = before > 0 ? first + 1 : first;
    const int end = beyond > 0 ? last + 1 : last;
    if (before > 0)
        _line[first] += std::uint16_t(kWidth - before);
    if (beyond > 0)
        _line[last] += std::uint16_t(beyond);
    if (last - fullBegin < kLongRun) {
        std::fill(_line.begin() + fullBegin, _line.begin() + last, std::uint16_t(kWidth));
        addMixed(first, end);
        return;
    }
    if (fullBegin > first)
        addMixed(first, fullBegin);
    _spans.push_back({fullBegin, last, true});
    if (end > last)
        addMixed(last, end);
}

void RectangleRaster::addMixed(int begin, int end)
{
    if (!_spans.empty() && !_spans.back().isFull && begin - _spans.back().end < kLongRun)
        _spans.back().end = end;
    else
        _spans.push_back({begin, end, false});
}

void RectangleRaster::addBand(double top, double bottom)
{
    int first = int(std::floor(top));
    const int last = int(std::floor(bottom));
    const int above = unitsIn(top - first, kHeight);
    const int below = unitsIn(bottom - last, kHeight);
    if (first == last)
        return addToPartialRow(first, std::uint16_t(below - above));
    if (above > 0) {
        addToPartialRow(first, std::uint16_t(kHeight - above));
        ++first;
    }
    if (first < last) {
        finishPartialRow();
        reportLine(first, last);
    }
    if (below > 0)
        addToPartialRow(last, std::uint16_t(below));
}

void RectangleRaster::addToPartialRow(int row, std::uint16_t height)
{
    if (row != _partialRow)
        finishPartialRow();
    const std::uint16_t* const line = _line.data();
    std::uint32_t* const partial = _partial.data();
    for (const CoverageSpan span : _spans) { // a copy, which the loops cannot change
        if (span.isFull) {
            for (int x = span.begin; x < span.end; ++x)
                partial[x] += std::uint32_t(height) * kWidth;
        } else {
            for (int x = span.begin; x < span.end; ++x)
                partial[x] += std::uint32_t(height) * line[x];
        }
    }
    const bool isNew = _partialBegin >= _partialEnd;
    _partialRow = row;
    _partialBegin = isNew ? _spans.front().begin : std::min(_partialBegin, _spans.front().begin);
    _partialEnd = isNew ? _spans.back().end : std::max(_partialEnd, _spans.back().end);
}

void RectangleRaster::finishPartialRow()
{
    if (_partialBegin >= _partialEnd)
        return;
    const CoverageSpan span{_partialBegin, _partialEnd, false};
    std::transform(_partial.begin() + span.begin, _partial.begin() + span.end, _bytes.begin() + span.begin,
        byteOf<kWidthBits + kHeightBits, std::uint32_t>);
    _sink->rows(_partialRow, _partialRow + 1, {&span, 1}, _bytes.data());
    std::fill(_partial.begin() + _partialBegin, _partial.begin() + _partialEnd, 0);
    _partialEnd = _partialBegin;
}

void RectangleRaster::reportLine(int top, int bottom)
{
    for (const CoverageSpan& span : _spans) {
        if (!span.isFull)
            std::transform(_line.begin() + span.begin, _line.begin() + span.end, _bytes.begin() + span.begin,
                byteOf<kWidthBits, std::uint16_t>);
    }
    _sink->rows(top, bottom, _spans, _bytes.data());
}

void RectangleRaster::clearLine()
{
    for (const CoverageSpan& span : _spans)
        if (!span.isFull)
            std::fill(_line.begin() + span.begin, _line.begin() + span.end, std::uint16_t(0));
    _spans.clear();
}
