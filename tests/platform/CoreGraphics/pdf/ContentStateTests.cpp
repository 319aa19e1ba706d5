#include "support/PDFPages.h"
#include "support/Repeated.h"

#include <gtest/gtest.h>

namespace {

/// A page of 8 × 4 points with this content.
Canvas drawWide(std::string_view content, std::string_view resources = "")
{
    return drawPage(makePDF(content, resources), 1, 8, 4);
}

/// The rasterizer's pieces of a bevel overlap by a fraction of a pixel.
constexpr int kBevelTolerance = 10;

TEST(PDFGraphicsState, IsRestored)
{
    const auto canvas =
        drawWide("q 1 0 0 rg 1 0 0 1 4 0 cm q 0 1 0 rg 0 0 1 1 re f Q 1 0 1 1 re f Q 0 0 1 1 re f");
    EXPECT_EQ(canvas.pixel(4, 3), rgba(0, 255, 0, 255));
    EXPECT_EQ(canvas.pixel(5, 3), rgba(255, 0, 0, 255));
    EXPECT_EQ(canvas.pixel(0, 3), rgba(0, 0, 0, 255));
}

TEST(PDFGraphicsState, IgnoresSurplusRestores)
{
    EXPECT_EQ(drawWide("1 0 0 rg Q Q 0 0 1 1 re f").pixel(0, 3), rgba(255, 0, 0, 255));
}

TEST(PDFGraphicsState, CountsDeepSavesOnly)
{
    // 100,000 levels, each in a colour of its own but the deepest, whose colour stays.
    const auto canvas = drawWide("0 1 0 rg " + repeated("q ", 100'000) + "1 0 0 rg " + repeated("Q ", 99'999)
        + "0 0 1 1 re f Q 1 0 1 1 re f");
    EXPECT_EQ(canvas.pixel(0, 3), rgba(0, 255, 0, 255));
    EXPECT_EQ(canvas.pixel(1, 3), rgba(0, 255, 0, 255));
    const auto nested = drawWide(
        "0 1 0 rg " + repeated("q ", 600) + "1 0 0 rg " + repeated("Q ", 88) + "0 0 1 1 re f Q 1 0 1 1 re f");
    EXPECT_EQ(nested.pixel(0, 3), rgba(255, 0, 0, 255));
    EXPECT_EQ(nested.pixel(1, 3), rgba(0, 255, 0, 255));
}

TEST(PDFGraphicsState, ConcatenatesTransforms)
{
    EXPECT_COVERAGE(drawWide("2 0 0 1 0 0 cm 1 0 0 1 1 2 cm 0 0 1 1 re f"),
        "........"
        "..##...."
        "........"
        "........");
    EXPECT_COVERAGE(drawWide("0 1 -1 0 4 0 cm 0 0 3 1 re f"),
        "........"
        "...#...."
        "...#...."
        "...#....");
}

TEST(PDFGraphicsState, IgnoresTransformsThatOverflow)
{
    EXPECT_EQ(
        drawWide(repeated("1e9 0 0 1000000000 0 0 cm 999999999 0 0 999999999 0 0 cm ", 40) + "0 0 1 1 re f")
            .alpha(0, 3),
        255);
}

TEST(PDFGraphicsState, SetsLineWidths)
{
    EXPECT_COVERAGE(drawWide("2 w 0 2 m 8 2 l S"),
        "........"
        "########"
        "########"
        "........");
    EXPECT_COVERAGE(drawWide("-2 w 0 2 m 8 2 l S"),
        "........"
        "########"
        "########"
        "........");
    EXPECT_COVERAGE(drawWide("0.5 w 0 2.5 m 8 2.5 l S"),
        "........"
        "++++++++"
        "........"
        "........");
}

TEST(PDFGraphicsState, DrawsLinesOfWidthZeroAsThinAsPossible)
{
    const auto document = makePDF("0 w 0 1.25 m 8 1.25 l S");
    EXPECT_COVERAGE(drawPage(document, 1, 4, 2, 2),
        "........"
        "########"
        "........"
        "........");
    EXPECT_COVERAGE(drawPage(makePDF("4 0 0 4 0 0 cm 0 w 0 0.375 m 8 0.375 l S"), 1, 4, 4),
        "...."
        "...."
        "####"
        "....");
}

TEST(PDFGraphicsState, SetsCaps)
{
    EXPECT_COVERAGE(drawWide("2 w 2 2 m 6 2 l S"),
        "........"
        "..####.."
        "..####.."
        "........");
    EXPECT_COVERAGE(drawWide("2 w 2 J 2 2 m 6 2 l S"),
        "........"
        ".######."
        ".######."
        "........");
    const int corner = drawWide("2 w 1 J 2 2 m 6 2 l S").alpha(1, 1);
    EXPECT_NEAR(corner, 200, 3); // a quarter of a circle of radius 1: π / 4
    EXPECT_EQ(drawWide("2 w 2 J 7 J 2 2 m 6 2 l S").alpha(1, 1), 255);
}

TEST(PDFGraphicsState, SetsJoins)
{
    const char* const corner = " 2 w 1 4 m 1 1 l 8 1 l S";
    EXPECT_EQ(drawWide(std::string("0 j") + corner).alpha(0, 3), 255);
    EXPECT_NEAR(drawWide(std::string("1 j") + corner).alpha(0, 3), 200, 3);
    EXPECT_NEAR(drawWide(std::string("2 j") + corner).alpha(0, 3), 128, kBevelTolerance);
}

TEST(PDFGraphicsState, SetsTheMiterLimit)
{
    const char* const corner = " 2 w 1 4 m 1 1 l 8 1 l S";
    EXPECT_EQ(drawWide(std::string("1.5 M") + corner).alpha(0, 3), 255); // a right angle needs √2
    EXPECT_NEAR(drawWide(std::string("1.4 M") + corner).alpha(0, 3), 128, kBevelTolerance);
    EXPECT_NEAR(drawWide(std::string("0 M") + corner).alpha(0, 3), 128, kBevelTolerance);
}

TEST(PDFGraphicsState, SetsDashes)
{
    EXPECT_COVERAGE(drawWide("2 w [2 1] 0 d 0 2 m 8 2 l S"),
        "........"
        "##.##.##"
        "##.##.##"
        "........");
    EXPECT_COVERAGE(drawWide("2 w [2 1] 1 d 0 2 m 8 2 l S"),
        "........"
        "#.##.##."
        "#.##.##."
        "........");
    EXPECT_COVERAGE(drawWide("2 w [1] 1 d 0 2 m 8 2 l S"),
        "........"
        ".#.#.#.#"
        ".#.#.#.#"
        "........");
    EXPECT_COVERAGE(drawWide("2 w [2 1] 0 d [] 0 d 0 2 m 8 2 l S"),
        "........"
        "########"
        "########"
        "........");
}

TEST(PDFGraphicsState, ReducesDashPhases)
{
    const std::string line = " 0 2 m 8 2 l S";
    EXPECT_EQ(drawWide("2 w [2 1] 900000001 d" + line).picture(), drawWide("2 w [2 1] 1 d" + line).picture());
    EXPECT_EQ(drawWide("2 w [2 1] -1 d" + line).picture(), drawWide("2 w [2 1] 2 d" + line).picture());
    EXPECT_EQ(
        drawWide("2 w [2 1 3] 8 d" + line).picture(), drawWide("2 w [2 1 3 2 1 3] 8 d" + line).picture());
}

TEST(PDFGraphicsState, IgnoresInvalidDashes)
{
    for (const char* dash : {"[-1 2] 0 d", "[0 0] 0 d", "[/A] 0 d", "[1 2] d", "3 0 d"}) {
        SCOPED_TRACE(dash);
        EXPECT_EQ(drawWide(std::string(dash) + " 2 w 0 2 m 8 2 l S").alpha(2, 1), 255);
    }
}

TEST(PDFGraphicsState, DrawsDashesThatAreTooSmallOrTooManyAsSolidLines)
{
    EXPECT_EQ(drawWide("2 w [0.02 0.02] 0 d 0 2 m 8 2 l S").alpha(4, 1), 255);
    EXPECT_NE(drawWide("2 w [0.04 0.04] 0 d 0 2 m 8 2 l S").alpha(4, 1), 255);
    EXPECT_NE(drawWide("2 w [0.5 0.5] 0 d 0 2 m 10000 2 l S").alpha(4, 1), 255);
    EXPECT_EQ(drawWide("2 w [0.5 0.5] 0 d 0 2 m 22000 2 l S").alpha(4, 1), 255);
}

TEST(PDFGraphicsState, DrawsCrowdedDashesAsSolidLines)
{
    // Lines of three dashes, each of which crosses the four rows.
    const auto drawLines = [](std::size_t count) {
        return drawWide("8 w [1 1] 0 d " + repeated("1 2 m 7 2 l ", count) + "S");
    };
    for (const std::size_t count : {1, 1200})
        EXPECT_COVERAGE(drawLines(count), repeated(".#.#.#..", 4));
    EXPECT_COVERAGE(drawLines(1300), repeated(".######.", 4));
}

TEST(PDFGraphicsState, ScalesPensWithTheTransform)
{
    EXPECT_COVERAGE(drawWide("2 0 0 2 0 0 cm 1 w [1 1] 0 d 0 1 m 4 1 l S"),
        "........"
        "##..##.."
        "##..##.."
        "........");
    // Twice as wide as high: dashes are 2 pixels long, the line is 1 pixel high.
    EXPECT_COVERAGE(drawWide("2 0 0 1 0 0 cm 1 w [1 1] 0 d 0 1.5 m 4 1.5 l S"),
        "........"
        "........"
        "##..##.."
        "........");
    EXPECT_COVERAGE(drawWide("2 0 0 1 0 0 cm 1 w 1.5 0 m 1.5 4 l S"),
        "..##...."
        "..##...."
        "..##...."
        "..##....");
}

TEST(PDFExtendedState, SetsLineParameters)
{
    const std::string line = "/A gs 1 4 m 1 1 l 8 1 l S";
    EXPECT_EQ(drawWide(line, "/ExtGState << /A << /LW 2 /LJ 0 /ML 2 >> >>").alpha(0, 3), 255);
    EXPECT_NEAR(drawWide(line, "/ExtGState << /A << /LW 2 /LJ 2 >> >>").alpha(0, 3), 128, kBevelTolerance);
    EXPECT_NEAR(
        drawWide(line, "/ExtGState << /A << /LW 2 /LJ 0 /ML 1 >> >>").alpha(0, 3), 128, kBevelTolerance);
    EXPECT_COVERAGE(drawWide("/A gs 2 2 m 6 2 l S", "/ExtGState << /A << /LW 2 /LC 2 /D [[3 3] 0] >> >>"),
        "........"
        ".#####.."
        ".#####.."
        "........");
    EXPECT_COVERAGE(drawWide("/A gs 0 2 m 8 2 l S", "/ExtGState << /A << /LW 2 /D [[2 1] 1] >> >>"),
        "........"
        "#.##.##."
        "#.##.##."
        "........");
}

TEST(PDFExtendedState, SetsAlphaOfFillsAndStrokesApart)
{
    const auto canvas =
        drawWide("/A gs 0 0 2 4 re f 2 w 5 0 m 5 4 l S", "/ExtGState << /A << /ca 0.5 /CA 0.25 >> >>");
    EXPECT_EQ(canvas.alpha(0, 0), 128);
    EXPECT_EQ(canvas.alpha(4, 0), 64);
}

TEST(PDFExtendedState, ClampsAlpha)
{
    const auto canvas =
        drawWide("/A gs 0 0 2 4 re f 2 w 5 0 m 5 4 l S", "/ExtGState << /A << /ca 7 /CA -1 >> >>");
    EXPECT_EQ(canvas.alpha(0, 0), 255);
    EXPECT_EQ(canvas.alpha(4, 0), 0);
}

TEST(PDFExtendedState, SetsBlendModes)
{
    const std::string content = "1 0.5 0 rg 0 0 8 4 re f /A gs 0.5 1 1 rg 0 0 8 4 re f";
    EXPECT_EQ(
        drawWide(content, "/ExtGState << /A << /BM /Multiply >> >>").pixel(0, 0), rgba(128, 128, 0, 255));
    EXPECT_EQ(
        drawWide(content, "/ExtGState << /A << /BM /Screen >> >>").pixel(0, 0), rgba(255, 255, 255, 255));
    EXPECT_EQ(
        drawWide(content, "/ExtGState << /A << /BM /Normal >> >>").pixel(0, 0), rgba(128, 255, 255, 255));
    EXPECT_EQ(drawWide(content, "/ExtGState << /A << /BM [/Odd /Multiply] >> >>").pixel(0, 0),
        rgba(128, 128, 0, 255));
}

TEST(PDFExtendedState, EndsWithItsState)
{
    EXPECT_EQ(drawWide("q /A gs Q 0 0 8 4 re f", "/ExtGState << /A << /ca 0.5 >> >>").alpha(0, 0), 255);
}

} // namespace
