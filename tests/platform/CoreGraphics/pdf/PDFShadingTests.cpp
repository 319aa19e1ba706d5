#include "Foundation/testing/NSLogCapture.h"
#include "support/PDFPages.h"

#include <gtest/gtest.h>

namespace {

/// Paints the page of 16 × 16 points with a shading: the first of the objects unless `shading` is one itself.
Canvas shade(const std::string& shading, const std::vector<PDFObjectText>& objects = {})
{
    return drawContent("/S sh", "/Shading << /S " + shading + " >>", objects);
}

/// The same as a pattern that fills the page.
Canvas fillWithShading(const std::string& shading, const std::string& patternEntries = "",
    const std::string& operators = "", const std::vector<PDFObjectText>& objects = {})
{
    return drawContent(operators + " /Pattern cs /P scn 0 0 16 16 re f",
        "/Pattern << /P << /PatternType 2 /Shading " + shading + patternEntries + " >> >>", objects);
}

bool isNotDrawn(const std::string& shading, const std::vector<PDFObjectText>& objects = {})
{
    const NSLogCapture log;
    const auto canvas = shade(shading, objects);
    return canvas.alpha(8, 8) == 0 && log.messages().size() == 1
        && log.messages()[0].ends_with("a shading is invalid, and not drawn");
}

/// From red to blue.
const std::string kRedToBlue = "<< /FunctionType 2 /Domain [0 1] /C0 [1 0 0] /C1 [0 0 1] /N 1 >>";

std::string axial(const std::string& entries, const std::string& function = kRedToBlue)
{
    return "<< /ShadingType 2 /ColorSpace /DeviceRGB /Function " + function + " " + entries + " >>";
}

std::string radial(const std::string& entries, const std::string& function = kRedToBlue)
{
    return "<< /ShadingType 3 /ColorSpace /DeviceRGB /Function " + function + " " + entries + " >>";
}

/// Gradients take their colours from a table.
constexpr int kGradientTolerance = 1;

void expectNear(const CanvasPixel& actual, const CanvasPixel& expected, int tolerance = kGradientTolerance)
{
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_NEAR(actual.bytes[i], expected.bytes[i], tolerance) << actual << " is not " << expected;
}

TEST(PDFShadingAxial, RunsFromItsStartToItsEnd)
{
    const auto canvas = shade(axial("/Coords [4 0 12 0]"));
    EXPECT_COVERAGE(
        drawContent("0 15 16 1 re W n /S sh", "/Shading << /S " + axial("/Coords [4 0 12 0]") + " >>"),
        "....########...." + std::string(15 * 16, '.'));
    for (int x = 4; x < 12; ++x) {
        const int blue = int((x - 4 + 0.5) / 8 * 255 + 0.5);
        expectNear(canvas.pixel(x, 8), rgba(255 - blue, 0, blue, 255));
    }
}

TEST(PDFShadingAxial, ExtendsOnRequest)
{
    const auto before = shade(axial("/Coords [4 0 12 0] /Extend [true false]"));
    EXPECT_EQ(before.pixel(1, 8), rgba(255, 0, 0, 255));
    EXPECT_EQ(before.pixel(14, 8), rgba(0, 0, 0, 0));
    const auto after = shade(axial("/Coords [4 0 12 0] /Extend [false true]"));
    EXPECT_EQ(after.pixel(1, 8), rgba(0, 0, 0, 0));
    EXPECT_EQ(after.pixel(14, 8), rgba(0, 0, 255, 255));
}

TEST(PDFShadingAxial, HasExactStopsWhereAFunctionJumps)
{
    const std::string function =
        "<< /FunctionType 3 /Domain [0 1] /Bounds [0.5] /Encode [0 1 0 1] /Functions ["
        "<< /FunctionType 2 /Domain [0 1] /C0 [1 0 0] /C1 [1 0 0] /N 1 >>"
        "<< /FunctionType 2 /Domain [0 1] /C0 [0 1 0] /C1 [0 0 1] /N 1 >>] >>";
    const auto canvas = shade(axial("/Coords [0 0 16 0]", function));
    EXPECT_EQ(canvas.pixel(0, 8), rgba(255, 0, 0, 255));
    EXPECT_EQ(canvas.pixel(7, 8), rgba(255, 0, 0, 255));
    expectNear(canvas.pixel(8, 8), rgba(0, 239, 16, 255)); // a sixteenth of the way
    expectNear(canvas.pixel(15, 8), rgba(0, 16, 239, 255));
}

TEST(PDFShadingAxial, FollowsCurvedFunctionsAndSpaces)
{
    const std::string square = "<< /FunctionType 2 /Domain [0 1] /C0 [0 0 0] /C1 [1 1 1] /N 2 >>";
    expectNear(shade(axial("/Coords [0 0 16 0]", square)).pixel(8, 8), rgba(72, 72, 72, 255)); // 0.53 squared
    // From cyan to yellow over both inks in part, as in a fill.
    const std::string inks = "<< /FunctionType 2 /Domain [0 1] /C0 [1 0 0 0] /C1 [0 0 1 0] /N 1 >>";
    const auto canvas =
        shade("<< /ShadingType 2 /ColorSpace /DeviceCMYK /Coords [0 0 16 0] /Function " + inks + " >>");
    expectNear(canvas.pixel(7, 8), drawContent("0.53125 0 0.46875 0 k 0 0 16 16 re f").pixel(8, 8));
}

TEST(PDFShadingAxial, MapsItsDomain)
{
    const std::string function = "<< /FunctionType 2 /Domain [0 4] /C0 [0 0 0] /C1 [0.25 0 0] /N 1 >>";
    const auto canvas = shade(axial("/Coords [0 0 16 0] /Domain [2 4]", function));
    expectNear(canvas.pixel(0, 8), rgba(131, 0, 0, 255)); // 2 + 2/32, a quarter each
    expectNear(canvas.pixel(15, 8), rgba(252, 0, 0, 255));
}

TEST(PDFShadingAxial, TakesAFunctionForEachComponent)
{
    const std::string up = "<< /FunctionType 2 /Domain [0 1] /N 1 >>";
    const std::string down = "<< /FunctionType 2 /Domain [0 1] /C0 [1] /C1 [0] /N 1 >>";
    const auto canvas = shade(axial("/Coords [0 0 0 16]", "[" + up + down + up + "]"));
    expectNear(canvas.pixel(8, 15), rgba(8, 247, 8, 255)); // the lowest row
    expectNear(canvas.pixel(8, 0), rgba(247, 8, 247, 255));
}

TEST(PDFShadingAxial, PaintsNothingWithoutLength)
{
    EXPECT_EQ(shade(axial("/Coords [8 8 8 8] /Extend [true true]")).pixel(8, 8), rgba(0, 0, 0, 0));
}

TEST(PDFShadingRadial, RunsFromCircleToCircle)
{
    const auto canvas = shade(radial("/Coords [8 8 0 8 8 8]"));
    expectNear(canvas.pixel(8, 8), rgba(232, 0, 23, 255));   // 0.71 of 8 from the centre
    expectNear(canvas.pixel(12, 7), rgba(111, 0, 144, 255)); // 4.53 of 8
    EXPECT_EQ(canvas.pixel(0, 0), rgba(0, 0, 0, 0));
    const auto extended = shade(radial("/Coords [8 8 2 8 8 4] /Extend [true true]"));
    EXPECT_EQ(extended.pixel(8, 8), rgba(255, 0, 0, 255));
    EXPECT_EQ(extended.pixel(0, 0), rgba(0, 0, 255, 255));
}

TEST(PDFShadingRadial, PaintsNothingForEqualCirclesOrNegativeRadii)
{
    EXPECT_EQ(shade(radial("/Coords [8 8 4 8 8 4] /Extend [true true]")).pixel(8, 8), rgba(0, 0, 0, 0));
    EXPECT_TRUE(isNotDrawn(radial("/Coords [8 8 -1 8 8 8] /Extend [true true]")));
    EXPECT_TRUE(isNotDrawn(radial("/Coords [8 8 0 8 8 -8] /Extend [true true]")));
    EXPECT_TRUE(isNotDrawn(radial("/Coords [8 8 0 8 8]")));
}

/// A shading of type 1 by a program.
std::vector<PDFObjectText> functionShading(
    const std::string& entries, const std::string& program, const std::string& domain = "0 1 0 1")
{
    return {"<< /ShadingType 1 /ColorSpace /DeviceRGB /Function 11 0 R " + entries + " >>",
        pdfStream("/FunctionType 4 /Domain [" + domain + "] /Range [0 1 0 1 0 1]", program)};
}

TEST(PDFShadingFunction, IsComputedForTheCentreOfEachPixel)
{
    const auto canvas = shade("10 0 R", functionShading("/Matrix [16 0 0 16 0 0]", "{0.2}"));
    for (int i = 0; i < 16; ++i) {
        const int value = int((i + 0.5) / 16 * 255 + 0.5);
        EXPECT_EQ(canvas.pixel(i, 15), rgba(value, 8, 51, 255));
        EXPECT_EQ(canvas.pixel(0, 15 - i), rgba(8, value, 51, 255));
    }
}

TEST(PDFShadingFunction, PaintsItsDomainOnly)
{
    const auto canvas = shade("10 0 R",
        functionShading("/Domain [2 4 0 2] /Matrix [0 4 -4 0 12 0]", "{2 div exch 4 div exch 1}", "0 4 0 4"));
    // x runs upward from 8 to 16, y to the left from 12 to 4.
    EXPECT_COVERAGE(canvas,
        "....########...."
        "....########...."
        "....########...."
        "....########...."
        "....########...."
        "....########...."
        "....########...."
        "....########...."
            + std::string(8 * 16, '.'));
    EXPECT_EQ(canvas.pixel(11, 7), rgba(135, 16, 255, 255)); // (2.125 / 4, 0.125 / 2)
    EXPECT_EQ(canvas.pixel(4, 0), rgba(247, 239, 255, 255));
}

TEST(PDFShadingFunction, IsInvalidWithoutFunctionOfTwoInputs)
{
    EXPECT_TRUE(isNotDrawn("<< /ShadingType 1 /ColorSpace /DeviceRGB >>"));
    EXPECT_TRUE(isNotDrawn("<< /ShadingType 1 /ColorSpace /DeviceRGB /Function " + kRedToBlue + " >>"));
    EXPECT_TRUE(isNotDrawn("10 0 R", functionShading("/Domain [1 0 0 1]", "{0.2}")));
}

TEST(PDFShading, ClipsToItsBox)
{
    EXPECT_COVERAGE(drawContent("0 14 16 2 re W n /S sh",
                        "/Shading << /S " + axial("/Coords [0 0 16 0] /BBox [3 0 9 15]") + " >>"),
        "................"
        "...######......."
            + std::string(14 * 16, '.'));
}

TEST(PDFShading, HasABackgroundInPatternsOnly)
{
    const std::string shading = axial("/Coords [4 0 12 0] /Background [0 1 0]");
    EXPECT_EQ(shade(shading).pixel(1, 8), rgba(0, 0, 0, 0));
    const auto canvas = fillWithShading(shading);
    EXPECT_EQ(canvas.pixel(1, 8), rgba(0, 255, 0, 255));
    expectNear(canvas.pixel(4, 8), rgba(239, 0, 16, 255));
    // Outside its box, too.
    const auto boxed = fillWithShading(axial("/Coords [4 0 12 0] /Background [0 1 0] /BBox [0 0 16 4]"));
    EXPECT_EQ(boxed.pixel(8, 2), rgba(0, 255, 0, 255));
    EXPECT_NE(boxed.pixel(8, 14), rgba(0, 255, 0, 255));
}

TEST(PDFShading, BlendsTogetherWithItsBackground)
{
    const std::string shading = axial("/Coords [0 0 16 0] /Background [0 1 0]",
        "<< /FunctionType 2 /Domain [0 1]"
        " /C0 [1 0 0] /C1 [1 0 0] /N 1 >>");
    const auto canvas = drawContent("/Half gs /Pattern cs /P scn 0 0 16 16 re f",
        "/ExtGState << /Half << /ca 0.5 >> >> /Pattern << /P << /PatternType 2 /Shading " + shading
            + " >> >>");
    EXPECT_EQ(canvas.pixel(8, 8), rgba(128, 0, 0, 128)); // no green shines through
}

TEST(PDFShadingPattern, IsPlacedFromTheStartOfItsContentStream)
{
    const std::string shading = axial("/Coords [0 0 8 0]");
    EXPECT_EQ(shade(shading).pixel(12, 8).bytes[3], 0);
    // The CTM moves what is painted, not the pattern.
    const auto moved = fillWithShading(shading, "", "1 0 0 1 4 0 cm");
    expectNear(moved.pixel(4, 8), rgba(112, 0, 143, 255));
    EXPECT_EQ(moved.pixel(8, 8).bytes[3], 0);
    const auto withMatrix = fillWithShading(shading, " /Matrix [2 0 0 1 0 0]", "1 0 0 1 4 0 cm");
    expectNear(withMatrix.pixel(8, 8), rgba(120, 0, 135, 255)); // 8.5 of 16
}

TEST(PDFShadingPattern, PaintsNothingThroughAMatrixWithoutInverse)
{
    const std::string shading = axial("/Coords [0 0 8 0] /Background [0 1 0]");
    EXPECT_EQ(fillWithShading(shading, " /Matrix [0 0 0 0 0 0]").alpha(8, 8), 0);
    EXPECT_EQ(fillWithShading(shading, " /Matrix [1 0 1 0 0 0]").alpha(8, 8), 0);
}

TEST(PDFShadingPattern, IsPlacedFromTheMatrixOfAForm)
{
    const auto form =
        pdfStream("/Type /XObject /Subtype /Form /BBox [0 0 16 16] /Matrix [1 0 0 1 8 0] /Resources <<"
                  " /Pattern << /P << /PatternType 2 /Shading "
                + axial("/Coords [0 0 8 0]") + " >> >> >>",
            "/Pattern cs /P scn 0 0 16 16 re f");
    const auto canvas = drawContent("/Form Do", "/XObject << /Form 10 0 R >>", {form});
    EXPECT_EQ(canvas.pixel(7, 8).bytes[3], 0);
    expectNear(canvas.pixel(8, 8), rgba(239, 0, 16, 255));
}

TEST(PDFShadingPattern, PaintsStrokes)
{
    const auto canvas = drawContent("/Pattern CS /P SCN 4 w 0 8 m 16 8 l S",
        "/Pattern << /P << /PatternType 2 /Shading " + axial("/Coords [0 0 16 0]") + " >> >>");
    EXPECT_EQ(canvas.alpha(8, 5), 0);
    EXPECT_EQ(canvas.alpha(8, 6), 255);
    EXPECT_EQ(canvas.alpha(8, 9), 255);
    EXPECT_EQ(canvas.alpha(8, 10), 0);
    expectNear(canvas.pixel(0, 8), rgba(247, 0, 8, 255));
    expectNear(canvas.pixel(15, 8), rgba(8, 0, 247, 255));
}

TEST(PDFShading, IsInvalidWithoutItsEntries)
{
    EXPECT_TRUE(isNotDrawn(
        "<< /ShadingType 9 /ColorSpace /DeviceRGB /Coords [0 0 16 0] /Function " + kRedToBlue + " >>"));
    EXPECT_TRUE(isNotDrawn(
        "<< /ShadingType 2 /ColorSpace /Pattern /Coords [0 0 16 0] /Function " + kRedToBlue + " >>"));
    EXPECT_TRUE(isNotDrawn("<< /ShadingType 2 /Coords [0 0 16 0] /Function " + kRedToBlue + " >>"));
    EXPECT_TRUE(isNotDrawn("<< /ShadingType 2 /ColorSpace /DeviceRGB /Coords [0 0 16 0] >>"));
    EXPECT_TRUE(isNotDrawn(axial("/Coords [0 0 16]")));
    EXPECT_TRUE(isNotDrawn(axial("/Coords [0 0 16 0]", "[" + kRedToBlue + " null]")));
    EXPECT_TRUE(isNotDrawn("null"));
}

TEST(PDFShading, StopsWhereItTakesTooLong)
{
    // 20,000 times a function of 20,000 steps for each pixel.
    std::string program = "{";
    for (int i = 0; i < 10'000; ++i)
        program += "dup pop ";
    std::string content;
    for (int i = 0; i < 20'000; ++i)
        content += "/S sh ";
    const NSLogCapture log;
    drawContent(
        content, "/Shading << /S 10 0 R >>", functionShading("/Matrix [16 0 0 16 0 0]", program + "0}"));
    ASSERT_EQ(log.messages().size(), 1u);
    EXPECT_TRUE(log.messages()[0].ends_with("the rest of the page is left out: it takes too long to draw"));
}

} // namespace
