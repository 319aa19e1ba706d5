#include "ObjectText.h"

#include <Foundation/Foundation.h>

#include <gtest/gtest.h>

TEST(NSDictionary, HoldsObjectsUnderStrings)
{
    const auto dictionary = make<NSDictionary>(
        NSDictionary::Map{{"b", box("2")}, {"a", NSNumber::numberWithInteger(1)}, {"c", {}}});
    EXPECT_EQ(dictionary->count(), 2U);
    EXPECT_EQ(dictionary->stringForKey("b"), NSString("2"));
    EXPECT_TRUE(dictionary->stringForKey("a").isNull());
    EXPECT_EQ(dictionary->objectForKey("c"), nullptr);
    EXPECT_EQ(dictionary->objectForKey(nullptr), nullptr);
    EXPECT_EQ(dictionary->allKeys(), (std::vector<NSString>{"a", "b"}));
    EXPECT_EQ(text(*dictionary), "{ a = 1; b = 2; }");
}

TEST(NSMutableDictionary, Changes)
{
    const auto dictionary = make<NSMutableDictionary>();
    dictionary->setObject(box("1"), "a");
    dictionary->setObject(box("2"), "a");
    EXPECT_EQ(dictionary->stringForKey("a"), NSString("2"));
    EXPECT_TRUE(dictionary->isEqual(make<NSDictionary>(NSDictionary::Map{{"a", box("2")}}).get()));
    dictionary->removeObjectForKey("a");
    dictionary->removeObjectForKey("a");
    EXPECT_EQ(dictionary->count(), 0U);
    EXPECT_THROW(dictionary->setObject(nullptr, "a"), NSException);
    EXPECT_THROW(dictionary->setObject(box("1"), nullptr), NSException);
}

TEST(NSMutableDictionary, RemovesAllObjects)
{
    /// Counts the entries of a dictionary when it is destroyed.
    class Witness : public NSObject {
    public:
        Witness(NSMutableDictionary* dictionary, NSUInteger* count)
            : _dictionary(dictionary)
            , _count(count)
        {
        }

    protected:
        ~Witness() override { *_count = _dictionary->count(); }

    private:
        NSMutableDictionary* _dictionary;
        NSUInteger* _count;
    };
    const auto dictionary = make<NSMutableDictionary>();
    NSUInteger countAtTheEnd = 7;
    dictionary->setObject(make<Witness>(dictionary.get(), &countAtTheEnd), "a");
    dictionary->setObject(box("2"), "b");
    dictionary->removeAllObjects();
    EXPECT_EQ(dictionary->count(), 0U);
    EXPECT_EQ(dictionary->objectForKey("a"), nullptr);
    EXPECT_EQ(countAtTheEnd, 0U);

    dictionary->removeAllObjects();
    dictionary->setObject(box("3"), "b");
    EXPECT_EQ(dictionary->stringForKey("b"), NSString("3"));
}

TEST(NSDictionary, EqualsDictionariesOfEqualEntries)
{
    const auto one = make<NSDictionary>(NSDictionary::Map{{"a", NSNumber::numberWithInteger(1)}});
    EXPECT_TRUE(
        one->isEqual(make<NSDictionary>(NSDictionary::Map{{"a", NSNumber::numberWithDouble(1)}}).get()));
    EXPECT_FALSE(
        one->isEqual(make<NSDictionary>(NSDictionary::Map{{"b", NSNumber::numberWithDouble(1)}}).get()));
    EXPECT_FALSE(one->isEqual(make<NSDictionary>().get()));
    EXPECT_FALSE(one->isEqual(nullptr));
    EXPECT_EQ(
        one->hash(), make<NSDictionary>(NSDictionary::Map{{"a", NSNumber::numberWithDouble(1)}})->hash());
    EXPECT_EQ(text(*make<NSDictionary>()), "{ }");
}

TEST(NSDictionary, LeavesOutNullKeys)
{
    EXPECT_EQ(make<NSDictionary>(NSDictionary::Map{{NSString(), box("1")}})->count(), 0U);
    EXPECT_EQ(make<NSDictionary>(NSDictionary::Map{{"", box("1")}})->stringForKey(""), NSString("1"));
}

TEST(NSDictionary, RunsThroughKeysInOrderWhateverTheOrderOfTheirComing)
{
    const auto dictionary = make<NSMutableDictionary>();
    for (const char* key : {"c", "é", "B", "a"})
        dictionary->setObject(box(key), key);
    std::string keys;
    for (const auto& [key, object] : *dictionary)
        keys += key.UTF8String();
    EXPECT_EQ(keys, "Bacé");
}
