#include "CoreGraphics/raster/SolidRows.h"

#include "CoreGraphics/raster/PixelFill.h"
#include "CoreGraphics/raster/SolidBlending.h"

#include <cstring>

SolidRows::SolidRows(
    const PixelMemory& memory, const PixelRect& limits, PixelBytes color, std::uint8_t hidden)
    : _memory(memory)
    , _limits(limits)
    , _color(color)
    , _hidden(hidden)
{
}

void SolidRows::rows(int top, int bottom, std::span<const CoverageSpan> spans, const unsigned char* coverage)
{
    const PixelRows pixels{
        pixel(_limits.left, top), _memory.bytesPerRow, bottom - top, _memory.isAlphaOnly()};
    blendSolid(pixels, spans, coverage, _color, _hidden);
    if (_hidden != 255)
        return;
    for (const CoverageSpan& span : spans) {
        if (span.isFull)
            replace({_limits.left + span.begin, top, _limits.left + span.end, bottom});
    }
}

void SolidRows::fill(const PixelRect& pixels)
{
    const CoverageSpan all{pixels.left - _limits.left, pixels.right - _limits.left, true};
    rows(pixels.top, pixels.bottom, {&all, 1}, nullptr);
}

void SolidRows::replace(const PixelRect& pixels) const
{
    auto width = std::size_t(pixels.width());
    int rowCount = pixels.height();
    if (width * std::size_t(channels()) == _memory.bytesPerRow) { // one run of pixels
        width *= std::size_t(rowCount);
        rowCount = 1;
    }
    unsigned char* row = pixel(pixels.left, pixels.top);
    for (int y = 0; y < rowCount; ++y, row += _memory.bytesPerRow) {
        if (_memory.isAlphaOnly())
            std::memset(row, _color[3], width);
        else
            fillPixels(row, width, _color);
    }
}

void SolidRows::paintRun(int x, int y, int count, const unsigned char* coverage)
{
    if (!coverage && _hidden == 255)
        replace({x, y, x + count, y + 1});
    else
        blendSolid(pixel(x, y), coverage, std::size_t(count), _color, _hidden, _memory.isAlphaOnly());
}

unsigned char* SolidRows::pixel(int x, int y) const
{
    return _memory.data + (y - _limits.top) * std::ptrdiff_t(_memory.bytesPerRow)
        + std::ptrdiff_t(x - _limits.left) * channels();
}
