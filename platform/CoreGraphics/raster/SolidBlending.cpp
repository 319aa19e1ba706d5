#include "CoreGraphics/raster/SolidBlending.h"

#include <cstring>

// Highway compiles this file once for each kind of vector unit, and picks one when the program runs.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "CoreGraphics/raster/SolidBlending.cpp"
#include <hwy/foreach_target.h> // must come before highway.h

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
using ByteOfWord = hn::Rebind<std::uint8_t, Words>;

/// The bytes in the lower halves, scaled to 0 to 65535.
hn::Vec<Shorts> widened(hn::Vec<Shorts> values)
{
    return hn::Or(values, hn::ShiftLeft<8>(values));
}
hn::Vec<Shorts> evenBytes(hn::Vec<Shorts> pairs)
{
    return hn::And(pairs, hn::Set(Shorts(), 255));
}
hn::Vec<Shorts> oddBytes(hn::Vec<Shorts> pairs)
{
    return hn::ShiftRight<8>(pairs);
}

/// The coverage of the even and the odd bytes of a vector, 0 to 65535.
struct Cover {
    hn::Vec<Shorts> even;
    hn::Vec<Shorts> odd;
};
Cover coverOfPixels(const unsigned char* coverage)
{
    const auto values = hn::BitCast(Shorts(), hn::PromoteTo(Words(), hn::LoadU(ByteOfWord(), coverage)));
    const auto low = hn::BitCast(Words(), widened(values));
    const auto both = hn::BitCast(Shorts(), hn::Or(low, hn::ShiftLeft<16>(low)));
    return {both, both};
}
Cover coverOfAlphas(const unsigned char* coverage)
{
    const auto pairs = hn::BitCast(Shorts(), hn::LoadU(Bytes(), coverage));
    return {widened(evenBytes(pairs)), widened(oddBytes(pairs))};
}

/// The blend, byte by byte; the added and the hidden part are given as 0 to 65535.
hn::Vec<Shorts> blended(
    hn::Vec<Shorts> below, hn::Vec<Shorts> color, hn::Vec<Shorts> hidden, hn::Vec<Shorts> cover)
{
    const auto kept = hn::Sub(hn::Set(Shorts(), 65535), hn::MulHigh(cover, hidden));
    const auto sum = hn::Add(hn::MulHigh(widened(below), kept), hn::MulHigh(color, cover));
    return hn::ShiftRight<8>(hn::Add(hn::Sub(sum, hn::ShiftRight<8>(sum)), hn::Set(Shorts(), 128)));
}

void blendRow(unsigned char* bytes, const unsigned char* coverage, std::size_t count, PixelBytes color,
    std::uint8_t hidden, bool isAlphaOnly)
{
    const Words tag;
    const std::size_t channels = isAlphaOnly ? 1 : 4;
    const std::size_t pixels = hn::Lanes(tag) * 4 / channels; // of a vector
    const auto pair = [&](std::size_t low, std::size_t high) {
        const std::uint32_t first = std::uint32_t(color[isAlphaOnly ? 3 : low]) * 257;
        const std::uint32_t second = std::uint32_t(color[isAlphaOnly ? 3 : high]) * 257;
        return hn::BitCast(Shorts(), hn::Set(tag, first | second << 16));
    };
    const auto evenColor = pair(0, 2);
    const auto oddColor = pair(1, 3);
    const auto hiddens = hn::Set(Shorts(), std::uint16_t(hidden * 257));
    const auto blendedAt = [&](const unsigned char* at, const unsigned char* covered) {
        const auto whole = hn::Set(Shorts(), 65535);
        const Cover cover = !covered ? Cover{whole, whole}
            : isAlphaOnly            ? coverOfAlphas(covered)
                                     : coverOfPixels(covered);
        const auto below = hn::BitCast(Shorts(), hn::LoadU(Bytes(), at));
        const auto even = blended(evenBytes(below), evenColor, hiddens, cover.even);
        const auto odd = blended(oddBytes(below), oddColor, hiddens, cover.odd);
        return hn::BitCast(Bytes(), hn::Or(even, hn::ShiftLeft<8>(odd)));
    };
    const auto coverageAt = [coverage](std::size_t i) { return coverage ? coverage + i : nullptr; };

    if (count < pixels) {
        // Through a buffer from which whole vectors can be read.
        HWY_ALIGN unsigned char someBytes[4 * hn::MaxLanes(tag)]{};
        HWY_ALIGN unsigned char someCoverage[4 * hn::MaxLanes(tag)]{};
        std::memcpy(someBytes, bytes, channels * count);
        if (coverage)
            std::memcpy(someCoverage, coverage, count);
        hn::StoreU(blendedAt(someBytes, coverage ? someCoverage : nullptr), Bytes(), someBytes);
        std::memcpy(bytes, someBytes, channels * count);
        return;
    }
    // The last vector may overlap the previous one, so it is read before anything is written.
    const std::size_t last = count - pixels;
    const auto lastBlended = blendedAt(bytes + channels * last, coverageAt(last));
    for (std::size_t i = 0; i < last; i += pixels)
        hn::StoreU(blendedAt(bytes + channels * i, coverageAt(i)), Bytes(), bytes + channels * i);
    hn::StoreU(lastBlended, Bytes(), bytes + channels * last);
}

} // namespace
} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

HWY_EXPORT(blendRow);

void blendSolid(unsigned char* bytes, const unsigned char* coverage, std::size_t count, PixelBytes color,
    std::uint8_t hidden, bool isAlphaOnly)
{
    HWY_DYNAMIC_DISPATCH(blendRow)(bytes, coverage, count, color, hidden, isAlphaOnly);
}

#endif
