#include <AppKit/NSColor.h>

#include "AppKit/HSB.h"

#include <Foundation/NSException.h>

#include <algorithm>
#include <string>

namespace {

void store(CGFloat* target, CGFloat value)
{
    if (target)
        *target = value;
}

[[noreturn]] void raiseNotValid(const char* method, const NSColor& color)
{
    NSException::raise(NSInvalidArgumentException,
        NSString(std::string(method) + " not valid for the NSColor " + color.description().UTF8String()
            + "; need to first convert colorspace."));
}

} // namespace

const NSColor& NSColor::withComponents(const char* method) const
{
    if (!_space)
        raiseNotValid(method, *this);
    return *this;
}

const NSColor& NSColor::withModel(NSColorSpaceModel model, const char* method) const
{
    if (withComponents(method)._space->colorSpaceModel() != model)
        raiseNotValid(method, *this);
    return *this;
}

NSColorSpace* NSColor::colorSpace() const
{
    return withComponents("-colorSpace")._space;
}

NSInteger NSColor::numberOfComponents() const
{
    return withComponents("-numberOfComponents")._space->numberOfColorComponents() + 1;
}

void NSColor::getComponents(CGFloat* components) const
{
    const NSInteger count = withComponents("-getComponents:")._space->numberOfColorComponents() + 1;
    if (components)
        std::copy_n(_components.begin(), count, components);
}

void NSColor::getRed(CGFloat* red, CGFloat* green, CGFloat* blue, CGFloat* alpha) const
{
    withModel(NSColorSpaceModelRGB, "-getRed:green:blue:alpha:");
    store(red, _components[0]);
    store(green, _components[1]);
    store(blue, _components[2]);
    store(alpha, _components[3]);
}

void NSColor::getHue(CGFloat* hue, CGFloat* saturation, CGFloat* brightness, CGFloat* alpha) const
{
    withModel(NSColorSpaceModelRGB, "-getHue:saturation:brightness:alpha:");
    const HSBComponents hsb = hsbFromRGB({_components[0], _components[1], _components[2]});
    store(hue, hsb.hue);
    store(saturation, hsb.saturation);
    store(brightness, hsb.brightness);
    store(alpha, _components[3]);
}

CGFloat NSColor::redComponent() const
{
    return withModel(NSColorSpaceModelRGB, "-redComponent")._components[0];
}

CGFloat NSColor::greenComponent() const
{
    return withModel(NSColorSpaceModelRGB, "-greenComponent")._components[1];
}

CGFloat NSColor::blueComponent() const
{
    return withModel(NSColorSpaceModelRGB, "-blueComponent")._components[2];
}

CGFloat NSColor::hueComponent() const
{
    CGFloat hue = 0;
    withModel(NSColorSpaceModelRGB, "-hueComponent").getHue(&hue, nullptr, nullptr, nullptr);
    return hue;
}

CGFloat NSColor::saturationComponent() const
{
    CGFloat saturation = 0;
    withModel(NSColorSpaceModelRGB, "-saturationComponent").getHue(nullptr, &saturation, nullptr, nullptr);
    return saturation;
}

CGFloat NSColor::brightnessComponent() const
{
    CGFloat brightness = 0;
    withModel(NSColorSpaceModelRGB, "-brightnessComponent").getHue(nullptr, nullptr, &brightness, nullptr);
    return brightness;
}

void NSColor::getWhite(CGFloat* white, CGFloat* alpha) const
{
    withModel(NSColorSpaceModelGray, "-getWhite:alpha:");
    store(white, _components[0]);
    store(alpha, _components[1]);
}

CGFloat NSColor::whiteComponent() const
{
    return withModel(NSColorSpaceModelGray, "-whiteComponent")._components[0];
}
