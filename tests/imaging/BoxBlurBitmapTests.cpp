#include "BoxBlurPixels.h"
#include "PlainBoxBlur.h"
#include "support/EachVectorUnit.h"

#include <cstdlib>
#include <limits>

namespace {

constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();

BoxBlurPixels blurredByTheRule(const BoxBlurPixels& pixels, std::int32_t boxDim)
{
    auto result = makeBlurPixels(pixels.width, pixels.height);
    plainBoxBlur(pixels.values.data(), result.values.data(), pixels.width, pixels.height, boxDim);
    return result;
}

/// One channel of pixels whose channels are all equal.
BoxBlurPixels gray(std::uint32_t width, std::uint32_t height, const std::vector<std::uint32_t>& bytes)
{
    BoxBlurPixels pixels{width, height, bytes};
    for (auto& value : pixels.values)
        value *= 0x01010101;
    return pixels;
}

/// FNV-1a, 64 bits.
std::uint64_t checksum(const BoxBlurPixels& pixels)
{
    std::uint64_t sum = 0xcbf29ce484222325;
    for (const std::uint32_t value : pixels.values) {
        for (int shift = 0; shift < 32; shift += 8)
            sum = (sum ^ (value >> shift & 0xFF)) * 0x100000001b3;
    }
    return sum;
}

} // namespace

TEST(BoxBlurBitmap, OfOnePixelIsACopy)
{
    std::mt19937 random(1);
    const auto pixels = randomBlurPixels(37, 21, random);
    EXPECT_EQ(firstBlurDifference(blurredDirectly(pixels, 1), pixels), "");
}

TEST(BoxBlurBitmap, OfAnImageOfOnePixelIsACopy)
{
    for (const std::uint32_t value : {0xFFFFFFFFU, 0x00000000U, 0x80FF017FU}) {
        for (std::int32_t n = 1; n <= 300; ++n)
            EXPECT_EQ(blurredDirectly(makeBlurPixels(1, 1, value), n).values[0], value) << n;
    }
}

TEST(BoxBlurBitmap, DoesNotChangeAUniformImage)
{
    for (std::uint32_t byte = 0; byte < 256; byte += 5) {
        const auto pixels = makeBlurPixels(7, 5, byte | (255 - byte) << 8 | (byte ^ 0x5A) << 16 | 0xFF000000);
        for (const std::int32_t n : {1, 2, 3, 4, 5, 15, 16, 17, 63, 64, 65, 100, 257, 258})
            EXPECT_EQ(firstBlurDifference(blurredDirectly(pixels, n), pixels), "") << n;
    }
}

TEST(BoxBlurBitmap, SpreadsABrightPixelOverTheNineAroundIt)
{
    auto pixels = gray(5, 5, std::vector<std::uint32_t>(25));
    pixels.values[12] = 0xFFFFFFFF;
    EXPECT_EQ(blurredDirectly(pixels, 3), // 255 / 9 = 28.3
        gray(5, 5,
            {
                0, 0, 0, 0, 0,    //
                0, 28, 28, 28, 0, //
                0, 28, 28, 28, 0, //
                0, 28, 28, 28, 0, //
                0, 0, 0, 0, 0,    //
            }));
}

TEST(BoxBlurBitmap, OfEvenSizeExtendsOnePixelFurtherUpAndToTheLeft)
{
    auto pixels = gray(6, 6, std::vector<std::uint32_t>(36));
    pixels.values[14] = 0xFFFFFFFF;       // column 2 of row 2
    EXPECT_EQ(blurredDirectly(pixels, 4), // x - 2 to x + 1; 255 / 16 = 15.9
        gray(6, 6,
            {
                0, 0, 0, 0, 0, 0,     //
                0, 15, 15, 15, 15, 0, //
                0, 15, 15, 15, 15, 0, //
                0, 15, 15, 15, 15, 0, //
                0, 15, 15, 15, 15, 0, //
                0, 0, 0, 0, 0, 0,     //
            }));
}

TEST(BoxBlurBitmap, RepeatsTheEdges)
{
    // From the left: (3 * 0 + 3 * 0 + 3 * 90) / 9 and so on.
    EXPECT_EQ(blurredDirectly(gray(3, 1, {0, 90, 30}), 3), gray(3, 1, {30, 40, 50}));
    EXPECT_EQ(blurredDirectly(gray(1, 3, {0, 90, 30}), 3), gray(1, 3, {30, 40, 50}));
}

TEST(BoxBlurBitmap, BlursChannelsIndependently)
{
    auto pixels = makeBlurPixels(2, 1, 0x00FF0001);
    pixels.values[1] = 0xFF010300;
    // With a 2 x 2 box the left pixel is unchanged; the right one is (1 + 0) / 2, (0 + 3) / 2, (255 + 1) / 2,
    // 255 / 2.
    EXPECT_EQ(blurredDirectly(pixels, 2), (BoxBlurPixels{2, 1, {0x00FF0001, 0x7F800100}}));
}

TEST(BoxBlurBitmap, OfNegativeSizeIsTransparent)
{
    for (const std::int32_t n : {-1, -2, -3, -65536, kLeast})
        EXPECT_EQ(blurredDirectly(makeBlurPixels(5, 3, 0x12345678), n), makeBlurPixels(5, 3)) << n;
}

TEST(BoxBlurBitmap, IsTransparentWhereTheAreaIsZero)
{
    // Squares of multiples of 65536 are 0 modulo 2^32.
    for (const std::int32_t n : {0, 65536, 2 * 65536, 32767 * 65536})
        EXPECT_EQ(blurredDirectly(makeBlurPixels(5, 3, 0x12345678), n), makeBlurPixels(5, 3)) << n;
}

TEST(BoxBlurBitmap, WithoutPixelsWritesNothing)
{
    std::uint32_t pixel = 0x12345678;
    _boxBlurBitmap(&pixel, &pixel, 0, 7, 3);
    _boxBlurBitmap(&pixel, &pixel, 7, 0, 3);
    _boxBlurBitmap(nullptr, nullptr, 0, 0, 0);
    EXPECT_EQ(pixel, 0x12345678U);
}

TEST(BoxBlurBitmap, WritesOnlyTheDestination)
{
    std::mt19937 random(2);
    const auto source = randomBlurPixels(19, 11, random);
    const auto before = source;
    std::vector<std::uint32_t> destination(19 * 11 + 2, 0xABABABAB);
    _boxBlurBitmap(source.values.data(), destination.data() + 1, 19, 11, 5);
    EXPECT_EQ(source, before);
    EXPECT_EQ(destination.front(), 0xABABABAB);
    EXPECT_EQ(destination.back(), 0xABABABAB);
}

TEST(BoxBlurBitmap, MatchesTheReferenceOnEverySmallImage)
{
    std::mt19937 random(3);
    for (std::uint32_t width = 1; width <= 9; ++width) {
        for (std::uint32_t height = 1; height <= 9; ++height) {
            for (std::int32_t n = 1; n <= 24; ++n) {
                const auto pixels = randomBlurPixels(width, height, random);
                ASSERT_EQ(firstBlurDifference(blurredDirectly(pixels, n), blurredByTheRule(pixels, n)), "")
                    << width << " x " << height << ", " << n;
            }
        }
    }
    // All combinations of nine black or white pixels.
    for (std::uint32_t bits = 0; bits < 512; ++bits) {
        auto pixels = makeBlurPixels(3, 3);
        for (std::uint32_t i = 0; i < 9; ++i)
            pixels.values[i] = bits >> i & 1 ? 0xFFFFFFFF : 0;
        for (std::int32_t n = 1; n <= 6; ++n)
            ASSERT_EQ(firstBlurDifference(blurredDirectly(pixels, n), blurredByTheRule(pixels, n)), "")
                << bits;
    }
}

TEST(BoxBlurBitmap, MatchesTheReferenceOnEachVectorUnit)
{
    onEachVectorUnit([] {
        std::mt19937 random(4);
        for (const std::uint32_t width : {1, 3, 4, 7, 8, 15, 16, 17, 31, 33, 50}) {
            for (const std::int32_t n : {1, 2, 5, 15, 16, 17, 64, 65}) {
                const auto pixels = randomBlurPixels(width, 6, random);
                ASSERT_EQ(firstBlurDifference(blurredDirectly(pixels, n), blurredByTheRule(pixels, n)), "")
                    << width << ", " << n;
            }
        }
    });
}

TEST(BoxBlurBitmap, SumsBeyond16BitsAreExact)
{
    // White makes 257 pixels fill 16 bits: rows of fewer, of just as many, and of more.
    auto pixels = makeBlurPixels(3, 2, 0xFFFFFFFF);
    pixels.values[4] = 0x7F0080FE;
    for (const std::int32_t n : {16, 128, 129, 256, 257, 258, 514, 515, 700})
        EXPECT_EQ(firstBlurDifference(blurredDirectly(pixels, n), blurredByTheRule(pixels, n)), "") << n;
}

TEST(BoxBlurBitmap, WrapsSumsAroundAt32Bits)
{
    // 255 * 4104² is the last sum of white that fits.
    const auto white = makeBlurPixels(1, 1, 0xFFFFFFFF);
    EXPECT_EQ(blurredDirectly(white, 4104).values[0], 0xFFFFFFFFU);
    // 255 * 4105² - 2^32 = 2044079, which is less than 4105².
    EXPECT_EQ(blurredDirectly(white, 4105).values[0], 0U);
    // 255 * 6000² - 2 * 2^32 = 590065408, divided by 6000²: 16.
    EXPECT_EQ(blurredDirectly(white, 6000).values[0], 0x10101010U);
    EXPECT_EQ(blurredByTheRule(white, 6000).values[0], 0x10101010U);
}

TEST(BoxBlurBitmap, ProducesTheRecordedChecksums)
{
    std::uint32_t state = 12345;
    auto pixels = makeBlurPixels(257, 131);
    for (auto& value : pixels.values)
        value = state = state * 1664525 + 1013904223;
    EXPECT_EQ(checksum(blurredDirectly(pixels, 2)), 0x820a7d44da966b8dU);
    EXPECT_EQ(checksum(blurredDirectly(pixels, 15)), 0x9fe16ca4fdc27ae3U);
    EXPECT_EQ(checksum(blurredDirectly(pixels, 64)), 0x92d5d8d626f84f4cU);
    EXPECT_EQ(checksum(blurredDirectly(pixels, 65)), 0xe9a040465b8b736bU);
}

TEST(ReleaseBMData, FreesTheData)
{
    // The leak sanitizer reports it otherwise; the first argument is unused.
    int ignored = 0;
    _ZRReleaseBMData(&ignored, std::malloc(16));
    _ZRReleaseBMData(nullptr, nullptr);
}
