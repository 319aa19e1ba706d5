#pragma once

#include <AppKit/NSBitmapImageRep.h>
#include <AppKit/NSColorSpace.h>
#include <Foundation/NSData.h>

#include <cstdint>
#include <vector>

// Conversions between bitmaps and bytes.

using Bytes = std::vector<std::uint8_t>;

inline RetainPtr<CGDataProvider> provider(const Bytes& bytes)
{
    const auto data = NSData::dataWithBytes(bytes.data(), bytes.size());
    return adopt(CGDataProviderCreateWithCFData(data));
}

inline RetainPtr<CGImage> image(std::size_t width, std::size_t height, std::size_t bytesPerPixel,
    CGImageAlphaInfo alpha, const Bytes& bytes, const NSColorSpace* space = NSColorSpace::sRGBColorSpace())
{
    return adopt(CGImageCreate(width, height, 8, bytesPerPixel * 8, bytes.size() / height,
        space ? space->CGColorSpace() : nullptr, alpha, provider(bytes).get(), nullptr, false,
        kCGRenderingIntentDefault));
}

inline RetainPtr<NSBitmapImageRep> rep(std::size_t width, std::size_t height, std::size_t bytesPerPixel,
    CGImageAlphaInfo alpha, const Bytes& bytes, const NSColorSpace* space = NSColorSpace::sRGBColorSpace())
{
    return NSBitmapImageRep::initWithCGImage(image(width, height, bytesPerPixel, alpha, bytes, space));
}

inline RetainPtr<NSData> png(const NSBitmapImageRep& rep)
{
    return rep.representationUsingType(NSBitmapImageFileTypePNG, nullptr);
}

inline RetainPtr<NSBitmapImageRep> repOfPNG(const NSData* data)
{
    return NSBitmapImageRep::initWithData(data);
}

/// Encodes the bitmap as PNG and decodes it.
inline RetainPtr<NSBitmapImageRep> thereAndBack(const NSBitmapImageRep& rep)
{
    return repOfPNG(png(rep).get());
}

/// The pixels' bytes, without padding.
inline Bytes pixels(CGImageRef image)
{
    const auto data = CGDataProviderCopyData(CGImageGetDataProvider(image));
    const auto* bytes = static_cast<const std::uint8_t*>(data->bytes());
    const std::size_t rowLength = CGImageGetWidth(image) * CGImageGetBitsPerPixel(image) / 8;
    Bytes result;
    for (std::size_t y = 0; y < CGImageGetHeight(image); ++y) {
        const auto* row = bytes + y * CGImageGetBytesPerRow(image);
        result.insert(result.end(), row, row + rowLength);
    }
    return result;
}

inline Bytes pixels(const RetainPtr<NSBitmapImageRep>& rep)
{
    return pixels(rep->CGImage().get());
}
