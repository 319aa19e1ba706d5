#include "geometry/ZRPathDistanceIndex.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

/// Up to this number a binary search is as fast.
constexpr std::size_t kFewValues = 16;
constexpr std::size_t kMostValues = std::numeric_limits<std::uint32_t>::max();

} // namespace

RisingValues::RisingValues(std::span<const double> values)
    : _values(values)
{
    if (values.size() <= kFewValues || values.size() > kMostValues)
        return;
    _lowest = values.front();
    _lastPart = static_cast<double>(values.size() - 1);
    _partsPerUnit = static_cast<double>(values.size()) / (values.back() - _lowest);
    if (!std::isfinite(_partsPerUnit)) // the values are equal, or nearly equal
        return;
    // In reverse order, so that the first value of each part overwrites the others. No branch depends on the
    // values.
    _firstInPart.resize(values.size() + 1, static_cast<std::uint32_t>(values.size()));
    for (std::size_t i = values.size(); i-- > 0;)
        _firstInPart[partOf(values[i])] = static_cast<std::uint32_t>(i);
    for (std::size_t part = values.size(); part-- > 0;)
        _firstInPart[part] = std::min(_firstInPart[part], _firstInPart[part + 1]);
}

std::size_t RisingValues::firstNotBelow(double value, std::size_t first, std::size_t last) const
{
    const double* values = _values.data();
    return static_cast<std::size_t>(std::lower_bound(values + first, values + last, value) - values);
}

ZRPathDistanceIndex::ZRPathDistanceIndex(std::span<const ZRPathLineStrip> strips)
    : _stripEndIndex({})
{
    _strips.reserve(strips.size());
    _stripEnds.reserve(strips.size());
    for (const ZRPathLineStrip& strip : strips) {
        if (!strip.distances)
            continue;
        const std::span<const double> distances(strip.distances, strip.count);
        // From the first NaN on all sums are NaN: no distance lies in these strips.
        if (std::isnan(distances.back()))
            break;
        _strips.push_back({&strip, RisingValues(distances.subspan(1))});
        _stripEnds.push_back(distances.back());
        _length = distances.back();
    }
    _stripEndIndex = RisingValues(_stripEnds);
}
