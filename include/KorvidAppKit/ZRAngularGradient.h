#pragma once

#include <CoreGraphics/CGImage.h>

KORVID_EXTERN_C_BEGIN

/// A new alpha-only image of an angular (conic) gradient: the value of each pixel is its angle around the
/// centre, 0 to 255 for a full turn. The caller releases it.
///
/// The image has W = floor(`width`) by H = floor(`height`) pixels. The centre is the pixel in column W / 2
/// and row H / 2 (integer division; row 0 is the top row). The angle is 0 from the centre to the right and
/// grows clockwise. The pixel dx columns and dy rows from the centre has the fraction f = atan2(dy, dx) / 2π
/// of a turn, plus 1 if that is negative, and the value f x 255 with `isIncreasing` or (1 - f) x 255 without
/// it, truncated, so that 255 means exactly a full turn. The value is that of the formula in double
/// precision.
///
/// A `ringWidth` other than 0, NaN included, composites a mask with the angles, in three steps on alpha
/// alone:
/// 1. The mask starts opaque. The ellipse inscribed in the image's rectangle inset by 1 is filled by
///    sourceOut.
/// 2. If min(W / 2, H / 2) is greater than `ringWidth`, the ellipse inset by `ringWidth` + 1 is filled by
///    sourceIn, which leaves the mask unchanged, since the paint is opaque.
/// 3. The mask is drawn over all angles by sourceOut: mask x (1 - angle).
/// Whatever its width, the ring thus leaves 255 - value outside the ellipse of step 1 and 0 inside, with an
/// antialiased edge. For a ring of angles pass 0, and clip the drawing to a ring.
///
/// As a mask for `CGContextClipToMask` it lets more paint pass the greater the angle is:
///
///     const auto sweep = adopt(ZRCreateAngularGradientImage(true, 64, 64, 0));
///     CGContextClipToMask(context, CGRectMake(0, 0, 64, 64), sweep);
///     CGContextFillEllipseInRect(context, CGRectMake(0, 0, 64, 64));
///
/// Null if W or H is below 1 or above 32767, the longest side of a bitmap context, if a size is NaN, and if
/// there is no memory for the pixels: 5 bytes for each, 7 with a ring, of which 3 are never touched. Images
/// of about half a million pixels and more are computed on several threads. Any thread.
KORVID_NODISCARD KORVID_EXPORT CGImageRef ZRCreateAngularGradientImage(
    bool isIncreasing, double width, double height, double ringWidth);

KORVID_EXTERN_C_END
