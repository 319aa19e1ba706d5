// Sums all pixels of each square directly, for several neighbouring squares at once.

#include <KorvidAppKit/ZRBoxBlur.h>

#include "imaging/BoxBlurRule.h"

#include <cstring>
#include <vector>

// Highway compiles this file once per instruction set, and selects one at run time.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/BoxBlurDirect.cpp"
#include <hwy/foreach_target.h> // must come before highway.h

#include "imaging/TruncatingDivision-inl.h"

#ifndef BOX_BLUR_DIRECT_ONCE
#define BOX_BLUR_DIRECT_ONCE

namespace {

/// The greatest number of pixels summed at once.
constexpr std::size_t kMostLanes = 16;

/// A copy of the source in which each row is padded with copies of its edge pixels, as many as are read at
/// once. The pixels needed for several neighbouring squares are then always contiguous.
class PaddedPixels {
public:
    PaddedPixels(const std::uint32_t* src, std::size_t width, std::size_t height)
        : _width(static_cast<std::ptrdiff_t>(width))
        , _height(static_cast<std::ptrdiff_t>(height))
        , _pixels((width + 2 * kMostLanes) * height)
    {
        auto to = _pixels.begin();
        for (const std::uint32_t* row = src; row != src + width * height; row += width) {
            to = std::fill_n(to, kMostLanes, row[0]);
            to = std::copy_n(row, width, to);
            to = std::fill_n(to, kMostLanes, row[width - 1]);
        }
    }

    std::ptrdiff_t width() const { return _width; }
    std::ptrdiff_t height() const { return _height; }

    /// Column 0 of row y, clamped to the image.
    const std::uint32_t* row(std::ptrdiff_t y) const
    {
        const auto nearest = std::clamp<std::ptrdiff_t>(y, 0, _height - 1);
        return _pixels.data() + nearest * (_width + 2 * kPadding) + kPadding;
    }
    /// The column to read at for column x and its right neighbours.
    std::ptrdiff_t column(std::ptrdiff_t x) const { return std::clamp(x, -kPadding, _width); }

private:
    static constexpr auto kPadding = static_cast<std::ptrdiff_t>(kMostLanes);

    std::ptrdiff_t _width;
    std::ptrdiff_t _height;
    std::vector<std::uint32_t> _pixels;
};

} // namespace

#endif

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {
namespace {

using Pixels = hn::CappedTag<std::uint32_t, kMostLanes>; // one in each lane
using Halves = hn::Repartition<std::uint16_t, Pixels>;
using PixelVector = hn::Vec<Pixels>;
using HalfVector = hn::Vec<Halves>;

/// The sums of the four channels, for one pixel per lane.
class ChannelSums {
public:
    /// The sum of more bytes than this may exceed 16 bits.
    static constexpr std::int64_t kMostPixels = 257;

    ChannelSums()
        : _whole(hn::Zero(Halves()))
        , _high(_whole)
        , _sum0(hn::Zero(Pixels()))
        , _sum1(_sum0)
        , _sum2(_sum0)
        , _sum3(_sum0)
    {
    }

    /// Adds the pixels at `from`. Call `flush` after at most kMostPixels of these calls, and at the end.
    void add(const std::uint32_t* from)
    {
        // Two channels are the low bytes of 16-bit halves, two the high bytes. Whole halves are summed
        // without masking the low bytes; `flush` subtracts the high ones.
        const HalfVector halves = hn::BitCast(Halves(), hn::LoadU(Pixels(), from));
        _whole = hn::Add(_whole, halves);
        _high = hn::Add(_high, hn::ShiftRight<8>(halves));
    }

    void flush()
    {
        const PixelVector low = hn::BitCast(Pixels(), hn::Sub(_whole, hn::ShiftLeft<8>(_high)));
        const PixelVector high = hn::BitCast(Pixels(), _high);
        const PixelVector mask = hn::Set(Pixels(), 0xFFFF);
        _sum0 = hn::Add(_sum0, hn::And(low, mask));
        _sum1 = hn::Add(_sum1, hn::And(high, mask));
        _sum2 = hn::Add(_sum2, hn::ShiftRight<16>(low));
        _sum3 = hn::Add(_sum3, hn::ShiftRight<16>(high));
        _whole = _high = hn::Zero(Halves());
    }

    /// The pixels of the means.
    template <class Division> PixelVector divide(const Division& division) const
    {
        const auto channel = [&](PixelVector sums) {
            const auto bias = hn::Set(Pixels(), static_cast<std::uint32_t>(division.bias));
            return division.divide(Pixels(), hn::Add(sums, bias));
        };
        return mergeLowBytes(Pixels(), channel(_sum0), channel(_sum1), channel(_sum2), channel(_sum3));
    }

private:
    HalfVector _whole, _high;
    PixelVector _sum0, _sum1, _sum2, _sum3;
};

/// The sums over the squares of the pixel at (x, y) and its neighbours to the right.
ChannelSums sumSquares(const PaddedPixels& source, std::ptrdiff_t x, std::ptrdiff_t y, std::int64_t boxDim)
{
    const std::int64_t half = boxDim / 2;
    ChannelSums sums;
    std::int64_t pending = 0; // pixels since the last flush
    for (std::int64_t yy = y - half; yy < y - half + boxDim; ++yy) {
        const std::uint32_t* row = source.row(yy);
        for (std::int64_t xx = x - half, end = xx + boxDim; xx < end;) {
            const std::int64_t count = std::min(end - xx, ChannelSums::kMostPixels);
            if (pending + count > ChannelSums::kMostPixels) {
                sums.flush();
                pending = 0;
            }
            pending += count;
            for (const std::int64_t stop = xx + count; xx < stop; ++xx)
                sums.add(row + source.column(xx));
        }
    }
    sums.flush();
    return sums;
}

template <class Division>
void blurBy(const Division& division, const PaddedPixels& source, std::uint32_t* dst, std::int64_t boxDim)
{
    const auto lanes = static_cast<std::ptrdiff_t>(hn::Lanes(Pixels()));
    for (std::ptrdiff_t y = 0; y < source.height(); ++y) {
        for (std::ptrdiff_t x = 0; x < source.width(); x += lanes) {
            const auto means = sumSquares(source, x, y, boxDim).divide(division);
            if (const auto left = source.width() - x; left < lanes) {
                std::uint32_t last[kMostLanes];
                hn::StoreU(means, Pixels(), last);
                std::copy_n(last, left, dst);
                dst += left;
            } else {
                hn::StoreU(means, Pixels(), dst);
                dst += lanes;
            }
        }
    }
}

void blurDirectly(const PaddedPixels& source, std::uint32_t* dst, std::int32_t boxDim)
{
    if (boxDim <= SmallAreaDivision::kGreatestBoxDim)
        blurBy(SmallAreaDivision(boxArea(boxDim)), source, dst, boxDim);
    else
        blurBy(AnyAreaDivision(boxArea(boxDim)), source, dst, boxDim);
}

} // namespace
} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

HWY_EXPORT(blurDirectly);

void _boxBlurBitmap(const std::uint32_t* src, std::uint32_t* dst, std::uint32_t width, std::uint32_t height,
    std::int32_t boxDim)
{
    const std::size_t count = std::size_t{width} * height;
    if (count == 0)
        return;
    if (blursIntoNothing(boxDim))
        std::fill_n(dst, count, 0);
    else
        HWY_DYNAMIC_DISPATCH(blurDirectly)(PaddedPixels(src, width, height), dst, boxDim);
}

#endif
