#pragma once

#include <KorvidAppKit/ZRPath.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

/// Finds the first value not less than a given one in a non-decreasing sequence.
///
/// Divides the range of values into as many equal parts as there are values, and stores for each part the
/// index of the first value in it or beyond. One lookup leads to the result, or to the few values in the same
/// part.
class RisingValues {
public:
    /// Refers to the values, which must outlive this object. None may be NaN.
    explicit RisingValues(std::span<const double> values);

    /// Index of the first value >= `value`; the number of values if there is none. `value` must not be NaN.
    std::size_t firstNotBelow(double value) const
    {
        if (!_firstInPart.empty()) [[likely]] {
            const std::size_t part = partOf(value);
            const std::size_t first = _firstInPart[part], last = _firstInPart[part + 1];
            // Most parts hold one or two values. Values beyond the part are greater and do no harm in a
            // comparison, so a fixed number of comparisons needs no branch that depends on the values.
            if (last - first <= kLooks && first + kLooks <= _values.size()) [[likely]]
                return first + countBelow(_values.data() + first, value);
            return firstNotBelow(value, first, last);
        }
        return firstNotBelow(value, 0, _values.size());
    }

private:
    static constexpr std::size_t kLooks = 4;

    /// How many of `kLooks` values are less than `value`.
    static std::size_t countBelow(const double* values, double value)
    {
        using Pair = double __attribute__((vector_size(16)));
        Pair low, high;
        std::memcpy(&low, values, sizeof low); // values are not aligned as pairs are
        std::memcpy(&high, values + 2, sizeof high);
        const auto below = (low < value) + (high < value); // -1 for each that is less
        return static_cast<std::size_t>(-(below[0] + below[1]));
    }

    /// Non-decreasing in `value`, whatever rounding does: a value in a later part is greater.
    std::size_t partOf(double value) const
    {
        const double part = (value - _lowest) * _partsPerUnit;
        if (!(part > 0)) // NaN too
            return 0;
        return static_cast<std::uint32_t>(static_cast<std::int64_t>(part < _lastPart ? part : _lastPart));
    }
    std::size_t firstNotBelow(double value, std::size_t first, std::size_t last) const;

    std::span<const double> _values;
    double _lowest = 0;
    double _partsPerUnit = 0;
    double _lastPart = 0;
    std::vector<std::uint32_t> _firstInPart; ///< one more entry than parts; empty for few values
};

/// Finds the segment that contains a distance among the line strips of a built path.
class ZRPathDistanceIndex {
public:
    /// Refers to the strips, which must outlive this object unchanged.
    explicit ZRPathDistanceIndex(std::span<const ZRPathLineStrip> strips);

    /// The end of a segment: its strip, and the index of its end point there, at least 1.
    struct SegmentEnd {
        const ZRPathLineStrip* strip = nullptr;
        std::size_t index = 0;
    };
    /// The first segment that ends at `distance` or beyond; a null strip if there is none, and for NaN.
    SegmentEnd find(double distance) const
    {
        if (!(distance <= _length))
            return {};
        const Strip& strip = _strips[_strips.size() == 1 ? 0 : _stripEndIndex.firstNotBelow(distance)];
        return {strip.strip, strip.segmentEnds.firstNotBelow(distance) + 1};
    }

private:
    struct Strip {
        const ZRPathLineStrip* strip;
        RisingValues segmentEnds;
    };
    std::vector<Strip> _strips;
    std::vector<double> _stripEnds;
    RisingValues _stripEndIndex;
    double _length = NAN; ///< the last strip's end; NaN without strips, so that no distance is within it
};
