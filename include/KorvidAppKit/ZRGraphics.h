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
    const char* name;
    const char* hex; ///< a hex colour string, in the case in which the palette stores it
};

/// The one object that views ask for colours, colour spaces and small drawing services.
///
/// Colours are written as hex colour strings: pairs of hexadecimal digits in either case, without a prefix.
///
///     "aa"        opaque gray, in the device gray space
///     "01DAFD"    opaque colour, in the sRGB space
///     "ffffff45"  the same with alpha last
///
/// Any other length is transparent black, and so is a text that is not ASCII: nothing here fails or logs.
/// A pair is read like `strtol` with base 16 reads two characters: leading white space and a sign are
/// accepted and the longest valid beginning counts ("fz" is 15, "zf" is 0).
///
///     CGContextSetFillColorWithColor(context, ZRGraphics::sharedGraphics()->CGColorFromHex("02031D88"));
///
/// The shared object is created by the first call of `sharedGraphics()` and lives as long as the process.
/// Main thread only, unless a function says otherwise.
class KORVID_EXPORT ZRGraphics : public NSObject {
public:
    /// Reads the application's "colors.json" and observes the application's effective appearance.
    ///
    /// Applications use `sharedGraphics()`. An object that is made before the application object observes
    /// nothing, and leaves the cached appearance as it is.
    ZRGraphics();

    /// The shared object; never null. Made on the first call, which must come from the main thread.
    static ZRGraphics* sharedGraphics();

    /// The context that is being drawn into, null outside a drawing pass. Borrowed; any thread, each of which
    /// has its own.
    static CGContextRef sharedContext();

    /// Writes red, green, blue and alpha, each 0 to 1, of a hex colour string of 6 or 8 characters.
    ///
    /// A component is the pair's value / 255, brought into 0 to 1; 6 characters mean alpha 1. A string of any
    /// other length, or a null pointer, leaves `rgba` as it is. Allocates nothing. Any thread.
    static void hexColor(const char* string, double rgba[4]);

    /// The cubic (3 - 2t) t², which eases in and out between 0 and 1. Not clamped: it goes on outside, so 1.5
    /// gives 0 and -1 gives 5. Any thread.
    static double smoothstep(double t);

    /// A concurrent queue with the label "ZRGraphics_q" for the application's work away from the main thread;
    /// borrowed, always the same one. The library itself submits nothing to it. What runs there must not ask
    /// for hex colours. Any thread.
    static dispatch_queue_t sharedRenderQueue();

    /// The colour spaces, borrowed; never null. Any thread, once the object is made.
    CGColorSpaceRef csDeviceRGB() const { return _csDeviceRGB.get(); }
    CGColorSpaceRef csDeviceGray() const { return _csDeviceGray.get(); }
    CGColorSpaceRef csSRGB() const { return _csSRGB.get(); }
    /// For uncoloured patterns that are painted in an sRGB colour.
    CGColorSpaceRef csPattern() const { return _csPattern.get(); }

    /// Puts the gray of a string into the cache, unless it is there. Always true.
    ///
    /// The whole string is one number / 255, not brought into 0 to 1. `CGColorFromHex` calls this for strings
    /// of two characters.
    bool _genGrayscaleColorForHex(const NSString& hex);
    /// Puts the colour of a string of any length into the cache, unless it is there. Always true.
    bool _genColorForHex(const NSString& hex);

    /// The colour of a hex colour string; never null. Case makes no difference.
    ///
    /// Owned by the cache: the caller does not release it. Each string is read once, and its colour is kept
    /// for the life of the process; from then on a call is one look-up, without an allocation.
    CGColorRef CGColorFromHex(const NSString& hex);

    /// The colour of that name in the application's colour catalogue, null when there is none. Its variant
    /// follows the appearance in force when it is drawn with. The tables below have no part in this.
    RetainPtr<NSColor> platformColorNamed(const NSString& name);

    /// A new colour object made from `CGColorFromHex(hex)`.
    RetainPtr<NSColor> platformColorFromHex(const NSString& hex);

    /// The colour of that name in the application's colour catalogue, null when there is none.
    ///
    /// Borrowed: it stays valid until this function is asked for the same name again. Use it within the
    /// current drawing pass.
    CGColorRef CGColorNamed(const NSString& name);

    /// A new image of the same size, each pixel the mean of the square of `boxDim` x `boxDim` pixels around
    /// it, with premultiplied alpha in `csSRGB()`; the caller releases it. ZRBoxBlur.h has the rule to the
    /// last bit.
    ///
    /// Meant for small images, such as icons: the time grows with boxDim². `ZRCreateBoxBlurredImage` gives
    /// the same bytes without that. A boxDim of 1 gives the pixels themselves; 0 and less, a transparent
    /// image.
    ///
    /// Null for a null image, for one with a side longer than 32766 pixels, and where there is no memory for
    /// the pixels. Throws std::bad_alloc as `_boxBlurBitmap` does. Any thread.
    [[nodiscard]] CGImageRef copyBoxBlurredImageFromImage(CGImageRef image, int boxDim) const;

    /// The point at `t` along the outline of a capsule: a rectangle whose short ends are half circles. Moving
    /// t from 0 to 1 at an even pace moves the point once around at an even pace.
    ///
    /// Where the bounds are higher than wide, the way begins at (minX, minY + r), with r half the width: up
    /// the side of least x, around the end of greatest y, down the other side and around the end of least y.
    /// Otherwise it begins at (maxX - r, minY), with r half the height: along the side of least y towards
    /// less x, around that end, back along the other side and around the end of greatest x. The latter holds
    /// for bounds whose origin has the same x and y, such as a view's own; for others the point is moved by
    /// (x - y, x - y) of the origin.
    ///
    /// A t below 0 goes on straight beyond the beginning, where there is a straight side, and one above 1
    /// stays on the last half circle, which it follows further. NaN and infinity count as 0. Bounds without
    /// an inside (a side of 0 or less) give their origin, bounds that are not finite give (0, 0). Any thread.
    CGPoint pointAlongCapsuleWithBounds(CGRect bounds, double t) const;

    /// The font of the theme, "HelveticaNeue-Light", at a size in points; 0, negative sizes, infinity and NaN
    /// count as 12. Null where no font of that name is installed, which is usual outside macOS: no other face
    /// takes its place. Any thread.
    ///
    ///     auto font = ZRGraphics::sharedGraphics()->themeFontOfSize(13);
    ///     if (!font)
    ///         font = NSFont::systemFontOfSize(13);
    RetainPtr<NSFont> themeFontOfSize(CGFloat size) const;

    /// For the application's own views: the library stores it and reads it nowhere. Default false.
    bool forceDark() const { return _forceDark; }
    /// Stores the value. Sets off nothing.
    void setForceDark(bool forceDark) { _forceDark = forceDark; }

    /// The built-in palette, in its order. Any thread.
    static std::span<const ZRNamedColor> builtInColors();

    /// The hex colour string of a name in the built-in palette, null when it has none. The match is exact.
    NSString hexForBuiltInColorNamed(const NSString& name) const;

    /// The text stored under a name in the application's own table, the object in the main bundle's
    /// resource "colors.json". Null when there is no such resource, when it is not a JSON object, when it
    /// lacks the name or holds something else than a text there. The built-in palette has no part in this.
    NSString hexForApplicationColorNamed(const NSString& name) const;

    /// Brings the cached appearance up to date when `keyPath` is "effectiveAppearance"; anything else goes to
    /// the base class.
    void observeValueForKeyPath(
        NSString keyPath, NSObject* object, NSDictionary* change, void* context) override;

protected:
    ~ZRGraphics() override;

private:
    using Quadruple = std::array<double, 4>; ///< red, green, blue, alpha
    /// What the cache holds for one hex colour string.
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
    RetainPtr<NSObject> _colorNamesToHex; ///< whatever the JSON text holds
    RetainPtr<CGColorSpace> _csDeviceRGB;
    RetainPtr<CGColorSpace> _csDeviceGray;
    RetainPtr<CGColorSpace> _csSRGB;
    RetainPtr<CGColorSpace> _csPattern;
    RetainPtr<NSMutableDictionary> _colorCache;   ///< reserved: stays empty
    RetainPtr<NSMutableDictionary> _colorCacheCG; ///< reserved: stays empty
    bool _forceDark = false;

    /// Keeps alive what `CGColorNamed` lent out last, by name.
    std::unordered_map<NSString, RetainPtr<NSColor>> _lentColors;
};
