#include "CoreGraphics/CGColorInternal.h"

#include <cmath>

// Components outside 0...1 are not clamped: the curves continue below 0 as point reflections.

namespace {

constexpr CGFloat kGenericGamma = 2.2;

/// The linear component of an encoded sRGB component (IEC 61966-2-1).
CGFloat linearFromSRGB(CGFloat component)
{
    const CGFloat size = std::abs(component);
    const CGFloat light = size <= 0.04045 ? size / 12.92 : std::pow((size + 0.055) / 1.055, 2.4);
    return std::copysign(light, component);
}

/// The encoded sRGB component of a linear component.
CGFloat sRGBFromLinear(CGFloat light)
{
    const CGFloat size = std::abs(light);
    // Written so that the end of the curve is exact: 1.055 - 0.055 is below 1, and white would not be white.
    const CGFloat component = size <= 0.0031308 ? size * 12.92 : 1 + 1.055 * (std::pow(size, 1 / 2.4) - 1);
    return std::copysign(component, light);
}

CGFloat linearFromGenericGray(CGFloat gray)
{
    return std::copysign(std::pow(std::abs(gray), kGenericGamma), gray);
}

CGFloat genericGrayFromLinear(CGFloat light)
{
    return std::copysign(std::pow(std::abs(light), 1 / kGenericGamma), light);
}

/// The linear luminance of a colour by Rec. 709; sRGB has the same primaries.
CGFloat luminance(const CGColorRGBA& rgba)
{
    return 0.2126 * linearFromSRGB(rgba.red) + 0.7152 * linearFromSRGB(rgba.green)
        + 0.0722 * linearFromSRGB(rgba.blue);
}

bool isGray(const CGColorRGBA& rgba)
{
    return rgba.red == rgba.green && rgba.green == rgba.blue;
}

} // namespace

CGFloat CGColorRGBA::gray() const noexcept
{
    return isGray(*this) ? red : sRGBFromLinear(luminance(*this));
}

std::size_t CGColorSpace::componentCount() const noexcept
{
    switch (kind) {
    case Kind::DeviceRGB:
    case Kind::SRGB:
        return 3;
    case Kind::DeviceGray:
    case Kind::GenericGrayGamma2_2:
        return 1;
    case Kind::Pattern:
        break;
    }
    return base ? base->componentCount() : 0;
}

CGColorRGBA CGColorSpace::rgba(const CGFloat* components) const noexcept
{
    switch (kind) {
    case Kind::DeviceRGB:
    case Kind::SRGB:
        return {components[0], components[1], components[2], components[3]};
    case Kind::DeviceGray:
        return {components[0], components[0], components[0], components[1]};
    case Kind::GenericGrayGamma2_2: {
        const CGFloat gray = sRGBFromLinear(linearFromGenericGray(components[0]));
        return {gray, gray, gray, components[1]};
    }
    case Kind::Pattern:
        break;
    }
    return base ? base->rgba(components) : CGColorRGBA{0, 0, 0, 0};
}

std::array<CGFloat, 4> CGColorSpace::components(const CGColorRGBA& rgba) const noexcept
{
    switch (kind) {
    case Kind::DeviceRGB:
    case Kind::SRGB:
        return {rgba.red, rgba.green, rgba.blue, rgba.alpha};
    case Kind::DeviceGray:
        return {rgba.gray(), rgba.alpha};
    case Kind::GenericGrayGamma2_2:
        return {genericGrayFromLinear(linearFromSRGB(rgba.gray())), rgba.alpha};
    case Kind::Pattern:
        break;
    }
    return {};
}
