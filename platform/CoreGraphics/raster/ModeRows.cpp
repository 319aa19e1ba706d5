#include "CoreGraphics/raster/ModeRows.h"

#include "CoreGraphics/raster/CoverageRuns.h"

void ModeRows::fill() const
{
    for (int y = 0; y < _area.height(); ++y)
        blend(0, y, _area.width(), nullptr);
}

void ModeRows::paint(MaskProduct& product) const
{
    for (int y = 0; y < _area.height(); ++y) {
        forEachRun(product.row(_area.top + y), _area.width(),
            [&](int x, int count, const unsigned char* coverage) { blend(x, y, count, coverage); });
    }
}

void ModeRows::blend(int x, int y, int count, const unsigned char* coverage) const
{
    const bool isSolid = !_source.pixels.data;
    const unsigned char* color = _memory.isAlphaOnly() ? &_source.color[3] : _source.color.data();
    const SourceRow row{isSolid ? color : _source.pixels.pixel(x, y), isSolid};
    blendRow(_mode, _memory.layout, _memory.pixel(x, y), row, coverage, std::size_t(count));
}
