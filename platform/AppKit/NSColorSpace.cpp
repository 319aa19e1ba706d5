#include <AppKit/NSColorSpace.h>

NSColorSpace::NSColorSpace(const char* name, RetainPtr<::CGColorSpace> space)
    : _name(name)
    , _cgColorSpace(std::move(space))
    , _model(CGColorSpaceGetModel(_cgColorSpace) == kCGColorSpaceModelMonochrome ? NSColorSpaceModelGray
                                                                                 : NSColorSpaceModelRGB)
{
}

NSColorSpace::~NSColorSpace() = default;

NSColorSpace* NSColorSpace::sRGBColorSpace()
{
    static auto* const space = new NSColorSpace("sRGB", adopt(CGColorSpaceCreateWithName(kCGColorSpaceSRGB)));
    return space;
}

NSColorSpace* NSColorSpace::deviceRGBColorSpace()
{
    static auto* const space = new NSColorSpace("deviceRGB", adopt(CGColorSpaceCreateDeviceRGB()));
    return space;
}

NSColorSpace* NSColorSpace::deviceGrayColorSpace()
{
    static auto* const space = new NSColorSpace("deviceGray", adopt(CGColorSpaceCreateDeviceGray()));
    return space;
}

NSColorSpace* NSColorSpace::genericRGBColorSpace()
{
    static auto* const space =
        new NSColorSpace("genericRGB", adopt(CGColorSpaceCreateWithName(kCGColorSpaceSRGB)));
    return space;
}

NSColorSpace* NSColorSpace::genericGamma22GrayColorSpace()
{
    static auto* const space = new NSColorSpace(
        "genericGamma22Gray", adopt(CGColorSpaceCreateWithName(kCGColorSpaceGenericGrayGamma2_2)));
    return space;
}

RetainPtr<NSColorSpace> NSColorSpace::initWithCGColorSpace(CGColorSpaceRef space)
{
    // Generic RGB is left out: sRGB is the object for the Core Graphics space that both share.
    for (NSColorSpace* known :
        {sRGBColorSpace(), deviceRGBColorSpace(), deviceGrayColorSpace(), genericGamma22GrayColorSpace()})
        if (CGColorSpaceEqualToColorSpace(space, known->CGColorSpace()))
            return known;
    return nullptr;
}

NSColorSpace* NSColorSpace::named(const NSString& name)
{
    for (NSColorSpace* space : {sRGBColorSpace(), deviceRGBColorSpace(), deviceGrayColorSpace(),
             genericRGBColorSpace(), genericGamma22GrayColorSpace()})
        if (name == space->_name)
            return space;
    return nullptr;
}

NSString NSColorSpace::description() const
{
    return NSString(_name).stringByAppendingString(" colorspace");
}
