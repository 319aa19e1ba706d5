// Clips of more pixels than a cached mask has, which shapes and gradients are painted through row by row.

#include "support/Canvas.h"

#include <CoreGraphics/CoreGraphics.h>

#include <array>
#include <cmath>

namespace {

constexpr int kSceneWidth = 320;
constexpr int kSceneHeight = 290;
/// Coverage is rounded to a byte before it is multiplied, and the product again.
constexpr double kRounding = 1.01;

const CGRect kShape = CGRectMake(40.3, -20, 261, 290.5);
const CGRect kRegion = CGRectMake(-5.5, 3.25, 309, 281);
const CGRect kEdges = CGRectMake(10.5, 7.75, 300.25, 270.5);

void addEllipse(const Canvas& canvas, CGRect rect)
{
    CGContextAddEllipseInRect(canvas.context(), rect);
}

/// A canvas with one filled path.
template <class AddPath> Canvas filled(AddPath addPath)
{
    Canvas canvas(kSceneWidth, kSceneHeight);
    addPath(canvas);
    CGContextFillPath(canvas.context());
    return canvas;
}

/// Compares the alpha of each pixel with the product of those of two canvases. Returns the number of pixels
/// that are covered in part.
int expectProduct(const Canvas& actual, const Canvas& first, const Canvas& second)
{
    int mixed = 0;
    for (int y = 0; y < kSceneHeight; ++y) {
        for (int x = 0; x < kSceneWidth; ++x) {
            const double product = first.alpha(x, y) * second.alpha(x, y) / 255.0;
            EXPECT_NEAR(actual.alpha(x, y), product, kRounding) << "column " << x << ", row " << y;
            mixed += product > 0 && product < 255 ? 1 : 0;
        }
    }
    return mixed;
}

/// All of the canvas in opaque red.
void drawRedGradient(const Canvas& canvas)
{
    const auto space = adopt(CGColorSpaceCreateDeviceRGB());
    const std::array<CGFloat, 8> components{1, 0, 0, 1, 1, 0, 0, 1};
    const auto red = adopt(CGGradientCreateWithColorComponents(space, components.data(), nullptr, 2));
    CGContextDrawLinearGradient(canvas.context(), red, {0, 0}, {0, kSceneHeight},
        kCGGradientDrawsBeforeStartLocation | kCGGradientDrawsAfterEndLocation);
}

} // namespace

TEST(CGContextLargeClip, MultipliesThePathsThatAreFilled)
{
    Canvas canvas(kSceneWidth, kSceneHeight);
    addEllipse(canvas, kRegion);
    CGContextClip(canvas.context());
    addEllipse(canvas, kShape);
    CGContextFillPath(canvas.context());
    const int mixed = expectProduct(canvas, filled([](const Canvas& c) { addEllipse(c, kShape); }),
        filled([](const Canvas& c) { addEllipse(c, kRegion); }));
    EXPECT_GT(mixed, 500);
}

TEST(CGContextLargeClip, MultipliesPathsByTheEdgesOfARectangle)
{
    Canvas canvas(kSceneWidth, kSceneHeight);
    CGContextClipToRect(canvas.context(), kEdges);
    addEllipse(canvas, kShape);
    CGContextFillPath(canvas.context());
    const int mixed = expectProduct(canvas, filled([](const Canvas& c) { addEllipse(c, kShape); }),
        filled([](const Canvas& c) { CGContextAddRect(c.context(), kEdges); }));
    EXPECT_GT(mixed, 500);
}

TEST(CGContextLargeClip, MultipliesARectangleThatIsFilled)
{
    Canvas canvas(kSceneWidth, kSceneHeight);
    addEllipse(canvas, kRegion);
    CGContextClip(canvas.context());
    CGContextFillRect(canvas.context(), kEdges);
    const int mixed = expectProduct(canvas, filled([](const Canvas& c) { addEllipse(c, kRegion); }),
        filled([](const Canvas& c) { CGContextAddRect(c.context(), kEdges); }));
    EXPECT_GT(mixed, 500);
}

TEST(CGContextLargeClip, CoversGradientsAsItCoversColours)
{
    Canvas canvas(kSceneWidth, kSceneHeight);
    addEllipse(canvas, kRegion);
    CGContextClip(canvas.context());
    CGContextClipToRect(canvas.context(), kEdges);
    drawRedGradient(canvas);
    expectProduct(canvas, filled([](const Canvas& c) { addEllipse(c, kRegion); }),
        filled([](const Canvas& c) { CGContextAddRect(c.context(), kEdges); }));
    for (int x = 0; x < kSceneWidth; ++x) {
        const int alpha = canvas.alpha(x, 12);
        EXPECT_EQ(canvas.pixel(x, 12), rgba(alpha, 0, 0, alpha)) << "column " << x;
    }
}

// The first paints draw the clip's path again, later ones use its mask.
TEST(CGContextLargeClip, CoversAllPaintsAlike)
{
    constexpr int kPaints = 80; // each counts as an eighth of the mask
    constexpr int kColumns = kSceneWidth / kPaints;
    Canvas canvas(kSceneWidth, kSceneHeight);
    addEllipse(canvas, kRegion);
    CGContextClip(canvas.context());
    for (int paint = 0; paint <= kPaints; ++paint)
        CGContextFillRect(canvas.context(), CGRectMake(paint * kColumns, 0, kColumns, kSceneHeight));
    const auto all = filled([](const Canvas& c) { addEllipse(c, kRegion); });
    for (int y = 0; y < kSceneHeight; ++y)
        for (int x = 0; x < kSceneWidth; ++x)
            EXPECT_NEAR(canvas.alpha(x, y), all.alpha(x, y), kRounding) << "column " << x << ", row " << y;
}
