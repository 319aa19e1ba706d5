#include "CoreGraphics/CGGradientInternal.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

/// A location clamped to 0 to 1; nullopt for NaN.
std::optional<CGFloat> locationAt(std::size_t index, const CGFloat* locations, std::size_t count)
{
    if (!locations)
        return count > 1 ? CGFloat(index) / CGFloat(count - 1) : 0;
    if (std::isnan(locations[index]))
        return std::nullopt;
    return std::clamp(locations[index], 0.0, 1.0);
}

std::array<CGFloat, 4> clamped(std::array<CGFloat, 4> components)
{
    for (CGFloat& component : components)
        component = CGColorRGBA::clamped(component);
    return components;
}

CGGradientRef createFromStops(CGColorSpaceRef space, std::vector<CGGradientStop> stops)
{
    return stops.empty() ? nullptr : new CGGradient(space, std::move(stops));
}

bool canInterpolate(CGColorSpaceRef space)
{
    return space && space->kind != CGColorSpace::Kind::Pattern;
}

} // namespace

CGGradientRef CGGradientCreateWithColorComponents(
    CGColorSpaceRef space, const CGFloat* components, const CGFloat* locations, std::size_t count)
{
    if (!canInterpolate(space) || !components)
        return nullptr;
    const std::size_t componentCount = space->componentCount() + 1;
    std::vector<CGGradientStop> stops;
    stops.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        if (const auto location = locationAt(i, locations, count)) {
            std::array<CGFloat, 4> own{};
            std::copy_n(components + i * componentCount, componentCount, own.begin());
            stops.push_back({*location, clamped(own)});
        }
    }
    return createFromStops(space, std::move(stops));
}

CGGradientRef CGGradientCreateWithColors(
    CGColorSpaceRef space, const CGColorRef* colors, std::size_t count, const CGFloat* locations)
{
    const auto sRGB = adopt(CGColorSpaceCreateWithName(kCGColorSpaceSRGB));
    if (!space)
        space = sRGB.get();
    if (!canInterpolate(space) || !colors)
        return nullptr;
    std::vector<CGGradientStop> stops;
    stops.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const auto location = locationAt(i, locations, count);
        if (!colors[i] || !location)
            continue;
        const CGColor& color = *colors[i];
        stops.push_back({*location,
            clamped(color.space == space ? color.components : space->components(color.rgba().clamped()))});
    }
    return createFromStops(space, std::move(stops));
}

CGGradientRef CGGradientRetain(CGGradientRef gradient)
{
    return CGRetainRecord(gradient);
}

void CGGradientRelease(CGGradientRef gradient)
{
    CGReleaseRecord(gradient);
}
