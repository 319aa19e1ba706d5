#include "AnglePixels.h"

#include "Foundation/testing/NSLogCapture.h"
#include "support/Numbers.h"

#include <algorithm>
#include <cmath>

// The ring leaves 255 - angle outside the ellipse that is inscribed in the image inset by 1, and 0 inside.

namespace {

/// A pixel's value may be off by the coverage, which is sampled on 15 lines per row of pixels (up to a line's
/// half, 255 / 30), by the chords that are drawn for curves (about one step), by the 0.027 % by which four
/// cubics miss an ellipse, and by rounding, once for the mask and once for the product.
constexpr double kTolerance = 255.0 / 30 + 1 + 0.2 + 1;
/// Over all pixels of an edge the errors of sampling and rounding cancel out. Chords lie inside the curve, by
/// about a step for each pixel that an arc passes through.
constexpr double kMeanTolerance = 1.5;

/// The part of a pixel that lies within the ellipse inscribed in the image inset by 1.
double coverage(std::size_t width, std::size_t height, std::size_t column, std::size_t row)
{
    const double centreX = static_cast<double>(width) / 2, radiusX = centreX - 1;
    const double centreY = static_cast<double>(height) / 2, radiusY = centreY - 1;
    if (radiusX <= 0 || radiusY <= 0)
        return 0;
    const auto top = static_cast<double>(row);
    constexpr int kStrips = 1000;
    double area = 0;
    for (int i = 0; i < kStrips; ++i) {
        const double x = (static_cast<double>(column) + (i + 0.5) / kStrips - centreX) / radiusX;
        const double reach = radiusY * std::sqrt(std::max(0.0, 1 - x * x));
        area += std::max(0.0, std::min(top + 1, centreY + reach) - std::max(top, centreY - reach));
    }
    return area / kStrips;
}

} // namespace

TEST(AngularGradientRing, IsInvertedOutsideTheEllipseAndZeroInside)
{
    constexpr std::pair<std::size_t, std::size_t> kSizes[] = {
        {1, 1}, {2, 2}, {3, 3}, {4, 3}, {8, 8}, {17, 17}, {40, 24}, {23, 51}, {100, 100}};
    for (const auto& [width, height] : kSizes) {
        for (const bool isIncreasing : {true, false}) {
            const AnglePixels actual =
                angles(isIncreasing, static_cast<double>(width), static_cast<double>(height), 4);
            const AnglePixels sweep = plain(isIncreasing, width, height);
            ASSERT_EQ(actual.values.size(), width * height);
            double sumOfErrors = 0;
            int edgePixels = 0;
            for (std::size_t row = 0; row < height; ++row) {
                for (std::size_t column = 0; column < width; ++column) {
                    const double covered = coverage(width, height, column, row);
                    const double expected = (1 - covered) * (255 - sweep.at(column, row));
                    // Pixels fully inside or outside are exact.
                    const bool isEdge = covered > 0 && covered < 1;
                    const double tolerance = isEdge ? kTolerance : 0;
                    ASSERT_NEAR(actual.at(column, row), expected, tolerance)
                        << "column " << column << ", row " << row << " of " << width << " x " << height;
                    sumOfErrors += actual.at(column, row) - expected;
                    edgePixels += isEdge;
                }
            }
            if (std::min(width, height) >= 8) { // in smaller images several arcs share a pixel
                EXPECT_NEAR(sumOfErrors, 0, kMeanTolerance * edgePixels) << width << " x " << height;
            }
        }
    }
}

TEST(AngularGradientRing, WidthOfZeroGivesPlainAngles)
{
    EXPECT_TRUE(areSame(angles(true, 21, 16, 0), plain(true, 21, 16)));
    EXPECT_TRUE(areSame(angles(true, 21, 16, -0.0), plain(true, 21, 16)));
}

// The pixels inside the second ellipse are already zero.
TEST(AngularGradientRing, SecondEllipseHasNoVisibleEffect)
{
    const AnglePixels withoutOne = angles(true, 21, 16, 8); // min(10, 8) is not greater
    for (const double ringWidth : {7.999, 5.0, 1.0, 0.5, 1e-300, -1.0, -3.0, -1e9, -1e300})
        EXPECT_TRUE(areSame(angles(true, 21, 16, ringWidth), withoutOne)) << ringWidth;
}

TEST(AngularGradientRing, InfinitelyNegativeWidthIsLoggedAsAnEllipseThatIsNotDrawn)
{
    const AnglePixels withoutOne = angles(true, 21, 16, 8);
    const NSLogCapture log;
    EXPECT_TRUE(areSame(angles(true, 21, 16, -kInfinity), withoutOne));
    EXPECT_EQ(log.messages(),
        std::vector<std::string>{"CGPathAddEllipseInRect: nothing added: a point is not finite"});
}

TEST(AngularGradientRing, WidthsFromHalfTheShorterSideOmitTheSecondEllipse)
{
    const AnglePixels atHalf = angles(false, 21, 16, 8);
    for (const double ringWidth : {8.5, 9.0, 1e9, 1e300, kInfinity})
        EXPECT_TRUE(areSame(angles(false, 21, 16, ringWidth), atHalf)) << ringWidth;
}

TEST(AngularGradientRing, NaNWidthGivesARing)
{
    const AnglePixels actual = angles(true, 21, 16, kNaN);
    EXPECT_FALSE(areSame(actual, plain(true, 21, 16)));
    EXPECT_TRUE(areSame(actual, angles(true, 21, 16, 8)));
}

TEST(AngularGradientRing, ImageTooSmallForAnEllipseIsInverted)
{
    for (const auto& [width, height] :
        {std::pair{1U, 1U}, {2U, 2U}, {1U, 9U}, {2U, 9U}, {9U, 1U}, {9U, 2U}}) {
        for (const double ringWidth : {-5.0, 0.5, 1.0, 100.0, kNaN}) {
            AnglePixels expected = plain(true, width, height);
            for (auto& value : expected.values)
                value = static_cast<std::uint8_t>(255 - value);
            EXPECT_TRUE(areSame(angles(true, width, height, ringWidth), expected)) << ringWidth;
        }
    }
}

TEST(AngularGradientRing, LargeImagesHaveARing)
{
    const AnglePixels actual = angles(true, 2001, 1000, 40), sweep = plain(true, 2001, 1000);
    EXPECT_EQ(actual.at(0, 0), 255 - sweep.at(0, 0));
    EXPECT_EQ(actual.at(2000, 999), 255 - sweep.at(2000, 999));
    EXPECT_EQ(actual.at(1000, 0), 255 - sweep.at(1000, 0));
    for (const std::size_t column : {3U, 20U, 1000U, 1997U})
        EXPECT_EQ(actual.at(column, 500), 0);
}
