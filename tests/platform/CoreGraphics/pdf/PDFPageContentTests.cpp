#include "Foundation/testing/NSLogCapture.h"
#include "support/PDFPages.h"

#include <gtest/gtest.h>

namespace {

/// The page of a file whose page dictionary has these entries, and its parent those.
Canvas drawPageWith(const std::string& entries, const std::vector<PDFObjectText>& streams,
    const std::string& parentEntries = "")
{
    std::vector<PDFObjectText> objects{"<< /Type /Catalog /Pages 2 0 R >>",
        "<< /Type /Pages /Kids [3 0 R] /Count 1 " + parentEntries + " >>",
        "<< /Type /Page /Parent 2 0 R " + entries + " >>"};
    objects.insert(objects.end(), streams.begin(), streams.end());
    return drawPage(openPDF(pdfBytesOfObjects(objects)), 1, 4, 1);
}

TEST(PDFPageContent, MayBeSplitBetweenTokens)
{
    EXPECT_COVERAGE(
        drawPageWith("/Contents [4 0 R 5 0 R]", {pdfStream("", "q 0 0 1"), pdfStream("", "1 re f")}), "#...");
    EXPECT_COVERAGE(drawPageWith("/Contents [4 0 R 5 0 R]",
                        {pdfStream("", "q 1 0 0 1 2 0 cm"), pdfStream("", "0 0 1 1 re f Q 0 0 1 1 re f")}),
        "#.#.");
}

TEST(PDFPageContent, MayBeMissingOrDamaged)
{
    const NSLogCapture capture;
    EXPECT_COVERAGE(drawPageWith("", {}), "....");
    EXPECT_COVERAGE(drawPageWith("/Contents 9 0 R", {}), "....");
    EXPECT_COVERAGE(drawPageWith("/Contents [/A 4 0 R null]", {pdfStream("", "0 0 1 1 re f")}), "#...");
    EXPECT_TRUE(capture.messages().empty());
    EXPECT_COVERAGE(drawPageWith("/Contents 4 0 R", {pdfStream("/Filter /Unknown", "0 0 1 1 re f")}), "....");
    const std::vector<std::string> expected{"CGPDF: page 1 of a document: a stream cannot be decoded"};
    EXPECT_EQ(capture.messages(), expected);
}

TEST(PDFPageContent, DecodesFilters)
{
    EXPECT_COVERAGE(drawPageWith("/Contents 4 0 R",
                        {pdfStream("/Filter /ASCIIHexDecode", "30203020312031207265206620>")}),
        "#...");
    // "0 0 1 1 re f" in hexadecimal, of which the run-length filter copies 26 characters.
    EXPECT_COVERAGE(drawPageWith("/Contents 4 0 R",
                        {pdfStream("/Filter [/RunLengthDecode /ASCIIHexDecode]",
                            std::string("\x19") + "30203020312031207265206620" + "\x80")}),
        "#...");
}

TEST(PDFPageContent, UsesWhatWasDecodedBeforeAnError)
{
    EXPECT_COVERAGE(drawPageWith("/Contents 4 0 R",
                        {pdfStream("/Filter /ASCIIHexDecode", "302030203120312072652066200a!!")}),
        "#...");
}

TEST(PDFPageContent, InheritsResources)
{
    const std::string half = "/Resources << /ExtGState << /A << /ca 0.5 >> >> >>";
    const std::vector<PDFObjectText> content{pdfStream("", "/A gs 0 0 1 1 re f")};
    EXPECT_COVERAGE(drawPageWith("/Contents 4 0 R", content, half), "+...");
    EXPECT_COVERAGE(drawPageWith("/Contents 4 0 R /Resources << >>", content, half), "#...");
}

TEST(PDFPageContent, IgnoresTheUserUnit)
{
    EXPECT_COVERAGE(drawPageWith("/UserUnit 2 /Contents 4 0 R", {pdfStream("", "0 0 1 1 re f")}), "#...");
}

} // namespace
