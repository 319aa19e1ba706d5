#include "AttributedTexts.h"
#include "support/AllocationCounter.h"

#include <gtest/gtest.h>

TEST(NSAttributedString, IsEmptyWithoutAString)
{
    for (const auto& text : {make<NSAttributedString>(), make<NSAttributedString>(NSString()),
             make<NSAttributedString>(NSString(), attribute("n", 1).get()),
             make<NSAttributedString>(nullptr)}) {
        EXPECT_FALSE(text->string().isNull());
        EXPECT_EQ(text->length(), 0U);
        EXPECT_TRUE(text->attributeRuns().empty());
        EXPECT_EQ(describe(*text), "");
        EXPECT_TRUE(text->isEqual(make<NSAttributedString>("").get()));
    }
}

TEST(NSAttributedString, GivesTheWholeStringTheSameAttributes)
{
    const auto attributes = attribute("n", 1);
    const auto text = make<NSAttributedString>("abc", attributes);
    EXPECT_EQ(text->string(), "abc");
    EXPECT_EQ(text->length(), 3U);
    for (NSUInteger index = 0; index < 3; ++index) {
        NSRange range{9, 9};
        EXPECT_EQ(text->attributesAtIndex(index, &range), attributes);
        EXPECT_EQ(range, NSMakeRange(0, 3));
    }
    EXPECT_EQ(describe(*text), "abc{ n = 1; }");
}

TEST(NSAttributedString, HasAnEmptyDictionaryWhereThereAreNoAttributes)
{
    for (const auto& text : {make<NSAttributedString>("ab"), make<NSAttributedString>("ab", nullptr),
             make<NSAttributedString>("ab", make<NSDictionary>().get())}) {
        ASSERT_NE(text->attributesAtIndex(1), nullptr);
        EXPECT_EQ(text->attributesAtIndex(1)->count(), 0U);
        EXPECT_EQ(text->attributeAtIndex("n", 1), nullptr);
        EXPECT_EQ(describe(*text), "ab{ }");
        EXPECT_TRUE(text->isEqual(make<NSAttributedString>("ab").get()));
    }
}

TEST(NSAttributedString, ReturnsTheRunAroundAnIndex)
{
    const auto text = attributedText({{"ab", 1}, {"c", 0}, {"def", 2}});
    const auto rangeAt = [&text](NSUInteger index) {
        NSRange range{9, 9};
        text->attributesAtIndex(index, &range);
        return range;
    };
    EXPECT_EQ(rangeAt(0), NSMakeRange(0, 2));
    EXPECT_EQ(rangeAt(1), NSMakeRange(0, 2));
    EXPECT_EQ(rangeAt(2), NSMakeRange(2, 1));
    EXPECT_EQ(rangeAt(3), NSMakeRange(3, 3));
    EXPECT_EQ(rangeAt(5), NSMakeRange(3, 3));
}

TEST(NSAttributedString, FindsOneAttributeByItsName)
{
    const auto text = attributedText({{"ab", 1}, {"c", 2}});
    NSRange range{9, 9};
    EXPECT_TRUE(text->attributeAtIndex("n", 2, &range)->isEqual(NSNumber::numberWithInteger(2).get()));
    EXPECT_EQ(range, NSMakeRange(2, 1));
    EXPECT_EQ(text->attributeAtIndex("other", 0, &range), nullptr);
    EXPECT_EQ(range, NSMakeRange(0, 2));
    EXPECT_EQ(text->attributeAtIndex(nullptr, 0), nullptr);
}

TEST(NSAttributedString, RaisesBeyondTheEnd)
{
    const auto text = make<NSAttributedString>("abc", attribute("n", 1).get());
    NSRange range{7, 8};
    EXPECT_THROW(text->attributesAtIndex(3, &range), NSException);
    EXPECT_THROW(text->attributeAtIndex("n", NSNotFound, &range), NSException);
    EXPECT_EQ(range, NSMakeRange(7, 8));
    EXPECT_THROW(make<NSAttributedString>("")->attributesAtIndex(0), NSException);
    try {
        text->attributesAtIndex(3);
    } catch (const NSException& exception) {
        EXPECT_EQ(exception.name(), NSRangeException);
    }
}

TEST(NSAttributedString, RunsThroughItsRunsInOrderWithoutAllocating)
{
    const auto text = attributedText({{"ab", 1}, {"c", 0}, {"def", 2}})->copy();
    const auto single = make<NSAttributedString>("xy");
    std::vector<NSRange> ranges;
    ranges.reserve(4);
    const AllocationCounter counter;
    for (const auto* each : {text.get(), single.get()})
        for (const auto& run : each->attributeRuns())
            ranges.push_back(run.range);
    EXPECT_EQ(counter.count(), 0U);
    EXPECT_EQ(ranges, (std::vector<NSRange>{{0, 2}, {2, 1}, {3, 3}, {0, 2}}));
}

TEST(NSAttributedString, OfOneRunIsOneAllocation)
{
    const auto attributes = attribute("n", 1);
    (void)make<NSAttributedString>("short"); // creates what all strings without attributes share
    const AllocationCounter counter;
    (void)make<NSAttributedString>("short", attributes);
    EXPECT_EQ(counter.count(), 1U);
    (void)make<NSAttributedString>("short");
    EXPECT_EQ(counter.count(), 2U);
}

TEST(NSAttributedString, DoesNotSeeLaterChangesOfADictionaryItWasGiven)
{
    const auto attributes = make<NSMutableDictionary>();
    attributes->setObject(NSNumber::numberWithInteger(1), "n");
    const auto text = make<NSAttributedString>("a", attributes);
    attributes->removeObjectForKey("n");
    EXPECT_EQ(describe(*text), "a{ n = 1; }");
}

TEST(NSAttributedString, HasPartsWithTheirAttributes)
{
    const auto text = attributedText({{"ab", 1}, {"c", 0}, {"def", 2}});
    const auto part = [&text](NSUInteger location, NSUInteger length) {
        return describe(*text->attributedSubstringFromRange({location, length}));
    };
    EXPECT_EQ(part(0, 6), "ab{ n = 1; }c{ }def{ n = 2; }");
    EXPECT_EQ(part(1, 4), "b{ n = 1; }c{ }de{ n = 2; }");
    EXPECT_EQ(part(4, 1), "e{ n = 2; }");
    EXPECT_EQ(part(2, 0), "");
    EXPECT_EQ(part(6, 0), "");
    EXPECT_THROW(part(6, 1), NSException);
    EXPECT_THROW(part(7, 0), NSException);
    EXPECT_THROW(part(1, static_cast<NSUInteger>(-1)), NSException);
}

TEST(NSAttributedString, CountsUTF16Units)
{
    const auto text = attributedText({{"😀", 1}, {"é", 2}});
    EXPECT_EQ(text->length(), 3U);
    NSRange range{};
    text->attributesAtIndex(1, &range);
    EXPECT_EQ(range, NSMakeRange(0, 2));
    EXPECT_EQ(describe(*text), "😀{ n = 1; }é{ n = 2; }");
}

TEST(NSAttributedString, EqualsStringsWithEqualAttributes)
{
    const auto text = attributedText({{"ab", 1}, {"c", 2}});
    EXPECT_TRUE(text->isEqual(attributedText({{"a", 1}, {"b", 1}, {"c", 2}}).get()));
    EXPECT_TRUE(text->copy()->isEqual(text));
    EXPECT_TRUE(text->isEqual(text->copy().get()));
    EXPECT_EQ(text->hash(), text->copy()->hash());

    EXPECT_FALSE(text->isEqual(attributedText({{"a", 1}, {"bc", 2}}).get()));
    EXPECT_FALSE(text->isEqual(attributedText({{"ab", 1}, {"c", 3}}).get()));
    EXPECT_FALSE(text->isEqual(attributedText({{"abc", 1}}).get()));
    EXPECT_FALSE(text->isEqual(attributedText({{"ab", 1}, {"x", 2}}).get()));
    EXPECT_FALSE(text->isEqual(box("abc").get()));
    EXPECT_FALSE(text->isEqual(nullptr));
}

TEST(NSAttributedString, CopiesWithoutCopying)
{
    const auto text = make<NSAttributedString>("abc", attribute("n", 1).get());
    EXPECT_EQ(text->copy(), text);
    const auto other = make<NSAttributedString>(text);
    EXPECT_NE(other, text);
    EXPECT_TRUE(other->isEqual(text));
}

TEST(NSAttributedString, IsAlsoKnownToCoreFoundation)
{
    const auto text = make<NSMutableAttributedString>("abc");
    const CFAttributedStringRef reference = text.get();
    EXPECT_EQ(reference->string(), "abc");
}
