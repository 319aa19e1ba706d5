#include "CoreGraphics/raster/RectangleMeans.h"

#include "CoreGraphics/raster/Prefetch.h"

#include <algorithm>
#include <cmath>

// Highway compiles this file once for each kind of vector unit, and picks one when the program runs.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "CoreGraphics/raster/RectangleMeans.cpp"
#include <hwy/foreach_target.h> // must come before highway.h

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

// Each block of 128 bits of a vector serves one rectangle: four pixels of a row of the image, or the weights
// of four consecutive pixels or rows, each twice.
using Bytes = hn::CappedTag<std::uint8_t, 32>;
using Shorts = hn::Repartition<std::uint16_t, Bytes>;
using Words = hn::Repartition<std::uint32_t, Bytes>;
using Longs = hn::Repartition<std::uint64_t, Bytes>;
using Block = hn::CappedTag<std::uint8_t, 16>;
using ByteVec = hn::Vec<Bytes>;
using ShortVec = hn::Vec<Shorts>;
using LongVec = hn::Vec<Longs>;

constexpr std::size_t kBlocks = hn::MaxLanes(Bytes()) / 16;
constexpr int kPixelsAtOnce = MeanWindow::kPixelsAtOnce;
constexpr std::size_t kMostGroups = MeanWindow::kMostPixels / kPixelsAtOnce;

template <class Tag> hn::Vec<Tag> loadBlocks(Tag tag, const unsigned char* const* addresses)
{
    if constexpr (hn::MaxLanes(Tag()) == 16) {
        return hn::LoadU(tag, *addresses);
    } else {
        const hn::Half<Tag> half;
        return hn::Combine(
            tag, loadBlocks(half, addresses + hn::MaxLanes(half) / 16), loadBlocks(half, addresses));
    }
}

/// The weights of four pixels, from how far a window begins in its first one: the parts of 2^16 of a weight.
/// Above the first one it is min(inner, part + raise) before its end, and max(part - excess, 0) there.
struct GroupWeights {
    ShortVec raise;
    ShortVec excess;
    ShortVec first; ///< all bits of the window's first pixel

    ShortVec at(ShortVec part, ShortVec inner) const
    {
        const auto covered = hn::SaturatedSub(hn::SaturatedAdd(part, raise), excess);
        return hn::SaturatedSub(hn::Min(covered, inner), hn::And(part, first));
    }
};

void setGroups(const MeanWindow& window, GroupWeights* groups)
{
    const Shorts shorts;
    const int inner = window.inner();
    for (int group = 0; group < window.readCount() / kPixelsAtOnce; ++group) {
        HWY_ALIGN std::uint16_t raise[hn::MaxLanes(Shorts())];
        HWY_ALIGN std::uint16_t excess[hn::MaxLanes(Shorts())];
        HWY_ALIGN std::uint16_t first[hn::MaxLanes(Shorts())];
        for (std::size_t lane = 0; lane < hn::MaxLanes(Shorts()); ++lane) {
            const int pixel = kPixelsAtOnce * group + int(lane % 8 / 2);
            const int rest = 65536 - pixel * inner; // of the weights, after those of the pixels before
            raise[lane] = std::uint16_t(std::clamp(rest, 0, inner));
            excess[lane] = std::uint16_t(std::clamp(-rest, 0, inner));
            first[lane] = pixel == 0 ? 0xFFFF : 0;
        }
        groups[group] = {hn::Load(shorts, raise), hn::Load(shorts, excess), hn::Load(shorts, first)};
    }
}

/// Positions on an axis, of one rectangle in each block.
class BlockPositions {
public:
    BlockPositions(std::uint64_t begin, std::uint64_t step, std::uint16_t inner)
        : _steps(hn::Set(Longs(), kBlocks * step))
        , _inner(hn::Set(Shorts(), inner))
    {
        HWY_ALIGN std::uint64_t positions[hn::MaxLanes(Longs())];
        for (std::size_t i = 0; i < hn::MaxLanes(Longs()); ++i)
            positions[i] = begin + i / 2 * step;
        _positions = hn::Load(Longs(), positions);
    }

    ShortVec inner() const { return _inner; }
    /// How far the next rectangles begin in their first pixels, as parts of a weight.
    ShortVec nextParts()
    {
        const auto fractions = hn::And(_positions, hn::Set(Longs(), 0xFFFF0000U));
        _positions = hn::Add(_positions, _steps);
        const auto both = hn::Or(fractions, hn::ShiftRight<16>(fractions));
        const auto all = hn::Or(both, hn::ShiftLeft<32>(both));
        return hn::MulHigh(hn::BitCast(Shorts(), all), _inner);
    }

private:
    LongVec _positions;
    LongVec _steps;
    ShortVec _inner;
};

/// Sums of four pixels: of their bytes 0 and 2, and of their bytes 1 and 3, in 256ths.
struct PixelSums {
    ShortVec evens;
    ShortVec odds;

    PixelSums()
        : evens(hn::Zero(Shorts()))
        , odds(hn::Zero(Shorts()))
    {
    }
    void add(ShortVec even, ShortVec odd, ShortVec weights)
    {
        evens = hn::Add(evens, hn::MulHigh(even, weights));
        odds = hn::Add(odds, hn::MulHigh(odd, weights));
    }
    void add(ByteVec bytes, ShortVec weights)
    {
        const auto pixels = hn::BitCast(Shorts(), bytes);
        add(hn::ShiftLeft<8>(pixels), hn::And(pixels, hn::Set(Shorts(), 0xFF00)), weights);
    }
    /// Of all four pixels: the bytes 0, 2, 1 and 3, in the lower halves of the blocks.
    ShortVec total() const
    {
        const auto even = hn::BitCast(Words(), evens);
        const auto odd = hn::BitCast(Words(), odds);
        const auto pairs = hn::Add(hn::BitCast(Shorts(), hn::InterleaveLower(Words(), even, odd)),
            hn::BitCast(Shorts(), hn::InterleaveUpper(Words(), even, odd)));
        return hn::Add(pairs, hn::BitCast(Shorts(), hn::Shuffle01(hn::BitCast(Longs(), pairs))));
    }
};

template <int kRow> ShortVec weightsOfRow(ShortVec weights)
{
    return hn::BitCast(Shorts(), hn::Broadcast<kRow>(hn::BitCast(Words(), weights)));
}

/// Adds the means of as many columns as are read at once. `offsets` are those of the rows in bytes.
void addColumns(const unsigned char* const* tops, const std::size_t* offsets, const ShortVec* rowWeights,
    std::size_t rowGroups, ShortVec columnWeights, PixelSums& sums)
{
    const auto rowAt = [tops](std::size_t offset) {
        const unsigned char* addresses[kBlocks];
        for (std::size_t i = 0; i < kBlocks; ++i)
            addresses[i] = tops[i] + offset;
        return loadBlocks(Bytes(), addresses);
    };
    PixelSums columns;
    for (std::size_t group = 0; group < rowGroups; ++group, offsets += kPixelsAtOnce) {
        columns.add(rowAt(offsets[0]), weightsOfRow<0>(rowWeights[group]));
        columns.add(rowAt(offsets[1]), weightsOfRow<1>(rowWeights[group]));
        columns.add(rowAt(offsets[2]), weightsOfRow<2>(rowWeights[group]));
        columns.add(rowAt(offsets[3]), weightsOfRow<3>(rowWeights[group]));
    }
    sums.add(columns.evens, columns.odds, columnWeights);
}

/// Stores the bytes of pixels from rounded sums in 256ths of their bytes 0, 2, 1 and 3.
void storeRounded(const std::uint64_t* sums, unsigned char* pixels, std::size_t count)
{
    const hn::Rebind<std::uint32_t, Longs> words;
    const hn::Repartition<std::uint8_t, decltype(words)> bytes;
    for (std::size_t i = 0; i < count; i += hn::MaxLanes(Longs())) {
        const auto rounded = hn::ShiftRight<8>(hn::BitCast(Shorts(), hn::LoadU(Longs(), sums + i)));
        const auto pairs = hn::BitCast(Longs(), rounded);
        const auto mixed = hn::TruncateTo(words, hn::Or(pairs, hn::ShiftRight<24>(pairs)));
        hn::StoreU(hn::BitCast(bytes, mixed), bytes, pixels + 4 * i);
    }
}

/// With a number of groups known to the compiler, or any for 0.
template <std::size_t kGroups>
void averageGroups(const ImageView& image, const MeanWindow& columns, const MeanWindow& rows,
    SampleSteps begins, std::ptrdiff_t ahead, unsigned char* pixels, std::size_t count)
{
    const std::size_t columnGroups = kGroups > 0 ? kGroups : std::size_t(columns.readCount() / kPixelsAtOnce);
    const std::size_t rowGroups = kGroups > 0 ? kGroups : std::size_t(rows.readCount() / kPixelsAtOnce);
    GroupWeights columnWeights[kMostGroups];
    GroupWeights rowWeights[kMostGroups];
    setGroups(columns, columnWeights);
    setGroups(rows, rowWeights);
    // Copies of what the compiler would read again after each pixel that is written.
    const unsigned char* const data = image.data;
    const std::size_t bytesPerRow = image.bytesPerRow;
    std::size_t offsets[kMostGroups * kPixelsAtOnce];
    for (std::size_t i = 0; i < kPixelsAtOnce * rowGroups; ++i)
        offsets[i] = i * bytesPerRow;

    BlockPositions x(begins.x, begins.stepX, columns.inner());
    BlockPositions y(begins.y, begins.stepY, rows.inner());
    // Products are rounded down, by a half on the average.
    const auto half = hn::Set(Shorts(), std::uint16_t(128 + (columns.pixelCount() + rows.pixelCount()) / 2));
    constexpr std::size_t kStored = 64;
    HWY_ALIGN std::uint64_t sums[kStored + kBlocks];
    for (std::size_t done = 0; done < count; done += kStored) {
        const std::size_t end = std::min(kStored, count - done);
        for (std::size_t i = 0; i < end; i += kBlocks) {
            const unsigned char* tops[kBlocks];
            for (const unsigned char*& top : tops) {
                top = data + (begins.y >> 32) * bytesPerRow + 4 * (begins.x >> 32);
                begins.x += begins.stepX;
                begins.y += begins.stepY;
            }
            if (i % kPixelsPerPrefetch == 0)
                for (std::size_t row = 0; row < kPixelsAtOnce * rowGroups; ++row)
                    prefetch(tops[0], ahead + std::ptrdiff_t(offsets[row]));

            const auto partX = x.nextParts();
            const auto partY = y.nextParts();
            ShortVec weightsY[kMostGroups];
            for (std::size_t group = 0; group < rowGroups; ++group)
                weightsY[group] = rowWeights[group].at(partY, y.inner());
            PixelSums mean;
            for (std::size_t group = 0; group < columnGroups; ++group) {
                addColumns(
                    tops, offsets, weightsY, rowGroups, columnWeights[group].at(partX, x.inner()), mean);
                for (const unsigned char*& top : tops)
                    top += 4 * kPixelsAtOnce;
            }
            const auto total = hn::BitCast(Longs(), hn::Add(mean.total(), half));
            // The lower halves of the blocks; what is written behind them is replaced.
            hn::StoreU(hn::ConcatEven(Longs(), total, total), Longs(), sums + i);
        }
        storeRounded(sums, pixels + 4 * done, end);
    }
}

void averageInBlocks(const ImageView& image, const MeanWindow& columns, const MeanWindow& rows,
    const SampleSteps& begins, std::ptrdiff_t ahead, unsigned char* pixels, std::size_t count)
{
    if (columns.readCount() == kPixelsAtOnce && rows.readCount() == kPixelsAtOnce)
        averageGroups<1>(image, columns, rows, begins, ahead, pixels, count);
    else
        averageGroups<0>(image, columns, rows, begins, ahead, pixels, count);
}

} // namespace
} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace {

constexpr int kAllWeights = 65536;

} // namespace

MeanWindow::MeanWindow(double length)
    : _inner(std::uint16_t(std::min(std::ceil(kAllWeights / length), 65535.0)))
    , _pixelCount((kAllWeights - 2) / _inner + 2)
{
}

HWY_EXPORT(averageInBlocks);

void averageRectangles(const ImageView& image, const MeanWindow& columns, const MeanWindow& rows,
    const SampleSteps& begins, std::ptrdiff_t ahead, unsigned char* pixels, std::size_t count)
{
    HWY_DYNAMIC_DISPATCH(averageInBlocks)(image, columns, rows, begins, ahead, pixels, count);
}

#endif
