#include "CoreGraphics/CGImageInternal.h"

#include "CoreGraphics/CGLog.h"

#include <optional>

namespace {

/// The reason why the rows do not fit into the provider's bytes; null if they do.
const char* problemOfRows(const CGImageProperties& image)
{
    if (!image.provider)
        return "no image: there is no data provider";
    if (image.width == 0 || image.height == 0)
        return "no image: a side is 0 pixels long";
    std::size_t rowBytes = 0;
    std::size_t size = 0;
    if (__builtin_mul_overflow(image.width, image.bitsPerPixel / 8, &rowBytes)
        || rowBytes > image.bytesPerRow)
        return "no image: the pixels of a row do not fit into bytesPerRow";
    // The last row needs no padding.
    if (__builtin_mul_overflow(image.height - 1, image.bytesPerRow, &size)
        || __builtin_add_overflow(size, rowBytes, &size) || size > image.provider->size)
        return "no image: the rows need more bytes than the data provider has";
    return nullptr;
}

std::optional<CGPixelFormat> formatOfRGB(std::size_t bitsPerPixel, CGBitmapInfo alphaInfo)
{
    if (bitsPerPixel == 24 && alphaInfo == kCGImageAlphaNone)
        return CGPixelFormat::RGB;
    if (bitsPerPixel != 32)
        return std::nullopt;
    switch (alphaInfo) {
    case kCGImageAlphaPremultipliedLast:
        return CGPixelFormat::RGBAPremultiplied;
    case kCGImageAlphaPremultipliedFirst:
        return CGPixelFormat::ARGBPremultiplied;
    case kCGImageAlphaLast:
        return CGPixelFormat::RGBAStraight;
    case kCGImageAlphaFirst:
        return CGPixelFormat::ARGBStraight;
    case kCGImageAlphaNoneSkipLast:
        return CGPixelFormat::RGBX;
    case kCGImageAlphaNoneSkipFirst:
        return CGPixelFormat::XRGB;
    default:
        return std::nullopt;
    }
}

/// nullopt for an unsupported layout.
std::optional<CGPixelFormat> formatOf(
    std::size_t bitsPerPixel, CGColorSpaceModel model, CGBitmapInfo bitmapInfo)
{
    const CGBitmapInfo byteOrder = bitmapInfo & kCGBitmapByteOrderMask;
    if (byteOrder != kCGBitmapByteOrderDefault && byteOrder != kCGBitmapByteOrder32Big)
        return std::nullopt;
    const CGBitmapInfo alphaInfo = bitmapInfo & ~kCGBitmapByteOrderMask;
    if (alphaInfo == kCGImageAlphaOnly && bitsPerPixel == 8)
        return CGPixelFormat::Alpha;
    if (model == kCGColorSpaceModelRGB)
        return formatOfRGB(bitsPerPixel, alphaInfo);
    if (model == kCGColorSpaceModelMonochrome && alphaInfo == kCGImageAlphaNone && bitsPerPixel == 8)
        return CGPixelFormat::Gray;
    return std::nullopt;
}

/// Returns null and logs the reason in the name of `function` when the properties are inconsistent.
CGImageRef createImage(const CGImageProperties& properties, bool isSupported, const char* function)
{
    const char* problem =
        isSupported ? problemOfRows(properties) : "no image: this layout of pixels is not supported";
    if (!problem)
        return new CGImage(properties);
    CGLogMisuse(function, problem);
    return nullptr;
}

} // namespace

CGImageRef CGImageCreate(std::size_t width, std::size_t height, std::size_t bitsPerComponent,
    std::size_t bitsPerPixel, std::size_t bytesPerRow, CGColorSpaceRef space, CGBitmapInfo bitmapInfo,
    CGDataProviderRef provider, const CGFloat* decode, bool shouldInterpolate, CGColorRenderingIntent intent)
{
    const auto format = formatOf(bitsPerPixel, CGColorSpaceGetModel(space), bitmapInfo);
    const CGImageProperties properties{
        .width = width,
        .height = height,
        .bitsPerPixel = bitsPerPixel,
        .bytesPerRow = bytesPerRow,
        .space = format == CGPixelFormat::Alpha ? nullptr : space,
        .provider = provider,
        .bitmapInfo = bitmapInfo,
        .intent = intent,
        .format = format.value_or(CGPixelFormat::Mask),
        .shouldInterpolate = shouldInterpolate,
    };
    return createImage(properties, format && bitsPerComponent == 8 && !decode, __func__);
}

CGImageRef CGImageMaskCreate(std::size_t width, std::size_t height, std::size_t bitsPerComponent,
    std::size_t bitsPerPixel, std::size_t bytesPerRow, CGDataProviderRef provider, const CGFloat* decode,
    bool shouldInterpolate)
{
    const CGImageProperties properties{
        .width = width,
        .height = height,
        .bitsPerPixel = bitsPerPixel,
        .bytesPerRow = bytesPerRow,
        .provider = provider,
        .format = CGPixelFormat::Mask,
        .shouldInterpolate = shouldInterpolate,
    };
    return createImage(properties, bitsPerComponent == 8 && bitsPerPixel == 8 && !decode, __func__);
}

CGImageRef CGImageCreateCopy(CGImageRef image)
{
    return CGRetainRecord(image);
}

CGImageRef CGImageRetain(CGImageRef image)
{
    return CGRetainRecord(image);
}

void CGImageRelease(CGImageRef image)
{
    CGReleaseRecord(image);
}

bool CGImageIsMask(CGImageRef image)
{
    return image && image->isMask();
}

std::size_t CGImageGetWidth(CGImageRef image)
{
    return image ? image->width : 0;
}

std::size_t CGImageGetHeight(CGImageRef image)
{
    return image ? image->height : 0;
}

std::size_t CGImageGetBitsPerComponent(CGImageRef image)
{
    return image ? 8 : 0;
}

std::size_t CGImageGetBitsPerPixel(CGImageRef image)
{
    return image ? image->bitsPerPixel : 0;
}

std::size_t CGImageGetBytesPerRow(CGImageRef image)
{
    return image ? image->bytesPerRow : 0;
}

CGColorSpaceRef CGImageGetColorSpace(CGImageRef image)
{
    return image ? image->space.get() : nullptr;
}

CGImageAlphaInfo CGImageGetAlphaInfo(CGImageRef image)
{
    return static_cast<CGImageAlphaInfo>(CGImageGetBitmapInfo(image) & kCGBitmapAlphaInfoMask);
}

CGBitmapInfo CGImageGetBitmapInfo(CGImageRef image)
{
    return image ? image->bitmapInfo : 0;
}

bool CGImageGetShouldInterpolate(CGImageRef image)
{
    return image && image->shouldInterpolate;
}

CGColorRenderingIntent CGImageGetRenderingIntent(CGImageRef image)
{
    return image ? image->intent : kCGRenderingIntentDefault;
}

CGDataProviderRef CGImageGetDataProvider(CGImageRef image)
{
    return image ? image->provider.get() : nullptr;
}
