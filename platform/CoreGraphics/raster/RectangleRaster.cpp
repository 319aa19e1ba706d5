#include "CoreGraphics/raster/RectangleRaster.h"

namespace {

/// Smallest number of uncovered or of fully covered pixels in a row that is worth a separate span.
constexpr int kLongRun = 32;

/// In this form, loops over it are vectorized.
unsigned char byteOf(float coverage)
{
    const float value = coverage * 255 + 0.5F;
    return static_cast<unsigned char>(int(value < 255 ? value : 255));
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
    if (first == last) {
        _line[first] += float(right - left);
        addMixed(first, first + 1);
        return;
    }
    const int fullBegin = left > first ? first + 1 : first;
    if (fullBegin > first)
        _line[first] += float(fullBegin - left);
    if (right > last)
        _line[last] += float(right - last);
    if (last - fullBegin < kLongRun) {
        std::fill(_line.begin() + fullBegin, _line.begin() + last, 1.0F);
        addMixed(first, right > last ? last + 1 : last);
        return;
    }
    if (fullBegin > first)
        addMixed(first, fullBegin);
    _spans.push_back({fullBegin, last, true});
    if (right > last)
        addMixed(last, last + 1);
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
    if (first == last)
        return addToPartialRow(first, bottom - top);
    if (top > first) {
        addToPartialRow(first, first + 1 - top);
        ++first;
    }
    if (first < last) {
        finishPartialRow();
        report(first, last, _spans, _line);
    }
    if (bottom > last)
        addToPartialRow(last, bottom - last);
}

void RectangleRaster::addToPartialRow(int row, double height)
{
    if (row != _partialRow)
        finishPartialRow();
    const auto weight = float(height);
    for (const CoverageSpan& span : _spans) {
        if (span.isFull) {
            for (int x = span.begin; x < span.end; ++x)
                _partial[x] += weight;
        } else {
            for (int x = span.begin; x < span.end; ++x)
                _partial[x] += weight * _line[x];
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
    report(_partialRow, _partialRow + 1, {&span, 1}, _partial);
    std::fill(_partial.begin() + _partialBegin, _partial.begin() + _partialEnd, 0.0F);
    _partialEnd = _partialBegin;
}

void RectangleRaster::report(
    int top, int bottom, std::span<const CoverageSpan> spans, const std::vector<float>& coverage)
{
    for (const CoverageSpan& span : spans) {
        if (!span.isFull)
            std::transform(coverage.begin() + span.begin, coverage.begin() + span.end,
                _bytes.begin() + span.begin, byteOf);
    }
    _sink->rows(top, bottom, spans, _bytes.data());
}

void RectangleRaster::clearLine()
{
    for (const CoverageSpan& span : _spans)
        if (!span.isFull)
            std::fill(_line.begin() + span.begin, _line.begin() + span.end, 0.0F);
    _spans.clear();
}
