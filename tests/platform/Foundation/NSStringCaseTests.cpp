#include <Foundation/Foundation.h>

#include <gtest/gtest.h>
#include <string>

TEST(NSStringCase, ChangesCaseByUnicodesRules)
{
    EXPECT_EQ(NSString("02031D88").lowercaseString(), NSString("02031d88"));
    EXPECT_EQ(NSString("[AZaz@`{").lowercaseString(), NSString("[azaz@`{"));
    EXPECT_EQ(NSString("[AZaz@`{").uppercaseString(), NSString("[AZAZ@`{"));
    EXPECT_EQ(NSString("ÄÉЖ").lowercaseString(), NSString("äéж"));
    EXPECT_EQ(NSString("straße").uppercaseString(), NSString("STRASSE"));
    const std::string many(100, 'Q');
    EXPECT_EQ(NSString(many).lowercaseString(), NSString(std::string(100, 'q')));
    EXPECT_TRUE(NSString().lowercaseString().isNull());
    EXPECT_TRUE(NSString().uppercaseString().isNull());
    EXPECT_EQ(NSString("").lowercaseString(), NSString(""));
}

TEST(NSStringCase, ChangesTheCaseOfEveryASCIICharacterAtEveryPlace)
{
    for (const std::size_t length : {std::size_t{1}, std::size_t{15}, std::size_t{16}, std::size_t{33}}) {
        for (std::size_t place = 0; place < length; ++place) {
            for (int character = 0; character < 0x80; ++character) {
                std::string text(length, '-');
                text[place] = static_cast<char>(character);
                std::string lower = text;
                std::string upper = text;
                lower[place] =
                    static_cast<char>(character >= 'A' && character <= 'Z' ? character + 32 : character);
                upper[place] =
                    static_cast<char>(character >= 'a' && character <= 'z' ? character - 32 : character);
                ASSERT_EQ(NSString(text).lowercaseString(), NSString(lower));
                ASSERT_EQ(NSString(text).uppercaseString(), NSString(upper));
            }
        }
    }
}

TEST(NSStringCase, ChangingCaseLeavesTheOriginalAlone)
{
    const NSString text("ÄRGERLICH LANGE TEXTE, DIE NICHT HINEINPASSEN");
    const NSString copy(text);
    EXPECT_EQ(text.lowercaseString(), NSString("ärgerlich lange texte, die nicht hineinpassen"));
    EXPECT_EQ(text, NSString("ÄRGERLICH LANGE TEXTE, DIE NICHT HINEINPASSEN"));
    EXPECT_EQ(copy, text);
}

TEST(NSStringCase, KnowsLettersWhoseCaseHasAnotherLength)
{
    EXPECT_EQ(NSString("ﬁ").uppercaseString(), NSString("FI"));
    EXPECT_EQ(NSString("İ").lowercaseString(), NSString("i\u0307"));
    EXPECT_EQ(NSString("𐐀").lowercaseString(), NSString("𐐨")); // beyond the first 65536
    // Apple gives "σας": a sigma at the end of a word has a form of its own.
    EXPECT_EQ(NSString("ΣΑΣ").lowercaseString(), NSString("σασ"));
}
