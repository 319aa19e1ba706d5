#include "TextFuzz.h"

#include <gtest/gtest.h>

// A short run with fixed seeds; `./korvid fuzz text` runs for as long as it is given.
TEST(TextFuzz, EditedTextHasItsAttributesAndStaysWithinItsBounds)
{
    std::mt19937 random(17);
    for (int run = 0; run < 700; ++run) {
        std::vector<std::uint8_t> bytes(random() % 250);
        for (std::uint8_t& byte : bytes)
            byte = static_cast<std::uint8_t>(random());
        fuzzText(bytes.data(), bytes.size());
    }
    SUCCEED();
}
