#pragma once

#include <CoreGraphics/CGContext.h>

/// Called once, when the context that drew into `data` is destroyed.
using CGBitmapContextReleaseDataCallback = void (*)(void* releaseInfo, void* data);

extern "C" {

/// A context that draws into pixels in memory, row 0 on top. The caller owns the result.
///
/// Formats, each with 8 bits per component:
/// - RGB space, `kCGImageAlphaPremultipliedLast`: bytes red, green, blue, alpha, colours multiplied by alpha;
/// - RGB space, `kCGImageAlphaNoneSkipLast`: the pixels count as opaque; the fourth byte is without meaning
///   and may change where something is drawn;
/// - no space (a gray one is not used), `kCGImageAlphaOnly`: one byte of alpha.
///
/// `bitmapInfo` may name the order of the components in memory as it is: `kCGBitmapByteOrder32Big`.
///
/// With `data` the caller's memory is drawn into as it is, and must live as long as the context; the caller
/// may read and change it between any two calls. Any address and any `bytesPerRow` that holds a row will do;
/// multiples of 4 draw fastest. With null the context owns memory of its own, all zero; there a `bytesPerRow`
/// of 0 stands for rows without padding.
///
/// Null, and a line in the log, when the format is another one, a size is 0, a row does not fit into
/// `bytesPerRow`, a side is longer than 32767 pixels, or there is no memory.
[[nodiscard]] KORVID_EXPORT CGContextRef CGBitmapContextCreate(void* data, std::size_t width,
    std::size_t height, std::size_t bitsPerComponent, std::size_t bytesPerRow, CGColorSpaceRef space,
    CGBitmapInfo bitmapInfo);

/// The same; when the context is destroyed, `releaseCallback(releaseInfo, data)` is called, once. It is not
/// called when the result is null, nor when `data` is null. A null callback is left out.
[[nodiscard]] KORVID_EXPORT CGContextRef CGBitmapContextCreateWithData(void* data, std::size_t width,
    std::size_t height, std::size_t bitsPerComponent, std::size_t bytesPerRow, CGColorSpaceRef space,
    CGBitmapInfo bitmapInfo, CGBitmapContextReleaseDataCallback releaseCallback, void* releaseInfo);

/// The pixels, first row on top; they live as long as the context. What was drawn is there at once.
KORVID_EXPORT void* CGBitmapContextGetData(CGContextRef context);
KORVID_EXPORT std::size_t CGBitmapContextGetWidth(CGContextRef context);
KORVID_EXPORT std::size_t CGBitmapContextGetHeight(CGContextRef context);
KORVID_EXPORT std::size_t CGBitmapContextGetBitsPerComponent(CGContextRef context);
KORVID_EXPORT std::size_t CGBitmapContextGetBitsPerPixel(CGContextRef context);
KORVID_EXPORT std::size_t CGBitmapContextGetBytesPerRow(CGContextRef context);
/// Lent. Null in an alpha-only context.
KORVID_EXPORT CGColorSpaceRef CGBitmapContextGetColorSpace(CGContextRef context);
KORVID_EXPORT CGImageAlphaInfo CGBitmapContextGetAlphaInfo(CGContextRef context);
KORVID_EXPORT CGBitmapInfo CGBitmapContextGetBitmapInfo(CGContextRef context);

/// An image of the pixels as they are now; later drawing does not change it. The caller owns it.
/// The image of an alpha-only context acts as a mask whose high values let paint through.
[[nodiscard]] KORVID_EXPORT CGImageRef CGBitmapContextCreateImage(CGContextRef context);

} // extern "C"
