// Every blend mode against its formula, in both pixel formats, with colours and images, at fully and half
// covered pixels: result = lerp(destination, mode(source, destination), coverage).

#include "../BlendReference.h"
#include "Foundation/testing/NSLogCapture.h"
#include "support/Canvas.h"

#include <CoreGraphics/CoreGraphics.h>

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace {

/// The result of the mode, that of the coverage and the coverage itself are rounded.
constexpr double kBlendTolerance = 1.5;

using Color = BlendColor;

/// Straight colours, 0 to 1; transparent, translucent and opaque ones.
constexpr Color kColors[]{{0, 0, 0, 0}, {1, 0.2, 0.6, 1}, {0.2, 0.8, 0.4, 0.4}};

/// In bytes, as contexts store it.
Color premultiplied(const Color& color)
{
    const auto rounded = [](double value) { return std::round(value * 255) / 255; };
    return {rounded(color[0] * color[3]), rounded(color[1] * color[3]), rounded(color[2] * color[3]),
        rounded(color[3])};
}

/// The paint under test: the colour itself, or an image filled with it.
enum class Source { Color, Image };
/// What covers pixels by half.
enum class Edge { Shape, Ellipse, Clip };

struct Case {
    Canvas::Format format;
    Source source;
    Edge edge;
};

RetainPtr<CGImage> imageOf(const Color& color)
{
    Canvas canvas(3, 3);
    CGContextSetRGBFillColor(canvas.context(), color[0], color[1], color[2], color[3]);
    CGContextFillRect(canvas.context(), CGRectMake(0, 0, 3, 3));
    return adopt(CGBitmapContextCreateImage(canvas.context()));
}

class CGContextBlend : public testing::TestWithParam<Case> {
protected:
    static constexpr int kSize = 8;

    /// Paints over most of the canvas, with edges in the middle of pixels.
    static void paint(CGContextRef context, const Color& color)
    {
        const auto [format, source, edge] = GetParam();
        const CGRect rect = CGRectMake(1.5, 1.5, 5, 5);
        if (edge == Edge::Clip) {
            CGContextAddEllipseInRect(context, rect);
            CGContextClip(context);
        }
        const CGRect filled = edge == Edge::Clip ? CGRectMake(0, 0, kSize, kSize) : rect;
        if (source == Source::Image) {
            CGContextDrawImage(context, filled, imageOf(color).get());
            return;
        }
        CGContextSetRGBFillColor(context, color[0], color[1], color[2], color[3]);
        if (edge == Edge::Ellipse)
            CGContextFillEllipseInRect(context, filled);
        else
            CGContextFillRect(context, filled);
    }

    /// The coverage of each pixel: the alpha of opaque black in normal mode on a transparent canvas.
    static double coverageAt(const Canvas& coverage, int column, int row)
    {
        return coverage.alpha(column, row) / 255.0;
    }
};

std::string nameOf(const testing::TestParamInfo<Case>& info)
{
    const auto& [format, source, edge] = info.param;
    return std::string(format == Canvas::Format::RGBA ? "RGBA" : "AlphaOnly")
        + (source == Source::Color ? "Color" : "Image")
        + (edge == Edge::Shape          ? "Rectangle"
                : edge == Edge::Ellipse ? "Ellipse"
                                        : "Clip");
}

} // namespace

TEST_P(CGContextBlend, EveryModeBlendsInProportionToTheCoverage)
{
    Canvas coverage(kSize, kSize, GetParam().format);
    paint(coverage.context(), {0, 0, 0, 1});

    for (const CGBlendMode mode : kBlendModes) {
        for (const Color& below : kColors) {
            for (const Color& color : kColors) {
                Canvas canvas(kSize, kSize, GetParam().format);
                CGContextSetRGBFillColor(canvas.context(), below[0], below[1], below[2], below[3]);
                CGContextFillRect(canvas.context(), CGRectMake(0, 0, kSize, kSize));
                const CanvasPixel before = canvas.pixel(0, 0);

                CGContextSetBlendMode(canvas.context(), mode);
                paint(canvas.context(), color);

                const Color result = blendedExactly(mode, premultiplied(color), premultiplied(below));
                for (int row = 0; row < kSize; ++row) {
                    for (int column = 0; column < kSize; ++column) {
                        const double covered = coverageAt(coverage, column, row);
                        const CanvasPixel pixel = canvas.pixel(column, row);
                        if (covered == 0) {
                            ASSERT_EQ(pixel, before)
                                << "mode " << mode << " outside at " << column << ", " << row;
                            continue;
                        }
                        for (std::size_t i = canvas.isAlphaOnly() ? 3 : 0; i < 4; ++i) {
                            const double d = premultiplied(below)[i];
                            const double expected = (d + (result[i] - d) * covered) * 255;
                            ASSERT_NEAR(pixel.bytes[i], expected, kBlendTolerance)
                                << "mode " << mode << " component " << i << " at " << column << ", " << row
                                << " coverage " << covered << " source " << color[0] << " alpha " << color[3]
                                << " over alpha " << below[3];
                        }
                    }
                }
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, CGContextBlend,
    testing::Values(Case{Canvas::Format::RGBA, Source::Color, Edge::Shape},
        Case{Canvas::Format::RGBA, Source::Color, Edge::Ellipse},
        Case{Canvas::Format::RGBA, Source::Color, Edge::Clip},
        Case{Canvas::Format::RGBA, Source::Image, Edge::Shape},
        Case{Canvas::Format::RGBA, Source::Image, Edge::Clip},
        Case{Canvas::Format::AlphaOnly, Source::Color, Edge::Shape},
        Case{Canvas::Format::AlphaOnly, Source::Color, Edge::Ellipse},
        Case{Canvas::Format::AlphaOnly, Source::Color, Edge::Clip},
        Case{Canvas::Format::AlphaOnly, Source::Image, Edge::Shape},
        Case{Canvas::Format::AlphaOnly, Source::Image, Edge::Clip}),
    nameOf);

TEST(CGContextBlendMode, HalfCoveredPixelsMixColourAndBackdrop)
{
    const auto middleOf = [](CGBlendMode mode) {
        Canvas canvas(3, 1);
        CGContextSetRGBFillColor(canvas.context(), 0, 0, 1, 1);
        CGContextFillRect(canvas.context(), CGRectMake(0, 0, 3, 1));
        CGContextSetBlendMode(canvas.context(), mode);
        CGContextSetRGBFillColor(canvas.context(), 1, 0, 0, 1);
        CGContextFillRect(canvas.context(), CGRectMake(0, 0, 1.5, 1));
        return canvas.pixel(1, 0);
    };
    // Coverage is a byte, here 128.
    EXPECT_EQ(middleOf(kCGBlendModeNormal), rgba(128, 0, 127, 255));
    EXPECT_EQ(middleOf(kCGBlendModeCopy), rgba(128, 0, 127, 255));
    EXPECT_EQ(middleOf(kCGBlendModeClear).bytes[3], 127);
    EXPECT_EQ(middleOf(kCGBlendModeDestinationOver), rgba(0, 0, 255, 255));
}

TEST(CGContextBlendMode, AlphaOfTheStateMultipliesEveryPaint)
{
    Canvas canvas(2, 1);
    CGContextSetAlpha(canvas.context(), 0.5);
    CGContextSetRGBFillColor(canvas.context(), 1, 0, 0, 0.4);
    CGContextFillRect(canvas.context(), CGRectMake(0, 0, 1, 1));
    EXPECT_EQ(canvas.pixel(0, 0), rgba(51, 0, 0, 51));
    CGContextSetAlpha(canvas.context(), 7);
    CGContextFillRect(canvas.context(), CGRectMake(1, 0, 1, 1));
    EXPECT_EQ(canvas.pixel(1, 0), rgba(102, 0, 0, 102));
}

TEST(CGContextBlendMode, AnUnsupportedModeIsLoggedAndIgnored)
{
    Canvas canvas(1, 1);
    CGContextSetBlendMode(canvas.context(), kCGBlendModeClear);
    const NSLogCapture log;
    CGContextSetBlendMode(canvas.context(), static_cast<CGBlendMode>(99));
    EXPECT_EQ(log.messages().size(), 1U);
    CGContextFillRect(canvas.context(), CGRectMake(0, 0, 1, 1));
    EXPECT_EQ(canvas.alpha(0, 0), 0);
}

TEST(CGContextBlendMode, BlendsWithPixelsThatHaveNoAlphaAsOpaqueOnes)
{
    std::array<unsigned char, 4> pixel{200, 100, 50, 0};
    const auto space = adopt(CGColorSpaceCreateDeviceRGB());
    const auto context =
        adopt(CGBitmapContextCreate(pixel.data(), 1, 1, 8, 4, space, kCGImageAlphaNoneSkipLast));
    CGContextSetBlendMode(context, kCGBlendModeMultiply);
    CGContextSetRGBFillColor(context, 0.2, 0.4, 1, 1);
    CGContextFillRect(context, CGRectMake(0, 0, 1, 1));
    EXPECT_EQ(pixel[0], 40);
    EXPECT_EQ(pixel[1], 40);
    EXPECT_EQ(pixel[2], 50);
}

TEST(CGContextBlendMode, GradientsBlendInEveryMode)
{
    const auto space = adopt(CGColorSpaceCreateDeviceRGB());
    const CGFloat components[]{0, 0.4, 1, 1, 0, 0.4, 1, 1};
    const auto gradient = adopt(CGGradientCreateWithColorComponents(space, components, nullptr, 2));
    for (const CGBlendMode mode : kBlendModes) {
        Canvas canvas(1, 1);
        CGContextSetRGBFillColor(canvas.context(), 0.8, 0.2, 0.4, 0.4);
        CGContextFillRect(canvas.context(), CGRectMake(0, 0, 1, 1));
        CGContextSetBlendMode(canvas.context(), mode);
        CGContextDrawLinearGradient(canvas.context(), gradient, CGPointZero, CGPointMake(1, 0), 3);
        const Color expected =
            blendedExactly(mode, premultiplied({0, 0.4, 1, 1}), premultiplied({0.8, 0.2, 0.4, 0.4}));
        for (std::size_t i = 0; i < 4; ++i)
            EXPECT_NEAR(canvas.pixel(0, 0).bytes[i], expected[i] * 255, 1) << "mode " << mode << ", " << i;
    }
}

TEST(CGContextBlendMode, ColorModesAreNormalInAnAlphaOnlyContext)
{
    for (const CGBlendMode mode : {kCGBlendModeColorBurn, kCGBlendModeDifference, kCGBlendModeLuminosity}) {
        Canvas canvas(1, 1, Canvas::Format::AlphaOnly);
        CGContextSetGrayFillColor(canvas.context(), 0, 0.4);
        CGContextFillRect(canvas.context(), CGRectMake(0, 0, 1, 1));
        CGContextSetBlendMode(canvas.context(), mode);
        CGContextFillRect(canvas.context(), CGRectMake(0, 0, 1, 1));
        EXPECT_EQ(canvas.alpha(0, 0), 163) << mode; // 0.4 + 0.4 - 0.16
    }
}
