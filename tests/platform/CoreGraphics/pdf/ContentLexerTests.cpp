#include "CoreGraphics/pdf/ContentLexer.h"

#include "CoreGraphics/pdf/PDFBudget.h"

#include <gtest/gtest.h>
#include <sstream>

namespace {

/// Tokens as text: "12", "/Name", "(string)", "[1 /A]", "<</K 1>>", "null", "true", and operators as they
/// are.
std::string describe(const ContentToken& token)
{
    using Kind = ContentToken::Kind;
    const auto items = [&] {
        std::string result;
        for (const auto& item : token.items)
            result += (result.empty() ? "" : " ") + describe(item);
        return result;
    };
    std::ostringstream number;
    switch (token.kind) {
    case Kind::Null:
        return "null";
    case Kind::Boolean:
        return token.number != 0 ? "true" : "false";
    case Kind::Number:
        number.precision(12);
        number << token.number;
        return number.str();
    case Kind::Name:
        return "/" + token.text;
    case Kind::String:
        return "(" + token.text + ")";
    case Kind::Array:
        return "[" + items() + "]";
    case Kind::Dictionary:
        return "<<" + items() + ">>";
    case Kind::Operator:
        return token.text;
    }
    return {};
}

/// All tokens of a content stream, separated by bars.
std::string tokens(std::string_view content)
{
    ContentLexer lexer(content);
    ContentToken token;
    std::string result;
    while (lexer.next(token))
        result += (result.empty() ? "" : "|") + describe(token);
    return result;
}

TEST(ContentLexer, ReadsOperandsAndOperators)
{
    EXPECT_EQ(tokens("1 0 0 1 5 6 cm /Name gs"), "1|0|0|1|5|6|cm|/Name|gs");
    EXPECT_EQ(tokens("f*W'\"T*"), "f*W'\"T*");
    EXPECT_EQ(tokens("true false null"), "true|false|null");
    EXPECT_EQ(tokens(""), "");
}

TEST(ContentLexer, ReadsNumbers)
{
    EXPECT_EQ(tokens("+17 -98 34.5 -3.62 4. -.002 .5"), "17|-98|34.5|-3.62|4|-0.002|0.5");
    EXPECT_EQ(tokens("00012 0.1234567"), "12|0.1234567");
    EXPECT_EQ(tokens("+ ."), "0|0");
}

TEST(ContentLexer, ClampsLargeNumbers)
{
    EXPECT_EQ(tokens("99999999999999999999 -99999999999"), "1000000000|-1000000000");
}

TEST(ContentLexer, ReadsTheFirstNumberOfMalformedOnes)
{
    EXPECT_EQ(tokens("1.2.3 5-6 --7 8abc"), "1.2|5|-7|8");
}

TEST(ContentLexer, SkipsWhiteSpaceAndComments)
{
    EXPECT_EQ(tokens(std::string_view("\t1\f\r\n\0 2% (no string\r3 % end", 26)), "1|2|3");
}

TEST(ContentLexer, ReadsNames)
{
    EXPECT_EQ(tokens("/A#20B/C /#41 /A#G / /a#4"), "/A B|/C|/A|/A#G|/|/a#4");
}

TEST(ContentLexer, ReadsLiteralStrings)
{
    EXPECT_EQ(tokens("(a(b)c)(\\(\\)\\\\)"), "(a(b)c)|(()\\)");
    EXPECT_EQ(tokens("(\\n\\r\\t\\b\\f\\q)"), "(\n\r\t\b\fq)");
    EXPECT_EQ(tokens("(\\101\\7x\\1018)"),
        "(A\ax"
        "A8)");
    EXPECT_EQ(tokens("(a\\\nb\\\r\nc)(d\r\ne\rf)"), "(abc)|(d\ne\nf)");
}

TEST(ContentLexer, ReadsHexadecimalStrings)
{
    EXPECT_EQ(tokens("<41 4a\n4> <> <4x1>"), "(AJ@)|()|(A)");
}

TEST(ContentLexer, ReadsArraysAndDictionaries)
{
    EXPECT_EQ(tokens("[1 [/A (b)] null] 0 d"), "[1 [/A (b)] null]|0|d");
    EXPECT_EQ(tokens("<</K 1/D<</L[2]>>>>BDC"), "<</K 1 /D <</L [2]>>>>|BDC");
}

TEST(ContentLexer, DropsWordsInArrays)
{
    EXPECT_EQ(tokens("[1 word 2]"), "[1 2]");
}

TEST(ContentLexer, SkipsStrayDelimiters)
{
    EXPECT_EQ(tokens(") 1 ] > } 2 {"), "1|2");
    EXPECT_EQ(tokens("[1 > 2] 3"), "[1 2]|3");
    EXPECT_EQ(tokens("<< /K ] 1 >> 3"), "<</K 1>>|3");
}

TEST(ContentLexer, EndsUnterminatedTokensWithTheContent)
{
    EXPECT_EQ(tokens("(abc"), "(abc)");
    EXPECT_EQ(tokens("(abc\\"), "(abc)");
    EXPECT_EQ(tokens("<414"), "(A@)");
    EXPECT_EQ(tokens("[1 2"), "[1 2]");
    EXPECT_EQ(tokens("<</K [1"), "<</K [1]>>");
    EXPECT_EQ(tokens("/"), "/");
}

TEST(ContentLexer, RefusesDeeplyNestedArrays)
{
    EXPECT_EQ(tokens(std::string(32, '[') + "1").size(), 65u);
    EXPECT_THROW(tokens(std::string(33, '[')), PDFLimitExceeded);
    std::string dictionaries;
    for (int level = 0; level < 33; ++level)
        dictionaries += "<<";
    EXPECT_THROW(tokens(dictionaries), PDFLimitExceeded);
}

TEST(ContentLexer, ContinuesWhereItIsSet)
{
    ContentLexer lexer("BI ID \1\2\3 EI Q");
    ContentToken token;
    ASSERT_TRUE(lexer.next(token));
    ASSERT_TRUE(lexer.next(token));
    EXPECT_EQ(token.text, "ID");
    EXPECT_EQ(lexer.position(), 5u);
    lexer.setPosition(9);
    ASSERT_TRUE(lexer.next(token));
    EXPECT_EQ(token.text, "EI");
    lexer.setPosition(1000);
    EXPECT_FALSE(lexer.next(token));
}

} // namespace
