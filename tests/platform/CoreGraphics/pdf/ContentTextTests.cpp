#include "FontObjects.h"

#include "Foundation/testing/NSLogCapture.h"

#include <gtest/gtest.h>

namespace {

TEST(PDFText, ShowsGlyphsOneAdvanceApart)
{
    EXPECT_COVERAGE(drawText("(AbA) Tj (b) Tj"),
        "............"
        "............"
        "##..##......"
        "###.###.....");
}

TEST(PDFText, IsInTheFillColour)
{
    EXPECT_EQ(drawText("1 0 0 rg 0 0 1 RG (A) Tj").pixel(1, 3), rgba(255, 0, 0, 255));
}

TEST(PDFText, AddsTheCharacterSpacingToEachAdvance)
{
    EXPECT_COVERAGE(drawText("1 Tc (bb) Tj (b) Tj"),
        "............"
        "............"
        "............"
        "#..#..#.....");
}

TEST(PDFText, AddsTheWordSpacingToBlanks)
{
    EXPECT_COVERAGE(drawText("(b b) Tj 2 Tw (b b) Tj"),
        "............"
        "............"
        "............"
        "#..#.#....#.");
}

TEST(PDFText, ScalesGlyphsAndSpacesHorizontally)
{
    EXPECT_COVERAGE(drawText("200 Tz 1 Tc (bA) Tj"),
        "............"
        "............"
        "......####.."
        "##....####..");
    EXPECT_COVERAGE(drawText("50 Tz (A) Tj [-1000 (A)] TJ"),
        "............"
        "............"
        "#.#........."
        "#.#.........");
}

TEST(PDFText, MovesLinesByTheLeading)
{
    EXPECT_COVERAGE(drawText("1 3 Td 2 TL (b) Tj T* (b) Tj"),
        ".#.........."
        "............"
        ".#.........."
        "............");
    EXPECT_COVERAGE(drawText("1 3 Td 2 TL (b) Tj (b) '"),
        ".#.........."
        "............"
        ".#.........."
        "............");
}

TEST(PDFText, MovesFromTheStartOfTheLine)
{
    EXPECT_COVERAGE(drawText("1 1 Td (AA) Tj 6 1 Td (b) Tj"),
        "............"
        ".####..#...."
        ".####......."
        "............");
}

TEST(PDFText, SetsTheLeadingAsItMoves)
{
    EXPECT_COVERAGE(drawText("0 3 Td (b) Tj 3 -1 TD (b) Tj T* (b) Tj"),
        "#..........."
        "...#........"
        "...#........"
        "............");
}

TEST(PDFText, SetsBothSpacingsAndShowsANewLine)
{
    EXPECT_COVERAGE(drawText("0 1 Td 1 TL 1 2 (b b) \""),
        "............"
        "............"
        "............"
        "#.......#...");
    EXPECT_COVERAGE(drawText("0 1 Td 1 2 (b) \" (b) Tj"),
        "............"
        "............"
        "#...#......."
        "............")
        << "they stay set";
}

TEST(PDFText, RisesAboveTheLine)
{
    EXPECT_COVERAGE(drawText("1.5 Ts 0 0.5 Td (b) Tj -1.5 Ts 0 1 Td (b) Tj"),
        "............"
        "#..........."
        "............"
        "#...........");
}

TEST(PDFText, MovesBackByThousandthsOfTheSizeBetweenStrings)
{
    EXPECT_COVERAGE(drawText("[(b) -500 (b) 500 (A)] TJ"),
        "............"
        "............"
        "....##......"
        "#..###......");
    EXPECT_COVERAGE(drawText("[(b) -4500 (b)] TJ"),
        "............"
        "............"
        "............"
        "#..........#");
    EXPECT_COVERAGE(drawText("[/Name (b) null [(A)] (b)] TJ"),
        "............"
        "............"
        "............"
        "#.#.........");
}

TEST(PDFText, FollowsTheTextMatrix)
{
    EXPECT_COVERAGE(drawText("0 1 -1 0 4 0 Tm (bb) Tj"),
        "............"
        "...#........"
        "............"
        "...#........");
    EXPECT_COVERAGE(drawText("2 0 0 2 4 0 Tm 1 0 Td (b) Tj"),
        "............"
        "............"
        "......##...."
        "......##....");
}

TEST(PDFText, TurnsRoundForANegativeSize)
{
    EXPECT_COVERAGE(drawText("/F -2 Tf 6 3 Td (bA) Tj"),
        "............"
        "..##.#......"
        "..##........"
        "............");
}

TEST(PDFText, StartsAtTheOriginWithTheSameFont)
{
    EXPECT_COVERAGE(drawText("6 1 Td (b) Tj ET BT (b) Tj"),
        "............"
        "............"
        "......#....."
        "#...........");
}

TEST(PDFText, HasParametersInTheGraphicsState)
{
    EXPECT_COVERAGE(drawText("ET q BT /F 4 Tf 1 Tc 2 TL 1 Ts 200 Tz 5 Tw ET Q BT (b ) Tj (b) Tj"),
        "............"
        "............"
        "............"
        "#..#........");
}

TEST(PDFText, TakesTheFontOfAnExtendedGraphicsState)
{
    EXPECT_COVERAGE(drawText("/G gs (b) Tj", squareFont(),
                        "/Font << /F 10 0 R >> /ExtGState << /G << /Font [10 0 R 4] >> >>"),
        "............"
        "............"
        "##.........."
        "##..........");
}

TEST(PDFText, SkipsOperatorsWithWrongOperands)
{
    EXPECT_COVERAGE(
        drawText("/A Tc (x) Tw 3 Tj [(A)] Tj 5 Td 9 Tf 7 /F Tf (A) TJ 9 Ts 7 ' 0 Ts (A) 1 (A) \" (b) Tj"),
        "............"
        "............"
        "............"
        "#...........");
}

TEST(PDFText, WithoutAFontIsNotDrawn)
{
    const NSLogCapture log;
    const std::string blank(48, '.');
    EXPECT_COVERAGE(drawText("/Missing 2 Tf (A) Tj"), blank);
    ASSERT_EQ(log.messages().size(), 1u);
    EXPECT_EQ(
        log.messages()[0], "CGPDF: page 1 of a document: text in a font that does not exist is not drawn");
    const auto unset = makePDF("BT (A) Tj ET", kFontF, "/MediaBox [0 0 12 4]", squareFont());
    EXPECT_COVERAGE(drawPage(unset, 1, 12, 4), blank);
}

TEST(PDFText, IsOnePathForEachOperator)
{
    // Overlapping glyphs of half the opacity do not add up within an operator.
    const auto resources = "/Font << /F 10 0 R >> /ExtGState << /G << /ca 0.5 >> >>";
    EXPECT_COVERAGE(drawText("/G gs -1 Tc (AA) Tj 0 Tc 4 0 Td [(A) 500 (A)] TJ", squareFont(), resources),
        "............"
        "............"
        "+++.+++....."
        "+++.+++.....");
    EXPECT_COVERAGE(drawText("/G gs -1 Tc (A) Tj (A) Tj", squareFont(), resources),
        "............"
        "............"
        "+*+........."
        "+*+.........");
}

} // namespace
