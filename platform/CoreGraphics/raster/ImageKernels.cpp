#include "CoreGraphics/raster/ImageKernels.h"

#include "CoreGraphics/raster/LastBytes.h"
#include "CoreGraphics/raster/Prefetch.h"

#include <algorithm>
#include <utility>

// Highway compiles this file once for each kind of vector unit, and picks one when the program runs.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "CoreGraphics/raster/ImageKernels.cpp"
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
using ByteVec = hn::Vec<Bytes>;
using ShortVec = hn::Vec<Shorts>;
using LongVec = hn::Vec<Longs>;

// Bytes that are interpolated are in the upper halves of 16 bits: the even ones of a vector, or the odd ones.

ShortVec even(ByteVec bytes)
{
    return hn::ShiftLeft<8>(hn::BitCast(Shorts(), bytes));
}
ShortVec odd(ByteVec bytes)
{
    return hn::And(hn::BitCast(Shorts(), bytes), hn::Set(Shorts(), 0xFF00));
}
/// Both products are rounded down, so that greater values never give smaller results: colours do not exceed
/// their alpha.
ShortVec interpolated(ShortVec first, ShortVec second, ShortVec part)
{
    const auto rest = hn::Not(part); // 65535 - part
    return hn::Add(hn::MulHigh(first, rest), hn::MulHigh(second, part));
}
ShortVec roundedUp(ShortVec value)
{
    return hn::Add(value, hn::Set(Shorts(), 128));
}
ShortVec partOfAll(std::uint32_t part)
{
    return hn::Set(Shorts(), std::uint16_t(part >> 16));
}

/// Pixels as values of 16 bits: their bytes 0 and 2, and their bytes 1 and 3.
struct PixelValues {
    ShortVec evens;
    ShortVec odds;
};

/// For each pair of pixels, the weights of two values of the first one and of two of the second one, from
/// parts of 2^16.
ShortVec weightsOf(LongVec parts)
{
    const auto both = hn::Or(parts, hn::ShiftLeft<16>(parts));
    const auto all = hn::Or(both, hn::ShiftLeft<32>(both));
    return hn::BitCast(Shorts(), hn::Xor(all, hn::Set(Longs(), 0xFFFFFFFFU))); // 65535 - part
}

/// The weights in as many pairs as there are pixels in a vector.
struct PairWeights {
    ShortVec first;
    ShortVec second;
};

PairWeights loadedWeights(const std::uint32_t* parts)
{
    const auto weightsAt = [](const std::uint32_t* at) {
        return weightsOf(hn::PromoteTo(Longs(), hn::ShiftRight<16>(hn::LoadU(PixelOfLong(), at))));
    };
    return {weightsAt(parts), weightsAt(parts + hn::Lanes(Longs()))};
}

/// As many pairs of pixels as there are pixels in a vector.
struct PixelPairs {
    LongVec first;
    LongVec second;
};

PixelPairs loadedPairs(const std::uint64_t* pairs)
{
    return {hn::LoadU(Longs(), pairs), hn::LoadU(Longs(), pairs + hn::Lanes(Longs()))};
}

/// Pairs of pixels at some distance from addresses.
template <class Tag>
hn::Vec<Tag> pairsAt(Tag tag, const unsigned char* const* addresses, std::ptrdiff_t distance)
{
    constexpr std::size_t kCount = hn::MaxLanes(Tag());
    if constexpr (kCount == 1) {
        return hn::BitCast(tag, hn::LoadU(hn::Repartition<std::uint8_t, Tag>(), *addresses + distance));
    } else {
        const hn::Half<Tag> half;
        return hn::Combine(
            tag, pairsAt(half, addresses + kCount / 2, distance), pairsAt(half, addresses, distance));
    }
}

PixelPairs pairsAt(const unsigned char* const* addresses, std::ptrdiff_t distance)
{
    return {
        pairsAt(Longs(), addresses, distance), pairsAt(Longs(), addresses + hn::MaxLanes(Longs()), distance)};
}

PixelValues mixedPairs(const PixelPairs& pairs, const PairWeights& weights)
{
    const auto first = hn::BitCast(Bytes(), pairs.first);
    const auto second = hn::BitCast(Bytes(), pairs.second);
    const auto sums = [](ShortVec low, ShortVec high) {
        const auto lowWords = hn::BitCast(Words(), low);
        const auto highWords = hn::BitCast(Words(), high);
        return hn::Add(hn::BitCast(Shorts(), hn::ConcatEven(Words(), highWords, lowWords)),
            hn::BitCast(Shorts(), hn::ConcatOdd(Words(), highWords, lowWords)));
    };
    return {sums(hn::MulHigh(even(first), weights.first), hn::MulHigh(even(second), weights.second)),
        sums(hn::MulHigh(odd(first), weights.first), hn::MulHigh(odd(second), weights.second))};
}

// Where samples lie in squares of pixels: `nextX` and `nextY` return the weights along the axes for one
// vector of pixels after the other.

ShortVec loadedParts(const std::uint32_t* parts)
{
    const auto part = hn::LoadU(Words(), parts);
    const auto upper = hn::And(part, hn::Set(Words(), 0xFFFF0000U));
    return hn::BitCast(Shorts(), hn::Or(upper, hn::ShiftRight<16>(part)));
}

class AnyPlaces {
public:
    AnyPlaces(const std::uint32_t* partsX, const std::uint32_t* partsY)
        : _partsX(partsX)
        , _partsY(partsY)
    {
    }
    PairWeights nextX() { return loadedWeights(std::exchange(_partsX, _partsX + hn::Lanes(Words()))); }
    ShortVec nextY() { return loadedParts(std::exchange(_partsY, _partsY + hn::Lanes(Words()))); }

private:
    const std::uint32_t* _partsX;
    const std::uint32_t* _partsY;
};

class PlacesInRow {
public:
    PlacesInRow(const std::uint32_t* partsX, std::uint32_t partY)
        : _partsX(partsX)
        , _partY(partOfAll(partY))
    {
    }
    PairWeights nextX() { return loadedWeights(std::exchange(_partsX, _partsX + hn::Lanes(Words()))); }
    ShortVec nextY() const { return _partY; }

private:
    const std::uint32_t* _partsX;
    ShortVec _partY;
};

class SteppedPlaces {
public:
    explicit SteppedPlaces(const SampleSteps& steps)
        : _stepX(hn::Set(Longs(), hn::Lanes(Longs()) * steps.stepX))
        , _stepY(hn::Set(Words(), std::uint32_t(hn::Lanes(Words()) * steps.stepY)))
    {
        HWY_ALIGN std::uint64_t x[hn::MaxLanes(Longs())];
        HWY_ALIGN std::uint32_t y[hn::MaxLanes(Words())];
        for (std::size_t i = 0; i < hn::Lanes(Longs()); ++i)
            x[i] = steps.x + i * steps.stepX;
        for (std::size_t i = 0; i < hn::Lanes(Words()); ++i)
            y[i] = std::uint32_t(steps.y + i * steps.stepY);
        _x = hn::Load(Longs(), x);
        _y = hn::Load(Words(), y);
    }
    PairWeights nextX()
    {
        const auto first = nextPairs();
        return {first, nextPairs()};
    }
    ShortVec nextY()
    {
        const auto part = std::exchange(_y, hn::Add(_y, _stepY));
        const auto upper = hn::And(part, hn::Set(Words(), 0xFFFF0000U));
        return hn::BitCast(Shorts(), hn::Or(upper, hn::ShiftRight<16>(part)));
    }

private:
    ShortVec nextPairs()
    {
        const auto x = std::exchange(_x, hn::Add(_x, _stepX));
        return weightsOf(hn::And(hn::ShiftRight<16>(x), hn::Set(Longs(), 0xFFFF)));
    }

    LongVec _x;
    LongVec _stepX;
    hn::Vec<Words> _y;
    hn::Vec<Words> _stepY;
};

void storePixels(const PixelValues& values, unsigned char* pixels)
{
    const auto evens = hn::ShiftRight<8>(roundedUp(values.evens));
    const auto odds = hn::And(roundedUp(values.odds), hn::Set(Shorts(), 0xFF00));
    hn::StoreU(hn::BitCast(Bytes(), hn::Or(evens, odds)), Bytes(), pixels);
}

void placeInVectors(double begin, double step, double limit, int lastIndex, std::int32_t* indices,
    std::uint32_t* parts, std::size_t count)
{
    const hn::ScalableTag<double> tag;
    const hn::Rebind<std::int32_t, decltype(tag)> integers;
    const auto starts = hn::Set(tag, begin);
    const auto steps = hn::Set(tag, step);
    const auto limits = hn::Set(tag, limit);
    const auto last = hn::Set(integers, lastIndex);
    for (std::size_t i = 0; i < count; i += hn::Lanes(tag)) {
        const auto at = hn::Add(hn::Mul(hn::Iota(tag, double(i)), steps), starts);
        const auto inside = hn::Min(hn::Max(at, hn::Zero(tag)), limits);
        const auto index = hn::Min(hn::DemoteTo(integers, inside), last);
        const auto fraction = hn::Sub(inside, hn::PromoteTo(tag, index));
        const auto part =
            hn::Min(hn::DemoteTo(integers, hn::Mul(fraction, hn::Set(tag, 65536))), hn::Set(integers, 65535));
        hn::StoreU(index, integers, indices + i);
        hn::StoreU(hn::ShiftLeft<16>(part), integers, reinterpret_cast<std::int32_t*>(parts) + i);
    }
}

void mixPairsInVectors(
    const std::uint64_t* pairs, const std::uint32_t* parts, const MixedPixels& mixed, std::size_t count)
{
    const MixedPixels to = mixed;
    for (std::size_t i = 0; i < count; i += hn::Lanes(Words())) {
        const PixelValues values = mixedPairs(loadedPairs(pairs + i), loadedWeights(parts + i));
        hn::StoreU(values.evens, Shorts(), to.evens + 2 * i);
        hn::StoreU(values.odds, Shorts(), to.odds + 2 * i);
    }
}

void mixNeighboursInVectors(
    const unsigned char* row, std::uint32_t part, const MixedPixels& mixed, std::size_t count)
{
    const auto parts = partOfAll(part);
    const MixedPixels to = mixed;
    const auto mixAt = [&](const unsigned char* from, std::size_t i) {
        const auto left = hn::LoadU(Bytes(), from);
        const auto right = hn::LoadU(Bytes(), from + 4);
        hn::StoreU(interpolated(even(left), even(right), parts), Shorts(), to.evens + 2 * i);
        hn::StoreU(interpolated(odd(left), odd(right), parts), Shorts(), to.odds + 2 * i);
    };
    const std::size_t lanes = hn::Lanes(Words());
    std::size_t i = 0;
    for (; i + lanes <= count; i += lanes)
        mixAt(row + 4 * i, i);
    if (i < count)
        mixAt(LastBytes(row + 4 * i, 4 * (count - i + 1)).data(), i);
}

void mixRowsInVectors(const MixedPixels& above, const MixedPixels& below, std::uint32_t part,
    unsigned char* pixels, std::size_t count)
{
    const auto parts = partOfAll(part);
    const auto mixAt = [&](const std::uint16_t* first, const std::uint16_t* second) {
        return interpolated(hn::LoadU(Shorts(), first), hn::LoadU(Shorts(), second), parts);
    };
    const MixedPixels first = above;
    const MixedPixels second = below;
    for (std::size_t i = 0; i < count; i += hn::Lanes(Words()))
        storePixels({mixAt(first.evens + 2 * i, second.evens + 2 * i),
                        mixAt(first.odds + 2 * i, second.odds + 2 * i)},
            pixels + 4 * i);
}

/// Interpolates within the squares of a vector's pixels.
template <class Places>
void mixSquaresAt(Places& places, const PixelPairs& above, const PixelPairs& below, unsigned char* pixels)
{
    const PairWeights weights = places.nextX();
    const PixelValues first = mixedPairs(above, weights);
    const PixelValues second = mixedPairs(below, weights);
    const auto parts = places.nextY();
    storePixels(
        {interpolated(first.evens, second.evens, parts), interpolated(first.odds, second.odds, parts)},
        pixels);
}

void mixSquaresAnywhere(const std::uint64_t* above, const std::uint64_t* below, const std::uint32_t* partsX,
    const std::uint32_t* partsY, unsigned char* pixels, std::size_t count)
{
    AnyPlaces places(partsX, partsY);
    for (std::size_t i = 0; i < count; i += hn::Lanes(Words()))
        mixSquaresAt(places, loadedPairs(above + i), loadedPairs(below + i), pixels + 4 * i);
}

/// Interpolates within squares whose upper left pixels `nextAddress` returns, and whose lower ones are `down`
/// bytes behind those.
template <class Places, class Addresses>
void mixSquaresInImage(Places places, Addresses nextAddress, std::ptrdiff_t down, std::ptrdiff_t ahead,
    unsigned char* pixels, std::size_t count)
{
    constexpr std::size_t kLanes = hn::MaxLanes(Words());
    const unsigned char* addresses[kLanes];
    const auto mix = [&](unsigned char* to) {
        mixSquaresAt(places, pairsAt(addresses, 0), pairsAt(addresses, down), to);
    };
    std::size_t i = 0;
    for (; i + kLanes <= count; i += kLanes) {
        for (const unsigned char*& address : addresses)
            address = nextAddress();
        if (ahead != 0)
            for (std::size_t k = 0; k < kLanes; k += kPixelsPerPrefetch)
                prefetch(addresses[k], ahead);
        mix(pixels + 4 * i);
    }
    if (i == count)
        return;
    for (std::size_t k = 0; k < kLanes; ++k)
        addresses[k] = i + k < count ? nextAddress() : addresses[k - 1];
    mix(pixels + 4 * i);
}

void mixSquaresInRow(const unsigned char* row, std::ptrdiff_t down, const std::int32_t* columns,
    const std::uint32_t* partsX, std::uint32_t partY, unsigned char* pixels, std::size_t count)
{
    const auto nextAddress = [row, column = columns]() mutable {
        return row + 4 * std::ptrdiff_t(*column++);
    };
    mixSquaresInImage(PlacesInRow(partsX, partY), nextAddress, down, 0, pixels, count);
}

void mixSquaresInSteps(const ImageView& image, const SampleSteps& steps, std::ptrdiff_t ahead,
    unsigned char* pixels, std::size_t count)
{
    const auto nextAddress = [data = image.data, bytesPerRow = image.bytesPerRow, at = steps]() mutable {
        const unsigned char* address = data + (at.y >> 32) * bytesPerRow + 4 * (at.x >> 32);
        at.x += at.stepX;
        at.y += at.stepY;
        return address;
    };
    mixSquaresInImage(
        SteppedPlaces(steps), nextAddress, std::ptrdiff_t(image.bytesPerRow), ahead, pixels, count);
}

} // namespace
} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

HWY_EXPORT(placeInVectors);
HWY_EXPORT(mixPairsInVectors);
HWY_EXPORT(mixRowsInVectors);
HWY_EXPORT(mixSquaresAnywhere);
HWY_EXPORT(mixSquaresInRow);
HWY_EXPORT(mixSquaresInSteps);
HWY_EXPORT(mixNeighboursInVectors);

void placeSamples(double begin, double step, double limit, int lastIndex, std::int32_t* indices,
    std::uint32_t* parts, std::size_t count)
{
    HWY_DYNAMIC_DISPATCH(placeInVectors)(begin, step, limit, lastIndex, indices, parts, count);
}

void mixPairs(
    const std::uint64_t* pairs, const std::uint32_t* parts, const MixedPixels& mixed, std::size_t count)
{
    HWY_DYNAMIC_DISPATCH(mixPairsInVectors)(pairs, parts, mixed, count);
}

void mixNeighbours(const unsigned char* row, std::uint32_t part, const MixedPixels& mixed, std::size_t count)
{
    HWY_DYNAMIC_DISPATCH(mixNeighboursInVectors)(row, part, mixed, count);
}

void mixRows(const MixedPixels& above, const MixedPixels& below, std::uint32_t part, unsigned char* pixels,
    std::size_t count)
{
    HWY_DYNAMIC_DISPATCH(mixRowsInVectors)(above, below, part, pixels, count);
}

void mixSquares(const std::uint64_t* above, const std::uint64_t* below, const std::uint32_t* partsX,
    const std::uint32_t* partsY, unsigned char* pixels, std::size_t count)
{
    HWY_DYNAMIC_DISPATCH(mixSquaresAnywhere)(above, below, partsX, partsY, pixels, count);
}

void mixSquares(const unsigned char* row, std::ptrdiff_t down, const std::int32_t* columns,
    const std::uint32_t* partsX, std::uint32_t partY, unsigned char* pixels, std::size_t count)
{
    HWY_DYNAMIC_DISPATCH(mixSquaresInRow)(row, down, columns, partsX, partY, pixels, count);
}

void mixSquares(const ImageView& image, const SampleSteps& steps, std::ptrdiff_t ahead, unsigned char* pixels,
    std::size_t count)
{
    HWY_DYNAMIC_DISPATCH(mixSquaresInSteps)(image, steps, ahead, pixels, count);
}

#endif
