#include "Foundation/testing/NSLogCapture.h"
#include "support/Canvas.h"
#include "support/PDFPages.h"

#include <gtest/gtest.h>

namespace {

using namespace std::string_literals;

/// Draws an inline image over the lower left quarter of the page and a red square, which proves where its
/// data end, in the upper right one.
Canvas drawInline(const std::string& dictionary, const std::string& data, const std::string& resources = "")
{
    return drawContent(
        "q 8 0 0 8 0 0 cm BI " + dictionary + " ID " + data + "\nEI Q 1 0 0 rg 8 8 8 8 re f", resources);
}

TEST(PDFInlineImage, IsDrawnLikeAnImage)
{
    const auto canvas = drawInline(
        "/Width 2 /Height 1 /BitsPerComponent 8 /ColorSpace /DeviceRGB", "\x11\x22\x33\x44\x55\x66"s);
    EXPECT_EQ(canvas.pixel(2, 12), rgba(17, 34, 51, 255));
    EXPECT_EQ(canvas.pixel(6, 12), rgba(68, 85, 102, 255));
    EXPECT_EQ(canvas.pixel(12, 4), kRed);
}

TEST(PDFInlineImage, KnowsAbbreviations)
{
    EXPECT_EQ(drawInline("/W 1 /H 1 /BPC 8 /CS /G", "\x33").pixel(4, 12), rgba(51, 51, 51, 255));
    EXPECT_EQ(drawInline("/W 1 /H 1 /BPC 8 /CS /RGB /D [1 0 0 1 0 1]", "\x33\x66\x99").pixel(4, 12),
        rgba(204, 102, 153, 255));
    EXPECT_EQ(
        drawInline("/W 1 /H 1 /BPC 8 /CS /CMYK", "\xFF\x00\x00\x00"s).pixel(4, 12), rgba(0, 159, 227, 255));
    EXPECT_EQ(drawInline("/W 1 /H 1 /BPC 8 /CS [/I /RGB 1 <000000336699>]", "\x01").pixel(4, 12),
        rgba(51, 102, 153, 255));
    EXPECT_EQ(drawInline("/W 1 /H 1 /IM true /D [1 0]", "\x80").pixel(4, 12), rgba(0, 0, 0, 255));
    EXPECT_EQ(drawInline("/W 1 /H 1 /IM true /D [0 1]", "\x80").pixel(4, 12), rgba(0, 0, 0, 0));
    const auto smooth = drawInline("/W 2 /H 1 /BPC 8 /CS /G /I true", "\x00\xFF"s);
    EXPECT_GT(smooth.pixel(3, 12).bytes[0], 30);
}

TEST(PDFInlineImage, DecodesEachFilter)
{
    EXPECT_EQ(
        drawInline("/W 1 /H 1 /BPC 8 /CS /RGB /F /AHx", "336699>").pixel(4, 12), rgba(51, 102, 153, 255));
    EXPECT_EQ(drawInline("/W 1 /H 1 /BPC 8 /CS /RGB /F [/AHx /AHx]", "33 33 36 36 39 39 >").pixel(4, 12),
        rgba(51, 102, 153, 255));
    EXPECT_EQ(
        drawInline("/W 1 /H 1 /BPC 8 /CS /RGB /F /A85", "1M3$~>").pixel(4, 12), rgba(51, 102, 153, 255));
    EXPECT_EQ(drawInline("/W 1 /H 1 /BPC 8 /CS /RGB /F /RL", "\x02\x33\x66\x99\x80").pixel(4, 12),
        rgba(51, 102, 153, 255));
    const std::string deflated = "\x78\x01\x01\x03\x00\xFC\xFF\x33\x66\x99\x02\x01\x01\x33"s;
    EXPECT_EQ(drawInline("/W 1 /H 1 /BPC 8 /CS /RGB /F /Fl", deflated).pixel(4, 12), rgba(51, 102, 153, 255));
}

TEST(PDFInlineImage, ReportsWhatIsNotDrawn)
{
    const NSLogCapture log;
    EXPECT_EQ(drawInline("/W 1 /H 1 /BPC 1 /CS /G /F /CCF", "abc").pixel(12, 4), kRed);
    ASSERT_EQ(log.messages().size(), 1u);
    EXPECT_TRUE(log.messages()[0].ends_with("an image is not drawn (CCITTFaxDecode)"));
}

TEST(PDFInlineImage, ComputesTheLengthOfItsData)
{
    // Data that look like the end of an image, and like operators.
    const auto canvas = drawInline("/W 8 /H 1 /BPC 8 /CS /G", " EI\nQ Q\x33");
    EXPECT_EQ(canvas.pixel(7, 12), rgba(51, 51, 51, 255));
    EXPECT_EQ(canvas.pixel(12, 4), kRed);
    // Rows of 3 x 3 bits start at bytes.
    const auto rows = drawInline("/W 3 /H 3 /BPC 1 /CS /RGB", "\x00 EI\n\xFF"s);
    EXPECT_EQ(rows.pixel(7, 15), rgba(255, 0, 255, 255)); // the last bits of 0x0A, the first of 0xFF
    EXPECT_EQ(rows.pixel(12, 4), kRed);
}

TEST(PDFInlineImage, TakesItsSpaceFromTheResources)
{
    const auto canvas = drawInline("/W 1 /H 1 /BPC 8 /CS /Table", "\x01",
        "/ColorSpace << /Table [/Indexed /DeviceRGB 1 <000000336699>] >>");
    EXPECT_EQ(canvas.pixel(4, 12), rgba(51, 102, 153, 255));
}

TEST(PDFInlineImage, EndsWithTheContentAtTheLatest)
{
    for (const char* content : {"BI", "BI /W", "BI /W 1", "BI /W 1 ID", "BI /W 1 /H 1 /BPC 8 /CS /G ID",
             "BI ID EI", "BI /W 1000 /H 1000 /BPC 8 /CS /G ID abc",
             "BI /W 1000000000 /H 1000000000 /BPC 8 /CS /G ID abc EI", "BI /W -1 /H 1 /BPC 8 /CS /G ID a EI",
             "BI /F /Fl ID abcEI", "BI /W /H /BPC ID EI"}) {
        SCOPED_TRACE(content);
        const auto canvas = drawContent("1 0 0 rg 8 8 8 8 re f " + std::string(content));
        EXPECT_EQ(canvas.pixel(12, 4), kRed);
    }
    EXPECT_EQ(drawInline("/NoSuchKey 1", "abc").pixel(12, 4), kRed);
}

TEST(PDFInlineImage, IsSteppedOverWhereContentIsHidden)
{
    const auto canvas = drawPage(
        openPDF(
            pdfBytesOfObjects({"<< /Type /Catalog /Pages 2 0 R /OCProperties << /D << /OFF [5 0 R] >> >> >>",
                "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
                "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 16 16] /Contents 4 0 R"
                " /Resources << /Properties << /Hidden 5 0 R >> >> >>",
                pdfStream("",
                    "/OC /Hidden BDC 8 0 0 8 0 0 cm BI /W 1 /H 1 /BPC 8 /CS /G ID \x33\nEI EMC"
                    " 1 0 0 rg 1 1 1 1 re f"),
                "<< /Type /OCG >>"})),
        1, 16, 16);
    EXPECT_EQ(canvas.alpha(4, 12), 0);
    EXPECT_EQ(canvas.pixel(12, 4), kRed);
}

} // namespace
