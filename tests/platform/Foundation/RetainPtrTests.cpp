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

TEST(RetainPtr, RetainsWhatIsLentAndTakesOverWhatIsAdopted)
{
    Record record;
    {
        const RetainPtr<Record> lent(&record);
        EXPECT_EQ(record.references, 2);
    }
    EXPECT_EQ(record.references, 1);
    {
        const auto adopted = adopt(&record);
        EXPECT_EQ(record.references, 1);
        EXPECT_EQ(adopted.get(), &record);
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

TEST(RetainPtr, LeakHandsTheReferenceOver)
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
