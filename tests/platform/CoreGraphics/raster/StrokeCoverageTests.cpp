// Coverage of strokes, compared with the union of their parts: strips along the lines, wedges, discs and
// caps, with 256 samples a row that are exact along it.

#include "ConvexUnion.h"

#include <CoreGraphics/CoreGraphics.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <concepts>
#include <numbers>
#include <random>
#include <vector>

namespace {

/// Of 255: half a step of rounding, and as much for samples of slanted edges.
constexpr double kMostOfLines = 1;
/// Where curves or arcs become lines.
constexpr double kMostOfCurves = 6;

struct StrokedLine {
    double width = 3;
    CGLineCap cap = kCGLineCapButt;
    CGLineJoin join = kCGLineJoinMiter;
    double miterLimit = 10;
};

void addJoin(ConvexUnion& truth, CGPoint before, CGPoint corner, CGPoint after, const StrokedLine& line)
{
    const double radius = line.width / 2;
    const CGPoint in = (corner - before) * (1 / lengthOf(corner - before));
    const CGPoint out = (after - corner) * (1 / lengthOf(after - corner));
    if (line.join == kCGLineJoinRound)
        return truth.addDisc(corner, radius);
    const double side = in.x * out.y - in.y * out.x > 0 ? radius : -radius; // the outer one is the right one
    const CGPoint a = corner + CGPoint{in.y, -in.x} * side;
    const CGPoint b = corner + CGPoint{out.y, -out.x} * side;
    const CGPoint middle = a + b - corner * 2;
    const double half = lengthOf(middle) / 2; // the cosine of half the turn, times the radius
    if (line.join == kCGLineJoinMiter && radius <= line.miterLimit * half)
        truth.add({corner, a, corner + middle * (radius * radius / (2 * half * half)), b});
    else
        truth.add({corner, a, b});
}

/// The parts of a line through points.
void addPolyline(
    ConvexUnion& truth, const std::vector<CGPoint>& points, bool isClosed, const StrokedLine& line)
{
    const double radius = line.width / 2;
    const std::size_t count = points.size();
    for (std::size_t i = 0; i + (isClosed ? 0 : 1) < count; ++i) {
        const bool isFirst = !isClosed && i == 0;
        const bool isLast = !isClosed && i + 2 == count;
        const double cap = line.cap == kCGLineCapSquare ? radius : 0;
        truth.addStrip(points[i], points[(i + 1) % count], radius, isFirst ? cap : 0, isLast ? cap : 0);
        if (!isLast)
            addJoin(truth, points[i], points[(i + 1) % count], points[(i + 2) % count], line);
    }
    if (!isClosed && line.cap == kCGLineCapRound) {
        truth.addDisc(points.front(), radius);
        truth.addDisc(points.back(), radius);
    }
}

using StrokedCurve = std::array<CGPoint, 4>;

CGPoint pointOfCurve(const StrokedCurve& c, double t)
{
    const double s = 1 - t;
    return c[0] * (s * s * s) + c[1] * (3 * s * s * t) + c[2] * (3 * s * t * t) + c[3] * (t * t * t);
}

/// The strips along many lines in place of a curve, and the sectors of discs that join them.
void addCurve(ConvexUnion& truth, const StrokedCurve& curve, double width)
{
    constexpr int kParts = 1200;
    constexpr double kStep = 0.05;
    const double radius = width / 2;
    for (int i = 0; i < kParts; ++i) {
        const CGPoint from = pointOfCurve(curve, double(i) / kParts);
        const CGPoint to = pointOfCurve(curve, double(i + 1) / kParts);
        truth.addStrip(from, to, radius);
        if (i + 1 == kParts)
            break;
        const CGPoint next = pointOfCurve(curve, double(i + 2) / kParts);
        const double angle = std::atan2(to.y - from.y, to.x - from.x);
        const double turn =
            std::remainder(std::atan2(next.y - to.y, next.x - to.x) - angle, 2 * std::numbers::pi);
        const double side = turn > 0 ? angle - std::numbers::pi / 2 : angle + std::numbers::pi / 2;
        const int steps = 1 + int(std::abs(turn) / kStep);
        for (int step = 0; step < steps; ++step) {
            const auto corner = [&](int number) {
                const double direction = side + turn * number / steps;
                return to + CGPoint{radius * std::cos(direction), radius * std::sin(direction)};
            };
            truth.add({to, corner(step), corner(step + 1)});
        }
    }
}

RetainPtr<CGContext> makeStrokeContext()
{
    return adopt(CGBitmapContextCreate(
        nullptr, kBitmapWidth, kBitmapHeight, 8, kBitmapWidth, nullptr, kCGImageAlphaOnly));
}

void setLine(CGContextRef context, const StrokedLine& line)
{
    CGContextSetLineWidth(context, line.width);
    CGContextSetLineCap(context, line.cap);
    CGContextSetLineJoin(context, line.join);
    CGContextSetMiterLimit(context, line.miterLimit);
}

double worstErrorOfPolyline(const std::vector<CGPoint>& points, bool isClosed, const StrokedLine& line,
    const CGAffineTransform& transform = CGAffineTransformIdentity)
{
    const auto context = makeStrokeContext();
    CGContextConcatCTM(context, transform);
    setLine(context, line);
    CGContextAddLines(context, points.data(), points.size());
    if (isClosed)
        CGContextClosePath(context);
    CGContextStrokePath(context);
    ConvexUnion truth(transform);
    addPolyline(truth, points, isClosed, line);
    return truth.worstError(context);
}

/// On samples, so that sampling is exact for level edges.
double nearBitmap(std::mt19937& random, int side)
{
    return std::round(double(random() % unsigned(100 * (side + 12))) / 100 * kSamplesPerRow) / kSamplesPerRow
        - 6;
}

std::vector<CGPoint> randomPoints(std::mt19937& random)
{
    std::vector<CGPoint> points(3 + random() % 5);
    for (CGPoint& point : points)
        point = {nearBitmap(random, kBitmapWidth), nearBitmap(random, kBitmapHeight)};
    return points;
}

double worstErrorOfRandomLines(const StrokedLine& line)
{
    std::mt19937 random(3);
    double worst = 0;
    for (int run = 0; run < 12; ++run) {
        for (const double width : {0.66, 3.0, 9.5}) {
            StrokedLine wide = line;
            wide.width = width;
            worst = std::max(worst, worstErrorOfPolyline(randomPoints(random), run % 2 == 0, wide));
        }
    }
    return worst;
}

TEST(StrokeCoverage, MitredLinesAreExact)
{
    EXPECT_LE(worstErrorOfRandomLines({.cap = kCGLineCapButt, .join = kCGLineJoinMiter}), kMostOfLines);
    EXPECT_LE(worstErrorOfRandomLines({.cap = kCGLineCapSquare, .join = kCGLineJoinMiter, .miterLimit = 1.5}),
        kMostOfLines);
}

TEST(StrokeCoverage, BevelledLinesAreExact)
{
    EXPECT_LE(worstErrorOfRandomLines({.cap = kCGLineCapSquare, .join = kCGLineJoinBevel}), kMostOfLines);
}

TEST(StrokeCoverage, RoundJoinsAndCapsDifferByLittleFromDiscs)
{
    EXPECT_LE(worstErrorOfRandomLines({.cap = kCGLineCapRound, .join = kCGLineJoinRound}), kMostOfCurves);
}

TEST(StrokeCoverage, ConvexLinesAreExact)
{
    std::mt19937 random(5);
    for (int run = 0; run < 20; ++run) {
        // Corners on an ellipse, within the bitmap or beyond a side, in one direction or the other.
        std::vector<double> angles(3 + std::size_t(run) % 6);
        for (double& angle : angles)
            angle = 2 * std::numbers::pi * double(random() % 1000) / 1000;
        std::ranges::sort(angles);
        std::vector<CGPoint> points;
        for (const double angle : angles) {
            const double turn = run % 2 == 0 ? angle : -angle;
            points.push_back(
                {(run % 3 == 0 ? 33.1 : 20.3) + 15 * std::cos(turn), 14.8 + 10 * std::sin(turn)});
        }
        for (const double width : {0.66, 2.0}) {
            EXPECT_LE(worstErrorOfPolyline(points, true, {.width = width, .miterLimit = 3}), kMostOfLines)
                << run;
        }
    }
}

TEST(StrokeCoverage, SmallClosedLinesHaveNoHoles)
{
    // Smaller than the line is wide, with its corners nearer to each other than its inner sides.
    for (const double side : {0.5, 2.0, 5.0, 8.0, 11.0, 14.0}) {
        for (const CGLineJoin join : {kCGLineJoinMiter, kCGLineJoinBevel}) {
            const std::vector<CGPoint> triangle{{18, 12}, {18 + side, 12.5}, {18.5 + side / 2, 12 + side}};
            EXPECT_LE(worstErrorOfPolyline(triangle, true, {.width = 8, .join = join}), kMostOfLines) << side;
            const std::vector<CGPoint> square{
                {16, 10}, {16 + side, 10}, {16 + side, 10.5 + side}, {16, 10.5 + side}};
            EXPECT_LE(worstErrorOfPolyline(square, true, {.width = 8, .join = join}), kMostOfLines) << side;
        }
    }
}

TEST(StrokeCoverage, PensThatAreNoCirclesAreExact)
{
    const CGAffineTransform transforms[]{
        {1.6, 0.3, -0.2, 0.5, 6, 5}, {0.4, 0, 0, 1.9, 8, -6}, {1, 0, 1, 1, -8, 1}, {0, -0.8, 1.3, 0, 2, 28}};
    for (const CGAffineTransform& transform : transforms) {
        std::mt19937 random(8);
        for (int run = 0; run < 6; ++run) {
            EXPECT_LE(worstErrorOfPolyline(randomPoints(random), run % 2 == 0,
                          {.width = 4, .cap = kCGLineCapSquare, .join = kCGLineJoinBevel}, transform),
                kMostOfLines);
            EXPECT_LE(worstErrorOfPolyline(randomPoints(random), run % 2 == 0,
                          {.width = 3, .cap = kCGLineCapRound, .join = kCGLineJoinRound}, transform),
                kMostOfCurves);
        }
    }
}

TEST(StrokeCoverage, CurvesDifferByLittleFromManyLines)
{
    std::mt19937 random(2);
    for (int run = 0; run < 20; ++run) {
        const double width = run % 3 == 0 ? 0.66 : run % 3 == 1 ? 2.5 : 7;
        StrokedCurve curve;
        for (CGPoint& point : curve)
            point = {nearBitmap(random, kBitmapWidth), nearBitmap(random, kBitmapHeight)};
        const auto context = makeStrokeContext();
        CGContextSetLineWidth(context, width);
        CGContextMoveToPoint(context, curve[0].x, curve[0].y);
        CGContextAddCurveToPoint(
            context, curve[1].x, curve[1].y, curve[2].x, curve[2].y, curve[3].x, curve[3].y);
        CGContextStrokePath(context);
        ConvexUnion truth;
        addCurve(truth, curve, width);
        EXPECT_LE(truth.worstError(context), kMostOfCurves) << run;
    }
}

TEST(StrokeCoverage, EllipsesDifferByLittleFromRings)
{
    for (const double radius : {1.0, 3.3, 7.7, 14.2}) {
        for (const double width : {0.4, 0.66, 1.0, 3.0}) {
            const CGPoint center{20.31, 14.72};
            const auto context = makeStrokeContext();
            CGContextSetLineWidth(context, width);
            CGContextStrokeEllipseInRect(
                context, CGRectMake(center.x - radius, center.y - radius, 2 * radius, 2 * radius));
            ConvexUnion truth;
            constexpr int kParts = 1000;
            const auto across = [&](int i) {
                const double angle = 2 * std::numbers::pi * i / kParts;
                return CGPoint{std::cos(angle), std::sin(angle)};
            };
            for (int i = 0; i < kParts; ++i) {
                const double inner = std::max(radius - width / 2, 0.0);
                const double outer = radius + width / 2;
                truth.add({center + across(i) * inner, center + across(i) * outer,
                    center + across(i + 1) * outer, center + across(i + 1) * inner});
            }
            EXPECT_LE(truth.worstError(context), kMostOfCurves) << radius << ", " << width;
        }
    }
}

TEST(StrokeCoverage, DashesAreExact)
{
    const std::vector<CGPoint> points{{3.25, 4.5}, {35.5, 9.25}, {12.75, 24.5}};
    const CGFloat dashes[]{5, 3};
    const auto context = makeStrokeContext();
    CGContextSetLineWidth(context, 2.5);
    CGContextSetLineDash(context, 2, dashes, 2);
    CGContextAddLines(context, points.data(), points.size());
    CGContextStrokePath(context);

    const double first = lengthOf(points[1] - points[0]);
    const double all = first + lengthOf(points[2] - points[1]);
    const auto at = [&](double distance) {
        return distance < first ? points[0] + (points[1] - points[0]) * (distance / first)
                                : points[1] + (points[2] - points[1]) * ((distance - first) / (all - first));
    };
    ConvexUnion truth;
    for (double begin = -2; begin < all; begin += 8) {
        const double from = std::max(begin, 0.0);
        const double to = std::min(begin + 5, all);
        if (from < first && to > first)
            addPolyline(truth, {at(from), points[1], at(to)}, false, {.width = 2.5});
        else
            addPolyline(truth, {at(from), at(to)}, false, {.width = 2.5});
    }
    EXPECT_LE(truth.worstError(context), kMostOfLines);
}

void addCurves(CGContextRef context)
{
    std::mt19937 random(4);
    const auto point = [&] {
        return CGPoint{nearBitmap(random, kBitmapWidth), nearBitmap(random, kBitmapHeight)};
    };
    CGContextMoveToPoint(context, 3.3, 40);
    for (int i = 0; i < 6; ++i) {
        const CGPoint a = point();
        const CGPoint b = point();
        const CGPoint c = point();
        CGContextAddCurveToPoint(context, a.x * 3, a.y, b.x, b.y * 2, c.x, c.y);
        CGContextAddLineToPoint(context, b.x, c.y);
    }
}

/// Compares a drawing with the same one in parts of a size, each within a clip.
template <std::invocable<CGContextRef> Draw> void expectWholeOfParts(int width, int height, Draw draw)
{
    const auto whole = makeStrokeContext();
    draw(whole.get());
    const auto parts = makeStrokeContext();
    for (int x = 0; x < kBitmapWidth; x += width) {
        for (int y = 0; y < kBitmapHeight; y += height) {
            CGContextSaveGState(parts);
            CGContextClipToRect(parts, CGRectMake(x, y, width, height));
            draw(parts.get());
            CGContextRestoreGState(parts);
        }
    }
    const auto* one = static_cast<const unsigned char*>(CGBitmapContextGetData(whole));
    const auto* other = static_cast<const unsigned char*>(CGBitmapContextGetData(parts));
    EXPECT_TRUE(std::equal(
        one, one + kBitmapWidth * kBitmapHeight, other, [](int a, int b) { return std::abs(a - b) <= 1; }));
}

TEST(StrokeCoverage, PartsThatAreClippedOutDoNotChangeTheRest)
{
    for (const double shear : {0.0, 0.4}) {
        expectWholeOfParts(8, 6, [shear](CGContextRef context) {
            CGContextSaveGState(context);
            CGContextConcatCTM(context, CGAffineTransformMake(1, 0, shear, 1, 0, 0));
            CGContextSetLineWidth(context, 3);
            CGContextSetLineJoin(context, kCGLineJoinRound);
            addCurves(context);
            CGContextStrokePath(context);
            CGContextRestoreGState(context);
        });
    }
}

TEST(StrokeCoverage, ConvexOutlinesAreTheSameInParts)
{
    const CGAffineTransform transforms[]{CGAffineTransformIdentity, {0.9, 0.3, -0.3, 0.9, 6, -5},
        {1, 0, 0.3, 0.8, -3, 2}, {-1, 0, 0, 1, 40, 0}};
    for (const CGAffineTransform& transform : transforms) {
        for (const double width : {0.66, 3.0, 9.0}) {
            for (const double y : {3.3, -7.5, 14.2}) { // whole; above and below the bitmap
                const auto draw = [&](CGContextRef context) {
                    CGContextSaveGState(context);
                    CGContextConcatCTM(context, transform);
                    CGContextSetLineWidth(context, width);
                    const auto path =
                        adopt(CGPathCreateWithRoundedRect({{6.4, y}, {27.2, 19.1}}, 6, 4, nullptr));
                    CGContextAddPath(context, path);
                    CGContextStrokePath(context);
                    CGContextStrokeEllipseInRect(context, {{9.7, y + 1.6}, {19.5, 16.2}});
                    CGContextRestoreGState(context);
                };
                expectWholeOfParts(8, 6, draw);
                expectWholeOfParts(kBitmapWidth, 4, draw);
            }
        }
    }
}

TEST(StrokeCoverage, DistantPointsKeepTheCourseOfTheirLines)
{
    const auto context = makeStrokeContext();
    CGContextSetLineWidth(context, 5);
    CGContextMoveToPoint(context, -4e9, -3e9);
    CGContextAddLineToPoint(context, 4e9, 3e9);
    CGContextStrokePath(context);
    ConvexUnion truth;
    truth.addStrip({-400, -300}, {400, 300}, 2.5);
    EXPECT_LE(truth.worstError(context), kMostOfLines);
}

TEST(StrokeCoverage, LinesAsWideAsTheBitmapAndMoreCoverIt)
{
    for (const double width : {200.0, 1e7, 1e300}) {
        const auto context = makeStrokeContext();
        CGContextSetLineWidth(context, width);
        CGContextMoveToPoint(context, 10, 10);
        CGContextAddLineToPoint(context, 10 + width, 10);
        CGContextStrokePath(context);
        ConvexUnion truth;
        truth.addStrip({10, 10}, {90, 10}, 200);
        EXPECT_LE(truth.worstError(context), kMostOfLines) << width;
    }
}

} // namespace
