#include "ObjectText.h"

#include <Foundation/Foundation.h>

#include <gtest/gtest.h>

namespace {

/// An array that holds one array twice, which holds one array twice, and so on: 2^levels paths lead to
/// `leaf`.
RetainPtr<NSArray> doubledArray(int levels, const RetainPtr<NSObject>& leaf)
{
    auto array = make<NSArray>(std::vector{leaf});
    for (int i = 0; i < levels; ++i)
        array = make<NSArray>(std::vector<RetainPtr<NSObject>>{array, array});
    return array;
}

/// The same of dictionaries.
RetainPtr<NSDictionary> doubledDictionary(int levels, const RetainPtr<NSObject>& leaf)
{
    auto dictionary = make<NSDictionary>(NSDictionary::Map{{"leaf", leaf}});
    for (int i = 0; i < levels; ++i)
        dictionary = make<NSDictionary>(NSDictionary::Map{{"a", dictionary}, {"b", dictionary}});
    return dictionary;
}

constexpr int kLevels = 64;

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

TEST(NSArray, ComparesMembersByValueAndRetainsThem)
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

// Archives hold such objects in a few lines. Comparing each path would take centuries.

TEST(NSArray, ComparesSharedMembersOnce)
{
    const auto one = doubledArray(kLevels, box("leaf"));
    EXPECT_TRUE(one->isEqual(doubledArray(kLevels, box("leaf")).get()));
    EXPECT_FALSE(one->isEqual(doubledArray(kLevels, box("other leaf")).get()));
    EXPECT_FALSE(one->isEqual(doubledArray(kLevels - 1, box("leaf")).get()));
}

TEST(NSDictionary, ComparesSharedValuesOnce)
{
    const auto one = doubledDictionary(kLevels, box("leaf"));
    EXPECT_TRUE(one->isEqual(doubledDictionary(kLevels, box("leaf")).get()));
    EXPECT_FALSE(one->isEqual(doubledDictionary(kLevels, box("other leaf")).get()));
}

TEST(NSArray, EqualsItselfWithoutComparingItsMembers)
{
    class Unequal : public NSObject {
    public:
        bool isEqual(const NSObject*) const override { return false; }
    };
    const auto array = make<NSArray>(std::vector<RetainPtr<NSObject>>{make<Unequal>()});
    EXPECT_TRUE(array->isEqual(array.get()));
    EXPECT_FALSE(array->isEqual(make<NSArray>(std::vector<RetainPtr<NSObject>>{array->firstObject()}).get()));
}

TEST(NSArray, ComparesArraysThatMembersMakeForTheComparison)
{
    /// Compares by a new array each time, so that later ones could get the addresses of earlier ones.
    class Version : public NSObject {
    public:
        explicit Version(NSInteger number)
            : _number(number)
        {
        }
        bool isEqual(const NSObject* other) const override
        {
            const auto* version = dynamic_cast<const Version*>(other);
            return version && numbers()->isEqual(version->numbers().get());
        }

    private:
        RetainPtr<NSArray> numbers() const
        {
            return make<NSArray>(std::vector<RetainPtr<NSObject>>{NSNumber::numberWithInteger(_number)});
        }
        NSInteger _number;
    };
    const auto versions = [](NSInteger last) {
        return make<NSArray>(std::vector<RetainPtr<NSObject>>{make<Version>(1), make<Version>(last)});
    };
    EXPECT_TRUE(versions(2)->isEqual(versions(2).get()));
    EXPECT_FALSE(versions(2)->isEqual(versions(3).get()));
}
