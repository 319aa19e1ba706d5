#pragma once

#include <CoreGraphics/CGColorSpace.h>
#include <Foundation/NSObject.h>

/// The family of a colour space.
enum NSColorSpaceModel : NSInteger {
    NSColorSpaceModelGray = 0,
    NSColorSpaceModelRGB = 1,
};

/// What the components of an NSColor mean.
///
/// There is one object for each space, which is never destroyed, so that borrowed pointers stay valid.
/// Immutable; any thread.
class KORVID_EXPORT NSColorSpace final : public NSObject {
public:
    /// The RGB space of the web and of most screens. Constructors of colours that name no RGB space use it.
    static NSColorSpace* sRGBColorSpace();
    /// Red, green, blue of the output device. Drawn as sRGB.
    static NSColorSpace* deviceRGBColorSpace();
    /// Gray of the output device, 0 black to 1 white. Drawn as sRGB with three equal components.
    static NSColorSpace* deviceGrayColorSpace();
    /// Calibrated RGB.
    ///
    /// Differs: Apple's has a gamma of 1.8. Here it is drawn as sRGB, and its `CGColorSpace()` is that of
    /// sRGB; as an object it is not equal to `sRGBColorSpace()`.
    static NSColorSpace* genericRGBColorSpace();
    /// Gray levels whose light is the level to the power of 2.2: 0.5 is drawn as sRGB 0.5039. The space of
    /// calibrated whites.
    static NSColorSpace* genericGamma22GrayColorSpace();
    /// Calibrated gray.
    ///
    /// Differs: Apple's has a gamma of 1.8. Here it is `genericGamma22GrayColorSpace()`.
    static NSColorSpace* genericGrayColorSpace() { return genericGamma22GrayColorSpace(); }

    /// The object for a Core Graphics space. Null for a pattern space and for null.
    static RetainPtr<NSColorSpace> initWithCGColorSpace(CGColorSpaceRef space);

    /// The Core Graphics space that colours of this space are drawn in. Borrowed, never null.
    CGColorSpaceRef CGColorSpace() const { return _cgColorSpace.get(); }
    /// The family of the space.
    NSColorSpaceModel colorSpaceModel() const { return _model; }
    /// Components without alpha: 1 for gray, 3 for RGB.
    NSInteger numberOfColorComponents() const { return _model == NSColorSpaceModelGray ? 1 : 3; }

    /// The space's name, such as "sRGB colorspace".
    NSString description() const override;

protected:
    ~NSColorSpace() override;

private:
    friend class NSColor;

    NSColorSpace(const char* name, RetainPtr<::CGColorSpace> space);

    /// The space with that name in archives, null when there is none.
    static NSColorSpace* named(const NSString& name);

    const char* _name; ///< stands for the space in archives: never change one
    RetainPtr<::CGColorSpace> _cgColorSpace;
    NSColorSpaceModel _model;
};
