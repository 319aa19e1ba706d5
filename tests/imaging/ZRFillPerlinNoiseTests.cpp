#include "support/EachVectorUnit.h"
#include "support/Numbers.h"

#include <KorvidAppKit/ZRNoise.h>

#include <bit>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <thread>
#include <vector>

namespace {

/// The parameters of a noise image.
struct Image {
    std::size_t width, height;
    float originX, originY, step, freq;
    std::int32_t depth;
    std::size_t padding = 0; ///< floats between the rows
};

/// The value of the floats that must not be written; no noise has these bits.
constexpr float kUntouched = -12345.5F;

std::vector<float> filled(const Image& image)
{
    const std::size_t samplesPerRow = image.width + image.padding;
    std::vector<float> samples(samplesPerRow * image.height + 1, kUntouched);
    ZRFillPerlinNoise(samples.data(), image.width, image.height, samplesPerRow, image.originX, image.originY,
        image.step, image.freq, image.depth);
    return samples;
}

/// Expects each sample to have the bits of perlin2d, and the row padding to be unchanged.
void expectPerlin2d(const Image& image)
{
    const auto samples = filled(image);
    const std::size_t samplesPerRow = image.width + image.padding;
    for (std::size_t r = 0; r < image.height; ++r) {
        for (std::size_t c = 0; c < samplesPerRow; ++c) {
            const float expected = c < image.width
                ? perlin2d(image.originX + static_cast<float>(c) * image.step,
                    image.originY + static_cast<float>(r) * image.step, image.freq, image.depth)
                : kUntouched;
            const float value = samples[r * samplesPerRow + c];
            ASSERT_EQ(std::bit_cast<std::uint32_t>(value), std::bit_cast<std::uint32_t>(expected))
                << image.width << " x " << image.height << " from " << image.originX << ", " << image.originY
                << " by " << image.step << ", frequency " << image.freq << ", depth " << image.depth
                << ": column " << c << " of row " << r << " is " << value << " and not " << expected;
        }
    }
    EXPECT_EQ(samples.back(), kUntouched);
}

/// Sizes around those of tiles and vectors, coordinates of all signs and magnitudes.
void expectPerlin2dOfRandomImages(unsigned seed)
{
    std::mt19937 random(seed);
    const auto number = [&](double low, double high) {
        return static_cast<float>(std::uniform_real_distribution<double>(low, high)(random));
    };
    const auto count = [&](std::size_t most) { return 1 + random() % most; };
    const auto magnitude = [&] { return std::exp2(number(-8, 4)); };
    for (int i = 0; i < 40; ++i) {
        const bool isWide = i % 4 == 0, isFarOff = i % 5 == 0;
        const double reach = isFarOff ? 3e9 : 600;
        const float sign = i % 3 == 0 ? -1.0F : 1.0F;
        expectPerlin2d({isWide ? count(600) : count(40), isWide ? count(6) : count(70), number(-reach, reach),
            number(-reach, reach), sign * magnitude(), magnitude(), static_cast<std::int32_t>(count(9)),
            random() % 3});
    }
}

} // namespace

class NoiseOfSeeds : public testing::TestWithParam<unsigned> { };

TEST_P(NoiseOfSeeds, IsPerlin2dBitForBit)
{
    expectPerlin2dOfRandomImages(GetParam());
}
INSTANTIATE_TEST_SUITE_P(ZRFillPerlinNoise, NoiseOfSeeds, testing::Range(0U, 25U));

TEST(ZRFillPerlinNoise, MatchesPerlin2dBitForBitOnEachVectorUnit)
{
    onEachVectorUnit([] { expectPerlin2dOfRandomImages(77); });
}

TEST(ZRFillPerlinNoise, IsSeamlessAcrossTiles)
{
    for (const std::size_t width : {1, 15, 16, 17, 255, 256, 257, 513}) {
        for (const std::size_t height : {1, 31, 32, 33, 65})
            expectPerlin2d({width, height, 3.25F, 8.5F, 0.125F, 0.7F, 3});
    }
}

TEST(ZRFillPerlinNoise, MatchesPerlin2dOnLargeImagesSplitOverThreads)
{
    expectPerlin2d({1100, 700, -20, 5, 0.0625F, 1, 4, 3});
    expectPerlin2d({700'000, 1, 0, 0, 0.01F, 1, 2}); // also a single row
    expectPerlin2d({3, 120'000, 0, 0, 0.01F, 1, 3, 2});
}

TEST(ZRFillPerlinNoise, IsThreadSafe)
{
    const Image image{600, 500, 1, 2, 0.03F, 1, 5};
    const auto expected = filled(image);
    std::vector<std::vector<float>> results(4);
    std::vector<std::thread> threads;
    threads.reserve(results.size());
    for (auto& result : results)
        threads.emplace_back([&] { result = filled(image); });
    for (auto& thread : threads)
        thread.join();
    for (const auto& result : results)
        EXPECT_EQ(result, expected);
}

TEST(ZRFillPerlinNoise, AcceptsPositiveNegativeAndZeroSteps)
{
    for (const float step : {0.25F, -0.25F, 1.0F, -1.0F, 3.0F, 0.0F, -0.0F})
        expectPerlin2d({40, 70, 30.5F, 40.25F, step, 1, 4});
}

TEST(ZRFillPerlinNoise, AcceptsAnyFloats)
{
    for (const float odd : {kFloatNaN, kFloatInfinity, -kFloatInfinity, 1e38F, -1e38F, 0x1p31F, -0x1p31F,
             0x1.fffffep30F, -0x1.fffffep30F, 1e-40F, -0.0F}) {
        expectPerlin2d({37, 35, odd, 1.5F, 0.25F, 1, 3});
        expectPerlin2d({37, 35, 1.5F, odd, 0.25F, 1, 3});
        expectPerlin2d({37, 35, 1.5F, 2.5F, odd, 1, 3});
        expectPerlin2d({37, 35, 1.5F, 2.5F, 0.25F, odd, 3});
    }
}

TEST(ZRFillPerlinNoise, MatchesPerlin2dBeyondTheIntegerRange)
{
    // Across 2^31, and across -2^31 in the other direction.
    expectPerlin2d({40, 40, 0x1.ffffe0p30F, 0x1.ffffe0p30F, 128, 1, 2});
    expectPerlin2d({40, 40, -0x1.ffffe0p30F, -0x1.ffffe0p30F, -128, 1, 2});
}

TEST(ZRFillPerlinNoise, SumsAsManyLayersAsPerlin2d)
{
    for (const std::int32_t depth : {1, 2, 30, 149, 150, 151, std::numeric_limits<std::int32_t>::max()})
        expectPerlin2d({19, 5, 3.1F, -4.7F, 0.37F, 1, depth});
}

TEST(ZRFillPerlinNoise, WithoutLayersIsNaN)
{
    for (const std::int32_t depth : {0, -1, std::numeric_limits<std::int32_t>::min()}) {
        const auto samples = filled({5, 3, 1, 1, 1, 1, depth, 2});
        for (std::size_t i = 0; i < samples.size(); ++i) {
            if (i < 21 && i % 7 < 5)
                EXPECT_TRUE(std::isnan(samples[i])) << i;
            else
                EXPECT_EQ(samples[i], kUntouched) << i;
        }
    }
}

TEST(ZRFillPerlinNoise, WritesNothingForAnEmptyImage)
{
    std::vector<float> samples(64, kUntouched);
    ZRFillPerlinNoise(nullptr, 4, 4, 4, 0, 0, 1, 1, 1);
    ZRFillPerlinNoise(samples.data(), 0, 8, 8, 0, 0, 1, 1, 1);
    ZRFillPerlinNoise(samples.data(), 8, 0, 8, 0, 0, 1, 1, 1);
    ZRFillPerlinNoise(samples.data(), 8, 8, 7, 0, 0, 1, 1, 1);
    ZRFillPerlinNoise(samples.data(), 8, 8, 7, 0, 0, 1, 1, 0);
    EXPECT_EQ(samples, std::vector<float>(64, kUntouched));
}
