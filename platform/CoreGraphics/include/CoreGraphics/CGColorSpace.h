#pragma once

#include <CoreGraphics/CGBase.h>
#ifdef __cplusplus
#include <Foundation/NSString.h>
#endif

/// The colour space that the components of a colour refer to. Immutable and reference counted; safe on any
/// thread. The caller owns the result of a Create function.
///
/// Except for pattern spaces there is one shared object per kind of space: the Create functions are cheap,
/// and spaces of one kind are the same pointer.
struct CGColorSpace;
/// A pointer to a colour space.
typedef struct CGColorSpace* CGColorSpaceRef;

/// The family of a space.
typedef enum KORVID_ENUM(CGColorSpaceModel, int32_t) {
    kCGColorSpaceModelUnknown = -1,
    kCGColorSpaceModelMonochrome = 0,
    kCGColorSpaceModelRGB = 1,
    kCGColorSpaceModelPattern = 6,
} CGColorSpaceModel;

/// How colours outside the gamut of the destination are mapped into it. Has no effect, because every
/// supported space has the gamut of sRGB; an image stores it for its getter.
typedef enum KORVID_ENUM(CGColorRenderingIntent, int32_t) {
    kCGRenderingIntentDefault = 0,
    kCGRenderingIntentAbsoluteColorimetric = 1,
    kCGRenderingIntentRelativeColorimetric = 2,
    kCGRenderingIntentPerceptual = 3,
    kCGRenderingIntentSaturation = 4,
} CGColorRenderingIntent;

#ifdef __cplusplus
/// Name of the sRGB space (IEC 61966-2-1), the RGB space of the web and most screens.
inline constexpr char kCGColorSpaceSRGB[] = "kCGColorSpaceSRGB";
/// Name of the gray space with a gamma of 2.2: luminance is the gray level to the power of 2.2. The space of
/// calibrated whites.
inline constexpr char kCGColorSpaceGenericGrayGamma2_2[] = "kCGColorSpaceGenericGrayGamma2_2";
#endif

KORVID_EXTERN_C_BEGIN

/// Red, green, blue of the output device. Drawn as sRGB.
KORVID_NODISCARD KORVID_EXPORT CGColorSpaceRef CGColorSpaceCreateDeviceRGB(void);
/// Gray of the output device, 0 black to 1 white. Drawn as sRGB with three equal components.
KORVID_NODISCARD KORVID_EXPORT CGColorSpaceRef CGColorSpaceCreateDeviceGray(void);
#ifdef __cplusplus
/// The space of that name: one of the constants above or a result of CGColorSpaceCopyName. Null for other
/// names and for null. For C++: in C, CGColorGetColorSpace returns the space of a colour that
/// CGColorCreateSRGB or CGColorCreateGenericGrayGamma2_2 created.
KORVID_NODISCARD KORVID_EXPORT CGColorSpaceRef CGColorSpaceCreateWithName(const NSString& name);
#endif
/// A new space for patterns. `baseSpace`, which is retained, is the colour space of uncoloured patterns; it
/// is null for coloured patterns. Returns null when the base is itself a pattern space.
KORVID_NODISCARD KORVID_EXPORT CGColorSpaceRef CGColorSpaceCreatePattern(CGColorSpaceRef baseSpace);
/// Adds a reference and returns `space`. Null is allowed.
KORVID_EXPORT CGColorSpaceRef CGColorSpaceRetain(CGColorSpaceRef space);
/// Removes a reference. Null is allowed.
KORVID_EXPORT void CGColorSpaceRelease(CGColorSpaceRef space);

/// Number of components without alpha: 3 for RGB, 1 for gray, that of the base for a pattern space. 0 for a
/// pattern space without base and for null.
KORVID_EXPORT size_t CGColorSpaceGetNumberOfComponents(CGColorSpaceRef space);
/// The family; unknown for null.
KORVID_EXPORT CGColorSpaceModel CGColorSpaceGetModel(CGColorSpaceRef space);
/// The base of a pattern space. Borrowed. Null for other spaces and for null.
KORVID_EXPORT CGColorSpaceRef CGColorSpaceGetBaseColorSpace(CGColorSpaceRef space);
/// True for spaces of the same kind; pattern spaces must also have equal bases. Device RGB and sRGB are not
/// equal, although they are drawn alike. Null equals only null.
KORVID_EXPORT bool CGColorSpaceEqualToColorSpace(CGColorSpaceRef a, CGColorSpaceRef b);

KORVID_EXTERN_C_END

#ifdef __cplusplus
/// The name from which CGColorSpaceCreateWithName returns this space. Null for pattern spaces and for null.
KORVID_EXPORT NSString CGColorSpaceCopyName(CGColorSpaceRef space);

template <> struct RetainTraits<CGColorSpace> {
    static void retain(CGColorSpace* space) noexcept { CGColorSpaceRetain(space); }
    static void release(CGColorSpace* space) noexcept { CGColorSpaceRelease(space); }
};
#endif
