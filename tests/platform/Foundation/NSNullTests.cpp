#include <Foundation/Foundation.h>

#include <gtest/gtest.h>

namespace {

std::string text(const NSObject& object)
{
    return object.description().UTF8String();
}

} // namespace

TEST(NSNull, IsOneObject)
{
    EXPECT_EQ(NSNull::null(), NSNull::null());
    EXPECT_EQ(text(*NSNull::null()), "<null>");
}
