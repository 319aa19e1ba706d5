#include <Foundation/Foundation.h>

#include "Foundation/testing/MainBundleFolder.h"
#include "Foundation/testing/NSLogCapture.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

/// The string under `key` in a bundle whose strings file has these bytes; "(missing)" without one.
std::string textOf(std::string_view bytes, const NSString& key = "k")
{
    const TemporaryFolder folder;
    folder.write("en.lproj/Localizable.strings", bytes);
    const MainBundleFolder bundle(NSString(folder.path().string()));
    const NSLogCapture quiet;
    return NSBundle::mainBundle()->localizedStringForKey(key, "(missing)", nullptr).UTF8String();
}

std::string bytesOf(std::u16string_view text, bool bigEndian)
{
    std::string bytes;
    for (const char16_t unit : text) {
        const char low = static_cast<char>(unit & 0xFF);
        const char high = static_cast<char>(unit >> 8);
        bytes += bigEndian ? high : low;
        bytes += bigEndian ? low : high;
    }
    return bytes;
}

} // namespace

TEST(StringsFile, ReadsPairsOfQuotedStrings)
{
    EXPECT_EQ(textOf("\"k\" = \"a text\";"), "a text");
    EXPECT_EQ(textOf("\"j\"=\"1\";\"k\"=\"2\";\n"), "2");
    EXPECT_EQ(textOf("'k' = 'it''s';"), "(missing)"); // quotes are not doubled
    EXPECT_EQ(textOf("'k' = 'say \"hi\"';"), "say \"hi\"");
    EXPECT_EQ(textOf("\"\" = \"empty\";", ""), "empty");
    EXPECT_EQ(textOf("\"k\" = \"first\"; \"k\" = \"last\";"), "last");
    EXPECT_EQ(textOf("\"k\" = \"two\nlines\";"), "two\nlines");
}

TEST(StringsFile, WordsNeedNoQuotes)
{
    EXPECT_EQ(textOf("k = word;"), "word");
    EXPECT_EQ(textOf("a.b_c-d = 42;", "a.b_c-d"), "42");
    EXPECT_EQ(textOf("k;"), "k");
}

TEST(StringsFile, PassesComments)
{
    EXPECT_EQ(
        textOf("/* a \"comment\" = ; */ // and another\n\"k\" /* here */ = // there\n \"v\" ; // end"), "v");
    EXPECT_EQ(textOf("\"k\" = \"/* text */ // too\";"), "/* text */ // too");
    EXPECT_EQ(textOf("\"k\" = \"v\"; /**/"), "v");
}

TEST(StringsFile, UnderstandsEscapes)
{
    EXPECT_EQ(textOf(R"("k" = "a\"b\\c\nd\te\rf\'g\qh";)"), "a\"b\\c\nd\te\rf'gqh");
    EXPECT_EQ(textOf(R"("k" = "\a\b\f\v";)"), "\a\b\f\v");
    EXPECT_EQ(textOf(R"("k" = "\U00e9\u00DF\U20AC";)"), "\xC3\xA9\xC3\x9F\xE2\x82\xAC");
    EXPECT_EQ(textOf(R"("k" = "\Ud83d\UDE00";)"), "\xF0\x9F\x98\x80"); // U+1F600 in two units
    EXPECT_EQ(textOf(R"("k" = "\U41z\Ux";)"), "AzUx");
    EXPECT_EQ(textOf(R"("k" = "\101\60\7z";)"), "A0\az");
    EXPECT_EQ(textOf("\"k\" = \"a\\\nb\";"), "a\nb");
    EXPECT_EQ(textOf(R"("a\"b" = "v";)", "a\"b"), "v");
}

TEST(StringsFile, ReadsUTF8AndBothKindsOfUTF16)
{
    const std::u16string text = u"\"k\" = \"\u00e9\u20ac\U0001F600\";";
    const std::string expected = "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
    EXPECT_EQ(textOf("\"k\" = \"" + expected + "\";"), expected);
    EXPECT_EQ(textOf("\xEF\xBB\xBF\"k\" = \"" + expected + "\";"), expected);
    EXPECT_EQ(textOf("\xFF\xFE" + bytesOf(text, false)), expected);
    EXPECT_EQ(textOf("\xFE\xFF" + bytesOf(text, true)), expected);
    EXPECT_EQ(textOf(bytesOf(text, false)), expected);
    EXPECT_EQ(textOf(bytesOf(text, true)), expected);
}

TEST(StringsFile, DamagedFilesCountAsEmpty)
{
    for (const char* damaged :
        {"\"k\" = \"v\"", "\"k\" = \"v\"; \"open", "\"k\" = \"v\"; /* open", "\"k\" \"v\";",
            "\"k\" = \"v\"; =", "\"k\" = \"v\"; \"x\" = ;", "\"k\" = \"v\"; {}", "\"k\" = \"v\\"}) {
        EXPECT_EQ(textOf(damaged), "(missing)") << damaged;
    }
    EXPECT_EQ(textOf(""), "(missing)");
    EXPECT_EQ(textOf("\xFF\xFE"), "(missing)");
    EXPECT_EQ(textOf("\xFF"), "(missing)");
}
