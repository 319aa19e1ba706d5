#include "SoakRun.h"

#include <AppKit/NSApplication.h>
#include <gtest/gtest.h>

#include <cstdlib>

namespace {

/// The number in a variable of the environment; nothing when it is not set.
std::optional<unsigned> numberInEnvironment(const char* name)
{
    const char* const text = std::getenv(name);
    return text ? std::optional(unsigned(std::strtoul(text, nullptr, 10))) : std::nullopt;
}

MemoryRecord recordOf(const std::vector<std::size_t>& samples)
{
    MemoryRecord record;
    for (const std::size_t sample : samples)
        record.add(sample);
    return record;
}

constexpr double kMostGrowth = 0.02;

} // namespace

TEST(MemoryRecord, ComparesTheLastThirdWithTheFirstAfterTheWarmUp)
{
    // A quarter of warm-up, then thirds of three: medians 100 and 110.
    const auto record = recordOf({10, 20, 30, 100, 900, 100, 105, 105, 105, 110, 110, 1});
    ASSERT_TRUE(record.isJudged());
    EXPECT_NEAR(record.growth(), 0.1, 1e-12);
}

TEST(MemoryRecord, DoesNotJudgeFewSamples)
{
    const auto record = recordOf({1, 2, 3, 4, 5, 6, 7});
    EXPECT_FALSE(record.isJudged());
    EXPECT_EQ(record.growth(), 0);
}

TEST(MemoryRecord, CountsWhatIsAllocated)
{
    const std::size_t before = heapInUse();
    const std::vector<char> large(10'000'000);
    EXPECT_GE(heapInUse(), before + large.size());
    EXPECT_LT(heapInUse(), before + large.size() + 100'000);
}

// Some hundred events among the other tests. `./korvid soak` sets the variables, and runs for as long as it
// is given; memory is judged in runs of ten minutes and more.
TEST(Soak, RandomUserOfTheGalleryCausesNoMessageAndNoGrowth)
{
    NSApplication::sharedApplication();
    const auto seconds = numberInEnvironment("KORVID_SOAK_SECONDS");
    SoakOptions options;
    options.seed = numberInEnvironment("KORVID_SOAK_SEED").value_or(1);
    options.fillsCaches = options.printsProgress = seconds.has_value();
    options.duration = std::chrono::seconds(seconds.value_or(0));
    options.actions = 600;
    options.pause = std::chrono::milliseconds(seconds ? 100 : 0);
    options.rounds = seconds ? 12 : 1;
    SoakRun soak(options);
    soak.run();

    EXPECT_EQ(soak.messages(), std::vector<std::string>{});
    EXPECT_GE(soak.actions(), options.actions);
    EXPECT_EQ(soak.pagesShown(), 2 * std::size_t(options.rounds) * GalleryPage::all().size());
    constexpr unsigned kShortestJudgedRun = 600;
    if (seconds && *seconds >= kShortestJudgedRun) {
        EXPECT_LE(soak.withoutWindow().growth(), kMostGrowth);
        EXPECT_LE(soak.withWindow().growth(), kMostGrowth);
    }
    if (seconds)
        std::fprintf(stderr, "%d events; growth %.2f %% without a window, %.2f %% with one\n", soak.actions(),
            100 * soak.withoutWindow().growth(), 100 * soak.withWindow().growth());
}
