#include <CoreGraphics/CGPDFDocument.h>

#include "Foundation/testing/NSLogCapture.h"
#include "support/PDFPages.h"
#include "support/TemporaryFolder.h"
#include "support/Threads.h"

#include <Foundation/NSURL.h>

#include <filesystem>
#include <gtest/gtest.h>

namespace {

RetainPtr<CGPDFDocument> openFile(const std::string& path)
{
    const auto url = NSURL::fileURLWithPath(NSString(path));
    return adopt(CGPDFDocumentCreateWithURL(url));
}

const std::string kRedSquare = "1 0 0 rg 4 4 8 8 re f";

/// A file whose page tree is `objects` from object 2 on.
RetainPtr<CGPDFDocument> documentWithTree(std::vector<PDFObjectText> objects)
{
    objects.insert(objects.begin(), "<< /Type /Catalog /Pages 2 0 R >>");
    return openPDF(pdfBytesOfObjects(objects));
}

TEST(CGPDFDocument, OpensAFile)
{
    const TemporaryFolder folder;
    const auto document = openFile(folder.write("red.pdf", pdfBytes(kRedSquare)));
    ASSERT_TRUE(document);
    EXPECT_EQ(CGPDFDocumentGetNumberOfPages(document), 1u);
}

TEST(CGPDFDocument, ReadsTheWholeFileAtItsCreation)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("red.pdf", pdfBytes(kRedSquare));
    const auto document = openFile(path);
    ASSERT_TRUE(document);
    std::filesystem::remove(path);
    EXPECT_EQ(drawPage(document, 1, 16, 16).pixel(8, 8), rgba(255, 0, 0, 255));
}

TEST(CGPDFDocument, IsNullForWhatCannotBeRead)
{
    const TemporaryFolder folder;
    EXPECT_EQ(CGPDFDocumentCreateWithURL(nullptr), nullptr);
    EXPECT_EQ(CGPDFDocumentCreateWithProvider(nullptr), nullptr);
    EXPECT_FALSE(openFile(folder.file("missing.pdf")));
    EXPECT_FALSE(openFile(folder.path().string()));
    EXPECT_FALSE(openFile(folder.write("empty.pdf", "")));
    EXPECT_FALSE(openFile(folder.write("text.pdf", "This is a letter, not a page.")));
    const auto remote = NSURL::URLWithString("https://example.org/a.pdf");
    EXPECT_EQ(CGPDFDocumentCreateWithURL(remote), nullptr);
}

TEST(CGPDFDocument, IsNullForAFileThatIsTooLarge)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("large.pdf", pdfBytes(kRedSquare));
    std::filesystem::resize_file(path, (64 << 20) + 1);
    EXPECT_FALSE(openFile(path));
    std::filesystem::resize_file(path, 1 << 20);
    EXPECT_TRUE(openFile(path));
}

TEST(CGPDFDocument, IsNullWithoutPages)
{
    EXPECT_FALSE(documentWithTree({"<< /Type /Pages /Kids [] /Count 0 >>"}));
    EXPECT_FALSE(documentWithTree({"null"}));
}

TEST(CGPDFDocument, NumbersPagesInTheOrderOfTheTree)
{
    const auto document = documentWithTree({
        "<< /Type /Pages /Kids [3 0 R 6 0 R] /Count 3 >>",
        "<< /Type /Pages /Parent 2 0 R /Kids [4 0 R 5 0 R] /Count 2 >>",
        "<< /Type /Page /Parent 3 0 R /MediaBox [0 0 1 1] >>",
        "<< /Type /Page /Parent 3 0 R /MediaBox [0 0 2 2] >>",
        "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 3 3] >>",
    });
    ASSERT_EQ(CGPDFDocumentGetNumberOfPages(document), 3u);
    for (std::size_t number = 1; number <= 3; ++number) {
        const auto page = CGPDFDocumentGetPage(document, number);
        EXPECT_EQ(CGPDFPageGetBoxRect(page, kCGPDFMediaBox).size.width, double(number));
        EXPECT_EQ(CGPDFPageGetPageNumber(page), number);
        EXPECT_EQ(CGPDFPageGetDocument(page), document.get());
    }
    EXPECT_EQ(CGPDFDocumentGetPage(document, 0), nullptr);
    EXPECT_EQ(CGPDFDocumentGetPage(document, 4), nullptr);
    EXPECT_EQ(CGPDFDocumentGetPage(nullptr, 1), nullptr);
    EXPECT_EQ(CGPDFDocumentGetNumberOfPages(nullptr), 0u);
}

TEST(CGPDFDocument, CountsEachPageOnceWhereTheTreeLoops)
{
    const auto document = documentWithTree({
        "<< /Type /Pages /Kids [3 0 R 2 0 R 4 0 R 3 0 R] /Count 1000000 >>",
        "<< /Type /Page /Parent 2 0 R >>",
        "<< /Type /Pages /Parent 4 0 R /Kids [2 0 R 4 0 R 3 0 R] >>",
    });
    EXPECT_EQ(CGPDFDocumentGetNumberOfPages(document), 1u);
}

TEST(CGPDFDocument, HasAtMostTenThousandPages)
{
    std::vector<PDFObjectText> objects{""};
    std::string kids;
    for (int page = 0; page < 10'001; ++page) {
        objects.push_back("<< /Type /Page /Parent 2 0 R >>");
        kids += std::to_string(page + 3) + " 0 R ";
    }
    objects[0] = "<< /Type /Pages /Kids [" + kids + "] >>";
    const auto document = documentWithTree(objects);
    EXPECT_EQ(CGPDFDocumentGetNumberOfPages(document), 10'000u);
}

TEST(CGPDFDocument, RepairsWrongCrossReferences)
{
    std::string bytes = pdfBytes(kRedSquare);
    const std::size_t table = bytes.find("xref\n0");
    std::string wrong = bytes;
    wrong.insert(20, "\n% shifts all objects\n");
    EXPECT_EQ(drawPage(openPDF(wrong), 1, 16, 16).pixel(8, 8), rgba(255, 0, 0, 255));
    EXPECT_EQ(drawPage(openPDF(bytes.substr(0, table) + "trailer << /Root 1 0 R >>"), 1, 16, 16).pixel(8, 8),
        rgba(255, 0, 0, 255));
}

TEST(CGPDFDocument, EndsWithinAnyTruncatedFile)
{
    const std::string bytes = pdfBytes(kRedSquare);
    for (std::size_t length = 0; length < bytes.size(); length += 7) {
        if (const auto document = openPDF(bytes.substr(0, length)))
            drawPage(document, 1, 16, 16);
    }
    EXPECT_TRUE(openPDF(bytes));
}

TEST(CGPDFPage, KeepsItsDocumentAliveWhileItIsRetained)
{
    auto document = makePDF(kRedSquare);
    const RetainPtr<CGPDFPage> page = CGPDFDocumentGetPage(document, 1);
    document = nullptr;
    Canvas canvas(16, 16);
    CGContextDrawPDFPage(canvas.context(), page);
    EXPECT_EQ(canvas.pixel(8, 8), rgba(255, 0, 0, 255));
}

TEST(CGPDFPage, DrawsTheSameOnManyThreads)
{
    const auto document = makePDF("1 0 0 rg 1.3 2.7 9 9 re f 0 0 1 RG 3 w 2 2 m 14 13 l 2 9 12 3 14 1 c S");
    const auto page = CGPDFDocumentGetPage(document, 1);
    std::vector<Canvas> canvases;
    for (int thread = 0; thread < 8; ++thread)
        canvases.emplace_back(16, 16);
    onThreads(8, [&](int thread) { CGContextDrawPDFPage(canvases[std::size_t(thread)].context(), page); });
    EXPECT_NE(canvases[0].alpha(8, 8), 0);
    for (const auto& canvas : canvases) {
        for (int row = 0; row < 16; ++row)
            for (int column = 0; column < 16; ++column)
                ASSERT_EQ(canvas.pixel(column, row), canvases[0].pixel(column, row));
    }
}

TEST(CGPDFPage, LogsOnceADocumentWhatIsNotDrawn)
{
    const TemporaryFolder folder;
    const auto document = openFile(folder.write("odd.pdf", pdfBytes("1 2 what 3 what ever")));
    const NSLogCapture capture;
    drawPage(document, 1, 4, 4);
    drawPage(document, 1, 8, 8);
    const std::vector<std::string> expected{
        "CGPDF: page 1 of odd.pdf: the operator what is unknown",
        "CGPDF: page 1 of odd.pdf: the operator ever is unknown",
    };
    EXPECT_EQ(capture.messages(), expected);
}

TEST(CGPDFPage, LogsNamesOfAFileAsPrintableText)
{
    const NSLogCapture capture;
    drawPage(makePDF("1 w\x1b[\xe4 f"), 1, 4, 4);
    const std::vector<std::string> expected{"CGPDF: page 1 of a document: the operator w? is unknown"};
    EXPECT_EQ(capture.messages(), expected);
}

TEST(CGPDFPage, LogsAtMostSomeLines)
{
    std::string content;
    for (int index = 0; index < 100; ++index)
        content += "odd" + std::to_string(index) + " ";
    const NSLogCapture capture;
    drawPage(makePDF(content), 1, 4, 4);
    EXPECT_EQ(capture.messages().size(), 32u);
}

} // namespace
