// Rectangular clips at subpixel positions: every pixel against the product of the coverages. The fills and
// second clips are many because a context has several ways to paint them.

#include "support/Canvas.h"

#include <CoreGraphics/CoreGraphics.h>
#include <Foundation/NSData.h>

#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

namespace {

constexpr Canvas::Format kFormats[]{Canvas::Format::RGBA, Canvas::Format::AlphaOnly};

/// Reaches far beyond every canvas here.
constexpr CGRect kEverywhere{{-50, -50}, {100, 100}};

/// The alpha of every pixel, rows from the top.
std::vector<int> alphas(const Canvas& canvas)
{
    std::vector<int> result;
    for (int row = 0; row < canvas.height(); ++row)
        for (int column = 0; column < canvas.width(); ++column)
            result.push_back(canvas.alpha(column, row));
    return result;
}

/// The alphas of opaque paint for coverages in 64ths.
std::vector<int> opaque(const std::vector<int>& coverages)
{
    std::vector<int> result(coverages);
    for (int& value : result)
        value = static_cast<int>(std::lround(255 * value / 64.0));
    return result;
}

RetainPtr<CGImage> maskThatBlocksNothing()
{
    const std::vector<unsigned char> samples(1, 0);
    const auto provider =
        adopt(CGDataProviderCreateWithCFData(NSData::dataWithBytes(samples.data(), 1).get()));
    return adopt(CGImageMaskCreate(1, 1, 8, 8, 1, provider, nullptr, false));
}

/// Every kind of fill of the whole clip, except an image.
const std::vector<std::function<void(CGContextRef)>> kFills{
    [](CGContextRef context) { CGContextFillRect(context, kEverywhere); },
    [](CGContextRef context) { CGContextFillEllipseInRect(context, kEverywhere); },
    [](CGContextRef context) {
        const CGRect halves[]{CGRectMake(-50, -50, 52, 100), CGRectMake(3, -50, 50, 100)};
        CGContextFillRects(context, halves, 2);
        CGContextFillRect(context, CGRectMake(2, -50, 1, 100));
    },
    [](CGContextRef context) { CGContextDrawImage(context, kEverywhere, maskThatBlocksNothing().get()); },
};

/// Every kind of clip, each wider than the canvas.
const std::vector<std::function<void(CGContextRef)>> kWideClips{
    [](CGContextRef) {},
    [](CGContextRef context) { CGContextClipToRect(context, kEverywhere); },
    [](CGContextRef context) {
        CGContextAddEllipseInRect(context, kEverywhere);
        CGContextClip(context);
    },
    [](CGContextRef context) { CGContextClipToMask(context, kEverywhere, maskThatBlocksNothing().get()); },
};

} // namespace

TEST(CGContextClipEdges, CoverPixelsPartiallyForEveryKindOfPaint)
{
    const std::vector<int> expected = opaque({
        0, 24, 32, 32, 16, 0, // 3/4, 1, 1 and 1/2 across; a half
        0, 48, 64, 64, 32, 0, //
        0, 12, 16, 16, 8, 0,  // a quarter
    });
    for (const auto format : kFormats) {
        for (std::size_t fill = 0; fill < kFills.size(); ++fill) {
            for (std::size_t clip = 0; clip < kWideClips.size(); ++clip) {
                for (const bool isFirst : {false, true}) {
                    SCOPED_TRACE(testing::Message()
                        << "fill " << fill << ", wide clip " << clip << (isFirst ? " first" : " second"));
                    Canvas canvas(6, 3, format);
                    if (isFirst)
                        kWideClips[clip](canvas.context());
                    CGContextClipToRect(canvas.context(), CGRectMake(1.25, 0.75, 3.25, 1.75));
                    if (!isFirst)
                        kWideClips[clip](canvas.context());
                    kFills[fill](canvas.context());
                    EXPECT_EQ(alphas(canvas), expected);
                }
            }
        }
    }
}

TEST(CGContextClipEdges, ApplyToEverySuccessivePaint)
{
    for (std::size_t clip = 0; clip < kWideClips.size(); ++clip) {
        SCOPED_TRACE(testing::Message() << "wide clip " << clip);
        Canvas canvas(6, 1);
        kWideClips[clip](canvas.context());
        CGContextClipToRect(canvas.context(), CGRectMake(1.25, 0, 3.25, 1));
        CGContextFillRect(canvas.context(), kEverywhere);
        CGContextClearRect(canvas.context(), kEverywhere);
        EXPECT_EQ(alphas(canvas), opaque({0, 12, 0, 0, 16, 0})); // a quarter of 3/4, a half of 1/2
    }
}

TEST(CGContextClipEdges, CoverImagePixelsPartially)
{
    // The image's edges are those of the clip. cairo's coverages are 256ths, so 3/4 is 192.
    constexpr int kStep = 1;
    Canvas black(2, 2);
    CGContextFillRect(black.context(), CGRectMake(0, 0, 2, 2));
    const auto image = adopt(CGBitmapContextCreateImage(black.context()));
    const std::vector<int> expected = opaque({0, 24, 32, 32, 16, 0, 0, 48, 64, 64, 32, 0});
    for (const auto format : kFormats) {
        for (std::size_t clip = 0; clip < kWideClips.size(); ++clip) {
            SCOPED_TRACE(testing::Message() << "wide clip " << clip);
            Canvas canvas(6, 2, format);
            CGContextClipToRect(canvas.context(), CGRectMake(1.25, 0, 3.25, 1.5));
            kWideClips[clip](canvas.context());
            CGContextDrawImage(canvas.context(), kEverywhere, image);
            const std::vector<int> actual = alphas(canvas);
            for (std::size_t i = 0; i < expected.size(); ++i)
                EXPECT_NEAR(actual[i], expected[i], kStep) << "pixel " << i;
        }
    }
}

TEST(CGContextClipEdges, EndWithTheStateInWhichTheyWereSet)
{
    Canvas canvas(3, 1);
    CGContextClipToRect(canvas.context(), CGRectMake(0.5, 0, 5, 1));
    CGContextSaveGState(canvas.context());
    CGContextClipToRect(canvas.context(), CGRectMake(0, 0, 1.5, 1));
    CGContextRestoreGState(canvas.context());
    CGContextFillRect(canvas.context(), kEverywhere);
    EXPECT_EQ(alphas(canvas), opaque({32, 64, 64}));
}

TEST(CGContextClipEdges, MultiplyWithTheEdgesOfShapes)
{
    const CGRect rect = CGRectMake(1.25, 0, 2.25, 1);
    for (const auto format : kFormats) {
        Canvas single(5, 1, format);
        CGContextClipToRect(single.context(), rect);
        CGContextFillRect(single.context(), rect);
        EXPECT_EQ(alphas(single), opaque({0, 36, 64, 16, 0}));

        Canvas pieces(5, 1, format);
        CGContextClipToRect(pieces.context(), rect);
        CGContextAddRect(pieces.context(), CGRectMake(1.25, 0, 1, 1));
        CGContextAddRect(pieces.context(), CGRectMake(2.5, 0, 1, 1));
        CGContextFillPath(pieces.context());
        EXPECT_EQ(alphas(pieces), opaque({0, 36, 48, 16, 0}));

        Canvas gable(5, 1, format);
        CGContextClipToRect(gable.context(), rect);
        const CGPoint corners[]{{1.25, 0}, {3.5, 0}, {3.5, 1}, {2.5, 2}, {1.25, 1}};
        CGContextAddLines(gable.context(), corners, 5);
        CGContextFillPath(gable.context());
        EXPECT_EQ(alphas(gable), opaque({0, 36, 64, 16, 0}));
    }
}

TEST(CGContextClipEdges, CutRowsThatAShapeCoversCompletely)
{
    const CGPoint triangle[]{{-900, -900}, {900, -900}, {0, 900}};
    const auto draw = [&](CGRect clip) {
        auto canvas = std::make_unique<Canvas>(60, 3);
        CGContextClipToRect(canvas->context(), clip);
        CGContextAddLines(canvas->context(), triangle, 3);
        CGContextFillPath(canvas->context());
        return canvas;
    };
    const auto wide = draw(CGRectMake(2.25, 0, 50.5, 2.5));
    const auto half = draw(CGRectMake(2, 0, 50.5, 3));
    for (int x = 0; x < 60; ++x) {
        SCOPED_TRACE(x);
        const bool isInside = x > 2 && x < 52;
        const bool isEdge = x == 2 || x == 52;
        EXPECT_EQ(wide->alpha(x, 0), isInside ? 128 : isEdge ? 96 : 0); // 3/8 x 255 at the corners
        EXPECT_EQ(wide->alpha(x, 1), isInside ? 255 : isEdge ? 191 : 0);
        EXPECT_EQ(wide->alpha(x, 2), isInside ? 255 : isEdge ? 191 : 0);
        EXPECT_EQ(half->alpha(x, 1), x >= 2 && x < 52 ? 255 : x == 52 ? 128 : 0);
    }
    const auto narrow = draw(CGRectMake(7.25, 0, 0.5, 3));
    EXPECT_EQ(narrow->alpha(7, 1), 128);
    EXPECT_EQ(narrow->alpha(8, 1), 0);
    const auto two = draw(CGRectMake(7.25, 0, 1.5, 3));
    EXPECT_EQ(two->alpha(7, 1), 191);
    EXPECT_EQ(two->alpha(8, 1), 191);
    EXPECT_EQ(two->alpha(9, 1), 0);
}

TEST(CGContextClipEdges, MultiplyWithEachOther)
{
    for (const auto format : kFormats) {
        for (std::size_t fill = 0; fill < kFills.size(); ++fill) {
            SCOPED_TRACE(testing::Message() << "fill " << fill);
            Canvas canvas(5, 2, format);
            CGContextClipToRect(canvas.context(), CGRectMake(0.25, 0, 4, 1.5));
            CGContextClipToRect(canvas.context(), CGRectMake(0.5, 0.75, 3.25, 0.5));
            kFills[fill](canvas.context());
            EXPECT_EQ(alphas(canvas),
                opaque({
                    3, 8, 8, 6, 0,    // 3/4 x 1/2, 1, 1 and 3/4 across; a half of a quarter
                    6, 16, 16, 12, 0, // a quarter
                }));

            Canvas within(3, 1, format);
            CGContextClipToRect(within.context(), CGRectMake(1.25, 0, 0.5, 1));
            CGContextClipToRect(within.context(), CGRectMake(0, 0, 1.5, 1));
            kFills[fill](within.context());
            EXPECT_EQ(alphas(within), opaque({0, 16, 0}));

            Canvas apart(3, 1, format);
            CGContextClipToRect(apart.context(), CGRectMake(0, 0, 1, 1));
            CGContextClipToRect(apart.context(), CGRectMake(1.5, 0, 1, 1));
            kFills[fill](apart.context());
            EXPECT_EQ(alphas(apart), opaque({0, 0, 0}));
        }
    }
}

TEST(CGContextClipEdges, MultiplyWithFramesByTheEvenOddRule)
{
    const std::vector<int> expected = opaque({
        32, 64, 48, //
        32, 64, 24, // 3/4 of the clip and a half of the frame
        32, 64, 48, //
    });
    const CGRect frame[]{CGRectMake(0, 0, 6, 3), CGRectMake(2.5, 1, 2, 1)};
    for (const auto format : kFormats) {
        Canvas filled(3, 3, format);
        CGContextClipToRect(filled.context(), CGRectMake(0.5, 0, 2.25, 3));
        CGContextAddRects(filled.context(), frame, 2);
        CGContextEOFillPath(filled.context());
        EXPECT_EQ(alphas(filled), expected);

        for (std::size_t fill = 0; fill < kFills.size(); ++fill) {
            SCOPED_TRACE(testing::Message() << "fill " << fill);
            Canvas clipped(3, 3, format);
            CGContextAddRects(clipped.context(), frame, 2);
            CGContextEOClip(clipped.context());
            CGContextClipToRect(clipped.context(), CGRectMake(0.5, 0, 2.25, 3));
            kFills[fill](clipped.context());
            EXPECT_EQ(alphas(clipped), expected);
        }
    }
}

/// The blend modes that replace, on pixels (44, 80, 120, 204) and in red of alpha 0.8, which is 204. Of the
/// pixels, the clip covers 3/4, all and a half.
class CGContextClipEdgesReplace : public testing::TestWithParam<Canvas::Format> {
protected:
    void draw(CGBlendMode mode, const std::function<void(CGContextRef)>& fill)
    {
        for (int column = 0; column < 3; ++column)
            canvas.setPixel(column, 0, rgba(44, 80, 120, 204));
        CGContextClipToRect(canvas.context(), CGRectMake(0.25, 0, 2.25, 1));
        CGContextSetBlendMode(canvas.context(), mode);
        CGContextSetRGBFillColor(canvas.context(), 1, 0, 0, 0.8);
        fill(canvas.context());
    }

    /// On an alpha-only canvas the colours are 0.
    void expectPixels(CanvasPixel left, CanvasPixel middle, CanvasPixel right)
    {
        for (CanvasPixel* pixel : {&left, &middle, &right}) {
            if (canvas.isAlphaOnly())
                *pixel = rgba(0, 0, 0, pixel->bytes[3]);
        }
        EXPECT_EQ(canvas.pixel(0, 0), left);
        EXPECT_EQ(canvas.pixel(1, 0), middle);
        EXPECT_EQ(canvas.pixel(2, 0), right);
    }

    Canvas canvas{3, 1, GetParam()};
};

TEST_P(CGContextClipEdgesReplace, CopyByTheirCoverage)
{
    for (std::size_t fill = 0; fill < kFills.size(); ++fill) {
        SCOPED_TRACE(testing::Message() << "fill " << fill);
        canvas = Canvas(3, 1, GetParam());
        draw(kCGBlendModeCopy, kFills[fill]);
        expectPixels(rgba(164, 20, 30, 204), rgba(204, 0, 0, 204), rgba(124, 40, 60, 204));
    }
}

TEST_P(CGContextClipEdgesReplace, ClearByTheirCoverage)
{
    for (std::size_t fill = 0; fill < kFills.size(); ++fill) {
        SCOPED_TRACE(testing::Message() << "fill " << fill);
        canvas = Canvas(3, 1, GetParam());
        draw(kCGBlendModeClear, kFills[fill]);
        expectPixels(rgba(11, 20, 30, 51), rgba(0, 0, 0, 0), rgba(22, 40, 60, 102));
    }
}

INSTANTIATE_TEST_SUITE_P(Canvases, CGContextClipEdgesReplace, testing::ValuesIn(kFormats),
    [](const auto& info) { return std::string(info.param == Canvas::Format::RGBA ? "RGBA" : "AlphaOnly"); });
