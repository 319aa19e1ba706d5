#include "CoreGraphics/CGColorInternal.h"

#include <algorithm>
#include <string_view>

namespace {

using Kind = CGColorSpace::Kind;

constexpr Kind kNamedKinds[] = {Kind::DeviceRGB, Kind::DeviceGray, Kind::SRGB, Kind::GenericGrayGamma2_2};

const char* nameOf(Kind kind)
{
    switch (kind) {
    case Kind::DeviceRGB:
        return "kCGColorSpaceDeviceRGB";
    case Kind::DeviceGray:
        return "kCGColorSpaceDeviceGray";
    case Kind::SRGB:
        return kCGColorSpaceSRGB;
    case Kind::GenericGrayGamma2_2:
        return kCGColorSpaceGenericGrayGamma2_2;
    case Kind::Pattern:
        break;
    }
    return nullptr;
}

/// A new reference to the shared space of that kind, which lives as long as the process.
CGColorSpaceRef sharedSpace(Kind kind)
{
    static const CGColorSpaceRef spaces[] = {
        new CGColorSpace(Kind::DeviceRGB),
        new CGColorSpace(Kind::DeviceGray),
        new CGColorSpace(Kind::SRGB),
        new CGColorSpace(Kind::GenericGrayGamma2_2),
    };
    return CGRetainRecord(spaces[static_cast<std::size_t>(kind)]);
}

} // namespace

CGColorSpaceRef CGColorSpaceCreateDeviceRGB()
{
    return sharedSpace(Kind::DeviceRGB);
}

CGColorSpaceRef CGColorSpaceCreateDeviceGray()
{
    return sharedSpace(Kind::DeviceGray);
}

CGColorSpaceRef CGColorSpaceCreateWithName(const NSString& name)
{
    for (const Kind kind : kNamedKinds) {
        if (std::ranges::equal(name.view(), std::string_view(nameOf(kind))))
            return sharedSpace(kind);
    }
    return nullptr;
}

CGColorSpaceRef CGColorSpaceCreatePattern(CGColorSpaceRef baseSpace)
{
    if (baseSpace && baseSpace->kind == Kind::Pattern)
        return nullptr;
    return new CGColorSpace(Kind::Pattern, baseSpace);
}

CGColorSpaceRef CGColorSpaceRetain(CGColorSpaceRef space)
{
    return CGRetainRecord(space);
}

void CGColorSpaceRelease(CGColorSpaceRef space)
{
    CGReleaseRecord(space);
}

std::size_t CGColorSpaceGetNumberOfComponents(CGColorSpaceRef space)
{
    return space ? space->componentCount() : 0;
}

CGColorSpaceModel CGColorSpaceGetModel(CGColorSpaceRef space)
{
    if (!space)
        return kCGColorSpaceModelUnknown;
    if (space->kind == Kind::Pattern)
        return kCGColorSpaceModelPattern;
    return space->componentCount() == 1 ? kCGColorSpaceModelMonochrome : kCGColorSpaceModelRGB;
}

CGColorSpaceRef CGColorSpaceGetBaseColorSpace(CGColorSpaceRef space)
{
    return space ? space->base.get() : nullptr;
}

bool CGColorSpaceEqualToColorSpace(CGColorSpaceRef a, CGColorSpaceRef b)
{
    // Only pattern spaces exist more than once, and their bases are no pattern spaces: pointers suffice.
    return a == b || (a && b && a->kind == b->kind && a->base == b->base);
}

NSString CGColorSpaceCopyName(CGColorSpaceRef space)
{
    return space ? nameOf(space->kind) : nullptr;
}
