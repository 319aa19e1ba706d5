#include "CoreGraphics/raster/MaskBlur.h"

#include "CoreGraphics/raster/BlurKernels.h"

#include <algorithm>
#include <cstring>

namespace {

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
    _bytes.resize(std::size_t(bytesPerRow) * std::size_t(area.height()) + kBlurPadding);
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
    _stride = std::size_t(area.width()) + kBlurPadding;
    _line.assign(_stride + 2 * std::size_t(_reach), 0);
    _neighbours.resize(2 * std::size_t(_reach) + 1);
    _top = std::max(mask.area.top, area.top - _reach);
    const int bottom = std::min(mask.area.bottom, area.bottom + _reach);
    // The first row is empty and represents all rows outside of the mask.
    _rows.resize(_stride * std::size_t(1 + std::max(bottom - _top, 0)));
    std::fill_n(_rows.begin(), _stride, 0.0F);
    _rowStarts.clear();
    std::size_t start = 0;
    for (int y = _top; y < bottom; ++y) {
        if (y == _top || !areAlike(mask, y, y - 1))
            blurRow(mask, y, area, _rows.data() + (start += _stride));
        _rowStarts.push_back(start);
    }
}

void MaskBlur::blurRow(const MaskView& mask, int y, const PixelRect& area, float* sums)
{
    const int first = std::max(mask.area.left, area.left - _reach);
    const int last = std::min(mask.area.right, area.right + _reach);
    std::copy(mask.pixel(first, y), mask.pixel(last, y), _line.begin() + (first - area.left + _reach));
    for (std::size_t i = 0; i < _neighbours.size(); ++i)
        _neighbours[i] = _line.data() + i;
    addWeighted(_neighbours.data() + _reach, _weights, sums, std::size_t(area.width()));
}

const float* MaskBlur::blurredRow(int y) const
{
    const int index = y - _top;
    const bool isThere = index >= 0 && std::size_t(index) < _rowStarts.size();
    return _rows.data() + (isThere ? _rowStarts[std::size_t(index)] : 0);
}

void MaskBlur::blurColumns(const PixelRect& area, unsigned char* bytes, int bytesPerRow)
{
    // All rows and those within reach.
    _neighbours.clear();
    for (int y = area.top - _reach; y < area.bottom + _reach; ++y)
        _neighbours.push_back(blurredRow(y));
    const auto width = std::size_t(area.width());
    // Rows whose neighbourhoods within reach are equal have equal results.
    int alike = 0;
    const float* const* lines = _neighbours.data() + _reach;
    for (int y = area.top; y < area.bottom; ++y, ++lines, bytes += bytesPerRow) {
        alike = lines[_reach] == lines[_reach - 1] ? alike + 1 : 0;
        if (y > area.top && alike > 2 * _reach)
            std::memcpy(bytes, bytes - bytesPerRow, width);
        else
            addWeighted(lines, _weights, bytes, width);
    }
}
