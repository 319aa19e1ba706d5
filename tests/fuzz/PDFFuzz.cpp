#include "PDFFuzz.h"

#include "Require.h"

#include <CoreGraphics/CoreGraphics.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr std::size_t side = 24;

template <std::size_t bytesPerPixel> using Pixels = std::array<unsigned char, bytesPerPixel * side * side>;

template <std::size_t bytesPerPixel> Pixels<bytesPerPixel> drawn(CGPDFPageRef page)
{
    Pixels<bytesPerPixel> pixels{};
    const auto space = bytesPerPixel == 1 ? nullptr : adopt(CGColorSpaceCreateDeviceRGB());
    const CGBitmapInfo info = bytesPerPixel == 1 ? kCGImageAlphaOnly : kCGImageAlphaPremultipliedLast;
    const auto context =
        adopt(CGBitmapContextCreate(pixels.data(), side, side, 8, bytesPerPixel * side, space, info));
    CGContextScaleCTM(context, 0.75, 1.5);
    CGContextDrawPDFPage(context, page);
    return pixels;
}

void draw(CGPDFPageRef page)
{
    for (const CGPDFBox box : {kCGPDFMediaBox, kCGPDFCropBox}) {
        const CGRect rect = CGPDFPageGetBoxRect(page, box);
        require(std::isfinite(rect.origin.x) && std::isfinite(rect.origin.y) && rect.size.width >= 0
            && rect.size.height >= 0);
    }
    require(CGPDFPageGetRotationAngle(page) % 90 == 0);
    require(drawn<4>(page) == drawn<4>(page));
    drawn<1>(page);
}

} // namespace

void fuzzPDF(const std::uint8_t* data, std::size_t size)
{
    const auto provider = adopt(CGDataProviderCreateWithData(nullptr, data, size, nullptr));
    const auto document = adopt(CGPDFDocumentCreateWithProvider(provider));
    if (!document)
        return;
    const auto count = CGPDFDocumentGetNumberOfPages(document);
    for (std::size_t page = 1; page <= std::min<std::size_t>(count, 3); ++page)
        draw(CGPDFDocumentGetPage(document, page));
}
