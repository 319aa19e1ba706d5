#include "CoreGraphics/raster/RectangleRaster.h"

#include "CoreGraphics/raster/AreaSums.h"

#include <array>
#include <cstring>

namespace {

/// As kLongRun, for rows whose coverage is computed many pixels at a time.
constexpr int kLongRunOfRectangles = 32;

/// The nearest whole number of units in a part of a pixel, 0 to 1. Equal edges are rounded alike, so that
/// what rectangles without gaps add to a pixel has no gaps either.
int unitsIn(double part, int unitsPerPixel)
{
    return (int(part * (2 * unitsPerPixel)) + 1) / 2;
}

/// Sets covered widths to whole pixels. Up to 8 beyond them are set to 0.
void fill(std::uint16_t* widths, std::uint16_t* end)
{
    constexpr std::size_t kStep = 8;
    static_assert(kStep <= kAreaPadding);
    std::array<std::uint16_t, kStep> step;
    step.fill(kWidthUnits);
    for (; widths < end; widths += kStep)
        std::memcpy(widths, step.data(), sizeof step);
    step.fill(0);
    std::memcpy(end, step.data(), sizeof step);
}

} // namespace

void RectangleRaster::run(std::span<const AreaRect> rects, const PixelRect& limits, CoverageRows& sink)
{
    const auto width = std::size_t(limits.width()) + kAreaPadding;
    if (_line.size() < width) {
        _line.resize(width);
        _partial.resize(width);
        _bytes.resize(width);
    }
    _sink = &sink;
    const double leftLimit = limits.left;
    const double rightLimit = limits.right;

    for (std::size_t i = 0; i < rects.size();) {
        const double bandTop = rects[i].top;
        const double top = std::max<double>(bandTop, limits.top);
        const double bottom = std::min<double>(rects[i].bottom, limits.bottom);
        const bool isVisible = top < bottom;
        for (; i < rects.size() && rects[i].top == bandTop; ++i) {
            // Edges that differ may be equal after the subtraction, which rounds.
            const double left = std::max(rects[i].left, leftLimit) - leftLimit;
            const double right = std::min(rects[i].right, rightLimit) - leftLimit;
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

inline void RectangleRaster::addToLine(double left, double right)
{
    const int first = int(left); // the edges are not negative: this is the floor
    const int last = int(right);
    const int before = unitsIn(left - first, kWidthUnits);
    const int beyond = unitsIn(right - last, kWidthUnits);
    if (first == last) {
        _line[first] += std::uint16_t(beyond - before);
        addMixed(first, first + 1);
        return;
    }
    const int fullBegin = before > 0 ? first + 1 : first;
    const int end = beyond > 0 ? last + 1 : last;
    if (before > 0)
        _line[first] += std::uint16_t(kWidthUnits - before);
    if (last - fullBegin < kLongRunOfRectangles) {
        fill(&_line[fullBegin], &_line[last]);
        _line[last] = std::uint16_t(beyond);
        addMixed(first, end);
        return;
    }
    _line[last] = std::uint16_t(beyond);
    if (fullBegin > first)
        addMixed(first, fullBegin);
    _spans.push_back({fullBegin, last, true});
    if (end > last)
        addMixed(last, end);
}

inline void RectangleRaster::addMixed(int begin, int end)
{
    if (!_spans.empty() && !_spans.back().isFull && begin - _spans.back().end < kLongRunOfRectangles)
        _spans.back().end = end;
    else
        _spans.push_back({begin, end, false});
}

void RectangleRaster::addBand(double top, double bottom)
{
    int first = int(std::floor(top));
    const int last = int(std::floor(bottom));
    const int above = unitsIn(top - first, kHeightUnits);
    const int below = unitsIn(bottom - last, kHeightUnits);
    if (first == last)
        return addToPartialRow(first, std::uint16_t(below - above));
    if (above > 0) {
        addToPartialRow(first, std::uint16_t(kHeightUnits - above));
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
    for (const CoverageSpan span : _spans) { // a copy, which the loop cannot change
        if (span.isFull) {
            std::uint32_t* const partial = _partial.data();
            for (int x = span.begin; x < span.end; ++x)
                partial[x] += std::uint32_t(height) * kWidthUnits;
        } else {
            addAreas(&_partial[span.begin], &_line[span.begin], height, std::size_t(span.end - span.begin));
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
    takeBytesOfAreas(&_partial[span.begin], &_bytes[span.begin], std::size_t(span.end - span.begin));
    _sink->rows(_partialRow, _partialRow + 1, {&span, 1}, _bytes.data());
    _partialEnd = _partialBegin;
}

void RectangleRaster::reportLine(int top, int bottom)
{
    for (const CoverageSpan& span : _spans) {
        if (!span.isFull)
            bytesOfWidths(&_line[span.begin], &_bytes[span.begin], std::size_t(span.end - span.begin));
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
