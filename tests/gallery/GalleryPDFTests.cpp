// The option --pdf, and the page of PDF icons.

#include "GalleryPictures.h"
#include "Page.h"
#include "PageNamed.h"
#include "support/PDFPages.h"
#include "support/TemporaryFolder.h"

#include <KorvidAppKit/ZRPDFView.h>

#include <gtest/gtest.h>

namespace {

/// A square page of one colour.
std::string filledPage(const std::string& color)
{
    return pdfBytes(color + " rg 0 0 16 16 re f");
}

/// The views below `view` that show a PDF page, from its first card.
std::vector<ZRPDFView*> pdfViewsOf(const NSView& view)
{
    std::vector<ZRPDFView*> found;
    for (const auto& subview : view.subviews()) {
        if (auto* pdfView = dynamic_cast<ZRPDFView*>(subview.get()))
            found.push_back(pdfView);
        const auto below = pdfViewsOf(*subview);
        found.insert(found.end(), below.begin(), below.end());
    }
    return found;
}

GalleryOptions parse(std::vector<std::string> words)
{
    words.insert(words.begin(), "gallery");
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    return GalleryOptions::parse(static_cast<int>(arguments.size()), arguments.data());
}

} // namespace

TEST(Gallery, ShowsTheUsersPDFFiles)
{
    const TemporaryFolder folder;
    const std::string red = folder.write("red.pdf", filledPage("1 0 0"));
    const auto result = runGalleryProgram(
        {"--pdf", red, "--page", "pdf", "--page", "qr", "--snapshot", folder.path().string()});
    EXPECT_EQ(result.exitCode, 0) << result.error;
    EXPECT_EQ(result.error, "");
    const auto& unchanged = GalleryPictures::shared();
    EXPECT_EQ(contentOf(folder.file("qr.png")), contentOf(unchanged.file("qr.png")));
    // The first card, upper left, shows the page in its own colour; the second one not.
    for (const int scale : {1, 2}) {
        const Picture own(folder.file(scale == 1 ? "pdf.png" : "pdf@2x.png"), scale);
        const CGFloat y = own.size().height - kGalleryMargin - 60;
        EXPECT_EQ(own.at(kGalleryMargin + 125, y), (Components{255, 0, 0, 255}));
        EXPECT_NE(own.at(kGalleryMargin + 125 + 264, y), (Components{255, 0, 0, 255}));
    }
}

TEST(Gallery, TakesSeveralPDFFilesAfterOneOption)
{
    const TemporaryFolder folder;
    const std::string a = folder.write("a.pdf", filledPage("1 0 0"));
    const std::string b = folder.write("b.pdf", filledPage("0 1 0"));
    EXPECT_EQ(parse({}).pdfs.size(), 0U);
    EXPECT_EQ(parse({"--pdf", a}).pdfs.size(), 1U);
    EXPECT_EQ(parse({"--pdf", a, b, a, "--still"}).pdfs.size(), 3U);
    EXPECT_EQ(parse({"--pdf", a, "--pdf", b}).pdfs.size(), 2U);
    EXPECT_EQ(parse({"--pdf=" + a, "--still"}).pdfs.size(), 1U);
    EXPECT_TRUE(parse({"--pdf", a, b, "--still"}).isStill);
}

TEST(Gallery, RejectsAFileThatIsNotAPDFDocument)
{
    const TemporaryFolder folder;
    const std::string good = folder.write("good.pdf", filledPage("1 0 0"));
    expectRefusal(runGalleryProgram({"--pdf", folder.file("none.pdf")}), "none.pdf': No such file");
    expectRefusal(runGalleryProgram({"--pdf", folder.path()}), "cannot read a PDF document from");
    expectRefusal(
        runGalleryProgram({"--pdf", folder.write("bad.pdf", "words")}), "bad.pdf' is not a PDF document");
    expectRefusal(
        runGalleryProgram({"--pdf", good, folder.file("bad.pdf")}), "bad.pdf' is not a PDF document");
    expectRefusal(runGalleryProgram({"--pdf", folder.write("empty.pdf", "")}), "empty.pdf' is empty");
    expectRefusal(runGalleryProgram(std::vector<std::string>{"--pdf"}), "--pdf needs a value");
    // Only files follow files.
    expectRefusal(runGalleryProgram({"--pdf=" + good, good}), "there is no option");
}

TEST(PDFPage, ShowsTheGallerysOwnIcons)
{
    const auto page = makePageNamed("pdf");
    ASSERT_TRUE(page);
    const auto views = pdfViewsOf(*page);
    ASSERT_EQ(views.size(), 8U + 8 + 3); // plain, tinted and in the fill modes
    for (const ZRPDFView* view : views) {
        ASSERT_TRUE(view->pdf());
        EXPECT_EQ(view->pdf()->numberOfPages(), 1U);
        EXPECT_EQ(view->pdf()->cropBoxForPage(1).size.width, 32);
    }
    EXPECT_EQ(views[0]->pdfColorPlatform(), nullptr);
    EXPECT_NE(views[8]->pdfColorPlatform(), nullptr);
    for (const int mode : {0, 1, 2})
        EXPECT_EQ(views[16 + std::size_t(mode)]->fillMode(), mode);
}

TEST(PDFPage, ShowsEachPageOfAFileUpToALimit)
{
    std::string kids;
    std::vector<PDFObjectText> objects{"<< /Type /Catalog /Pages 2 0 R >>", ""};
    for (int i = 0; i < 30; ++i) {
        kids += std::to_string(3 + i) + " 0 R ";
        objects.push_back("<< /Type /Page /Parent 2 0 R /MediaBox [0 0 9 9] >>");
    }
    objects[1] = "<< /Type /Pages /Kids [" + kids + "] /Count 30 >>";
    const TemporaryFolder folder;
    const auto page =
        makePageNamed("pdf", parse({"--pdf", folder.write("book.pdf", pdfBytesOfObjects(objects))}));
    const auto views = pdfViewsOf(*page);
    ASSERT_EQ(views.size(), 24U + 24 + 3);
    for (std::size_t i = 0; i < 24; ++i)
        EXPECT_EQ(views[i]->pdfPageNum(), NSInteger(i + 1));
}
