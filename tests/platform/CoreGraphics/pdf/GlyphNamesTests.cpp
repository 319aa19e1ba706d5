#include "CoreGraphics/pdf/GlyphNames.h"

#include "CoreGraphics/pdf/BaseEncoding.h"

#include <gtest/gtest.h>

namespace {

TEST(CharacterOfGlyphName, KnowsLettersAndSymbols)
{
    EXPECT_EQ(characterOfGlyphName("space"), U' ');
    EXPECT_EQ(characterOfGlyphName("A"), U'A');
    EXPECT_EQ(characterOfGlyphName("asciitilde"), U'~');
    EXPECT_EQ(characterOfGlyphName("eacute"), U'é');
    EXPECT_EQ(characterOfGlyphName("ydieresis"), U'ÿ');
    EXPECT_EQ(characterOfGlyphName("Amacron"), U'Ā');
    EXPECT_EQ(characterOfGlyphName("zcaron"), U'ž');
    EXPECT_EQ(characterOfGlyphName("omegatonos"), U'ώ');
    EXPECT_EQ(characterOfGlyphName("afii10017"), U'А');
    EXPECT_EQ(characterOfGlyphName("afii10097"), U'я');
    EXPECT_EQ(characterOfGlyphName("Euro"), U'€');
    EXPECT_EQ(characterOfGlyphName("fi"), U'ﬁ');
    EXPECT_EQ(characterOfGlyphName("bracerightbt"), U'⎭');
    EXPECT_EQ(characterOfGlyphName("summation"), U'∑');
    EXPECT_EQ(characterOfGlyphName("Tcedilla"), U'Ţ');
}

TEST(CharacterOfGlyphName, ReadsNumbers)
{
    EXPECT_EQ(characterOfGlyphName("uni20AC"), U'€');
    EXPECT_EQ(characterOfGlyphName("u20AC"), U'€');
    EXPECT_EQ(characterOfGlyphName("u1F600"), 0x1F600u);
    EXPECT_EQ(characterOfGlyphName("u10FFFF"), 0x10FFFFu);
    EXPECT_EQ(characterOfGlyphName("u110000"), 0u) << "no character";
    EXPECT_EQ(characterOfGlyphName("uni20ac"), 0u) << "digits are capitals";
    EXPECT_EQ(characterOfGlyphName("uni20AC0"), 0u);
    EXPECT_EQ(characterOfGlyphName("u20A"), 0u);
}

TEST(CharacterOfGlyphName, IgnoresAVariantAfterADot)
{
    EXPECT_EQ(characterOfGlyphName("a.sc"), U'a');
    EXPECT_EQ(characterOfGlyphName("uni00E9.alt.1"), U'é');
    EXPECT_EQ(characterOfGlyphName(".notdef"), 0u);
}

TEST(CharacterOfGlyphName, IsZeroForUnknownNames)
{
    for (const char* name : {"", "g17", "-", "nosuchname", "eacute ", "uni", "uniXYZW"})
        EXPECT_EQ(characterOfGlyphName(name), 0u) << name;
}

TEST(CharacterOfDingbatName, FollowsTheEncodingOfDingbats)
{
    const auto at = [](unsigned code) {
        return characterInEncoding(BaseEncoding::ZapfDingbats, std::uint8_t(code));
    };
    EXPECT_EQ(characterOfDingbatName("a1"), at(0x21));
    EXPECT_EQ(characterOfDingbatName("a202"), at(0x23));
    EXPECT_EQ(characterOfDingbatName("a20"), at('4'));
    EXPECT_EQ(characterOfDingbatName("a100"), at(0x7E));
    EXPECT_EQ(characterOfDingbatName("a101"), at(0xA1));
    EXPECT_EQ(characterOfDingbatName("a191"), at(0xFE));
    EXPECT_EQ(characterOfDingbatName("space"), U' ');
    EXPECT_EQ(characterOfDingbatName("a01"), 0u);
    EXPECT_EQ(characterOfDingbatName("a207"), 0u);
    EXPECT_EQ(characterOfDingbatName("a"), U'a');
    EXPECT_EQ(characterOfDingbatName("a1b"), 0u);
}

TEST(GlyphNameOfCharacter, IsTheUsualName)
{
    EXPECT_EQ(glyphNameOfCharacter(U'A'), "A");
    EXPECT_EQ(glyphNameOfCharacter(U'é'), "eacute");
    EXPECT_EQ(glyphNameOfCharacter(U'­'), "softhyphen");
    EXPECT_EQ(glyphNameOfCharacter(U'¯'), "macron") << "not its second name";
    EXPECT_EQ(glyphNameOfCharacter(U'ﬂ'), "fl");
    EXPECT_EQ(glyphNameOfCharacter(U'Ω'), "Omega") << "as the sign for ohm";
    EXPECT_EQ(glyphNameOfCharacter(U'中'), "");
    EXPECT_EQ(glyphNameOfCharacter(0), "");
}

TEST(GlyphNameOfCharacter, NamesAllCharactersOfTheEncodingsOfLetters)
{
    for (unsigned code = 0; code < 256; ++code) {
        for (const auto encoding : {BaseEncoding::Standard, BaseEncoding::WinAnsi, BaseEncoding::MacRoman}) {
            const char32_t character = characterInEncoding(encoding, std::uint8_t(code));
            if (character == 0)
                continue;
            const std::string name(glyphNameOfCharacter(character));
            EXPECT_FALSE(name.empty()) << code;
            const char32_t named = characterOfGlyphName(name);
            EXPECT_TRUE(named == character || named == lookalike(character)) << name;
        }
    }
}

TEST(Lookalike, GoesBothWays)
{
    EXPECT_EQ(lookalike(U'µ'), U'μ'); // micro, mu
    EXPECT_EQ(lookalike(U'μ'), U'µ');
    EXPECT_EQ(lookalike(0x00A0), U' ');
    EXPECT_EQ(lookalike(U'A'), 0u);
}

} // namespace
