#include <CoreGraphics/CGPDFPage.h>

#include "support/Describe.h"
#include "support/PDFPages.h"

#include <gtest/gtest.h>

namespace {

/// A document of one page with these entries in its dictionary and in that of its parent.
RetainPtr<CGPDFDocument> pageWith(std::string_view entries, std::string_view parentEntries = "")
{
    return openPDF(pdfBytesOfObjects({
        "<< /Type /Catalog /Pages 2 0 R >>",
        "<< /Type /Pages /Kids [3 0 R] /Count 1 " + std::string(parentEntries) + " >>",
        "<< /Type /Page /Parent 2 0 R " + std::string(entries) + " >>",
    }));
}

std::string box(const RetainPtr<CGPDFDocument>& document, CGPDFBox which)
{
    return describe(CGPDFPageGetBoxRect(CGPDFDocumentGetPage(document, 1), which));
}

int angle(const RetainPtr<CGPDFDocument>& document)
{
    return CGPDFPageGetRotationAngle(CGPDFDocumentGetPage(document, 1));
}

TEST(CGPDFPageGetBoxRect, KeepsTheOrigin)
{
    const auto page = pageWith("/MediaBox [10 20 110 220] /CropBox [15 30 100.5 200]");
    EXPECT_EQ(box(page, kCGPDFMediaBox), "10 20 100 200");
    EXPECT_EQ(box(page, kCGPDFCropBox), "15 30 85.5 170");
}

TEST(CGPDFPageGetBoxRect, TakesCornersInAnyOrder)
{
    EXPECT_EQ(box(pageWith("/MediaBox [110 20 10 220]"), kCGPDFMediaBox), "10 20 100 200");
    EXPECT_EQ(box(pageWith("/MediaBox [10 220 110 20]"), kCGPDFMediaBox), "10 20 100 200");
}

TEST(CGPDFPageGetBoxRect, InheritsMediaAndCropBox)
{
    const auto inherited = pageWith("", "/MediaBox [0 0 50 60] /CropBox [5 5 40 40]");
    EXPECT_EQ(box(inherited, kCGPDFMediaBox), "0 0 50 60");
    EXPECT_EQ(box(inherited, kCGPDFCropBox), "5 5 35 35");
    const auto own = pageWith("/MediaBox [0 0 70 80]", "/MediaBox [0 0 50 60] /TrimBox [1 1 2 2]");
    EXPECT_EQ(box(own, kCGPDFMediaBox), "0 0 70 80");
    EXPECT_EQ(box(own, kCGPDFTrimBox), "0 0 70 80");
}

TEST(CGPDFPageGetBoxRect, LimitsBoxesToTheMediaBox)
{
    EXPECT_EQ(box(pageWith("/MediaBox [0 0 50 60] /CropBox [-10 10 30 100]"), kCGPDFCropBox), "0 10 30 50");
    EXPECT_EQ(box(pageWith("/MediaBox [0 0 50 60] /ArtBox [40 50 90 90]"), kCGPDFArtBox), "40 50 10 10");
}

TEST(CGPDFPageGetBoxRect, UsesTheDefaultForEmptyAndSeparateBoxes)
{
    EXPECT_EQ(box(pageWith("/MediaBox [0 0 50 60] /CropBox [5 5 5 30]"), kCGPDFCropBox), "0 0 50 60");
    EXPECT_EQ(box(pageWith("/MediaBox [0 0 50 60] /CropBox [70 70 90 90]"), kCGPDFCropBox), "0 0 50 60");
    EXPECT_EQ(box(pageWith("/MediaBox [0 0 50 60] /CropBox [1 2 3]"), kCGPDFCropBox), "0 0 50 60");
    EXPECT_EQ(box(pageWith("/MediaBox [0 0 50 60] /CropBox [1 2 /A 4]"), kCGPDFCropBox), "0 0 50 60");
    EXPECT_EQ(box(pageWith("/MediaBox [0 0 0 60]"), kCGPDFMediaBox), "0 0 612 792");
    EXPECT_EQ(box(pageWith(""), kCGPDFMediaBox), "0 0 612 792");
    EXPECT_EQ(box(pageWith(""), kCGPDFCropBox), "0 0 612 792");
}

TEST(CGPDFPageGetBoxRect, FallsBackFromInnerBoxesToTheCropBox)
{
    const auto page =
        pageWith("/MediaBox [0 0 50 60] /CropBox [5 6 45 50] /BleedBox [1 1 2 3] /TrimBox [2 2 4 5]");
    EXPECT_EQ(box(page, kCGPDFBleedBox), "1 1 1 2");
    EXPECT_EQ(box(page, kCGPDFTrimBox), "2 2 2 3");
    EXPECT_EQ(box(page, kCGPDFArtBox), "5 6 40 44");
}

TEST(CGPDFPageGetBoxRect, IsNullWithoutPageOrBox)
{
    EXPECT_TRUE(CGRectIsNull(CGPDFPageGetBoxRect(nullptr, kCGPDFCropBox)));
    const auto document = pageWith("");
    EXPECT_TRUE(CGRectIsNull(CGPDFPageGetBoxRect(CGPDFDocumentGetPage(document, 1), CGPDFBox(5))));
}

TEST(CGPDFPageGetBoxRect, ClampsNumbers)
{
    EXPECT_EQ(box(pageWith("/MediaBox [-99999999999 0 99999999999 1]"), kCGPDFMediaBox),
        "-1000000000 0 2000000000 1");
}

TEST(CGPDFPageGetBoxRect, EndsWhereParentsLoop)
{
    const auto document = openPDF(pdfBytesOfObjects({
        "<< /Type /Catalog /Pages 2 0 R >>",
        "<< /Type /Pages /Kids [3 0 R] /Count 1 /Parent 2 0 R >>",
        "<< /Type /Page /Parent 3 0 R >>",
    }));
    EXPECT_EQ(box(document, kCGPDFMediaBox), "0 0 612 792");
}

TEST(CGPDFPageGetRotationAngle, IsAQuarterTurn)
{
    EXPECT_EQ(angle(pageWith("")), 0);
    EXPECT_EQ(angle(pageWith("/Rotate 90")), 90);
    EXPECT_EQ(angle(pageWith("/Rotate -90")), 270);
    EXPECT_EQ(angle(pageWith("/Rotate 540")), 180);
    EXPECT_EQ(angle(pageWith("/Rotate 360")), 0);
    EXPECT_EQ(angle(pageWith("/Rotate 45")), 0);
    EXPECT_EQ(angle(pageWith("/Rotate /Left")), 0);
    EXPECT_EQ(angle(pageWith("", "/Rotate 270")), 270);
    EXPECT_EQ(CGPDFPageGetRotationAngle(nullptr), 0);
}

/// Where the drawing transform maps the lower left and the upper right corner of the page's box (10, 20) to
/// (50, 100).
std::string mappedCorners(std::string_view entries, CGRect rect, int rotate, bool preserveAspectRatio)
{
    const auto document = pageWith("/MediaBox [10 20 50 100] " + std::string(entries));
    const auto transform = CGPDFPageGetDrawingTransform(
        CGPDFDocumentGetPage(document, 1), kCGPDFMediaBox, rect, rotate, preserveAspectRatio);
    return describe(CGPointApplyAffineTransform(CGPointMake(10, 20), transform)) + ", "
        + describe(CGPointApplyAffineTransform(CGPointMake(50, 100), transform));
}

TEST(CGPDFPageGetDrawingTransform, CentersWithoutEnlarging)
{
    EXPECT_EQ(mappedCorners("", CGRectMake(0, 0, 40, 80), 0, true), "0 0, 40 80");
    EXPECT_EQ(mappedCorners("", CGRectMake(100, 200, 60, 100), 0, true), "110 210, 150 290");
}

TEST(CGPDFPageGetDrawingTransform, ScalesDown)
{
    EXPECT_EQ(mappedCorners("", CGRectMake(0, 0, 40, 40), 0, true), "10 0, 30 40");
    EXPECT_EQ(mappedCorners("", CGRectMake(0, 0, 40, 40), 0, false), "0 0, 40 40");
    EXPECT_EQ(mappedCorners("", CGRectMake(0, 0, 10, 100), 0, false), "0 10, 10 90");
}

TEST(CGPDFPageGetDrawingTransform, TurnsClockwise)
{
    const auto rect = CGRectMake(0, 0, 80, 80);
    EXPECT_EQ(mappedCorners("/Rotate 90", rect, 0, true), "0 60, 80 20");
    EXPECT_EQ(mappedCorners("/Rotate 180", rect, 0, true), "60 80, 20 0");
    EXPECT_EQ(mappedCorners("/Rotate 270", rect, 0, true), "80 20, 0 60");
    EXPECT_EQ(mappedCorners("", rect, 90, true), "0 60, 80 20");
    EXPECT_EQ(mappedCorners("/Rotate 90", rect, -90, true), "20 0, 60 80");
    EXPECT_EQ(mappedCorners("/Rotate 270", rect, 180, true), "0 60, 80 20");
    EXPECT_EQ(mappedCorners("", rect, 45, true), "20 0, 60 80");
}

TEST(CGPDFPageGetDrawingTransform, IsTheIdentityWithoutPageBoxOrRectangle)
{
    EXPECT_TRUE(CGAffineTransformIsIdentity(
        CGPDFPageGetDrawingTransform(nullptr, kCGPDFMediaBox, CGRectMake(0, 0, 9, 9), 0, true)));
    const auto document = pageWith("/MediaBox [10 20 50 100]");
    const auto page = CGPDFDocumentGetPage(document, 1);
    EXPECT_TRUE(CGAffineTransformIsIdentity(
        CGPDFPageGetDrawingTransform(page, CGPDFBox(-1), CGRectMake(0, 0, 9, 9), 0, true)));
    EXPECT_TRUE(
        CGAffineTransformIsIdentity(CGPDFPageGetDrawingTransform(page, kCGPDFMediaBox, CGRectZero, 0, true)));
}

TEST(CGContextDrawPDFPage, AppliesNeitherRotationNorOriginNorBox)
{
    const auto document = makePDF("0 0 2 1 re f", "", "/MediaBox [1 1 5 5] /CropBox [2 2 4 4] /Rotate 90");
    EXPECT_COVERAGE(drawPage(document, 1, 4, 2),
        "...."
        "##..");
}

TEST(CGContextDrawPDFPage, ScalesWithTheContext)
{
    EXPECT_COVERAGE(drawPage(makePDF("0.5 0.5 1 1 re f"), 1, 2, 2, 2),
        "...."
        ".##."
        ".##."
        "....");
}

TEST(CGContextDrawPDFPage, KeepsTheGraphicsState)
{
    const auto document = makePDF("1 0 0 rg 0.5 w 2 J [1] 0 d 2 2 2 2 re W n 0 0 4 4 re f");
    Canvas canvas(8, 8);
    CGContextSetRGBFillColor(canvas.context(), 0, 1, 0, 1);
    CGContextDrawPDFPage(canvas.context(), CGPDFDocumentGetPage(document, 1));
    CGContextFillRect(canvas.context(), CGRectMake(0, 0, 1, 1));
    EXPECT_EQ(canvas.pixel(0, 7), rgba(0, 255, 0, 255));
    EXPECT_EQ(canvas.pixel(2, 5), rgba(255, 0, 0, 255));
}

TEST(CGContextDrawPDFPage, DrawsIntoAlphaOnlyContexts)
{
    const auto document = makePDF("1 0 0 rg 0 0 2 1 re f");
    Canvas canvas(3, 2, Canvas::Format::AlphaOnly);
    CGContextDrawPDFPage(canvas.context(), CGPDFDocumentGetPage(document, 1));
    EXPECT_COVERAGE(canvas,
        "..."
        "##.");
}

TEST(CGContextDrawPDFPage, IgnoresNull)
{
    const auto document = makePDF("0 0 2 1 re f");
    CGContextDrawPDFPage(nullptr, CGPDFDocumentGetPage(document, 1));
    Canvas canvas(2, 1);
    CGContextDrawPDFPage(canvas.context(), nullptr);
    EXPECT_COVERAGE(canvas, "..");
}

} // namespace
