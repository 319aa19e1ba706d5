// Every blend mode against its formula, in both pixel formats, with colours and images, at fully and half
// covered pixels: result = lerp(destination, mode(source, destination), coverage).

#include "Foundation/testing/NSLogCapture.h"
#include "support/Canvas.h"

#include <CoreGraphics/CoreGraphics.h>

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace {

/// Bytes are rounded up to three times: for the paint, the mode's result and the coverage.
constexpr double kTolerance = 2;

/// Premultiplied, 0 to 1.
using Color = std::array<double, 4>;

/// The blend function B(s, d) of one component, which PDF defines for the separable modes: ISO
/// 32000-2, 11.3.5.2.
double separable(CGBlendMode mode, double s, double d)
{
    switch (mode) {
    case kCGBlendModeMultiply:
        return s * d;
    case kCGBlendModeScreen:
        return s + d - s * d;
    case kCGBlendModeOverlay:
        return separable(kCGBlendModeHardLight, d, s);
    case kCGBlendModeDarken:
        return std::min(s, d);
    case kCGBlendModeLighten:
        return std::max(s, d);
    case kCGBlendModeColorDodge:
        return d == 0 ? 0 : d >= 1 - s ? 1 : d / (1 - s);
    case kCGBlendModeColorBurn:
        return d == 1 ? 1 : 1 - d >= s ? 0 : 1 - (1 - d) / s;
    case kCGBlendModeHardLight:
        return s <= 0.5 ? 2 * s * d : 1 - 2 * (1 - s) * (1 - d);
    case kCGBlendModeSoftLight: {
        const double root = d <= 0.25 ? ((16 * d - 12) * d + 4) * d : std::sqrt(d);
        return s <= 0.5 ? d - (1 - 2 * s) * d * (1 - d) : d + (2 * s - 1) * (root - d);
    }
    case kCGBlendModeDifference:
        return std::abs(s - d);
    case kCGBlendModeExclusion:
        return s + d - 2 * s * d;
    default:
        return s;
    }
}

/// The modes of PDF: both alphas cover independently, and where both do, the blend function decides.
Color blendedInPDF(CGBlendMode mode, const Color& s, const Color& d)
{
    const double sa = s[3];
    const double da = d[3];
    const double both = sa * da;
    Color result{0, 0, 0, sa + da - both};
    for (std::size_t i = 0; i < 3; ++i) {
        const double blend = both > 0 ? separable(mode, s[i] / sa, d[i] / da) : 0;
        result[i] = s[i] * (1 - da) + d[i] * (1 - sa) + both * blend;
    }
    return result;
}

Color blended(CGBlendMode mode, const Color& s, const Color& d)
{
    if (mode < kCGBlendModeClear)
        return blendedInPDF(mode, s, d);
    const double sa = s[3];
    const double da = d[3];
    Color result{};
    for (std::size_t i = 0; i < 4; ++i) {
        switch (mode) {
        case kCGBlendModeClear:
            break;
        case kCGBlendModeCopy:
            result[i] = s[i];
            break;
        case kCGBlendModeSourceIn:
            result[i] = s[i] * da;
            break;
        case kCGBlendModeSourceOut:
            result[i] = s[i] * (1 - da);
            break;
        case kCGBlendModeSourceAtop:
            result[i] = s[i] * da + d[i] * (1 - sa);
            break;
        case kCGBlendModeDestinationOver:
            result[i] = s[i] * (1 - da) + d[i];
            break;
        case kCGBlendModeDestinationOut:
            result[i] = d[i] * (1 - sa);
            break;
        case kCGBlendModeXOR:
            result[i] = s[i] * (1 - da) + d[i] * (1 - sa);
            break;
        case kCGBlendModePlusLighter:
            result[i] = std::min(1.0, s[i] + d[i]);
            break;
        default:
            ADD_FAILURE() << "mode " << mode;
            break;
        }
    }
    return result;
}

constexpr CGBlendMode kModes[]{kCGBlendModeNormal, kCGBlendModeMultiply, kCGBlendModeScreen,
    kCGBlendModeOverlay, kCGBlendModeDarken, kCGBlendModeLighten, kCGBlendModeColorDodge,
    kCGBlendModeColorBurn, kCGBlendModeSoftLight, kCGBlendModeHardLight, kCGBlendModeDifference,
    kCGBlendModeExclusion, kCGBlendModeClear, kCGBlendModeCopy, kCGBlendModeSourceIn, kCGBlendModeSourceOut,
    kCGBlendModeSourceAtop, kCGBlendModeDestinationOver, kCGBlendModeDestinationOut, kCGBlendModeXOR,
    kCGBlendModePlusLighter};

/// Straight colours, 0 to 1; transparent, translucent and opaque ones.
constexpr Color kColors[]{{0, 0, 0, 0}, {1, 0.2, 0.6, 1}, {0.2, 0.8, 0.4, 0.4}};

Color premultiplied(const Color& color)
{
    return {color[0] * color[3], color[1] * color[3], color[2] * color[3], color[3]};
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

    for (const CGBlendMode mode : kModes) {
        for (const Color& below : kColors) {
            for (const Color& color : kColors) {
                Canvas canvas(kSize, kSize, GetParam().format);
                CGContextSetRGBFillColor(canvas.context(), below[0], below[1], below[2], below[3]);
                CGContextFillRect(canvas.context(), CGRectMake(0, 0, kSize, kSize));
                const CanvasPixel before = canvas.pixel(0, 0);

                CGContextSetBlendMode(canvas.context(), mode);
                paint(canvas.context(), color);

                const Color result = blended(mode, premultiplied(color), premultiplied(below));
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
                            ASSERT_NEAR(pixel.bytes[i], expected, kTolerance)
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

TEST(CGContextBlendMode, HalfCoveredPixelsAreExactOnOpaqueAndTransparentBackdrops)
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
    EXPECT_EQ(middleOf(kCGBlendModeNormal), rgba(128, 0, 128, 255));
    EXPECT_EQ(middleOf(kCGBlendModeCopy), rgba(128, 0, 128, 255));
    EXPECT_EQ(middleOf(kCGBlendModeClear).bytes[3], 128);
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
