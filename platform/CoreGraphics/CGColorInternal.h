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

    /// Each component brought into 0...1; NaN becomes 0. What is drawn.
    CGColorRGBA clamped() const noexcept
    {
        return {clamped(red), clamped(green), clamped(blue), clamped(alpha)};
    }
    /// The gray of the same luminance (Rec. 709 weights on linear light), encoded as sRGB again. Three equal
    /// components give just that value.
    CGFloat gray() const noexcept;

    /// A component brought into 0...1; NaN becomes 0.
    static CGFloat clamped(CGFloat component) noexcept
    {
        return component > 0 ? std::min(component, 1.0) : 0;
    }
};

/// The record behind CGColorSpaceRef. All spaces but patterns exist once.
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
    /// The colour that components (alpha last) of this space mean, not clamped. For a pattern space, by its
    /// base; transparent black when it has none.
    CGColorRGBA rgba(const CGFloat* components) const noexcept;
    /// Components of this space, alpha last, for a colour; the others are 0. Not for a pattern space.
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
