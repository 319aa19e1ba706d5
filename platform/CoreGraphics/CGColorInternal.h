#pragma once

#include "CoreGraphics/CGCounted.h"

#include <CoreGraphics/CGColor.h>

#include <algorithm>
#include <array>

/// Red, green and blue, encoded as sRGB, and alpha; straight, not premultiplied.
struct CGColorRGBA {
    CGFloat red;
    CGFloat green;
    CGFloat blue;
    CGFloat alpha;

    /// Each component clamped to 0...1; NaN becomes 0. The colour as it is drawn.
    CGColorRGBA clamped() const noexcept
    {
        return {clamped(red), clamped(green), clamped(blue), clamped(alpha)};
    }
    /// The gray of the same luminance (Rec. 709 weights on linear light), encoded as sRGB. Three equal
    /// components give exactly that value.
    CGFloat gray() const noexcept;

    /// A component clamped to 0...1; NaN becomes 0.
    static CGFloat clamped(CGFloat component) noexcept
    {
        return component > 0 ? std::min(component, 1.0) : 0;
    }
};

/// The record behind CGColorSpaceRef. Except for pattern spaces there is one record per kind.
struct CGColorSpace final : CGCounted {
    enum class Kind : std::uint8_t { DeviceRGB, DeviceGray, SRGB, GenericGrayGamma2_2, Pattern };

    explicit CGColorSpace(Kind kind, CGColorSpaceRef baseSpace = nullptr) noexcept
        : kind(kind)
        , base(baseSpace)
    {
    }

    const Kind kind;
    const RetainPtr<CGColorSpace> base; ///< of a pattern space, and may be null there too

    /// Components without alpha.
    std::size_t componentCount() const noexcept;
    /// The sRGB colour of components (alpha last) in this space, not clamped. A pattern space uses its base;
    /// without a base the result is transparent black.
    CGColorRGBA rgba(const CGFloat* components) const noexcept;
    /// A colour's components in this space, alpha last; unused array elements are 0. Not for a pattern space.
    std::array<CGFloat, 4> components(const CGColorRGBA& rgba) const noexcept;
};

/// The record behind CGColorRef.
struct CGColor final : CGCounted {
    CGColor(CGColorSpaceRef space, const std::array<CGFloat, 4>& components) noexcept
        : space(space)
        , components(components)
    {
    }

    const RetainPtr<CGColorSpace> space;     ///< never null, never a pattern space
    const std::array<CGFloat, 4> components; ///< as given, alpha last; unused ones are 0

    std::size_t componentCount() const noexcept { return space->componentCount() + 1; }
    CGFloat alpha() const noexcept { return components[space->componentCount()]; }
    /// As sRGB, not clamped: `rgba().clamped()` is what is drawn.
    CGColorRGBA rgba() const noexcept { return space->rgba(components.data()); }
};
