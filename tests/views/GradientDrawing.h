#pragma once

#include "GradientViews.h"
#include "support/Canvas.h"

#include <gtest/gtest.h>

/// Gradients take their colours from a table: off by at most 1.
inline void expectAbout(const CanvasPixel& pixel, const CanvasPixel& expected)
{
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_NEAR(pixel.bytes[i], expected.bytes[i], 1) << pixel << " instead of " << expected;
}

/// Tests draw at both scales.
class GradientDrawing : public testing::TestWithParam<int> {
protected:
    Rendering rendering(int width, int height) const { return Rendering(width, height, GetParam()); }
    /// The length of a pixel in points.
    double pixel() const { return 1.0 / GetParam(); }
};
