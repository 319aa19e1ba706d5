#include "FontObjects.h"

#include "Foundation/testing/NSLogCapture.h"
#include "support/Canvas.h"

#include <gtest/gtest.h>

namespace {

/// A Type 3 font of two glyphs: a is 10 units wide, b is 5; an em is 10 units.
std::vector<PDFObjectText> procedureFont(
    std::string_view a, std::string_view b = "5 0 d0", std::string_view entries = "")
{
    return {"<< /Type /Font /Subtype /Type3 /FontBBox [0 0 10 10] /FontMatrix [0.1 0 0 0.1 0 0] /CharProcs "
            "<< /square "
            "11 0 R /dot 12 0 R >> /Encoding << /Differences [97 /square /dot] >> /FirstChar 97 /LastChar 98 "
            "/Widths "
            "[10 5] "
            + std::string(entries) + " >>",
        pdfStream("", a), pdfStream("", b)};
}

TEST(PDFProcedureFont, DrawsItsProceduresAdvancesApart)
{
    EXPECT_COVERAGE(
        drawText("1 1 Td (aba) Tj", procedureFont("10 0 d0 0 0 10 10 re f", "5 0 d0 0 0 5 5 re f")),
        "............"
        ".##.##......"
        ".#####......"
        "............");
}

TEST(PDFProcedureFont, HasAnAdvanceByTheFontMatrix)
{
    const auto wide =
        procedureFont("10 0 d0 0 0 5 5 re f", "5 0 d0 0 0 5 5 re f", "/FontMatrix [0.2 0 0 0.1 0 0]");
    EXPECT_COVERAGE(drawText("(aa) Tj", wide),
        "............"
        "............"
        "............"
        "##..##......");
    const auto usual = procedureFont("500 0 d0 0 0 500 500 re f", "", "/FontMatrix null /Widths [2000 0]");
    EXPECT_COVERAGE(drawText("(aa) Tj", usual),
        "............"
        "............"
        "............"
        "#...#.......");
}

TEST(PDFProcedureFont, WithD0HasColoursOfItsOwn)
{
    const auto canvas = drawText("0 0 1 rg (ab) Tj (c) Tj ET 4 0 1 1 re f BT",
        procedureFont("10 0 d0 1 0 0 rg 0 0 10 10 re f", "5 0 d0 0 0 5 5 re f"));
    EXPECT_EQ(canvas.pixel(0, 2), kRed);
    EXPECT_EQ(canvas.pixel(2, 3), kBlue) << "the text's, where a glyph sets none";
    EXPECT_EQ(canvas.pixel(4, 3), kBlue) << "unchanged afterwards";
}

TEST(PDFProcedureFont, WithD1IsAShapeInTheTextsColour)
{
    const auto canvas = drawText("0 0 1 rg 0 1 0 RG (a) Tj",
        procedureFont("10 0 0 0 10 10 d1 1 0 0 rg 1 0 0 RG 0 0 10 5 re f 5 w 0 7.5 m 10 7.5 l S"));
    EXPECT_EQ(canvas.pixel(0, 3), kBlue);
    EXPECT_EQ(canvas.pixel(1, 2), kBlue) << "strokes too";
}

TEST(PDFProcedureFont, IgnoresD1OutsideOfGlyphs)
{
    EXPECT_EQ(drawText("10 0 0 0 10 10 d1 1 0 0 rg (A) Tj").pixel(0, 3), kRed);
}

TEST(PDFProcedureFont, IsDrawnWithTheGraphicsStateOfTheText)
{
    const auto canvas = drawText(
        "(a) Tj ET 4 0 1 1 re f BT", procedureFont("10 0 d0 0 1 0 rg 0.5 0 0 0.5 0 0 cm 0 0 10 10 re f"));
    EXPECT_COVERAGE(canvas,
        "............"
        "............"
        "............"
        "#...#.......");
    EXPECT_EQ(canvas.pixel(4, 3), rgba(0, 0, 0, 255));
}

TEST(PDFProcedureFont, UsesItsResourcesOrThoseOfThePage)
{
    auto objects = procedureFont("10 0 d0 /X Do", "5 0 d0", "/Resources << /XObject << /X 13 0 R >> >>");
    objects.push_back(
        pdfStream("/Type /XObject /Subtype /Form /BBox [0 0 10 10]", "1 0 0 rg 0 0 10 10 re f"));
    objects.push_back(
        pdfStream("/Type /XObject /Subtype /Form /BBox [0 0 10 10]", "0 0 1 rg 0 0 10 10 re f"));
    const auto resources = "/Font << /F 10 0 R >> /XObject << /X 14 0 R >>";
    EXPECT_EQ(drawText("(a) Tj", objects, resources).pixel(0, 3), kRed);
    const auto withoutOwn = procedureFont("10 0 d0 /X Do");
    std::copy(withoutOwn.begin(), withoutOwn.end(), objects.begin());
    EXPECT_EQ(drawText("(a) Tj", objects, resources).pixel(0, 3), kBlue);
}

TEST(PDFProcedureFont, ShowsTextInOtherFonts)
{
    auto objects = procedureFont("10 0 d0 BT /G 10 Tf 5 0 Td (b) Tj ET", "5 0 d0 0 0 5 5 re f",
        "/Resources << /Font << /G 13 0 R >> >>");
    objects.push_back("<< /Type /Font /Subtype /Type1 /BaseFont /Squares /FontDescriptor 14 0 R >>");
    objects.push_back("<< /Type /FontDescriptor /FontName /Squares /FontFile 15 0 R >>");
    objects.push_back(pdfStream("", type1FontBytes(squareGlyphs())));
    EXPECT_COVERAGE(drawText("(ab) Tj", objects),
        "............"
        "............"
        "............"
        ".##.........")
        << "the text around goes on in its font, from its place";
}

TEST(PDFProcedureFont, IsNotDrawnWhereTextIsInvisible)
{
    EXPECT_COVERAGE(
        drawText("3 Tr (a) Tj 0 Tr (b) Tj", procedureFont("10 0 d0 0 0 10 10 re f", "5 0 d0 0 0 5 5 re f")),
        "............"
        "............"
        "............"
        "..#.........");
}

TEST(PDFProcedureFont, RefusesGlyphsThatShowThemselves)
{
    const NSLogCapture log;
    auto objects =
        procedureFont("10 0 d0 0 0 10 10 re f BT /F 10 Tf (ab) Tj ET", "5 0 d0 BT /F 10 Tf (a) Tj ET");
    EXPECT_COVERAGE(drawText("(a) Tj", objects),
        "............"
        "............"
        "##.........."
        "##..........");
    ASSERT_EQ(log.messages().size(), 1u);
    EXPECT_EQ(log.messages()[0], "CGPDF: page 1 of a document: a glyph that shows itself is not drawn");
}

TEST(PDFProcedureFont, SkipsGlyphsWithoutAProcedure)
{
    auto objects = procedureFont("10 0 d0 0 0 10 10 re f");
    EXPECT_COVERAGE(drawText("(cza) Tj", objects),
        "............"
        "............"
        "##.........."
        "##..........");
    objects[2] = "(no stream)";
    EXPECT_COVERAGE(drawText("(ba) Tj", objects),
        "............"
        "............"
        ".##........."
        ".##.........");
}

} // namespace
