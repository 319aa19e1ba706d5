#pragma once

#include <AppKit/NSLayoutConstraint.h>
#include <Foundation/NSObjCRuntime.h>
#include <Foundation/NSString.h>
#include <Foundation/RetainPtr.h>

#include <cstdint>

class NSApplication;
class NSColor;
class NSUserDefaults;
class NSWindow;

/// Functions that extend the platform's classes. The first parameter is the receiver; with a null receiver
/// they do nothing and return false, 0 or null.
namespace ZRAppKitAdditions {

// Colours. Any thread.

/// Reads the colour's hue, saturation, brightness and alpha, each 0 to 1, in the sRGB space.
///
/// Each pointer may be null. Returns false and writes nothing if the colour cannot be converted to sRGB.
KORVID_EXPORT bool SRGBGetHue(
    const NSColor* color, double* hue, double* saturation, double* brightness, double* alpha);

/// Reads the colour's red, green, blue and alpha, each 0 to 1, in the sRGB space.
///
/// Each pointer may be null. Returns false and writes nothing if the colour cannot be converted to sRGB.
KORVID_EXPORT bool SRGBGetRed(const NSColor* color, double* red, double* green, double* blue, double* alpha);

// Colours in the user defaults. Both functions use the standard user defaults, whatever the receiver. Any
// thread.

/// The colour that `setColor` stored under a key. Null for a missing key and for a value that is not an
/// archived colour.
KORVID_EXPORT RetainPtr<NSColor> colorForKey(NSUserDefaults* defaults, const NSString& key);

/// Stores a colour under a key, as a keyed archive with secure coding. A null colour, and one that cannot be
/// archived, removes the value.
KORVID_EXPORT void setColor(NSUserDefaults* defaults, RetainPtr<const NSColor> color, const NSString& key);

// The application's appearance. Main thread only.

/// Caches whether the application's effective appearance is light or dark.
///
/// An appearance is dark if its name contains "dark" or "lightcontent" (light content on a dark ground), in
/// any mix of case. The shared `ZRGraphics` calls this when it is created and whenever the effective
/// appearance changes.
KORVID_EXPORT void updateCachedEffectiveAppearance(NSApplication* application);

/// The cached appearance: 1 light, 2 dark, 0 before the first update. Cheap enough for drawing code.
KORVID_EXPORT std::int32_t effectiveAppearanceCompat(NSApplication* application);

// Windows and views. Main thread only.

/// Resizes a window, title bar and borders included, about its top left corner. `display` and `animate` are
/// those of `NSWindow::setFrame`.
KORVID_EXPORT void setSize(NSWindow* window, NSSize size, bool display, bool animate);

/// Pins a view to all four edges of its superview: it fills it from the next layout on, whatever the
/// superview's size. Returns false and changes nothing for a view without a superview.
///
/// The superview holds four new constraints, for top, right, bottom and left in this order. Both views'
/// `translatesAutoresizingMaskIntoConstraints` becomes false, the superview's too, which is deliberate.
KORVID_EXPORT bool addConstraintsPin4SidesWithPriority(NSView* view, NSLayoutPriority priority);

} // namespace ZRAppKitAdditions
