#include "ObjectText.h"

#include <Foundation/Foundation.h>

#include <gtest/gtest.h>

TEST(NSError, DescribesItself)
{
    const auto plain = NSError::errorWithDomain("org.example", 5);
    EXPECT_EQ(plain->domain(), NSString("org.example"));
    EXPECT_EQ(plain->code(), 5);
    EXPECT_EQ(plain->userInfo()->count(), 0U);
    EXPECT_EQ(plain->localizedDescription(),
        NSString("The operation could not be completed. (org.example error 5.)"));
    const auto info = make<NSDictionary>(NSDictionary::Map{{NSLocalizedDescriptionKey, box("It is full")}});
    const auto told = NSError::errorWithDomain("org.example", 5, info);
    EXPECT_EQ(told->localizedDescription(), NSString("It is full"));
    EXPECT_EQ(text(*told), "Error org.example 5: It is full");
    EXPECT_FALSE(told->isEqual(plain));
    EXPECT_TRUE(plain->isEqual(NSError::errorWithDomain("org.example", 5).get()));
    EXPECT_EQ(plain->hash(), told->hash());
}

TEST(NSError, ComparesDomainCodeAndInfo)
{
    const auto error = NSError::errorWithDomain("org.example", 5);
    EXPECT_FALSE(error->isEqual(NSError::errorWithDomain("org.example", 6).get()));
    EXPECT_FALSE(error->isEqual(NSError::errorWithDomain("org.other", 5).get()));
    EXPECT_FALSE(error->isEqual(nullptr));
    // A description that is not a string is ignored.
    const auto info =
        make<NSDictionary>(NSDictionary::Map{{NSLocalizedDescriptionKey, NSNumber::numberWithInteger(1)}});
    EXPECT_EQ(NSError::errorWithDomain("org.example", 5, info)->localizedDescription(),
        error->localizedDescription());
}
