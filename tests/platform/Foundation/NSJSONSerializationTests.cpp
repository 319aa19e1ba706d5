#include <Foundation/Foundation.h>

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace {

RetainPtr<NSObject> read(std::string_view text, NSUInteger options = 0)
{
    RetainPtr<NSError> error;
    auto object = NSJSONSerialization::JSONObjectWithData(
        NSData::dataWithBytes(text.data(), text.size()).get(), options, &error);
    EXPECT_EQ(!object, static_cast<bool>(error));
    EXPECT_TRUE(!error || error->domain() == NSString(NSCocoaErrorDomain));
    return object;
}

/// The JSON text, or "(refused)".
std::string written(const RetainPtr<NSObject>& object, NSUInteger options = 0)
{
    RetainPtr<NSError> error;
    const auto data = NSJSONSerialization::dataWithJSONObject(object, options, &error);
    EXPECT_EQ(!data, static_cast<bool>(error));
    return data ? std::string(static_cast<const char*>(data->bytes()), data->length()) : "(refused)";
}

RetainPtr<NSArray> list(std::vector<RetainPtr<NSObject>> objects)
{
    return make<NSArray>(std::move(objects));
}

/// The one number in an array.
const NSNumber& numberIn(const RetainPtr<NSObject>& array)
{
    return dynamic_cast<const NSNumber&>(*dynamic_cast<const NSArray&>(*array).objectAtIndex(0));
}

std::string encoded(const std::u32string& text, int unit, bool bigEndian)
{
    std::string bytes;
    for (const char32_t c : text) {
        for (int i = 0; i < unit; ++i)
            bytes += static_cast<char>(c >> 8 * (bigEndian ? unit - 1 - i : i));
    }
    return bytes;
}

} // namespace

TEST(NSJSONSerialization, RetainsByteOrderMarksInStrings)
{
    const std::string mark = "\xEF\xBB\xBF";
    const std::string text = "{\"" + mark + mark + "k\":[\"" + mark + "\",\"a\\\"" + mark + "\"]}";
    for (const std::string& start : {std::string(), mark}) {
        const auto object = read(start + text);
        const auto* dictionary = dynamic_cast<const NSDictionary*>(object.get());
        ASSERT_TRUE(dictionary);
        const auto values = list({box(NSString(mark)), box(NSString("a\"" + mark))});
        EXPECT_TRUE(values->isEqual(dictionary->objectForKey(NSString(mark + mark + "k"))));
        EXPECT_EQ(written(object), text);
    }
    EXPECT_FALSE(read("[\"a\"" + mark + "]"));
}

TEST(NSJSONSerialization, ReadsEveryKindOfValue)
{
    const auto object = read(R"({"text": "a\u00e9\n", "yes": true, "no": false, "none": null,
        "whole": -12, "real": 0.5, "list": [1, []], "inner": {"": {}}})");
    const auto* dictionary = dynamic_cast<const NSDictionary*>(object.get());
    ASSERT_TRUE(dictionary);
    EXPECT_EQ(dictionary->count(), 8U);
    EXPECT_EQ(dictionary->stringForKey("text"), NSString("a\xC3\xA9\n"));
    const auto number = [&](const char* key) {
        return dynamic_cast<const NSNumber*>(dictionary->objectForKey(key));
    };
    EXPECT_EQ(number("yes")->kind(), NSNumber::Kind::Boolean);
    EXPECT_TRUE(number("yes")->boolValue());
    EXPECT_FALSE(number("no")->boolValue());
    EXPECT_EQ(dictionary->objectForKey("none"), NSNull::null());
    EXPECT_EQ(number("whole")->kind(), NSNumber::Kind::Integer);
    EXPECT_EQ(number("whole")->integerValue(), -12);
    EXPECT_EQ(number("real")->kind(), NSNumber::Kind::Double);
    EXPECT_EQ(number("real")->doubleValue(), 0.5);
    const auto expected = list({NSNumber::numberWithInteger(1), list({})});
    EXPECT_TRUE(dictionary->objectForKey("list")->isEqual(expected));
    EXPECT_TRUE(dynamic_cast<const NSDictionary*>(dictionary->objectForKey("inner"))->objectForKey(""));
}

TEST(NSJSONSerialization, ReadsIntegersThatFitAsIntegersAndOthersAsDoubles)
{
    EXPECT_EQ(numberIn(read("[9223372036854775807]")).integerValue(), std::numeric_limits<NSInteger>::max());
    EXPECT_EQ(numberIn(read("[-9223372036854775808]")).integerValue(), std::numeric_limits<NSInteger>::min());
    EXPECT_EQ(numberIn(read("[9007199254740993]")).integerValue(), 9007199254740993);
    const auto beyond = read("[18446744073709551615]");
    EXPECT_EQ(numberIn(beyond).kind(), NSNumber::Kind::Double);
    EXPECT_EQ(numberIn(beyond).doubleValue(), 18446744073709551615.0);
    EXPECT_EQ(numberIn(read("[1e-3]")).doubleValue(), 1e-3);
    EXPECT_EQ(numberIn(read("[0.30000000000000004]")).doubleValue(), 0.1 + 0.2);
}

TEST(NSJSONSerialization, LastOfEqualKeysCounts)
{
    const auto object = read(R"({"a": 1, "b": 0, "a": 2})");
    const auto* number =
        dynamic_cast<const NSNumber*>(dynamic_cast<const NSDictionary*>(object.get())->objectForKey("a"));
    EXPECT_EQ(number->integerValue(), 2);
}

TEST(NSJSONSerialization, FragmentsNeedTheOption)
{
    for (const char* fragment : {"\"text\"", "1", "-1.5", "true", "false", "null", " 7 "}) {
        EXPECT_FALSE(read(fragment)) << fragment;
        EXPECT_TRUE(read(fragment, NSJSONReadingFragmentsAllowed)) << fragment;
    }
    EXPECT_TRUE(read("\"text\"", NSJSONReadingFragmentsAllowed)->isEqual(box("text").get()));
    EXPECT_EQ(read("null", NSJSONReadingFragmentsAllowed), NSNull::null());
    EXPECT_TRUE(read("[1]", NSJSONReadingFragmentsAllowed)->isEqual(read("[1]").get()));
    EXPECT_TRUE(read("{\"a\":1}", NSJSONReadingFragmentsAllowed)->isEqual(read("{\"a\":1}").get()));
    for (const char* broken : {"", " ", "1,2", "1],[2", "[1],[2]", "\"open", "nul"})
        EXPECT_FALSE(read(broken, NSJSONReadingFragmentsAllowed)) << broken;
}

TEST(NSJSONSerialization, TextThatIsNotJSONGivesNullAndAnError)
{
    for (const char* broken : {"", " ", "{", "[", "[1,]", "{\"a\"}", "{\"a\":}", "{a:1}", "[1] 2", "['a']",
             "[NaN]", "[Infinity]", "[\"\xFF\"]", "[tru]", "// no\n[]"})
        EXPECT_FALSE(read(broken)) << broken;
    RetainPtr<NSError> error;
    EXPECT_FALSE(NSJSONSerialization::JSONObjectWithData(nullptr, 0, &error));
    EXPECT_TRUE(error);
    EXPECT_FALSE(NSJSONSerialization::JSONObjectWithData(nullptr, 0));
}

TEST(NSJSONSerialization, ErrorNamesThePositionAndIsNullOnSuccess)
{
    RetainPtr<NSError> error;
    const auto broken = NSData::dataWithBytes("[1, x]", 6);
    EXPECT_FALSE(NSJSONSerialization::JSONObjectWithData(broken, 0, &error));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), NSPropertyListReadCorruptError);
    EXPECT_TRUE(error->localizedDescription().hasPrefix("The text is not JSON: ")); // the reason is Qt's own
    EXPECT_TRUE(error->localizedDescription().hasSuffix(" at byte 4."));
    const auto good = NSData::dataWithBytes("[1]", 3);
    EXPECT_TRUE(NSJSONSerialization::JSONObjectWithData(good, 0, &error));
    EXPECT_FALSE(error);
}

TEST(NSJSONSerialization, ReadsEveryEncodingOfUnicode)
{
    const std::u32string text = U"[\"\u00e9\u20ac\"]";
    const auto expected = list({box("\xC3\xA9\xE2\x82\xAC")});
    EXPECT_TRUE(read("\xEF\xBB\xBF[\"\xC3\xA9\xE2\x82\xAC\"]")->isEqual(expected));
    for (const int unit : {2, 4}) {
        for (const bool bigEndian : {false, true}) {
            for (const auto& marked : {text, U"\uFEFF" + text}) {
                const auto object = read(encoded(marked, unit, bigEndian));
                ASSERT_TRUE(object) << unit << bigEndian;
                EXPECT_TRUE(object->isEqual(expected)) << unit << bigEndian;
            }
        }
    }
    EXPECT_TRUE(read(encoded(U"7", 2, false), NSJSONReadingFragmentsAllowed));
}

TEST(NSJSONSerialization, DeepNestingIsRefusedInBothDirections)
{
    const auto nested = [](int depth) {
        return std::string(static_cast<std::size_t>(depth), '[')
            + std::string(static_cast<std::size_t>(depth), ']');
    };
    EXPECT_TRUE(read(nested(512)));
    EXPECT_FALSE(read(nested(513)));
    EXPECT_FALSE(read(nested(1'000'000)));
    EXPECT_FALSE(read(std::string(1'000'000, '[')));
    std::string objects;
    for (int i = 0; i < 100'000; ++i)
        objects += "{\"a\":";
    EXPECT_FALSE(read(objects));

    RetainPtr<NSObject> deep = list({});
    for (int i = 1; i < 512; ++i)
        deep = list({deep});
    EXPECT_EQ(written(deep), nested(512));
    EXPECT_EQ(written(list({deep})), "(refused)");
    for (int i = 0; i < 5000; ++i)
        deep = list({deep});
    EXPECT_EQ(written(deep), "(refused)");
}

TEST(NSJSONSerialization, WritesEveryKindOfValue)
{
    NSDictionary::Map map;
    map.emplace("b", NSNull::null());
    map.emplace("a \"quoted\"", box("\xC3\xA9\n\x01"));
    const auto object = list({NSNumber::numberWithBool(true), NSNumber::numberWithInteger(1),
        NSNumber::numberWithInteger(std::numeric_limits<NSInteger>::max()), NSNumber::numberWithDouble(0.1),
        box(""), make<NSDictionary>(map), list({}), make<NSDictionary>()});
    EXPECT_EQ(written(object),
        "[true,1,9223372036854775807,0.1,\"\",{\"a "
        "\\\"quoted\\\"\":\"\xC3\xA9\\n\\u0001\",\"b\":null},[],{}]");
}

TEST(NSJSONSerialization, DoublesComeBackExactly)
{
    for (const double value : {0.1 + 0.2, 1e-300, 5e-324, std::numeric_limits<double>::max(), 1.0 / 3})
        EXPECT_EQ(numberIn(read(written(list({NSNumber::numberWithDouble(value)})))).doubleValue(), value);
}

TEST(NSJSONSerialization, WritesPrettyPrinted)
{
    NSDictionary::Map map;
    map.emplace("a", list({NSNumber::numberWithInteger(1), box("x")}));
    EXPECT_EQ(written(make<NSDictionary>(map), NSJSONWritingPrettyPrinted),
        "{\n    \"a\": [\n        1,\n        \"x\"\n    ]\n}\n");
}

TEST(NSJSONSerialization, WritesFragmentsWithTheOption)
{
    EXPECT_EQ(written(box("x")), "(refused)");
    EXPECT_EQ(written(NSNull::null()), "(refused)");
    EXPECT_EQ(written(box("x"), NSJSONWritingFragmentsAllowed), "\"x\"");
    EXPECT_EQ(written(NSNull::null(), NSJSONWritingFragmentsAllowed), "null");
    EXPECT_EQ(written(NSNumber::numberWithDouble(0.5), NSJSONWritingFragmentsAllowed), "0.5");
    EXPECT_EQ(written(NSNumber::numberWithBool(false), NSJSONWritingFragmentsAllowed), "false");
}

TEST(NSJSONSerialization, RefusesWhatJSONHasNoFormFor)
{
    for (const double value : {std::nan(""), HUGE_VAL, -HUGE_VAL})
        EXPECT_EQ(written(list({NSNumber::numberWithDouble(value)})), "(refused)");
    EXPECT_EQ(written(list({NSData::data()})), "(refused)");
    EXPECT_EQ(written(list({NSDate::dateWithTimeIntervalSinceReferenceDate(0)})), "(refused)");
    NSDictionary::Map map;
    map.emplace("a", NSData::data());
    EXPECT_EQ(written(make<NSDictionary>(map)), "(refused)");
    EXPECT_EQ(written(nullptr), "(refused)");
    EXPECT_FALSE(NSJSONSerialization::dataWithJSONObject(nullptr, 0));
}
