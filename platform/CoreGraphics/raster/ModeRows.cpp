#include "CoreGraphics/raster/ModeRows.h"

void ModeRows::fill()
{
    for (int y = _area.top; y < _area.bottom; ++y)
        paintRun(_area.left, y, _area.width(), nullptr);
}

void ModeRows::paintRun(int x, int y, int count, const unsigned char* coverage)
{
    const int column = x - _area.left;
    const int row = y - _area.top;
    const bool isSolid = !_source.pixels.data;
    const unsigned char* color = _memory.isAlphaOnly() ? &_source.color[3] : _source.color.data();
    const SourceRow source{isSolid ? color : _source.pixels.pixel(column, row), isSolid};
    blendRow(_mode, _memory.layout, _memory.pixel(column, row), source, coverage, std::size_t(count));
}
