#include "CoreGraphics/raster/BlurKernels.h"

// Highway compiles this file once for each kind of vector unit, and picks one when the program runs.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "CoreGraphics/raster/BlurKernels.cpp"
#include <hwy/foreach_target.h> // must come before highway.h

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

using Floats = hn::CappedTag<float, kBlurPadding>;

/// Calls `store(i, sums)` for each vector of a line.
template <class Store>
void forEachSum(
    const float* const* lines, std::span<const float> weights, std::size_t count, const Store& store)
{
    const Floats tag;
    for (std::size_t i = 0; i < count; i += hn::Lanes(tag)) {
        auto sum = hn::Mul(hn::Set(tag, weights[0]), hn::LoadU(tag, lines[0] + i));
        for (std::ptrdiff_t k = 1; k < std::ptrdiff_t(weights.size()); ++k) {
            const auto both = hn::Add(hn::LoadU(tag, lines[-k] + i), hn::LoadU(tag, lines[k] + i));
            sum = hn::Add(sum, hn::Mul(hn::Set(tag, weights[std::size_t(k)]), both));
        }
        store(i, sum);
    }
}

void floatSums(const float* const* lines, std::span<const float> weights, float* sums, std::size_t count)
{
    forEachSum(
        lines, weights, count, [sums](std::size_t i, auto sum) { hn::StoreU(sum, Floats(), sums + i); });
}

void byteSums(
    const float* const* lines, std::span<const float> weights, unsigned char* sums, std::size_t count)
{
    forEachSum(lines, weights, count, [sums](std::size_t i, auto sum) {
        const hn::Rebind<std::int32_t, Floats> integers;
        const hn::Rebind<std::uint8_t, Floats> bytes;
        const auto rounded = hn::ConvertTo(integers, hn::Add(sum, hn::Set(Floats(), 0.5F)));
        hn::StoreU(hn::DemoteTo(bytes, rounded), bytes, sums + i);
    });
}

} // namespace
} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

HWY_EXPORT(floatSums);
HWY_EXPORT(byteSums);

void addWeighted(const float* const* lines, std::span<const float> weights, float* sums, std::size_t count)
{
    HWY_DYNAMIC_DISPATCH(floatSums)(lines, weights, sums, count);
}

void addWeighted(
    const float* const* lines, std::span<const float> weights, unsigned char* sums, std::size_t count)
{
    HWY_DYNAMIC_DISPATCH(byteSums)(lines, weights, sums, count);
}

#endif
