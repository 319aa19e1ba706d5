#include <Foundation/Foundation.h>

#include <gtest/gtest.h>
#include <set>
#include <string>

namespace {

const char* const kLong = "a text that is too long to be kept inside";

} // namespace

TEST(NSString, NullDiffersFromTheEmptyString)
{
    const NSString null;
    const NSString empty("");
    EXPECT_TRUE(null.isNull());
    EXPECT_FALSE(empty.isNull());
    EXPECT_FALSE(null == empty);
    EXPECT_TRUE(null == NSString(static_cast<const char*>(nullptr)));
    EXPECT_EQ(null.length(), 0U);
    EXPECT_EQ(null.UTF8String(), "");
    EXPECT_LT(null, empty);
    EXPECT_FALSE(static_cast<bool>(null));
    EXPECT_TRUE(static_cast<bool>(empty));
}

TEST(NSString, PreservesStringsOfEveryLengthInCopiesAndMoves)
{
    for (std::size_t length = 0; length < 40; ++length) {
        const std::string text(length, 'x');
        NSString original(text);
        const NSString copy(original);
        NSString moved(std::move(original));
        EXPECT_EQ(copy.UTF8String(), text);
        EXPECT_EQ(moved.UTF8String(), text);
        EXPECT_EQ(copy, moved);
        EXPECT_EQ(copy, NSString(text.c_str())) << length;
        NSString assigned(kLong);
        assigned = copy;
        EXPECT_EQ(assigned, copy);
        const NSString& alias = assigned;
        assigned = alias;
        EXPECT_EQ(assigned, copy);
    }
}

TEST(NSString, ReadsAndWritesUTF8)
{
    const NSString text("aé€😀");
    EXPECT_EQ(text.length(), 5U); // the last character is a surrogate pair
    EXPECT_EQ(text.characterAtIndex(1), u'é');
    EXPECT_EQ(text.characterAtIndex(3), 0xD83D);
    EXPECT_EQ(text.characterAtIndex(4), 0xDE00);
    EXPECT_EQ(text.UTF8String(), "aé€😀");
    EXPECT_EQ(NSString(std::string_view("a\0b", 3)).length(), 3U);
}

TEST(NSString, IsTheSameFromALiteralAndFromTheSameBytesAtRunTime)
{
    // The compiler evaluates short literals; everything else is read at run time.
    const auto expectSame = [](const NSString& literal, const std::string& bytes) {
        EXPECT_EQ(literal, NSString(bytes.c_str()));
        EXPECT_EQ(literal.hash(), NSString(bytes).hash());
        EXPECT_EQ(literal.UTF8String(), bytes);
    };
    expectSame("", "");
    expectSame("a", "a");
    expectSame("02031D88", "02031D88");
    expectSame("fifteen letters", "fifteen letters");
    expectSame("sixteen letters!", "sixteen letters!");
    expectSame("é", "é");
    expectSame("\x7F", "\x7F");
    EXPECT_EQ(NSString("cut\0 off"), NSString("cut"));
    char buffer[8] = "abc";
    const NSString text(buffer);
    buffer[0] = 'x';
    EXPECT_EQ(text, NSString("abc"));
}

TEST(NSString, MovedFromIsNull)
{
    for (const char* utf8 : {"short", kLong}) {
        NSString text(utf8);
        const NSString taken(std::move(text));
        EXPECT_TRUE(text == NSString()); // NOLINT(bugprone-use-after-move): what is left is documented
        EXPECT_EQ(text.hash(), NSString().hash());
        EXPECT_EQ(taken, NSString(utf8));
    }
}

TEST(NSString, OrdersByCodeUnit)
{
    EXPECT_LT(NSString("B"), NSString("a"));
    EXPECT_LT(NSString("a"), NSString("aa"));
    EXPECT_LT(NSString("a"), NSString(kLong));
    EXPECT_LT(NSString("z"), NSString("é"));
    EXPECT_EQ(NSString(kLong) <=> NSString(std::string(kLong)), std::strong_ordering::equal);
}

TEST(NSString, ReplacesMalformedUTF8)
{
    const auto units = [](std::string_view utf8) { return std::u16string(NSString(utf8).view()); };
    EXPECT_EQ(units("\x80"), u"\uFFFD");
    EXPECT_EQ(units("a\xC3"), u"a\uFFFD");                   // cut off
    EXPECT_EQ(units("\xE2\x82z"), u"\uFFFDz");               // one for the well-formed beginning
    EXPECT_EQ(units("\xC0\xAF"), u"\uFFFD\uFFFD");           // overlong
    EXPECT_EQ(units("\xED\xA0\x80"), u"\uFFFD\uFFFD\uFFFD"); // a surrogate
    EXPECT_EQ(units("\xF4\x90\x80\x80"), u"\uFFFD\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(NSString("\xFF").length(), 1U);
}

TEST(NSString, WritesAnUnpairedSurrogateAsTheReplacementCharacter)
{
    const char16_t lone[]{u'a', 0xD800, u'b'};
    EXPECT_EQ(NSString(std::u16string_view(lone, 3)).UTF8String(), "a\uFFFDb");
    const char16_t low[]{0xDC00};
    EXPECT_EQ(NSString(std::u16string_view(low, 1)).UTF8String(), "\uFFFD");
}

TEST(NSString, EqualStringsHaveEqualHashes)
{
    EXPECT_EQ(NSString("ffffff").hash(), NSString(u"ffffff").hash());
    EXPECT_EQ(NSString(kLong).hash(), NSString(std::string(kLong)).hash());
    EXPECT_NE(NSString("02031D88").hash(), NSString("02031d88").hash());
    EXPECT_NE(NSString("a").hash(), NSString(std::string_view("a\0", 2)).hash());
    EXPECT_NE(NSString().hash(), NSString("").hash());
}

TEST(NSString, HashesOfSimilarStringsDiffer)
{
    std::set<NSUInteger> hashes;
    std::set<NSUInteger> lowBits;
    for (unsigned value = 0; value < 65536; ++value) {
        const auto text = NSString::stringWithFormat("%08x", value * 256);
        hashes.insert(text.hash());
        hashes.insert(text.stringByAppendingString(kLong).hash());
        lowBits.insert(text.hash() & 0xFFFF);
    }
    EXPECT_EQ(hashes.size(), 2U * 65536);
    // Thrown at random into as many boxes, 1 - 1/e of them (41427) are hit; the spread of that is about 100.
    EXPECT_NEAR(static_cast<double>(lowBits.size()), 41427, 1000);
}

TEST(NSString, CharacterBeyondTheEndRaises)
{
    EXPECT_THROW(static_cast<void>(NSString("ab").characterAtIndex(2)), NSException);
    EXPECT_THROW(static_cast<void>(NSString().characterAtIndex(0)), NSException);
}

TEST(NSString, ASCIIIsThereOnlyForASCII)
{
    EXPECT_EQ(NSString("abc").cStringUsingEncoding(NSASCIIStringEncoding), "abc");
    EXPECT_EQ(NSString("").cStringUsingEncoding(NSASCIIStringEncoding), "");
    EXPECT_EQ(NSString("é").cStringUsingEncoding(NSASCIIStringEncoding), std::nullopt);
    EXPECT_EQ(NSString().cStringUsingEncoding(NSASCIIStringEncoding), std::nullopt);
    EXPECT_EQ(NSString("é").cStringUsingEncoding(NSUTF8StringEncoding), "é");
    const char16_t lone[]{0xD800};
    EXPECT_EQ(
        NSString(std::u16string_view(lone, 1)).cStringUsingEncoding(NSUTF8StringEncoding), std::nullopt);
}

TEST(NSString, FindsParts)
{
    const NSString text("NSAppearanceNameDarkAqua");
    EXPECT_TRUE(text.hasPrefix("NSApp"));
    EXPECT_FALSE(text.hasPrefix("nsapp"));
    EXPECT_TRUE(text.hasSuffix("Aqua"));
    EXPECT_TRUE(text.containsString("Dark"));
    EXPECT_FALSE(text.containsString("dark"));
    EXPECT_TRUE(text.localizedCaseInsensitiveContainsString("dARK"));
    EXPECT_TRUE(NSString("ÄRGER").localizedCaseInsensitiveContainsString("är"));
    EXPECT_FALSE(text.localizedCaseInsensitiveContainsString("light"));
    EXPECT_FALSE(text.hasPrefix(kLong));
    EXPECT_FALSE(text.hasSuffix(kLong));
}

TEST(NSString, NoStringContainsNullOrTheEmptyString)
{
    for (const NSString& part : {NSString(), NSString("")}) {
        for (const NSString& text : {NSString(), NSString(""), NSString("a")}) {
            EXPECT_FALSE(text.hasPrefix(part));
            EXPECT_FALSE(text.hasSuffix(part));
            EXPECT_FALSE(text.containsString(part));
            EXPECT_FALSE(text.localizedCaseInsensitiveContainsString(part));
        }
    }
    EXPECT_FALSE(NSString().containsString("a"));
    EXPECT_FALSE(NSString().localizedCaseInsensitiveContainsString("a"));
}

TEST(NSString, AccentsThatStandApartAreNotTheSame)
{
    // Apple takes both spellings for equal.
    EXPECT_FALSE(NSString("e\u0301t\u00E9").hasPrefix("\u00E9"));
    EXPECT_FALSE(NSString("\u00E9") == NSString("e\u0301"));
}

TEST(NSString, TakesPartsByRange)
{
    const NSString text("a text that is longer than fifteen");
    EXPECT_EQ(text.substringWithRange(NSMakeRange(2, 4)), NSString("text"));
    EXPECT_EQ(text.substringWithRange(NSMakeRange(0, text.length())), text);
    EXPECT_EQ(text.substringWithRange(NSMakeRange(text.length(), 0)), NSString(""));
    EXPECT_THROW(static_cast<void>(text.substringWithRange(NSMakeRange(text.length(), 1))), NSException);
    EXPECT_THROW(static_cast<void>(text.substringWithRange(NSMakeRange(text.length() + 1, 0))), NSException);
    EXPECT_THROW(static_cast<void>(text.substringWithRange(NSMakeRange(1, UINT64_MAX))), NSException);
    EXPECT_TRUE(NSString().substringWithRange(NSMakeRange(0, 0)).isNull());
    EXPECT_THROW(static_cast<void>(NSString().substringWithRange(NSMakeRange(0, 1))), NSException);
    EXPECT_EQ(NSMaxRange(NSMakeRange(2, 4)), 6U);
}

TEST(NSString, IsSplitAtEachSeparator)
{
    using Parts = std::vector<NSString>;
    const auto split = [](const char* text, const NSString& separator) {
        return NSString(text).componentsSeparatedByString(separator);
    };
    EXPECT_EQ(split("one\ntwo\nthree", "\n"), (Parts{"one", "two", "three"}));
    EXPECT_EQ(split("\na\n\nb\n", "\n"), (Parts{"", "a", "", "b", ""}));
    EXPECT_EQ(split("a, b, c", ", "), (Parts{"a", "b", "c"}));
    EXPECT_EQ(split("aaaaa", "aa"), (Parts{"", "", "a"})) << "from the beginning, without overlap";
    EXPECT_EQ(split("none", "\n"), Parts{"none"});
    EXPECT_EQ(split("", "\n"), Parts{""});
    EXPECT_EQ(split("\n", "\n"), (Parts{"", ""}));
    EXPECT_EQ(split("abc", ""), Parts{"abc"});
    EXPECT_EQ(split("abc", nullptr), Parts{"abc"});
    EXPECT_EQ(NSString().componentsSeparatedByString("\n"), Parts{});
}

TEST(NSString, GivesItsBytesAsData)
{
    const auto utf8 = NSString("é").dataUsingEncoding(NSUTF8StringEncoding);
    EXPECT_TRUE(utf8->isEqual(NSData::dataWithBytes("\xC3\xA9", 2).get()));
    EXPECT_EQ(NSString("abc").dataUsingEncoding(NSASCIIStringEncoding)->length(), 3U);
    EXPECT_EQ(NSString("").dataUsingEncoding(NSUTF8StringEncoding)->length(), 0U);
    EXPECT_EQ(NSString("é").dataUsingEncoding(NSASCIIStringEncoding), nullptr);
    EXPECT_EQ(NSString().dataUsingEncoding(NSUTF8StringEncoding), nullptr);
}

TEST(NSString, AppendsStrings)
{
    EXPECT_EQ(NSString("ab").stringByAppendingString("cd"), NSString("abcd"));
    EXPECT_EQ(NSString("ab").stringByAppendingString(nullptr), NSString("ab"));
    EXPECT_TRUE(NSString().stringByAppendingString("cd").isNull());
    EXPECT_EQ(NSString(kLong).stringByAppendingString(kLong).UTF8String(), std::string(kLong) + kLong);
}

TEST(NSString, ReadsNumbersAtTheBeginning)
{
    EXPECT_EQ(NSString(" 2.5e3x").doubleValue(), 2500);
    EXPECT_EQ(NSString("-0.125").doubleValue(), -0.125);
    EXPECT_EQ(NSString("x").doubleValue(), 0);
    EXPECT_EQ(NSString("0x10").doubleValue(), 0);
    EXPECT_EQ(NSString("inf").doubleValue(), 0);
    EXPECT_EQ(NSString("nan").doubleValue(), 0);
    EXPECT_EQ(NSString().doubleValue(), 0);
    EXPECT_EQ(NSString("42 apples").integerValue(), 42);
    EXPECT_EQ(NSString("-7").integerValue(), -7);
    EXPECT_EQ(NSString("99999999999999999999").integerValue(), INT64_MAX);
    EXPECT_EQ(NSString().integerValue(), 0);
}
