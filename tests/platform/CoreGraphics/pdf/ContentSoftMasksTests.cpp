#include "Foundation/testing/NSLogCapture.h"
#include "support/PDFPages.h"

#include <gtest/gtest.h>

namespace {

const std::string kMaskGroup =
    "/Type /XObject /Subtype /Form /BBox [0 0 6 4] /Group << /S /Transparency /CS /DeviceRGB >> ";

/// A page of 6 × 4 points whose graphics state /A has the soft mask `mask`; object 10 is the group `group` to
/// use in it.
Canvas draw(std::string_view content, const std::string& mask, const PDFObjectText& group, double scale = 1)
{
    const std::string resources =
        "/ExtGState << /A << /SMask " + mask + " >> /None << /SMask /None >> /Half << /ca 0.5 >> >>";
    return drawPage(makePDF(content, resources, "/MediaBox [0 0 6 4]", {group}), 1, 6, 4, scale);
}

const std::string kFillAll = "/A gs 0 0 6 4 re f";

TEST(PDFSoftMask, UsesTheLuminosityOfItsGroup)
{
    const auto canvas = draw(kFillAll, "<< /S /Luminosity /G 10 0 R >>",
        pdfStream(kMaskGroup,
            "1 g 0 0 1 4 re f 0.5 g 1 0 1 4 re f 1 0 0 rg 2 0 1 4 re f 0 1 0 rg 3 0 1 4 re f 0 0 1 rg 4 0 1 "
            "4 re f"));
    EXPECT_EQ(canvas.alpha(0, 1), 255);
    EXPECT_EQ(canvas.alpha(1, 1), 128);
    EXPECT_NEAR(canvas.alpha(2, 1), 0.30 * 255, 1);
    EXPECT_NEAR(canvas.alpha(3, 1), 0.59 * 255, 1);
    EXPECT_NEAR(canvas.alpha(4, 1), 0.11 * 255, 1);
    EXPECT_EQ(canvas.alpha(5, 1), 0); // the backdrop is black
}

TEST(PDFSoftMask, UsesTheAlphaOfItsGroup)
{
    EXPECT_COVERAGE(draw(kFillAll, "<< /S /Alpha /G 10 0 R >>",
                        pdfStream(kMaskGroup + "/Resources << /ExtGState << /H << /ca 0.5 >> >> >>",
                            "0 g 1 1 2 2 re f /H gs 1 g 4 1 1 2 re f")),
        "......"
        ".##.+."
        ".##.+."
        "......");
}

TEST(PDFSoftMask, HasABackdrop)
{
    const PDFObjectText group = pdfStream(kMaskGroup, "0 g 1 1 2 2 re f");
    EXPECT_COVERAGE(draw(kFillAll, "<< /S /Luminosity /BC [1 1 1] /G 10 0 R >>", group),
        "######"
        "#..###"
        "#..###"
        "######");
    EXPECT_COVERAGE(draw(kFillAll, "<< /S /Luminosity /BC [0.5 0.5 0.5] /G 10 0 R >>", group),
        "++++++"
        "+..+++"
        "+..+++"
        "++++++");
    // Too few components for the group's space: black.
    EXPECT_EQ(draw(kFillAll, "<< /S /Luminosity /BC [1] /G 10 0 R >>", group).alpha(0, 0), 0);
}

TEST(PDFSoftMask, IsPlacedWhereItWasSelected)
{
    const PDFObjectText group = pdfStream(kMaskGroup, "1 g 0 0 1 1 re f");
    const std::string mask = "<< /S /Luminosity /G 10 0 R >>";
    EXPECT_COVERAGE(draw("1 0 0 1 2 1 cm /A gs 1 0 0 1 -2 -1 cm 0 0 6 4 re f", mask, group),
        "......"
        "......"
        "..#..."
        "......");
    EXPECT_COVERAGE(draw("q 1 0 0 1 2 1 cm /A gs 0 0 6 4 re f Q /A gs 0 0 6 4 re f", mask, group),
        "......"
        "......"
        "..#..."
        "#.....");
}

TEST(PDFSoftMask, AppliesToEachItemWithTheItemsAlphaAndClip)
{
    EXPECT_COVERAGE(draw("0 0 6 2 re W n /A gs /Half gs 0 0 6 4 re f", "<< /S /Luminosity /G 10 0 R >>",
                        pdfStream(kMaskGroup, "1 g 1 1 2 2 re f")),
        "......"
        "......"
        ".++..."
        "......");
    EXPECT_COVERAGE(draw("/A gs 2 w 0 2 m 6 2 l S", "<< /S /Luminosity /G 10 0 R >>",
                        pdfStream(kMaskGroup, "1 g 1 0 2 2 re f")),
        "......"
        "......"
        ".##..."
        "......");
}

TEST(PDFSoftMask, EndsWithItsStateOrNone)
{
    const PDFObjectText group = pdfStream(kMaskGroup, "");
    const std::string mask = "<< /S /Luminosity /G 10 0 R >>";
    EXPECT_EQ(draw("q /A gs Q 0 0 6 4 re f", mask, group).alpha(1, 1), 255);
    EXPECT_EQ(draw("/A gs /None gs 0 0 6 4 re f", mask, group).alpha(1, 1), 255);
    EXPECT_EQ(draw("/A gs 0 0 6 4 re f", mask, group).alpha(1, 1), 0);
}

TEST(PDFSoftMask, IsRenderedAtTheScaleOfTheContext)
{
    const auto canvas = draw("/A gs 0 0 6 4 re f", "<< /S /Luminosity /G 10 0 R >>",
        pdfStream(kMaskGroup, "1 g 0.5 0.5 1 1 re f"), 2);
    EXPECT_EQ(canvas.alpha(0, 6), 0);
    EXPECT_EQ(canvas.alpha(1, 6), 255);
    EXPECT_EQ(canvas.alpha(2, 5), 255);
    EXPECT_EQ(canvas.alpha(3, 5), 0);
}

TEST(PDFSoftMask, CoversAFlippedAndTurnedPage)
{
    const auto document = makePDF(kFillAll, "/ExtGState << /A << /SMask << /S /Luminosity /G 10 0 R >> >> >>",
        "/MediaBox [0 0 6 4]", {pdfStream(kMaskGroup, "1 g 0 0 2 1 re f")});
    Canvas flipped(6, 4);
    CGContextConcatCTM(flipped.context(), {1, 0, 0, -1, 0, 4});
    CGContextDrawPDFPage(flipped.context(), CGPDFDocumentGetPage(document, 1));
    EXPECT_COVERAGE(flipped,
        "##...."
        "......"
        "......"
        "......");
    Canvas turned(4, 6);
    CGContextConcatCTM(turned.context(), {0, 1, -1, 0, 4, 0});
    CGContextDrawPDFPage(turned.context(), CGPDFDocumentGetPage(document, 1));
    EXPECT_COVERAGE(turned,
        "...."
        "...."
        "...."
        "...."
        "...#"
        "...#");
}

TEST(PDFSoftMask, HasATransferFunction)
{
    const PDFObjectText group = pdfStream(kMaskGroup, "1 g 0 0 2 4 re f 0.25 g 2 0 2 4 re f");
    const auto drawWith = [&](const std::string& function) {
        return draw(kFillAll, "<< /S /Luminosity /G 10 0 R /TR " + function + " >>", group);
    };
    const std::string inverse = "<< /FunctionType 2 /Domain [0 1] /C0 [1] /C1 [0] /N 1 >>";
    EXPECT_COVERAGE(drawWith(inverse),
        "..**##"
        "..**##"
        "..**##"
        "..**##");
    // Clamped: -1 at luminosity 0, below 0 at a quarter, 2 at 1.
    EXPECT_COVERAGE(drawWith("<< /FunctionType 2 /Domain [0 1] /C0 [-1] /C1 [2] /N 1 >>"),
        "##...."
        "##...."
        "##...."
        "##....");
    EXPECT_EQ(drawWith("/Identity").alpha(2, 0), 64);
    EXPECT_EQ(draw(kFillAll, "<< /S /Alpha /G 10 0 R /TR " + inverse + " >>", group).alpha(5, 0), 255);
}

TEST(PDFSoftMask, IgnoresInvalidTransferFunctions)
{
    const PDFObjectText group = pdfStream(kMaskGroup, "0.25 g 0 0 6 4 re f");
    for (const char* function : {"/Default", "7", "<< /FunctionType 9 >>",
             "<< /FunctionType 2 /Domain [0 1] /C0 [1 1] /C1 [0 0] /N 1 >>"}) {
        SCOPED_TRACE(function);
        const NSLogCapture capture;
        EXPECT_EQ(draw(kFillAll, "<< /S /Luminosity /G 10 0 R /TR " + std::string(function) + " >>", group)
                      .alpha(1, 1),
            64);
        ASSERT_EQ(capture.messages().size(), 1u);
        EXPECT_NE(
            capture.messages()[0].find("the transfer function of a soft mask is invalid"), std::string::npos);
    }
}

TEST(PDFSoftMask, StartsWithFreshParameters)
{
    // The colour and alpha in force where the mask is selected do not count inside.
    EXPECT_EQ(draw("0.5 g /Half gs /A gs 0 0 6 4 re f", "<< /S /Alpha /G 10 0 R >>",
                  pdfStream(kMaskGroup, "0 0 6 4 re f"))
                  .alpha(1, 1),
        128);
}

TEST(PDFSoftMask, WithoutAGroupIsIgnored)
{
    const NSLogCapture capture;
    EXPECT_EQ(draw(kFillAll, "<< /S /Luminosity >>", pdfStream(kMaskGroup, "")).alpha(1, 1), 255);
    ASSERT_EQ(capture.messages().size(), 1u);
    EXPECT_NE(capture.messages()[0].find("a soft mask is invalid"), std::string::npos);
}

TEST(PDFSoftMask, DoesNotContainItself)
{
    const NSLogCapture capture;
    const auto canvas = draw(kFillAll, "<< /S /Alpha /G 10 0 R >>",
        pdfStream(kMaskGroup + "/Resources << /ExtGState << /A << /SMask << /S /Alpha /G 10 0 R >> >> >> >>",
            "/A gs 0 0 1 1 re f"));
    EXPECT_EQ(canvas.alpha(0, 3), 255);
    EXPECT_EQ(canvas.alpha(1, 3), 0);
    EXPECT_EQ(capture.messages().size(), 1u);
}

} // namespace
