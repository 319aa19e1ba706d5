#pragma once

#include <CoreGraphics/CGImage.h>

#include <cstdint>

// The box blur: each pixel becomes the mean of the square of `boxDim` x `boxDim` pixels around it.
//
// Pixels are four bytes, red, green, blue, alpha, premultiplied; rows follow each other without gaps. With
// half = boxDim / 2 the square around (x, y) reaches from (x - half, y - half) to (x - half + boxDim - 1,
// y - half + boxDim - 1): of an even box the longer side lies towards smaller x and y. Outside the image its
// nearest edge pixel counts. Each channel of the result is the channel's sum over the square, divided by
// boxDim², the remainder dropped.
//
// Sums and squares are unsigned 32-bit integers, and of a quotient the low byte is kept. Up to a boxDim of
// 4104 nothing of that shows; beyond, sums and then boxDim² itself are what is left of them modulo 2^32, and
// the result is no mean any more. A negative boxDim gives an empty square, and all pixels become 0. They also
// do where boxDim² is 0 modulo 2^32, so that there is no quotient: for 0 itself and multiples of 65536.
//
// | | boxDim² reads per pixel | running sums |
// |---|---|---|
// | for an image | `ZRGraphics::copyBoxBlurredImageFromImage` | `ZRCreateBoxBlurredImage` |
// | for pixels | `_boxBlurBitmap` | |
//
// All give the same bytes. Take `ZRCreateBoxBlurredImage`, unless pixels that the caller holds are to be
// blurred with a small box: `_boxBlurBitmap` needs no image around them.

extern "C" {

/// Blurs `width` x `height` pixels at `src` into those at `dst`, by the plain rule: each pixel of the result
/// reads boxDim² others, and the time grows accordingly. A `width` or `height` of 0 does nothing.
///
/// `src` and `dst` must not overlap. Works on a copy of the source, and throws std::bad_alloc where there is
/// no memory for it. Any thread.
KORVID_EXPORT void _boxBlurBitmap(const std::uint32_t* src, std::uint32_t* dst, std::uint32_t width,
    std::uint32_t height, std::int32_t boxDim);

/// Frees `data` with `free`: the release callback of bitmap contexts whose pixels come from `malloc`.
/// `releaseInfo` is ignored. Any thread.
KORVID_EXPORT void _ZRReleaseBMData(void* releaseInfo, void* data);

/// A new image of the same size, blurred, with premultiplied alpha in the sRGB space; the caller releases it.
///
/// The bytes are those of `ZRGraphics::copyBoxBlurredImageFromImage` for every `boxDim`, in a time per pixel
/// that does not grow with it. An image of more than 512 x 512 pixels is blurred on several threads.
///
/// Null for a null image, for one with a side longer than 32766 pixels, and where there is no memory. Any
/// thread.
[[nodiscard]] KORVID_EXPORT CGImageRef ZRCreateBoxBlurredImage(CGImageRef image, int boxDim);

} // extern "C"
