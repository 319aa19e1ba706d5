// The outline of a stroke covers the same as the stroke: both are drawn and compared.

#include "support/Canvas.h"
#include "support/Describe.h"

#include <CoreGraphics/CoreGraphics.h>

#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <vector>

namespace {

constexpr int kSize = 48;

/// Shapes are drawn this much larger and averaged, so that parts of a pixel show.
constexpr int kPixels = 8;
/// Of 255.
constexpr double kCoverageTolerance = 2;

struct StrokeCase {
    const char* name;
    std::function<void(CGContextRef)> setAttributes;
    std::function<void(CGContextRef)> addPath;
};

void addZigzag(CGContextRef context)
{
    CGContextMoveToPoint(context, 6.3, 8.1);
    CGContextAddLineToPoint(context, 20.2, 39.7);
    CGContextAddLineToPoint(context, 25.8, 11.3);
    CGContextAddLineToPoint(context, 41.4, 36.9);
}

void addStar(CGContextRef context)
{
    CGContextMoveToPoint(context, 10.1, 6.2);
    CGContextAddLineToPoint(context, 24.3, 42.4);
    CGContextAddLineToPoint(context, 38.2, 7.5);
    CGContextAddLineToPoint(context, 5.6, 29.8);
    CGContextAddLineToPoint(context, 42.7, 27.1);
    CGContextClosePath(context);
}

void addWave(CGContextRef context)
{
    CGContextMoveToPoint(context, 6, 20);
    CGContextAddCurveToPoint(context, 12, 55, 28, -15, 41, 33);
}

void addTightCurve(CGContextRef context)
{
    CGContextMoveToPoint(context, 12, 10);
    CGContextAddCurveToPoint(context, 60, 40, -12, 40, 36, 11);
}

void addQuadCurve(CGContextRef context)
{
    CGContextMoveToPoint(context, 8, 12);
    CGContextAddQuadCurveToPoint(context, 26, 60, 40, 9);
    CGContextAddLineToPoint(context, 31, 6);
    CGContextClosePath(context);
}

void addEllipse(CGContextRef context)
{
    CGContextAddEllipseInRect(context, CGRectMake(9.3, 12.2, 28, 21));
}

auto line(CGFloat width, CGLineCap cap, CGLineJoin join)
{
    return [=](CGContextRef context) {
        CGContextSetLineWidth(context, width);
        CGContextSetLineCap(context, cap);
        CGContextSetLineJoin(context, join);
    };
}

auto dashed(std::vector<CGFloat> lengths, CGFloat phase, CGLineCap cap)
{
    return [=](CGContextRef context) {
        CGContextSetLineWidth(context, 3);
        CGContextSetLineCap(context, cap);
        CGContextSetLineDash(context, phase, lengths.data(), lengths.size());
    };
}

void scaleUnevenly(CGContextRef context)
{
    CGContextConcatCTM(context, CGAffineTransformMake(1.6, 0.3, -0.2, 0.5, 3, 8));
    CGContextSetLineWidth(context, 6);
    CGContextSetMiterLimit(context, 3);
}

const StrokeCase kCases[]{
    {"zigzag, butt, miter", line(5, kCGLineCapButt, kCGLineJoinMiter), addZigzag},
    {"zigzag, square, bevel", line(5, kCGLineCapSquare, kCGLineJoinBevel), addZigzag},
    {"zigzag, round", line(5, kCGLineCapRound, kCGLineJoinRound), addZigzag},
    {"star, miter", line(3.3, kCGLineCapButt, kCGLineJoinMiter), addStar},
    {"star, round", line(9, kCGLineCapButt, kCGLineJoinRound), addStar},
    {"hairline wave", line(0.7, kCGLineCapButt, kCGLineJoinMiter), addWave},
    {"wide wave, square", line(8, kCGLineCapSquare, kCGLineJoinMiter), addWave},
    {"tight curve, round", line(7, kCGLineCapRound, kCGLineJoinRound), addTightCurve},
    {"quadratic curve, closed", line(4, kCGLineCapButt, kCGLineJoinMiter), addQuadCurve},
    {"ellipse", line(3, kCGLineCapButt, kCGLineJoinMiter), addEllipse},
    {"wide ellipse", line(14, kCGLineCapButt, kCGLineJoinMiter), addEllipse},
    {"dashed wave", dashed({6, 4}, 0, kCGLineCapButt), addWave},
    {"dashed star", dashed({7, 3, 2}, 4, kCGLineCapButt), addStar},
    {"dashed star, round", dashed({5, 6}, -2, kCGLineCapRound), addStar},
    {"dots", dashed({0, 6}, 0, kCGLineCapRound), addZigzag},
    {"square dots", dashed({0, 7}, 1, kCGLineCapSquare), addZigzag},
    {"uneven scale, star", scaleUnevenly,
        [](CGContextRef context) {
            CGContextMoveToPoint(context, 2, 4);
            CGContextAddLineToPoint(context, 24, 30);
            CGContextAddLineToPoint(context, 18, 2);
            CGContextClosePath(context);
        }},
    {"uneven scale, round",
        [](CGContextRef context) {
            scaleUnevenly(context);
            CGContextSetLineCap(context, kCGLineCapRound);
        },
        [](CGContextRef context) {
            CGContextMoveToPoint(context, 6, 8);
            CGContextAddCurveToPoint(context, 10, 60, 14, -10, 22, 40);
        }},
    {"sharp corner beyond the limit", line(3, kCGLineCapButt, kCGLineJoinMiter),
        [](CGContextRef context) {
            CGContextMoveToPoint(context, 6.2, 20.3);
            CGContextAddLineToPoint(context, 40.4, 24.1);
            CGContextAddLineToPoint(context, 6.6, 25.2);
        }},
    {"there and back", line(6, kCGLineCapButt, kCGLineJoinRound),
        [](CGContextRef context) {
            CGContextMoveToPoint(context, 10, 13);
            CGContextAddLineToPoint(context, 35, 31);
            CGContextAddLineToPoint(context, 10, 13);
        }},
    {"dot", line(9, kCGLineCapRound, kCGLineJoinMiter),
        [](CGContextRef context) {
            CGContextMoveToPoint(context, 20.3, 22.7);
            CGContextAddLineToPoint(context, 20.3, 22.7);
        }},
    {"closed dot", line(9, kCGLineCapRound, kCGLineJoinMiter),
        [](CGContextRef context) {
            CGContextMoveToPoint(context, 20.3, 22.7);
            CGContextClosePath(context);
        }},
    {"point with square caps", line(9, kCGLineCapSquare, kCGLineJoinMiter),
        [](CGContextRef context) {
            CGContextMoveToPoint(context, 20.3, 22.7);
            CGContextAddLineToPoint(context, 20.3, 22.7);
        }},
    {"move alone", line(9, kCGLineCapRound, kCGLineJoinMiter),
        [](CGContextRef context) { CGContextMoveToPoint(context, 20, 20); }},
    {"line after a close", line(4, kCGLineCapRound, kCGLineJoinRound),
        [](CGContextRef context) {
            addStar(context);
            CGContextAddLineToPoint(context, 4, 44);
        }},
    {"rectangles", line(3, kCGLineCapButt, kCGLineJoinMiter),
        [](CGContextRef context) {
            CGContextAddRect(context, CGRectMake(5.5, 6.5, 20, 15));
            CGContextAddRect(context, CGRectMake(15.25, 12.5, 20.5, 25));
        }},
};

Canvas draw(const StrokeCase& tested, const std::function<void(CGContextRef)>& paint)
{
    Canvas canvas(kSize * kPixels, kSize * kPixels);
    CGContextScaleCTM(canvas.context(), kPixels, kPixels);
    tested.setAttributes(canvas.context());
    tested.addPath(canvas.context());
    paint(canvas.context());
    return canvas;
}

void fillOutline(CGContextRef context)
{
    CGContextReplacePathWithStrokedPath(context);
    CGContextFillPath(context);
}

/// The mean of the alpha of kPixels x kPixels pixels.
double meanAlpha(const Canvas& canvas, int column, int row)
{
    int sum = 0;
    for (int y = 0; y < kPixels; ++y) {
        for (int x = 0; x < kPixels; ++x)
            sum += canvas.alpha(column * kPixels + x, row * kPixels + y);
    }
    return double(sum) / (kPixels * kPixels);
}

double greatestDifference(const Canvas& one, const Canvas& other)
{
    double most = 0;
    for (int row = 0; row < kSize; ++row) {
        for (int column = 0; column < kSize; ++column)
            most = std::max(most, std::abs(meanAlpha(one, column, row) - meanAlpha(other, column, row)));
    }
    return most;
}

RetainPtr<const CGPath> linePath(std::initializer_list<CGPoint> points, bool isClosed = false)
{
    auto path = adopt(CGPathCreateMutable());
    CGPathAddLines(path, nullptr, points.begin(), points.size());
    if (isClosed)
        CGPathCloseSubpath(path);
    return path;
}

} // namespace

TEST(CGContextReplacePathWithStrokedPath, CoversWhatTheStrokeCovers)
{
    for (const StrokeCase& tested : kCases) {
        SCOPED_TRACE(tested.name);
        EXPECT_LE(greatestDifference(draw(tested, CGContextStrokePath), draw(tested, fillOutline)),
            kCoverageTolerance);
    }
}

TEST(CGContextReplacePathWithStrokedPath, MakesAStrokeAClip)
{
    Canvas canvas(5, 5);
    CGContextSetLineWidth(canvas.context(), 2);
    CGContextAddRect(canvas.context(), CGRectMake(1, 1, 3, 3));
    CGContextReplacePathWithStrokedPath(canvas.context());
    CGContextClip(canvas.context());
    CGContextFillRect(canvas.context(), CGRectMake(0, 0, 5, 5));
    EXPECT_COVERAGE(canvas,
        "#####"
        "#####"
        "##.##"
        "#####"
        "#####");
}

TEST(CGContextReplacePathWithStrokedPath, AClosedCurveNarrowerThanTheLineHasNoHole)
{
    Canvas canvas(kSize, kSize);
    CGContextSetLineWidth(canvas.context(), 30);
    CGContextAddEllipseInRect(canvas.context(), CGRectMake(15, 16, 18, 14));
    CGContextReplacePathWithStrokedPath(canvas.context());
    CGContextFillPath(canvas.context());
    for (int y = 16; y < 32; ++y) {
        for (int x = 16; x < 32; ++x)
            EXPECT_EQ(canvas.alpha(x, y), 255) << x << ", " << y;
    }
}

TEST(CGContextReplacePathWithStrokedPath, ACuspIsRound)
{
    // The curve runs up to (20, 17.5), where it turns back.
    Canvas canvas(40, 40);
    CGContextMoveToPoint(canvas.context(), 5, 10);
    CGContextAddCurveToPoint(canvas.context(), 35, 20, 5, 20, 35, 10);
    CGContextSetLineWidth(canvas.context(), 10);
    CGContextReplacePathWithStrokedPath(canvas.context());
    EXPECT_NEAR(CGRectGetMaxY(CGContextGetPathBoundingBox(canvas.context())), 22.5, 0.02);
}

TEST(CGContextReplacePathWithStrokedPath, WithoutAPenLeavesAnEmptyPath)
{
    Canvas canvas(4, 4);
    const auto replace = [&](const std::function<void()>& prepare) {
        CGContextSaveGState(canvas.context());
        CGContextAddRect(canvas.context(), CGRectMake(1, 1, 2, 2));
        prepare();
        CGContextReplacePathWithStrokedPath(canvas.context());
        CGContextRestoreGState(canvas.context());
        return CGContextIsPathEmpty(canvas.context());
    };
    EXPECT_TRUE(replace([&] { CGContextSetLineWidth(canvas.context(), 0); }));
    EXPECT_TRUE(replace([&] { CGContextScaleCTM(canvas.context(), 0, 1); }));
    EXPECT_TRUE(replace([&] { CGContextBeginPath(canvas.context()); }));
    EXPECT_FALSE(replace([] {}));
    CGContextReplacePathWithStrokedPath(nullptr);
}

TEST(CGPathCreateCopyByStrokingPath, FollowsTheSidesAndTheCaps)
{
    const auto line = linePath({{0, 0}, {10, 0}});
    const auto stroked = [&](CGLineCap cap) {
        return adopt(CGPathCreateCopyByStrokingPath(line, nullptr, 4, cap, kCGLineJoinMiter, 10));
    };
    EXPECT_EQ(describe(stroked(kCGLineCapButt)), "M 0 -2 L 10 -2 L 10 2 L 0 2 Z");
    EXPECT_EQ(
        describe(stroked(kCGLineCapSquare)), "M 0 -2 L 10 -2 L 12 -2 L 12 2 L 10 2 L 0 2 L -2 2 L -2 -2 Z");
    constexpr double rounding = 1e-12; // of the points of arcs, each of which is the last one, turned
    const CGRect round = CGPathGetBoundingBox(stroked(kCGLineCapRound).get());
    EXPECT_NEAR(CGRectGetMinX(round), -2, rounding);
    EXPECT_NEAR(CGRectGetMaxX(round), 12, rounding);
    EXPECT_EQ(CGRectGetMinY(round), -2);
    EXPECT_EQ(CGRectGetMaxY(round), 2);
}

TEST(CGPathCreateCopyByStrokingPath, JoinsWithinTheMiterLimit)
{
    const auto corner = linePath({{0, 0}, {10, 0}, {10, 10}});
    const auto farthest = [&](CGLineJoin join, CGFloat limit) {
        const auto outline =
            adopt(CGPathCreateCopyByStrokingPath(corner, nullptr, 4, kCGLineCapButt, join, limit));
        return CGPathContainsPoint(outline, nullptr, CGPointMake(11.9, -1.9), false) ? "miter"
            : CGPathContainsPoint(outline, nullptr, CGPointMake(11.3, -1.3), false)  ? "round"
            : CGPathContainsPoint(outline, nullptr, CGPointMake(10.9, -0.9), false)  ? "bevel"
                                                                                     : "none";
    };
    EXPECT_STREQ(farthest(kCGLineJoinMiter, 1.42), "miter"); // the ratio of a right angle is 1.414
    EXPECT_STREQ(farthest(kCGLineJoinMiter, 1.41), "bevel");
    EXPECT_STREQ(farthest(kCGLineJoinMiter, std::numeric_limits<CGFloat>::quiet_NaN()), "bevel");
    EXPECT_STREQ(farthest(kCGLineJoinRound, 10), "round");
    EXPECT_STREQ(farthest(kCGLineJoinBevel, 10), "bevel");
}

TEST(CGPathCreateCopyByStrokingPath, MapsTheOutlineByTheTransform)
{
    const CGAffineTransform transform = CGAffineTransformMake(2, 0, 0, 1, 3, 5);
    const auto line = linePath({{0, 0}, {10, 0}});
    const auto outline =
        adopt(CGPathCreateCopyByStrokingPath(line, &transform, 4, kCGLineCapButt, kCGLineJoinMiter, 10));
    EXPECT_EQ(describe(outline), "M 3 3 L 23 3 L 23 7 L 3 7 Z");
}

TEST(CGPathCreateCopyByStrokingPath, IsExactAtTheScaleOfTheTransform)
{
    const CGAffineTransform large = CGAffineTransformMakeScale(1000, 1000);
    const auto circle = adopt(CGPathCreateWithEllipseInRect(CGRectMake(-1, -1, 2, 2), nullptr));
    const auto outline =
        adopt(CGPathCreateCopyByStrokingPath(circle, &large, 1, kCGLineCapButt, kCGLineJoinMiter, 10));
    // Cubic curves leave a circle by 2.7 of 10,000 of its radius at most; the outer radius is 1500.
    for (double angle = 0; angle < 6.3; angle += 0.01) {
        const auto contains = [&](double radius) {
            return CGPathContainsPoint(
                outline, nullptr, CGPointMake(radius * std::cos(angle), radius * std::sin(angle)), false);
        };
        EXPECT_TRUE(contains(1499.97) && contains(500.4)) << angle;
        EXPECT_FALSE(contains(1500.45) || contains(499.97)) << angle;
    }
}

TEST(CGPathCreateCopyByStrokingPath, InvalidValuesGiveAnEmptyPathOrTheDefault)
{
    const auto line = linePath({{0, 0}, {10, 0}});
    for (const CGFloat width :
        {0.0, -1.0, std::numeric_limits<CGFloat>::quiet_NaN(), std::numeric_limits<CGFloat>::infinity()}) {
        const auto outline =
            adopt(CGPathCreateCopyByStrokingPath(line, nullptr, width, kCGLineCapButt, kCGLineJoinMiter, 10));
        EXPECT_TRUE(outline && CGPathIsEmpty(outline)) << width;
    }
    EXPECT_EQ(
        CGPathCreateCopyByStrokingPath(nullptr, nullptr, 1, kCGLineCapButt, kCGLineJoinMiter, 10), nullptr);
    const auto outline = adopt(CGPathCreateCopyByStrokingPath(
        line, nullptr, 4, static_cast<CGLineCap>(7), static_cast<CGLineJoin>(-1), 10));
    EXPECT_EQ(describe(outline), "M 0 -2 L 10 -2 L 10 2 L 0 2 Z");
}

// Half of this width is 0.
TEST(CGPathCreateCopyByStrokingPath, ThePenMayBeTooSmallForARadius)
{
    const auto line = linePath({{0, 0}, {10, 0}, {10, 10}});
    const auto outline = adopt(CGPathCreateCopyByStrokingPath(
        line, nullptr, std::numeric_limits<CGFloat>::denorm_min(), kCGLineCapRound, kCGLineJoinRound, 10));
    EXPECT_EQ(describe(CGPathGetBoundingBox(outline)), "0 0 10 10");
}

TEST(CGPathCreateCopyByDashingPath, CutsLinesAtTheDashes)
{
    const CGFloat dashes[]{4, 2};
    const auto corner = linePath({{0, 0}, {8, 0}, {8, 10}});
    EXPECT_EQ(describe(adopt(CGPathCreateCopyByDashingPath(corner, nullptr, 0, dashes, 2))),
        "M 0 0 L 4 0 M 6 0 L 8 0 L 8 2 M 8 4 L 8 8");
    EXPECT_EQ(describe(adopt(CGPathCreateCopyByDashingPath(corner, nullptr, 3, dashes, 2))),
        "M 0 0 L 1 0 M 3 0 L 7 0 M 8 1 L 8 5 M 8 7 L 8 10");
    const CGAffineTransform move = CGAffineTransformMakeTranslation(1, 2);
    EXPECT_EQ(describe(adopt(CGPathCreateCopyByDashingPath(corner, &move, -1, dashes, 1))),
        "M 2 2 L 6 2 M 9 3 L 9 7 M 9 11 L 9 12");
}

TEST(CGPathCreateCopyByDashingPath, ADashGoesOnThroughTheStartOfAClosedSubpath)
{
    const CGFloat dashes[]{4, 2};
    const auto square = linePath({{0, 0}, {5, 0}, {5, 5}, {0, 5}}, true);
    EXPECT_EQ(describe(adopt(CGPathCreateCopyByDashingPath(square, nullptr, 0, dashes, 2))),
        "M 5 1 L 5 5 M 3 5 L 0 5 L 0 4 M 0 2 L 0 0 L 4 0");
    const CGFloat longer[]{30, 2};
    EXPECT_EQ(describe(adopt(CGPathCreateCopyByDashingPath(square, nullptr, 0, longer, 2))),
        "M 0 0 L 5 0 L 5 5 L 0 5 L 0 0 Z");
}

TEST(CGPathCreateCopyByDashingPath, CutsCurvesByTheirLength)
{
    // A quarter of a circle, and dashes of a quarter of its length.
    auto arc = adopt(CGPathCreateMutable());
    CGPathAddArc(arc, nullptr, 0, 0, 100, 0, std::numbers::pi / 2, false);
    const CGFloat quarter = 100 * std::numbers::pi / 8;
    const auto dashes = adopt(CGPathCreateCopyByDashingPath(arc, nullptr, 0, &quarter, 1));
    std::vector<CGPoint> ends;
    CGPathApply(dashes, &ends, [](void* info, const CGPathElement* element) {
        const bool isCurve = element->type == kCGPathElementAddCurveToPoint;
        static_cast<std::vector<CGPoint>*>(info)->push_back(element->points[isCurve ? 2 : 0]);
    });
    ASSERT_GE(ends.size(), 4U);
    for (std::size_t i = 0; i < 4; ++i) {
        const double angle = std::numbers::pi / 8 * double(i);
        EXPECT_NEAR(ends[i].x, 100 * std::cos(angle), 0.03) << i;
        EXPECT_NEAR(ends[i].y, 100 * std::sin(angle), 0.03) << i;
    }
}

TEST(CGPathCreateCopyByDashingPath, AnInvalidPatternGivesACopy)
{
    const auto line = linePath({{0, 0}, {8, 0}});
    const CGFloat negative[]{4, -2};
    const CGFloat zeros[]{0, 0};
    const CGFloat tiny[]{1e-5};
    for (const CGFloat* dashes : {negative, zeros, static_cast<const CGFloat*>(nullptr)})
        EXPECT_EQ(describe(adopt(CGPathCreateCopyByDashingPath(line, nullptr, 0, dashes, 2))), "M 0 0 L 8 0");
    EXPECT_EQ(describe(adopt(CGPathCreateCopyByDashingPath(line, nullptr, 0, tiny, 1))), "M 0 0 L 8 0");
    EXPECT_EQ(CGPathCreateCopyByDashingPath(nullptr, nullptr, 0, tiny, 1), nullptr);
}
