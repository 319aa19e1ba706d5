#include "ArchiveSamples.h"

#include <cmath>

namespace {

/// Conforms, but no NSCodingClass names it.
class Nameless : public NSObject, public NSSecureCoding {
public:
    void encodeWithCoder(NSCoder*) const override { }
};

const NSCodingClass<Sample> sampleCoding("Sample");
const NSCodingClass<SpecialSample> specialSampleCoding("SpecialSample");
const NSCodingClass<Unrelated> unrelatedCoding("Unrelated");

} // namespace

TEST(NSKeyedArchiver, EveryKindOfValueComesBack)
{
    const auto before = sample();
    const auto after = unarchived<Sample>(archived(before));
    ASSERT_TRUE(after);
    EXPECT_TRUE(after->flag);
    EXPECT_EQ(after->count, before->count);
    EXPECT_EQ(after->ratio, before->ratio);
    EXPECT_EQ(after->name, before->name);
    EXPECT_TRUE(after->data->isEqual(before->data));
    EXPECT_TRUE(after->list->isEqual(before->list));
    const auto kindOf = [&](NSUInteger i) {
        return dynamic_cast<NSNumber&>(*after->list->objectAtIndex(i)).kind();
    };
    EXPECT_EQ(kindOf(0), NSNumber::Kind::Boolean);
    EXPECT_EQ(kindOf(1), NSNumber::Kind::Integer);
    EXPECT_EQ(kindOf(2), NSNumber::Kind::Double);
    ASSERT_TRUE(after->next);
    EXPECT_TRUE(dynamic_cast<SpecialSample*>(after->next.get()));
    EXPECT_EQ(after->next->name, NSString("the next"));
    EXPECT_TRUE(after->next->data == nullptr);
    EXPECT_FALSE(after->next->next);
}

TEST(NSKeyedArchiver, NullStringIsNotTheEmptyOne)
{
    const auto object = make<Sample>();
    EXPECT_TRUE(unarchived<Sample>(archived(object))->name.isNull());
    object->name = "";
    const auto after = unarchived<Sample>(archived(object));
    EXPECT_FALSE(after->name.isNull());
    EXPECT_EQ(after->name, NSString(""));
}

TEST(NSKeyedArchiver, DoublesKeepEveryBit)
{
    for (const double value : {-0.0, 5e-324, std::numeric_limits<double>::max(), 1.0 / 3, -HUGE_VAL}) {
        const auto object = make<Sample>();
        object->ratio = value;
        const double after = unarchived<Sample>(archived(object))->ratio;
        EXPECT_EQ(after, value);
        EXPECT_EQ(std::signbit(after), std::signbit(value));
    }
    const auto object = make<Sample>();
    object->ratio = NAN;
    EXPECT_TRUE(std::isnan(unarchived<Sample>(archived(object))->ratio));
}

TEST(NSKeyedArchiver, FoundationsValuesCanBeTheRoot)
{
    EXPECT_EQ(unarchived<NSBoxedString>(archived(box("text")))->string(), NSString("text"));
    EXPECT_EQ(unarchived<NSNumber>(archived(NSNumber::numberWithDouble(0.5)))->doubleValue(), 0.5);
    EXPECT_EQ(unarchived<NSNull>(archived(NSNull::null())), NSNull::null());
    const auto date = NSDate::dateWithTimeIntervalSinceReferenceDate(-1e9 - 1.0 / 3);
    EXPECT_TRUE(unarchived<NSDate>(archived(date))->isEqual(date));
    const auto list = sample()->list;
    EXPECT_TRUE(unarchived<NSArray>(archived(list))->isEqual(list));
    EXPECT_TRUE(unarchived<NSObject>(archived(list))->isEqual(list));
    EXPECT_EQ(unarchived<NSDictionary>(archived(make<NSDictionary>()))->count(), 0U);
}

TEST(NSKeyedArchiver, ObjectThatIsEncodedTwiceIsOneObjectAgain)
{
    const auto data = NSData::dataWithBytes("x", 1);
    const auto list = make<NSArray>(std::vector<RetainPtr<NSObject>>{data, data});
    const auto after = unarchived<NSArray>(archived(list));
    ASSERT_EQ(after->count(), 2U);
    EXPECT_EQ(after->objectAtIndex(0), after->objectAtIndex(1));
}

TEST(NSKeyedArchiver, ObjectThatCannotBeArchivedGivesNullAndAnError)
{
    class Plain : public NSObject { };
    const RetainPtr<NSObject> impossible[] = {make<Plain>(), make<Nameless>(),
        make<NSBoxedString>(NSString()), make<NSArray>(std::vector<RetainPtr<NSObject>>{make<Plain>()})};
    for (const auto& object : impossible) {
        for (const bool secure : {true, false}) {
            RetainPtr<NSError> error;
            EXPECT_FALSE(NSKeyedArchiver::archivedDataWithRootObject(object, secure, &error));
            ASSERT_TRUE(error);
            EXPECT_EQ(error->domain(), NSString(NSCocoaErrorDomain));
            EXPECT_EQ(error->code(), NSCoderInvalidValueError);
            EXPECT_FALSE(NSKeyedArchiver::archivedDataWithRootObject(object, secure));
        }
    }
}

TEST(NSKeyedArchiver, NullGivesNull)
{
    RetainPtr<NSError> error;
    EXPECT_FALSE(NSKeyedArchiver::archivedDataWithRootObject(nullptr, true, &error));
    EXPECT_TRUE(error);
    EXPECT_FALSE(NSKeyedUnarchiver::unarchivedObjectOfClass<Sample>(nullptr, &error));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), NSCoderValueNotFoundError);
    EXPECT_FALSE(NSKeyedUnarchiver::unarchivedObjectOfClass<Sample>(nullptr));
    EXPECT_FALSE(unarchived<Sample>(NSData::data()));
}

TEST(NSKeyedArchiver, ErrorIsSetToNullOnSuccess)
{
    RetainPtr<NSError> error = NSError::errorWithDomain("old", 1);
    const auto data = NSKeyedArchiver::archivedDataWithRootObject(box("x").get(), true, &error);
    EXPECT_FALSE(error);
    error = NSError::errorWithDomain("old", 1);
    EXPECT_TRUE(NSKeyedUnarchiver::unarchivedObjectOfClass<NSBoxedString>(data, &error));
    EXPECT_FALSE(error);
}

TEST(NSKeyedArchiverDeathTest, NameOfAClassCannotBeTakenTwice)
{
    class Another : public Unrelated { };
    EXPECT_DEATH(NSCodingClass<Another>("Sample"), "\"Sample\" or its class is already known");
    EXPECT_DEATH(NSCodingClass<Sample>("Another"), "\"Another\" or its class is already known");
}
