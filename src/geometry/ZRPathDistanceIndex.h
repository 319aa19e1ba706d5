#pragma once

#include <KorvidAppKit/ZRPath.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

/// Finds the first of rising values that is not below a given one.
///
/// The range of values is cut into as many equal parts as there are values, and each part knows the first
/// value in it or beyond: one look leads to the answer, or to the few values that share its part.
class RisingValues {
public:
    /// The values, none of them NaN, must stay where they are.
    explicit RisingValues(std::span<const double> values);

    /// Index of the first value >= `value`; their number when there is none. Not for NaN.
    std::size_t firstNotBelow(double value) const
    {
        if (!_firstInPart.empty()) [[likely]] {
            const std::size_t part = partOf(value);
            const std::size_t first = _firstInPart[part], last = _firstInPart[part + 1];
            // Most parts hold a value or two. Those beyond the part are greater, and may be looked at as
            // well: so the answer needs no branch that depends on the values.
            if (last - first <= kLooks && first + kLooks <= _values.size()) [[likely]]
                return first + countBelow(_values.data() + first, value);
            return firstNotBelow(value, first, last);
        }
        return firstNotBelow(value, 0, _values.size());
    }

private:
    static constexpr std::size_t kLooks = 4;

    /// How many of `kLooks` values are below another.
    static std::size_t countBelow(const double* values, double value)
    {
        using Pair = double __attribute__((vector_size(16)));
        Pair low, high;
        std::memcpy(&low, values, sizeof low); // values are not aligned as pairs are
        std::memcpy(&high, values + 2, sizeof high);
        const auto below = (low < value) + (high < value); // -1 for each that is
        return static_cast<std::size_t>(-(below[0] + below[1]));
    }

    /// Never less for a greater value, whatever rounding does: so a value of a later part is greater.
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
    std::vector<std::uint32_t> _firstInPart; ///< one more than there are parts; empty for a few values
};

/// Finds the segment that holds a distance, among the line strips of a built path.
class ZRPathDistanceIndex {
public:
    /// The strips' points and distances must stay where they are.
    explicit ZRPathDistanceIndex(std::span<const ZRPathLineStrip> strips);

    /// End of a segment: the strip, and the index of the point in it, at least 1.
    struct SegmentEnd {
        const ZRPathLineStrip* strip = nullptr;
        std::size_t index = 0;
    };
    /// The first strip that reaches `distance`, and in it the first segment that does; null when none does.
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
    double _length = NAN; ///< the last strip's end; NaN without a strip, so that no distance is within it
};
