#include "BoxBlurPixels.h"
#include "support/AllocationCounter.h"

#include <KorvidAppKit/ZRAngularGradient.h>
#include <KorvidAppKit/ZRNoise.h>

// Wherever an allocation on the calling thread fails, the result is null or, for work that can use less
// memory, unchanged.

namespace {

std::vector<std::uint8_t> bytesOf(CGImageRef image)
{
    const auto data = CGDataProviderCopyData(CGImageGetDataProvider(image));
    const auto* const first = static_cast<const std::uint8_t*>(data->bytes());
    return {first, first + data->length()};
}

/// Calls `make` with increasing memory until it succeeds: each result must be null or the complete one.
template <class Make> void expectNullOrTheSame(const Make& make)
{
    if (!AllocationFailure::isAvailable())
        GTEST_SKIP() << "allocations cannot be made to fail in this build";
    const auto expected = bytesOf(adopt(make()).get());
    for (std::size_t count = 0, isEnough = 0; !isEnough; ++count) {
        SCOPED_TRACE(count);
        RetainPtr<CGImage> image;
        {
            const auto failure = AllocationFailure::after(count);
            image = adopt(make());
            isEnough = !failure.hasHappened();
        }
        if (isEnough) {
            ASSERT_TRUE(image);
        }
        if (image) {
            ASSERT_EQ(bytesOf(image.get()), expected);
        }
    }
}

/// For `make` of an image of 600 x 500 pixels.
template <class Make> void expectNullWithoutMemoryForPixels(const Make& make)
{
    if (!AllocationFailure::isAvailable())
        GTEST_SKIP() << "allocations cannot be made to fail in this build";
    for (const std::size_t most : {100'000U, 250'000U, 400'000U}) {
        const auto failure = AllocationFailure::ofMoreThan(most);
        EXPECT_EQ(make(), nullptr) << most;
    }
}

} // namespace

TEST(OutOfMemory, AnglesAreNull)
{
    expectNullOrTheSame([] { return ZRCreateAngularGradientImage(true, 20, 16, 0); });
}

TEST(OutOfMemory, LargeAnglesAreNull)
{
    expectNullOrTheSame([] { return ZRCreateAngularGradientImage(true, 1024, 1024, 0); });
}

TEST(OutOfMemory, AnglesWithARingAreNullWithoutMemoryForPixels)
{
    expectNullWithoutMemoryForPixels([] { return ZRCreateAngularGradientImage(true, 600, 500, 4); });
}

TEST(OutOfMemory, ABlurIsNullWithoutMemoryForPixels)
{
    std::mt19937 random(1);
    const auto image = makeBlurImage(randomBlurPixels(600, 500, random), kCGImageAlphaPremultipliedLast);
    expectNullWithoutMemoryForPixels([&] { return ZRCreateBoxBlurredImage(image.get(), 3); });
}

TEST(OutOfMemory, NoiseIsComputedWithoutWorkerThreads)
{
    if (!AllocationFailure::isAvailable())
        GTEST_SKIP() << "allocations cannot be made to fail in this build";
    constexpr std::size_t kSide = 1024;
    std::vector<float> samples(kSide * kSide), expected = samples;
    const auto fill = [](std::vector<float>& image) {
        ZRFillPerlinNoise(image.data(), kSide, kSide, kSide, 0, 0, 0.1F, 1, 4);
    };
    fill(expected);
    for (std::size_t count = 0, isEnough = 0; !isEnough; ++count) {
        std::fill(samples.begin(), samples.end(), 0.0F);
        {
            const auto failure = AllocationFailure::after(count);
            fill(samples);
            isEnough = !failure.hasHappened();
        }
        ASSERT_EQ(samples, expected) << count;
    }
}
