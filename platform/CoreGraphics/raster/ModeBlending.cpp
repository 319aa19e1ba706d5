#include "CoreGraphics/raster/ModeBlending.h"

#include <algorithm>
#include <cstring>

// Highway compiles this file once for each kind of vector unit, and picks one when the program runs.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "CoreGraphics/raster/ModeBlending.cpp"
#include <hwy/foreach_target.h> // must come before highway.h

#include "CoreGraphics/raster/BlendFormulas-inl.h"

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {
namespace {

using ByteVec = hn::Vec<Bytes>;
using ByteOfWord = hn::Rebind<std::uint8_t, Words>;

ShortVec even(ByteVec bytes)
{
    return hn::And(hn::BitCast(Shorts(), bytes), hn::Set(Shorts(), 255));
}
ShortVec odd(ByteVec bytes)
{
    return hn::ShiftRight<8>(hn::BitCast(Shorts(), bytes));
}
ByteVec merged(ShortVec even, ShortVec odd)
{
    return hn::BitCast(Bytes(), hn::Or(even, hn::ShiftLeft<8>(odd)));
}
/// A pixel's value in both of its halves.
ShortVec twice(WordVec values)
{
    return hn::BitCast(Shorts(), hn::Or(values, hn::ShiftLeft<16>(values)));
}
WordVec coverageOfWords(const unsigned char* coverage)
{
    return hn::PromoteTo(Words(), hn::LoadU(ByteOfWord(), coverage));
}
/// lerp(d, result, cover)
ShortVec covered(ShortVec d, ShortVec result, ShortVec cover)
{
    return dividedBy255(hn::Add(hn::Mul(result, cover), hn::Mul(d, inverse(cover))));
}

// Each painter below blends a vector of pixels. Null coverage means full coverage.

/// Pixels of four bytes, in a mode that is computed in 16 bits. A destination without alpha is made opaque by
/// `opaque`, in which the bytes of alpha are set.
template <class Mode> struct ColorPainter {
    static constexpr std::size_t kChannels = 4;
    static constexpr bool kIsForColorsOnly = requires { Mode::kIsForColorsOnly; };

    ByteVec opaque;

    ByteVec operator()(ByteVec source, ByteVec below, const unsigned char* coverage) const
    {
        below = hn::Or(below, opaque);
        const auto sa = twice(hn::ShiftRight<24>(hn::BitCast(Words(), source)));
        const auto da = twice(hn::ShiftRight<24>(hn::BitCast(Words(), below)));
        const Mode mode;
        auto evenResult = mode(even(source), even(below), sa, da);
        auto oddResult = mode(odd(source), odd(below), sa, da);
        if constexpr (kIsForColorsOnly) {
            const auto isAlpha = hn::BitCast(Shorts(), hn::Set(Words(), 0xFFFF0000U));
            const auto alpha = Normal()(sa, da, sa, da);
            oddResult = hn::Or(hn::And(isAlpha, alpha), hn::AndNot(isAlpha, oddResult));
        }
        if (coverage) {
            const auto cover = twice(coverageOfWords(coverage));
            evenResult = covered(even(below), evenResult, cover);
            oddResult = covered(odd(below), oddResult, cover);
        }
        return merged(evenResult, oddResult);
    }
};

/// Alphas alone.
template <class Mode> struct AlphaPainter {
    static constexpr std::size_t kChannels = 1;

    ByteVec operator()(ByteVec source, ByteVec below, const unsigned char* coverage) const
    {
        const auto half = [](ShortVec s, ShortVec d) { return Mode()(s, d, s, d); };
        auto evenResult = half(even(source), even(below));
        auto oddResult = half(odd(source), odd(below));
        if (coverage) {
            const auto cover = hn::LoadU(Bytes(), coverage);
            evenResult = covered(even(below), evenResult, even(cover));
            oddResult = covered(odd(below), oddResult, odd(cover));
        }
        return merged(evenResult, oddResult);
    }
};

/// Pixels of four bytes, in a mode that is computed in floating-point numbers.
template <class Mode> struct FloatPainter {
    static constexpr std::size_t kChannels = 4;

    ByteVec opaque;

    ByteVec operator()(ByteVec source, ByteVec below, const unsigned char* coverage) const
    {
        below = hn::Or(below, opaque);
        const Colors s = colorsOf(source);
        const Colors d = colorsOf(below);
        const auto sa = channel<24>(source);
        const auto da = channel<24>(below);
        const Colors both = Mode()(s, sa, d, da);

        const auto whole = hn::Set(Floats(), 255);
        const auto cover =
            coverage ? hn::ConvertTo(Floats(), hn::BitCast(Ints(), coverageOfWords(coverage))) : whole;
        const auto blended = [&](FloatVec from, FloatVec to, FloatVec last) {
            const auto alone = hn::Add(hn::Mul(from, hn::Sub(whole, da)), hn::Mul(to, hn::Sub(whole, sa)));
            const auto result = hn::Mul(hn::Add(alone, last), hn::Set(Floats(), 1.0F / 255));
            const auto sum = hn::Add(hn::Mul(result, cover), hn::Mul(to, hn::Sub(whole, cover)));
            const auto rounded =
                hn::Add(hn::Mul(sum, hn::Set(Floats(), 1.0F / 255)), hn::Set(Floats(), 0.5F));
            const auto byte = hn::Min(hn::Max(rounded, hn::Zero(Floats())), whole);
            return hn::BitCast(Words(), hn::ConvertTo(Ints(), byte));
        };
        const auto red = blended(s.red, d.red, both.red);
        const auto green = hn::ShiftLeft<8>(blended(s.green, d.green, both.green));
        const auto blue = hn::ShiftLeft<16>(blended(s.blue, d.blue, both.blue));
        const auto alpha = hn::ShiftLeft<24>(blended(sa, da, hn::Mul(sa, da)));
        return hn::BitCast(Bytes(), hn::Or(hn::Or(red, green), hn::Or(blue, alpha)));
    }

private:
    template <int shift> static FloatVec channel(ByteVec bytes)
    {
        const auto byte = hn::And(hn::ShiftRight<shift>(hn::BitCast(Words(), bytes)), hn::Set(Words(), 255));
        return hn::ConvertTo(Floats(), hn::BitCast(Ints(), byte));
    }
    static Colors colorsOf(ByteVec bytes)
    {
        return {channel<0>(bytes), channel<8>(bytes), channel<16>(bytes)};
    }
};

/// The pixel of a solid source in all pixels of a vector.
template <std::size_t channels> ByteVec solid(const unsigned char* pixel)
{
    if constexpr (channels == 1)
        return hn::Set(Bytes(), *pixel);
    std::uint32_t word = 0;
    std::memcpy(&word, pixel, channels);
    return hn::BitCast(Bytes(), hn::Set(Words(), word));
}

template <class Painter>
void paintRow(const Painter& paint, unsigned char* bytes, const SourceRow& source,
    const unsigned char* coverage, std::size_t count)
{
    constexpr std::size_t channels = Painter::kChannels;
    const std::size_t pixels = hn::Lanes(Words()) * 4 / channels; // of a vector
    const auto color = source.isSolid ? solid<channels>(source.pixels) : hn::Zero(Bytes());
    const auto paintedAt = [&](std::size_t i) {
        const auto from = source.isSolid ? color : hn::LoadU(Bytes(), source.pixels + channels * i);
        return paint(from, hn::LoadU(Bytes(), bytes + channels * i), coverage ? coverage + i : nullptr);
    };
    if (count < pixels) {
        // Through buffers from which whole vectors can be read.
        HWY_ALIGN unsigned char someBytes[4 * hn::MaxLanes(Words())]{};
        HWY_ALIGN unsigned char somePixels[4 * hn::MaxLanes(Words())]{};
        HWY_ALIGN unsigned char someCoverage[4 * hn::MaxLanes(Words())]{};
        std::memcpy(someBytes, bytes, channels * count);
        if (!source.isSolid)
            std::memcpy(somePixels, source.pixels, channels * count);
        if (coverage)
            std::memcpy(someCoverage, coverage, count);
        const auto from = source.isSolid ? color : hn::LoadU(Bytes(), somePixels);
        const auto painted = paint(from, hn::LoadU(Bytes(), someBytes), coverage ? someCoverage : nullptr);
        hn::StoreU(painted, Bytes(), someBytes);
        std::memcpy(bytes, someBytes, channels * count);
        return;
    }
    // The last vector may overlap the previous one, so it is read before anything is written.
    const std::size_t last = count - pixels;
    const auto lastPainted = paintedAt(last);
    for (std::size_t i = 0; i < last; i += pixels)
        hn::StoreU(paintedAt(i), Bytes(), bytes + channels * i);
    hn::StoreU(lastPainted, Bytes(), bytes + channels * last);
}

void blendRowInMode(CGBlendMode mode, PixelLayout layout, unsigned char* bytes, const SourceRow& source,
    const unsigned char* coverage, std::size_t count)
{
    const auto opaque =
        hn::BitCast(Bytes(), hn::Set(Words(), layout == PixelLayout::RGBX ? 0xFF000000U : 0U));
    const auto inShorts = [&]<class Mode>(const Mode&) {
        if (layout == PixelLayout::Alpha)
            return paintRow(AlphaPainter<Mode>(), bytes, source, coverage, count);
        paintRow(ColorPainter<Mode>{opaque}, bytes, source, coverage, count);
    };
    const auto inColor = [&]<class Painter>(const Painter& painter) {
        if (layout == PixelLayout::Alpha)
            return paintRow(AlphaPainter<Normal>(), bytes, source, coverage, count);
        paintRow(painter, bytes, source, coverage, count);
    };
    switch (mode) {
    case kCGBlendModeNormal:
        return inShorts(Normal());
    case kCGBlendModeMultiply:
        return inColor(ColorPainter<Multiply>{opaque});
    case kCGBlendModeScreen:
        return inColor(ColorPainter<Screen>{opaque});
    case kCGBlendModeOverlay:
        return inColor(ColorPainter<Overlay>{opaque});
    case kCGBlendModeDarken:
        return inColor(ColorPainter<Darken>{opaque});
    case kCGBlendModeLighten:
        return inColor(ColorPainter<Lighten>{opaque});
    case kCGBlendModeColorDodge:
        return inColor(FloatPainter<ColorDodge>{opaque});
    case kCGBlendModeColorBurn:
        return inColor(FloatPainter<ColorBurn>{opaque});
    case kCGBlendModeSoftLight:
        return inColor(FloatPainter<SoftLight>{opaque});
    case kCGBlendModeHardLight:
        return inColor(ColorPainter<HardLight>{opaque});
    case kCGBlendModeDifference:
        return inColor(ColorPainter<Difference>{opaque});
    case kCGBlendModeExclusion:
        return inColor(ColorPainter<Exclusion>{opaque});
    case kCGBlendModeHue:
        return inColor(FloatPainter<Hue>{opaque});
    case kCGBlendModeSaturation:
        return inColor(FloatPainter<Saturation>{opaque});
    case kCGBlendModeColor:
        return inColor(FloatPainter<Color>{opaque});
    case kCGBlendModeLuminosity:
        return inColor(FloatPainter<Luminosity>{opaque});
    case kCGBlendModeClear:
        return inShorts(Clear());
    case kCGBlendModeCopy:
        return inShorts(Copy());
    case kCGBlendModeSourceIn:
        return inShorts(SourceIn());
    case kCGBlendModeSourceOut:
        return inShorts(SourceOut());
    case kCGBlendModeSourceAtop:
        return inShorts(SourceAtop());
    case kCGBlendModeDestinationOver:
        return inShorts(DestinationOver());
    case kCGBlendModeDestinationOut:
        return inShorts(DestinationOut());
    case kCGBlendModeXOR:
        return inShorts(ExclusiveOr());
    case kCGBlendModePlusLighter:
        return inShorts(PlusLighter());
    }
}

} // namespace
} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

HWY_EXPORT(blendRowInMode);

namespace {

/// In pixels: up to so many, such as at the edges of images between pixels, cost less without vectors.
constexpr std::size_t kFewPixels = 2;

unsigned roundedPart(unsigned product)
{
    const unsigned raised = std::min(product, 255U * 255) + 128;
    return (raised + (raised >> 8)) >> 8;
}

/// Blends pixels of four bytes in the normal mode, with the results of the vectors.
void blendFewPixels(PixelLayout layout, unsigned char* bytes, const SourceRow& source,
    const unsigned char* coverage, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i, bytes += 4) {
        const unsigned char* pixel = source.isSolid ? source.pixels : source.pixels + 4 * i;
        const unsigned hidden = pixel[3];
        if (layout == PixelLayout::RGBX)
            bytes[3] = 255;
        for (int channel = 0; channel < 4; ++channel) {
            const unsigned below = bytes[channel];
            unsigned result = roundedPart(pixel[channel] * 255U + below * (255 - hidden));
            if (coverage)
                result = roundedPart(result * coverage[i] + below * (255U - coverage[i]));
            bytes[channel] = static_cast<unsigned char>(result);
        }
    }
}

} // namespace

bool isBlendMode(CGBlendMode mode)
{
    switch (mode) {
    case kCGBlendModeClear:
    case kCGBlendModeCopy:
    case kCGBlendModeSourceIn:
    case kCGBlendModeSourceOut:
    case kCGBlendModeSourceAtop:
    case kCGBlendModeDestinationOver:
    case kCGBlendModeDestinationOut:
    case kCGBlendModeXOR:
    case kCGBlendModePlusLighter:
        return true;
    default:
        return mode >= kCGBlendModeNormal && mode <= kCGBlendModeLuminosity;
    }
}

void blendRow(CGBlendMode mode, PixelLayout layout, unsigned char* bytes, const SourceRow& source,
    const unsigned char* coverage, std::size_t count)
{
    if (count <= kFewPixels && mode == kCGBlendModeNormal && layout != PixelLayout::Alpha)
        return blendFewPixels(layout, bytes, source, coverage, count);
    HWY_DYNAMIC_DISPATCH(blendRowInMode)(mode, layout, bytes, source, coverage, count);
}

#endif
