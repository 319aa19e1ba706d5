#include "imaging/AngleRows.h"

#include "imaging/AnglePolynomial.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>

// Highway compiles this file once per instruction set, and selects one at run time.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/AngleRows.cpp"
#include <hwy/foreach_target.h> // must come before highway.h

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;
using Floats = hn::ScalableTag<float>;
using Bytes = hn::Rebind<std::uint8_t, Floats>;
using Vector = hn::Vec<Floats>;

/// Computes the angles of the pixels of one row.
class VectorRow {
public:
    VectorRow(std::int32_t dy, bool isIncreasing)
        : _height(hn::Set(Floats(), static_cast<float>(std::abs(dy))))
        // Above the centre the rule adds a full turn to a negative angle; a decreasing sweep subtracts from
        // one.
        , _isMirrored((dy < 0) == isIncreasing)
    {
    }

    /// In units of 1/255 of a full turn, with an error of less than `kAngleDoubt`; NaN at the centre.
    Vector angles(Vector dx) const
    {
        const Floats tag;
        const Vector width = hn::Abs(dx);
        const Vector z = hn::Div(hn::Min(width, _height), hn::Max(width, _height));
        const Vector z2 = hn::Mul(z, z);
        Vector sum = hn::Set(tag, kAnglePolynomial.back());
        for (std::size_t i = kAnglePolynomial.size() - 1; i-- > 0;)
            sum = hn::Add(hn::Mul(sum, z2), hn::Set(tag, kAnglePolynomial[i]));
        const Vector eighth = hn::Mul(z, sum);
        const Vector quarter =
            hn::IfThenElse(hn::Gt(_height, width), hn::Sub(hn::Set(tag, 63.75F), eighth), eighth);
        const Vector half =
            hn::IfThenElse(hn::Lt(dx, hn::Zero(tag)), hn::Sub(hn::Set(tag, 127.5F), quarter), quarter);
        return _isMirrored ? hn::Sub(hn::Set(tag, 255), half) : half;
    }

private:
    Vector _height;
    bool _isMirrored;
};

/// Whether any angle is NaN, or so close to an integer that the exact angle may truncate differently.
/// `fractions` are the fractional parts of the angles.
bool isInDoubt(Vector fractions)
{
    const Floats tag;
    const Vector fromMiddle = hn::Abs(hn::Sub(fractions, hn::Set(tag, 0.5F)));
    return !hn::AllTrue(tag, hn::Lt(fromMiddle, hn::Set(tag, 0.5F - kAngleDoubt)));
}

void fillRow(std::uint8_t* row, const AngleRule& rule, std::int32_t dy)
{
    const Floats tag;
    const Bytes byteTag;
    const hn::RebindToSigned<Floats> integerTag;
    const std::size_t lanes = hn::Lanes(tag);
    const std::int32_t centre = rule.centreColumn();
    const VectorRow vectorRow(dy, rule.isIncreasing);
    const Vector step = hn::Set(tag, static_cast<float>(lanes));
    Vector dx = hn::Iota(tag, static_cast<float>(-centre));
    HWY_ALIGN std::uint8_t last[hn::MaxLanes(tag)];

    for (std::size_t column = 0; column < rule.width; column += lanes, dx = hn::Add(dx, step)) {
        const Vector angles = vectorRow.angles(dx);
        const auto whole = hn::ConvertTo(integerTag, angles);
        const auto bytes = hn::DemoteTo(byteTag, whole);
        const std::size_t count = std::min(lanes, rule.width - column);
        if (count == lanes) {
            hn::StoreU(bytes, byteTag, row + column);
        } else {
            hn::Store(bytes, byteTag, last);
            std::memcpy(row + column, last, count);
        }
        if (isInDoubt(hn::Sub(angles, hn::ConvertTo(tag, whole)))) {
            const auto firstDx = static_cast<std::int32_t>(column) - centre;
            for (std::size_t i = 0; i < count; ++i)
                row[column + i] = rule.byteAt(firstDx + static_cast<std::int32_t>(i), dy);
        }
    }
}

void fillRows(std::uint8_t* pixels, const AngleRule& rule, std::size_t first, std::size_t last)
{
    for (std::size_t i = first; i < last; ++i)
        fillRow(pixels + i * rule.width, rule, static_cast<std::int32_t>(i) - rule.centreRow());
}

} // namespace
} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

HWY_EXPORT(fillRows);

std::uint8_t AngleRule::byteAt(std::int32_t dx, std::int32_t dy) const
{
    constexpr double fullTurn = std::numbers::pi * 2;
    double angle = std::atan2(static_cast<double>(dy), static_cast<double>(dx));
    if (angle < 0)
        angle += fullTurn;
    const double fraction = std::clamp(angle / fullTurn, 0.0, 1.0);
    return static_cast<std::uint8_t>((isIncreasing ? fraction : 1 - fraction) * 255);
}

void fillAngleRows(std::uint8_t* pixels, const AngleRule& rule, std::size_t first, std::size_t last)
{
    HWY_DYNAMIC_DISPATCH(fillRows)(pixels, rule, first, last);
}

#endif
