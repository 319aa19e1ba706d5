#include "ObjectText.h"

#include <Foundation/Foundation.h>

#include <gtest/gtest.h>

TEST(NSNull, IsOneObject)
{
    EXPECT_EQ(NSNull::null(), NSNull::null());
    EXPECT_EQ(text(*NSNull::null()), "<null>");
}
