#include <CoreGraphics/CGBitmapContext.h>

#include "CoreGraphics/CGImageInternal.h"
#include "CoreGraphics/CGLog.h"
#include "CoreGraphics/LargePages.h"
#include "CoreGraphics/context/CGContextInternal.h"

#include <cstdlib>

namespace {

/// The largest side in pixels that the engine draws in.
constexpr std::size_t kMaximumSide = 32767;

bool isOfferedFormat(std::size_t bitsPerComponent, CGColorSpaceRef space, CGBitmapInfo bitmapInfo)
{
    const CGBitmapInfo order = bitmapInfo & ~kCGBitmapAlphaInfoMask;
    if (bitsPerComponent != 8 || (order != kCGBitmapByteOrderDefault && order != kCGBitmapByteOrder32Big))
        return false;
    switch (bitmapInfo & kCGBitmapAlphaInfoMask) {
    case kCGImageAlphaPremultipliedLast:
    case kCGImageAlphaNoneSkipLast:
        return CGColorSpaceGetModel(space) == kCGColorSpaceModelRGB;
    case kCGImageAlphaOnly:
        return !space || CGColorSpaceGetModel(space) == kCGColorSpaceModelMonochrome;
    default:
        return false;
    }
}

void freePixels(void*, void* data)
{
    std::free(data);
}

CGContextRef fail(const char* function, const char* reason)
{
    CGLogMisuse(function, reason);
    return nullptr;
}

CGContextRef create(BitmapProperties properties, const char* function)
{
    if (properties.width == 0 || properties.height == 0)
        return fail(function, "no context: the size is 0");
    if (properties.width > kMaximumSide || properties.height > kMaximumSide)
        return fail(function, "no context: a side is longer than 32767 pixels");
    const std::size_t rowSize = properties.width * properties.bytesPerPixel();
    if (!properties.data && properties.bytesPerRow == 0)
        properties.bytesPerRow = rowSize;
    std::size_t size = 0;
    if (properties.bytesPerRow < rowSize)
        return fail(function, "no context: a row is longer than bytesPerRow");
    if (__builtin_mul_overflow(properties.bytesPerRow, properties.height, &size)
        || size > std::size_t(PTRDIFF_MAX))
        return fail(function, "no context: the rows are more than memory can hold");
    if (!properties.data) {
        properties.data = std::calloc(size, 1);
        properties.releaseData = freePixels;
        if (!properties.data)
            return fail(function, "no context: there is no memory");
        adviseLargePages(properties.data, size);
    }
    return new CGContext(properties);
}

/// The properties that the getters return; all zero for null.
const BitmapProperties& bitmapOf(CGContextRef context)
{
    static const BitmapProperties none;
    return context ? context->bitmap : none;
}

} // namespace

CGContextRef CGBitmapContextCreate(void* data, std::size_t width, std::size_t height,
    std::size_t bitsPerComponent, std::size_t bytesPerRow, CGColorSpaceRef space, CGBitmapInfo bitmapInfo)
{
    return CGBitmapContextCreateWithData(
        data, width, height, bitsPerComponent, bytesPerRow, space, bitmapInfo, nullptr, nullptr);
}

CGContextRef CGBitmapContextCreateWithData(void* data, std::size_t width, std::size_t height,
    std::size_t bitsPerComponent, std::size_t bytesPerRow, CGColorSpaceRef space, CGBitmapInfo bitmapInfo,
    CGBitmapContextReleaseDataCallback releaseCallback, void* releaseInfo)
{
    if (!isOfferedFormat(bitsPerComponent, space, bitmapInfo))
        return fail("CGBitmapContextCreate", "no context: the format is not offered");
    BitmapProperties properties{
        data, width, height, bytesPerRow, nullptr, bitmapInfo, releaseCallback, releaseInfo};
    if (properties.alphaInfo() != kCGImageAlphaOnly)
        properties.space = space;
    return create(properties, "CGBitmapContextCreate");
}

void* CGBitmapContextGetData(CGContextRef context)
{
    return bitmapOf(context).data;
}

std::size_t CGBitmapContextGetWidth(CGContextRef context)
{
    return bitmapOf(context).width;
}

std::size_t CGBitmapContextGetHeight(CGContextRef context)
{
    return bitmapOf(context).height;
}

std::size_t CGBitmapContextGetBitsPerComponent(CGContextRef context)
{
    return context ? 8 : 0;
}

std::size_t CGBitmapContextGetBitsPerPixel(CGContextRef context)
{
    return context ? 8 * context->bitmap.bytesPerPixel() : 0;
}

std::size_t CGBitmapContextGetBytesPerRow(CGContextRef context)
{
    return bitmapOf(context).bytesPerRow;
}

CGColorSpaceRef CGBitmapContextGetColorSpace(CGContextRef context)
{
    return bitmapOf(context).space.get();
}

CGImageAlphaInfo CGBitmapContextGetAlphaInfo(CGContextRef context)
{
    return bitmapOf(context).alphaInfo();
}

CGBitmapInfo CGBitmapContextGetBitmapInfo(CGContextRef context)
{
    return bitmapOf(context).bitmapInfo;
}

CGImageRef CGBitmapContextCreateImage(CGContextRef context)
{
    if (!context)
        return nullptr;
    const BitmapProperties& bitmap = context->bitmap;
    return CGImageCreateWithCopiedPixels(bitmap.data, bitmap.width, bitmap.height, 8 * bitmap.bytesPerPixel(),
        bitmap.bytesPerRow, bitmap.space.get(), bitmap.bitmapInfo);
}
