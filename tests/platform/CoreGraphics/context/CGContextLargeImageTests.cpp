// Images and fills over so many pixels that several threads paint them.

#include "support/Canvas.h"

#include <CoreGraphics/CoreGraphics.h>

#include <array>
#include <cstring>
#include <functional>
#include <random>
#include <string>

namespace {

constexpr int kCanvasWidth = 1901;
constexpr int kCanvasHeight = 2307;

/// Pixels of random premultiplied colours, many of them transparent or opaque.
RetainPtr<CGImage> randomImage(int width, int height)
{
    Canvas canvas(width, height);
    auto* bytes = static_cast<unsigned char*>(CGBitmapContextGetData(canvas.context()));
    std::mt19937 random(7);
    for (int i = 0; i < width * height; ++i, bytes += 4) {
        const unsigned value = random();
        const unsigned alpha = value % 3 == 0 ? 255 : value % 3 == 1 ? 0 : value >> 24;
        for (int c = 0; c < 3; ++c)
            bytes[c] = static_cast<unsigned char>((value >> 8 * c & 255) * alpha / 255);
        bytes[3] = static_cast<unsigned char>(alpha);
    }
    return adopt(CGBitmapContextCreateImage(canvas.context()));
}

Canvas halfCovered()
{
    Canvas canvas(kCanvasWidth, kCanvasHeight);
    CGContextSetRGBFillColor(canvas.context(), 0.9, 0.7, 0.5, 0.6);
    CGContextFillEllipseInRect(canvas.context(), CGRectMake(30, 20, 1800, 1700));
    return canvas;
}

using Draw = std::function<void(CGContextRef)>;

/// Draws as many bands of rows as given, each of which is small.
Canvas drawnInBands(const Draw& draw, int count)
{
    Canvas canvas = halfCovered();
    for (int i = 0; i < count; ++i) {
        const int bottom = kCanvasHeight * i / count;
        const int top = kCanvasHeight * (i + 1) / count;
        CGContextSaveGState(canvas.context());
        CGContextClipToRect(canvas.context(), CGRectMake(0, bottom, kCanvasWidth, top - bottom));
        draw(canvas.context());
        CGContextRestoreGState(canvas.context());
    }
    return canvas;
}

void expectSameAsInBands(const Draw& draw)
{
    Canvas whole = halfCovered();
    draw(whole.context());
    const Canvas bands = drawnInBands(draw, 31);
    EXPECT_EQ(std::memcmp(CGBitmapContextGetData(whole.context()), CGBitmapContextGetData(bands.context()),
                  std::size_t(4) * kCanvasWidth * kCanvasHeight),
        0);
}

} // namespace

TEST(CGContextLargeImage, HasTheSamePixelsAsItsBands)
{
    const auto large = randomImage(1701, 2003);
    const auto small = randomImage(613, 407);
    struct Case {
        std::string name;
        const RetainPtr<CGImage>& image;
        CGRect rect;
        double angle = 0;
        double alpha = 1;
        CGBlendMode mode = kCGBlendModeNormal;
        CGInterpolationQuality quality = kCGInterpolationDefault;
    };
    const Case cases[]{
        {"own size", large, CGRectMake(20, 30, 1701, 2003)},
        {"between pixels", large, CGRectMake(20.3, 30.4, 1701, 2003)},
        {"enlarged", small, CGRectMake(20.3, 30.4, 1800, 2003)},
        {"enlarged, nearest", small, CGRectMake(20, 30, 1800, 2203), 0, 1, kCGBlendModeNormal,
            kCGInterpolationNone},
        {"faded", small, CGRectMake(20.3, 30.4, 1800, 2003), 0, 0.4},
        {"multiplied", small, CGRectMake(20, 30, 1800, 2003), 0, 1, kCGBlendModeMultiply},
        {"reduced", large, CGRectMake(20.3, 30.4, 700, 900)},
        {"turned", small, CGRectMake(300.3, -200, 1700, 1600), 0.3},
        {"turned and faded", small, CGRectMake(300.3, -200, 1700, 1600), 0.3, 0.7},
        {"turned and reduced", large, CGRectMake(300.3, 100, 900, 1000), 0.2},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        expectSameAsInBands([&test](CGContextRef context) {
            CGContextSaveGState(context);
            CGContextRotateCTM(context, test.angle);
            CGContextSetAlpha(context, test.alpha);
            CGContextSetBlendMode(context, test.mode);
            CGContextSetInterpolationQuality(context, test.quality);
            CGContextDrawImage(context, test.rect, test.image);
            CGContextRestoreGState(context);
        });
    }
}

TEST(CGContextLargeFill, HasTheSamePixelsAsItsBands)
{
    for (const CGBlendMode mode : {kCGBlendModeNormal, kCGBlendModeDestinationOut}) {
        SCOPED_TRACE(mode);
        expectSameAsInBands([mode](CGContextRef context) {
            CGContextSetBlendMode(context, mode);
            CGContextSetRGBFillColor(context, 0.2, 0.4, 0.9, 0.35);
            CGContextFillRect(context, CGRectMake(0, 0, kCanvasWidth, kCanvasHeight));
        });
    }
}
