#include "CoreGraphics/raster/SampleRow.h"

#include <algorithm>
#include <cmath>

namespace {

/// Positions below this, in pixels, fit into fixed-point numbers with 32 fractional bits.
constexpr double kMaxPosition = 1 << 30;

bool fitsSteps(const SampleLine& line)
{
    return std::max(std::abs(line.start), std::abs(line.step)) < kMaxPosition; // false for NaN
}

SampleColumns columnsWithin(const SampleLine& line, double length, const SampleColumns& columns)
{
    if (line.step == 0)
        return line.start >= 0 && line.start < length ? columns : SampleColumns{columns.end, columns.end};
    const double atStart = -line.start / line.step;
    const double atEnd = (length - line.start) / line.step;
    // A column less at either end allows for rounding errors.
    const double first = std::max<double>(columns.begin, std::ceil(std::min(atStart, atEnd)) + 1);
    const double last = std::min<double>(columns.end, std::floor(std::max(atStart, atEnd)) - 1);
    return first < last ? SampleColumns{int(first), int(last)} : SampleColumns{columns.end, columns.end};
}

std::uint64_t toFixed(double value)
{
    constexpr double kOne = 4294967296;
    return std::uint64_t(std::llround(value * kOne));
}

/// Modulo 2^64, so that the column does not have to be positive.
std::uint64_t positionAt(const SampleLine& line, int column)
{
    return toFixed(line.start) + toFixed(line.step) * std::uint64_t(column);
}

} // namespace

SampleColumns SampleRow::within(double width, double height, const SampleColumns& columns) const
{
    if (!(width > 0 && height > 0 && fitsSteps(x) && fitsSteps(y)))
        return {columns.end, columns.end};
    return columnsWithin(y, height, columnsWithin(x, width, columns));
}

SampleSteps SampleRow::steps(int column) const
{
    return {.x = positionAt(x, column),
        .y = positionAt(y, column),
        .stepX = toFixed(x.step),
        .stepY = toFixed(y.step)};
}
