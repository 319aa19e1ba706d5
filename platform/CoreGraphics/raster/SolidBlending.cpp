#include "CoreGraphics/raster/SolidBlending.h"

#include <algorithm>
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

/// The bytes in the lower halves, scaled to 0 to 65535.
template <class V> V widened(V values)
{
    return hn::Or(values, hn::ShiftLeft<8>(values));
}
template <class V> V evenBytes(V pairs)
{
    return hn::And(pairs, hn::Set(hn::DFromV<V>(), 255));
}
template <class V> V oddBytes(V pairs)
{
    return hn::ShiftRight<8>(pairs);
}

/// Pixels of a span that are blended in all rows before the next ones.
constexpr std::size_t kChunk = 256;
/// Spans of fewer pixels are blended faster than compared.
constexpr std::size_t kLeastCompared = 32;

/// Blends as many bytes as a number of 32-bit words have, or a vector if that is shorter.
template <std::size_t wordCount> class Blender {
    using Words = hn::CappedTag<std::uint32_t, wordCount>;
    using Shorts = hn::Repartition<std::uint16_t, Words>;
    using Bytes = hn::Repartition<std::uint8_t, Words>;
    using ByteOfWord = hn::Rebind<std::uint8_t, Words>;
    using Vector = hn::Vec<Shorts>;

public:
    Blender(PixelBytes color, std::uint8_t hidden, bool isAlphaOnly)
        : _isAlphaOnly(isAlphaOnly)
        , _evenColor(colorOf(color[isAlphaOnly ? 3 : 0], color[isAlphaOnly ? 3 : 2]))
        , _oddColor(colorOf(color[isAlphaOnly ? 3 : 1], color[3]))
        , _hidden(hn::Set(Shorts(), std::uint16_t(hidden * 257)))
    {
    }

    /// Of those that are blended together.
    std::size_t pixelCount() const { return hn::Lanes(Words()) * (_isAlphaOnly ? 4 : 1); }
    /// Blends at least `pixelCount()` pixels.
    void blend(unsigned char* bytes, const unsigned char* coverage, std::size_t count) const
    {
        const std::size_t channels = _isAlphaOnly ? 1 : 4;
        const auto coverageAt = [coverage](std::size_t i) { return coverage ? coverage + i : nullptr; };
        // The last vector may overlap the previous one, so it is read before anything is written.
        const std::size_t last = count - pixelCount();
        const auto lastBlended = blended(bytes + channels * last, coverageAt(last));
        for (std::size_t i = 0; i < last; i += pixelCount())
            hn::StoreU(blended(bytes + channels * i, coverageAt(i)), Bytes(), bytes + channels * i);
        hn::StoreU(lastBlended, Bytes(), bytes + channels * last);
    }

private:
    /// The coverage of the even and the odd bytes of a vector, 0 to 65535.
    struct Cover {
        Vector even;
        Vector odd;
    };
    Cover cover(const unsigned char* coverage) const
    {
        if (!coverage)
            return {hn::Set(Shorts(), 65535), hn::Set(Shorts(), 65535)};
        if (_isAlphaOnly) {
            const auto pairs = hn::BitCast(Shorts(), hn::LoadU(Bytes(), coverage));
            return {widened(evenBytes(pairs)), widened(oddBytes(pairs))};
        }
        const auto values = hn::BitCast(Shorts(), hn::PromoteTo(Words(), hn::LoadU(ByteOfWord(), coverage)));
        const auto low = hn::BitCast(Words(), widened(values));
        const auto both = hn::BitCast(Shorts(), hn::Or(low, hn::ShiftLeft<16>(low)));
        return {both, both};
    }
    static Vector colorOf(std::uint8_t low, std::uint8_t high)
    {
        const std::uint32_t pair = std::uint32_t(low) * 257 | std::uint32_t(high) * 257 << 16;
        return hn::BitCast(Shorts(), hn::Set(Words(), pair));
    }
    /// The blend, byte by byte.
    Vector blended(Vector below, Vector color, Vector cover) const
    {
        const auto kept = hn::Sub(hn::Set(Shorts(), 65535), hn::MulHigh(cover, _hidden));
        const auto sum = hn::Add(hn::MulHigh(widened(below), kept), hn::MulHigh(color, cover));
        return hn::ShiftRight<8>(hn::Add(hn::Sub(sum, hn::ShiftRight<8>(sum)), hn::Set(Shorts(), 128)));
    }
    hn::Vec<Bytes> blended(const unsigned char* bytes, const unsigned char* coverage) const
    {
        const Cover covered = cover(coverage);
        const auto below = hn::BitCast(Shorts(), hn::LoadU(Bytes(), bytes));
        const auto even = blended(evenBytes(below), _evenColor, covered.even);
        const auto odd = blended(oddBytes(below), _oddColor, covered.odd);
        return hn::BitCast(Bytes(), hn::Or(even, hn::ShiftLeft<8>(odd)));
    }

    bool _isAlphaOnly;
    Vector _evenColor;
    Vector _oddColor;
    Vector _hidden; ///< 0 to 65535, as the colours are
};

/// Pixels with the same coverage in each row, as many as one vector has or more.
template <class B>
void blendRows(const PixelRows& rows, const unsigned char* coverage, std::size_t count, const B& blender)
{
    if (rows.count == 1 || count < kLeastCompared) {
        for (int y = 0; y < rows.count; ++y)
            blender.blend(rows.row(y), coverage, count);
        return;
    }
    // On a plain background many rows are equal, both before and after blending.
    unsigned char before[4 * kChunk];
    const std::size_t size = count * (rows.isAlphaOnly ? 1 : 4);
    for (int y = 0; y < rows.count; ++y) {
        if (y > 0 && std::memcmp(rows.row(y), before, size) == 0) {
            std::memcpy(rows.row(y), rows.row(y - 1), size);
        } else {
            std::memcpy(before, rows.row(y), size);
            blender.blend(rows.row(y), coverage, count);
        }
    }
}

/// Pixels with the same coverage in each row.
void blendSpan(const PixelRows& rows, const unsigned char* coverage, std::size_t count, PixelBytes color,
    std::uint8_t hidden)
{
    // The longest vectors that the span fills: most edges are a few pixels wide.
    const auto blendWith = [&]<std::size_t wordCount>() {
        const Blender<wordCount> blender(color, hidden, rows.isAlphaOnly);
        if (count < blender.pixelCount())
            return false;
        blendRows(rows, coverage, count, blender);
        return true;
    };
    if (blendWith.template operator()<8>() || blendWith.template operator()<4>()
        || blendWith.template operator()<2>() || blendWith.template operator()<1>())
        return;
    // Fewer alphas than there are in a word.
    const Blender<1> blender(color, hidden, rows.isAlphaOnly);
    unsigned char someCoverage[4]{};
    if (coverage)
        std::memcpy(someCoverage, coverage, count);
    for (int y = 0; y < rows.count; ++y) {
        unsigned char someBytes[4]{};
        std::memcpy(someBytes, rows.row(y), count);
        blender.blend(someBytes, coverage ? someCoverage : nullptr, 4);
        std::memcpy(rows.row(y), someBytes, count);
    }
}

void blendSpans(const PixelRows& rows, std::span<const CoverageSpan> spans, const unsigned char* coverage,
    PixelBytes color, std::uint8_t hidden)
{
    for (const CoverageSpan& span : spans) {
        if (span.isFull && hidden == 255)
            continue;
        const auto end = std::size_t(span.end);
        for (auto x = std::size_t(span.begin); x < end; x += kChunk)
            blendSpan(
                rows.from(x), span.isFull ? nullptr : coverage + x, std::min(end - x, kChunk), color, hidden);
    }
}

} // namespace
} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

HWY_EXPORT(blendSpan);
HWY_EXPORT(blendSpans);

void blendSolid(unsigned char* bytes, const unsigned char* coverage, std::size_t count, PixelBytes color,
    std::uint8_t hidden, bool isAlphaOnly)
{
    HWY_DYNAMIC_DISPATCH(blendSpan)({bytes, 0, 1, isAlphaOnly}, coverage, count, color, hidden);
}

void blendSolid(const PixelRows& rows, std::span<const CoverageSpan> spans, const unsigned char* coverage,
    PixelBytes color, std::uint8_t hidden)
{
    HWY_DYNAMIC_DISPATCH(blendSpans)(rows, spans, coverage, color, hidden);
}

#endif
