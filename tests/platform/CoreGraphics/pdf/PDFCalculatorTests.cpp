#include "CoreGraphics/pdf/PDFCalculator.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace {

using Numbers = std::vector<double>;

/// The values that a program leaves on top of the stack; none when it does not compile.
Numbers run(std::string_view program, std::size_t count, const Numbers& inputs = {})
{
    const auto calculator = PDFCalculator::compile(program);
    if (!calculator)
        return {};
    Numbers results(count, -1);
    calculator->run(inputs, results);
    return results;
}

double runForOne(const std::string& program)
{
    const Numbers results = run("{" + program + "}", 1);
    return results.empty() ? std::numeric_limits<double>::quiet_NaN() : results[0];
}

TEST(PDFCalculator, ComputesEachOperator)
{
    const struct {
        const char* program;
        double result;
    } cases[] = {
        {"-3.5 abs", 3.5},
        {"3 4 add", 7},
        {"12 10 and", 8},
        {"1 0 atan", 90},
        {"-1 0 atan", 270},
        {"0 -1 atan", 180},
        {"7 3 bitshift", 56},
        {"142 -3 bitshift", 17},
        {"-1 -31 bitshift", 1}, // with zeros
        {"1 31 bitshift", -2147483648.0},
        {"1 32 bitshift", 0},
        {"1 -32 bitshift", 0},
        {"3.2 ceiling", 4},
        {"60 cos", 0.5},
        {"-47.8 cvi", -47},
        {"7 cvr", 7},
        {"7 2 div", 3.5},
        {"4 4 eq", 1},
        {"4 5 eq", 0},
        {"9 0.5 exp", 3},
        {"false", 0},
        {"-4.8 floor", -5},
        {"4 4 ge", 1},
        {"3 4 ge", 0},
        {"5 4 gt", 1},
        {"4 4 gt", 0},
        {"-7 2 idiv", -3},
        {"7.9 2 idiv", 3},
        {"4 4 le", 1},
        {"5 4 le", 0},
        {"10 ln", 2.302585092994046},
        {"1000 log", 3},
        {"3 4 lt", 1},
        {"4 4 lt", 0},
        {"-5 3 mod", -2},
        {"5 -3 mod", 2},
        {"2.5 4 mul", 10},
        {"4 5 ne", 1},
        {"4 4 ne", 0},
        {"4.5 neg", -4.5},
        {"52 not", -53},
        {"true not", 0},
        {"false not", 1},
        {"17 5 or", 21},
        {"true false or", 1},
        {"6.5 round", 7},
        {"-6.5 round", -6},
        {"30 sin", 0.5},
        {"6.25 sqrt", 2.5},
        {"8.3 6.3 sub", 2},
        {"true", 1},
        {"-3.2 truncate", -3},
        {"7 3 xor", 4},
        {"true true xor", 0},
        {"true true and not", 0}, // a Boolean, whose bits are not inverted
        {"1 1 and not", -2},
    };
    for (const auto& [program, result] : cases) {
        SCOPED_TRACE(program);
        EXPECT_NEAR(runForOne(program), result, 1e-12);
    }
}

TEST(PDFCalculator, MovesValuesOnTheStack)
{
    EXPECT_EQ(run("{1 2 exch}", 2), (Numbers{2, 1}));
    EXPECT_EQ(run("{1 2 dup}", 3), (Numbers{1, 2, 2}));
    EXPECT_EQ(run("{1 2 pop}", 1), (Numbers{1}));
    EXPECT_EQ(run("{1 2 3 2 copy}", 5), (Numbers{1, 2, 3, 2, 3}));
    EXPECT_EQ(run("{1 2 0 copy}", 2), (Numbers{1, 2}));
    EXPECT_EQ(run("{5 6 7 0 index}", 4), (Numbers{5, 6, 7, 7}));
    EXPECT_EQ(run("{5 6 7 2 index}", 4), (Numbers{5, 6, 7, 5}));
    EXPECT_EQ(run("{1 2 3 4 3 1 roll}", 4), (Numbers{1, 4, 2, 3}));
    EXPECT_EQ(run("{1 2 3 4 3 -1 roll}", 4), (Numbers{1, 3, 4, 2}));
    EXPECT_EQ(run("{1 2 3 3 -5 roll}", 3), (Numbers{3, 1, 2}));
    EXPECT_EQ(run("{1 2 0 5 roll}", 2), (Numbers{1, 2}));
}

TEST(PDFCalculator, RunsOneOfTheBranches)
{
    const std::string_view program = "{dup 0 lt {pop 10} {1 gt {20} {30} ifelse} ifelse 1 add}";
    EXPECT_EQ(run(program, 1, {-1}), Numbers{11});
    EXPECT_EQ(run(program, 1, {2}), Numbers{21});
    EXPECT_EQ(run(program, 1, {1}), Numbers{31});
    EXPECT_EQ(run("{7 exch 0 eq {pop 8} if}", 1, {0}), Numbers{8});
    EXPECT_EQ(run("{7 exch 0 eq {pop 8} if}", 1, {1}), Numbers{7});
}

TEST(PDFCalculator, TakesTheInputsInOrder)
{
    EXPECT_EQ(run("{sub}", 1, {5, 3}), Numbers{2});
    EXPECT_EQ(run("{}", 2, {5, 3}), (Numbers{5, 3}));
    EXPECT_EQ(run("{}", 1, {5, 3}), Numbers{3});
}

TEST(PDFCalculator, ReadsCommentsAndAllFormsOfNumbers)
{
    EXPECT_EQ(run("  {% 9 9 \r1 +2 add\n-.5 add 4. mul%}\n} ignored", 1), Numbers{10});
    EXPECT_EQ(run("{1{2}{3}ifelse}", 1), Numbers{2});
    EXPECT_EQ(run("{1e2}", 1), Numbers{100});
}

TEST(PDFCalculator, HasZerosForWhatIsNotDefined)
{
    for (const char* program : {"1 0 div", "0 0 div", "1 0 idiv", "5 0 mod", "-4 sqrt", "0 ln", "-1 log",
             "0 -1 exp", "-8 0.5 exp", "10 1000 exp"}) {
        SCOPED_TRACE(program);
        EXPECT_EQ(runForOne(std::string(program) + " 0 add"), 0);
    }
}

TEST(PDFCalculator, HasAllResultsZeroAfterAnErrorOfTheStack)
{
    for (const char* program : {"{1 add 5}", "{pop pop 5}", "{exch 5}", "{dup 5}", "{3 copy 5 5}",
             "{-1 copy 5 5}", "{1 5 index 5}", "{1 -1 index 5}", "{1 2 roll 5 5}", "{5 -2 1 roll 5 5}", "{5}",
             "{1 {5 5} {5 5} ifelse pop pop 5}"}) {
        SCOPED_TRACE(program);
        EXPECT_EQ(run(program, 2), (Numbers{0, 0}));
    }
    std::string hundred = "{";
    for (int i = 0; i < 100; ++i)
        hundred += "1 ";
    EXPECT_EQ(run(hundred + "}", 1), Numbers{1});
    EXPECT_EQ(run(hundred + "2}", 1), Numbers{0});
}

TEST(PDFCalculator, ConvertsAnyNumberToAnInteger)
{
    EXPECT_EQ(runForOne("1e300 1 and"), 1); // 2147483647
    EXPECT_EQ(runForOne("-1e300 1 and"), 0);
    EXPECT_EQ(run("{1 and}", 1, {std::nan("")}), Numbers{0});
    EXPECT_EQ(runForOne("-2147483648 -1 idiv"), 2147483648.0);
    EXPECT_EQ(run("{1 2 2 -2147483648 roll}", 2), (Numbers{1, 2}));
}

TEST(PDFCalculator, CompilesNothingElse)
{
    for (const char* program :
        {"", "1 2 add", "{", "{1", "{1 {2} }", "{1 {2} {3} }", "{1 {2} {3} if}", "{1 {2} ifelse}", "{{2}",
            "{1 if}", "{frobnicate}", "{1.2.3}", "{inf}", "{nan}", "{1x}", "{-}", "{1 {2} {3} 4 ifelse}"}) {
        SCOPED_TRACE(program);
        EXPECT_FALSE(PDFCalculator::compile(program));
    }
}

TEST(PDFCalculator, CompilesProgramsOfLimitedLengthAndDepth)
{
    const auto nested = [](int depth) {
        std::string program = "{7 ";
        for (int i = 0; i < depth; ++i)
            program += "1 {";
        for (int i = 0; i < depth; ++i)
            program += "} if ";
        return program + "}";
    };
    EXPECT_EQ(run(nested(32), 1), Numbers{7});
    EXPECT_FALSE(PDFCalculator::compile(nested(33)));
    EXPECT_FALSE(PDFCalculator::compile(std::string(1'000'000, '{')));

    const auto ones = [](std::size_t count) {
        std::string program = "{";
        for (std::size_t i = 0; i < count; ++i)
            program += "1 ";
        return program + "}";
    };
    const auto longest = PDFCalculator::compile(ones(PDFCalculator::kMaxInstructions));
    ASSERT_TRUE(longest);
    EXPECT_EQ(longest->size(), PDFCalculator::kMaxInstructions);
    EXPECT_FALSE(PDFCalculator::compile(ones(PDFCalculator::kMaxInstructions + 1)));
}

} // namespace
