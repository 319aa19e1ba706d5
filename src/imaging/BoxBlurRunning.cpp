// Column sums run down the image; sums of squares run along the rows of column sums.

#include "imaging/BoxBlurRunning.h"

#include "imaging/BoxBlurRule.h"

#include <cstring>
#include <hwy/cache_control.h>

// Highway compiles this file once per instruction set, and selects one at run time.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/BoxBlurRunning.cpp"
#include <hwy/foreach_target.h> // must come before highway.h

#include "imaging/TruncatingDivision-inl.h"

#ifndef BOX_BLUR_RUNNING_ONCE
#define BOX_BLUR_RUNNING_ONCE

namespace {

/// Rows that are blurred at once. A running sum depends on its left neighbour, but not on the rows below.
constexpr std::int64_t kBand = RunningBoxBlur::kTileStep;
constexpr std::int64_t kChannels = 4;
/// The number of channels of one column in all rows of a band.
constexpr std::int64_t kBandColumn = kBand * kChannels;
/// The number of pixels of a row whose means are assembled at once.
constexpr std::int64_t kPixelStep = 4;
constexpr std::int64_t kBlockSize = kPixelStep * kChannels;
/// Reorders the bytes of these pixels from planar to interleaved channels.
alignas(16) constexpr std::uint8_t kByPixels[] = {0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15};

/// How often each element of a row or column of `size` elements counts in a run of `count` positions from
/// `first` on, where positions outside are clamped to the nearest element.
struct ClampedRun {
    ClampedRun(std::int64_t first, std::int64_t count, std::int64_t size)
    {
        const std::int64_t end = first + count;
        const std::int64_t last = std::max<std::int64_t>(size - 1, 1);
        atFirst = static_cast<std::uint32_t>(std::clamp<std::int64_t>(1 - first, 0, count));
        atLast = static_cast<std::uint32_t>(std::clamp<std::int64_t>(end - last, 0, count));
        innerFirst = std::max<std::int64_t>(first, 1);
        innerEnd = std::min(end, last);
    }

    std::uint32_t atFirst, atLast;     ///< counts of the first and last element, which may be the same
    std::int64_t innerFirst, innerEnd; ///< these elements count once each
};

} // namespace

#endif

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {
namespace {

/// Sums for small boxes: column sums, and differences of two of them, fit in signed 16-bit integers.
struct NarrowSums {
    using Division = SmallAreaDivision;
    using Columns = hn::CappedTag<std::int16_t, 32>;
    using Squares = hn::CappedTag<std::int32_t, kBandColumn>;

    static hn::Vec<Squares> load(const std::int16_t* sums)
    {
        return hn::PromoteTo(Squares(), hn::LoadU(hn::Rebind<std::int16_t, Squares>(), sums));
    }
    static hn::Vec<Squares> difference(const std::int16_t* added, const std::int16_t* removed)
    {
        const hn::Rebind<std::int16_t, Squares> tag;
        return hn::PromoteTo(Squares(), hn::Sub(hn::LoadU(tag, added), hn::LoadU(tag, removed)));
    }
    /// Stores the sums of several columns for four rows; those of one column are contiguous.
    template <class V> static void storeBand(V row0, V row1, V row2, V row3, std::int16_t* to)
    {
        const hn::Repartition<std::uint64_t, Columns> columns;
        hn::StoreInterleaved4(hn::BitCast(columns, row0), hn::BitCast(columns, row1),
            hn::BitCast(columns, row2), hn::BitCast(columns, row3), columns,
            reinterpret_cast<std::uint64_t*>(to));
    }
};

/// Sums for boxes of any size, modulo 2^32.
struct WideSums {
    using Division = AnyAreaDivision;
    using Columns = hn::CappedTag<std::uint32_t, kChannels>; // a single column
    using Squares = hn::CappedTag<std::uint32_t, kBandColumn>;

    static hn::Vec<Squares> load(const std::uint32_t* sums) { return hn::LoadU(Squares(), sums); }
    static hn::Vec<Squares> difference(const std::uint32_t* added, const std::uint32_t* removed)
    {
        return hn::Sub(load(added), load(removed));
    }
    template <class V> static void storeBand(V row0, V row1, V row2, V row3, std::uint32_t* to)
    {
        hn::StoreU(row0, Columns(), to);
        hn::StoreU(row1, Columns(), to + kChannels);
        hn::StoreU(row2, Columns(), to + 2 * kChannels);
        hn::StoreU(row3, Columns(), to + 3 * kChannels);
    }
};

template <class Sums> class TileBlur {
public:
    TileBlur(const RunningBoxBlur& blur, BoxBlurSpan rows, BoxBlurSpan columns, const std::uint8_t* source,
        std::uint8_t* scratch)
        : _width(blur.width)
        , _height(blur.height)
        , _boxDim(blur.boxDim)
        , _before(_boxDim / 2)
        , _after(_boxDim - 1 - _before)
        , _division(boxArea(blur.boxDim))
        , _bypassesCache(
              static_cast<std::size_t>(kChannels * _width * _height) >= RunningBoxBlur::kLargeResult)
        , _rows(rows)
        , _columns(columns)
        , _source(source)
        , _sourceFirst{blur.reach(columns, _width).first, blur.reach(rows, _height).first}
        , _rowSize(kChannels * RunningBoxBlur::paddedLength(blur.reach(columns, _width)))
        , _columnSums(reinterpret_cast<Sum*>(scratch))
        , _band(_columnSums + _rowSize)
        , _means(reinterpret_cast<std::uint8_t*>(_band + kBand * _rowSize))
    {
    }

    /// Writes the tile into the image at `destination`.
    void blurInto(std::uint8_t* destination)
    {
        startColumns(_rows.first - 1);
        for (std::int64_t y = _rows.first; y < _rows.end; y += kBand) {
            sumColumns(y);
            for (std::size_t part = 0; part < kBandColumn; part += hn::Lanes(Squares()))
                sumSquares(part);
            const std::int64_t count = std::min<std::int64_t>(kBand, _rows.end - y);
            for (std::int64_t i = 0; i < count; ++i)
                storeMeans(i, destination + kChannels * ((y + i) * _width + _columns.first));
        }
        hwy::FlushStream();
    }

private:
    using Columns = typename Sums::Columns;
    using Squares = typename Sums::Squares;
    using Sum = hn::TFromD<Columns>;

    /// Row `y` of the source, clamped to the image.
    const std::uint8_t* row(std::int64_t y) const
    {
        return _source + (std::clamp<std::int64_t>(y, 0, _height - 1) - _sourceFirst.row) * _rowSize;
    }
    static hn::Vec<Columns> loadBytes(const std::uint8_t* from)
    {
        return hn::PromoteTo(Columns(), hn::LoadU(hn::Rebind<std::uint8_t, Columns>(), from));
    }

    /// Initializes the column sums for row `y`, which may be the row above the image.
    void startColumns(std::int64_t y)
    {
        std::fill_n(_columnSums, _rowSize, Sum{0});
        const ClampedRun run(y - _before, _boxDim, _height);
        addRow(0, run.atFirst);
        for (std::int64_t inner = run.innerFirst; inner < run.innerEnd; ++inner)
            addRow(inner, 1);
        addRow(_height - 1, run.atLast);
    }
    void addRow(std::int64_t y, std::uint32_t times)
    {
        if (times == 0)
            return; // the row may not be in the source
        const std::uint8_t* from = row(y);
        const auto factor = hn::Set(Columns(), static_cast<Sum>(times));
        for (std::int64_t i = 0; i < _rowSize; i += hn::Lanes(Columns())) {
            const auto sums = hn::LoadU(Columns(), _columnSums + i);
            hn::StoreU(hn::Add(sums, hn::Mul(loadBytes(from + i), factor)), Columns(), _columnSums + i);
        }
    }

    /// Advances the column sums from the row above `y` through the rows of the band.
    void sumColumns(std::int64_t y)
    {
        const std::uint8_t* added[kBand];
        const std::uint8_t* removed[kBand];
        for (std::size_t i = 0; i < kBand; ++i, ++y) {
            added[i] = row(y + _after);
            removed[i] = row(y - 1 - _before);
        }
        for (std::int64_t at = 0; at < _rowSize; at += hn::Lanes(Columns())) {
            const auto moveOn = [&](hn::Vec<Columns> sums, std::size_t i) {
                return hn::Add(sums, hn::Sub(loadBytes(added[i] + at), loadBytes(removed[i] + at)));
            };
            const auto row0 = moveOn(hn::LoadU(Columns(), _columnSums + at), 0);
            const auto row1 = moveOn(row0, 1), row2 = moveOn(row1, 2), row3 = moveOn(row2, 3);
            hn::StoreU(row3, Columns(), _columnSums + at);
            Sums::storeBand(row0, row1, row2, row3, _band + kBand * at);
        }
    }

    /// Computes the sums of squares along the band and divides them, for the channels of one vector from
    /// `part` on.
    void sumSquares(std::size_t part)
    {
        const Squares tag;
        const std::int64_t last = _width - 1;
        const auto at = [band = _band + part, this](
                            std::int64_t x) { return band + (x - _sourceFirst.column) * kBandColumn; };
        auto sums = startSquares(at, _columns.first - 1);
        const auto moveOn = [&](const Sum* added, const Sum* removed) {
            sums = hn::Add(sums, Sums::difference(added, removed));
            return _division.divide(tag, sums);
        };

        const hn::Repartition<std::uint8_t, Squares> bytes;
        const auto byPixels = hn::LoadDup128(bytes, kByPixels);
        std::uint8_t* to = _means + kPixelStep * part;
        const auto storeMeansOf = [&](const auto& added, const auto& removed) {
            const auto means0 = moveOn(added(0), removed(0)), means1 = moveOn(added(1), removed(1));
            const auto means2 = moveOn(added(2), removed(2)), means3 = moveOn(added(3), removed(3));
            const auto byChannels = mergeLowBytes(tag, means0, means1, means2, means3);
            hn::StoreU(hn::TableLookupBytes(hn::BitCast(bytes, byChannels), byPixels), bytes, to);
            to += kPixelStep * kBandColumn;
        };
        for (std::int64_t x = _columns.first; x < _columns.end; x += kPixelStep) {
            if (x > _before && x + kPixelStep + _after <= last) {
                storeMeansOf([sums = at(x + _after)](std::int64_t i) { return sums + i * kBandColumn; },
                    [sums = at(x - 1 - _before)](std::int64_t i) { return sums + i * kBandColumn; });
            } else {
                storeMeansOf([&](std::int64_t i) { return at(std::min(x + i + _after, last)); },
                    [&](std::int64_t i) {
                        return at(std::clamp<std::int64_t>(x + i - 1 - _before, 0, last));
                    });
            }
        }
    }
    /// The sums of squares for column `x`, which may be the column left of the image, plus the division's
    /// bias.
    template <class At> hn::Vec<Squares> startSquares(const At& at, std::int64_t x) const
    {
        const auto set = [](auto value) {
            return hn::Set(Squares(), static_cast<hn::TFromD<Squares>>(value));
        };
        const ClampedRun run(x - _before, _boxDim, _width);
        auto sums = set(_division.bias);
        if (run.atFirst > 0)
            sums = hn::Add(sums, hn::Mul(Sums::load(at(0)), set(run.atFirst)));
        for (std::int64_t inner = run.innerFirst; inner < run.innerEnd; ++inner)
            sums = hn::Add(sums, Sums::load(at(inner)));
        if (run.atLast > 0)
            sums = hn::Add(sums, hn::Mul(Sums::load(at(_width - 1)), set(run.atLast)));
        return sums;
    }

    /// Writes the means of row `i` of the band.
    void storeMeans(std::int64_t i, std::uint8_t* destination) const
    {
        const hn::FixedTag<std::uint8_t, kBlockSize> block;
        const std::uint8_t* from = _means + i * kBlockSize;
        const std::int64_t size = kChannels * (_columns.end - _columns.first);
        const bool isAligned = reinterpret_cast<std::uintptr_t>(destination) % kBlockSize == 0;
        std::int64_t done = 0;
        if (_bypassesCache && isAligned) {
            for (; done + kBlockSize <= size; done += kBlockSize, from += kBand * kBlockSize)
                hn::Stream(hn::LoadU(block, from), block, destination + done);
        } else {
            for (; done + kBlockSize <= size; done += kBlockSize, from += kBand * kBlockSize)
                hn::StoreU(hn::LoadU(block, from), block, destination + done);
        }
        std::memcpy(destination + done, from, static_cast<std::size_t>(size - done));
    }

    const std::int64_t _width, _height, _boxDim;
    const std::int64_t _before, _after; ///< the box's reach toward smaller and greater coordinates
    const typename Sums::Division _division;
    const bool _bypassesCache;         ///< writes with streaming stores
    const BoxBlurSpan _rows, _columns; ///< of the tile
    const std::uint8_t* const _source;
    const struct {
        std::int64_t column, row;
    } _sourceFirst;              ///< position of the source's first pixel in the image
    const std::int64_t _rowSize; ///< bytes, that is channels, of a source row
    Sum* const _columnSums;      ///< for the last row of the band, channels as in the source
    Sum* const _band;            ///< column sums of all its rows; the channels of a column are contiguous
    std::uint8_t* const _means;  ///< blocks of pixels; those of the same columns are contiguous
};

void blurTileRunning(const RunningBoxBlur& blur, BoxBlurSpan rows, BoxBlurSpan columns,
    const std::uint8_t* source, std::uint8_t* destination, std::uint8_t* scratch)
{
    if (blur.boxDim <= SmallAreaDivision::kGreatestBoxDim)
        TileBlur<NarrowSums>(blur, rows, columns, source, scratch).blurInto(destination);
    else
        TileBlur<WideSums>(blur, rows, columns, source, scratch).blurInto(destination);
}

} // namespace
} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

HWY_EXPORT(blurTileRunning);

BoxBlurSpan RunningBoxBlur::reach(BoxBlurSpan span, std::int64_t size) const
{
    const std::int64_t before = boxDim / 2, after = boxDim - 1 - before;
    // Sums run into the tile from the row above it, and from the column to its left.
    return {std::max<std::int64_t>(span.first - 1 - before, 0), std::min(span.end + after, size)};
}

std::size_t RunningBoxBlur::scratchSize(BoxBlurSpan columns) const
{
    // Sized for 32-bit sums; with 16-bit ones the rest is never touched.
    const auto length = static_cast<std::size_t>(paddedLength(reach(columns, width)));
    return length * (sizeof(std::uint32_t) * (kChannels + kBandColumn) + kBandColumn);
}

void RunningBoxBlur::blurTile(BoxBlurSpan rows, BoxBlurSpan columns, const std::uint8_t* source,
    std::uint8_t* destination, std::uint8_t* scratch) const
{
    HWY_DYNAMIC_DISPATCH(blurTileRunning)(*this, rows, columns, source, destination, scratch);
}

#endif
