#pragma once

#include <CoreGraphics/CGImage.h>

/// @file
/// Box blur: each pixel becomes the mean of the square of `boxDim` x `boxDim` pixels around it.
///
/// Pixels are four bytes, red, green, blue, alpha, premultiplied, in rows without padding. With half = boxDim
/// / 2 the square around (x, y) extends from (x - half, y - half) to (x - half + boxDim - 1, y - half +
/// boxDim
/// - 1): an even box extends one pixel further toward smaller x and y. Pixels outside the image are those of
/// the nearest edge. Each channel of the result is the channel's sum over the square divided by boxDim²,
/// truncated.
///
/// Sums and boxDim² are unsigned 32-bit integers, and the low byte of each quotient is stored. Up to a boxDim
/// of 4104 nothing overflows; beyond, sums and later boxDim² wrap modulo 2^32, and the result is no longer a
/// mean. A negative boxDim gives an empty square, and all pixels become 0; so they do if boxDim² is 0 modulo
/// 2^32, that is for 0 and multiples of 65536.
///
/// | | boxDim² reads per pixel | running sums |
/// |---|---|---|
/// | for an image | `ZRGraphics::copyBoxBlurredImageFromImage` | `ZRCreateBoxBlurredImage` |
/// | for pixels | `_boxBlurBitmap` | |
///
/// All give the same bytes. Use `ZRCreateBoxBlurredImage`, except to blur pixels in memory with a small box,
/// where `_boxBlurBitmap` needs no image.

KORVID_EXTERN_C_BEGIN

/// Blurs `width` x `height` pixels from `src` to `dst` directly: each pixel of the result reads boxDim²
/// pixels, so the time grows with boxDim². Does nothing if `width` or `height` is 0.
///
/// `src` and `dst` must not overlap. Makes a temporary copy of the source, and throws std::bad_alloc if there
/// is no memory for it. Any thread.
KORVID_EXPORT void _boxBlurBitmap(
    const uint32_t* src, uint32_t* dst, uint32_t width, uint32_t height, int32_t boxDim);

/// Frees `data` with `free`: a release callback for bitmap contexts whose pixels come from `malloc`.
/// Ignores `releaseInfo`. Any thread.
KORVID_EXPORT void _ZRReleaseBMData(void* releaseInfo, void* data);

/// A new, blurred image of the same size, with premultiplied alpha in sRGB; the caller releases it.
///
/// Has the bytes of `ZRGraphics::copyBoxBlurredImageFromImage` for every `boxDim`, in a time per pixel that
/// does not depend on it. An image of more than 512 x 512 pixels is blurred on several threads.
///
/// When an image of 8 to 64 MiB is released, the memory of its pixels is cached for the next of its size;
/// only that of the last one is, and the system takes it back when it is short of memory.
///
/// Null if `image` is null or has a side longer than 32766 pixels, and if there is no memory for the pixels.
/// Any thread.
KORVID_NODISCARD KORVID_EXPORT CGImageRef ZRCreateBoxBlurredImage(CGImageRef image, int boxDim);

KORVID_EXTERN_C_END
