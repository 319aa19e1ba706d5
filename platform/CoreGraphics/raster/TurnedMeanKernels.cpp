#include "CoreGraphics/raster/TurnedMeanKernels.h"

#include "CoreGraphics/raster/LastBytes.h"

#include <algorithm>

// Highway compiles this file once for each kind of vector unit, and picks one when the program runs.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "CoreGraphics/raster/TurnedMeanKernels.cpp"
#include <hwy/foreach_target.h> // must come before highway.h

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

void placeWindowsInVectors(
    double center, double step, double length, int pixelCount, WeightedRuns& runs, std::size_t count)
{
    const hn::ScalableTag<double> tag;
    const hn::Rebind<std::int32_t, decltype(tag)> integers;
    const hn::Rebind<float, decltype(tag)> floats;
    const auto lengths = hn::Set(tag, length);
    const auto zero = hn::Zero(tag);
    const auto part = hn::Set(tag, 1 / length);
    const auto least = hn::Neg(lengths);
    const auto greatest = hn::Set(tag, pixelCount + length);
    const auto lastFirst = hn::Set(tag, pixelCount - runs.pixelCount);
    // Copies of what the compiler would read again after each weight that is written.
    const int runLength = runs.pixelCount;
    const std::size_t stride = runs.stride;
    std::int32_t* const firsts = runs.first.data();
    float* const allWeights = runs.weights.data();
    const std::size_t lanes = hn::Lanes(tag);
    auto index = hn::Iota(tag, 0);
    for (std::size_t i = 0; i < count; i += lanes, index = hn::Add(index, hn::Set(tag, double(lanes)))) {
        const auto at = hn::Add(hn::Mul(index, hn::Set(tag, step)), hn::Set(tag, center));
        const auto inside = hn::Min(hn::Max(at, least), greatest);
        const auto begin = hn::Sub(inside, hn::Set(tag, length / 2));
        // The conversion rounds down what is not negative.
        const auto first = hn::DemoteTo(integers, hn::Min(hn::Max(begin, zero), lastFirst));
        hn::StoreU(first, integers, firsts + i);

        const auto offset = hn::Sub(hn::PromoteTo(tag, first), begin);
        auto covered = zero; // of the window, by the pixels up to here
        float* weights = allWeights + i;
        for (int k = 1; k < runLength; ++k, weights += stride) {
            const auto next = hn::Min(hn::Max(hn::Add(offset, hn::Set(tag, k)), zero), lengths);
            hn::StoreU(hn::DemoteTo(floats, hn::Mul(hn::Sub(next, covered), part)), floats, weights);
            covered = next;
        }
        hn::StoreU(hn::DemoteTo(floats, hn::Mul(hn::Sub(lengths, covered), part)), floats, weights);
    }
}

template <std::size_t kChannels>
void averageInVectors(const ImageView& image, const WeightedRuns& columns, const WeightedRuns& rows,
    unsigned char* pixels, std::size_t count)
{
    const hn::ScalableTag<float> floats;
    const hn::Rebind<std::int32_t, decltype(floats)> integers;
    const hn::Rebind<std::uint8_t, decltype(floats)> bytes;
    const hn::CappedTag<float, kChannels> pixel;
    const hn::Rebind<std::int32_t, decltype(pixel)> pixelIntegers;
    const hn::Rebind<std::uint8_t, decltype(pixel)> pixelBytes;

    // Copies of what the compiler would read again after each pixel that is written.
    const ImageView source = image;
    const int height = rows.pixelCount;
    const std::size_t columnStride = columns.stride;
    const std::size_t rowStride = rows.stride;
    const std::size_t size = kChannels * std::size_t(columns.pixelCount);
    const std::size_t lanes = hn::Lanes(floats);

    HWY_ALIGN float line[hn::MaxLanes(floats)];
    const auto averageAt = [&](std::size_t i, const unsigned char* top, const auto& load) {
        const float* columnWeight = &columns.weights[i];
        auto mean = hn::Set(pixel, 0.5F); // what is cut off makes it the nearest
        for (std::size_t x = 0; x < size; x += lanes) {
            auto sums = hn::Zero(floats);
            const float* rowWeight = &rows.weights[i];
            const unsigned char* at = top + x;
            for (int y = 0; y < height; ++y, at += source.bytesPerRow, rowWeight += rowStride) {
                const auto values = hn::ConvertTo(floats, hn::PromoteTo(integers, load(at)));
                sums = hn::Add(sums, hn::Mul(values, hn::Set(floats, *rowWeight)));
            }
            hn::Store(sums, floats, line);
            // One pixel after the other: vectors of all lengths give the same sum.
            const std::size_t inLine = std::min(lanes, size - x);
            for (std::size_t k = 0; k < inLine; k += kChannels, columnWeight += columnStride)
                mean = hn::Add(mean, hn::Mul(hn::LoadU(pixel, line + k), hn::Set(pixel, *columnWeight)));
        }
        hn::StoreU(
            hn::DemoteTo(pixelBytes, hn::ConvertTo(pixelIntegers, mean)), pixelBytes, pixels + kChannels * i);
    };

    const unsigned char* end = source.pixel(source.width, source.height - 1);
    const std::size_t extent = source.bytesPerRow * std::size_t(height - 1) + size + lanes;
    for (std::size_t i = 0; i < count; ++i) {
        const unsigned char* top = source.pixel(columns.first[i], rows.first[i]);
        if (std::size_t(end - top) >= extent) {
            averageAt(i, top, [&](const unsigned char* at) { return hn::LoadU(bytes, at); });
        } else {
            averageAt(i, top, [&](const unsigned char* at) {
                const LastBytes last(at, std::min(lanes, std::size_t(end - at)));
                return hn::LoadU(bytes, last.data());
            });
        }
    }
}

void averageRectanglesInVectors(const ImageView& image, const WeightedRuns& columns, const WeightedRuns& rows,
    unsigned char* pixels, std::size_t count)
{
    if (image.isAlphaOnly)
        averageInVectors<1>(image, columns, rows, pixels, count);
    else
        averageInVectors<4>(image, columns, rows, pixels, count);
}

} // namespace
} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

HWY_EXPORT(placeWindowsInVectors);
HWY_EXPORT(averageRectanglesInVectors);

void placeWindows(
    double center, double step, double length, int pixelCount, WeightedRuns& runs, std::size_t count)
{
    HWY_DYNAMIC_DISPATCH(placeWindowsInVectors)(center, step, length, pixelCount, runs, count);
}

void averageRectangles(const ImageView& image, const WeightedRuns& columns, const WeightedRuns& rows,
    unsigned char* pixels, std::size_t count)
{
    HWY_DYNAMIC_DISPATCH(averageRectanglesInVectors)(image, columns, rows, pixels, count);
}

#endif
