#include "BoxBlurPixels.h"
#include "support/EachVectorUnit.h"

#include <KorvidAppKit/ZRGraphics.h>

#include <algorithm>
#include <limits>

// Running sums match the direct blur where that is fast enough, otherwise sums that are computed in another
// way.

namespace {

constexpr int kGreatest = std::numeric_limits<int>::max();

BoxBlurPixels blurredByRunningSums(const BoxBlurPixels& pixels, int boxDim)
{
    return blurPixelsOf(adopt(ZRCreateBoxBlurredImage(makeBlurImage(pixels).get(), boxDim)).get());
}

/// How often the box around each position contains each position: a row of `size` counts for each.
std::vector<std::uint32_t> weights(std::int64_t size, std::int64_t boxDim)
{
    std::vector<std::uint32_t> result;
    for (std::int64_t at = 0; at < size; ++at) {
        const std::int64_t first = at - boxDim / 2, end = first + boxDim;
        for (std::int64_t place = 0; place < size; ++place) {
            // The positions clamped to this one: itself, and all beyond it if it is the first or last.
            const std::int64_t from = place == 0 ? first : std::max(first, place);
            const std::int64_t to = place == size - 1 ? end : std::min(end, place + 1);
            result.push_back(static_cast<std::uint32_t>(std::max<std::int64_t>(to - from, 0)));
        }
    }
    return result;
}

/// A reference for boxes of any size on small images: each source pixel times its count in the box.
BoxBlurPixels blurredByWeights(const BoxBlurPixels& pixels, int boxDim)
{
    const auto columns = weights(pixels.width, boxDim), rows = weights(pixels.height, boxDim);
    const auto area = static_cast<std::uint32_t>(boxDim) * static_cast<std::uint32_t>(boxDim);
    auto result = makeBlurPixels(pixels.width, pixels.height);
    for (std::uint32_t y = 0; y < pixels.height; ++y) {
        for (std::uint32_t x = 0; x < pixels.width; ++x) {
            for (int shift = 0; shift < 32; shift += 8) {
                std::uint32_t sum = 0;
                for (std::uint32_t yy = 0; yy < pixels.height; ++yy) {
                    for (std::uint32_t xx = 0; xx < pixels.width; ++xx)
                        sum += (pixels.values[yy * pixels.width + xx] >> shift & 0xFF)
                            * rows[y * pixels.height + yy] * columns[x * pixels.width + xx];
                }
                result.values[y * pixels.width + x] |= (sum / area & 0xFF) << shift;
            }
        }
    }
    return result;
}

/// A reference for large images and moderate boxes, by a summed-area table.
BoxBlurPixels blurredByTable(const BoxBlurPixels& pixels, int boxDim)
{
    const std::int64_t width = pixels.width, height = pixels.height, before = boxDim / 2;
    const std::int64_t stride = width + boxDim;
    auto result = makeBlurPixels(pixels.width, pixels.height);
    std::vector<std::uint64_t> table(static_cast<std::size_t>(stride * (height + boxDim)));
    for (int shift = 0; shift < 32; shift += 8) {
        for (std::int64_t y = 1; y < height + boxDim; ++y) {
            const std::int64_t row = std::clamp<std::int64_t>(y - 1 - before, 0, height - 1) * width;
            std::uint64_t sum = 0;
            for (std::int64_t x = 1; x < stride; ++x) {
                const std::int64_t column = std::clamp<std::int64_t>(x - 1 - before, 0, width - 1);
                sum += pixels.values[static_cast<std::size_t>(row + column)] >> shift & 0xFF;
                table[static_cast<std::size_t>(y * stride + x)] =
                    table[static_cast<std::size_t>((y - 1) * stride + x)] + sum;
            }
        }
        const auto at = [&](std::int64_t x, std::int64_t y) {
            return table[static_cast<std::size_t>(y * stride + x)];
        };
        const auto area = static_cast<std::uint64_t>(boxDim) * static_cast<std::uint64_t>(boxDim);
        for (std::int64_t y = 0; y < height; ++y) {
            for (std::int64_t x = 0; x < width; ++x) {
                const std::uint64_t sum =
                    at(x + boxDim, y + boxDim) - at(x, y + boxDim) - at(x + boxDim, y) + at(x, y);
                result.values[static_cast<std::size_t>(y * width + x)] |=
                    static_cast<std::uint32_t>(sum / area) << shift;
            }
        }
    }
    return result;
}

void expectRunningSumsToFollowTheRule()
{
    std::mt19937 random(11);
    for (int i = 0; i < 60; ++i) {
        const auto pixels = randomBlurPixels(1 + random() % 70, 1 + random() % 20, random);
        const int n = 1 + static_cast<int>(random() % (i % 3 == 0 ? 140 : 20));
        ASSERT_EQ(firstBlurDifference(blurredByRunningSums(pixels, n), blurredDirectly(pixels, n)), "")
            << pixels.width << " x " << pixels.height << ", " << n;
    }
}

} // namespace

TEST(RunningBoxBlur, MatchesTheDirectBlurForEverySmallImage)
{
    std::mt19937 random(5);
    for (std::uint32_t width = 1; width <= 9; ++width) {
        for (std::uint32_t height = 1; height <= 9; ++height) {
            for (int n = -2; n <= 24; ++n) {
                const auto pixels = randomBlurPixels(width, height, random);
                ASSERT_EQ(
                    firstBlurDifference(blurredByRunningSums(pixels, n), blurredDirectly(pixels, n)), "")
                    << width << " x " << height << ", " << n;
            }
        }
    }
}

TEST(RunningBoxBlur, MatchesTheDirectBlurForEverySizeOfBox)
{
    std::mt19937 random(6);
    const auto pixels = randomBlurPixels(23, 18, random);
    for (int n = 1; n <= 150; ++n)
        ASSERT_EQ(firstBlurDifference(blurredByRunningSums(pixels, n), blurredDirectly(pixels, n)), "") << n;
    const auto few = randomBlurPixels(3, 2, random);
    for (const int n : {255, 256, 257, 258, 1000, 2896, 2901, 2902})
        ASSERT_EQ(firstBlurDifference(blurredByRunningSums(few, n), blurredDirectly(few, n)), "") << n;
}

TEST(RunningBoxBlur, MatchesTheDirectBlurOnEachVectorUnit)
{
    onEachVectorUnit(expectRunningSumsToFollowTheRule);
}

TEST(RunningBoxBlur, OfWhiteIsWhiteUpToTheLastSumThatFits)
{
    const auto white = makeBlurPixels(6, 5, 0xFFFFFFFF);
    for (const int n : {1, 63, 64, 65, 128, 129, 2895, 2896, 2901, 4104})
        EXPECT_EQ(blurredByRunningSums(white, n), white) << n;
    EXPECT_EQ(blurredByRunningSums(white, 4105), makeBlurPixels(6, 5));
}

TEST(RunningBoxBlur, WrapsAroundLikeTheDirectBlur)
{
    std::mt19937 random(7);
    for (const int n : {4104, 4105, 5000}) {
        const auto pixels = randomBlurPixels(2, 1, random);
        EXPECT_EQ(firstBlurDifference(blurredByRunningSums(pixels, n), blurredDirectly(pixels, n)), "") << n;
    }
}

TEST(RunningBoxBlur, WrapsSumsAndSquaresAroundAt32Bits)
{
    std::mt19937 random(8);
    for (const int n : {4104, 4105, 5803, 5804, 46340, 46341, 65535, 65537, 92681, 92682, 131071, 131073,
             1 << 24, 0x55555555, kGreatest - 1, kGreatest}) {
        if (static_cast<std::uint32_t>(n) * static_cast<std::uint32_t>(n) == 0)
            continue;
        for (int i = 0; i < 20; ++i) {
            const auto pixels = randomBlurPixels(1 + random() % 20, 1 + random() % 7, random);
            ASSERT_EQ(firstBlurDifference(blurredByRunningSums(pixels, n), blurredByWeights(pixels, n)), "")
                << pixels.width << " x " << pixels.height << ", " << n;
        }
    }
    for (int i = 0; i < 200; ++i) {
        const int n = 1 + static_cast<int>(random() % kGreatest);
        if (n % 65536 == 0)
            continue;
        const auto pixels = randomBlurPixels(1 + random() % 9, 1 + random() % 9, random);
        ASSERT_EQ(firstBlurDifference(blurredByRunningSums(pixels, n), blurredByWeights(pixels, n)), "") << n;
    }
}

TEST(RunningBoxBlur, IsSeamlessAcrossTiles)
{
    std::mt19937 random(9);
    const struct {
        std::uint32_t width, height;
        std::vector<int> boxes;
    } images[] = {
        {512, 513, {1, 2, 15, 64, 65}}, // one row too many for a single tile
        {1037, 700, {1, 4, 51, 64, 65, 200, 1500}}, {3001, 130, {1, 2, 7, 64, 300}},
        {90, 3100, {3, 16, 65, 1000}},
        {1501, 1403, {15, 70}}, // large enough to bypass the caches, rows not aligned for it
        {1500, 1403, {15, 70}}, // aligned rows
    };
    for (const auto& image : images) {
        const auto pixels = randomBlurPixels(image.width, image.height, random);
        for (const int n : image.boxes)
            ASSERT_EQ(firstBlurDifference(blurredByRunningSums(pixels, n), blurredByTable(pixels, n)), "")
                << image.width << " x " << image.height << ", " << n;
    }
}

TEST(RunningBoxBlur, TiledConversionMatchesWholeConversion)
{
    std::mt19937 random(10);
    const auto image = makeBlurImage(randomBlurPixels(900, 610, random), kCGImageAlphaLast);
    const auto direct = adopt(ZRGraphics::sharedGraphics()->copyBoxBlurredImageFromImage(image, 3));
    const auto running = adopt(ZRCreateBoxBlurredImage(image, 3));
    EXPECT_EQ(firstBlurDifference(blurPixelsOf(running), blurPixelsOf(direct)), "");
}

// The memory of large ones is that of released ones.
TEST(RunningBoxBlur, LargeResultsShowNothingOfOthers)
{
    constexpr std::uint32_t kWidth = 1501, kHeight = 1403;
    const auto white = makeBlurPixels(kWidth, kHeight, 0xFFFFFFFF), clear = makeBlurPixels(kWidth, kHeight);
    std::mt19937 random(11);
    const auto noise = randomBlurPixels(kWidth, kHeight, random), blurredNoise = blurredByTable(noise, 15);
    for (int round = 0; round < 2; ++round) {
        const auto image = adopt(ZRCreateBoxBlurredImage(makeBlurImage(white).get(), 15));
        const auto other = adopt(ZRCreateBoxBlurredImage(makeBlurImage(noise).get(), 15));
        EXPECT_EQ(firstBlurDifference(blurPixelsOf(image.get()), white), "");
        EXPECT_EQ(firstBlurDifference(blurPixelsOf(other.get()), blurredNoise), "");
        EXPECT_EQ(firstBlurDifference(blurredByRunningSums(white, -1), clear), "");
    }
}
