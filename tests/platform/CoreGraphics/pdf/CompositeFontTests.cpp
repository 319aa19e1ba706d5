#include "FontObjects.h"

#include "../../CoreText/TestFont.h"
#include "Foundation/testing/NSLogCapture.h"

#include <gtest/gtest.h>

namespace {

const std::string kNoInk(48, '.');

/// A TrueType font of three glyphs besides the sign for a missing character (an upright bar, a quarter wide):
/// 1 fills an em, 2 is its quarter, 3 its lower half.
std::string threeGlyphs()
{
    TestFont font("Squares");
    font.add(u'A', 1000, {{0, 0, 1000, 1000}});
    font.add(u'b', 1000, {{0, 0, 500, 500}});
    font.add(u'c', 1000, {{0, 0, 1000, 500}});
    return font.bytes();
}

/// A Type 0 font whose descendant has `entries`.
std::vector<PDFObjectText> compositeFont(std::string_view entries, std::string_view encoding = "/Identity-H",
    std::string_view fileKey = "FontFile2", const std::string& program = threeGlyphs())
{
    auto objects = embeddedFont(entries, fileKey, program);
    std::string font =
        "<< /Type /Font /Subtype /Type0 /BaseFont /Squares /DescendantFonts [13 0 R] /Encoding ";
    font += encoding;
    objects.push_back(objects[0]);
    objects[0] = font + " >>";
    return objects;
}

constexpr std::string_view kTrueType = "/Subtype /CIDFontType2 ";

TEST(PDFCompositeFont, TakesTwoBytesForEachGlyph)
{
    EXPECT_COVERAGE(drawText("<000200010003> Tj", compositeFont(kTrueType)),
        "............"
        "............"
        "..##........"
        "#.####......");
}

TEST(PDFCompositeFont, ReadsAnOddByteAsAHighOne)
{
    EXPECT_COVERAGE(drawText("<000202> Tj <0002> Tj", compositeFont(kTrueType)),
        "............"
        "............"
        "............"
        "#...#.......");
}

TEST(PDFCompositeFont, DoesNotSpaceWords)
{
    // Code 32 of two bytes is no blank.
    EXPECT_COVERAGE(drawText("2 Tw <00200002> Tj", compositeFont(kTrueType)),
        "............"
        "............"
        "............"
        "..#.........");
}

TEST(PDFCompositeFont, HasAdvancesByCID)
{
    const auto font = compositeFont(std::string(kTrueType) + "/DW 500 /W [2 [1500 2000] 10 20 2500]");
    EXPECT_COVERAGE(drawText("<00020002> Tj", font),
        "............"
        "............"
        "............"
        "#..#........");
    EXPECT_COVERAGE(drawText("<00030002> Tj", font),
        "............"
        "............"
        "............"
        "##..#.......");
    EXPECT_COVERAGE(drawText("<00010002> Tj", font),
        "............"
        "............"
        "##.........."
        "##..........")
        << "the default";
    for (const char* inRange : {"<000A0002> Tj", "<00140002> Tj"})
        EXPECT_COVERAGE(drawText(inRange, font),
            "............"
            "............"
            "............"
            ".....#......");
    for (const char* outside : {"<00090002> Tj", "<00150002> Tj", "<00040002> Tj"})
        EXPECT_COVERAGE(drawText(outside, font),
            "............"
            "............"
            "............"
            ".#..........");
}

TEST(PDFCompositeFont, HasTheAdvanceOfTheRunThatStartsLast)
{
    const auto font = compositeFont(std::string(kTrueType) + "/W [3 3 1500 0 9 2500 2 [1000]]");
    EXPECT_COVERAGE(drawText("<000200030002> Tj", font),
        "............"
        "............"
        "............"
        "#.##.#......");
    EXPECT_COVERAGE(drawText("<00090002> Tj", font),
        "............"
        "............"
        "............"
        ".....#......");
}

TEST(PDFCompositeFont, SkipsInvalidRunsOfAdvances)
{
    const auto font = compositeFont(std::string(kTrueType)
        + "/DW 500 /W [-1 [9000] 70000 [9000] 5 4 9000 (x) [9000] 2 [] 2 [1500] 9 (x) 7]");
    EXPECT_COVERAGE(drawText("<000200050002> Tj", font),
        "............"
        "............"
        "............"
        "#...#.......");
    const auto none = compositeFont(std::string(kTrueType) + "/W 7 /DW (x)");
    EXPECT_COVERAGE(drawText("<00020002> Tj", none),
        "............"
        "............"
        "............"
        "#.#.........");
}

TEST(PDFCompositeFont, MapsCIDsToGlyphs)
{
    auto font = compositeFont(std::string(kTrueType) + "/CIDToGIDMap 14 0 R");
    font.push_back(pdfStream("", std::string("\0\0\0\2\0\1", 6)));
    EXPECT_COVERAGE(drawText("<00010002> Tj", font),
        "............"
        "............"
        "..##........"
        "#.##........");
    EXPECT_COVERAGE(drawText("<0009> Tj", font),
        "............"
        "............"
        "+..........."
        "+...........")
        << "the sign for a missing character beyond the map";
    EXPECT_COVERAGE(drawText("<0001> Tj", compositeFont(std::string(kTrueType) + "/CIDToGIDMap /Identity")),
        "............"
        "............"
        "##.........."
        "##..........");
}

TEST(PDFCompositeFont, WithCFFGlyphsGoesByTheNumbersInTheFont)
{
    const auto font = compositeFont(
        "/Subtype /CIDFontType0", "/Identity-H", "FontFile3", cidFontBytes(squareGlyphs(), {7, 2, 300, 301}));
    EXPECT_COVERAGE(drawText("<00020007> Tj", font),
        "............"
        "............"
        "..##........"
        "#.##........");
    EXPECT_COVERAGE(drawText("<0001> Tj", font), kNoInk);
}

TEST(PDFCompositeFont, WithNamedGlyphsGoesByTheirOrder)
{
    const auto font =
        compositeFont("/Subtype /CIDFontType0", "/Identity-H", "FontFile3", cffFontBytes(squareGlyphs()));
    EXPECT_COVERAGE(drawText("<00020001> Tj", font),
        "............"
        "............"
        "..##........"
        "#.##........");
}

TEST(PDFCompositeFont, GoesDownTheLineInVerticalText)
{
    // A glyph's origin is the middle of its top, by default 0.88 em up; here 1 em.
    const auto font = compositeFont(std::string(kTrueType) + "/DW2 [1000 -1000]", "/Identity-V");
    EXPECT_COVERAGE(drawText("4 4 Td <00020001> Tj", font),
        "............"
        "...#........"
        "...##......."
        "...##.......");
    const auto close = compositeFont(std::string(kTrueType) + "/DW2 [1000 -500]", "/Identity-V");
    EXPECT_COVERAGE(drawText("4 4 Td -1 Tc <00020002> Tj", close),
        "............"
        "...#........"
        "............"
        "...#........")
        << "a negative spacing goes down too";
    EXPECT_COVERAGE(drawText("4 4 Td 200 Tz [<0002> 500 <0002>] TJ", close),
        "............"
        "..##........"
        "............"
        "..##........")
        << "the horizontal scale does not";
}

TEST(PDFCompositeFont, PlacesVerticalGlyphsByTheirMetrics)
{
    const auto font =
        compositeFont(std::string(kTrueType) + "/W2 [2 [-500 0 500] 3 3 -1500 1000 1000]", "/Identity-V");
    EXPECT_COVERAGE(drawText("4 4 Td <00020002> Tj", font),
        "....#......."
        "....#......."
        "............"
        "............")
        << "an advance of half an em, the origin at the top left of the quarter";
    EXPECT_COVERAGE(drawText("4 4 Td <00030002> Tj", font),
        "............"
        "..##........"
        "............"
        "....#.......");
}

TEST(PDFCompositeFont, ReportsTextThatItCannotDraw)
{
    const auto messageOf = [](const std::vector<PDFObjectText>& objects) {
        const NSLogCapture log;
        EXPECT_COVERAGE(drawText("<00010002> Tj", objects), kNoInk);
        return log.messages().size() == 1 ? log.messages()[0] : "";
    };
    EXPECT_EQ(messageOf(compositeFont(kTrueType, "/UniGB-UCS2-H")),
        "CGPDF: page 1 of a document: text in Squares is not drawn (CMap UniGB-UCS2-H)");
    EXPECT_EQ(messageOf(compositeFont(kTrueType, "10 0 R")),
        "CGPDF: page 1 of a document: text in Squares is not drawn (CMap in the file)");
    EXPECT_EQ(messageOf(compositeFont(kTrueType, "/Identity-H", "Other")),
        "CGPDF: page 1 of a document: text in Squares is not drawn (a CID font that the file does not "
        "contain)");
    EXPECT_EQ(messageOf(compositeFont(kTrueType, "/Identity-H", "FontFile2", "damaged")),
        "CGPDF: page 1 of a document: text in Squares is not drawn (damaged font)");
}

TEST(PDFCompositeFont, MovesOnByTextThatItCannotDraw)
{
    auto objects = compositeFont(kTrueType, "/Other-H");
    objects.push_back("<< /Type /Font /Subtype /Type1 /FontDescriptor 11 0 R /BaseFont /Squares >>");
    objects[1] = "<< /Type /FontDescriptor /FontName /Squares /FontFile 12 0 R >>";
    objects[2] = pdfStream("", type1FontBytes(squareGlyphs()));
    const NSLogCapture log;
    EXPECT_COVERAGE(drawText("<00010002> Tj /G 2 Tf (b) Tj", objects, "/Font << /F 10 0 R /G 14 0 R >>"),
        "............"
        "............"
        "............"
        "....#.......");
}

} // namespace
