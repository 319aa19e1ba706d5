#include "CoreGraphics/raster/GradientPainter.h"

#include "CoreGraphics/raster/PixelBlending.h"
#include "CoreGraphics/raster/PixelFill.h"
#include "CoreGraphics/raster/RasterQueue.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace {

/// With fewer pixels the other threads cost more than a tenth of the time, and save little. Only gradients
/// whose rows and columns both differ are shared: the others take as long as writing memory does.
constexpr std::int64_t kManyPixels = std::int64_t(1) << 20;

} // namespace

GradientPainter::GradientPainter(const GradientRows& gradient, std::uint8_t alpha, const PixelMemory& memory,
    const PixelRect& area, std::vector<CGGradientPixel>& row)
    : _gradient(gradient)
    , _alpha(alpha)
    , _memory(memory)
    , _area(area)
    , _row(row)
    , _replaces(alpha == 255 && gradient.isOpaque())
    , _isSameInRows(gradient.isSameInRows(area.height()))
    , _isSameInColumns(gradient.isSameInColumns(area.width()))
    , _isAligned(reinterpret_cast<std::uintptr_t>(memory.data) % alignof(CGGradientPixel) == 0
          && memory.bytesPerRow % sizeof(CGGradientPixel) == 0)
{
    const auto width = std::size_t(area.width());
    _row.resize(std::max(_row.size(), width));
    if (_isSameInRows)
        gradient.fill(area.left, area.top, {_row.data(), width});
}

void GradientPainter::fill()
{
    if (_isSameInRows || _isSameInColumns || _area.pixelCount() < kManyPixels)
        fillRows(_area.top, _area.bottom);
    else
        fillInBands();
}

void GradientPainter::fillRows(int top, int bottom)
{
    for (int y = top; y < bottom; ++y)
        paintRun(_area.left, y, _area.width(), nullptr);
}

void GradientPainter::fillInBands()
{
    // Each painter has scratch memory of its own. All is allocated here: the other threads' work must not
    // throw.
    std::array<std::vector<CGGradientPixel>, kRasterBands> rows;
    std::vector<GradientPainter> painters;
    painters.reserve(kRasterBands);
    for (auto& row : rows)
        painters.emplace_back(_gradient, _alpha, _memory, _area, row);
    applyOnRasterQueue(kRasterBands, [&](std::size_t i) {
        painters[i].fillRows(topOfRasterBand(_area, i), topOfRasterBand(_area, i + 1));
    });
}

void GradientPainter::paintRun(int x, int y, int count, const unsigned char* coverage)
{
    unsigned char* bytes = _memory.pixel(x - _area.left, y - _area.top);
    const bool replaces = _replaces && !coverage;
    if (_isSameInColumns && replaces)
        fillPixels(bytes, std::size_t(count), std::bit_cast<PixelBytes>(_gradient.pixel(x, y)));
    else if (_isSameInColumns)
        blendPixel(bytes, _gradient.pixel(x, y), std::size_t(count), coverage, _alpha);
    else if (replaces)
        replace(x, y, bytes, std::size_t(count));
    else
        blendPixels(bytes, pixels(x, y, std::size_t(count)), coverage, _alpha);
}

void GradientPainter::replace(int x, int y, unsigned char* bytes, std::size_t count)
{
    if (_isAligned && !_isSameInRows)
        return _gradient.fill(x, y, {reinterpret_cast<CGGradientPixel*>(bytes), count});
    const auto source = pixels(x, y, count);
    std::memcpy(bytes, source.data(), source.size_bytes());
}

std::span<const CGGradientPixel> GradientPainter::pixels(int x, int y, std::size_t count)
{
    if (_isSameInRows)
        return {_row.data() + (x - _area.left), count};
    _gradient.fill(x, y, {_row.data(), count});
    return {_row.data(), count};
}
