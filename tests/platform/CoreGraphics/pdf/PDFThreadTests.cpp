// Pages drawn on several threads at a time. The thread sanitizer runs these, too.

#include "support/IconPDFs.h"
#include "support/PDFPages.h"
#include "support/Threads.h"

#include <CoreGraphics/CGColorSpace.h>

#include <algorithm>
#include <array>
#include <gtest/gtest.h>

namespace {

constexpr int kThreads = 8;
constexpr std::size_t kSide = 32; // pixels, of pages of 24 points

using Pixels = std::vector<unsigned char>;

Pixels draw(const RetainPtr<CGPDFDocument>& document)
{
    Pixels pixels(4 * kSide * kSide);
    const auto space = adopt(CGColorSpaceCreateDeviceRGB());
    const auto context = adopt(CGBitmapContextCreate(
        pixels.data(), kSide, kSide, 8, 4 * kSide, space, kCGImageAlphaPremultipliedLast));
    CGContextScaleCTM(context, kSide / 24.0, kSide / 24.0);
    CGContextDrawPDFPage(context, CGPDFDocumentGetPage(document, 1));
    return pixels;
}

bool isEmpty(const Pixels& pixels)
{
    return std::ranges::all_of(pixels, [](unsigned char byte) { return byte == 0; });
}

/// The icons, and text in a font of the system.
std::vector<IconPDF> pages()
{
    auto result = iconPDFs();
    result.push_back({"installed font", true,
        pdfBytes("BT /F 12 Tf 2 6 Td (Ag7) Tj ET",
            "/Font << /F << /Type /Font /Subtype /Type1 /BaseFont /Helvetica >> >>",
            "/MediaBox [0 0 24 24]")});
    return result;
}

} // namespace

TEST(PDFThreads, DrawOneDocumentAlike)
{
    for (const auto& page : pages()) {
        SCOPED_TRACE(page.name);
        const auto document = openPDF(page.file); // recorded by the first thread that comes, drawn by all
        std::array<Pixels, kThreads> pictures;
        onThreads(kThreads, [&](int thread) { pictures[std::size_t(thread)] = draw(document); });
        EXPECT_FALSE(isEmpty(pictures[0]));
        for (const Pixels& picture : pictures)
            EXPECT_TRUE(picture == pictures[0]);
    }
}

TEST(PDFThreads, OpenAndDrawDocumentsOfTheirOwnAlike)
{
    const auto files = pages();
    std::array<std::vector<Pixels>, kThreads> pictures;
    onThreads(kThreads, [&](int thread) {
        for (const auto& page : files)
            pictures[std::size_t(thread)].push_back(draw(openPDF(page.file)));
    });
    for (const auto& ofThread : pictures)
        EXPECT_TRUE(ofThread == pictures[0]);
}
