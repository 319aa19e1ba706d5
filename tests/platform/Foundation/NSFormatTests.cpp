#include <Foundation/Foundation.h>

#include "support/TemporaryFolder.h"

#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>

namespace {

template <class... Args> std::string formatted(const NSString& format, const Args&... args)
{
    return NSString::stringWithFormat(format, args...).UTF8String();
}

} // namespace

TEST(NSFormat, PrintsObjectsAndStrings)
{
    const RetainPtr<NSNumber> number = NSNumber::numberWithInteger(7);
    EXPECT_EQ(formatted("%@ and %@", NSString("é"), "utf8"), "é and utf8");
    EXPECT_EQ(formatted("%@ %@", number, number), "7 7");
    EXPECT_EQ(formatted("%@ %@", NSString(), RetainPtr<NSNumber>()), "(null) (null)");
    EXPECT_EQ(formatted("[%5s|%-5s|%.2s]", "ab", "cd", "efg"), "[   ab|cd   |ef]");
    EXPECT_EQ(formatted("%@ %@", 3, 2.5), "3 2.5");
}

TEST(NSFormat, PrintsIntegersOfEverySize)
{
    EXPECT_EQ(formatted("%d %i %ld %lld %zu", -1, 2, 3L, 4LL, sizeof(char)), "-1 2 3 4 1");
    EXPECT_EQ(formatted("%u", -1), "4294967295");
    EXPECT_EQ(formatted("%u", static_cast<signed char>(-1)), "255");
    EXPECT_EQ(formatted("%llu", UINT64_MAX), "18446744073709551615");
    EXPECT_EQ(formatted("%x %X %#o %05d %+d", 255, 255, 8, 42, 42), "ff FF 010 00042 +42");
    EXPECT_EQ(formatted("%d", true), "1");
}

TEST(NSFormat, PrintsRealNumbers)
{
    EXPECT_EQ(formatted("%f %.2f %e %g", 1.5, 2.345, 1000.0, 0.0001), "1.500000 2.35 1.000000e+03 0.0001");
    EXPECT_EQ(formatted("%8.3f|%-8.1f|", 3.14159, 2.5F), "   3.142|2.5     |");
    EXPECT_EQ(formatted("%f", 1e300).size(), 301U + 7U);
}

TEST(NSFormat, PrintsCharactersPointersAndPercentSigns)
{
    EXPECT_EQ(formatted("%c%C%C", 'a', 0x20AC, 0x1F600), "a€😀");
    EXPECT_EQ(formatted("%C", 0x110000), "\uFFFD");
    EXPECT_EQ(formatted("%p", reinterpret_cast<const void*>(0x1f)), "0x1f");
    EXPECT_EQ(formatted("100%% %p", nullptr), "100% 0x0");
}

TEST(NSFormat, TakesWidthsFromArgumentsAndArgumentsByPosition)
{
    EXPECT_EQ(formatted("[%*d]", 5, 42), "[   42]");
    EXPECT_EQ(formatted("[%-*d]", 5, 42), "[42   ]");
    EXPECT_EQ(formatted("[%*d]", -5, 42), "[42   ]");
    EXPECT_EQ(formatted("[%.*f]", 1, 2.55), "[2.5]");
    EXPECT_EQ(formatted("%2$@ %1$@ %2$@", "a", "b"), "b a b");
    EXPECT_EQ(formatted("[%2$*1$d]", 4, 7), "[   7]");
}

TEST(NSFormat, ConvertsBetweenIntegersAndReals)
{
    EXPECT_EQ(formatted("%d %.1f", 2.9, 3), "2 3.0");
    EXPECT_EQ(formatted("%d", 1e300), "9223372036854775807");
}

TEST(NSFormat, WrongArgumentsGiveWordsAndNeverReadWhatIsNotThere)
{
    EXPECT_EQ(formatted("%d", "text"), "(mismatch)");
    EXPECT_EQ(formatted("%c", "text"), "(mismatch)");
    EXPECT_EQ(formatted("%p", 1), "(mismatch)");
    EXPECT_EQ(formatted("%@ %@", "one"), "one (missing)");
    EXPECT_EQ(formatted("%5$d", 1), "(missing)");
    EXPECT_EQ(formatted("%d", 1, 2, 3), "1");
    EXPECT_EQ(formatted("%n %y %", 1, 2), "%n %y %");
    EXPECT_EQ(formatted("%99999999999d", 1).size(), 4096U);
    EXPECT_TRUE(NSString::stringWithFormat(nullptr, 1).isNull());
}

TEST(NSFormat, PrintsUnsignedNumbersByTheirValue)
{
    constexpr NSUInteger large = UINT64_MAX;
    EXPECT_EQ(formatted("%@ %d %i", large, large, large),
        "18446744073709551615 18446744073709551615 18446744073709551615");
    EXPECT_EQ(formatted("%.0f", large), "18446744073709551616");
    EXPECT_EQ(formatted("%x %X %o", large, -1, static_cast<short>(-1)), "ffffffffffffffff FFFFFFFF 177777");
    enum class Level : unsigned char { Top = 200 };
    EXPECT_EQ(formatted("%d", Level::Top), "200");
}

TEST(NSFormat, TakesEveryFlag)
{
    EXPECT_EQ(formatted("[%+d|% d|%-6d|%06d|%+.1f]", 5, 5, 5, -5, 0.25), "[+5| 5|5     |-00005|+0.2]");
    EXPECT_EQ(formatted("%#x %#X %#o %#.0f %#g", 255, 255, 8, 1.0, 1.0), "0xff 0XFF 010 1. 1.00000");
    EXPECT_EQ(formatted("[%#d|%'d|%.5d|%8.3d]", 7, 1234567, 42, 42), "[7|1234567|00042|     042]");
    EXPECT_EQ(formatted("[%10@|%-10@|%3c|%-20p]", "right", "left", 'x', reinterpret_cast<const void*>(0x1f)),
        "[     right|left      |  x|0x1f                ]");
}

TEST(NSFormat, PrintsRealNumbersThatAreNoNumbers)
{
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(formatted("%f %F %g %5.1f", infinity, -infinity, std::nan(""), infinity), "inf -INF nan   inf");
    EXPECT_EQ(formatted("%d %u", infinity, std::nan("")), "9223372036854775807 0");
    EXPECT_EQ(formatted("%a %E %G", 0.5, 12345.678, 1e-10), "0x1p-1 1.234568E+04 1E-10");
}

TEST(NSFormat, DescribesTheObjectsOfEveryClass)
{
    const auto array =
        make<NSArray>(std::vector<RetainPtr<NSObject>>{box("a"), NSNumber::numberWithInteger(1)});
    EXPECT_EQ(formatted("%@ %@", array, array), "(\n    a,\n    1\n) (\n    a,\n    1\n)");
    EXPECT_EQ(formatted("%@", NSNull::null()), "<null>");
    const NSObject* const none = nullptr;
    const char* const noText = nullptr;
    EXPECT_EQ(
        formatted("%@ %s %@ %p", none, noText, nullptr, array).substr(0, 23), "(null) (null) (null) 0x");
}

TEST(NSFormat, ReturnsTextWithoutConversionsUnchanged)
{
    EXPECT_EQ(formatted("Grüße 😀 %@", "100% %@"), "Grüße 😀 100% %@");
    EXPECT_EQ(formatted(""), "");
    EXPECT_EQ(NSString::stringWithFormat("a%Cb", 0).length(), 3U);
    EXPECT_EQ(formatted("%@", NSString(std::string(10000, 'x'))).size(), 10000U);
}

TEST(NSFormat, NonsenseBetweenPercentAndLetterIsHarmless)
{
    EXPECT_EQ(formatted("%-+ #0'5.3lld|", 42), "+042 |");
    EXPECT_EQ(formatted("%.-1d|", 7), "%.-1d|");
    EXPECT_EQ(formatted("%*d|", "text", 7), "7|");
    EXPECT_EQ(formatted("%*d|"), "(missing)|");
    EXPECT_EQ(formatted("%.*d|%.*f", -3, 7, INT64_MAX, 1.0).size(), 2U + 2U + 4096U);
    EXPECT_EQ(formatted("%0$d %1$d %99999999999999999999$d", 1), "1 1 (missing)");
    EXPECT_EQ(formatted("%ll"), "%ll");
    EXPECT_EQ(formatted("%é", 1), "%é");
}

TEST(NSFormat, NumbersAreTheSameInEveryLocale)
{
    // A locale and its character set, as a bare system has neither a decimal comma nor the package "locales".
    const TemporaryFolder folder;
    std::string characters = "<code_set_name> ANSI_X3.4-1968\n<comment_char> %\n<escape_char> /\nCHARMAP\n";
    for (int character = 0; character < 128; ++character) {
        char line[32];
        std::snprintf(line, sizeof line, "<U%04X> /x%02x\n", character, character);
        characters += line;
    }
    const std::string charmap = folder.write("ascii", characters + "END CHARMAP\n");
    const std::string source = folder.write("comma.locale",
        "comment_char %\nescape_char /\nLC_NUMERIC\ndecimal_point \",\"\nthousands_sep \".\"\ngrouping 3;3\n"
        "END LC_NUMERIC\n");
    const std::string command = "localedef -c -f " + charmap + " -i " + source + " " + folder.file("comma")
        + " 2> " + folder.file("warnings");
    static_cast<void>(std::system(command.c_str())); // it warns of all that we leave out
    setenv("LOCPATH", folder.path().c_str(), 1);
    const std::string before = std::setlocale(LC_NUMERIC, nullptr);
    ASSERT_NE(std::setlocale(LC_NUMERIC, "comma"), nullptr);
    char comma[8];
    std::snprintf(comma, sizeof comma, "%.1f", 0.5);
    EXPECT_STREQ(comma, "0,5"); // the locale is in force

    EXPECT_EQ(formatted("%.1f %g %'d %@", 0.5, 1e6, 1234567, 1.5), "0.5 1e+06 1234567 1.5");
    EXPECT_EQ(NSString("2.5").doubleValue(), 2.5);
    EXPECT_EQ(NSNumber::numberWithDouble(2.5)->stringValue(), NSString("2.5"));
    std::snprintf(comma, sizeof comma, "%.1f", 0.5);
    EXPECT_STREQ(comma, "0,5"); // and still is

    std::setlocale(LC_NUMERIC, before.c_str());
    unsetenv("LOCPATH");
}
