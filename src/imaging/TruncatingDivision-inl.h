// Truncating division of vectors of channel sums by the number of pixels. Included by sources that Highway
// compiles once per instruction set.

#if defined(TRUNCATING_DIVISION_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef TRUNCATING_DIVISION_INL_H
#undef TRUNCATING_DIVISION_INL_H
#else
#define TRUNCATING_DIVISION_INL_H
#endif

#include <bit>
#include <cmath>
#include <cstdint>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

/// Divides sums of up to 64 x 64 bytes.
///
/// For a sum s = k * area + r with r < area, so that k <= 255, it rounds (s - c) / area, where c = (area - 1)
/// / 2 truncated, to the nearest integer, which is k:
/// - c is below area / 2, and area - 1 - c at most that: (s - c) / area lies between
///   k - 1/2 + 1 / (2 * area) and k + 1/2.
/// - It multiplies by the greatest float m with m * area <= 1 - 2^-23. Consecutive floats differ by a factor
/// of at
///   least 1 - 2^-23, so m * area >= 1 - 2^-22.
/// - Upper bound: the product is at most (k + 1/2) * (1 - 2^-23), which is not above the float before k +
/// 1/2, so
///   the rounded product is not either.
/// - Lower bound: area <= 2^12, so the product is at least k - 1/2 + 2^-13 - 256 * 2^-22 = k - 1/2 + 2^-14.
/// Floats
///   below 256 are at most 2^-16 apart, so there are some between the two, and the rounded product stays
///   above k - 1/2.
/// - Adding 1.5 * 2^23, where consecutive floats are consecutive integers, rounds to the nearest integer: the
/// low
///   bits are k.
/// All integers here are below 2^24 and therefore exact as floats.
class SmallAreaDivision {
public:
    static constexpr std::int32_t kGreatestBoxDim = 64;

    explicit SmallAreaDivision(std::uint32_t area)
        : bias(-static_cast<std::int32_t>((area - 1) / 2))
        , _factor(1 / static_cast<float>(area))
    {
        // Exact in double: the products have 24 bits and 13.
        while (static_cast<double>(_factor) * area > 1 - 0x1p-23)
            _factor = std::nextafter(_factor, 0.0F);
    }

    /// Must be added to a sum before dividing it.
    const std::int32_t bias;

    /// The quotients, in the low bytes of the lanes; the other bytes are unspecified. Lanes are 32-bit
    /// integers.
    template <class Tag> hn::Vec<Tag> divide(Tag tag, hn::Vec<Tag> biasedSums) const
    {
        const hn::RebindToFloat<Tag> floatTag;
        const auto sums = hn::ConvertTo(floatTag, hn::BitCast(hn::RebindToSigned<Tag>(), biasedSums));
        const auto quotients = hn::Mul(sums, hn::Set(floatTag, _factor));
        return hn::BitCast(tag, hn::Add(quotients, hn::Set(floatTag, 0x1.8p23F)));
    }

private:
    float _factor;
};

/// Divides any sum by any area except 0: multiplies by a fraction M / 2^(32 + l) just above 1 / area, after
/// T. Granlund and P. L. Montgomery, "Division by Invariant Integers using Multiplication" (1994).
///
/// Here l = ceil(log2(area)) and M = floor(2^(32 + l) / area) + 1, so that M * area = 2^(32 + l) + e with
/// 0 < e <= area <= 2^l. For a sum s = k * area + r with r < area,
///     s * M / 2^(32 + l) = s / area + s * e / (area * 2^(32 + l)),
/// and the last term is less than 1 / area: the whole is at least k and less than k + 1.
///
/// The 33rd bit of M is always 1: `_factor` is M - 2^32. With high = floor(s * _factor / 2^32) the quotient
/// is floor((high + s) / 2^l); the first of the l halvings is applied to the terms to stay within 32 bits.
class AnyAreaDivision {
public:
    static constexpr std::int32_t bias = 0;

    explicit AnyAreaDivision(std::uint32_t area)
    {
        const auto log = static_cast<int>(std::bit_width(area - 1));
        _factor = static_cast<std::uint32_t>(((((std::uint64_t{1} << log) - area) << 32) / area) + 1);
        _firstShift = log > 0 ? 1 : 0;
        _secondShift = log > 0 ? log - 1 : 0;
    }

    /// The quotients of unsigned 32-bit integers. Only their low bytes are used.
    template <class Tag> hn::Vec<Tag> divide(Tag tag, hn::Vec<Tag> sums) const
    {
        const hn::Repartition<std::uint64_t, Tag> wideTag;
        const auto factor = hn::Set(tag, _factor);
        const auto odd = hn::BitCast(tag, hn::ShiftRight<32>(hn::BitCast(wideTag, sums)));
        const auto evenHigh = hn::ShiftRight<32>(hn::MulEven(sums, factor));
        const auto oddHigh = hn::MulEven(odd, factor);
        const auto high = hn::OddEven(hn::BitCast(tag, oddHigh), hn::BitCast(tag, evenHigh));
        const auto rest = hn::ShiftRightSame(hn::Sub(sums, high), _firstShift);
        return hn::ShiftRightSame(hn::Add(high, rest), _secondShift);
    }

private:
    std::uint32_t _factor;
    int _firstShift;
    int _secondShift;
};

/// Interleaves the low bytes of the lanes of four vectors: those of the same lane become contiguous.
template <class Tag>
hn::Vec<Tag> mergeLowBytes(Tag tag, hn::Vec<Tag> v0, hn::Vec<Tag> v1, hn::Vec<Tag> v2, hn::Vec<Tag> v3)
{
    const hn::Repartition<std::uint8_t, Tag> bytes;
    const hn::Repartition<std::uint16_t, Tag> halves;
    const auto low = hn::OddEven(hn::BitCast(bytes, hn::ShiftLeft<8>(v1)), hn::BitCast(bytes, v0));
    const auto high = hn::OddEven(hn::BitCast(bytes, hn::ShiftLeft<8>(v3)), hn::BitCast(bytes, v2));
    const auto shifted = hn::ShiftLeft<16>(hn::BitCast(tag, high));
    return hn::BitCast(tag, hn::OddEven(hn::BitCast(halves, shifted), hn::BitCast(halves, low)));
}

} // namespace
} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
