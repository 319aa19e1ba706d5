#pragma once

#include <AppKit/NSColorSpace.h>
#include <CoreGraphics/CGColor.h>
#include <CoreText/CTStringAttributes.h>
#include <Foundation/NSCoder.h>

#include <array>
#include <atomic>
#include <memory>

/// What a colour is made of.
enum NSColorType : NSInteger {
    NSColorTypeComponentBased = 0, ///< numbers in a colour space
    NSColorTypePattern = 1,        ///< a colour without components
    NSColorTypeCatalog = 2,        ///< light and dark variants under a name
};

/// A colour: components in a colour space, alpha last and not premultiplied, or a name whose light or dark
/// variant is chosen at each use.
///
/// The constructors of device and calibrated colours clamp all components to 0...1 (NaN becomes 0). Other
/// colours store components exactly as given, also below 0, above 1 or NaN; drawing clamps them.
///
/// Colours are immutable and safe on any thread. One with variants uses the one for
/// `NSAppearance::currentDrawingAppearance()`.
///
///     NSColor::colorWithSRGBRed(1, 0.5, 0, 1)->setFill();
///     CGContextSetStrokeColorWithColor(context, NSColor::labelColor()->CGColor());
class KORVID_EXPORT NSColor : public NSObject, public NSSecureCoding, public CTColorValue {
public:
    // Colours of components. Hue, saturation and brightness are clamped to 0...1 (NaN becomes 0) and
    // converted to red, green and blue; a hue of 1 is red, like 0.

    /// In the sRGB space.
    static RetainPtr<NSColor> colorWithSRGBRed(CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha);
    /// In the sRGB space.
    static RetainPtr<NSColor> colorWithRed(CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha);
    /// In the sRGB space.
    static RetainPtr<NSColor> colorWithHue(
        CGFloat hue, CGFloat saturation, CGFloat brightness, CGFloat alpha);
    /// In the gray space of gamma 2.2.
    static RetainPtr<NSColor> colorWithWhite(CGFloat white, CGFloat alpha);
    /// In the gray space of gamma 2.2.
    static RetainPtr<NSColor> colorWithGenericGamma22White(CGFloat white, CGFloat alpha);
    /// In the device RGB space. Clamps.
    static RetainPtr<NSColor> colorWithDeviceRed(CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha);
    /// In the device RGB space. Clamps.
    static RetainPtr<NSColor> colorWithDeviceHue(
        CGFloat hue, CGFloat saturation, CGFloat brightness, CGFloat alpha);
    /// In the device gray space. Clamps.
    static RetainPtr<NSColor> colorWithDeviceWhite(CGFloat white, CGFloat alpha);
    /// In the generic RGB space. Clamps.
    static RetainPtr<NSColor> colorWithCalibratedRed(CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha);
    /// In the generic RGB space. Clamps.
    static RetainPtr<NSColor> colorWithCalibratedHue(
        CGFloat hue, CGFloat saturation, CGFloat brightness, CGFloat alpha);
    /// In the generic gray space. Clamps.
    static RetainPtr<NSColor> colorWithCalibratedWhite(CGFloat white, CGFloat alpha);
    /// `count` components in `space`, alpha last. Null when an argument is null, or `count` is not the
    /// space's number of components and one.
    static RetainPtr<NSColor> colorWithColorSpace(
        NSColorSpace* space, const CGFloat* components, NSInteger count);
    /// The same colour as `color`, which is retained and returned by `CGColor()`. Null gives null.
    static RetainPtr<NSColor> colorWithCGColor(RetainPtr<::CGColor> color);

    /// The colour `Colors.xcassets/<name>.colorset` of the main bundle, with its light and dark variants.
    ///
    /// Its file `Contents.json` is read once: an object with an array "colors" of entries, of which each has
    /// - "color": an object with "color-space", "srgb", "extended-srgb", "gray-gamma-22" or "extended-gray",
    ///   and "components", which are "red", "green", "blue" or "white", and "alpha", 1 when missing;
    /// - "appearances": for any appearance nothing, else an array of one object with "appearance"
    ///   "luminosity" and "value" "light" or "dark";
    /// - "idiom": "universal", the default, or "mac", which is preferred.
    /// An entry without "color", and one for other appearances (high contrast), idioms or display gamuts, is
    /// ignored. Of two for the same appearance and idiom the first one counts.
    ///
    /// A component is a string, "0xFF" or "255" for 255 / 255, "1.000", with a point, for the value itself;
    /// or a number, for the value itself. Alpha needs no point. Only the extended spaces go beyond 0...1.
    ///
    /// Null when there is no such colour or it has none for light or for dark, when the file is damaged or
    /// has a colour in another notation, and for a null or empty name.
    static RetainPtr<NSColor> colorNamed(const NSString& name);

    // Colours with a name. Borrowed; they are never destroyed. Grays are in the gray space of gamma 2.2, the
    // others in sRGB; all but the clear one are opaque.

    static NSColor* blackColor();     ///< white 0
    static NSColor* darkGrayColor();  ///< white 1/3
    static NSColor* grayColor();      ///< white 0.5
    static NSColor* lightGrayColor(); ///< white 2/3
    static NSColor* whiteColor();     ///< white 1
    static NSColor* clearColor();     ///< white 0, alpha 0
    static NSColor* redColor();       ///< 1, 0, 0
    static NSColor* greenColor();     ///< 0, 1, 0
    static NSColor* blueColor();      ///< 0, 0, 1
    static NSColor* cyanColor();      ///< 0, 1, 1
    static NSColor* magentaColor();   ///< 1, 0, 1
    static NSColor* yellowColor();    ///< 1, 1, 0
    static NSColor* orangeColor();    ///< 1, 0.5, 0
    static NSColor* purpleColor();    ///< 0.5, 0, 0.5
    static NSColor* brownColor();     ///< 0.6, 0.4, 0.2
    /// For primary text: black or, in dark appearances, white, with an alpha of 216/255.
    static NSColor* labelColor();

    /// What the colour is made of.
    NSColorType type() const;

    // Reading. For a colour with variants, without components or of another colour model these raise an
    // NSException with the name NSInvalidArgumentException. Convert it first:
    //
    //     if (auto rgb = color->colorUsingColorSpace(NSColorSpace::sRGBColorSpace()))
    //         rgb->getRed(&red, &green, &blue, nullptr);

    /// The space of the components.
    NSColorSpace* colorSpace() const;
    /// Components, alpha included: 2 or 4.
    NSInteger numberOfComponents() const;
    /// Writes all components, alpha last. Null writes nothing.
    void getComponents(CGFloat* components) const;

    // RGB colours. Pointers may be null.

    /// Red, green, blue and alpha, as stored.
    void getRed(CGFloat* red, CGFloat* green, CGFloat* blue, CGFloat* alpha) const;
    /// Hue, 0 to below 1 (0 for red and for grays), saturation and brightness, computed from red, green and
    /// blue, each clamped to 0...1. Alpha is returned as stored.
    void getHue(CGFloat* hue, CGFloat* saturation, CGFloat* brightness, CGFloat* alpha) const;
    /// Red, as stored.
    CGFloat redComponent() const;
    /// Green, as stored.
    CGFloat greenComponent() const;
    /// Blue, as stored.
    CGFloat blueComponent() const;
    /// The hue of `getHue`.
    CGFloat hueComponent() const;
    /// The saturation of `getHue`.
    CGFloat saturationComponent() const;
    /// The brightness of `getHue`.
    CGFloat brightnessComponent() const;

    // Gray colours. Pointers may be null.

    /// The gray level, 0 black to 1 white, and alpha, as stored.
    void getWhite(CGFloat* white, CGFloat* alpha) const;
    /// The gray level, as stored.
    CGFloat whiteComponent() const;

    // Any colour.

    /// With variants, that of the current one; 1 for a colour without components.
    CGFloat alphaComponent() const;

    /// The same colour with another alpha, which is clamped to 0...1 (NaN becomes 0); with variants, in both
    /// of them. Null for a colour without components.
    RetainPtr<NSColor> colorWithAlphaComponent(CGFloat alpha) const;
    /// The colour that looks the same in `space`; the colour itself in its own space. With variants, that of
    /// the current one. A colour becomes gray by its luminance. Null for a colour without components, and for
    /// a null space.
    virtual RetainPtr<NSColor> colorUsingColorSpace(NSColorSpace* space) const;
    /// The mixture of `fraction` of `color` and the rest of this one, in sRGB, component by component, alpha
    /// too. `fraction` is clamped to 0...1; NaN counts as 0. At 0 the result is this object, at 1 `color`,
    /// each in its own space. Null when either has no form in sRGB, and for a null colour.
    RetainPtr<NSColor> blendedColorWithFraction(CGFloat fraction, const NSColor* color) const;

    /// For Core Graphics. Borrowed; made at the first call and cached as long as this colour lives, so that
    /// drawing allocates nothing. With variants, the current one. Null for a colour without components.
    CGColorRef CGColor() const override;

    // Drawing. Sets the colours of the calling thread's current NSGraphicsContext; without one does nothing.

    /// Sets fill and stroke colour.
    void set() const;
    /// Sets the fill colour only.
    void setFill() const;
    /// Sets the stroke colour only.
    void setStroke() const;

    /// Same space and components; with variants, same name and equal variants.
    bool isEqual(const NSObject* other) const override;
    NSUInteger hash() const override;
    /// Such as "sRGB colorspace 1 0.5 0 1".
    NSString description() const override;

    /// Writes the space and the exact components; for a colour with variants its name and both of them.
    void encodeWithCoder(NSCoder* coder) const override;
    /// Null when the archive holds no valid colour.
    static RetainPtr<NSObject> initWithCoder(NSCoder* coder);

protected:
    /// A colour without components, for subclasses. It draws nothing, converts to nothing and cannot be
    /// archived.
    NSColor();
    ~NSColor() override;

private:
    friend RetainPtr<NSColor> makeCatalogColor(
        const NSString& name, RetainPtr<NSColor> light, RetainPtr<NSColor> dark);
    struct Variants;

    NSColor(NSColorSpace* space, const std::array<CGFloat, 4>& components);
    NSColor(const NSString& name, RetainPtr<NSColor> light, RetainPtr<NSColor> dark);

    static RetainPtr<NSColor> create(NSColorSpace* space, const std::array<CGFloat, 4>& components);
    static RetainPtr<NSColor> createClamped(NSColorSpace* space, std::array<CGFloat, 4> components);
    static RetainPtr<NSColor> createWithHSB(
        NSColorSpace* space, CGFloat hue, CGFloat saturation, CGFloat brightness, CGFloat alpha);
    /// This colour; with variants, the one for the current drawing appearance.
    const NSColor& inForce() const;
    /// This colour; raises when it has no components, naming `method`.
    const NSColor& withComponents(const char* method) const;
    /// This colour; raises when its components are of another model, naming `method`.
    const NSColor& withModel(NSColorSpaceModel model, const char* method) const;

    NSColorSpace* _space = nullptr;       ///< null for variants and for colours without components
    std::array<CGFloat, 4> _components{}; ///< alpha last; unused ones are 0
    std::unique_ptr<const Variants> _variants;
    mutable std::atomic<CGColorRef> _cgColor{nullptr}; ///< owned; made at the first use
};
