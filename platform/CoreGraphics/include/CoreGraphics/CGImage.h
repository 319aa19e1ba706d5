#pragma once

#include <CoreGraphics/CGColorSpace.h>
#include <CoreGraphics/CGDataProvider.h>

/// A picture, or a mask, made of rows of pixels, the top row first. Immutable and reference counted; safe on
/// any thread.
///
/// Pixels have 8 bits per component in one of these layouts:
///
/// | bits per pixel | space | alpha |
/// |---|---|---|
/// | 32 | RGB | premultiplied, straight or skipped, last or first |
/// | 24 | RGB | none |
/// | 8 | gray | none |
/// | 8 | any, not used | only: a mask whose high values let paint through |
/// | 8 | none: CGImageMaskCreate | a mask whose low values let paint through |
struct CGImage;
using CGImageRef = CGImage*;

/// Where a pixel keeps its alpha, and whether the colour is already multiplied by it.
enum CGImageAlphaInfo : std::uint32_t {
    kCGImageAlphaNone = 0,               ///< RGB, or gray
    kCGImageAlphaPremultipliedLast = 1,  ///< RGBA
    kCGImageAlphaPremultipliedFirst = 2, ///< ARGB
    kCGImageAlphaLast = 3,               ///< RGBA, straight
    kCGImageAlphaFirst = 4,              ///< ARGB, straight
    kCGImageAlphaNoneSkipLast = 5,       ///< RGBX, opaque
    kCGImageAlphaNoneSkipFirst = 6,      ///< XRGB, opaque
    kCGImageAlphaOnly = 7,               ///< alpha and no colour
};

/// A CGImageAlphaInfo combined with a byte order. Components in memory order (the default and 32Big) are the
/// only order offered; images and bitmap contexts refuse the others.
using CGBitmapInfo = std::uint32_t;
inline constexpr CGBitmapInfo kCGBitmapAlphaInfoMask = 0x1F;   ///< the bits of the CGImageAlphaInfo
inline constexpr CGBitmapInfo kCGBitmapByteOrderMask = 0x7000; ///< the bits of the byte order
inline constexpr CGBitmapInfo kCGBitmapByteOrderDefault = 0 << 12;
inline constexpr CGBitmapInfo kCGBitmapByteOrder32Little = 2 << 12;
inline constexpr CGBitmapInfo kCGBitmapByteOrder32Big = 4 << 12;

extern "C" {

/// A picture of `width` × `height` pixels from the bytes of `provider`, which is retained, as is `space`.
///
/// `bytesPerRow` may exceed what a row needs. `decode` is not supported and must be null. `shouldInterpolate`
/// says whether the picture is smoothed when drawn larger or smaller.
///
/// A layout not listed above, a size of 0, rows that are too short, data shorter than the rows, a null
/// provider or a null space where one is needed: null, with one line in the log.
[[nodiscard]] KORVID_EXPORT CGImageRef CGImageCreate(std::size_t width, std::size_t height,
    std::size_t bitsPerComponent, std::size_t bitsPerPixel, std::size_t bytesPerRow, CGColorSpaceRef space,
    CGBitmapInfo bitmapInfo, CGDataProviderRef provider, const CGFloat* decode, bool shouldInterpolate,
    CGColorRenderingIntent intent);
/// A mask: a sample of 0 lets paint through, 255 blocks it. 8 bits per component and per pixel. Odd arguments
/// as for CGImageCreate.
[[nodiscard]] KORVID_EXPORT CGImageRef CGImageMaskCreate(std::size_t width, std::size_t height,
    std::size_t bitsPerComponent, std::size_t bitsPerPixel, std::size_t bytesPerRow,
    CGDataProviderRef provider, const CGFloat* decode, bool shouldInterpolate);
/// One more reference to the same picture, which cannot change. Null gives null.
[[nodiscard]] KORVID_EXPORT CGImageRef CGImageCreateCopy(CGImageRef image);
/// Takes one more reference and returns `image`. Null is allowed.
KORVID_EXPORT CGImageRef CGImageRetain(CGImageRef image);
/// Gives up one reference; the last one destroys the image. Null is allowed.
KORVID_EXPORT void CGImageRelease(CGImageRef image);

// Getters. Null reads as an image without pixels: 0, false, null, kCGImageAlphaNone.

/// True for what CGImageMaskCreate made.
KORVID_EXPORT bool CGImageIsMask(CGImageRef image);
/// In pixels.
KORVID_EXPORT std::size_t CGImageGetWidth(CGImageRef image);
/// In pixels.
KORVID_EXPORT std::size_t CGImageGetHeight(CGImageRef image);
KORVID_EXPORT std::size_t CGImageGetBitsPerComponent(CGImageRef image);
KORVID_EXPORT std::size_t CGImageGetBitsPerPixel(CGImageRef image);
KORVID_EXPORT std::size_t CGImageGetBytesPerRow(CGImageRef image);
/// Lent. Null for masks and alpha-only images.
KORVID_EXPORT CGColorSpaceRef CGImageGetColorSpace(CGImageRef image);
KORVID_EXPORT CGImageAlphaInfo CGImageGetAlphaInfo(CGImageRef image);
/// As it was given to CGImageCreate; 0 for masks.
KORVID_EXPORT CGBitmapInfo CGImageGetBitmapInfo(CGImageRef image);
KORVID_EXPORT bool CGImageGetShouldInterpolate(CGImageRef image);
KORVID_EXPORT CGColorRenderingIntent CGImageGetRenderingIntent(CGImageRef image);
/// The bytes, lent: row 0 is the top row.
KORVID_EXPORT CGDataProviderRef CGImageGetDataProvider(CGImageRef image);

} // extern "C"

template <> struct RetainTraits<CGImage> {
    static void retain(CGImage* image) noexcept { CGImageRetain(image); }
    static void release(CGImage* image) noexcept { CGImageRelease(image); }
};
