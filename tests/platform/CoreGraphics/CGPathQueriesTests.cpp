#include <CoreGraphics/CGPath.h>

#include "CoreGraphics/CGPathInternal.h"
#include "support/Describe.h"

#include <gtest/gtest.h>
#include <random>

namespace {

/// A path of random elements with points in -100...100.
RetainPtr<CGPath> randomPath(std::mt19937& random, int elements)
{
    std::uniform_real_distribution<CGFloat> number(-100, 100);
    std::uniform_int_distribution kind(0, 9);
    auto path = adopt(CGPathCreateMutable());
    const auto n = [&] { return number(random); };
    CGPathMoveToPoint(path, nullptr, n(), n());
    for (int element = 1; element < elements; ++element) {
        switch (kind(random)) {
        case 0:
            CGPathMoveToPoint(path, nullptr, n(), n());
            break;
        case 1:
            CGPathCloseSubpath(path);
            break;
        case 2:
        case 3:
            CGPathAddLineToPoint(path, nullptr, n(), n());
            break;
        case 4:
        case 5:
        case 6:
            CGPathAddQuadCurveToPoint(path, nullptr, n(), n(), n(), n());
            break;
        default:
            CGPathAddCurveToPoint(path, nullptr, n(), n(), n(), n(), n(), n());
            break;
        }
    }
    return path;
}

/// The path as closed polygons with `steps` lines per curve.
std::vector<std::vector<CGPoint>> flatten(CGPathRef path, int steps)
{
    std::vector<std::vector<CGPoint>> polygons;
    CGPoint start{};
    const CGPoint* points = path->points().data();
    for (const CGPathOp op : path->ops()) {
        if (op == kCGPathElementMoveToPoint)
            start = points[0];
        if (op == kCGPathElementMoveToPoint || op == kCGPathElementCloseSubpath) {
            polygons.push_back({start});
        } else {
            auto& polygon = polygons.back();
            const CGPoint from = polygon.back();
            const std::size_t count = kCGPathPointsPerOp[op];
            for (int step = 1; step <= steps; ++step) {
                const CGFloat t = CGFloat(step) / steps;
                // De Casteljau: the points are interpolated until one is left.
                CGPoint p[4] = {from};
                std::copy_n(points, count, p + 1);
                for (std::size_t level = count; level > 0; --level) {
                    for (std::size_t i = 0; i < level; ++i)
                        p[i] = {p[i].x + (p[i + 1].x - p[i].x) * t, p[i].y + (p[i + 1].y - p[i].y) * t};
                }
                polygon.push_back(p[0]);
            }
        }
        points += kCGPathPointsPerOp[op];
    }
    return polygons;
}

/// Calls `visit(from, to)` for each edge, including the closing ones.
template <class Visit> void forEachEdge(const std::vector<std::vector<CGPoint>>& polygons, Visit visit)
{
    for (const auto& polygon : polygons) {
        for (std::size_t i = 0; i < polygon.size(); ++i)
            visit(polygon[i], polygon[(i + 1) % polygon.size()]);
    }
}

/// The winding number: the sum of the angles that the polygons' edges subtend at the point.
int windingByAngles(const std::vector<std::vector<CGPoint>>& polygons, CGPoint point)
{
    CGFloat sum = 0;
    forEachEdge(polygons, [&](CGPoint a, CGPoint b) {
        const CGPoint u{a.x - point.x, a.y - point.y};
        const CGPoint v{b.x - point.x, b.y - point.y};
        sum += std::atan2(u.x * v.y - u.y * v.x, u.x * v.x + u.y * v.y);
    });
    return static_cast<int>(std::lround(sum / (2 * M_PI)));
}

CGFloat distanceToEdge(const std::vector<std::vector<CGPoint>>& polygons, CGPoint point)
{
    CGFloat least = 1e9;
    forEachEdge(polygons, [&](CGPoint a, CGPoint b) {
        const CGPoint d{b.x - a.x, b.y - a.y};
        const CGFloat square = d.x * d.x + d.y * d.y;
        const CGFloat nearest = square > 0 ? ((point.x - a.x) * d.x + (point.y - a.y) * d.y) / square : 0;
        const CGFloat t = std::clamp(nearest, 0.0, 1.0);
        least = std::min(least, std::hypot(a.x + t * d.x - point.x, a.y + t * d.y - point.y));
    });
    return least;
}

bool contains(CGPathRef path, CGFloat x, CGFloat y, bool evenOdd = false)
{
    return CGPathContainsPoint(path, nullptr, CGPointMake(x, y), evenOdd);
}

TEST(CGPathApply, PassesEachElementAndTheCallersPointer)
{
    const auto path = adopt(CGPathCreateMutable());
    CGPathMoveToPoint(path, nullptr, 1, 2);
    CGPathAddCurveToPoint(path, nullptr, 3, 4, 5, 6, 7, 8);
    CGPathCloseSubpath(path);
    std::vector<CGPathElement> elements;
    CGPathApply(path, &elements, [](void* info, const CGPathElement* element) {
        static_cast<std::vector<CGPathElement>*>(info)->push_back(*element);
    });
    ASSERT_EQ(elements.size(), 3U);
    EXPECT_EQ(elements[0].type, kCGPathElementMoveToPoint);
    EXPECT_EQ(describe(elements[0].points[0]), "1 2");
    EXPECT_EQ(elements[1].type, kCGPathElementAddCurveToPoint);
    EXPECT_EQ(describe(elements[1].points[2]), "7 8");
    EXPECT_EQ(elements[2].type, kCGPathElementCloseSubpath);
}

TEST(CGPathQueries, AcceptNullAndTheEmptyPath)
{
    const auto empty = adopt(CGPathCreateMutable());
    for (const CGPathRef path : {CGPathRef(nullptr), CGPathRef(empty)}) {
        EXPECT_TRUE(CGPathIsEmpty(path));
        EXPECT_FALSE(CGPathIsRect(path, nullptr));
        EXPECT_EQ(describe(CGPathGetCurrentPoint(path)), "0 0");
        EXPECT_EQ(describe(CGPathGetBoundingBox(path)), "null");
        EXPECT_EQ(describe(CGPathGetPathBoundingBox(path)), "null");
        EXPECT_FALSE(CGPathContainsPoint(path, nullptr, CGPointZero, false));
        CGPathApply(path, nullptr, [](void*, const CGPathElement*) { FAIL() << "there is no element"; });
    }
    CGPathApply(nullptr, nullptr, nullptr);
    CGPathApply(adopt(CGPathCreateWithRect(CGRectZero, nullptr)).get(), nullptr, nullptr);
    EXPECT_TRUE(CGPathEqualToPath(nullptr, nullptr));
    EXPECT_FALSE(CGPathEqualToPath(empty, nullptr));
    EXPECT_FALSE(CGPathEqualToPath(nullptr, empty));
}

TEST(CGPathIsRect, RecognisesClosedAxisAlignedRectangles)
{
    CGRect rect = CGRectZero;
    EXPECT_TRUE(CGPathIsRect(adopt(CGPathCreateWithRect(CGRectMake(1, 2, 10, 5), nullptr)).get(), &rect));
    EXPECT_EQ(describe(rect), "1 2 10 5");

    const CGPoint upwardsFirst[] = {{11, 7}, {11, 2}, {1, 2}, {1, 7}, {11, 7}};
    const auto lines = adopt(CGPathCreateMutable());
    CGPathAddLines(lines, nullptr, upwardsFirst, 5);
    EXPECT_TRUE(CGPathIsRect(lines, nullptr)) << "closed by its last line";
    CGPathCloseSubpath(lines);
    EXPECT_TRUE(CGPathIsRect(lines, &rect)) << "and by a close";
    EXPECT_EQ(describe(rect), "1 2 10 5");
}

TEST(CGPathIsRect, RejectsOtherShapesAndDoesNotWriteTheRectangle)
{
    CGRect rect = CGRectMake(9, 9, 9, 9);
    const CGPoint points[] = {{0, 0}, {10, 0}, {10, 5}, {0, 5}, {0, 1}};
    const auto open = adopt(CGPathCreateMutable());
    CGPathAddLines(open, nullptr, points, 4);
    EXPECT_FALSE(CGPathIsRect(open, &rect)) << "not closed";
    const auto fifth = adopt(CGPathCreateMutable());
    CGPathAddLines(fifth, nullptr, points, 5);
    CGPathCloseSubpath(fifth);
    EXPECT_FALSE(CGPathIsRect(fifth, &rect)) << "a fifth corner";

    const auto skew = CGAffineTransformMake(1, 0, 0.5, 1, 0, 0);
    EXPECT_FALSE(CGPathIsRect(adopt(CGPathCreateWithRect(CGRectMake(0, 0, 2, 2), &skew)).get(), &rect));
    EXPECT_FALSE(
        CGPathIsRect(adopt(CGPathCreateWithEllipseInRect(CGRectMake(0, 0, 2, 2), nullptr)).get(), &rect));

    const auto two = adopt(CGPathCreateMutable());
    CGPathAddRect(two, nullptr, CGRectMake(0, 0, 1, 1));
    CGPathAddRect(two, nullptr, CGRectMake(0, 0, 1, 1));
    EXPECT_FALSE(CGPathIsRect(two, &rect));
    EXPECT_EQ(describe(rect), "9 9 9 9");
}

TEST(CGPathGetBoundingBox, IncludesControlPointsUnlikeThePathBoundingBox)
{
    const auto path = adopt(CGPathCreateMutable());
    CGPathMoveToPoint(path, nullptr, 0, 0);
    CGPathAddCurveToPoint(path, nullptr, 0, 40, 100, 40, 100, 0);
    EXPECT_EQ(describe(CGPathGetBoundingBox(path)), "0 0 100 40");
    EXPECT_EQ(describe(CGPathGetPathBoundingBox(path)), "0 0 100 30") << "3/4 of the height, in the middle";

    const auto quad = adopt(CGPathCreateMutable());
    CGPathMoveToPoint(quad, nullptr, 0, 0);
    CGPathAddQuadCurveToPoint(quad, nullptr, 50, -40, 100, 0);
    EXPECT_EQ(describe(CGPathGetBoundingBox(quad)), "0 -40 100 40");
    EXPECT_EQ(describe(CGPathGetPathBoundingBox(quad)), "0 -20 100 20") << "half of the height";
}

TEST(CGPathGetBoundingBox, OfAMoveAloneIsItsPoint)
{
    const auto path = adopt(CGPathCreateMutable());
    CGPathMoveToPoint(path, nullptr, 3, 4);
    EXPECT_EQ(describe(CGPathGetBoundingBox(path)), "3 4 0 0");
    EXPECT_EQ(describe(CGPathGetPathBoundingBox(path)), "3 4 0 0");
}

TEST(CGPathGetPathBoundingBox, FollowsACurveAfterAClose)
{
    const auto path = adopt(CGPathCreateMutable());
    CGPathMoveToPoint(path, nullptr, 0, 0);
    CGPathAddLineToPoint(path, nullptr, 500, 0);
    CGPathCloseSubpath(path);
    CGPathAddQuadCurveToPoint(path, nullptr, 0, 40, 0, 0);
    EXPECT_EQ(describe(CGPathGetPathBoundingBox(path)), "0 0 500 20");
}

TEST(CGPathGetPathBoundingBox, FitsTightlyAroundRandomPaths)
{
    std::mt19937 random(4);
    for (int trial = 0; trial < 300; ++trial) {
        const auto path = randomPath(random, 12);
        SCOPED_TRACE(describe(path));
        const CGRect box = CGPathGetPathBoundingBox(path);
        CGPoint min{1e9, 1e9};
        CGPoint max{-1e9, -1e9};
        for (const auto& polygon : flatten(path, 400)) {
            for (const CGPoint& point : polygon) {
                min = {std::min(min.x, point.x), std::min(min.y, point.y)};
                max = {std::max(max.x, point.x), std::max(max.y, point.y)};
            }
        }
        // Sampling a curve of this size 400 times misses its extreme by at most 300 / 400² × 3 / 2 < 0.01.
        EXPECT_NEAR(CGRectGetMinX(box), min.x, 0.01);
        EXPECT_NEAR(CGRectGetMinY(box), min.y, 0.01);
        EXPECT_NEAR(CGRectGetMaxX(box), max.x, 0.01);
        EXPECT_NEAR(CGRectGetMaxY(box), max.y, 0.01);
        constexpr CGFloat kRounding = 1e-10;
        EXPECT_LE(CGRectGetMinX(box), min.x + kRounding);
        EXPECT_LE(CGRectGetMinY(box), min.y + kRounding);
        EXPECT_GE(CGRectGetMaxX(box), max.x - kRounding);
        EXPECT_GE(CGRectGetMaxY(box), max.y - kRounding);
        EXPECT_TRUE(CGRectContainsRect(CGRectInset(CGPathGetBoundingBox(path), -kRounding, -kRounding), box));
    }
}

TEST(CGPathContainsPoint, IsHalfOpenLikeARectangle)
{
    const CGRect rect = CGRectMake(1, 2, 10, 5);
    for (const CGFloat sign : {1.0, -1.0}) {
        const auto mirror = CGAffineTransformMakeScale(sign, 1);
        const auto path = adopt(CGPathCreateWithRect(CGRectApplyAffineTransform(rect, mirror), &mirror));
        for (int halfX = 0; halfX <= 24; ++halfX) {
            for (int halfY = 0; halfY <= 16; ++halfY) {
                const CGPoint point{halfX / 2.0, halfY / 2.0};
                EXPECT_EQ(contains(path, point.x, point.y), CGRectContainsPoint(rect, point))
                    << describe(point);
            }
        }
    }
}

TEST(CGPathContainsPoint, DistinguishesTheTwoFillRules)
{
    const auto same = adopt(CGPathCreateMutable());
    CGPathAddRect(same, nullptr, CGRectMake(0, 0, 10, 10));
    CGPathAddRect(same, nullptr, CGRectMake(2, 2, 6, 6));
    EXPECT_TRUE(contains(same, 5, 5));
    EXPECT_FALSE(contains(same, 5, 5, true));
    EXPECT_TRUE(contains(same, 1, 1, true));

    const auto opposite = adopt(CGPathCreateMutable());
    const auto mirror = CGAffineTransformMake(-1, 0, 0, 1, 10, 0);
    CGPathAddRect(opposite, nullptr, CGRectMake(0, 0, 10, 10));
    CGPathAddRect(opposite, &mirror, CGRectMake(2, 2, 6, 6));
    EXPECT_FALSE(contains(opposite, 5, 5));
    EXPECT_FALSE(contains(opposite, 5, 5, true));
}

TEST(CGPathContainsPoint, ClosesOpenSubpaths)
{
    const CGPoint corners[] = {{0, 0}, {10, 0}, {10, 10}, {0, 10}};
    const auto path = adopt(CGPathCreateMutable());
    CGPathAddLines(path, nullptr, corners, 4);
    CGPathMoveToPoint(path, nullptr, 50, 50);
    EXPECT_TRUE(contains(path, 5, 5));
    EXPECT_FALSE(contains(path, -5, 5));
    EXPECT_FALSE(contains(path, 30, 30));
}

TEST(CGPathContainsPoint, AppliesTheTransformToThePoint)
{
    const auto path = adopt(CGPathCreateWithRect(CGRectMake(100, 100, 10, 10), nullptr));
    const auto transform = CGAffineTransformMakeTranslation(100, 100);
    EXPECT_TRUE(CGPathContainsPoint(path, &transform, CGPointMake(5, 5), false));
    EXPECT_FALSE(CGPathContainsPoint(path, &transform, CGPointMake(105, 105), false));
}

TEST(CGPathContainsPoint, IsExactCloseToACircle)
{
    const auto path = adopt(CGPathCreateWithEllipseInRect(CGRectMake(-1, -1, 2, 2), nullptr));
    for (int degree = 0; degree < 360; ++degree) {
        const CGFloat x = std::cos(degree * M_PI / 180);
        const CGFloat y = std::sin(degree * M_PI / 180);
        // Four cubic curves lie outside the circle by up to 0.027 %, and nowhere inside.
        EXPECT_TRUE(contains(path, 0.99999 * x, 0.99999 * y)) << degree;
        EXPECT_FALSE(contains(path, 1.00028 * x, 1.00028 * y)) << degree;
    }
}

TEST(CGPathContainsPoint, CountsACornerOnTheRayOnce)
{
    // A diamond, two of whose corners lie on the line y = 0.
    const CGPoint corners[] = {{-10, 0}, {0, -10}, {10, 0}, {0, 10}};
    const auto path = adopt(CGPathCreateMutable());
    CGPathAddLines(path, nullptr, corners, 4);
    EXPECT_TRUE(contains(path, 0, 0));
    EXPECT_FALSE(contains(path, -11, 0));
    EXPECT_FALSE(contains(path, 11, 0));
    EXPECT_FALSE(contains(path, -20, 10));
    EXPECT_FALSE(contains(path, -20, -10));
    const auto circle = adopt(CGPathCreateWithEllipseInRect(CGRectMake(-10, -10, 20, 20), nullptr));
    EXPECT_TRUE(contains(circle, 0, 0));
    EXPECT_FALSE(contains(circle, -11, 0));
    EXPECT_FALSE(contains(circle, -20, 10));
    EXPECT_FALSE(contains(circle, -20, -10));
}

TEST(CGPathContainsPoint, AgreesWithTheWindingOfFlattenedRandomPaths)
{
    std::mt19937 random(5);
    std::uniform_real_distribution<CGFloat> number(-110, 110);
    int compared = 0;
    for (int trial = 0; trial < 100; ++trial) {
        const auto path = randomPath(random, 12);
        SCOPED_TRACE(describe(path));
        const auto polygons = flatten(path, 100);
        for (int sample = 0; sample < 50; ++sample) {
            const CGPoint point{number(random), number(random)};
            if (distanceToEdge(polygons, point) < 0.2)
                continue; // within the error of the flattening
            const int winding = windingByAngles(polygons, point);
            EXPECT_EQ(CGPathContainsPoint(path, nullptr, point, false), winding != 0) << describe(point);
            EXPECT_EQ(CGPathContainsPoint(path, nullptr, point, true), winding % 2 != 0) << describe(point);
            ++compared;
        }
    }
    EXPECT_GT(compared, 4000);
}

TEST(CGPathContainsPoint, AssignsPointsOnACommonEdgeToExactlyOneNeighbour)
{
    // A curve divides a square: every point is in exactly one part, even on the curve.
    const auto below = adopt(CGPathCreateMutable());
    const auto above = adopt(CGPathCreateMutable());
    for (const auto& [path, y] : {std::pair(below, 0.0), std::pair(above, 10.0)}) {
        CGPathMoveToPoint(path, nullptr, 0, 5);
        CGPathAddCurveToPoint(path, nullptr, 4, 12, 6, -2, 10, 5);
        CGPathAddLineToPoint(path, nullptr, 10, y);
        CGPathAddLineToPoint(path, nullptr, 0, y);
        CGPathCloseSubpath(path);
    }
    for (int quarterX = 0; quarterX < 40; ++quarterX) {
        for (int quarterY = 0; quarterY < 40; ++quarterY) {
            const CGFloat x = quarterX / 4.0;
            const CGFloat y = quarterY / 4.0;
            EXPECT_NE(contains(below, x, y), contains(above, x, y)) << x << ' ' << y;
        }
    }
}

TEST(CGPathContainsPoint, HandlesNonFiniteAndHugeCoordinates)
{
    constexpr CGFloat kNaN = std::numeric_limits<CGFloat>::quiet_NaN();
    constexpr CGFloat kInfinity = std::numeric_limits<CGFloat>::infinity();
    const auto circle = adopt(CGPathCreateWithEllipseInRect(CGRectMake(0, 0, 10, 10), nullptr));
    EXPECT_FALSE(contains(circle, kNaN, 5));
    EXPECT_FALSE(contains(circle, 5, kNaN));
    EXPECT_FALSE(contains(circle, -kInfinity, 5));
    EXPECT_FALSE(contains(circle, 5, kInfinity));
    const auto everything = adopt(CGPathCreateWithRect(CGRectInfinite, nullptr));
    EXPECT_TRUE(contains(everything, 1e300, -1e300));
    const auto wide = adopt(CGPathCreateWithEllipseInRect(CGRectInfinite, nullptr));
    EXPECT_TRUE(contains(wide, 0, 0));
}

TEST(CGPathEqualToPath, ComparesElementsAndPoints)
{
    std::mt19937 random(6);
    const auto path = randomPath(random, 20);
    const auto copy = adopt(CGPathCreateMutableCopy(path));
    EXPECT_TRUE(CGPathEqualToPath(path, path));
    EXPECT_TRUE(CGPathEqualToPath(path, copy));
    CGPathMoveToPoint(copy, nullptr, 1, 1);
    EXPECT_FALSE(CGPathEqualToPath(path, copy));
    CGPathMoveToPoint(path, nullptr, 1, 2);
    EXPECT_FALSE(CGPathEqualToPath(path, copy)) << "another point";

    const auto line = adopt(CGPathCreateMutable());
    CGPathMoveToPoint(line, nullptr, 0, 0);
    const auto moves = adopt(CGPathCreateMutableCopy(line));
    CGPathAddLineToPoint(line, nullptr, 1, 1);
    CGPathMoveToPoint(moves, nullptr, 1, 1);
    EXPECT_FALSE(CGPathEqualToPath(line, moves)) << "another element";
    EXPECT_TRUE(CGPathEqualToPath(adopt(CGPathCreateMutable()).get(), adopt(CGPathCreateMutable()).get()));
}

} // namespace
