#include "ContextFuzz.h"

#include <CoreGraphics/CoreGraphics.h>
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

// The fuzzer found it: strokes end 4 million units from the origin, outlines had dashes all the way.
TEST(CGContextReplacePathWithStrokedPath, OutlinesLinesWithTooManyDashesAsSolid)
{
    const auto context = adopt(CGBitmapContextCreate(nullptr, 4, 4, 8, 0, nullptr, kCGImageAlphaOnly));
    const CGFloat dashes[] = {1, 1};
    CGContextSetLineDash(context, 0, dashes, 2);
    CGContextMoveToPoint(context, 0, 0);
    CGContextAddLineToPoint(context, 1e15, 0);
    CGContextReplacePathWithStrokedPath(context);
    CGContextFillPath(context);
    const auto* row = static_cast<const std::uint8_t*>(CGBitmapContextGetData(context)) + 3 * 4;
    EXPECT_EQ(std::vector(row, row + 4), (std::vector<std::uint8_t>{128, 128, 128, 128})) << "no gap";
}
