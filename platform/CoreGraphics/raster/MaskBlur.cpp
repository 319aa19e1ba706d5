#include "CoreGraphics/raster/MaskBlur.h"

#include <algorithm>
#include <cstring>

namespace {

// Plain loops over separate arrays, which the compiler vectorizes.

void scale(const float* __restrict values, float weight, float* __restrict sums, int count)
{
    for (int i = 0; i < count; ++i)
        sums[i] = weight * values[i];
}

void addScaled(const float* a, const float* b, float weight, float* __restrict sums, int count)
{
    for (int i = 0; i < count; ++i)
        sums[i] += weight * (a[i] + b[i]);
}

void toBytes(const float* __restrict sums, unsigned char* __restrict bytes, int count)
{
    for (int i = 0; i < count; ++i)
        bytes[i] = static_cast<unsigned char>(int(std::min(sums[i] + 0.5F, 255.0F)));
}

bool areAlike(const MaskView& mask, int y, int otherY)
{
    const int left = mask.area.left;
    return std::memcmp(mask.pixel(left, y), mask.pixel(left, otherY), std::size_t(mask.area.width())) == 0;
}

} // namespace

MaskView MaskBlur::blurred(const MaskView& mask, double blur, const PixelRect& limits)
{
    const PixelRect area = mask.area.grown(reach(blur)).intersection(limits);
    if (area.isEmpty())
        return {};
    setWeights(blur);
    blurRows(mask, area);
    const int bytesPerRow = (area.width() + 3) / 4 * 4;
    _bytes.resize(std::size_t(bytesPerRow) * std::size_t(area.height()));
    blurColumns(area, _bytes.data(), bytesPerRow);
    return {area, _bytes.data(), bytesPerRow};
}

void MaskBlur::setWeights(double blur)
{
    if (blur == _blur)
        return;
    _blur = blur;
    _reach = reach(blur);
    const double deviation = blur / 2;
    std::vector<double> weights(std::size_t(_reach) + 1);
    double sum = 0;
    for (int i = 0; i <= _reach; ++i) {
        // Quotient first: the square of a small deviation would be 0. The quotient may be infinite, the
        // weight then 0.
        const double deviations = i == 0 ? 0 : i / deviation;
        const double weight = std::exp(-deviations * deviations / 2);
        weights[std::size_t(i)] = weight;
        sum += i == 0 ? weight : 2 * weight;
    }
    _weights.clear();
    for (const double weight : weights)
        _weights.push_back(float(weight / sum));
}

void MaskBlur::blurRows(const MaskView& mask, const PixelRect& area)
{
    const auto width = std::size_t(area.width());
    _line.assign(width + 2 * std::size_t(_reach), 0);
    // The first row is empty and represents all rows outside of the mask.
    _rows.assign(width, 0);
    _rowStarts.clear();
    _top = std::max(mask.area.top, area.top - _reach);
    const int bottom = std::min(mask.area.bottom, area.bottom + _reach);
    for (int y = _top; y < bottom; ++y) {
        if (y == _top || !areAlike(mask, y, y - 1))
            blurRow(mask, y, area);
        _rowStarts.push_back(_rows.size() - width);
    }
}

void MaskBlur::blurRow(const MaskView& mask, int y, const PixelRect& area)
{
    const int first = std::max(mask.area.left, area.left - _reach);
    const int last = std::min(mask.area.right, area.right + _reach);
    std::copy(mask.pixel(first, y), mask.pixel(last, y), _line.begin() + (first - area.left + _reach));

    const int width = area.width();
    _rows.resize(_rows.size() + std::size_t(width));
    float* sums = _rows.data() + _rows.size() - width;
    const float* middle = _line.data() + _reach;
    scale(middle, _weights[0], sums, width);
    for (int i = 1; i <= _reach; ++i)
        addScaled(middle - i, middle + i, _weights[std::size_t(i)], sums, width);
}

const float* MaskBlur::blurredRow(int y) const
{
    const int index = y - _top;
    const bool isThere = index >= 0 && std::size_t(index) < _rowStarts.size();
    return _rows.data() + (isThere ? _rowStarts[std::size_t(index)] : 0);
}

void MaskBlur::blurColumns(const PixelRect& area, unsigned char* bytes, int bytesPerRow)
{
    const int width = area.width();
    _sums.resize(std::size_t(width));
    // Rows whose neighbourhoods within reach are equal have equal results.
    int alike = 0;
    for (int y = area.top; y < area.bottom; ++y, bytes += bytesPerRow) {
        alike = blurredRow(y + _reach) == blurredRow(y + _reach - 1) ? alike + 1 : 0;
        if (y > area.top && alike > 2 * _reach) {
            std::memcpy(bytes, bytes - bytesPerRow, std::size_t(width));
            continue;
        }
        scale(blurredRow(y), _weights[0], _sums.data(), width);
        for (int i = 1; i <= _reach; ++i)
            addScaled(blurredRow(y - i), blurredRow(y + i), _weights[std::size_t(i)], _sums.data(), width);
        toBytes(_sums.data(), bytes, width);
    }
}
