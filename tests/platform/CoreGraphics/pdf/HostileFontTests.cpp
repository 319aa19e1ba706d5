#include "FontObjects.h"

#include "../../CoreText/TestFont.h"
#include "Foundation/testing/NSLogCapture.h"

#include <gtest/gtest.h>

// Fonts come from anywhere: whatever they contain, the rest of the page is drawn.

namespace {

/// Draws text in a font, then a square, which must appear.
void expectPageGoesOn(std::string_view operators, const std::vector<PDFObjectText>& objects)
{
    const NSLogCapture log;
    const auto canvas = drawText(std::string(operators) + " ET 1 0 0 1 11 3 cm 0 0 1 1 re f BT", objects);
    EXPECT_EQ(canvas.alpha(11, 0), 255);
}

TEST(PDFHostileFont, MayBeCutOffAnywhere)
{
    TestFont trueType("Squares");
    trueType.add(u'A', 1000, {{0, 0, 1000, 1000}});
    for (const std::string& program : {type1FontBytes(squareGlyphs()), cffFontBytes(squareGlyphs()),
             trueType.bytes(), cidFontBytes(squareGlyphs(), {1, 2, 3, 4})}) {
        for (std::size_t size = 0; size < program.size(); size += 1 + program.size() / 100) {
            SCOPED_TRACE(size);
            expectPageGoesOn("(A\\310b) Tj",
                embeddedFont("/Subtype /Type1", "FontFile", program.substr(0, size), "/Flags 4"));
        }
    }
}

TEST(PDFHostileFont, MayHaveAnyByteChanged)
{
    TestFont trueType("Squares");
    trueType.add(u'A', 1000, {{0, 0, 1000, 1000}});
    for (const std::string& program : {cffFontBytes(squareGlyphs()), trueType.bytes()}) {
        for (std::size_t place = 0; place < program.size(); place += 1 + program.size() / 150) {
            SCOPED_TRACE(place);
            for (const char value : {'\0', '\x7F', '\xFF'}) {
                std::string changed = program;
                changed[place] = value;
                expectPageGoesOn(
                    "(A\\310b) Tj", embeddedFont("/Subtype /Type1", "FontFile3", changed, "/Flags 4"));
            }
        }
    }
}

TEST(PDFHostileFont, MayBeOfAFormatThatNoPageHas)
{
    // FreeType would read these, unpacking compressed ones without a limit.
    for (const char* start : {"\x1F\x8B\x08", "wOFF", "wOF2", "STARTFONT 2.1\n", "\1fcp", "PFR0", "BZh"})
        expectPageGoesOn(
            "(A) Tj", embeddedFont("/Subtype /Type1", "FontFile", std::string(start) + "abcdefgh"));
}

TEST(PDFHostileFont, MayHaveAnyWidths)
{
    for (const char* widths :
        {"[1e30 -1e30 1e308]", "[99999999999999999999]", "[null (x) [1] << >>]", "12 0 R"}) {
        SCOPED_TRACE(widths);
        const auto entries =
            "/Subtype /Type1 /FirstChar 65 /LastChar 1000000000 /Widths " + std::string(widths);
        expectPageGoesOn("(ABCAAAAAAAA) Tj [(A) 1e30 (B)] TJ 1e30 Tc 1e30 Tw (A A) Tj 1e30 Tz (A) Tj",
            embeddedFont(entries, "FontFile", type1FontBytes(squareGlyphs())));
    }
}

TEST(PDFHostileFont, MayStandAnywhere)
{
    for (const char* place : {"1e30 1e30 Td", "1e30 0 0 1e30 1e30 1e30 Tm", "0 0 0 0 0 0 Tm", "/F 1e30 Tf",
             "/F 0 Tf", "1e9 Ts", "1e9 0 0 1e9 0 0 Tm 1e9 1e9 Td 1e9 1e9 Td", "1e30 TL T* T* T*"}) {
        SCOPED_TRACE(place);
        expectPageGoesOn(std::string(place) + " (AbA) Tj 1 Tr (A) Tj 7 Tr ( ) Tj", squareFont());
    }
}

TEST(PDFHostileFont, MayHaveEntriesOfWrongTypes)
{
    for (const char* entries :
        {"/Subtype /Type1 /Encoding 7", "/Subtype /Type1 /Encoding << /Differences 7 >>",
            "/Subtype /Type1 /Encoding << /Differences [-5 /A /b 254 /A /b /A /b 1e30 /A (x) /b null /A] >>",
            "/Subtype /Type1 /Encoding << /BaseEncoding [1] /Differences << >> >>", "/Subtype 7",
            "/Subtype /Type0", "/Subtype /Type0 /DescendantFonts 7",
            "/Subtype /Type0 /DescendantFonts [10 0 R] /Encoding /Identity-H", "/Subtype /Type3",
            "/Subtype /Type3 /CharProcs 7 /FontMatrix [1] /Resources 7 /Encoding 7",
            "/Subtype /TrueType /FontDescriptor 7", "/Subtype /Type1 /FontDescriptor 10 0 R"}) {
        SCOPED_TRACE(entries);
        expectPageGoesOn("(A\\001b) Tj",
            embeddedFont(entries, "FontFile", type1FontBytes(squareGlyphs()), "/Flags /x /MissingWidth [1]"));
    }
}

TEST(PDFHostileFont, MayRepeatARunOfWidthsWithoutEnd)
{
    std::string runs;
    for (int run = 0; run < 30'000; ++run)
        runs += "0 65535 1000 1 13 0 R ";
    std::string list = "[";
    for (int number = 0; number < 30'000; ++number)
        list += "500 ";
    auto objects = embeddedFont("/Subtype /CIDFontType2 /W [" + runs + "]", "FontFile2", "");
    objects.push_back(list + "]");
    objects.push_back("<< /Type /Font /Subtype /Type0 /BaseFont /Squares /DescendantFonts [10 0 R] /Encoding "
                      "/Identity-H >>");
    const NSLogCapture log;
    drawText("<0001> Tj", objects, "/Font << /F 14 0 R >>");
    EXPECT_LE(log.messages().size(), 2u);
}

TEST(PDFHostileFont, MayShowMoreGlyphsThanAPageCanHave)
{
    const NSLogCapture log;
    const auto canvas = drawText("(b) Tj (" + std::string(8'000'000, 'A') + ") Tj (b) Tj");
    EXPECT_EQ(canvas.alpha(0, 3), 255) << "what came before";
    ASSERT_EQ(log.messages().size(), 1u);
    EXPECT_EQ(log.messages()[0],
        "CGPDF: page 1 of a document: the rest of the page is left out: too many operators");
}

TEST(PDFHostileFont, MayHaveGlyphsThatTakeLong)
{
    // Each of 200 glyphs runs through millions of calls.
    std::vector<RectangleGlyph> glyphs;
    std::string text;
    for (unsigned code = 40; code < 240; ++code) {
        glyphs.push_back({"g" + std::to_string(code), 500, 0, 0, 0, 0, code});
        text += code == '\\' ? ' ' : char(code);
    }
    const NSLogCapture log;
    drawText("(" + text.substr(2) + ") Tj",
        embeddedFont("/Subtype /Type1", "FontFile3", slowFontBytes(glyphs, 6), "/Flags 4"));
    ASSERT_EQ(log.messages().size(), 1u);
    EXPECT_EQ(log.messages()[0],
        "CGPDF: page 1 of a document: the rest of the page is left out: too many operators");
}

TEST(PDFHostileFont, MayComposeGlyphsOfEachOther)
{
    // Ten levels of twenty times the next one; a glyph of itself; a long chain.
    TestFont font("Squares");
    for (char16_t level = 0; level < 10; ++level)
        font.addComposed(char16_t(u'a' + level), 1000, std::vector<char16_t>(20, char16_t(u'a' + level + 1)));
    font.add(u'k', 1000, {});
    font.addComposed(u'y', 1000, {u'y', u'z'});
    font.addComposed(u'z', 1000, {u'y'});
    for (char16_t link = 0; link < 1'000; ++link)
        font.addComposed(char16_t(0x1000 + link), 1000, {char16_t(0x1000 + link + 1)});
    const auto objects = embeddedFont("/Subtype /TrueType /Encoding << /Differences [65 /uni1000] >>",
        "FontFile2", font.bytes(), "/Flags 32");
    expectPageGoesOn("(az) Tj (A) Tj", objects);
}

TEST(PDFHostileFont, MayHaveGlyphsOfTooManyPoints)
{
    const NSLogCapture log;
    TestFont font("Squares");
    font.add(u'A', 0, std::vector<TestFont::Rectangle>(4'000, {0, 0, 1000, 1000}));
    const auto objects = embeddedFont("/Subtype /TrueType", "FontFile2", font.bytes(), "/Flags 32");
    drawText("(" + std::string(100, 'A') + ") Tj", objects);
    ASSERT_EQ(log.messages().size(), 1u);
    EXPECT_EQ(
        log.messages()[0], "CGPDF: page 1 of a document: the rest of the page is left out: too many points");
}

TEST(PDFHostileFont, MayHaveProceduresThatShowManyOthers)
{
    // Ten levels, each of which shows the next one twenty times.
    std::string procedures;
    std::string differences;
    std::vector<PDFObjectText> objects{""};
    for (int level = 0; level < 10; ++level) {
        procedures += "/g" + std::to_string(level) + " " + std::to_string(11 + level) + " 0 R ";
        differences += " /g" + std::to_string(level);
        objects.push_back(
            pdfStream("", "1 0 d0 BT /F 1 Tf (" + std::string(20, char('b' + level)) + ") Tj ET"));
    }
    objects[0] = "<< /Type /Font /Subtype /Type3 /FontMatrix [1 0 0 1 0 0] /CharProcs << " + procedures
        + ">> /Encoding << /Differences [97" + differences
        + "] >> /FirstChar 97 /Widths [1 1 1 1 1 1 1 1 1 1] >>";
    const NSLogCapture log;
    drawText("(a) Tj", objects);
    ASSERT_EQ(log.messages().size(), 1u);
    EXPECT_EQ(log.messages()[0],
        "CGPDF: page 1 of a document: the rest of the page is left out: too many operators");
}

TEST(PDFHostileFont, MayBeSetAgainAndAgain)
{
    // A direct dictionary is read at each Tf.
    std::string operators;
    for (int count = 0; count < 60'000; ++count)
        operators += "/D 2 Tf ";
    const NSLogCapture log;
    drawText(operators, squareFont(),
        "/Font << /F 10 0 R /D << /Type /Font /Subtype /Type1 /BaseFont /S /FontDescriptor 11 0 R >> >>");
    ASSERT_EQ(log.messages().size(), 1u);
    EXPECT_EQ(log.messages()[0],
        "CGPDF: page 1 of a document: the rest of the page is left out: too many operators");
}

} // namespace
