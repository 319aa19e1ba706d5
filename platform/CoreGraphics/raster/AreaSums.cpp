#include "CoreGraphics/raster/AreaSums.h"

// Highway compiles this file once for each kind of vector unit, and picks one when the program runs.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "CoreGraphics/raster/AreaSums.cpp"
#include <hwy/foreach_target.h> // must come before highway.h

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

using Areas = hn::CappedTag<std::uint32_t, 16>;
using WidthsOfAreas = hn::Rebind<std::uint16_t, Areas>;
using BytesOfAreas = hn::Rebind<std::uint8_t, Areas>;
using Widths = hn::CappedTag<std::uint16_t, 32>;
using BytesOfWidths = hn::Rebind<std::uint8_t, Widths>;

void addProducts(std::uint32_t* areas, const std::uint16_t* widths, std::uint16_t height, std::size_t count)
{
    const Areas tag;
    const auto heights = hn::Set(tag, height);
    for (std::size_t i = 0; i < count; i += hn::Lanes(tag)) {
        const auto wide = hn::PromoteTo(tag, hn::LoadU(WidthsOfAreas(), widths + i));
        hn::StoreU(hn::Add(hn::LoadU(tag, areas + i), hn::Mul(wide, heights)), tag, areas + i);
    }
}

void roundWidths(const std::uint16_t* widths, unsigned char* bytes, std::size_t count)
{
    const Widths tag;
    const auto half = hn::Set(tag, 1 << (kWidthBits - 1));
    for (std::size_t i = 0; i < count; i += hn::Lanes(tag)) {
        const auto rounded = hn::ShiftRight<kWidthBits>(hn::Add(hn::LoadU(tag, widths + i), half));
        const auto positive = hn::BitCast(hn::RebindToSigned<Widths>(), rounded);
        hn::StoreU(hn::DemoteTo(BytesOfWidths(), positive), BytesOfWidths(), bytes + i);
    }
}

void takeRoundedAreas(std::uint32_t* areas, unsigned char* bytes, std::size_t count)
{
    constexpr int kBits = kWidthBits + kHeightBits;
    const Areas tag;
    const auto half = hn::Set(tag, std::uint32_t(1) << (kBits - 1));
    for (std::size_t i = 0; i < count; i += hn::Lanes(tag)) {
        const auto rounded = hn::ShiftRight<kBits>(hn::Add(hn::LoadU(tag, areas + i), half));
        const auto positive = hn::BitCast(hn::RebindToSigned<Areas>(), rounded);
        hn::StoreU(hn::DemoteTo(BytesOfAreas(), positive), BytesOfAreas(), bytes + i);
        hn::StoreU(hn::Zero(tag), tag, areas + i);
    }
}

} // namespace
} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

HWY_EXPORT(addProducts);
HWY_EXPORT(roundWidths);
HWY_EXPORT(takeRoundedAreas);

void addAreas(std::uint32_t* areas, const std::uint16_t* widths, std::uint16_t height, std::size_t count)
{
    HWY_DYNAMIC_DISPATCH(addProducts)(areas, widths, height, count);
}

void bytesOfWidths(const std::uint16_t* widths, unsigned char* bytes, std::size_t count)
{
    HWY_DYNAMIC_DISPATCH(roundWidths)(widths, bytes, count);
}

void takeBytesOfAreas(std::uint32_t* areas, unsigned char* bytes, std::size_t count)
{
    HWY_DYNAMIC_DISPATCH(takeRoundedAreas)(areas, bytes, count);
}

#endif
