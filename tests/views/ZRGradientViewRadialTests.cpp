#include "GradientDrawing.h"

#include <cmath>

namespace {

class RadialGradientDrawing : public GradientDrawing { };
INSTANTIATE_TEST_SUITE_P(AtScale, RadialGradientDrawing, testing::Values(1, 2));

} // namespace

TEST_P(RadialGradientDrawing, IsPlacedInUnitsOfTheShorterSide)
{
    const auto view = makeGradientView(200, 100);
    view->setGradient(redToBlue());
    view->setType(kZRGradientTypeRadial);
    view->setStartCenter({0.5, 0.5});
    view->setEndCenter({0.5, 0.5});
    view->setEndRadius(0.5);
    Rendering r = rendering(200, 100);
    r.draw(view);
    // From the centre (100, 50) out to radius 50.
    EXPECT_GT(r.at(100, 50).bytes[0], 250);
    const double distance = std::hypot(25 + pixel() / 2, pixel() / 2);
    const int blue = int(std::lround(distance / 50 * 255));
    expectAbout(r.at(125, 50), rgba(255 - blue, 0, blue, 255));
    EXPECT_GT(r.at(149, 50).bytes[2], 245);
    EXPECT_LT(r.at(149, 50).bytes[2], 255);
    EXPECT_EQ(r.at(151, 50), kBlue);
    EXPECT_EQ(r.at(1, 1), kBlue);

    const auto upright = makeGradientView(100, 200);
    upright->setGradient(redToBlue());
    upright->setType(kZRGradientTypeRadial);
    upright->setStartCenter({0.5, 0.5});
    upright->setEndCenter({0.5, 0.5});
    upright->setStartRadius(0.25);
    upright->setEndRadius(0.5);
    Rendering tall = rendering(100, 200);
    tall.draw(upright);
    EXPECT_EQ(tall.at(50, 100 + 24), kRed); // within the start circle of radius 25
    EXPECT_EQ(tall.at(50, 100 + 51), kBlue);
}

TEST_P(RadialGradientDrawing, HasItsColoursWhereItsCirclesPutThem)
{
    const auto view = makeGradientView(40, 50);
    view->setGradient(redToBlue());
    view->setType(kZRGradientTypeRadial);
    view->setStartCenter({0.5, 0.4}); // (20, 20)
    view->setEndCenter({0.5, 0.4});
    view->setStartRadius(0.2); // 8
    view->setEndRadius(0.25);  // 10
    Rendering r = rendering(40, 50);
    r.draw(view);
    for (const CGPoint corner : {CGPoint{28, 20}, {29, 20}, {11, 20}, {20, 28}, {20, 29}, {20, 11}}) {
        const double distance =
            std::hypot(corner.x + pixel() / 2 - 20, corner.y + pixel() / 2 - 20); // of the pixel's centre
        const int blue = int(std::lround((distance - 8) / 2 * 255));
        expectAbout(r.at(corner.x, corner.y), rgba(255 - blue, 0, blue, 255));
    }
}

TEST_P(RadialGradientDrawing, RunsFromOneCircleToAnotherBesideIt)
{
    const auto view = makeGradientView(40, 40);
    view->setGradient(redToBlue());
    view->setType(kZRGradientTypeRadial);
    view->setStartCenter({0.25, 0.5}); // (10, 20)
    view->setEndCenter({0.5, 0.5});    // (20, 20)
    view->setEndRadius(0.5);           // 20
    Rendering r = rendering(40, 40);
    r.draw(view);
    // At t the circle around (10 + 10 t, 20) has the radius 20 t: it cuts the axis at 10 + 30 t and 10 - 10
    // t.
    const double half = pixel() / 2;
    const int right = int(std::lround((25 + half - 10) / 30 * 255));
    expectAbout(r.at(25, 20), rgba(255 - right, 0, right, 255));
    const int left = int(std::lround((10 - 5 - half) / 10 * 255));
    expectAbout(r.at(5, 20), rgba(255 - left, 0, left, 255));
}

// The tangents of both circles meet at (5, 20) with a slope of 0.436.
TEST_P(RadialGradientDrawing, OfSeparateCirclesFillsTheirCone)
{
    const auto view = makeGradientView(40, 40);
    view->setGradient(redToBlue());
    view->setType(kZRGradientTypeRadial);
    view->setStartCenter({0.25, 0.5}); // (10, 20)
    view->setStartRadius(0.05);        // 2
    view->setEndCenter({0.75, 0.5});   // (30, 20)
    view->setEndRadius(0.25);          // 10
    Rendering r = rendering(40, 40);
    r.draw(view);
    EXPECT_EQ(r.at(3, 20), kGreen);
    EXPECT_EQ(r.at(6, 20), kRed);
    EXPECT_EQ(r.at(20, 25).bytes[1], 0) << "inside: up to 26.5";
    EXPECT_EQ(r.at(20, 28), kGreen);
    EXPECT_EQ(r.at(20, 12), kGreen);
    EXPECT_EQ(r.at(39.5, 33), kBlue) << "inside: up to 35.1";
    EXPECT_EQ(r.at(39.5, 36), kGreen);
}

TEST_P(RadialGradientDrawing, OfCirclesWithOneRadiusFillsTheirStrip)
{
    const auto view = makeGradientView(40, 40);
    view->setGradient(redToBlue());
    view->setType(kZRGradientTypeRadial);
    view->setStartCenter({0.25, 0.5});
    view->setEndCenter({0.75, 0.5});
    view->setStartRadius(0.1); // 4
    view->setEndRadius(0.1);
    Rendering r = rendering(40, 40);
    r.draw(view);
    EXPECT_EQ(r.at(0.25, 20), kRed);
    EXPECT_EQ(r.at(39.75, 20), kBlue);
    EXPECT_EQ(r.at(20, 23).bytes[1], 0) << "inside: up to 24";
    EXPECT_EQ(r.at(20, 24.5), kGreen);
    EXPECT_EQ(r.at(20, 15.25), kGreen);
}

TEST_P(RadialGradientDrawing, OfEqualCirclesDrawsNothing)
{
    const auto view = makeGradientView(10, 10);
    view->setGradient(redToBlue());
    view->setType(kZRGradientTypeRadial);
    Rendering r = rendering(10, 10);
    r.draw(view);
    view->setStartRadius(0.5);
    view->setEndRadius(0.5);
    r.draw(view);
    EXPECT_EQ(r.at(0.25, 0.25), kGreen);
    EXPECT_EQ(r.at(9.75, 9.75), kGreen);
}
