#include "PlainNoise.h"
#include "support/Numbers.h"

#include <KorvidAppKit/ZRNoise.h>

#include <bit>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <set>

namespace {

constexpr std::int32_t kLeastSeed = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kGreatestSeed = std::numeric_limits<std::int32_t>::max();

/// A value of the table by its index: the first one, which is the offset of row 0, is 208.
std::int32_t tableValue(std::int32_t index)
{
    return noise2(index + 48, 0);
}

float asFloat(std::int32_t value)
{
    return static_cast<float>(value);
}

} // namespace

TEST(Noise2, HasItsTableOf256Values)
{
    std::uint32_t checksum = 2166136261; // FNV-1a
    std::int32_t sum = 0;
    std::set<std::int32_t> different;
    for (std::int32_t i = 0; i < 256; ++i) {
        checksum = (checksum ^ static_cast<std::uint32_t>(tableValue(i))) * 16777619;
        sum += tableValue(i);
        different.insert(tableValue(i));
    }
    EXPECT_EQ(checksum, 0xd8dcce80);
    EXPECT_EQ(sum, 35005);
    EXPECT_EQ(different.size(), 163U);
    EXPECT_EQ(tableValue(0), 208);
    EXPECT_EQ(tableValue(15), 254);
    EXPECT_EQ(tableValue(17), 255);
    EXPECT_EQ(tableValue(103), 0);
    EXPECT_EQ(tableValue(128), 228);
    EXPECT_EQ(tableValue(208), 42);
    EXPECT_EQ(tableValue(255), 219);
}

TEST(Noise2, IsTheValueAtTheColumnPlusTheValueAtTheRow)
{
    EXPECT_EQ(noise2(0, 0), 42);
    EXPECT_EQ(noise2(1, 0), 30);
    EXPECT_EQ(noise2(0, 1), 234);
    EXPECT_EQ(noise2(1, 1), 163);
    EXPECT_EQ(noise2(100, 200), 253);
    EXPECT_EQ(noise2(255, 255), 191); // 219 + 255 wraps to 218
}

TEST(Noise2, AlwaysReturnsAValueOfTheTable)
{
    for (std::int32_t y = 0; y < 256; ++y) {
        for (std::int32_t x = 0; x < 256; ++x) {
            const std::int32_t place = tableValue(y) + x;
            ASSERT_EQ(noise2(x, y), tableValue(place > 255 ? place - 256 : place)) << x << " " << y;
            ASSERT_EQ(noise2(x, y), plainNoise2(x, y)) << x << " " << y;
        }
    }
}

TEST(Noise2, WrapsNegativeCoordinatesByTheMathematicalModulus)
{
    EXPECT_EQ(noise2(-1, 0), noise2(255, 0));
    EXPECT_EQ(noise2(0, -1), noise2(0, 255));
    for (std::int32_t y = -600; y < 600; y += 7) {
        for (std::int32_t x = -600; x < 600; ++x)
            ASSERT_EQ(noise2(x, y), noise2((x + 768) % 256, (y + 768) % 256)) << x << " " << y;
    }
}

TEST(Noise2, WrapsAtTheLimitsOfInt)
{
    EXPECT_EQ(noise2(kLeastSeed, kLeastSeed), noise2(0, 0));
    EXPECT_EQ(noise2(kLeastSeed + 1, 3), noise2(1, 3));
    EXPECT_EQ(noise2(kGreatestSeed, kGreatestSeed), noise2(255, 255));
    EXPECT_EQ(noise2(kGreatestSeed, 0), noise2(255, 0));
    EXPECT_EQ(noise2(5, kGreatestSeed - 1), noise2(5, 254));
}

TEST(LinInter, InterpolatesAndExtrapolatesLinearly)
{
    EXPECT_EQ(lin_inter(2, 10, 0), 2);
    EXPECT_EQ(lin_inter(2, 10, 0.25F), 4);
    EXPECT_EQ(lin_inter(2, 10, 1), 10);
    EXPECT_EQ(lin_inter(2, 10, 1.5F), 14);
    EXPECT_EQ(lin_inter(2, 10, -1), -6);
    EXPECT_TRUE(std::isnan(lin_inter(2, 10, kFloatNaN)));
}

TEST(LinInter, RoundsEachStepToAFloat)
{
    // Fused, or as a (1 - s) + b s, the first would be 0x1.0c49bap-1, the second 0x1.8f5c2ap-2.
    EXPECT_EQ(lin_inter(0.35F, 0.93F, 0.3F), 0x1.0c49bcp-1F);
    EXPECT_EQ(lin_inter(0.61F, 0.06F, 0.4F), 0x1.8f5c28p-2F);
}

TEST(SmoothInter, EasesFromOneToTheOther)
{
    EXPECT_EQ(smooth_inter(2, 10, 0), 2);
    EXPECT_EQ(smooth_inter(2, 10, 0.25F), 3.25F); // the weight is 5/32
    EXPECT_EQ(smooth_inter(2, 10, 0.5F), 6);
    EXPECT_EQ(smooth_inter(2, 10, 0.75F), 8.75F);
    EXPECT_EQ(smooth_inter(2, 10, 1), 10);
}

TEST(SmoothInter, IsNotClamped)
{
    EXPECT_EQ(smooth_inter(2, 10, 1.5F), 2);   // the weight is 0
    EXPECT_EQ(smooth_inter(2, 10, 2), -30);    // -4
    EXPECT_EQ(smooth_inter(2, 10, -0.5F), 10); // 1
    EXPECT_EQ(smooth_inter(2, 10, -1), 42);    // 5
    EXPECT_TRUE(std::isnan(smooth_inter(2, 10, kFloatNaN)));
}

TEST(SmoothInter, RoundsEachStepToAFloat)
{
    // Fusing, or any other order of the products, would change the last bit.
    EXPECT_EQ(smooth_inter(0.03F, 0.21F, 0.26F), 0x1.ecf78cp-5F);
    EXPECT_EQ(smooth_inter(0.22F, 0.90F, 0.90F), 0x1.c30d2cp-1F);
    EXPECT_EQ(smooth_inter(0.77F, 0.93F, 0.95F), 0x1.db90ecp-1F);
}

TEST(Noise2d, IsTheLatticeValueAtWholeCoordinates)
{
    EXPECT_EQ(noise2d(0, 0), 42);
    for (std::int32_t y = -300; y < 300; y += 3) {
        for (std::int32_t x = -300; x < 300; ++x)
            ASSERT_EQ(noise2d(asFloat(x), asFloat(y)), asFloat(noise2(x, y))) << x << " " << y;
    }
    EXPECT_EQ(noise2d(-0.0F, -0.0F), 42);
}

TEST(Noise2d, InterpolatesTheFourValuesAroundAPoint)
{
    EXPECT_EQ(noise2d(0.5F, 0.5F), (42 + 30 + 234 + 163) / 4.0F);
    EXPECT_EQ(noise2d(12.25F, 7.75F), 0x1.a77ap+6F);
    EXPECT_EQ(noise2d(300.3F, 511.9F), 0x1.257286p+5F);
}

TEST(Noise2d, AppliesItsFormulaToNegativeFractionsUnchanged)
{
    // -0.5 is truncated to column 0 with a fraction of -0.5, whose weight is 1.
    EXPECT_EQ(noise2d(-0.5F, 0), asFloat(noise2(1, 0)));
    EXPECT_EQ(noise2d(0, -0.5F), asFloat(noise2(0, 1)));
    EXPECT_EQ(noise2d(-7.5F, 3), asFloat(noise2(-6, 3)));
    EXPECT_EQ(noise2d(-0.75F, 0), 42 + 2.53125F * (30 - 42));
    // Beyond the values of the lattice, below and above.
    EXPECT_EQ(noise2d(-0.99F, 0), -0x1.0921e8p+4F);
    EXPECT_EQ(noise2d(-3.9F, -2.8F), 0x1.326ea8p+10F);
}

TEST(Noise2d, TreatsCoordinatesBeyondTheIntegerRangeAsZero)
{
    for (const float beyond : {0x1p31F, -0x1p31F, 0x1.8p40F, -0x1.234p90F, kFloatInfinity, -kFloatInfinity,
             kFloatNaN, std::numeric_limits<float>::max(), std::numeric_limits<float>::lowest()}) {
        EXPECT_EQ(noise2d(beyond, beyond), 42) << beyond;
        EXPECT_EQ(noise2d(beyond, 1.5F), noise2d(0, 1.5F)) << beyond;
        EXPECT_EQ(noise2d(1.5F, beyond), noise2d(1.5F, 0)) << beyond;
    }
}

TEST(Noise2d, WrapsLargeCoordinatesInTheIntegerRange)
{
    const float largest = 0x1.fffffep30F; // 2147483520, a multiple of 128
    EXPECT_EQ(noise2d(largest, largest), asFloat(noise2(128, 128)));
    EXPECT_EQ(noise2d(-largest, 0), asFloat(noise2(128, 0)));
    EXPECT_EQ(noise2d(16777217.0F * 3, 0), asFloat(noise2(50331648 % 256, 0)));
}

TEST(Perlin2d, WithoutLayersIsNaN)
{
    EXPECT_TRUE(std::isnan(perlin2d(1, 2, 3, 0)));
    EXPECT_TRUE(std::isnan(perlin2d(1, 2, 3, -1)));
    EXPECT_TRUE(std::isnan(perlin2d(1, 2, 3, kLeastSeed)));
}

TEST(Perlin2d, IsNoiseDividedBy256WithOneLayer)
{
    EXPECT_EQ(perlin2d(0, 0, 1, 1), 42 / 256.0F);
    EXPECT_EQ(perlin2d(0.5F, 0.25F, 1, 1), noise2d(0.5F, 0.25F) / 256);
    EXPECT_EQ(perlin2d(3, 5, 0.25F, 1), noise2d(0.75F, 1.25F) / 256);
}

TEST(Perlin2d, SumsLayersOfTwiceTheFrequencyAndHalfTheWeight)
{
    EXPECT_EQ(perlin2d(3, 5, 0.5F, 2), (noise2d(1.5F, 2.5F) + noise2d(3, 5) / 2) / (256 + 128));
    EXPECT_EQ(perlin2d(0, 0, 1, 4), 42 / 256.0F); // of the same lattice point four times
    EXPECT_EQ(perlin2d(10, 20, 0.05F, 3), 0x1.74p-1F);
}

TEST(Perlin2d, HasTheSameBitsOnEveryMachine)
{
    EXPECT_EQ(perlin2d(3.7F, 9.1F, 0.13F, 6), 0x1.69498ep-1F);
    EXPECT_EQ(perlin2d(1234.5F, 777.25F, 0.37F, 8), 0x1.5dff2p-1F);
    EXPECT_EQ(perlin2d(-3.3F, 4.4F, 0.9F, 4), -0x1.089c72p-3F);
}

TEST(Perlin2d, MatchesTheReferenceBitForBitAndStaysBelowOne)
{
    std::mt19937 random(31);
    std::uniform_real_distribution<float> coordinate(0, 3000);
    std::uniform_real_distribution<float> frequency(0, 2);
    for (int i = 0; i < 20'000; ++i) {
        const float x = coordinate(random), y = coordinate(random), freq = frequency(random);
        const std::int32_t depth = 1 + i % 12;
        const float value = perlin2d(x, y, freq, depth);
        ASSERT_EQ(std::bit_cast<std::uint32_t>(value),
            std::bit_cast<std::uint32_t>(plainPerlin2d(x, y, freq, depth)))
            << x << " " << y << " " << freq << " " << depth;
        ASSERT_GE(value, 0);
        ASSERT_LE(value, 255 / 256.0F);
    }
}

TEST(Perlin2d, IgnoresLayersWithoutWeight)
{
    for (const float column : {0.3F, -17.9F, 100.7F}) {
        const float all = perlin2d(column, 0.4F, 1, 150);
        EXPECT_EQ(perlin2d(column, 0.4F, 1, 151), all);
        EXPECT_EQ(perlin2d(column, 0.4F, 1, 100'000), all);
        EXPECT_EQ(perlin2d(column, 0.4F, 1, kGreatestSeed), all); // and returns quickly
    }
}

TEST(Perlin2d, AcceptsAnyFloats)
{
    EXPECT_EQ(perlin2d(kFloatNaN, kFloatInfinity, 1, 4), 42 / 256.0F);
    EXPECT_EQ(perlin2d(1, 2, kFloatNaN, 4), 42 / 256.0F);
    EXPECT_EQ(perlin2d(0, 0, kFloatInfinity, 4), 42 / 256.0F); // 0 times infinity
    EXPECT_EQ(perlin2d(-kFloatInfinity, -1e38F, 1e10F, 4), 42 / 256.0F);
    // Coordinates that overflow to infinity in later layers.
    EXPECT_EQ(perlin2d(1e38F, 1e38F, 1, 10), 42 / 256.0F);
}
