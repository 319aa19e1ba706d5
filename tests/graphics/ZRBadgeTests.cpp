#include "Foundation/testing/NSLogCapture.h"
#include "support/Canvas.h"
#include "support/Describe.h"
#include "support/Numbers.h"

#include <KorvidAppKit/ZRShapes.h>

#include <CoreText/CTFont.h>
#include <CoreText/CTLine.h>

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace {

/// Nearly white: where a circle touches a row of pixels, its outline leaves up to 0.05 of the pixel on each
/// side.
bool isWhite(const CanvasPixel& pixel)
{
    return *std::min_element(pixel.bytes.begin(), pixel.bytes.end()) >= 235;
}

RetainPtr<CGColor> opaque(CGFloat red, CGFloat green, CGFloat blue)
{
    const auto space = adopt(CGColorSpaceCreateDeviceRGB());
    const CGFloat components[]{red, green, blue, 1};
    return adopt(CGColorCreate(space, components));
}

/// A canvas with a badge at its centre.
class Badge {
public:
    static constexpr int kPoints = 120;

    explicit Badge(const NSString& text, CGFloat fontSize = 12, int scale = 1,
        const RetainPtr<CGColor>& color = opaque(1, 0, 0))
        : _scale(scale)
        , _canvas(kPoints * scale, kPoints * scale)
    {
        CGContextTranslateCTM(context(), middle(), middle());
        ZRDrawBadge(context(), color, text, fontSize, scale);
    }

    CGContextRef context() const { return _canvas.context(); }
    const Canvas& canvas() const { return _canvas; }
    /// The pixel whose lower left corner is the point, in points from the centre.
    CanvasPixel at(CGFloat x, CGFloat y) const
    {
        return _canvas.pixel(int(std::floor(middle() + x * _scale)),
            kPoints * _scale - 1 - int(std::floor(middle() + y * _scale)));
    }

private:
    int middle() const { return kPoints * _scale / 2; }

    int _scale;
    Canvas _canvas;
};

/// A line of white text in the font of badges.
RetainPtr<const CTLine> makeLine(const NSString& text, CGFloat fontSize)
{
    const auto font = adopt(CTFontCreateWithName("Helvetica Bold", fontSize));
    const auto attributes = make<NSDictionary>(NSDictionary::Map{
        {kCTFontAttributeName, RetainPtr<NSObject>(const_cast<CTFont*>(font.get()))},
        {kCTForegroundColorAttributeName, box(opaque(1, 1, 1))},
    });
    const auto string = make<NSAttributedString>(text, attributes);
    return adopt(CTLineCreateWithAttributedString(string));
}

/// The bounds of a text's ink, in points.
CGRect inkOf(const NSString& text, CGFloat fontSize)
{
    return CTLineGetImageBounds(makeLine(text, fontSize).get(), nullptr);
}

int saturation(const CanvasPixel& pixel)
{
    return pixel.bytes[0] - pixel.bytes[1];
}

} // namespace

TEST(DrawBadge, WithOneDigitAt12PointsIs22HighAndWide)
{
    for (const int scale : {1, 2}) {
        const Badge badge("7", 12, scale);
        // The outline is 2 wide, centred on the edge at 11.
        for (const CGFloat inside : {10.0, 11.0, 11.5}) {
            EXPECT_TRUE(isWhite(badge.at(0, inside)));
            EXPECT_TRUE(isWhite(badge.at(0, -inside - 0.5)));
            EXPECT_TRUE(isWhite(badge.at(inside, 0)));
            EXPECT_TRUE(isWhite(badge.at(-inside - 0.5, 0)));
        }
        EXPECT_EQ(badge.at(0, 12).bytes[3], 0);
        EXPECT_EQ(badge.at(-13, 8).bytes[3], 0);
        EXPECT_EQ(badge.at(12, 8).bytes[3], 0);
        EXPECT_GT(saturation(badge.at(0, 9)), 100) << "the red of the fill, below the sheen";
        EXPECT_EQ(badge.at(9, 9).bytes[3], 0) << "outside the rounded corner";
    }
}

TEST(DrawBadge, Is12WiderThanTheInkOfItsText)
{
    for (const int scale : {1, 2}) {
        const CGFloat half = inkOf("12345", 20).size.width / 2 + 6;
        ASSERT_GT(2 * half, 40);
        const Badge badge("12345", 20, scale);
        EXPECT_TRUE(isWhite(badge.at(0, 15)));
        EXPECT_EQ(badge.at(0, 16).bytes[3], 0);
        EXPECT_TRUE(isWhite(badge.at(half, 2)));
        EXPECT_TRUE(isWhite(badge.at(-half, 2)));
        EXPECT_EQ(badge.at(half + 2, 2).bytes[1], 0) << "outside the outline";
        EXPECT_EQ(badge.at(-half - 2, 2).bytes[1], 0);
        EXPECT_GT(saturation(badge.at(half - 3, 2)), 100);
        EXPECT_GT(saturation(badge.at(-half + 2.5, 2)), 100);
    }
}

TEST(DrawBadge, CentresTheInkToTheNearestPoint)
{
    for (const int scale : {1, 2}) {
        for (const char* text : {"1", "88", "y", "12345"}) {
            const CGRect ink = inkOf(text, 20);
            const Badge badge(text, 20, scale, opaque(0, 0, 0));
            // The bounds of the text, which is brighter than the sheen.
            CGFloat minX = 100, minY = 100, maxX = -100, maxY = -100;
            for (CGFloat y = -10; y < 10; y += 1.0 / scale) {
                for (CGFloat x = -ink.size.width / 2 - 2; x < ink.size.width / 2 + 2; x += 1.0 / scale) {
                    if (badge.at(x, y).bytes[0] < 180)
                        continue;
                    minX = std::min(minX, x);
                    maxX = std::max(maxX, x + 1.0 / scale);
                    minY = std::min(minY, y);
                    maxY = std::max(maxY, y + 1.0 / scale);
                }
            }
            // Half a point for rounding, and a faint pixel at each edge.
            EXPECT_NEAR((minX + maxX) / 2, 0, 0.5 + 1.0 / scale) << text;
            EXPECT_NEAR((minY + maxY) / 2, 0, 0.5 + 1.0 / scale) << text;
            EXPECT_NEAR(maxX - minX, ink.size.width, 2.5 / scale) << text;
        }
    }
}

// A digit is narrower than the badge, so a badge without text has the same size.
TEST(DrawBadge, MovesTheTextByWholePoints)
{
    for (const int scale : {1, 2}) {
        for (const char* text : {"1", "7", "y"}) {
            SCOPED_TRACE(testing::Message() << text << " at scale " << scale);
            const Badge badge(text, 20, scale);
            const Badge expected("", 20, scale);
            const CGRect ink = inkOf(text, 20);
            CGContextScaleCTM(expected.context(), scale, scale);
            CGContextTranslateCTM(
                expected.context(), -std::round(CGRectGetMidX(ink)), -std::round(CGRectGetMidY(ink)));
            CTLineDraw(makeLine(text, 20).get(), expected.context());
            for (int row = 0; row < badge.canvas().height(); ++row) {
                for (int column = 0; column < badge.canvas().width(); ++column)
                    ASSERT_EQ(badge.canvas().pixel(column, row), expected.canvas().pixel(column, row))
                        << "column " << column << ", row " << row;
            }
        }
    }
}

// At 40 points the badge is a square of 50, whose corners are arcs around (13, 13). The outline's outer edge
// crosses the diagonal at 13 + 13 / sqrt(2) = 22.19; it would at 22.49 for a radius of 11 and at 21.90
// for 13.
TEST(DrawBadge, HasCornersOfRadiusTwelve)
{
    const Badge badge("", 40, 8);
    EXPECT_EQ(badge.at(22, 22), rgba(255, 255, 255, 255));
    EXPECT_EQ(badge.at(22.25, 22.25).bytes[0], 0);
}

TEST(DrawBadge, DarkensTowardsTheLeastYAndBrightensTowardsTheGreatest)
{
    // The gradient, its alpha and the result are rounded to bytes.
    constexpr int kTolerance = 2;
    const Badge white("", 20, 1, opaque(1, 1, 1));
    for (const int y : {-13, -8, -1}) {
        const double alpha = 0.2 * (-y - 0.5) / 15;
        EXPECT_NEAR(white.at(0, y).bytes[0], 255 * (1 - alpha), kTolerance) << y;
    }
    const Badge black("", 20, 1, opaque(0, 0, 0));
    for (const int y : {0, 7, 12}) {
        const double alpha = 0.1 + 0.3 * (y + 0.5) / 15;
        EXPECT_NEAR(black.at(0, y).bytes[0], 255 * alpha, kTolerance) << y;
    }
}

TEST(DrawBadge, CastsAShadowOfItsFillAndNotOfItsOutline)
{
    for (const int scale : {1, 2}) {
        const Badge badge("7", 12, scale);
        const CGFloat pixel = 1.0 / scale;
        // The edge at -11 casts its shadow to -16, and the blur reaches 4 further.
        EXPECT_TRUE(isWhite(badge.at(0, -12)));
        EXPECT_GT(badge.at(0, -12 - pixel).bytes[3], 70);
        EXPECT_EQ(badge.at(0, -12 - pixel).bytes[0], 0);
        EXPECT_LE(badge.at(0, -12 - pixel).bytes[3], 85);
        EXPECT_GT(badge.at(0, -20).bytes[3], 0);
        EXPECT_EQ(badge.at(0, -20 - pixel).bytes[3], 0);
    }
}

TEST(DrawBadge, LeavesDeviceRGBWithBlackAndRestoresTheRest)
{
    Canvas canvas(40, 40);
    const CGContextRef context = canvas.context();
    CGContextTranslateCTM(context, 20, 20);
    CGContextSetTextPosition(context, 3, 4);
    CGContextSetLineWidth(context, 2);
    CGContextSetGrayFillColor(context, 1, 0.5);
    CGContextSetGrayStrokeColor(context, 1, 0.5);
    ZRDrawBadge(context, opaque(1, 0, 0).get(), "7", 12, 1);
    EXPECT_EQ(describe(CGContextGetCTM(context)), "1 0 0 1 20 20");
    EXPECT_EQ(describe(CGContextGetTextPosition(context)), "3 4");
    EXPECT_EQ(describe(CGContextGetClipBoundingBox(context)), "-20 -20 40 40");
    EXPECT_TRUE(CGContextIsPathEmpty(context));

    CGContextClearRect(context, CGRectMake(-20, -20, 40, 40));
    CGContextFillRect(context, CGRectMake(-20, 19, 1, 1));
    EXPECT_EQ(canvas.pixel(0, 0), rgba(0, 0, 0, 255));
    EXPECT_EQ(canvas.pixel(0, 1), rgba(0, 0, 0, 0)) << "no shadow";
    CGContextStrokeRect(context, CGRectMake(-18, 17, 2, 2));
    EXPECT_EQ(canvas.pixel(1, 1), rgba(0, 0, 0, 255));
    const CGFloat green[]{0, 1, 0, 1};
    CGContextSetFillColor(context, green);
    CGContextSetStrokeColor(context, green);
    CGContextFillRect(context, CGRectMake(-20, 19, 1, 1));
    EXPECT_EQ(canvas.pixel(0, 0), rgba(0, 255, 0, 255));

    const NSLogCapture log;
    CGContextRestoreGState(context);
    EXPECT_EQ(log.messages().size(), 1U) << "there is no saved state left";
}

TEST(DrawBadge, WithANullTextLogsAndLeavesTheScaledStateSaved)
{
    Canvas canvas(40, 40);
    const CGContextRef context = canvas.context();
    CGContextTranslateCTM(context, 20, 20);
    CGContextSetGrayFillColor(context, 1, 1);
    const NSLogCapture log;
    ZRDrawBadge(context, opaque(1, 0, 0).get(), NSString(), 12, 2);
    EXPECT_EQ(log.messages(), std::vector<std::string>{"ZRDrawBadge() failed"});
    EXPECT_EQ(canvas.alpha(20, 20), 0);
    EXPECT_EQ(describe(CGContextGetCTM(context)), "2 0 0 2 20 20");
    CGContextRestoreGState(context);
    EXPECT_EQ(log.messages().size(), 1U);
    EXPECT_EQ(describe(CGContextGetCTM(context)), "1 0 0 1 20 20");
    CGContextFillRect(context, CGRectMake(0, 0, 1, 1));
    EXPECT_EQ(canvas.pixel(20, 19), rgba(0, 0, 0, 255))
        << "the colour space was set before the state was saved";
    CGContextRestoreGState(context);
    EXPECT_EQ(log.messages().size(), 2U);
}

TEST(DrawBadge, DiscardsTheCurrentPath)
{
    Canvas canvas(40, 40);
    CGContextTranslateCTM(canvas.context(), 20, 20);
    CGContextAddRect(canvas.context(), CGRectMake(-20, 10, 4, 4));
    ZRDrawBadge(canvas.context(), opaque(1, 0, 0).get(), "7", 12, 1);
    EXPECT_EQ(canvas.alpha(1, 7), 0);
}

// The text then has 12 points, but the height is still the font size and 10.
TEST(DrawBadge, WithAFontSizeOfZeroOrLessIs10HigherThanThatAroundTextOf12Points)
{
    const CGFloat half = inkOf("12345", 12).size.width / 2 + 6;
    for (const CGFloat size : {0.0, -2.0}) {
        const Badge badge("12345", size);
        const CGFloat edge = (size + 10) / 2;
        EXPECT_TRUE(isWhite(badge.at(0, edge))) << size;
        EXPECT_EQ(badge.at(0, edge + 1).bytes[3], 0) << size;
        EXPECT_EQ(badge.at(0, -edge - 2).bytes[0], 0) << size << ": only the shadow";
        EXPECT_TRUE(isWhite(badge.at(half, 0))) << size;
        EXPECT_EQ(badge.at(half + 2, 0).bytes[1], 0) << size;
    }
}

TEST(DrawBadge, AtANegativeScaleIsUpsideDownWithoutABlur)
{
    Canvas canvas(60, 60);
    CGContextTranslateCTM(canvas.context(), 30, 30);
    ZRDrawBadge(canvas.context(), opaque(1, 0, 0).get(), "", 12, -1);
    EXPECT_GT(canvas.pixel(30, 38).bytes[1], 60) << "the sheen is below";
    // The edge at 11 casts its shadow to 16, without a blur.
    EXPECT_EQ(canvas.pixel(30, 15), rgba(0, 0, 0, 85));
    EXPECT_EQ(canvas.alpha(30, 13), 0);
    EXPECT_EQ(canvas.alpha(30, 43), 0);
}

TEST(DrawBadge, AcceptsInvalidArguments)
{
    const Badge twelve("7", 12);
    for (const CGFloat size : {kNaN, kInfinity, -kInfinity}) {
        const Badge badge("7", size);
        for (int i = 0; i < Badge::kPoints; ++i)
            EXPECT_EQ(badge.canvas().pixel(i, 55), twelve.canvas().pixel(i, 55)) << size;
    }
    const Badge empty("", 12);
    EXPECT_TRUE(isWhite(empty.at(0, 11)));
    EXPECT_GT(saturation(empty.at(0, 0)), 100);
    const Badge black("", 12, 1, nullptr);
    EXPECT_LT(black.at(0, -2).bytes[0], 10);
    EXPECT_EQ(black.at(0, -2).bytes[3], 255);

    const NSLogCapture log;
    for (const CGFloat scale : {0.0, kNaN, kInfinity}) {
        Canvas canvas(40, 40);
        CGContextTranslateCTM(canvas.context(), 20, 20);
        ZRDrawBadge(canvas.context(), opaque(1, 0, 0).get(), "7", 12, scale);
        for (int i = 0; i < 40; ++i)
            EXPECT_EQ(canvas.alpha(i, 19), 0) << scale;
        EXPECT_EQ(describe(CGContextGetCTM(canvas.context())), "1 0 0 1 20 20");
    }
    ZRDrawBadge(nullptr, opaque(1, 0, 0).get(), "7", 12, 1);
    EXPECT_TRUE(log.messages().empty());
}
