#include "CoreGraphics/pdf/BaseEncoding.h"

#include <gtest/gtest.h>
#include <utility>
#include <vector>

namespace {

using Pair = std::pair<unsigned, char32_t>;

void expectCharacters(BaseEncoding encoding, const std::vector<Pair>& expected)
{
    for (const auto& [code, character] : expected)
        EXPECT_EQ(characterInEncoding(encoding, std::uint8_t(code)), character) << "code " << code;
}

TEST(BaseEncoding, OfLettersIsASCIIBelow)
{
    for (unsigned code = 0; code < 0x20; ++code)
        for (const auto encoding : {BaseEncoding::Standard, BaseEncoding::WinAnsi, BaseEncoding::MacRoman})
            EXPECT_EQ(characterInEncoding(encoding, std::uint8_t(code)), 0u) << code;
    for (unsigned code = 0x20; code < 0x7F; ++code) {
        EXPECT_EQ(characterInEncoding(BaseEncoding::WinAnsi, std::uint8_t(code)), code);
        EXPECT_EQ(characterInEncoding(BaseEncoding::MacRoman, std::uint8_t(code)), code);
        if (code != '\'' && code != '`') {
            EXPECT_EQ(characterInEncoding(BaseEncoding::Standard, std::uint8_t(code)), code);
        }
    }
}

TEST(BaseEncoding, StandardHasTypographicQuotesInPlaceOfStraightOnes)
{
    expectCharacters(BaseEncoding::Standard, {{'\'', U'’'}, {'`', U'‘'}, {0xA9, U'\''}, {0xC1, U'`'}});
}

TEST(BaseEncoding, StandardHasPunctuationAccentsAndAFewLettersAbove)
{
    expectCharacters(BaseEncoding::Standard,
        {{0xA0, 0}, {0xA1, U'¡'}, {0xA4, U'⁄'}, {0xA8, U'¤'}, {0xAE, U'ﬁ'}, {0xAF, U'ﬂ'}, {0xB0, 0},
            {0xB1, U'–'}, {0xB4, U'·'}, {0xB5, 0}, {0xB6, U'¶'}, {0xBC, U'…'}, {0xBE, 0}, {0xBF, U'¿'},
            {0xC0, 0}, {0xC2, U'´'}, {0xC8, U'¨'}, {0xC9, 0}, {0xCA, U'˚'}, {0xCC, 0}, {0xCD, U'˝'},
            {0xCF, U'ˇ'}, {0xD0, U'—'}, {0xD1, 0}, {0xE1, U'Æ'}, {0xE3, U'ª'}, {0xE8, U'Ł'}, {0xEB, U'º'},
            {0xF1, U'æ'}, {0xF5, U'ı'}, {0xF8, U'ł'}, {0xFB, U'ß'}, {0xFC, 0}, {0xFF, 0}});
}

TEST(BaseEncoding, WinAnsiIsCodePage1252WithBulletsForUnusedCodes)
{
    expectCharacters(BaseEncoding::WinAnsi,
        {{0x7F, U'•'}, {0x80, U'€'}, {0x81, U'•'}, {0x82, U'‚'}, {0x83, U'ƒ'}, {0x85, U'…'}, {0x88, U'ˆ'},
            {0x89, U'‰'}, {0x8A, U'Š'}, {0x8C, U'Œ'}, {0x8D, U'•'}, {0x8E, U'Ž'}, {0x8F, U'•'}, {0x90, U'•'},
            {0x91, U'‘'}, {0x94, U'”'}, {0x95, U'•'}, {0x97, U'—'}, {0x98, U'˜'}, {0x99, U'™'}, {0x9C, U'œ'},
            {0x9D, U'•'}, {0x9E, U'ž'}, {0x9F, U'Ÿ'}, {0xA0, U' '}, {0xA1, U'¡'}, {0xA4, U'¤'}, {0xAD, U'-'},
            {0xAE, U'®'}, {0xB5, U'µ'}, {0xD7, U'×'}, {0xFF, U'ÿ'}});
}

TEST(BaseEncoding, MacRomanIsThatOfTheFirstMacintosh)
{
    expectCharacters(BaseEncoding::MacRoman,
        {{0x7F, 0}, {0x80, U'Ä'}, {0x84, U'Ñ'}, {0x8E, U'é'}, {0x9F, U'ü'}, {0xA0, U'†'}, {0xA5, U'•'},
            {0xA9, U'©'}, {0xAD, U'≠'}, {0xB0, U'∞'}, {0xB4, U'¥'}, {0xB9, U'π'}, {0xBE, U'æ'}, {0xC0, U'¿'},
            {0xC3, U'√'}, {0xC9, U'…'}, {0xCA, U' '}, {0xCB, U'À'}, {0xCF, U'œ'}, {0xD0, U'–'}, {0xD5, U'’'},
            {0xD8, U'ÿ'}, {0xDA, U'⁄'}, {0xDB, U'¤'}, {0xDC, U'‹'}, {0xDE, U'ﬁ'}, {0xE0, U'‡'}, {0xE5, U'Â'},
            {0xEF, U'Ô'}, {0xF0, 0}, {0xF1, U'Ò'}, {0xF5, U'ı'}, {0xF8, U'¯'}, {0xFF, U'ˇ'}});
}

TEST(BaseEncoding, SymbolHasGreekLettersAtTheLatinOnesTheyResemble)
{
    expectCharacters(BaseEncoding::Symbol,
        {{0x1F, 0}, {' ', U' '}, {'"', U'∀'}, {'0', U'0'}, {'A', U'Α'}, {'J', U'ϑ'}, {'V', U'ς'},
            {'\\', U'∴'}, {'`', U'‾'}, {'a', U'α'}, {'w', U'ω'}, {'z', U'ζ'}, {'~', U'∼'}, {0x7F, 0},
            {0x9F, 0}, {0xA0, U'€'}, {0xA5, U'∞'}, {0xAE, U'→'}, {0xB7, U'•'}, {0xC0, U'ℵ'}, {0xD6, U'√'},
            {0xE0, U'◊'}, {0xE5, U'∑'}, {0xF0, 0}, {0xF2, U'∫'}, {0xFE, U'⎭'}, {0xFF, 0}});
}

TEST(BaseEncoding, ZapfDingbatsFollowsTheOrderOfUnicodeButForOlderCharacters)
{
    expectCharacters(BaseEncoding::ZapfDingbats,
        {{0x1F, 0}, {' ', U' '}, {'!', U'✁'}, {'%', U'☎'}, {'&', U'✆'}, {'*', U'☛'}, {'+', U'☞'}, {',', U'✌'},
            {'4', U'✔'}, {'H', U'★'}, {'I', U'✩'}, {'l', U'●'}, {'m', U'❍'}, {'n', U'■'}, {'o', U'❏'},
            {'s', U'▲'}, {'t', U'▼'}, {'u', U'◆'}, {'w', U'◗'}, {'~', U'❞'}, {0x7F, 0}, {0xA0, 0},
            {0xA1, U'❡'}, {0xA7, U'❧'}, {0xA8, U'♣'}, {0xA9, U'♦'}, {0xAA, U'♥'}, {0xAB, U'♠'}, {0xAC, U'①'},
            {0xB5, U'⑩'}, {0xB6, U'❶'}, {0xD4, U'➔'}, {0xD5, U'→'}, {0xD6, U'↔'}, {0xD7, U'↕'}, {0xD8, U'➘'},
            {0xF0, 0}, {0xF1, U'➱'}, {0xFE, U'➾'}, {0xFF, 0}});
}

TEST(BaseEncoding, FindsTheCodeOfACharacter)
{
    EXPECT_EQ(codeInEncoding(BaseEncoding::MacRoman, U'é'), 0x8E);
    EXPECT_EQ(codeInEncoding(BaseEncoding::WinAnsi, U'é'), 0xE9);
    EXPECT_EQ(codeInEncoding(BaseEncoding::WinAnsi, U'ÿ'), 0xFF);
    EXPECT_EQ(codeInEncoding(BaseEncoding::WinAnsi, U'ā'), std::nullopt);
    EXPECT_EQ(codeInEncoding(BaseEncoding::WinAnsi, 0), std::nullopt) << "unused codes are no character";
}

} // namespace
