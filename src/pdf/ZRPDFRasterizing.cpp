#include <KorvidAppKit/ZRPDF.h>

#include <AppKit/NSImage.h>
#include <CoreGraphics/CGBitmapContext.h>
#include <Foundation/NSLog.h>

#include <cmath>
#include <utility>

namespace {

/// The smallest size with that ratio of width to height that covers `size`, in whole pixels.
CGSize coveringSize(CGSize size, CGFloat aspect)
{
    if (size.width / size.height <= aspect)
        size.width = aspect * size.height;
    else
        size.height = size.width / aspect;
    return {std::round(size.width), std::round(size.height)};
}

/// A transparent bitmap in sRGB. Null for a size that is not positive, or that is too large.
RetainPtr<CGContext> makeCanvas(CGSize size)
{
    constexpr CGFloat kTooMany = 0x1p31; // more pixels than any context has on a side
    if (!(size.width >= 1 && size.width < kTooMany && size.height >= 1 && size.height < kTooMany))
        return nullptr;
    const auto columns = static_cast<std::size_t>(size.width), rows = static_cast<std::size_t>(size.height);
    const auto sRGB = adopt(CGColorSpaceCreateWithName(kCGColorSpaceSRGB));
    auto canvas = adopt(
        CGBitmapContextCreate(nullptr, columns, rows, 8, 4 * columns, sRGB, kCGImageAlphaPremultipliedLast));
    CGContextSetFillColorSpace(canvas, sRGB);
    CGContextSetStrokeColorSpace(canvas, sRGB);
    return canvas;
}

} // namespace

CGImageRef ZRPDF::createCGImageForPage(NSInteger number, CGSize size, CGSize* actual) const
{
    if (!page(number))
        return nullptr;
    if (size.width == 0 || size.height == 0) {
        NSLog("Bailing on CG image creation to avert divide-by-zero");
        return nullptr;
    }
    const CGSize crop = cropBoxForPage(number).size;
    if (crop.width == 0 || crop.height == 0) {
        NSLog("Bailing on CG image creation to avert cropbox divide-by-zero");
        return nullptr;
    }
    const CGSize covering = coveringSize(size, crop.width / crop.height);
    const auto canvas = makeCanvas(covering);
    if (!canvas)
        return nullptr;
    // At the page's own size: the requested one sets the canvas alone.
    drawPageNumber(number, {CGPointZero, covering}, nullptr, canvas, 1, ZRPDFFillModeNatural, false);
    const CGImageRef image = CGBitmapContextCreateImage(canvas);
    if (image && actual)
        *actual = covering;
    return image;
}

RetainPtr<NSImage> ZRPDF::rasterizedNSImageForPage(NSInteger number, CGSize size) const
{
    CGSize actual = CGSizeZero;
    auto image = adopt(createCGImageForPage(number, size, &actual));
    return image ? make<NSImage>(std::move(image), actual) : nullptr;
}
