#include <Foundation/NSArray.h>
#include <Foundation/NSBoxedString.h>
#include <Foundation/NSException.h>
#include <Foundation/WeakPtr.h>
#include <gtest/gtest.h>

namespace {

RetainPtr<NSMutableArray> makeArray(const char* letters)
{
    auto array = make<NSMutableArray>();
    for (; *letters; ++letters)
        array->addObject(box(NSString(std::string(1, *letters))));
    return array;
}

/// The members one after the other.
std::string allMembers(const NSArray& array)
{
    std::string all;
    for (const auto& member : array)
        all += member->description().UTF8String();
    return all;
}

/// The name of the exception that `action` raises; empty when it raises none.
template <class Action> std::string raised(Action action)
{
    try {
        action();
    } catch (const NSException& exception) {
        return exception.name().UTF8String();
    }
    return "";
}

TEST(NSMutableArray, ObjectsAreAddedAtAnyPlace)
{
    const auto array = makeArray("bd");
    array->insertObject(box("a"), 0);
    array->insertObject(box("c"), 2);
    array->insertObject(box("e"), 4);
    EXPECT_EQ(allMembers(*array), "abcde");
    array->replaceObjectAtIndex(3, box("x"));
    EXPECT_EQ(allMembers(*array), "abcxe");
}

TEST(NSMutableArray, AnotherArraysObjectsAreAddedAndItsOwn)
{
    const auto array = makeArray("ab");
    array->addObjectsFromArray(makeArray("cd").get());
    array->addObjectsFromArray(nullptr);
    EXPECT_EQ(allMembers(*array), "abcd");
    array->addObjectsFromArray(array);
    EXPECT_EQ(allMembers(*array), "abcdabcd");
}

TEST(NSMutableArray, ObjectsAreRemoved)
{
    const auto array = makeArray("abcbd");
    array->removeObjectAtIndex(0);
    EXPECT_EQ(allMembers(*array), "bcbd");
    array->removeObject(array->firstObject()); // all that are equal to it
    EXPECT_EQ(allMembers(*array), "cd");
    array->removeObject(box("z").get());
    array->removeObject(nullptr);
    array->removeLastObject();
    EXPECT_EQ(allMembers(*array), "c");
    array->removeAllObjects();
    EXPECT_EQ(array->count(), 0U);
}

TEST(NSMutableArray, IsEqualToAnArrayOfTheSameObjects)
{
    EXPECT_TRUE(makeArray("a")->isEqual(make<NSArray>(std::vector<RetainPtr<NSObject>>{box("a")}).get()));
}

TEST(NSMutableArray, RetainsItsMembersUntilTheyAreReplaced)
{
    auto member = make<NSBoxedString>("a");
    const WeakPtr<NSBoxedString> weak(member);
    const auto array = make<NSMutableArray>();
    array->addObject(std::move(member));
    EXPECT_TRUE(weak.lock());
    array->replaceObjectAtIndex(0, box("b"));
    EXPECT_FALSE(weak.lock());
}

TEST(NSMutableArray, MissingIndexesAndNullRaiseAndChangeNothing)
{
    const auto array = makeArray("ab");
    EXPECT_EQ(raised([&] { array->insertObject(box("c"), 3); }), NSRangeException);
    EXPECT_EQ(raised([&] { array->replaceObjectAtIndex(2, box("c")); }), NSRangeException);
    EXPECT_EQ(raised([&] { array->removeObjectAtIndex(2); }), NSRangeException);
    EXPECT_EQ(raised([&] { make<NSMutableArray>()->removeLastObject(); }), NSRangeException);
    EXPECT_EQ(raised([&] { array->addObject(nullptr); }), NSInvalidArgumentException);
    EXPECT_EQ(raised([&] { array->insertObject(nullptr, 0); }), NSInvalidArgumentException);
    EXPECT_EQ(raised([&] { array->replaceObjectAtIndex(0, nullptr); }), NSInvalidArgumentException);
    EXPECT_EQ(allMembers(*array), "ab");
}

} // namespace
