#include "AppKit/HSB.h"
#include "AppKit/NSColorInternal.h"

RetainPtr<NSColor> NSColor::createWithHSB(
    NSColorSpace* space, CGFloat hue, CGFloat saturation, CGFloat brightness, CGFloat alpha)
{
    const RGBComponents rgb = rgbFromHSB({hue, saturation, brightness});
    return create(space, {rgb.red, rgb.green, rgb.blue, alpha});
}

RetainPtr<NSColor> NSColor::createClamped(NSColorSpace* space, std::array<CGFloat, 4> components)
{
    for (CGFloat& component : components)
        component = unitClamped(component);
    return create(space, components);
}

RetainPtr<NSColor> NSColor::colorWithSRGBRed(CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha)
{
    return create(NSColorSpace::sRGBColorSpace(), {red, green, blue, alpha});
}

RetainPtr<NSColor> NSColor::colorWithRed(CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha)
{
    return colorWithSRGBRed(red, green, blue, alpha);
}

RetainPtr<NSColor> NSColor::colorWithHue(CGFloat hue, CGFloat saturation, CGFloat brightness, CGFloat alpha)
{
    return createWithHSB(NSColorSpace::sRGBColorSpace(), hue, saturation, brightness, alpha);
}

RetainPtr<NSColor> NSColor::colorWithWhite(CGFloat white, CGFloat alpha)
{
    return colorWithGenericGamma22White(white, alpha);
}

RetainPtr<NSColor> NSColor::colorWithGenericGamma22White(CGFloat white, CGFloat alpha)
{
    return create(NSColorSpace::genericGamma22GrayColorSpace(), {white, alpha});
}

RetainPtr<NSColor> NSColor::colorWithDeviceRed(CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha)
{
    return createClamped(NSColorSpace::deviceRGBColorSpace(), {red, green, blue, alpha});
}

RetainPtr<NSColor> NSColor::colorWithDeviceHue(
    CGFloat hue, CGFloat saturation, CGFloat brightness, CGFloat alpha)
{
    return createWithHSB(
        NSColorSpace::deviceRGBColorSpace(), hue, saturation, brightness, unitClamped(alpha));
}

RetainPtr<NSColor> NSColor::colorWithDeviceWhite(CGFloat white, CGFloat alpha)
{
    return createClamped(NSColorSpace::deviceGrayColorSpace(), {white, alpha});
}

RetainPtr<NSColor> NSColor::colorWithCalibratedRed(CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha)
{
    return createClamped(NSColorSpace::genericRGBColorSpace(), {red, green, blue, alpha});
}

RetainPtr<NSColor> NSColor::colorWithCalibratedHue(
    CGFloat hue, CGFloat saturation, CGFloat brightness, CGFloat alpha)
{
    return createWithHSB(
        NSColorSpace::genericRGBColorSpace(), hue, saturation, brightness, unitClamped(alpha));
}

RetainPtr<NSColor> NSColor::colorWithCalibratedWhite(CGFloat white, CGFloat alpha)
{
    return createClamped(NSColorSpace::genericGrayColorSpace(), {white, alpha});
}

// Each colour with a name is made at its first use and never given up.

NSColor* NSColor::blackColor()
{
    static NSColor* const color = colorWithWhite(0, 1).leak();
    return color;
}

NSColor* NSColor::darkGrayColor()
{
    static NSColor* const color = colorWithWhite(1.0 / 3, 1).leak();
    return color;
}

NSColor* NSColor::grayColor()
{
    static NSColor* const color = colorWithWhite(0.5, 1).leak();
    return color;
}

NSColor* NSColor::lightGrayColor()
{
    static NSColor* const color = colorWithWhite(2.0 / 3, 1).leak();
    return color;
}

NSColor* NSColor::whiteColor()
{
    static NSColor* const color = colorWithWhite(1, 1).leak();
    return color;
}

NSColor* NSColor::clearColor()
{
    static NSColor* const color = colorWithWhite(0, 0).leak();
    return color;
}

NSColor* NSColor::redColor()
{
    static NSColor* const color = colorWithSRGBRed(1, 0, 0, 1).leak();
    return color;
}

NSColor* NSColor::greenColor()
{
    static NSColor* const color = colorWithSRGBRed(0, 1, 0, 1).leak();
    return color;
}

NSColor* NSColor::blueColor()
{
    static NSColor* const color = colorWithSRGBRed(0, 0, 1, 1).leak();
    return color;
}

NSColor* NSColor::cyanColor()
{
    static NSColor* const color = colorWithSRGBRed(0, 1, 1, 1).leak();
    return color;
}

NSColor* NSColor::magentaColor()
{
    static NSColor* const color = colorWithSRGBRed(1, 0, 1, 1).leak();
    return color;
}

NSColor* NSColor::yellowColor()
{
    static NSColor* const color = colorWithSRGBRed(1, 1, 0, 1).leak();
    return color;
}

NSColor* NSColor::orangeColor()
{
    static NSColor* const color = colorWithSRGBRed(1, 0.5, 0, 1).leak();
    return color;
}

NSColor* NSColor::purpleColor()
{
    static NSColor* const color = colorWithSRGBRed(0.5, 0, 0.5, 1).leak();
    return color;
}

NSColor* NSColor::brownColor()
{
    static NSColor* const color = colorWithSRGBRed(0.6, 0.4, 0.2, 1).leak();
    return color;
}

NSColor* NSColor::labelColor()
{
    static NSColor* const color =
        makeCatalogColor("labelColor", colorWithWhite(0, 216.0 / 255), colorWithWhite(1, 216.0 / 255)).leak();
    return color;
}
