#include "PlainGeometry.h"
#include "support/AllocationCounter.h"
#include "support/Describe.h"

#include <Foundation/Foundation.h>
#include <KorvidAppKit/ZRBezierSeries.h>
#include <KorvidAppKit/ZRErrors.h>
#include <KorvidAppKit/ZRPath.h>

#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

/// Records its notifications.
class Observer : public NSObject {
public:
    void observeValueForKeyPath(NSString keyPath, NSObject* object, NSDictionary* change, void*) override
    {
        const bool isPrior = change->objectForKey(NSKeyValueChangeNotificationIsPriorKey) != nullptr;
        const bool built = static_cast<ZRPath*>(object)->built();
        told.push_back(
            keyPath.UTF8String() + (isPrior ? " before " : " after ") + (built ? "built" : "unbuilt"));
    }
    std::vector<std::string> told;
};

/// The built path's flattened strips.
std::string flattened(const RetainPtr<ZRPath>& path)
{
    return describe(adopt(path->createPathToDistance(1e300)));
}

RetainPtr<ZRPath> builtOutline(CGPathRef source, double resolution = 4)
{
    auto path = ZRPath::pathWithCGPath(source);
    path->setResolution(resolution);
    path->build();
    return path;
}

std::vector<double> coordinates(const std::vector<CGPoint>& points)
{
    std::vector<double> result;
    for (const CGPoint point : points)
        result.insert(result.end(), {point.x, point.y});
    return result;
}

/// The coordinates of all points of a built path's only strip.
std::vector<double> coordinatesOf(const RetainPtr<ZRPath>& path)
{
    std::vector<double> result;
    const auto strips = path->lineStripsDict();
    if (strips->count() != 1)
        return result;
    const auto* numbers = static_cast<NSArray*>(strips->objectAtIndex(0));
    const auto at = [&](NSUInteger i) {
        return static_cast<NSNumber*>(numbers->objectAtIndex(i))->doubleValue();
    };
    for (NSUInteger i = 0; i < numbers->count(); i += 3)
        result.insert(result.end(), {at(i), at(i + 1)});
    return result;
}

/// Expects an NSException with that reason.
template <class Function> void expectRaise(const char* reason, const Function& function)
{
    try {
        function();
        ADD_FAILURE() << "nothing was raised";
    } catch (const NSException& exception) {
        EXPECT_EQ(exception.name(), NSString(ZRErrorDomain));
        EXPECT_EQ(exception.reason(), NSString(reason));
        EXPECT_EQ(exception.userInfo(), nullptr);
    }
}

} // namespace

TEST(ZRPath, StartsUnbuiltWithAResolutionOfFour)
{
    const auto path = make<ZRPath>();
    EXPECT_FALSE(path->built());
    EXPECT_EQ(path->resolution(), 4);
    EXPECT_EQ(path->CGPath(), nullptr);
    EXPECT_EQ(path->distance(), 0);
}

TEST(ZRPath, RetainsItsSource)
{
    auto source = adopt(CGPathCreateMutable());
    CGPathMoveToPoint(source, nullptr, 1, 2);
    const auto path = ZRPath::pathWithCGPath(source);
    EXPECT_EQ(path->CGPath(), source);
    source = nullptr;
    EXPECT_EQ(describe(path->CGPath()), "M 1 2");
}

TEST(ZRPath, IsCreatedFromPoints)
{
    const CGPoint points[] = {{0, 0}, {3, 4}, {3, 9}};
    EXPECT_EQ(describe(ZRPath::pathWithPts(points, 3)->CGPath()), "M 0 0 L 3 4 L 3 9");
    EXPECT_EQ(describe(ZRPath::pathWithPts(points, 1)->CGPath()), "M 0 0");
    EXPECT_EQ(ZRPath::pathWithPts(nullptr, 0)->CGPath(), nullptr);
}

TEST(ZRPath, OmitsNonFinitePoints)
{
    for (const double odd : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
        const CGPoint inTheMiddle[] = {{0, 0}, {odd, 4}, {3, 9}, {1, odd}, {4, 4}};
        EXPECT_EQ(describe(ZRPath::pathWithPts(inTheMiddle, 5)->CGPath()), "M 0 0 L 3 9 L 4 4") << odd;
        const CGPoint atTheEnds[] = {{odd, odd}, {3, 4}, {3, 9}, {0, odd}};
        EXPECT_EQ(describe(ZRPath::pathWithPts(atTheEnds, 4)->CGPath()), "M 3 4 L 3 9") << odd;
        EXPECT_EQ(describe(ZRPath::pathWithPts(atTheEnds, 1)->CGPath()), "") << odd;
    }
}

TEST(ZRPath, WithoutPointsBuildsToNoStrips)
{
    const auto path = ZRPath::pathWithPts(nullptr, 0);
    path->build();
    EXPECT_TRUE(path->built());
    EXPECT_EQ(path->distance(), 0);
    EXPECT_EQ(flattened(path), "");
    EXPECT_EQ(path->lineStripsJSON(), "[\n]\n");
    RetainPtr<NSError> error;
    path->pointAlongPathAtDistance(0, &error);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), 1111);
}

TEST(ZRPath, IsBuiltOnlyOnce)
{
    const CGPoint points[] = {{0, 0}, {3, 4}};
    const auto path = ZRPath::pathWithPts(points, 2);
    path->setResolution(2);
    path->build();
    expectRaise("Tried to build ZRPath after it was built", [&] { path->build(); });
    expectRaise("Tried to set ZRPath resolution after it was built", [&] { path->setResolution(1); });
    EXPECT_TRUE(path->built());
    EXPECT_EQ(path->resolution(), 2);
    EXPECT_EQ(path->distance(), 5);
}

TEST(ZRPath, NotifiesObserversWhenItIsBuilt)
{
    const auto path = make<ZRPath>();
    const auto observer = make<Observer>();
    path->addObserver(observer, "built", NSKeyValueObservingOptionPrior | NSKeyValueObservingOptionNew);
    EXPECT_FALSE(static_cast<NSNumber*>(path->valueForKey("built").get())->boolValue());
    path->build();
    EXPECT_EQ(observer->told, (std::vector<std::string>{"built before unbuilt", "built after built"}));
    EXPECT_TRUE(static_cast<NSNumber*>(path->valueForKey("built").get())->boolValue());
    EXPECT_THROW(path->build(), NSException);
    EXPECT_EQ(observer->told.size(), 2U);
    EXPECT_THROW(path->valueForKey("other"), NSException);
}

TEST(ZRPath, CanBeBuiltAfterAnAllocationFailure)
{
    if (!AllocationFailure::isAvailable())
        GTEST_SKIP() << "allocations cannot be made to fail in this build";
    const auto source = adopt(CGPathCreateMutable());
    CGPathAddRect(source.get(), nullptr, CGRectMake(0, 0, 10, 20));
    CGPathMoveToPoint(source.get(), nullptr, 0, 0);
    for (int i = 1; i <= 1000; ++i)
        CGPathAddLineToPoint(source.get(), nullptr, i, 0);
    const auto path = ZRPath::pathWithCGPath(source.get());
    const auto observer = make<Observer>();
    path->addObserver(observer.get(), "built", NSKeyValueObservingOptionPrior);

    bool isOutOfMemory = false;
    try {
        const auto failure = AllocationFailure::ofMoreThan(8000); // of the strip of 1,001 points
        path->build();
    } catch (const std::bad_alloc&) {
        isOutOfMemory = true;
    }
    EXPECT_TRUE(isOutOfMemory);
    EXPECT_FALSE(path->built());
    EXPECT_EQ(path->lineStripsJSON(), "[\n]\n");
    EXPECT_EQ(observer->told, (std::vector<std::string>{"built before unbuilt", "built after unbuilt"}));

    observer->told.clear();
    path->build();
    EXPECT_EQ(path->distance(), 1060);
    EXPECT_EQ(path->lineStripsDict()->count(), 2U);
    EXPECT_EQ(observer->told, (std::vector<std::string>{"built before unbuilt", "built after built"}));
}

TEST(ZRPath, ACopyIsUnbuiltAndSharesSourceAndResolution)
{
    const CGPoint points[] = {{0, 0}, {3, 4}};
    const auto path = ZRPath::pathWithPts(points, 2);
    path->setResolution(0.5);
    path->build();
    const auto copy = path->copyWithZone();
    EXPECT_FALSE(copy->built());
    EXPECT_EQ(copy->CGPath(), path->CGPath());
    EXPECT_EQ(copy->resolution(), 0.5);
    EXPECT_EQ(copy->distance(), 0);
    copy->setResolution(7);
    EXPECT_EQ(copy->resolution(), 7);
    copy->build();
    EXPECT_EQ(copy->distance(), 5);
    EXPECT_EQ(make<ZRPath>()->copyWithZone()->CGPath(), nullptr);
}

TEST(ZRPath, AClosedRectangleIsOneStripOfFivePoints)
{
    const auto source = adopt(CGPathCreateWithRect(CGRectMake(0, 0, 10, 20), nullptr));
    const auto path = builtOutline(source);
    EXPECT_EQ(flattened(path), "M 0 0 L 10 0 L 10 20 L 0 20 L 0 0");
    EXPECT_EQ(path->distance(), 60);
}

TEST(ZRPath, ClosingContinuesTheSameStrip)
{
    const auto source = adopt(CGPathCreateMutable());
    CGPathMoveToPoint(source, nullptr, 1, 1);
    CGPathAddLineToPoint(source, nullptr, 5, 1);
    CGPathCloseSubpath(source);
    CGPathAddLineToPoint(source, nullptr, 1, 4);
    EXPECT_EQ(flattened(builtOutline(source)), "M 1 1 L 5 1 L 1 1 L 1 4");
}

TEST(ZRPath, ACurveShorterThanTheResolutionBecomesALineToItsEnd)
{
    const auto source = adopt(CGPathCreateMutable());
    CGPathMoveToPoint(source, nullptr, 0, 0);
    CGPathAddCurveToPoint(source, nullptr, 0, 1, 1, 1, 1, 0);
    EXPECT_EQ(flattened(builtOutline(source)), "M 0 0 L 1 0");
    EXPECT_EQ(flattened(builtOutline(source, 3)), "M 0 0 L 1 0");
    EXPECT_EQ(flattened(builtOutline(source, 2.9)), "M 0 0 L 0.5 0.75 L 1 0");
}

TEST(ZRPath, AQuadraticIsElevatedToACubicBySlightlyMoreThanTwoThirds)
{
    const auto source = adopt(CGPathCreateMutable());
    CGPathMoveToPoint(source.get(), nullptr, 0, 0);
    CGPathAddQuadCurveToPoint(source.get(), nullptr, 0, 3e10, 6e10, 0);
    const std::vector<double> points = coordinatesOf(builtOutline(source.get(), 5e10));
    ASSERT_EQ(points.size(), 6U);

    const double height = 3e10 * 0.66666666667;
    const CGPoint cp0{0, height}, cp1{6e10 + (0 - 6e10) * 0.66666666667, height}, end{6e10, 0};
    const CGPoint middle = ZRBezierSubdivide(CGPointZero, {cp0, cp1, end}).split;
    EXPECT_EQ(points[2], middle.x);
    EXPECT_EQ(points[3], middle.y);
    EXPECT_GT(middle.y, 1.5e10); // the result for exactly two thirds
    EXPECT_EQ(points[4], 6e10);
    EXPECT_EQ(points[5], 0);
}

// Curves start at the end point of the previous element, whatever its type.
TEST(ZRPath, FlattensCurvesLikeTheReferenceAfterEachKindOfElement)
{
    constexpr double kResolution = 3;
    const CGPoint start{2, 1}, before{12, 7}, cp0{21, 30}, cp1{-4, 25}, end{-9, 3};
    // Asymmetric, so that swapped control points would be detected.
    const CGPoint quadCp{30, -2};
    const auto raised = [](CGPoint from, CGPoint cp) {
        return CGPointMake(
            from.x + (cp.x - from.x) * 0.66666666667, from.y + (cp.y - from.y) * 0.66666666667);
    };
    const auto flatten = [](CGPoint p0, CGPoint p1, CGPoint p2, CGPoint p3, std::vector<CGPoint>& points) {
        plainFlatten(p0, p1, p2, p3, kResolution, points);
    };
    struct Element {
        const char* name;
        std::function<void(CGMutablePathRef)> add;
        std::vector<CGPoint> points; ///< of the strip, from its start through the element
    };
    std::vector<Element> elements{
        {"move", [](CGMutablePathRef) {}, {start}},
        {"line", [&](CGMutablePathRef path) { CGPathAddLineToPoint(path, nullptr, before.x, before.y); },
            {start, before}},
        {"quadratic curve",
            [&](CGMutablePathRef path) {
                CGPathAddQuadCurveToPoint(path, nullptr, quadCp.x, quadCp.y, before.x, before.y);
            },
            {start}},
        {"curve",
            [&](CGMutablePathRef path) {
                CGPathAddCurveToPoint(path, nullptr, cp1.x, cp1.y, cp0.x, cp0.y, before.x, before.y);
            },
            {start}},
        {"close",
            [&](CGMutablePathRef path) {
                CGPathAddLineToPoint(path, nullptr, before.x, before.y);
                CGPathCloseSubpath(path);
            },
            {start, before, start}},
    };
    flatten(start, raised(start, quadCp), raised(before, quadCp), before, elements[2].points);
    flatten(start, cp1, cp0, before, elements[3].points);

    for (const Element& element : elements) {
        SCOPED_TRACE(element.name);
        const CGPoint from = element.points.back();
        const auto source = adopt(CGPathCreateMutable());
        CGPathMoveToPoint(source.get(), nullptr, start.x, start.y);
        element.add(source.get());
        const auto thenCurve = adopt(CGPathCreateMutableCopy(source.get()));
        CGPathAddCurveToPoint(thenCurve.get(), nullptr, cp0.x, cp0.y, cp1.x, cp1.y, end.x, end.y);
        std::vector<CGPoint> expected = element.points;
        flatten(from, cp0, cp1, end, expected);
        EXPECT_EQ(coordinatesOf(builtOutline(thenCurve.get(), kResolution)), coordinates(expected));

        const auto thenQuad = adopt(CGPathCreateMutableCopy(source.get()));
        CGPathAddQuadCurveToPoint(thenQuad.get(), nullptr, quadCp.x, quadCp.y, end.x, end.y);
        expected = element.points;
        flatten(from, raised(from, quadCp), raised(end, quadCp), end, expected);
        EXPECT_EQ(coordinatesOf(builtOutline(thenQuad.get(), kResolution)), coordinates(expected));
    }
}

TEST(ZRPath, EachSubpathIsAStripThatStartsWhereTheLastEnded)
{
    const auto source = adopt(CGPathCreateMutable());
    CGPathMoveToPoint(source, nullptr, 0, 0);
    CGPathAddLineToPoint(source, nullptr, 10, 0);
    CGPathMoveToPoint(source, nullptr, 20, 0);
    CGPathAddLineToPoint(source, nullptr, 20, 5);
    const auto path = builtOutline(source);
    EXPECT_EQ(path->distance(), 15);
    EXPECT_EQ(path->lineStripsJSON(),
        "[\n"
        " [0.00,0.00,0.00,10.00,0.00,10.00],\n"
        " [20.00,0.00,10.00,20.00,5.00,15.00]\n"
        "]\n");
}

TEST(ZRPath, HasAStripForEachOfManySubpaths)
{
    const auto source = adopt(CGPathCreateMutable());
    std::string expected = "[";
    for (int i = 0; i < 70; ++i) {
        CGPathMoveToPoint(source, nullptr, i, 0);
        CGPathAddLineToPoint(source, nullptr, i, 2);
        const std::string x = std::to_string(i) + ".00", start = std::to_string(2 * i) + ".00";
        const std::string end = std::to_string(2 * i + 2) + ".00";
        expected += (i > 0 ? ",\n [" : "\n [") + x + ",0.00," + start + ',' + x + ",2.00," + end + ']';
    }
    EXPECT_EQ(builtOutline(source)->lineStripsJSON(), NSString(expected + "\n]\n"));
}

TEST(ZRPath, IgnoresUnknownElements)
{
    const auto path = make<ZRPath>();
    const CGPoint point{1, 2};
    const CGPathElement line{kCGPathElementAddLineToPoint, &point};
    _ZRPathApplier(path, &line); // without a strip, the point is dropped
    const CGPathElement move{kCGPathElementMoveToPoint, &point};
    _ZRPathApplier(path, &move);
    const CGPathElement unknown{static_cast<CGPathElementType>(5), &point};
    _ZRPathApplier(path, &unknown);
    path->build();
    EXPECT_EQ(path->distance(), 0);
    EXPECT_EQ(flattened(path), "");
}

TEST(ZRPath, AcceptsAnyResolution)
{
    const auto source = adopt(CGPathCreateWithEllipseInRect(CGRectMake(0, 0, 100, 100), nullptr));
    const auto points = [&](double resolution) {
        const auto strips = builtOutline(source, resolution)->lineStripsDict();
        return static_cast<NSArray*>(strips->objectAtIndex(0))->count() / 3;
    };
    EXPECT_EQ(points(0), 4 * 1024U + 2); // start and close
    EXPECT_EQ(points(-1), 4 * 1024U + 2);
    EXPECT_EQ(points(std::nan("")), 6U);
    EXPECT_EQ(points(HUGE_VAL), 6U);
}
