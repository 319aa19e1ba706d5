#include "CoreText/testing/PrivateFonts.h"
#include "support/Rendering.h"

#include <KorvidAppKit/ZRCapsuleView.h>

#include <AppKit/NSColor.h>
#include <AppKit/NSFont.h>
#include <CoreText/CTLine.h>

namespace {

/// Calibrated gray 0.1 (gamma 2.2) in sRGB: 255 x 0.0728.
constexpr CanvasPixel kDark = rgba(19, 19, 19, 255);

/// A capsule with a full block as its text: in Liberation Sans at 2048 points a rectangle from (0, -621) to
/// (1451, 1864).
RetainPtr<ZRCapsuleView> makeCapsule(double width, double height, const NSString& text = "█")
{
    auto capsule = make<ZRCapsuleView>(NSMakeRect(0, 0, width, height));
    capsule->setFontName("Liberation Sans");
    capsule->setString(text);
    return capsule;
}

class CapsuleDrawing : public testing::TestWithParam<double> {
protected:
    double scale() const { return GetParam(); }
};

/// The width of a capsule's outline in points, measured upward from the middle of the bottom edge.
double outlineWidth(int height)
{
    constexpr double kScale = 20;
    Rendering rendering(40, height, kScale);
    rendering.draw(makeCapsule(40, height, "").get());
    const int rows = int(height * kScale);
    int whiteRows = 0;
    // The bottom edge is the lowest point of a curve: up to 2 of 255 short of white.
    while (whiteRows < rows && rendering.at(20, (whiteRows + 0.5) / kScale).bytes[0] >= 253)
        ++whiteRows;
    return whiteRows / kScale;
}

CanvasPixel textOn(NSColor* color)
{
    Rendering rendering(40, 40);
    const auto capsule = makeCapsule(40, 40);
    capsule->setDrawType(kZRCapsuleDrawTypeFilled);
    capsule->setColor(color);
    capsule->setFontSize(20);
    rendering.draw(capsule);
    return rendering.at(20.5, 20.5);
}

/// A colour that cannot be converted to sRGB.
class Pattern : public NSColor { };

} // namespace

TEST(CapsuleOutline, Is3PercentOfTheHeightWideWithinLimits)
{
    EXPECT_EQ(outlineWidth(10), 0.5);
    EXPECT_EQ(outlineWidth(40), 1.2);
    EXPECT_EQ(outlineWidth(100), 2);
}

TEST_P(CapsuleDrawing, AnOutlineLiesWithinTheBounds)
{
    Rendering rendering(80, 100, scale());
    rendering.draw(makeCapsule(80, 100, "").get());
    EXPECT_EQ(rendering.at(40, 0.5), kWhite);
    EXPECT_EQ(rendering.at(40, 1.5), kWhite);
    EXPECT_EQ(rendering.at(40, 2.5), kGreen);
    EXPECT_EQ(rendering.at(40, 99.5), kWhite);
    EXPECT_EQ(rendering.at(0.5, 50), kWhite);
    EXPECT_EQ(rendering.at(2.5, 50), kGreen);
    EXPECT_EQ(rendering.at(79.5, 50), kWhite);
    EXPECT_EQ(rendering.at(0.5, 0.5), kGreen) << "the corner is rounded";
}

TEST_P(CapsuleDrawing, CornersHaveARadiusOfAQuarterOfTheHeight)
{
    Rendering rendering(80, 40, scale());
    const auto capsule = makeCapsule(80, 40, "");
    capsule->setDrawType(kZRCapsuleDrawTypeFilled);
    rendering.draw(capsule);
    EXPECT_EQ(rendering.at(0.5, 10.5), kWhite) << "the side is straight above the corner";
    EXPECT_EQ(rendering.at(10.5, 0.5), kWhite);
    EXPECT_EQ(rendering.at(1.5, 1.5), kGreen);
    // The arc crosses the diagonal at 10 (1 - sqrt(1/2)) = 2.93.
    EXPECT_EQ(rendering.at(4.5, 4.5), kWhite);
    EXPECT_EQ(rendering.at(78.5, 38.5), kGreen);
}

// The outline of a height of 100 is 2 wide, so its path has a height of 98 and corners of radius 24.5 around
// 25.5. Its outer edge crosses the diagonal at 25.5 (1 - sqrt(1/2)) = 7.469; with a radius of 25
// it would at 7.615.
TEST(CapsuleOutline, HasCornersOfAQuarterOfItsPathsHeight)
{
    Rendering rendering(10, 10, 20);
    rendering.draw(makeCapsule(80, 100, "").get());
    EXPECT_EQ(rendering.at(7.41, 7.41), kGreen);
    EXPECT_EQ(rendering.at(7.51, 7.51), kWhite);
}

TEST_P(CapsuleDrawing, TextIsCentredWithItsBaselineBelowTheMiddle)
{
    Rendering rendering(80, 40, scale());
    const auto capsule = makeCapsule(80, 40);
    capsule->setFontSize(20.48);
    rendering.draw(capsule);
    // The block is 14.51 wide, so it lies between 32.745 and 47.255; the baseline at 20 - 0.3 x 18.54 =
    // 14.438, the ink from 6.21 below to 18.64 above it: from 8.228 to 33.078.
    EXPECT_EQ(rendering.at(33.5, 20), kWhite);
    EXPECT_EQ(rendering.at(46.5, 20), kWhite);
    EXPECT_EQ(rendering.at(31.5, 20), kGreen);
    EXPECT_EQ(rendering.at(48.5, 20), kGreen);
    EXPECT_EQ(rendering.at(40, 32.5), kWhite);
    EXPECT_EQ(rendering.at(40, 34.2), kGreen);
    EXPECT_EQ(rendering.at(40, 9.4), kWhite);
    EXPECT_EQ(rendering.at(40, 7.4), kGreen);
}

TEST_P(CapsuleDrawing, TextStartsAtTheTextPositionOfTheContext)
{
    Rendering rendering(80, 40, scale());
    const auto capsule = makeCapsule(80, 40);
    capsule->setFontSize(20.48);
    CGContextSetTextPosition(rendering.context(), 10, 5);
    rendering.draw(capsule);
    // The block of the test above, moved: from (42.745, 13.228) to (57.255, 38.078).
    EXPECT_EQ(rendering.at(41.5, 20), kGreen);
    EXPECT_EQ(rendering.at(43.5, 20), kWhite);
    EXPECT_EQ(rendering.at(56.5, 20), kWhite);
    EXPECT_EQ(rendering.at(58.5, 20), kGreen);
    EXPECT_EQ(rendering.at(50, 12.4), kGreen);
    EXPECT_EQ(rendering.at(50, 14.4), kWhite);
}

// The size of the bounds alone places the text.
TEST_P(CapsuleDrawing, AnOriginOfTheBoundsMovesTheCapsuleAndNotItsText)
{
    Rendering rendering(80, 80, scale());
    const auto capsule = makeCapsule(40, 40);
    capsule->setFontSize(20);
    capsule->setBounds(NSMakeRect(40, 40, 40, 40));
    rendering.draw(capsule);
    EXPECT_EQ(rendering.at(60, 40.5), kWhite);
    EXPECT_EQ(rendering.at(60, 60), kGreen);
    EXPECT_EQ(rendering.at(20, 20), kWhite);
    EXPECT_EQ(rendering.at(20, 0.5), kGreen);
}

TEST_P(CapsuleDrawing, AnyOtherTypeIsARedRectangleWithTheTextOnTop)
{
    for (const std::int32_t type : {0, 3, -1}) {
        Rendering rendering(40, 40, scale());
        const auto capsule = makeCapsule(40, 40);
        capsule->setDrawType(type);
        capsule->setFontSize(20);
        rendering.draw(capsule);
        EXPECT_EQ(rendering.at(0.5, 0.5), kRed) << "the corners too";
        EXPECT_EQ(rendering.at(39.5, 39.5), kRed);
        EXPECT_EQ(rendering.at(20, 20), kWhite) << "in the view's colour";
    }
}

TEST_P(CapsuleDrawing, AnEmptyTextOnAFilledCapsuleDrawsTheCapsuleAlone)
{
    for (const NSString& text : {NSString(), NSString("")}) {
        Rendering rendering(40, 20, scale());
        const auto capsule = makeCapsule(40, 20, text);
        capsule->setDrawType(kZRCapsuleDrawTypeFilled);
        rendering.draw(capsule);
        for (const double x : {6.0, 20.0, 34.0})
            EXPECT_EQ(rendering.at(x, 10), kWhite);
    }
}

INSTANTIATE_TEST_SUITE_P(AtScales1And2, CapsuleDrawing, testing::Values(1.0, 2.0));

TEST(CapsuleText, IsDarkOnBrightCapsulesAndWhiteOnOthers)
{
    EXPECT_EQ(textOn(NSColor::whiteColor()), kDark);
    EXPECT_EQ(textOn(NSColor::colorWithSRGBRed(0.5, 0.5, 0.5, 1).get()), kWhite);
    EXPECT_EQ(textOn(NSColor::yellowColor()), kDark) << "luminance 0.886";
    EXPECT_EQ(textOn(NSColor::greenColor()), kWhite) << "luminance 0.587";
    EXPECT_EQ(textOn(NSColor::colorWithSRGBRed(0.8, 0.8, 0.8, 1).get()), kWhite) << "not above 0.8";
    EXPECT_EQ(textOn(NSColor::colorWithSRGBRed(0.81, 0.81, 0.81, 1).get()), kDark);
}

TEST(CapsuleText, IsDarkAboveALuminanceOf0Point8)
{
    const auto textOnColor = [](double red, double green, double blue) {
        return textOn(NSColor::colorWithSRGBRed(red, green, blue, 1).get());
    };
    // 0.299 red + 0.587 green + 0.114 blue, just below and just above 0.8.
    EXPECT_EQ(textOnColor(0.331, 1, 1), kWhite) << "0.79997";
    EXPECT_EQ(textOnColor(0.332, 1, 1), kDark) << "0.80027";
    EXPECT_EQ(textOnColor(1, 0.659, 1), kWhite) << "0.79983";
    EXPECT_EQ(textOnColor(1, 0.660, 1), kDark) << "0.80042";
    EXPECT_EQ(textOnColor(0.5, 1, 0.557), kWhite) << "0.799998";
    EXPECT_EQ(textOnColor(0.5, 1, 0.558), kDark) << "0.80011";
}

TEST(CapsuleText, IsDarkOnAColorThatCannotBeConverted)
{
    EXPECT_EQ(textOn(make<Pattern>().get()), kDark);
}

TEST(CapsuleText, IsInTheViewsColorOnAnOutline)
{
    Rendering rendering(40, 40);
    const auto capsule = makeCapsule(40, 40);
    capsule->setColor(NSColor::redColor());
    capsule->setFontSize(20);
    rendering.draw(capsule);
    EXPECT_EQ(rendering.at(20, 20), kRed);
    EXPECT_EQ(rendering.at(20, 0.5), kRed);
}

TEST(CapsuleDrawn, WithoutAColorIsPurpleWithBlackOrContrastingText)
{
    Rendering rendering(40, 40);
    const auto capsule = makeCapsule(40, 40);
    capsule->setColor(nullptr);
    capsule->setFontSize(20);
    rendering.draw(capsule);
    EXPECT_EQ(rendering.at(20, 0.5), rgba(128, 0, 128, 255));
    EXPECT_EQ(rendering.at(20, 20), kBlack);

    EXPECT_EQ(textOn(nullptr), kWhite) << "the text that contrasts with purple on a filled capsule";
}

TEST(CapsuleDrawn, DrawsTheWholeViewAndRestoresTheState)
{
    Rendering rendering(40, 20);
    const auto capsule = makeCapsule(40, 20, "");
    capsule->setDrawType(kZRCapsuleDrawTypeFilled);
    CGContextSetRGBFillColor(rendering.context(), 1, 0, 0, 1);
    rendering.draw(capsule, NSMakeRect(0, 0, 1, 1));
    EXPECT_EQ(rendering.at(30, 10), kWhite);
    EXPECT_TRUE(CGAffineTransformIsIdentity(CGContextGetCTM(rendering.context())));
    EXPECT_TRUE(CGContextIsPathEmpty(rendering.context()));
    CGContextFillRect(rendering.context(), CGRectMake(0, 0, 40, 20));
    EXPECT_EQ(rendering.at(30, 10), kRed);
}

TEST_P(CapsuleDrawing, BoundsTooSmallForTheOutlineHaveNoCapsule)
{
    for (const NSSize size : {NSSize{0, 0}, NSSize{0.4, 20}, NSSize{20, 0.4}}) {
        Rendering rendering(24, 24, scale());
        rendering.draw(makeCapsule(size.width, size.height, "").get());
        for (double x = 0.25; x < 24; x += 0.5)
            for (double y = 0.25; y < 24; y += 0.5)
                EXPECT_EQ(rendering.at(x, y), kGreen) << x << " " << y;
    }
}

TEST(CapsuleDrawn, DrawsNothingWithoutAContext)
{
    makeCapsule(40, 20)->drawRect(NSMakeRect(0, 0, 40, 20));
}

TEST(CapsuleDrawn, RepeatsNeitherFontQueriesNorLayouts)
{
    Rendering rendering(80, 22);
    const auto capsule = makeCapsule(80, 22, "steady");
    capsule->setFontName("Helvetica Neue Regular"); // not installed either
    rendering.draw(capsule);
    const FontWork before = fontWork();
    for (int i = 0; i < 10; ++i) {
        capsule->setDrawType(1 + i % 2);
        rendering.draw(capsule);
        capsule->intrinsicContentSize();
    }
    EXPECT_EQ(fontWork().fontQueries, before.fontQueries);
    EXPECT_EQ(fontWork().layouts, before.layouts);
}
