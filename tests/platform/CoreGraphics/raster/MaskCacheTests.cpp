#include "CoreGraphics/raster/MaskCache.h"
#include "support/AllocationCounter.h"

#include <gtest/gtest.h>
#include <thread>

namespace {

/// A row of four pixels, 10 to the right of the origin.
MaskView row(const unsigned char (&coverages)[4], PixelPoint origin = {})
{
    return {{origin.x + 10, origin.y, origin.x + 14, origin.y + 1}, coverages, 4};
}

/// Requests a key and returns whether its mask was drawn.
bool isDrawn(MaskCache& cache, std::string_view key)
{
    static constexpr unsigned char kCoverages[4]{1, 2, 3, 4};
    bool isDrawn = false;
    cache.mask(key, {}, [&] {
        isDrawn = true;
        return row(kCoverages);
    });
    return isDrawn;
}

std::string keyOf(int number)
{
    return "key " + std::to_string(number);
}

} // namespace

TEST(MaskCache, CachesAMaskFromItsSecondRequestOn)
{
    MaskCache cache(100'000);
    EXPECT_TRUE(isDrawn(cache, "a"));
    EXPECT_EQ(cache.byteCount(), 0U);
    EXPECT_TRUE(isDrawn(cache, "a"));
    EXPECT_GT(cache.byteCount(), 0U);
    EXPECT_FALSE(isDrawn(cache, "a"));
    EXPECT_FALSE(isDrawn(cache, "a"));
}

TEST(MaskCache, DoesWithoutAMaskAtTheFirstRequestIfTheCallerCan)
{
    MaskCache cache(100'000);
    static constexpr unsigned char kCoverages[4]{1, 2, 3, 4};
    int drawn = 0;
    const auto request = [&] {
        return cache.repeatedMask("a", {}, [&] {
            ++drawn;
            return row(kCoverages);
        });
    };
    EXPECT_FALSE(request());
    EXPECT_EQ(drawn, 0);
    const auto second = request();
    ASSERT_TRUE(second);
    EXPECT_EQ(second->view.data, kCoverages);
    EXPECT_EQ(drawn, 1);
    const auto third = request();
    ASSERT_TRUE(third);
    EXPECT_TRUE(third->owner);
    EXPECT_EQ(drawn, 1);
}

TEST(MaskCache, ComparesAllBytesOfKeys)
{
    MaskCache cache(100'000);
    const std::string_view keys[]{"", std::string_view("\0", 1), std::string_view("a\0", 2),
        std::string_view("a\0b", 3), std::string_view("a\0c", 3)};
    for (const std::string_view key : keys) {
        EXPECT_TRUE(isDrawn(cache, key));
        EXPECT_TRUE(isDrawn(cache, key));
    }
    for (const std::string_view key : keys)
        EXPECT_FALSE(isDrawn(cache, key));
}

TEST(MaskCache, ReturnsTheDrawnOrTheCachedMask)
{
    MaskCache cache(100'000);
    static constexpr unsigned char kCoverages[4]{1, 2, 3, 4};
    for (const bool isKept : {false, false, true}) {
        const MaskRef borrowed = cache.mask("a", {}, [] { return row(kCoverages); });
        EXPECT_EQ(borrowed.owner != nullptr, isKept);
        EXPECT_EQ(borrowed.view.data != kCoverages, isKept);
        EXPECT_EQ(borrowed.view.area, (PixelRect{10, 0, 14, 1}));
        EXPECT_EQ(std::string_view(reinterpret_cast<const char*>(borrowed.view.data), 4), "\1\2\3\4");
    }
}

TEST(MaskCache, TranslatesMasksToTheRequestedOrigin)
{
    MaskCache cache(100'000);
    static constexpr unsigned char kCoverages[4]{1, 2, 3, 4};
    const auto draw = [] { return row(kCoverages, {100, 200}); };
    cache.mask("a", {100, 200}, draw);
    cache.mask("a", {100, 200}, draw);
    const MaskRef borrowed = cache.mask("a", {-7, 5}, draw);
    EXPECT_EQ(borrowed.view.area, (PixelRect{3, 5, 7, 6}));
    EXPECT_EQ(*borrowed.view.pixel(4, 5), 2);
}

TEST(MaskCache, CropsEmptyBorders)
{
    MaskCache cache(100'000);
    static constexpr unsigned char kCoverages[]{
        0, 0, 0, 0, 0, 0, 0, 0, //
        0, 0, 7, 0, 0, 0, 0, 0, //
        0, 0, 0, 0, 0, 0, 0, 0, //
        0, 9, 0, 0, 0, 8, 0, 0, //
        0, 0, 0, 0, 0, 0, 0, 0, //
    };
    const auto draw = [] { return MaskView{{0, 0, 8, 5}, kCoverages, 8}; };
    cache.mask("a", {}, draw);
    cache.mask("a", {}, draw);
    const MaskView view = cache.mask("a", {}, draw).view;
    EXPECT_EQ(view.area, (PixelRect{1, 1, 6, 4}));
    EXPECT_EQ(view.bytesPerRow, 8);
    EXPECT_EQ(*view.pixel(2, 1), 7);
    EXPECT_EQ(*view.pixel(1, 2), 0);
    EXPECT_EQ(*view.pixel(1, 3), 9);
    EXPECT_EQ(*view.pixel(5, 3), 8);

    static constexpr unsigned char kNone[4]{};
    for (int time = 0; time < 3; ++time)
        EXPECT_EQ(cache.mask("b", {}, [] { return row(kNone); }).view.area.isEmpty(), time == 2);
}

TEST(MaskCache, EvictsTheLeastRecentlyUsed)
{
    // The bytes of one entry; all keys have the same length.
    MaskCache first(100'000);
    isDrawn(first, keyOf(100));
    isDrawn(first, keyOf(100));
    const std::size_t size = first.byteCount();

    MaskCache cache(3 * size);
    for (const int number : {101, 102, 103}) {
        isDrawn(cache, keyOf(number));
        isDrawn(cache, keyOf(number));
    }
    EXPECT_EQ(cache.byteCount(), 3 * size);
    EXPECT_FALSE(isDrawn(cache, keyOf(101)));
    isDrawn(cache, keyOf(104));
    isDrawn(cache, keyOf(104));
    EXPECT_EQ(cache.byteCount(), 3 * size);
    EXPECT_FALSE(isDrawn(cache, keyOf(101)));
    EXPECT_FALSE(isDrawn(cache, keyOf(103)));
    EXPECT_FALSE(isDrawn(cache, keyOf(104)));
    EXPECT_TRUE(isDrawn(cache, keyOf(102)));
}

TEST(MaskCache, CachesNothingLargerThanItsCapacity)
{
    MaskCache cache(1000);
    isDrawn(cache, "a");
    isDrawn(cache, "a");
    const std::string large(1000, 'x');
    for (int time = 0; time < 3; ++time)
        EXPECT_TRUE(isDrawn(cache, large));
    EXPECT_FALSE(isDrawn(cache, "a")) << "nothing had to go for it";
}

TEST(MaskCache, MaskRefsStayValidAfterEviction)
{
    MaskCache cache(600);
    static constexpr unsigned char kCoverages[4]{1, 2, 3, 4};
    const auto draw = [] { return row(kCoverages); };
    cache.mask("a", {}, draw);
    cache.mask("a", {}, draw);
    const MaskRef borrowed = cache.mask("a", {}, draw);
    for (int number = 0; number < 10; ++number) {
        isDrawn(cache, keyOf(number));
        isDrawn(cache, keyOf(number));
    }
    EXPECT_TRUE(isDrawn(cache, "a"));
    EXPECT_EQ(*borrowed.view.pixel(12, 0), 3);
}

TEST(MaskCache, LooksUpWithoutAllocating)
{
    MaskCache cache(100'000);
    const std::string key(300, 'k');
    isDrawn(cache, key);
    isDrawn(cache, key);
    const AllocationCounter allocations;
    EXPECT_FALSE(isDrawn(cache, key));
    EXPECT_EQ(allocations.count(), 0U);
}

TEST(MaskCache, IsThreadSafe)
{
    MaskCache cache(2000); // less than the keys need
    const auto ask = [&cache] {
        for (int i = 0; i < 2000; ++i) {
            const auto number = static_cast<unsigned char>(i % 20 + 1);
            const unsigned char coverages[4]{number, number, number, number};
            const MaskRef borrowed = cache.mask(keyOf(number), {}, [&] {
                return MaskView{{0, 0, 4, 1}, coverages, 4};
            });
            ASSERT_EQ(*borrowed.view.pixel(3, 0), number);
        }
    };
    std::thread others[]{std::thread(ask), std::thread(ask), std::thread(ask)};
    ask();
    for (std::thread& other : others)
        other.join();
    EXPECT_LE(cache.byteCount(), 2000U);
}
