#include "ObjectText.h"

#include <Foundation/Foundation.h>

#include <cmath>
#include <gtest/gtest.h>

TEST(NSNumber, RemembersItsKind)
{
    EXPECT_EQ(NSNumber::numberWithBool(true)->kind(), NSNumber::Kind::Boolean);
    EXPECT_EQ(NSNumber::numberWithInteger(1)->kind(), NSNumber::Kind::Integer);
    EXPECT_EQ(NSNumber::numberWithDouble(1)->kind(), NSNumber::Kind::Double);
}

TEST(NSNumber, ConvertsWithinItsRange)
{
    EXPECT_EQ(NSNumber::numberWithDouble(-2.9)->integerValue(), -2);
    EXPECT_EQ(NSNumber::numberWithDouble(1e300)->integerValue(), INT64_MAX);
    EXPECT_EQ(NSNumber::numberWithDouble(-1e300)->integerValue(), INT64_MIN);
    EXPECT_EQ(NSNumber::numberWithDouble(std::nan(""))->integerValue(), 0);
    EXPECT_TRUE(NSNumber::numberWithDouble(0.5)->boolValue());
    EXPECT_FALSE(NSNumber::numberWithInteger(0)->boolValue());
    EXPECT_EQ(NSNumber::numberWithBool(true)->doubleValue(), 1.0);
}

TEST(NSNumber, EqualsNumbersOfTheSameValueAcrossKinds)
{
    const auto one = NSNumber::numberWithInteger(1);
    EXPECT_TRUE(one->isEqual(NSNumber::numberWithDouble(1).get()));
    EXPECT_TRUE(one->isEqual(NSNumber::numberWithBool(true).get()));
    EXPECT_EQ(one->hash(), NSNumber::numberWithDouble(1)->hash());
    EXPECT_FALSE(one->isEqual(NSNumber::numberWithDouble(1.5).get()));
    EXPECT_FALSE(one->isEqual(nullptr));
    EXPECT_FALSE(one->isEqual(box("1").get()));
    // A double cannot hold 2^53 + 1: that integer is equal to no double.
    const auto large = NSNumber::numberWithInteger((NSInteger{1} << 53) + 1);
    EXPECT_FALSE(large->isEqual(NSNumber::numberWithDouble(9007199254740992.0).get()));
    EXPECT_FALSE(NSNumber::numberWithInteger(INT64_MAX)->isEqual(NSNumber::numberWithDouble(0x1p63).get()));
    const auto nan = NSNumber::numberWithDouble(std::nan(""));
    EXPECT_TRUE(nan->isEqual(NSNumber::numberWithDouble(std::nan("")).get()));
    EXPECT_EQ(NSNumber::numberWithDouble(-0.0)->hash(), NSNumber::numberWithDouble(0.0)->hash());
}

TEST(NSNumber, PrintsTheShortestStringThatReadsBack)
{
    EXPECT_EQ(text(*NSNumber::numberWithBool(true)), "1");
    EXPECT_EQ(text(*NSNumber::numberWithInteger(INT64_MIN)), "-9223372036854775808");
    EXPECT_EQ(text(*NSNumber::numberWithDouble(0.1)), "0.1");
}

TEST(NSNumber, PrintsExtremeDoubles)
{
    EXPECT_EQ(text(*NSNumber::numberWithDouble(1)), "1");
    EXPECT_EQ(text(*NSNumber::numberWithDouble(-0.0)), "-0");
    EXPECT_EQ(text(*NSNumber::numberWithDouble(5e-324)), "5e-324");
    EXPECT_EQ(text(*NSNumber::numberWithDouble(-1.7976931348623157e308)), "-1.7976931348623157e+308");
    EXPECT_EQ(text(*NSNumber::numberWithDouble(HUGE_VAL)), "inf");
    EXPECT_EQ(text(*NSNumber::numberWithDouble(std::nan(""))), "nan");
}

TEST(NSNumber, RoundsLargeIntegersToTheNearestDouble)
{
    EXPECT_EQ(NSNumber::numberWithInteger((NSInteger{1} << 53) + 1)->doubleValue(), 9007199254740992.0);
    EXPECT_EQ(NSNumber::numberWithInteger(INT64_MAX)->doubleValue(), 0x1p63);
}
