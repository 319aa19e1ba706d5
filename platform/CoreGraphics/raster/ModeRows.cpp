#include "CoreGraphics/raster/ModeRows.h"

#include "CoreGraphics/raster/PixelBlending.h"
#include "CoreGraphics/raster/PixelSource.h"

#include <algorithm>

namespace {

/// In pixels: as many cost less than another call of the source.
constexpr int kSmallGap = 16;

} // namespace

ModeRows::ModeRows(
    const PixelMemory& memory, const PixelRect& area, CGBlendMode mode, const Paint& paint, Memory& scratch)
    : _memory(memory)
    , _area(area)
    , _mode(mode)
    , _scratch(scratch)
{
    if (paint.isSolid())
        _color = paint.bytes();
    else
        _pixels = &paint.pixels();
}

void ModeRows::rows(int top, int bottom, std::span<const CoverageSpan> spans, const unsigned char* coverage)
{
    if (spans.empty())
        return;
    for (int y = top; y < bottom; ++y) {
        for (auto span = spans.begin(); span != spans.end();) {
            // Spans that nearly touch share their pixels.
            auto end = span + 1;
            while (end != spans.end() && end->begin - end[-1].end <= kSmallGap)
                ++end;
            const int first = span->begin;
            const SourceRow pixels = source(_area.left + first, y, end[-1].end - first);
            for (; span != end; ++span)
                blend(_area.left + span->begin, y, span->end - span->begin, from(pixels, span->begin - first),
                    span->isFull ? nullptr : coverage + span->begin);
        }
    }
}

void ModeRows::paintRun(int x, int y, int count, const unsigned char* coverage)
{
    blend(x, y, count, source(x, y, count), coverage);
}

void ModeRows::fill(const PixelRect& pixels)
{
    const bool isNormal = _mode == kCGBlendModeNormal && _memory.layout == PixelLayout::RGBA;
    if (isNormal && _pixels && !_pixels->isOpaque()) {
        const RowsInMemory rows = _pixels->rowsInMemory(pixels.left, pixels.top);
        if (rows.first)
            return paintOver(_memory.pixel(pixels.left - _area.left, pixels.top - _area.top),
                _memory.bytesPerRow, rows, std::size_t(pixels.width()), pixels.height());
    }
    for (int y = pixels.top; y < pixels.bottom; ++y)
        paintRun(pixels.left, y, pixels.width(), nullptr);
}

void ModeRows::blend(int x, int y, int count, const SourceRow& source, const unsigned char* coverage) const
{
    unsigned char* bytes = _memory.pixel(x - _area.left, y - _area.top);
    const auto size = std::size_t(count);
    const bool isNormal = _mode == kCGBlendModeNormal;
    const bool isPlain = !coverage && !source.isSolid;
    if (isPlain && (_mode == kCGBlendModeCopy || (isNormal && _pixels->isOpaque())))
        std::copy_n(source.pixels, size * _memory.bytesPerPixel(), bytes);
    else if (isPlain && isNormal && _memory.layout == PixelLayout::RGBA)
        paintOver(bytes, 0, {source.pixels}, size, 1);
    else
        blendRow(_mode, _memory.layout, bytes, source, coverage, size);
}

SourceRow ModeRows::source(int x, int y, int count)
{
    if (!_pixels)
        return {_memory.isAlphaOnly() ? &_color[3] : _color.data(), true};
    if (_memory.isAlphaOnly())
        return {alphasOfRow(*_pixels, x, y, count, _scratch.alphas)};
    return {_pixels->row(x, y, count)};
}

SourceRow ModeRows::from(const SourceRow& source, int offset) const
{
    return source.isSolid ? source : SourceRow{source.pixels + std::size_t(offset) * _memory.bytesPerPixel()};
}
