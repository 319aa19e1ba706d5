#include "support/PDFPages.h"

#include <gtest/gtest.h>

namespace {

using namespace std::string_literals;

const std::string kImage =
    "/Type /XObject /Subtype /Image /Width 2 /Height 2 /ColorSpace /DeviceGray /BitsPerComponent 8 ";

/// A page with an image of alpha 51, 102, 153 and 204, which all the paints below share in part.
RetainPtr<CGPDFDocument> pageOf(const std::string& content)
{
    return makePDF(content,
        "/XObject << /Im 10 0 R /Stencil 13 0 R >> /Pattern << /P 12 0 R >> /ExtGState << /Half << /ca 0.4 "
        ">> >>"
        " /Shading << /Axial << /ShadingType 2 /ColorSpace /DeviceGray /Coords [4 0 12 0] /Function"
        " << /FunctionType 2 /Domain [0 1] /N 1 >> >> /Mesh 14 0 R >>",
        "/MediaBox [0 0 16 16]",
        {pdfStream(kImage + "/SMask 11 0 R", "\x00\xFF\x80\x40"s), pdfStream(kImage, "\x33\x66\x99\xCC"s),
            pdfStream("/PatternType 1 /PaintType 1 /TilingType 1 /BBox [0 0 3 3] /XStep 3.5 /YStep 3 "
                      "/Resources << >>",
                "1 0 0 rg 0 0 2 2 re f"),
            pdfStream("/Subtype /Image /ImageMask true /Width 2 /Height 1", "\x40"s),
            pdfStream("/ShadingType 4 /ColorSpace /DeviceGray /BitsPerCoordinate 8 /BitsPerComponent 8 "
                      "/BitsPerFlag 8"
                      " /Decode [0 255 0 255 0 1]",
                "\x00\x00\x00\x00\x00\x10\x00\x80\x00\x00\x10\xFF"s)});
}

TEST(DisplayListImages, HaveTheSameAlphaWithoutColors)
{
    for (const char* content : {"16 0 0 16 0 0 cm /Im Do", "/Half gs 9.5 3 -3 9.5 4 1 cm /Im Do",
             "0 1 0 rg /Half gs 16 0 0 16 0 0 cm /Stencil Do", "/Half gs /Axial sh", "/Half gs /Mesh sh",
             "/Half gs /Pattern cs /P scn 1 1 13.5 13.5 re f"}) {
        SCOPED_TRACE(content);
        const auto document = pageOf(content);
        const auto inColor = drawPage(document, 1, 16, 16);
        const Canvas alphaOnly(16, 16, Canvas::Format::AlphaOnly);
        CGContextDrawPDFPage(alphaOnly.context(), CGPDFDocumentGetPage(document, 1));
        int painted = 0;
        for (int row = 0; row < 16; ++row) {
            for (int column = 0; column < 16; ++column) {
                ASSERT_EQ(alphaOnly.alpha(column, row), inColor.alpha(column, row)) << column << ", " << row;
                painted += inColor.alpha(column, row) > 0;
            }
        }
        EXPECT_GT(painted, 50);
    }
}

TEST(DisplayListImages, AreDrawnAtAnyAngle)
{
    // Turned by 90 degrees: the first row on the left, from the bottom.
    const auto canvas = drawPage(pageOf("0 16 -16 0 16 0 cm /Im Do"), 1, 16, 16);
    EXPECT_EQ(canvas.alpha(4, 12), 51);
    EXPECT_EQ(canvas.alpha(4, 4), 102);
    EXPECT_EQ(canvas.alpha(12, 12), 153);
    EXPECT_EQ(canvas.alpha(12, 4), 204);
}

TEST(DisplayListImages, DrawNothingWithoutArea)
{
    for (const char* content : {"0 0 0 0 0 0 cm /Im Do", "16 0 16 0 0 0 cm /Stencil Do",
             "0 0 0 0 0 0 cm /Axial sh", "0 0 0 0 0 0 cm /Mesh sh",
             "1000000000 0 0 1000000000 0 0 cm 1000000000 0 0 1000000000 0 0 cm /Axial sh"}) {
        SCOPED_TRACE(content);
        const auto canvas = drawPage(pageOf(std::string(content) + " 1 0 0 rg"), 1, 16, 16);
        EXPECT_EQ(canvas.alpha(8, 8), 0);
    }
}

} // namespace
