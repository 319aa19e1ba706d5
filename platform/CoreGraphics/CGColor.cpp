#include "CoreGraphics/CGColorInternal.h"

#include <algorithm>

CGColorRef CGColorCreate(CGColorSpaceRef space, const CGFloat* components)
{
    if (!space || !components || space->kind == CGColorSpace::Kind::Pattern)
        return nullptr;
    std::array<CGFloat, 4> copy{};
    std::copy_n(components, space->componentCount() + 1, copy.begin());
    return new CGColor(space, copy);
}

CGColorRef CGColorCreateSRGB(CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha)
{
    const auto space = adopt(CGColorSpaceCreateWithName(kCGColorSpaceSRGB));
    return new CGColor(space.get(), {red, green, blue, alpha});
}

CGColorRef CGColorCreateGenericGrayGamma2_2(CGFloat gray, CGFloat alpha)
{
    const auto space = adopt(CGColorSpaceCreateWithName(kCGColorSpaceGenericGrayGamma2_2));
    return new CGColor(space.get(), {gray, alpha});
}

CGColorRef CGColorCreateCopyWithAlpha(CGColorRef color, CGFloat alpha)
{
    if (!color)
        return nullptr;
    auto components = color->components;
    components[color->componentCount() - 1] = alpha;
    return new CGColor(color->space.get(), components);
}

CGColorRef CGColorCreateCopyByMatchingToColorSpace(
    CGColorSpaceRef space, CGColorRenderingIntent, CGColorRef color, const NSDictionary*)
{
    if (!space || !color || space->kind == CGColorSpace::Kind::Pattern)
        return nullptr;
    if (color->space == space)
        return CGRetainRecord(color);
    return new CGColor(space, space->components(color->rgba()));
}

CGColorRef CGColorRetain(CGColorRef color)
{
    return CGRetainRecord(color);
}

void CGColorRelease(CGColorRef color)
{
    CGReleaseRecord(color);
}

const CGFloat* CGColorGetComponents(CGColorRef color)
{
    return color ? color->components.data() : nullptr;
}

std::size_t CGColorGetNumberOfComponents(CGColorRef color)
{
    return color ? color->componentCount() : 0;
}

CGFloat CGColorGetAlpha(CGColorRef color)
{
    return color ? color->alpha() : 0;
}

CGColorSpaceRef CGColorGetColorSpace(CGColorRef color)
{
    return color ? color->space.get() : nullptr;
}

bool CGColorEqualToColor(CGColorRef a, CGColorRef b)
{
    return a == b || (a && b && a->space == b->space && a->components == b->components);
}
