#include "Foundation/testing/NSLogCapture.h"
#include "support/PDFPages.h"

#include <gtest/gtest.h>

namespace {

/// The colour that fills after operators that choose it; `space` is what /CS stands for.
CanvasPixel colorAfter(const std::string& operators, const std::string& space = "null",
    const std::vector<PDFObjectText>& objects = {})
{
    return drawContent(operators + " 0 0 16 16 re f", "/ColorSpace << /CS " + space + " >>", objects)
        .pixel(8, 8);
}

/// The colour of components in a space.
CanvasPixel colorIn(
    const std::string& space, const std::string& components, const std::vector<PDFObjectText>& objects = {})
{
    return colorAfter("/CS cs " + components + " scn", space, objects);
}

bool isInvalid(const std::string& space, const std::vector<PDFObjectText>& objects = {})
{
    const NSLogCapture log;
    colorAfter("/CS cs", space, objects);
    return !log.messages().empty()
        && log.messages().front().ends_with("a colour space is invalid; gray is used");
}

/// A function of one tint: white without ink, this colour in full.
std::string tintFunction(const std::string& color)
{
    return "<< /FunctionType 2 /Domain [0 1] /C0 [1 1 1] /C1 [" + color + "] /N 1 >>";
}

TEST(PDFColorSpaceDevice, HasItsComponents)
{
    EXPECT_EQ(colorAfter("0.2 g"), rgba(51, 51, 51, 255));
    EXPECT_EQ(colorAfter("/DeviceGray cs 0.2 sc"), rgba(51, 51, 51, 255));
    EXPECT_EQ(colorAfter("0.2 0.4 0.6 rg"), rgba(51, 102, 153, 255));
    EXPECT_EQ(colorAfter("/DeviceRGB cs 0.2 0.4 0.6 sc"), rgba(51, 102, 153, 255));
    EXPECT_EQ(colorAfter("/DeviceCMYK cs 1 0 0 0 sc"), colorAfter("1 0 0 0 k"));
    EXPECT_EQ(colorAfter("/CS cs 0.2 0.4 0.6 sc", "[/DeviceRGB]"), rgba(51, 102, 153, 255));
    EXPECT_EQ(colorAfter("/CS cs 0.2 0.4 0.6 sc", "/DeviceRGB"), rgba(51, 102, 153, 255));
}

TEST(PDFColorSpaceDevice, ClampsComponents)
{
    EXPECT_EQ(colorAfter("-1 g"), rgba(0, 0, 0, 255));
    EXPECT_EQ(colorAfter("7 g"), rgba(255, 255, 255, 255));
    EXPECT_EQ(colorAfter("-0.5 2 0.4 rg"), rgba(0, 255, 102, 255));
    EXPECT_EQ(colorAfter("-1 -1 -1 -1 k"), rgba(255, 255, 255, 255));
    EXPECT_EQ(colorAfter("9 9 9 9 k"), rgba(0, 0, 0, 255));
}

TEST(PDFColorSpaceDevice, IsBlackAtFirst)
{
    for (const char* space : {"/DeviceGray", "/DeviceRGB", "/CalGray", "/CalRGB"}) {
        SCOPED_TRACE(space);
        EXPECT_EQ(colorAfter("1 0 0 rg " + std::string(space) + " cs"), rgba(0, 0, 0, 255));
    }
}

TEST(PDFColorSpaceDevice, IsBlackInkAtFirst)
{
    EXPECT_EQ(colorAfter("1 0 0 rg /DeviceCMYK cs"), colorAfter("0 0 0 1 k"));
}

TEST(PDFColorSpaceCMYK, HasTheColorsOfPrintedInks)
{
    const struct {
        const char* inks;
        CanvasPixel color;
    } cases[] = {
        {"0 0 0 0", rgba(255, 255, 255, 255)},
        {"1 0 0 0", rgba(0, 159, 227, 255)},
        {"0 1 0 0", rgba(230, 0, 126, 255)},
        {"1 1 0 0", rgba(50, 40, 132, 255)},
        {"0 0 1 0", rgba(255, 237, 0, 255)},
        {"1 0 1 0", rgba(0, 150, 65, 255)},
        {"0 1 1 0", rgba(227, 9, 21, 255)},
        {"1 1 1 0", rgba(51, 51, 49, 255)},
        {"0 0 0 1", rgba(31, 30, 29, 255)},
        {"1 0 0 1", rgba(0, 16, 32, 255)},
        {"0 1 0 1", rgba(39, 0, 4, 255)},
        {"1 1 0 1", rgba(8, 0, 14, 255)},
        {"0 0 1 1", rgba(30, 31, 0, 255)},
        {"1 0 1 1", rgba(0, 22, 0, 255)},
        {"0 1 1 1", rgba(36, 1, 0, 255)},
        {"1 1 1 1", rgba(0, 0, 0, 255)},
    };
    for (const auto& [inks, color] : cases) {
        SCOPED_TRACE(inks);
        EXPECT_EQ(colorAfter(std::string(inks) + " k"), color);
    }
}

TEST(PDFColorSpaceCMYK, IsLinearInEachInk)
{
    EXPECT_EQ(colorAfter("0 0 0 0.8 k"), rgba(76, 75, 74, 255)); // a fifth of 255, the rest of 31, 30, 29
    EXPECT_EQ(colorAfter("0.2 0 0 0 k"), rgba(204, 236, 249, 255));
    // Half of cyan and magenta: the mean of paper, cyan, magenta and both.
    EXPECT_EQ(colorAfter("0.5 0.5 0 0 k"), rgba(134, 114, 185, 255));
}

TEST(PDFColorSpaceCalibrated, IsDrawnLikeTheDevices)
{
    EXPECT_EQ(
        colorIn("[/CalGray << /WhitePoint [0.9505 1 1.089] /Gamma 2.2 >>]", "0.2"), rgba(51, 51, 51, 255));
    EXPECT_EQ(colorIn("[/CalRGB << /WhitePoint [0.9505 1 1.089] /Gamma [2 2 2] >>]", "0.2 0.4 0.6"),
        rgba(51, 102, 153, 255));
}

TEST(PDFColorSpaceICC, IsTheDeviceSpaceOfItsSize)
{
    const auto profile = [](int size) { return pdfStream("/N " + std::to_string(size), "not read"); };
    EXPECT_EQ(colorIn("[/ICCBased 10 0 R]", "0.2", {profile(1)}), rgba(51, 51, 51, 255));
    EXPECT_EQ(colorIn("[/ICCBased 10 0 R]", "0.2 0.4 0.6", {profile(3)}), rgba(51, 102, 153, 255));
    EXPECT_EQ(colorIn("[/ICCBased 10 0 R]", "1 0 0 0", {profile(4)}), rgba(0, 159, 227, 255));
    // No ink at first, other than DeviceCMYK.
    EXPECT_EQ(colorAfter("/CS cs", "[/ICCBased 10 0 R]", {profile(4)}), rgba(255, 255, 255, 255));
    EXPECT_EQ(colorAfter("1 0 0 rg /CS cs", "[/ICCBased 10 0 R]", {profile(3)}), rgba(0, 0, 0, 255));
}

TEST(PDFColorSpaceICC, IsItsAlternateWithoutAKnownSize)
{
    EXPECT_EQ(colorIn("[/ICCBased 10 0 R]", "0.2 0.4 0.6", {pdfStream("/N 7 /Alternate /DeviceRGB", "")}),
        rgba(51, 102, 153, 255));
    EXPECT_TRUE(isInvalid("[/ICCBased 10 0 R]", {pdfStream("/N 7", "")}));
    EXPECT_TRUE(isInvalid("[/ICCBased 10 0 R]", {pdfStream("/Alternate [/ICCBased 10 0 R]", "")}));
    EXPECT_TRUE(isInvalid("[/ICCBased 10 0 R]", {pdfStream("/N 7 /Alternate /Pattern", "")}));
}

TEST(PDFColorSpaceLab, HasKnownColors)
{
    const std::string lab = "[/Lab << /WhitePoint [0.9642 1 0.8249] /Range [-128 127 -128 127] >>]";
    EXPECT_EQ(colorIn(lab, "100 0 0"), rgba(255, 255, 255, 255));
    EXPECT_EQ(colorIn(lab, "0 0 0"), rgba(0, 0, 0, 255));
    EXPECT_EQ(colorIn(lab, "53.585 0 0"), rgba(128, 128, 128, 255)); // L* of the sRGB gray 128
    EXPECT_EQ(colorIn(lab, "2 0 0"), rgba(7, 7, 7, 255));            // on the line near black: Y is 2 / 903.3
    // The primaries of sRGB, which Lab with the same white lists as these.
    EXPECT_EQ(colorIn(lab, "53.2408 80.0925 67.2032"), rgba(255, 0, 0, 255));
    EXPECT_EQ(colorIn(lab, "87.7347 -86.1827 83.1793"), rgba(0, 255, 0, 255));
    EXPECT_EQ(colorIn(lab, "32.2970 79.1875 -107.8602"), rgba(0, 0, 255, 255));
}

TEST(PDFColorSpaceLab, ClampsToItsRange)
{
    const std::string narrow = "[/Lab << /Range [-10 20 10 30] >>]";
    EXPECT_EQ(colorIn(narrow, "50 90 90"), colorIn(narrow, "50 20 30"));
    EXPECT_EQ(colorIn(narrow, "50 -90 -90"), colorIn(narrow, "50 -10 10"));
    EXPECT_EQ(colorIn(narrow, "150 0 10"), colorIn(narrow, "100 0 10"));
    EXPECT_NE(colorIn(narrow, "50 20 30"), colorIn(narrow, "50 -10 10"));
    EXPECT_EQ(colorAfter("/CS cs", narrow), colorIn(narrow, "0 0 10"));
    const std::string wide = "[/Lab << >>]"; // -100 to 100
    EXPECT_EQ(colorIn(wide, "50 120 0"), colorIn(wide, "50 100 0"));
    EXPECT_EQ(colorIn(wide, "50 0 -120"), colorIn(wide, "50 0 -100"));
    EXPECT_NE(colorIn(wide, "50 90 0"), colorIn(wide, "50 100 0"));
}

TEST(PDFColorSpaceIndexed, LooksColorsUp)
{
    const std::string table = "[/Indexed /DeviceRGB 2 <FF0000 00FF00 336699>]";
    EXPECT_EQ(colorIn(table, "0"), rgba(255, 0, 0, 255));
    EXPECT_EQ(colorIn(table, "1"), rgba(0, 255, 0, 255));
    EXPECT_EQ(colorIn(table, "2"), rgba(51, 102, 153, 255));
    EXPECT_EQ(colorIn(table, "1.6"), rgba(51, 102, 153, 255)); // the nearest
    EXPECT_EQ(colorIn(table, "-3"), rgba(255, 0, 0, 255));
    EXPECT_EQ(colorIn(table, "9"), rgba(51, 102, 153, 255));
    EXPECT_EQ(colorAfter("/CS cs", table), rgba(255, 0, 0, 255));
    EXPECT_EQ(
        colorIn("[/Indexed /DeviceGray 1 10 0 R]", "1", {pdfStream("", "\x11\x22")}), rgba(34, 34, 34, 255));
}

TEST(PDFColorSpaceIndexed, ReadsBytesInTheRangeOfItsBase)
{
    // 128 of 255 is 50.2 of 100, and 0.4 of -100 to 100.
    const std::string lab = "[/Lab << /Range [-100 100 -100 100] >>]";
    EXPECT_EQ(colorIn("[/Indexed " + lab + " 0 <807F80>]", "0"), colorIn(lab, "50.196 -0.392 0.392"));
    EXPECT_EQ(colorIn("[/Indexed [/Indexed /DeviceGray 1 <1122>] 0 <01>]", "0"), rgba(34, 34, 34, 255));
}

TEST(PDFColorSpaceIndexed, HasZerosForMissingBytes)
{
    const std::string table = "[/Indexed /DeviceRGB 255 <FF00003366>]";
    EXPECT_EQ(colorIn(table, "0"), rgba(255, 0, 0, 255));
    EXPECT_EQ(colorIn(table, "1"), rgba(51, 102, 0, 255));
    EXPECT_EQ(colorIn(table, "255"), rgba(0, 0, 0, 255));
    EXPECT_EQ(colorIn("[/Indexed /DeviceRGB 999999999 <336699>]", "0"), rgba(51, 102, 153, 255));
    EXPECT_EQ(colorIn("[/Indexed /DeviceRGB -5 <336699>]", "7"), rgba(51, 102, 153, 255));
    EXPECT_EQ(colorIn("[/Indexed /DeviceRGB 1]", "1"), rgba(0, 0, 0, 255));
}

TEST(PDFColorSpaceSeparation, IsApproximatedByItsTint)
{
    const std::string spot = "[/Separation /Spot /DeviceRGB " + tintFunction("0.2 0.4 0") + "]";
    EXPECT_EQ(colorIn(spot, "1"), rgba(51, 102, 0, 255));
    EXPECT_EQ(colorIn(spot, "0.25"), rgba(204, 217, 191, 255));
    EXPECT_EQ(colorAfter("/CS cs", spot), rgba(51, 102, 0, 255)); // full ink at first
    // A tint of three results in a space of four, the last of which is missing.
    EXPECT_EQ(colorIn("[/Separation /Spot /DeviceCMYK " + tintFunction("0 1 0") + "]", "1"),
        rgba(230, 0, 126, 255));
}

TEST(PDFColorSpaceSeparation, PaintsNothingWithoutInk)
{
    const std::string none = "[/Separation /None /DeviceRGB " + tintFunction("1 0 0") + "]";
    EXPECT_EQ(colorIn(none, "1"), rgba(0, 0, 0, 0));
    const std::string all = "[/Separation /All /DeviceRGB " + tintFunction("0 0 0") + "]";
    EXPECT_EQ(colorIn(all, "1"), rgba(0, 0, 0, 255));
}

TEST(PDFColorSpaceDeviceN, MixesItsInks)
{
    const auto mix = pdfStream("/FunctionType 4 /Domain [0 1 0 1] /Range [0 1 0 1 0 1]", "{1}");
    EXPECT_EQ(colorIn("[/DeviceN [/A /B] /DeviceRGB 10 0 R]", "0.2 0.4", {mix}), rgba(51, 102, 255, 255));
    EXPECT_EQ(colorAfter("/CS cs", "[/DeviceN [/A /B] /DeviceRGB 10 0 R]", {mix}), rgba(255, 255, 255, 255));
    EXPECT_EQ(colorIn("[/DeviceN [/None /B] /DeviceRGB 10 0 R]", "0.2 0.4", {mix}), rgba(51, 102, 255, 255));
    EXPECT_EQ(colorIn("[/DeviceN [/None /None] /DeviceRGB 10 0 R]", "0.2 0.4", {mix}), rgba(0, 0, 0, 0));
    EXPECT_TRUE(isInvalid("[/DeviceN [/A /B /C] /DeviceRGB 10 0 R]", {mix})); // three inks, two inputs
    EXPECT_TRUE(isInvalid("[/DeviceN [] /DeviceRGB 10 0 R]", {mix}));
}

TEST(PDFColorSpace, IgnoresColorsWithTooFewComponents)
{
    EXPECT_EQ(colorAfter("/DeviceRGB cs 0.2 0.4 0.6 sc 1 1 sc"), rgba(51, 102, 153, 255));
    // Of too many, the first count.
    EXPECT_EQ(colorAfter("/DeviceRGB cs 0.2 0.4 0.6 1 1 sc"), rgba(51, 102, 153, 255));
}

TEST(PDFColorSpace, IsGrayWhereItIsInvalid)
{
    for (const char* space :
        {"null", "/NoSuchSpace", "/CS", "[]", "[/NoSuchFamily 1]", "42", "[[[[[[[[[[[/DeviceRGB]]]]]]]]]]]",
            "[/Indexed /Pattern 1 <00>]", "[/Indexed /NoSuchSpace 1 <00>]", "[/Separation /Spot /DeviceRGB]",
            "[/Separation /Spot /Pattern << /FunctionType 2 /Domain [0 1] /N 1 >>]", "10 0 R"}) {
        SCOPED_TRACE(space);
        EXPECT_TRUE(isInvalid(space, {"[/Indexed 10 0 R 1 <00>]"}));
    }
}

TEST(PDFColorSpace, IsRecordedWithinLimits)
{
    // A program of 50,000 steps for each of 100,000 colours.
    std::string program = "{";
    for (int i = 0; i < 24'999; ++i)
        program += "dup pop ";
    const auto tint = pdfStream("/FunctionType 4 /Domain [0 1] /Range [0 1]", program + "}");
    std::string content = "/DeviceGray cs /CS cs ";
    for (int i = 0; i < 100'000; ++i)
        content += "1 scn ";
    const NSLogCapture log;
    const auto canvas = drawContent(
        content + "0 0 16 16 re f", "/ColorSpace << /CS [/Separation /Spot /DeviceGray 10 0 R] >>", {tint});
    EXPECT_EQ(canvas.pixel(8, 8), rgba(0, 0, 0, 0));
    ASSERT_EQ(log.messages().size(), 1u);
    EXPECT_TRUE(log.messages()[0].ends_with("the rest of the page is left out: too many costly colours"));
}

} // namespace
