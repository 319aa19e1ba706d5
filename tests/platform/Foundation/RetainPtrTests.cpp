#include <Foundation/Foundation.h>

#include <gtest/gtest.h>

namespace {

/// A record in the style of Core Foundation, with a count that can be looked at.
struct Record {
    int references = 1;
};

} // namespace

template <> struct RetainTraits<Record> {
    static void retain(Record* record) noexcept { ++record->references; }
    static void release(Record* record) noexcept { --record->references; }
};

TEST(RetainPtr, RetainsAPlainPointerAndTakesOverAnAdoptedReference)
{
    Record record;
    {
        const RetainPtr<Record> retained(&record);
        EXPECT_EQ(record.references, 2);
    }
    EXPECT_EQ(record.references, 1);
    {
        const auto adopted = adopt(&record);
        EXPECT_EQ(record.references, 1);
        EXPECT_EQ(adopted, &record);
    }
    EXPECT_EQ(record.references, 0);
}

TEST(RetainPtr, CopiesRetainAndMovesDoNot)
{
    Record record;
    RetainPtr<Record> first(&record);
    const RetainPtr<Record> copy(first);
    EXPECT_EQ(record.references, 3);
    const RetainPtr<Record> moved(std::move(first));
    EXPECT_EQ(record.references, 3);
    EXPECT_EQ(first, nullptr); // NOLINT(bugprone-use-after-move): what is left is documented
    const RetainPtr<const Record> constant(moved);
    EXPECT_EQ(record.references, 4);
}

TEST(RetainPtr, AssignmentSurvivesItself)
{
    Record record;
    RetainPtr<Record> pointer(&record);
    const RetainPtr<Record>& alias = pointer;
    pointer = alias;
    EXPECT_EQ(record.references, 2);
    pointer = pointer.get();
    EXPECT_EQ(record.references, 2);
    pointer = nullptr;
    EXPECT_EQ(record.references, 1);
}

TEST(RetainPtr, LeakReturnsTheReference)
{
    Record record;
    RetainPtr<Record> pointer(&record);
    EXPECT_EQ(pointer.leak(), &record);
    EXPECT_FALSE(pointer);
    EXPECT_EQ(record.references, 2);
}

TEST(RetainPtr, ConvertsToItsBase)
{
    const RetainPtr<NSNumber> number = NSNumber::numberWithInteger(1);
    const RetainPtr<NSObject> object = number;
    EXPECT_TRUE(object == number);
    const RetainPtr<NSObject> moved = NSNumber::numberWithInteger(2);
    EXPECT_EQ(moved->description(), NSString("2"));
    EXPECT_EQ((*object).description(), NSString("1"));
}

namespace {

Record* lookAt(Record* record)
{
    return record;
}
int referencesWhileRetained(RetainPtr<Record> record)
{
    return record->references;
}

template <class T>
concept ConvertsToBool = std::is_convertible_v<T, bool>;

} // namespace

TEST(RetainPtr, AVariableConvertsToAPlainPointerWithoutRetaining)
{
    Record record;
    const RetainPtr<Record> pointer(&record);
    EXPECT_EQ(lookAt(pointer), &record);
    EXPECT_EQ(record.references, 2);
    const RetainPtr<Record> none;
    EXPECT_EQ(lookAt(none), nullptr);
}

TEST(RetainPtr, ATemporaryDoesNotConvertToAPlainPointer)
{
    EXPECT_TRUE((std::is_convertible_v<const RetainPtr<NSNumber>&, NSNumber*>));
    EXPECT_TRUE((std::is_convertible_v<RetainPtr<NSNumber>&, const NSObject*>));
    EXPECT_FALSE((std::is_convertible_v<RetainPtr<NSNumber>, NSNumber*>));
    EXPECT_FALSE((std::is_convertible_v<const RetainPtr<NSNumber>, const NSObject*>));
    EXPECT_FALSE((std::is_convertible_v<RetainPtr<NSObject>&, NSNumber*>));
}

TEST(RetainPtr, IsATruthValueInConditionsOnly)
{
    EXPECT_FALSE(ConvertsToBool<RetainPtr<NSNumber>>);
    EXPECT_FALSE(ConvertsToBool<RetainPtr<NSNumber>&>);
    EXPECT_TRUE((std::is_constructible_v<bool, const RetainPtr<NSNumber>&>));
    EXPECT_TRUE(NSNumber::numberWithInteger(1) ? true : false);
}

TEST(RetainPtr, AParameterThatRetainsTakesVariablesPlainPointersAndMovedOnes)
{
    Record record;
    RetainPtr<Record> pointer(&record);
    EXPECT_EQ(referencesWhileRetained(pointer), 3);
    EXPECT_EQ(referencesWhileRetained(&record), 3);
    EXPECT_EQ(referencesWhileRetained(std::move(pointer)), 2);
    EXPECT_EQ(record.references, 1);
}

TEST(RetainPtr, ComparesWithPlainPointersOfRelatedTypes)
{
    const RetainPtr<NSNumber> number = NSNumber::numberWithInteger(1);
    const RetainPtr<NSNumber> other = NSNumber::numberWithInteger(2);
    const NSObject* object = number;
    EXPECT_TRUE(number == object);
    EXPECT_TRUE(object == number);
    EXPECT_FALSE(other == object);
    EXPECT_TRUE(other != object);
}
