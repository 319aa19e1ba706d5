#pragma once

#include <Foundation/NSObjCRuntime.h>
#include <Foundation/NSString.h>
#include <Foundation/RetainPtr.h>

#include <cstdint>

class NSApplication;
class NSColor;
class NSUserDefaults;

/// What the library adds to the platform's classes. The first parameter is the receiver; a null receiver does
/// nothing and answers false, 0 or null.
namespace ZRAppKitAdditions {

// Colours. Any thread.

/// Reads the colour's hue, saturation, brightness and alpha, each 0 to 1, in the sRGB space.
///
/// Each pointer may be null. False, with nothing written, for a colour that has no form in sRGB.
KORVID_EXPORT bool SRGBGetHue(
    const NSColor* color, double* hue, double* saturation, double* brightness, double* alpha);

/// Reads the colour's red, green, blue and alpha, each 0 to 1, in the sRGB space.
///
/// Each pointer may be null. False, with nothing written, for a colour that has no form in sRGB.
KORVID_EXPORT bool SRGBGetRed(const NSColor* color, double* red, double* green, double* blue, double* alpha);

// Settings. Both always use the standard user defaults, whatever the receiver. Any thread.

/// The colour that `setColor` stored under a key. Null for a missing key and for data that is not a colour.
KORVID_EXPORT RetainPtr<NSColor> colorForKey(NSUserDefaults* defaults, const NSString& key);

/// Stores a colour under a key, as a keyed archive that only a colour comes back from. A null colour, and one
/// that cannot be archived, removes the value.
KORVID_EXPORT void setColor(NSUserDefaults* defaults, RetainPtr<const NSColor> color, const NSString& key);

// The application's appearance. Main thread only.

/// Looks at the application's effective appearance and remembers whether it is light or dark.
///
/// Dark is an appearance whose name contains "dark" or "lightcontent" in any mix of case. The shared
/// `ZRGraphics` calls this when it is made and whenever the effective appearance changes.
KORVID_EXPORT void updateCachedEffectiveAppearance(NSApplication* application);

/// What was remembered last: 1 light, 2 dark, 0 before the first update. Cheap enough for drawing.
KORVID_EXPORT std::int32_t effectiveAppearanceCompat(NSApplication* application);

} // namespace ZRAppKitAdditions
