#include "CoreGraphics/raster/SignedAreas.h"

#include <cstring>

// Highway compiles this file once for each kind of vector unit, and picks one when the program runs.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "CoreGraphics/raster/SignedAreas.cpp"
#include <hwy/foreach_target.h> // must come before highway.h

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

// Without vectors of four lanes the sums are added one by one.
#if HWY_TARGET == HWY_SCALAR

HWY_INLINE int takeBlocks(int* differences, int count, int sum, unsigned char* coverage)
{
    for (int i = 0; i < count; ++i) {
        sum += differences[i];
        differences[i] = 0;
        coverage[i] = coverageOfArea(sum);
    }
    return sum;
}

#else

using Areas = hn::FixedTag<std::int32_t, 4>;
using Vector = hn::Vec<Areas>;

/// Each lane with those before it.
HWY_INLINE Vector runningSum(Vector values)
{
    const auto pairs = hn::Add(values, hn::ShiftLeftLanes<1>(values));
    return hn::Add(pairs, hn::ShiftLeftLanes<2>(pairs));
}

/// The same as coverageOfArea().
HWY_INLINE auto toBytes(Vector sums)
{
    const auto size = hn::Min(hn::Abs(sums), hn::Set(Areas(), kFullArea));
    const auto scaled = hn::Add(hn::Sub(hn::ShiftLeft<8>(size), size), hn::Set(Areas(), kFullArea / 2));
    return hn::DemoteTo(hn::Rebind<std::uint8_t, Areas>(), hn::ShiftRight<23>(scaled));
}

HWY_INLINE int takeBlocks(int* differences, int count, int sum, unsigned char* coverage)
{
    const Areas areas;
    auto carry = hn::Set(areas, sum);
    for (int i = 0; i < count; i += 4) {
        const auto sums = hn::Add(runningSum(hn::LoadU(areas, differences + i)), carry);
        hn::StoreU(hn::Zero(areas), areas, differences + i);
        hn::StoreU(toBytes(sums), hn::Rebind<std::uint8_t, Areas>(), coverage + i);
        carry = hn::Broadcast<3>(sums);
    }
    return hn::GetLane(carry);
}

#endif

void takeRows(const AreaRows& rows, unsigned char* coverage)
{
    constexpr int kBlock = AreaRows::kBlock;
    constexpr std::uint64_t kInEachByte = 0x0101010101010101;
    int* differences = rows.differences;
    const unsigned char* touched = rows.touched;
    for (int row = 0; row < rows.count; ++row) {
        if (rows.isNew[row] == 0)
            std::memcpy(coverage, coverage - rows.stride(), std::size_t(rows.stride()));
        int sum = 0;
        std::uint64_t untouched = 0; // the coverage of a block
        for (int block = 0; rows.isNew[row] != 0 && block < rows.blocksPerRow; ++block) {
            unsigned char* const pixels = coverage + block * kBlock;
            if (touched[block] != 0) {
                sum = takeBlocks(differences + block * kBlock, kBlock, sum, pixels);
                untouched = pixels[kBlock - 1] * kInEachByte;
            } else {
                std::memcpy(pixels, &untouched, sizeof untouched);
            }
        }
        differences += rows.stride();
        coverage += rows.stride();
        touched += rows.blocksPerRow;
    }
}

void takeTouched(const AreaRows& rows, unsigned char* coverage)
{
    int* differences = rows.differences;
    const unsigned char* touched = rows.touched;
    for (int row = 0; row < rows.count; ++row) {
        int sum = 0;
        forEachTouched(touched, rows.blocksPerRow, [&](int begin, int end) {
            sum = takeBlocks(differences + begin, end - begin, sum, coverage + begin);
        });
        differences += rows.stride();
        coverage += rows.stride();
        touched += rows.blocksPerRow;
    }
}

} // namespace
} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

HWY_EXPORT(takeRows);
HWY_EXPORT(takeTouched);

void takeCoverage(const AreaRows& rows, unsigned char* coverage)
{
    HWY_DYNAMIC_DISPATCH(takeRows)(rows, coverage);
}

void takeTouchedCoverage(const AreaRows& rows, unsigned char* coverage)
{
    HWY_DYNAMIC_DISPATCH(takeTouched)(rows, coverage);
}

#endif
