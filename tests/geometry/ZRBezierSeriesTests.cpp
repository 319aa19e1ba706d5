#include "geometry/ZRBezierMath.h"
#include "support/Describe.h"
#include "support/Numbers.h"

#include <KorvidAppKit/ZRBezierSeries.h>

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace {

constexpr CGPoint kOrigin{0, 0};
/// 90 units of control polygon.
constexpr ZRBezier kArch{{0, 30}, {30, 30}, {30, 0}};

RetainPtr<ZRBezierSeries> makeSeries(const std::vector<ZRBezier>& beziers, CGPoint start = kOrigin)
{
    return make<ZRBezierSeries>(start, beziers.size(), beziers.data());
}

/// Start, then the points of each segment after a semicolon.
std::string describe(const ZRBezierSeries& series)
{
    std::string text = describe(series._startPoint);
    for (unsigned long i = 0; i < series._numBeziers; ++i) {
        const ZRBezier& bezier = series._beziers[i];
        text += "; " + describe(bezier.cp0) + ", " + describe(bezier.cp1) + ", " + describe(bezier.point);
    }
    return text;
}

/// What calcDistances writes; each starts as -1.
struct Distances {
    explicit Distances(const ZRBezierSeries& series)
        : result(series.calcDistancesRetTotal(&total, &min, &max, &mean, &perimeter))
    {
    }
    double total = -1, min = -1, max = -1, mean = -1, perimeter = -1;
    bool result;
};

} // namespace

TEST(ZRBezierSubdivide, SplitsInTheMiddle)
{
    const ZRBezierHalves halves = ZRBezierSubdivide(CGPointMake(1, 2), {{1, 34}, {33, 34}, {33, 2}});
    EXPECT_EQ(describe(halves.start), "1 2");
    EXPECT_EQ(describe(halves.leftCp0), "1 18");
    EXPECT_EQ(describe(halves.leftCp1), "9 26");
    EXPECT_EQ(describe(halves.split), "17 26");
    EXPECT_EQ(describe(halves.rightCp0), "25 26");
    EXPECT_EQ(describe(halves.rightCp1), "33 18");
    EXPECT_EQ(describe(halves.end), "33 2");
}

TEST(ZRBezierSubdivide, MiddleIsHalfTheDifferenceAddedToTheFirst)
{
    // (a + b) / 2 would overflow here, and b - a in the other direction: only the defined order gives these
    // results.
    const double big = 1.5e308;
    EXPECT_EQ(ZRBezierSubdivide(CGPointMake(big, 0), {{big, 0}, {big, 0}, {big, 0}}).split.x, big);
    EXPECT_EQ(ZRBezierSubdivide(CGPointMake(-big, 0), {{big, 0}, {big, 0}, {big, 0}}).leftCp0.x, kInfinity);
    const double a = 0.1, b = 0.7;
    EXPECT_EQ(ZRBezierSubdivide(CGPointMake(a, b), {{b, a}, {b, a}, {b, a}}).leftCp0.x, (b - a) * 0.5 + a);
    EXPECT_EQ(ZRBezierSubdivide(CGPointMake(a, b), {{b, a}, {b, a}, {b, a}}).leftCp0.y, (a - b) * 0.5 + b);
}

TEST(ZRBezierSubdivide, EndsArePreservedExactly)
{
    const ZRBezierHalves halves =
        ZRBezierSubdivide(CGPointMake(-0.0, kInfinity), {{1, 1}, {1, 1}, {-0.0, 5}});
    EXPECT_TRUE(std::signbit(halves.start.x));
    EXPECT_EQ(halves.start.y, kInfinity);
    EXPECT_TRUE(std::signbit(halves.end.x));
}

TEST(ZRBezierPerformSubdivide, FillsTheTriangleSlotBySlot)
{
    CGPoint pts[10] = {{0, 0}, {0, 32}, {32, 32}, {32, 0}};
    _ZRBezierPerformSubdivide(pts);
    const char* const expected[] = {
        "0 0", "0 32", "32 32", "32 0", "0 16", "16 32", "32 16", "8 24", "24 24", "16 24"};
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(describe(pts[i]), expected[i]) << i;
}

TEST(ZRBezierSeries, CopiesItsSegments)
{
    std::vector<ZRBezier> beziers{kArch, {{60, 0}, {60, 10}, {70, 10}}};
    const auto series = makeSeries(beziers);
    beziers[0].cp0.x = 99;
    EXPECT_EQ(describe(*series), "0 0; 0 30, 30 30, 30 0; 60 0, 60 10, 70 10");
}

TEST(ZRBezierSeries, DescriptionIsAnArrayOfPointStrings)
{
    EXPECT_EQ(makeSeries({{{0, 40}, {80.00004, 40}, {-80.5, 1e6}}})->description(),
        "(\n"
        "    \"0.0000, 0.0000\",\n"
        "    \"0.0000, 40.0000\",\n"
        "    \"80.0000, 40.0000\",\n"
        "    \"-80.5000, 1000000.0000\"\n"
        ")");
}

TEST(ZRBezierSeries, WithoutSegmentsReturnsFalseAndWritesNothing)
{
    const auto series = make<ZRBezierSeries>(CGPointMake(1, 2), 0, nullptr);
    const Distances distances(*series);
    EXPECT_FALSE(distances.result);
    for (const double untouched :
        {distances.total, distances.min, distances.max, distances.mean, distances.perimeter})
        EXPECT_EQ(untouched, -1);
    EXPECT_FALSE(series->_subdivideBeziersAboveResolution(1));
    EXPECT_FALSE(series->subdivideToResolution(1));
    series->subdivide();
    EXPECT_EQ(series->_numBeziers, 0U);
    EXPECT_EQ(series->description(), "(\n    \"1.0000, 2.0000\"\n)");
}

TEST(ZRBezierSeries, MeasuresStraightLinesBetweenEnds)
{
    const auto series = makeSeries({{{0, 4}, {3, 4}, {3, 4}}, {{3, 4}, {3, 16}, {8, 16}}});
    const Distances distances(*series);
    EXPECT_TRUE(distances.result);
    EXPECT_EQ(distances.total, 18);
    EXPECT_EQ(distances.min, 5);
    EXPECT_EQ(distances.max, 13);
    EXPECT_EQ(distances.mean, 9);
    EXPECT_EQ(distances.perimeter, 17);
    EXPECT_TRUE(series->calcDistancesRetTotal(nullptr, nullptr, nullptr, nullptr, nullptr));
}

TEST(ZRBezierSeries, ZeroLengthsReportTheSmallestNormalNumberAsTheGreatest)
{
    const Distances distances(*makeSeries({{kOrigin, kOrigin, kOrigin}, {kOrigin, kOrigin, kOrigin}}));
    EXPECT_EQ(distances.max, 2.2250738585072014e-308);
    EXPECT_EQ(distances.perimeter, 2.2250738585072014e-308);
    EXPECT_EQ(distances.min, 0);
    EXPECT_EQ(distances.total, 0);
    EXPECT_EQ(distances.mean, 0);
}

TEST(ZRBezierSeries, NaNLengthsLeaveTheInitialValues)
{
    const Distances distances(*makeSeries({{kOrigin, kOrigin, {std::nan(""), 0}}}));
    EXPECT_EQ(distances.min, 1.7976931348623157e308);
    EXPECT_EQ(distances.max, 2.2250738585072014e-308);
    EXPECT_EQ(distances.perimeter, 2.2250738585072014e-308);
    EXPECT_TRUE(std::isnan(distances.total));
}

TEST(ZRBezierSeries, AnInfiniteControlPolygonCountsAsZero)
{
    const Distances distances(*makeSeries({{{1e308, 1e308}, {-1e308, 0}, {3, 4}}, {{3, 4}, {3, 4}, {3, 6}}}));
    EXPECT_EQ(distances.perimeter, 2);
    EXPECT_EQ(distances.max, 5);
}

TEST(ZRBezierSeries, APassSplitsLongerSegmentsOnce)
{
    const auto series = makeSeries({kArch, {{30, 0}, {31, 0}, {31, 0}}});
    EXPECT_TRUE(series->_subdivideBeziersAboveResolution(2));
    EXPECT_EQ(describe(*series), "0 0; 0 15, 7.5 22.5, 15 22.5; 22.5 22.5, 30 15, 30 0; 30 0, 31 0, 31 0");
    EXPECT_FALSE(series->_subdivideBeziersAboveResolution(90));
}

TEST(ZRBezierSeries, IsNotSplitWhereItsControlPolygonIsAsLongAsTheResolution)
{
    const auto series = makeSeries({{{1, 0}, {2, 0}, {3, 0}}});
    EXPECT_FALSE(series->subdivideToResolution(3));
    EXPECT_EQ(series->_numBeziers, 1U);
    EXPECT_TRUE(series->subdivideToResolution(std::nextafter(3, 0)));
    EXPECT_EQ(series->_numBeziers, 2U);
}

TEST(ZRBezierSeries, IsSplitUntilEveryControlPolygonIsShortEnough)
{
    const auto series = makeSeries({kArch});
    EXPECT_TRUE(series->subdivideToResolution(4));
    for (unsigned long i = 0; i < series->_numBeziers; ++i) {
        const CGPoint start = i ? series->_beziers[i - 1].point : series->_startPoint;
        EXPECT_LE(perimeter(start, series->_beziers[i]), 4);
    }
    EXPECT_EQ(series->_numBeziers, 22U); // not 32: some have quarters that are short enough
    EXPECT_EQ(describe(series->_beziers[10].point), "15 22.5");
    EXPECT_EQ(describe(series->_beziers[21].point), "30 0");
    EXPECT_FALSE(series->subdivideToResolution(4));
}

TEST(ZRBezierSeries, UnreachableResolutionsStopAfterTenPasses)
{
    for (const double resolution : {0.0, -0.0, -1.0, -kInfinity}) {
        const auto series = makeSeries({kArch});
        EXPECT_TRUE(series->subdivideToResolution(resolution));
        EXPECT_EQ(series->_numBeziers, 1024U) << resolution;
    }
    const auto series = makeSeries({kArch});
    EXPECT_FALSE(series->subdivideToResolution(std::nan("")));
    EXPECT_FALSE(series->subdivideToResolution(kInfinity));
}

// Neighbouring numbers are 16 apart there: no halving brings a piece below the resolution.
TEST(ZRBezierSeries, CoordinatesTooCoarseForTheResolutionStopAfter64Passes)
{
    const double far = 1e17;
    const auto series = makeSeries({{{far + 32, 0}, {far + 64, 0}, {far + 96, 0}}}, CGPointMake(far, 0));
    EXPECT_TRUE(series->subdivideToResolution(4));
    EXPECT_GT(series->_numBeziers, 64U);
    EXPECT_LT(series->_numBeziers, 1000U);
    EXPECT_EQ(series->_beziers[series->_numBeziers - 1].point.x, far + 96);
}

TEST(ZRBezierSeries, SubdivideHalvesEverySegmentOnce)
{
    const auto series = makeSeries({kArch, {{34, 0}, {38, 4}, {38, 8}}, {{38, 8}, {38, 8}, {38, 8}}});
    std::vector<CGPoint> splits;
    CGPoint start = series->_startPoint;
    for (unsigned long i = 0; i < 3; ++i) {
        splits.push_back(ZRBezierSubdivide(start, series->_beziers[i]).split);
        start = series->_beziers[i].point;
    }
    series->subdivide();
    ASSERT_EQ(series->_numBeziers, 6U);
    for (unsigned long i = 0; i < 3; ++i)
        EXPECT_EQ(describe(series->_beziers[2 * i].point), describe(splits[i]));
    EXPECT_EQ(describe(series->_beziers[5].point), "38 8");
    EXPECT_EQ(describe(series->_beziers[3].point), "38 8");
}
