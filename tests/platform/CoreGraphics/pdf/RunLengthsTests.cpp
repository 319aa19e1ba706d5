#include "CoreGraphics/pdf/PDFBudget.h"
#include "CoreGraphics/pdf/RunLengths.h"

#include <gtest/gtest.h>

namespace {

TEST(RunLengths, AreCopiedOrRepeated)
{
    EXPECT_EQ(decodedRunLengths("", 9), "");
    EXPECT_EQ(decodedRunLengths(std::string_view("\0a", 2), 9), "a");
    EXPECT_EQ(decodedRunLengths("\x02"
                                "abc"
                                "\xFE"
                                "d"
                                "\xFF"
                                "e",
                  9),
        "abcdddee");
    EXPECT_EQ(decodedRunLengths("\x81"
                                "f",
                  128),
        std::string(128, 'f'));
    EXPECT_EQ(decodedRunLengths("\x01"
                                "ab"
                                "\x80"
                                "\x01"
                                "cd",
                  9),
        "ab")
        << "128 ends the data";
}

TEST(RunLengths, CountUpToTheirDamage)
{
    EXPECT_EQ(decodedRunLengths("\x05"
                                "abc",
                  9),
        "abc");
    EXPECT_EQ(decodedRunLengths("\x01"
                                "ab"
                                "\x05",
                  9),
        "ab");
    EXPECT_EQ(decodedRunLengths("\x01"
                                "ab"
                                "\xFE",
                  9),
        "ab");
}

TEST(RunLengths, EndAtALimit)
{
    EXPECT_EQ(decodedRunLengths("\x01"
                                "ab"
                                "\xFE"
                                "c",
                  5),
        "abccc");
    EXPECT_THROW(decodedRunLengths("\x01"
                                   "ab"
                                   "\xFE"
                                   "c",
                     4),
        PDFLimitExceeded);
    EXPECT_EQ(decodedRunLengths("\xFE"
                                "c"
                                "\x01"
                                "ab",
                  5),
        "cccab");
    EXPECT_THROW(decodedRunLengths("\xFE"
                                   "c"
                                   "\x01"
                                   "ab",
                     4),
        PDFLimitExceeded);
}

TEST(RunLengths, AreFoundAmongOtherFilters)
{
    const auto name = [](const char* text) { return PDFObject::makeName(text); };
    EXPECT_TRUE(hasRunLengths(name("RunLengthDecode")));
    EXPECT_TRUE(hasRunLengths(name("RL")));
    EXPECT_FALSE(hasRunLengths(name("FlateDecode")));
    EXPECT_FALSE(hasRunLengths(PDFObject()));
    EXPECT_TRUE(hasRunLengths(PDFObject::makeArray({name("Fl"), name("RL")})));
    EXPECT_FALSE(hasRunLengths(PDFObject::makeArray({name("Fl"), name("AHx")})));
}

} // namespace
