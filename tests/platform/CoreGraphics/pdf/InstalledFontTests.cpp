#include "FontObjects.h"

#include "../../CoreText/TestFont.h"
#include "CoreText/testing/PrivateFonts.h"
#include "Foundation/testing/NSLogCapture.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

/// A font file whose letters b have this width and height, in thousandths of an em, and are an em wide with
/// their space.
std::string fontFile(
    const std::string& family, std::int16_t width, std::int16_t height, TestFontStyle style = {})
{
    TestFont font(family, std::move(style));
    for (const char16_t letter : {u'b', u'é', u'β', u'✔'})
        font.add(letter, 1000, {{0, 0, width, height}});
    font.add(u' ', 500, {});
    return font.bytes();
}

/// Fonts that files name but do not contain, where other fonts are installed: Liberation Sans with letters of
/// 0.5 × 0.5 em, its bold face with 1 × 0.5.
class PDFInstalledFont : public testing::Test {
protected:
    PDFInstalledFont()
    {
        _folder.write("sans.ttf", fontFile("Liberation Sans", 500, 500));
        _folder.write("bold.ttf", fontFile("Liberation Sans", 1000, 500, kBold));
    }

    void install(const std::string& family, std::int16_t width, std::int16_t height)
    {
        _folder.write(family + ".ttf", fontFile(family, width, height));
    }

    /// Text in a font with this name and these further entries.
    Canvas draw(std::string_view name, std::string_view operators, std::string_view entries = "")
    {
        const PrivateFonts fonts(NSString(_folder.path().string()));
        std::string font = "<< /Type /Font /Subtype /Type1 /BaseFont /";
        font += name;
        font += ' ';
        font += entries;
        return drawText(operators, {font + " >>"});
    }

    TemporaryFolder _folder;
};

constexpr std::string_view kQuarter = "............"
                                      "............"
                                      "............"
                                      "#...........";
constexpr std::string_view kLowerHalf = "............"
                                        "............"
                                        "............"
                                        "##..........";
constexpr std::string_view kLeftHalf = "............"
                                       "............"
                                       "#..........."
                                       "#...........";
constexpr std::string_view kFull = "............"
                                   "............"
                                   "##.........."
                                   "##..........";

TEST_F(PDFInstalledFont, StandsInWithItsOwnAdvances)
{
    EXPECT_COVERAGE(draw("Helvetica", "(b b) Tj"),
        "............"
        "............"
        "............"
        "#..#........");
}

TEST_F(PDFInstalledFont, HasTheStandardEncoding)
{
    const NSLogCapture log; // says what the font lacks
    EXPECT_COVERAGE(draw("Helvetica", "(\\351) Tj", "/Encoding /WinAnsiEncoding"), kQuarter);
    EXPECT_COVERAGE(draw("Helvetica", "(\\216) Tj", "/Encoding /MacRomanEncoding"), kQuarter);
    EXPECT_COVERAGE(draw("Helvetica", "(x) Tj", "/Encoding << /Differences [120 /eacute] >>"), kQuarter);
    EXPECT_COVERAGE(draw("Helvetica", "(\\351b) Tj"),
        "............"
        "............"
        "............"
        "#...........")
        << "no letter in the standard encoding";
    EXPECT_COVERAGE(draw("Arial", "(\\351) Tj", "/Subtype /TrueType"), kQuarter)
        << "that of Windows in TrueType";
}

TEST_F(PDFInstalledFont, IsSqueezedToTheWidthsOfTheFile)
{
    EXPECT_COVERAGE(draw("Helvetica-Bold", "(bb) Tj", "/FirstChar 98 /Widths [500]"),
        "............"
        "............"
        "............"
        "##..........")
        << "two letters of half the width";
    EXPECT_COVERAGE(draw("Helvetica-Bold", "(bb) Tj", "/FirstChar 98 /Widths [2000]"),
        "............"
        "............"
        "............"
        "##..##......")
        << "not stretched";
    EXPECT_COVERAGE(draw("Helvetica-Bold", "(b) Tj", "/FirstChar 98 /Widths [0]"), kLowerHalf);
}

TEST_F(PDFInstalledFont, IsBoldByNameOrDescriptor)
{
    EXPECT_COVERAGE(draw("Helvetica-Bold", "(b) Tj"), kLowerHalf);
    EXPECT_COVERAGE(draw("ABCDEF+Any,Bold", "(b) Tj"), kLowerHalf);
    EXPECT_COVERAGE(draw("Any", "(b) Tj", "/FontDescriptor << /FontWeight 700 >>"), kLowerHalf);
    EXPECT_COVERAGE(draw("Any", "(b) Tj", "/FontDescriptor << /FontWeight 500 >>"), kQuarter);
    EXPECT_COVERAGE(draw("Any", "(b) Tj", "/FontDescriptor << /Flags 262144 >>"), kLowerHalf);
    EXPECT_COVERAGE(draw("Any", "(b) Tj", "/FontDescriptor << /Flags 0 >>"), kQuarter);
}

TEST_F(PDFInstalledFont, IsItalicByNameOrDescriptor)
{
    TestFontStyle italic{"Italic"};
    italic.isItalic = true;
    _folder.write("italic.ttf", fontFile("Liberation Sans", 500, 1000, italic));
    EXPECT_COVERAGE(draw("Helvetica-Oblique", "(b) Tj"), kLeftHalf);
    EXPECT_COVERAGE(draw("Any", "(b) Tj", "/FontDescriptor << /ItalicAngle -12 >>"), kLeftHalf);
    EXPECT_COVERAGE(draw("Any", "(b) Tj", "/FontDescriptor << /Flags 64 >>"), kLeftHalf);
    EXPECT_COVERAGE(draw("Helvetica", "(b) Tj"), kQuarter);
}

TEST_F(PDFInstalledFont, IsTheOneOfThatNameIfThereIsOne)
{
    install("Squares", 1000, 1000);
    EXPECT_COVERAGE(draw("Squares", "(b) Tj"), kFull);
    EXPECT_COVERAGE(draw("ABCDEF+Squares", "(b) Tj"), kFull);
    EXPECT_COVERAGE(draw("Circles", "(b) Tj"), kQuarter);
}

TEST_F(PDFInstalledFont, HasSerifsByNameOrDescriptor)
{
    install("Liberation Serif", 1000, 1000);
    EXPECT_COVERAGE(draw("Times-Roman", "(b) Tj"), kFull);
    EXPECT_COVERAGE(draw("Any", "(b) Tj", "/FontDescriptor << /Flags 2 >>"), kFull);
    EXPECT_COVERAGE(draw("Arial", "(b) Tj", "/FontDescriptor << /Flags 2 >>"), kQuarter);
    EXPECT_COVERAGE(draw("Any", "(b) Tj"), kQuarter);
}

TEST_F(PDFInstalledFont, IsMonospacedByNameOrDescriptor)
{
    install("Liberation Mono", 1000, 1000);
    EXPECT_COVERAGE(draw("Courier", "(b) Tj"), kFull);
    EXPECT_COVERAGE(draw("Any", "(b) Tj", "/FontDescriptor << /Flags 1 >>"), kFull);
    EXPECT_COVERAGE(draw("Any", "(b) Tj", "/FontDescriptor << /Flags 3 >>"), kFull);
    EXPECT_COVERAGE(draw("Times-Roman", "(b) Tj", "/FontDescriptor << /Flags 1 >>"), kQuarter);
}

TEST_F(PDFInstalledFont, HasTheEncodingsOfSymbolFonts)
{
    install("Standard Symbols PS", 1000, 1000);
    install("D050000L", 1000, 500);
    EXPECT_COVERAGE(draw("Symbol", "(b) Tj"), kFull) << "beta";
    EXPECT_COVERAGE(draw("Symbol", "(x) Tj", "/Encoding << /Differences [120 /beta] >>"), kFull);
    EXPECT_COVERAGE(draw("ZapfDingbats", "(4) Tj"), kLowerHalf) << "a check mark";
    EXPECT_COVERAGE(draw("ZapfDingbats", "(x) Tj", "/Encoding << /Differences [120 /a20] >>"), kLowerHalf);
}

TEST_F(PDFInstalledFont, FindsSymbolsInFontsThatHaveThemByCode)
{
    const NSLogCapture log; // says what the font lacks
    const auto codedFont = [](const std::string& family) {
        TestFont font(family);
        font.add(u'4', 1000, {{0, 0, 1000, 500}});
        font.add(u'b', 1000, {{0, 0, 1000, 1000}});
        font.add(0xB4, 1000, {{0, 0, 500, 1000}});
        font.add(0xD7, 1000, {{0, 0, 500, 500}}); // the character of code 0xB4, ×
        return font.bytes();
    };
    _folder.write("symbols.ttf", codedFont("Standard Symbols PS"));
    _folder.write("dingbats.ttf", codedFont("D050000L"));
    EXPECT_COVERAGE(draw("Symbol", "(b) Tj"), kFull);
    EXPECT_COVERAGE(draw("Symbol", "(\264) Tj"), kLeftHalf);
    EXPECT_COVERAGE(draw("Symbol", "(x) Tj", "/Encoding << /Differences [120 /multiply] >>"), kLeftHalf);
    EXPECT_COVERAGE(draw("ZapfDingbats", "(4) Tj"), kLowerHalf);
    EXPECT_COVERAGE(draw("ZapfDingbats", "(x) Tj",
                        "/Encoding << /BaseEncoding /WinAnsiEncoding /Differences [120 /a20] >>"),
        kLowerHalf);
    EXPECT_COVERAGE(
        draw("Symbol", "(x) Tj", "/Encoding << /Differences [120 /Amacron] >>"), std::string(48, '.'));
}

TEST_F(PDFInstalledFont, ReportsNamesThatItDoesNotKnow)
{
    const NSLogCapture log;
    draw("Helvetica", "(y) Tj", "/Encoding << /Differences [121 /.notdef] >>");
    EXPECT_TRUE(log.messages().empty());
    draw("Helvetica", "(x) Tj", "/Encoding << /Differences [120 /nosuchname] >>");
    EXPECT_EQ(log.messages().size(), 1u);
}

TEST_F(PDFInstalledFont, ReportsCharactersThatItLacks)
{
    const NSLogCapture log;
    EXPECT_COVERAGE(draw("Helvetica", "(zzbz) Tj", "/FirstChar 98 /LastChar 122 /Widths [1000 0]"),
        "............"
        "............"
        "............"
        "#...........");
    ASSERT_EQ(log.messages().size(), 1u);
    EXPECT_EQ(log.messages()[0],
        "CGPDF: page 1 of a document: a character of Helvetica is not drawn (no installed font has it)");
}

TEST_F(PDFInstalledFont, DoesNotReportBlanksAndControlCharacters)
{
    const NSLogCapture log;
    draw("Helvetica", "( \\001\\200) Tj");
    EXPECT_TRUE(log.messages().empty());
}

TEST_F(PDFInstalledFont, DrawsNothingWhereNoFontIsInstalled)
{
    const NSLogCapture log;
    const TemporaryFolder empty;
    const PrivateFonts none(NSString(empty.path().string()));
    EXPECT_COVERAGE(
        drawText("(b) Tj", {"<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>"}), std::string(48, '.'));
    EXPECT_FALSE(log.messages().empty());
}

TEST_F(PDFInstalledFont, HasItsFamilyForTheHundredthName)
{
    install("Liberation Serif", 1000, 1000);
    std::string operators;
    std::string resources = "/Font << /F 10 0 R ";
    for (int number = 0; number < 100; ++number) {
        const std::string name = std::to_string(number);
        resources += "/F" + name + " << /Type /Font /Subtype /Type1 /BaseFont /Font" + name + " >> ";
        operators += "/F" + name + " 2 Tf 0 0 Td ( ) Tj ";
    }
    resources += "/T << /Type /Font /Subtype /Type1 /BaseFont /Times-Roman >> >>";
    const PrivateFonts fonts(NSString(_folder.path().string()));
    EXPECT_COVERAGE(drawText(operators + "ET BT /T 2 Tf (b) Tj", {"<< >>"}, resources), kFull);
    EXPECT_LT(fontWork().fontQueries, 300u);
}

} // namespace
