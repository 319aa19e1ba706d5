#include "Foundation/testing/MainBundleFolder.h"
#include "SwitchProbe.h"
#include "support/Rendering.h"
#include "support/TemporaryFolder.h"

#include <cmath>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr CanvasPixel kGray = rgba(170, 170, 170, 255);
constexpr CanvasPixel kTeal = rgba(0, 170, 170, 255);
constexpr CanvasPixel kTrack = rgba(68, 68, 68, 255);

/// Draws a view as a window of that scale does, on green.
class Picture {
public:
    Picture(const RetainPtr<SwitchProbe>& control, double scale)
        : _scale(scale)
        , _rendering(int(control->bounds().size.width), int(control->bounds().size.height), scale)
    {
        const auto context = NSGraphicsContext::graphicsContextWithCGContext(_rendering.context(), false);
        control->displayRectIgnoringOpacity(control->bounds(), context);
    }

    CanvasPixel at(double x, double y) const { return _rendering.at(x, y); }

    /// From the first to the last green pixel between two points on a horizontal line: the hole of a word.
    std::pair<double, double> holeAlongX(double from, double to, double y) const
    {
        return hole(from, to, [&](double x) { return at(x, y); });
    }
    std::pair<double, double> holeAlongY(double x, double from, double to) const
    {
        return hole(from, to, [&](double y) { return at(x, y); });
    }

private:
    template <class PixelAt> std::pair<double, double> hole(double from, double to, PixelAt pixelAt) const
    {
        std::pair<double, double> hole{NAN, NAN};
        for (double place = from + 0.5 / _scale; place < to; place += 1 / _scale) {
            if (pixelAt(place) != kGreen)
                continue;
            if (std::isnan(hole.first))
                hole.first = place - 0.5 / _scale;
            hole.second = place + 0.5 / _scale;
        }
        return hole;
    }

    double _scale;
    Rendering _rendering;
};

/// Has the words of a switch be "█", which in Liberation Sans Bold at 2048 points is a rectangle from
/// (0, -621) to (1451, 1864) with an advance of 1451, or other words.
class Words {
public:
    explicit Words(const std::string& off = "█", const std::string& on = "█")
    {
        _folder.write("en.lproj/Localizable.strings", "OFF = \"" + off + "\";\nON = \"" + on + "\";\n");
        _bundle.emplace(NSString(_folder.path().string()));
    }

private:
    TemporaryFolder _folder;
    std::optional<MainBundleFolder> _bundle;
};

constexpr double kBlockAdvance = 1451.0 / 2048;
constexpr double kBlockTop = 1864.0 / 2048;
constexpr double kBlockBottom = -621.0 / 2048;

/// Where a word lies by the rule: centred on `centre`, kern included, on a baseline of 0.36 font sizes below
/// the middle.
std::pair<double, double> wordAlongX(double centre, double fontSize)
{
    const double left = centre - (kBlockAdvance * fontSize + 1) / 2;
    return {left, left + kBlockAdvance * fontSize};
}
std::pair<double, double> wordAlongY(double middle, double fontSize)
{
    const double baseline = middle - 0.36 * fontSize;
    return {baseline + kBlockBottom * fontSize, baseline + kBlockTop * fontSize};
}

void expectNear(std::pair<double, double> actual, std::pair<double, double> expected, double tolerance)
{
    EXPECT_NEAR(actual.first, expected.first, tolerance);
    EXPECT_NEAR(actual.second, expected.second, tolerance);
}

/// The font size that the height of a word shows.
double shownFontSize(const RetainPtr<SwitchProbe>& control)
{
    const Words words;
    const NSSize size = control->bounds().size;
    const auto hole = Picture(control, 20).holeAlongY(std::floor(size.height * 0.6) + 0.5, 0, size.height);
    return (hole.second - hole.first) / (kBlockTop - kBlockBottom);
}

/// Tests draw at both scales.
class SwitchDrawing : public testing::TestWithParam<int> {
protected:
    Picture picture(const RetainPtr<SwitchProbe>& control) const { return {control, double(GetParam())}; }
    const Words noWords{"", ""};
};

} // namespace

TEST_P(SwitchDrawing, OffTheKnobIsGrayAndAtTheLeft)
{
    const Picture picture = this->picture(makeSwitch());
    // 0.585 of 100 is rounded half away from zero: 59 points.
    for (const double x : {1.25, 30.0, 57.75})
        EXPECT_EQ(picture.at(x, 20), kGray) << x;
    EXPECT_EQ(picture.at(30, 0.25), kGray) << "as high as the view";
    EXPECT_EQ(picture.at(30, 39.75), kGray);
    EXPECT_EQ(picture.at(59.75, 20), kGreen);
    EXPECT_EQ(picture.at(2, 2), kGreen) << "the ends are half circles";
}

TEST_P(SwitchDrawing, OnTheKnobIsTealAndAtTheRight)
{
    const auto control = makeSwitch();
    control->setOn(true, false);
    const Picture picture = this->picture(control);
    for (const double x : {41.25, 70.0, 97.75})
        EXPECT_EQ(picture.at(x, 20), kTeal) << x;
    EXPECT_EQ(picture.at(39.25, 20), kGreen);
    EXPECT_EQ(picture.at(99.75, 20), kGreen) << "the 59 points end one before the edge";
}

TEST_P(SwitchDrawing, HalfwayTheKnobIsInTheMiddle)
{
    const auto control = makeSwitch();
    control->setSwitchPosition(0.5);
    const Picture picture = this->picture(control);
    EXPECT_EQ(picture.at(19.25, 20), kGreen);
    EXPECT_EQ(picture.at(21.25, 20), kGray);
    EXPECT_EQ(picture.at(77.75, 20), kGray);
    EXPECT_EQ(picture.at(79.75, 20), kGreen);
}

TEST_P(SwitchDrawing, TheTrackIsALineOfTwoPointsAroundTwoPointsInside)
{
    const auto control = makeSwitch();
    control->setOn(true, false);
    const Picture right = picture(control);
    for (const double inside : {1.25, 1.75, 2.25, 2.75}) {
        EXPECT_EQ(right.at(30.5, inside), kTrack) << inside;
        EXPECT_EQ(right.at(30.5, 40 - inside), kTrack) << inside;
    }
    EXPECT_EQ(right.at(2.25, 20.25), kTrack);
    for (const double beside : {0.75, 3.25}) {
        EXPECT_EQ(right.at(30.5, beside), kGreen) << beside;
        EXPECT_EQ(right.at(30.5, 40 - beside), kGreen) << beside;
    }
    EXPECT_EQ(right.at(0.75, 20.25), kGreen);
    EXPECT_EQ(right.at(4.25, 20.25), kGreen); // the round end takes a little of the pixel at 3
    EXPECT_EQ(right.at(4, 4), kGreen) << "the ends are half circles";
    EXPECT_EQ(right.at(70, 2), kTeal) << "the knob lies over the track";

    control->setOn(false, false);
    EXPECT_EQ(picture(control).at(97.75, 20.25), kTrack);
    EXPECT_EQ(picture(control).at(99.5, 20.25), kGreen);
}

TEST_P(SwitchDrawing, DisabledTheWholeIsDimAndTheKnobGray)
{
    const auto control = makeSwitch();
    control->setOn(true, false);
    control->setEnabled(false);
    const Picture picture = this->picture(control);
    // 0.35 of gray on 0.65 of green.
    const auto expectAbout = [](const CanvasPixel& pixel, double red, double green) {
        EXPECT_NEAR(pixel.bytes[0], red, 1);
        EXPECT_NEAR(pixel.bytes[1], green, 1);
        EXPECT_NEAR(pixel.bytes[2], red, 1);
        EXPECT_EQ(pixel.bytes[3], 255);
    };
    expectAbout(picture.at(70, 20), 59.5, 225.25);
    expectAbout(picture.at(30.5, 2), 23.8, 189.55);
    // One layer: the track does not shine through the knob.
    expectAbout(picture.at(70, 2), 59.5, 225.25);
    EXPECT_EQ(picture.at(30.5, 20), kGreen);
}

TEST_P(SwitchDrawing, WordsShowWhatLiesBehindTheSwitch)
{
    const Words words;
    const auto control = makeSwitch();
    EXPECT_EQ(picture(control).at(23.5, 20), kGreen) << "centred at 0.6 of the height";
    EXPECT_EQ(picture(control).at(75.5, 20), kGreen) << "there is nothing to cut";
    control->setOn(true, false);
    EXPECT_EQ(picture(control).at(75.5, 20), kGreen) << "0.6 of the height from the right";
    EXPECT_EQ(picture(control).at(71.5 - 1.5, 20), kTeal);
    control->setEnabled(false);
    EXPECT_EQ(picture(control).at(75.5, 20), kGreen);
}

TEST_P(SwitchDrawing, WordsAlsoCutThroughTheTrack)
{
    const Words words;
    const auto control = makeSwitch();
    control->setOn(true, false);
    EXPECT_EQ(picture(control).at(23.5, 38), kTrack);
    control->setViewHeightFontSizeCoefficient(1);
    EXPECT_EQ(picture(control).at(23.5, 38), kGreen);
}

TEST_P(SwitchDrawing, OnlyTheSwitchMovesWithTheOriginOfTheBounds)
{
    const Words words;
    const auto control = makeSwitch();
    control->setBoundsOrigin(NSMakePoint(10, 0));
    const Picture picture = this->picture(control);
    EXPECT_EQ(picture.at(9.25, 20), kGreen);
    EXPECT_EQ(picture.at(11.25, 20), kGray);
    EXPECT_EQ(picture.at(67.75, 20), kGray);
    EXPECT_EQ(picture.at(23.5, 20), kGreen) << "the word is where it was";
    EXPECT_EQ(picture.at(33.5, 20), kGray);
}

INSTANTIATE_TEST_SUITE_P(Scales, SwitchDrawing, testing::Values(1, 2));

TEST(SwitchWords, AreCentredWithTheirKernOnABaselineBelowTheMiddle)
{
    // Edges at a scale of 20, half covered pixels left out.
    constexpr double kScale = 20, kTolerance = 1.5 / kScale;
    const Words words;
    for (const double coefficient : {0.0, 0.5}) {
        const double fontSize = coefficient == 0 ? 11 : 20;
        const auto control = makeSwitch();
        control->setViewHeightFontSizeCoefficient(coefficient);
        const Picture off(control, kScale);
        expectNear(off.holeAlongX(5, 55, 20), wordAlongX(24, fontSize), kTolerance);
        expectNear(off.holeAlongY(22, 1, 39), wordAlongY(20, fontSize), kTolerance);
        control->setOn(true, false);
        const Picture on(control, kScale);
        expectNear(on.holeAlongX(45, 95, 20), wordAlongX(76, fontSize), kTolerance);
        expectNear(on.holeAlongY(74, 1, 39), wordAlongY(20, fontSize), kTolerance);
    }
}

TEST(SwitchWords, HaveTheFontSizeOfTheHeightButNotLessThanTheMinimum)
{
    const auto fontSize = [](double height, double coefficient, double minimum) {
        const auto control = make<SwitchProbe>(NSMakeRect(0, 0, 100, height));
        control->setViewHeightFontSizeCoefficient(coefficient);
        control->setViewHeightFontSizeMinimum(minimum);
        return shownFontSize(control);
    };
    constexpr double kTolerance = 0.12; // two pixels, of a word that is 1.2 font sizes high
    EXPECT_NEAR(fontSize(40, 0, 0), 11, kTolerance);
    EXPECT_NEAR(fontSize(40, 0, 30), 11, kTolerance) << "a minimum is one of the coefficient's";
    EXPECT_NEAR(fontSize(40, -1, 30), 11, kTolerance);
    EXPECT_NEAR(fontSize(40, NAN, 30), 11, kTolerance);
    EXPECT_NEAR(fontSize(20, 0.5, 12), 12, kTolerance);
    EXPECT_NEAR(fontSize(30, 0.5, 12), 15, kTolerance);
    EXPECT_NEAR(fontSize(30, 0.4, 0), 12, kTolerance);
}

TEST(SwitchWords, AreOffAndOnUnlessTheApplicationTranslatesThem)
{
    const auto pixels = [](const RetainPtr<SwitchProbe>& control) {
        const Picture picture(control, 1);
        std::vector<int> blue; // of gray and teal alike 170, and 0 where green shows
        for (int y = 10; y < 30; ++y)
            for (int x = 0; x < 100; ++x)
                blue.push_back(picture.at(x + 0.5, y + 0.5).bytes[2]);
        return blue;
    };
    const auto control = makeSwitch();
    const auto plainOff = pixels(control);
    control->setOn(true, false);
    const auto plainOn = pixels(control);
    {
        const Words same("OFF", "ON");
        EXPECT_TRUE(pixels(control) == plainOn);
        control->setOn(false, false);
        EXPECT_TRUE(pixels(control) == plainOff);
    }
    const Words german("AUS", "EIN");
    EXPECT_FALSE(pixels(control) == plainOff);
    control->setOn(true, false);
    EXPECT_FALSE(pixels(control) == plainOn);
}

TEST(SwitchSizes, OfAnyKindAreDrawnWithoutHarm)
{
    for (const NSSize size : {NSMakeSize(0, 0), NSMakeSize(0.5, 24), NSMakeSize(60, 0.5), NSMakeSize(1, 1),
             NSMakeSize(3, 3), NSMakeSize(4, 24), NSMakeSize(10, 200), NSMakeSize(60.5, 24.5),
             NSMakeSize(60, 1e300), NSMakeSize(1e300, 24)}) {
        const auto control = make<SwitchProbe>(NSRect{NSZeroPoint, size});
        control->setSwitchPosition(NAN);
        Rendering rendering(64, 64);
        rendering.draw(control);
        EXPECT_EQ(rendering.at(63.5, 63.5), kGreen);
        control->setViewHeightFontSizeCoefficient(HUGE_VAL);
        rendering.draw(control);
        control->setSwitchPosition(1e300);
        rendering.draw(control);
        EXPECT_EQ(rendering.at(63.5, 63.5), kGreen);
    }
}

TEST(SwitchDrawingPass, WithoutAContextDoesNothing)
{
    makeSwitch()->drawRect(NSMakeRect(0, 0, 100, 40));
}
