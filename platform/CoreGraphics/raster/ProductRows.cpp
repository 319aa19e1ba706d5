#include "CoreGraphics/raster/ProductRows.h"

#include "CoreGraphics/raster/CoverageRuns.h"

#include <algorithm>

void ProductRows::rows(
    int top, int bottom, std::span<const CoverageSpan> spans, const unsigned char* coverage)
{
    for (int y = top; y < bottom; ++y) {
        for (const CoverageSpan& span : spans) {
            if (span.isFull)
                paintFull(y, span.begin, span.end);
            else
                paint(y, span.begin, span.end, coverage + span.begin);
        }
    }
}

void ProductRows::paintFull(int y, int begin, int end)
{
    // The rectangle's left and right edges are painted by themselves: what is between them stays full.
    const int left = begin == 0 && _product.cutsFirstColumn() ? 1 : begin;
    const int right = end == _product.area().width() && _product.cutsLastColumn() ? end - 1 : end;
    if (left > begin)
        paint(y, begin, left, nullptr);
    if (left < right)
        paint(y, left, right, nullptr);
    if (right < end)
        paint(y, right, end, nullptr);
}

void ProductRows::paint(int y, int begin, int end, const unsigned char* coverage)
{
    const int left = _product.area().left + begin;
    const int count = end - begin;
    const unsigned char* bytes = _product.times(left, y, count, coverage);
    if (!bytes)
        return _painter.paintRun(left, y, count, nullptr);
    forEachRun(bytes, count, [&](int x, int runCount, const unsigned char* runCoverage) {
        _painter.paintRun(left + x, y, runCount, runCoverage);
    });
}
