#pragma once

#include <CoreGraphics/CGColor.h>

/// Colours along a line from 0 to 1, drawn by `CGContextDrawLinearGradient` and
/// `CGContextDrawRadialGradient`.
///
/// Each colour has a location. Between two of them, components and alpha are interpolated in the gradient's
/// space, not premultiplied: from transparent red to opaque blue the middle is a half transparent purple.
/// Before the first and after the last location their colours go on. Immutable and reference counted; safe on
/// any thread, also while another one draws with it. What drawing needs of it is worked out once, when it is
/// made.
///
///     const CGFloat components[] = {1, 0.6, 0.2, 1, /**/ 0.8, 0.1, 0.4, 1};
///     auto sunset = adopt(CGGradientCreateWithColorComponents(space.get(), components, nullptr, 2));
///
/// Locations may come in any order and are brought into 0 to 1. Where several are the same the colour jumps,
/// from the first given of them to the last. A location that is NaN leaves its colour out. Components are
/// brought into 0 to 1, NaN to 0, before they are interpolated. Null locations spread the colours evenly from
/// 0 to 1; a single colour is the colour everywhere.
struct CGGradient;
using CGGradientRef = CGGradient*;

/// How a gradient goes on beyond the points that it is drawn between: a set of the flags below.
using CGGradientDrawingOptions = std::uint32_t;

/// The first colour goes on before the start.
inline constexpr CGGradientDrawingOptions kCGGradientDrawsBeforeStartLocation = 1;
/// The last colour goes on after the end.
inline constexpr CGGradientDrawingOptions kCGGradientDrawsAfterEndLocation = 2;

extern "C" {

/// A gradient of `count` colours whose components, alpha last, lie one colour behind the other. Everything is
/// copied. Null without a colour, for a pattern space, and when `space` or `components` is null.
[[nodiscard]] KORVID_EXPORT CGGradientRef CGGradientCreateWithColorComponents(
    CGColorSpaceRef space, const CGFloat* components, const CGFloat* locations, std::size_t count);
/// A gradient of `count` colours, each converted to `space`, where they are interpolated; null stands for
/// sRGB. A null among the colours is left out, and its location with it. Null without a colour, for a pattern
/// space and when `colors` is null.
///
/// Differs: Apple's function takes an array object in place of `colors` and `count`.
[[nodiscard]] KORVID_EXPORT CGGradientRef CGGradientCreateWithColors(
    CGColorSpaceRef space, const CGColorRef* colors, std::size_t count, const CGFloat* locations);
/// Takes one more reference and returns `gradient`. Null is allowed.
KORVID_EXPORT CGGradientRef CGGradientRetain(CGGradientRef gradient);
/// Gives up one reference; the last one destroys the gradient. Null is allowed.
KORVID_EXPORT void CGGradientRelease(CGGradientRef gradient);

} // extern "C"

template <> struct RetainTraits<CGGradient> {
    static void retain(CGGradient* gradient) noexcept { CGGradientRetain(gradient); }
    static void release(CGGradient* gradient) noexcept { CGGradientRelease(gradient); }
};
