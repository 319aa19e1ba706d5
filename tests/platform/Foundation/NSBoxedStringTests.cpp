#include <Foundation/Foundation.h>

#include <gtest/gtest.h>

TEST(NSBoxedString, BoxesStringsAndReturnsNullForNull)
{
    EXPECT_EQ(box(nullptr), nullptr);
    EXPECT_EQ(box("a")->string(), NSString("a"));
    EXPECT_TRUE(box("a")->isEqual(box("a").get()));
    EXPECT_FALSE(box("a")->isEqual(box("b").get()));
    EXPECT_FALSE(box("1")->isEqual(NSNumber::numberWithInteger(1).get()));
    EXPECT_EQ(box("a")->hash(), box("a")->hash());
}
