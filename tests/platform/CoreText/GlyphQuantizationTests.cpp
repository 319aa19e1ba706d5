#include "TextFixture.h"

#include "support/Threads.h"

#include <cmath>
#include <limits>
#include <numbers>

namespace {

using GlyphQuantization = SquareFontTest;

/// All bytes of the pixels.
std::string bytesOf(const Canvas& canvas)
{
    const CGContextRef context = canvas.context();
    return {static_cast<const char*>(CGBitmapContextGetData(context)),
        CGBitmapContextGetBytesPerRow(context) * CGBitmapContextGetHeight(context)};
}

/// Of two strings of equal length, byte by byte.
int greatestDifference(const std::string& a, const std::string& b)
{
    int result = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        result = std::max(
            result, std::abs(int(static_cast<unsigned char>(a[i])) - static_cast<unsigned char>(b[i])));
    return result;
}

/// Draws a line at a position, by quarters of a pixel or exactly.
void drawLine(const Canvas& canvas, const RetainPtr<const CTLine>& line, CGPoint position, bool quantizes)
{
    CGContextSaveGState(canvas.context());
    CGContextSetShouldSubpixelQuantizeFonts(canvas.context(), quantizes);
    CGContextSetTextPosition(canvas.context(), position.x, position.y);
    CTLineDraw(line, canvas.context());
    CGContextRestoreGState(canvas.context());
}

/// The alpha of the square letter's leftmost column, which at the position 1.12 has 0.88 of a pixel.
int leftAlpha(const Canvas& canvas)
{
    return canvas.alpha(1, canvas.height() - 2);
}
constexpr int kExact = 224; // 0.88 x 255
constexpr int kRounded = 255;

TEST_F(GlyphQuantization, RoundsEachGlyphToTheNearestQuarterByDefault)
{
    // The second letter's origin lies at 3.45: its quarter is not the first one's.
    const Canvas canvas(7, 4);
    CGContextSetTextPosition(canvas.context(), 1.1, 0.9);
    CTLineDraw(squareLine("AA", 2, 0.35).get(), canvas.context());
    EXPECT_COVERAGE(canvas,
        "......."
        ".##+#+."
        ".##+#+."
        ".......");
}

TEST_F(GlyphQuantization, NeedsBothThatItIsAllowedAndThatItShould)
{
    for (const bool isAllowed : {true, false}) {
        for (const bool should : {true, false}) {
            SCOPED_TRACE(testing::Message() << "allowed " << isAllowed << ", should " << should);
            const Canvas canvas(5, 4);
            CGContextSetAllowsFontSubpixelQuantization(canvas.context(), isAllowed);
            CGContextSetShouldSubpixelQuantizeFonts(canvas.context(), should);
            CGContextSetTextPosition(canvas.context(), 1.12, 1);
            CTLineDraw(squareLine("A", 2).get(), canvas.context());
            EXPECT_EQ(leftAlpha(canvas), isAllowed && should ? kRounded : kExact);
        }
    }
}

TEST_F(GlyphQuantization, IsPartOfTheGraphicsState)
{
    const Canvas canvas(5, 4);
    CGContextSaveGState(canvas.context());
    CGContextSetAllowsFontSubpixelQuantization(canvas.context(), false);
    CGContextSetShouldSubpixelQuantizeFonts(canvas.context(), false);
    CGContextRestoreGState(canvas.context());
    CGContextSetTextPosition(canvas.context(), 1.12, 1);
    CTLineDraw(squareLine("A", 2).get(), canvas.context());
    EXPECT_EQ(leftAlpha(canvas), kRounded);
    CGContextSetAllowsFontSubpixelQuantization(nullptr, false);
    CGContextSetShouldSubpixelQuantizeFonts(nullptr, false);
}

TEST_F(GlyphQuantization, SmoothingChangesNothing)
{
    for (const bool smooths : {true, false}) {
        const Canvas canvas(4, 4);
        CGContextSetAllowsFontSmoothing(canvas.context(), smooths);
        CGContextSetShouldSmoothFonts(canvas.context(), smooths);
        CGContextSetTextPosition(canvas.context(), 1, 1);
        CTLineDraw(squareLine("A", 1.5).get(), canvas.context());
        EXPECT_EQ(canvas.pixel(1, 2), rgba(0, 0, 0, 255));
        EXPECT_EQ(canvas.pixel(2, 2), rgba(0, 0, 0, 128));
    }
}

TEST_F(GlyphQuantization, LeavesLargeTextAtItsExactPosition)
{
    const auto alphaAtSize = [](double size) {
        const Canvas canvas(80, 80);
        CGContextSetTextPosition(canvas.context(), 1.12, 1);
        CTLineDraw(squareLine("A", size).get(), canvas.context());
        return leftAlpha(canvas);
    };
    EXPECT_EQ(alphaAtSize(64), kRounded);
    EXPECT_EQ(alphaAtSize(64.5), kExact);
    const Canvas scaled(80, 80);
    CGContextScaleCTM(scaled.context(), 1, 33);
    CGContextSetTextPosition(scaled.context(), 1.12, 1.0 / 33);
    CTLineDraw(squareLine("A", 2).get(), scaled.context());
    EXPECT_EQ(leftAlpha(scaled), kExact) << "pixels count, not points";
}

TEST_F(GlyphQuantization, LeavesTextOnASlantedBaselineAtItsExactPosition)
{
    const auto drawn = [](const CGAffineTransform& matrix, bool quantizes) {
        const Canvas canvas(20, 20);
        CGContextSetShouldSubpixelQuantizeFonts(canvas.context(), quantizes);
        CGContextSetTextMatrix(canvas.context(), matrix);
        CTLineDraw(squareLine("Ab", 4).get(), canvas.context());
        return bytesOf(canvas);
    };
    const CGAffineTransform turned{0.8, 0.6, -0.6, 0.8, 9.1, 5.1};
    const CGAffineTransform sheared{1, 0.001, 0, 1, 9.1, 5.1};
    for (const CGAffineTransform& matrix : {turned, sheared})
        EXPECT_TRUE(drawn(matrix, true) == drawn(matrix, false));
}

TEST_F(GlyphQuantization, MirrorsText)
{
    const Canvas canvas(6, 5);
    CGContextSetTextMatrix(canvas.context(), {-1, 0, 0, -1, 5, 4});
    CTLineDraw(squareLine("b", 4).get(), canvas.context());
    EXPECT_COVERAGE(canvas,
        "......"
        "...##."
        "...##."
        "......"
        "......");
}

TEST_F(GlyphQuantization, DrawsAtQuartersWhatExactOutlinesDraw)
{
    const auto green = adopt(CGColorCreateSRGB(0, 1, 0, 0.8));
    struct Case {
        const char* name;
        void (*prepare)(CGContextRef, CGColorRef);
        Canvas::Format format = Canvas::Format::RGBA;
    };
    const Case cases[] = {
        {"plain", [](CGContextRef, CGColorRef) {}},
        {"alpha only", [](CGContextRef, CGColorRef) {}, Canvas::Format::AlphaOnly},
        {"alpha", [](CGContextRef context, CGColorRef) { CGContextSetAlpha(context, 0.3); }},
        {"shadow",
            [](CGContextRef context, CGColorRef color) {
                CGContextSetShadowWithColor(context, CGSizeMake(2, -1), 3, color);
            }},
        {"clip",
            [](CGContextRef context, CGColorRef) {
                CGContextAddEllipseInRect(context, CGRectMake(2.3, 1.2, 12, 9));
                CGContextClip(context);
            }},
        {"multiply",
            [](CGContextRef context, CGColorRef) { CGContextSetBlendMode(context, kCGBlendModeMultiply); }},
        {"clear",
            [](CGContextRef context, CGColorRef) { CGContextSetBlendMode(context, kCGBlendModeClear); }},
        {"source in",
            [](CGContextRef context, CGColorRef) { CGContextSetBlendMode(context, kCGBlendModeSourceIn); }},
        {"mirrored",
            [](CGContextRef context, CGColorRef) {
                CGContextTranslateCTM(context, 16, 12);
                CGContextScaleCTM(context, -1, -1);
            }},
    };
    for (const Case& each : cases) {
        // Letters side by side, and letters that overlap by whole pixels: what overlaps in part adds up.
        for (const double kern : {0.0, -1.0}) {
            SCOPED_TRACE(testing::Message() << each.name << ", kern " << kern);
            std::string drawn[2];
            for (const bool quantizes : {false, true}) {
                const Canvas canvas(16, 12, each.format);
                CGContextSetRGBFillColor(canvas.context(), 0.9, 0.5, 0.1, 0.7);
                CGContextFillRect(canvas.context(), CGRectMake(0, 0, 9, 12));
                each.prepare(canvas.context(), green);
                const CGPoint position = kern == 0 ? CGPointMake(1.25, 4.5) : CGPointMake(1, 4);
                drawLine(canvas, squareLine("Abxb", 4, kern), position, quantizes);
                drawn[quantizes] = bytesOf(canvas);
            }
            // Bytes of coverage that add up are each rounded, a whole outline's only once.
            EXPECT_LE(greatestDifference(drawn[0], drawn[1]), 1);
        }
    }
}

TEST_F(GlyphQuantization, CullsLettersThatKerningMovesFarAway)
{
    // The kerns cancel out: the line as a whole is narrow.
    const auto text = make<NSMutableAttributedString>(squares("AAA", 2).get());
    for (const NSUInteger i : {0u, 1u})
        text->addAttribute(
            kCTKernAttributeName, NSNumber::numberWithDouble(i == 0 ? 1e9 : -1e9 - 3), NSMakeRange(i, 1));
    const auto line = adopt(CTLineCreateWithAttributedString(text.get()));
    for (const bool quantizes : {true, false}) {
        const Canvas canvas(6, 4);
        drawLine(canvas, line, {3, 1}, quantizes);
        EXPECT_COVERAGE(canvas,
            "......"
            "...###"
            "...###"
            "......");
    }
}

TEST_F(GlyphQuantization, DrawsNothingWhereTheTransformIsInvalid)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const CGAffineTransform transforms[] = {{nan, 0, 0, 1, 1, 1}, {1, 0, 0, nan, 1, 1}, {1, 0, 0, 1, nan, 1},
        {1, 0, 0, 1, 1, 1e300}, {0, 0, 0, 0, 1, 1}};
    for (const CGAffineTransform& transform : transforms) {
        const Canvas canvas(6, 4);
        CGContextSetTextMatrix(canvas.context(), transform);
        CTLineDraw(squareLine("AbA", 2).get(), canvas.context());
        EXPECT_COVERAGE(canvas,
            "......"
            "......"
            "......"
            "......");
    }
}

TEST_F(GlyphQuantization, DrawsTheVisiblePartOfLongLines)
{
    std::string text;
    for (int i = 0; i < 20000; ++i)
        text += "A ";
    const auto line = squareLine(NSString(text), 2); // letters of 2 points, a blank of 1 behind each
    const Canvas canvas(6, 2);
    CGContextTranslateCTM(canvas.context(), -30001.1, 0.1);
    CTLineDraw(line, canvas.context());
    EXPECT_COVERAGE(canvas,
        "#.##.#"
        "#.##.#");
}

} // namespace

TEST(GlyphQuantizationOfInstalledFonts, MovesALetterToTheNearestQuarterAndNoFurther)
{
    const auto letter = lineIn("Liberation Sans", "R", 13.3);
    for (double offset = 0; offset < 1; offset += 0.07) {
        SCOPED_TRACE(offset);
        const Canvas rounded(16, 16);
        const Canvas exact(16, 16);
        drawLine(rounded, letter, {2 + offset, 3 + 2 * offset}, true);
        drawLine(exact, letter,
            {std::floor(4 * (2 + offset) + 0.5) / 4, -std::floor(4 * (-3 - 2 * offset) + 0.5) / 4}, false);
        EXPECT_TRUE(bytesOf(rounded) == bytesOf(exact));
    }
}

TEST(GlyphQuantizationOfInstalledFonts, MovesLettersOnBaselinesAlongPixelsToTheNearestQuarter)
{
    const auto letter = lineIn("Liberation Sans", "R", 13.3);
    struct Case {
        const char* name;
        CGAffineTransform matrix;
    };
    const Case cases[] = {{"a quarter turn", CGAffineTransformMakeRotation(std::numbers::pi / 2)},
        {"three quarters", CGAffineTransformMakeRotation(-std::numbers::pi / 2)},
        {"upside down", CGAffineTransformMakeRotation(std::numbers::pi)}, {"oblique", {1, 0, 0.3, 1, 0, 0}},
        {"turned and oblique", {0, 1, -1, 0.3, 0, 0}}};
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        const auto drawnAt = [&](double x, double y, bool quantizes) {
            const Canvas canvas(32, 32);
            CGContextTranslateCTM(canvas.context(), x, y);
            CGContextConcatCTM(canvas.context(), test.matrix);
            drawLine(canvas, letter, {0, 0}, quantizes);
            return bytesOf(canvas);
        };
        EXPECT_TRUE(drawnAt(16.1, 16.35, true) == drawnAt(16, 16.25, false));
        EXPECT_TRUE(drawnAt(16.15, 16.4, true) == drawnAt(16.25, 16.5, false));
    }
}

/// The mean position of the ink, in pixels from the upper left.
CGPoint centerOfInk(const Canvas& canvas)
{
    double sum = 0;
    CGPoint center;
    for (int y = 0; y < canvas.height(); ++y) {
        for (int x = 0; x < canvas.width(); ++x) {
            sum += canvas.alpha(x, y);
            center.x += canvas.alpha(x, y) * (x + 0.5);
            center.y += canvas.alpha(x, y) * (y + 0.5);
        }
    }
    return {center.x / sum, center.y / sum};
}

TEST(GlyphQuantizationOfInstalledFonts, LeavesEachLetterWithinAQuarterOfAPixelAtEachScaleAndPlace)
{
    constexpr double kHalfQuarter = 0.125 + 0.02; // half of a quarter, and the error of coverage in 8 bits
    for (const double scale : {1.0, 1.25, 2.0, 3.7}) {
        for (double offset = 0; offset < 1; offset += 0.09) {
            for (const char* letters : {"a", "m", "8"}) {
                SCOPED_TRACE(testing::Message() << letters << " at " << offset << ", scale " << scale);
                const auto line = lineIn("Liberation Sans", letters, 11);
                CGPoint centers[2];
                for (const bool quantizes : {false, true}) {
                    const Canvas canvas(60, 60);
                    CGContextScaleCTM(canvas.context(), scale, scale);
                    drawLine(canvas, line, {2 + offset, 4 + offset / 3}, quantizes);
                    centers[quantizes] = centerOfInk(canvas);
                }
                EXPECT_NEAR(centers[1].x, centers[0].x, kHalfQuarter);
                EXPECT_NEAR(centers[1].y, centers[0].y, kHalfQuarter);
            }
        }
    }
}

TEST(GlyphQuantizationOfInstalledFonts, MovesEmojiToWholePixels)
{
    const auto party = lineIn("Noto Color Emoji", "\xF0\x9F\x8E\x89", 13);
    const auto drawnAt = [&](double x, bool quantizes) {
        const Canvas canvas(24, 20);
        drawLine(canvas, party, {x, 4.4}, quantizes);
        return bytesOf(canvas);
    };
    const std::string left = drawnAt(2, true);
    const std::string right = drawnAt(3, true);
    EXPECT_TRUE(left != right);
    int count = 0;
    for (double x = 2; x <= 3; x += 0.125) {
        const std::string drawn = drawnAt(x, true);
        EXPECT_TRUE(drawn == left || drawn == right) << x;
        count += drawn == left ? 1 : 0;
    }
    EXPECT_GE(count, 1);
    EXPECT_LE(count, 8);
    EXPECT_TRUE(drawnAt(2.125, false) != drawnAt(2.25, false)) << "exactly where they belong";
}

TEST(GlyphQuantizationOfInstalledFonts, EightThreadsDrawEqualBytes)
{
    const auto draw = [](int i) {
        const Canvas canvas(90, 24);
        const auto line = lineIn(i % 2 ? "Liberation Sans" : "DejaVu Sans", "Moving 123", 9 + i % 7);
        for (const double x : {1.0, 1.3, 2.6})
            drawLine(canvas, line, {x, 6 + x / 3}, true);
        return bytesOf(canvas);
    };
    constexpr int kPictures = 14;
    std::vector<std::vector<std::string>> drawn(8);
    onThreads(8, [&](int thread) {
        for (int i = 0; i < 3 * kPictures; ++i)
            drawn[std::size_t(thread)].push_back(draw((i + thread) % kPictures));
    });
    for (int thread = 0; thread < 8; ++thread)
        for (int i = 0; i < 3 * kPictures; ++i)
            EXPECT_TRUE(drawn[std::size_t(thread)][std::size_t(i)] == draw((i + thread) % kPictures))
                << thread;
}

TEST(GlyphQuantizationOfInstalledFonts, MasksOfTwoThousandSizesStayWithinFourMegabytes)
{
    const Canvas canvas(400, 60);
    std::size_t most = 0;
    for (int i = 0; i < 2000; ++i) {
        drawLine(canvas, lineIn("Liberation Sans", "The quick brown fox", 8 + i * 0.02), {2.1, 9.3}, true);
        most = std::max(most, glyphMaskByteCount());
    }
    EXPECT_LE(most, std::size_t(4) << 20);
    EXPECT_GT(most, std::size_t(3) << 20) << "the capacity is used";
}
