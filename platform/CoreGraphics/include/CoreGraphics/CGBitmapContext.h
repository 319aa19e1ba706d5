#pragma once

#include <CoreGraphics/CGContext.h>

/// Called once, when the context that drew into `data` is destroyed, on the thread that releases the last
/// reference.
typedef void (*CGBitmapContextReleaseDataCallback)(void* releaseInfo, void* data);

KORVID_EXTERN_C_BEGIN

/// A context that draws into pixels in memory, row 0 on top. The caller owns the result.
///
/// Formats, each with 8 bits per component:
/// - RGB space, `kCGImageAlphaPremultipliedLast`: bytes red, green, blue, alpha, colours multiplied by alpha;
/// - RGB space, `kCGImageAlphaNoneSkipLast`: the pixels are opaque; the fourth byte is unused and may change
///   where something is drawn;
/// - no space (a gray one is not used), `kCGImageAlphaOnly`: one byte of alpha.
///
/// `bitmapInfo` may include `kCGBitmapByteOrder32Big`, which is the default order of the components in
/// memory.
///
/// A non-null `data` is borrowed memory, which keeps its content and must outlive the context; the caller may
/// read and change it between any two calls. Any address and any `bytesPerRow` that fits a row are valid;
/// multiples of 4 draw fastest. With a null `data` the context allocates zeroed memory, which it owns; then a
/// `bytesPerRow` of 0 means rows without padding.
///
/// Returns null and logs the reason when the format is not supported, a size is 0, a row does not fit into
/// `bytesPerRow`, a side is longer than 32767 pixels, or memory is exhausted.
KORVID_NODISCARD KORVID_EXPORT CGContextRef CGBitmapContextCreate(void* data, size_t width, size_t height,
    size_t bitsPerComponent, size_t bytesPerRow, CGColorSpaceRef space, CGBitmapInfo bitmapInfo);

/// Like `CGBitmapContextCreate`; also calls `releaseCallback(releaseInfo, data)` once, when the context is
/// destroyed. The callback is not called when the result or `data` is null. It may be null.
KORVID_NODISCARD KORVID_EXPORT CGContextRef CGBitmapContextCreateWithData(void* data, size_t width,
    size_t height, size_t bitsPerComponent, size_t bytesPerRow, CGColorSpaceRef space,
    CGBitmapInfo bitmapInfo, CGBitmapContextReleaseDataCallback releaseCallback, void* releaseInfo);

// Getters. For a null context they return 0, null or `kCGImageAlphaNone`.

/// The pixels, top row first. Borrowed: the caller's `data`, or memory that lives as long as the context.
/// Contains everything drawn so far.
KORVID_EXPORT void* CGBitmapContextGetData(CGContextRef context);
/// In pixels.
KORVID_EXPORT size_t CGBitmapContextGetWidth(CGContextRef context);
/// In pixels.
KORVID_EXPORT size_t CGBitmapContextGetHeight(CGContextRef context);
/// Always 8.
KORVID_EXPORT size_t CGBitmapContextGetBitsPerComponent(CGContextRef context);
/// 32, or 8 in an alpha-only context.
KORVID_EXPORT size_t CGBitmapContextGetBitsPerPixel(CGContextRef context);
/// Distance from one row to the next in bytes, padding included.
KORVID_EXPORT size_t CGBitmapContextGetBytesPerRow(CGContextRef context);
/// Borrowed. Null in an alpha-only context.
KORVID_EXPORT CGColorSpaceRef CGBitmapContextGetColorSpace(CGContextRef context);
/// Where the alpha lies in a pixel.
KORVID_EXPORT CGImageAlphaInfo CGBitmapContextGetAlphaInfo(CGContextRef context);
/// The value passed at creation: alpha info and byte order.
KORVID_EXPORT CGBitmapInfo CGBitmapContextGetBitmapInfo(CGContextRef context);

/// An image of a copy of the current pixels, which the caller owns; later drawing does not change it. The
/// image of an alpha-only context is a coverage mask: 0 outside, 255 fully covered. Null for null; null and
/// logged when memory is exhausted.
KORVID_NODISCARD KORVID_EXPORT CGImageRef CGBitmapContextCreateImage(CGContextRef context);

KORVID_EXTERN_C_END
