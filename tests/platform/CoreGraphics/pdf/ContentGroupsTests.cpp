#include "Foundation/testing/NSLogCapture.h"
#include "support/PDFPages.h"

#include <gtest/gtest.h>

namespace {

const std::string kGroup = "/Type /XObject /Subtype /Form /BBox [0 0 6 4] ";
const std::string kIsolated = kGroup + "/Group << /S /Transparency /I true >> ";
const std::string kNotIsolated = kGroup + "/Group << /S /Transparency >> ";
const std::string kStates = "/ExtGState << /Half << /ca 0.502 >> /Multiply << /BM /Multiply >> "
                            "/Mask << /SMask << /S /Alpha /G 11 0 R >> >> >> ";

RetainPtr<CGPDFDocument> documentOf(std::string_view content, const PDFObjectText& group)
{
    const PDFObjectText mask = pdfStream(kNotIsolated, "0 0 3 4 re f");
    return makePDF(content, kStates + "/XObject << /G 10 0 R >>", "/MediaBox [0 0 6 4]", {group, mask});
}

/// A page of 6 × 4 points with the group /G.
Canvas draw(std::string_view content, const PDFObjectText& group, double scale = 1)
{
    return drawPage(documentOf(content, group), 1, 6, 4, scale);
}

/// Two overlapping squares, red below blue.
const std::string kSquares = "1 0 0 rg 0 0 2 2 re f 0 0 1 rg 1 1 2 2 re f";

TEST(PDFGroups, FadeAsAWhole)
{
    const auto group = draw("/Half gs /G Do", pdfStream(kNotIsolated, kSquares));
    EXPECT_EQ(group.pixel(0, 3), rgba(128, 0, 0, 128));
    EXPECT_EQ(group.pixel(1, 2), rgba(0, 0, 128, 128));
    EXPECT_EQ(group.pixel(2, 1), rgba(0, 0, 128, 128));
    // In a plain form each square fades.
    const auto form = draw("/Half gs /G Do", pdfStream(kGroup, kSquares));
    EXPECT_EQ(form.pixel(1, 2), rgba(64, 0, 128, 192));
}

TEST(PDFGroups, StartWithFreshTransparency)
{
    const auto canvas = draw("1 0 0 rg /Half gs /Mask gs /Multiply gs /G Do",
        pdfStream(kNotIsolated + "/Resources << " + kStates + " >>", "0 0 6 1 re f /Half gs 0 1 6 1 re f"));
    EXPECT_EQ(canvas.pixel(0, 3), rgba(128, 0, 0, 128));
    EXPECT_EQ(canvas.pixel(0, 2), rgba(64, 0, 0, 64));
    EXPECT_EQ(canvas.alpha(4, 3), 0); // outside the mask
}

TEST(PDFGroups, BlendAsAWhole)
{
    const auto canvas = draw("1 1 0 rg 0 0 6 4 re f /Multiply gs /G Do", pdfStream(kNotIsolated, kSquares));
    EXPECT_EQ(canvas.pixel(0, 3), rgba(255, 0, 0, 255));
    EXPECT_EQ(canvas.pixel(1, 2), rgba(0, 0, 0, 255)); // blue on yellow; the red below it does not count
    EXPECT_EQ(canvas.pixel(5, 0), rgba(255, 255, 0, 255));
}

TEST(PDFGroups, BlendIntoThemselvesAloneWhereIsolated)
{
    const std::string content = "1 1 0 rg 0 0 6 4 re f /G Do";
    const std::string inside = "/Multiply gs 0 1 1 rg 0 0 3 4 re f 1 0 1 rg 0 0 3 2 re f";
    const auto isolated = draw(content, pdfStream(kIsolated, inside));
    EXPECT_EQ(isolated.pixel(0, 0), rgba(0, 255, 255, 255));
    EXPECT_EQ(isolated.pixel(0, 3), rgba(0, 0, 255, 255));
    const auto open = draw(content, pdfStream(kNotIsolated, inside));
    EXPECT_EQ(open.pixel(0, 0), rgba(0, 255, 0, 255));
    EXPECT_EQ(open.pixel(0, 3), rgba(0, 0, 0, 255));
}

TEST(PDFGroups, OfOneShapeFadeAndBlendLikeTheShape)
{
    const auto group = draw("1 1 0 rg 0 0 6 4 re f /Half gs /Multiply gs /Mask gs /G Do",
        pdfStream(kNotIsolated + "/Resources << " + kStates + " >>", "/Half gs 0 1 1 rg 0 0 6 4 re f"));
    // A quarter of green on yellow.
    EXPECT_EQ(group.pixel(0, 0), rgba(191, 255, 0, 255));
    EXPECT_EQ(group.pixel(5, 0), rgba(255, 255, 0, 255));
}

TEST(PDFGroups, FadeInsideOthers)
{
    const auto canvas =
        drawPage(makePDF("/Half gs /G Do", kStates + "/XObject << /G 10 0 R >>", "/MediaBox [0 0 6 4]",
                     {pdfStream(kNotIsolated + "/Resources << /XObject << /G 11 0 R >> " + kStates + " >>",
                          "1 0 0 rg 0 0 6 1 re f /Half gs 1 0 0 1 0 1 cm /G Do"),
                         pdfStream(kNotIsolated, kSquares)}),
            1, 6, 4);
    EXPECT_EQ(canvas.pixel(5, 3), rgba(128, 0, 0, 128));
    EXPECT_EQ(canvas.pixel(0, 2), rgba(64, 0, 0, 64));
    EXPECT_EQ(canvas.pixel(1, 1), rgba(0, 0, 64, 64));
}

TEST(PDFGroups, StayInTheirBoxAndClip)
{
    const std::string group = "/Type /XObject /Subtype /Form /BBox [1 1 5 3] /Matrix [1 0 0 1 1 0] "
                              "/Group << /S /Transparency >> ";
    EXPECT_COVERAGE(
        draw("0 0 4 4 re W n /Half gs /G Do 0 0 1 1 re f", pdfStream(group, "0 0 9 9 re f 0 0 9 9 re f")),
        "......"
        "..++.."
        "..++.."
        "+.....");
}

TEST(PDFGroups, AreDrawnAtTheScaleAndAngleOfTheContext)
{
    const auto document = documentOf("/Half gs /G Do", pdfStream(kNotIsolated, kSquares));
    Canvas turned(8, 12);
    CGContextConcatCTM(turned.context(), {0, 2, -2, 0, 8, 0});
    CGContextDrawPDFPage(turned.context(), CGPDFDocumentGetPage(document, 1));
    EXPECT_EQ(turned.pixel(7, 11), rgba(128, 0, 0, 128));
    EXPECT_EQ(turned.pixel(5, 9), rgba(0, 0, 128, 128));
    EXPECT_EQ(turned.pixel(2, 6), rgba(0, 0, 128, 128));
    EXPECT_EQ(turned.pixel(0, 0), rgba(0, 0, 0, 0));
}

TEST(PDFGroups, FadeAgainWithTheContext)
{
    for (const auto& group : {kNotIsolated, kGroup}) {
        SCOPED_TRACE(group);
        const auto document =
            documentOf("/Half gs /G Do", pdfStream(group, "1 0 0 rg 0 0 2 2 re f 3 0 2 2 re f"));
        Canvas canvas(6, 4);
        CGContextSetAlpha(canvas.context(), 0.5);
        CGContextDrawPDFPage(canvas.context(), CGPDFDocumentGetPage(document, 1));
        EXPECT_EQ(canvas.pixel(0, 3), rgba(64, 0, 0, 64));
    }
}

TEST(PDFGroups, LogWhatIsApproximated)
{
    const NSLogCapture capture;
    draw("/G Do", pdfStream(kGroup + "/Group << /S /Transparency /K true >> ", kSquares));
    ASSERT_EQ(capture.messages().size(), 1u);
    EXPECT_NE(
        capture.messages()[0].find("a knockout group is drawn without knocking out"), std::string::npos);
    draw("/Half gs /G Do",
        pdfStream(
            kNotIsolated + "/Resources << " + kStates + " >>", "/Multiply gs 0 0 1 1 re f 0 0 1 1 re f"));
    ASSERT_EQ(capture.messages().size(), 2u);
    EXPECT_NE(capture.messages()[1].find("a group blends into itself alone"), std::string::npos);
}

TEST(PDFGroups, KeepWhatComesBeforeALimit)
{
    std::string endless = "0 0 1 1 re f 0 0 1 1 re f ";
    for (int index = 0; index < 250'001; ++index)
        endless += "q Q ";
    const NSLogCapture capture;
    const auto canvas = draw("/Half gs /G Do 1 0 1 1 re f", pdfStream(kNotIsolated, endless));
    EXPECT_EQ(canvas.alpha(0, 3), 128);
    EXPECT_EQ(canvas.alpha(1, 3), 0);
}

/// Blue-gray on orange in every blend mode, computed from the formulas of ISO 32000-2, 11.3.5.
TEST(PDFBlendModes, HaveTheirNames)
{
    struct Case {
        const char* name;
        std::array<double, 3> expected; ///< of source (0.2, 0.4, 0.6) on (0.8, 0.4, 0.2)
    };
    const std::array cases{
        Case{"Normal", {0.2, 0.4, 0.6}},
        Case{"Compatible", {0.2, 0.4, 0.6}},
        Case{"Multiply", {0.16, 0.16, 0.12}},
        Case{"Screen", {0.84, 0.64, 0.68}},
        Case{"Overlay", {0.68, 0.32, 0.24}},
        Case{"Darken", {0.2, 0.4, 0.2}},
        Case{"Lighten", {0.8, 0.4, 0.6}},
        Case{"ColorDodge", {1, 0.666667, 0.5}},
        Case{"ColorBurn", {0, 0, 0}},
        Case{"HardLight", {0.32, 0.32, 0.36}},
        Case{"SoftLight", {0.704, 0.352, 0.2496}},
        Case{"Difference", {0.6, 0, 0.4}},
        Case{"Exclusion", {0.68, 0.48, 0.56}},
    };
    constexpr int kTolerance = 3; // rounding of both colours and of the result
    for (const auto& [name, expected] : cases) {
        SCOPED_TRACE(name);
        const auto canvas = drawPage(makePDF("0.8 0.4 0.2 rg 0 0 1 1 re f /A gs 0.2 0.4 0.6 rg 0 0 1 1 re f",
                                         "/ExtGState << /A << /BM /" + std::string(name) + " >> >>"),
            1, 1, 1);
        for (std::size_t component = 0; component < 3; ++component)
            EXPECT_NEAR(canvas.pixel(0, 0).bytes[component], expected[component] * 255, kTolerance)
                << component;
    }
}

TEST(PDFBlendModes, OfColorKeepTheLuminosityOfOneSide)
{
    const auto luminosity = [](const std::string& mode) {
        const auto canvas = drawPage(makePDF("0.8 0.4 0.2 rg 0 0 1 1 re f /A gs 0.2 0.4 0.6 rg 0 0 1 1 re f",
                                         "/ExtGState << /A << /BM /" + mode + " >> >>"),
            1, 1, 1);
        const auto [red, green, blue, alpha] = canvas.pixel(0, 0).bytes;
        return (0.3 * red + 0.59 * green + 0.11 * blue) / 255;
    };
    constexpr double kBelow = 0.3 * 0.8 + 0.59 * 0.4 + 0.11 * 0.2;
    constexpr double kAbove = 0.3 * 0.2 + 0.59 * 0.4 + 0.11 * 0.6;
    EXPECT_NEAR(luminosity("Hue"), kBelow, 0.01);
    EXPECT_NEAR(luminosity("Saturation"), kBelow, 0.01);
    EXPECT_NEAR(luminosity("Color"), kBelow, 0.01);
    EXPECT_NEAR(luminosity("Luminosity"), kAbove, 0.01);
}

TEST(PDFBlendModes, UnknownOnesAreDrawnAsNormal)
{
    const NSLogCapture capture;
    const auto canvas = drawPage(makePDF("0 1 0 rg 0 0 1 1 re f /M gs /A gs 1 0 0 rg 0 0 1 1 re f",
                                     "/ExtGState << /A << /BM /Odd >> /M << /BM /Multiply >> >>"),
        1, 1, 1);
    EXPECT_EQ(canvas.pixel(0, 0), rgba(255, 0, 0, 255));
    ASSERT_EQ(capture.messages().size(), 1u);
    EXPECT_NE(capture.messages()[0].find("the blend mode Odd is drawn as Normal"), std::string::npos);
}

} // namespace
