#include "Foundation/testing/NSLogCapture.h"
#include "support/PDFPages.h"

#include <gtest/gtest.h>

namespace {

/// A tiling of cells of 4 × 4 points, unless `entries` say otherwise.
PDFObjectText tiling(
    const std::string& cell, const std::string& entries = "/BBox [0 0 4 4] /XStep 4 /YStep 4")
{
    return pdfStream("/PatternType 1 /PaintType 1 /TilingType 1 /Resources << >> " + entries, cell);
}

const std::string kResources = "/Pattern << /P 10 0 R >> /ColorSpace << /CS [/Pattern /DeviceRGB] >>";

RetainPtr<CGPDFDocument> tiledPage(
    const PDFObjectText& pattern, const std::string& operators = "/Pattern cs /P scn 0 0 16 16 re f")
{
    return makePDF(operators, kResources, "/MediaBox [0 0 16 16]", {pattern});
}

Canvas fillWith(
    const PDFObjectText& pattern, const std::string& operators = "/Pattern cs /P scn 0 0 16 16 re f")
{
    return drawPage(tiledPage(pattern, operators), 1, 16, 16);
}

/// A picture of rows of 16 pixels that repeats every four rows.
std::string fourTimes(const std::string& rows)
{
    return rows + rows + rows + rows;
}

TEST(PDFTiling, RepeatsItsCell)
{
    EXPECT_COVERAGE(fillWith(tiling("0 0 1 2 re f")),
        fourTimes("................"
                  "................"
                  "#...#...#...#..."
                  "#...#...#...#..."));
}

TEST(PDFTiling, HasColorsOfItsOwn)
{
    const auto canvas = fillWith(tiling("1 0 0 rg 0 0 2 4 re f 0 0 1 rg 2 0 2 4 re f"));
    EXPECT_EQ(canvas.pixel(4, 8), rgba(255, 0, 0, 255));
    EXPECT_EQ(canvas.pixel(7, 8), rgba(0, 0, 255, 255));
}

TEST(PDFTiling, IsPaintedInTheColorThatIsSetWithIt)
{
    const auto pattern = pdfStream(
        "/PatternType 1 /PaintType 2 /TilingType 1 /BBox [0 0 4 4] /XStep 4 /YStep 4 /Resources << >>",
        "1 0 0 rg 0 0 2 4 re f 1 0 0 RG 3 0 m 3 4 l S");
    const auto canvas =
        fillWith(pattern, "/CS cs 0.2 0.4 0.6 /P scn 0 8 16 8 re f 0 1 0 /P scn 0 0 16 8 re f");
    EXPECT_EQ(canvas.pixel(4, 2), rgba(51, 102, 153, 255));
    EXPECT_EQ(canvas.pixel(4, 12), rgba(0, 255, 0, 255));
    EXPECT_EQ(canvas.pixel(7, 12).bytes[0], 0);
}

TEST(PDFTiling, StepsByOtherLengthsThanItsCell)
{
    EXPECT_COVERAGE(fillWith(tiling("0 0 9 9 re f", "/BBox [0 0 2 1] /XStep 4 /YStep 2")),
        fourTimes("................"
                  "##..##..##..##.."
                  "................"
                  "##..##..##..##.."));
    // Cells that overlap: the rectangle reaches into the next one.
    EXPECT_COVERAGE(fillWith(tiling("3 0 2 1 re f", "/BBox [0 0 8 4] /XStep 4 /YStep -4")),
        fourTimes("................"
                  "................"
                  "................"
                  "#..##..##..##..#"));
}

TEST(PDFTiling, IsClippedToItsCell)
{
    EXPECT_COVERAGE(fillWith(tiling("-9 -9 30 30 re f", "/BBox [1 1 3 4] /XStep 4 /YStep 4")),
        fourTimes(".##..##..##..##."
                  ".##..##..##..##."
                  ".##..##..##..##."
                  "................"));
}

TEST(PDFTiling, IsPlacedFromTheStartOfItsContentStream)
{
    const auto pattern = tiling("0 0 1 1 re f");
    const std::string row = "#...#...#...#...";
    const std::string empty = "................";
    // The CTM moves what is painted, not the pattern.
    EXPECT_COVERAGE(fillWith(pattern, "1 0 0 1 2 2 cm /Pattern cs /P scn -2 -2 16 16 re f"),
        fourTimes(empty + empty + empty + row));
    EXPECT_COVERAGE(
        fillWith(tiling("0 0 1 1 re f", "/BBox [0 0 4 4] /XStep 4 /YStep 4 /Matrix [1 0 0 1 1 2]")),
        fourTimes(empty + ".#...#...#...#.." + empty + empty));
    // Turned by 90 degrees: x runs upward.
    EXPECT_COVERAGE(
        fillWith(tiling("0 0 2 1 re f", "/BBox [0 0 4 4] /XStep 4 /YStep 4 /Matrix [0 1 -1 0 0 0]")),
        fourTimes(empty + empty + "...#...#...#...#" + "...#...#...#...#"));
}

TEST(PDFTiling, HasNoSeamsAtAnyScaleAndAngle)
{
    const struct {
        const char* name;
        const char* entries;
        double scale;
    } cases[] = {
        {"whole", "/BBox [0 0 4 4] /XStep 4 /YStep 4", 1},
        {"twice", "/BBox [0 0 4 4] /XStep 4 /YStep 4", 2},
        {"fractional scale", "/BBox [0 0 4 4] /XStep 4 /YStep 4", 1.37},
        {"fractional step", "/BBox [0 0 3.3 2.7] /XStep 3.3 /YStep 2.7", 1},
        {"fractional position", "/BBox [0 0 4 4] /XStep 4 /YStep 4 /Matrix [1 0 0 1 0.3 0.6]", 1},
        {"below a pixel", "/BBox [0 0 0.3 0.3] /XStep 0.3 /YStep 0.3", 1},
        {"turned", "/BBox [0 0 4 4] /XStep 4 /YStep 4 /Matrix [0.8 0.6 -0.6 0.8 0.3 0]", 1.37},
        {"slanted", "/BBox [0 0 4 4] /XStep 4 /YStep 4 /Matrix [1 0 0.3 -1 0 0]", 1},
        {"large", "/BBox [0 0 9.3 9.3] /XStep 9.3 /YStep 9.3", 60},
        {"too large for a bitmap", "/BBox [0 0 2.03 200] /XStep 2.03 /YStep 200", 60},
    };
    for (const auto& [name, entries, scale] : cases) {
        SCOPED_TRACE(name);
        const auto canvas = drawPage(tiledPage(tiling("0 0 1 rg 0 0 16 16 re f", entries)), 1, 16, 16, scale);
        for (int row = 0; row + 1 < canvas.height(); ++row) {
            for (int column = 0; column + 1 < canvas.width(); ++column)
                ASSERT_EQ(canvas.pixel(column, row + 1), rgba(0, 0, 255, 255)) << column << ", " << row;
        }
    }
}

TEST(PDFTiling, CoversPixelsInProportion)
{
    // Halves of cells of 2.5 points: on average half of all pixels, whatever part of each.
    const auto canvas = fillWith(tiling("0 0 1.25 2.5 re f", "/BBox [0 0 2.5 2.5] /XStep 2.5 /YStep 2.5"));
    int sum = 0;
    for (int column = 0; column < 15; ++column)
        sum += canvas.alpha(column, 8);
    EXPECT_NEAR(sum / 15.0, 128, 2);
    EXPECT_EQ(canvas.alpha(0, 8), 255);
    EXPECT_NEAR(canvas.alpha(1, 8), 64, 16); // a quarter, from four samples
    EXPECT_NEAR(canvas.alpha(2, 8), 128, 16);
}

TEST(PDFTiling, IsOneObjectForItsAlphaAndBlendMode)
{
    const auto canvas =
        drawPage(makePDF("/Half gs /Pattern cs /P scn 0 0 16 16 re f",
                     kResources + " /ExtGState << /Half << /ca 0.5 >> >>", "/MediaBox [0 0 16 16]",
                     {tiling("1 0 0 rg 0 0 4 4 re f 0 1 0 rg 0 0 4 4 re f")}),
            1, 16, 16);
    EXPECT_EQ(canvas.pixel(8, 8), rgba(0, 128, 0, 128));
}

TEST(PDFTiling, PaintsStrokes)
{
    const auto canvas = fillWith(tiling("0 0 1 rg 0 0 4 4 re f"), "/Pattern CS /P SCN 4 w 0 8 m 16 8 l S");
    EXPECT_EQ(canvas.alpha(8, 5), 0);
    EXPECT_EQ(canvas.pixel(8, 6), rgba(0, 0, 255, 255));
    EXPECT_EQ(canvas.pixel(8, 9), rgba(0, 0, 255, 255));
    EXPECT_EQ(canvas.alpha(8, 10), 0);
}

TEST(PDFTiling, IsNotDrawnWhereItIsInvalidOrContainsItself)
{
    const auto messageOf = [](const PDFObjectText& pattern) {
        const NSLogCapture log;
        EXPECT_EQ(fillWith(pattern).alpha(8, 8), 0);
        return log.messages().size() == 1 ? log.messages()[0] : "";
    };
    const std::string invalid = "a pattern is invalid, and paints nothing";
    EXPECT_TRUE(messageOf(tiling("0 0 4 4 re f", "/BBox [0 0 4 4] /XStep 0 /YStep 4")).ends_with(invalid));
    EXPECT_TRUE(messageOf(tiling("0 0 4 4 re f", "/BBox [0 0 4 4] /XStep 4")).ends_with(invalid));
    EXPECT_TRUE(messageOf(tiling("0 0 4 4 re f", "/BBox [0 0 0 4] /XStep 4 /YStep 4")).ends_with(invalid));
    EXPECT_TRUE(messageOf(tiling("0 0 4 4 re f", "/XStep 4 /YStep 4")).ends_with(invalid));
    EXPECT_TRUE(messageOf("<< /PatternType 1 /BBox [0 0 4 4] /XStep 4 /YStep 4 >>").ends_with(invalid));
    EXPECT_TRUE(messageOf("<< /PatternType 7 >>").ends_with(invalid));
    EXPECT_TRUE(messageOf("null").ends_with(invalid));
    EXPECT_TRUE(messageOf(pdfStream("/PatternType 1 /PaintType 1 /BBox [0 0 4 4] /XStep 4 /YStep 4"
                                    " /Resources << /Pattern << /P 10 0 R >> >>",
                              "/Pattern cs /P scn 0 0 4 4 re f"))
                    .ends_with("a pattern that contains itself is not drawn"));
}

TEST(PDFTiling, StopsWhereItTakesTooLong)
{
    const auto messageOf = [](const PDFObjectText& pattern) {
        const NSLogCapture log;
        fillWith(pattern);
        return log.messages().size() == 1 ? log.messages()[0] : "";
    };
    const std::string tooLong = "the rest of the page is left out: it takes too long to draw";
    // A billion cells overlap each point.
    EXPECT_TRUE(messageOf(tiling("0 0 4 4 re f", "/BBox [0 0 1000000 1000000] /XStep 1 /YStep 1"))
                    .ends_with(tooLong));
    EXPECT_TRUE(messageOf(tiling("0 0 4 4 re f", "/BBox [0 0 4 4] /XStep 0.0000001 /YStep 0.0000001"))
                    .ends_with(tooLong));
}

} // namespace
