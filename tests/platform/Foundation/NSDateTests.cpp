#include "ObjectText.h"

#include <Foundation/Foundation.h>

#include <gtest/gtest.h>
#include <limits>

TEST(NSDate, CountsFromBothBeginnings)
{
    const auto date = NSDate::dateWithTimeIntervalSince1970(978307200.5);
    EXPECT_EQ(date->timeIntervalSinceReferenceDate(), 0.5);
    EXPECT_EQ(date->timeIntervalSince1970(), 978307200.5);
    EXPECT_TRUE(date->isEqual(NSDate::dateWithTimeIntervalSinceReferenceDate(0.5).get()));
    EXPECT_FALSE(date->isEqual(NSDate::dateWithTimeIntervalSinceReferenceDate(0.25).get()));
    EXPECT_EQ(text(*date), "2001-01-01 00:00:00 +0000");
    EXPECT_EQ(text(*NSDate::dateWithTimeIntervalSinceReferenceDate(-0.5)), "2000-12-31 23:59:59 +0000");
    EXPECT_EQ(text(*NSDate::dateWithTimeIntervalSinceReferenceDate(std::numeric_limits<double>::infinity())),
        "a date beyond the calendar");
}

TEST(NSDate, EqualDatesHaveEqualHashes)
{
    const auto zero = NSDate::dateWithTimeIntervalSinceReferenceDate(0.0);
    EXPECT_TRUE(zero->isEqual(NSDate::dateWithTimeIntervalSinceReferenceDate(-0.0).get()));
    EXPECT_EQ(zero->hash(), NSDate::dateWithTimeIntervalSinceReferenceDate(-0.0)->hash());
    EXPECT_FALSE(zero->isEqual(nullptr));
    EXPECT_FALSE(zero->isEqual(NSNumber::numberWithInteger(0).get()));
}
