#include "AttributedTexts.h"

#include <gtest/gtest.h>

TEST(NSMutableAttributedString, SetsTheAttributesOfARange)
{
    const auto text = attributedText({{"abcdef", 1}});
    text->setAttributes(attribute("n", 2), {2, 3});
    EXPECT_EQ(describe(*text), "ab{ n = 1; }cde{ n = 2; }f{ n = 1; }");
    text->setAttributes(attribute("m", 3), {0, 3});
    EXPECT_EQ(describe(*text), "abc{ m = 3; }de{ n = 2; }f{ n = 1; }");
    text->setAttributes(nullptr, {3, 3});
    EXPECT_EQ(describe(*text), "abc{ m = 3; }def{ }");
    text->setAttributes(attribute("n", 1), {0, 6});
    EXPECT_EQ(describe(*text), "abcdef{ n = 1; }");
}

TEST(NSMutableAttributedString, JoinsNeighboursWithEqualAttributes)
{
    const auto text = attributedText({{"ab", 1}, {"cd", 2}, {"ef", 1}});
    text->setAttributes(attribute("n", 1), {2, 1});
    EXPECT_EQ(describe(*text), "abc{ n = 1; }d{ n = 2; }ef{ n = 1; }");
    text->setAttributes(attribute("n", 1), {3, 1});
    ASSERT_EQ(text->attributeRuns().size(), 1U);
    EXPECT_EQ(text->attributeRuns()[0].range, NSMakeRange(0, 6));
}

TEST(NSMutableAttributedString, AddsOneAttribute)
{
    const auto text = attributedText({{"ab", 1}, {"cd", 0}});
    text->addAttribute("m", box("x"), {1, 2});
    EXPECT_EQ(describe(*text), "a{ n = 1; }b{ m = x; n = 1; }c{ m = x; }d{ }");
    text->addAttribute("m", box("y"), {2, 1});
    EXPECT_EQ(describe(*text), "a{ n = 1; }b{ m = x; n = 1; }c{ m = y; }d{ }");
    EXPECT_THROW(text->addAttribute(nullptr, box("y"), {0, 1}), NSException);
    EXPECT_THROW(text->addAttribute("m", nullptr, {0, 1}), NSException);
}

TEST(NSMutableAttributedString, AddsSeveralAttributes)
{
    const auto text = attributedText({{"ab", 1}, {"cd", 0}});
    const auto more = make<NSMutableDictionary>();
    more->setObject(box("x"), "m");
    more->setObject(box("y"), "n");
    text->addAttributes(more, {1, 2});
    more->removeObjectForKey("m");
    EXPECT_EQ(describe(*text), "a{ n = 1; }bc{ m = x; n = y; }d{ }");
    text->addAttributes(nullptr, {0, 4});
    text->addAttributes(make<NSDictionary>().get(), {0, 4});
    EXPECT_EQ(describe(*text), "a{ n = 1; }bc{ m = x; n = y; }d{ }");
}

TEST(NSMutableAttributedString, RemovesOneAttribute)
{
    const auto text = attributedText({{"ab", 1}, {"cd", 0}});
    text->addAttribute("m", box("x"), {1, 1});
    text->removeAttribute("n", {1, 3});
    EXPECT_EQ(describe(*text), "a{ n = 1; }b{ m = x; }cd{ }");
    text->removeAttribute(nullptr, {0, 4});
    EXPECT_EQ(describe(*text), "a{ n = 1; }b{ m = x; }cd{ }");
    text->removeAttribute("m", {0, 4});
    EXPECT_EQ(describe(*text), "a{ n = 1; }bcd{ }");
}

TEST(NSMutableAttributedString, GivesReplacementsTheAttributesOfTheFirstUnitReplaced)
{
    const auto text = attributedText({{"ab", 1}, {"cd", 2}});
    text->replaceCharactersInRange({1, 2}, "xyz");
    EXPECT_EQ(text->string(), "axyzd");
    EXPECT_EQ(describe(*text), "axyz{ n = 1; }d{ n = 2; }");
    text->replaceCharactersInRange({4, 1}, "e");
    EXPECT_EQ(describe(*text), "axyz{ n = 1; }e{ n = 2; }");
}

TEST(NSMutableAttributedString, GivesInsertionsTheAttributesOfTheUnitBefore)
{
    const auto text = attributedText({{"ab", 1}, {"cd", 2}});
    text->replaceCharactersInRange({2, 0}, "x");
    EXPECT_EQ(describe(*text), "abx{ n = 1; }cd{ n = 2; }");
    text->replaceCharactersInRange({5, 0}, "y");
    EXPECT_EQ(describe(*text), "abx{ n = 1; }cdy{ n = 2; }");
    text->replaceCharactersInRange({0, 0}, "z");
    EXPECT_EQ(describe(*text), "zabx{ n = 1; }cdy{ n = 2; }");
}

TEST(NSMutableAttributedString, DeletesWhatNothingReplaces)
{
    const auto text = attributedText({{"ab", 1}, {"cd", 2}, {"ef", 1}});
    text->replaceCharactersInRange({1, 1}, "");
    EXPECT_EQ(describe(*text), "a{ n = 1; }cd{ n = 2; }ef{ n = 1; }");
    text->replaceCharactersInRange({1, 2}, NSString());
    EXPECT_EQ(describe(*text), "aef{ n = 1; }");
    text->replaceCharactersInRange({0, 3}, nullptr);
    EXPECT_EQ(text->length(), 0U);
    EXPECT_FALSE(text->string().isNull());
    EXPECT_TRUE(text->attributeRuns().empty());
    text->replaceCharactersInRange({0, 0}, "g");
    EXPECT_EQ(describe(*text), "g{ }");
}

TEST(NSMutableAttributedString, InsertsStringsWithTheirOwnAttributes)
{
    const auto text = attributedText({{"ab", 1}, {"cd", 2}});
    text->replaceCharactersInRange({1, 2}, attributedText({{"x", 3}, {"y", 2}}).get());
    EXPECT_EQ(describe(*text), "a{ n = 1; }x{ n = 3; }yd{ n = 2; }");
    text->appendAttributedString(attributedText({{"e", 2}}).get());
    text->appendAttributedString(nullptr);
    EXPECT_EQ(describe(*text), "a{ n = 1; }x{ n = 3; }yde{ n = 2; }");
}

TEST(NSMutableAttributedString, TakesInItself)
{
    const auto text = attributedText({{"a", 1}, {"b", 2}});
    text->appendAttributedString(text);
    EXPECT_EQ(describe(*text), "a{ n = 1; }b{ n = 2; }a{ n = 1; }b{ n = 2; }");
    text->replaceCharactersInRange({1, 2}, text->string());
    EXPECT_EQ(text->string(), "aababb");
}

TEST(NSMutableAttributedString, RaisesBeyondTheEndAndStaysAsItIs)
{
    const auto text = attributedText({{"ab", 1}, {"cd", 2}});
    for (const NSRange range : {NSMakeRange(3, 2), NSMakeRange(5, 0), NSMakeRange(2, ~NSUInteger{0})}) {
        EXPECT_THROW(text->setAttributes(nullptr, range), NSException);
        EXPECT_THROW(text->addAttribute("m", box("x"), range), NSException);
        EXPECT_THROW(text->addAttributes(attribute("m", 1).get(), range), NSException);
        EXPECT_THROW(text->removeAttribute("n", range), NSException);
        EXPECT_THROW(text->replaceCharactersInRange(range, "x"), NSException);
        EXPECT_THROW(text->replaceCharactersInRange(range, text), NSException);
    }
    EXPECT_EQ(describe(*text), "ab{ n = 1; }cd{ n = 2; }");
}

TEST(NSMutableAttributedString, ChangesNoAttributesInAnEmptyRange)
{
    const auto text = attributedText({{"ab", 1}, {"cd", 2}});
    for (const NSUInteger location : {0, 1, 2, 4}) {
        text->setAttributes(nullptr, {location, 0});
        text->addAttribute("m", box("x"), {location, 0});
        text->removeAttribute("n", {location, 0});
    }
    EXPECT_EQ(describe(*text), "ab{ n = 1; }cd{ n = 2; }");
}

TEST(NSMutableAttributedString, LeavesItsCopiesAsTheyAre)
{
    const auto text = attributedText({{"ab", 1}, {"cd", 2}});
    const auto copy = text->copy();
    const auto mutableCopy = copy->mutableCopy();
    text->setAttributes(nullptr, {0, 4});
    mutableCopy->replaceCharactersInRange({0, 2}, "x");
    EXPECT_EQ(describe(*text), "abcd{ }");
    EXPECT_EQ(describe(*copy), "ab{ n = 1; }cd{ n = 2; }");
    EXPECT_EQ(describe(*mutableCopy), "x{ n = 1; }cd{ n = 2; }");
    EXPECT_EQ(copy->copy(), copy);
    EXPECT_EQ(dynamic_cast<NSMutableAttributedString*>(copy.get()), nullptr);
}
