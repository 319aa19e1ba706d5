#pragma once

#include <CoreGraphics/CGImage.h>

extern "C" {

/// A new alpha-only image that sweeps around its centre: the value of each pixel is its angle, 0 to 255 for a
/// full turn. The caller releases it.
///
/// The image has floor(`width`) x floor(`height`) pixels, W x H in what follows; the centre is the pixel in
/// column W / 2 and row H / 2, whole numbers, row 0 on top. Angles are 0 along the row from the centre to the
/// right and grow towards the bottom, clockwise where the image is seen upright. A pixel dx columns and dy
/// rows away has the fraction f = atan2(dy, dx) / 2π of a turn, one turn added where that is negative, and
/// the value f x 255 with `isIncreasing`, (1 - f) x 255 without, the fraction of the value dropped: 255
/// stands for a full turn alone. The value is exactly that of the formula in double arithmetic.
///
/// A `ringWidth` other than 0, NaN included, composites a mask with the angles, in three steps on alpha
/// alone:
/// 1. On a ground of 1, an ellipse by sourceOut, inscribed in the image's rectangle inset by 1.
/// 2. Where min(W / 2, H / 2) is greater than `ringWidth`, an ellipse inset by `ringWidth` + 1, by sourceIn.
///    It meets what the first one left, and by sourceIn that stays what it is.
/// 3. The mask over the whole of the angles by sourceOut, mask x (1 - angle).
/// So whatever its width, the ring leaves 255 - value outside the ellipse of step 1 and 0 inside, antialiased
/// between the two. For a ring of angles pass 0, and clip what is drawn to the ring.
///
/// Acts as a mask in `CGContextClipToMask`, which lets more paint through the greater the angle:
///
///     const auto sweep = adopt(ZRCreateAngularGradientImage(true, 64, 64, 0));
///     CGContextClipToMask(context, CGRectMake(0, 0, 64, 64), sweep);
///     CGContextFillEllipseInRect(context, CGRectMake(0, 0, 64, 64));
///
/// Null where W or H is below 1 or above 32767, the longest side of a bitmap context, where a size is NaN,
/// and where there is no memory: 6 bytes per pixel, and 2 more with a ring, of which most are never touched.
/// Images of about half a million pixels and more are computed on several threads. Any thread.
[[nodiscard]] KORVID_EXPORT CGImageRef ZRCreateAngularGradientImage(
    bool isIncreasing, double width, double height, double ringWidth);

} // extern "C"
