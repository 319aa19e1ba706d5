#include "PDFDrawing.h"

#include <AppKit/NSImage.h>
#include <CoreGraphics/CGImage.h>

#include "Foundation/testing/NSLogCapture.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

/// The image and the size that was stored; (-1, -1) where none was.
struct Rasterized {
    RetainPtr<CGImage> image;
    CGSize actual{-1, -1};
};

Rasterized rasterize(const ZRPDF& pdf, NSInteger number, CGSize size)
{
    Rasterized result;
    result.image = adopt(pdf.createCGImageForPage(number, size, &result.actual));
    return result;
}

/// "width height" of the image in pixels, "null" for none.
std::string sizeOf(const RetainPtr<CGImage>& image)
{
    if (!image)
        return "null";
    return describe(CGSizeMake(double(CGImageGetWidth(image)), double(CGImageGetHeight(image))));
}

/// The image on a canvas of its own size.
Rendering shown(CGImageRef image)
{
    const int width = int(CGImageGetWidth(image)), height = int(CGImageGetHeight(image));
    Rendering rendering = transparentRendering(width, height);
    CGContextDrawImage(rendering.context(), CGRectMake(0, 0, width, height), image);
    return rendering;
}

/// A document whose pages seem to have another crop box.
class CroppedPDF : public ZRPDF {
public:
    CroppedPDF(const std::string& path, CGSize size)
        : ZRPDF(NSURL::fileURLWithPath(NSString(path)))
        , _size(size)
    {
    }
    CGRect cropBoxForPage(NSInteger) const override { return {CGPointZero, _size}; }

private:
    CGSize _size;
};

constexpr char kNoSize[] = "Bailing on CG image creation to avert divide-by-zero";
constexpr char kNoCropBox[] = "Bailing on CG image creation to avert cropbox divide-by-zero";

} // namespace

TEST(ZRPDFRasterizing, ThePageIsCentredAtItsOwnSizeOnACanvasThatCoversTheRequest)
{
    const auto pdf = loadQuarters();
    const Rasterized result = rasterize(*pdf, 1, CGSizeMake(50, 50));
    ASSERT_EQ(sizeOf(result.image), "50 100");
    EXPECT_EQ(describe(result.actual), "50 100");
    // The middle of the page: 25 points are missing on the left and right, 50 above and below.
    const Rendering r = shown(result.image);
    EXPECT_EQ(r.at(0, 0), kRed);
    EXPECT_EQ(r.at(24.5, 49.5), kRed);
    EXPECT_EQ(r.at(25.5, 49.5), kGreen);
    EXPECT_EQ(r.at(24.5, 50.5), kBlue);
    EXPECT_EQ(r.at(25.5, 50.5), kBlack);
    EXPECT_EQ(r.at(49.5, 99.5), kBlack);
}

TEST(ZRPDFRasterizing, APageSmallerThanTheCanvasLeavesAMargin)
{
    const auto pdf = loadPage("1 0 0 rg 0 0 5 10 re f 0 0 1 rg 5 0 5 10 re f", "/MediaBox [0 0 10 10]");
    const Rasterized result = rasterize(*pdf, 1, CGSizeMake(20, 30));
    ASSERT_EQ(sizeOf(result.image), "30 30");
    const Rendering r = shown(result.image);
    EXPECT_EQ(paintedBox(r, 1), "10 10 10 10");
    EXPECT_EQ(r.at(14.5, 15), kRed);
    EXPECT_EQ(r.at(15.5, 15), kBlue);
}

TEST(ZRPDFRasterizing, TheCanvasHasThePagesAspectAndIsRounded)
{
    const auto actual = [](const char* box, double width, double height) {
        const auto pdf = loadPage("", std::string("/MediaBox [0 0 ") + box + "]");
        const Rasterized result = rasterize(*pdf, 1, CGSizeMake(width, height));
        EXPECT_EQ(sizeOf(result.image), describe(result.actual));
        return describe(result.actual);
    };
    EXPECT_EQ(actual("100 200", 50, 100), "50 100"); // the same aspect
    EXPECT_EQ(actual("100 200", 10, 100), "50 100"); // narrower: the width grows
    EXPECT_EQ(actual("200 100", 100, 10), "100 50"); // wider: the height grows
    EXPECT_EQ(actual("200 100", 10, 100), "200 100");
    EXPECT_EQ(actual("10 10", 2.5, 2), "3 3"); // halves are rounded away from zero
    EXPECT_EQ(actual("10 10", 2.49, 2), "2 2");
    EXPECT_EQ(actual("30 20", 1, 3), "5 3"); // 4.5
    EXPECT_EQ(actual("20 30", 3, 1), "3 5");
    EXPECT_EQ(
        actual("3 2", 0.1, 10.3), "15 10"); // 15.45: the exact sizes are rounded, not the rounded ones scaled
    EXPECT_EQ(actual("3 2", 0.1, 10.4), "16 10"); // 15.6
}

TEST(ZRPDFRasterizing, TheAspectIsThatOfTheExactCropBox)
{
    // 2.5 to 1, not 3 to 1 as for whole points. The page is centred by whole points: 3 x 1 in 25 x 10.
    const auto pdf = loadPage("0 0 3 1 re f", "/MediaBox [0 0 9 9] /CropBox [0 0 2.5 1]");
    const Rasterized result = rasterize(*pdf, 1, CGSizeMake(1, 10));
    ASSERT_EQ(describe(result.actual), "25 10");
    EXPECT_TRUE(covers(shown(result.image).canvas(), CGRectMake(11, 4.5, 3, 1), 0.6));
}

TEST(ZRPDFRasterizing, ActualMayBeNull)
{
    const auto pdf = loadQuarters();
    EXPECT_EQ(sizeOf(adopt(pdf->createCGImageForPage(1, CGSizeMake(50, 50), nullptr))), "50 100");
}

TEST(ZRPDFRasterizing, ImagesArePremultipliedRGBAInSRGB)
{
    const Rasterized result = rasterize(*loadQuarters(), 1, CGSizeMake(50, 50));
    EXPECT_EQ(CGImageGetBitsPerComponent(result.image), 8U);
    EXPECT_EQ(CGImageGetBitsPerPixel(result.image), 32U);
    EXPECT_EQ(CGImageGetBytesPerRow(result.image), 200U);
    EXPECT_EQ(CGImageGetAlphaInfo(result.image), kCGImageAlphaPremultipliedLast);
    const auto name = CGColorSpaceCopyName(CGImageGetColorSpace(result.image));
    EXPECT_EQ(name, NSString(kCGColorSpaceSRGB));
}

TEST(ZRPDFRasterizing, AMissingPageGivesNothingSilently)
{
    const auto pdf = loadQuarters();
    const NSLogCapture log;
    for (const NSInteger number : {0, -1, 2}) {
        const Rasterized result = rasterize(*pdf, number, CGSizeMake(0, 0)); // tested before the size
        EXPECT_EQ(result.image, nullptr);
        EXPECT_EQ(describe(result.actual), "-1 -1");
        EXPECT_EQ(pdf->rasterizedNSImageForPage(number, CGSizeMake(50, 50)), nullptr);
    }
    EXPECT_EQ(log.messages(), std::vector<std::string>{});
}

TEST(ZRPDFRasterizing, ARequestWithoutAreaIsLogged)
{
    const auto pdf = loadQuarters();
    for (const CGSize size : {CGSizeMake(0, 10), CGSizeMake(10, 0), CGSizeMake(0, 0), CGSizeMake(-0.0, 10)}) {
        const NSLogCapture log;
        const Rasterized result = rasterize(*pdf, 1, size);
        EXPECT_EQ(result.image, nullptr);
        EXPECT_EQ(describe(result.actual), "-1 -1");
        EXPECT_EQ(log.messages(), std::vector<std::string>{kNoSize});
    }
}

TEST(ZRPDFRasterizing, ACropBoxWithoutAreaIsLogged)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("a.pdf", pdfFile({{""}}));
    for (const CGSize size : {CGSizeMake(0, 10), CGSizeMake(10, 0), CGSizeMake(0, 0)}) {
        const auto pdf = make<CroppedPDF>(path, size);
        const NSLogCapture log;
        const Rasterized result = rasterize(*pdf, 1, CGSizeMake(10, 10));
        EXPECT_EQ(result.image, nullptr);
        EXPECT_EQ(describe(result.actual), "-1 -1");
        EXPECT_EQ(log.messages(), std::vector<std::string>{kNoCropBox});
    }
    const NSLogCapture log; // the request is looked at first
    rasterize(*make<CroppedPDF>(path, CGSizeZero), 1, CGSizeZero);
    EXPECT_EQ(log.messages(), std::vector<std::string>{kNoSize});
}

TEST(ZRPDFRasterizing, ACanvasThatCannotBeMadeLeavesActualAsItWas)
{
    const auto pdf = loadQuarters();
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    for (const CGSize size :
        {CGSizeMake(0.1, 0.1), CGSizeMake(-5, -5), CGSizeMake(kNaN, 5), CGSizeMake(kInfinity, 5),
            CGSizeMake(kInfinity, kInfinity), CGSizeMake(1e300, 1e300), CGSizeMake(1e5, 1)}) {
        SCOPED_TRACE(describe(size));
        const NSLogCapture log;
        const Rasterized result = rasterize(*pdf, 1, size);
        EXPECT_EQ(result.image, nullptr);
        EXPECT_EQ(describe(result.actual), "-1 -1");
        EXPECT_EQ(pdf->rasterizedNSImageForPage(1, size), nullptr);
    }
}

TEST(ZRPDFRasterizing, AnNSImageIsAsLargeAsTheImageHasPixels)
{
    const auto image = loadQuarters()->rasterizedNSImageForPage(1, CGSizeMake(50, 50));
    ASSERT_TRUE(image);
    EXPECT_EQ(describe(image->size()), "50 100");
    const Rendering rendering = transparentRendering(50, 100);
    const CurrentContext current(rendering.context());
    image->drawInRect(NSMakeRect(0, 0, 50, 100));
    EXPECT_EQ(rendering.at(24.5, 49.5), kRed);
    EXPECT_EQ(rendering.at(25.5, 50.5), kBlack);
}
