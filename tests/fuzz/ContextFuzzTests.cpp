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

// The fuzzer found it: the outline of this stroke has corners that are not numbers.
TEST(CGContextStrokeRect, SurvivesTransformsThatOverflow)
{
    const auto context = adopt(CGBitmapContextCreate(nullptr, 31, 31, 8, 0, nullptr, kCGImageAlphaOnly));
    CGContextClipToRect(context, CGRectMake(6, 6, 15, 29));
    CGContextConcatCTM(context, {1, -1.8582684476468679e+28, -4.821533203125, 1, 5.587890625, -6.203125});
    CGContextStrokeRect(context, CGRectMake(-8.53515625, -10.54296875, 22.0859375, 0));
    const auto* bytes = static_cast<const std::uint8_t*>(CGBitmapContextGetData(context));
    for (std::size_t i = 0; i < 31 * 31; ++i) {
        const bool isClipped = i % 31 < 6 || i % 31 >= 21 || i / 31 >= 25;
        EXPECT_TRUE(bytes[i] == 0 || !isClipped) << i;
    }
}
