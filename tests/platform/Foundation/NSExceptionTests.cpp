#include <Foundation/Foundation.h>

#include <gtest/gtest.h>

TEST(NSException, CarriesNameAndReason)
{
    try {
        NSException::raise("org.example", "It cannot be done twice");
    } catch (const std::exception& exception) {
        EXPECT_STREQ(exception.what(), "org.example: It cannot be done twice");
        const auto& raised = dynamic_cast<const NSException&>(exception);
        EXPECT_EQ(raised.name(), NSString("org.example"));
        EXPECT_EQ(raised.reason(), NSString("It cannot be done twice"));
        EXPECT_EQ(raised.userInfo(), nullptr);
        return;
    }
    FAIL() << "nothing was raised";
}

TEST(NSException, KeepsItsInfoThroughCopies)
{
    auto info = make<NSDictionary>(NSDictionary::Map{{"a", box("1")}});
    const NSException original("name", nullptr, info);
    info = nullptr;
    const NSException copy(original);
    EXPECT_EQ(copy.userInfo()->stringForKey("a"), NSString("1"));
    EXPECT_TRUE(copy.reason().isNull());
    EXPECT_STREQ(copy.what(), "name: ");
}
