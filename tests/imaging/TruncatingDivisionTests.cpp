#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "TruncatingDivisionTests.cpp"
#include <hwy/foreach_target.h> // must come before highway.h

#include "imaging/TruncatingDivision-inl.h"

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {
namespace {

/// The low bytes of the quotients of up to 16 sums, in place.
template <class Division, class T> void divide(std::uint32_t area, T* sums, std::size_t count)
{
    const hn::CappedTag<T, 16> tag;
    const Division division(area);
    for (std::size_t i = 0; i < count; i += hn::Lanes(tag)) {
        const auto biased = hn::Add(hn::LoadU(tag, sums + i), hn::Set(tag, static_cast<T>(division.bias)));
        hn::StoreU(hn::And(division.divide(tag, biased), hn::Set(tag, 255)), tag, sums + i);
    }
}

void divideSmall(std::uint32_t area, std::int32_t* sums, std::size_t count)
{
    divide<SmallAreaDivision>(area, sums, count);
}
void divideAny(std::uint32_t area, std::uint32_t* sums, std::size_t count)
{
    divide<AnyAreaDivision>(area, sums, count);
}
void mergeBytes(std::uint32_t* values)
{
    const hn::CappedTag<std::uint32_t, 4> tag;
    for (std::size_t i = 0; i < 4; i += hn::Lanes(tag))
        hn::StoreU(mergeLowBytes(tag, hn::LoadU(tag, values + i), hn::LoadU(tag, values + 4 + i),
                       hn::LoadU(tag, values + 8 + i), hn::LoadU(tag, values + 12 + i)),
            tag, values + i);
}

} // namespace
} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

#include "support/EachVectorUnit.h"

#include <algorithm>
#include <random>
#include <vector>

namespace {

HWY_EXPORT(divideSmall);
HWY_EXPORT(divideAny);
HWY_EXPORT(mergeBytes);

constexpr std::size_t kStep = 16;

/// The number of wrong quotients of `sums`.
std::size_t countWrong(std::uint32_t area, std::vector<std::uint32_t> sums)
{
    const auto before = sums;
    sums.resize((sums.size() + kStep - 1) / kStep * kStep);
    HWY_DYNAMIC_DISPATCH(divideAny)(area, sums.data(), sums.size());
    std::size_t wrong = 0;
    for (std::size_t i = 0; i < before.size(); ++i)
        wrong += sums[i] != (before[i] / area & 255);
    return wrong;
}

} // namespace

TEST(SmallAreaDivision, IsExactForEverySumOfEverySmallBox)
{
    onEachVectorUnit([] {
        for (std::uint32_t n = 1; n <= 64; ++n) {
            const std::uint32_t area = n * n;
            std::vector<std::int32_t> quotients((256 * area + kStep - 1) / kStep * kStep);
            for (std::size_t i = 0; i < quotients.size(); ++i)
                quotients[i] = static_cast<std::int32_t>(i);
            HWY_DYNAMIC_DISPATCH(divideSmall)(area, quotients.data(), quotients.size());
            std::size_t wrong = 0;
            for (std::uint32_t sum = 0; sum < 256 * area; ++sum)
                wrong += quotients[sum] != static_cast<std::int32_t>(sum / area);
            ASSERT_EQ(wrong, 0U) << n;
        }
    });
}

TEST(AnyAreaDivision, IsExactAroundMultiplesOfTheArea)
{
    std::vector<std::uint32_t> areas{3, 7, 641, 0x55555555, 0xAAAAAAAB};
    for (std::uint32_t n = 1; n < 5000; n += 7)
        areas.push_back(n * n);
    for (int bit = 0; bit < 32; ++bit)
        areas.insert(areas.end(), {1U << bit, (1U << bit) + 1, (2U << bit) - 1});
    onEachVectorUnit([&] {
        for (const std::uint32_t area : areas) {
            std::vector<std::uint32_t> sums{0, 1, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFE, 0xFFFFFFFF};
            const std::uint64_t greatest = 0xFFFFFFFF / area;
            for (std::uint64_t k = 1; k <= greatest; k += 1 + k / 8) {
                for (const std::uint64_t count : {k, greatest - k}) {
                    const auto multiple = static_cast<std::uint32_t>(count * area);
                    sums.insert(sums.end(), {multiple - 1, multiple, multiple + 1});
                }
            }
            ASSERT_EQ(countWrong(area, std::move(sums)), 0U) << area;
        }
    });
}

TEST(AnyAreaDivision, IsExactForRandomSumsAndAreas)
{
    std::mt19937 random(1);
    for (int i = 0; i < 2000; ++i) {
        std::vector<std::uint32_t> sums(160);
        std::generate(sums.begin(), sums.end(), std::ref(random));
        const std::uint32_t area = std::max(1U, static_cast<std::uint32_t>(random()) >> random() % 32);
        ASSERT_EQ(countWrong(area, std::move(sums)), 0U) << area;
    }
}

TEST(MergeLowBytes, TransposesTheBytesOfTheLanes)
{
    onEachVectorUnit([] {
        std::vector<std::uint32_t> values(16);
        for (std::uint32_t i = 0; i < 16; ++i)
            values[i] = 0xABCDEF00 | i;
        HWY_DYNAMIC_DISPATCH(mergeBytes)(values.data());
        values.resize(4);
        EXPECT_EQ(values, (std::vector<std::uint32_t>{0x0C080400, 0x0D090501, 0x0E0A0602, 0x0F0B0703}));
    });
}

#endif
