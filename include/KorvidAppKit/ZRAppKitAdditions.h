#pragma once

#include <AppKit/NSLayoutConstraint.h>
#include <AppKit/NSStringDrawing.h>
#include <Foundation/NSObjCRuntime.h>
#include <Foundation/NSString.h>
#include <Foundation/RetainPtr.h>

#include <cstdint>

class NSApplication;
class NSColor;
class NSImage;
class NSStatusItem;
class NSTextField;
class NSUserDefaults;
class NSWindow;

/// Where `ZRAppKitAdditions::drawWithRect` draws a text in its rectangle; the same numbers on every
/// processor.
enum ZRVerticalAlign : NSInteger {
    ZRVerticalAlignTop = 0,    ///< at the upper edge
    ZRVerticalAlignCenter = 1, ///< in the middle
    ZRVerticalAlignBottom = 2, ///< at the lower edge
};

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

/// Where a status item's button is on the screen, for a window that appears below it. NSZeroRect while the
/// button is in no window.
///
/// The button's bounds are converted to pixels first, and the result to the screen as if it were in points:
/// where a point has more than one pixel, the rectangle is larger by that factor. This order is deliberate.
KORVID_EXPORT NSRect rectOnScreen(NSStatusItem* item);

// Strings and text fields.

/// Draws a text as `NSExtendedStringDrawing::drawWithRect` does, moved by half of the difference between its
/// height and that of `rect` for ZRVerticalAlignCenter, by all of it for ZRVerticalAlignBottom, and not at
/// all for every other number. In a context whose y axis points upward, a text lower than the rectangle thus
/// moves down into its middle or to its lower edge; in a flipped context it moves up by as much.
///
/// The text's height is that of lines at most 300 points wide, with the leading of their fonts, whatever
/// `rect` and `options` are: in a rectangle of another width, where the text may have another number of
/// lines, it is not exactly in the middle or at the edge. Does nothing without a current context. Any thread.
KORVID_EXPORT void drawWithRect(
    const NSAttributedString* string, NSRect rect, NSStringDrawingOptions options, NSInteger verticalAlign);
/// The same for a string with the same attributes throughout; null for none.
KORVID_EXPORT void drawWithRect(const NSString& string, NSRect rect, RetainPtr<NSDictionary> attributes,
    NSStringDrawingOptions options, NSInteger verticalAlign);

/// Limits the height of a field's lines to `height` points, 0 or less for no limit, without space between the
/// lines. All of the text takes the attributes of its first character. A field without text has none: it
/// stays as it is. Main thread only.
KORVID_EXPORT void setLineHeight(NSTextField* field, double height);

/// Whether a string begins with the code units of another one; false if either is null or empty. Case and
/// accents matter: "é" as one character is not "e" with an accent. Any thread.
KORVID_EXPORT bool beginsWith(const NSString& string, const NSString& prefix);

} // namespace ZRAppKitAdditions

/// Functions that extend NSImage.
namespace ZRAppKitAdditions_NSImage {

/// A copy of an image in one colour: each pixel keeps its alpha, and its colour is blended with `color` by
/// that colour's alpha. The image itself does not change. Null for a null image; a plain copy for a null
/// colour. One thread at a time.
[[nodiscard]] KORVID_EXPORT RetainPtr<NSImage> imageByTinting(const NSImage* image, const NSColor* color);

} // namespace ZRAppKitAdditions_NSImage
