#include "ContextFuzz.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

// A short run with fixed seeds; `./korvid fuzz contexts` runs for as long as it is given.
TEST(ContextFuzz, SeededBytesBreakNoPromise)
{
    std::mt19937 random(3);
    for (int run = 0; run < 3000; ++run) {
        std::vector<std::uint8_t> bytes(random() % 600);
        // Bytes from a small range make small numbers, those from the full range also huge ones and NaN.
        const auto highest = 40 + random() % 216;
        for (std::uint8_t& byte : bytes)
            byte = static_cast<std::uint8_t>(random() % highest);
        fuzzContext(bytes.data(), bytes.size());
    }
    SUCCEED();
}
