#include "PathFuzz.h"

#include <gtest/gtest.h>
#include <random>
#include <vector>

// A short run with fixed seeds; `./korvid fuzz` runs for as long as it is given.
TEST(PathFuzz, SeededBytesBreakNoPromise)
{
    std::mt19937 random(5);
    for (int run = 0; run < 3000; ++run) {
        std::vector<std::uint8_t> bytes(random() % 400);
        // Bytes from a small range reach deeper code than those from the full range.
        const auto highest = 1 + random() % 255;
        for (std::uint8_t& byte : bytes)
            byte = static_cast<std::uint8_t>(random() % highest);
        fuzzPath(bytes.data(), bytes.size());
    }
    SUCCEED();
}
