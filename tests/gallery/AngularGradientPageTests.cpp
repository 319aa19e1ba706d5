#include "GalleryPictures.h"
#include "Page.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace {

/// A point of the page, at an angle around the rings' centre, in turns counterclockwise from the right.
CGPoint pointAt(CGFloat radius, CGFloat turns)
{
    const CGFloat angle = 2 * std::numbers::pi * turns;
    constexpr CGFloat kCentre = kGalleryMargin + 376 / 2.0;
    return {kCentre + radius * std::cos(angle), kCentre + radius * std::sin(angle)};
}

/// The ring has 255 hues; 42.5 of them span 217 levels between a primary and a secondary colour, 5.1 each,
/// and a sample may lie in the neighbouring step.
constexpr int kHueTolerance = 11;

} // namespace

TEST(AngularGradientPage, HueRingRunsCounterclockwiseFromRedOnTheRight)
{
    // Saturation 0.85: the lowest component is 38.
    constexpr Components kHues[] = {{255, 38, 38, 255}, {255, 255, 38, 255}, {38, 255, 38, 255},
        {38, 255, 255, 255}, {38, 38, 255, 255}, {255, 38, 255, 255}};
    for (const int scale : {1, 2}) {
        const Picture picture = GalleryPictures::shared().page("angles", scale);
        for (int i = 0; i < 6; ++i) {
            for (const CGFloat radius : {125.0, 142.0, 160.0}) {
                const CGPoint point = pointAt(radius, i / 6.0);
                const Components actual = picture.at(point.x, point.y);
                for (std::size_t c = 0; c < actual.size(); ++c)
                    EXPECT_NEAR(actual[c], kHues[i][c], kHueTolerance) << i << " of 6, radius " << radius;
            }
        }
    }
}

TEST(AngularGradientPage, ProgressRingFadesInClockwiseFromTheTopToItsHead)
{
    for (const int scale : {1, 2}) {
        const Picture picture = GalleryPictures::shared().page("angles", scale);
        const auto greenAt = [&](CGFloat turnsFromTop) {
            const CGPoint point = pointAt(80, 0.25 - turnsFromTop);
            return picture.at(point.x, point.y)[1];
        };
        for (CGFloat turns = 0.02; turns < 0.7; turns += 0.02)
            EXPECT_LT(greenAt(turns - 0.02), greenAt(turns)) << turns;
        EXPECT_EQ(greenAt(0.72), 0xda); // "zel-blue-highlight" in full at the head
        EXPECT_EQ(greenAt(0.85), 0x28); // and beyond it the track
    }
}
