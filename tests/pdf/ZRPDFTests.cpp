#include "PDFFiles.h"
#include "support/Describe.h"

#include <KorvidAppKit/ZRPDF.h>

#include <Foundation/NSData.h>
#include <Foundation/NSURL.h>

#include "Foundation/testing/NSLogCapture.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <limits>
#include <string_view>

namespace {

std::string_view text(const NSData& data)
{
    return {static_cast<const char*>(data.bytes()), data.length()};
}

RetainPtr<ZRPDF> open(const std::string& path)
{
    return ZRPDF::initWithURL(NSURL::fileURLWithPath(NSString(path)));
}

/// An object whose document may be missing, as only a subclass can make it.
class HalfBuiltPDF : public ZRPDF {
public:
    explicit HalfBuiltPDF(const char* path)
        : ZRPDF(NSURL::fileURLWithPath(path))
    {
    }
};

} // namespace

TEST(ZRPDF, WithoutAReadableFileThereIsNoObjectAndNoMessage)
{
    const TemporaryFolder folder;
    const NSLogCapture log;
    EXPECT_EQ(ZRPDF::initWithURL(nullptr), nullptr);
    EXPECT_EQ(open(folder.file("missing.pdf")), nullptr);
    EXPECT_EQ(open(folder.path().string()), nullptr);
    EXPECT_EQ(open(folder.write("text.pdf", "not a document")), nullptr);
    EXPECT_EQ(open(folder.write("empty.pdf", "")), nullptr);
    EXPECT_EQ(log.messages(), std::vector<std::string>{});
}

TEST(ZRPDF, OnePageIconHasOnePage)
{
    EXPECT_EQ(loadQuarters()->numberOfPages(), 1U);
}

TEST(ZRPDF, PagesAreNumberedFromOne)
{
    const auto pdf = loadPDF(
        pdfFile({{"", "/MediaBox [0 0 1 1]"}, {"", "/MediaBox [0 0 2 2]"}, {"", "/MediaBox [0 0 3 3]"}}));
    ASSERT_TRUE(pdf);
    EXPECT_EQ(pdf->numberOfPages(), 3U);
    for (const NSInteger number : {1, 2, 3}) {
        EXPECT_EQ(pdf->_pageWithNumber(number), pdf->page(number));
        EXPECT_EQ(CGPDFPageGetBoxRect(pdf->_pageWithNumber(number), kCGPDFCropBox).size.width, number);
    }
    using Limits = std::numeric_limits<NSInteger>;
    for (const NSInteger number : {NSInteger(0), NSInteger(-1), NSInteger(4), Limits::min(), Limits::max()}) {
        EXPECT_EQ(pdf->_pageWithNumber(number), nullptr) << number;
        EXPECT_EQ(pdf->page(number), nullptr) << number;
    }
}

TEST(ZRPDF, WithoutADocumentThereAreNoPages)
{
    const auto pdf = make<HalfBuiltPDF>("/nowhere/icon.pdf");
    EXPECT_EQ(pdf->numberOfPages(), 0U);
    EXPECT_EQ(pdf->_pageWithNumber(1), nullptr);
    EXPECT_EQ(pdf->page(1), nullptr);
    EXPECT_EQ(pdf->pdfData(), nullptr);
}

TEST(ZRPDF, CropBoxIsNotExtendedToWholePoints)
{
    const auto pdf = loadPage("", "/MediaBox [0 0 90 90] /CropBox [10.25 -5 40.5 60.75]");
    EXPECT_EQ(describe(pdf->cropBoxForPage(1)), "10.25 0 30.25 60.75");
}

TEST(ZRPDF, CropBoxMayBeInherited)
{
    const auto pdf =
        loadPDF(pdfFile({{"", ""}, {"", "/CropBox [1 2 3 4]"}}, "/MediaBox [0 0 90 90] /CropBox [5 6 7 8]"));
    EXPECT_EQ(describe(pdf->cropBoxForPage(1)), "5 6 2 2");
    EXPECT_EQ(describe(pdf->cropBoxForPage(2)), "1 2 2 2");
}

TEST(ZRPDF, CropBoxOfAMissingPageIsThatOfNoPage)
{
    const auto pdf = loadQuarters();
    const std::string noPage = describe(CGPDFPageGetBoxRect(nullptr, kCGPDFCropBox));
    for (const NSInteger number : {-1, 0, 2})
        EXPECT_EQ(describe(pdf->cropBoxForPage(number)), noPage) << number;
}

TEST(ZRPDF, DataIsReadAfreshEachTimeWhileThePagesStay)
{
    const TemporaryFolder folder;
    const std::string bytes = pdfFile({{"", "/MediaBox [0 0 1 2]"}});
    const std::string path = folder.write("icon.pdf", bytes);
    const auto pdf = open(path);
    ASSERT_TRUE(pdf);
    EXPECT_EQ(text(*pdf->pdfData()), bytes);
    folder.write("icon.pdf", "other content");
    EXPECT_EQ(text(*pdf->pdfData()), "other content");
    std::filesystem::remove(path);
    EXPECT_EQ(pdf->pdfData(), nullptr);
    EXPECT_EQ(describe(pdf->cropBoxForPage(1)), "0 0 1 2");
}
