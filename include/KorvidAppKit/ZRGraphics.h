#pragma once

#include <CoreGraphics/CGColor.h>
#include <CoreGraphics/CGColorSpace.h>
#include <CoreGraphics/CGContext.h>
#include <CoreGraphics/CGGeometry.h>
#include <CoreGraphics/CGImage.h>
#include <Foundation/NSObject.h>
#include <Foundation/dispatch.h>

#include <array>
#include <cstddef>
#include <span>
#include <unordered_map>

class NSColor;
class NSDictionary;
class NSFont;
class NSMutableDictionary;

/// One row of the built-in palette.
struct ZRNamedColor {
    const char* name; ///< such as "white"
    const char* hex;  ///< a hex colour string; upper or lower case as the palette is written
};

/// The source of colours, colour spaces and small drawing services that all views share.
///
/// Colours are given as hex colour strings: pairs of hexadecimal digits, upper or lower case, without a
/// prefix.
///
///     "aa"        opaque gray, in the device gray space
///     "01DAFD"    opaque colour, in the sRGB space
///     "ffffff45"  the same with alpha last
///
/// A string of any other length or with a character outside ASCII is transparent black; nothing fails or
/// logs. Each pair is read as `strtol` reads two characters in base 16: leading white space and a sign are
/// accepted, and the longest valid prefix counts ("fz" is 15, "zf" is 0).
///
///     CGContextSetFillColorWithColor(context, ZRGraphics::sharedGraphics()->CGColorFromHex("02031D88"));
///
/// The first call of `sharedGraphics()` creates the shared object, which lives as long as the process. Main
/// thread only, unless a function says otherwise.
class KORVID_EXPORT ZRGraphics : public NSObject {
public:
    /// Reads the application's "colors.json" and observes the application's effective appearance.
    ///
    /// Applications use `sharedGraphics()`. An object created before the application object observes nothing
    /// and leaves the cached appearance unchanged.
    ZRGraphics();

    /// The shared object; never null. The first call creates it and must come from the main thread.
    static ZRGraphics* sharedGraphics();

    /// The calling thread's current context; null outside a drawing pass. Borrowed. Any thread.
    static CGContextRef sharedContext();

    /// Writes red, green, blue and alpha, each 0 to 1, of a hex colour string of 6 or 8 characters.
    ///
    /// A component is the pair's value / 255, clamped to 0 to 1; with 6 characters alpha is 1. A null pointer
    /// or a string of any other length leaves `rgba` unchanged. Allocates nothing. Any thread.
    static void hexColor(const char* string, double rgba[4]);

    /// The cubic (3 - 2t) t², which eases in and out between 0 and 1. Not clamped: the cubic continues
    /// outside, so 1.5 gives 0 and -1 gives 5. Any thread.
    static double smoothstep(double t);

    /// A concurrent queue with the label "ZRGraphics_q" for the application's work away from the main thread;
    /// borrowed, always the same one. The library itself submits nothing to it. Blocks that run on it must
    /// not call `CGColorFromHex`. Any thread.
    static dispatch_queue_t sharedRenderQueue();

    /// Red, green, blue of the output device. Borrowed, never null. Any thread, once the object exists.
    CGColorSpaceRef csDeviceRGB() const { return _csDeviceRGB.get(); }
    /// Gray of the output device. Borrowed, never null. Any thread, once the object exists.
    CGColorSpaceRef csDeviceGray() const { return _csDeviceGray.get(); }
    /// The sRGB space. Borrowed, never null. Any thread, once the object exists.
    CGColorSpaceRef csSRGB() const { return _csSRGB.get(); }
    /// For uncoloured patterns painted in an sRGB colour. Borrowed, never null. Any thread, once the object
    /// exists.
    CGColorSpaceRef csPattern() const { return _csPattern.get(); }

    /// Caches the gray of a string under that string, unless the cache has it. Returns true.
    ///
    /// The gray is the whole string's number / 255, not clamped to 0 to 1. `CGColorFromHex` calls this for
    /// lower-cased strings of two characters.
    bool _genGrayscaleColorForHex(const NSString& hex);
    /// Caches the colour of a string of any length under the lower-cased string, unless the cache has it.
    /// Returns true.
    bool _genColorForHex(const NSString& hex);

    /// The colour of a hex colour string; never null. Case does not matter.
    ///
    /// Borrowed: the cache owns it for the life of the process. Each string is parsed once; from then on a
    /// call is one lookup and allocates nothing.
    CGColorRef CGColorFromHex(const NSString& hex);

    /// The colour of that name in the application's colour catalogue, null when there is none. It has the
    /// variant for the appearance in effect when it is drawn. The built-in palette and "colors.json" are not
    /// consulted.
    RetainPtr<NSColor> platformColorNamed(const NSString& name);

    /// A new colour object made from `CGColorFromHex(hex)`.
    RetainPtr<NSColor> platformColorFromHex(const NSString& hex);

    /// The colour of that name in the application's colour catalogue, null when there is none.
    ///
    /// Borrowed, and valid until the next call with the same name: use it within the current drawing pass.
    CGColorRef CGColorNamed(const NSString& name);

    /// A new image of the same size, each pixel the mean of the square of `boxDim` x `boxDim` pixels around
    /// it, with premultiplied alpha in `csSRGB()`; the caller releases it. ZRBoxBlur.h documents the exact
    /// arithmetic.
    ///
    /// Meant for small images, such as icons: the time grows with boxDim². `ZRCreateBoxBlurredImage` gives
    /// the same bytes without that. A boxDim of 1 gives the pixels themselves; 0 and less, a transparent
    /// image.
    ///
    /// Null for a null image, for one with a side longer than 32766 pixels, and if the pixels cannot be
    /// allocated. Throws std::bad_alloc as `_boxBlurBitmap` does. Any thread.
    [[nodiscard]] CGImageRef copyBoxBlurredImageFromImage(CGImageRef image, int boxDim) const;

    /// The point at `t` along the outline of a capsule: a rectangle whose short ends are half circles. As t
    /// runs from 0 to 1 at constant speed, the point runs once around the outline at constant speed.
    ///
    /// Where the bounds are higher than wide, the outline starts at (minX, minY + r), with r half the width:
    /// up the side of least x, around the end of greatest y, down the other side and around the end of least
    /// y. Otherwise it starts at (maxX - r, minY), with r half the height: along the side of least y towards
    /// lower x, around that end, back along the other side and around the end of greatest x. The point is
    /// then also moved by (x - y, x - y) of the bounds' origin, which is zero for a view's own bounds.
    ///
    /// A t below 0 continues the first straight side backwards (a square has none: t counts as 0), and one
    /// above 1 continues the last half circle. NaN and infinity count as 0. Empty bounds, with a side of 0 or
    /// less, give their origin; bounds that are not finite give (0, 0). Any thread.
    CGPoint pointAlongCapsuleWithBounds(CGRect bounds, double t) const;

    /// The font of the theme, "HelveticaNeue-Light", at a size in points; 0, negative sizes, infinity and NaN
    /// count as 12. Null where no font of that name is installed, which is usual outside macOS: no other face
    /// takes its place. Any thread.
    ///
    ///     auto font = ZRGraphics::sharedGraphics()->themeFontOfSize(13);
    ///     if (!font)
    ///         font = NSFont::systemFontOfSize(13);
    RetainPtr<NSFont> themeFontOfSize(CGFloat size) const;

    /// A flag for the application's own views; the library does not read it. Default false.
    bool forceDark() const { return _forceDark; }
    /// Only stores the value: nothing redraws.
    void setForceDark(bool forceDark) { _forceDark = forceDark; }

    /// The built-in palette, in its order. Any thread.
    static std::span<const ZRNamedColor> builtInColors();

    /// The hex colour string of a name in the built-in palette, null for a name that it lacks. Case matters.
    NSString hexForBuiltInColorNamed(const NSString& name) const;

    /// The string under a name in the application's own table, the JSON object in the main bundle's resource
    /// "colors.json". Null when the resource is missing or not a JSON object, and when the name is missing or
    /// its value is not a string. The built-in palette is not consulted.
    NSString hexForApplicationColorNamed(const NSString& name) const;

    /// Updates the cached appearance when `keyPath` is "effectiveAppearance"; passes anything else to the
    /// base class.
    void observeValueForKeyPath(
        NSString keyPath, NSObject* object, NSDictionary* change, void* context) override;

protected:
    ~ZRGraphics() override;

private:
    using Quadruple = std::array<double, 4>; ///< red, green, blue, alpha
    /// The cache's entry for one hex colour string.
    struct ColorPair {
        RetainPtr<NSColor> platformColor;
        RetainPtr<CGColor> color;
        ColorPair(RetainPtr<NSColor> platformColor, RetainPtr<CGColor> color) noexcept;
        ~ColorPair();
    };

    static RetainPtr<NSDictionary> makeBuiltInTable();
    static RetainPtr<NSObject> readApplicationTable();
    bool cacheColor(const NSString& key, const Quadruple& rgba);

    std::unordered_map<NSString, ColorPair> _colorMap; ///< by lower-cased string
    RetainPtr<NSDictionary> _colorNamesToHexLEGACY;
    RetainPtr<NSObject> _colorNamesToHex; ///< the JSON value, of any type; null without the resource
    RetainPtr<CGColorSpace> _csDeviceRGB;
    RetainPtr<CGColorSpace> _csDeviceGray;
    RetainPtr<CGColorSpace> _csSRGB;
    RetainPtr<CGColorSpace> _csPattern;
    RetainPtr<NSMutableDictionary> _colorCache;   ///< reserved: stays empty
    RetainPtr<NSMutableDictionary> _colorCacheCG; ///< reserved: stays empty
    bool _forceDark = false;

    /// Owns the colours that `CGColorNamed` returned last, by name.
    std::unordered_map<NSString, RetainPtr<NSColor>> _namedColors;
};
