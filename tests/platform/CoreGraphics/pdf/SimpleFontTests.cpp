#include "FontObjects.h"

#include "../../CoreText/TestFont.h"
#include "Foundation/testing/NSLogCapture.h"

#include <gtest/gtest.h>

namespace {

constexpr std::string_view kBlank = "................................................";
constexpr std::string_view kLetterA = "............"
                                      "............"
                                      "##.........."
                                      "##..........";
constexpr std::string_view kLetterB = "............"
                                      "............"
                                      "............"
                                      "#...........";

/// The same glyphs in both formats that name their glyphs.
struct NamedGlyphs {
    const char* key;
    std::string program;
};
std::vector<NamedGlyphs> bothFormats(const std::vector<RectangleGlyph>& glyphs = squareGlyphs())
{
    return {{"FontFile", type1FontBytes(glyphs)}, {"FontFile3", cffFontBytes(glyphs)}};
}

Canvas drawNamed(const NamedGlyphs& font, std::string_view operators, std::string_view entries = "")
{
    return drawText(operators,
        embeddedFont("/Subtype /Type1 " + std::string(entries), font.key, font.program, "/Flags 4"));
}

TEST(PDFType1Font, HasItsOwnEncoding)
{
    for (const auto& font : bothFormats()) {
        SCOPED_TRACE(font.key);
        EXPECT_COVERAGE(drawNamed(font, "(b\\310b) Tj"),
            "............"
            "............"
            "............"
            "#.##........");
    }
}

TEST(PDFType1Font, TakesGlyphsByTheNamesOfThePredefinedEncodings)
{
    auto glyphs = squareGlyphs();
    glyphs.push_back({"eacute", 1000, 0, 0, 1000, 1000, 1});
    glyphs.push_back({"quoteright", 1000, 0, 0, 500, 500, 2});
    for (const auto& font : bothFormats(glyphs)) {
        SCOPED_TRACE(font.key);
        EXPECT_COVERAGE(drawNamed(font, "(\\351) Tj", "/Encoding /WinAnsiEncoding"), kLetterA);
        EXPECT_COVERAGE(drawNamed(font, "(\\216) Tj", "/Encoding /MacRomanEncoding"), kLetterA);
        EXPECT_COVERAGE(drawNamed(font, "(') Tj", "/Encoding /StandardEncoding"), kLetterB);
        EXPECT_COVERAGE(drawNamed(font, "(\\310) Tj", "/Encoding /WinAnsiEncoding"), kBlank)
            << "not the font's own";
        EXPECT_COVERAGE(
            drawNamed(font, "(\\351) Tj", "/Encoding << /BaseEncoding /WinAnsiEncoding >>"), kLetterA);
    }
}

TEST(PDFType1Font, TakesDifferencesBeforeTheEncoding)
{
    for (const auto& font : bothFormats()) {
        SCOPED_TRACE(font.key);
        EXPECT_COVERAGE(
            drawNamed(font, "(\\001\\002c) Tj", "/Encoding << /Differences [1 /b /weird 99 /A] >>"),
            "............"
            "............"
            "...##......."
            "#.###.......");
        EXPECT_COVERAGE(
            drawNamed(font, "(Ab) Tj", "/Encoding << /BaseEncoding /WinAnsiEncoding /Differences [65 /b] >>"),
            "............"
            "............"
            "............"
            "#.#.........");
    }
}

TEST(PDFType1Font, FindsGlyphsUnderOtherNames)
{
    for (const auto& font : bothFormats()) {
        SCOPED_TRACE(font.key);
        EXPECT_COVERAGE(drawNamed(font, "(1) Tj", "/Encoding << /Differences [49 /uni0041] >>"), kLetterA);
        EXPECT_COVERAGE(drawNamed(font, "(1) Tj", "/Encoding << /Differences [49 /nosuchname] >>"), kBlank);
    }
}

TEST(PDFType1Font, DoesNotDrawTheSignForAMissingCharacter)
{
    for (const auto& font : bothFormats())
        EXPECT_COVERAGE(drawNamed(font, "(z) Tj"), kBlank) << font.key;
}

TEST(PDFSimpleFont, HasTheAdvancesThatTheFileStates)
{
    const auto widths = "/FirstChar 97 /LastChar 98 /Widths [0 2500]";
    for (const auto& font : bothFormats()) {
        SCOPED_TRACE(font.key);
        EXPECT_COVERAGE(drawNamed(font, "(bb) Tj", widths),
            "............"
            "............"
            "............"
            "#....#......");
        EXPECT_COVERAGE(drawNamed(font, "(Ab) Tj", widths),
            "............"
            "............"
            "##.........."
            "##..........")
            << "0 for codes that are not listed";
    }
}

TEST(PDFSimpleFont, HasTheMissingWidthForOtherCodes)
{
    const auto objects = embeddedFont("/Subtype /Type1 /FirstChar 98 /Widths [500]", "FontFile",
        type1FontBytes(squareGlyphs()), "/MissingWidth 1500");
    EXPECT_COVERAGE(drawText("(Abb) Tj", objects),
        "............"
        "............"
        "##.........."
        "##.##.......");
}

TEST(PDFSimpleFont, IgnoresWidthsThatAreNoNumbers)
{
    const auto objects = embeddedFont("/Subtype /Type1 /FirstChar (x) /Widths [(x) null /A]", "FontFile",
        type1FontBytes(squareGlyphs()), "/MissingWidth 1000");
    EXPECT_COVERAGE(drawText("(\\001\\002b) Tj", objects), kLetterB);
}

TEST(PDFSimpleFont, IsReplacedWhenDamaged)
{
    const NSLogCapture log;
    drawText("(A) Tj", embeddedFont("/Subtype /Type1", "FontFile", "%!PS-AdobeFont nothing else"));
    ASSERT_EQ(log.messages().size(), 1u);
    EXPECT_EQ(log.messages()[0],
        "CGPDF: page 1 of a document: the font Squares in the file is not drawn (damaged); an installed one "
        "takes its place");
}

/// A TrueType font whose letters are the characters `a` (like A, a full em) and `b` (its quarter).
TestFont trueTypeFont(char16_t a, char16_t b)
{
    TestFont font("Squares");
    font.add(a, 1000, {{0, 0, 1000, 1000}});
    font.add(b, 1000, {{0, 0, 500, 500}});
    return font;
}

Canvas drawTrueType(const TestFont& font, std::string_view operators, std::string_view entries, int flags)
{
    return drawText(operators,
        embeddedFont("/Subtype /TrueType " + std::string(entries), "FontFile2", font.bytes(),
            "/Flags " + std::to_string(flags)));
}

constexpr int kSymbolic = 4;
constexpr int kNonsymbolic = 32;

TEST(PDFTrueTypeFont, TakesLettersFromTheUnicodeMap)
{
    const TestFont font = trueTypeFont(u'é', u'‘');
    EXPECT_COVERAGE(drawTrueType(font, "(\\351) Tj", "/Encoding /WinAnsiEncoding", kNonsymbolic), kLetterA);
    EXPECT_COVERAGE(drawTrueType(font, "(\\216) Tj", "/Encoding /MacRomanEncoding", kNonsymbolic), kLetterA);
    EXPECT_COVERAGE(drawTrueType(font, "(`) Tj", "", kNonsymbolic), kLetterB) << "in the standard encoding";
    EXPECT_COVERAGE(
        drawTrueType(font, "(x) Tj", "/Encoding << /Differences [120 /eacute] >>", kNonsymbolic), kLetterA);
    EXPECT_COVERAGE(drawTrueType(font, "(z) Tj", "/Encoding /WinAnsiEncoding", kNonsymbolic), kBlank)
        << "not the sign for a missing character";
}

TEST(PDFTrueTypeFont, TakesLettersByTheirMacCodes)
{
    TestFont font = trueTypeFont(0x8E, 0x41); // é and A
    font.setCharacterMap({.platform = 1, .encoding = 0});
    EXPECT_COVERAGE(drawTrueType(font, "(\\351) Tj", "/Encoding /WinAnsiEncoding", kNonsymbolic), kLetterA);
    EXPECT_COVERAGE(drawTrueType(font, "(A) Tj", "/Encoding /WinAnsiEncoding", kNonsymbolic), kLetterB);
}

TEST(PDFTrueTypeFont, TakesSymbolsByTheCodesOfTheMacMap)
{
    TestFont font = trueTypeFont(0x01, 0xFE);
    font.setCharacterMap({.platform = 1, .encoding = 0});
    EXPECT_COVERAGE(drawTrueType(font, "(\\001) Tj", "", kSymbolic), kLetterA);
    EXPECT_COVERAGE(drawTrueType(font, "(\\376) Tj", "/Encoding /WinAnsiEncoding", kSymbolic), kLetterB)
        << "whatever the encoding";
}

TEST(PDFTrueTypeFont, TakesSymbolsFromTheSymbolMapAtAnyOffset)
{
    for (const unsigned first : {0xF000u, 0xF100u, 0xF200u, 0u}) {
        SCOPED_TRACE(first);
        TestFont font = trueTypeFont(0x21, 0xFE);
        font.setCharacterMap({.platform = 3, .encoding = 0, .firstCode = first});
        EXPECT_COVERAGE(drawTrueType(font, "(!) Tj", "", kSymbolic), kLetterA);
        EXPECT_COVERAGE(drawTrueType(font, "(\\376) Tj", "", kSymbolic), kLetterB);
    }
}

TEST(PDFTrueTypeFont, TakesTheSymbolMapOfAFontThatClaimsToHaveLetters)
{
    TestFont font = trueTypeFont(u'A', u'b');
    font.setCharacterMap({.platform = 3, .encoding = 0, .firstCode = 0xF000});
    EXPECT_COVERAGE(drawTrueType(font, "(A) Tj", "/Encoding /WinAnsiEncoding", kNonsymbolic), kLetterA);
}

TEST(PDFTrueTypeFont, TakesTheUnicodeMapOfAFontThatClaimsToHaveSymbols)
{
    EXPECT_COVERAGE(drawTrueType(trueTypeFont(u'A', u'b'), "(b) Tj", "", kSymbolic), kLetterB);
    EXPECT_COVERAGE(
        drawTrueType(trueTypeFont(u'é', u'b'), "(\\351) Tj", "/Encoding /WinAnsiEncoding", kSymbolic),
        kLetterA);
}

TEST(PDFTrueTypeFont, TakesGlyphsByTheirOwnNamesAtLast)
{
    TestFont font = trueTypeFont(u'A', u'b');
    font.setGlyphNames({".notdef", "first", "second"});
    EXPECT_COVERAGE(
        drawTrueType(font, "(x) Tj", "/Encoding << /Differences [120 /first] >>", kNonsymbolic), kLetterA);
    EXPECT_COVERAGE(
        drawTrueType(font, "(x) Tj", "/Encoding << /Differences [120 /second] >>", kNonsymbolic), kLetterB);
    EXPECT_COVERAGE(
        drawTrueType(font, "(x) Tj", "/Encoding << /Differences [120 /third] >>", kNonsymbolic), kBlank);
}

TEST(PDFTrueTypeFont, TakesCodesForGlyphsWithoutAnyMap)
{
    TestFont font = trueTypeFont(u'A', u'b');
    font.setCharacterMap({.platform = 9, .encoding = 9});
    EXPECT_COVERAGE(drawTrueType(font, "(\\001) Tj", "", kSymbolic), kLetterA);
    EXPECT_COVERAGE(drawTrueType(font, "(\\002) Tj", "", kSymbolic), kLetterB);
}

TEST(PDFTrueTypeFont, HasGlyphsThatAreComposedOfOthers)
{
    TestFont font("Squares");
    font.add(u'a', 1000, {{0, 0, 500, 500}});
    font.add(u'b', 1000, {{500, 0, 1000, 500}});
    font.addComposed(u'c', 1000, {u'a', u'b'});
    EXPECT_COVERAGE(drawTrueType(font, "(c) Tj", "/Encoding /WinAnsiEncoding", kNonsymbolic),
        "............"
        "............"
        "............"
        "##..........");
}

TEST(PDFSimpleFont, GoesByTheProgramWhateverItsSubtype)
{
    const auto trueType = embeddedFont("/Subtype /Type1 /Encoding /WinAnsiEncoding", "FontFile",
        trueTypeFont(u'A', u'é').bytes(), "/Flags 32");
    EXPECT_COVERAGE(drawText("(\\351) Tj", trueType), kLetterB);
    const auto type1 =
        embeddedFont("/Subtype /TrueType", "FontFile2", type1FontBytes(squareGlyphs()), "/Flags 4");
    EXPECT_COVERAGE(drawText("(b) Tj", type1), kLetterB);
}

} // namespace
