#include "CoreGraphics/raster/ProductRows.h"

#include "CoreGraphics/raster/CoverageRuns.h"

#include <algorithm>

void ProductRows::rows(
    int top, int bottom, std::span<const CoverageSpan> spans, const unsigned char* coverage)
{
    for (int y = top; y < bottom; ++y) {
        for (const CoverageSpan& span : spans)
            paint(y, span.begin, span.end, span.isFull ? nullptr : coverage + span.begin);
    }
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
