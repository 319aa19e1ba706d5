#include "BuiltPath.h"
#include "support/Describe.h"

#include <Foundation/Foundation.h>
#include <KorvidAppKit/ZRPath.h>

#include <cstdio>
#include <gtest/gtest.h>
#include <random>
#include <vector>

TEST(ZRPathJSON, WritesAStripAsOneFlatArray)
{
    EXPECT_EQ(builtPath({{0, 0}, {3, 4}})->lineStripsJSON(), "[\n [0.00,0.00,0.00,3.00,4.00,5.00]\n]\n");
}

TEST(ZRPathJSON, OfAnUnbuiltOrEmptyPathHasNoStrips)
{
    const CGPoint points[] = {{0, 0}, {3, 4}};
    EXPECT_EQ(ZRPath::pathWithPts(points, 2)->lineStripsJSON(), "[\n]\n");
    EXPECT_EQ(builtPath({})->lineStripsJSON(), "[\n]\n");
}

TEST(ZRPathJSON, RoundsToTwoDecimals)
{
    EXPECT_EQ(builtPath({{-0.004, 0.125}, {1234567.886, 0.125}})->lineStripsJSON(),
        "[\n [-0.00,0.12,0.00,1234567.89,0.12,1234567.89]\n]\n");
}

TEST(ZRPathJSON, WritesEveryNumberLikePrintf)
{
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> mantissa(-10, 10);
    std::uniform_int_distribution<int> exponent(-8, 300);
    std::vector<CGPoint> points;
    std::string expected = "[\n [";
    for (int i = 0; i < 200; ++i)
        points.push_back({std::ldexp(mantissa(random), exponent(random)), mantissa(random)});
    const auto path = builtPath(points);
    const auto strips = path->lineStripsDict();
    for (const auto& number : static_cast<NSArray&>(*strips->objectAtIndex(0))) {
        char text[400];
        std::snprintf(text, sizeof text, "%0.2f,", static_cast<NSNumber&>(*number).doubleValue());
        expected += text;
    }
    expected.back() = ']';
    EXPECT_EQ(path->lineStripsJSON(), NSString(expected + "\n]\n"));
}

TEST(ZRPathJSON, SkipsStripsOfOnePoint)
{
    const auto source = adopt(CGPathCreateMutable());
    CGPathMoveToPoint(source, nullptr, 7, 7);
    CGPathMoveToPoint(source, nullptr, 0, 0);
    CGPathAddLineToPoint(source, nullptr, 1, 0);
    CGPathMoveToPoint(source, nullptr, 8, 8);
    const auto path = ZRPath::pathWithCGPath(source);
    path->build();
    EXPECT_EQ(path->lineStripsJSON(), "[\n [0.00,0.00,0.00,1.00,0.00,1.00]\n]\n");
    EXPECT_EQ(path->lineStripsDict()->count(), 1U);
}

TEST(ZRPathDict, HoldsTheNumbersInFullPrecision)
{
    const double third = 1.0 / 3;
    const auto path = builtPath({{0, third}, {0, 1}});
    const auto strips = path->lineStripsDict();
    ASSERT_EQ(strips->count(), 1U);
    const auto* numbers = dynamic_cast<NSArray*>(strips->objectAtIndex(0));
    ASSERT_TRUE(numbers);
    const double expected[] = {0, third, 0, 0, 1, 1 - third};
    ASSERT_EQ(numbers->count(), 6U);
    for (NSUInteger i = 0; i < 6; ++i) {
        const auto* number = dynamic_cast<NSNumber*>(numbers->objectAtIndex(i));
        ASSERT_TRUE(number);
        EXPECT_EQ(number->kind(), NSNumber::Kind::Double);
        EXPECT_EQ(number->doubleValue(), expected[i]) << i;
    }
}

TEST(ZRPathDict, OfAnUnbuiltOrEmptyPathIsEmpty)
{
    EXPECT_EQ(make<ZRPath>()->lineStripsDict()->count(), 0U);
    EXPECT_EQ(builtPath({})->lineStripsDict()->count(), 0U);
}
