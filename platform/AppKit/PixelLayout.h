#pragma once

#include "CoreGraphics/CGImageInternal.h"

#include <array>
#include <cstdint>

/// The byte offsets of a pixel format's components.
struct PixelLayout {
    static constexpr int kNone = -1;

    int bytesPerPixel;
    std::array<int, 3> color; ///< offsets of red, green and blue, all the same for gray; kNone: black
    int alpha;                ///< kNone: opaque
    bool isPremultiplied;
    bool isInverted; ///< alpha is 255 minus the sample

    constexpr bool hasAlpha() const { return alpha != kNone; }
    /// One component for all three colours.
    constexpr bool isGray() const { return color[0] != kNone && color[0] == color[1]; }

    static constexpr PixelLayout of(CGPixelFormat format)
    {
        switch (format) {
        case CGPixelFormat::RGBAPremultiplied:
            return {4, {0, 1, 2}, 3, true, false};
        case CGPixelFormat::ARGBPremultiplied:
            return {4, {1, 2, 3}, 0, true, false};
        case CGPixelFormat::RGBAStraight:
            return {4, {0, 1, 2}, 3, false, false};
        case CGPixelFormat::ARGBStraight:
            return {4, {1, 2, 3}, 0, false, false};
        case CGPixelFormat::RGBX:
            return {4, {0, 1, 2}, kNone, false, false};
        case CGPixelFormat::XRGB:
            return {4, {1, 2, 3}, kNone, false, false};
        case CGPixelFormat::RGB:
            return {3, {0, 1, 2}, kNone, false, false};
        case CGPixelFormat::Gray:
            return {1, {0, 0, 0}, kNone, false, false};
        case CGPixelFormat::Alpha:
            return {1, {kNone, kNone, kNone}, 0, false, false};
        case CGPixelFormat::Mask:
            return {1, {kNone, kNone, kNone}, 0, false, true};
        }
        return {};
    }

    constexpr std::uint8_t alphaOf(const std::uint8_t* pixel) const
    {
        if (!hasAlpha())
            return 255;
        return isInverted ? 255 - pixel[alpha] : pixel[alpha];
    }
    /// Component 0 red, 1 green, 2 blue, as stored.
    constexpr std::uint8_t colorOf(const std::uint8_t* pixel, int component) const
    {
        return color[component] == kNone ? 0 : pixel[color[component]];
    }
};

/// `value` × `alpha` / 255, rounded to the nearest.
constexpr std::uint8_t premultiplied(std::uint8_t value, std::uint8_t alpha)
{
    return static_cast<std::uint8_t>((value * alpha + 127) / 255);
}

/// `value` × 255 / `alpha`, rounded to the nearest and at most 255; 0 when alpha is 0. Premultiplying it
/// again gives `value`, if that was not above `alpha`: the error of at most 1/2 becomes smaller by alpha /
/// 255.
constexpr std::uint8_t unpremultiplied(std::uint8_t value, std::uint8_t alpha)
{
    if (alpha == 0)
        return 0;
    const int straight = (value * 255 + alpha / 2) / alpha;
    return static_cast<std::uint8_t>(straight < 255 ? straight : 255);
}
