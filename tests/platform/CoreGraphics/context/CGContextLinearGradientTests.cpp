#include "Gradients.h"
#include "support/AllocationCounter.h"
#include "support/Canvas.h"
#include "support/Threads.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace {

constexpr CanvasPixel kNone = rgba(0, 0, 0, 0);

RetainPtr<CGGradient> redToBlue()
{
    return gradientOf({kRedColor, kBlueColor});
}

void fillGray(const Canvas& canvas)
{
    CGContextSetGrayFillColor(canvas.context(), 1, 1);
    CGContextFillRect(canvas.context(), CGRectMake(0, 0, canvas.width(), canvas.height()));
}

} // namespace

TEST(CGContextDrawLinearGradient, RunsFromStartToEnd)
{
    Canvas across(4, 2);
    CGContextDrawLinearGradient(across.context(), redToBlue().get(), {0, 0}, {4, 0}, 0);
    // At 1/8, 3/8, 5/8 and 7/8.
    const CanvasPixel expected[] = {
        rgba(223, 0, 32, 255), rgba(159, 0, 96, 255), rgba(96, 0, 159, 255), rgba(32, 0, 223, 255)};
    for (int x = 0; x < 4; ++x) {
        EXPECT_TRUE(isAbout(across.pixel(x, 0), expected[x]));
        EXPECT_TRUE(isAbout(across.pixel(x, 1), expected[x]));
    }
    Canvas up(2, 4);
    CGContextDrawLinearGradient(up.context(), redToBlue().get(), {0, 0}, {0, 4}, 0);
    for (int y = 0; y < 4; ++y) {
        EXPECT_TRUE(isAbout(up.pixel(0, 3 - y), expected[y])); // y runs upward
        EXPECT_TRUE(isAbout(up.pixel(1, 3 - y), expected[y]));
    }
}

TEST(CGContextDrawLinearGradient, RunsDiagonally)
{
    Canvas canvas(4, 4);
    CGContextDrawLinearGradient(canvas.context(), redToBlue().get(), {0, 0}, {4, 4}, kBoth);
    EXPECT_TRUE(isAbout(canvas.pixel(0, 3), rgba(223, 0, 32, 255))); // bottom left, at 1/8
    EXPECT_TRUE(isAbout(canvas.pixel(3, 0), rgba(32, 0, 223, 255)));
    EXPECT_EQ(canvas.pixel(1, 1), canvas.pixel(2, 2));
    EXPECT_TRUE(isAbout(canvas.pixel(1, 2), rgba(159, 0, 96, 255)));
}

TEST(CGContextDrawLinearGradient, ExtendsOnTheSidesThatTheOptionsName)
{
    const auto drawn = [](CGGradientDrawingOptions options, bool isDiagonal) {
        Canvas canvas(6, 1);
        CGContextDrawLinearGradient(
            canvas.context(), redToBlue().get(), {2, 0}, {4, isDiagonal ? 0.001 : 0}, options);
        return canvas;
    };
    for (const bool isDiagonal : {false, true}) {
        EXPECT_COVERAGE(drawn(0, isDiagonal), "..##..");
        const Canvas before = drawn(kCGGradientDrawsBeforeStartLocation, isDiagonal);
        EXPECT_COVERAGE(before, "####..");
        EXPECT_EQ(before.pixel(0, 0), kRed);
        EXPECT_EQ(before.pixel(1, 0), kRed);
        const Canvas after = drawn(kCGGradientDrawsAfterEndLocation, isDiagonal);
        EXPECT_COVERAGE(after, "..####");
        EXPECT_EQ(after.pixel(4, 0), kBlue);
        EXPECT_EQ(after.pixel(5, 0), kBlue);
        EXPECT_COVERAGE(drawn(kBoth, isDiagonal), "######");
    }
}

TEST(CGContextDrawLinearGradient, BetweenEqualPointsPaintsTheExtendedColour)
{
    const auto drawn = [](CGGradientDrawingOptions options) {
        Canvas canvas(3, 1);
        CGContextDrawLinearGradient(canvas.context(), redToBlue().get(), {1.5, 0}, {1.5, 0}, options);
        EXPECT_EQ(canvas.pixel(0, 0), canvas.pixel(1, 0));
        EXPECT_EQ(canvas.pixel(0, 0), canvas.pixel(2, 0));
        return canvas.pixel(0, 0);
    };
    EXPECT_EQ(drawn(0), kNone);
    EXPECT_EQ(drawn(kCGGradientDrawsBeforeStartLocation), kRed);
    EXPECT_EQ(drawn(kCGGradientDrawsAfterEndLocation), kBlue);
    EXPECT_EQ(drawn(kBoth), kBlue);
}

TEST(CGContextDrawLinearGradient, HasAHardEdgeWhenItIsVeryShort)
{
    Canvas canvas(4, 1);
    CGContextDrawLinearGradient(canvas.context(), redToBlue().get(), {2, 0}, {2 + 1e-6, 0}, kBoth);
    EXPECT_EQ(canvas.pixel(1, 0), kRed);
    EXPECT_EQ(canvas.pixel(2, 0), kBlue);
}

TEST(CGContextDrawLinearGradient, FollowsTheTransform)
{
    Canvas canvas(2, 4);
    CGContextTranslateCTM(canvas.context(), 0, 4);
    CGContextRotateCTM(canvas.context(), -M_PI_2); // +x points down
    CGContextScaleCTM(canvas.context(), 2, 1);
    CGContextDrawLinearGradient(canvas.context(), redToBlue().get(), {0, 0}, {2, 0}, 0);
    EXPECT_TRUE(isAbout(canvas.pixel(0, 0), rgba(223, 0, 32, 255)));
    EXPECT_TRUE(isAbout(canvas.pixel(1, 3), rgba(32, 0, 223, 255)));
    CGContextScaleCTM(canvas.context(), 0, 1);
    CGContextDrawLinearGradient(canvas.context(), gradientOf({{0, 1, 0, 1}}).get(), {0, 0}, {2, 0}, kBoth);
    EXPECT_TRUE(isAbout(canvas.pixel(0, 0), rgba(223, 0, 32, 255)));
}

// Lines of one colour are sheared with the transform; they are perpendicular to the gradient in user space
// only.
TEST(CGContextDrawLinearGradient, IsShearedByTheTransform)
{
    Canvas canvas(4, 4);
    CGContextConcatCTM(canvas.context(), {1, 0, 1, 1, 0, 0}); // x grows with y
    CGContextDrawLinearGradient(canvas.context(), redToBlue().get(), {0, 0}, {4, 0}, kBoth);
    EXPECT_EQ(canvas.pixel(1, 3), canvas.pixel(2, 2));
    EXPECT_EQ(canvas.pixel(1, 3), canvas.pixel(3, 1));
    EXPECT_TRUE(isAbout(canvas.pixel(1, 3), rgba(191, 0, 64, 255))); // x is 1.5, less 0.5 for y: a quarter
}

TEST(CGContextDrawLinearGradient, StaysWithinTheClip)
{
    Canvas canvas(6, 4);
    CGContextClipToRect(canvas.context(), CGRectMake(1, 1, 4, 2.5));
    CGContextDrawLinearGradient(canvas.context(), redToBlue().get(), {0, 0}, {6, 0}, kBoth);
    EXPECT_COVERAGE(canvas,
        ".++++."
        ".####."
        ".####."
        "......");
    EXPECT_TRUE(isAbout(canvas.pixel(1, 1), rgba(191, 0, 64, 255))); // at a quarter
    EXPECT_TRUE(isAbout(canvas.pixel(1, 0), rgba(96, 0, 32, 128)));  // half of it
}

TEST(CGContextDrawLinearGradient, IsMultipliedByNonRectangularClips)
{
    Canvas canvas(4, 4);
    const CGPoint corners[] = {{0, 0}, {4, 0}, {4, 2}, {1.5, 2}, {1.5, 4}, {0, 4}};
    CGContextAddLines(canvas.context(), corners, 6);
    CGContextClip(canvas.context());
    CGContextClipToRect(canvas.context(), CGRectMake(0, 0.5, 4, 4));
    CGContextDrawLinearGradient(canvas.context(), redToBlue().get(), {0, 0}, {0, 0}, kBoth);
    EXPECT_COVERAGE(canvas,
        "#+.."
        "#+.."
        "####"
        "++++");
    EXPECT_EQ(canvas.pixel(1, 2), kBlue);
}

// A ring that is higher than one band of a clip. On a transparent canvas an opaque gradient leaves the alpha
// of an opaque colour, and its own colours where the coverage is full.
TEST(CGContextDrawLinearGradient, FillsClipsWithHolesLikeASolidColour)
{
    const auto clip = [](const Canvas& canvas) {
        CGContextAddEllipseInRect(canvas.context(), CGRectMake(1, 2, 46, 196));
        CGContextAddEllipseInRect(canvas.context(), CGRectMake(12, 30, 20, 120));
        CGContextEOClip(canvas.context());
    };
    Canvas color(48, 200);
    clip(color);
    CGContextFillRect(color.context(), CGRectMake(0, 0, 48, 200));
    for (const CGPoint end : {CGPoint{48, 0}, CGPoint{0, 200}, CGPoint{48, 200}}) {
        Canvas whole(48, 200), ring(48, 200);
        CGContextDrawLinearGradient(whole.context(), redToBlue().get(), {0, 0}, end, kBoth);
        clip(ring);
        // The clip's mask is rasterized the first time and cached from the second or third.
        for (int round = 0; round < 3; ++round) {
            for (int i = 0; i < 48 * 200; ++i)
                ring.setPixel(i % 48, i / 48, kNone);
            CGContextDrawLinearGradient(ring.context(), redToBlue().get(), {0, 0}, end, kBoth);
            for (int i = 0; i < 48 * 200; ++i) {
                const int x = i % 48, y = i / 48;
                ASSERT_NEAR(ring.alpha(x, y), color.alpha(x, y), 1) << x << ", " << y;
                if (ring.alpha(x, y) == 255) {
                    ASSERT_EQ(ring.pixel(x, y), whole.pixel(x, y)) << x << ", " << y;
                }
            }
        }
    }
}

TEST(CGContextDrawLinearGradient, BlendsTranslucentColoursAndTheAlphaOfTheState)
{
    Canvas canvas(2, 1);
    fillGray(canvas);
    CGContextDrawLinearGradient(
        canvas.context(), gradientOf({{0, 0, 0, 0.2}, {0, 0, 0, 0.6}}).get(), {0, 0}, {2, 0}, kBoth);
    EXPECT_TRUE(isAbout(canvas.pixel(0, 0), rgba(178, 178, 178, 255))); // 0.7 of white
    EXPECT_TRUE(isAbout(canvas.pixel(1, 0), rgba(128, 128, 128, 255)));

    Canvas faded(2, 1);
    CGContextSetAlpha(faded.context(), 0.4);
    CGContextDrawLinearGradient(faded.context(), redToBlue().get(), {1, 0}, {1, 0}, kBoth);
    EXPECT_EQ(faded.pixel(0, 0), rgba(0, 0, 102, 102));
}

TEST(CGContextDrawLinearGradient, UsesTheBlendModeOnlyWhereItPaints)
{
    const auto drawn = [](CGBlendMode mode, CGGradientDrawingOptions options) {
        Canvas canvas(3, 1);
        for (int x = 0; x < 3; ++x)
            canvas.setPixel(x, 0, rgba(0, 100, 0, 100));
        CGContextSetBlendMode(canvas.context(), mode);
        CGContextDrawLinearGradient(
            canvas.context(), gradientOf({{1, 0, 0, 0.4}}).get(), {1, 0}, {2, 0}, options);
        // Pixels beyond the gradient's ends are unchanged.
        if (options == 0) {
            EXPECT_EQ(canvas.pixel(0, 0), rgba(0, 100, 0, 100));
            EXPECT_EQ(canvas.pixel(2, 0), rgba(0, 100, 0, 100));
        } else {
            EXPECT_EQ(canvas.pixel(0, 0), canvas.pixel(1, 0));
        }
        return canvas.pixel(1, 0);
    };
    for (const CGGradientDrawingOptions options : {CGGradientDrawingOptions(0), kBoth}) {
        EXPECT_EQ(drawn(kCGBlendModeNormal, options), rgba(102, 60, 0, 162));
        EXPECT_EQ(drawn(kCGBlendModeCopy, options), rgba(102, 0, 0, 102));
        EXPECT_EQ(drawn(kCGBlendModeSourceIn, options), rgba(40, 0, 0, 40));
        EXPECT_EQ(drawn(kCGBlendModePlusLighter, options), rgba(102, 100, 0, 202));
        EXPECT_EQ(drawn(kCGBlendModeDestinationOut, options), rgba(0, 60, 0, 60));
    }
}

TEST(CGContextDrawLinearGradient, OtherModesApplyAlphaAndClip)
{
    Canvas canvas(3, 1);
    for (int x = 0; x < 3; ++x)
        canvas.setPixel(x, 0, rgba(0, 100, 0, 100));
    CGContextClipToRect(canvas.context(), CGRectMake(0, 0, 1.5, 1));
    CGContextSetAlpha(canvas.context(), 0.4);
    CGContextSetBlendMode(canvas.context(), kCGBlendModeCopy);
    CGContextDrawLinearGradient(canvas.context(), gradientOf({kRedColor}).get(), {0, 0}, {3, 0}, kBoth);
    EXPECT_EQ(canvas.pixel(0, 0), rgba(102, 0, 0, 102));
    EXPECT_EQ(canvas.pixel(1, 0), rgba(51, 50, 0, 101));
    EXPECT_EQ(canvas.pixel(2, 0), rgba(0, 100, 0, 100));
}

TEST(CGContextDrawLinearGradient, PaintsItsAlphaIntoAnAlphaOnlyContext)
{
    Canvas canvas(4, 1, Canvas::Format::AlphaOnly);
    CGContextDrawLinearGradient(
        canvas.context(), gradientOf({{1, 0, 0, 0}, {0, 0, 0, 1}}).get(), {0, 0}, {3, 0}, 0);
    EXPECT_NEAR(canvas.alpha(0, 0), 42.5, 1); // a sixth
    EXPECT_NEAR(canvas.alpha(1, 0), 127.5, 1);
    EXPECT_NEAR(canvas.alpha(2, 0), 212.5, 1);
    EXPECT_EQ(canvas.alpha(3, 0), 0);
}

TEST(CGContextDrawLinearGradient, DrawsAtAnyPixelAddress)
{
    constexpr std::size_t kBytesPerRow = 4 * 9 + 3;
    std::vector<unsigned char> memory(kBytesPerRow * 5 + 1, 7);
    const auto space = adopt(CGColorSpaceCreateDeviceRGB());
    const auto context = adopt(CGBitmapContextCreate(
        memory.data() + 1, 9, 5, 8, kBytesPerRow, space, kCGImageAlphaPremultipliedLast));
    CGContextDrawLinearGradient(context, redToBlue().get(), {0, 0}, {9, 5}, kBoth);
    Canvas canvas(9, 5);
    CGContextDrawLinearGradient(canvas.context(), redToBlue().get(), {0, 0}, {9, 5}, kBoth);
    for (std::size_t y = 0; y < 5; ++y) {
        const unsigned char* row = memory.data() + 1 + y * kBytesPerRow;
        for (std::size_t x = 0; x < 9; ++x) {
            const unsigned char* p = row + 4 * x;
            EXPECT_EQ(rgba(p[0], p[1], p[2], p[3]), canvas.pixel(int(x), int(y)));
        }
        if (y < 4) { // the last row has no padding
            EXPECT_EQ(row[36], 7);
            EXPECT_EQ(row[38], 7);
        }
    }
}

TEST(CGContextDrawLinearGradient, DoesNotChangeThePath)
{
    Canvas canvas(4, 4);
    CGContextAddRect(canvas.context(), CGRectMake(0, 0, 2, 2));
    CGContextDrawLinearGradient(canvas.context(), redToBlue().get(), {0, 0}, {4, 0}, kBoth);
    EXPECT_TRUE(CGRectEqualToRect(CGContextGetPathBoundingBox(canvas.context()), CGRectMake(0, 0, 2, 2)));
}

TEST(CGContextDrawLinearGradient, DrawsNothingForInvalidArguments)
{
    constexpr CGFloat kNaN = std::numeric_limits<CGFloat>::quiet_NaN();
    constexpr CGFloat kInfinity = std::numeric_limits<CGFloat>::infinity();
    Canvas canvas(2, 1);
    CGContextDrawLinearGradient(nullptr, redToBlue().get(), {0, 0}, {2, 0}, kBoth);
    CGContextDrawLinearGradient(canvas.context(), nullptr, {0, 0}, {2, 0}, kBoth);
    CGContextDrawLinearGradient(canvas.context(), redToBlue().get(), {kNaN, 0}, {2, 0}, kBoth);
    CGContextDrawLinearGradient(canvas.context(), redToBlue().get(), {0, 0}, {0, kInfinity}, kBoth);
    CGContextClipToRect(canvas.context(), CGRectZero);
    CGContextDrawLinearGradient(canvas.context(), redToBlue().get(), {0, 0}, {2, 0}, kBoth);
    EXPECT_COVERAGE(canvas, "..");
}

TEST(CGContextDrawLinearGradient, AllocatesNothingAfterTheFirstDraw)
{
    Canvas canvas(64, 32);
    const auto gradient = redToBlue();
    const auto translucent = gradientOf({{1, 0, 0, 0.5}, kBlueColor});
    const auto draw = [&] {
        for (const CGPoint end : {CGPoint{64, 0}, CGPoint{0, 32}, CGPoint{64, 32}}) {
            CGContextDrawLinearGradient(canvas.context(), gradient, {0, 0}, end, kBoth);
            CGContextDrawLinearGradient(canvas.context(), translucent, {0, 0}, end, 0);
        }
        CGContextDrawRadialGradient(canvas.context(), gradient, {9, 9}, 0, {9, 9}, 9, kBoth);
        CGContextDrawRadialGradient(canvas.context(), gradient, {9, 9}, 1, {50, 9}, 9, kBoth);
    };
    draw();
    const AllocationCounter counter;
    draw();
    EXPECT_EQ(counter.count(), 0U);
}

TEST(CGContextDrawLinearGradient, OneGradientIsDrawnOnManyThreads)
{
    const auto gradient = gradientOf({kRedColor, {0, 1, 0, 0.3}, kBlueColor}, {0, 0.37, 1});
    Canvas expected(50, 20);
    CGContextDrawLinearGradient(expected.context(), gradient, {3, 2}, {44, 17}, kBoth);
    onThreads(4, [&](int) {
        const RetainPtr<CGGradient> own(gradient);
        Canvas canvas(50, 20);
        CGContextDrawLinearGradient(canvas.context(), own, {3, 2}, {44, 17}, kBoth);
        for (int i = 0; i < 50 * 20; ++i)
            EXPECT_EQ(canvas.pixel(i % 50, i / 50), expected.pixel(i % 50, i / 50));
    });
}
