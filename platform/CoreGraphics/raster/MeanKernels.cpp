#include "CoreGraphics/raster/MeanKernels.h"

#include "CoreGraphics/raster/LastBytes.h"
#include "CoreGraphics/raster/Prefetch.h"

#include <algorithm>
#include <cmath>

// Highway compiles this file once for each kind of vector unit, and picks one when the program runs.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "CoreGraphics/raster/MeanKernels.cpp"
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

/// As many bytes fit into a sum of 16 bits.
constexpr std::size_t kMostRows = 257;

using Shorts = hn::ScalableTag<std::uint16_t>;
using BytesOfShorts = hn::Rebind<std::uint8_t, Shorts>;
using Integers = hn::Repartition<std::int32_t, Shorts>;
using Floats = hn::Repartition<float, Shorts>;
using BytesOfFloats = hn::Rebind<std::uint8_t, Floats>;

/// Calls `work(x, load)` for vectors of `size` bytes that make up rows of an image, of which the last one may
/// overlap the previous one. `load(tag, bytes, offset)` loads what lies behind `bytes`, the bytes at `x` of
/// any row.
template <class Work> void forVectorsOfRow(std::size_t size, std::size_t byteCount, const Work& work)
{
    if (byteCount < size)
        return work(0, [byteCount](auto tag, const unsigned char* bytes, std::size_t offset) {
            const LastBytes row(bytes, byteCount);
            return hn::LoadU(tag, row.data() + offset);
        });
    const auto inPlace = [](auto tag, const unsigned char* bytes, std::size_t offset) {
        return hn::LoadU(tag, bytes + offset);
    };
    for (std::size_t x = 0; x < byteCount - size; x += size)
        work(x, inPlace);
    work(byteCount - size, inPlace);
}

void weighRowsInVectors(const unsigned char* top, std::size_t bytesPerRow, const WeightedRows& rows,
    float* line, std::size_t byteCount)
{
    const std::size_t lanes = hn::Lanes(Floats());
    const auto distance = std::size_t(rows.last - rows.first);
    const auto firstWeight = hn::Set(Floats(), rows.firstWeight);
    const auto innerWeight = hn::Set(Floats(), rows.innerWeight);
    const auto lastWeight = hn::Set(Floats(), rows.lastWeight);
    const auto floats = [](auto integers) {
        return hn::ConvertTo(Floats(), hn::PromoteTo(Integers(), integers));
    };
    const auto weighAt = [&](std::size_t x, const auto& load) {
        const unsigned char* const first = top + x;
        const unsigned char* const last = first + distance * bytesPerRow;
        const auto ends = [&](std::size_t offset) {
            return hn::Add(hn::Mul(floats(load(BytesOfFloats(), first, offset)), firstWeight),
                hn::Mul(floats(load(BytesOfFloats(), last, offset)), lastWeight));
        };
        auto low = ends(0);
        auto high = ends(lanes);
        for (std::size_t row = 1; row < distance;) {
            auto sum = hn::Zero(Shorts());
            for (const std::size_t end = std::min(row + kMostRows, distance); row < end; ++row)
                sum = hn::Add(sum,
                    hn::PromoteTo(
                        Shorts(), load(BytesOfShorts(), first + row * bytesPerRow, std::size_t(0))));
            low = hn::Add(low, hn::Mul(floats(hn::LowerHalf(sum)), innerWeight));
            high = hn::Add(high, hn::Mul(floats(hn::UpperHalf(hn::Half<Shorts>(), sum)), innerWeight));
        }
        hn::StoreU(low, Floats(), line + x);
        hn::StoreU(high, Floats(), line + x + lanes);
    };
    forVectorsOfRow(2 * lanes, byteCount, weighAt);
}

template <std::size_t kChannels>
void averageRunsInChannels(
    const float* line, const WeightedRuns& runs, std::size_t begin, unsigned char* pixels, std::size_t count)
{
    const hn::CappedTag<float, kChannels> tag; // one pixel
    const hn::Rebind<std::int32_t, decltype(tag)> integers;
    const hn::Rebind<std::uint8_t, decltype(tag)> bytes;
    // Copies of what the compiler would read again after each pixel that is written.
    const int length = runs.pixelCount;
    const std::size_t stride = runs.stride;
    const std::int32_t* const firsts = runs.first.data() + begin;
    const float* const weights = runs.weights.data() + begin;
    for (std::size_t i = 0; i < count; ++i) {
        const float* at = line + std::ptrdiff_t(kChannels) * firsts[i];
        const float* weight = weights + i;
        auto mean = hn::Set(tag, 0.5F); // what is cut off makes it the nearest
        for (int k = 0; k < length; ++k, at += kChannels, weight += stride)
            mean = hn::Add(mean, hn::Mul(hn::LoadU(tag, at), hn::Set(tag, *weight)));
        hn::StoreU(hn::DemoteTo(bytes, hn::ConvertTo(integers, mean)), bytes, pixels + kChannels * i);
    }
}

void averageRunsInVectors(const float* line, int channels, const WeightedRuns& runs, std::size_t begin,
    unsigned char* pixels, std::size_t count)
{
    if (channels == 1)
        averageRunsInChannels<1>(line, runs, begin, pixels, count);
    else
        averageRunsInChannels<4>(line, runs, begin, pixels, count);
}

void weighShortsInVectors(const unsigned char* top, std::size_t bytesPerRow, const std::uint16_t* weights,
    std::size_t rowCount, std::ptrdiff_t ahead, std::uint16_t* line, std::size_t byteCount)
{
    const std::size_t lanes = hn::Lanes(Shorts());
    const auto weighAt = [&](std::size_t x, const auto& load) {
        auto low = hn::Zero(Shorts());
        auto high = low;
        const unsigned char* at = top + x;
        for (std::size_t row = 0; row < rowCount; ++row, at += bytesPerRow) {
            prefetch(at, ahead);
            const auto weight = hn::Set(Shorts(), weights[row]);
            const auto weighed = [&](std::size_t offset) {
                const auto bytes = hn::PromoteTo(Shorts(), load(BytesOfShorts(), at, offset));
                return hn::MulHigh(hn::ShiftLeft<8>(bytes), weight);
            };
            low = hn::Add(low, weighed(0));
            high = hn::Add(high, weighed(lanes));
        }
        hn::StoreU(low, Shorts(), line + x);
        hn::StoreU(high, Shorts(), line + x + lanes);
    };
    forVectorsOfRow(2 * lanes, byteCount, weighAt);
}

/// Runs of 2 `kPairs` pixels; of any number for 0.
template <std::size_t kPairs>
void averageShortRuns(const std::uint16_t* line, const std::int32_t* first, const ShortRuns& runs,
    std::size_t begin, int roundings, unsigned char* pixels, std::size_t count)
{
    const hn::CappedTag<std::uint16_t, 8> pair; // two pixels
    const hn::Repartition<std::uint64_t, decltype(pair)> longs;
    const hn::Repartition<std::uint8_t, decltype(pair)> bytes;
    // Copies of what the compiler would read again after each pixel that is written.
    const std::size_t length = kPairs > 0 ? 2 * kPairs : runs.pixelCount;
    const auto* const weights = reinterpret_cast<const std::uint16_t*>(runs.weights.data() + begin * length);
    const std::int32_t* const firsts = first + begin;
    // Products are rounded down, by a half on the average.
    const auto half = hn::Set(pair, std::uint16_t(128 + roundings / 2));

    const auto sumAt = [&](std::size_t i) {
        const std::uint16_t* at = line + 4 * std::ptrdiff_t(firsts[i]);
        const std::uint16_t* weight = weights + 4 * length * i;
        auto sum = hn::MulHigh(hn::LoadU(pair, at), hn::LoadU(pair, weight));
        for (std::size_t k = 8; k < 4 * length; k += 8)
            sum = hn::Add(sum, hn::MulHigh(hn::LoadU(pair, at + k), hn::LoadU(pair, weight + k)));
        return hn::BitCast(longs, sum);
    };
    const auto meansAt = [&](std::size_t i, std::size_t next) {
        const auto left = sumAt(i);
        const auto right = sumAt(next);
        const auto even = hn::BitCast(pair, hn::InterleaveLower(longs, left, right));
        const auto odd = hn::BitCast(pair, hn::InterleaveUpper(longs, left, right));
        return hn::BitCast(bytes, hn::Add(hn::Add(even, odd), half));
    };
    std::size_t i = 0;
    for (; i + 4 <= count; i += 4)
        hn::StoreU(hn::ConcatOdd(bytes, meansAt(i + 2, i + 3), meansAt(i, i + 1)), bytes, pixels + 4 * i);
    if (i == count)
        return;
    const std::size_t last = count - 1;
    const auto front = meansAt(i, std::min(i + 1, last));
    hn::StoreU(hn::ConcatOdd(bytes, meansAt(last, last), front), bytes, pixels + 4 * i);
}

void averageShortsInVectors(const std::uint16_t* line, const std::int32_t* first, const ShortRuns& runs,
    std::size_t begin, int roundings, unsigned char* pixels, std::size_t count)
{
    switch (runs.pixelCount) {
    case 4:
        return averageShortRuns<2>(line, first, runs, begin, roundings, pixels, count);
    case 6:
        return averageShortRuns<3>(line, first, runs, begin, roundings, pixels, count);
    default:
        return averageShortRuns<0>(line, first, runs, begin, roundings, pixels, count);
    }
}

template <std::size_t kChannels>
void averageInVectors(const ImageView& image, const WeightedRuns& columns, const WeightedRuns& rows,
    std::ptrdiff_t ahead, unsigned char* pixels, std::size_t count)
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
        if (i % kPixelsPerPrefetch == 0)
            for (int y = 0; y < height; ++y)
                prefetch(top, ahead + std::ptrdiff_t(y) * std::ptrdiff_t(source.bytesPerRow));
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
    std::ptrdiff_t ahead, unsigned char* pixels, std::size_t count)
{
    if (image.isAlphaOnly)
        averageInVectors<1>(image, columns, rows, ahead, pixels, count);
    else
        averageInVectors<4>(image, columns, rows, ahead, pixels, count);
}

} // namespace
} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

HWY_EXPORT(placeWindowsInVectors);
HWY_EXPORT(weighRowsInVectors);
HWY_EXPORT(averageRunsInVectors);
HWY_EXPORT(weighShortsInVectors);
HWY_EXPORT(averageShortsInVectors);
HWY_EXPORT(averageRectanglesInVectors);

void WeightedRuns::resize(double windowLength, int axisLength, std::size_t count)
{
    constexpr std::size_t kVector = 64; // at least the numbers in a vector
    pixelCount = int(std::min(std::ceil(windowLength) + 1, double(axisLength)));
    stride = (count + kVector - 1) / kVector * kVector;
    if (first.size() < stride)
        first.resize(stride);
    if (weights.size() < stride * std::size_t(pixelCount))
        weights.resize(stride * std::size_t(pixelCount));
}

void placeWindows(
    double center, double step, double length, int pixelCount, WeightedRuns& runs, std::size_t count)
{
    HWY_DYNAMIC_DISPATCH(placeWindowsInVectors)(center, step, length, pixelCount, runs, count);
}

void weighRows(const unsigned char* top, std::size_t bytesPerRow, const WeightedRows& rows, float* line,
    std::size_t byteCount)
{
    HWY_DYNAMIC_DISPATCH(weighRowsInVectors)(top, bytesPerRow, rows, line, byteCount);
}

void averageRuns(const float* line, int channels, const WeightedRuns& runs, std::size_t begin,
    unsigned char* pixels, std::size_t count)
{
    HWY_DYNAMIC_DISPATCH(averageRunsInVectors)(line, channels, runs, begin, pixels, count);
}

std::uint16_t shortWeight(float weight)
{
    return std::uint16_t(std::min(weight * 65536 + 0.5F, 65535.0F));
}

void ShortRuns::assign(const WeightedRuns& runs, std::size_t count)
{
    const auto length = std::size_t(runs.pixelCount);
    pixelCount = (length + 1) / 2 * 2;
    weights.assign(pixelCount * count, 0);
    std::uint64_t* weight = weights.data();
    for (std::size_t i = 0; i < count; ++i, weight += pixelCount)
        for (std::size_t k = 0; k < length; ++k)
            weight[k] = shortWeight(runs.weights[k * runs.stride + i]) * std::uint64_t(0x0001'0001'0001'0001);
}

void weighRowsInShorts(const unsigned char* top, std::size_t bytesPerRow,
    std::span<const std::uint16_t> weights, std::ptrdiff_t ahead, std::uint16_t* line, std::size_t byteCount)
{
    HWY_DYNAMIC_DISPATCH(weighShortsInVectors)
    (top, bytesPerRow, weights.data(), weights.size(), ahead, line, byteCount);
}

void averageShorts(const std::uint16_t* line, const std::int32_t* first, const ShortRuns& runs,
    std::size_t begin, int roundings, unsigned char* pixels, std::size_t count)
{
    HWY_DYNAMIC_DISPATCH(averageShortsInVectors)(line, first, runs, begin, roundings, pixels, count);
}

void averageRectangles(const ImageView& image, const WeightedRuns& columns, const WeightedRuns& rows,
    std::ptrdiff_t ahead, unsigned char* pixels, std::size_t count)
{
    HWY_DYNAMIC_DISPATCH(averageRectanglesInVectors)(image, columns, rows, ahead, pixels, count);
}

#endif
