#include "support/Canvas.h"

#include <CoreGraphics/CoreGraphics.h>

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <utility>

namespace {

/// Slopes and curves are drawn in steps of a fifteenth of a pixel.
constexpr double kBevelTolerance = 0.5 / 15 + 0.001;

/// Strokes a line two pixels wide that comes from the left and turns down, at a scale of 2. Returns the alpha
/// of the pixel at the outer corner, the only one in which the joins differ.
template <class SetAttributes> double strokeCorner(SetAttributes setAttributes)
{
    Canvas canvas(5, 5);
    CGContextScaleCTM(canvas.context(), 2, 2);
    setAttributes(canvas.context());
    CGContextMoveToPoint(canvas.context(), 0, 1.5);
    CGContextAddLineToPoint(canvas.context(), 1.5, 1.5);
    CGContextAddLineToPoint(canvas.context(), 1.5, 0);
    CGContextStrokePath(canvas.context());
    const double corner = canvas.alpha(3, 1) / 255.0;
    canvas.setPixel(3, 1, rgba(0, 0, 0, 0));
    EXPECT_COVERAGE(canvas,
        "....."
        "###.."
        "####."
        "..##."
        "..##.");
    return corner;
}

double strokeCornerJoined(CGLineJoin join)
{
    return strokeCorner([join](CGContextRef context) { CGContextSetLineJoin(context, join); });
}

double strokeCornerLimited(CGFloat miterLimit)
{
    return strokeCorner([miterLimit](CGContextRef context) { CGContextSetMiterLimit(context, miterLimit); });
}

/// A right-angled corner in a user space sheared to the right by 45 degrees.
Canvas strokeLeaningCorner(CGFloat miterLimit)
{
    Canvas canvas(7, 4);
    CGContextConcatCTM(canvas.context(), CGAffineTransformMake(1, 0, 1, 1, 0, 0));
    CGContextSetLineWidth(canvas.context(), 2);
    CGContextSetMiterLimit(canvas.context(), miterLimit);
    CGContextMoveToPoint(canvas.context(), 0, 2);
    CGContextAddLineToPoint(canvas.context(), 2, 2);
    CGContextAddLineToPoint(canvas.context(), 2, 0);
    CGContextStrokePath(canvas.context());
    return canvas;
}

} // namespace

TEST(CGContextLineJoin, MiterIsTheDefaultAndFillsTheCorner)
{
    EXPECT_EQ(strokeCorner([](CGContextRef) {}), 1);
    EXPECT_EQ(strokeCorner([](CGContextRef context) {
        CGContextSetLineJoin(context, kCGLineJoinBevel);
        CGContextSetLineJoin(context, kCGLineJoinMiter);
    }),
        1);
}

TEST(CGContextLineJoin, BevelCutsTheCornerOff)
{
    EXPECT_NEAR(strokeCornerJoined(kCGLineJoinBevel), 0.5, kBevelTolerance);
}

TEST(CGContextLineJoin, RoundAddsAQuarterOfADisc)
{
    EXPECT_NEAR(strokeCornerJoined(kCGLineJoinRound), std::numbers::pi / 4, kBevelTolerance);
}

TEST(CGContextLineJoin, ARectanglesCornersAreJoinedToo)
{
    const auto cornersOf = [](CGLineJoin join) {
        Canvas canvas(6, 6);
        CGContextScaleCTM(canvas.context(), 2, 2);
        CGContextSetLineJoin(canvas.context(), join);
        CGContextStrokeRectWithWidth(canvas.context(), CGRectMake(1, 1, 1, 1), 1);
        double sum = 0;
        for (const auto& [column, row] : {std::pair{1, 1}, {1, 4}, {4, 1}, {4, 4}}) {
            sum += canvas.alpha(column, row) / 255.0;
            canvas.setPixel(column, row, rgba(0, 0, 0, 0));
        }
        EXPECT_COVERAGE(canvas,
            "......"
            "..##.."
            ".####."
            ".####."
            "..##.."
            "......");
        return sum;
    };
    EXPECT_EQ(cornersOf(kCGLineJoinMiter), 4);
    EXPECT_NEAR(cornersOf(kCGLineJoinBevel), 2, 4 * kBevelTolerance);
    EXPECT_NEAR(cornersOf(kCGLineJoinRound), std::numbers::pi, 4 * kBevelTolerance);
}

// The miter of a right angle is √2 line widths long.
TEST(CGContextMiterLimit, CutsOffLongerMiters)
{
    for (const double limit : {1.42, 10.0})
        EXPECT_EQ(strokeCornerLimited(limit), 1) << limit;
    for (const double limit : {1.41, 1.0, 0.5, -3.0, std::nan("")})
        EXPECT_NEAR(strokeCornerLimited(limit), 0.5, kBevelTolerance) << limit;
}

TEST(CGContextMiterLimit, MeasuresTheAngleInDeviceSpace)
{
    // In device space the angle is 45 degrees, whose miter is 2.61 line widths long.
    EXPECT_COVERAGE(strokeLeaningCorner(2.62),
        "......."
        "..+##+."
        ".+##+.."
        ".+#+...");
    EXPECT_COVERAGE(strokeLeaningCorner(2.6),
        "......."
        "..+##.."
        ".+##+.."
        ".+#+...");
}

namespace {

/// Strokes a sharp angle that the transform stretches to a right angle. In user space its miter is 4.1 line
/// widths long, more than the limit; in device space it ends two pixels above (3, 3).
void strokeStretchedAngle(CGContextRef context)
{
    CGContextScaleCTM(context, 4, 1);
    CGContextSetLineWidth(context, 4 / std::sqrt(17));
    CGContextSetMiterLimit(context, 1.5);
    CGContextMoveToPoint(context, -2.25, -9);
    CGContextAddLineToPoint(context, 0.75, 3);
    CGContextAddLineToPoint(context, 3.75, -9);
    CGContextStrokePath(context);
}

/// The topmost pixels of the angle, left of its middle, by row.
void expectTip(const Canvas& canvas, int firstRow)
{
    for (int row = 0; row < firstRow; ++row)
        EXPECT_EQ(canvas.alpha(2, row), 0) << row;
    if (firstRow == 1) {
        EXPECT_NEAR(canvas.alpha(2, 1) / 255.0, 0.5, kBevelTolerance);
    }
    EXPECT_EQ(canvas.alpha(2, 2), 255);
    EXPECT_EQ(canvas.alpha(2, 3), 255);
}

} // namespace

TEST(CGContextMiterLimit, DoesNotCutAMiterThatIsShortInDeviceSpace)
{
    for (const CGBlendMode mode : {kCGBlendModeNormal, kCGBlendModePlusLighter}) {
        Canvas canvas(6, 6);
        CGContextSetBlendMode(canvas.context(), mode);
        strokeStretchedAngle(canvas.context());
        expectTip(canvas, 1);
    }
}

TEST(CGContextMiterLimit, ClipsMiters)
{
    Canvas canvas(6, 6);
    CGContextClipToRect(canvas.context(), CGRectMake(0, 0, 6, 4));
    strokeStretchedAngle(canvas.context());
    expectTip(canvas, 2);
}

namespace {

/// A square with a square hole, filled red and stroked blue, at a scale of 2.
Canvas paintSquareWithHole(CGPathDrawingMode mode)
{
    Canvas canvas(9, 9);
    const CGContextRef context = canvas.context();
    CGContextScaleCTM(context, 2, 2);
    CGContextSetRGBFillColor(context, 1, 0, 0, 1);
    CGContextSetRGBStrokeColor(context, 0, 0, 1, 1);
    CGContextSetLineWidth(context, 0.5);
    CGContextAddRect(context, CGRectMake(0.25, 0.25, 4, 4));
    CGContextAddRect(context, CGRectMake(1.25, 1.25, 2, 2));
    CGContextDrawPath(context, mode);
    return canvas;
}

} // namespace

TEST(CGContextDrawPath, EvenOddFillAndStrokeLeavesTheHoleAndStrokesItsEdge)
{
    const Canvas canvas = paintSquareWithHole(kCGPathEOFillStroke);
    EXPECT_COVERAGE(canvas,
        "#########"
        "#########"
        "#########"
        "###...###"
        "###...###"
        "###...###"
        "#########"
        "#########"
        "#########");
    for (int i = 0; i < 9; ++i)
        EXPECT_EQ(canvas.pixel(i, 0), kBlue) << i;
    for (int i = 1; i < 8; ++i)
        EXPECT_EQ(canvas.pixel(i, 1), kRed) << i;
    for (int i = 2; i < 7; ++i)
        EXPECT_EQ(canvas.pixel(i, 2), kBlue) << i;
}

TEST(CGContextDrawPath, WindingFillAndStrokeFillsTheHole)
{
    const Canvas canvas = paintSquareWithHole(kCGPathFillStroke);
    EXPECT_EQ(canvas.pixel(0, 4), kBlue);
    EXPECT_EQ(canvas.pixel(1, 4), kRed);
    EXPECT_EQ(canvas.pixel(2, 4), kBlue);
    EXPECT_EQ(canvas.pixel(4, 4), kRed);
}
