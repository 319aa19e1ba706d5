#include "CoreGraphics/raster/ImageKernels.h"

#include "CoreGraphics/raster/LastBytes.h"

// Highway compiles this file once for each kind of vector unit, and picks one when the program runs.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "CoreGraphics/raster/ImageRowKernels.cpp"
#include <hwy/foreach_target.h> // must come before highway.h

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;
using Bytes = hn::ScalableTag<std::uint8_t>;
using Shorts = hn::Repartition<std::uint16_t, Bytes>;
using Words = hn::Repartition<std::uint32_t, Bytes>;
using Longs = hn::Repartition<std::uint64_t, Bytes>;
using PixelOfLong = hn::Rebind<std::uint32_t, Longs>;

/// Stores values in the order of the bytes 0, 2, 1 and 3 as pixels.
void storeMixed(hn::Vec<Shorts> values, unsigned char* pixels)
{
    const auto bytes = hn::BitCast(Longs(), hn::ShiftRight<8>(hn::Add(values, hn::Set(Shorts(), 128))));
    const auto words = hn::TruncateTo(PixelOfLong(), hn::Or(bytes, hn::ShiftRight<24>(bytes)));
    hn::StoreU(hn::BitCast(hn::Repartition<std::uint8_t, PixelOfLong>(), words),
        hn::Repartition<std::uint8_t, PixelOfLong>(), pixels);
}

void halveRowsInVectors(
    const unsigned char* above, const unsigned char* below, unsigned char* pixels, std::size_t count)
{
    const auto bytesOf = [](const unsigned char* row) {
        return hn::BitCast(Shorts(), hn::LoadU(Bytes(), row));
    };
    const auto halveAt = [&](const unsigned char* first, const unsigned char* second, unsigned char* to) {
        const auto top = bytesOf(first);
        const auto bottom = bytesOf(second);
        const auto low = hn::Set(Shorts(), 255);
        const auto evens = hn::BitCast(Longs(), hn::Add(hn::And(top, low), hn::And(bottom, low)));
        const auto odds = hn::BitCast(Longs(), hn::Add(hn::ShiftRight<8>(top), hn::ShiftRight<8>(bottom)));
        // The sums of a pixel's bytes 0 and 2 in the lower half, those of 1 and 3 in the upper one.
        const auto half = hn::Set(Longs(), 0xFFFFFFFFU);
        const auto left = hn::Or(hn::And(evens, half), hn::ShiftLeft<32>(odds));
        const auto right = hn::Or(hn::ShiftRight<32>(evens), hn::AndNot(half, odds));
        const auto sums = hn::Add(hn::BitCast(Shorts(), left), hn::BitCast(Shorts(), right));
        storeMixed(hn::ShiftLeft<6>(sums), to);
    };
    const std::size_t lanes = hn::Lanes(Longs());
    std::size_t i = 0;
    for (; i + lanes <= count; i += lanes)
        halveAt(above + 8 * i, below + 8 * i, pixels + 4 * i);
    if (i < count) {
        const std::size_t size = 8 * (count - i);
        halveAt(LastBytes(above + 8 * i, size).data(), LastBytes(below + 8 * i, size).data(), pixels + 4 * i);
    }
}

void copyOpaqueInVectors(const unsigned char* row, unsigned char* pixels, std::size_t count)
{
    const auto copyAt = [](const unsigned char* from, unsigned char* to) {
        const auto opaque = hn::BitCast(Bytes(), hn::Set(Words(), 0xFF000000U));
        hn::StoreU(hn::Or(hn::LoadU(Bytes(), from), opaque), Bytes(), to);
    };
    const std::size_t lanes = hn::Lanes(Words());
    std::size_t i = 0;
    for (; i + lanes <= count; i += lanes)
        copyAt(row + 4 * i, pixels + 4 * i);
    if (i < count)
        copyAt(LastBytes(row + 4 * i, 4 * (count - i)).data(), pixels + 4 * i);
}

} // namespace
} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

HWY_EXPORT(halveRowsInVectors);
HWY_EXPORT(copyOpaqueInVectors);

void halveRows(
    const unsigned char* above, const unsigned char* below, unsigned char* pixels, std::size_t count)
{
    HWY_DYNAMIC_DISPATCH(halveRowsInVectors)(above, below, pixels, count);
}

void copyOpaque(const unsigned char* row, unsigned char* pixels, std::size_t count)
{
    HWY_DYNAMIC_DISPATCH(copyOpaqueInVectors)(row, pixels, count);
}

#endif
