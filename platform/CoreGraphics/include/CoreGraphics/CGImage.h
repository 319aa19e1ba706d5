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
/// | 8 | any, not used | only: a coverage mask, 255 is full coverage |
/// | 8 | none: CGImageMaskCreate | an inverted coverage mask, 0 is full coverage |
struct CGImage;
/// A pointer to an image.
typedef struct CGImage* CGImageRef;

/// Where the alpha lies in a pixel, and whether the colour is premultiplied by it.
typedef enum KORVID_ENUM(CGImageAlphaInfo, uint32_t) {
    kCGImageAlphaNone = 0,               ///< RGB, or gray
    kCGImageAlphaPremultipliedLast = 1,  ///< RGBA
    kCGImageAlphaPremultipliedFirst = 2, ///< ARGB
    kCGImageAlphaLast = 3,               ///< RGBA, straight
    kCGImageAlphaFirst = 4,              ///< ARGB, straight
    kCGImageAlphaNoneSkipLast = 5,       ///< RGBX, opaque
    kCGImageAlphaNoneSkipFirst = 6,      ///< XRGB, opaque
    kCGImageAlphaOnly = 7,               ///< alpha and no colour
} CGImageAlphaInfo;

/// A CGImageAlphaInfo combined with a byte order. Only components in memory order (the default and 32Big) are
/// supported; images and bitmap contexts reject other orders.
typedef uint32_t CGBitmapInfo;
KORVID_CONSTANT CGBitmapInfo kCGBitmapAlphaInfoMask = 0x1F;        ///< the bits of the CGImageAlphaInfo
KORVID_CONSTANT CGBitmapInfo kCGBitmapByteOrderMask = 0x7000;      ///< the bits of the byte order
KORVID_CONSTANT CGBitmapInfo kCGBitmapByteOrderDefault = 0 << 12;  ///< in memory order
KORVID_CONSTANT CGBitmapInfo kCGBitmapByteOrder32Little = 2 << 12; ///< reversed; not supported
KORVID_CONSTANT CGBitmapInfo kCGBitmapByteOrder32Big = 4 << 12;    ///< in memory order

KORVID_EXTERN_C_BEGIN

/// An image of `width` × `height` pixels from the bytes of `provider`. Retains `provider` and `space`; the
/// caller owns the result.
///
/// `bytesPerRow` may include padding. `decode` is not supported and must be null. `shouldInterpolate` selects
/// whether the image is smoothed when drawn larger or smaller.
///
/// Returns null and logs the reason for a layout not listed above, a size of 0, rows that are too short, data
/// shorter than the rows, a null provider, or a null space where the layout needs one.
KORVID_NODISCARD KORVID_EXPORT CGImageRef CGImageCreate(size_t width, size_t height, size_t bitsPerComponent,
    size_t bitsPerPixel, size_t bytesPerRow, CGColorSpaceRef space, CGBitmapInfo bitmapInfo,
    CGDataProviderRef provider, const CGFloat* decode, bool shouldInterpolate, CGColorRenderingIntent intent);
/// An image mask: a sample of 0 is full coverage, 255 none. 8 bits per component and per pixel. Errors as for
/// CGImageCreate.
KORVID_NODISCARD KORVID_EXPORT CGImageRef CGImageMaskCreate(size_t width, size_t height,
    size_t bitsPerComponent, size_t bitsPerPixel, size_t bytesPerRow, CGDataProviderRef provider,
    const CGFloat* decode, bool shouldInterpolate);
/// The same image with one more reference, since images are immutable. Null returns null.
KORVID_NODISCARD KORVID_EXPORT CGImageRef CGImageCreateCopy(CGImageRef image);
/// Adds a reference and returns `image`. Null is allowed.
KORVID_EXPORT CGImageRef CGImageRetain(CGImageRef image);
/// Removes a reference; removing the last one destroys the image. Null is allowed.
KORVID_EXPORT void CGImageRelease(CGImageRef image);

// Getters. For a null image they return 0, false, null or kCGImageAlphaNone.

/// True for images from CGImageMaskCreate.
KORVID_EXPORT bool CGImageIsMask(CGImageRef image);
/// In pixels.
KORVID_EXPORT size_t CGImageGetWidth(CGImageRef image);
/// In pixels.
KORVID_EXPORT size_t CGImageGetHeight(CGImageRef image);
/// Always 8.
KORVID_EXPORT size_t CGImageGetBitsPerComponent(CGImageRef image);
/// 32, 24 or 8.
KORVID_EXPORT size_t CGImageGetBitsPerPixel(CGImageRef image);
/// Distance from one row to the next in bytes, padding included.
KORVID_EXPORT size_t CGImageGetBytesPerRow(CGImageRef image);
/// Borrowed. Null for masks and alpha-only images.
KORVID_EXPORT CGColorSpaceRef CGImageGetColorSpace(CGImageRef image);
/// The alpha part of the bitmap info; kCGImageAlphaNone for masks.
KORVID_EXPORT CGImageAlphaInfo CGImageGetAlphaInfo(CGImageRef image);
/// The value passed to CGImageCreate; 0 for masks.
KORVID_EXPORT CGBitmapInfo CGImageGetBitmapInfo(CGImageRef image);
/// The value passed at creation.
KORVID_EXPORT bool CGImageGetShouldInterpolate(CGImageRef image);
/// The value passed to CGImageCreate; the default intent for masks. Has no effect on drawing.
KORVID_EXPORT CGColorRenderingIntent CGImageGetRenderingIntent(CGImageRef image);
/// The provider of the bytes, borrowed. Its first byte is the start of the top row.
KORVID_EXPORT CGDataProviderRef CGImageGetDataProvider(CGImageRef image);

KORVID_EXTERN_C_END

#ifdef __cplusplus
template <> struct RetainTraits<CGImage> {
    static void retain(CGImage* image) noexcept { CGImageRetain(image); }
    static void release(CGImage* image) noexcept { CGImageRelease(image); }
};
#endif
