#pragma once

#include <CoreGraphics/CGColorSpace.h>

#ifdef __cplusplus
class NSDictionary;
#else
typedef struct NSDictionary NSDictionary;
#endif

/// A colour: components in a colour space, alpha last, straight (not premultiplied).
///
/// Components are stored exactly as given, also below 0, above 1 or NaN; drawing clamps them to 0 to 1 (NaN
/// becomes 0). Immutable and reference counted; safe on any thread. The caller owns the result of a Create
/// function.
struct CGColor;
/// A pointer to a colour. Functions with Create or Copy in their names return a reference that the caller
/// owns.
typedef struct CGColor* CGColorRef;

KORVID_EXTERN_C_BEGIN

/// A colour in `space`, which is retained; `components` holds as many numbers as the space has components,
/// then alpha, and is copied. Null for a pattern space or when either argument is null.
KORVID_NODISCARD KORVID_EXPORT CGColorRef CGColorCreate(CGColorSpaceRef space, const CGFloat* components);
/// A colour in the sRGB space.
KORVID_NODISCARD KORVID_EXPORT CGColorRef CGColorCreateSRGB(
    CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha);
/// A gray level in the space `kCGColorSpaceGenericGrayGamma2_2`.
KORVID_NODISCARD KORVID_EXPORT CGColorRef CGColorCreateGenericGrayGamma2_2(CGFloat gray, CGFloat alpha);
/// The same colour with another alpha. Null returns null.
KORVID_NODISCARD KORVID_EXPORT CGColorRef CGColorCreateCopyWithAlpha(CGColorRef color, CGFloat alpha);
/// The colour converted to `space`; the colour itself when that is its own space. Conversion to gray uses the
/// luminance. `intent` and `options` (which may be null) have no effect for the supported spaces. Returns
/// null for a pattern space or when `space` or `color` is null.
KORVID_NODISCARD KORVID_EXPORT CGColorRef CGColorCreateCopyByMatchingToColorSpace(
    CGColorSpaceRef space, CGColorRenderingIntent intent, CGColorRef color, const NSDictionary* options);
/// Adds a reference and returns `color`. Null is allowed.
KORVID_EXPORT CGColorRef CGColorRetain(CGColorRef color);
/// Removes a reference; removing the last one destroys the colour. Null is allowed.
KORVID_EXPORT void CGColorRelease(CGColorRef color);

/// The components, alpha last. Borrowed: valid as long as the colour. Null for null.
KORVID_EXPORT const CGFloat* CGColorGetComponents(CGColorRef color);
/// Number of components, alpha included. 0 for null.
KORVID_EXPORT size_t CGColorGetNumberOfComponents(CGColorRef color);
/// The last component. 0 for null.
KORVID_EXPORT CGFloat CGColorGetAlpha(CGColorRef color);
/// The colour's space. Borrowed. Null for null.
KORVID_EXPORT CGColorSpaceRef CGColorGetColorSpace(CGColorRef color);
/// True when spaces and components are equal. Null equals only null.
KORVID_EXPORT bool CGColorEqualToColor(CGColorRef a, CGColorRef b);

KORVID_EXTERN_C_END

#ifdef __cplusplus
template <> struct RetainTraits<CGColor> {
    static void retain(CGColor* color) noexcept { CGColorRetain(color); }
    static void release(CGColor* color) noexcept { CGColorRelease(color); }
};
#endif
