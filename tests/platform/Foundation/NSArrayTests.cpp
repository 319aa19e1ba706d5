#include <Foundation/Foundation.h>

#include <gtest/gtest.h>

namespace {

std::string text(const NSObject& object)
{
    return object.description().UTF8String();
}

} // namespace

TEST(NSArray, HoldsObjectsInOrder)
{
    const auto array = make<NSArray>(std::vector<RetainPtr<NSObject>>{box("a"), nullptr, box("b")});
    EXPECT_EQ(array->count(), 2U);
    EXPECT_EQ(text(*array->objectAtIndex(1)), "b");
    EXPECT_EQ(text(*array->firstObject()), "a");
    EXPECT_EQ(text(*array->lastObject()), "b");
    EXPECT_TRUE(array->containsObject(box("b").get()));
    EXPECT_FALSE(array->containsObject(box("c").get()));
    EXPECT_THROW(array->objectAtIndex(2), NSException);
    EXPECT_EQ(make<NSArray>()->firstObject(), nullptr);
    EXPECT_EQ(make<NSArray>()->lastObject(), nullptr);
}

TEST(NSArray, EqualsArraysOfEqualObjects)
{
    const RetainPtr<NSObject> a = box("a");
    const RetainPtr<NSObject> b = box("b");
    const auto array = make<NSArray>(std::vector{a, b});
    EXPECT_TRUE(array->isEqual(make<NSArray>(std::vector{RetainPtr<NSObject>(box("a")), b}).get()));
    EXPECT_FALSE(array->isEqual(make<NSArray>(std::vector{b, a}).get()));
    EXPECT_FALSE(array->isEqual(make<NSArray>(std::vector{a}).get()));
}

TEST(NSArray, ComparesMembersByValueAndKeepsThemAlive)
{
    auto probe = make<NSObject>();
    const WeakPtr<NSObject> weak(probe);
    auto array = make<NSArray>(std::vector{probe});
    probe = nullptr;
    EXPECT_EQ(weak.lock().get(), array->objectAtIndex(0));
    array = nullptr;
    EXPECT_EQ(weak.lock(), nullptr);
    const auto numbers = make<NSArray>(std::vector<RetainPtr<NSObject>>{NSNumber::numberWithInteger(1)});
    EXPECT_TRUE(numbers->containsObject(NSNumber::numberWithDouble(1).get()));
    EXPECT_FALSE(numbers->containsObject(nullptr));
    EXPECT_EQ(numbers->hash(),
        make<NSArray>(std::vector<RetainPtr<NSObject>>{NSNumber::numberWithBool(true)})->hash());
    EXPECT_FALSE(numbers->isEqual(nullptr));
}

TEST(NSArray, IsDescribedLineByLine)
{
    using Objects = std::vector<RetainPtr<NSObject>>;
    const auto nested = make<NSArray>(Objects{box("plain1"), box("two words")});
    const auto array =
        make<NSArray>(Objects{NSNumber::numberWithDouble(1.5), nested, box("a \"b\" \\\n"), box("")});
    EXPECT_EQ(text(*array),
        "(\n"
        "    1.5,\n"
        "    (\n"
        "        plain1,\n"
        "        \"two words\"\n"
        "    ),\n"
        "    \"a \\\"b\\\" \\\\\\n\",\n"
        "    \"\"\n"
        ")");
    EXPECT_EQ(text(*make<NSArray>()), "(\n)");
}
