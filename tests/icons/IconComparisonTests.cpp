// Icons drawn by Core Graphics beside the same icons drawn large by two other programs and averaged down,
// where those agree with each other: at the size of an icon they are less exact than we are.

#include "ForeignPDFs.h"
#include "Picture.h"
#include "support/IconPDFs.h"
#include "support/TemporaryFolder.h"

#include <Foundation/NSURL.h>

#include <gtest/gtest.h>

namespace {

constexpr double points = 24;

struct References {
    Picture poppler;
    Picture mupdf;
};

RetainPtr<CGPDFDocument> open(const std::string& path)
{
    const auto url = NSURL::fileURLWithPath(path.c_str());
    return adopt(CGPDFDocumentCreateWithURL(url));
}

References references(const std::string& path, const TemporaryFolder& folder)
{
    return {drawnByPoppler(path, folder.path()), drawnByMuPDF(path, folder.path())};
}

void expectSameInk(const Picture& ours, const Picture& reference)
{
    const Ink a = ink(ours);
    const Ink b = ink(reference);
    constexpr double half = 0.5 / points;
    EXPECT_NEAR(CGRectGetMinX(a.box), CGRectGetMinX(b.box), half);
    EXPECT_NEAR(CGRectGetMaxX(a.box), CGRectGetMaxX(b.box), half);
    EXPECT_NEAR(CGRectGetMinY(a.box), CGRectGetMinY(b.box), half);
    EXPECT_NEAR(CGRectGetMaxY(a.box), CGRectGetMaxY(b.box), half);
    EXPECT_NEAR(a.area, b.area, 0.03 * b.area + 1 / (points * points));
}

/// The ink of the page is where both programs paint it.
void expectSameInk(const std::string& name, const std::string& path, const TemporaryFolder& folder)
{
    SCOPED_TRACE(name);
    const auto document = open(path);
    ASSERT_TRUE(document);
    const auto others = references(path, folder);
    const auto ours = drawn(document, 256);
    expectSameInk(ours, shrunk(others.poppler, 4));
    expectSameInk(ours, shrunk(others.mupdf, 4));
}

TEST(IconComparisonTest, InkOfOurIconsIsWhereOtherProgramsPaintIt)
{
    const TemporaryFolder folder;
    for (const auto& icon : iconPDFs())
        expectSameInk(icon.name, folder.write("icon.pdf", icon.file), folder);
}

TEST(IconComparisonTest, InkOfForeignFilesIsWhereOtherProgramsPaintIt)
{
    const TemporaryFolder folder;
    for (const auto& file : writeForeignPDFs(folder.path()))
        expectSameInk(file.name, file.path, folder);
}

TEST(IconComparisonTest, InkOfAPageByTeXIsWhereOtherProgramsPaintIt)
{
    const TemporaryFolder folder;
    const auto file = writeTeXPDF(folder.path());
    expectSameInk(file.name, file.path, folder);
}

// Several hundred megabytes: the tests do without where it is not installed.
TEST(IconComparisonTest, InkOfADrawingByLibreOfficeIsWhereOtherProgramsPaintIt)
{
    const TemporaryFolder folder;
    const auto file = writeLibreOfficePDF(folder.path());
    if (!file)
        GTEST_SKIP() << "LibreOffice (soffice) is not installed";
    expectSameInk(file->name, file->path, folder);
}

TEST(IconComparisonTest, SingleLayersDifferLittleFromTheMeanOfManyPixels)
{
    const TemporaryFolder folder;
    int compared = 0;
    int close = 0;
    std::string far;
    for (const auto& icon : iconPDFs()) {
        if (!icon.isSingleLayer)
            continue;
        const auto path = folder.write("icon.pdf", icon.file);
        const auto others = references(path, folder);
        const auto document = open(path);
        ASSERT_TRUE(document) << icon.name;
        for (const int pixels : {16, 32, 64}) {
            const int factor = 1024 / pixels;
            const auto found = difference(
                drawn(document, pixels), shrunk(others.poppler, factor), shrunk(others.mupdf, factor));
            const bool isClose = found.mean <= 1 && found.highest <= 16;
            ++compared;
            close += isClose ? 1 : 0;
            if (!isClose) {
                far += icon.name + " at " + std::to_string(pixels) + ": mean " + std::to_string(found.mean)
                    + ", highest " + std::to_string(found.highest) + "\n";
            }
        }
    }
    ASSERT_GE(compared, 3 * 15);
    EXPECT_GE(close, 0.95 * compared) << far;
}

} // namespace
