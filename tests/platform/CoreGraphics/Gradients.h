#pragma once

#include "support/Canvas.h"

#include <CoreGraphics/CoreGraphics.h>

#include <array>
#include <cstdlib>
#include <vector>

/// Red, green, blue and alpha in the device RGB space.
using RGBA = std::array<CGFloat, 4>;

inline constexpr RGBA kRedColor{1, 0, 0, 1};
inline constexpr RGBA kBlueColor{0, 0, 1, 1};
inline constexpr CGGradientDrawingOptions kBoth =
    kCGGradientDrawsBeforeStartLocation | kCGGradientDrawsAfterEndLocation;

/// A gradient of device RGB colours; without locations they are spread evenly.
inline RetainPtr<CGGradient> gradientOf(
    const std::vector<RGBA>& colors, const std::vector<CGFloat>& locations = {})
{
    const auto space = adopt(CGColorSpaceCreateDeviceRGB());
    return adopt(CGGradientCreateWithColorComponents(
        space.get(), colors[0].data(), locations.empty() ? nullptr : locations.data(), colors.size()));
}

/// One row of 100 pixels, along which the gradient runs: column i is at the location (i + 0.5) / 100.
inline Canvas drawnAlong(CGGradientRef gradient)
{
    Canvas canvas(100, 1);
    CGContextDrawLinearGradient(canvas.context(), gradient, {0, 0}, {100, 0}, kBoth);
    return canvas;
}

/// Colours come from a lookup table and may differ by one step.
inline testing::AssertionResult isAbout(const CanvasPixel& pixel, const CanvasPixel& expected)
{
    for (std::size_t i = 0; i < 4; ++i) {
        if (std::abs(pixel.bytes[i] - expected.bytes[i]) > 1)
            return testing::AssertionFailure() << pixel << " is not about " << expected;
    }
    return testing::AssertionSuccess();
}
