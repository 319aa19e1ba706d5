// Gradients over so many pixels that several threads paint them.

#include "support/Canvas.h"

#include <CoreGraphics/CoreGraphics.h>

#include <array>
#include <cstring>

namespace {

constexpr int kLargeWidth = 1201;
constexpr int kLargeHeight = 1003;

RetainPtr<CGGradient> gradientWithAlpha(CGFloat alpha)
{
    const auto space = adopt(CGColorSpaceCreateDeviceRGB());
    const std::array<CGFloat, 12> components{1, 0.2, 0.1, alpha, 0.1, 0.9, 0.3, alpha, 0, 0.1, 0.8, alpha};
    return adopt(CGGradientCreateWithColorComponents(space, components.data(), nullptr, 3));
}

enum class Direction { Diagonal, Radial };

void draw(CGContextRef context, Direction direction, CGFloat alpha)
{
    constexpr CGGradientDrawingOptions kBothEnds =
        kCGGradientDrawsBeforeStartLocation | kCGGradientDrawsAfterEndLocation;
    const auto gradient = gradientWithAlpha(alpha);
    const CGPoint center{200, 300};
    if (direction == Direction::Radial)
        CGContextDrawRadialGradient(context, gradient, center, 10, center, 500, kBothEnds);
    else
        CGContextDrawLinearGradient(context, gradient, {20, 30}, {1150, 990}, kBothEnds);
}

Canvas backdrop()
{
    Canvas canvas(kLargeWidth, kLargeHeight);
    CGContextSetRGBFillColor(canvas.context(), 0.9, 0.7, 0.5, 0.6);
    CGContextFillEllipseInRect(canvas.context(), CGRectMake(30, 20, 1100, 900));
    return canvas;
}

/// Draws as many bands of rows as given, each of which is small.
Canvas drawnInParts(Direction direction, CGFloat alpha, int count)
{
    Canvas canvas = backdrop();
    for (int i = 0; i < count; ++i) {
        const int bottom = kLargeHeight * i / count;
        const int top = kLargeHeight * (i + 1) / count;
        CGContextSaveGState(canvas.context());
        CGContextClipToRect(canvas.context(), CGRectMake(0, bottom, kLargeWidth, top - bottom));
        draw(canvas.context(), direction, alpha);
        CGContextRestoreGState(canvas.context());
    }
    return canvas;
}

/// Rows without gaps.
const void* bytes(const Canvas& canvas)
{
    return CGBitmapContextGetData(canvas.context());
}

} // namespace

TEST(CGContextLargeGradient, HasTheSamePixelsAsItsParts)
{
    for (const Direction direction : {Direction::Diagonal, Direction::Radial}) {
        for (const CGFloat alpha : {1.0, 0.4}) {
            Canvas whole = backdrop();
            draw(whole.context(), direction, alpha);
            for (const int parts : {2, 5}) {
                SCOPED_TRACE(testing::Message()
                    << "direction " << int(direction) << ", alpha " << alpha << ", " << parts << " parts");
                const Canvas composed = drawnInParts(direction, alpha, parts);
                EXPECT_EQ(
                    std::memcmp(bytes(whole), bytes(composed), std::size_t(4) * kLargeWidth * kLargeHeight),
                    0);
            }
        }
    }
}
