#include "CoreGraphics/raster/PixelBlending.h"

#include <cstddef>
#include <cstring>

// Highway compiles this file once for each kind of vector unit, and picks one when the program runs.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "CoreGraphics/raster/PixelBlending.cpp"
#include <hwy/foreach_target.h> // must come before highway.h

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;
using Pixels = hn::ScalableTag<std::uint32_t>;
using Shorts = hn::Repartition<std::uint16_t, Pixels>;
using Bytes = hn::Repartition<std::uint8_t, Pixels>;
using Coverages = hn::Rebind<std::uint8_t, Pixels>;

/// x / 255, rounded, of x up to 65407.
hn::Vec<Shorts> dividedBy255(hn::Vec<Shorts> x)
{
    const auto raised = hn::Add(x, hn::Set(Shorts(), 128));
    return hn::ShiftRight<8>(hn::Add(raised, hn::ShiftRight<8>(raised)));
}

/// A pixel's value in both of its halves.
hn::Vec<Shorts> twice(hn::Vec<Pixels> values)
{
    return hn::BitCast(Shorts(), hn::Or(values, hn::ShiftLeft<16>(values)));
}

/// (S m + D (255 - Sa m / 255)) / 255 for every byte. Premultiplied bytes are not above their alpha, so the
/// sum is at most 255 x 255 and what rounding adds: 16 bits hold it.
hn::Vec<Pixels> blended(hn::Vec<Pixels> source, hn::Vec<Pixels> below, hn::Vec<Shorts> factor)
{
    const auto kept =
        hn::Sub(hn::Set(Shorts(), 255), dividedBy255(hn::Mul(twice(hn::ShiftRight<24>(source)), factor)));
    const auto sum = [&](hn::Vec<Shorts> s, hn::Vec<Shorts> d) {
        return dividedBy255(hn::Add(hn::Mul(s, factor), hn::Mul(d, kept)));
    };
    const auto even = [](hn::Vec<Pixels> v) {
        return hn::And(hn::BitCast(Shorts(), v), hn::Set(Shorts(), 255));
    };
    const auto odd = [](hn::Vec<Pixels> v) { return hn::ShiftRight<8>(hn::BitCast(Shorts(), v)); };
    const auto evenSum = sum(even(source), even(below));
    const auto oddSum = sum(odd(source), odd(below));
    return hn::BitCast(Pixels(), hn::Or(evenSum, hn::ShiftLeft<8>(oddSum)));
}

/// Loads and stores four bytes per lane at any address.
hn::Vec<Pixels> load(const unsigned char* bytes)
{
    return hn::BitCast(Pixels(), hn::LoadU(Bytes(), bytes));
}
void store(hn::Vec<Pixels> pixels, unsigned char* bytes)
{
    hn::StoreU(hn::BitCast(Bytes(), pixels), Bytes(), bytes);
}

/// A source of a pixel for each that is blended.
struct PixelRow {
    const std::uint32_t* pixels;

    hn::Vec<Pixels> at(std::size_t i) const { return hn::LoadU(Pixels(), pixels + i); }
    /// The last `count` pixels, fewer than a vector holds.
    hn::Vec<Pixels> rest(std::size_t i, std::size_t count) const
    {
        HWY_ALIGN std::uint32_t last[hn::MaxLanes(Pixels())]{};
        std::memcpy(last, pixels + i, 4 * count);
        return hn::Load(Pixels(), last);
    }
};

/// A source of one pixel.
struct SamePixel {
    std::uint32_t pixel;

    hn::Vec<Pixels> at(std::size_t) const { return hn::Set(Pixels(), pixel); }
    hn::Vec<Pixels> rest(std::size_t, std::size_t) const { return at(0); }
};

template <class Source>
void blendFrom(const Source& source, unsigned char* bytes, std::size_t count, const unsigned char* coverage,
    std::uint8_t alpha)
{
    const Pixels tag;
    const std::size_t lanes = hn::Lanes(tag);
    const auto whole = hn::Set(Shorts(), alpha);
    const auto factorAt = [whole](const unsigned char* covered) {
        return dividedBy255(hn::Mul(twice(hn::PromoteTo(Pixels(), hn::LoadU(Coverages(), covered))), whole));
    };
    std::size_t i = 0;
    // Two loops: in the second one, what depends on source and factor alone is computed once for a source of
    // one pixel.
    if (coverage) {
        for (; i + lanes <= count; i += lanes)
            store(blended(source.at(i), load(bytes + 4 * i), factorAt(coverage + i)), bytes + 4 * i);
    } else {
        for (; i + lanes <= count; i += lanes)
            store(blended(source.at(i), load(bytes + 4 * i), whole), bytes + 4 * i);
    }
    if (i == count)
        return;
    // The remainder goes through a buffer from which whole vectors can be read.
    HWY_ALIGN unsigned char lastBytes[4 * hn::MaxLanes(tag)]{};
    HWY_ALIGN unsigned char lastCoverage[hn::MaxLanes(tag)]{};
    const std::size_t rest = count - i;
    std::memcpy(lastBytes, bytes + 4 * i, 4 * rest);
    if (coverage)
        std::memcpy(lastCoverage, coverage + i, rest);
    const auto factor = coverage ? factorAt(lastCoverage) : whole;
    store(blended(source.rest(i, rest), load(lastBytes), factor), lastBytes);
    std::memcpy(bytes + 4 * i, lastBytes, 4 * rest);
}

void blendRow(unsigned char* bytes, const std::uint32_t* pixels, std::size_t count,
    const unsigned char* coverage, std::uint8_t alpha)
{
    blendFrom(PixelRow{pixels}, bytes, count, coverage, alpha);
}

void blendSame(unsigned char* bytes, std::uint32_t pixel, std::size_t count, const unsigned char* coverage,
    std::uint8_t alpha)
{
    blendFrom(SamePixel{pixel}, bytes, count, coverage, alpha);
}

/// Paints a row by vectors of a kind, of which the last one may overlap the previous one. False when there
/// are fewer pixels than in a vector.
template <class Tag>
bool paintVectorsOver(Tag tag, unsigned char* bytes, const unsigned char* pixels, std::size_t count)
{
    const std::size_t lanes = hn::Lanes(tag);
    if (count < lanes)
        return false;
    const hn::Repartition<std::uint16_t, Tag> shorts;
    const hn::Repartition<std::uint8_t, Tag> eights;
    const auto dividedBy255 = [&](auto x) {
        const auto raised = hn::Add(x, hn::Set(shorts, 128));
        return hn::ShiftRight<8>(hn::Add(raised, hn::ShiftRight<8>(raised)));
    };
    // S + D (255 - Sa) / 255. Sums of pixels that are not premultiplied count as 255.
    const auto over = [&](auto source, auto below) {
        const auto alpha = hn::ShiftRight<24>(source);
        const auto both = hn::BitCast(shorts, hn::Or(alpha, hn::ShiftLeft<16>(alpha)));
        const auto kept = hn::Sub(hn::Set(shorts, 255), both);
        const auto even = dividedBy255(hn::Mul(hn::And(below, hn::Set(shorts, 255)), kept));
        const auto odd = dividedBy255(hn::Mul(hn::ShiftRight<8>(below), kept));
        const auto rest = hn::BitCast(eights, hn::Or(even, hn::ShiftLeft<8>(odd)));
        return hn::SaturatedAdd(hn::BitCast(eights, source), rest);
    };
    const auto opaque = hn::Set(tag, 0xFF000000U);
    const auto sourceAt = [&](std::size_t i) { return hn::BitCast(tag, hn::LoadU(eights, pixels + 4 * i)); };
    const auto paintedAt = [&](std::size_t i) {
        return over(sourceAt(i), hn::BitCast(shorts, hn::LoadU(eights, bytes + 4 * i)));
    };
    // Read before anything is written.
    const std::size_t last = count - lanes;
    const auto lastPainted = paintedAt(last);
    for (std::size_t i = 0; i < last; i += lanes) {
        const auto source = sourceAt(i);
        if (hn::AllTrue(tag, hn::Eq(hn::And(source, opaque), opaque)))
            hn::StoreU(hn::BitCast(eights, source), eights, bytes + 4 * i);
        else if (!hn::AllTrue(tag, hn::Eq(source, hn::Zero(tag))))
            hn::StoreU(paintedAt(i), eights, bytes + 4 * i);
    }
    hn::StoreU(lastPainted, eights, bytes + 4 * last);
    return true;
}

void paintRowsOver(
    unsigned char* bytes, std::size_t bytesPerRow, const RowsInMemory& rows, std::size_t width, int height)
{
    const unsigned char* pixels = rows.first;
    const std::ptrdiff_t pixelsPerRow = rows.bytesPerRow;
    for (int y = 0; y < height; ++y, bytes += bytesPerRow, pixels += pixelsPerRow) {
        // By the longest vectors that fit in.
        if (!paintVectorsOver(Pixels(), bytes, pixels, width)
            && !paintVectorsOver(hn::CappedTag<std::uint32_t, 8>(), bytes, pixels, width)
            && !paintVectorsOver(hn::CappedTag<std::uint32_t, 4>(), bytes, pixels, width)) {
            for (std::size_t x = 0; x < width; ++x)
                paintVectorsOver(hn::CappedTag<std::uint32_t, 1>(), bytes + 4 * x, pixels + 4 * x, 1);
        }
    }
}

} // namespace
} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

HWY_EXPORT(blendRow);
HWY_EXPORT(blendSame);
HWY_EXPORT(paintRowsOver);

void blendPixels(unsigned char* bytes, std::span<const std::uint32_t> pixels, const unsigned char* coverage,
    std::uint8_t alpha)
{
    HWY_DYNAMIC_DISPATCH(blendRow)(bytes, pixels.data(), pixels.size(), coverage, alpha);
}

void blendPixel(unsigned char* bytes, std::uint32_t pixel, std::size_t count, const unsigned char* coverage,
    std::uint8_t alpha)
{
    HWY_DYNAMIC_DISPATCH(blendSame)(bytes, pixel, count, coverage, alpha);
}

void paintOver(
    unsigned char* bytes, std::size_t bytesPerRow, const RowsInMemory& pixels, std::size_t width, int height)
{
    HWY_DYNAMIC_DISPATCH(paintRowsOver)(bytes, bytesPerRow, pixels, width, height);
}

#endif
