#include "FontObjects.h"
#include "support/Canvas.h"

#include <gtest/gtest.h>

namespace {

/// The letter A as the outline of a square from 0.5 to 3.5, filled red, stroked blue, one point wide.
constexpr std::string_view kSquare = " 1 0 0 rg 0 0 1 RG /F 3 Tf 0.5 0.5 Td (A) Tj ";
/// After the text: a green area everywhere, which shows the clip.
constexpr std::string_view kCover = " ET 0 1 0 rg 0 0 12 4 re f BT";

Canvas drawSquare(std::string_view mode, std::string_view after = "")
{
    return drawText(std::string(mode) + " Tr" + std::string(kSquare) + std::string(after));
}

TEST(PDFTextRenderMode, FillsByDefault)
{
    const auto canvas = drawText(kSquare);
    EXPECT_EQ(canvas.pixel(1, 1), kRed);
    EXPECT_EQ(canvas.pixel(0, 1), rgba(128, 0, 0, 128));
    EXPECT_EQ(drawSquare("0", kCover).pixel(6, 1), kGreen) << "nothing is clipped";
}

TEST(PDFTextRenderMode, OneStrokes)
{
    EXPECT_COVERAGE(drawText("1 Tr /F 3 Tf 0.5 0.5 Td (A) Tj 200 Tz 5 0 Td (A) Tj"),
        "####.#######"
        "#..#.#.....#"
        "#..#.#.....#"
        "####.#######");
    EXPECT_EQ(drawSquare("1").pixel(0, 1), kBlue);
    EXPECT_EQ(drawSquare("1", kCover).pixel(6, 1), kGreen);
}

TEST(PDFTextRenderMode, TwoFillsBelowTheStroke)
{
    const auto canvas = drawSquare("2");
    EXPECT_EQ(canvas.pixel(1, 1), kRed);
    EXPECT_EQ(canvas.pixel(0, 1), kBlue);
    EXPECT_EQ(canvas.pixel(3, 3), kBlue);
}

TEST(PDFTextRenderMode, ThreeMovesOnly)
{
    EXPECT_COVERAGE(drawText("3 Tr (A) Tj 0 Tr (b) Tj"),
        "............"
        "............"
        "............"
        "..#.........");
    EXPECT_EQ(drawSquare("3", kCover).pixel(6, 1), kGreen);
}

TEST(PDFTextRenderMode, FourFillsAndClips)
{
    EXPECT_EQ(drawSquare("4").pixel(1, 1), kRed);
    const auto covered = drawSquare("4", kCover);
    EXPECT_EQ(covered.pixel(1, 1), kGreen);
    EXPECT_EQ(covered.pixel(6, 1), kTransparent);
}

TEST(PDFTextRenderMode, FiveStrokesAndClipsToTheOutline)
{
    const auto canvas = drawSquare("5");
    EXPECT_EQ(canvas.pixel(0, 1), kBlue);
    EXPECT_EQ(canvas.pixel(1, 1), kTransparent);
    const auto covered = drawSquare("5", kCover);
    EXPECT_EQ(covered.pixel(1, 1), kGreen);
    EXPECT_EQ(covered.pixel(6, 1), kTransparent);
}

TEST(PDFTextRenderMode, SixFillsStrokesAndClips)
{
    const auto canvas = drawSquare("6");
    EXPECT_EQ(canvas.pixel(0, 1), kBlue);
    EXPECT_EQ(canvas.pixel(1, 1), kRed);
    EXPECT_EQ(drawSquare("6", kCover).pixel(6, 1), kTransparent);
}

TEST(PDFTextRenderMode, SevenClipsOnly)
{
    EXPECT_EQ(drawSquare("7").pixel(1, 1), kTransparent);
    const auto covered = drawSquare("7", kCover);
    EXPECT_EQ(covered.pixel(1, 1), kGreen);
    EXPECT_EQ(covered.pixel(6, 1), kTransparent);
}

TEST(PDFTextRenderMode, OutOfRangeIsIgnored)
{
    EXPECT_EQ(drawSquare("7 Tr 0 Tr 8").pixel(1, 1), kRed);
    EXPECT_EQ(drawSquare("-1").pixel(1, 1), kRed);
}

TEST(PDFTextClip, IsTheUnionOfAllTextUntilTheEnd)
{
    // What is painted between the letters and the end of the text is not clipped yet.
    const auto canvas = drawText("7 Tr (b) Tj 0 Tr (b) Tj 7 Tr (b) Tj ET 0 0 12 4 re f BT");
    EXPECT_COVERAGE(canvas,
        "............"
        "............"
        "............"
        "#.#.#.......");
}

TEST(PDFTextClip, EndsWithTheGraphicsState)
{
    EXPECT_COVERAGE(drawText("ET q BT /F 2 Tf 7 Tr (b) Tj ET 0 0 12 4 re f Q 6 1 2 1 re f BT"),
        "............"
        "............"
        "......##...."
        "#...........");
}

TEST(PDFTextClip, OfBlanksIsNone)
{
    EXPECT_COVERAGE(drawText("7 Tr (  ) Tj ET 0 0 12 1 re f BT"),
        "............"
        "............"
        "............"
        "############");
}

TEST(PDFTextClip, IntersectsTheClipThatIsInForce)
{
    EXPECT_COVERAGE(drawText("ET 1 0 12 4 re W n BT /F 2 Tf 7 Tr (AA) Tj ET 0 0 12 4 re f BT"),
        "............"
        "............"
        ".###........"
        ".###........");
}

} // namespace
