#pragma once

#include <CoreGraphics/CGBase.h>
#include <Foundation/NSString.h>

/// What the components of a colour mean. Immutable and reference counted; safe on any thread.
///
/// There is one record per kind of space, so the Create functions are cheap and spaces of one kind are the
/// same pointer, pattern spaces excepted.
struct CGColorSpace;
using CGColorSpaceRef = CGColorSpace*;

/// The family of a space.
enum CGColorSpaceModel : std::int32_t {
    kCGColorSpaceModelUnknown = -1,
    kCGColorSpaceModelMonochrome = 0,
    kCGColorSpaceModelRGB = 1,
    kCGColorSpaceModelPattern = 6,
};

/// How colours out of reach are brought into reach. Every space here has the reach of sRGB, so it makes no
/// difference; it is kept for whoever asks.
enum CGColorRenderingIntent : std::int32_t {
    kCGRenderingIntentDefault = 0,
    kCGRenderingIntentAbsoluteColorimetric = 1,
    kCGRenderingIntentRelativeColorimetric = 2,
    kCGRenderingIntentPerceptual = 3,
    kCGRenderingIntentSaturation = 4,
};

/// The web's and most screens' RGB space.
inline constexpr char kCGColorSpaceSRGB[] = "kCGColorSpaceSRGB";
/// Gray levels whose light is the level to the power of 2.2; the space of calibrated whites.
inline constexpr char kCGColorSpaceGenericGrayGamma2_2[] = "kCGColorSpaceGenericGrayGamma2_2";

extern "C" {

/// Red, green, blue of the output device. Drawn as sRGB.
[[nodiscard]] KORVID_EXPORT CGColorSpaceRef CGColorSpaceCreateDeviceRGB();
/// Gray of the output device, 0 black to 1 white. Drawn as sRGB with three equal components.
[[nodiscard]] KORVID_EXPORT CGColorSpaceRef CGColorSpaceCreateDeviceGray();
/// The space of that name, one of the constants above or what CGColorSpaceCopyName answered. Null for other
/// names and for null.
[[nodiscard]] KORVID_EXPORT CGColorSpaceRef CGColorSpaceCreateWithName(const NSString& name);
/// The space of patterns. `baseSpace`, which is retained, gives the colour of patterns that have none of
/// their own; null where they bring their own. A pattern space as base gives null.
[[nodiscard]] KORVID_EXPORT CGColorSpaceRef CGColorSpaceCreatePattern(CGColorSpaceRef baseSpace);
/// Takes one more reference and returns `space`. Null is allowed.
KORVID_EXPORT CGColorSpaceRef CGColorSpaceRetain(CGColorSpaceRef space);
/// Gives up one reference. Null is allowed.
KORVID_EXPORT void CGColorSpaceRelease(CGColorSpaceRef space);

/// Components without alpha: 3 for RGB, 1 for gray, for a pattern space those of its base. 0 for a pattern
/// space without base and for null.
KORVID_EXPORT std::size_t CGColorSpaceGetNumberOfComponents(CGColorSpaceRef space);
/// The family; unknown for null.
KORVID_EXPORT CGColorSpaceModel CGColorSpaceGetModel(CGColorSpaceRef space);
/// The base of a pattern space, lent. Null for other spaces and for null.
KORVID_EXPORT CGColorSpaceRef CGColorSpaceGetBaseColorSpace(CGColorSpaceRef space);
/// True for the same kind of space, for pattern spaces with equal bases. Device RGB and sRGB differ although
/// they are drawn alike. Null equals only null.
KORVID_EXPORT bool CGColorSpaceEqualToColorSpace(CGColorSpaceRef a, CGColorSpaceRef b);

} // extern "C"

/// A name that CGColorSpaceCreateWithName takes back. Null for pattern spaces and for null.
KORVID_EXPORT NSString CGColorSpaceCopyName(CGColorSpaceRef space);

template <> struct RetainTraits<CGColorSpace> {
    static void retain(CGColorSpace* space) noexcept { CGColorSpaceRetain(space); }
    static void release(CGColorSpace* space) noexcept { CGColorSpaceRelease(space); }
};
