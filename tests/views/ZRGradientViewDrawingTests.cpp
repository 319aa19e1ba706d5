#include "GradientDrawing.h"

#include <KorvidAppKit/ZRShapes.h>

#include <cmath>
#include <cstdlib>
#include <limits>

namespace {

RetainPtr<NSColor> orange()
{
    return NSColor::colorWithSRGBRed(1, 0.6, 0.2, 1);
}
constexpr CanvasPixel kOrange = rgba(255, 153, 51, 255);

class GradientViewDrawing : public GradientDrawing { };
INSTANTIATE_TEST_SUITE_P(AtScale, GradientViewDrawing, testing::Values(1, 2));

} // namespace

TEST_P(GradientViewDrawing, AnEmptyViewDrawsNothing)
{
    const auto view = makeGradientView(10, 10);
    view->setBezel(true);
    view->setStroke(2); // without a colour
    Rendering r = rendering(10, 10);
    r.draw(view);
    EXPECT_EQ(r.at(5, 5), kGreen);
    EXPECT_EQ(r.at(0.25, 9.75), kGreen);
}

// From (0, 0) to (0, 0): both ends extend over the whole view, and the last colour is on top.
TEST_P(GradientViewDrawing, ANewViewWithAGradientIsFilledWithItsLastColour)
{
    const auto view = makeGradientView(10, 10);
    view->setGradient(redToBlue());
    Rendering r = rendering(12, 10);
    r.draw(view);
    EXPECT_EQ(r.at(0.25, 0.25), kBlue);
    EXPECT_EQ(r.at(9.75, 9.75), kBlue);
}

TEST_P(GradientViewDrawing, ALinearGradientIsPlacedInUnitsOfTheSize)
{
    const auto view = makeGradientView(100, 40);
    view->setGradient(redToBlue());
    view->setStartPoint({0.25, 0});
    view->setEndPoint({0.75, 0});
    Rendering r = rendering(100, 40);
    r.draw(view);
    EXPECT_EQ(r.at(10, 20), kRed);
    EXPECT_EQ(r.at(24.75, 20), kRed);
    EXPECT_EQ(r.at(75.25, 20), kBlue);
    const double t = (37 + pixel() / 2 - 25) / 50; // of the pixel's centre
    const int blue = int(std::lround(t * 255));
    expectAbout(r.at(37, 20), rgba(255 - blue, 0, blue, 255));

    view->setStartPoint({0, 0});
    view->setEndPoint({0, 1});
    r.draw(view);
    EXPECT_GT(r.at(50, 0.25).bytes[0], 250); // red at the bottom
    EXPECT_GT(r.at(50, 39.75).bytes[2], 250);
}

// Steep gradients, of two points: a shift by 0.1 changes the colour by 13 of 255.
TEST_P(GradientViewDrawing, ALinearGradientHasItsColoursWhereItsPointsPutThem)
{
    const auto view = makeGradientView(40, 20);
    view->setGradient(redToBlue());
    const auto expectedAfter = [&](double distance) {
        const int blue = int(std::lround((distance + pixel() / 2) / 2 * 255)); // at the pixel's centre
        return rgba(255 - blue, 0, blue, 255);
    };
    Rendering r = rendering(40, 20);
    view->setStartPoint({0.25, 0});
    view->setEndPoint({0.3, 0});
    r.draw(view);
    expectAbout(r.at(10, 5), expectedAfter(0));
    expectAbout(r.at(11, 5), expectedAfter(1));

    view->setStartPoint({0, 0.5});
    view->setEndPoint({0, 0.6});
    r.draw(view);
    expectAbout(r.at(5, 10), expectedAfter(0));
    expectAbout(r.at(5, 11), expectedAfter(1));
}

TEST_P(GradientViewDrawing, AnyOtherTypeDrawsOnlyTheBezelOfAGradient)
{
    const auto view = makeGradientView(10, 10);
    view->setGradient(redToBlue());
    view->setColor(orange()); // does not replace the gradient
    for (const int type : {-1, 2}) {
        view->setType(type);
        view->setBezel(false);
        Rendering r = rendering(10, 10);
        r.draw(view);
        EXPECT_EQ(r.at(5, 5), kGreen);
        EXPECT_EQ(r.at(5, 9.75), kGreen);
        view->setBezel(true);
        r.draw(view);
        EXPECT_EQ(r.at(5, 5), kGreen);
        EXPECT_EQ(r.at(5, 9.75), rgba(0, 187, 0, 255));
    }
}

TEST_P(GradientViewDrawing, AnOriginOfTheBoundsMovesNeitherGradientNorBezel)
{
    const auto view = makeGradientView(40, 20);
    view->setBounds(NSMakeRect(-10, -4, 40, 20));
    view->setGradient(redToBlue());
    view->setStartPoint({0.5, 0});
    view->setEndPoint({0.5 + 1e-9, 0});
    view->setBezel(true);
    Rendering r = rendering(60, 40);
    CGContextTranslateCTM(r.context(), 10, 10);
    r.draw(view);
    EXPECT_EQ(r.at(10 + 19.75, 15), kRed);
    EXPECT_EQ(r.at(10 + 20.25, 15), kBlue);
    EXPECT_EQ(r.at(10 + 20.25, 10 + 19.25), rgba(0, 0, 187, 255)); // dark, at 19 to 20
    EXPECT_EQ(r.at(10 + 20.25, 10 + 18.75), kBlue);
}

TEST_P(GradientViewDrawing, TheBezelIsDarkOnTopAndLightBelow)
{
    const auto view = makeGradientView(10, 10);
    view->setGradient(redToBlue());
    view->setBezel(true);
    Rendering r = rendering(12, 10);
    r.draw(view);
    // Black at 0.267 leaves 0.733 of 255; white at 0.133 adds 0.133 of the difference to 255.
    EXPECT_EQ(r.at(5, 9.25), rgba(0, 0, 187, 255));
    EXPECT_EQ(r.at(5, 9.75), rgba(0, 0, 187, 255));
    EXPECT_EQ(r.at(5, 8.75), kBlue);
    EXPECT_EQ(r.at(5, 0.25), rgba(34, 34, 255, 255));
    EXPECT_EQ(r.at(5, 0.75), rgba(34, 34, 255, 255));
    EXPECT_EQ(r.at(5, 1.25), kBlue);
    for (const double x : {0.25, 9.75}) { // the lines are as wide as the view
        EXPECT_EQ(r.at(x, 9.75), rgba(0, 0, 187, 255)) << x;
        EXPECT_EQ(r.at(x, 0.25), rgba(34, 34, 255, 255)) << x;
    }
    EXPECT_EQ(r.at(10.25, 9.75), kBlue);
    EXPECT_EQ(r.at(10.25, 0.25), kBlue);
}

TEST_P(GradientViewDrawing, ASolidColourHasNoBezel)
{
    const auto view = makeGradientView(10, 10);
    view->setColor(orange());
    view->setBezel(true);
    Rendering r = rendering(10, 10);
    r.draw(view);
    EXPECT_EQ(r.at(5, 9.75), kOrange);
    EXPECT_EQ(r.at(5, 0.25), kOrange);
}

TEST_P(GradientViewDrawing, ASolidColourFillsTheDirtyRectangleAndAGradientTheClip)
{
    const auto view = makeGradientView(10, 10);
    view->setColor(orange());
    Rendering solid = rendering(12, 10);
    solid.draw(view, NSMakeRect(2, 3, 4, 5));
    EXPECT_EQ(solid.at(1.75, 5), kGreen);
    EXPECT_EQ(solid.at(2.25, 5), kOrange);
    EXPECT_EQ(solid.at(5.75, 7.75), kOrange);
    EXPECT_EQ(solid.at(5, 8.25), kGreen);

    view->setGradient(redToBlue());
    Rendering filled = rendering(12, 10);
    filled.draw(view, NSMakeRect(2, 3, 4, 5));
    EXPECT_EQ(filled.at(0.25, 0.25), kBlue);
}

TEST_P(GradientViewDrawing, RoundedCornersClipGradientAndColour)
{
    const auto view = makeGradientView(20, 20);
    view->setRoundedCorners(kZRCornerMinXMaxY | kZRCornerMaxXMinY);
    view->setCornerRadius(8);
    for (const bool hasGradient : {false, true}) {
        view->setColor(orange());
        view->setGradient(hasGradient ? redToBlue() : nullptr);
        const CanvasPixel fill = hasGradient ? kBlue : kOrange;
        Rendering r = rendering(20, 20);
        r.draw(view);
        EXPECT_EQ(r.at(0.25, 19.75), kGreen); // top left
        EXPECT_EQ(r.at(19.75, 0.25), kGreen); // bottom right
        EXPECT_EQ(r.at(19.75, 19.75), fill);
        EXPECT_EQ(r.at(0.25, 0.25), fill);
        EXPECT_EQ(r.at(10, 10), fill);
    }
}

TEST_P(GradientViewDrawing, ARadiusOfAFractionOfAPointRoundsCorners)
{
    const auto view = makeGradientView(10, 10);
    view->setRoundedCorners(kZRCornerMinXMinY);
    view->setCornerRadius(0.5);
    view->setColor(orange());
    Rendering r = rendering(10, 10);
    r.draw(view);
    EXPECT_NE(r.at(0.25, 0.25), kOrange);
    EXPECT_EQ(r.at(9.75, 0.25), kOrange);
}

TEST_P(GradientViewDrawing, WithoutCornersOrARadiusNothingIsRounded)
{
    struct {
        int corners;
        double radius;
    } const cases[] = {{0, 10}, {15, 0}, {15, -3}, {15, std::numeric_limits<double>::quiet_NaN()}};
    for (const auto& [corners, radius] : cases) {
        const auto view = makeGradientView(20, 20);
        view->setRoundedCorners(corners);
        view->setCornerRadius(radius);
        view->setGradient(redToBlue());
        view->setStroke(2);
        view->setStrokeColor(NSColor::blackColor());
        Rendering r = rendering(24, 20);
        r.draw(view);
        EXPECT_EQ(r.at(0.25, 0.25), kBlack); // the outline is square
        EXPECT_EQ(r.at(19.75, 19.75), kBlack);
        EXPECT_EQ(r.at(10, 10), kBlue);
        EXPECT_EQ(r.at(23, 10), kBlue); // no clip: clipping to the bounds is up to the superview
    }
}

TEST_P(GradientViewDrawing, AStrokeOfOneIsALineOfTwoOnTheEdge)
{
    const auto view = makeGradientView(10, 10);
    view->setColor(orange());
    view->setStroke(1);
    view->setStrokeColor(NSColor::blackColor());
    Rendering r = rendering(14, 14);
    CGContextTranslateCTM(r.context(), 2, 2);
    r.draw(view);
    // Half of it lies outside the view, where the superview clips it.
    for (const double x : {1.25, 2.75, 11.25, 12.75})
        EXPECT_EQ(r.at(x, 7), kBlack) << x;
    for (const double x : {0.75, 13.25})
        EXPECT_EQ(r.at(x, 7), kGreen) << x;
    for (const double x : {3.25, 10.75})
        EXPECT_EQ(r.at(x, 7), kOrange) << x;
    EXPECT_EQ(r.at(7, 1.25), kBlack);
    EXPECT_EQ(r.at(7, 12.75), kBlack);
}

TEST_P(GradientViewDrawing, ATranslucentStrokeIsDrawnOnceAndOverTheFill)
{
    const auto view = makeGradientView(10, 10);
    view->setColor(orange());
    view->setStroke(1);
    view->setStrokeColor(NSColor::colorWithSRGBRed(0, 0, 0, 0.6));
    Rendering r = rendering(14, 14);
    CGContextTranslateCTM(r.context(), 2, 2);
    r.draw(view);
    EXPECT_EQ(r.at(1.25, 7), rgba(0, 102, 0, 255));   // 0.4 of green
    EXPECT_EQ(r.at(2.75, 7), rgba(102, 61, 20, 255)); // 0.4 of orange
}

TEST_P(GradientViewDrawing, TheStrokeFollowsRoundedCornersWithinTheirClip)
{
    const auto view = makeGradientView(20, 20);
    view->setRoundedCorners(kZRCornerAll);
    view->setCornerRadius(8);
    view->setGradient(redToBlue());
    view->setStroke(4);
    view->setStrokeColor(NSColor::blackColor());
    Rendering r = rendering(20, 20);
    r.draw(view);
    EXPECT_EQ(r.at(0.25, 19.75), kGreen);
    // On the diagonal the corner's edge is 8 - 8 / sqrt(2) = 2.34 from both sides, and the line's inner edge
    // 8 - 4 / sqrt(2) = 5.17.
    EXPECT_EQ(r.at(3.25, 16.75), kBlack);
    EXPECT_EQ(r.at(4.75, 15.25), kBlack) << "within a square outline";
    EXPECT_EQ(r.at(6.25, 13.75), kBlue);
    EXPECT_EQ(r.at(3.75, 10), kBlack);
    EXPECT_EQ(r.at(4.25, 10), kBlue);
}

TEST_P(GradientViewDrawing, TheStrokeNeedsAWidthAboveZeroAndAColour)
{
    using Limits = std::numeric_limits<double>;
    for (const double width : {0.0, -1.0, Limits::infinity(), Limits::quiet_NaN()}) {
        const auto view = makeGradientView(10, 10);
        view->setStroke(width);
        view->setStrokeColor(NSColor::blackColor());
        Rendering r = rendering(10, 10);
        r.draw(view);
        EXPECT_EQ(r.at(0.25, 5), kGreen);
    }
    const auto onlyStroke = makeGradientView(10, 10);
    onlyStroke->setStroke(1);
    onlyStroke->setStrokeColor(NSColor::blackColor());
    Rendering r = rendering(10, 10);
    r.draw(onlyStroke);
    EXPECT_EQ(r.at(0.25, 5), kBlack);
    EXPECT_EQ(r.at(5, 5), kGreen);
}

TEST_P(GradientViewDrawing, NumbersThatAreNotFiniteDrawNoGradient)
{
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const auto view = makeGradientView(10, 10);
    view->setGradient(redToBlue());
    view->setEndPoint({kInfinity, 0});
    Rendering r = rendering(10, 10);
    r.draw(view);
    view->setType(kZRGradientTypeRadial);
    view->setEndRadius(-1);
    r.draw(view);
    view->setEndRadius(std::numeric_limits<double>::quiet_NaN());
    r.draw(view);
    EXPECT_EQ(r.at(5, 5), kGreen);
}

TEST_P(GradientViewDrawing, NoiseIsNotDrawn)
{
    const auto view = makeGradientView(10, 10);
    view->setColor(orange());
    view->setNoise(1);
    Rendering r = rendering(10, 10);
    r.draw(view);
    for (double x = 0.25; x < 10; x += 0.5)
        EXPECT_EQ(r.at(x, x), kOrange);
}

// The spaces are set before the state is saved.
TEST_P(GradientViewDrawing, LeavesSRGBAsColourSpaceAndRestoresTheRest)
{
    const auto view = makeGradientView(20, 20);
    view->setRoundedCorners(kZRCornerAll);
    view->setCornerRadius(8);
    view->setGradient(redToBlue());
    view->setBezel(true);
    view->setStroke(1);
    view->setStrokeColor(NSColor::redColor());
    Rendering r = rendering(20, 20);
    const CGContextRef context = r.context();
    CGContextSetGrayFillColor(context, 0.5, 1);
    CGContextSetGrayStrokeColor(context, 0.5, 1);
    CGContextSetLineWidth(context, 6);
    const CGAffineTransform before = CGContextGetCTM(context);
    r.draw(view);
    EXPECT_TRUE(CGAffineTransformEqualToTransform(CGContextGetCTM(context), before));

    // Setting a space sets its opaque black; colours of the space have three components.
    CGContextFillRect(context, CGRectMake(0, 0, 20, 20)); // also in the clipped corners
    EXPECT_EQ(r.at(0.25, 0.25), kBlack);
    const CGFloat red[]{1, 0, 0, 1};
    CGContextSetFillColor(context, red);
    CGContextFillRect(context, CGRectMake(0, 0, 20, 20));
    EXPECT_EQ(r.at(10, 10), kRed);
    CGContextStrokeRect(context, CGRectMake(10, -10, 40, 40));
    EXPECT_EQ(r.at(7.25, 10), kBlack); // three points to each side
    EXPECT_EQ(r.at(6.75, 10), kRed);
    CGContextSetStrokeColor(context, red);
    CGContextStrokeRect(context, CGRectMake(10, -10, 40, 40));
    EXPECT_EQ(r.at(7.25, 10), kRed);
}
