// The formulas of the blend modes, for ModeBlending.cpp, which is compiled for each kind of vector unit.
//
// The modes of PDF (ISO 32000-2, 11.3.5) give R = S (1 - Da) + D (1 - Sa) + Sa Da B(S / Sa, D / Da) with
// premultiplied colours S and D. Multiplied out, the last term of most modes is a sum of products: those are
// computed in 16 bits, and divided by 255 once. The others need quotients and are computed as floating-point
// numbers. The modes of Porter and Duff are sums of products, too.

#if defined(KORVID_BLEND_FORMULAS) == defined(HWY_TARGET_TOGGLE)
#ifdef KORVID_BLEND_FORMULAS
#undef KORVID_BLEND_FORMULAS
#else
#define KORVID_BLEND_FORMULAS
#endif

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;
// With longer vectors, remainders of fewer than eight pixels, which most edges have, would go through a
// buffer.
using Words = hn::CappedTag<std::uint32_t, 8>;
using Shorts = hn::Repartition<std::uint16_t, Words>;
using Bytes = hn::Repartition<std::uint8_t, Words>;
using Ints = hn::RebindToSigned<Words>;
using Floats = hn::RebindToFloat<Words>;
using WordVec = hn::Vec<Words>;
using ShortVec = hn::Vec<Shorts>;
using FloatVec = hn::Vec<Floats>;

// Each mode below gets bytes s and d of the source and of the destination, and the alphas sa and da of the
// same pixels, each in 16 bits, and returns the bytes of the result.

/// x / 255, rounded, of x up to 65025; greater sums of pixels that are not premultiplied count as 65025.
ShortVec dividedBy255(ShortVec x)
{
    const auto raised = hn::Add(hn::Min(x, hn::Set(Shorts(), 65025)), hn::Set(Shorts(), 128));
    return hn::ShiftRight<8>(hn::Add(raised, hn::ShiftRight<8>(raised)));
}
ShortVec inverse(ShortVec byte)
{
    return hn::Sub(hn::Set(Shorts(), 255), byte);
}
ShortVec sum(ShortVec a, ShortVec b)
{
    return hn::SaturatedAdd(a, b);
}
ShortVec sum(ShortVec a, ShortVec b, ShortVec c)
{
    return sum(sum(a, b), c);
}
/// A mode of PDF, from its last term.
ShortVec pdf(ShortVec s, ShortVec d, ShortVec sa, ShortVec da, ShortVec both)
{
    return dividedBy255(sum(hn::Mul(s, inverse(da)), hn::Mul(d, inverse(sa)), both));
}

struct Normal {
    ShortVec operator()(ShortVec s, ShortVec d, ShortVec sa, ShortVec) const
    {
        return dividedBy255(sum(hn::Mul(s, hn::Set(Shorts(), 255)), hn::Mul(d, inverse(sa))));
    }
};
struct Multiply {
    ShortVec operator()(ShortVec s, ShortVec d, ShortVec sa, ShortVec da) const
    {
        return pdf(s, d, sa, da, hn::Mul(s, d));
    }
};
struct Screen {
    ShortVec operator()(ShortVec s, ShortVec d, ShortVec, ShortVec) const
    {
        return dividedBy255(sum(hn::Mul(s, hn::Set(Shorts(), 255)), hn::Mul(d, inverse(s))));
    }
};
/// The last term is 2 s d where s is at most half of its alpha, otherwise sa da - 2 (sa - s) (da - d).
struct HardLight {
    ShortVec operator()(ShortVec s, ShortVec d, ShortVec sa, ShortVec da) const
    {
        const auto dark = hn::Mul(hn::Add(s, s), d);
        const auto distance = hn::Mul(hn::SaturatedSub(sa, s), hn::SaturatedSub(da, d));
        const auto light = hn::SaturatedSub(hn::Mul(sa, da), hn::Add(distance, distance));
        return pdf(s, d, sa, da, hn::IfThenElse(hn::Gt(hn::Add(s, s), sa), light, dark));
    }
};
struct Overlay {
    ShortVec operator()(ShortVec s, ShortVec d, ShortVec sa, ShortVec da) const
    {
        return HardLight()(d, s, da, sa);
    }
};
struct Darken {
    ShortVec operator()(ShortVec s, ShortVec d, ShortVec sa, ShortVec da) const
    {
        return pdf(s, d, sa, da, hn::Min(hn::Mul(s, da), hn::Mul(d, sa)));
    }
};
struct Lighten {
    ShortVec operator()(ShortVec s, ShortVec d, ShortVec sa, ShortVec da) const
    {
        return pdf(s, d, sa, da, hn::Max(hn::Mul(s, da), hn::Mul(d, sa)));
    }
};
/// The formulas of this mode and of the next one do not hold for alpha.
struct Difference {
    static constexpr bool kIsForColorsOnly = true;
    ShortVec operator()(ShortVec s, ShortVec d, ShortVec sa, ShortVec da) const
    {
        const auto a = hn::Mul(s, da);
        const auto b = hn::Mul(d, sa);
        return pdf(s, d, sa, da, hn::Or(hn::SaturatedSub(a, b), hn::SaturatedSub(b, a)));
    }
};
struct Exclusion {
    static constexpr bool kIsForColorsOnly = true;
    ShortVec operator()(ShortVec s, ShortVec d, ShortVec, ShortVec) const
    {
        return dividedBy255(sum(hn::Mul(s, inverse(d)), hn::Mul(d, inverse(s))));
    }
};

struct Clear {
    ShortVec operator()(ShortVec, ShortVec, ShortVec, ShortVec) const { return hn::Zero(Shorts()); }
};
struct Copy {
    ShortVec operator()(ShortVec s, ShortVec, ShortVec, ShortVec) const { return s; }
};
struct SourceIn {
    ShortVec operator()(ShortVec s, ShortVec, ShortVec, ShortVec da) const
    {
        return dividedBy255(hn::Mul(s, da));
    }
};
struct SourceOut {
    ShortVec operator()(ShortVec s, ShortVec, ShortVec, ShortVec da) const
    {
        return dividedBy255(hn::Mul(s, inverse(da)));
    }
};
struct SourceAtop {
    ShortVec operator()(ShortVec s, ShortVec d, ShortVec sa, ShortVec da) const
    {
        return dividedBy255(sum(hn::Mul(s, da), hn::Mul(d, inverse(sa))));
    }
};
struct DestinationOver {
    ShortVec operator()(ShortVec s, ShortVec d, ShortVec, ShortVec da) const
    {
        return dividedBy255(sum(hn::Mul(d, hn::Set(Shorts(), 255)), hn::Mul(s, inverse(da))));
    }
};
struct DestinationOut {
    ShortVec operator()(ShortVec, ShortVec d, ShortVec sa, ShortVec) const
    {
        return dividedBy255(hn::Mul(d, inverse(sa)));
    }
};
struct ExclusiveOr {
    ShortVec operator()(ShortVec s, ShortVec d, ShortVec sa, ShortVec da) const
    {
        return dividedBy255(sum(hn::Mul(s, inverse(da)), hn::Mul(d, inverse(sa))));
    }
};
struct PlusLighter {
    ShortVec operator()(ShortVec s, ShortVec d, ShortVec, ShortVec) const
    {
        return hn::Min(hn::Add(s, d), hn::Set(Shorts(), 255));
    }
};

// Each mode below returns the last term of R, multiplied by 255 x 255: sa da B(s / sa, d / da), from bytes as
// floating-point numbers. Products of two bytes are exact. Sums and products are rounded one by one, without
// fused multiplication and addition, so that all processors give the same result.

/// Replaces a divisor of 0. What is divided by it is 0 as well, or the quotient is limited.
constexpr float kTiny = 1.0F / 1024;

FloatVec quotient(FloatVec a, FloatVec b)
{
    return hn::Div(a, hn::Max(b, hn::Set(Floats(), kTiny)));
}

struct Colors {
    FloatVec red;
    FloatVec green;
    FloatVec blue;
};

/// Applies a formula of one component to all three.
template <class Formula> Colors separately(const Colors& s, const Colors& d, Formula formula)
{
    return {formula(s.red, d.red), formula(s.green, d.green), formula(s.blue, d.blue)};
}

struct ColorDodge {
    Colors operator()(const Colors& s, FloatVec sa, const Colors& d, FloatVec da) const
    {
        return separately(s, d, [&](FloatVec a, FloatVec b) {
            return hn::Min(hn::Mul(sa, da), quotient(hn::Mul(b, hn::Mul(sa, sa)), hn::Sub(sa, a)));
        });
    }
};
struct ColorBurn {
    Colors operator()(const Colors& s, FloatVec sa, const Colors& d, FloatVec da) const
    {
        const auto both = hn::Mul(sa, da);
        return separately(s, d, [&](FloatVec a, FloatVec b) {
            const auto taken = quotient(hn::Mul(hn::Sub(da, b), hn::Mul(sa, sa)), a);
            return hn::Sub(both, hn::Min(both, taken));
        });
    }
};
/// With m = d / da and D(m) = ((16 m - 12) m + 4) m up to 1/4, sqrt(m) above:
/// B = m + (2 s - 1) (m (1 - m)) up to s = 1/2, and m + (2 s - 1) (D(m) - m) above.
struct SoftLight {
    Colors operator()(const Colors& s, FloatVec sa, const Colors& d, FloatVec da) const
    {
        const auto constant = [](float value) { return hn::Set(Floats(), value); };
        return separately(s, d, [&](FloatVec a, FloatVec b) {
            const auto m = quotient(b, da);
            const auto cubic =
                hn::Mul(hn::Add(hn::Mul(hn::Sub(hn::Mul(constant(16), m), constant(12)), m), constant(4)), m);
            const auto root = hn::IfThenElse(hn::Le(m, constant(0.25F)), cubic, hn::Sqrt(m));
            const auto sign = hn::Sub(hn::Add(a, a), sa);
            const auto darker = hn::Mul(m, hn::Sub(constant(1), m));
            const auto change = hn::IfThenElse(hn::Le(sign, constant(0)), darker, hn::Sub(root, m));
            return hn::Mul(da, hn::Add(hn::Mul(sa, m), hn::Mul(sign, change)));
        });
    }
};

// The modes that are not separable: ISO 32000-2, 11.3.5.3. Both colours are multiplied by the other one's
// alpha, so that black is 0 and white is sa da in both.

Colors scaled(const Colors& color, FloatVec factor)
{
    return {hn::Mul(color.red, factor), hn::Mul(color.green, factor), hn::Mul(color.blue, factor)};
}
FloatVec least(const Colors& color)
{
    return hn::Min(color.red, hn::Min(color.green, color.blue));
}
FloatVec greatest(const Colors& color)
{
    return hn::Max(color.red, hn::Max(color.green, color.blue));
}
FloatVec luminosity(const Colors& color)
{
    const auto part = [](FloatVec component, float weight) {
        return hn::Mul(component, hn::Set(Floats(), weight));
    };
    return hn::Add(hn::Add(part(color.red, 0.3F), part(color.green, 0.59F)), part(color.blue, 0.11F));
}
FloatVec saturation(const Colors& color)
{
    return hn::Sub(greatest(color), least(color));
}
/// The colour with another saturation and with black in it; a gray becomes black.
Colors withSaturation(const Colors& color, FloatVec wanted)
{
    const auto low = least(color);
    const auto factor = quotient(wanted, saturation(color));
    const auto stretched = [&](FloatVec component) { return hn::Mul(hn::Sub(component, low), factor); };
    return {stretched(color.red), stretched(color.green), stretched(color.blue)};
}
/// The colour with another luminosity, moved towards its gray where it is not between black and white.
Colors withLuminosity(const Colors& color, FloatVec wanted, FloatVec white)
{
    const auto offset = hn::Sub(wanted, luminosity(color));
    const Colors moved{hn::Add(color.red, offset), hn::Add(color.green, offset), hn::Add(color.blue, offset)};
    const auto one = hn::Set(Floats(), 1);
    // The distance to gray that fits, as a part of the present one.
    const auto above = hn::Min(one, quotient(wanted, hn::Sub(wanted, least(moved))));
    const auto below = hn::Min(one, quotient(hn::Sub(white, wanted), hn::Sub(greatest(moved), wanted)));
    const auto part = hn::Min(above, below);
    const auto clipped = [&](FloatVec component) {
        return hn::Add(wanted, hn::Mul(hn::Sub(component, wanted), part));
    };
    return {clipped(moved.red), clipped(moved.green), clipped(moved.blue)};
}

struct Hue {
    Colors operator()(const Colors& s, FloatVec sa, const Colors& d, FloatVec da) const
    {
        const Colors below = scaled(d, sa);
        const Colors hue = withSaturation(scaled(s, da), saturation(below));
        return withLuminosity(hue, luminosity(below), hn::Mul(sa, da));
    }
};
struct Saturation {
    Colors operator()(const Colors& s, FloatVec sa, const Colors& d, FloatVec da) const
    {
        const Colors below = scaled(d, sa);
        const Colors saturated = withSaturation(below, saturation(scaled(s, da)));
        return withLuminosity(saturated, luminosity(below), hn::Mul(sa, da));
    }
};
struct Color {
    Colors operator()(const Colors& s, FloatVec sa, const Colors& d, FloatVec da) const
    {
        return withLuminosity(scaled(s, da), luminosity(scaled(d, sa)), hn::Mul(sa, da));
    }
};
struct Luminosity {
    Colors operator()(const Colors& s, FloatVec sa, const Colors& d, FloatVec da) const
    {
        return withLuminosity(scaled(d, sa), luminosity(scaled(s, da)), hn::Mul(sa, da));
    }
};

} // namespace
} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
