#include "support/AllocationCounter.h"

#include <AppKit/NSStringAttributes.h>

#include <gtest/gtest.h>

TEST(NSStringAttributes, HaveTheFrameworksNames)
{
    EXPECT_EQ(NSFontAttributeName, "NSFont");
    EXPECT_EQ(NSForegroundColorAttributeName, "NSColor");
    EXPECT_EQ(NSKernAttributeName, "NSKern");
    EXPECT_EQ(NSParagraphStyleAttributeName, "NSParagraphStyle");
}

TEST(NSStringAttributes, AreLookedUpWithoutAllocating)
{
    const auto attributes = make<NSDictionary>(
        NSDictionary::Map{{NSParagraphStyleAttributeName, make<NSObject>()}, {"NSKern", make<NSObject>()}});
    const AllocationCounter counter;
    EXPECT_NE(attributes->objectForKey(NSParagraphStyleAttributeName), nullptr);
    EXPECT_NE(attributes->objectForKey(NSKernAttributeName), nullptr);
    EXPECT_EQ(attributes->objectForKey(NSFontAttributeName), nullptr);
    EXPECT_EQ(counter.count(), 0U);
}
