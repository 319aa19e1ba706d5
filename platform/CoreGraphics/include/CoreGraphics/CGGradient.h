#pragma once

#include <CoreGraphics/CGColor.h>

/// Colours along a line from 0 to 1, drawn by `CGContextDrawLinearGradient` and
/// `CGContextDrawRadialGradient`.
///
/// Each colour has a location. Between two of them, components and alpha are interpolated in the gradient's
/// space, not premultiplied: from transparent red to opaque blue the middle is a half transparent purple.
/// Before the first and after the last location their colours continue. Immutable and reference counted; safe
/// on any thread, also while another one draws with it. The colour table that drawing uses is computed once,
/// at creation.
///
///     const CGFloat components[] = {1, 0.6, 0.2, 1, /**/ 0.8, 0.1, 0.4, 1};
///     auto sunset = adopt(CGGradientCreateWithColorComponents(space.get(), components, nullptr, 2));
///
/// Locations may come in any order and are clamped to 0 to 1. Where several are equal the colour jumps from
/// the first of them to the last, in the order given. A colour whose location is NaN is skipped. Components
/// are clamped to 0 to 1, NaN to 0, before they are interpolated. Null locations distribute the colours
/// evenly from 0 to 1; a single colour applies everywhere.
struct CGGradient;
/// A pointer to a gradient.
typedef struct CGGradient* CGGradientRef;

/// How a gradient extends beyond its start and its end: a set of the flags below.
typedef uint32_t CGGradientDrawingOptions;

/// The first colour extends before the start.
KORVID_CONSTANT CGGradientDrawingOptions kCGGradientDrawsBeforeStartLocation = 1;
/// The last colour extends after the end.
KORVID_CONSTANT CGGradientDrawingOptions kCGGradientDrawsAfterEndLocation = 2;

KORVID_EXTERN_C_BEGIN

/// A gradient of `count` colours, which the caller owns. `components` holds the components of one colour
/// after the other, alpha last; `locations`, which may be null, one number per colour. Copies both arrays and
/// retains `space`. Returns null without a colour, for a pattern space, and when `space` or `components` is
/// null.
KORVID_NODISCARD KORVID_EXPORT CGGradientRef CGGradientCreateWithColorComponents(
    CGColorSpaceRef space, const CGFloat* components, const CGFloat* locations, size_t count);
/// A gradient of `count` colours, which the caller owns. Each colour is converted to `space`, where they are
/// interpolated; a null `space` means sRGB. A null colour is skipped together with its location. Returns null
/// without a colour, for a pattern space, and when `colors` is null.
///
/// Differs: Apple's function takes an array object in place of `colors` and `count`.
KORVID_NODISCARD KORVID_EXPORT CGGradientRef CGGradientCreateWithColors(
    CGColorSpaceRef space, const CGColorRef* colors, size_t count, const CGFloat* locations);
/// Adds a reference and returns `gradient`. Null is allowed.
KORVID_EXPORT CGGradientRef CGGradientRetain(CGGradientRef gradient);
/// Removes a reference; removing the last one destroys the gradient. Null is allowed.
KORVID_EXPORT void CGGradientRelease(CGGradientRef gradient);

KORVID_EXTERN_C_END

#ifdef __cplusplus
template <> struct RetainTraits<CGGradient> {
    static void retain(CGGradient* gradient) noexcept { CGGradientRetain(gradient); }
    static void release(CGGradient* gradient) noexcept { CGGradientRelease(gradient); }
};
#endif
